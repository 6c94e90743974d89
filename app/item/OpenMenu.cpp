#include "app/item/OpenMenu.h"

namespace bonkora {

namespace {

constexpr int rootId = 0;
constexpr int openId = 1;
constexpr uint revision = 1;

}  // namespace

OpenMenu::OpenMenu(QObject& holder, MenuBarItem& theItem)
    : QDBusAbstractAdaptor(&holder), item(theItem) {}

QVariantMap OpenMenu::propertiesOf(int id) const {
    return id == openId ? QVariantMap{{"label", tr("Open")}, {"enabled", true}, {"visible", true}}
                        : QVariantMap{{"children-display", "submenu"}};
}

uint OpenMenu::GetLayout(int parent, int depth, const QStringList&, MenuLayout& layout) {
    layout = {parent, propertiesOf(parent), {}};
    if (parent == rootId && depth != 0) {
        layout.children << QVariant::fromValue(MenuLayout{openId, propertiesOf(openId), {}});
    }
    return revision;
}

MenuPropertiesList OpenMenu::GetGroupProperties(const QList<int>& ids, const QStringList&) {
    MenuPropertiesList list;
    for (const int id : ids.isEmpty() ? QList<int>{rootId, openId} : ids) {
        list.append({id, propertiesOf(id)});
    }
    return list;
}

QDBusVariant OpenMenu::GetProperty(int id, const QString& name) {
    return QDBusVariant(propertiesOf(id).value(name, QString()));
}

void OpenMenu::Event(int id, const QString& kind, const QDBusVariant&, uint) {
    if (id == openId && kind == "clicked") {
        emit item.openAsked();
    }
}

QList<int> OpenMenu::EventGroup(const MenuEvents& events) {
    for (const MenuEvent& event : events) {
        Event(event.id, event.kind, event.data, event.time);
    }
    return {};
}

bool OpenMenu::AboutToShow(int) {
    return false;
}

QList<int> OpenMenu::AboutToShowGroup(const QList<int>&, QList<int>& errors) {
    errors.clear();
    return {};
}

}  // namespace bonkora
