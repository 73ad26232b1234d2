// A told text colour, held readable on light and dark backgrounds.
#pragma once

#include <QColor>

#include <cstdint>

/// Colours on the seam stand in blue, green, red byte order.
inline constexpr std::uint32_t kColourGuidance = 0xFF0000; ///< blue
inline constexpr std::uint32_t kColourResult = 23551;      ///< orange
inline constexpr std::uint32_t kColourPlain = 0x000000;    ///< black

/// The colour of a value in blue, green, red byte order.
QColor ColourOf(std::uint32_t blueGreenRed);

/// Contrast of two colours, 1 to 21, by the relative luminance of the Web Content Accessibility Guidelines.
double ContrastOf(const QColor &one, const QColor &other);

/// wanted itself when its contrast to the background is 4.5 or more; else the same hue, lighter or darker, that just
/// reaches it.
QColor ReadableColour(const QColor &wanted, const QColor &background);
