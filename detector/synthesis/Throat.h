// Throat: a voice after the source-filter model: pulses of the vocal folds and breath, through the
// resonances of mouth and throat. Pure; the same request always gives the same sound.
#pragma once

#include <array>
#include <cstdint>

#include "detector/synthesis/Waveform.h"

namespace bonkora::detector::synthesis {

// The first four resonances in Hz, of an average grown-up; phonetics textbooks agree on them
// within a tenth.
using Vowel = std::array<double, 4>;
inline constexpr Vowel ah{750.0, 1200.0, 2500.0, 3400.0};
inline constexpr Vowel eh{550.0, 1800.0, 2500.0, 3500.0};
inline constexpr Vowel ee{300.0, 2250.0, 3000.0, 3600.0};
inline constexpr Vowel oh{480.0, 850.0, 2450.0, 3300.0};
inline constexpr Vowel oo{320.0, 750.0, 2300.0, 3250.0};
inline constexpr Vowel hum{250.0, 1000.0, 2150.0, 3100.0};

struct Utterance {
    double duration = 0.5;  // s
    Contour pitch;          // Hz
    Contour loudness;       // 0 to 1
    Contour breath;         // 0, clear, to 1, whispered
    Contour opening;        // 0, `from`, to 1, `to`
    Vowel from = ah;
    Vowel to = ah;
    double throat = 1.0;     // shorter throats have higher resonances
    double vibrato = 0.0;    // of the pitch, five and a half times a second
    double roughness = 0.0;  // of the pitch, from pulse to pulse
    std::uint32_t seed = 1;
};

Waveform speak(const Utterance& utterance);

}  // namespace bonkora::detector::synthesis
