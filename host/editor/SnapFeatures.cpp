#include "host/editor/SnapFeatures.h"

#include "host/drawing/CurvePath.h"
#include "host/drawing/ObjectAccess.h"
#include "host/drawing/Visibility.h"
#include "host/editor/SplineCurve.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace velmor {

namespace {

using boundary::Piece;
using boundary::Point;

constexpr double kPi = std::numbers::pi;
constexpr int kDeepestNesting = 32;
constexpr std::size_t kMostNested = 50'000;
constexpr int kMiddleSamples = 2048; ///< chords by which half of the length of a curve is found
constexpr double kEvenScaleTolerance = 1e-12;
constexpr double kAngleError = 1e-9;

Point pointOf(const AcGePoint3d &p)
{
    return {p.x, p.y};
}

double distance(Point a, Point b)
{
    return std::hypot(a.x - b.x, a.y - b.y);
}

bool isBetween(double parameter, double from, double to)
{
    double along = std::fmod(parameter - from, 2.0 * kPi);
    if (along < 0.0)
        along += 2.0 * kPi;
    return along <= to - from + kAngleError || along >= 2.0 * kPi - kAngleError;
}

} // namespace

SnapFeatures::SnapFeatures(const Drawing &drawing, Point pointer, const Extents &field, int modes)
    : m_drawing(drawing), m_pointer(pointer), m_field(field), m_reach(0.5 * (field.maxX - field.minX)), m_modes(modes),
      m_left(kMostNested)
{
}

void SnapFeatures::spot(SnapBit kind, Point p)
{
    if (wants(kind) && m_field.contains(p.x, p.y))
        spots.push_back({kind, p});
}

void SnapFeatures::add(const DisplayIndex::Part &part)
{
    const AcDbEntity &it = *part.entity;
    if (part.count == 0) {
        entity(it, Affine{}, 0);
    } else if (kindOf(it) == EntityKind::LwPolyline) {
        path(static_cast<const AcDbPolyline &>(it).vertices(), part.first, part.count, Affine{});
    } else if (kindOf(it) == EntityKind::Polyline2d) {
        path(static_cast<const AcDb2dPolyline &>(it).vertices(), part.first, part.count, Affine{});
    } else if (kindOf(it) == EntityKind::Polyline3d) {
        path(static_cast<const AcDb3dPolyline &>(it).vertices(), part.first, part.count, Affine{});
    }
    if ((m_modes & (kSnapIntersection | kSnapPerpendicular | kSnapNearest)) == 0 || !PieceMaker::isLinework(it))
        return;
    for (Piece &piece : partsOf(m_drawing, part).pieces)
        if (touches(piece, m_field)) {
            piece.source = m_source;
            pieces.push_back(piece);
        }
    ++m_source;
}

void SnapFeatures::entity(const AcDbEntity &it, const Affine &affine, int depth)
{
    switch (kindOf(it)) {
    case EntityKind::Line: {
        const auto &line = static_cast<const AcDbLine &>(it);
        segment(pointOf(line.startPoint()), pointOf(line.endPoint()), 0.0, affine);
        break;
    }
    case EntityKind::Arc: {
        const auto &arc = static_cast<const AcDbArc &>(it);
        const double start = startOfTurn(arc.startAngle());
        elliptic(affine.apply(arc.center().x, arc.center().y), affine.applyVector(arc.radius(), 0.0),
                 affine.applyVector(0.0, arc.radius()), start, endOfTurn(start, arc.endAngle()), true);
        break;
    }
    case EntityKind::Circle: {
        const auto &circle = static_cast<const CircleEntity &>(it);
        elliptic(affine.apply(circle.center().x, circle.center().y), affine.applyVector(circle.radius(), 0.0),
                 affine.applyVector(0.0, circle.radius()), 0.0, 2.0 * kPi, false);
        break;
    }
    case EntityKind::Ellipse: {
        const auto &shape = static_cast<const EllipseEntity &>(it).shape();
        const double start = startOfTurn(shape.startParameter), end = endOfTurn(start, shape.endParameter);
        elliptic(affine.apply(shape.center.x, shape.center.y), affine.applyVector(shape.majorAxis.x, shape.majorAxis.y),
                 affine.applyVector(-shape.ratio * shape.majorAxis.y, shape.ratio * shape.majorAxis.x), start, end,
                 end - start < 2.0 * kPi - kAngleError);
        break;
    }
    case EntityKind::Spline:
        spline(static_cast<const SplineEntity &>(it), affine);
        break;
    case EntityKind::LwPolyline: {
        const auto &polyline = static_cast<const AcDbPolyline &>(it);
        const std::size_t count = polyline.vertices().size();
        path(polyline.vertices(), 0, count - (polyline.isClosed() || count == 0 ? 0 : 1), affine);
        break;
    }
    case EntityKind::Polyline2d: {
        const auto &polyline = static_cast<const AcDb2dPolyline &>(it);
        const std::size_t count = polyline.vertices().size();
        path(polyline.vertices(), 0, count - (polyline.isClosed() || count == 0 ? 0 : 1), affine);
        break;
    }
    case EntityKind::Polyline3d: {
        const auto &polyline = static_cast<const AcDb3dPolyline &>(it);
        const std::size_t count = polyline.vertices().size();
        path(polyline.vertices(), 0, count - (polyline.isClosed() || count == 0 ? 0 : 1), affine);
        break;
    }
    case EntityKind::Point: {
        const AcGePoint3d &p = static_cast<const PointEntity &>(it).position();
        spot(kSnapNode, affine.apply(p.x, p.y));
        break;
    }
    case EntityKind::Attribute:
        if (static_cast<const AttributeEntity &>(it).isInvisible())
            break;
        [[fallthrough]];
    case EntityKind::Text:
    case EntityKind::MText: {
        const AcGePoint3d &p = static_cast<const TextEntity &>(it).shape().position;
        spot(kSnapInsertion, affine.apply(p.x, p.y));
        break;
    }
    case EntityKind::BlockReference:
        reference(static_cast<const AcDbBlockReference &>(it), affine, depth);
        break;
    case EntityKind::Hatch:
    case EntityKind::AttributeDefinition:
    case EntityKind::Unknown:
        break;
    }
}

void SnapFeatures::reference(const AcDbBlockReference &it, const Affine &affine, int depth)
{
    const auto &placement = it.placement();
    spot(kSnapInsertion, affine.apply(placement.position.x, placement.position.y));
    for (const AttributeEntity *attribute : attributesOf(it))
        entity(*attribute, affine, depth);
    const auto *block = static_cast<const BlockRecord *>(ObjectAccess::object(it.blockTableRecord()));
    if (!block || depth >= kDeepestNesting || std::ranges::find(m_open, block) != m_open.end())
        return;
    m_open.push_back(block);
    for (int row = 0; row < std::max(1, placement.rows) && m_left > 0; ++row)
        for (int column = 0; column < std::max(1, placement.columns) && m_left > 0; ++column) {
            const Affine inner = affine * placementOf(it, block->basePoint(), column, row);
            --m_left;
            for (const AcDbEntity *inside : block->entities()) {
                if (m_left == 0)
                    break;
                --m_left;
                if (isShown(m_drawing, *inside))
                    entity(*inside, inner, depth + 1);
            }
        }
    m_open.pop_back();
}

template <class Vertices>
void SnapFeatures::path(const Vertices &vertices, std::size_t first, std::size_t count, const Affine &affine)
{
    if (vertices.size() < 2)
        return;
    for (std::size_t i = first; i < first + count && i < vertices.size(); ++i) {
        const auto &a = vertices[i], &b = vertices[(i + 1) % vertices.size()];
        double bulge = 0.0;
        if constexpr (requires { a.bulge; })
            bulge = a.bulge;
        segment({a.x, a.y}, {b.x, b.y}, bulge, affine);
    }
}

void SnapFeatures::segment(Point a, Point b, double bulge, const Affine &affine)
{
    const Point from = affine.apply(a.x, a.y), to = affine.apply(b.x, b.y);
    spot(kSnapEnd, from);
    spot(kSnapEnd, to);
    if (bulge == 0.0 || a == b)
        return spot(kSnapMiddle, {0.5 * (from.x + to.x), 0.5 * (from.y + to.y)});
    const PieceArc arc = arcOf({a, b, bulge, 0});
    const double start = arc.sweep >= 0.0 ? arc.start : arc.start + arc.sweep;
    elliptic(affine.apply(arc.center.x, arc.center.y), affine.applyVector(arc.radius, 0.0),
             affine.applyVector(0.0, arc.radius), start, start + std::abs(arc.sweep), false);
    if (wants(kSnapMiddle)) {
        const double middle = arc.start + 0.5 * arc.sweep;
        const Point p = affine.apply(arc.at(middle).x, arc.at(middle).y);
        if (affine.keepsCircles())
            spot(kSnapMiddle, p);
        else if (touches(Piece{from, to, 0.0, 0}, m_field) || distance(p, m_pointer) < 4.0 * distance(from, to))
            middleOfCurve(
                [&](double t) {
                    const Point q = arc.at(t);
                    return affine.apply(q.x, q.y);
                },
                arc.start, arc.start + arc.sweep);
    }
}

void SnapFeatures::elliptic(Point center, Point u, Point v, double from, double to, bool hasEnds)
{
    const auto at = [&](double t) {
        return Point{center.x + std::cos(t) * u.x + std::sin(t) * v.x,
                     center.y + std::cos(t) * u.y + std::sin(t) * v.y};
    };
    const double uu = u.x * u.x + u.y * u.y, vv = v.x * v.x + v.y * v.y, uv = u.x * v.x + u.y * v.y;
    const double cross = u.x * v.y - u.y * v.x;
    if (cross == 0.0)
        return;
    const bool isCircle =
        std::abs(uu - vv) <= kEvenScaleTolerance * (uu + vv) && std::abs(uv) <= kEvenScaleTolerance * (uu + vv);
    if (hasEnds) {
        spot(kSnapEnd, at(from));
        spot(kSnapEnd, at(to));
        if (isCircle)
            spot(kSnapMiddle, at(0.5 * (from + to)));
        else if (wants(kSnapMiddle) && distance(center, m_pointer) <= std::sqrt(uu + vv) + 2.0 * m_reach)
            middleOfCurve(at, from, to);
    }
    if (wants(kSnapQuadrant)) {
        if (isCircle) {
            const double radius = std::sqrt(uu);
            for (const auto &[x, y] : {std::pair{1, 0}, {0, 1}, {-1, 0}, {0, -1}}) {
                // The parameter at which the curve has that direction.
                const double t = std::atan2((u.x * y - u.y * x) / cross, (x * v.y - y * v.x) / cross);
                if (isBetween(t, from, to))
                    spot(kSnapQuadrant, {center.x + radius * x, center.y + radius * y});
            }
        } else {
            const double first = 0.5 * std::atan2(2.0 * uv, uu - vv);
            for (int quarter = 0; quarter < 4; ++quarter)
                if (const double t = first + 0.5 * kPi * quarter; isBetween(t, from, to))
                    spot(kSnapQuadrant, at(t));
        }
    }
    if (!wants(kSnapCenter))
        return;
    if (m_field.contains(center.x, center.y))
        return spot(kSnapCenter, center);
    // The curve's point in the pointer's direction, seen with the ellipse drawn round.
    const double px = m_pointer.x - center.x, py = m_pointer.y - center.y;
    const double t = std::atan2((u.x * py - u.y * px) / cross, (px * v.y - py * v.x) / cross);
    if (!isBetween(t, from, to))
        return;
    const Point near = at(t);
    if (m_field.contains(near.x, near.y))
        centers.push_back({center, distance(near, m_pointer)});
}

void SnapFeatures::middleOfCurve(const std::function<Point(double)> &at, double from, double to)
{
    std::vector<double> along(kMiddleSamples + 1);
    Point previous = at(from);
    for (int i = 1; i <= kMiddleSamples; ++i) {
        const Point next = at(from + (to - from) * i / kMiddleSamples);
        along[static_cast<std::size_t>(i)] = along[static_cast<std::size_t>(i - 1)] + distance(previous, next);
        previous = next;
    }
    const double half = 0.5 * along.back();
    const auto behind = std::ranges::upper_bound(along, half);
    if (behind == along.begin() || behind == along.end())
        return;
    const auto i = static_cast<double>(behind - along.begin() - 1);
    const double part = (half - *(behind - 1)) / (*behind - *(behind - 1));
    spot(kSnapMiddle, at(from + (to - from) * (i + part) / kMiddleSamples));
}

void SnapFeatures::spline(const SplineEntity &it, const Affine &affine)
{
    const auto &shape = it.shape();
    auto curve = SplineCurve::make(shape, [&](double x, double y) { return affine.apply(x, y); });
    if (!curve) {
        const Extents box = extentsOf(static_cast<const AcDbEntity &>(it));
        if (box.isEmpty())
            return;
        const auto points = it.flatten(std::max(1e-5 * std::hypot(box.maxX - box.minX, box.maxY - box.minY), 1e-9));
        if (points.size() < 2 || shape.closed)
            return;
        spot(kSnapEnd, affine.apply(points.front().x, points.front().y));
        spot(kSnapEnd, affine.apply(points.back().x, points.back().y));
        if (wants(kSnapMiddle))
            middleOfCurve(
                [&](double t) {
                    const auto i = std::min(static_cast<std::size_t>(t), points.size() - 2);
                    const double part = t - static_cast<double>(i);
                    return affine.apply(points[i].x + part * (points[i + 1].x - points[i].x),
                                        points[i].y + part * (points[i + 1].y - points[i].y));
                },
                0.0, static_cast<double>(points.size() - 1));
        return;
    }
    if (shape.closed)
        return;
    const auto &breaks = curve->breaks();
    const auto at = [&](double t) {
        const auto span = std::ranges::upper_bound(breaks, t) - breaks.begin() - 1;
        curve->selectSpan(static_cast<std::size_t>(
            std::clamp<std::ptrdiff_t>(span, 0, static_cast<std::ptrdiff_t>(breaks.size()) - 2)));
        return curve->at(t).position;
    };
    spot(kSnapEnd, at(breaks.front()));
    spot(kSnapEnd, at(breaks.back()));
    if (wants(kSnapMiddle))
        middleOfCurve(at, breaks.front(), breaks.back());
}

} // namespace velmor
