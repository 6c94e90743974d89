#include "app/item/TrayIconItem.h"

#include "app/item/LabelIcon.h"

namespace bonkora {

TrayIconItem::TrayIconItem() : color(window.textColor()) {
    connect(&icon, &QSystemTrayIcon::activated, this,
            [this] { emit clicked(geometry().center()); });
    connect(&window, &TrayWindow::embedded, this, [this] {
        if (const QColor suited = window.textColor(); suited != color) {
            color = suited;
            draw();
        }
    });
}

void TrayIconItem::display(const MenuBarLabel& newLabel) {
    if (newLabel == label) {
        return;
    }
    label = newLabel;
    draw();
    icon.setToolTip(label.title);
    icon.show();
}

void TrayIconItem::draw() {
    QIcon image(new LabelIconEngine(label.symbol, color));
    image.setIsMask(true);
    icon.setIcon(image);
}

}  // namespace bonkora
