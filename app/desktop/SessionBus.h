// SessionBus: whether there is a session bus to talk to. Main thread.
#pragma once

namespace bonkora::sessionBus {

// Before anything touches the bus: where there is none, says so to all that would look for one.
// The bus library would otherwise start a daemon of its own, which nobody ends.
void forbidAutolaunch();

bool isAvailable();

}  // namespace bonkora::sessionBus
