// Appearance: whether the desktop is light or dark.
#pragma once

#include <QObject>

namespace bonkora {

class Appearance final : public QObject {
    Q_OBJECT

  public:
    explicit Appearance(bool isDark = false) : dark(isDark) {}

    bool isDark() const { return dark; }
    void setDark(bool isDark) {
        if (isDark != dark) {
            dark = isDark;
            emit changed();
        }
    }

  signals:
    void changed();

  private:
    bool dark;
};

}  // namespace bonkora
