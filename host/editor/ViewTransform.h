// Between world coordinates (y up) and a view's pixels (y down).
#pragma once

#include "host/drawing/Entities.h"

#include <QPointF>
#include <QSizeF>
#include <QTransform>

namespace velmor {

/// What part of the plane a view shows. Size is the view's in logical pixels.
struct ViewTransform {
    double centerX = 0.0, centerY = 0.0;
    double pixelsPerUnit = 1.0;
    QSizeF size{800.0, 600.0};

    QPointF toView(double x, double y) const
    {
        return {size.width() / 2.0 + (x - centerX) * pixelsPerUnit,
                size.height() / 2.0 - (y - centerY) * pixelsPerUnit};
    }
    AcGePoint3d toWorld(const QPointF &p) const
    {
        return {centerX + (p.x() - size.width() / 2.0) / pixelsPerUnit,
                centerY - (p.y() - size.height() / 2.0) / pixelsPerUnit};
    }
    /// The same as toView for shapes.
    QTransform transform() const
    {
        return {pixelsPerUnit,
                0.0,
                0.0,
                -pixelsPerUnit,
                size.width() / 2.0 - centerX * pixelsPerUnit,
                size.height() / 2.0 + centerY * pixelsPerUnit};
    }
    Extents visible() const;
    /// Shows the extents with a margin (a fraction of the size on each side); empty extents change nothing.
    void show(const Extents &extents, double margin = 0.04);
    /// Scales by the factor and keeps the world point under the view point in its place.
    void zoomAt(const QPointF &viewPoint, double factor);
    void panBy(const QPointF &pixels);
};

} // namespace velmor
