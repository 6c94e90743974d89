#include "app/desktop/XSettings.h"

#include <gtest/gtest.h>

#include <QtEndian>

namespace bonkora {
namespace {

using xSettings::asksForButtonImages;
using xSettings::asksForDark;

// Contents of the property, built as a settings manager would.
class Settings {
  public:
    explicit Settings(bool bigEndian = false) : isBigEndian(bigEndian) {}

    Settings& integer(const QByteArray& name, quint32 value) {
        begin(0, name);
        entries += number(value);
        return *this;
    }
    Settings& string(const QByteArray& name, const QByteArray& value) {
        begin(1, name);
        entries += number(static_cast<quint32>(value.size())) + padded(value);
        return *this;
    }
    Settings& color(const QByteArray& name) {
        begin(2, name);
        entries += QByteArray(8, '\x7F');
        return *this;
    }
    QByteArray contents() const {
        return QByteArray(1, isBigEndian ? '\1' : '\0') + QByteArray(3, '\0') + number(quint32{7}) +
               number(count) + entries;
    }

  private:
    template <typename Number>
    QByteArray number(Number value) const {
        QByteArray bytes(sizeof(Number), '\0');
        isBigEndian ? qToBigEndian(value, bytes.data()) : qToLittleEndian(value, bytes.data());
        return bytes;
    }
    static QByteArray padded(const QByteArray& text) {
        return text + QByteArray((4 - text.size() % 4) % 4, '\0');
    }
    void begin(char type, const QByteArray& name) {
        ++count;
        entries += QByteArray(1, type) + '\0' + number(static_cast<quint16>(name.size())) +
                   padded(name) + number(quint32{1});
    }

    const bool isBigEndian;
    quint32 count = 0;
    QByteArray entries;
};

TEST(XSettingsTest, aThemeIsDarkByItsName) {
    for (const bool bigEndian : {false, true}) {
        const auto theme = [&](const char* name) {
            return asksForDark(Settings(bigEndian)
                                   .integer("Xft/DPI", 98304)
                                   .color("Net/Color")
                                   .string("Net/ThemeName", name)
                                   .contents());
        };
        EXPECT_EQ(theme("Adwaita-dark"), true);
        EXPECT_EQ(theme("Mint-Y-Dark-Aqua"), true);
        EXPECT_EQ(theme("Adwaita"), false);
    }
}

TEST(XSettingsTest, aWishForDarkCountsBeforeTheThemesName) {
    EXPECT_EQ(asksForDark(Settings()
                              .string("Net/ThemeName", "Adwaita")
                              .integer("Gtk/ApplicationPreferDarkTheme", 1)
                              .contents()),
              true);
    EXPECT_EQ(asksForDark(Settings()
                              .string("Net/ThemeName", "Adwaita-dark")
                              .integer("Gtk/ApplicationPreferDarkTheme", 0)
                              .contents()),
              true);
}

TEST(XSettingsTest, settingsThatSayNothingOfItAskForNothing) {
    EXPECT_EQ(asksForDark(Settings().integer("Xft/DPI", 98304).contents()), std::nullopt);
    EXPECT_EQ(asksForDark(Settings().string("Net/ThemeName", "").contents()), std::nullopt);
    EXPECT_EQ(asksForDark({}), std::nullopt);
}

TEST(XSettingsTest, whateverIsCutOffIsNotReadBeyondItsEnd) {
    const QByteArray whole = Settings()
                                 .string("Net/ThemeName", "Adwaita-dark")
                                 .integer("Gtk/ApplicationPreferDarkTheme", 1)
                                 .contents();
    for (qsizetype length = 0; length < whole.size() - 1; ++length) {
        const auto asked = asksForDark(whole.left(length));
        EXPECT_TRUE(!asked || *asked) << length;
    }
    QByteArray endless = whole;
    endless.replace(8, 4, "\xFF\xFF\xFF\xFF");
    EXPECT_EQ(asksForDark(endless), true);
}

TEST(XSettingsTest, buttonsHaveImagesOnlyWhereThatIsSaid) {
    EXPECT_TRUE(asksForButtonImages(
        Settings().string("Net/ThemeName", "x").integer("Gtk/ButtonImages", 1).contents()));
    EXPECT_FALSE(asksForButtonImages(Settings().integer("Gtk/ButtonImages", 0).contents()));
    EXPECT_FALSE(asksForButtonImages(Settings().integer("Gtk/MenuImages", 1).contents()));
    EXPECT_FALSE(asksForButtonImages({}));
    const QByteArray whole = Settings().integer("Gtk/ButtonImages", 1).contents();
    EXPECT_FALSE(asksForButtonImages(whole.chopped(1)));
}

}  // namespace
}  // namespace bonkora
