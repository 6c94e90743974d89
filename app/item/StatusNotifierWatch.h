// StatusNotifierWatch: whether a bar on the session bus shows status notifier items, and when that
// changes. Main thread.
#pragma once

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QObject>
#include <optional>

namespace bonkora {

class StatusNotifierWatch final : public QObject {
    Q_OBJECT

  public:
    // Name of the service, and of the interface, with which items and bars register.
    static const QString serviceName;
    static const QString objectPath;

    StatusNotifierWatch();

    // Nothing as long as the answer has not come.
    std::optional<bool> isHostThere() const { return answer; }

  signals:
    void changed();

  private slots:
    void ask();

  private:
    void set(bool isThere);

    QDBusConnection bus;
    QDBusServiceWatcher owner;
    std::optional<bool> answer;
};

}  // namespace bonkora
