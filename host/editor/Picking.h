// What lies under the pointer, and in a window.
#pragma once

#include "host/drawing/Drawing.h"

#include <vector>

namespace velmor {

/// All visible entities of model space no farther than reach (drawing units) from a point, nearest first; of equally
/// near ones those that were drawn later first. The inside of texts and solid hatches is near too.
std::vector<AcDbEntity *> entitiesAt(Drawing &drawing, const AcGePoint3d &point, double reach);
/// The first of them; null when there is none.
AcDbEntity *entityAt(Drawing &drawing, const AcGePoint3d &point, double reach);

enum class SelectBy {
    Window,   ///< what lies wholly inside
    Crossing, ///< that, and what has a point inside or on the border
};
/// Visible entities of model space that a window takes, in the order of drawing. Exact for all kinds (ellipses, splines
/// and unevenly scaled blocks within 1e-7 of their size). An entity whose layer is locked is taken too.
AcDbObjectIdArray entitiesIn(Drawing &drawing, const Extents &window, SelectBy by);

/// About how many entities stand around a window: at least those that it meets; costs next to nothing.
std::size_t countNear(Drawing &drawing, const Extents &window);

} // namespace velmor
