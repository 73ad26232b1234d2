#include "host/editor/ArcChain.h"

#include <cmath>

namespace velmor {

namespace {

using boundary::Piece;
using boundary::Point;

constexpr int kDeepest = 20;

Point operator-(Point a, Point b)
{
    return {a.x - b.x, a.y - b.y};
}
Point operator+(Point a, Point b)
{
    return {a.x + b.x, a.y + b.y};
}
Point operator*(double s, Point p)
{
    return {s * p.x, s * p.y};
}
double dot(Point a, Point b)
{
    return a.x * b.x + a.y * b.y;
}
double cross(Point a, Point b)
{
    return a.x * b.y - a.y * b.x;
}
double length(Point a)
{
    return std::hypot(a.x, a.y);
}

/// Tangent of half the angle from one direction to another.
double halfAngleTangent(Point from, Point to)
{
    const double across = cross(from, to);
    const double along = dot(from, to);
    return across / (std::hypot(across, along) + along);
}

/// Distance of a point near an arc (or a straight piece) from its circle or line.
double distanceToCarrier(Point p, const Piece &piece)
{
    const Point chord = piece.b - piece.a;
    const double size = length(chord);
    if (size == 0.0)
        return length(p - piece.a);
    if (piece.bulge == 0.0)
        return std::abs(cross(chord, p - piece.a)) / size;
    // Centre: from the chord's middle by (1 - b^2) / (4 b) of the chord turned to the left.
    const double offset = (1.0 - piece.bulge * piece.bulge) / (4.0 * piece.bulge);
    const Point center = piece.a + 0.5 * chord + offset * Point{-chord.y, chord.x};
    const double radius = size * (1.0 + piece.bulge * piece.bulge) / (4.0 * std::abs(piece.bulge));
    return std::abs(length(p - center) - radius);
}

struct Biarc {
    Piece first, second;
};

/// The two arcs with a common tangent that join two points with given unit tangents (joint at equal arm lengths).
bool makeBiarc(Point p0, Point t0, Point p1, Point t1, Biarc &biarc)
{
    const Point v = p1 - p0;
    const Point t = t0 + t1;
    const double turn = 2.0 * (1.0 - dot(t0, t1));
    double arm = 0.0;
    if (turn > 1e-12) {
        const double vt = dot(v, t);
        arm = (-vt + std::sqrt(vt * vt + turn * dot(v, v))) / turn;
    } else {
        const double along = dot(v, t1);
        if (along <= 0.0)
            return false;
        arm = dot(v, v) / (4.0 * along);
    }
    if (!(arm > 0.0) || !std::isfinite(arm))
        return false;
    const Point joint = 0.5 * ((p0 + arm * t0) + (p1 - arm * t1));
    biarc.first = {p0, joint, halfAngleTangent(t0, joint - p0), 0};
    biarc.second = {joint, p1, halfAngleTangent(p1 - joint, t1), 0};
    return std::abs(biarc.first.bulge) < 1.0 && std::abs(biarc.second.bulge) < 1.0;
}

struct Chain {
    const Curve &curve;
    double tolerance;
    std::uint32_t source;
    std::vector<Piece> &pieces;

    /// An arc that can't be told from its chord.
    bool isStraight(const Piece &piece) const
    {
        return 0.5 * std::abs(piece.bulge) * length(piece.b - piece.a) < 1e-3 * tolerance;
    }

    void emit(Piece piece)
    {
        if (piece.a == piece.b)
            return;
        if (isStraight(piece))
            piece.bulge = 0.0;
        piece.source = source;
        pieces.push_back(piece);
    }

    bool fits(double from, double to, const Biarc &biarc) const
    {
        const Point joint = biarc.first.b;
        for (const double part : {0.15, 0.35, 0.5, 0.65, 0.85}) {
            const Point p = curve(from + part * (to - from)).position;
            // The side of the joint that the point lies on tells its arc.
            const bool beforeJoint =
                length(p - biarc.first.a) + length(p - joint) < length(p - joint) + length(p - biarc.second.b);
            const double one = distanceToCarrier(p, biarc.first), two = distanceToCarrier(p, biarc.second);
            const double near = length(p - joint) < 0.2 * length(biarc.second.b - biarc.first.a)
                                    ? std::min(one, two)
                                    : (beforeJoint ? one : two);
            if (near > tolerance)
                return false;
        }
        return true;
    }

    void run(double from, const CurvePoint &start, double to, const CurvePoint &end, int depth)
    {
        const double s = length(start.tangent), e = length(end.tangent);
        Biarc biarc;
        if (s > 0.0 && e > 0.0 && length(end.position - start.position) > 0.0 &&
            makeBiarc(start.position, (1.0 / s) * start.tangent, end.position, (1.0 / e) * end.tangent, biarc) &&
            fits(from, to, biarc)) {
            if (isStraight({start.position, end.position, biarc.first.bulge + biarc.second.bulge, 0}) &&
                isStraight({start.position, end.position, biarc.first.bulge - biarc.second.bulge, 0})) {
                emit({start.position, end.position, 0.0, 0});
            } else {
                emit(biarc.first);
                emit(biarc.second);
            }
            return;
        }
        const double middle = 0.5 * (from + to);
        const CurvePoint half = curve(middle);
        const bool small =
            length(half.position - start.position) <= tolerance && length(end.position - half.position) <= tolerance;
        if (depth == kDeepest || small) {
            emit({start.position, end.position, 0.0, 0});
            return;
        }
        run(from, start, middle, half, depth + 1);
        run(middle, half, to, end, depth + 1);
    }
};

} // namespace

void appendArcChain(const Curve &curve, double from, double to, double tolerance, std::uint32_t source,
                    std::vector<Piece> &pieces)
{
    Chain{curve, tolerance, source, pieces}.run(from, curve(from), to, curve(to), 0);
}

} // namespace velmor
