// What lies inside of a box or a polygon, and what crosses it or a line: the geometry of selecting.
#pragma once

#include "host/drawing/Drawing.h"

#include <span>

namespace velmor {

/// Which entities of model space a shape selects.
enum class SelectedBy {
    Inside,   ///< those that lie in it with all that they draw
    Crossing, ///< those, and what its outline crosses
    Fence     ///< what the open line through the points crosses
};

/// The visible entities that a polygon (closed by itself; a fence: an open line) selects, in the drawing's order.
/// Curves count as they are drawn, texts, points and hatches with the box around them, references with their contents.
/// Fewer than two points select nothing.
AcDbObjectIdArray entitiesBy(SelectedBy how, const Drawing &drawing, std::span<const AcGePoint3d> shape);
/// The same of a box between two corners.
AcDbObjectIdArray entitiesInBox(SelectedBy how, const Drawing &drawing, const AcGePoint3d &corner,
                                const AcGePoint3d &opposite);

} // namespace velmor
