// ModeDisplay: how the panel shows a sound mode. A fixed table, shown as it is: none of it is
// looked up for translation. Values; any thread.
#pragma once

#include <QString>

#include "bridge/Mode.h"

namespace bonkora {

struct ModeDisplay {
    QString symbol;  // one emoji
    QString title;
    QString description;

    static ModeDisplay of(Mode mode);
};

}  // namespace bonkora
