#include <QAbstractItemView>
#include <QDialogButtonBox>
#include <QElapsedTimer>
#include <QFileDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QTimer>

#include "tests/support/Panel.h"

using bonkora::Mode;
using bonkora::test::Panel;
using namespace std::chrono_literals;

class ModeSelectorTest final : public QObject {
    Q_OBJECT

    // Does `act` with the folder chooser once it is open.
    template <typename Act>
    static void whenChooserOpens(Act act) {
        auto* poll = new QTimer(qApp);
        connect(poll, &QTimer::timeout, poll, [poll, act] {
            if (auto* chooser = qobject_cast<QFileDialog*>(QApplication::activeModalWidget())) {
                poll->deleteLater();
                poll->stop();
                act(*chooser);
            }
        });
        poll->start(5);
    }

  private slots:
    void aFreshControllerHasPainChosenAndNoFolderRow() {
        Panel panel;
        panel.open();
        QVERIFY(panel.row("Pain")->isOn());
        QCOMPARE(panel.row("Pain")->highlight(), 1.0);
        for (const char* title : {"Sexy", "Halo", "Custom"}) {
            QVERIFY(!panel.row(title)->isOn());
            QCOMPARE(panel.row(title)->highlight(), 0.0);
        }
        QVERIFY(!panel.field());
        QVERIFY(!panel.button("Browse"));
    }

    void theRowsStandInTheOrderOfTheModes() {
        Panel panel;
        panel.open();
        QStringList titles;
        for (bonkora::ModeRow* row : panel.all<bonkora::ModeRow>()) {
            titles << row->text();
        }
        QCOMPARE(titles, QStringList({"Pain", "Sexy", "Halo", "Custom"}));
        QVERIFY(panel.row("Pain")->y() < panel.row("Sexy")->y());
        QVERIFY(panel.row("Halo")->y() < panel.row("Custom")->y());
    }

    void theDescriptionsAreThose_data() {
        QTest::addColumn<QString>("title");
        QTest::addColumn<QString>("description");
        QTest::newRow("pain") << "Pain"
                              << "Classic screams of agony. The MacBook suffers.";
        QTest::newRow("sexy") << "Sexy"
                              << "Gets more intense the more you slap. Use headphones.";
        QTest::newRow("halo") << "Halo"
                              << "Random Halo soundtrack clips on each slap.";
        QTest::newRow("custom") << "Custom"
                                << "Your own MP3 files. Your MacBook, your rules.";
    }
    void theDescriptionsAreThose() {
        QFETCH(QString, title);
        QFETCH(QString, description);
        Panel panel;
        panel.open();
        QCOMPARE(panel.row(title)->accessibleDescription(), description);
    }

    void tappingHaloSwitchesOnceAndEasesTheHighlightInAndOutForAFifthOfASecond() {
        Panel panel;
        panel.open();
        int announcements = 0;
        const auto subscription = panel.controller->objectWillChange.sink([&] { ++announcements; });
        panel.click(panel.row("Halo"));
        QCOMPARE(panel.controller->currentMode.get(), Mode::halo);
        QCOMPARE(announcements, 1);
        QVERIFY(panel.row("Halo")->isOn());
        QVERIFY(!panel.row("Pain")->isOn());
        QVERIFY(panel.row("Halo")->highlight() < 1.0);  // it moves, it does not jump
        const auto* const animation = panel.row("Halo")->findChild<QVariantAnimation*>();
        QCOMPARE(animation->duration(), 200);
        QVERIFY(std::abs(animation->easingCurve().valueForProgress(0.25) - 0.129) < 0.001);
        QVERIFY(std::abs(animation->easingCurve().valueForProgress(0.75) - 0.871) < 0.001);
        QTRY_COMPARE(panel.row("Halo")->highlight(), 1.0);
        QCOMPARE(panel.row("Pain")->highlight(), 0.0);
        QCOMPARE(panel.launches(), std::size_t{0});
    }

    void theFolderRowComesAndGoesWithinAFifthOfASecondWithWhatLiesBeneath() {
        Panel panel;
        panel.open();
        const auto settingsTop = [&] {
            return panel.label("Settings")->mapTo(panel.view.get(), QPoint(0, 0)).y();
        };
        constexpr int rowAndGap = 21 + 6;
        const int without = settingsTop();
        panel.click(panel.row("Custom"));
        QVERIFY(panel.field());  // there at once for keyboard and assistive technology
        QVERIFY(settingsTop() < without + rowAndGap);
        QList<int> way;
        QElapsedTimer time;
        time.start();
        while (settingsTop() < without + rowAndGap && time.elapsed() < 2000) {
            way << settingsTop();
            QTest::qWait(5);
        }
        QCOMPARE(settingsTop(), without + rowAndGap);
        QVERIFY(std::is_sorted(way.begin(), way.end()));
        QVERIFY(std::any_of(way.begin(), way.end(),
                            [&](int y) { return y > without && y < without + rowAndGap; }));
        auto* const row = panel.field()->parentWidget()->parentWidget();
        QCOMPARE(row->findChild<QVariantAnimation*>()->duration(), 200);

        panel.click(panel.row("Halo"));
        QVERIFY(!panel.field());  // gone at once in the same way, though still to be seen
        QVERIFY(settingsTop() > without);
        QTRY_COMPARE(settingsTop(), without);
        QVERIFY(!row->isVisible());
    }

    void aFolderRowCalledBackWhileItGoesComesToStay() {
        Panel panel;
        panel.open();
        for (const char* title : {"Custom", "Halo", "Custom"}) {
            panel.click(panel.row(title));
            QTest::qWait(60);
        }
        QTRY_COMPARE(panel.field()->parentWidget()->parentWidget()->height(), 21 + 6);
        QVERIFY(panel.button("Browse"));
    }

    void whereMotionIsReducedEverythingIsThereAtOnce() {
        Panel panel;
        panel.appearance.setMotionReduced(true);
        panel.open();
        panel.click(panel.row("Custom"));
        QCOMPARE(panel.row("Custom")->highlight(), 1.0);
        QCOMPARE(panel.row("Pain")->highlight(), 0.0);
        QCOMPARE(panel.field()->parentWidget()->parentWidget()->height(), 21 + 6);
        panel.click(panel.toggle("Fast detection"));
        QCOMPARE(panel.toggle("Fast detection")->thumbPosition(), 1.0);
    }

    void aSecondChooserCannotBeOpenedOverTheFirst() {
        Panel panel;
        panel.controller->switchMode(Mode::custom);
        panel.open();
        qsizetype choosers = 0;
        whenChooserOpens([&](QFileDialog& chooser) {
            chooser.showMinimized();
            panel.button("Browse")->click();  // as assistive technology presses it
            choosers = panel.view->window()->findChildren<QFileDialog*>().size();
            QVERIFY(!chooser.isMinimized());
            chooser.reject();
        });
        panel.click(panel.button("Browse"));
        QCOMPARE(choosers, qsizetype{1});
        whenChooserOpens([&](QFileDialog& chooser) {
            ++choosers;
            chooser.reject();
        });
        panel.click(panel.button("Browse"));  // the next one is a new one
        QCOMPARE(choosers, qsizetype{2});
    }

    void aModeChangedElsewhereMovesTheHighlightAtOnce() {
        Panel panel;
        panel.open();
        panel.controller->switchMode(Mode::sexy);
        panel.settle();
        QCOMPARE(panel.row("Sexy")->highlight(), 1.0);
    }

    void tappingTheChosenRowRestartsARunningDetectorAllTheSame() {
        Panel panel;
        panel.open();
        panel.startDetector();
        panel.click(panel.row("Pain"));
        panel.pass(1000ms);
        QCOMPARE(panel.launches(), std::size_t{2});
        QCOMPARE(panel.system.processes->made.front()->terminations, 1);
    }

    void theBlankSpaceBesideTheTitleCounts() {
        Panel panel;
        panel.open();
        bonkora::ModeRow* row = panel.row("Sexy");
        panel.clickAt(row, {row->width() - 8, 8});
        QCOMPARE(panel.controller->currentMode.get(), Mode::sexy);
    }

    void customShowsTheFolderRowBeneathItselfWithThePlaceholderOrThePath() {
        Panel panel;
        panel.open();
        panel.click(panel.row("Custom"));
        QVERIFY(panel.field());
        QCOMPARE(panel.field()->text(), QString());
        QCOMPARE(panel.field()->placeholderText(), "Path to MP3 folder...");
        const auto bottom = [&](QWidget* widget) {
            return widget->mapTo(panel.view.get(), QPoint(0, widget->height())).y();
        };
        QVERIFY(bottom(panel.field()) > bottom(panel.row("Custom")));

        panel.controller->customSoundPath = "/home/me/ouch";
        panel.settle();
        QCOMPARE(panel.field()->text(), "/home/me/ouch");
        panel.click(panel.row("Halo"));
        QVERIFY(!panel.field());
        QCOMPARE(panel.controller->customSoundPath.get(), std::string("/home/me/ouch"));
        panel.click(panel.row("Custom"));
        QCOMPARE(panel.field()->text(), "/home/me/ouch");
    }

    void everyKeystrokeStoresThePathAsTyped() {
        Panel panel;
        panel.controller->switchMode(Mode::custom);
        panel.open();
        panel.startDetector();
        panel.click(panel.field());
        QTest::keyClicks(panel.field(), " /no where");
        QCOMPARE(panel.controller->customSoundPath.get(), std::string(" /no where"));
        QTest::keyClick(panel.field(), Qt::Key_Backspace);
        QCOMPARE(panel.controller->customSoundPath.get(), std::string(" /no wher"));
        QTest::keyClick(panel.field(), Qt::Key_Return);
        panel.pass(2000ms);
        QCOMPARE(panel.launches(), std::size_t{1});  // a new folder waits for the next start
        QCOMPARE(panel.field()->text(), " /no wher");
    }

    void typingInTheMiddleKeepsTheCursorThere() {
        Panel panel;
        panel.controller->switchMode(Mode::custom);
        panel.controller->customSoundPath = "/abcd";
        panel.open();
        panel.field()->setCursorPosition(2);
        QTest::keyClicks(panel.field(), "xy");
        panel.settle();
        QCOMPARE(panel.controller->customSoundPath.get(), std::string("/axybcd"));
        QCOMPARE(panel.field()->cursorPosition(), 4);
    }

    void choosingAFolderPutsItInTheFieldAndRestartsNothing() {
        Panel panel;
        const std::string folder = panel.system.folder.makeFolder("my sounds");
        panel.controller->switchMode(Mode::custom);
        panel.open();
        panel.startDetector();
        whenChooserOpens([&](QFileDialog& chooser) {
            QCOMPARE(chooser.fileMode(), QFileDialog::Directory);
            QVERIFY(chooser.isModal());
            chooser.selectFile(QString::fromStdString(folder));
            chooser.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Open)->click();
            QTest::keyClick(&chooser, Qt::Key_Return);
        });
        panel.click(panel.button("Browse"));
        QCOMPARE(panel.controller->customSoundPath.get(), folder);
        QCOMPARE(panel.field()->text(), QString::fromStdString(folder));
        panel.pass(2000ms);
        QCOMPARE(panel.launches(), std::size_t{1});
    }

    void theChooserBeginsAtHomeAndLaterInTheFolderLastChosen() {
        Panel panel;
        const QString folder = QString::fromStdString(panel.system.folder.makeFolder("my sounds"));
        panel.controller->switchMode(Mode::custom);
        panel.open();
        for (const QString& before : {QString(), QString("/none/such"), folder}) {
            panel.controller->customSoundPath = before.toStdString();
            QString beginning;
            whenChooserOpens([&](QFileDialog& chooser) {
                beginning = chooser.directory().absolutePath();
                chooser.reject();
            });
            panel.click(panel.button("Browse"));
            QCOMPARE(beginning, before == folder ? folder : QDir::homePath());
        }
    }

    void cancellingTheChooserChangesNothing() {
        Panel panel;
        panel.controller->switchMode(Mode::custom);
        panel.controller->customSoundPath = "/kept";
        panel.open();
        whenChooserOpens([](QFileDialog& chooser) { QTest::keyClick(&chooser, Qt::Key_Escape); });
        panel.click(panel.button("Browse"));
        QCOMPARE(panel.controller->customSoundPath.get(), std::string("/kept"));
        QCOMPARE(panel.field()->text(), "/kept");
    }

    void aFileCannotBeChosen() {
        Panel panel;
        const std::string file = panel.system.folder.write("sounds/ouch.mp3", "");
        panel.controller->switchMode(Mode::custom);
        panel.controller->customSoundPath = "/kept";
        panel.open();
        bool isStillOpen = false;
        whenChooserOpens([&](QFileDialog& chooser) {
            QVERIFY(chooser.testOption(QFileDialog::ShowDirsOnly));
            chooser.findChild<QLineEdit*>()->setText(QString::fromStdString(file));
            QTimer::singleShot(0, &chooser, [&] {
                if (auto* complaint = QApplication::activeModalWidget(); complaint != &chooser) {
                    QTest::keyClick(complaint, Qt::Key_Escape);
                }
            });
            QTest::keyClick(chooser.findChild<QLineEdit*>(), Qt::Key_Return);
            isStillOpen = chooser.isVisible();
            chooser.reject();
        });
        panel.click(panel.button("Browse"));
        QVERIFY(isStillOpen);
        QCOMPARE(panel.controller->customSoundPath.get(), std::string("/kept"));
    }
};

QTEST_MAIN(ModeSelectorTest)
#include "ModeSelectorTest.moc"
