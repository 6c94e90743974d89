// Divider: a horizontal line, one logical pixel high, in the separator colour. Main thread.
#pragma once

#include <QWidget>

namespace bonkora {

class Divider final : public QWidget {
    Q_OBJECT

  public:
    Divider();

  protected:
    void paintEvent(QPaintEvent* event) override;
};

}  // namespace bonkora
