#include "ui/panel/ModeDisplay.h"

namespace bonkora {

ModeDisplay ModeDisplay::of(Mode mode) {
    switch (mode) {
        case Mode::pain:
            return {u"\U0001F62B"_qs, u"Pain"_qs,
                    u"Classic screams of agony. The MacBook suffers."_qs};
        case Mode::sexy:
            return {u"\U0001F48B"_qs, u"Sexy"_qs,
                    u"Gets more intense the more you slap. Use headphones."_qs};
        case Mode::halo:
            return {u"\u2694\uFE0F"_qs, u"Halo"_qs,
                    u"Random Halo soundtrack clips on each slap."_qs};
        case Mode::custom:
            return {u"\U0001F3B5"_qs, u"Custom"_qs,
                    u"Your own MP3 files. Your MacBook, your rules."_qs};
    }
    return {};
}

}  // namespace bonkora
