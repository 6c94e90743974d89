// The panel's colours, as roles of a palette, so that every widget takes them from its own palette
// and a change between light and dark reaches all of them at once. Pure functions; any thread.
#pragma once

#include <QPalette>

namespace bonkora {

// The panel's accent: sRGB red 0.22, green 0.78, blue 0.45.
inline const QColor accentColor = QColor::fromRgbF(0.22F, 0.78F, 0.45F);
// The platform's red in the variant that white text reads on, in light and dark.
inline const QColor runningColor(0xD7, 0x00, 0x15);

namespace colorRole {

inline constexpr auto window = QPalette::Window;
inline constexpr auto controlBackground = QPalette::Base;
inline constexpr auto primary = QPalette::WindowText;
inline constexpr auto secondary = QPalette::PlaceholderText;
inline constexpr auto accent = QPalette::Highlight;
inline constexpr auto separator = QPalette::Mid;
inline constexpr auto red = QPalette::BrightText;  // for text
inline constexpr auto gray = QPalette::Midlight;   // the dot of a stopped detector
inline constexpr auto track = QPalette::Dark;      // the empty part of sliders and switches
inline constexpr auto focusRing = QPalette::Link;
inline constexpr auto hairline = QPalette::Shadow;  // the panel's edge

}  // namespace colorRole

QPalette panelPalette(bool isDark);

// What `over` looks like on `under`; `under` is opaque.
QColor composited(const QColor& over, const QColor& under);
// How far two opaque colours stand apart, from 1 (equal) to 21 (black and white).
double contrastRatio(const QColor& one, const QColor& other);

}  // namespace bonkora
