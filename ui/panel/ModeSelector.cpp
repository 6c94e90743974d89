#include "ui/panel/ModeSelector.h"

#include "ui/controls/TextLabel.h"
#include "ui/panel/PanelLayout.h"

namespace bonkora {

namespace {

constexpr int modeSpacing = 6;

}  // namespace

ModeSelector::ModeSelector(SpankWrapper& wrapper, const Appearance& theAppearance)
    : spankWrapper(wrapper),
      appearance(theAppearance),
      rows(),
      folderRow(new FolderRow(wrapper, modeSpacing)) {
    auto* stack = panelLayout::padded(new QVBoxLayout, 0, 0, modeSpacing);
    stack->addWidget(new TextLabel(textStyle::caption.monospaced().weighing(QFont::DemiBold),
                                   colorRole::secondary, tr("Sound Mode")));
    for (std::size_t index = 0; index < allCases.size(); ++index) {
        const Mode mode = allCases.at(index);
        rows.at(index) = new ModeRow(mode);
        stack->addWidget(rows.at(index));
        connect(rows.at(index), &ModeRow::clicked, this, [this, mode] { tap(mode); });
        connect(rows.at(index), &ModeRow::focusMoveRequested, this,
                [this, index](int steps) { moveFocus(index, steps); });
    }
    // The folder row brings its own spacing, so that none is left where it is not.
    auto* section = panelLayout::padded(new QVBoxLayout(this), 0, 0, 0);
    section->addLayout(stack);
    section->addWidget(folderRow);
}

void ModeSelector::redraw() {
    for (std::size_t index = 0; index < allCases.size(); ++index) {
        rows.at(index)->display(spankWrapper.currentMode == allCases.at(index), transition);
    }
    folderRow->display(spankWrapper.currentMode == Mode::custom,
                       QString::fromStdString(spankWrapper.customSoundPath), transition);
    transition = Transition::none;
}

void ModeSelector::tap(Mode mode) {
    transition = appearance.isMotionReduced() ? Transition::none : Transition::easeInOut;
    spankWrapper.switchMode(mode);
}

void ModeSelector::moveFocus(std::size_t from, int steps) {
    const int to = static_cast<int>(from) + steps;
    if (to >= 0 && to < static_cast<int>(rows.size())) {
        rows.at(static_cast<std::size_t>(to))->setFocus(Qt::TabFocusReason);
    }
}

}  // namespace bonkora
