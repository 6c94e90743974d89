#include "app/desktop/SingleInstance.h"

namespace bonkora {

// The system itself brings a running application to the front.
struct SingleInstance::Hold {
    InstanceLock lock;
};

SingleInstance::SingleInstance() : hold(std::make_unique<Hold>()), first(hold->lock.take()) {}

SingleInstance::~SingleInstance() = default;

bool SingleInstance::activateFirst() {
    return false;
}

}  // namespace bonkora
