// A second opinion on regions by another road: GEOS nodes the whole linework (OverlayNGRobust), makes polygons of it
// (Polygonizer), and finds the polygon around a point. For tests and benchmarks only.
#pragma once

#include "host/boundary/Regions.h"

#include <functional>
#include <memory>
#include <string>

namespace velmor::boundary::testing {

/// How GEOS is given arcs.
struct Chords {
    int perQuarter = 256; ///< at least so many for a quarter of a circle
    double rise = 0.0;    ///< and as many as keep a chord so near to its arc, when not 0
    double grid = 0.0;    ///< ends between those of the arc are rounded to multiples of it, when not 0, so that a
                          ///< tangent point on the grid is met exactly
};

class Referee {
public:
    explicit Referee(const std::vector<Piece> &pieces, const Chords &chords = {});
    ~Referee();

    struct Opinion {
        bool found = false;
        double area = 0.0; ///< of the face: holes taken away
        double perimeter = 0.0;
        std::size_t holes = 0;
        double difference = 0.0; ///< area of the symmetric difference with a region
        double clearance = 0.0;  ///< from the point to the outlines of the face, or else of the region
    };
    /// The face around the point, compared with a region.
    Opinion opinion(Point point, const Region &region) const;
    /// What the chords for the arcs of a region may cost in area: both shapes leave out up to the rise of a chord along
    /// each arc, and corners move by as much.
    double allowance(const Region &region) const;
    /// The largest rise of a chord: of the arcs of a region, and of all arcs.
    double largestRise(const Region &region) const;
    double largestRise() const;
    bool hasFace(Point point) const;
    std::size_t faces() const;
    /// A point of each face, at most so many, well inside. Slivers that chords leave between equal arcs are no faces.
    std::vector<Point> insidePoints(std::size_t most) const;
    /// Well-known text of the face around the point, to look at a disagreement.
    std::string text(Point point) const;
    static std::string text(const Region &region);

private:
    struct Private;
    std::unique_ptr<Private> d;
};

/// What a comparison over many points found.
struct Verdict {
    std::size_t points = 0, found = 0, onEdge = 0, unjudged = 0, wrong = 0;
    std::size_t moved = 0;    ///< differ by more than `part`, but only by what nodes may move
    double widestMoved = 0.0; ///< the widest of these faces, as twice its area over its perimeter
    double worst = 0.0;       ///< largest symmetric difference as a part of the area
    std::string firstWrong;
};
/// Linework for the referee where arcs of a real drawing touch other pieces: ends nearer than tolerance become the
/// same, and pieces are cut where such an end lies on them, so that chords pass through these points.
std::vector<Piece> welded(std::vector<Piece> pieces, double tolerance);

/// Asks both about every point. A point counts as wrong when only one of both finds a region, when the symmetric
/// difference is more than `part` of the area beyond what is allowed, or when the numbers of islands differ. Allowed
/// are the referee's chords for arcs, and nodes that move by the node tolerance; what lies nearer to the linework than
/// a few tolerances, or than a chord is from its arc, is not judged.
Verdict compare(Linework &lines, const Referee &referee, const std::vector<Point> &points, double part = 1e-6);

} // namespace velmor::boundary::testing
