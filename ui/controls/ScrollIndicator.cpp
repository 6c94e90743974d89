#include "ui/controls/ScrollIndicator.h"

#include <QContextMenuEvent>
#include <QMouseEvent>
#include <QPainter>
#include <algorithm>
#include <cmath>

#include "ui/drawing/Colors.h"

namespace bonkora {

namespace {

constexpr qreal inset = 2;
constexpr qreal shortestHandle = 24;
constexpr float atRest = 0.75F;  // of the colour

}  // namespace

ScrollIndicator::ScrollIndicator() : QScrollBar(Qt::Vertical) {
    setFixedWidth(thickness);
    setAttribute(Qt::WA_OpaquePaintEvent, false);
}

QRectF ScrollIndicator::handle() const {
    const qreal room = height() - 2 * inset;
    const qreal range = maximum() - minimum();
    const qreal length = std::max(room * pageStep() / (range + pageStep()), shortestHandle);
    const qreal top = (room - length) * (sliderPosition() - minimum()) / std::max(range, 1.0);
    return {inset, inset + top, width() - 2 * inset, length};
}

void ScrollIndicator::paintEvent(QPaintEvent*) {
    if (maximum() <= minimum()) {
        return;
    }
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    QColor color = palette().color(colorRole::secondary);
    color.setAlphaF(color.alphaF() * (isSliderDown() ? 1.0F : atRest));
    painter.setBrush(color);
    const QRectF shape = handle().adjusted(0.5, 0, -0.5, 0);
    painter.drawRoundedRect(shape, shape.width() / 2, shape.width() / 2);
}

void ScrollIndicator::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) {
        event->ignore();
        return;
    }
    const QRectF box = handle();
    const qreal y = event->position().y();
    grip = y >= box.top() && y <= box.bottom() ? y - box.top() : box.height() / 2;
    setSliderDown(true);
    mouseMoveEvent(event);
    update();
}

void ScrollIndicator::mouseMoveEvent(QMouseEvent* event) {
    if (!isSliderDown()) {
        return;
    }
    const qreal room = std::max(height() - 2 * inset - handle().height(), 1.0);
    const qreal share = (event->position().y() - grip - inset) / room;
    setSliderPosition(minimum() + static_cast<int>(std::lround(share * (maximum() - minimum()))));
}

void ScrollIndicator::mouseReleaseEvent(QMouseEvent*) {
    setSliderDown(false);
    update();
}

void ScrollIndicator::contextMenuEvent(QContextMenuEvent* event) {
    event->accept();  // no menu: a panel this small needs none to scroll
}

}  // namespace bonkora
