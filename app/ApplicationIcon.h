// The application's own icon, for window lists and title bars: the same picture as
// Resources/org.bonkora.Bonkora.svg, drawn here so that it needs no installed file.
#pragma once

#include <QIcon>

namespace bonkora {

QIcon applicationIcon();

}  // namespace bonkora
