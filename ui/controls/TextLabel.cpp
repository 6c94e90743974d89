#include "ui/controls/TextLabel.h"

#include <QFontInfo>
#include <QPainter>
#include <algorithm>
#include <cmath>

#include "ui/drawing/TextStyle.h"

namespace bonkora {

TextLabel::TextLabel(const TextStyle& theStyle, QPalette::ColorRole theColor, const QString& text,
                     Lines theLines)
    : look(theStyle), color(theColor), lines(theLines) {
    setTextFormat(Qt::PlainText);
    setFont(look.font());
    setSizePolicy(lines == Lines::one ? QSizePolicy::Preferred : QSizePolicy::Expanding,
                  lines == Lines::one ? QSizePolicy::Fixed : QSizePolicy::Preferred);
    setWordWrap(lines == Lines::asNeeded);  // QLabel lets its height follow its width only then
    setText(text);
    fixSize();
}

void TextLabel::display(const QString& newText) {
    if (newText != text()) {
        if (!takesAsMuch(newText)) {
            natural.reset();
        }
        wrappedWidth = -1;
        setText(newText);
        fixSize();
    }
}

// Most changes are of numbers, the digits of a fixed font are equally wide, and measuring costs as
// much as everything else that a redraw does.
bool TextLabel::takesAsMuch(const QString& newText) const {
    const auto isAsWide = [](QChar one, QChar other) {
        const auto isDigit = [](QChar character) { return character >= u'0' && character <= u'9'; };
        return one == other || (isDigit(one) && isDigit(other));
    };
    const QString old = text();
    return lines == Lines::one && look.isMonospaced &&
           std::equal(newText.begin(), newText.end(), old.begin(), old.end(), isAsWide) &&
           QFontInfo(font()).fixedPitch();
}

// A widget of fixed size costs the panel no new layout when its text changes.
void TextLabel::fixSize() {
    if (lines == Lines::one) {
        setFixedSize(sizeHint());
    }
}

QSize TextLabel::sizeHint() const {
    if (!natural) {
        const QSizeF size = textPainter::naturalSize(text(), look);
        natural = QSize(static_cast<int>(std::ceil(size.width())), static_cast<int>(size.height()));
    }
    return *natural;
}

QSize TextLabel::minimumSizeHint() const {
    return {lines == Lines::one ? sizeHint().width() : 1, look.lineHeight};
}

int TextLabel::heightForWidth(int width) const {
    if (lines == Lines::one) {
        return look.lineHeight;
    }
    if (wrappedWidth < 0 || wrappedWidth != width) {
        wrappedWidth = width;
        wrappedHeight = static_cast<int>(textPainter::wrappedHeight(text(), look, width));
    }
    return wrappedHeight;
}

void TextLabel::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    if (lines == Lines::one) {
        textPainter::drawLine(painter, rect(), text(), look, palette().color(color), alignment());
    } else {
        textPainter::drawWrapped(painter, rect(), text(), look, palette().color(color));
    }
}

}  // namespace bonkora
