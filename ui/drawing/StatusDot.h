// StatusDot: a filled circle in a colour role, eight logical pixels wide. Main thread.
#pragma once

#include <QPalette>
#include <QWidget>

namespace bonkora {

class StatusDot final : public QWidget {
    Q_OBJECT

  public:
    StatusDot();

    void show(QPalette::ColorRole color);
    using QWidget::show;

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    QPalette::ColorRole color;
};

}  // namespace bonkora
