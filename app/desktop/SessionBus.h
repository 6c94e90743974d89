// SessionBus: whether there is a session bus to talk to.
#pragma once

namespace bonkora::sessionBus {

// To be called before anything uses the bus. Where there is none, keeps the bus library from
// starting a daemon of its own, which nobody would end.
void forbidAutolaunch();

bool isAvailable();

}  // namespace bonkora::sessionBus
