// MenuBarExtra: the one menu-bar item of a scene, and the panel that drops down from it. Where no
// bar is there, it says so on standard error and shows the panel as a plain window until one comes;
// closing that window ends the application.
#pragma once

#include <QPointer>
#include <QTimer>
#include <memory>
#include <optional>

#include "app/MenuBarScene.h"
#include "app/PanelLogic.h"
#include "app/desktop/ScreenLockWatch.h"
#include "app/item/MenuBarHosts.h"
#include "app/item/MenuBarItem.h"
#include "app/window/PanelWindow.h"
#include "app/window/ScreenWatch.h"
#include "ui/state/Observation.h"

namespace bonkora {

class MenuBarExtra final : public QObject {
    Q_OBJECT

  public:
    MenuBarExtra(MenuBarScene scene, const PanelEnvironment& environment,
                 std::unique_ptr<MenuBarHosts> hosts = MenuBarHosts::make());
    ~MenuBarExtra() override;

    // Shows the panel, wherever it can.
    void open();

  private:
    void followHosts();
    void refreshLabel();
    void click(const QPoint& reported);
    void leaveScreenToItsLock();
    void followScreens();

    void handle(PanelLogic::Event event);
    void handleInNextTurn(PanelLogic::Event event);
    PanelLogic::Action decide(PanelLogic::Event event);
    void carryOut(PanelLogic::Action action);

    void openPanel(PanelWindow::Style style, const QRect& place);
    QRect placeAtClick();
    QRect placeBeside(const QPoint& click);
    QRect placeBesideItem(const QScreen& screen);
    QRect placeInTheMiddle() const;

    const MenuBarScene scene;
    const PanelEnvironment environment;
    const std::unique_ptr<MenuBarHosts> hosts;
    std::unique_ptr<MenuBarItem> item;
    QPointer<PanelWindow> panel;
    PanelLogic logic;
    QTimer wakeTimer;
    QPoint reportedClick;
    std::optional<QPoint> lastClick;
    QRect clickedScreen;
    ScreenWatch screens;
    // While a panel is open that may hold the pointer.
    std::optional<ScreenLockWatch> screenLock;
    Observation observation{[this] { refreshLabel(); }};
};

}  // namespace bonkora
