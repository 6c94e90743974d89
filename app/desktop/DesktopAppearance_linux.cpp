#include "app/desktop/AppearancePortal.h"
#include "app/desktop/DesktopAppearance.h"
#include "app/desktop/SessionBus.h"

namespace bonkora {

std::unique_ptr<QObject> DesktopAppearance::makeSource(DesktopAppearance& receiver) {
    if (!sessionBus::isAvailable()) {
        return nullptr;
    }
    auto portal = std::make_unique<AppearancePortal>();
    connect(portal.get(), &AppearancePortal::told, &receiver, &DesktopAppearance::prefer);
    return portal;
}

}  // namespace bonkora
