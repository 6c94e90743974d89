#include "app/desktop/DesktopAppearance.h"

#include <QEvent>
#include <QGuiApplication>
#include <QPalette>

namespace bonkora {

DesktopAppearance::DesktopAppearance(Appearance& theAppearance)
    : appearance(theAppearance), source(makeSource(*this)) {
    qGuiApp->installEventFilter(this);
    decide();
}

void DesktopAppearance::prefer(std::optional<bool> isDark) {
    preference = isDark;
    decide();
}

bool DesktopAppearance::eventFilter(QObject* watched, QEvent* event) {
    if (watched == qGuiApp && event->type() == QEvent::ApplicationPaletteChange) {
        decide();
    }
    return false;
}

void DesktopAppearance::decide() {
    const QPalette palette = QGuiApplication::palette();
    const bool hasDarkColors = palette.color(QPalette::WindowText).lightness() >
                               palette.color(QPalette::Window).lightness();
    appearance.setDark(preference.value_or(hasDarkColors));
}

}  // namespace bonkora
