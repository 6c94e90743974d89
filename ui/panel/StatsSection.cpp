#include "ui/panel/StatsSection.h"

#include "ui/panel/ModeDisplay.h"
#include "ui/panel/PanelLayout.h"

namespace bonkora {

namespace {

constexpr int columnSpacing = 3;

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
      lifetimeValue(
          new TextLabel(textStyle::title2.monospaced().weighing(QFont::Bold), colorRole::accent)),
      sessionValue(new TextLabel(textStyle::title3.monospaced().weighing(QFont::DemiBold),
                                 colorRole::primary)),
      modeSymbol(new TextLabel(textStyle::title2, colorRole::primary)) {
    auto* columns = panelLayout::padded(new QHBoxLayout(this), padding, padding);
    columns->addLayout(column(tr("Lifetime slaps"), lifetimeValue, Qt::AlignLeft));
    columns->addStretch();
    QVBoxLayout* session = column(tr("Session"), sessionValue, Qt::AlignRight);
    columns->addLayout(session);
    columns->setAlignment(session, Qt::AlignVCenter);  // it is the lowest of the three
    columns->addStretch();
    columns->addLayout(column(tr("Mode"), modeSymbol, Qt::AlignRight));
}

void StatsSection::redraw() {
    lifetimeValue->show(tr("%1").arg(slapCounterTotal.get()));
    sessionValue->show(tr("%1").arg(spankWrapper.slapCount.get()));
    modeSymbol->show(ModeDisplay::of(spankWrapper.currentMode).symbol);
}

}  // namespace bonkora
