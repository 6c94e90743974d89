#include "app/desktop/WindowSystem.h"

#include <QCursor>

namespace bonkora::windowSystem {

std::optional<std::string> prepare() {
    return std::nullopt;
}

// The property list makes this a program of the menu bar only.
void keepOutOfTaskbars(QWidget&) {}

bool isCompositing() {
    return true;
}

bool canGrabPointer() {
    return false;
}

bool isGrabWhole() {
    return false;
}

std::optional<QPoint> pointerPosition() {
    return QCursor::pos();
}

}  // namespace bonkora::windowSystem
