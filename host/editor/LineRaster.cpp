#include "host/editor/LineRaster.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace velmor {

namespace {

/// Positions across a line are whole numbers of 2^-32 of a pixel, so that steps along it add up exactly enough.
constexpr int kFraction = 32;
constexpr double kOne = 4294967296.0;
constexpr std::uint32_t kFull = 256; ///< strength of a pixel that is covered wholly

/// Strength from 0 to kFull; all four channels go by the same rule, as the colour is opaque.
inline void blend(std::uint32_t &pixel, std::uint32_t color, std::uint32_t strength)
{
    if (strength >= kFull) {
        pixel = color;
        return;
    }
    const std::uint32_t rest = kFull - strength;
    const std::uint32_t even = ((color & 0xff00ffu) * strength + (pixel & 0xff00ffu) * rest) >> 8;
    const std::uint32_t odd = ((color >> 8 & 0xff00ffu) * strength + (pixel >> 8 & 0xff00ffu) * rest);
    pixel = (even & 0xff00ffu) | (odd & 0xff00ff00u);
}

/// Part of a pixel, given in 2^-32, as a strength.
inline std::uint32_t strengthOf(std::int64_t part)
{
    return static_cast<std::uint32_t>(part >> (kFraction - 8));
}

} // namespace

LineRaster::LineRaster(QImage &image, const QRect &clip)
    : m_pixels(reinterpret_cast<std::uint32_t *>(image.bits())), m_stride(image.bytesPerLine() / 4),
      m_clip(clip & image.rect())
{
}

template <bool Steep>
[[gnu::always_inline]] inline void LineRaster::column(int u, std::int64_t top, std::int64_t bottom,
                                                      std::uint32_t strength)
{
    const int low = Steep ? m_clip.left() : m_clip.top();
    const int high = Steep ? m_clip.right() : m_clip.bottom();
    const auto first = static_cast<int>(top >> kFraction), last = static_cast<int>(bottom >> kFraction);
    const auto at = [&](int v) -> std::uint32_t & {
        return Steep ? m_pixels[u * m_stride + v] : m_pixels[v * m_stride + u];
    };
    const auto put = [&](int v, std::uint32_t part) {
        if (v >= low && v <= high)
            blend(at(v), m_color, part * strength >> 8);
    };
    if (first == last) {
        put(first, strengthOf(bottom - top));
        return;
    }
    put(first, strengthOf((static_cast<std::int64_t>(first + 1) << kFraction) - top));
    for (int v = std::max(first + 1, low); v < std::min(last, high + 1); ++v)
        blend(at(v), m_color, strength);
    put(last, strengthOf(bottom - (static_cast<std::int64_t>(last) << kFraction)));
}

template <bool Steep>
void LineRaster::march(double u0, double v0, double u1, double v1)
{
    if (u0 > u1) {
        std::swap(u0, u1);
        std::swap(v0, v1);
    }
    const double clipU0 = Steep ? m_clip.top() : m_clip.left(), clipU1 = (Steep ? m_clip.bottom() : m_clip.right()) + 1;
    const double clipV0 = Steep ? m_clip.left() : m_clip.top(), clipV1 = (Steep ? m_clip.right() : m_clip.bottom()) + 1;
    double from = std::max(u0, clipU0), to = std::min(u1, clipU1);
    if (!(from < to))
        return;
    const double slope = (v1 - v0) / (u1 - u0);
    const double half = m_halfWidth * std::sqrt(1.0 + slope * slope);
    const double reach = half + 1.0;
    if (std::min(v0, v1) < clipV0 - reach || std::max(v0, v1) > clipV1 + reach) {
        const double low = clipV0 - reach, high = clipV1 + reach;
        if (std::max(v0, v1) < low || std::min(v0, v1) > high)
            return;
        if (slope != 0.0) {
            const double atLow = u0 + (low - v0) / slope, atHigh = u0 + (high - v0) / slope;
            from = std::max(from, std::min(atLow, atHigh) - 1.0);
            to = std::min(to, std::max(atLow, atHigh) + 1.0);
            if (!(from < to))
                return;
        }
    }
    // Nothing of the clip is below 0, so cutting off the fraction rounds down.
    const int first = static_cast<int>(from), behind = static_cast<int>(to);
    const int last = behind < to ? behind : behind - 1;
    const auto thickness = static_cast<std::int64_t>(2.0 * half * kOne);
    const auto topAt = [&](double u) { return static_cast<std::int64_t>((v0 + slope * (u - u0) - half) * kOne); };
    // The first and the last pixel of the line are covered in part; those of the clip are not its ends.
    const auto end = [&](int u) {
        const double left = std::max<double>(u, u0), right = std::min<double>(u + 1, u1);
        const auto strength = static_cast<std::uint32_t>((right - left) * kFull + 0.5);
        const std::int64_t top = topAt(0.5 * (left + right));
        column<Steep>(u, top, top + thickness, strength);
    };
    end(first);
    if (last == first)
        return;
    const auto step = static_cast<std::int64_t>(slope * kOne);
    std::int64_t top = topAt(first + 1.5);
    for (int u = first + 1; u < last; ++u, top += step)
        column<Steep>(u, top, top + thickness, kFull);
    end(last);
}

void LineRaster::line(double ax, double ay, double bx, double by)
{
    const double dx = std::abs(bx - ax), dy = std::abs(by - ay);
    if (!(dx + dy > 0.0) || !(dx + dy < 1e300))
        return;
    // With some room, so that rounding does not turn lines of 45 degrees, which are many, from one way to the other.
    if (dx * (1.0 + 1e-6) >= dy)
        march<false>(ax, ay, bx, by);
    else
        march<true>(ay, ax, by, bx);
}

void LineRaster::dot(double x, double y)
{
    const double offset = 0.5 * (m_dotSize - 1);
    const double left = x - offset, top = y - offset;
    if (left >= m_clip.left() && left < m_clip.right() + 2 - m_dotSize && top >= m_clip.top() &&
        top < m_clip.bottom() + 2 - m_dotSize) {
        std::uint32_t *corner = m_pixels + static_cast<int>(top) * m_stride + static_cast<int>(left);
        for (int v = 0; v < m_dotSize; ++v, corner += m_stride)
            for (int u = 0; u < m_dotSize; ++u)
                corner[u] = m_color;
        return;
    }
    if (!(left > m_clip.left() - m_dotSize && left <= m_clip.right() + 1 && top > m_clip.top() - m_dotSize &&
          top <= m_clip.bottom() + 1))
        return;
    const QRect square(static_cast<int>(std::floor(left)), static_cast<int>(std::floor(top)), m_dotSize, m_dotSize);
    const QRect seen = square & m_clip;
    for (int v = seen.top(); v <= seen.bottom(); ++v)
        for (int u = seen.left(); u <= seen.right(); ++u)
            m_pixels[v * m_stride + u] = m_color;
}

} // namespace velmor
