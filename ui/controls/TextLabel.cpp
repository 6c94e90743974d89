#include "ui/controls/TextLabel.h"

#include <QAccessible>
#include <QFontInfo>
#include <QPainter>
#include <algorithm>
#include <cmath>

namespace bonkora {

namespace {

// Tool tips do not wrap a plain text by themselves.
constexpr int toolTipWidth = 60;

QString inShortLines(QString text) {
    for (qsizetype at = toolTipWidth; at < text.size(); at += toolTipWidth + 1) {
        text.insert(at, '\n');
    }
    return text;
}

}  // namespace

TextLabel::TextLabel(const TextStyle& theStyle, QPalette::ColorRole theColor, const QString& text,
                     Fit theFit)
    : look(theStyle), color(theColor), fit(theFit), shown(text) {
    setFont(look.font());
    QSizePolicy policy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    if (fit == Fit::elided) {
        policy.setHorizontalPolicy(QSizePolicy::Maximum);
    } else if (fit == Fit::wrapped) {
        policy = QSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
        policy.setHeightForWidth(true);
    }
    setSizePolicy(policy);
}

void TextLabel::display(const QString& newText) {
    if (newText == shown) {
        return;
    }
    const bool needsLayout = !takesAsMuch(newText);
    shown = newText;
    if (needsLayout) {
        natural.reset();
        wrappedWidth = -1;
        updateGeometry();
    }
    offerWholeText();
    update();
    QAccessibleEvent event(this, QAccessible::NameChanged);
    QAccessible::updateAccessibility(&event);
}

// Most changes are of numbers, and the digits of a fixed font are equally wide: they need neither
// measuring nor a new layout, each of which costs as much as everything else that a redraw does.
bool TextLabel::takesAsMuch(const QString& newText) const {
    const auto isAsWide = [](QChar one, QChar other) {
        const auto isDigit = [](QChar character) { return character >= u'0' && character <= u'9'; };
        return one == other || (isDigit(one) && isDigit(other));
    };
    return fit != Fit::wrapped && look.isMonospaced &&
           std::equal(newText.begin(), newText.end(), shown.begin(), shown.end(), isAsWide) &&
           QFontInfo(font()).fixedPitch();
}

void TextLabel::offerWholeText() {
    const bool isCut = fit == Fit::elided && width() < sizeHint().width();
    const QString offered = isCut ? inShortLines(shown) : QString();
    if (offered != toolTip()) {
        setToolTip(offered);
    }
}

QSize TextLabel::sizeHint() const {
    if (!natural) {
        const QSizeF size = textPainter::naturalSize(shown, look);
        natural = QSize(static_cast<int>(std::ceil(size.width())), static_cast<int>(size.height()));
    }
    return *natural;
}

QSize TextLabel::minimumSizeHint() const {
    return fit == Fit::whole ? sizeHint() : QSize(1, look.lineHeight);
}

int TextLabel::heightForWidth(int width) const {
    if (fit != Fit::wrapped) {
        return look.lineHeight;
    }
    if (wrappedWidth < 0 || wrappedWidth != width) {
        wrappedWidth = width;
        wrappedHeight = static_cast<int>(textPainter::wrappedHeight(shown, look, width));
    }
    return wrappedHeight;
}

void TextLabel::resizeEvent(QResizeEvent*) {
    offerWholeText();
}

void TextLabel::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    if (fit == Fit::wrapped) {
        textPainter::drawWrapped(painter, rect(), shown, look, palette().color(color));
    } else {
        textPainter::drawLine(painter, rect(), shown, look, palette().color(color));
    }
}

}  // namespace bonkora
