#include <QAccessible>

#include "tests/support/Panel.h"

using bonkora::Mode;
using bonkora::test::Panel;
using namespace std::chrono_literals;

namespace {

QAccessibleInterface* find(QAccessibleInterface* root, QAccessible::Role role,
                           const QString& name) {
    if (root->role() == role && root->text(QAccessible::Name) == name) {
        return root;
    }
    for (int index = 0; index < root->childCount(); ++index) {
        if (auto* found = find(root->child(index), role, name)) {
            return found;
        }
    }
    return nullptr;
}

QAccessibleInterface* find(const Panel& panel, QAccessible::Role role, const QString& name) {
    return find(QAccessible::queryAccessibleInterface(panel.view.get()), role, name);
}

void press(QAccessibleInterface* control) {
    QVERIFY(control != nullptr);
    QVERIFY(control->actionInterface()->actionNames().contains(
        QAccessibleActionInterface::pressAction()));
    control->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    Panel::settle();
}

}  // namespace

class AccessibilityTest final : public QObject {
    Q_OBJECT

  private slots:
    void theButtonsArePushButtonsThatCanBePressed() {
        Panel panel;
        panel.controller->switchMode(Mode::custom);
        panel.open();
        for (const char* name : {"Start", "Browse", "Quit"}) {
            QVERIFY2(find(panel, QAccessible::Button, name), name);
        }
        press(find(panel, QAccessible::Button, "Start"));
        QVERIFY(panel.controller->isRunning);
        QVERIFY(find(panel, QAccessible::Button, "Stop"));
        QVERIFY(!find(panel, QAccessible::Button, "Start"));
    }

    void theModesAreRadioButtonsWithTheirDescriptionAndState() {
        Panel panel;
        panel.open();
        auto* halo = find(panel, QAccessible::RadioButton, "Halo");
        QVERIFY(halo);
        QCOMPARE(halo->text(QAccessible::Description),
                 "Random Halo soundtrack clips on each slap.");
        QVERIFY(halo->state().checkable);
        QVERIFY(!halo->state().checked);
        QVERIFY(find(panel, QAccessible::RadioButton, "Pain")->state().checked);
        press(halo);
        QCOMPARE(panel.controller->currentMode.get(), Mode::halo);
        QVERIFY(halo->state().checked);
        for (const char* name : {"Sexy", "Custom"}) {
            QVERIFY2(find(panel, QAccessible::RadioButton, name), name);
        }
    }

    void theTogglesAreCheckBoxesThatCanBePressedAndToggled() {
        Panel panel;
        panel.open();
        auto* fast = find(panel, QAccessible::CheckBox, "Fast detection");
        QVERIFY(fast);
        QCOMPARE(fast->text(QAccessible::Description), "Shorter cooldown, higher sensitivity.");
        QVERIFY(!fast->state().checked);
        press(fast);
        QVERIFY(panel.controller->fastMode);
        QVERIFY(fast->state().checked);
        fast->actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
        panel.settle();
        QVERIFY(!panel.controller->fastMode);
        QVERIFY(find(panel, QAccessible::CheckBox, "Volume scales with force")->state().checked);
    }

    void theSlidersSpeakTheirOwnUnitsAndCanBeSetInThem() {
        Panel panel;
        panel.open();
        panel.startDetector();
        auto* sensitivity = find(panel, QAccessible::Slider, "Sensitivity");
        QVERIFY(sensitivity && sensitivity->valueInterface());
        QCOMPARE(sensitivity->valueInterface()->minimumValue().toDouble(), 0.01);
        QCOMPARE(sensitivity->valueInterface()->maximumValue().toDouble(), 0.5);
        QCOMPARE(sensitivity->valueInterface()->minimumStepSize().toDouble(), 0.005);
        QCOMPARE(sensitivity->valueInterface()->currentValue().toDouble(), 0.05);
        sensitivity->valueInterface()->setCurrentValue(0.305);
        panel.settle();
        QCOMPARE(panel.controller->minAmplitude.get(), 0.305);
        QVERIFY(panel.label("0.305"));
        panel.pass(1000ms);
        QCOMPARE(panel.launches(), std::size_t{2});  // one value set, one restart

        auto* cooldown = find(panel, QAccessible::Slider, "Cooldown");
        QCOMPARE(cooldown->valueInterface()->minimumValue().toDouble(), 100.0);
        QCOMPARE(cooldown->valueInterface()->maximumValue().toDouble(), 3000.0);
        QCOMPARE(cooldown->valueInterface()->minimumStepSize().toDouble(), 50.0);
        cooldown->valueInterface()->setCurrentValue(1e9);
        QCOMPARE(panel.controller->cooldownMs.get(), 3000);
    }

    void theFieldIsKnownByItsPlaceholderAndCanBeEdited() {
        Panel panel;
        panel.controller->switchMode(Mode::custom);
        panel.open();
        auto* field = QAccessible::queryAccessibleInterface(panel.field());
        QCOMPARE(field->role(), QAccessible::EditableText);
        QCOMPARE(field->text(QAccessible::Name), "Path to MP3 folder...");
        field->setText(QAccessible::Value, "/home/me");
        QCOMPARE(panel.controller->customSoundPath.get(), std::string("/home/me"));
        field->editableTextInterface()->insertText(8, "/x");
        QCOMPARE(panel.controller->customSoundPath.get(), std::string("/home/me/x"));
    }

    void everyOtherTextIsALabelWithExactlyTheTextShown() {
        Panel panel;
        panel.open();
        panel.startDetector();
        panel.print("{\"type\":\"slap\",\"amplitude\":0.25}\n");
        for (const char* text : {"Bonkora",
                                 "Listening for slaps...",
                                 "Last impact:",
                                 "0.2500",
                                 "Sound Mode",
                                 "Settings",
                                 "Sensitivity",
                                 "0.050",
                                 "🦋 Butterfly",
                                 "💪 Full force",
                                 "Cooldown",
                                 "750ms",
                                 "⚡ Rapid-fire",
                                 "🎭 Dramatic pause",
                                 "Lifetime slaps",
                                 "0",
                                 "Session",
                                 "1",
                                 "Mode",
                                 "😫",
                                 "Powered by spank"}) {
            QVERIFY2(find(panel, QAccessible::StaticText, text), text);
        }
    }
};

QTEST_MAIN(AccessibilityTest)
#include "AccessibilityTest.moc"
