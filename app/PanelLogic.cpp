#include "app/PanelLogic.h"

namespace bonkora {

namespace {

using namespace std::chrono_literals;

// Presses so soon after the opening belong to the click that opened it, which some bars send twice.
constexpr auto settleTime = 250ms;
// The press outside that closed the panel may come again as a click on the item.
constexpr auto echoTime = 300ms;
// At the start of a session the bar may come after us, and one that died may come back.
constexpr auto hostGrace = 1000ms;
// How long to wait before asking an occupied panel again.
constexpr auto occupiedTime = 250ms;
// A window manager may activate something else first when a dialog has closed.
constexpr auto afterDialogTime = 500ms;

}  // namespace

PanelLogic::Action PanelLogic::decide(Event event, Time now, bool isOccupied) {
    switch (event) {
        case Event::hostCame:
            hasItem = true;
            wakeTime.reset();
            return leavePlainWindow(now, isOccupied);
        case Event::hostWent:
            hasItem = false;
            wakeTime = now + hostGrace;
            return Action::nothing;
        case Event::wake:
            wakeTime.reset();
            return hasItem ? leavePlainWindow(now, isOccupied) : showPlainWindow(now, isOccupied);
        case Event::itemClicked:
            return click(now, isOccupied);
        case Event::openAsked:
            if (panel != Panel::none && !isClosing) {
                return Action::raise;
            }
            return hasItem ? open(Panel::dropDown, Action::dropDownAtItem) : Action::nothing;
        case Event::panelOpened:
            openedAt = now;
            return Action::nothing;
        case Event::pressedOutside:
            return panel == Panel::dropDown && hasSettled(now) && !isOccupied ? close()
                                                                              : Action::nothing;
        case Event::screenLocking:
            return panel == Panel::dropDown && !isClosing && !isOccupied ? close()
                                                                         : Action::nothing;
        case Event::escapePressed:
            return panel == Panel::dropDown ? close() : Action::nothing;
        case Event::deactivated:
            return deactivate(now, isOccupied);
        case Event::dialogClosed:
            dialogClosedAt = now;
            return panel == Panel::dropDown && !isClosing ? Action::raise : Action::nothing;
        case Event::panelClosed: {
            const bool isUsersWish = panel == Panel::plain && !isClosing;
            panel = Panel::none;
            isClosing = false;
            closedAt = now;
            return isUsersWish ? Action::endApplication : Action::nothing;
        }
    }
    return Action::nothing;
}

PanelLogic::Action PanelLogic::open(Panel kind, Action how) {
    panel = kind;
    isClosing = false;
    dialogClosedAt.reset();
    return how;
}

PanelLogic::Action PanelLogic::close() {
    isClosing = true;
    return Action::close;
}

PanelLogic::Action PanelLogic::click(Time now, bool isOccupied) {
    if (panel == Panel::none) {
        const bool isEcho = closedAt && now - *closedAt < echoTime;
        return isEcho ? Action::nothing : open(Panel::dropDown, Action::dropDownAtClick);
    }
    if (isOccupied) {
        return Action::raise;
    }
    return hasSettled(now) && !isClosing ? close() : Action::nothing;
}

PanelLogic::Action PanelLogic::deactivate(Time now, bool isOccupied) {
    if (panel != Panel::dropDown || isClosing || isOccupied) {
        return Action::nothing;
    }
    return dialogClosedAt && now - *dialogClosedAt < afterDialogTime ? Action::raise : close();
}

PanelLogic::Action PanelLogic::leavePlainWindow(Time now, bool isOccupied) {
    if (panel != Panel::plain) {
        return Action::nothing;
    }
    if (isOccupied) {
        wakeTime = now + occupiedTime;
        return Action::nothing;
    }
    return close();
}

PanelLogic::Action PanelLogic::showPlainWindow(Time now, bool isOccupied) {
    if (panel == Panel::plain) {
        return Action::nothing;
    }
    if (panel == Panel::dropDown && isOccupied) {
        wakeTime = now + hostGrace;
        return Action::nothing;
    }
    return open(Panel::plain, Action::openPlainWindow);
}

bool PanelLogic::hasSettled(Time now) const {
    return now - openedAt > settleTime;
}

}  // namespace bonkora
