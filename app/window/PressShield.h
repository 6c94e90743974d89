// PressShield: an invisible window over a screen, but for its bars and the panel, that tells of a
// press on it. Needed where the X server is a guest of a Wayland compositor: a grab there does not
// see a press on what is not the X server's own, such as the bare desktop. Owned by PanelWindow.
#pragma once

#include <QWidget>

class QScreen;

namespace bonkora {

class PressShield final : public QWidget {
    Q_OBJECT

  public:
    // `panel`, in the coordinates of the desktop, is left out.
    PressShield(const QScreen& screen, const QRect& panel);

  signals:
    void pressed();

  protected:
    void mousePressEvent(QMouseEvent* event) override;
};

}  // namespace bonkora
