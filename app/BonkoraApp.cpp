#include "app/BonkoraApp.h"

#include <utility>

#include "ui/panel/MenuBarContentView.h"

namespace bonkora {

namespace {

constexpr QSize panelSize(340, 520);

}  // namespace

BonkoraApp::BonkoraApp(std::function<std::shared_ptr<SpankWrapper>()> makeController)
    : spankWrapper(std::move(makeController)) {}

MenuBarScene BonkoraApp::body() {
    SpankWrapper& controller = spankWrapper.get();
    return {.content =
                [&controller](const PanelEnvironment& environment) {
                    return std::make_unique<MenuBarContentView>(controller, environment);
                },
            .contentSize = panelSize,
            .label = [this] { return label(); },
            .observed = {&controller, &slapCounterTotal}};
}

MenuBarLabel BonkoraApp::label() {
    // The lifetime total, not the session's count: the same figure as in the stats.
    const QString state = spankWrapper.get().isRunning ? QString::number(slapCounterTotal.get())
                                                       : QStringLiteral("OFF");
    return {Symbol::handRaisedFill, tr("Bonkora %1").arg(state)};
}

}  // namespace bonkora
