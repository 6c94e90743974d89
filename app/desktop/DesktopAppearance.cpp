#include "app/desktop/DesktopAppearance.h"

#include <QApplication>
#include <QEvent>
#include <QToolTip>

namespace bonkora {

namespace {

bool isDarkPalette(const QPalette& palette) {
    return palette.color(QPalette::WindowText).lightness() >
           palette.color(QPalette::Window).lightness();
}

}  // namespace

DesktopAppearance::DesktopAppearance(Appearance& theAppearance, PaletteFor thePaletteFor)
    : appearance(theAppearance), paletteFor(thePaletteFor), source(makeSource(*this)) {
    qGuiApp->installEventFilter(this);
    decide();
}

void DesktopAppearance::prefer(std::optional<bool> isDark) {
    preference = isDark;
    decide();
}

void DesktopAppearance::reduceMotion(const QString& setting, bool isReduced) {
    if (isReduced) {
        motionReducers.insert(setting);
    } else {
        motionReducers.remove(setting);
    }
    appearance.setMotionReduced(!motionReducers.isEmpty());
}

bool DesktopAppearance::eventFilter(QObject* watched, QEvent* event) {
    if (watched == qGuiApp && event->type() == QEvent::ApplicationPaletteChange && !isDeciding) {
        decide();
    }
    return false;
}

void DesktopAppearance::decide() {
    isDeciding = true;  // changing the palette asks again
    QApplication::setPalette(QPalette());
    const bool hasDarkColors = isDarkPalette(QApplication::palette());
    const bool isDark = preference.value_or(hasDarkColors);
    if (isDark != hasDarkColors) {
        QApplication::setPalette(paletteFor(isDark));
    }
    QToolTip::setPalette(QApplication::palette("QTipLabel"));
    appearance.setDark(isDark);
    isDeciding = false;
}

}  // namespace bonkora
