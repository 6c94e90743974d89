#include "app/window/PressShield.h"

#include <QScreen>

namespace bonkora {

PressShield::PressShield(const QScreen& screen, const QRect& panel)
    : QWidget(nullptr, Qt::Tool | Qt::FramelessWindowHint | Qt::BypassWindowManagerHint |
                           Qt::WindowDoesNotAcceptFocus) {
    setAttribute(Qt::WA_TranslucentBackground);
    setAttribute(Qt::WA_ShowWithoutActivating);
    const QRect place = screen.availableGeometry();
    setGeometry(place);
    // It lies above all windows of the window manager's.
    setMask(QRegion(QRect(QPoint(), place.size())) - panel.translated(-place.topLeft()));
}

void PressShield::mousePressEvent(QMouseEvent*) {
    emit pressed();
}

}  // namespace bonkora
