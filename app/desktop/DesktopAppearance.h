// DesktopAppearance: keeps an Appearance equal to the desktop's, also while running. What the
// desktop says of itself counts first, then the colours it gives to windows. Main thread.
#pragma once

#include <QObject>
#include <memory>
#include <optional>

#include "ui/state/Appearance.h"

namespace bonkora {

class DesktopAppearance final : public QObject {
    Q_OBJECT

  public:
    // `appearance` outlives this.
    explicit DesktopAppearance(Appearance& appearance);

    // What the desktop says; nothing where it has no preference.
    void prefer(std::optional<bool> isDark);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    // Where the desktop can say something; null otherwise. One implementation for each system.
    static std::unique_ptr<QObject> makeSource(DesktopAppearance& receiver);

    void decide();

    Appearance& appearance;
    std::optional<bool> preference;
    std::unique_ptr<QObject> source;
};

}  // namespace bonkora
