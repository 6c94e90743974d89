#include "app/window/PanelPlacement.h"

#include <algorithm>
#include <tuple>

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

// The edge whose bar the point is most likely in: one that keeps room for a bar there, else the top
// or bottom if near, since bars at the sides are rare, else just the nearest.
Nearest barEdge(const QPoint& point, const QRect& screen, const QRect& available) {
    struct Candidate {
        Nearest nearest;
        bool isKept;
        bool isUsual;

        auto rank() const { return std::tuple(!isKept, !isUsual, nearest.distance); }
    };
    const int above = point.y() - screen.top();
    const int below = screen.bottom() - point.y();
    const Candidate candidates[] = {
        {{Edge::top, above}, point.y() < available.top(), above <= thickestBar},
        {{Edge::bottom, below}, point.y() > available.bottom(), below <= thickestBar},
        {{Edge::left, point.x() - screen.left()}, point.x() < available.left(), false},
        {{Edge::right, screen.right() - point.x()}, point.x() > available.right(), false}};
    return std::min_element(std::begin(candidates), std::end(candidates),
                            [](const Candidate& one, const Candidate& other) {
                                return one.rank() < other.rank();
                            })
        ->nearest;
}

// Whether an item may be there: near an edge, but not where a place within an item would be.
bool isInBar(const QPoint& point, const QRect& screen) {
    const int left = point.x() - screen.left();
    const int top = point.y() - screen.top();
    const int nearest =
        std::min({left, top, screen.right() - point.x(), screen.bottom() - point.y()});
    const bool isWithinItem = left <= thickestBar && top <= thickestBar;
    return screen.contains(point) && nearest <= thickestBar && !isWithinItem;
}

}  // namespace

std::optional<QPoint> clickPlace(const std::optional<QPoint>& pointer, const QPoint& reported,
                                 const QList<ScreenPlace>& screens) {
    if (pointer) {
        return pointer;
    }
    for (const ScreenPlace& screen : screens) {
        if (isInBar(reported, screen.geometry)) {
            return reported;
        }
    }
    for (const ScreenPlace& screen : screens) {
        if (const QPoint logical = reported / screen.pixelRatio;
            isInBar(logical, screen.geometry)) {
            return logical;
        }
    }
    return std::nullopt;
}

std::optional<QRect> itemRectangle(const QPoint& click, const QRect& reported, const QRect& screen,
                                   const QRect& available) {
    if (reported.contains(click) && reported.height() <= thickestBar) {
        return reported;
    }
    const Nearest nearest = barEdge(click, screen, available);
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
        switch (barEdge(item->center(), screen, available).edge) {
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

QPoint followScreen(const QPoint& click, const QRect& before, const QRect& after) {
    const QPoint middle = before.center();
    return {click.x() > middle.x() ? after.right() - (before.right() - click.x())
                                   : after.left() + (click.x() - before.left()),
            click.y() > middle.y() ? after.bottom() - (before.bottom() - click.y())
                                   : after.top() + (click.y() - before.top())};
}

}  // namespace bonkora::panelPlacement
