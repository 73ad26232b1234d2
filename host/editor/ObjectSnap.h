// Points of a drawing's entities that a person means when clicking near them.
#pragma once

#include "host/drawing/Drawing.h"
#include "host/editor/Drafting.h"

#include <optional>
#include <vector>

namespace velmor {

struct SnapQuery {
    AcGePoint3d point;                    ///< the pointer
    double aperture = 0.0;                ///< drawing units; the field is a square of twice that around the pointer
    int modes = 0;                        ///< SnapBits
    std::optional<AcGePoint3d> base = {}; ///< of the rubber band; perpendicular needs it
};

struct SnapPoint {
    SnapBit kind = kSnapEnd; ///< one bit
    AcGePoint3d point;       ///< in the plane: z is 0
    bool operator==(const SnapPoint &) const = default;
};

/// The snap point that is meant at the pointer: the nearest one in the field; of equally near ones in the order end,
/// middle, intersection, centre, node, quadrant, insertion, perpendicular. With none in the field, the centre or the
/// foot of the perpendicular of a curve that runs through the field; and with none of those the nearest point of such a
/// curve. Visible entities of model space count, contents of block references too.
///
/// End: of lines, arcs, elliptic arcs, splines and each segment of polylines. Middle: of the same, along the curve.
/// Centre: of circles, arcs, ellipses and bulges. Node: points. Quadrant: where circles, arcs, ellipses and bulges are
/// farthest out (for ellipses the ends of the axes). Intersection: of any two curves, or of one with itself. Insertion:
/// of texts, attributes and block references. Perpendicular: from the base.
///
/// More than kMostCandidates entities in the field make it narrower until fewer are left, which bounds the time.
std::optional<SnapPoint> findSnap(Drawing &drawing, const SnapQuery &query);

inline constexpr std::size_t kMostCandidates = 4000;

} // namespace velmor
