#include "ui/panel/FolderRow.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QPainter>
#include <cmath>

#include "ui/controls/Buttons.h"
#include "ui/drawing/Colors.h"
#include "ui/panel/PanelLayout.h"

namespace bonkora {

namespace {

constexpr int sidePadding = 6;

}  // namespace

FolderRow::FolderRow(SpankWrapper& wrapper, int theSpacing)
    : spankWrapper(wrapper),
      spacing(theSpacing),
      field(new FolderField(tr("Path to MP3 folder..."))),
      content(new QWidget(this)) {
    auto* browseButton =
        new PlainButton(textStyle::caption2.monospaced(), colorRole::accent, tr("Browse"));
    auto* row = panelLayout::padded(new QHBoxLayout(content), sidePadding, 0);
    row->addWidget(field, 1);
    row->addWidget(browseButton);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    content->hide();
    hide();

    connect(field, &FolderField::textChanged, this,
            [this](const QString& text) { spankWrapper.customSoundPath = text.toStdString(); });
    connect(browseButton, &PlainButton::clicked, this, &FolderRow::browse);
    connect(&presence, &Eased::moved, this, &FolderRow::grow);
}

void FolderRow::display(bool isPresent, const QString& path, Transition transition) {
    field->display(path);
    if (isPresent == presence.isOn()) {
        return;
    }
    departing = isPresent || !isVisible() ? QPixmap() : content->grab();
    content->setVisible(isPresent);
    presence.setOn(isPresent, transition);
}

void FolderRow::grow() {
    const qreal whole = spacing + content->sizeHint().height();
    const auto part = static_cast<int>(std::lround(presence.position() * whole));
    setFixedHeight(part);
    setVisible(presence.isOn() || part > 0);
    update();
}

void FolderRow::resizeEvent(QResizeEvent*) {
    content->setGeometry(0, spacing, width(), content->sizeHint().height());
}

void FolderRow::paintEvent(QPaintEvent*) {
    if (!departing.isNull()) {
        QPainter(this).drawPixmap(0, spacing, departing);
    }
}

void FolderRow::browse() {
    if (chooser) {  // assistive technology can press a button behind a dialog
        chooser->showNormal();
        chooser->raise();
        chooser->activateWindow();
        return;
    }
    // A guarded pointer, because the chooser is destroyed with the panel if the panel goes first.
    const QPointer<QFileDialog> opened = new QFileDialog(window());
    chooser = opened;
    opened->setFileMode(QFileDialog::Directory);
    opened->setOption(QFileDialog::ShowDirsOnly);
    const QString last = QString::fromStdString(spankWrapper.customSoundPath);
    opened->setDirectory(QFileInfo(last).isDir() ? last : QDir::homePath());
    // For the panel alone: a click on the item still arrives, and brings the chooser back.
    opened->setWindowModality(Qt::WindowModal);
    const bool isAccepted = opened->exec() == QDialog::Accepted;
    if (!opened) {
        return;
    }
    opened->deleteLater();
    chooser.clear();
    if (isAccepted && !opened->selectedFiles().isEmpty()) {
        spankWrapper.customSoundPath = opened->selectedFiles().constFirst().toStdString();
    }
}

}  // namespace bonkora
