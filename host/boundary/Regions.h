// Finds the region of the plane around a point: the face of all linework that holds the point.
//
// Linework is lines and circular arcs in drawing units; other curves are handed in as chains of both. Pieces need not
// be split where they cross, may overlap and may repeat: coincident pieces count once. Arcs stay arcs in the result.
// Nothing here knows a drawing or Qt.
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
    Open,        ///< linework goes round the point, but its outline does not close: gaps tells where
};

/// A loose end, and the nearest other loose end.
struct Gap {
    Point from, to;
    double width = 0.0;
};

struct Region {
    Status status = Status::NotEnclosed;
    Ring outer;                ///< counter-clockwise; starts at its lowest, then leftmost vertex
    std::vector<Ring> islands; ///< counter-clockwise outlines of what lies inside, first level only
    std::vector<Gap> gaps;     ///< nearest to the point first; at most 8
    explicit operator bool() const { return status == Status::Found; }
};

struct RegionOptions {
    bool islands = false;
    /// Loose ends closer than this are joined. 0: nothing is joined.
    double gapTolerance = 0.0;
};

/// Linework with its spatial index. Cost of a search follows the region that is found, not the linework.
class Linework {
public:
    /// Points nearer than this become one node; relative to the size of the coordinates.
    static constexpr double kNodeTolerance = 1e-9;

    Linework();
    explicit Linework(std::vector<Piece> pieces);
    Linework(Linework &&) noexcept;
    Linework &operator=(Linework &&) noexcept;
    ~Linework();

    void insert(std::span<const Piece> pieces);
    void remove(std::uint32_t source);
    std::size_t size() const; ///< pieces that are in

    /// The face around the point. The same linework gives the same ring with the same first vertex every time,
    /// whatever the order in which the pieces came. REQUIRES finite coordinates.
    Region regionAt(Point point, const RegionOptions &options = {});

    std::size_t memoryBytes() const;

private:
    struct Private;
    std::unique_ptr<Private> d;
};

/// Signed area of a ring with arcs; positive for counter-clockwise rings. Square units.
double signedArea(const Ring &ring);

} // namespace velmor::boundary
