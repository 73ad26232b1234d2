// Extents of entities in the plane, block references with their contents.
//
// Every curve is a line, a point set or c + u cos t + v sin t; a placed block only changes c, u and v, so the extremes
// of a curve in a rotated, scaled or mirrored block are exact as well.
#include "host/drawing/CurvePath.h"
#include "host/drawing/ObjectAccess.h"
#include "host/drawing/Visibility.h"

#include <algorithm>
#include <map>
#include <numbers>
#include <utility>

namespace velmor {

namespace {

constexpr double kTwoPi = 2.0 * std::numbers::pi;
/// Mean width of a letter over its height, as no fonts are read.
constexpr double kLetterWidth = 0.85;
constexpr int kDeepestNesting = 32;
/// So many entities inside of references are measured one by one. Blocks of references to blocks of references can
/// stand for any number; from then on each block counts as the box of its contents.
constexpr std::size_t kMostNested = 200'000;

struct Placing {
    double xx = 1.0, xy = 0.0, yx = 0.0, yy = 1.0, dx = 0.0, dy = 0.0;
    double x(double px, double py) const { return xx * px + xy * py + dx; }
    double y(double px, double py) const { return yx * px + yy * py + dy; }
    Placing operator*(const Placing &o) const
    {
        return {xx * o.xx + xy * o.yx, xx * o.xy + xy * o.yy, yx * o.xx + yy * o.yx,
                yx * o.xy + yy * o.yy, x(o.dx, o.dy),         y(o.dx, o.dy)};
    }
};

class Measure {
public:
    void point(const Placing &at, double x, double y) { extents.add(at.x(x, y), at.y(x, y)); }

    /// c + u cos t + v sin t for t from start over sweep, which may be negative.
    void ellipse(const Placing &at, double cx, double cy, double ux, double uy, double vx, double vy, double start,
                 double sweep)
    {
        const double px = at.x(cx, cy), py = at.y(cx, cy);
        const double ax = at.xx * ux + at.xy * uy, ay = at.yx * ux + at.yy * uy;
        const double bx = at.xx * vx + at.xy * vy, by = at.yx * vx + at.yy * vy;
        const auto add = [&](double t) {
            extents.add(px + ax * std::cos(t) + bx * std::sin(t), py + ay * std::cos(t) + by * std::sin(t));
        };
        add(start);
        add(start + sweep);
        if (sweep < 0.0) {
            start += sweep;
            sweep = -sweep;
        }
        for (const double extreme : {std::atan2(bx, ax), std::atan2(by, ay)})
            for (int k = 0; k < 2; ++k) {
                double offset = std::fmod(extreme + k * std::numbers::pi - start, kTwoPi);
                if (offset < 0.0)
                    offset += kTwoPi;
                if (offset < sweep)
                    add(start + offset);
            }
    }

    void ring(const Placing &at, const std::vector<AcDbPolyline::Vertex> &vertices, bool closed)
    {
        for (std::size_t i = 0; i < vertices.size(); ++i) {
            const auto &a = vertices[i];
            point(at, a.x, a.y);
            if (a.bulge == 0.0 || (!closed && i + 1 == vertices.size()))
                continue;
            const auto &b = vertices[(i + 1) % vertices.size()];
            // The centre stands off the chord's middle by chord (1 - b^2) / 4b, to the left for a positive bulge.
            const double f = (1.0 - a.bulge * a.bulge) / (4.0 * a.bulge);
            const double cx = 0.5 * (a.x + b.x) - f * (b.y - a.y), cy = 0.5 * (a.y + b.y) + f * (b.x - a.x);
            const double r = std::hypot(a.x - cx, a.y - cy);
            ellipse(at, cx, cy, r, 0.0, 0.0, r, std::atan2(a.y - cy, a.x - cx), 4.0 * std::atan(a.bulge));
        }
    }

    void text(const Placing &at, const TextShape &shape)
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
        const double w = kLetterWidth * shape.height * shape.widthFactor * static_cast<double>(longest);
        const double h = shape.height * (1.0 + 5.0 / 3.0 * static_cast<double>(lines - 1));
        const double left = shape.horizontal == 0 ? 0.0 : shape.horizontal == 2 ? -w : -0.5 * w;
        const double bottom = shape.vertical == 3 ? -h : shape.vertical == 2 ? -0.5 * h : 0.0;
        const double c = std::cos(shape.rotation), s = std::sin(shape.rotation);
        for (const double x : {left, left + w})
            for (const double y : {bottom, bottom + h})
                point(at, shape.position.x + c * x - s * y, shape.position.y + s * x + c * y);
    }

    void reference(const Placing &at, const AcDbBlockReference &r, int depth)
    {
        const auto *record = static_cast<const BlockRecord *>(ObjectAccess::object(r.blockTableRecord()));
        for (const AttributeEntity *attribute : attributesOf(r))
            if (!attribute->isInvisible())
                text(at, attribute->shape());
        // A block that holds itself shows nothing there.
        if (!record || depth >= kDeepestNesting || std::ranges::find(m_open, record) != m_open.end())
            return;
        const Extents *box = m_left == 0 ? &boxOf(*record, depth) : nullptr;
        const auto &p = r.placement();
        const double c = std::cos(p.rotation), s = std::sin(p.rotation);
        const AcGePoint3d &base = record->basePoint();
        // Only the corners of an array can be extreme.
        const int lastColumn = std::max(1, p.columns) - 1, lastRow = std::max(1, p.rows) - 1;
        const auto cell = [&](int column, int row) {
            const double ox = column * p.columnSpacing, oy = row * p.rowSpacing;
            const Placing turn{c, -s, s, c, p.position.x, p.position.y};
            const Placing inner{p.scaleX, 0.0, 0.0, p.scaleY, ox - p.scaleX * base.x, oy - p.scaleY * base.y};
            const Placing placed = at * (turn * inner);
            if (box)
                corners(placed, *box);
            else
                contents(placed, *record, depth);
        };
        m_open.push_back(record);
        cell(0, 0);
        if (lastColumn > 0)
            cell(lastColumn, 0);
        if (lastRow > 0)
            cell(0, lastRow);
        if (lastColumn > 0 && lastRow > 0)
            cell(lastColumn, lastRow);
        m_open.pop_back();
    }

    void contents(const Placing &at, const BlockRecord &record, int depth)
    {
        for (const AcDbEntity *entity : record.entities()) {
            if (entity->isErased() || isInvisible(*entity) || kindOf(*entity) == EntityKind::AttributeDefinition)
                continue;
            m_left -= m_left != 0;
            add(at, *entity, depth + 1);
        }
    }

    void corners(const Placing &at, const Extents &box)
    {
        if (box.isEmpty())
            return;
        for (const double x : {box.minX, box.maxX})
            for (const double y : {box.minY, box.maxY})
                point(at, x, y);
    }

    /// Box of a block's contents in its own coordinates, in which nested blocks are boxes too.
    const Extents &boxOf(const BlockRecord &record, int depth)
    {
        const auto [found, isNew] = m_boxes.try_emplace(&record);
        if (!isNew)
            return found->second;
        const Extents outer = std::exchange(extents, {});
        m_open.push_back(&record);
        contents({}, record, depth);
        m_open.pop_back();
        return found->second = std::exchange(extents, outer);
    }

    void add(const Placing &at, const AcDbEntity &entity, int depth)
    {
        switch (kindOf(entity)) {
        case EntityKind::Line: {
            const auto &line = static_cast<const AcDbLine &>(entity);
            point(at, line.startPoint().x, line.startPoint().y);
            point(at, line.endPoint().x, line.endPoint().y);
            break;
        }
        case EntityKind::Arc: {
            const auto &arc = static_cast<const AcDbArc &>(entity);
            const double sweep = endOfTurn(arc.startAngle(), arc.endAngle()) - arc.startAngle();
            ellipse(at, arc.center().x, arc.center().y, arc.radius(), 0.0, 0.0, arc.radius(), arc.startAngle(), sweep);
            break;
        }
        case EntityKind::Circle: {
            const auto &circle = static_cast<const CircleEntity &>(entity);
            ellipse(at, circle.center().x, circle.center().y, circle.radius(), 0.0, 0.0, circle.radius(), 0.0, kTwoPi);
            break;
        }
        case EntityKind::Ellipse: {
            const auto &shape = static_cast<const EllipseEntity &>(entity).shape();
            const double sweep = endOfTurn(shape.startParameter, shape.endParameter) - shape.startParameter;
            ellipse(at, shape.center.x, shape.center.y, shape.majorAxis.x, shape.majorAxis.y,
                    -shape.majorAxis.y * shape.ratio, shape.majorAxis.x * shape.ratio, shape.startParameter, sweep);
            break;
        }
        case EntityKind::Spline: {
            const auto &spline = static_cast<const SplineEntity &>(entity);
            Extents hull;
            const auto &s = spline.shape();
            for (const AcGePoint3d &p : s.controlPoints.empty() ? s.fitPoints : s.controlPoints)
                hull.add(p.x, p.y);
            if (hull.isEmpty())
                break;
            const double size = std::max(hull.maxX - hull.minX, hull.maxY - hull.minY);
            for (const AcGePoint3d &p : spline.flatten(size * 1e-4))
                point(at, p.x, p.y);
            break;
        }
        case EntityKind::Point: {
            const auto &p = static_cast<const PointEntity &>(entity).position();
            point(at, p.x, p.y);
            break;
        }
        case EntityKind::LwPolyline: {
            const auto &line = static_cast<const AcDbPolyline &>(entity);
            ring(at, line.vertices(), line.isClosed());
            break;
        }
        case EntityKind::Polyline2d: {
            const auto &line = static_cast<const AcDb2dPolyline &>(entity);
            ring(at, line.vertices(), line.isClosed());
            break;
        }
        case EntityKind::Polyline3d:
            for (const AcGePoint3d &p : static_cast<const AcDb3dPolyline &>(entity).vertices())
                point(at, p.x, p.y);
            break;
        case EntityKind::Text:
        case EntityKind::MText:
        case EntityKind::Attribute:
        case EntityKind::AttributeDefinition:
            text(at, static_cast<const TextEntity &>(entity).shape());
            break;
        case EntityKind::BlockReference:
            reference(at, static_cast<const AcDbBlockReference &>(entity), depth);
            break;
        case EntityKind::Hatch:
            for (const AcDbHatch::Loop &loop : static_cast<const AcDbHatch &>(entity).loops())
                ring(at, loop.vertices, true);
            break;
        case EntityKind::Unknown:
            break;
        }
    }

    Extents extents;

private:
    std::size_t m_left = kMostNested;
    std::vector<const BlockRecord *> m_open;        ///< blocks around what is being measured
    std::map<const BlockRecord *, Extents> m_boxes; ///< of blocks that were too much to measure one by one
};

} // namespace

void Extents::add(double x, double y)
{
    if (!std::isfinite(x) || !std::isfinite(y))
        return;
    minX = std::min(minX, x);
    minY = std::min(minY, y);
    maxX = std::max(maxX, x);
    maxY = std::max(maxY, y);
}

void Extents::add(const Extents &other)
{
    if (other.isEmpty())
        return;
    add(other.minX, other.minY);
    add(other.maxX, other.maxY);
}

void Extents::grow(double by)
{
    if (isEmpty())
        return;
    minX -= by;
    minY -= by;
    maxX += by;
    maxY += by;
}

Extents extentsOf(const AcDbEntity &entity)
{
    Measure measure;
    measure.add({}, entity, 0);
    return measure.extents;
}

} // namespace velmor
