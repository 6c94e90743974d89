#include "ui/drawing/TextStyle.h"

#include <QFontDatabase>
#include <QStringList>
#include <algorithm>

namespace bonkora {

namespace {

// The desktop's own fixed font where one was chosen; where only the generic "monospace" is named,
// the first of these that is installed: they read better at ten pixels than the usual default.
QStringList fixedFamilies() {
    const QString chosen = QFontDatabase::systemFont(QFontDatabase::FixedFont).family();
    QStringList families{"Hack", "Noto Sans Mono", "DejaVu Sans Mono"};
    const bool isGeneric =
        chosen.isEmpty() || chosen.compare("monospace", Qt::CaseInsensitive) == 0;
    families.insert(isGeneric ? families.size() : 0, isGeneric ? "monospace" : chosen);
    return families;
}

QStringList emojiFamilies() {
    QStringList families{"Noto Color Emoji", "Apple Color Emoji", "Twemoji", "Emoji One"};
    families.removeIf([](const QString& family) { return !QFontDatabase::hasFamily(family); });
    return families;
}

}  // namespace

QFont TextStyle::font() const {
    static const QStringList families = fixedFamilies();
    QFont font = QFontDatabase::systemFont(QFontDatabase::GeneralFont);
    if (isMonospaced) {
        font.setFamilies(families);
        font.setStyleHint(QFont::Monospace);
    }
    font.setPixelSize(size);
    font.setWeight(weight);
    return font;
}

QFont TextStyle::emojiFont() const {
    static const QStringList families = emojiFamilies();
    QFont font = QFontDatabase::systemFont(QFontDatabase::GeneralFont);
    if (!families.isEmpty()) {
        font.setFamilies(families);
    }
    font.setPixelSize(size);
    return font;
}

}  // namespace bonkora
