// ModeSelector: the four sound modes and, for the custom one, the folder row. Holds no selection:
// it shows the controller's, and hands every tap on. Main thread.
#pragma once

#include <QWidget>
#include <array>

#include "bridge/SpankWrapper.h"
#include "ui/controls/FolderField.h"
#include "ui/panel/ModeRow.h"

namespace bonkora {

class ModeSelector final : public QWidget {
    Q_OBJECT

  public:
    explicit ModeSelector(SpankWrapper& spankWrapper);

    void redraw();

  private:
    QWidget* makeFolderRow();
    void tap(Mode mode);
    void moveFocus(std::size_t from, int steps);
    void browse();

    SpankWrapper& spankWrapper;
    std::array<ModeRow*, allCases.size()> rows;
    FolderField* folderField;
    QWidget* folderRow;
    // What the next redraw moves the highlight with: eased in and out after a tap.
    ModeRow::Transition transition = ModeRow::Transition::none;
};

}  // namespace bonkora
