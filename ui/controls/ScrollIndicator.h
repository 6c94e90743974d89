// ScrollIndicator: the panel's thin scroll bar, a rounded handle that can be dragged, without track
// or arrows.
#pragma once

#include <QScrollBar>

namespace bonkora {

class ScrollIndicator final : public QScrollBar {
    Q_OBJECT

  public:
    static constexpr int thickness = 10;

    ScrollIndicator();

    QSize sizeHint() const override { return {thickness, thickness}; }

  protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

  private:
    QRectF handle() const;

    qreal grip = 0;  // from the handle's top to where the mouse holds it
};

}  // namespace bonkora
