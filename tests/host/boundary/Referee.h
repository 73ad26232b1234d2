// A second opinion on regions by another road: GEOS nodes the whole linework (OverlayNGRobust), makes polygons of it
// (Polygonizer), and finds the polygon around a point. For tests and benchmarks only.
#pragma once

#include "host/boundary/Regions.h"

#include <functional>
#include <memory>
#include <string>

namespace velmor::boundary::testing {

class Referee {
public:
    /// Arcs are handed to GEOS as chords, chordsPerQuarter for a quarter of a circle; the points between their ends are
    /// rounded to multiples of grid when it is not 0, so that a tangent point on the grid is met exactly.
    explicit Referee(const std::vector<Piece> &pieces, int chordsPerQuarter = 256, double grid = 0.0);
    ~Referee();

    struct Opinion {
        bool found = false;
        double area = 0.0; ///< of the face: holes taken away
        double perimeter = 0.0;
        std::size_t holes = 0;
        double difference = 0.0; ///< area of the symmetric difference with a region
        double clearance = 0.0;  ///< from the point to the nearest linework of the face, when found
    };
    /// The face around the point, compared with a region.
    Opinion opinion(Point point, const Region &region) const;
    /// What the chords for the arcs of a region may cost in area: both shapes leave out up to the rise of a chord along
    /// each arc, and corners move by as much.
    double allowance(const Region &region) const;
    /// The largest rise of a chord.
    double largestRise() const;
    bool hasFace(Point point) const;
    std::size_t faces() const;
    /// A point of each face, at most so many, well inside.
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
    double worst = 0.0; ///< largest symmetric difference as a part of the area
    std::string firstWrong;
};
/// Linework for the referee where arcs of a real drawing touch other pieces: ends nearer than tolerance become the
/// same, and pieces are cut where such an end lies on them, so that chords pass through these points.
std::vector<Piece> welded(std::vector<Piece> pieces, double tolerance);

/// Asks both about every point. A point counts as wrong when only one of both finds a region, when the symmetric
/// difference is more than `part` of the area beyond what is allowed, or when the numbers of islands differ. Allowed
/// are the referee's chords for arcs, and nodes that move by the node tolerance; what lies nearer to the linework than
/// a few tolerances is not judged.
Verdict compare(Linework &lines, const Referee &referee, const std::vector<Point> &points, double part = 1e-6);

} // namespace velmor::boundary::testing
