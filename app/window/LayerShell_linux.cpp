#include <qpa/qplatformnativeinterface.h>
#include <QEvent>
#include <QGuiApplication>
#include <QScreen>
#include <QWidget>
#include <QWindow>
#include <algorithm>
#include <chrono>
#include <cstring>
#include <thread>
#include <vector>

#include <sys/mman.h>
#include <unistd.h>

#include "app/window/LayerShell.h"
#include "layer-shell-client.h"
#include "platform/Descriptor.h"

namespace bonkora {

namespace {

constexpr std::uint32_t layerShellVersion = 4;
constexpr std::uint32_t firstVersionWithSetLayer = 2;
constexpr int gap = 4;
// Exclusive zones: both take no room, and the first keeps off that of bars.
constexpr int placedBesideBars = 0;
constexpr int placedOverBars = -1;
constexpr int configureRounds = 3;
constexpr char nameSpace[] = "bonkora";
// A compositor tells of the pointer only when the button that pressed the item is up again.
constexpr std::chrono::milliseconds pointerPatience{300};
constexpr std::chrono::milliseconds pointerPause{8};

enum Edge : std::uint32_t { top = 1, bottom = 2, left = 4, right = 8 };
// The bars' own menus lie above the top layer, but beneath the overlay.
enum Layer : std::uint32_t { bottomLayer = 1, topLayer = 2, overlay = 3 };
enum Keyboard : std::uint32_t { none = 0, exclusive = 1 };

// What the compositor offers, asked once, on a queue of its own so that nothing of Qt's is handled
// meanwhile.
struct Compositor {
    Compositor();

    wl_display* display = nullptr;
    wl_event_queue* queue = nullptr;
    zwlr_layer_shell_v1* layers = nullptr;
    std::uint32_t layersVersion = 0;
    wp_viewporter* viewports = nullptr;
    wl_compositor* surfaces = nullptr;
    wl_shm* memory = nullptr;
    wl_seat* seat = nullptr;
    bool hasPointer = false;
};

void toldAbilities(void* data, wl_seat*, std::uint32_t abilities) {
    static_cast<Compositor*>(data)->hasPointer = (abilities & WL_SEAT_CAPABILITY_POINTER) != 0;
}

constexpr wl_seat_listener seatListener{toldAbilities, [](void*, wl_seat*, const char*) {}};

void offered(void* data, wl_registry* registry, std::uint32_t name, const char* interface,
             std::uint32_t version) {
    auto& compositor = *static_cast<Compositor*>(data);
    if (std::strcmp(interface, zwlr_layer_shell_v1_interface.name) == 0) {
        compositor.layersVersion = std::min(version, layerShellVersion);
        compositor.layers = static_cast<zwlr_layer_shell_v1*>(wl_registry_bind(
            registry, name, &zwlr_layer_shell_v1_interface, compositor.layersVersion));
    } else if (std::strcmp(interface, wp_viewporter_interface.name) == 0) {
        compositor.viewports = static_cast<wp_viewporter*>(
            wl_registry_bind(registry, name, &wp_viewporter_interface, 1));
    } else if (std::strcmp(interface, wl_compositor_interface.name) == 0) {
        compositor.surfaces = static_cast<wl_compositor*>(
            wl_registry_bind(registry, name, &wl_compositor_interface, 1));
    } else if (std::strcmp(interface, wl_shm_interface.name) == 0) {
        compositor.memory =
            static_cast<wl_shm*>(wl_registry_bind(registry, name, &wl_shm_interface, 1));
    } else if (std::strcmp(interface, wl_seat_interface.name) == 0 && compositor.seat == nullptr) {
        compositor.seat =
            static_cast<wl_seat*>(wl_registry_bind(registry, name, &wl_seat_interface, 1));
        wl_seat_add_listener(compositor.seat, &seatListener, data);
    }
}

void withdrawn(void*, wl_registry*, std::uint32_t) {}

constexpr wl_registry_listener registryListener{offered, withdrawn};

QPlatformNativeInterface* native() {
    return QGuiApplication::platformNativeInterface();
}

Compositor::Compositor() {
    if (!QGuiApplication::platformName().startsWith("wayland")) {
        return;
    }
    display = static_cast<wl_display*>(native()->nativeResourceForIntegration("wl_display"));
    if (display == nullptr) {
        return;
    }
    queue = wl_display_create_queue(display);
    auto* wrapper = static_cast<wl_display*>(wl_proxy_create_wrapper(display));
    wl_proxy_set_queue(reinterpret_cast<wl_proxy*>(wrapper), queue);
    wl_registry* registry = wl_display_get_registry(wrapper);
    wl_proxy_wrapper_destroy(wrapper);
    wl_registry_add_listener(registry, &registryListener, this);
    wl_display_roundtrip_queue(display, queue);
    wl_display_roundtrip_queue(display, queue);  // what the seat can do
    wl_registry_destroy(registry);
}

Compositor& compositor() {
    static Compositor only;
    return only;
}

wl_surface* surfaceOf(QWidget& window) {
    window.winId();  // makes it
    return static_cast<wl_surface*>(
        native()->nativeResourceForWindow("surface", window.windowHandle()));
}

wl_output* outputOf(QScreen& screen) {
    return static_cast<wl_output*>(native()->nativeResourceForScreen("output", &screen));
}

// An invisible surface of one pixel, stretched over a whole screen, its bars too.
class Feeler {
  public:
    Feeler(QScreen& theScreen, wl_buffer& thePixel)
        : screen(theScreen),
          pixel(thePixel),
          surface(wl_compositor_create_surface(compositor().surfaces)),
          viewport(wp_viewporter_get_viewport(compositor().viewports, surface)),
          layerSurface(zwlr_layer_shell_v1_get_layer_surface(
              compositor().layers, surface, outputOf(theScreen), overlay, nameSpace)) {
        static constexpr zwlr_layer_surface_v1_listener listener{
            configured, [](void*, zwlr_layer_surface_v1*) {}};
        zwlr_layer_surface_v1_add_listener(layerSurface, &listener, this);
        zwlr_layer_surface_v1_set_anchor(layerSurface, top | bottom | left | right);
        zwlr_layer_surface_v1_set_exclusive_zone(layerSurface, placedOverBars);
        wl_surface_commit(surface);
    }

    ~Feeler() {
        zwlr_layer_surface_v1_destroy(layerSurface);
        wp_viewport_destroy(viewport);
        wl_surface_destroy(surface);
    }

    Feeler(const Feeler&) = delete;
    Feeler& operator=(const Feeler&) = delete;

    bool isOn(const wl_surface* other) const { return other == surface; }
    QPoint onDesktop(const QPoint& place) const { return screen.geometry().topLeft() + place; }

  private:
    static void configured(void* data, zwlr_layer_surface_v1* layerSurface, std::uint32_t serial,
                           std::uint32_t width, std::uint32_t height) {
        auto& feeler = *static_cast<Feeler*>(data);
        zwlr_layer_surface_v1_ack_configure(layerSurface, serial);
        wp_viewport_set_destination(feeler.viewport, static_cast<int>(width),
                                    static_cast<int>(height));
        wl_surface_attach(feeler.surface, &feeler.pixel, 0, 0);
        wl_surface_commit(feeler.surface);
    }

    QScreen& screen;
    wl_buffer& pixel;
    wl_surface* surface;
    wp_viewport* viewport;
    zwlr_layer_surface_v1* layerSurface;
};

// A transparent one; nothing without memory for it.
wl_buffer* makePixel() {
    constexpr int bytes = 4;
    const platform::UniqueDescriptor file(::memfd_create(nameSpace, MFD_CLOEXEC));
    if (!file || ::ftruncate(file.get(), bytes) != 0) {
        return nullptr;
    }
    wl_shm_pool* const pool = wl_shm_create_pool(compositor().memory, file.get(), bytes);
    wl_buffer* const pixel =
        wl_shm_pool_create_buffer(pool, 0, 1, 1, bytes, WL_SHM_FORMAT_ARGB8888);
    wl_shm_pool_destroy(pool);
    return pixel;
}

// Looks for the pointer with a feeler on every screen.
class PointerSearch {
  public:
    // Takes the pixel over.
    explicit PointerSearch(wl_buffer& thePixel)
        : pixel(thePixel), pointer(wl_seat_get_pointer(compositor().seat)) {
        static const wl_pointer_listener listener = [] {
            wl_pointer_listener told{};
            told.enter = entered;
            told.leave = [](void*, wl_pointer*, std::uint32_t, wl_surface*) {};
            told.motion = [](void*, wl_pointer*, std::uint32_t, wl_fixed_t, wl_fixed_t) {};
            told.button = [](void*, wl_pointer*, std::uint32_t, std::uint32_t, std::uint32_t,
                             std::uint32_t) {};
            told.axis = [](void*, wl_pointer*, std::uint32_t, std::uint32_t, wl_fixed_t) {};
            return told;
        }();
        wl_pointer_add_listener(pointer, &listener, this);
        for (QScreen* screen : QGuiApplication::screens()) {
            feelers.push_back(std::make_unique<Feeler>(*screen, pixel));
        }
    }

    ~PointerSearch() {
        feelers.clear();
        wl_pointer_destroy(pointer);
        wl_buffer_destroy(&pixel);
        wl_display_flush(compositor().display);
    }

    PointerSearch(const PointerSearch&) = delete;
    PointerSearch& operator=(const PointerSearch&) = delete;

    std::optional<QPoint> wait() {
        const auto end = std::chrono::steady_clock::now() + pointerPatience;
        while (wl_display_roundtrip_queue(compositor().display, compositor().queue) >= 0 &&
               !found && std::chrono::steady_clock::now() < end) {
            std::this_thread::sleep_for(pointerPause);
        }
        return found;
    }

  private:
    static void entered(void* data, wl_pointer*, std::uint32_t, wl_surface* surface, wl_fixed_t x,
                        wl_fixed_t y) {
        auto& search = *static_cast<PointerSearch*>(data);
        for (const auto& feeler : search.feelers) {
            if (feeler->isOn(surface)) {
                search.found = feeler->onDesktop({wl_fixed_to_int(x), wl_fixed_to_int(y)});
            }
        }
    }

    wl_buffer& pixel;
    wl_pointer* pointer;
    std::vector<std::unique_ptr<Feeler>> feelers;
    std::optional<QPoint> found;
};

}  // namespace

// What makes a surface a layer's.
struct LayerSurface::Role {
    Role(LayerSurface& theOwner, QWidget& widget, QScreen& screen, Layer layer)
        : owner(theOwner), surface(surfaceOf(widget)) {
        layerSurface = zwlr_layer_shell_v1_get_layer_surface(compositor().layers, surface,
                                                             outputOf(screen), layer, nameSpace);
        static constexpr zwlr_layer_surface_v1_listener listener{configured, closed};
        zwlr_layer_surface_v1_add_listener(layerSurface, &listener, this);
    }

    ~Role() {
        if (viewport != nullptr) {
            wp_viewport_destroy(viewport);
        }
        zwlr_layer_surface_v1_destroy(layerSurface);
    }

    Role(const Role&) = delete;
    Role& operator=(const Role&) = delete;

    // A surface may show something only once the compositor has given it a size. Then its further
    // events come with Qt's.
    void waitUntilConfigured() {
        wl_surface_commit(surface);
        for (int round = 0; round < configureRounds && size.isEmpty(); ++round) {
            wl_display_roundtrip_queue(compositor().display, compositor().queue);
        }
        wl_proxy_set_queue(reinterpret_cast<wl_proxy*>(layerSurface), nullptr);
    }

    static void configured(void* data, zwlr_layer_surface_v1* layerSurface, std::uint32_t serial,
                           std::uint32_t width, std::uint32_t height) {
        auto& role = *static_cast<Role*>(data);
        role.size = QSize(static_cast<int>(width), static_cast<int>(height));
        zwlr_layer_surface_v1_ack_configure(layerSurface, serial);
        if (role.viewport != nullptr && !role.size.isEmpty()) {
            wp_viewport_set_destination(role.viewport, role.size.width(), role.size.height());
            wl_surface_commit(role.surface);
        }
    }

    static void closed(void* data, zwlr_layer_surface_v1*) {
        emit static_cast<Role*>(data)->owner.dismissed();
    }

    LayerSurface& owner;
    wl_surface* surface;
    zwlr_layer_surface_v1* layerSurface = nullptr;
    wp_viewport* viewport = nullptr;
    QSize size;
};

void layerShell::prepare() {
    // Keeps Qt from making ordinary windows of those that ask to be left alone; others do not.
    qputenv("QT_WAYLAND_USE_BYPASSWINDOWMANAGERHINT", "1");
}

bool layerShell::isOffered() {
    return compositor().layers != nullptr &&
           compositor().layersVersion >= firstVersionWithSetLayer &&
           compositor().viewports != nullptr;
}

std::optional<QPoint> layerShell::findPointer() {
    const Compositor& asked = compositor();
    if (!isOffered() || !asked.hasPointer || asked.surfaces == nullptr || asked.memory == nullptr) {
        return std::nullopt;
    }
    wl_buffer* const pixel = makePixel();
    return pixel != nullptr ? PointerSearch(*pixel).wait() : std::nullopt;
}

LayerSurface::LayerSurface(QWidget& theWindow) : window(theWindow) {
    window.setWindowFlag(Qt::BypassWindowManagerHint);
    qGuiApp->installEventFilter(this);
}

LayerSurface::~LayerSurface() = default;

// One pixel, which the compositor stretches: it costs no memory.
void LayerSurface::spreadShield(QScreen& screen) {
    shield = std::make_unique<QWidget>(nullptr, Qt::Tool | Qt::FramelessWindowHint |
                                                    Qt::BypassWindowManagerHint |
                                                    Qt::WindowDoesNotAcceptFocus);
    shield->setAttribute(Qt::WA_TranslucentBackground);
    shield->setAttribute(Qt::WA_ShowWithoutActivating);
    shield->setFixedSize(1, 1);
    shieldRole = std::make_unique<Role>(*this, *shield, screen, topLayer);
    zwlr_layer_surface_v1* const spread = shieldRole->layerSurface;
    zwlr_layer_surface_v1_set_anchor(spread, top | bottom | left | right);
    zwlr_layer_surface_v1_set_exclusive_zone(spread, placedBesideBars);
    zwlr_layer_surface_v1_set_keyboard_interactivity(spread, none);
    shieldRole->viewport = wp_viewporter_get_viewport(compositor().viewports, shieldRole->surface);
    shieldRole->waitUntilConfigured();
    shield->windowHandle()->installEventFilter(this);
    shield->show();
}

// Which of two surfaces in one layer lies above differs among compositors.
void LayerSurface::leaveRoomInShield(const QRect& room) {
    auto* const compositorObject =
        static_cast<wl_compositor*>(native()->nativeResourceForIntegration("compositor"));
    wl_region* const pressable = wl_compositor_create_region(compositorObject);
    wl_region_add(pressable, 0, 0, shieldRole->size.width(), shieldRole->size.height());
    wl_region_subtract(pressable, room.x(), room.y(), room.width(), room.height());
    wl_surface_set_input_region(shieldRole->surface, pressable);
    wl_region_destroy(pressable);
    wl_surface_commit(shieldRole->surface);
}

void LayerSurface::place(const QRect& place, QScreen& shownOn) {
    if (!role) {
        window.setScreen(&shownOn);
        spreadShield(shownOn);
        role = std::make_unique<Role>(*this, window, shownOn, topLayer);
    }
    const QRect screen = shownOn.geometry();
    const bool isAtTop = place.top() - screen.top() <= screen.bottom() - place.bottom();
    // Where the compositor keeps windows off the bars, the distance is from the bar, not the
    // screen.
    const bool isOffBars = shieldRole->size.height() < screen.height();
    const int distance = isOffBars ? gap
                         : isAtTop ? place.top() - screen.top()
                                   : screen.bottom() - place.bottom();
    leaveRoomInShield(
        QRect(QPoint(place.left() - screen.left(),
                     isAtTop ? distance : shieldRole->size.height() - distance - place.height()),
              place.size()));
    zwlr_layer_surface_v1* const placed = role->layerSurface;
    zwlr_layer_surface_v1_set_size(placed, static_cast<std::uint32_t>(place.width()),
                                   static_cast<std::uint32_t>(place.height()));
    zwlr_layer_surface_v1_set_anchor(placed, left | (isAtTop ? top : bottom));
    zwlr_layer_surface_v1_set_exclusive_zone(placed, placedBesideBars);
    zwlr_layer_surface_v1_set_margin(placed, isAtTop ? distance : 0, 0, isAtTop ? 0 : distance,
                                     place.left() - screen.left());
    zwlr_layer_surface_v1_set_keyboard_interactivity(placed, exclusive);
    if (window.isVisible()) {
        wl_surface_commit(role->surface);
    } else {
        role->waitUntilConfigured();
    }
}

void LayerSurface::setInFront(bool isInFront) {
    zwlr_layer_surface_v1_set_layer(role->layerSurface, isInFront ? topLayer : bottomLayer);
    zwlr_layer_surface_v1_set_keyboard_interactivity(role->layerSurface,
                                                     isInFront ? exclusive : none);
    wl_surface_commit(role->surface);
    zwlr_layer_surface_v1_set_layer(shieldRole->layerSurface, isInFront ? topLayer : bottomLayer);
    wl_surface_commit(shieldRole->surface);
}

bool LayerSurface::eventFilter(QObject* watched, QEvent* event) {
    if (shield && watched == shield->windowHandle() && event->type() == QEvent::MouseButtonPress) {
        emit pressedOutside();
        return true;
    }
    // A menu would be a popup of a window that Qt knows no role of, which compositors end a program
    // for; the keyboard has what a text field's menu offers.
    const auto* widget = qobject_cast<QWidget*>(watched);
    return event->type() == QEvent::ContextMenu && widget != nullptr && widget->window() == &window;
}

}  // namespace bonkora
