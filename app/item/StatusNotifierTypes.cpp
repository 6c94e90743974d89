#include "app/item/StatusNotifierTypes.h"

#include <QDBusMetaType>

namespace bonkora {

namespace {

template <typename... Fields>
QDBusArgument& write(QDBusArgument& out, const Fields&... fields) {
    out.beginStructure();
    (out << ... << fields);
    out.endStructure();
    return out;
}

template <typename... Fields>
const QDBusArgument& read(const QDBusArgument& in, Fields&... fields) {
    in.beginStructure();
    (in >> ... >> fields);
    in.endStructure();
    return in;
}

}  // namespace

QDBusArgument& operator<<(QDBusArgument& out, const IconPixmap& icon) {
    return write(out, icon.width, icon.height, icon.pixels);
}
const QDBusArgument& operator>>(const QDBusArgument& in, IconPixmap& icon) {
    return read(in, icon.width, icon.height, icon.pixels);
}

QDBusArgument& operator<<(QDBusArgument& out, const ToolTip& toolTip) {
    return write(out, toolTip.iconName, toolTip.icon, toolTip.title, toolTip.text);
}
const QDBusArgument& operator>>(const QDBusArgument& in, ToolTip& toolTip) {
    return read(in, toolTip.iconName, toolTip.icon, toolTip.title, toolTip.text);
}

QDBusArgument& operator<<(QDBusArgument& out, const MenuLayout& layout) {
    out.beginStructure();
    out << layout.id << layout.properties;
    out.beginArray(qMetaTypeId<QDBusVariant>());
    for (const QVariant& child : layout.children) {
        out << QDBusVariant(child);
    }
    out.endArray();
    out.endStructure();
    return out;
}
const QDBusArgument& operator>>(const QDBusArgument& in, MenuLayout& layout) {
    return read(in, layout.id, layout.properties, layout.children);
}

QDBusArgument& operator<<(QDBusArgument& out, const MenuProperties& entry) {
    return write(out, entry.id, entry.properties);
}
const QDBusArgument& operator>>(const QDBusArgument& in, MenuProperties& entry) {
    return read(in, entry.id, entry.properties);
}

QDBusArgument& operator<<(QDBusArgument& out, const MenuEvent& event) {
    return write(out, event.id, event.kind, event.data, event.time);
}
const QDBusArgument& operator>>(const QDBusArgument& in, MenuEvent& event) {
    return read(in, event.id, event.kind, event.data, event.time);
}

void registerStatusNotifierTypes() {
    qDBusRegisterMetaType<IconPixmap>();
    qDBusRegisterMetaType<IconPixmaps>();
    qDBusRegisterMetaType<ToolTip>();
    qDBusRegisterMetaType<MenuLayout>();
    qDBusRegisterMetaType<MenuProperties>();
    qDBusRegisterMetaType<MenuPropertiesList>();
    qDBusRegisterMetaType<MenuEvent>();
    qDBusRegisterMetaType<MenuEvents>();
}

}  // namespace bonkora
