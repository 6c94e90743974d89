// LabelIcon: the label's symbol as a picture for a bar. Pure functions; any thread.
#pragma once

#include <QColor>
#include <QImage>

#include "ui/drawing/Symbol.h"

namespace bonkora::labelIcon {

// For a bar of unknown colour: light, with a dark outline, readable on both. `size` in device
// pixels.
QImage outlined(Symbol symbol, int size);

}  // namespace bonkora::labelIcon
