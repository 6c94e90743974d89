// AppearancePortal: what the desktop portal says about light and dark, at first and whenever it
// changes. Silent where there is no portal. Main thread.
#pragma once

#include <QDBusVariant>
#include <QObject>
#include <optional>

namespace bonkora {

class AppearancePortal final : public QObject {
    Q_OBJECT

  public:
    AppearancePortal();

  signals:
    // Nothing for "no preference".
    void told(std::optional<bool> isDark);

  private slots:
    void settingChanged(const QString& space, const QString& key, const QDBusVariant& value);

  private:
    void tell(const QVariant& value);
};

}  // namespace bonkora
