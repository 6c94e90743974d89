// MenuBarItem: the item in the bar; each implementation is one way of showing it.
#pragma once

#include <QObject>
#include <QPoint>
#include <QRect>
#include <QString>

#include "ui/drawing/Symbol.h"

namespace bonkora {

// What the item says, whatever shows it.
struct MenuBarLabel {
    Symbol symbol;
    QString title;

    bool operator==(const MenuBarLabel&) const = default;
};

class MenuBarItem : public QObject {
    Q_OBJECT

  public:
    virtual void display(const MenuBarLabel& label) = 0;
    // As the bar tells it; empty where it does not.
    virtual QRect geometry() const { return {}; }

  signals:
    // `position` as the bar tells it, on the screen.
    void clicked(const QPoint& position);
    // "Open" was chosen in the item's menu.
    void openAsked();
};

}  // namespace bonkora
