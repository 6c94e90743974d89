#include "ui/controls/FolderField.h"

#include <QPainter>
#include <QSignalBlocker>

#include "ui/drawing/Colors.h"
#include "ui/drawing/Shapes.h"
#include "ui/drawing/TextStyle.h"

namespace bonkora {

namespace {

constexpr int fieldHeight = 21;
constexpr int textMargin = 3;
constexpr int fieldRadius = 5;

}  // namespace

FolderField::FolderField(const QString& placeholder) {
    setPlaceholderText(placeholder);
    setAccessibleName(placeholder);
    setFont(textStyle::caption.monospaced().font());
    setFrame(false);
    setTextMargins(textMargin, 0, textMargin, 0);
    // The background is painted below, with round corners.
    QPalette clear;
    clear.setColor(QPalette::Base, Qt::transparent);
    setPalette(clear);
}

void FolderField::display(const QString& newText) {
    if (newText != text()) {
        const QSignalBlocker notAnEdit(this);
        setText(newText);
    }
}

QSize FolderField::sizeHint() const {
    return {100, fieldHeight};
}

qreal FolderField::focusRadius() const {
    return fieldRadius;
}

void FolderField::paintEvent(QPaintEvent* event) {
    {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        const QRectF box = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
        const QPainterPath outline = shapes::continuousRectangle(box, fieldRadius);
        painter.fillPath(outline, parentWidget()->palette().color(colorRole::controlBackground));
        painter.strokePath(outline, palette().color(colorRole::track));
    }
    QLineEdit::paintEvent(event);
}

}  // namespace bonkora
