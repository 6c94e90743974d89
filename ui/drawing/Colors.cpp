#include "ui/drawing/Colors.h"

#include <algorithm>
#include <cmath>

namespace bonkora {

namespace {

struct Colors {
    QColor window, controlBackground, primary, secondary, separator, red, gray, track, focusRing,
        hairline;
};

QColor black(int percent) {
    return QColor::fromRgbF(0, 0, 0, static_cast<float>(percent) / 100.0F);
}
QColor white(int percent) {
    return QColor::fromRgbF(1, 1, 1, static_cast<float>(percent) / 100.0F);
}

// The platform's colours. Two of them have too little contrast there (below 4.5 to 1 for text or
// 3 to 1 for graphics) and are stronger here: secondary text has 62 % instead of 50 % (light) and
// 55 % (dark), and the empty part of sliders and switches is darker.
Colors lightColors() {
    return {.window = QColor(0xEC, 0xEC, 0xEC),
            .controlBackground = QColor(0xFF, 0xFF, 0xFF),
            .primary = black(85),
            .secondary = black(62),
            .separator = black(10),
            .red = QColor(0xD7, 0x00, 0x15),
            .gray = QColor(0x8E, 0x8E, 0x93),
            .track = QColor(0x84, 0x84, 0x89),
            .focusRing = QColor(0x00, 0x67, 0xD6),
            .hairline = black(22)};
}

Colors darkColors() {
    return {.window = QColor(0x32, 0x32, 0x32),
            .controlBackground = QColor(0x1E, 0x1E, 0x1E),
            .primary = white(85),
            .secondary = white(62),
            .separator = white(10),
            .red = QColor(0xFF, 0x69, 0x61),
            .gray = QColor(0x98, 0x98, 0x9D),
            .track = QColor(0x7E, 0x7E, 0x83),
            .focusRing = QColor(0x4A, 0xA8, 0xFF),
            .hairline = white(22)};
}

double luminance(const QColor& color) {
    const auto linear = [](float channel) {
        const double value = static_cast<double>(channel);
        return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
           0.0722 * linear(color.blueF());
}

}  // namespace

QPalette panelPalette(bool isDark) {
    const Colors colors = isDark ? darkColors() : lightColors();
    QPalette palette;
    palette.setColor(colorRole::window, colors.window);
    palette.setColor(colorRole::controlBackground, colors.controlBackground);
    palette.setColor(colorRole::primary, colors.primary);
    palette.setColor(QPalette::Text, colors.primary);
    palette.setColor(colorRole::secondary, colors.secondary);
    palette.setColor(colorRole::accent, accentColor);
    palette.setColor(QPalette::HighlightedText, Qt::black);
    palette.setColor(colorRole::separator, colors.separator);
    palette.setColor(colorRole::red, colors.red);
    palette.setColor(colorRole::gray, colors.gray);
    palette.setColor(colorRole::track, colors.track);
    palette.setColor(colorRole::focusRing, colors.focusRing);
    palette.setColor(colorRole::hairline, colors.hairline);
    return palette;
}

QPalette applicationPalette(bool isDark) {
    const Colors colors = isDark ? darkColors() : lightColors();
    const QColor button = isDark ? QColor(0x45, 0x45, 0x45) : QColor(0xF4, 0xF4, 0xF4);
    // From the two colours, the constructor derives the shades of frames and bevels.
    QPalette palette(button, colors.window);
    const QColor text = composited(colors.primary, colors.window);
    const QColor faint = composited(colors.secondary, colors.window);
    for (const auto role :
         {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText}) {
        palette.setColor(role, text);
        palette.setColor(QPalette::Disabled, role, faint);
    }
    palette.setColor(QPalette::Base, colors.controlBackground);
    palette.setColor(QPalette::AlternateBase, colors.window);
    palette.setColor(QPalette::ToolTipBase, colors.controlBackground);
    palette.setColor(QPalette::PlaceholderText, colors.secondary);
    palette.setColor(QPalette::BrightText, colors.red);
    palette.setColor(QPalette::Highlight, accentColor);
    palette.setColor(QPalette::HighlightedText, Qt::black);
    palette.setColor(QPalette::Link, colors.focusRing);
    palette.setColor(QPalette::LinkVisited, colors.focusRing);
    return palette;
}

QColor composited(const QColor& over, const QColor& under) {
    const float alpha = over.alphaF();
    const auto mix = [alpha](float above, float below) {
        return above * alpha + below * (1.0F - alpha);
    };
    return QColor::fromRgbF(mix(over.redF(), under.redF()), mix(over.greenF(), under.greenF()),
                            mix(over.blueF(), under.blueF()));
}

double contrastRatio(const QColor& one, const QColor& other) {
    const double first = luminance(one) + 0.05;
    const double second = luminance(other) + 0.05;
    return std::max(first, second) / std::min(first, second);
}

}  // namespace bonkora
