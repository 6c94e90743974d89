#include "ui/drawing/TextStyle.h"

#include <QFontDatabase>
#include <QFontMetricsF>
#include <QStringList>
#include <QTextLayout>
#include <algorithm>
#include <cmath>
#include <limits>

namespace bonkora {

namespace {

// The desktop's fixed font, if it names one. If it only says "monospace", the first of these that
// is installed: they read better at ten pixels than what that usually stands for.
QStringList fixedFamilies() {
    const QString chosen = QFontDatabase::systemFont(QFontDatabase::FixedFont).family();
    QStringList families{"Hack", "Noto Sans Mono", "DejaVu Sans Mono"};
    const bool isGeneric =
        chosen.isEmpty() || chosen.compare("monospace", Qt::CaseInsensitive) == 0;
    families.insert(isGeneric ? families.size() : 0, isGeneric ? "monospace" : chosen);
    return families;
}

QStringList emojiFamilies() {
    QStringList families{"Noto Color Emoji", "Apple Color Emoji", "Twemoji", "Emoji One"};
    families.removeIf([](const QString& family) { return !QFontDatabase::hasFamily(family); });
    return families;
}

}  // namespace

QFont TextStyle::font() const {
    static const QStringList families = fixedFamilies();
    QFont font = QFontDatabase::systemFont(QFontDatabase::GeneralFont);
    if (isMonospaced) {
        font.setFamilies(families);
        font.setStyleHint(QFont::Monospace);
    }
    font.setPixelSize(size);
    font.setWeight(weight);
    return font;
}

QFont TextStyle::emojiFont() const {
    static const QStringList families = emojiFamilies();
    QFont font = QFontDatabase::systemFont(QFontDatabase::GeneralFont);
    if (!families.isEmpty()) {
        font.setFamilies(families);
    }
    font.setPixelSize(size);
    return font;
}

namespace textPainter {

namespace {

constexpr qreal unlimited = 1e6;

bool isEmoji(char32_t character) {
    return character >= 0x1F000 || (character >= 0x2600 && character <= 0x27BF);
}

bool joinsEmoji(char32_t character) {
    return character == 0xFE0F || character == 0x200D;
}

// The parts of `text` that are drawn in the emoji font.
QList<QTextLayout::FormatRange> emojiRanges(const QString& text, const TextStyle& style) {
    QList<QTextLayout::FormatRange> ranges;
    for (qsizetype at = 0; at < text.size();) {
        const bool isPair = text[at].isHighSurrogate() && at + 1 < text.size();
        const char32_t character =
            isPair ? QChar::surrogateToUcs4(text[at], text[at + 1]) : text[at].unicode();
        const int length = isPair ? 2 : 1;
        const int start = static_cast<int>(at);
        const bool continues =
            !ranges.isEmpty() && ranges.last().start + ranges.last().length == start;
        if (isEmoji(character) || (continues && joinsEmoji(character))) {
            if (!continues) {
                QTextCharFormat format;
                format.setFont(style.emojiFont());
                ranges.append({start, 0, format});
            }
            ranges.last().length += length;
        }
        at += length;
    }
    return ranges;
}

// Lays lines out at the style's line height, on the text font's baseline, with or without emoji.
class Layout {
  public:
    Layout(const QString& text, const TextStyle& style, qreal width)
        : layout(lineSeparated(text), style.font()) {
        QTextOption option;
        option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
        layout.setTextOption(option);
        layout.setFormats(emojiRanges(layout.text(), style));
        layout.setCacheEnabled(true);
        const QFontMetricsF metrics(style.font());
        const qreal baseline =
            (style.lineHeight - metrics.ascent() - metrics.descent()) / 2 + metrics.ascent();
        layout.beginLayout();
        for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
            line.setLineWidth(width);
            line.setPosition({0, std::round(height + baseline) - line.ascent()});
            naturalWidth = std::max(naturalWidth, line.naturalTextWidth());
            height += style.lineHeight;
        }
        layout.endLayout();
    }

    QTextLayout layout;
    qreal naturalWidth = 0;
    qreal height = 0;

  private:
    static QString lineSeparated(QString text) {
        return text.replace("\r\n", "\n").replace('\n', QChar::LineSeparator);
    }
};

// One line, vertically centred.
void draw(QPainter& painter, const QRectF& box, const Layout& line, const TextStyle& style,
          const QColor& color, Qt::Alignment alignment) {
    const qreal spare = box.width() - line.naturalWidth;
    const qreal x = alignment & Qt::AlignRight     ? spare
                    : alignment & Qt::AlignHCenter ? spare / 2
                                                   : 0;
    painter.setPen(color);
    line.layout.draw(&painter, {box.left() + x, box.center().y() - style.lineHeight / 2.0});
}

}  // namespace

QSizeF naturalSize(const QString& text, const TextStyle& style) {
    const Layout layout(text, style, unlimited);
    return {std::ceil(layout.naturalWidth), layout.height};
}

qreal wrappedHeight(const QString& text, const TextStyle& style, qreal width) {
    return Layout(text, style, width).height;
}

void drawLine(QPainter& painter, const QRectF& box, const QString& text, const TextStyle& style,
              const QColor& color, Qt::Alignment alignment) {
    const Layout layout(text, style, unlimited);
    if (std::ceil(layout.naturalWidth) > std::ceil(box.width())) {
        const QString elided =
            QFontMetricsF(style.font()).elidedText(text, Qt::ElideRight, box.width());
        draw(painter, box, Layout(elided, style, unlimited), style, color, alignment);
    } else {
        draw(painter, box, layout, style, color, alignment);
    }
}

void drawWrapped(QPainter& painter, const QRectF& box, const QString& text, const TextStyle& style,
                 const QColor& color) {
    painter.setPen(color);
    Layout(text, style, box.width()).layout.draw(&painter, box.topLeft());
}

}  // namespace textPainter

}  // namespace bonkora
