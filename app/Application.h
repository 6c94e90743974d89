// The application's main loop around the one scene. Main thread.
#pragma once

namespace bonkora {

// Returns the program's exit status when the application has ended.
int runApplication(int argumentCount, char** arguments);

}  // namespace bonkora
