#include "ui/drawing/Colors.h"

#include <QTest>

using namespace bonkora;

namespace {

constexpr double forText = 4.5;
constexpr double forGraphics = 3.0;

}  // namespace

class ColorsTest final : public QObject {
    Q_OBJECT

  private slots:
    void theAccentIsTheOneGiven() { QCOMPARE(accentColor.rgb(), qRgb(56, 199, 115)); }

    void contrastIsOneForEqualsAndTwentyOneForBlackAndWhite() {
        QCOMPARE(contrastRatio(Qt::red, Qt::red), 1.0);
        QCOMPARE(contrastRatio(Qt::black, Qt::white), 21.0);
    }

    void everyTextTheDesktopColoursCanBeRead_data() {
        QTest::addColumn<bool>("isDark");
        QTest::addColumn<int>("background");
        QTest::addColumn<bool>("isTinted");
        for (const bool isDark : {false, true}) {
            const char* name = isDark ? "dark" : "light";
            QTest::addRow("%s window", name) << isDark << int{colorRole::window} << false;
            QTest::addRow("%s card", name) << isDark << int{colorRole::controlBackground} << false;
            QTest::addRow("%s chosen row", name) << isDark << int{colorRole::window} << true;
        }
    }
    void everyTextTheDesktopColoursCanBeRead() {
        QFETCH(bool, isDark);
        QFETCH(int, background);
        QFETCH(bool, isTinted);
        const QPalette palette = panelPalette(isDark);
        QColor under = palette.color(static_cast<QPalette::ColorRole>(background));
        if (isTinted) {
            QColor tint = accentColor;
            tint.setAlphaF(0.1F);
            under = composited(tint, under);
        }
        for (const auto role : {colorRole::primary, colorRole::secondary}) {
            const double ratio = contrastRatio(composited(palette.color(role), under), under);
            QVERIFY2(ratio >= forText, qPrintable(QString("role %1: %2").arg(role).arg(ratio)));
        }
    }

    void theRedOfQuitCanBeRead() {
        for (const bool isDark : {false, true}) {
            const QPalette palette = panelPalette(isDark);
            QVERIFY(contrastRatio(palette.color(colorRole::red),
                                  palette.color(colorRole::window)) >= forText);
        }
    }

    void theToolkitsOwnWindowsFollowLightAndDarkAndCanBeRead() {
        for (const bool isDark : {false, true}) {
            const QPalette palette = applicationPalette(isDark);
            const std::pair<QPalette::ColorRole, QPalette::ColorRole> pairs[] = {
                {QPalette::WindowText, QPalette::Window},
                {QPalette::Text, QPalette::Base},
                {QPalette::Text, QPalette::AlternateBase},
                {QPalette::ButtonText, QPalette::Button},
                {QPalette::ToolTipText, QPalette::ToolTipBase},
                {QPalette::HighlightedText, QPalette::Highlight},
                {QPalette::Link, QPalette::Base}};
            for (const auto& [text, ground] : pairs) {
                const double ratio = contrastRatio(palette.color(text), palette.color(ground));
                QVERIFY2(ratio >= forText, qPrintable(QString("role %1: %2").arg(text).arg(ratio)));
            }
            for (const auto role :
                 {QPalette::Window, QPalette::Base, QPalette::Button, QPalette::ToolTipBase}) {
                QCOMPARE(palette.color(role).lightness() < 128, isDark);
            }
        }
    }

    void whiteOnTheRunningButtonCanBeRead() {
        QVERIFY(contrastRatio(Qt::white, runningColor) >= forText);
    }

    void theGraphicsCanBeSeen() {
        for (const bool isDark : {false, true}) {
            const QPalette palette = panelPalette(isDark);
            const QColor card = palette.color(colorRole::controlBackground);
            for (const auto role : {colorRole::gray, colorRole::track, colorRole::focusRing}) {
                const double ratio = contrastRatio(palette.color(role), card);
                QVERIFY2(ratio >= forGraphics, qPrintable(QString::number(ratio)));
            }
            const QColor window = palette.color(colorRole::window);
            for (const auto role : {colorRole::track, colorRole::focusRing}) {
                const double ratio = contrastRatio(palette.color(role), window);
                QVERIFY2(ratio >= forGraphics, qPrintable(QString::number(ratio)));
            }
        }
    }
};

QTEST_GUILESS_MAIN(ColorsTest)
#include "ColorsTest.moc"
