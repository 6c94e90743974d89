#include "app/Application.h"

#include <QApplication>
#include <cstdio>
#include <memory>

#include "app/BonkoraApp.h"
#include "app/MenuBarExtra.h"
#include "app/Messages.h"
#include "app/QtMainQueue.h"
#include "app/Version.h"
#include "app/desktop/DesktopAppearance.h"
#include "app/desktop/SignalWatch.h"
#include "app/desktop/SingleInstance.h"
#include "app/desktop/WindowSystem.h"
#include "app/window/LayerShell.h"
#include "platform/Bundle.h"
#include "platform/Platform.h"
#include "ui/controls/Accessibility.h"
#include "ui/drawing/Colors.h"

namespace bonkora {

namespace {

void nameApplication() {
    QCoreApplication::setApplicationName("Bonkora");
    QCoreApplication::setApplicationVersion(version);
    QGuiApplication::setApplicationDisplayName("Bonkora");
    QGuiApplication::setDesktopFileName("org.bonkora.Bonkora");
    QGuiApplication::setQuitOnLastWindowClosed(false);
    QApplication::setStyle("Fusion");
}

int runScene(const platform::Bundle& bundle, SingleInstance& instance) {
    const auto mainQueue = std::make_shared<QtMainQueue>();
    const SignalWatch signalWatch;
    QObject::connect(&signalWatch, &SignalWatch::terminationRequested, qApp,
                     &QCoreApplication::quit);

    Appearance appearance;
    const DesktopAppearance desktopAppearance(appearance, applicationPalette);
    installAccessibility();

    BonkoraApp app(
        [&] { return SpankWrapper::create(platform::Platform::real(mainQueue, bundle)); });
    MenuBarExtra extra(app.body(), {mainQueue, [] { QCoreApplication::quit(); }, appearance});
    QObject::connect(&instance, &SingleInstance::activated, &extra, &MenuBarExtra::open);

    const int status = QCoreApplication::exec();
    mainQueue->close();
    return status;
}

}  // namespace

int runApplication(int argumentCount, char** arguments) {
    sendMessagesToStandardError();
    const auto bundle = platform::Bundle::main(argumentCount, arguments);
    if (const auto problem = windowSystem::prepare()) {
        std::fprintf(stderr, "bonkora: %s\n", problem->c_str());
        return 1;
    }
    layerShell::prepare();
    // Qt sees none of the arguments: the application takes none of its options.
    int programNameOnly = 1;
    const QApplication application(programNameOnly, arguments);
    nameApplication();

    SingleInstance instance;
    if (!instance.isFirst()) {
        if (!SingleInstance::activateFirst()) {
            qWarning("bonkora: is running already");
        }
        return 0;
    }
    return runScene(bundle, instance);
}

}  // namespace bonkora
