#include "host/drawing/CurvePath.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace velmor {

namespace {

using Vertex = AcDbPolyline::Vertex;
constexpr double kTwoPi = 2.0 * std::numbers::pi;

/// A chord of a wide arc says little about its shape and has an endless bulge for a full one, so at most a half turn is
/// put into one segment.
CurvePath arcPath(const AcGePoint3d &center, double radius, double start, double sweep)
{
    const int parts = sweep > std::numbers::pi * 1.000001 ? 2 : 1;
    const double bulge = std::tan(sweep / parts / 4.0);
    CurvePath path;
    for (int i = 0; i <= parts; ++i) {
        const double angle = start + sweep * i / parts;
        path.vertices.push_back(
            {center.x + radius * std::cos(angle), center.y + radius * std::sin(angle), i < parts ? bulge : 0.0});
    }
    return path;
}

CurvePath ellipsePath(const EllipseEntity &ellipse, double tolerance)
{
    const auto &shape = ellipse.shape();
    const double sweep = endOfTurn(shape.startParameter, shape.endParameter) - shape.startParameter;
    // The chord of a circle of the major axis leaves the arc by r (1 - cos(step / 2)), and the ellipse is flatter.
    const double radius = shape.majorAxis.length();
    const double step = radius > tolerance ? 2.0 * std::acos(1.0 - tolerance / radius) : std::numbers::pi / 2.0;
    const int count = std::clamp(static_cast<int>(std::ceil(sweep / std::max(step, 1e-4))), 8, 20000);
    CurvePath path;
    for (int i = 0; i <= count; ++i) {
        const AcGePoint3d point = ellipse.pointAt(shape.startParameter + sweep * i / count);
        path.vertices.push_back({point.x, point.y, 0.0});
    }
    return path;
}

template <class Points>
CurvePath pointsPath(const Points &points, bool closed)
{
    CurvePath path;
    path.closed = closed;
    for (const AcGePoint3d &point : points)
        path.vertices.push_back({point.x, point.y, 0.0});
    return path;
}

bool meet(const Vertex &a, const Vertex &b, double tolerance)
{
    return std::abs(a.x - b.x) <= tolerance && std::abs(a.y - b.y) <= tolerance;
}

/// Drops a last vertex that repeats the first and notes that the path is closed.
void closeWhereEndsMeet(CurvePath &path)
{
    auto &v = path.vertices;
    double size = 1.0;
    for (const Vertex &vertex : v)
        size = std::max({size, std::abs(vertex.x), std::abs(vertex.y)});
    const double tolerance = 1e-12 * size; // the last digits of the coordinates
    const bool twoArcs = v.size() == 3 && (v[0].bulge != 0.0 || v[1].bulge != 0.0);
    if ((v.size() > 3 || twoArcs) && meet(v.front(), v.back(), tolerance)) {
        v.pop_back();
        path.closed = true;
    }
}

} // namespace

double endOfTurn(double start, double end)
{
    const double sweep = end - start;
    constexpr double kRounding = 1e-12; // of a full turn whose ends were rounded
    if (sweep > 0.0 && sweep <= kTwoPi * (1.0 + kRounding))
        return end;
    double turn = std::isfinite(sweep) ? std::fmod(sweep, kTwoPi) : kTwoPi;
    if (turn <= 0.0)
        turn += kTwoPi;
    return start + turn;
}

double startOfTurn(double start)
{
    constexpr double kFewTurns = 100.0; // radians
    return std::abs(start) <= kFewTurns ? start : std::fmod(start, kTwoPi);
}

std::optional<CurvePath> curvePathOf(const AcDbEntity &entity, double tolerance)
{
    CurvePath path;
    switch (kindOf(entity)) {
    case EntityKind::Line: {
        const auto &line = static_cast<const AcDbLine &>(entity);
        path = pointsPath(std::array{line.startPoint(), line.endPoint()}, false);
        break;
    }
    case EntityKind::Arc: {
        const auto &arc = static_cast<const AcDbArc &>(entity);
        const double sweep = endOfTurn(arc.startAngle(), arc.endAngle()) - arc.startAngle();
        path = arcPath(arc.center(), arc.radius(), arc.startAngle(), sweep);
        break;
    }
    case EntityKind::Circle: {
        const auto &circle = static_cast<const CircleEntity &>(entity);
        path = arcPath(circle.center(), circle.radius(), 0.0, kTwoPi);
        path.vertices.pop_back();
        path.closed = true;
        break;
    }
    case EntityKind::Ellipse:
        path = ellipsePath(static_cast<const EllipseEntity &>(entity), tolerance);
        break;
    case EntityKind::Spline: {
        const auto &spline = static_cast<const SplineEntity &>(entity);
        path = pointsPath(spline.flatten(tolerance), false);
        if (spline.isClosed() && !path.vertices.empty()) {
            path.closed = true;
            closeWhereEndsMeet(path);
        }
        break;
    }
    case EntityKind::LwPolyline: {
        const auto &polyline = static_cast<const AcDbPolyline &>(entity);
        path = {polyline.vertices(), polyline.isClosed()};
        break;
    }
    case EntityKind::Polyline2d: {
        const auto &polyline = static_cast<const AcDb2dPolyline &>(entity);
        path = {polyline.vertices(), polyline.isClosed()};
        break;
    }
    case EntityKind::Polyline3d: {
        const auto &polyline = static_cast<const AcDb3dPolyline &>(entity);
        path = pointsPath(polyline.vertices(), polyline.isClosed());
        break;
    }
    default:
        return std::nullopt;
    }
    if (path.vertices.empty())
        return std::nullopt;
    if (!path.closed)
        closeWhereEndsMeet(path);
    return path;
}

double ringAreaOf(const std::vector<AcDbPolyline::Vertex> &ring)
{
    if (ring.size() < 2)
        return 0.0;
    // Relative to the first vertex, so that large coordinates keep their digits.
    const Vertex origin = ring.front();
    double twice = 0.0, segments = 0.0;
    for (std::size_t i = 0; i < ring.size(); ++i) {
        const Vertex &a = ring[i], &b = ring[(i + 1) % ring.size()];
        twice += (a.x - origin.x) * (b.y - origin.y) - (b.x - origin.x) * (a.y - origin.y);
        const double chord = std::hypot(b.x - a.x, b.y - a.y);
        if (a.bulge != 0.0 && chord > 0.0) {
            const double angle = 4.0 * std::atan(a.bulge);
            const double radius = chord * (1.0 + a.bulge * a.bulge) / (4.0 * a.bulge);
            segments += 0.5 * radius * radius * (angle - std::sin(angle));
        }
    }
    return 0.5 * twice + segments;
}

} // namespace velmor
