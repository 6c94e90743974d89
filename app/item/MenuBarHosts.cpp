#include "app/item/MenuBarHosts.h"

namespace bonkora {

void MenuBarHosts::set(Kind kind) {
    if (kind != current) {
        current = kind;
        emit changed();
    }
}

}  // namespace bonkora
