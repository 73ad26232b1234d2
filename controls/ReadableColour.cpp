#include "controls/ReadableColour.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double kReadableContrast = 4.5;

double linearPart(double part)
{
    return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
}

double luminance(const QColor &colour)
{
    return 0.2126 * linearPart(colour.redF()) + 0.7152 * linearPart(colour.greenF()) +
           0.0722 * linearPart(colour.blueF());
}

} // namespace

QColor ColourOf(std::uint32_t blueGreenRed)
{
    return QColor(static_cast<int>(blueGreenRed & 0xFF), static_cast<int>(blueGreenRed >> 8 & 0xFF),
                  static_cast<int>(blueGreenRed >> 16 & 0xFF));
}

double ContrastOf(const QColor &one, const QColor &other)
{
    const double a = luminance(one), b = luminance(other);
    return (std::max(a, b) + 0.05) / (std::min(a, b) + 0.05);
}

QColor ReadableColour(const QColor &wanted, const QColor &background)
{
    if (ContrastOf(Qt::black, background) >= ContrastOf(Qt::white, background))
        return wanted;
    float hue = 0, saturation = 0, lightness = 0;
    wanted.getHslF(&hue, &saturation, &lightness);
    QColor colour = wanted;
    constexpr int kSteps = 100;
    for (int step = 1; step <= kSteps && ContrastOf(colour, background) < kReadableContrast; ++step) {
        const float part = static_cast<float>(step) / kSteps;
        colour = QColor::fromHslF(std::max(hue, 0.0F), saturation, lightness + (1.0F - lightness) * part);
    }
    return colour;
}

QColor ReadableText(const QColor &wanted, const QColor &background)
{
    if (ContrastOf(wanted, background) >= kReadableContrast)
        return wanted;
    const QColor black(Qt::black), white(Qt::white);
    return ContrastOf(black, background) >= ContrastOf(white, background) ? black : white;
}
