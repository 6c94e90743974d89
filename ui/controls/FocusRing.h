// The ring around the control that holds the keyboard focus.
#pragma once

#include <QFocusEvent>
#include <QPointer>
#include <QRectF>
#include <QWidget>

namespace bonkora {

// FocusTarget: a control that a ring can surround. It shows its focus when that has arrived by the
// keyboard, not by a click.
class FocusTarget {
  public:
    virtual ~FocusTarget() = default;

    // What the ring surrounds, in the control's own coordinates, and how round its corners are.
    virtual QRectF focusBox() const = 0;
    virtual qreal focusRadius() const = 0;
    virtual bool showsFocus() const { return shown; }

  protected:
    // To be given every focus event of the control.
    void followFocus(const QFocusEvent& event);

  private:
    bool shown = false;
};

// FocusRing: a widget above all others of one area, which surrounds the FocusTarget in it that has
// the focus. It stands outside the control, where it hides nothing of it and is seen against the
// area's background, so the area keeps `reach` pixels around each control free.
class FocusRing final : public QWidget {
    Q_OBJECT

  public:
    static constexpr int reach = 3;

    // `area` becomes the parent.
    explicit FocusRing(QWidget& area);

  protected:
    void paintEvent(QPaintEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void follow(QWidget* focused);
    void place();

    QWidget& area;
    QPointer<QWidget> control;
    QRectF line;  // the middle of what is drawn, from the top left corner of this
    qreal radius = 0;
};

}  // namespace bonkora
