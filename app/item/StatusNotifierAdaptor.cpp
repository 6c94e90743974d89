#include "app/item/StatusNotifierAdaptor.h"

#include <QtEndian>

#include "app/item/LabelIcon.h"

namespace bonkora {

namespace {

constexpr int iconSizes[] = {22, 24, 32, 48};

IconPixmap pixmapOf(const QImage& drawing) {
    QImage image = drawing.convertToFormat(QImage::Format_ARGB32);
    IconPixmap icon{image.width(), image.height(), {}};
    icon.pixels.resize(image.sizeInBytes());
    qToBigEndian<quint32>(image.constBits(), image.sizeInBytes() / 4, icon.pixels.data());
    return icon;
}

}  // namespace

StatusNotifierAdaptor::StatusNotifierAdaptor(MenuBarItem& theItem)
    : QDBusAbstractAdaptor(&theItem), item(theItem) {
    registerStatusNotifierTypes();
}

void StatusNotifierAdaptor::show(const MenuBarLabel& newLabel) {
    const MenuBarLabel old = std::exchange(label, newLabel);
    if (label.symbol != old.symbol) {
        emit NewIcon();
    }
    if (label.title != old.title) {
        emit NewTitle();
        emit NewToolTip();
        emit XAyatanaNewLabel(ayatanaLabel(), ayatanaLabel());
    }
}

IconPixmaps StatusNotifierAdaptor::iconPixmap() const {
    IconPixmaps icons;
    for (const int size : iconSizes) {
        icons.append(pixmapOf(labelIcon::outlined(label.symbol, size)));
    }
    return icons;
}

QString StatusNotifierAdaptor::ayatanaLabel() const {
    // There the label takes the icon's place.
    const bool replacesIcon = qEnvironmentVariable("XDG_CURRENT_DESKTOP").contains("MATE");
    return replacesIcon ? QStringLiteral("✋ ") + label.title : label.title;
}

void StatusNotifierAdaptor::Activate(int x, int y) {
    emit item.clicked({x, y});
}

void StatusNotifierAdaptor::SecondaryActivate(int x, int y) {
    emit item.clicked({x, y});
}

void StatusNotifierAdaptor::ContextMenu(int x, int y) {
    emit item.clicked({x, y});
}

void StatusNotifierAdaptor::Scroll(int, const QString&) {}

}  // namespace bonkora
