// A given text colour, kept as it is on light backgrounds and held readable on dark ones.
#pragma once

#include <QColor>

#include <cstdint>

/// The colour of a value in blue, green, red byte order.
QColor ColourOf(std::uint32_t blueGreenRed);

/// Contrast of two colours, 1 to 21, by the relative luminance of the Web Content Accessibility Guidelines.
double ContrastOf(const QColor &one, const QColor &other);

/// wanted itself on a light background, which is one that black stands out from at least as well as white. On a dark
/// one the same hue, lightened until its contrast is 4.5 or more; wanted itself when it already is.
QColor ReadableColour(const QColor &wanted, const QColor &background);

/// wanted itself where its contrast to the background is 4.5 or more, else black or white.
QColor ReadableText(const QColor &wanted, const QColor &background);
