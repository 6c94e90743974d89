// ObservableObject: something whose state others watch. Its publisher announces that a change is
// about to be stored; observers re-read the state afterwards, usually in the next turn of the loop.
// One thread only (the main one); an observer may subscribe or unsubscribe during an announcement.
#pragma once

#include <functional>
#include <memory>
#include <ostream>
#include <type_traits>
#include <utility>

namespace bonkora::platform {

class ObservableObjectPublisher {
    struct Observers;

  public:
    // Ends the subscription when destroyed. May outlive the publisher.
    class [[nodiscard]] Subscription {
      public:
        Subscription() = default;
        Subscription(Subscription&&) noexcept = default;
        Subscription& operator=(Subscription&& other) noexcept;
        Subscription(const Subscription&) = delete;
        Subscription& operator=(const Subscription&) = delete;
        ~Subscription();

      private:
        friend class ObservableObjectPublisher;
        Subscription(std::weak_ptr<Observers> observers, unsigned long long id);

        std::weak_ptr<Observers> observers;
        unsigned long long id = 0;
    };

    ObservableObjectPublisher();
    ~ObservableObjectPublisher();
    ObservableObjectPublisher(const ObservableObjectPublisher&) = delete;
    ObservableObjectPublisher& operator=(const ObservableObjectPublisher&) = delete;

    // Calls `observer` at every announcement until the subscription ends, in the order of
    // subscription. One that subscribes during an announcement hears the next.
    Subscription sink(std::function<void()> observer);

    // Announces a coming change. Called before the new value is stored. False when an observer has
    // destroyed the publisher: there is nothing left to store the value in.
    bool send();

  private:
    std::shared_ptr<Observers> observers;
};

class ObservableObject {
  public:
    ObservableObjectPublisher objectWillChange;

  protected:
    ObservableObject() = default;
    ~ObservableObject() = default;
};

// A property of an ObservableObject that reads like a plain field. Every assignment, also of an
// equal value, first announces on the owner and then stores.
template <typename T>
class Published {
  public:
    Published(ObservableObject& theOwner, T initial) : owner(theOwner), value(std::move(initial)) {}
    Published(const Published&) = delete;
    Published& operator=(const Published&) = delete;
    ~Published() = default;

    Published& operator=(T newValue) {
        if (owner.objectWillChange.send()) {
            value = std::move(newValue);
        }
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
