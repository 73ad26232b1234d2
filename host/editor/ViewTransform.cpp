#include "host/editor/ViewTransform.h"

#include <algorithm>

namespace velmor {

namespace {
/// Beyond these a double no longer tells neighbouring pixels of real coordinates apart.
constexpr double kSmallestScale = 1e-9;
constexpr double kLargestScale = 1e7;
} // namespace

Extents ViewTransform::visible() const
{
    const double halfWidth = size.width() / 2.0 / pixelsPerUnit;
    const double halfHeight = size.height() / 2.0 / pixelsPerUnit;
    return {centerX - halfWidth, centerY - halfHeight, centerX + halfWidth, centerY + halfHeight};
}

void ViewTransform::show(const Extents &extents, double margin)
{
    if (extents.isEmpty() || size.isEmpty())
        return;
    centerX = (extents.minX + extents.maxX) / 2.0;
    centerY = (extents.minY + extents.maxY) / 2.0;
    const double width = std::max(extents.maxX - extents.minX, 1e-6);
    const double height = std::max(extents.maxY - extents.minY, 1e-6);
    const double room = 1.0 - 2.0 * margin;
    pixelsPerUnit =
        std::clamp(std::min(size.width() * room / width, size.height() * room / height), kSmallestScale, kLargestScale);
}

void ViewTransform::zoomAt(const QPointF &viewPoint, double factor)
{
    const AcGePoint3d fixed = toWorld(viewPoint);
    pixelsPerUnit = std::clamp(pixelsPerUnit * factor, kSmallestScale, kLargestScale);
    const AcGePoint3d moved = toWorld(viewPoint);
    centerX += fixed.x - moved.x;
    centerY += fixed.y - moved.y;
}

void ViewTransform::panBy(const QPointF &pixels)
{
    centerX -= pixels.x() / pixelsPerUnit;
    centerY += pixels.y() / pixelsPerUnit;
}

} // namespace velmor
