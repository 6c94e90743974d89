// TextLabel: a text in one text style and one colour role. Assistive technology reads exactly the
// text displayed.
#pragma once

#include <QWidget>
#include <optional>

#include "ui/drawing/Colors.h"
#include "ui/drawing/TextStyle.h"

namespace bonkora {

class TextLabel final : public QWidget {
    Q_OBJECT

  public:
    enum class Fit {
        whole,    // one line that is never cut: for captions
        elided,   // one line that gives way to others: it ends in an ellipsis then, and the whole
                  // text is in the tool tip
        wrapped,  // as many lines as the text needs in the width that there is
    };

    TextLabel(const TextStyle& style, QPalette::ColorRole color, const QString& text = {},
              Fit fit = Fit::whole);

    QString text() const { return shown; }
    // Nothing in `text` is taken for markup. Cheap when it is displayed already.
    void display(const QString& text);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    int heightForWidth(int width) const override;

  protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

  private:
    bool takesAsMuch(const QString& newText) const;
    void offerWholeText();

    const TextStyle look;
    const QPalette::ColorRole color;
    const Fit fit;
    QString shown;
    // Measuring a text costs more than drawing it, and a layout asks for it many times.
    mutable std::optional<QSize> natural;
    mutable int wrappedWidth = -1;  // to which the text was wrapped last
    mutable int wrappedHeight = 0;
};

}  // namespace bonkora
