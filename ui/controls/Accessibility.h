// Describes the painted controls to assistive technology: role, name, description, state, value
// and action.
#pragma once

namespace bonkora {

// Call once, before the first panel is made.
void installAccessibility();

}  // namespace bonkora
