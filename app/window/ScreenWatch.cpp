#include "app/window/ScreenWatch.h"

#include <QGuiApplication>
#include <QScreen>

namespace bonkora {

namespace {

// Longer than what window managers and bars were seen to take to follow their screen.
constexpr int restMilliseconds = 300;

}  // namespace

ScreenWatch::ScreenWatch() {
    rest.setSingleShot(true);
    rest.setInterval(restMilliseconds);
    connect(&rest, &QTimer::timeout, this, &ScreenWatch::changed);
    for (QScreen* screen : QGuiApplication::screens()) {
        watch(screen);
    }
    const auto wait = qOverload<>(&QTimer::start);
    connect(qGuiApp, &QGuiApplication::screenAdded, this, &ScreenWatch::watch);
    connect(qGuiApp, &QGuiApplication::screenAdded, &rest, wait);
    connect(qGuiApp, &QGuiApplication::screenRemoved, &rest, wait);
}

void ScreenWatch::watch(QScreen* screen) {
    const auto wait = qOverload<>(&QTimer::start);
    connect(screen, &QScreen::geometryChanged, &rest, wait);
    connect(screen, &QScreen::availableGeometryChanged, &rest, wait);
}

}  // namespace bonkora
