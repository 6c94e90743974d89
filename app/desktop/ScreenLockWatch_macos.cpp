#include "app/desktop/ScreenLockWatch.h"

namespace bonkora {

// No window of ours holds the pointer there.
ScreenLockWatch::ScreenLockWatch() = default;

void ScreenLockWatch::hearState(bool) {}

void ScreenLockWatch::hearLock() {}

}  // namespace bonkora
