// The baseline for start and memory: as little as a Qt program with a tray icon can be. With
// "--window" it also shows an empty window of the panel's size; with "--closed" it destroys that
// window again half a second later.
#include <QApplication>
#include <QIcon>
#include <QPixmap>
#include <QSystemTrayIcon>
#include <QTimer>
#include <QWidget>
#include <memory>

int main(int argumentCount, char** arguments) {
    QApplication application(argumentCount, arguments);
    QApplication::setQuitOnLastWindowClosed(false);
    QPixmap pixmap(22, 22);
    pixmap.fill(Qt::black);
    QSystemTrayIcon item((QIcon(pixmap)));
    item.setToolTip("Bare");
    item.show();

    const QString mode = QApplication::arguments().value(1);
    std::unique_ptr<QWidget> window;
    if (mode == "--window" || mode == "--closed") {
        window = std::make_unique<QWidget>();
        window->setFixedSize(340, 520);
        window->show();
    }
    if (mode == "--closed") {
        QTimer::singleShot(500, &application, [&] { window.reset(); });
    }
    return QApplication::exec();
}
