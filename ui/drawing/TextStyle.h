// The named text styles of the panel, and the measuring and drawing of text in them. Sizes and line
// heights are logical pixels.
#pragma once

#include <QColor>
#include <QFont>
#include <QPainter>
#include <QRectF>
#include <QSizeF>
#include <QString>

namespace bonkora {

struct TextStyle {
    int size;
    int lineHeight;
    bool isMonospaced;
    QFont::Weight weight = QFont::Normal;

    constexpr TextStyle monospaced() const { return {size, lineHeight, true, weight}; }
    constexpr TextStyle weighing(QFont::Weight other) const {
        return {size, lineHeight, isMonospaced, other};
    }

    QFont font() const;
    // The colour emoji font in the same size, if one is installed. Emoji always get it: left to
    // font substitution, some are taken from a text font and come out black.
    QFont emojiFont() const;
};

namespace textStyle {

// The platform's sizes of these styles.
inline constexpr TextStyle title2{17, 22, false};
inline constexpr TextStyle title3{15, 20, false};
inline constexpr TextStyle headline{13, 16, false};
inline constexpr TextStyle body{13, 16, false};
inline constexpr TextStyle caption{10, 13, false};
inline constexpr TextStyle caption2{10, 13, false};
inline constexpr TextStyle hint{9, 12, false};

}  // namespace textStyle

// Lines have the style's own height, and each emoji is drawn in the colour emoji font.
namespace textPainter {

// On one line, unless the text has line breaks of its own.
QSizeF naturalSize(const QString& text, const TextStyle& style);
// Wrapped to `width`, at words and inside words that are too long.
qreal wrappedHeight(const QString& text, const TextStyle& style, qreal width);

// On one line, vertically centred in `box`, ending in an ellipsis if it does not fit.
void drawLine(QPainter& painter, const QRectF& box, const QString& text, const TextStyle& style,
              const QColor& color, Qt::Alignment alignment = Qt::AlignLeft);
// Wrapped to the width of `box`, from its top.
void drawWrapped(QPainter& painter, const QRectF& box, const QString& text, const TextStyle& style,
                 const QColor& color);

}  // namespace textPainter

}  // namespace bonkora
