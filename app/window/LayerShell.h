// LayerShell: how a Wayland compositor that offers zwlr_layer_shell_v1 lets a window stand at a
// place of its own choice, beside a bar, which ordinary windows may not there. Linux; elsewhere it
// is never offered. Main thread.
#pragma once

#include <QObject>
#include <QRect>
#include <memory>
#include <optional>

class QScreen;
class QWidget;
class QWindow;

namespace bonkora {

namespace layerShell {

// Before the QApplication is made.
void prepare();
bool isOffered();
// Where the pointer is on the desktop, on a bar too; nothing if the compositor does not tell within
// 0.3 s, in which this waits.
std::optional<QPoint> findPointer();

}  // namespace layerShell

// One window's part in it, from before its first showing until it goes; a window that has been
// hidden needs a new one. Around it lies an invisible shield over everything but the bars: a press
// on it is a press outside the window, whatever else lies there.
class LayerSurface final : public QObject {
    Q_OBJECT

  public:
    // `window` has not been shown yet and outlives this.
    explicit LayerSurface(QWidget& window);
    ~LayerSurface() override;

    // Puts the window near `place`, whose nearer end, top or bottom, tells the bar's edge; of
    // `screen`, on which the window then stays.
    void place(const QRect& place, QScreen& screen);
    // Off while a dialog of the window is open: then it lies beneath ordinary windows.
    void setInFront(bool isInFront);

  signals:
    void pressedOutside();
    // The compositor wants the window gone.
    void dismissed();

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    struct Role;

    void spreadShield(QScreen& screen);
    void leaveRoomInShield(const QRect& room);

    QWidget& window;
    std::unique_ptr<QWidget> shield;
    std::unique_ptr<Role> shieldRole;
    std::unique_ptr<Role> role;
};

}  // namespace bonkora
