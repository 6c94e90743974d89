// The application's main loop around the one scene. As everything in app that does not say
// otherwise, used on the main thread only.
#pragma once

namespace bonkora {

// Returns the program's exit status when the application has ended.
int runApplication(int argumentCount, char** arguments);

}  // namespace bonkora
