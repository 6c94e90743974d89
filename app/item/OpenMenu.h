// OpenMenu: the item's menu on the session bus: the one entry "Open", for bars that open an item
// only by a menu. Everything else is the panel's.
#pragma once

#include <QDBusAbstractAdaptor>
#include <QDBusVariant>

#include "app/item/MenuBarItem.h"
#include "app/item/StatusNotifierTypes.h"

namespace bonkora {

class OpenMenu final : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "com.canonical.dbusmenu")
    Q_PROPERTY(uint Version READ version CONSTANT)
    Q_PROPERTY(QString Status READ status CONSTANT)
    Q_PROPERTY(QString TextDirection READ textDirection CONSTANT)
    Q_PROPERTY(QStringList IconThemePath READ iconThemePath CONSTANT)

  public:
    // `holder` is registered at the menu's path; a press asks `item` to open.
    OpenMenu(QObject& holder, MenuBarItem& item);

    uint version() const { return 2; }
    QString status() const { return "normal"; }
    QString textDirection() const { return "ltr"; }
    QStringList iconThemePath() const { return {}; }

  public slots:
    uint GetLayout(int parent, int depth, const QStringList& properties,
                   bonkora::MenuLayout& layout);
    bonkora::MenuPropertiesList GetGroupProperties(const QList<int>& ids,
                                                   const QStringList& properties);
    QDBusVariant GetProperty(int id, const QString& name);
    void Event(int id, const QString& kind, const QDBusVariant& data, uint time);
    QList<int> EventGroup(const bonkora::MenuEvents& events);
    bool AboutToShow(int id);
    QList<int> AboutToShowGroup(const QList<int>& ids, QList<int>& errors);

  signals:
    void LayoutUpdated(uint revision, int parent);
    void ItemsPropertiesUpdated(const bonkora::MenuPropertiesList& updated,
                                const bonkora::MenuPropertiesList& removed);

  private:
    QVariantMap propertiesOf(int id) const;

    MenuBarItem& item;
};

}  // namespace bonkora
