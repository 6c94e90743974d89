#include "app/desktop/DesktopAppearance.h"

#include <QFileDialog>
#include <QLineEdit>
#include <QMenu>
#include <QTest>
#include <QToolTip>
#include <memory>

#include "ui/drawing/Colors.h"

using bonkora::Appearance;
using bonkora::DesktopAppearance;

namespace {

bool isDark(const QPalette& palette) {
    return palette.color(QPalette::Window).lightness() < 128 &&
           palette.color(QPalette::WindowText).lightness() > 128;
}

}  // namespace

class DesktopAppearanceTest final : public QObject {
    Q_OBJECT

  private slots:
    void whatTheDesktopSaysCountsAndItsColoursWhereItSaysNothing() {
        Appearance appearance;
        DesktopAppearance desktop(appearance, bonkora::applicationPalette);
        QVERIFY(!appearance.isDark());
        desktop.prefer(true);
        QVERIFY(appearance.isDark());
        desktop.prefer(false);
        QVERIFY(!appearance.isDark());
        desktop.prefer(true);
        desktop.prefer(std::nullopt);  // the colours are the desktop's own again, which are light
        QVERIFY(!appearance.isDark());
    }

    void menusToolTipsAndDialogsTakeTheAppearanceAlsoWhileTheyAreOpen() {
        Appearance appearance;
        DesktopAppearance desktop(appearance, bonkora::applicationPalette);
        QCoreApplication::processEvents();  // the real desktop has its say first
        QWidget panel;
        panel.setPalette(bonkora::panelPalette(false));
        QLineEdit field(&panel);
        const std::unique_ptr<QMenu> menu(field.createStandardContextMenu());
        menu->popup({0, 0});
        QFileDialog chooser(&panel);
        chooser.show();
        for (const bool dark : {true, false, true}) {
            desktop.prefer(dark);
            QCoreApplication::processEvents();
            QCOMPARE(isDark(menu->palette()), dark);
            QCOMPARE(isDark(chooser.palette()), dark);
            QCOMPARE(QToolTip::palette().color(QPalette::ToolTipBase).lightness() < 128, dark);
        }
    }

    void oneSettingThatAsksForLessMotionIsEnough() {
        Appearance appearance;
        DesktopAppearance desktop(appearance, bonkora::applicationPalette);
        QVERIFY(!appearance.isMotionReduced());
        desktop.reduceMotion("one", true);
        desktop.reduceMotion("other", false);
        QVERIFY(appearance.isMotionReduced());
        desktop.reduceMotion("one", false);
        QVERIFY(!appearance.isMotionReduced());
    }
};

QTEST_MAIN(DesktopAppearanceTest)
#include "DesktopAppearanceTest.moc"
