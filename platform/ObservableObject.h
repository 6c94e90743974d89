// ObservableObject: something whose state others watch. Its publisher announces that a change is
// about to be stored; observers re-read the state afterwards, usually in the next turn of the loop.
// One thread only (the main one); an observer may subscribe or unsubscribe during an announcement.
#pragma once

#include <functional>
#include <memory>

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

    // Announces a coming change. Called before the new value is stored.
    void send();

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

}  // namespace bonkora::platform
