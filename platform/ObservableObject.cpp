#include "platform/ObservableObject.h"

#include <map>
#include <utility>

namespace bonkora::platform {

struct ObservableObjectPublisher::Observers {
    // Shared, so that an observer that ends its own subscription outlives its call.
    std::map<unsigned long long, std::shared_ptr<std::function<void()>>> byId;
    unsigned long long lastId = 0;
    bool publisherIsGone = false;
};

ObservableObjectPublisher::Subscription::Subscription(std::weak_ptr<Observers> theObservers,
                                                      unsigned long long theId)
    : observers(std::move(theObservers)), id(theId) {}

ObservableObjectPublisher::Subscription& ObservableObjectPublisher::Subscription::operator=(
    Subscription&& other) noexcept {
    std::swap(observers, other.observers);
    std::swap(id, other.id);
    return *this;
}

ObservableObjectPublisher::Subscription::~Subscription() {
    if (const auto alive = observers.lock()) {
        alive->byId.erase(id);
    }
}

ObservableObjectPublisher::ObservableObjectPublisher() : observers(std::make_shared<Observers>()) {}
ObservableObjectPublisher::~ObservableObjectPublisher() {
    observers->publisherIsGone = true;
}

ObservableObjectPublisher::Subscription ObservableObjectPublisher::sink(
    std::function<void()> observer) {
    const auto id = ++observers->lastId;
    observers->byId.emplace(id, std::make_shared<std::function<void()>>(std::move(observer)));
    return {observers, id};
}

bool ObservableObjectPublisher::send() {
    const auto alive = observers;  // an observer may destroy the publisher
    const auto last = alive->lastId;
    for (auto next = alive->byId.begin(); next != alive->byId.end() && next->first <= last;) {
        const auto id = next->first;
        const auto observer = next->second;
        (*observer)();
        next = alive->byId.upper_bound(id);
    }
    return !alive->publisherIsGone;
}

}  // namespace bonkora::platform
