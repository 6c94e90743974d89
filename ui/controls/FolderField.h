// FolderField: a single-line text field with a rounded border.
#pragma once

#include <QLineEdit>

#include "ui/controls/FocusRing.h"

namespace bonkora {

class FolderField final : public QLineEdit, public FocusTarget {
    Q_OBJECT

  public:
    explicit FolderField(const QString& placeholder);

    // Not an edit: no signal is sent. A text that is displayed already leaves the cursor in place.
    void display(const QString& text);

    QSize sizeHint() const override;
    QRectF focusBox() const override { return rect(); }
    qreal focusRadius() const override;
    // What is typed goes here, however the focus has come.
    bool showsFocus() const override { return true; }

  protected:
    void paintEvent(QPaintEvent* event) override;
};

}  // namespace bonkora
