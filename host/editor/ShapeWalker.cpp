#include "host/editor/ShapeWalker.h"

#include "host/drawing/Visibility.h"

#include <algorithm>
#include <numbers>

namespace velmor {

namespace {

constexpr double kFlattenPixels = 0.25; ///< how far a drawn arc may stray from the true one
constexpr int kDeepestBlock = 32;       ///< block references inside one another
/// Nested references can stand for any number of entities and lines; a picture ends there.
constexpr std::size_t kMostNested = 5'000'000, kMostNestedLines = 10'000'000;
constexpr double kPointArmPixels = 2.0;

PlaneMap placementOf(const AcDbBlockReference::Placement &p, const AcGePoint3d &base, int column, int row)
{
    const double c = std::cos(p.rotation), s = std::sin(p.rotation);
    PlaneMap map{c * p.scaleX, -s * p.scaleY, s * p.scaleX, c * p.scaleY, 0.0, 0.0};
    const double offsetX = column * p.columnSpacing, offsetY = row * p.rowSpacing;
    const QPointF moved = map.apply(-base.x, -base.y);
    map.dx = p.position.x + c * offsetX - s * offsetY + moved.x();
    map.dy = p.position.y + s * offsetX + c * offsetY + moved.y();
    return map;
}

} // namespace

ShapeWalker::ShapeWalker(Drawing &drawing, double unitsPerPixel)
    : m_drawing(drawing), m_transient(drawing.component<TransientGraphics>()), m_unitsPerPixel(unitsPerPixel)
{
}

void ShapeWalker::walk(const AcDbEntity &entity, int forcedColor)
{
    walkPlaced(entity, PlaneMap{}, forcedColor, 0);
}

void ShapeWalker::walkPath(const std::vector<Vertex> &vertices, bool closed, int color)
{
    path(vertices, closed, PlaneMap{}, color);
}

void ShapeWalker::walkRun(const AcDbEntity &polyline, std::size_t first, std::size_t count, int color)
{
    const PlaneMap map;
    const auto bulged = [&](const std::vector<Vertex> &vertices) {
        for (std::size_t i = first; i < first + count; ++i)
            segment(vertices[i], vertices[(i + 1) % vertices.size()], map, color);
    };
    switch (kindOf(polyline)) {
    case EntityKind::LwPolyline:
        m_width = static_cast<const AcDbPolyline &>(polyline).constantWidth();
        bulged(static_cast<const AcDbPolyline &>(polyline).vertices());
        m_width = 0.0;
        break;
    case EntityKind::Polyline2d:
        bulged(static_cast<const AcDb2dPolyline &>(polyline).vertices());
        break;
    case EntityKind::Polyline3d: {
        const auto &vertices = static_cast<const AcDb3dPolyline &>(polyline).vertices();
        for (std::size_t i = first; i < first + count; ++i) {
            const AcGePoint3d &a = vertices[i], &b = vertices[(i + 1) % vertices.size()];
            put({a.x, a.y}, {b.x, b.y}, color);
        }
        break;
    }
    default:
        break;
    }
}

void ShapeWalker::walkPlaced(const AcDbEntity &entity, const PlaneMap &map, int forcedColor, int depth)
{
    if (!isShown(m_drawing, entity) || m_transient.isBlanked(entity))
        return;
    const int color = forcedColor >= 0 ? forcedColor : effectiveColor(m_drawing, entity);
    switch (kindOf(entity)) {
    case EntityKind::Line: {
        const auto &line = static_cast<const AcDbLine &>(entity);
        put(map.apply(line.startPoint().x, line.startPoint().y), map.apply(line.endPoint().x, line.endPoint().y),
            color);
        break;
    }
    case EntityKind::Arc: {
        const auto &it = static_cast<const AcDbArc &>(entity);
        arc(it.center().x, it.center().y, it.radius(), it.startAngle(), it.endAngle(), map, color);
        break;
    }
    case EntityKind::Circle: {
        const auto &circle = static_cast<const CircleEntity &>(entity);
        arc(circle.center().x, circle.center().y, circle.radius(), 0.0, 2.0 * std::numbers::pi, map, color);
        break;
    }
    case EntityKind::Ellipse:
        ellipse(static_cast<const EllipseEntity &>(entity), map, color);
        break;
    case EntityKind::Spline:
        points(static_cast<const SplineEntity &>(entity).flatten(kFlattenPixels * m_unitsPerPixel /
                                                                 std::max(map.scale(), 1e-12)),
               false, map, color);
        break;
    case EntityKind::LwPolyline: {
        const auto &polyline = static_cast<const AcDbPolyline &>(entity);
        m_width = polyline.constantWidth() * map.scale();
        path(polyline.vertices(), polyline.isClosed(), map, color);
        m_width = 0.0;
        break;
    }
    case EntityKind::Polyline2d: {
        const auto &polyline = static_cast<const AcDb2dPolyline &>(entity);
        path(polyline.vertices(), polyline.isClosed(), map, color);
        break;
    }
    case EntityKind::Polyline3d: {
        const auto &polyline = static_cast<const AcDb3dPolyline &>(entity);
        points(polyline.vertices(), polyline.isClosed(), map, color);
        break;
    }
    case EntityKind::Point: {
        const auto &position = static_cast<const PointEntity &>(entity).position();
        point(map.apply(position.x, position.y), color);
        break;
    }
    case EntityKind::Text:
    case EntityKind::MText:
        text(static_cast<const TextEntity &>(entity).shape(), map, color);
        break;
    case EntityKind::Attribute:
        if (!static_cast<const AttributeEntity &>(entity).isInvisible())
            text(static_cast<const TextEntity &>(entity).shape(), map, color);
        break;
    case EntityKind::BlockReference:
        walkReference(static_cast<const AcDbBlockReference &>(entity), map, color, forcedColor, depth);
        break;
    case EntityKind::Hatch: {
        const auto &it = static_cast<const AcDbHatch &>(entity);
        if (it.patternName() == L"SOLID")
            fill(outlineOf(it, map), color);
        else
            hatch(it, map, color);
        break;
    }
    case EntityKind::AttributeDefinition: // only its references show
    case EntityKind::Unknown:
        break;
    }
}

void ShapeWalker::walkReference(const AcDbBlockReference &reference, const PlaneMap &map, int color, int forcedColor,
                                int depth)
{
    for (const AttributeEntity *attribute : attributesOf(reference))
        walkPlaced(*attribute, map, forcedColor, depth);
    const BlockRecord *block = blockOf(reference);
    if (block == nullptr || depth >= kDeepestBlock || std::ranges::find(m_open, block) != m_open.end())
        return;
    m_open.push_back(block);
    const auto &placement = reference.placement();
    const auto isTooMuch = [this] { return m_nested > kMostNested || m_nestedLines > kMostNestedLines; };
    for (int row = 0; row < placement.rows && !isTooMuch(); ++row)
        for (int column = 0; column < placement.columns && !isTooMuch(); ++column, ++m_nested) {
            const PlaneMap inner = map.of(placementOf(placement, block->basePoint(), column, row));
            for (const AcDbEntity *entity : block->entities()) {
                if (isTooMuch())
                    break;
                ++m_nested;
                walkPlaced(*entity, inner, forcedColor >= 0 || entity->colorIndex() != 0 ? forcedColor : color,
                           depth + 1);
            }
        }
    m_open.pop_back();
}

const BlockRecord *ShapeWalker::blockOf(const AcDbBlockReference &reference)
{
    if (m_blocks.empty())
        for (const auto &block : m_drawing.blocks())
            m_blocks[idOf(*block)] = block.get();
    const auto found = m_blocks.find(reference.blockTableRecord());
    return found == m_blocks.end() ? nullptr : found->second;
}

void ShapeWalker::put(const QPointF &a, const QPointF &b, int color)
{
    m_nestedLines += !m_open.empty();
    if (m_width > 0.0)
        wideLine(a, b, m_width, color);
    else
        line(a, b, color);
}

void ShapeWalker::point(const QPointF &p, int color)
{
    const double arm = kPointArmPixels * m_unitsPerPixel;
    put({p.x() - arm, p.y()}, {p.x() + arm, p.y()}, color);
    put({p.x(), p.y() - arm}, {p.x(), p.y() + arm}, color);
}

int ShapeWalker::arcSteps(double radius, double sweep, const PlaneMap &map) const
{
    const double pixels = radius * map.scale() / m_unitsPerPixel;
    if (!(pixels > kFlattenPixels))
        return 1;
    const double step = 2.0 * std::acos(1.0 - kFlattenPixels / pixels);
    return static_cast<int>(std::min(std::ceil(std::abs(sweep) / step), 720.0));
}

void ShapeWalker::arc(double cx, double cy, double radius, double start, double end, const PlaneMap &map, int color)
{
    const double sweep = endOfTurn(start, end) - start;
    const int steps = std::max(arcSteps(radius, sweep, map), sweep > 6.0 ? 8 : 1);
    // The direction is turned step by step; after 720 of them it is off by some 1e-13.
    const double turnCosine = std::cos(sweep / steps), turnSine = std::sin(sweep / steps);
    double x = radius * std::cos(start), y = radius * std::sin(start);
    QPointF previous = map.apply(cx + x, cy + y);
    for (int i = 1; i <= steps; ++i) {
        const double turned = x * turnCosine - y * turnSine;
        y = x * turnSine + y * turnCosine;
        x = turned;
        const QPointF next = map.apply(cx + x, cy + y);
        put(previous, next, color);
        previous = next;
    }
}

void ShapeWalker::ellipse(const EllipseEntity &ellipse, const PlaneMap &map, int color)
{
    const auto &shape = ellipse.shape();
    const double sweep = endOfTurn(shape.startParameter, shape.endParameter) - shape.startParameter;
    const int steps = std::max(8, arcSteps(shape.majorAxis.length(), sweep, map));
    AcGePoint3d p = ellipse.pointAt(shape.startParameter);
    QPointF previous = map.apply(p.x, p.y);
    for (int i = 1; i <= steps; ++i) {
        p = ellipse.pointAt(shape.startParameter + sweep * i / steps);
        const QPointF next = map.apply(p.x, p.y);
        put(previous, next, color);
        previous = next;
    }
}

void ShapeWalker::points(const std::vector<AcGePoint3d> &points, bool closed, const PlaneMap &map, int color)
{
    for (std::size_t i = 1; i < points.size(); ++i)
        put(map.apply(points[i - 1].x, points[i - 1].y), map.apply(points[i].x, points[i].y), color);
    if (closed && points.size() > 2)
        put(map.apply(points.back().x, points.back().y), map.apply(points[0].x, points[0].y), color);
}

template <class Visit>
void ShapeWalker::forEachPointOfBulge(const Vertex &from, const Vertex &to, const PlaneMap &map, Visit visit) const
{
    if (from.bulge != 0.0) {
        // Centre and radius from chord and bulge: the sagitta is bulge times half the chord.
        const double chordX = to.x - from.x, chordY = to.y - from.y;
        const double offset = (1.0 - from.bulge * from.bulge) / (4.0 * from.bulge);
        const double cx = (from.x + to.x) / 2.0 - offset * chordY, cy = (from.y + to.y) / 2.0 + offset * chordX;
        const double radius = std::hypot(from.x - cx, from.y - cy);
        const double start = std::atan2(from.y - cy, from.x - cx), sweep = 4.0 * std::atan(from.bulge);
        const int steps = arcSteps(radius, sweep, map);
        for (int i = 1; i < steps; ++i) {
            const double angle = start + sweep * i / steps;
            visit(map.apply(cx + radius * std::cos(angle), cy + radius * std::sin(angle)));
        }
    }
    visit(map.apply(to.x, to.y));
}

void ShapeWalker::segment(const Vertex &from, const Vertex &to, const PlaneMap &map, int color)
{
    QPointF previous = map.apply(from.x, from.y);
    forEachPointOfBulge(from, to, map, [&](const QPointF &next) {
        put(previous, next, color);
        previous = next;
    });
}

void ShapeWalker::path(const std::vector<Vertex> &vertices, bool closed, const PlaneMap &map, int color)
{
    const std::size_t count = vertices.size();
    if (count < 2)
        return;
    for (std::size_t i = 0; i + (closed ? 0 : 1) < count; ++i)
        segment(vertices[i], vertices[(i + 1) % count], map, color);
}

void ShapeWalker::addRing(QPainterPath &outline, const std::vector<Vertex> &ring, const PlaneMap &map) const
{
    if (ring.empty())
        return;
    outline.moveTo(map.apply(ring[0].x, ring[0].y));
    for (std::size_t i = 0; i < ring.size(); ++i)
        forEachPointOfBulge(ring[i], ring[(i + 1) % ring.size()], map, [&](const QPointF &p) { outline.lineTo(p); });
    outline.closeSubpath();
}

QPainterPath ShapeWalker::outlineOf(const AcDbHatch &hatch, const PlaneMap &map) const
{
    QPainterPath outline;
    outline.setFillRule(Qt::OddEvenFill);
    for (const AcDbHatch::Loop &loop : hatch.loops())
        addRing(outline, loop.vertices, map);
    return outline;
}

void ShapeWalker::fillRings(const std::vector<std::vector<Vertex>> &rings, int color)
{
    QPainterPath outline;
    outline.setFillRule(Qt::OddEvenFill);
    for (const auto &ring : rings)
        addRing(outline, ring, PlaneMap{});
    fill(outline, color);
}

void ShapeWalker::hatch(const AcDbHatch &hatch, const PlaneMap &map, int color)
{
    for (const AcDbHatch::Line &line : hatch.lines())
        put(map.apply(line.x1, line.y1), map.apply(line.x2, line.y2), color);
}

} // namespace velmor
