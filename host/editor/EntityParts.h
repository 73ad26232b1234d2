// What an entity is made of, for picking: pieces of its curves, its points, and the areas that count as a whole.
#pragma once

#include "host/boundary/Regions.h"
#include "host/drawing/Drawing.h"
#include "host/editor/DisplayIndex.h"

#include <vector>

namespace velmor {

/// Lines, arcs, circles and polylines come over exactly; ellipses, splines and unevenly scaled blocks as chains of arcs
/// within 1e-7 of their size. Contents of block references are among them, on the layers that are visible.
struct EntityParts {
    std::vector<boundary::Piece> pieces;
    std::vector<boundary::Point> points;
    /// Closed rings of straight sides whose inside belongs to the entity: boxes of texts, loops of solid hatches.
    std::vector<std::vector<boundary::Point>> areas;
    bool isEmpty() const { return pieces.empty() && points.empty() && areas.empty(); }
};
/// Part: count 0 for all of the entity.
EntityParts partsOf(const Drawing &drawing, const DisplayIndex::Part &part);

/// Distance of a point from the nearest of the parts; 0 inside of an area. Infinite without parts.
double distanceTo(const EntityParts &parts, boundary::Point point);
/// The point of a piece nearest to a point.
boundary::Point nearestOn(const boundary::Piece &piece, boundary::Point point);

/// Extents of a piece, exact for arcs.
Extents extentsOf(const boundary::Piece &piece);
/// Whether a piece has a point in the box, its border included.
bool touches(const boundary::Piece &piece, const Extents &box);
/// Whether any of the parts has a point in the box, its border included.
bool touches(const EntityParts &parts, const Extents &box);
/// Whether all of the parts lie in the box, its border included; false without parts.
bool liesWithin(const EntityParts &parts, const Extents &box);

/// A piece that is an arc, as centre, radius and turn.
struct PieceArc {
    boundary::Point center;
    double radius = 0.0;
    double start = 0.0; ///< direction of the piece's first end, radians
    double sweep = 0.0; ///< negative when it runs clockwise
    /// Whether a direction lies on the arc, its ends included.
    bool holds(double angle) const;
    boundary::Point at(double angle) const;
};
/// REQUIRES: piece.bulge != 0.
PieceArc arcOf(const boundary::Piece &piece);

} // namespace velmor
