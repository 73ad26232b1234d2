// Texts of a drawing on a painter.
#pragma once

#include "host/editor/ShapeWalker.h"
#include "host/editor/ViewTransform.h"

#include <QColor>
#include <QFont>

class QPainter;

namespace velmor {

class TextPainter {
public:
    /// The view must outlive this object.
    explicit TextPainter(const ViewTransform &view);

    /// Height of the capitals in pixels.
    double pixelsOf(const TextShape &shape, const PlaneMap &map) const
    {
        return shape.height * map.scale() * m_view.pixelsPerUnit;
    }
    /// Whether there is something of it to be seen within a part of the world: it is neither outside nor too small.
    bool isVisible(const TextShape &shape, const PlaneMap &map, const Extents &part) const;
    void paint(QPainter &painter, const TextShape &shape, const PlaneMap &map, const QColor &color) const;

    /// Smaller texts (height in pixels) are left out.
    static constexpr double kSmallestPixels = 2.5;

private:
    const ViewTransform &m_view;
    QFont m_font;
    double m_capHeight = 1.0;
};

} // namespace velmor
