// Geometry of single pieces: what linework is made of inside, where two pieces meet, and sums over rings.
// Lengths are drawing units; angles never appear: an arc is handled in the frame of its chord, which stays exact for
// flat arcs, whose centre would be far away.
#pragma once

#include "host/boundary/Regions.h"

#include <array>
#include <cmath>

namespace velmor::boundary::detail {

/// A piece as it is kept: from its lexicographically smaller end a to b, an arc at most a quarter of a circle.
struct Stored {
    double ax, ay, bx, by;
    double bulge;
    std::uint32_t source; ///< the caller's number
    std::uint32_t origin; ///< number of the piece it was cut from; cuts are no vertices
};

struct Vector {
    double x, y;
};

inline double cross(double ax, double ay, double bx, double by)
{
    return ax * by - ay * bx;
}
inline double dot(double ax, double ay, double bx, double by)
{
    return ax * bx + ay * by;
}

/// Coordinates stay below 1e12, so that squares need no care.
inline double lengthOf(double x, double y)
{
    return std::sqrt(x * x + y * y);
}

/// The frame of a chord, and the arc's equation in it: k (|p - m|^2 - h^2) - 2 kappa n.(p - m), which is about twice
/// the distance from the arc. A straight piece has k = 0 and kappa = 1.
struct Frame {
    double mx, my;   ///< middle of the chord
    double dx, dy;   ///< unit vector along it, from a to b
    double half;     ///< half its length
    double sagitta;  ///< of the arc's middle, to the left of d; negative for a positive bulge
    double k, kappa; ///< curvature, and offset of the centre along the normal divided by the radius

    explicit Frame(const Stored &piece);
    double along(double x, double y) const { return (x - mx) * dx + (y - my) * dy; }
    double beside(double x, double y) const { return (y - my) * dx - (x - mx) * dy; }
    /// Twice the distance from the arc's circle (or the line), positive outside of the circle.
    double equation(double x, double y) const;
    /// Whether a point known to lie on the circle within tolerance lies on this arc.
    bool holds(double along, double beside, double tolerance) const;
    /// Unit tangent, along the direction from a to b, of the circle through or near the point.
    Vector tangent(double x, double y) const;
};

/// How many pieces cut() makes of one at most: arcs are cut so that none is longer than a quarter of a circle.
int partsOf(double bulge);

/// Cuts a piece into stored ones and hands each to take. Arcs whose rise is below tolerance come out straight; pieces
/// shorter than tolerance, and those with coordinates that are no numbers or beyond 1e12, are left out.
void cut(const Piece &piece, std::uint32_t origin, double tolerance, std::vector<Stored> &out);

/// Order of pieces that depends on nothing but their geometry.
bool canonicalLess(const Stored &a, const Stored &b);

/// Distance from the point to the piece.
double distance(const Stored &piece, double x, double y);

struct Box {
    double x0, y0, x1, y1;
};
Box boxOf(const Stored &piece);
/// Leftmost point of the piece; onEnd tells whether it is an end.
struct Extreme {
    double x, y;
    bool onEnd;
};
Extreme leftmost(const Stored &piece);

/// The points in which two pieces meet: every end that lies within tolerance of the other piece, and the crossings.
/// Where the pieces run together within tolerance only the ends count. The answer is the same, to the bit, for
/// (a, b) and (b, a).
struct Contacts {
    std::array<Vector, 6> at;
    int count = 0;
    void add(double x, double y) { at[static_cast<std::size_t>(count++)] = {x, y}; }
};
Contacts contacts(const Stored &a, const Stored &b, double tolerance);

/// Where the line from p in the unit direction d meets the piece, as distances from p. Ends within tolerance of the
/// line count.
struct LineHits {
    std::array<double, 4> at;
    int count = 0;
    void add(double t) { at[static_cast<std::size_t>(count++)] = t; }
};
LineHits lineHits(const Stored &piece, const Vector &p, const Vector &d, double tolerance);

/// Bulge of the part of a circle with curvature k >= 0 over a chord of that length; at most half a circle.
double bulgeOfChord(double chord, double k);

/// A curve that leaves from (x0, y0) to (x1, y1) with a bulge: an edge between two nodes.
struct Curve {
    double x0, y0, x1, y1, bulge;
    double chord() const { return lengthOf(x1 - x0, y1 - y0); }
    Vector startTangent() const;
    /// Unit vector from the start to the point of the curve at that distance; distance <= chord().
    Vector towards(double distance) const;
};

/// Area between a side with bulge and its chord, positive for a positive bulge.
double bulgeArea(double chord, double bulge);

} // namespace velmor::boundary::detail
