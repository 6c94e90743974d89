#include "app/item/TrayIconItem.h"

namespace bonkora {

TrayWindow::TrayWindow() = default;

QColor TrayWindow::textColor() const {
    return Qt::black;
}

bool TrayWindow::eventFilter(QObject*, QEvent*) {
    return false;
}

}  // namespace bonkora
