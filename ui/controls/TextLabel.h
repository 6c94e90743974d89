// TextLabel: a text in one text style and one colour role. It is a QLabel, so that assistive
// technology reads exactly the text shown, but draws the text itself.
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

    // Nothing in `text` is taken for markup. Cheap when it is displayed already.
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
    // Measuring a text costs more than drawing it, and a layout asks for it many times.
    mutable std::optional<QSize> natural;
    mutable int wrappedWidth = -1;  // to which the text was wrapped last
    mutable int wrappedHeight = 0;
};

}  // namespace bonkora
