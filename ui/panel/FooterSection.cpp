#include "ui/panel/FooterSection.h"

#include <chrono>

#include "ui/controls/PlainButton.h"
#include "ui/controls/TextLabel.h"
#include "ui/panel/PanelLayout.h"

namespace bonkora {

namespace {

constexpr int verticalPadding = 8;
// All the time that the detector's shutdown gets before the application ends.
constexpr std::chrono::milliseconds terminateDelay{300};

}  // namespace

FooterSection::FooterSection(SpankWrapper& wrapper, const PanelEnvironment& theEnvironment)
    : spankWrapper(wrapper), environment(theEnvironment) {
    auto* quitButton =
        new PlainButton(textStyle::caption2.monospaced(), colorRole::red, tr("Quit"));
    auto* row =
        panelLayout::padded(new QHBoxLayout(this), panelLayout::sidePadding, verticalPadding);
    row->addWidget(new TextLabel(textStyle::caption2.monospaced(), colorRole::secondary,
                                 tr("Powered by spank")));
    row->addStretch();
    row->addWidget(quitButton);
    connect(quitButton, &PlainButton::clicked, this, &FooterSection::quit);
}

void FooterSection::quit() {
    spankWrapper.stop();
    // The step belongs to the queue, not to the panel, which may be gone by then.
    environment.mainQueue->asyncAfter(terminateDelay, environment.terminate);
}

}  // namespace bonkora
