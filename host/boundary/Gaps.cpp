#include "host/boundary/Gaps.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <tuple>

namespace velmor::boundary::detail {

namespace {

/// Linework joins an end only when it lies within this cosine of straight ahead: not beside it, where a spur would be
/// joined to the wall that it comes from.
constexpr double kAhead = 0.3;

LooseEnd looseEnd(const Stored &piece, std::uint32_t number, bool atA)
{
    const double x = atA ? piece.ax : piece.bx, y = atA ? piece.ay : piece.by;
    Vector t = Frame(piece).tangent(x, y);
    if (atA)
        t = {-t.x, -t.y};
    return {x, y, t, number};
}

Vector nearestPoint(const Stored &piece, double x, double y)
{
    const Frame f(piece);
    const double u = f.along(x, y), v = f.beside(x, y);
    double pu = std::clamp(u, -f.half, f.half), pv = 0.0;
    if (piece.bulge != 0.0) {
        const double centre = f.kappa / f.k, away = lengthOf(u, v - centre);
        if (away > 0) {
            pu = u / away / f.k;
            pv = centre + (v - centre) / away / f.k;
        }
        if (away <= 0 || !f.holds(pu, pv, 0.0)) {
            pu = u < 0 ? -f.half : f.half;
            pv = 0.0;
        }
    }
    return {f.mx + pu * f.dx - pv * f.dy, f.my + pu * f.dy + pv * f.dx};
}

} // namespace

std::vector<LooseEnd> looseEnds(const PieceIndex &index, Arrangement &arrangement)
{
    std::vector<LooseEnd> found;
    const double reach = 2.0 * arrangement.tolerance();
    for (std::uint32_t i = 0; i < index.pieces().size(); ++i) {
        if (index.isRemoved(i))
            continue;
        const Stored &piece = index.pieces()[i];
        for (const bool atA : {true, false}) {
            const LooseEnd end = looseEnd(piece, i, atA);
            bool isLoose = true, isDoubtful = false;
            index.inBox({end.x - reach, end.y - reach, end.x + reach, end.y + reach}, [&](std::uint32_t n) {
                const Stored &other = index.pieces()[n];
                if (n == i || !isLoose || distance(other, end.x, end.y) > reach)
                    return;
                const bool otherAtA = lengthOf(other.ax - end.x, other.ay - end.y) <= reach;
                const bool otherAtB = lengthOf(other.bx - end.x, other.by - end.y) <= reach;
                const Vector t = looseEnd(other, n, otherAtA).ahead;
                // Only a piece that ends here in the same direction can be the same one drawn twice.
                isDoubtful = otherAtA != otherAtB && dot(t.x, t.y, end.ahead.x, end.ahead.y) > 0.99;
                isLoose = isDoubtful;
            });
            if (isLoose && isDoubtful)
                isLoose = arrangement.endsLoose(i, atA);
            if (isLoose)
                found.push_back(end);
        }
    }
    return found;
}

std::vector<Piece> joints(const PieceIndex &index, Arrangement &arrangement, double gapTolerance)
{
    const std::vector<LooseEnd> ends = looseEnds(index, arrangement);
    std::vector<Stored> places;
    places.reserve(ends.size());
    for (std::uint32_t i = 0; i < ends.size(); ++i)
        places.push_back({ends[i].x, ends[i].y, ends[i].x, ends[i].y, 0.0, 0, i});
    PieceIndex byPlace;
    byPlace.insert(std::move(places));

    std::vector<Piece> made;
    const double none = std::numeric_limits<double>::infinity();
    for (std::uint32_t i = 0; i < ends.size(); ++i) {
        const LooseEnd &end = ends[i];
        const Box around{end.x - gapTolerance, end.y - gapTolerance, end.x + gapTolerance, end.y + gapTolerance};
        double nearest = none;
        Vector to{0, 0};
        const auto take = [&](const Vector &p) {
            const double away = lengthOf(p.x - end.x, p.y - end.y);
            if (away <= gapTolerance &&
                (away < nearest || (away == nearest && std::tie(p.x, p.y) < std::tie(to.x, to.y)))) {
                nearest = away;
                to = p;
            }
        };
        byPlace.inBox(around, [&](std::uint32_t n) {
            const LooseEnd &other = ends[byPlace.pieces()[n].origin];
            if (index.pieces()[other.piece].origin != index.pieces()[end.piece].origin)
                take({other.x, other.y});
        });
        if (nearest == none) {
            index.inBox(around, [&](std::uint32_t n) {
                if (index.pieces()[n].origin == index.pieces()[end.piece].origin)
                    return;
                const Vector p = nearestPoint(index.pieces()[n], end.x, end.y);
                const double along = dot(p.x - end.x, p.y - end.y, end.ahead.x, end.ahead.y);
                if (along >= kAhead * lengthOf(p.x - end.x, p.y - end.y))
                    take(p);
            });
        }
        if (nearest < none)
            made.push_back({{end.x, end.y}, {to.x, to.y}, 0.0, 0});
    }
    return made;
}

} // namespace velmor::boundary::detail
