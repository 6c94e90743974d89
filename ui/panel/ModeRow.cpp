#include "ui/panel/ModeRow.h"

#include <QKeyEvent>
#include <QPainter>

#include "ui/drawing/Colors.h"
#include "ui/drawing/Shapes.h"
#include "ui/drawing/Symbol.h"
#include "ui/drawing/TextStyle.h"

namespace bonkora {

namespace {

constexpr int padding = 6;
constexpr int symbolSpacing = 8;
constexpr int titleSpacing = 1;
constexpr int rowRadius = 6;
constexpr int checkMarkSize = textStyle::body.size;
constexpr float highlightOpacity = 0.1F;
constexpr TextStyle symbolStyle = textStyle::title3;
constexpr TextStyle titleStyle = textStyle::caption.monospaced().weighing(QFont::Medium);
constexpr TextStyle descriptionStyle = textStyle::caption2.monospaced();
constexpr int textHeight = titleStyle.lineHeight + titleSpacing + descriptionStyle.lineHeight;

}  // namespace

ModeDisplay ModeDisplay::of(Mode mode) {
    switch (mode) {
        case Mode::pain:
            return {QStringLiteral("\U0001F62B"), QStringLiteral("Pain"),
                    QStringLiteral("Classic screams of agony. The MacBook suffers.")};
        case Mode::sexy:
            return {QStringLiteral("\U0001F48B"), QStringLiteral("Sexy"),
                    QStringLiteral("Gets more intense the more you slap. Use headphones.")};
        case Mode::halo:
            return {QStringLiteral("\u2694\uFE0F"), QStringLiteral("Halo"),
                    QStringLiteral("Random Halo soundtrack clips on each slap.")};
        case Mode::custom:
            return {QStringLiteral("\U0001F3B5"), QStringLiteral("Custom"),
                    QStringLiteral("Your own MP3 files. Your MacBook, your rules.")};
    }
    return {};
}

ModeRow::ModeRow(Mode mode) : Pressable(QAccessible::RadioButton), content(ModeDisplay::of(mode)) {
    setText(content.title);
    setAccessibleDescription(content.description);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    connect(&highlighted, &Eased::moved, this, qOverload<>(&QWidget::update));
}

void ModeRow::display(bool isCurrent, Transition transition) {
    if (isCurrent != highlighted.isOn()) {
        highlighted.setOn(isCurrent, transition);
        announceOn();
    }
}

QSize ModeRow::sizeHint() const {
    return {100, 2 * padding + textHeight};
}

qreal ModeRow::focusRadius() const {
    return rowRadius;
}

void ModeRow::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QColor tint = palette().color(colorRole::accent);
    tint.setAlphaF(highlightOpacity * static_cast<float>(highlight()));
    painter.fillPath(shapes::continuousRectangle(rect(), rowRadius), tint);

    const QRectF inside = QRectF(rect()).adjusted(padding, padding, -padding, -padding);
    const QColor primary = palette().color(colorRole::primary);
    const qreal symbolWidth = textPainter::naturalSize(content.symbol, symbolStyle).width();
    textPainter::drawLine(painter, {inside.left(), inside.top(), symbolWidth, inside.height()},
                          content.symbol, symbolStyle, primary);

    // The check mark takes its room from the text as it appears.
    const qreal left = inside.left() + symbolWidth + symbolSpacing;
    const qreal room = inside.right() - left - highlight() * (symbolSpacing + checkMarkSize);
    const QRectF title(left, inside.top(), room, titleStyle.lineHeight);
    textPainter::drawLine(painter, title, content.title, titleStyle, primary);
    textPainter::drawLine(painter, title.translated(0, titleStyle.lineHeight + titleSpacing),
                          content.description, descriptionStyle,
                          palette().color(colorRole::secondary));

    painter.setOpacity(highlight());
    drawSymbol(painter, Symbol::checkmarkCircleFill,
               {inside.right() - checkMarkSize, (height() - checkMarkSize) / 2.0, checkMarkSize,
                checkMarkSize},
               palette().color(colorRole::accent));
}

void ModeRow::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Down || event->key() == Qt::Key_Right) {
        emit focusMoveRequested(1);
    } else if (event->key() == Qt::Key_Up || event->key() == Qt::Key_Left) {
        emit focusMoveRequested(-1);
    } else {
        Pressable::keyPressEvent(event);
    }
}

}  // namespace bonkora
