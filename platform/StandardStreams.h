// What a program does first: descriptors 0, 1 and 2 that came closed are opened on /dev/null, so
// that no later file takes their number and receives console lines; a write to a pipe that has no
// reader fails instead of ending the program; the status of children that have ended is kept even
// if the parent had said that nobody wants it. Main thread, before any other thread exists.
#pragma once

namespace bonkora::platform {

void prepareStandardStreams();

}  // namespace bonkora::platform
