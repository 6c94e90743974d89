#include "ui/panel/HeaderAndStatus.h"

#include "platform/Text.h"
#include "ui/controls/TextLabel.h"
#include "ui/drawing/Decorations.h"
#include "ui/panel/PanelLayout.h"

namespace bonkora {

namespace {

constexpr int headerPadding = 10;
constexpr int headerSymbolSize = 20;
constexpr int statusSpacing = 6;
constexpr int amplitudeDecimals = 4;

}  // namespace

HeaderSection::HeaderSection(SpankWrapper& wrapper)
    : spankWrapper(wrapper), runButton(new RunButton) {
    auto* row = panelLayout::padded(new QHBoxLayout(this), panelLayout::sidePadding, headerPadding);
    row->addWidget(new SymbolView(Symbol::handRaisedFill, headerSymbolSize, colorRole::accent));
    row->addWidget(new TextLabel(textStyle::headline.monospaced().weighing(QFont::Bold),
                                 colorRole::primary, tr("Bonkora")));
    row->addStretch();
    row->addWidget(runButton);

    connect(runButton, &RunButton::clicked, this, [this] {
        if (spankWrapper.isRunning) {
            spankWrapper.stop();
        } else {
            spankWrapper.start();
        }
    });
}

void HeaderSection::redraw() {
    runButton->display(spankWrapper.isRunning);
}

StatusSection::StatusSection(SpankWrapper& wrapper)
    : spankWrapper(wrapper),
      dot(new StatusDot),
      statusText(new TextLabel(textStyle::caption.monospaced(), colorRole::secondary, {},
                               TextLabel::Fit::wrapped)),
      impactRow(new QWidget),
      impactValue(new TextLabel(textStyle::caption.monospaced().weighing(QFont::DemiBold),
                                colorRole::accent, {}, TextLabel::Fit::elided)) {
    auto* rows = panelLayout::padded(new QVBoxLayout(this), padding, padding, statusSpacing);

    auto* statusRow = panelLayout::padded(new QHBoxLayout, 0, 0);
    statusRow->addWidget(dot);
    statusRow->addWidget(statusText, 1);
    rows->addLayout(statusRow);

    auto* impact = panelLayout::padded(new QHBoxLayout(impactRow), 0, 0);
    impact->addWidget(
        new TextLabel(textStyle::caption2.monospaced(), colorRole::secondary, tr("Last impact:")));
    impact->addWidget(impactValue);
    impact->addStretch();
    rows->addWidget(impactRow);
}

void StatusSection::redraw() {
    dot->display(spankWrapper.isRunning ? colorRole::accent : colorRole::gray);
    statusText->display(QString::fromStdString(spankWrapper.statusMessage));
    const double amplitude = spankWrapper.lastAmplitude;
    impactValue->display(
        QString::fromStdString(platform::fixedDecimal(amplitude, amplitudeDecimals)));
    impactRow->setVisible(amplitude > 0.0);
}

}  // namespace bonkora
