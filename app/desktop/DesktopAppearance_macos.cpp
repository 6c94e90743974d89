#include "app/desktop/DesktopAppearance.h"

namespace bonkora {

// The palette follows the system there.
std::unique_ptr<QObject> DesktopAppearance::makeSource(DesktopAppearance&) {
    return nullptr;
}

}  // namespace bonkora
