// MenuBarScene: one menu-bar extra in window style, described: what its panel holds and what its
// label says. A value; main thread.
#pragma once

#include <QSize>
#include <functional>
#include <memory>
#include <vector>

#include "app/item/MenuBarItem.h"
#include "platform/ObservableObject.h"
#include "ui/panel/PanelEnvironment.h"

class QWidget;

namespace bonkora {

struct MenuBarScene {
    // A fresh view each time the panel opens.
    std::function<std::unique_ptr<QWidget>(const PanelEnvironment&)> content;
    // Of the panel, in logical pixels, whatever it holds.
    QSize contentSize;
    // By the state as it is when asked.
    std::function<MenuBarLabel()> label;
    // Whose changes the label may follow.
    std::vector<platform::ObservableObject*> observed;
};

}  // namespace bonkora
