// What assistive technology is told about the painted controls: role, name, description, state,
// value and action. Main thread.
#pragma once

namespace bonkora {

// Once, before the first panel is made.
void installAccessibility();

}  // namespace bonkora
