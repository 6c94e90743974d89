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

XSettingsWatch::XSettingsWatch() : manager("_XSETTINGS_S") {
    connect(&manager, &ManagerWatch::changed, this, &XSettingsWatch::read);
    read();
}

void XSettingsWatch::read() {
    std::optional<bool> now;
    if (manager.window() != XCB_WINDOW_NONE) {
        now = xSettings::asksForDark(
            x11::property(manager.window(), x11::atom("_XSETTINGS_SETTINGS")));
    }
    if (now != dark) {
        dark = now;
        emit changed();
    }
}

}  // namespace bonkora
