#include "app/PanelPlacement.h"

#include <algorithm>

namespace bonkora::panelPlacement {

namespace {

constexpr int gap = 4;
constexpr int thinnestBar = 24;
constexpr int thickestBar = 64;

enum class Edge { top, bottom, left, right };

struct Nearest {
    Edge edge;
    int distance;
};

Nearest nearestEdge(const QPoint& point, const QRect& screen) {
    const Nearest candidates[] = {{Edge::top, point.y() - screen.top()},
                                  {Edge::bottom, screen.bottom() - point.y()},
                                  {Edge::left, point.x() - screen.left()},
                                  {Edge::right, screen.right() - point.x()}};
    return *std::min_element(
        std::begin(candidates), std::end(candidates),
        [](const Nearest& one, const Nearest& other) { return one.distance < other.distance; });
}

}  // namespace

std::optional<QRect> itemRectangle(const QPoint& click, const QRect& reported,
                                   const QRect& screen) {
    if (reported.contains(click) && reported.height() <= thickestBar) {
        return reported;
    }
    const Nearest nearest = nearestEdge(click, screen);
    if (!screen.contains(click) || nearest.distance > thickestBar) {
        return std::nullopt;
    }
    const int thickness = std::clamp(2 * nearest.distance, thinnestBar, thickestBar);
    QRect item(0, 0, thickness, thickness);
    item.moveCenter(click);
    switch (nearest.edge) {
        case Edge::top:
            item.moveTop(screen.top());
            break;
        case Edge::bottom:
            item.moveBottom(screen.bottom());
            break;
        case Edge::left:
            item.moveLeft(screen.left());
            break;
        case Edge::right:
            item.moveRight(screen.right());
            break;
    }
    return item;
}

QRect panelRectangle(const QSize& wanted, const std::optional<QRect>& item, const QRect& screen,
                     const QRect& available) {
    const QRect room = available.adjusted(gap, gap, -gap, -gap);
    QRect panel(QPoint(0, 0), wanted.boundedTo(room.size()));
    if (item) {
        panel.moveCenter(item->center());
        switch (nearestEdge(item->center(), screen).edge) {
            case Edge::top:
                panel.moveTop(item->bottom() + 1 + gap);
                break;
            case Edge::bottom:
                panel.moveBottom(item->top() - 1 - gap);
                break;
            case Edge::left:
                panel.moveLeft(item->right() + 1 + gap);
                break;
            case Edge::right:
                panel.moveRight(item->left() - 1 - gap);
                break;
        }
    } else {
        const bool isBarBelow =
            screen.bottom() - available.bottom() > available.top() - screen.top();
        panel.moveTopRight(room.topRight());
        if (isBarBelow) {
            panel.moveBottom(room.bottom());
        }
    }
    panel.moveLeft(std::clamp(panel.left(), room.left(), room.right() + 1 - panel.width()));
    panel.moveTop(std::clamp(panel.top(), room.top(), room.bottom() + 1 - panel.height()));
    return panel;
}

}  // namespace bonkora::panelPlacement
