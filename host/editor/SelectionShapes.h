// What lies inside of a polygon, and what crosses it or a line: the geometry of selecting (windows: see Picking.h).
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
AcDbObjectIdArray entitiesBy(SelectedBy how, Drawing &drawing, std::span<const AcGePoint3d> shape);

} // namespace velmor
