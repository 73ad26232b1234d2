#include "host/editor/ObjectSnap.h"

#include "host/editor/SnapFeatures.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <numbers>

namespace velmor {

namespace {

using boundary::Piece;
using boundary::Point;

constexpr std::size_t kMostPieces = 128; ///< those nearest to the pointer that are crossed with each other
constexpr double kOnPiece = 1e-9;        ///< beyond its ends, as a fraction of a piece's length
constexpr double kTouching = 1e-12;      ///< how far, of the radius, a line may pass a circle and still touch it

/// Which of two equally near ones is meant.
constexpr std::array kOrder{kSnapEnd,  kSnapMiddle,   kSnapIntersection, kSnapCenter,
                            kSnapNode, kSnapQuadrant, kSnapInsertion,    kSnapPerpendicular};

std::size_t rankOf(SnapBit kind)
{
    return static_cast<std::size_t>(std::ranges::find(kOrder, kind) - kOrder.begin());
}

double distance(Point a, Point b)
{
    return std::hypot(a.x - b.x, a.y - b.y);
}

/// Points in which a line meets the circle of an arc, as far as they lie on both.
void crossLineArc(const Piece &line, const Piece &curve, std::vector<Point> &points)
{
    const PieceArc arc = arcOf(curve);
    const double dx = line.b.x - line.a.x, dy = line.b.y - line.a.y, length = std::hypot(dx, dy);
    const double ex = dx / length, ey = dy / length;
    const double along = (arc.center.x - line.a.x) * ex + (arc.center.y - line.a.y) * ey;
    const double away = (arc.center.x - line.a.x) * ey - (arc.center.y - line.a.y) * ex;
    const double square = arc.radius * arc.radius - away * away;
    if (square < -kTouching * arc.radius * arc.radius)
        return;
    const double half = std::sqrt(std::max(0.0, square));
    for (const double side : {-half, half}) {
        const double t = along + side;
        if (t < -kOnPiece * length || t > length * (1.0 + kOnPiece))
            continue;
        const Point p{line.a.x + t * ex, line.a.y + t * ey};
        if (arc.holds(std::atan2(p.y - arc.center.y, p.x - arc.center.x)))
            points.push_back(p);
        if (half == 0.0)
            return;
    }
}

void crossLines(const Piece &one, const Piece &other, std::vector<Point> &points)
{
    const double ax = one.b.x - one.a.x, ay = one.b.y - one.a.y;
    const double bx = other.b.x - other.a.x, by = other.b.y - other.a.y;
    const double cross = ax * by - ay * bx;
    if (std::abs(cross) <= 1e-14 * std::hypot(ax, ay) * std::hypot(bx, by))
        return;
    const double cx = other.a.x - one.a.x, cy = other.a.y - one.a.y;
    const double s = (cx * by - cy * bx) / cross, t = (cx * ay - cy * ax) / cross;
    if (s < -kOnPiece || s > 1.0 + kOnPiece || t < -kOnPiece || t > 1.0 + kOnPiece)
        return;
    points.push_back({one.a.x + s * ax, one.a.y + s * ay});
}

void crossArcs(const Piece &one, const Piece &other, std::vector<Point> &points)
{
    const PieceArc a = arcOf(one), b = arcOf(other);
    const double dx = b.center.x - a.center.x, dy = b.center.y - a.center.y, apart = std::hypot(dx, dy);
    if (apart <= 1e-14 * (a.radius + b.radius))
        return;
    const double along = (apart * apart + a.radius * a.radius - b.radius * b.radius) / (2.0 * apart);
    const double square = a.radius * a.radius - along * along;
    if (square < -kTouching * a.radius * a.radius)
        return;
    const double half = std::sqrt(std::max(0.0, square));
    const double ex = dx / apart, ey = dy / apart;
    for (const double side : {-half, half}) {
        const Point p{a.center.x + along * ex - side * ey, a.center.y + along * ey + side * ex};
        if (a.holds(std::atan2(p.y - a.center.y, p.x - a.center.x)) &&
            b.holds(std::atan2(p.y - b.center.y, p.x - b.center.x)))
            points.push_back(p);
        if (half == 0.0)
            return;
    }
}

bool isEndOf(const Piece &piece, Point p, double tolerance)
{
    return distance(piece.a, p) <= tolerance || distance(piece.b, p) <= tolerance;
}

/// Feet of the perpendiculars from a point on a piece.
void feetOn(const Piece &piece, Point base, std::vector<Point> &points)
{
    if (piece.bulge == 0.0) {
        const double dx = piece.b.x - piece.a.x, dy = piece.b.y - piece.a.y;
        const double along = ((base.x - piece.a.x) * dx + (base.y - piece.a.y) * dy) / (dx * dx + dy * dy);
        if (along >= -kOnPiece && along <= 1.0 + kOnPiece)
            points.push_back({piece.a.x + along * dx, piece.a.y + along * dy});
        return;
    }
    const PieceArc arc = arcOf(piece);
    const double toBase = std::atan2(base.y - arc.center.y, base.x - arc.center.x);
    for (const double angle : {toBase, toBase + std::numbers::pi})
        if (arc.holds(angle))
            points.push_back(arc.at(angle));
}

/// The best of what is offered; one call of offer for each candidate.
struct Choice {
    double distance = std::numeric_limits<double>::infinity();
    std::size_t rank = kOrder.size();
    std::optional<SnapPoint> found;
    double same = 0.0; ///< distances that differ by less are equal

    void offer(SnapBit kind, Point p, double away)
    {
        const std::size_t itsRank = rankOf(kind);
        const bool isNearer = away < distance - same || (away <= distance + same && itsRank < rank);
        if (!isNearer)
            return;
        distance = away;
        rank = itsRank;
        found = SnapPoint{kind, {p.x, p.y, 0.0}};
    }
};

std::optional<SnapPoint> choose(SnapFeatures &features, const SnapQuery &query, const Extents &field)
{
    const Point pointer{query.point.x, query.point.y};
    auto &pieces = features.pieces;
    const auto wants = [&](SnapBit kind) { return (query.modes & kind) != 0; };
    Choice inField, onCurve;
    inField.same = onCurve.same = 1e-6 * query.aperture;
    for (const SnapFeatures::Spot &spot : features.spots)
        inField.offer(spot.kind, spot.point, distance(spot.point, pointer));
    if (wants(kSnapIntersection)) {
        const auto away = [&](const Piece &piece) { return distance(nearestOn(piece, pointer), pointer); };
        if (pieces.size() > kMostPieces)
            std::ranges::nth_element(pieces, pieces.begin() + kMostPieces, {}, away);
        const std::size_t count = std::min(pieces.size(), kMostPieces);
        std::vector<Point> points;
        for (std::size_t i = 0; i < count; ++i)
            for (std::size_t j = i + 1; j < count; ++j) {
                points.clear();
                const Piece &a = pieces[i], &b = pieces[j];
                if (a.bulge == 0.0 && b.bulge == 0.0)
                    crossLines(a, b, points);
                else if (a.bulge == 0.0 || b.bulge == 0.0)
                    crossLineArc(a.bulge == 0.0 ? a : b, a.bulge == 0.0 ? b : a, points);
                else
                    crossArcs(a, b, points);
                for (const Point &p : points)
                    // Where one piece of a curve goes on as the next, nothing crosses.
                    if (field.contains(p.x, p.y) && !(a.source == b.source && isEndOf(a, p, 1e-6 * query.aperture) &&
                                                      isEndOf(b, p, 1e-6 * query.aperture)))
                        inField.offer(kSnapIntersection, p, distance(p, pointer));
            }
    }
    if (wants(kSnapPerpendicular) && query.base) {
        std::vector<Point> feet;
        for (const Piece &piece : pieces) {
            feet.clear();
            feetOn(piece, {query.base->x, query.base->y}, feet);
            for (const Point &foot : feet)
                if (field.contains(foot.x, foot.y))
                    inField.offer(kSnapPerpendicular, foot, distance(foot, pointer));
                else
                    onCurve.offer(kSnapPerpendicular, foot, distance(nearestOn(piece, pointer), pointer));
        }
    }
    if (inField.found)
        return inField.found;
    for (const SnapFeatures::Center &center : features.centers)
        onCurve.offer(kSnapCenter, center.point, center.distance);
    if (onCurve.found || !wants(kSnapNearest))
        return onCurve.found;
    Choice nearest;
    for (const Piece &piece : pieces) {
        const Point p = nearestOn(piece, pointer);
        nearest.offer(kSnapNearest, p, distance(p, pointer));
    }
    return nearest.found;
}

} // namespace

std::optional<SnapPoint> findSnap(Drawing &drawing, const SnapQuery &query)
{
    if (query.modes == 0 || !(query.aperture > 0.0))
        return std::nullopt;
    auto &index = drawing.component<DisplayIndex>();
    SnapQuery narrower = query;
    for (;;) {
        Extents field{query.point.x, query.point.y, query.point.x, query.point.y};
        field.grow(narrower.aperture);
        std::vector<DisplayIndex::Part> parts;
        index.visitItems(field, [&](const DisplayIndex::Item &item) {
            parts.push_back(index.partOf(item));
            return parts.size() <= kMostCandidates;
        });
        if (parts.size() > kMostCandidates && narrower.aperture > 1e-9 * query.aperture) {
            narrower.aperture *= 0.5;
            continue;
        }
        SnapFeatures features(drawing, {query.point.x, query.point.y}, field, query.modes);
        for (const DisplayIndex::Part &part : parts)
            features.add(part);
        return choose(features, narrower, field);
    }
}

} // namespace velmor
