// The panel's colours as roles of a palette: every widget takes them from its own palette, so one
// new palette changes them all between light and dark. Any thread.
#pragma once

#include <QPalette>

namespace bonkora {

// The panel's accent: sRGB red 0.22, green 0.78, blue 0.45.
inline const QColor accentColor = QColor::fromRgbF(0.22F, 0.78F, 0.45F);
// The platform's red, in the variant on which white text can be read in light and dark.
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
// For the windows that the toolkit draws itself: menus, tool tips and dialogs, in light and dark.
QPalette applicationPalette(bool isDark);

// The colour seen where `over` lies on `under`, which is opaque.
QColor composited(const QColor& over, const QColor& under);
// The contrast of two opaque colours by the formula of WCAG 2, from 1 (equal) to 21 (black on
// white).
double contrastRatio(const QColor& one, const QColor& other);

}  // namespace bonkora
