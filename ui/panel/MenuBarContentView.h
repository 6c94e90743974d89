// MenuBarContentView: the content of the panel that drops down from the menu-bar item. It is made
// anew each time the panel opens, for the one controller, which it observes and does not own. It
// has no size of its own: header and footer stay in place, and what lies between them scrolls.
//
// Everything in ui/ belongs to the main thread, except where a comment says "any thread".
#pragma once

#include <QWidget>

#include "bridge/SpankWrapper.h"
#include "ui/panel/PanelEnvironment.h"
#include "ui/panel/SettingsSection.h"
#include "ui/state/AppStorage.h"
#include "ui/state/Observation.h"

class QScrollArea;

namespace bonkora {

class FooterSection;
class HeaderSection;
class ModeSelector;
class SettingsSection;
class StatsSection;
class StatusSection;

class MenuBarContentView final : public QWidget {
    Q_OBJECT

  public:
    // Starts nothing and reads nothing from the controller.
    MenuBarContentView(SpankWrapper& spankWrapper, const PanelEnvironment& environment);
    ~MenuBarContentView() override;

  protected:
    void showEvent(QShowEvent* event) override;
    // While no control has the focus, the keys scroll.
    void keyPressEvent(QKeyEvent* event) override;

  private:
    void layOut();
    void redraw();
    void takeColors();
    void keepFocusVisible();

    SpankWrapper& spankWrapper;
    AppStorage slapCounterTotal{"slapCounterTotal", 0};
    SliderValues sliderValues;

    Appearance& appearance;
    HeaderSection* headerSection;
    StatusSection* statusSection;
    ModeSelector* modeSelector;
    SettingsSection* settingsSection;
    StatsSection* statsSection;
    FooterSection* footerSection;
    QScrollArea* scrollArea = nullptr;
    Observation observation{[this] { redraw(); }};
};

}  // namespace bonkora
