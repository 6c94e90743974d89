// DesktopAppearance: keeps an Appearance equal to the desktop's, also while running, and gives the
// same appearance to the windows that the toolkit draws: menus, tool tips, dialogs. What the
// desktop says of itself counts first, then the colours it gives to windows.
#pragma once

#include <QObject>
#include <QPalette>
#include <QSet>
#include <QString>
#include <memory>
#include <optional>

#include "ui/state/Appearance.h"

namespace bonkora {

class DesktopAppearance final : public QObject {
    Q_OBJECT

  public:
    // What the toolkit's windows look like where the desktop gives them other colours than it says.
    using PaletteFor = QPalette (*)(bool isDark);

    // `appearance` outlives this.
    DesktopAppearance(Appearance& appearance, PaletteFor paletteFor);

    // What the desktop says; nothing where it has no preference.
    void prefer(std::optional<bool> isDark);
    // One of the desktop's settings asks for less motion, or does so no more. One is enough.
    void reduceMotion(const QString& setting, bool isReduced);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    // Where the desktop can say something; null otherwise. One implementation for each system.
    static std::unique_ptr<QObject> makeSource(DesktopAppearance& receiver);

    void decide();

    Appearance& appearance;
    const PaletteFor paletteFor;
    std::optional<bool> preference;
    QSet<QString> motionReducers;
    bool isDeciding = false;
    std::unique_ptr<QObject> source;
};

}  // namespace bonkora
