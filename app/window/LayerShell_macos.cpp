#include <QWidget>

#include "app/window/LayerShell.h"

namespace bonkora {

struct LayerSurface::Role {};

void layerShell::prepare() {}

bool layerShell::isOffered() {
    return false;
}

LayerSurface::LayerSurface(QWidget& theWindow) : window(theWindow) {}

LayerSurface::~LayerSurface() = default;

void LayerSurface::place(const QRect&, const QRect&) {}

void LayerSurface::setInFront(bool) {}

void LayerSurface::spreadShield() {}

void LayerSurface::leaveRoomInShield(const QRect&) {}

bool LayerSurface::eventFilter(QObject*, QEvent*) {
    return false;
}

}  // namespace bonkora
