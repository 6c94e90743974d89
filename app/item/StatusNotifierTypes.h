// The structures that status notifier items send over the session bus. Values; any thread.
#pragma once

#include <QByteArray>
#include <QDBusArgument>
#include <QList>
#include <QMetaType>
#include <QString>

namespace bonkora {

// Of one size; `pixels` are ARGB, four bytes each, most significant first.
struct IconPixmap {
    int width = 0;
    int height = 0;
    QByteArray pixels;
};
using IconPixmaps = QList<IconPixmap>;

struct ToolTip {
    QString iconName;
    IconPixmaps icon;
    QString title;
    QString text;
};

QDBusArgument& operator<<(QDBusArgument& out, const IconPixmap& icon);
const QDBusArgument& operator>>(const QDBusArgument& in, IconPixmap& icon);
QDBusArgument& operator<<(QDBusArgument& out, const ToolTip& toolTip);
const QDBusArgument& operator>>(const QDBusArgument& in, ToolTip& toolTip);

// One entry of a menu: (ia{sv}av).
struct MenuLayout {
    int id = 0;
    QVariantMap properties;
    QVariantList children;  // each a MenuLayout
};
// One entry's properties: (ia{sv}).
struct MenuProperties {
    int id = 0;
    QVariantMap properties;
};
using MenuPropertiesList = QList<MenuProperties>;
// One event of many: (isvu).
struct MenuEvent {
    int id = 0;
    QString kind;
    QDBusVariant data;
    uint time = 0;
};
using MenuEvents = QList<MenuEvent>;

QDBusArgument& operator<<(QDBusArgument& out, const MenuLayout& layout);
const QDBusArgument& operator>>(const QDBusArgument& in, MenuLayout& layout);
QDBusArgument& operator<<(QDBusArgument& out, const MenuProperties& entry);
const QDBusArgument& operator>>(const QDBusArgument& in, MenuProperties& entry);
QDBusArgument& operator<<(QDBusArgument& out, const MenuEvent& event);
const QDBusArgument& operator>>(const QDBusArgument& in, MenuEvent& event);

// Registers these types with QtDBus. May be called more than once.
void registerStatusNotifierTypes();

}  // namespace bonkora

Q_DECLARE_METATYPE(bonkora::IconPixmap)
Q_DECLARE_METATYPE(bonkora::ToolTip)
Q_DECLARE_METATYPE(bonkora::MenuLayout)
Q_DECLARE_METATYPE(bonkora::MenuProperties)
Q_DECLARE_METATYPE(bonkora::MenuEvent)
