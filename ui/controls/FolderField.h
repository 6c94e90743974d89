// FolderField: a single-line text field with a rounded border. Main thread.
#pragma once

#include <QLineEdit>

#include "ui/controls/FocusRing.h"

namespace bonkora {

class FolderField final : public QLineEdit {
    Q_OBJECT

  public:
    explicit FolderField(const QString& placeholder);

    // Shows `text` without an edit; the cursor stays where it is if that is shown already.
    void display(const QString& text);

    QSize sizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;
};

}  // namespace bonkora
