// The panel over a whole system of the test's own: virtual time, an obedient runner, user defaults
// in a folder that goes with the test. Found and driven as a person would: by the texts shown, with
// mouse and keys.
#pragma once

#include <QSettings>
#include <QSignalSpy>
#include <QTest>
#include <memory>

#include "tests/support/TestPlatform.h"
#include "ui/controls/Accessibility.h"
#include "ui/controls/Buttons.h"
#include "ui/controls/FolderField.h"
#include "ui/controls/StepSlider.h"
#include "ui/controls/TextLabel.h"
#include "ui/controls/ToggleRow.h"
#include "ui/drawing/Decorations.h"
#include "ui/panel/MenuBarContentView.h"
#include "ui/panel/ModeRow.h"
#include "ui/state/Appearance.h"

namespace bonkora::test {

class Panel {
  public:
    TestPlatform system;
    // Read when the panel opens and whenever it changes.
    const std::string defaultsFile = system.folder / "config/Bonkora/Bonkora.conf";
    std::shared_ptr<SpankWrapper> controller = system.makeController();
    Appearance appearance;
    int terminations = 0;
    std::unique_ptr<MenuBarContentView> view;

    Panel() {
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope,
                           QString::fromStdString(system.folder / "config"));
        installAccessibility();
    }

    void store(const std::string& text) {
        system.folder.write("config/Bonkora/Bonkora.conf", text);
    }

    void open() {
        view = std::make_unique<MenuBarContentView>(*controller, environment());
        view->setFixedSize(340, 520);
        view->show();
        view->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(view.get()));
        settle();
    }
    void close() { view.reset(); }

    PanelEnvironment environment() {
        return {system.mainQueue, [this] { ++terminations; }, appearance};
    }

    // Lets the redraws happen that were asked for, and then the layouts that they ask for: each
    // level of them takes a turn of the loop.
    static void settle() {
        for (int turn = 0; turn < 5; ++turn) {
            QCoreApplication::processEvents();
        }
    }
    void pass(milliseconds duration) {
        system.time->advance(duration);
        settle();
    }

    void startDetector() {
        controller->start();
        QVERIFY(controller->isRunning);
        settle();
    }
    // As the running detector would.
    void print(std::string_view lines) {
        system.processes->last().print(lines);
        pass(milliseconds(0));
    }
    std::size_t launches() const { return system.processes->made.size(); }

    TextLabel* label(const QString& text) const { return withText<TextLabel>(text); }
    Pressable* button(const QString& text) const { return withText<Pressable>(text); }
    ModeRow* row(const QString& title) const { return withText<ModeRow>(title); }
    ToggleRow* toggle(const QString& title) const { return withText<ToggleRow>(title); }
    StatusDot* dot() const { return first<StatusDot>(); }
    FolderField* field() const { return first<FolderField>(); }
    StepSlider* slider(const QString& name) const {
        for (StepSlider* slider : all<StepSlider>()) {
            if (slider->accessibleName() == name) {
                return slider;
            }
        }
        return nullptr;
    }

    // In the middle of a widget, wherever it stands in the panel.
    void click(QWidget* widget) const {
        QVERIFY(widget != nullptr);
        clickAt(widget, widget->rect().center());
    }
    void clickAt(QWidget* widget, const QPoint& position) const {
        QTest::mouseClick(widget, Qt::LeftButton, {}, position);
        settle();
    }
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) const {
        QWidget* focused = view->focusWidget();
        QTest::keyClick(focused != nullptr ? focused : view.get(), key, modifiers);
        settle();
    }

    static QColor colorInTheMiddle(QWidget* widget) {
        const QImage image = widget->grab().toImage();
        return image.pixelColor(image.rect().center());
    }

    // Those that are to be seen, though perhaps only after scrolling.
    template <typename Widget>
    QList<Widget*> all() const {
        QList<Widget*> widgets = view->findChildren<Widget*>();
        widgets.removeIf([this](Widget* widget) { return !widget->isVisibleTo(view.get()); });
        return widgets;
    }

  private:
    template <typename Widget>
    Widget* first() const {
        return all<Widget>().value(0, nullptr);
    }
    template <typename Widget>
    Widget* withText(const QString& text) const {
        for (Widget* widget : all<Widget>()) {
            if (widget->text() == text) {
                return widget;
            }
        }
        return nullptr;
    }
};

}  // namespace bonkora::test
