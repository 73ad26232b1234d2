// Draws straight lines into an image, much faster than a general painter: nothing but smooth lines of one width in one
// opaque colour, and dots.
#pragma once

#include <QImage>
#include <QRect>
#include <QRgb>

#include <cstdint>

namespace velmor {

/// Coordinates are the image's own pixels, y down; pixel (0, 0) is the square from (0, 0) to (1, 1). What is drawn does
/// not depend on the clip, apart from where it ends: a picture that is drawn in parts is the same as one drawn whole.
class LineRaster {
public:
    /// REQUIRES: a 32-bit image, opaque or with premultiplied alpha, which outlives this object. Nothing outside of the
    /// clip is touched.
    LineRaster(QImage &image, const QRect &clip);

    /// Width in pixels, above 0.
    void setPen(QRgb color, double width)
    {
        m_color = color | 0xff000000u;
        m_halfWidth = 0.5 * width;
        m_dotSize = width < 1.5 ? 1 : static_cast<int>(width + 0.5);
    }
    /// A line with flat ends; coordinates that are no numbers draw nothing. A piece shorter than a pixel is only as
    /// strong as what it covers.
    void line(double ax, double ay, double bx, double by);
    /// A square as wide as the pen in the pixel that holds the point: what is too small to have a shape.
    void dot(double x, double y);

    const QRect &clip() const { return m_clip; }

private:
    template <bool Steep>
    void march(double u0, double v0, double u1, double v1);
    template <bool Steep>
    void column(int u, std::int64_t top, std::int64_t bottom, std::uint32_t strength);

    std::uint32_t *m_pixels;
    std::ptrdiff_t m_stride; ///< in pixels
    QRect m_clip;
    std::uint32_t m_color = 0xff000000u;
    double m_halfWidth = 0.5;
    int m_dotSize = 1;
};

} // namespace velmor
