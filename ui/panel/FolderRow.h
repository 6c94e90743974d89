// FolderRow: where the custom mode's folder is typed or chosen. It is in the panel only while it is
// present, and comes and goes by growing and shrinking, with what lies beneath it.
#pragma once

#include <QPixmap>
#include <QPointer>
#include <QWidget>

#include "bridge/SpankWrapper.h"
#include "ui/controls/Eased.h"
#include "ui/controls/FolderField.h"

class QFileDialog;

namespace bonkora {

class FolderRow final : public QWidget {
    Q_OBJECT

  public:
    // `spacing` is the gap to what stands above, which comes and goes too.
    FolderRow(SpankWrapper& spankWrapper, int spacing);

    void display(bool isPresent, const QString& path, Transition transition);

  protected:
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

  private:
    void grow();
    void browse();

    SpankWrapper& spankWrapper;
    const int spacing;
    FolderField* field;
    QWidget* content;
    // What is seen while the row goes. The row itself is gone at once, for the keyboard and for
    // assistive technology too.
    QPixmap departing;
    QPointer<QFileDialog> chooser;
    Eased presence{this};
};

}  // namespace bonkora
