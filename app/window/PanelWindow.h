// PanelWindow: the window that drops down from the menu-bar item, or a plain window where there is
// no bar to drop from. Owns its content; goes when it is closed, and takes the content along. Tells
// what happens to it, and leaves to others what follows from that.
#pragma once

#include <QEvent>
#include <QWidget>
#include <memory>
#include <vector>

#include "app/window/LayerShell.h"
#include "app/window/PressShield.h"

namespace bonkora {

class PanelWindow final : public QWidget {
    Q_OBJECT

  public:
    enum class Style { dropDown, plain };

    PanelWindow(std::unique_ptr<QWidget> content, Style style);

    Style style() const { return panelStyle; }
    void open(const QRect& place);
    void moveTo(const QRect& place);
    // Brings it to the front, or the dialog that it waits for.
    void raiseToFront();
    // Whether a dialog or menu of its own is open.
    static bool isOccupied();

  signals:
    // Of a drop-down, told while the event is being handled:
    void pressedOutside();
    void escapePressed();
    void deactivated();   // another window has become the active one
    void dialogClosed();  // one of its own
    // Of both kinds:
    void closed();

  protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void moveEvent(QMoveEvent* event) override;
    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void grabPointer();
    void spreadShields();
    void followActivation(QEvent::Type type);

    const Style panelStyle;
    const bool isBlended;
    QWidget* content;
    QPoint wantedPosition;
    int correctionsLeft = 0;
    std::vector<std::unique_ptr<PressShield>> shields;
    std::unique_ptr<LayerSurface> layer;  // where the compositor lets a window choose its place
};

}  // namespace bonkora
