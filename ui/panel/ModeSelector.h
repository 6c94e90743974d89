// ModeSelector: the four sound modes and, for the custom one, the folder row. It holds no selection
// of its own: it shows the controller's and passes every tap on.
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
    // How the next redraw moves the highlight: eased after a tap, otherwise at once.
    ModeRow::Transition transition = ModeRow::Transition::none;
};

}  // namespace bonkora
