// Published<T>: a property of an ObservableObject that reads like a plain field. Every assignment,
// also of an equal value, first announces on the owner and then stores. The owner's thread only.
#pragma once

#include <ostream>
#include <type_traits>
#include <utility>

#include "platform/ObservableObject.h"

namespace bonkora::platform {

template <typename T>
class Published {
  public:
    Published(ObservableObject& theOwner, T initial) : owner(theOwner), value(std::move(initial)) {}
    Published(const Published&) = delete;
    Published& operator=(const Published&) = delete;
    ~Published() = default;

    Published& operator=(T newValue) {
        owner.objectWillChange.send();
        value = std::move(newValue);
        return *this;
    }

    const T& get() const { return value; }
    operator const T&() const { return value; }  // NOLINT(google-explicit-constructor)

    friend bool operator==(const Published& left, const T& right) { return left.value == right; }
    // A number compares with any other, as a plain field would.
    template <typename U>
    requires(std::is_arithmetic_v<T>&& std::is_arithmetic_v<U>) friend bool operator==(
        const Published& left, U right) {
        return left.value == right;
    }
    friend std::ostream& operator<<(std::ostream& out, const Published& property) requires
        requires(std::ostream& o, const T& v) {
        o << v;
    }
    { return out << property.value; }

  private:
    ObservableObject& owner;
    T value;
};

}  // namespace bonkora::platform
