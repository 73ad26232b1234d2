// Curves given by position and tangent over a parameter, as chains of arcs.
#pragma once

#include "host/boundary/Regions.h"

#include <functional>
#include <vector>

namespace velmor {

struct CurvePoint {
    boundary::Point position;
    boundary::Point tangent; ///< any length; zero where the curve has none
};
using Curve = std::function<CurvePoint(double parameter)>;

/// Appends pieces that run along the curve from one parameter to another, ends exact, no farther than tolerance from
/// it. The curve must be smooth between the two parameters.
void appendArcChain(const Curve &curve, double from, double to, double tolerance, std::uint32_t source,
                    std::vector<boundary::Piece> &pieces);

} // namespace velmor
