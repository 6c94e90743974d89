// SliderValues: the panel's own copies of what the two sliders edit. The controller's settings
// follow only when a drag ends. Values; main thread.
#pragma once

namespace bonkora {

struct SliderValues {
    double cooldown = 750.0;  // milliseconds
    double sensitivity = 0.05;
};

}  // namespace bonkora
