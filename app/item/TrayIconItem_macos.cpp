#include "app/item/TrayIconItem.h"

namespace bonkora {

TrayWindow::TrayWindow() = default;

// The platform's items are square.
void TrayWindow::setWidth(int) {}

QColor TrayWindow::textColor() const {
    return Qt::black;
}

bool TrayWindow::eventFilter(QObject*, QEvent*) {
    return false;
}

}  // namespace bonkora
