#include "host/editor/EntityParts.h"

#include "host/drawing/CurvePath.h"
#include "host/drawing/ObjectAccess.h"
#include "host/drawing/Visibility.h"
#include "host/editor/CurvePieces.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

namespace velmor {

namespace {

using boundary::Piece;
using boundary::Point;

constexpr double kTwoPi = 2.0 * std::numbers::pi;
constexpr double kAngleError = 1e-12; ///< ends of an arc count as on it up to this, radians
constexpr int kDeepestNesting = 32;
constexpr std::size_t kMostNested = 200'000; ///< texts, points and hatches inside of references
constexpr double kLetterWidth = 0.85;        ///< mean width of a letter over its height
constexpr double kRingTolerance = 1e-4;      ///< chords of a solid hatch's arcs, as a fraction of its size

/// Collects what is no linework: points, texts, hatches; in references too.
class Others {
public:
    Others(const Drawing &drawing, EntityParts &parts) : m_drawing(drawing), m_parts(parts) {}

    void add(const AcDbEntity &entity, const Affine &affine, int depth)
    {
        switch (kindOf(entity)) {
        case EntityKind::Point: {
            const AcGePoint3d &p = static_cast<const PointEntity &>(entity).position();
            m_parts.points.push_back(affine.apply(p.x, p.y));
            break;
        }
        case EntityKind::Text:
        case EntityKind::MText:
            text(static_cast<const TextEntity &>(entity).shape(), affine);
            break;
        case EntityKind::Attribute:
            if (!static_cast<const AttributeEntity &>(entity).isInvisible())
                text(static_cast<const TextEntity &>(entity).shape(), affine);
            break;
        case EntityKind::Hatch:
            hatch(static_cast<const AcDbHatch &>(entity), affine);
            break;
        case EntityKind::BlockReference:
            reference(static_cast<const AcDbBlockReference &>(entity), affine, depth);
            break;
        default:
            break;
        }
    }

private:
    void text(const TextShape &shape, const Affine &affine)
    {
        std::size_t lines = 1, longest = 0, length = 0;
        for (const wchar_t c : shape.text) {
            if (c == L'\n') {
                ++lines;
                length = 0;
            } else {
                longest = std::max(longest, ++length);
            }
        }
        if (longest == 0)
            return;
        const double w = kLetterWidth * shape.height * shape.widthFactor * static_cast<double>(longest);
        const double h = shape.height * (1.0 + 5.0 / 3.0 * static_cast<double>(lines - 1));
        const double left = shape.horizontal == 0 ? 0.0 : shape.horizontal == 2 ? -w : -0.5 * w;
        const double bottom = shape.vertical == 3 ? -h : shape.vertical == 2 ? -0.5 * h : 0.0;
        const double c = std::cos(shape.rotation), s = std::sin(shape.rotation);
        std::vector<Point> ring;
        for (const auto &[x, y] :
             {std::pair{left, bottom}, {left + w, bottom}, {left + w, bottom + h}, {left, bottom + h}})
            ring.push_back(affine.apply(shape.position.x + c * x - s * y, shape.position.y + s * x + c * y));
        m_parts.areas.push_back(std::move(ring));
    }

    void hatch(const AcDbHatch &hatch, const Affine &affine)
    {
        const bool isSolid = hatch.patternName() == L"SOLID";
        const Extents box = extentsOf(static_cast<const AcDbEntity &>(hatch));
        const double tolerance = kRingTolerance * std::hypot(box.maxX - box.minX, box.maxY - box.minY);
        for (const AcDbHatch::Loop &loop : hatch.loops()) {
            const auto &ring = loop.vertices;
            std::vector<Point> area;
            for (std::size_t i = 0; i < ring.size(); ++i) {
                const auto &a = ring[i], &b = ring[(i + 1) % ring.size()];
                std::vector<Point> chords = chordsOf({{a.x, a.y}, {b.x, b.y}, a.bulge, 0}, tolerance);
                Point from = affine.apply(a.x, a.y);
                area.push_back(from);
                for (const Point &p : chords) {
                    const Point to = affine.apply(p.x, p.y);
                    if (to != from)
                        m_parts.pieces.push_back({from, to, 0.0, 0});
                    area.push_back(to);
                    from = to;
                }
                area.pop_back();
            }
            if (isSolid && area.size() > 2)
                m_parts.areas.push_back(std::move(area));
        }
        if (isSolid)
            return;
        for (const AcDbHatch::Line &line : hatch.lines()) {
            const Point a = affine.apply(line.x1, line.y1), b = affine.apply(line.x2, line.y2);
            if (a != b)
                m_parts.pieces.push_back({a, b, 0.0, 0});
        }
    }

    /// Points along a piece behind its first end, the last one included.
    static std::vector<Point> chordsOf(const Piece &piece, double tolerance)
    {
        std::vector<Point> points;
        if (piece.bulge != 0.0 && piece.a != piece.b) {
            const PieceArc arc = arcOf(piece);
            const double step = arc.radius > tolerance ? 2.0 * std::acos(1.0 - tolerance / arc.radius) : 1.0;
            const int count =
                std::clamp(static_cast<int>(std::ceil(std::abs(arc.sweep) / std::max(step, 1e-3))), 1, 2000);
            for (int i = 1; i < count; ++i)
                points.push_back(arc.at(arc.start + arc.sweep * i / count));
        }
        points.push_back(piece.b);
        return points;
    }

    void reference(const AcDbBlockReference &reference, const Affine &affine, int depth)
    {
        for (const AttributeEntity *attribute : attributesOf(reference))
            add(*attribute, affine, depth);
        const auto *block = static_cast<const BlockRecord *>(ObjectAccess::object(reference.blockTableRecord()));
        if (!block || depth >= kDeepestNesting || std::ranges::find(m_open, block) != m_open.end())
            return;
        m_open.push_back(block);
        const auto &placement = reference.placement();
        for (int row = 0; row < std::max(1, placement.rows) && m_left > 0; ++row)
            for (int column = 0; column < std::max(1, placement.columns) && m_left > 0; ++column, --m_left) {
                const Affine inner = affine * placementOf(reference, block->basePoint(), column, row);
                for (const AcDbEntity *entity : block->entities()) {
                    if (m_left == 0)
                        break;
                    --m_left;
                    if (isShown(m_drawing, *entity))
                        add(*entity, inner, depth + 1);
                }
                if (m_left == 0)
                    break;
            }
        m_open.pop_back();
    }

    const Drawing &m_drawing;
    EntityParts &m_parts;
    std::vector<const BlockRecord *> m_open;
    std::size_t m_left = kMostNested;
};

template <class Vertices>
void appendRun(const Vertices &vertices, std::size_t first, std::size_t count, std::vector<Piece> &pieces)
{
    for (std::size_t i = first; i < first + count && i < vertices.size(); ++i) {
        const auto &a = vertices[i], &b = vertices[(i + 1) % vertices.size()];
        double bulge = 0.0;
        if constexpr (requires { a.bulge; })
            bulge = a.bulge;
        if (a.x != b.x || a.y != b.y)
            pieces.push_back({{a.x, a.y}, {b.x, b.y}, bulge, 0});
    }
}

double distance(Point a, Point b)
{
    return std::hypot(a.x - b.x, a.y - b.y);
}

bool isInside(const std::vector<Point> &ring, Point p)
{
    bool inside = false;
    for (std::size_t i = 0, j = ring.size() - 1; i < ring.size(); j = i++) {
        const Point &a = ring[i], &b = ring[j];
        if ((a.y > p.y) != (b.y > p.y) && p.x < (b.x - a.x) * (p.y - a.y) / (b.y - a.y) + a.x)
            inside = !inside;
    }
    return inside;
}

/// Whether a straight piece meets the box, by cutting it at the four sides.
bool lineTouches(Point a, Point b, const Extents &box)
{
    double from = 0.0, to = 1.0;
    const auto cut = [&](double start, double delta, double low, double high) {
        if (delta == 0.0)
            return start >= low && start <= high;
        double enter = (low - start) / delta, leave = (high - start) / delta;
        if (enter > leave)
            std::swap(enter, leave);
        from = std::max(from, enter);
        to = std::min(to, leave);
        return from <= to;
    };
    return cut(a.x, b.x - a.x, box.minX, box.maxX) && cut(a.y, b.y - a.y, box.minY, box.maxY);
}

} // namespace

EntityParts partsOf(const Drawing &drawing, const DisplayIndex::Part &part)
{
    EntityParts parts;
    const AcDbEntity &entity = *part.entity;
    if (part.count != 0) {
        switch (kindOf(entity)) {
        case EntityKind::LwPolyline:
            appendRun(static_cast<const AcDbPolyline &>(entity).vertices(), part.first, part.count, parts.pieces);
            break;
        case EntityKind::Polyline2d:
            appendRun(static_cast<const AcDb2dPolyline &>(entity).vertices(), part.first, part.count, parts.pieces);
            break;
        case EntityKind::Polyline3d:
            appendRun(static_cast<const AcDb3dPolyline &>(entity).vertices(), part.first, part.count, parts.pieces);
            break;
        default:
            break;
        }
        return parts;
    }
    if (PieceMaker::isLinework(entity))
        PieceMaker(drawing, [&](std::size_t layer) {
            return drawing.layer(layer).visible();
        }).append(entity, 0, parts.pieces);
    Others(drawing, parts).add(entity, Affine{}, 0);
    if (parts.isEmpty() && PieceMaker::isLinework(entity))
        // A line of no length, a polyline of one vertex: still a place.
        if (const Extents box = extentsOf(entity); !box.isEmpty() && kindOf(entity) != EntityKind::BlockReference)
            parts.points.push_back({box.minX, box.minY});
    return parts;
}

PieceArc arcOf(const Piece &piece)
{
    const double cx = piece.b.x - piece.a.x, cy = piece.b.y - piece.a.y;
    const double offset = (1.0 - piece.bulge * piece.bulge) / (4.0 * piece.bulge);
    PieceArc arc;
    arc.center = {piece.a.x + 0.5 * cx - offset * cy, piece.a.y + 0.5 * cy + offset * cx};
    arc.radius = std::hypot(cx, cy) * (1.0 + piece.bulge * piece.bulge) / (4.0 * std::abs(piece.bulge));
    arc.start = std::atan2(piece.a.y - arc.center.y, piece.a.x - arc.center.x);
    arc.sweep = 4.0 * std::atan(piece.bulge);
    return arc;
}

bool PieceArc::holds(double angle) const
{
    double along = std::fmod(sweep >= 0.0 ? angle - start : start - angle, kTwoPi);
    if (along < 0.0)
        along += kTwoPi;
    return along <= std::abs(sweep) + kAngleError || along >= kTwoPi - kAngleError;
}

Point PieceArc::at(double angle) const
{
    return {center.x + radius * std::cos(angle), center.y + radius * std::sin(angle)};
}

Point nearestOn(const Piece &piece, Point p)
{
    const double cx = piece.b.x - piece.a.x, cy = piece.b.y - piece.a.y;
    if (piece.bulge == 0.0) {
        const double chord = cx * cx + cy * cy;
        const double along = chord > 0.0 ? ((p.x - piece.a.x) * cx + (p.y - piece.a.y) * cy) / chord : 0.0;
        if (along <= 0.0)
            return piece.a;
        return along >= 1.0 ? piece.b : Point{piece.a.x + along * cx, piece.a.y + along * cy};
    }
    const PieceArc arc = arcOf(piece);
    const double angle = std::atan2(p.y - arc.center.y, p.x - arc.center.x);
    if (arc.holds(angle))
        return arc.at(angle);
    return distance(p, piece.a) <= distance(p, piece.b) ? piece.a : piece.b;
}

double distanceTo(const EntityParts &parts, Point p)
{
    double best = std::numeric_limits<double>::infinity();
    for (const Piece &piece : parts.pieces)
        best = std::min(best, distance(nearestOn(piece, p), p));
    for (const Point &point : parts.points)
        best = std::min(best, distance(point, p));
    bool inside = false; // of an odd number of loops: a hole is outside
    for (const auto &ring : parts.areas) {
        inside = inside != isInside(ring, p);
        for (std::size_t i = 0; i < ring.size(); ++i)
            best = std::min(best, distance(nearestOn({ring[i], ring[(i + 1) % ring.size()], 0.0, 0}, p), p));
    }
    return inside ? 0.0 : best;
}

Extents extentsOf(const Piece &piece)
{
    Extents box;
    box.add(piece.a.x, piece.a.y);
    box.add(piece.b.x, piece.b.y);
    if (piece.bulge != 0.0) {
        const PieceArc arc = arcOf(piece);
        for (int quarter = 0; quarter < 4; ++quarter) {
            const double angle = 0.5 * std::numbers::pi * quarter;
            if (!arc.holds(angle))
                continue;
            // Without the rounding of sine and cosine.
            static constexpr double kX[] = {1, 0, -1, 0}, kY[] = {0, 1, 0, -1};
            box.add(arc.center.x + arc.radius * kX[quarter], arc.center.y + arc.radius * kY[quarter]);
        }
    }
    return box;
}

bool touches(const Piece &piece, const Extents &box)
{
    if (box.contains(piece.a.x, piece.a.y) || box.contains(piece.b.x, piece.b.y))
        return true;
    if (piece.bulge == 0.0)
        return lineTouches(piece.a, piece.b, box);
    if (!DisplayIndex::meets(extentsOf(piece), box))
        return false;
    // With no end inside, an arc that has a point in the box crosses one of its sides.
    const PieceArc arc = arcOf(piece);
    const auto crosses = [&](double fixed, double low, double high, bool isVertical) {
        const double away = fixed - (isVertical ? arc.center.x : arc.center.y);
        const double half = arc.radius * arc.radius - away * away;
        if (half < 0.0)
            return false;
        for (const double side : {-std::sqrt(half), std::sqrt(half)}) {
            const double other = (isVertical ? arc.center.y : arc.center.x) + side;
            if (other >= low && other <= high &&
                arc.holds(isVertical ? std::atan2(side, away) : std::atan2(away, side)))
                return true;
        }
        return false;
    };
    return crosses(box.minX, box.minY, box.maxY, true) || crosses(box.maxX, box.minY, box.maxY, true) ||
           crosses(box.minY, box.minX, box.maxX, false) || crosses(box.maxY, box.minX, box.maxX, false);
}

bool touches(const EntityParts &parts, const Extents &box)
{
    if (std::ranges::any_of(parts.pieces, [&](const Piece &piece) { return touches(piece, box); }) ||
        std::ranges::any_of(parts.points, [&](const Point &p) { return box.contains(p.x, p.y); }))
        return true;
    bool inside = false;
    for (const auto &ring : parts.areas) {
        for (std::size_t i = 0; i < ring.size(); ++i)
            if (touches(Piece{ring[i], ring[(i + 1) % ring.size()], 0.0, 0}, box))
                return true;
        inside = inside != isInside(ring, {box.minX, box.minY});
    }
    return inside; // the box lies wholly in an area
}

bool liesWithin(const EntityParts &parts, const Extents &box)
{
    const auto holds = [&](const Extents &inner) {
        return inner.minX >= box.minX && inner.minY >= box.minY && inner.maxX <= box.maxX && inner.maxY <= box.maxY;
    };
    const auto holdsPoint = [&](const Point &p) { return box.contains(p.x, p.y); };
    return !parts.isEmpty() &&
           std::ranges::all_of(parts.pieces, [&](const Piece &piece) { return holds(extentsOf(piece)); }) &&
           std::ranges::all_of(parts.points, holdsPoint) &&
           std::ranges::all_of(parts.areas, [&](const auto &ring) { return std::ranges::all_of(ring, holdsPoint); });
}

} // namespace velmor
