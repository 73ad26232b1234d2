// Reads the ring out of a polygon's well-known text.
#pragma once

#include "contracts/HostTypes.h"

#include <optional>
#include <string_view>
#include <vector>

namespace velmor {

/// The outer ring of "POLYGON ((x y, x y, ..., x y))": the very doubles of the text in their order, the closing repeat
/// of the first point left out. A third coordinate is read and dropped, inner rings are read and dropped; letters may
/// be of either case. Nothing for any other text: another shape, an empty polygon, a ring that is not closed or has
/// fewer than three different points, a number that is none or not finite, text behind the polygon.
std::optional<std::vector<AcGePoint2d>> ringOfPolygonText(std::wstring_view text);

} // namespace velmor
