#include "app/item/MenuBarHosts.h"

#include <QSignalSpy>
#include <QTest>
#include <optional>

#include "app/item/StatusNotifierItem.h"
#include "tests/support/StatusNotifierBar.h"

using bonkora::MenuBarHosts;
using bonkora::test::StatusNotifierBar;
using Kind = bonkora::MenuBarHosts::Kind;

class MenuBarHostsTest final : public QObject {
    Q_OBJECT

  private slots:
    void nothingIsSaidBeforeTheSessionBusHasAnswered() {
        const auto hosts = MenuBarHosts::make();
        QCOMPARE(hosts->kind(), Kind::unknown);
        QTRY_COMPARE(hosts->kind(), Kind::none);
    }

    void aBarThatIsThereIsFoundAndGetsAnItemOfOurOwn() {
        const StatusNotifierBar bar;
        const auto hosts = MenuBarHosts::make();
        QTRY_COMPARE(hosts->kind(), Kind::statusNotifier);
        const auto item = hosts->makeItem();
        QVERIFY(dynamic_cast<bonkora::StatusNotifierItem*>(item.get()) != nullptr);
    }

    void aWatcherWithoutAHostIsNoBar() {
        StatusNotifierBar bar(false);
        const auto hosts = MenuBarHosts::make();
        QTRY_COMPARE(hosts->kind(), Kind::none);
        bar.setHost(true);
        QTRY_COMPARE(hosts->kind(), Kind::statusNotifier);
        bar.setHost(false);
        QTRY_COMPARE(hosts->kind(), Kind::none);
    }

    void aBarThatComesAndGoesIsFollowedAndEachChangeToldOnce() {
        const auto hosts = MenuBarHosts::make();
        QTRY_COMPARE(hosts->kind(), Kind::none);
        const QSignalSpy changes(hosts.get(), &MenuBarHosts::changed);
        std::optional<StatusNotifierBar> bar(std::in_place);
        QTRY_COMPARE(hosts->kind(), Kind::statusNotifier);
        bar.reset();
        QTRY_COMPARE(hosts->kind(), Kind::none);
        bar.emplace();
        QTRY_COMPARE(hosts->kind(), Kind::statusNotifier);
        QCOMPARE(changes.count(), 3);
    }
};

QTEST_MAIN(MenuBarHostsTest)
#include "MenuBarHostsTest.moc"
