// One sound mode: how it is named and drawn, and its row in the selector.
#pragma once

#include <QString>
#include <QVariantAnimation>

#include "bridge/DetectorSettings.h"
#include "ui/controls/Buttons.h"

namespace bonkora {

// ModeDisplay: how the panel shows a sound mode. A fixed table, shown as it is: none of it is
// looked up for translation. Values; any thread.
struct ModeDisplay {
    QString symbol;  // one emoji
    QString title;
    QString description;

    static ModeDisplay of(Mode mode);
};

// ModeRow: one sound mode of the selector: symbol, title, one line of description and, when it is
// the current one, a tinted background and a check mark. The whole rectangle can be pressed.
// Main thread.
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
    // The arrow keys ask for the row `steps` further on.
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
