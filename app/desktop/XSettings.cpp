#include "app/desktop/XSettings.h"

#include <QString>
#include <QtEndian>

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
        QByteArray text = take(length);
        take((4 - length % 4) % 4);
        return text;
    }
    QByteArray take(qsizetype length) {
        if (length > rest.size()) {
            whole = false;
            return {};
        }
        QByteArray taken = rest.left(length);
        rest.remove(0, length);
        return taken;
    }

  private:
    QByteArray rest;
    bool isBigEndian = false;
    bool whole = true;
};

enum Type : quint8 { integer, string, color };

// Hands on each whole number and each text with its name.
template <typename TakeNumber, typename TakeText>
void readEach(const QByteArray& contents, TakeNumber takeNumber, TakeText takeText) {
    Reader reader(contents);
    const auto count = reader.number<quint32>();
    for (quint32 index = 0; index < count && reader.isWhole(); ++index) {
        const auto type = reader.number<quint8>();
        reader.take(1);
        const QByteArray name = reader.text(reader.number<quint16>());
        reader.take(4);  // the serial number of its last change
        if (type == integer) {
            if (const auto value = reader.number<quint32>(); reader.isWhole()) {
                takeNumber(name, value);
            }
        } else if (type == string) {
            if (const QByteArray value = reader.text(reader.number<quint32>()); reader.isWhole()) {
                takeText(name, value);
            }
        } else {
            reader.take(8);
        }
    }
}

}  // namespace

std::optional<bool> xSettings::asksForDark(const QByteArray& contents) {
    std::optional<bool> byTheme;
    std::optional<bool> byWish;
    readEach(
        contents,
        [&](const QByteArray& name, quint32 value) {
            if (name == "Gtk/ApplicationPreferDarkTheme") {
                byWish = value != 0;
            }
        },
        [&](const QByteArray& name, const QByteArray& value) {
            if (name == "Net/ThemeName" && !value.isEmpty()) {
                byTheme = value.toLower().contains("dark");
            }
        });
    return byWish.value_or(false) ? byWish : byTheme;
}

bool xSettings::asksForButtonImages(const QByteArray& contents) {
    bool isAsked = false;
    readEach(
        contents,
        [&](const QByteArray& name, quint32 value) {
            if (name == "Gtk/ButtonImages") {
                isAsked = value != 0;
            }
        },
        [](const QByteArray&, const QByteArray&) {});
    return isAsked;
}

QByteArray xSettings::read() {
    const QByteArray selection = "_XSETTINGS_S" + QByteArray::number(x11::screenNumber());
    const xcb_window_t manager = x11::selectionOwner(x11::atom(selection.constData()));
    return manager == XCB_WINDOW_NONE ? QByteArray()
                                      : x11::property(manager, x11::atom("_XSETTINGS_SETTINGS"));
}

XSettingsWatch::XSettingsWatch() : manager("_XSETTINGS_S") {
    connect(&manager, &ManagerWatch::changed, this, &XSettingsWatch::read);
    read();
}

void XSettingsWatch::read() {
    const std::optional<bool> now = xSettings::asksForDark(xSettings::read());
    if (now != dark) {
        dark = now;
        emit changed();
    }
}

}  // namespace bonkora
