#include "ui/panel/StatsAndFooter.h"

#include <chrono>

#include "ui/controls/Buttons.h"
#include "ui/controls/TextLabel.h"
#include "ui/panel/ModeRow.h"
#include "ui/panel/PanelLayout.h"

namespace bonkora {

namespace {

constexpr int columnSpacing = 3;
constexpr int footerPadding = 8;
// The only time that the detector has to shut down before the application ends.
constexpr std::chrono::milliseconds pauseBeforeQuitting{300};

QVBoxLayout* column(const QString& caption, TextLabel* value, Qt::Alignment alignment) {
    auto* stack = panelLayout::padded(new QVBoxLayout, 0, 0, columnSpacing);
    stack->addWidget(new TextLabel(textStyle::caption2.monospaced(), colorRole::secondary, caption),
                     0, alignment);
    stack->addWidget(value, 0, alignment);
    return stack;
}

}  // namespace

StatsSection::StatsSection(SpankWrapper& wrapper, const AppStorage& total)
    : spankWrapper(wrapper),
      slapCounterTotal(total),
      lifetimeValue(new TextLabel(textStyle::title2.monospaced().weighing(QFont::Bold),
                                  colorRole::accent, {}, TextLabel::Fit::elided)),
      sessionValue(new TextLabel(textStyle::title3.monospaced().weighing(QFont::DemiBold),
                                 colorRole::primary, {}, TextLabel::Fit::elided)),
      modeSymbol(new TextLabel(textStyle::title2, colorRole::primary)) {
    auto* columns = panelLayout::padded(new QHBoxLayout(this), padding, padding);
    columns->addLayout(column(tr("Lifetime slaps"), lifetimeValue, Qt::AlignLeft));
    columns->addStretch();
    QVBoxLayout* session = column(tr("Session"), sessionValue, Qt::AlignRight);
    columns->addLayout(session);
    columns->setAlignment(session, Qt::AlignVCenter);  // it is the shortest column
    columns->addStretch();
    columns->addLayout(column(tr("Mode"), modeSymbol, Qt::AlignRight));
}

void StatsSection::redraw() {
    lifetimeValue->display(tr("%1").arg(slapCounterTotal.get()));
    sessionValue->display(tr("%1").arg(spankWrapper.slapCount.get()));
    modeSymbol->display(ModeDisplay::of(spankWrapper.currentMode).symbol);
}

FooterSection::FooterSection(SpankWrapper& wrapper, const PanelEnvironment& theEnvironment)
    : spankWrapper(wrapper), environment(theEnvironment) {
    auto* quitButton =
        new PlainButton(textStyle::caption2.monospaced(), colorRole::red, tr("Quit"));
    auto* row = panelLayout::padded(new QHBoxLayout(this), panelLayout::sidePadding, footerPadding);
    row->addWidget(new TextLabel(textStyle::caption2.monospaced(), colorRole::secondary,
                                 tr("Powered by spank")));
    row->addStretch();
    row->addWidget(quitButton);
    connect(quitButton, &PlainButton::clicked, this, &FooterSection::quit);
}

void FooterSection::quit() {
    spankWrapper.stop();
    // Nothing of the panel is captured: it may be closed before the time is up.
    environment.mainQueue->asyncAfter(pauseBeforeQuitting, environment.terminate);
}

}  // namespace bonkora
