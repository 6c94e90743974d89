#include "platform/ObservableObject.h"

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace bonkora::platform {
namespace {

struct Person : ObservableObject {
    Published<int> age{*this, 30};
    Published<std::string> name{*this, "Ada"};
};

TEST(ObservableObject, announcesBeforeItStores) {
    Person person;
    std::vector<int> seen;
    const auto subscription = person.objectWillChange.sink([&] { seen.push_back(person.age); });
    person.age = 31;
    EXPECT_EQ(seen, std::vector{30});
    EXPECT_EQ(person.age, 31);
}

TEST(ObservableObject, announcesAnEqualValueToo) {
    Person person;
    int announcements = 0;
    const auto subscription = person.objectWillChange.sink([&] { ++announcements; });
    person.age = 30;
    person.name = "Ada";
    EXPECT_EQ(announcements, 2);
}

TEST(ObservableObject, tellsObserversInTheOrderOfSubscription) {
    Person person;
    std::string order;
    const auto first = person.objectWillChange.sink([&] { order += 'a'; });
    const auto second = person.objectWillChange.sink([&] { order += 'b'; });
    person.age = 1;
    EXPECT_EQ(order, "ab");
}

TEST(ObservableObject, isSilentOnceTheSubscriptionHasEnded) {
    Person person;
    int announcements = 0;
    {
        const auto subscription = person.objectWillChange.sink([&] { ++announcements; });
        person.age = 1;
    }
    person.age = 2;
    EXPECT_EQ(announcements, 1);
}

TEST(ObservableObject, lettingGoDuringAnAnnouncementIsSafe) {
    Person person;
    int announcements = 0;
    std::optional<ObservableObjectPublisher::Subscription> own;
    std::optional<ObservableObjectPublisher::Subscription> next;
    own = person.objectWillChange.sink([&] {
        ++announcements;
        own.reset();
        next.reset();
    });
    next = person.objectWillChange.sink([&] { announcements += 100; });
    person.age = 1;
    person.age = 2;
    EXPECT_EQ(announcements, 1);
}

TEST(ObservableObject, oneThatSubscribesDuringAnAnnouncementHearsTheNext) {
    Person person;
    int heard = 0;
    std::optional<ObservableObjectPublisher::Subscription> late;
    const auto subscription = person.objectWillChange.sink([&] {
        if (!late) {
            late = person.objectWillChange.sink([&] { ++heard; });
        }
    });
    person.age = 1;
    EXPECT_EQ(heard, 0);
    person.age = 2;
    EXPECT_EQ(heard, 1);
}

TEST(ObservableObject, aSubscriptionMayOutliveItsObject) {
    std::optional<Person> person(std::in_place);
    int announcements = 0;
    auto subscription = person->objectWillChange.sink([&] { ++announcements; });
    person->age = 1;
    person.reset();
    subscription = {};
    EXPECT_EQ(announcements, 1);
}

TEST(ObservableObject, movingASubscriptionKeepsItAlive) {
    Person person;
    int announcements = 0;
    ObservableObjectPublisher::Subscription kept;
    {
        auto made = person.objectWillChange.sink([&] { ++announcements; });
        kept = std::move(made);
    }
    person.age = 1;
    EXPECT_EQ(announcements, 1);
}

TEST(ObservableObject, anAssignmentWhoseObserverDestroysTheObjectStoresNothing) {
    auto person = std::make_unique<Person>();
    const auto subscription = person->objectWillChange.sink([&] { person.reset(); });
    person->name = std::string(1000, 'x');  // an address sanitizer sees it stored in nothing
    EXPECT_EQ(person, nullptr);
}

TEST(ObservableObject, theAnnouncementTellsWhetherItsPublisherIsStillThere) {
    auto publisher = std::make_unique<ObservableObjectPublisher>();
    EXPECT_TRUE(publisher->send());
    const auto subscription = publisher->sink([&] { publisher.reset(); });
    EXPECT_FALSE(publisher->send());
}

}  // namespace
}  // namespace bonkora::platform
