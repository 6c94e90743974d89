// What Qt and we say to developers.
#pragma once

namespace bonkora {

// Standard output is for the controller's lines alone, and a fatal message does not cost them.
void sendMessagesToStandardError();

}  // namespace bonkora
