// From a point to its region: looks along rays for the outlines around the point and collects what lies inside.
#pragma once

#include "host/boundary/Outlines.h"
#include "host/boundary/RingLocator.h"

#include <optional>

namespace velmor::boundary::detail {

class RegionFinder {
public:
    explicit RegionFinder(const PieceIndex &index);
    RegionFinder(const RegionFinder &) = delete;
    RegionFinder &operator=(const RegionFinder &) = delete;

    /// Forgets what was found; to be called when pieces came or went.
    void reset(double tolerance);
    Region regionAt(Point point, const RegionOptions &options);
    /// Straight pieces that close gaps up to the tolerance.
    std::vector<Piece> jointsFor(double gapTolerance);
    std::size_t memoryBytes() const;

private:
    struct Hit {
        std::uint32_t piece;
        double x, y;
    };
    /// Nearest piece from the point in a direction (a unit vector), farther than beyond and not farther than within.
    std::optional<Hit> look(const Vector &from, const Vector &direction, double beyond, double within) const;
    std::optional<Hit> look(const Vector &from, const Vector &direction, double beyond) const;
    /// Number of the outline that is seen from a point at a hit; 0 when none could be found.
    std::uint32_t outlineAt(const Hit &hit, const Vector &from);
    /// The outline of the face around the point, or Outline::kOutside.
    std::uint32_t faceAround(const Vector &point, const Vector &direction);
    bool isOnEdge(const Vector &point) const;
    bool seesOutside(std::uint32_t number, std::uint32_t node, const Vector &direction);
    void findIslands(std::uint32_t face);
    std::vector<HalfEdge> looseEndsSeen(const Vector &point);
    void explain(const Vector &point, Region &region);

    const PieceIndex &m_index;
    Arrangement m_arrangement;
    Outlines m_outlines;
    double m_tolerance = 0.0;
};

} // namespace velmor::boundary::detail
