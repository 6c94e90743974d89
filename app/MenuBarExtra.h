// MenuBarExtra: the one menu-bar item of a scene, and the panel that drops down from it. Where no
// bar is there, it says so on standard error and shows the panel as a plain window until one comes;
// closing that window ends the application. Main thread.
#pragma once

#include <QElapsedTimer>
#include <QPointer>
#include <QTimer>
#include <memory>
#include <optional>

#include "app/MenuBarScene.h"
#include "app/item/MenuBarHosts.h"
#include "app/item/MenuBarItem.h"
#include "app/window/PanelWindow.h"
#include "app/window/ScreenWatch.h"
#include "ui/state/Observation.h"

namespace bonkora {

class MenuBarExtra final : public QObject {
    Q_OBJECT

  public:
    MenuBarExtra(MenuBarScene scene, const PanelEnvironment& environment);
    ~MenuBarExtra() override;

    // Shows the panel, wherever it can.
    void openPanel();

  private:
    void followHosts();
    void takeItem(MenuBarHosts::Kind kind);
    void showPlainWindow();
    void leavePlainWindow();
    void refreshLabel();
    void click(const QPoint& reported);
    void followScreens();
    QRect placeBeside(const QPoint& click);
    QRect placeBesideItem(const QScreen& screen);
    QRect placeInTheMiddle() const;
    PanelWindow* makePanel(PanelWindow::Style style);

    const MenuBarScene scene;
    const PanelEnvironment environment;
    MenuBarHosts hosts;
    std::unique_ptr<MenuBarItem> item;
    QPointer<PanelWindow> panel;
    std::optional<QPoint> lastClick;
    QRect clickedScreen;
    ScreenWatch screens;
    QElapsedTimer sinceClosed;
    QTimer hostGrace;
    Observation observation{[this] { refreshLabel(); }};
};

}  // namespace bonkora
