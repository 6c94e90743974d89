// FolderField: a single-line text field with a rounded border.
#pragma once

#include <QLineEdit>

#include "ui/controls/FocusRing.h"

namespace bonkora {

class FolderField final : public QLineEdit {
    Q_OBJECT

  public:
    explicit FolderField(const QString& placeholder);

    // Not an edit: no signal is sent. A text that is displayed already leaves the cursor in place.
    void display(const QString& text);

    QSize sizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;
};

}  // namespace bonkora
