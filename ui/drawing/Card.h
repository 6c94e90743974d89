// Card: the look that status, settings and stats share: the control background behind ten pixels
// of padding, with continuous corners. Main thread.
#pragma once

#include <QWidget>

namespace bonkora {

class Card : public QWidget {
    Q_OBJECT

  public:
    static constexpr int padding = 10;
    static constexpr int cornerRadius = 8;

    using QWidget::QWidget;

  protected:
    void paintEvent(QPaintEvent* event) override;
};

}  // namespace bonkora
