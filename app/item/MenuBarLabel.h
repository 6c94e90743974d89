// MenuBarLabel: what the menu-bar item says, whatever shows it. A value; any thread.
#pragma once

#include <QString>

#include "ui/drawing/Symbol.h"

namespace bonkora {

struct MenuBarLabel {
    Symbol symbol;
    QString title;

    bool operator==(const MenuBarLabel&) const = default;
};

}  // namespace bonkora
