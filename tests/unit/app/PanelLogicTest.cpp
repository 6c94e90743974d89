#include "app/PanelLogic.h"

#include <gtest/gtest.h>

namespace bonkora {

// For readable failures.
void PrintTo(PanelLogic::Action action, std::ostream* out) {
    constexpr const char* names[] = {"nothing",         "dropDownAtClick", "dropDownAtItem",
                                     "openPlainWindow", "close",           "raise",
                                     "endApplication"};
    *out << names[static_cast<int>(action)];
}

namespace {

using namespace std::chrono_literals;
using Event = PanelLogic::Event;
using Action = PanelLogic::Action;

// The logic in virtual time, its wakes sent when they are due.
class PanelLogicTest : public testing::Test {
  protected:
    Action handle(Event event) { return logic.decide(event, now, isOccupied); }

    // What the next wake within that time decides; nothing where there is none.
    Action pass(PanelLogic::Time duration) {
        const PanelLogic::Time end = now + duration;
        Action last = Action::nothing;
        while (logic.wakeAt() && *logic.wakeAt() <= end && last == Action::nothing) {
            now = *logic.wakeAt();
            last = handle(Event::wake);
        }
        now = end;
        return last;
    }

    void openByClick() {
        EXPECT_EQ(handle(Event::itemClicked), Action::dropDownAtClick);
        handle(Event::panelOpened);
    }
    void openSettled() {
        openByClick();
        pass(1s);
    }
    void openPlainWindow() {
        handle(Event::hostWent);
        EXPECT_EQ(pass(1s), Action::openPlainWindow);
        handle(Event::panelOpened);
    }

    PanelLogic logic;
    PanelLogic::Time now = 5000h;
    bool isOccupied = false;
};

class WithItem : public PanelLogicTest {
  protected:
    WithItem() { EXPECT_EQ(handle(Event::hostCame), Action::nothing); }
};

TEST_F(WithItem, aClickOpensThePanelAndTheNextClosesIt) {
    openSettled();
    EXPECT_EQ(handle(Event::itemClicked), Action::close);
    handle(Event::panelClosed);
    pass(300ms);
    EXPECT_EQ(handle(Event::itemClicked), Action::dropDownAtClick);
}

TEST_F(WithItem, theSecondHalfOfADoubleClickDoesNotCloseThePanel) {
    openByClick();
    pass(250ms);
    EXPECT_EQ(handle(Event::itemClicked), Action::nothing);
    EXPECT_EQ(handle(Event::pressedOutside), Action::nothing);
    pass(1ms);
    EXPECT_EQ(handle(Event::itemClicked), Action::close);
}

TEST_F(WithItem, aPanelThatTakesLongToAppearSettlesOnlyAfterwards) {
    EXPECT_EQ(handle(Event::itemClicked), Action::dropDownAtClick);
    now += 2s;
    handle(Event::panelOpened);
    EXPECT_EQ(handle(Event::itemClicked), Action::nothing);
}

TEST_F(WithItem, thePressThatClosedThePanelDoesNotOpenItAgainAsAClick) {
    openSettled();
    EXPECT_EQ(handle(Event::pressedOutside), Action::close);
    EXPECT_EQ(handle(Event::itemClicked), Action::nothing);  // before the window has gone
    handle(Event::panelClosed);
    pass(299ms);
    EXPECT_EQ(handle(Event::itemClicked), Action::nothing);
    pass(1ms);
    EXPECT_EQ(handle(Event::itemClicked), Action::dropDownAtClick);
}

TEST_F(WithItem, escapeAndAnotherActiveWindowCloseThePanelOnce) {
    openByClick();
    EXPECT_EQ(handle(Event::escapePressed), Action::close);
    EXPECT_EQ(handle(Event::deactivated), Action::nothing);
    handle(Event::panelClosed);
    pass(1s);
    openByClick();
    EXPECT_EQ(handle(Event::deactivated), Action::close);
}

TEST_F(WithItem, aScreenThatLocksClosesThePanelEvenBeforeItHasSettled) {
    openByClick();
    EXPECT_EQ(handle(Event::screenLocking), Action::close);
    EXPECT_EQ(handle(Event::screenLocking), Action::nothing);
}

TEST_F(WithItem, whileADialogOrMenuIsOpenNothingClosesThePanelAndAClickRaisesIt) {
    openSettled();
    isOccupied = true;
    EXPECT_EQ(handle(Event::deactivated), Action::nothing);
    EXPECT_EQ(handle(Event::pressedOutside), Action::nothing);
    EXPECT_EQ(handle(Event::itemClicked), Action::raise);
    EXPECT_EQ(handle(Event::openAsked), Action::raise);
}

TEST_F(WithItem, forHalfASecondAfterADialogThePanelComesBackInsteadOfClosing) {
    openSettled();
    EXPECT_EQ(handle(Event::dialogClosed), Action::raise);
    pass(499ms);
    EXPECT_EQ(handle(Event::deactivated), Action::raise);
    pass(1ms);
    EXPECT_EQ(handle(Event::deactivated), Action::close);
}

TEST_F(WithItem, aDialogOfThePanelBeforeDoesNotKeepTheNextOne) {
    openSettled();
    handle(Event::dialogClosed);
    handle(Event::escapePressed);
    handle(Event::panelClosed);
    EXPECT_EQ(handle(Event::openAsked), Action::dropDownAtItem);
    EXPECT_EQ(handle(Event::deactivated), Action::close);
}

TEST_F(WithItem, aLaterStartOpensThePanelOrRaisesIt) {
    EXPECT_EQ(handle(Event::openAsked), Action::dropDownAtItem);
    handle(Event::panelOpened);
    EXPECT_EQ(handle(Event::openAsked), Action::raise);
    handle(Event::escapePressed);
    EXPECT_EQ(handle(Event::openAsked), Action::dropDownAtItem);  // in place of the closing one
}

TEST_F(WithItem, closingADropDownEndsNothing) {
    openSettled();
    EXPECT_EQ(handle(Event::panelClosed), Action::nothing);  // by the window manager
}

TEST_F(WithItem, aBarThatComesBackWithinASecondLeavesThePanelAlone) {
    openSettled();
    handle(Event::hostWent);
    EXPECT_EQ(pass(999ms), Action::nothing);
    EXPECT_EQ(handle(Event::hostCame), Action::nothing);
    EXPECT_EQ(pass(1h), Action::nothing);
}

TEST_F(WithItem, aBarThatStaysAwayTurnsAnOpenPanelIntoAPlainWindow) {
    openSettled();
    openPlainWindow();
    EXPECT_EQ(handle(Event::escapePressed), Action::nothing);
    EXPECT_EQ(handle(Event::deactivated), Action::nothing);
    EXPECT_EQ(handle(Event::screenLocking), Action::nothing);
}

TEST_F(WithItem, aPanelWithADialogBecomesAPlainWindowOnlyAfterIt) {
    openSettled();
    isOccupied = true;
    handle(Event::hostWent);
    EXPECT_EQ(pass(10s), Action::nothing);
    isOccupied = false;
    EXPECT_EQ(pass(1s), Action::openPlainWindow);
}

TEST_F(PanelLogicTest, withoutABarAPlainWindowOpensAfterASecondAndOnlyOnce) {
    handle(Event::hostWent);
    EXPECT_EQ(pass(999ms), Action::nothing);
    EXPECT_EQ(pass(1ms), Action::openPlainWindow);
    EXPECT_EQ(pass(1h), Action::nothing);
    handle(Event::hostWent);
    EXPECT_EQ(pass(1h), Action::nothing);
}

TEST_F(PanelLogicTest, withoutABarALaterStartOpensNothingBeforeTheWindow) {
    handle(Event::hostWent);
    EXPECT_EQ(handle(Event::openAsked), Action::nothing);
    EXPECT_EQ(pass(1s), Action::openPlainWindow);
    EXPECT_EQ(handle(Event::openAsked), Action::raise);
}

TEST_F(PanelLogicTest, closingThePlainWindowEndsTheApplication) {
    openPlainWindow();
    EXPECT_EQ(handle(Event::panelClosed), Action::endApplication);
}

TEST_F(PanelLogicTest, aBarThatComesClosesThePlainWindowWithoutEndingTheApplication) {
    openPlainWindow();
    EXPECT_EQ(handle(Event::hostCame), Action::close);
    EXPECT_EQ(handle(Event::panelClosed), Action::nothing);
}

TEST_F(PanelLogicTest, aPlainWindowWithADialogGoesOnlyAfterIt) {
    openPlainWindow();
    isOccupied = true;
    EXPECT_EQ(handle(Event::hostCame), Action::nothing);
    EXPECT_EQ(handle(Event::itemClicked), Action::raise);
    EXPECT_EQ(pass(10s), Action::nothing);
    isOccupied = false;
    EXPECT_EQ(pass(250ms), Action::close);
}

}  // namespace
}  // namespace bonkora
