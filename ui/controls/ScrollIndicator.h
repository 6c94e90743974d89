// ScrollIndicator: the thin scroll bar of the panel: a rounded handle without track or arrows that
// can be dragged. Main thread.
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
