// One sound mode: how it is named and drawn, and its row in the selector.
#pragma once

#include <QString>

#include "bridge/DetectorSettings.h"
#include "ui/controls/Buttons.h"
#include "ui/controls/Eased.h"

namespace bonkora {

// ModeDisplay: the texts that stand for a sound mode. A fixed table whose texts are shown as they
// are, never translated. Any thread.
struct ModeDisplay {
    QString symbol;  // one emoji
    QString title;
    QString description;

    static ModeDisplay of(Mode mode);
};

// ModeRow: one sound mode of the selector: symbol, title, one line of description and, when it is
// the current one, a tinted background and a check mark. The whole rectangle can be pressed.
class ModeRow final : public Pressable {
    Q_OBJECT

  public:
    explicit ModeRow(Mode mode);

    void display(bool isCurrent, Transition transition);

    bool isOn() const override { return highlighted.isOn(); }
    // How far the highlight has come, from 0 to 1.
    qreal highlight() const { return highlighted.position(); }
    QSize sizeHint() const override;
    qreal focusRadius() const override;

  signals:
    // An arrow key wants the focus on the row `steps` further down; negative is up.
    void focusMoveRequested(int steps);

  protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    const ModeDisplay content;
    Eased highlighted{this};
};

}  // namespace bonkora
