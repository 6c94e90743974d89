#include "ui/panel/MenuBarContentView.h"

#include <QApplication>
#include <QKeyEvent>
#include <QScrollArea>

#include "ui/controls/FocusRing.h"
#include "ui/controls/ScrollIndicator.h"
#include "ui/drawing/Colors.h"
#include "ui/drawing/Decorations.h"
#include "ui/panel/HeaderAndStatus.h"
#include "ui/panel/ModeSelector.h"
#include "ui/panel/PanelLayout.h"
#include "ui/panel/SettingsSection.h"
#include "ui/panel/StatsAndFooter.h"

namespace bonkora {

namespace {

constexpr int sectionSpacing = 14;
constexpr int scrollPadding = 14;

}  // namespace

MenuBarContentView::MenuBarContentView(SpankWrapper& wrapper, const PanelEnvironment& environment)
    : spankWrapper(wrapper),
      appearance(environment.appearance),
      headerSection(new HeaderSection(wrapper)),
      statusSection(new StatusSection(wrapper)),
      modeSelector(new ModeSelector(wrapper, environment.appearance)),
      settingsSection(new SettingsSection(wrapper, sliderValues, environment.appearance)),
      statsSection(new StatsSection(wrapper, slapCounterTotal)),
      footerSection(new FooterSection(wrapper, environment)) {
    layOut();
    takeColors();
    connect(&appearance, &Appearance::changed, this, &MenuBarContentView::takeColors);
    connect(qApp, &QApplication::focusChanged, this, &MenuBarContentView::keepFocusVisible);
    observation.observe(spankWrapper);
    observation.observe(slapCounterTotal);
}

MenuBarContentView::~MenuBarContentView() {
    // Destroying the children moves the focus; nothing of this class is left to hear that by then.
    disconnect(qApp, nullptr, this, nullptr);
}

void MenuBarContentView::layOut() {
    auto* column = new QWidget;
    auto* sections = new QVBoxLayout(column);
    // The scroll indicator stands within the padding at the right.
    sections->setContentsMargins(scrollPadding, scrollPadding,
                                 scrollPadding - ScrollIndicator::thickness, scrollPadding);
    sections->setSpacing(sectionSpacing);
    sections->addWidget(statusSection);
    sections->addWidget(modeSelector);
    sections->addWidget(settingsSection);
    sections->addWidget(statsSection);
    sections->addStretch();

    scrollArea = new QScrollArea;
    scrollArea->setVerticalScrollBar(new ScrollIndicator);
    scrollArea->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    scrollArea->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scrollArea->setFrameShape(QFrame::NoFrame);
    scrollArea->setFocusPolicy(Qt::NoFocus);
    scrollArea->setWidgetResizable(true);
    scrollArea->setWidget(column);
    scrollArea->viewport()->setAutoFillBackground(false);
    column->setAutoFillBackground(false);

    auto* stack = panelLayout::padded(new QVBoxLayout(this), 0, 0, 0);
    stack->addWidget(headerSection);
    stack->addWidget(new Divider);
    stack->addWidget(scrollArea, 1);
    stack->addWidget(new Divider);
    stack->addWidget(footerSection);

    for (QWidget* area :
         {static_cast<QWidget*>(headerSection), column, static_cast<QWidget*>(footerSection)}) {
        new FocusRing(*area);
    }
}

void MenuBarContentView::showEvent(QShowEvent* event) {
    if (!event->spontaneous()) {
        sliderValues.cooldown = static_cast<double>(spankWrapper.cooldownMs.get());
        sliderValues.sensitivity = spankWrapper.minAmplitude;
        redraw();
        setFocus();  // otherwise the window would give it to the first control
    }
    QWidget::showEvent(event);
}

void MenuBarContentView::keyPressEvent(QKeyEvent* event) {
    if (hasFocus()) {
        scrollArea->verticalScrollBar()->event(event);
    } else {
        QWidget::keyPressEvent(event);
    }
}

void MenuBarContentView::redraw() {
    headerSection->redraw();
    statusSection->redraw();
    modeSelector->redraw();
    settingsSection->redraw();
    statsSection->redraw();
}

void MenuBarContentView::takeColors() {
    setPalette(panelPalette(appearance.isDark()));
}

void MenuBarContentView::keepFocusVisible() {
    QWidget* focused = QApplication::focusWidget();
    if (focused != nullptr && scrollArea->widget()->isAncestorOf(focused)) {
        scrollArea->ensureWidgetVisible(focused, 0, scrollPadding);
    }
}

}  // namespace bonkora
