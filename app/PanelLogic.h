// PanelLogic: decides what a menu-bar extra does with its panel: open, close, ignore, wait for a
// bar, fall back to a plain window, ask again later. An event goes in, an action comes out; it
// touches no widget and reads no clock.
#pragma once

#include <chrono>
#include <optional>

namespace bonkora {

class PanelLogic {
  public:
    // On any clock that never goes back.
    using Time = std::chrono::milliseconds;

    enum class Event {
        hostCame,  // a bar is there, and the item is in it
        hostWent,  // no bar is there, at the start or any more
        itemClicked,
        openAsked,  // by a later start of the application, or by the desktop
        panelOpened,
        pressedOutside,
        escapePressed,
        deactivated,   // another window has become the active one
        dialogClosed,  // one that belongs to the panel
        panelClosed,   // for whatever reason
        screenLocking,
        wake,  // the time that wakeAt() named has come
    };
    enum class Action {
        nothing,
        dropDownAtClick,
        dropDownAtItem,
        openPlainWindow,  // in place of a drop-down that may be open
        close,
        raise,
        endApplication,
    };

    // `isOccupied`: a dialog or menu of the panel's own is open. Its loop would return into what is
    // gone, so the panel stays meanwhile.
    Action decide(Event event, Time now, bool isOccupied);

    // When to send `wake`, if ever.
    std::optional<Time> wakeAt() const { return wakeTime; }

  private:
    enum class Panel { none, dropDown, plain };

    Action open(Panel kind, Action how);
    Action close();
    Action click(Time now, bool isOccupied);
    Action deactivate(Time now, bool isOccupied);
    Action leavePlainWindow(Time now, bool isOccupied);
    Action showPlainWindow(Time now, bool isOccupied);
    bool hasSettled(Time now) const;

    bool hasItem = false;
    Panel panel = Panel::none;
    bool isClosing = false;  // decided, and not yet done
    Time openedAt{};
    std::optional<Time> closedAt;
    std::optional<Time> dialogClosedAt;
    std::optional<Time> wakeTime;
};

}  // namespace bonkora
