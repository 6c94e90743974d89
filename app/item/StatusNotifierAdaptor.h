// StatusNotifierAdaptor: what a status notifier item says and answers on the session bus, in the
// names that bars expect. Main thread.
#pragma once

#include <QDBusAbstractAdaptor>
#include <QDBusObjectPath>

#include "app/item/MenuBarItem.h"
#include "app/item/StatusNotifierTypes.h"

namespace bonkora {

class StatusNotifierAdaptor final : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierItem")
    Q_PROPERTY(QString Category READ category CONSTANT)
    Q_PROPERTY(QString Id READ id CONSTANT)
    Q_PROPERTY(QString Title READ title NOTIFY NewTitle)
    Q_PROPERTY(QString Status READ status CONSTANT)
    Q_PROPERTY(int WindowId READ windowId CONSTANT)
    Q_PROPERTY(QString IconName READ noName CONSTANT)
    Q_PROPERTY(bonkora::IconPixmaps IconPixmap READ iconPixmap NOTIFY NewIcon)
    Q_PROPERTY(QString OverlayIconName READ noName CONSTANT)
    Q_PROPERTY(QString AttentionIconName READ noName CONSTANT)
    Q_PROPERTY(bonkora::ToolTip ToolTip READ toolTip NOTIFY NewToolTip)
    Q_PROPERTY(bool ItemIsMenu READ itemIsMenu CONSTANT)
    Q_PROPERTY(QDBusObjectPath Menu READ menu CONSTANT)
    Q_PROPERTY(QString XAyatanaLabel READ ayatanaLabel NOTIFY XAyatanaNewLabel)
    Q_PROPERTY(QString XAyatanaLabelGuide READ ayatanaLabel NOTIFY XAyatanaNewLabel)

  public:
    static constexpr char menuPath[] = "/MenuBar";

    explicit StatusNotifierAdaptor(MenuBarItem& item);

    // Tells the bars what differs.
    void show(const MenuBarLabel& label);

    QString category() const { return "ApplicationStatus"; }
    QString id() const { return "Bonkora"; }
    QString title() const { return label.title; }
    QString status() const { return "Active"; }
    int windowId() const { return 0; }
    QString noName() const { return {}; }
    IconPixmaps iconPixmap() const;
    ToolTip toolTip() const { return {{}, {}, label.title, {}}; }
    bool itemIsMenu() const { return false; }
    QDBusObjectPath menu() const { return QDBusObjectPath(menuPath); }
    QString ayatanaLabel() const;

  public slots:
    void Activate(int x, int y);
    void SecondaryActivate(int x, int y);
    void ContextMenu(int x, int y);
    void Scroll(int delta, const QString& orientation);

  signals:
    void NewTitle();
    void NewIcon();
    void NewToolTip();
    void XAyatanaNewLabel(const QString& text, const QString& guide);

  private:
    MenuBarItem& item;
    MenuBarLabel label{};
};

}  // namespace bonkora
