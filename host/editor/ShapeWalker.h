// Takes entities apart into what can be drawn: straight lines, filled outlines, texts.
#pragma once

#include "host/drawing/CurvePath.h"
#include "host/drawing/Drawing.h"
#include "host/drawing/Transient.h"

#include <QPainterPath>
#include <QPointF>

#include <cmath>
#include <map>
#include <vector>

namespace velmor {

/// Block coordinates to world coordinates.
struct PlaneMap {
    double xx = 1.0, xy = 0.0, yx = 0.0, yy = 1.0, dx = 0.0, dy = 0.0;
    QPointF apply(double x, double y) const { return {xx * x + xy * y + dx, yx * x + yy * y + dy}; }
    double scale() const { return std::sqrt(std::abs(xx * yy - xy * yx)); }
    PlaneMap of(const PlaneMap &inner) const
    {
        return {xx * inner.xx + xy * inner.yx, xx * inner.xy + xy * inner.yy,      yx * inner.xx + yy * inner.yx,
                yx * inner.xy + yy * inner.yy, xx * inner.dx + xy * inner.dy + dx, yx * inner.dx + yy * inner.dy + dy};
    }
};

/// Walks over entities and hands each straight line, filled outline and text to a subclass, in world coordinates. What
/// is erased, on a layer that does not show, or blanked is passed over, inside of blocks too. Curves become chords.
class ShapeWalker {
public:
    /// unitsPerPixel: of what is drawn on, in world units; chords stray a quarter of it from their curve, and marks of
    /// points are four of it wide.
    ShapeWalker(Drawing &drawing, double unitsPerPixel);
    virtual ~ShapeWalker() = default;

    /// forcedColor: the colour index for all of the entity; below 0: its own.
    void walk(const AcDbEntity &entity, int forcedColor = -1);
    /// A path with its bulges.
    void walkPath(const std::vector<AcDbPolyline::Vertex> &vertices, bool closed, int color);
    /// Rings with their bulges, filled by the even-odd rule.
    void fillRings(const std::vector<std::vector<AcDbPolyline::Vertex>> &rings, int color);
    /// count segments of a polyline (light-weight, 2D or 3D) from a vertex on; the last vertex of a closed one leads to
    /// its first.
    void walkRun(const AcDbEntity &polyline, std::size_t first, std::size_t count, int color);

protected:
    virtual void line(const QPointF &a, const QPointF &b, int color) = 0;
    /// A line of a width in world units.
    virtual void wideLine(const QPointF &a, const QPointF &b, double width, int color) = 0;
    virtual void fill(const QPainterPath &path, int color) = 0;
    virtual void text(const TextShape &shape, const PlaneMap &map, int color) = 0;
    /// The pattern's lines of a hatch. A subclass may draw something cheaper.
    virtual void hatch(const AcDbHatch &hatch, const PlaneMap &map, int color);

    QPainterPath outlineOf(const AcDbHatch &hatch, const PlaneMap &map) const;
    bool isInBlock() const { return !m_open.empty(); }
    /// Lines inside of references so far; a subclass counts what it passes over.
    std::size_t m_nestedLines = 0;

private:
    using Vertex = AcDbPolyline::Vertex;
    void walkPlaced(const AcDbEntity &entity, const PlaneMap &map, int forcedColor, int depth);
    void walkReference(const AcDbBlockReference &reference, const PlaneMap &map, int color, int forcedColor, int depth);
    const BlockRecord *blockOf(const AcDbBlockReference &reference);
    void addRing(QPainterPath &outline, const std::vector<Vertex> &ring, const PlaneMap &map) const;
    void put(const QPointF &a, const QPointF &b, int color);
    void point(const QPointF &p, int color);
    int arcSteps(double radius, double sweep, const PlaneMap &map) const;
    void arc(double cx, double cy, double radius, double start, double end, const PlaneMap &map, int color);
    void ellipse(const EllipseEntity &ellipse, const PlaneMap &map, int color);
    void points(const std::vector<AcGePoint3d> &points, bool closed, const PlaneMap &map, int color);
    template <class Visit>
    void forEachPointOfBulge(const Vertex &from, const Vertex &to, const PlaneMap &map, Visit visit) const;
    void segment(const Vertex &from, const Vertex &to, const PlaneMap &map, int color);
    void path(const std::vector<Vertex> &vertices, bool closed, const PlaneMap &map, int color);

    Drawing &m_drawing;
    const TransientGraphics &m_transient;
    double m_unitsPerPixel;
    double m_width = 0.0;                    ///< of the path that is being walked, world units
    std::vector<const BlockRecord *> m_open; ///< blocks around what is being walked
    std::size_t m_nested = 0;
    std::map<AcDbObjectId, const BlockRecord *> m_blocks;
};

} // namespace velmor
