#include "host/editor/CurvePieces.h"

#include "host/drawing/CurvePath.h"
#include "host/drawing/Entities.h"
#include "host/drawing/ObjectAccess.h"
#include "host/drawing/Visibility.h"
#include "host/editor/ArcChain.h"
#include "host/editor/SplineCurve.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace velmor {

namespace {

using boundary::Piece;
using boundary::Point;

constexpr double kPi = std::numbers::pi;

/// References inside references are followed so far; a drawing's own nesting is a handful.
constexpr int kDeepestNesting = 32;

Point pointOf(const AcGePoint3d &p)
{
    return {p.x, p.y};
}

/// Turns that are even to rounding count as even, so that a rotation keeps its circles.
constexpr double kEvenScaleTolerance = 1e-12;

double size(const std::vector<Point> &points)
{
    Extents extents;
    for (const Point &p : points)
        extents.add(p.x, p.y);
    return extents.isEmpty() ? 0.0 : std::hypot(extents.maxX - extents.minX, extents.maxY - extents.minY);
}

} // namespace

Affine Affine::operator*(const Affine &inner) const
{
    const Point x = applyVector(inner.a, inner.b), y = applyVector(inner.c, inner.d), o = apply(inner.tx, inner.ty);
    return {x.x, x.y, y.x, y.y, o.x, o.y};
}

bool Affine::keepsCircles() const
{
    const double first = a * a + b * b, second = c * c + d * d;
    return std::abs(first - second) <= kEvenScaleTolerance * (first + second) &&
           std::abs(a * c + b * d) <= kEvenScaleTolerance * (first + second);
}

Affine placementOf(const AcDbBlockReference &reference, const AcGePoint3d &basePoint, int column, int row)
{
    const auto &placement = reference.placement();
    const double cosine = std::cos(placement.rotation), sine = std::sin(placement.rotation);
    const double dx = column * placement.columnSpacing, dy = row * placement.rowSpacing;
    Affine result{cosine * placement.scaleX,
                  sine * placement.scaleX,
                  -sine * placement.scaleY,
                  cosine * placement.scaleY,
                  placement.position.x + cosine * dx - sine * dy,
                  placement.position.y + sine * dx + cosine * dy};
    const Point base = result.applyVector(basePoint.x, basePoint.y);
    result.tx -= base.x;
    result.ty -= base.y;
    return result;
}

/// An entity's place: its transformation, the layer that stands for "0" inside, and how it was reached.
struct PieceMaker::Placed {
    Affine affine;
    std::size_t layer = 0;
    std::uint32_t source = 0;
    int depth = 0;
    const Placed *outer = nullptr;
    const BlockRecord *block = nullptr;
    bool isInside(const BlockRecord *record) const
    {
        for (const Placed *place = this; place; place = place->outer) {
            if (place->block == record)
                return true;
        }
        return false;
    }
};

namespace {

/// Appends one entity's pieces in one placement.
class Appender {
public:
    Appender(const Affine &affine, std::uint32_t source, std::vector<Piece> &pieces)
        : m_affine(affine), m_circles(affine.keepsCircles()), m_source(source), m_pieces(pieces)
    {
    }

    void line(Point a, Point b) { emit(place(a), place(b), 0.0); }

    void polyline(const std::vector<AcDbPolyline::Vertex> &vertices, bool closed)
    {
        const std::size_t count = vertices.size();
        for (std::size_t i = 0; i + 1 < count + (closed ? 1 : 0); ++i) {
            const auto &from = vertices[i], &to = vertices[(i + 1) % count];
            bulge({from.x, from.y}, {to.x, to.y}, from.bulge);
        }
    }

    void chain(const std::vector<AcGePoint3d> &points, bool closed)
    {
        for (std::size_t i = 0; i + 1 < points.size(); ++i)
            line(pointOf(points[i]), pointOf(points[i + 1]));
        if (closed && points.size() > 2)
            line(pointOf(points.back()), pointOf(points.front()));
    }

    /// centre + cos(t) major + sin(t) minor for t from one parameter to a later one.
    void elliptic(Point center, Point major, Point minor, double from, double to)
    {
        const Point c = place(center), u = m_affine.applyVector(major.x, major.y),
                    v = m_affine.applyVector(minor.x, minor.y);
        const auto at = [&](double t) {
            return Point{c.x + std::cos(t) * u.x + std::sin(t) * v.x, c.y + std::cos(t) * u.y + std::sin(t) * v.y};
        };
        const double uu = u.x * u.x + u.y * u.y, vv = v.x * v.x + v.y * v.y, uv = u.x * v.x + u.y * v.y;
        if (uu + vv == 0.0)
            return;
        const bool circle =
            std::abs(uu - vv) <= kEvenScaleTolerance * (uu + vv) && std::abs(uv) <= kEvenScaleTolerance * (uu + vv);
        if (circle) {
            const double side = u.x * v.y - u.y * v.x < 0.0 ? -1.0 : 1.0;
            const int parts = std::max(1, static_cast<int>(std::ceil((to - from) / kPi - 1e-9)));
            const double step = (to - from) / parts;
            for (int i = 0; i < parts; ++i)
                emit(at(from + i * step), at(i + 1 == parts ? closing(from, to) : from + (i + 1) * step),
                     side * std::tan(0.25 * step));
            return;
        }
        const Curve curve = [&](double t) {
            return CurvePoint{at(t), {std::cos(t) * v.x - std::sin(t) * u.x, std::cos(t) * v.y - std::sin(t) * u.y}};
        };
        const double tolerance = kCurveTolerance * 2.0 * std::sqrt(std::max(uu, vv));
        // Quarters first, so that what is symmetric stays so.
        const int parts = std::max(1, static_cast<int>(std::ceil((to - from) / (0.5 * kPi) - 1e-9)));
        const double step = (to - from) / parts;
        for (int i = 0; i < parts; ++i)
            appendArcChain(curve, from + i * step, i + 1 == parts ? to : from + (i + 1) * step, tolerance, m_source,
                           m_pieces);
        if (closing(from, to) != to && !m_pieces.empty())
            m_pieces.back().b = at(from);
    }

    void spline(const SplineEntity &entity)
    {
        const auto &shape = entity.shape();
        if (auto curve = SplineCurve::make(shape, [this](double x, double y) { return m_affine.apply(x, y); })) {
            const double tolerance = kCurveTolerance * size(curve->controlPoints());
            const Curve evaluate = [&](double t) { return curve->at(t); };
            const auto &breaks = curve->breaks();
            for (std::size_t i = 0; i + 1 < breaks.size(); ++i) {
                curve->selectSpan(i);
                appendArcChain(evaluate, breaks[i], breaks[i + 1], tolerance, m_source, m_pieces);
            }
            if (shape.closed && !m_pieces.empty() && m_pieces.back().source == m_source) {
                curve->selectSpan(0);
                const Point first = curve->at(breaks.front()).position;
                emit(m_pieces.back().b, first, 0.0);
            }
            return;
        }
        const Extents extents = extentsOf(entity);
        if (extents.isEmpty())
            return;
        const double span = std::hypot(extents.maxX - extents.minX, extents.maxY - extents.minY);
        chain(entity.flatten(std::max(1e-5 * span, 1e-9)), shape.closed);
    }

private:
    /// A full turn ends exactly where it began.
    static double closing(double from, double to) { return std::abs(to - from - 2.0 * kPi) < 1e-9 ? from : to; }

    Point place(Point p) const { return m_affine.apply(p.x, p.y); }

    void emit(Point a, Point b, double bulge)
    {
        if (!(std::isfinite(a.x) && std::isfinite(a.y) && std::isfinite(b.x) && std::isfinite(b.y)))
            return;
        if (a != b)
            m_pieces.push_back({a, b, std::isfinite(bulge) ? bulge : 0.0, m_source});
    }

    void bulge(Point a, Point b, double value)
    {
        if (value == 0.0 || a == b) {
            line(a, b);
        } else if (m_circles) {
            emit(place(a), place(b), m_affine.mirrors() ? -value : value);
        } else {
            const Point chord{b.x - a.x, b.y - a.y};
            const double offset = (1.0 - value * value) / (4.0 * value);
            const Point center{a.x + 0.5 * chord.x - offset * chord.y, a.y + 0.5 * chord.y + offset * chord.x};
            const Point start{a.x - center.x, a.y - center.y};
            // From the start's direction over the included angle, the minor axis turned along the arc.
            const double side = value < 0.0 ? -1.0 : 1.0;
            elliptic(center, start, {-side * start.y, side * start.x}, 0.0, 4.0 * std::atan(std::abs(value)));
            if (!m_pieces.empty() && m_pieces.back().source == m_source)
                m_pieces.back().b = place(b);
        }
    }

    const Affine &m_affine;
    bool m_circles;
    std::uint32_t m_source;
    std::vector<Piece> &m_pieces;
};

} // namespace

PieceMaker::PieceMaker(const Drawing &drawing, LayerFilter filter, std::size_t mostNested)
    : m_filter(std::move(filter)), m_layerZero(drawing.findLayer(L"0").value_or(0)), m_left(mostNested)
{
}

bool PieceMaker::isLinework(const AcDbEntity &entity)
{
    if (isInvisible(entity))
        return false;
    switch (kindOf(entity)) {
    case EntityKind::Line:
    case EntityKind::Arc:
    case EntityKind::Circle:
    case EntityKind::Ellipse:
    case EntityKind::Spline:
    case EntityKind::LwPolyline:
    case EntityKind::Polyline2d:
    case EntityKind::Polyline3d:
    case EntityKind::BlockReference:
        return true;
    default:
        return false;
    }
}

void PieceMaker::append(const AcDbEntity &entity, std::uint32_t source, std::vector<Piece> &pieces) const
{
    Placed placed;
    placed.layer = layerIndexOf(entity);
    placed.source = source;
    appendPlaced(entity, placed, pieces);
}

void PieceMaker::appendPlaced(const AcDbEntity &entity, const Placed &placed, std::vector<Piece> &pieces) const
{
    Appender out(placed.affine, placed.source, pieces);
    switch (kindOf(entity)) {
    case EntityKind::Line: {
        const auto &line = static_cast<const AcDbLine &>(entity);
        out.line(pointOf(line.startPoint()), pointOf(line.endPoint()));
        break;
    }
    case EntityKind::Arc: {
        const auto &arc = static_cast<const AcDbArc &>(entity);
        const double start = startOfTurn(arc.startAngle());
        out.elliptic(pointOf(arc.center()), {arc.radius(), 0.0}, {0.0, arc.radius()}, start,
                     endOfTurn(start, arc.endAngle()));
        break;
    }
    case EntityKind::Circle: {
        const auto &circle = static_cast<const CircleEntity &>(entity);
        out.elliptic(pointOf(circle.center()), {circle.radius(), 0.0}, {0.0, circle.radius()}, 0.0, 2.0 * kPi);
        break;
    }
    case EntityKind::Ellipse: {
        const auto &shape = static_cast<const EllipseEntity &>(entity).shape();
        const double start = startOfTurn(shape.startParameter);
        out.elliptic(pointOf(shape.center), {shape.majorAxis.x, shape.majorAxis.y},
                     {-shape.ratio * shape.majorAxis.y, shape.ratio * shape.majorAxis.x}, start,
                     endOfTurn(start, shape.endParameter));
        break;
    }
    case EntityKind::Spline:
        out.spline(static_cast<const SplineEntity &>(entity));
        break;
    case EntityKind::LwPolyline: {
        const auto &polyline = static_cast<const AcDbPolyline &>(entity);
        out.polyline(polyline.vertices(), polyline.isClosed());
        break;
    }
    case EntityKind::Polyline2d: {
        const auto &polyline = static_cast<const AcDb2dPolyline &>(entity);
        out.polyline(polyline.vertices(), polyline.isClosed());
        break;
    }
    case EntityKind::Polyline3d: {
        const auto &polyline = static_cast<const AcDb3dPolyline &>(entity);
        out.chain(polyline.vertices(), polyline.isClosed());
        break;
    }
    case EntityKind::BlockReference:
        appendReference(static_cast<const AcDbBlockReference &>(entity), placed, pieces);
        break;
    default:
        break;
    }
}

void PieceMaker::appendReference(const AcDbBlockReference &reference, const Placed &placed,
                                 std::vector<Piece> &pieces) const
{
    // Not opened: the pieces may be those of a drawing that is not worked on.
    const AcDbObject *definition = ObjectAccess::object(reference.blockTableRecord());
    if (placed.depth >= kDeepestNesting || !definition || definition->isErased())
        return;
    const auto *block = dynamic_cast<const BlockRecord *>(definition);
    if (!block || placed.isInside(block))
        return;
    const auto &placement = reference.placement();
    for (int row = 0; row < std::max(1, placement.rows); ++row) {
        for (int column = 0; column < std::max(1, placement.columns); ++column) {
            Placed inner{placed.affine * placementOf(reference, block->basePoint(), column, row),
                         placed.layer,
                         placed.source,
                         placed.depth + 1,
                         &placed,
                         block};
            // What a place costs counts too: an array of nothing is as long.
            if (m_left == 0)
                return;
            --m_left;
            for (const AcDbEntity *entity : block->entities()) {
                if (m_left == 0)
                    return;
                --m_left;
                if (entity->isErased() || !isLinework(*entity))
                    continue;
                const std::size_t own = layerIndexOf(*entity);
                inner.layer = own == m_layerZero ? placed.layer : own;
                if (!m_filter(inner.layer))
                    continue;
                const std::size_t before = pieces.size();
                appendPlaced(*entity, inner, pieces);
                if (kindOf(*entity) != EntityKind::BlockReference)
                    m_left -= std::min(m_left, pieces.size() - before);
            }
        }
    }
}

} // namespace velmor
