#include "app/desktop/XSettings.h"

#include <QCoreApplication>
#include <QString>
#include <QtEndian>
#include <string>

#include "app/desktop/X11.h"

namespace bonkora {

namespace {

// Takes the settings apart from front to back; once something is missing, nothing more is there.
class Reader {
  public:
    explicit Reader(const QByteArray& contents) : rest(contents) {
        isBigEndian = take(1) == QByteArray(1, '\1');
        take(7);  // unused, and the serial number
    }

    bool isWhole() const { return whole; }
    template <typename Number>
    Number number() {
        const QByteArray bytes = take(sizeof(Number));
        if (!whole) {
            return 0;
        }
        return isBigEndian ? qFromBigEndian<Number>(bytes.constData())
                           : qFromLittleEndian<Number>(bytes.constData());
    }
    QByteArray text(qsizetype length) {
        const QByteArray text = take(length);
        take((4 - length % 4) % 4);
        return text;
    }
    QByteArray take(qsizetype length) {
        if (length > rest.size()) {
            whole = false;
            return {};
        }
        const QByteArray taken = rest.left(length);
        rest.remove(0, length);
        return taken;
    }

  private:
    QByteArray rest;
    bool isBigEndian = false;
    bool whole = true;
};

enum Type : quint8 { integer, string, color };

}  // namespace

std::optional<bool> xSettings::asksForDark(const QByteArray& contents) {
    Reader reader(contents);
    std::optional<bool> byTheme;
    std::optional<bool> byWish;
    const auto count = reader.number<quint32>();
    for (quint32 index = 0; index < count && reader.isWhole(); ++index) {
        const auto type = reader.number<quint8>();
        reader.take(1);
        const QByteArray name = reader.text(reader.number<quint16>());
        reader.take(4);  // the serial number of its last change
        if (type == integer) {
            const auto value = reader.number<quint32>();
            if (name == "Gtk/ApplicationPreferDarkTheme" && reader.isWhole()) {
                byWish = value != 0;
            }
        } else if (type == string) {
            const QByteArray value = reader.text(reader.number<quint32>());
            if (name == "Net/ThemeName" && reader.isWhole() && !value.isEmpty()) {
                byTheme = value.toLower().contains("dark");
            }
        } else {
            reader.take(8);
        }
    }
    return byWish.value_or(false) ? byWish : byTheme;
}

XSettingsWatch::XSettingsWatch() {
    if (x11::connection() == nullptr) {
        return;
    }
    selection = x11::atom(("_XSETTINGS_S" + std::to_string(x11::screenNumber())).c_str());
    property = x11::atom("_XSETTINGS_SETTINGS");
    read();
    QCoreApplication::instance()->installNativeEventFilter(this);
}

XSettingsWatch::~XSettingsWatch() {
    if (auto* application = QCoreApplication::instance()) {
        application->removeNativeEventFilter(this);
    }
}

void XSettingsWatch::read() {
    manager = x11::selectionOwner(selection);
    std::optional<bool> now;
    if (manager != XCB_WINDOW_NONE) {
        // To hear of its changes and of its end.
        const std::uint32_t mask = XCB_EVENT_MASK_STRUCTURE_NOTIFY | XCB_EVENT_MASK_PROPERTY_CHANGE;
        xcb_change_window_attributes(x11::connection(), manager, XCB_CW_EVENT_MASK, &mask);
        now = xSettings::asksForDark(x11::property(manager, property));
    }
    if (now != dark) {
        dark = now;
        emit changed();
    }
}

bool XSettingsWatch::nativeEventFilter(const QByteArray& kind, void* message, qintptr*) {
    if (kind != "xcb_generic_event_t") {
        return false;
    }
    const auto* event = static_cast<const xcb_generic_event_t*>(message);
    const int type = event->response_type & 0x7F;
    // A new manager says so to the root window: the selection is the second number of its message.
    const bool hasCome =
        type == XCB_CLIENT_MESSAGE &&
        static_cast<const xcb_client_message_event_t*>(message)->data.data32[1] == selection;
    const bool hasChanged =
        type == XCB_PROPERTY_NOTIFY &&
        static_cast<const xcb_property_notify_event_t*>(message)->window == manager;
    const bool hasGone = type == XCB_DESTROY_NOTIFY &&
                         static_cast<const xcb_destroy_notify_event_t*>(message)->window == manager;
    if (hasCome || hasChanged || hasGone) {
        read();
    }
    return false;
}

}  // namespace bonkora
