// BonkoraApp: the application: the one controller, the stored lifetime total, and its only scene.
// Starts nothing. Main thread.
#pragma once

#include <QCoreApplication>
#include <functional>
#include <memory>

#include "app/MenuBarScene.h"
#include "app/StateObject.h"
#include "bridge/SpankWrapper.h"
#include "ui/state/AppStorage.h"

namespace bonkora {

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
