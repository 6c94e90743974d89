#include "ui/controls/Accessibility.h"

#include <QAccessible>
#include <QAccessibleWidget>

#include "ui/controls/Buttons.h"
#include "ui/controls/StepSlider.h"
#include "ui/controls/TextLabel.h"

namespace bonkora {

namespace {

class AccessiblePressable final : public QAccessibleWidget {
  public:
    explicit AccessiblePressable(Pressable& button)
        : QAccessibleWidget(&button, button.role()), pressable(button) {}

    QString text(QAccessible::Text kind) const override {
        return kind == QAccessible::Name ? pressable.text() : QAccessibleWidget::text(kind);
    }

    QAccessible::State state() const override {
        QAccessible::State state = QAccessibleWidget::state();
        state.checkable = isCheckable();
        state.checked = pressable.isOn();
        state.pressed = pressable.isDown();
        return state;
    }

    QStringList actionNames() const override {
        QStringList names{pressAction()};
        if (isCheckable()) {
            names << toggleAction();
        }
        return names + QAccessibleWidget::actionNames();
    }

    void doAction(const QString& name) override {
        if (name == pressAction() || name == toggleAction()) {
            // Queued, because the press may open a dialog and the caller must not wait for that.
            QMetaObject::invokeMethod(&pressable, &Pressable::click, Qt::QueuedConnection);
        } else {
            QAccessibleWidget::doAction(name);
        }
    }

  private:
    bool isCheckable() const { return role() != QAccessible::Button; }

    Pressable& pressable;
};

class AccessibleSlider final : public QAccessibleWidget, public QAccessibleValueInterface {
  public:
    explicit AccessibleSlider(StepSlider& theSlider)
        : QAccessibleWidget(&theSlider, QAccessible::Slider), slider(theSlider) {}

    void* interface_cast(QAccessible::InterfaceType type) override {
        return type == QAccessible::ValueInterface ? static_cast<QAccessibleValueInterface*>(this)
                                                   : QAccessibleWidget::interface_cast(type);
    }

    QVariant currentValue() const override { return slider.value(); }
    void setCurrentValue(const QVariant& value) override { slider.edit(value.toDouble()); }
    QVariant minimumValue() const override { return slider.values().lowest(); }
    QVariant maximumValue() const override { return slider.values().highest(); }
    QVariant minimumStepSize() const override { return slider.values().stepSize(); }

  private:
    StepSlider& slider;
};

class AccessibleLabel final : public QAccessibleWidget {
  public:
    explicit AccessibleLabel(TextLabel& theLabel)
        : QAccessibleWidget(&theLabel, QAccessible::StaticText), label(theLabel) {}

    QString text(QAccessible::Text kind) const override {
        return kind == QAccessible::Name ? label.text() : QAccessibleWidget::text(kind);
    }

  private:
    TextLabel& label;
};

QAccessibleInterface* makeInterface(const QString&, QObject* object) {
    if (auto* pressable = qobject_cast<Pressable*>(object)) {
        return new AccessiblePressable(*pressable);
    }
    if (auto* slider = qobject_cast<StepSlider*>(object)) {
        return new AccessibleSlider(*slider);
    }
    if (auto* label = qobject_cast<TextLabel*>(object)) {
        return new AccessibleLabel(*label);
    }
    return nullptr;
}

}  // namespace

void installAccessibility() {
    QAccessible::installFactory(makeInterface);
}

}  // namespace bonkora
