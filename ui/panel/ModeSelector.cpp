#include "ui/panel/ModeSelector.h"

#include <QFileDialog>
#include <QPointer>

#include "ui/controls/Buttons.h"
#include "ui/controls/TextLabel.h"
#include "ui/panel/PanelLayout.h"

namespace bonkora {

namespace {

constexpr int rowSpacing = 6;
constexpr int folderRowPadding = 6;

}  // namespace

ModeSelector::ModeSelector(SpankWrapper& wrapper)
    : spankWrapper(wrapper),
      rows(),
      folderField(new FolderField(tr("Path to MP3 folder..."))),
      folderRow(nullptr) {
    auto* stack = panelLayout::padded(new QVBoxLayout(this), 0, 0, rowSpacing);
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
    folderRow = makeFolderRow();
    stack->addWidget(folderRow);
}

QWidget* ModeSelector::makeFolderRow() {
    auto* row = new QWidget;
    auto* browseButton =
        new PlainButton(textStyle::caption2.monospaced(), colorRole::accent, tr("Browse"));
    auto* stack = panelLayout::padded(new QHBoxLayout(row), folderRowPadding, 0);
    stack->addWidget(folderField, 1);
    stack->addWidget(browseButton);

    connect(folderField, &FolderField::textChanged, this,
            [this](const QString& text) { spankWrapper.customSoundPath = text.toStdString(); });
    connect(browseButton, &PlainButton::clicked, this, &ModeSelector::browse);
    return row;
}

void ModeSelector::redraw() {
    for (std::size_t index = 0; index < allCases.size(); ++index) {
        rows.at(index)->display(spankWrapper.currentMode == allCases.at(index), transition);
    }
    transition = ModeRow::Transition::none;
    folderField->display(QString::fromStdString(spankWrapper.customSoundPath));
    folderRow->setVisible(spankWrapper.currentMode == Mode::custom);
}

void ModeSelector::tap(Mode mode) {
    transition = ModeRow::Transition::easeInOut;
    spankWrapper.switchMode(mode);
}

void ModeSelector::moveFocus(std::size_t from, int steps) {
    const int to = static_cast<int>(from) + steps;
    if (to >= 0 && to < static_cast<int>(rows.size())) {
        rows.at(static_cast<std::size_t>(to))->setFocus(Qt::TabFocusReason);
    }
}

void ModeSelector::browse() {
    // A guarded pointer: the chooser is destroyed with the panel if the panel goes first.
    const QPointer<QFileDialog> chooser = new QFileDialog(window());
    chooser->setFileMode(QFileDialog::Directory);
    chooser->setOption(QFileDialog::ShowDirsOnly);
    const bool isAccepted = chooser->exec() == QDialog::Accepted;
    if (!chooser) {
        return;
    }
    chooser->deleteLater();
    if (isAccepted && !chooser->selectedFiles().isEmpty()) {
        spankWrapper.customSoundPath = chooser->selectedFiles().constFirst().toStdString();
    }
}

}  // namespace bonkora
