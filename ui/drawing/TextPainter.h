// Measures and draws text in a text style: lines of the style's own height, each emoji in the
// colour emoji font. Pure functions but for the fonts; main thread.
#pragma once

#include <QColor>
#include <QPainter>
#include <QRectF>
#include <QSizeF>
#include <QString>

#include "ui/drawing/TextStyle.h"

namespace bonkora::textPainter {

// On one line, where the text itself has no line breaks.
QSizeF naturalSize(const QString& text, const TextStyle& style);
// Wrapped at words, and inside words that are too long, to `width`.
qreal wrappedHeight(const QString& text, const TextStyle& style, qreal width);

// On one line, vertically centred in `box`, ending in an ellipsis where it does not fit.
void drawLine(QPainter& painter, const QRectF& box, const QString& text, const TextStyle& style,
              const QColor& color, Qt::Alignment alignment = Qt::AlignLeft);
// Wrapped to the width of `box`, from its top.
void drawWrapped(QPainter& painter, const QRectF& box, const QString& text, const TextStyle& style,
                 const QColor& color);

}  // namespace bonkora::textPainter
