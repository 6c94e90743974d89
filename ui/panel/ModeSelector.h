// ModeSelector: the four sound modes and, for the custom one, the folder row. It holds no selection
// of its own: it shows the controller's and passes every tap on.
#pragma once

#include <QWidget>
#include <array>

#include "bridge/SpankWrapper.h"
#include "ui/panel/FolderRow.h"
#include "ui/panel/ModeRow.h"
#include "ui/state/Appearance.h"

namespace bonkora {

class ModeSelector final : public QWidget {
    Q_OBJECT

  public:
    // `appearance` outlives the selector.
    ModeSelector(SpankWrapper& spankWrapper, const Appearance& appearance);

    void redraw();

  private:
    void tap(Mode mode);
    void moveFocus(std::size_t from, int steps);

    SpankWrapper& spankWrapper;
    const Appearance& appearance;
    std::array<ModeRow*, allCases.size()> rows;
    FolderRow* folderRow;
    // How the next redraw moves highlight and folder row: eased after a tap, otherwise at once.
    Transition transition = Transition::none;
};

}  // namespace bonkora
