#include "host/editor/TextPainter.h"

#include <QFontMetricsF>
#include <QPainter>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace velmor {

namespace {
constexpr int kFontPixels = 100; ///< texts are drawn with this font, scaled
}

TextPainter::TextPainter(const ViewTransform &view) : m_view(view), m_font(QStringLiteral("DejaVu Sans"))
{
    m_font.setPixelSize(kFontPixels);
    m_capHeight = std::max(1.0, QFontMetricsF(m_font).capHeight());
}

bool TextPainter::isVisible(const TextShape &shape, const PlaneMap &map, const Extents &part) const
{
    const double pixels = pixelsOf(shape, map);
    if (!(pixels >= kSmallestPixels) || shape.text.empty() || !std::isfinite(pixels))
        return false;
    // No letter is wider than twice its height, whatever way the text runs.
    const double lines = 1.0 + static_cast<double>(std::ranges::count(shape.text, L'\n'));
    const double letters = static_cast<double>(shape.text.size());
    const double reach = (2.0 * letters * std::abs(shape.widthFactor) + 2.0 * lines) * shape.height * map.scale();
    const QPointF place = map.apply(shape.position.x, shape.position.y);
    return place.x() + reach >= part.minX && place.x() - reach <= part.maxX && place.y() + reach >= part.minY &&
           place.y() - reach <= part.maxY;
}

void TextPainter::paint(QPainter &painter, const TextShape &shape, const PlaneMap &map, const QColor &color) const
{
    const QPointF place = map.apply(shape.position.x, shape.position.y);
    const QStringList lines = QString::fromStdWString(shape.text).split(u'\n');
    const QFontMetricsF metrics(m_font);
    const double scale = pixelsOf(shape, map) / m_capHeight;
    painter.save();
    painter.translate(m_view.toView(place.x(), place.y()));
    const double rotation = shape.rotation + std::atan2(map.yx, map.xx);
    painter.rotate(-rotation * 180.0 / std::numbers::pi);
    painter.scale(scale * shape.widthFactor, scale);
    painter.setFont(m_font);
    painter.setPen(color);
    const double block = m_capHeight + (lines.size() - 1) * metrics.lineSpacing();
    double y = shape.vertical == 3 ? m_capHeight : shape.vertical == 2 ? m_capHeight - block / 2.0 : 0.0;
    for (const QString &line : lines) {
        double x = 0.0;
        if (shape.horizontal != 0)
            x = -metrics.horizontalAdvance(line) / (shape.horizontal == 2 ? 1.0 : 2.0);
        painter.drawText(QPointF(x, y), line);
        y += metrics.lineSpacing();
    }
    painter.restore();
}

} // namespace velmor
