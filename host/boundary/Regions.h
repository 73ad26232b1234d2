// Finds the region of the plane around a point: the face of all linework that holds the point.
//
// Linework is lines and circular arcs in drawing units, y up; other curves are handed in as chains of both.
// Pieces need not be split where they cross, may touch, overlap and repeat: where pieces coincide they count once. Arcs
// stay arcs in the result. Nothing here knows a drawing or Qt.
//
// Vertices of a ring are the ends of pieces and the crossings in which the outline turns from one piece to another. A
// place is no vertex when some piece runs straight through it, so what touches or crosses an outline from beside it
// leaves no trace in the ring. Rings never touch themselves: a part of the outline that hangs on it in one point is an
// island. Ends that hang loose inside the region, and bridges to parts inside it, are left out; such parts are islands.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace velmor::boundary {

struct Point {
    double x = 0.0, y = 0.0;
    bool operator==(const Point &) const = default;
};

/// A straight piece (bulge 0) or an arc from a to b; bulge is the tangent of a quarter of the included angle, positive
/// when the arc runs counter-clockwise. A full circle is two pieces of bulge 1.
struct Piece {
    Point a, b;
    double bulge = 0.0;
    std::uint32_t source = 0; ///< the caller's number; pieces of one source are dropped together
};

/// Vertex of a ring; bulge belongs to the side that starts here. The first vertex is not repeated.
struct RingVertex {
    double x = 0.0, y = 0.0, bulge = 0.0;
    bool operator==(const RingVertex &) const = default;
};
using Ring = std::vector<RingVertex>;

enum class Status {
    Found,       ///< outer (and islands when asked for) are filled
    OnEdge,      ///< the point lies on the linework, so it has no face
    NotEnclosed, ///< nothing goes round the point
    Open,        ///< linework stands around the point, but its outline does not close: gaps tells where
};

/// A loose end, and what is missing to close it: the nearest other loose end, or the linework straight ahead of it when
/// that is nearer. Width is the distance between both, in drawing units.
struct Gap {
    Point from, to;
    double width = 0.0;
};

struct Region {
    Status status = Status::NotEnclosed;
    Ring outer; ///< counter-clockwise; starts at its lowest, among those leftmost, vertex
    /// Outlines of what lies inside, first level only: counter-clockwise, each starting as outer does, and sorted by
    /// their first vertices (lowest, then leftmost). Only when asked for.
    std::vector<Ring> islands;
    std::vector<Gap> gaps; ///< for Open: loose ends that can be seen from the point, nearest first; at most 8
    explicit operator bool() const { return status == Status::Found; }
};

struct RegionOptions {
    bool islands = false;
    /// Loose ends closer than this to each other are joined by a straight piece, and those that have no such partner
    /// with the nearest linework closer than this. Drawing units; 0: nothing is joined. The joints for one tolerance
    /// are made once and kept with the linework, at a cost that follows its size.
    double gapTolerance = 0.0;
};

/// Linework with its spatial index. The cost of a search follows the region that is found, not the linework. What was
/// found is remembered as long as the linework stands: a second point in the same region, or outside of the same
/// outlines, is answered at once.
class Linework {
public:
    /// Points nearer than this become one node, and ends nearer than this to a piece touch it: a fraction of the size
    /// of the coordinates (the middle piece's, rounded up to a power of two), 1 micrometre at 4.8e6 metres.
    static constexpr double kNodeTolerance = 0x1p-43;

    Linework();
    explicit Linework(std::vector<Piece> pieces);
    Linework(Linework &&) noexcept;
    Linework &operator=(Linework &&) noexcept;
    ~Linework();

    /// Pieces shorter than the node tolerance, and pieces with coordinates that are infinite, no numbers or beyond
    /// 1e12, are passed over.
    void insert(std::span<const Piece> pieces);
    /// Takes out all pieces of that source.
    void remove(std::uint32_t source);
    std::size_t size() const;     ///< pieces that are in; an arc beyond a quarter of a circle counts as several
    double nodeTolerance() const; ///< drawing units

    /// The face around the point. The same linework gives the same ring with the same first vertex for every point of
    /// the region, whatever the order and direction in which the pieces came. REQUIRES finite coordinates.
    Region regionAt(Point point, const RegionOptions &options = {});

    std::size_t memoryBytes() const;

private:
    struct Private;
    std::unique_ptr<Private> d;
};

/// Signed area of a ring with arcs; positive for counter-clockwise rings. Square units.
double signedArea(const Ring &ring);

} // namespace velmor::boundary
