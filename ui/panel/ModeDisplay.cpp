#include "ui/panel/ModeDisplay.h"

namespace bonkora {

ModeDisplay ModeDisplay::of(Mode mode) {
    switch (mode) {
        case Mode::pain:
            return {QStringLiteral("\U0001F62B"), QStringLiteral("Pain"),
                    QStringLiteral("Classic screams of agony. The MacBook suffers.")};
        case Mode::sexy:
            return {QStringLiteral("\U0001F48B"), QStringLiteral("Sexy"),
                    QStringLiteral("Gets more intense the more you slap. Use headphones.")};
        case Mode::halo:
            return {QStringLiteral("\u2694\uFE0F"), QStringLiteral("Halo"),
                    QStringLiteral("Random Halo soundtrack clips on each slap.")};
        case Mode::custom:
            return {QStringLiteral("\U0001F3B5"), QStringLiteral("Custom"),
                    QStringLiteral("Your own MP3 files. Your MacBook, your rules.")};
    }
    return {};
}

}  // namespace bonkora
