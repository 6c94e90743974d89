// ApplicationAdaptor: the door on the session bus by which desktops and later starts open the
// panel. Main thread.
#pragma once

#include <QDBusAbstractAdaptor>
#include <QVariantMap>

namespace bonkora {

class ApplicationAdaptor final : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

  public:
    explicit ApplicationAdaptor(QObject& holder) : QDBusAbstractAdaptor(&holder) {}

  public slots:
    void Activate(const QVariantMap&) { emit activated(); }
    void Open(const QStringList&, const QVariantMap&) { emit activated(); }
    void ActivateAction(const QString&, const QVariantList&, const QVariantMap&) {
        emit activated();
    }

  signals:
    void activated();
};

}  // namespace bonkora
