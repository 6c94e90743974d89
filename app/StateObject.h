// StateObject: the one object of its kind, made when it is first asked for and kept from then on.
// Main thread.
#pragma once

#include <functional>
#include <memory>
#include <utility>

namespace bonkora {

template <typename T>
class StateObject {
  public:
    explicit StateObject(std::function<std::shared_ptr<T>()> theMake) : make(std::move(theMake)) {}

    T& get() {
        if (!object) {
            object = make();
        }
        return *object;
    }

  private:
    const std::function<std::shared_ptr<T>()> make;
    std::shared_ptr<T> object;
};

}  // namespace bonkora
