#include "app/item/StatusNotifierItem.h"

#include <QDBusArgument>
#include <QDBusObjectPath>
#include <QSignalSpy>
#include <QTest>

#include "app/item/StatusNotifierTypes.h"
#include "tests/support/StatusNotifierBar.h"

using bonkora::MenuBarItem;
using bonkora::StatusNotifierItem;
using bonkora::test::StatusNotifierBar;

namespace {

const bonkora::MenuBarLabel stopped{bonkora::Symbol::handRaisedFill, "Bonkora OFF"};
const bonkora::MenuBarLabel running{bonkora::Symbol::handRaisedFill, "Bonkora 7"};

// Gives the item all the turns it needs to ask who watches, to be told, and to register.
void settle(const StatusNotifierBar& bar) {
    for (int turn = 0; turn < 2; ++turn) {
        for (const QDBusConnection& bus : {QDBusConnection::sessionBus(), bar.bus}) {
            bonkora::test::callAndWait(
                bus, QDBusMessage::createMethodCall("org.freedesktop.DBus", "/",
                                                    "org.freedesktop.DBus.Peer", "Ping"));
        }
        QCoreApplication::processEvents();
    }
}

}  // namespace

class StatusNotifierItemTest final : public QObject {
    Q_OBJECT

  private slots:
    void itRegistersOnceItHasSomethingToShowAndAgainWithEveryNewWatcher() {
        std::optional<StatusNotifierBar> bar(std::in_place);
        StatusNotifierItem item;
        settle(*bar);
        QCOMPARE(bar->items.size(), qsizetype{0});
        item.display(stopped);
        QTRY_COMPARE(bar->items.size(), qsizetype{1});
        QCOMPARE(bar->items.first(), "/StatusNotifierItem");
        item.display(running);
        settle(*bar);
        QCOMPARE(bar->items.size(), qsizetype{1});
        bar.reset();
        bar.emplace();
        QTRY_COMPARE(bar->items.size(), qsizetype{1});
    }

    void aBarReadsTitleToolTipIconAndMenu() {
        StatusNotifierBar bar;
        StatusNotifierItem item;
        item.display(running);
        QTRY_COMPARE(bar.items.size(), qsizetype{1});
        const QString sender = bar.senders.first();
        QCOMPARE(bar.itemProperty(sender, "Title").toString(), "Bonkora 7");
        QCOMPARE(bar.itemProperty(sender, "XAyatanaLabel").toString(), "Bonkora 7");
        QCOMPARE(bar.itemProperty(sender, "Id").toString(), "Bonkora");
        QCOMPARE(bar.itemProperty(sender, "Status").toString(), "Active");
        QCOMPARE(bar.itemProperty(sender, "ItemIsMenu").toBool(), false);
        QCOMPARE(bar.itemProperty(sender, "Menu").value<QDBusObjectPath>().path(), "/MenuBar");
        bonkora::ToolTip toolTip;
        bar.itemProperty(sender, "ToolTip").value<QDBusArgument>() >> toolTip;
        QCOMPARE(toolTip.title, "Bonkora 7");
        bonkora::IconPixmaps icons;
        bar.itemProperty(sender, "IconPixmap").value<QDBusArgument>() >> icons;
        QVERIFY(!icons.isEmpty());
        for (const bonkora::IconPixmap& icon : icons) {
            QCOMPARE(icon.pixels.size(), qsizetype{icon.width} * icon.height * 4);
            QVERIFY(icon.pixels.count('\0') < icon.pixels.size());
        }
    }

    void aChangeOfTheTitleIsToldAndOneOfNothingIsNot() {
        StatusNotifierBar bar;
        StatusNotifierItem item;
        item.display(stopped);
        QTRY_COMPARE(bar.items.size(), qsizetype{1});
        for (const char* news : {"NewTitle", "NewToolTip", "NewIcon", "XAyatanaNewLabel"}) {
            QVERIFY(bar.bus.connect(bar.senders.first(), "/StatusNotifierItem",
                                    "org.kde.StatusNotifierItem", news, this,
                                    SLOT(hear(QDBusMessage))));
        }
        heard.clear();
        item.display(stopped);
        item.display(running);
        QTRY_COMPARE(heard, QStringList({"NewTitle", "NewToolTip", "XAyatanaNewLabel"}));
    }

    void everyKindOfClickIsOneAtTheReportedPosition() {
        StatusNotifierBar bar;
        StatusNotifierItem item;
        item.display(stopped);
        QTRY_COMPARE(bar.items.size(), qsizetype{1});
        QSignalSpy clicks(&item, &MenuBarItem::clicked);
        for (const char* method : {"Activate", "SecondaryActivate", "ContextMenu"}) {
            bar.call(bar.senders.first(), "/StatusNotifierItem", "org.kde.StatusNotifierItem",
                     method, {640, 12});
            QCOMPARE(clicks.takeFirst().first().toPoint(), QPoint(640, 12));
        }
    }

    void theMenuHasTheOneEntryOpenWhichAsksToOpenAndIsNoClick() {
        StatusNotifierBar bar;
        StatusNotifierItem item;
        item.display(stopped);
        QTRY_COMPARE(bar.items.size(), qsizetype{1});
        const QString sender = bar.senders.first();
        const auto reply = bar.call(sender, "/MenuBar", "com.canonical.dbusmenu", "GetLayout",
                                    {0, -1, QStringList()});
        bonkora::MenuLayout root;
        reply.arguments().at(1).value<QDBusArgument>() >> root;
        QCOMPARE(root.children.size(), qsizetype{1});
        bonkora::MenuLayout entry;
        root.children.first().value<QDBusArgument>() >> entry;
        QCOMPARE(entry.properties.value("label").toString(), "Open");

        const QSignalSpy clicks(&item, &MenuBarItem::clicked);
        const QSignalSpy requests(&item, &MenuBarItem::openAsked);
        const auto press = [&](int id, const QString& kind) {
            bar.call(sender, "/MenuBar", "com.canonical.dbusmenu", "Event",
                     {id, kind, QVariant::fromValue(QDBusVariant("")), 0U});
        };
        press(entry.id, "hovered");
        press(root.id, "clicked");
        QCOMPARE(requests.count(), 0);
        press(entry.id, "clicked");
        QCOMPARE(requests.count(), 1);
        QCOMPARE(clicks.count(), 0);
    }

    void itIsGoneFromTheBusWhenItIsDestroyed() {
        StatusNotifierBar bar;
        {
            StatusNotifierItem item;
            item.display(stopped);
            QTRY_COMPARE(bar.items.size(), qsizetype{1});
        }
        QVERIFY(!bar.itemProperty(bar.senders.first(), "Title").isValid());
    }

  private slots:
    void hear(const QDBusMessage& signal) { heard << signal.member(); }

  private:
    QStringList heard;
};

QTEST_GUILESS_MAIN(StatusNotifierItemTest)
#include "StatusNotifierItemTest.moc"
