// TextLabel: a text of the panel in one text style and one colour role. A QLabel, so that assistive
// technology reads exactly the text shown; the drawing is ours. Main thread.
#pragma once

#include <QLabel>
#include <optional>

#include "ui/drawing/Colors.h"
#include "ui/drawing/TextStyle.h"

namespace bonkora {

class TextLabel final : public QLabel {
    Q_OBJECT

  public:
    enum class Lines {
        one,       // ends in an ellipsis where it does not fit
        asNeeded,  // takes the width it is given and as many lines as the text needs
    };

    TextLabel(const TextStyle& style, QPalette::ColorRole color, const QString& text = {},
              Lines lines = Lines::one);

    // Shows `text` as it is: nothing in it is markup. Cheap when it is shown already.
    void display(const QString& text);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    int heightForWidth(int width) const override;

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    void fixSize();
    bool takesAsMuch(const QString& newText) const;

    const TextStyle look;
    const QPalette::ColorRole color;
    const Lines lines;
    // What the layout asks again and again for one text; shaping it is what a redraw costs.
    mutable std::optional<QSize> natural;
    mutable int wrappedWidth = -1;  // to which the text was wrapped last
    mutable int wrappedHeight = 0;
};

}  // namespace bonkora
