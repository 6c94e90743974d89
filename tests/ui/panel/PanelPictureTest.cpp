// Compares the panel with reference pictures that people have looked at. After a wanted change of
// looks, BONKORA_WRITE_REFERENCES=1 makes new ones; look at them before they are kept.
#include <QFontDatabase>
#include <QImage>
#include <QLibraryInfo>
#include <QScrollArea>
#include <QScrollBar>
#include <QVersionNumber>

#include "tests/support/Panel.h"
#include "ui/drawing/Colors.h"

using bonkora::Mode;
using bonkora::test::Panel;

namespace {

// A channel differs when it is this far off: less than the faintest line or tint stands out.
constexpr int channelTolerance = 8;
// Pixels that may differ, of a picture at scale 1. One shifted word moves more.
constexpr int pixelTolerance = 40;

int scale() {
    return static_cast<int>(qApp->devicePixelRatio());
}

int differingPixels(const QImage& one, const QImage& other) {
    if (one.size() != other.size()) {
        return one.width() * one.height();
    }
    int count = 0;
    for (int y = 0; y < one.height(); ++y) {
        for (int x = 0; x < one.width(); ++x) {
            const QRgb a = one.pixel(x, y);
            const QRgb b = other.pixel(x, y);
            count += std::abs(qRed(a) - qRed(b)) > channelTolerance ||
                     std::abs(qGreen(a) - qGreen(b)) > channelTolerance ||
                     std::abs(qBlue(a) - qBlue(b)) > channelTolerance;
        }
    }
    return count;
}

bool looksLike(const QImage& picture, const QImage& reference) {
    return differingPixels(picture, reference) <= pixelTolerance * scale() * scale();
}

// Newer Qts place letters that follow an emoji half a pixel further left.
QString referencePath(const QString& scene, bool isDark) {
    const bool isNew = QLibraryInfo::version() >= QVersionNumber(6, 8);
    return QString(BONKORA_REFERENCES "/qt-%1/%2-%3-%4x.png")
        .arg(isNew ? "6.8" : "6.4", scene, isDark ? "dark" : "light")
        .arg(scale());
}

// Brings the panel into a state that a person may see.
using Scene = void (*)(Panel&);

void ready(Panel& panel) {
    panel.open();
}

void listening(Panel& panel) {
    panel.store("[General]\nslapCounterTotal=1284\n");
    panel.controller->switchMode(Mode::custom);
    panel.open();
    panel.startDetector();
    panel.print("{\"type\":\"slap\",\"amplitude\":0.2345}\n");
}

void trouble(Panel& panel) {
    panel.controller->statusMessage =
        "Error: no accelerometer under /sys/bus/iio/devices and no microphone; waiting for one";
    panel.controller->switchMode(Mode::halo);
    panel.open();
}

void lowerHalf(Panel& panel) {
    panel.store("[General]\nslapCounterTotal=1284\n");
    panel.controller->slapCount = 42;
    panel.controller->fastMode = true;
    panel.open();
    QScrollBar* bar = panel.view->findChild<QScrollArea*>()->verticalScrollBar();
    bar->setValue(bar->maximum());
    panel.settle();
}

QImage pictureOf(Panel& panel, Scene scene, bool isDark) {
    panel.appearance.setDark(isDark);
    scene(panel);
    QImage picture = panel.view->grab().toImage().convertToFormat(QImage::Format_RGB32);
    picture.setDevicePixelRatio(1);
    return picture;
}

}  // namespace

Q_DECLARE_METATYPE(Scene)

class PanelPictureTest final : public QObject {
    Q_OBJECT

    static void addScenes() {
        QTest::addColumn<Scene>("scene");
        QTest::addColumn<bool>("isDark");
        const std::pair<const char*, Scene> scenes[] = {
            {"ready", ready}, {"listening", listening}, {"trouble", trouble}, {"lower", lowerHalf}};
        for (const auto& [name, scene] : scenes) {
            QTest::addRow("%s-light", name) << scene << false;
            QTest::addRow("%s-dark", name) << scene << true;
        }
    }

  private slots:
    void initTestCase() {
        for (const char* family : {"Hack", "Noto Color Emoji"}) {
            QVERIFY2(QFontDatabase::hasFamily(family), family);
        }
    }

    void thePanelLooksLikeItsReference_data() { addScenes(); }
    void thePanelLooksLikeItsReference() {
        QFETCH(Scene, scene);
        QFETCH(bool, isDark);
        Panel panel;
        const QImage picture = pictureOf(panel, scene, isDark);
        const QString name = QString(QTest::currentDataTag()).section('-', 0, 0);
        const QString path = referencePath(name, isDark);
        if (qEnvironmentVariableIsSet("BONKORA_WRITE_REFERENCES")) {
            QVERIFY(picture.save(path));
        }
        const QImage reference(path);
        QVERIFY2(!reference.isNull(), qPrintable(path));
        if (!looksLike(picture, reference)) {
            picture.save(QString("%1-%2x-now.png").arg(QTest::currentDataTag()).arg(scale()));
            QFAIL(qPrintable(QString("%1 pixels differ").arg(differingPixels(picture, reference))));
        }
    }

    // What the tolerance must not let through, on the very pictures it is used for.
    void aRowShiftedByAPixelAWrongColourAndACutTextAreSeen() {
        Panel panel;
        const QImage picture = pictureOf(panel, ready, false);
        const auto part = [](int x, int y, int width, int height) {
            return QRect(x * scale(), y * scale(), width * scale(), height * scale());
        };

        QImage shifted = picture;
        const QRect row = part(310 - 296, 201, 312, 31);
        QPainter(&shifted).drawImage(row.topLeft() + QPoint(0, scale()), picture, row);
        QVERIFY(!looksLike(shifted, picture));

        QImage recoloured = picture;
        QWidget* value = panel.label("750ms");
        const QRect text(value->mapTo(panel.view.get(), QPoint(0, 0)) * scale(),
                         value->size() * scale());
        for (int y = text.top(); y <= text.bottom(); ++y) {
            for (int x = text.left(); x <= text.right(); ++x) {
                const QColor color = picture.pixelColor(x, y);
                recoloured.setPixelColor(x, y, QColor(color.green(), color.red(), color.blue()));
            }
        }
        QVERIFY(!looksLike(recoloured, picture));

        QImage cut = picture;
        QWidget* title = panel.label("Bonkora");
        const QRect word(title->mapTo(panel.view.get(), QPoint(0, 0)) * scale(),
                         title->size() * scale());
        QPainter(&cut).fillRect(word.adjusted(word.width() - word.width() / 4, 0, 0, 0),
                                QColor(0xEC, 0xEC, 0xEC));
        QVERIFY(!looksLike(cut, picture));
    }

    // Too faint or too small for the tolerance of whole pictures.
    void theHighlightHasATenthOfTheAccentAndTheCornersHaveTheirRadii() {
        Panel panel;
        const QImage picture = pictureOf(panel, ready, false);
        const QPalette palette = panel.view->palette();
        const QColor window = palette.color(bonkora::colorRole::window);
        const auto at = [&](const QWidget* widget, qreal x, qreal y) {
            const QPointF place = widget->mapTo(panel.view.get(), QPoint(0, 0));
            return picture.pixelColor(((place + QPointF(x, y)) * scale()).toPoint());
        };
        QColor accent = bonkora::accentColor;
        accent.setAlphaF(0.1F);
        const QColor tint = bonkora::composited(accent, window);
        const QColor shown = at(panel.row("Pain"), 4, 10);
        QVERIFY2(std::abs(shown.red() - tint.red()) <= 1, qPrintable(shown.name()));
        QVERIFY2(std::abs(shown.blue() - tint.blue()) <= 1, qPrintable(shown.name()));

        // How much of the tint is left a pixel from either side of the row's corner: with a radius
        // of four pixels instead of six it is most.
        const QColor corner = at(panel.row("Pain"), 1, 1);
        const double left =
            static_cast<double>(window.red() - corner.red()) / (window.red() - shown.red());
        QVERIFY2(left < 0.4, qPrintable(QString::number(left)));

        // The diagonal leaves a round corner at 0.293 radii: 2.3 pixels from either side.
        const QWidget* card = panel.dot()->parentWidget();
        const QColor background = palette.color(bonkora::colorRole::controlBackground);
        QCOMPARE(at(card, 1, 1).rgb(), window.rgb());
        QCOMPARE(at(card, 3, 3).rgb(), background.rgb());
    }

    void aCardATintAndADividerThatAreMissingAreSeen_data() {
        QTest::addColumn<bool>("isDark");
        QTest::addRow("light") << false;
        QTest::addRow("dark") << true;
    }
    void aCardATintAndADividerThatAreMissingAreSeen() {
        QFETCH(bool, isDark);
        Panel panel;
        const QImage picture = pictureOf(panel, ready, isDark);
        const QPalette palette = panel.view->palette();
        const QColor window = palette.color(bonkora::colorRole::window);
        const QColor card = palette.color(bonkora::colorRole::controlBackground);
        const QWidget* row = panel.row("Pain");
        const QRgb tint = picture.pixel((row->mapTo(panel.view.get(), QPoint(4, 10)) * scale()));
        const QColor divider =
            bonkora::composited(palette.color(bonkora::colorRole::separator), window);
        for (const QRgb faint : {card.rgb(), tint, divider.rgb()}) {
            QImage without = picture;
            for (int y = 0; y < picture.height(); ++y) {
                for (int x = 0; x < picture.width(); ++x) {
                    if (picture.pixel(x, y) == faint) {
                        without.setPixelColor(x, y, window);
                    }
                }
            }
            QVERIFY2(!looksLike(without, picture), qPrintable(QColor(faint).name()));
        }
    }
};

QTEST_MAIN(PanelPictureTest)
#include "PanelPictureTest.moc"
