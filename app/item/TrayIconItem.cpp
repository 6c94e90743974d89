#include "app/item/TrayIconItem.h"

#include "app/item/LabelIcon.h"

namespace bonkora {

namespace {

constexpr int guideHeight = 24;

}  // namespace

TrayIconItem::TrayIconItem() : color(window.textColor()) {
    connect(&icon, &QSystemTrayIcon::activated, this,
            [this] { emit clicked(geometry().center()); });
    connect(&window, &TrayWindow::embedded, this, [this] {
        if (const QColor suited = window.textColor(); suited != color) {
            color = suited;
            draw();
        }
        window.setWidth(LabelIconEngine::width(label, guideHeight));
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
    window.setWidth(LabelIconEngine::width(label, guideHeight));
}

void TrayIconItem::draw() {
    QIcon image(new LabelIconEngine(label, color));
    image.setIsMask(true);
    icon.setIcon(image);
}

}  // namespace bonkora
