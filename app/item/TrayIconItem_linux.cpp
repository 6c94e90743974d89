#include <QApplication>
#include <QEvent>
#include <QPixmap>
#include <QScreen>
#include <QWidget>

#include "app/item/TrayIconItem.h"
#include "ui/drawing/Colors.h"

namespace bonkora {

namespace {

constexpr int settleMilliseconds = 150;
// The class of the window that Qt makes for an icon in an XEmbed tray. It is private, and
// QSystemTrayIcon does not hand the window out (qtbase, src/widgets/util/qsystemtrayicon_x11.cpp).
constexpr char windowClass[] = "QSystemTrayIconSys";

QWidget* iconWindow() {
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        if (widget->inherits(windowClass)) {
            return widget;
        }
    }
    return nullptr;
}

}  // namespace

TrayWindow::TrayWindow() {
    settled.setSingleShot(true);
    settled.setInterval(settleMilliseconds);
    connect(&settled, &QTimer::timeout, this, &TrayWindow::embedded);
    qApp->installEventFilter(this);
}

bool TrayWindow::eventFilter(QObject* watched, QEvent* event) {
    const bool isLayout = event->type() == QEvent::Show || event->type() == QEvent::Resize ||
                          event->type() == QEvent::Move;
    if (isLayout && watched->inherits(windowClass)) {
        settled.start();
    }
    return false;
}

QColor TrayWindow::textColor() const {
    const QWidget* window = iconWindow();
    if (window == nullptr) {
        return Qt::white;
    }
    // The bar shows through at the window's corner.
    const QPoint corner = window->mapToGlobal(QPoint(window->width() - 1, 1));
    const QImage sample = window->screen()->grabWindow(0, corner.x(), corner.y(), 1, 1).toImage();
    const QColor bar = sample.isNull() ? QColor(Qt::black) : sample.pixelColor(0, 0);
    return contrastRatio(bar, Qt::white) > contrastRatio(bar, Qt::black) ? Qt::white : Qt::black;
}

}  // namespace bonkora
