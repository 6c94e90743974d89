// The baseline for start and memory: as little as a Qt program with a tray icon can be. With
// "--texts" it also shows a window of the panel's size that is full of plain labels, which show as
// many texts as the panel, in as many fonts: what any window with text costs, whoever draws it.
// With
// "--closed" it destroys that window again half a second later.
#include <QApplication>
#include <QFontDatabase>
#include <QIcon>
#include <QLabel>
#include <QPixmap>
#include <QSystemTrayIcon>
#include <QTimer>
#include <QVBoxLayout>
#include <QWidget>
#include <array>
#include <memory>

namespace {

void fillWithTexts(QWidget& window) {
    auto* column = new QVBoxLayout(&window);
    QFont fixed;
    fixed.setFamilies({"Hack", "Noto Sans Mono", "DejaVu Sans Mono"});
    const std::array symbols{"\U0001F44B", "\U0001F3B5", "\U0001F525", "\U0001F680"};
    for (std::size_t i = 0; i < 24; ++i) {
        const QString symbol = QString::fromUtf8(symbols[i / 6]);
        auto* label =
            new QLabel(i % 6 == 0 ? symbol : QString("Label number %1, as long as ours").arg(i));
        QFont font = i % 2 == 0 ? fixed : label->font();
        font.setPixelSize(10 + static_cast<int>(i % 5));
        font.setBold(i % 3 == 0);
        label->setFont(font);
        column->addWidget(label);
    }
}

}  // namespace

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
    if (mode == "--texts" || mode == "--closed") {
        window = std::make_unique<QWidget>();
        fillWithTexts(*window);
        window->setFixedSize(340, 520);
        window->show();
    }
    if (mode == "--closed") {
        QTimer::singleShot(500, &application, [&] { window.reset(); });
    }
    return QApplication::exec();
}
