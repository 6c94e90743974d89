#include <QWidget>

#include "app/window/LayerShell.h"

namespace bonkora {

struct LayerSurface::Role {};

void layerShell::prepare() {}

bool layerShell::isOffered() {
    return false;
}

std::optional<QPoint> layerShell::findPointer() {
    return std::nullopt;
}

LayerSurface::LayerSurface(QWidget& theWindow) : window(theWindow) {}

LayerSurface::~LayerSurface() = default;

void LayerSurface::place(const QRect&, QScreen&) {}

void LayerSurface::setInFront(bool) {}

void LayerSurface::spreadShield(QScreen&) {}

void LayerSurface::leaveRoomInShield(const QRect&) {}

bool LayerSurface::eventFilter(QObject*, QEvent*) {
    return false;
}

}  // namespace bonkora
