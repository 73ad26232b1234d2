#include "host/editor/Painter.h"

#include "host/drawing/CurvePath.h"
#include "host/drawing/HatchPattern.h"
#include "host/drawing/Transient.h"

#include <QFont>
#include <QFontMetricsF>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>
#include <map>
#include <numbers>

namespace velmor {

namespace {

using Vertex = AcDbPolyline::Vertex;

constexpr double kFlattenPixels = 0.25; ///< how far a drawn arc may stray from the true one
constexpr double kSmallestTextPixels = 2.5;
constexpr int kDeepestBlock = 32; ///< block references inside one another
/// Nested references can stand for any number of entities and lines; a picture ends there.
constexpr std::size_t kMostNested = 5'000'000, kMostNestedLines = 10'000'000;
constexpr int kMostWaitingLines = 1'000'000; ///< of one colour, before they are drawn

/// Block coordinates to world coordinates.
struct Affine {
    double xx = 1.0, xy = 0.0, yx = 0.0, yy = 1.0, dx = 0.0, dy = 0.0;
    QPointF apply(double x, double y) const { return {xx * x + xy * y + dx, yx * x + yy * y + dy}; }
    double scale() const { return std::sqrt(std::abs(xx * yy - xy * yx)); }
    Affine of(const Affine &inner) const
    {
        return {xx * inner.xx + xy * inner.yx, xx * inner.xy + xy * inner.yy,      yx * inner.xx + yy * inner.yx,
                yx * inner.xy + yy * inner.yy, xx * inner.dx + xy * inner.dy + dx, yx * inner.dx + yy * inner.dy + dy};
    }
};

Affine placementOf(const AcDbBlockReference::Placement &p, const AcGePoint3d &base, int column, int row)
{
    const double c = std::cos(p.rotation), s = std::sin(p.rotation);
    Affine a{c * p.scaleX, -s * p.scaleY, s * p.scaleX, c * p.scaleY, 0.0, 0.0};
    const double offsetX = column * p.columnSpacing, offsetY = row * p.rowSpacing;
    const QPointF moved = a.apply(-base.x, -base.y);
    a.dx = p.position.x + c * offsetX - s * offsetY + moved.x();
    a.dy = p.position.y + s * offsetX + c * offsetY + moved.y();
    return a;
}

class ScenePainter {
public:
    ScenePainter(QPainter &painter, Drawing &drawing, const ViewTransform &view, const PaintStyle &style)
        : m_painter(painter), m_drawing(drawing), m_view(view), m_style(style), m_visible(view.visible()),
          m_font(QStringLiteral("DejaVu Sans"))
    {
        m_font.setPixelSize(100);
        m_capHeight = std::max(1.0, QFontMetricsF(m_font).capHeight());
        m_visible.grow(2.0 / view.pixelsPerUnit);
    }

    void paint()
    {
        m_painter.setRenderHint(QPainter::Antialiasing, m_style.antialias);
        auto &transient = m_drawing.component<TransientGraphics>();
        for (const auto &[key, mark] : transient.marks())
            paintMark(mark);
        flush();
        for (const AcDbEntity *entity : m_drawing.modelSpace().entities())
            paintEntity(*entity, Affine{}, -1, 0);
        flush();
        for (const AcDbEntity *entity : transient.highlighted()) {
            m_penWidth = 3.0;
            paintEntity(*entity, Affine{}, kHighlightColor, 0);
        }
        flush();
        m_penWidth = 2.5;
        for (const TransientPath &path : transient.temporary())
            addPath(path.vertices, path.closed, Affine{}, path.color);
        flush();
    }

private:
    static constexpr int kHighlightColor = 2;

    void paintEntity(const AcDbEntity &entity, const Affine &affine, int forcedColor, int depth)
    {
        if (entity.isErased() || !m_drawing.layer(layerIndexOf(entity)).visible())
            return;
        const EntityKind kind = kindOf(entity);
        const int color = forcedColor >= 0 ? forcedColor : effectiveColor(m_drawing, entity);
        switch (kind) {
        case EntityKind::Line: {
            const auto &line = static_cast<const AcDbLine &>(entity);
            addLine(affine.apply(line.startPoint().x, line.startPoint().y),
                    affine.apply(line.endPoint().x, line.endPoint().y), color);
            break;
        }
        case EntityKind::Arc: {
            const auto &arc = static_cast<const AcDbArc &>(entity);
            addArc(arc.center().x, arc.center().y, arc.radius(), arc.startAngle(), arc.endAngle(), affine, color);
            break;
        }
        case EntityKind::Circle: {
            const auto &circle = static_cast<const CircleEntity &>(entity);
            addArc(circle.center().x, circle.center().y, circle.radius(), 0.0, 2.0 * std::numbers::pi, affine, color);
            break;
        }
        case EntityKind::Ellipse:
            addEllipse(static_cast<const EllipseEntity &>(entity), affine, color);
            break;
        case EntityKind::Spline:
            addPoints(static_cast<const SplineEntity &>(entity).flatten(
                          kFlattenPixels / (m_view.pixelsPerUnit * std::max(affine.scale(), 1e-12))),
                      false, affine, color);
            break;
        case EntityKind::LwPolyline: {
            const auto &polyline = static_cast<const AcDbPolyline &>(entity);
            addPath(polyline.vertices(), polyline.isClosed(), affine, color);
            break;
        }
        case EntityKind::Polyline2d: {
            const auto &polyline = static_cast<const AcDb2dPolyline &>(entity);
            addPath(polyline.vertices(), polyline.isClosed(), affine, color);
            break;
        }
        case EntityKind::Polyline3d: {
            const auto &polyline = static_cast<const AcDb3dPolyline &>(entity);
            addPoints(polyline.vertices(), polyline.isClosed(), affine, color);
            break;
        }
        case EntityKind::Point: {
            const auto &point = static_cast<const PointEntity &>(entity).position();
            addPointMark(affine.apply(point.x, point.y), color);
            break;
        }
        case EntityKind::Text:
        case EntityKind::MText:
            paintText(static_cast<const TextEntity &>(entity).shape(), affine, color);
            break;
        case EntityKind::Attribute:
            if (!static_cast<const AttributeEntity &>(entity).isInvisible())
                paintText(static_cast<const TextEntity &>(entity).shape(), affine, color);
            break;
        case EntityKind::BlockReference:
            paintReference(static_cast<const AcDbBlockReference &>(entity), affine, color, forcedColor, depth);
            break;
        case EntityKind::Hatch:
            paintHatch(static_cast<const AcDbHatch &>(entity), affine, color);
            break;
        case EntityKind::AttributeDefinition: // only its references show
        case EntityKind::Unknown:
            break;
        }
    }

    void paintReference(const AcDbBlockReference &reference, const Affine &affine, int color, int forcedColor,
                        int depth)
    {
        for (const AttributeEntity *attribute : attributesOf(reference))
            paintEntity(*attribute, affine, forcedColor, depth);
        const BlockRecord *block = blockOf(reference);
        if (block == nullptr || depth >= kDeepestBlock || std::ranges::find(m_open, block) != m_open.end())
            return;
        m_open.push_back(block);
        const auto &placement = reference.placement();
        const auto isTooMuch = [this] { return m_nested > kMostNested || m_nestedLines > kMostNestedLines; };
        for (int row = 0; row < placement.rows && !isTooMuch(); ++row)
            for (int column = 0; column < placement.columns && !isTooMuch(); ++column, ++m_nested) {
                const Affine inner = affine.of(placementOf(placement, block->basePoint(), column, row));
                for (const AcDbEntity *entity : block->entities()) {
                    if (isTooMuch())
                        break;
                    ++m_nested;
                    paintEntity(*entity, inner, forcedColor >= 0 || entity->colorIndex() != 0 ? forcedColor : color,
                                depth + 1);
                }
            }
        m_open.pop_back();
    }

    const BlockRecord *blockOf(const AcDbBlockReference &reference)
    {
        if (m_blocks.empty())
            for (const auto &block : m_drawing.blocks())
                m_blocks[idOf(*block)] = block.get();
        const auto found = m_blocks.find(reference.blockTableRecord());
        return found == m_blocks.end() ? nullptr : found->second;
    }

    bool isVisible(const QPointF &a, const QPointF &b) const
    {
        return std::max(a.x(), b.x()) >= m_visible.minX && std::min(a.x(), b.x()) <= m_visible.maxX &&
               std::max(a.y(), b.y()) >= m_visible.minY && std::min(a.y(), b.y()) <= m_visible.maxY;
    }

    void addLine(const QPointF &a, const QPointF &b, int color)
    {
        m_nestedLines += !m_open.empty();
        if (!isVisible(a, b))
            return;
        auto &lines = m_lines[color];
        lines.append(QLineF(m_view.toView(a.x(), a.y()), m_view.toView(b.x(), b.y())));
        if (lines.size() >= kMostWaitingLines)
            flush();
    }

    void addPointMark(const QPointF &p, int color)
    {
        const double arm = 2.0 / m_view.pixelsPerUnit;
        addLine({p.x() - arm, p.y()}, {p.x() + arm, p.y()}, color);
        addLine({p.x(), p.y() - arm}, {p.x(), p.y() + arm}, color);
    }

    int arcSteps(double radius, double sweep, const Affine &affine) const
    {
        const double pixels = radius * affine.scale() * m_view.pixelsPerUnit;
        if (!(pixels > kFlattenPixels))
            return 1;
        const double step = 2.0 * std::acos(1.0 - kFlattenPixels / pixels);
        return static_cast<int>(std::min(std::ceil(std::abs(sweep) / step), 720.0));
    }

    void addArc(double cx, double cy, double radius, double start, double end, const Affine &affine, int color)
    {
        const double sweep = endOfTurn(start, end) - start;
        const int steps = std::max(arcSteps(radius, sweep, affine), sweep > 6.0 ? 8 : 1);
        QPointF previous = affine.apply(cx + radius * std::cos(start), cy + radius * std::sin(start));
        for (int i = 1; i <= steps; ++i) {
            const double angle = start + sweep * i / steps;
            const QPointF next = affine.apply(cx + radius * std::cos(angle), cy + radius * std::sin(angle));
            addLine(previous, next, color);
            previous = next;
        }
    }

    void addEllipse(const EllipseEntity &ellipse, const Affine &affine, int color)
    {
        const auto &shape = ellipse.shape();
        const double sweep = endOfTurn(shape.startParameter, shape.endParameter) - shape.startParameter;
        const int steps = std::max(8, arcSteps(shape.majorAxis.length(), sweep, affine));
        AcGePoint3d p = ellipse.pointAt(shape.startParameter);
        QPointF previous = affine.apply(p.x, p.y);
        for (int i = 1; i <= steps; ++i) {
            p = ellipse.pointAt(shape.startParameter + sweep * i / steps);
            const QPointF next = affine.apply(p.x, p.y);
            addLine(previous, next, color);
            previous = next;
        }
    }

    void addPoints(const std::vector<AcGePoint3d> &points, bool closed, const Affine &affine, int color)
    {
        for (std::size_t i = 1; i < points.size(); ++i)
            addLine(affine.apply(points[i - 1].x, points[i - 1].y), affine.apply(points[i].x, points[i].y), color);
        if (closed && points.size() > 2)
            addLine(affine.apply(points.back().x, points.back().y), affine.apply(points[0].x, points[0].y), color);
    }

    template <class Visit>
    void forEachPointOfBulge(const Vertex &from, const Vertex &to, const Affine &affine, Visit visit) const
    {
        if (from.bulge != 0.0) {
            // Centre and radius from chord and bulge: the sagitta is bulge times half the chord.
            const double chordX = to.x - from.x, chordY = to.y - from.y;
            const double offset = (1.0 - from.bulge * from.bulge) / (4.0 * from.bulge);
            const double cx = (from.x + to.x) / 2.0 - offset * chordY, cy = (from.y + to.y) / 2.0 + offset * chordX;
            const double radius = std::hypot(from.x - cx, from.y - cy);
            const double start = std::atan2(from.y - cy, from.x - cx), sweep = 4.0 * std::atan(from.bulge);
            const int steps = arcSteps(radius, sweep, affine);
            for (int i = 1; i < steps; ++i) {
                const double angle = start + sweep * i / steps;
                visit(affine.apply(cx + radius * std::cos(angle), cy + radius * std::sin(angle)));
            }
        }
        visit(affine.apply(to.x, to.y));
    }

    template <class Vertices>
    void addPath(const Vertices &vertices, bool closed, const Affine &affine, int color)
    {
        const std::size_t count = vertices.size();
        if (count < 2)
            return;
        QPointF previous = affine.apply(vertices[0].x, vertices[0].y);
        for (std::size_t i = 0; i + (closed ? 0 : 1) < count; ++i)
            forEachPointOfBulge(vertices[i], vertices[(i + 1) % count], affine, [&](const QPointF &next) {
                addLine(previous, next, color);
                previous = next;
            });
    }

    template <class Vertices>
    void addRing(QPainterPath &path, const Vertices &ring, const Affine &affine) const
    {
        if (ring.empty())
            return;
        const QPointF first = affine.apply(ring[0].x, ring[0].y);
        path.moveTo(m_view.toView(first.x(), first.y()));
        for (std::size_t i = 0; i < ring.size(); ++i)
            forEachPointOfBulge(ring[i], ring[(i + 1) % ring.size()], affine,
                                [&](const QPointF &p) { path.lineTo(m_view.toView(p.x(), p.y())); });
        path.closeSubpath();
    }

    void paintMark(const TransientMark &mark)
    {
        for (const PatternLine &line : patternLines(mark.rings, mark.pattern, mark.angle, mark.scale))
            addLine({line.x1, line.y1}, {line.x2, line.y2}, mark.color);
        for (const TransientRing &ring : mark.rings)
            addPath(ring, true, Affine{}, mark.color);
    }

    void paintHatch(const AcDbHatch &hatch, const Affine &affine, int color)
    {
        if (hatch.patternName() == L"SOLID") {
            QPainterPath path;
            path.setFillRule(Qt::OddEvenFill);
            for (const auto &loop : hatch.loops())
                addRing(path, loop.vertices, affine);
            QColor fill = m_style.color(color);
            fill.setAlpha(110);
            m_painter.fillPath(path, fill);
            return;
        }
        for (const auto &line : hatch.lines())
            addLine(affine.apply(line.x1, line.y1), affine.apply(line.x2, line.y2), color);
    }

    void paintText(const TextShape &shape, const Affine &affine, int color)
    {
        const double pixels = shape.height * affine.scale() * m_view.pixelsPerUnit;
        const QPointF place = affine.apply(shape.position.x, shape.position.y);
        if (pixels < kSmallestTextPixels || shape.text.empty() || !std::isfinite(pixels))
            return;
        const QStringList lines = QString::fromStdWString(shape.text).split(u'\n');
        const QFontMetricsF metrics(m_font);
        double widest = 0.0;
        for (const QString &line : lines)
            widest = std::max(widest, metrics.horizontalAdvance(line));
        const double scale = pixels / m_capHeight;
        const double reach =
            (widest * shape.widthFactor + lines.size() * metrics.lineSpacing()) * scale / m_view.pixelsPerUnit;
        if (!isVisible({place.x() - reach, place.y() - reach}, {place.x() + reach, place.y() + reach}))
            return;
        flush(); // texts and lines keep their order
        m_painter.save();
        m_painter.translate(m_view.toView(place.x(), place.y()));
        const double rotation = shape.rotation + std::atan2(affine.yx, affine.xx);
        m_painter.rotate(-rotation * 180.0 / std::numbers::pi);
        m_painter.scale(scale * shape.widthFactor, scale);
        m_painter.setFont(m_font);
        m_painter.setPen(m_style.color(color));
        const double block = m_capHeight + (lines.size() - 1) * metrics.lineSpacing();
        double y = shape.vertical == 3 ? m_capHeight : shape.vertical == 2 ? m_capHeight - block / 2.0 : 0.0;
        for (const QString &line : lines) {
            const double width = metrics.horizontalAdvance(line);
            const double x = shape.horizontal == 2 ? -width : shape.horizontal == 1 ? -width / 2.0 : 0.0;
            m_painter.drawText(QPointF(x, y), line);
            y += metrics.lineSpacing();
        }
        m_painter.restore();
    }

    void flush()
    {
        for (auto &[color, lines] : m_lines) {
            if (lines.isEmpty())
                continue;
            m_painter.setPen(QPen(m_style.color(color), m_penWidth, Qt::SolidLine, Qt::FlatCap));
            m_painter.drawLines(lines);
            lines.clear();
        }
    }

    QPainter &m_painter;
    Drawing &m_drawing;
    const ViewTransform &m_view;
    const PaintStyle &m_style;
    Extents m_visible;
    QFont m_font;
    double m_capHeight = 1.0;
    double m_penWidth = 1.0;
    std::vector<const BlockRecord *> m_open; ///< blocks around what is being painted
    std::size_t m_nested = 0, m_nestedLines = 0;
    std::map<int, QVector<QLineF>> m_lines;
    std::map<AcDbObjectId, const BlockRecord *> m_blocks;
};

} // namespace

QColor PaintStyle::color(int index) const
{
    if (index == 7 || index == 0 || index == 256)
        return isDark() ? QColor(0xe8, 0xe8, 0xe8) : QColor(0x10, 0x10, 0x10);
    const std::uint32_t bgr = acedGetRGB(index);
    QColor color(static_cast<int>(bgr & 0xff), static_cast<int>(bgr >> 8 & 0xff), static_cast<int>(bgr >> 16 & 0xff));
    // The palette is made for a dark screen: its bright colours drown on paper.
    if (!isDark() && color.lightnessF() > 0.45 && qGray(color.rgb()) > 140)
        color = color.darker(170);
    return color;
}

void paintDrawing(QPainter &painter, Drawing &drawing, const ViewTransform &view, const PaintStyle &style)
{
    ScenePainter(painter, drawing, view, style).paint();
}

Extents visibleExtents(const Drawing &drawing)
{
    Extents all;
    for (const AcDbEntity *entity : drawing.modelSpace().entities())
        if (!entity->isErased() && drawing.layer(layerIndexOf(*entity)).visible())
            all.add(extentsOf(*entity));
    return all;
}

} // namespace velmor
