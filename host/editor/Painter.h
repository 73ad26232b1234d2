// Paints a drawing with what is shown over it: temporary drawing, marks, highlights.
#pragma once

#include "host/drawing/Drawing.h"
#include "host/editor/ViewTransform.h"

#include <QColor>

class QPainter;

namespace velmor {

/// Colour indices of what is highlighted, and of what stands in the selection.
inline constexpr int kHighlightColor = 2, kSelectionColor = 4;

struct PaintStyle {
    QColor background = Qt::white;
    bool antialias = true;
    /// Screen colour of a colour index on this background: index 7 is black on light and white on dark.
    QColor color(int index) const;
    bool isDark() const { return background.lightnessF() < 0.5; }
    static PaintStyle light() { return {Qt::white, true}; }
    static PaintStyle dark() { return {QColor(0x1e, 0x22, 0x28), true}; }
};

/// Paints all visible entities of model space and the drawing's transient graphics. What lies outside the view, and
/// what is smaller than a pixel, costs next to nothing. The painter's coordinates are the view's logical pixels.
void paintDrawing(QPainter &painter, Drawing &drawing, const ViewTransform &view, const PaintStyle &style);

/// Paints one entity in one colour over what is there.
void paintEntity(QPainter &painter, const AcDbEntity &entity, int color, double width, Drawing &drawing,
                 const ViewTransform &view, const PaintStyle &style);

/// Extents of all visible entities of model space.
Extents visibleExtents(const Drawing &drawing);

} // namespace velmor
