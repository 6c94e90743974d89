// WindowSystem: the few things about windows that Qt has no function for. One implementation for
// each system.
#pragma once

#include <QPoint>
#include <optional>
#include <string>

class QWidget;

namespace bonkora::windowSystem {

// Before the QApplication is made, which would abort where no window can be opened: the reason for
// that, or nothing.
std::optional<std::string> prepare();

// Keeps `window`, which has not been shown yet, out of task bars and pagers.
void keepOutOfTaskbars(QWidget& window);

// Whether half-transparent edges of a window are blended with what lies behind it.
bool isCompositing();

// Whether a window can take the pointer for itself, to learn of presses outside it.
bool canGrabPointer();
// Whether it then learns of all of them, also where nothing of the X server's is.
bool isGrabWhole();

// Where the pointer is, on the screen; nothing where the window system tells it only while it is
// over a window of ours, as Wayland does, also to programs of the X server that runs on it.
std::optional<QPoint> pointerPosition();

}  // namespace bonkora::windowSystem
