// BonkoraApp: the application: the one controller, the stored lifetime total, and its only scene.
// Starts nothing.
#pragma once

#include <QCoreApplication>
#include <functional>
#include <memory>
#include <utility>

#include "app/MenuBarScene.h"
#include "bridge/SpankWrapper.h"
#include "ui/state/AppStorage.h"

namespace bonkora {

// The one object of its kind: made when it is first asked for, and kept from then on.
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

class BonkoraApp {
    Q_DECLARE_TR_FUNCTIONS(BonkoraApp)

  public:
    // `makeController` is called by the first body() and never again.
    explicit BonkoraApp(std::function<std::shared_ptr<SpankWrapper>()> makeController);

    // Refers to this object, which outlives the scene.
    MenuBarScene body();

  private:
    MenuBarLabel label();

    StateObject<SpankWrapper> spankWrapper;
    AppStorage slapCounterTotal{"slapCounterTotal", 0};
};

}  // namespace bonkora
