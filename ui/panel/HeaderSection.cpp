#include "ui/panel/HeaderSection.h"

#include "ui/controls/TextLabel.h"
#include "ui/drawing/SymbolView.h"
#include "ui/panel/PanelLayout.h"

namespace bonkora {

namespace {

constexpr int verticalPadding = 10;
constexpr int symbolSize = 20;

}  // namespace

HeaderSection::HeaderSection(SpankWrapper& wrapper)
    : spankWrapper(wrapper), runButton(new RunButton) {
    auto* row =
        panelLayout::padded(new QHBoxLayout(this), panelLayout::sidePadding, verticalPadding);
    row->addWidget(new SymbolView(Symbol::handRaisedFill, symbolSize, colorRole::accent));
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
    runButton->show(spankWrapper.isRunning);
}

}  // namespace bonkora
