// One sound mode: how it is named and drawn, and its row in the selector.
#pragma once

#include <QString>
#include <QVariantAnimation>

#include "bridge/DetectorSettings.h"
#include "ui/controls/Buttons.h"

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
    enum class Transition { none, easeInOut };

    explicit ModeRow(Mode mode);

    // The transition takes 0.2 s.
    void display(bool isCurrent, Transition transition);

    bool isOn() const override { return isCurrent; }
    // How far the highlight has come, from 0 to 1.
    qreal highlight() const { return highlighted; }
    QSize sizeHint() const override;

  signals:
    // An arrow key wants the focus on the row `steps` further down; negative is up.
    void focusMoveRequested(int steps);

  protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    const ModeDisplay content;
    bool isCurrent = false;
    qreal highlighted = 0;
    QVariantAnimation animation{this};
};

}  // namespace bonkora
