#include "host/editor/FramePainter.h"

#include "host/drawing/Visibility.h"
#include "host/editor/DisplayIndex.h"
#include "host/editor/LineRaster.h"
#include "host/editor/MarkHatches.h"
#include "host/editor/ShapeWalker.h"
#include "host/editor/TextPainter.h"

#include <QPainter>

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace velmor {

namespace {

constexpr double kReachPixels = 3.0;     ///< how far what is drawn for an entity may lie outside of its box
constexpr double kSmallestLetters = 4.5; ///< height in pixels; lower texts are drawn as a bar
constexpr double kSharpPixels = 0.02;    ///< how far lines may be off where their ends are kept as floats
constexpr double kFloatStep = 1.2e-7;
constexpr int kSolidAlpha = 110;
constexpr double kTemporaryWidth = 2.5;
constexpr std::size_t kFewEntities = 2000; ///< are gone through one by one, wherever they lie
constexpr double kDensestHatch = 3.0;      ///< pixels of area for one line of a pattern; denser ones become a tint

/// Draws the walk of entities with a line raster; fills and texts are handed to a painter.
class RasterWalker final : public ShapeWalker {
public:
    RasterWalker(QImage &image, const QRect &clip, Drawing &drawing, const ViewTransform &view, const PaintStyle &style)
        : ShapeWalker(drawing, 1.0 / view.pixelsPerUnit), m_raster(image, clip), m_view(view), m_style(style),
          m_texts(view), m_ratio(image.devicePixelRatio()), m_scale(view.pixelsPerUnit * m_ratio),
          m_left(0.5 * view.size.width() * m_ratio), m_top(0.5 * view.size.height() * m_ratio), m_visible(partOf(clip))
    {
    }

    /// The part of the world that a rectangle of the image shows.
    Extents partOf(const QRect &clip) const
    {
        Extents part{toWorldX(clip.left()), toWorldY(clip.bottom() + 1), toWorldX(clip.right() + 1),
                     toWorldY(clip.top())};
        part.grow(kReachPixels / m_view.pixelsPerUnit);
        return part;
    }
    const Extents &visible() const { return m_visible; }
    double scale() const { return m_scale; } ///< image pixels for a unit
    double ratio() const { return m_ratio; }
    double imageX(double x) const { return m_left + (x - m_view.centerX) * m_scale; }
    double imageY(double y) const { return m_top - (y - m_view.centerY) * m_scale; }
    LineRaster &raster() { return m_raster; }

    void setPenWidth(double width)
    {
        m_width = width;
        m_lastColor = -1;
    }
    void useColor(int color)
    {
        if (color == std::exchange(m_lastColor, color))
            return;
        m_raster.setPen(rgb(color), m_width * m_ratio);
    }
    QRgb rgb(int color)
    {
        const auto index = static_cast<std::size_t>(std::clamp(color, 0, 256));
        if (m_rgb[index] == 0)
            m_rgb[index] = m_style.color(color).rgb();
        return m_rgb[index];
    }
    /// Draws fills and texts; without one they are left out.
    void setPainter(QPainter *painter) { m_painter = painter; }

    void rasterLine(double ax, double ay, double bx, double by)
    {
        ++counts.lines;
        m_raster.line(ax, ay, bx, by);
    }

    FrameCounts counts;

private:
    double toWorldX(double x) const { return m_view.centerX + (x - m_left) / m_scale; }
    double toWorldY(double y) const { return m_view.centerY - (y - m_top) / m_scale; }

    void line(const QPointF &a, const QPointF &b, int color) override
    {
        useColor(color);
        rasterLine(imageX(a.x()), imageY(a.y()), imageX(b.x()), imageY(b.y()));
    }

    void wideLine(const QPointF &a, const QPointF &b, double width, int color) override
    {
        useColor(color);
        if (width * m_view.pixelsPerUnit > m_width) {
            m_raster.setPen(rgb(color), width * m_scale);
            m_lastColor = -1;
        }
        rasterLine(imageX(a.x()), imageY(a.y()), imageX(b.x()), imageY(b.y()));
    }

    void fill(const QPainterPath &path, int color) override
    {
        if (m_painter == nullptr)
            return;
        QColor fill = m_style.color(color);
        fill.setAlpha(kSolidAlpha);
        m_painter->fillPath(m_view.transform().map(path), fill);
    }

    void hatch(const AcDbHatch &hatch, const PlaneMap &map, int color) override
    {
        const Extents box = extentsOf(hatch);
        const double scale = m_view.pixelsPerUnit * map.scale();
        const double area = (box.maxX - box.minX) * (box.maxY - box.minY) * scale * scale;
        if (static_cast<double>(hatch.lines().size()) * kDensestHatch > area)
            return fill(outlineOf(hatch, map), color);
        ShapeWalker::hatch(hatch, map, color);
    }

    void text(const TextShape &shape, const PlaneMap &map, int color) override
    {
        if (!m_texts.isVisible(shape, map, m_visible))
            return;
        ++counts.texts;
        const double height = m_texts.pixelsOf(shape, map) * m_ratio;
        if (height < kSmallestLetters && shape.text.find(L'\n') == std::wstring::npos) {
            bar(shape, map, color);
        } else if (m_painter != nullptr) {
            m_texts.paint(*m_painter, shape, map, m_style.color(color));
        }
    }

    /// A line through the middle of a text's letters, as strong as they would be.
    void bar(const TextShape &shape, const PlaneMap &map, int color)
    {
        const double length = 0.7 * shape.height * shape.widthFactor * static_cast<double>(shape.text.size());
        const double start = shape.horizontal == 2 ? -length : shape.horizontal == 1 ? -0.5 * length : 0.0;
        const double middle = shape.height * (shape.vertical == 3 ? -0.5 : shape.vertical == 2 ? 0.0 : 0.5);
        const double c = std::cos(shape.rotation), s = std::sin(shape.rotation);
        const auto at = [&](double along) {
            return map.apply(shape.position.x + c * along - s * middle, shape.position.y + s * along + c * middle);
        };
        const QPointF a = at(start), b = at(start + length);
        const double strength = 0.35;
        m_raster.setPen(rgb(color), strength * shape.height * map.scale() * m_scale);
        m_lastColor = -1;
        rasterLine(imageX(a.x()), imageY(a.y()), imageX(b.x()), imageY(b.y()));
    }

    LineRaster m_raster;
    const ViewTransform &m_view;
    const PaintStyle &m_style;
    TextPainter m_texts;
    double m_ratio, m_scale, m_left, m_top;
    Extents m_visible;
    double m_width = 1.0;
    int m_lastColor = -1;
    std::array<QRgb, 257> m_rgb{}; ///< by index; 0: not asked for yet
    QPainter *m_painter = nullptr;
};

/// One frame: filled areas, then lines straight from the index to the raster, then texts.
class Frame {
public:
    Frame(QImage &image, const QRect &part, Drawing &drawing, const ViewTransform &view, const PaintStyle &style)
        : m_image(image), m_part(part & image.rect()), m_drawing(drawing), m_style(style),
          m_index(drawing.component<DisplayIndex>()), m_transient(drawing.component<TransientGraphics>()),
          m_hasBlanked(!m_transient.blanked().empty()), m_walker(image, m_part, drawing, view, style),
          m_tiny(m_walker.ratio())
    {
    }

    FrameCounts paint()
    {
        if (m_part.isEmpty())
            return {};
        clear();
        m_index.revision(); // the pens are those of the drawing as it is now
        for (const Index::Pen &pen : m_index.pens()) {
            const int color = pen.color == 256 ? m_drawing.layer(pen.layer).color : pen.color == 0 ? 7 : pen.color;
            m_pens.push_back({m_index.isVisible(pen), color});
        }
        QPainter painter(&m_image);
        preparePainter(painter, m_part, m_walker.ratio());
        m_walker.setPainter(&painter);
        m_index.visitNodes(m_walker.visible(), [this](const Index::Node &node) { return visitHatches(node); });
        m_index.visitNodes(m_walker.visible(), [this](const Index::Node &node) { return visit(node); });
        std::ranges::sort(m_texts);
        for (const std::uint32_t number : m_texts)
            m_walker.walk(m_index.entity(number));
        return m_walker.counts;
    }

    static void preparePainter(QPainter &painter, const QRect &part, double ratio)
    {
        painter.setClipRect(
            QRectF(part.left() / ratio, part.top() / ratio, part.width() / ratio, part.height() / ratio));
        painter.setRenderHint(QPainter::Antialiasing, true);
    }

private:
    using Index = DisplayIndex;
    struct PenState {
        bool visible;
        int color;
    };

    void clear()
    {
        const QRgb background = m_style.background.rgb();
        for (int y = m_part.top(); y <= m_part.bottom(); ++y) {
            auto *row = reinterpret_cast<QRgb *>(m_image.scanLine(y));
            std::fill(row + m_part.left(), row + m_part.right() + 1, background);
        }
    }

    bool isTiny(const Extents &box) const
    {
        return std::max(box.maxX - box.minX, box.maxY - box.minY) * m_walker.scale() < m_tiny;
    }

    void dot(double x, double y, int color)
    {
        ++m_walker.counts.dots;
        m_walker.useColor(color);
        m_walker.raster().dot(x, y);
    }

    bool visitHatches(const Index::Node &node)
    {
        if (!node.hasHatches)
            return true;
        for (const Index::Item &item : node.items) {
            if (item.kind != Index::ItemKind::Hatch || item.gone || !m_pens[item.pen].visible)
                continue;
            const Extents box = Index::boxOf(node, item);
            if (!Index::meets(box, m_walker.visible()))
                continue;
            if (isTiny(box))
                dot(m_walker.imageX(box.minX), m_walker.imageY(box.minY), m_pens[item.pen].color);
            else
                m_walker.walk(m_index.entity(item.entity));
        }
        return true;
    }

    bool visit(const Index::Node &node)
    {
        if (isTiny(node.box))
            for (const Index::Item &item : node.items)
                if (!item.gone && m_pens[item.pen].visible && item.kind != Index::ItemKind::Text) {
                    dot(m_walker.imageX(node.box.minX), m_walker.imageY(node.box.minY), m_pens[item.pen].color);
                    return false; // all of it lies in this pixel
                }
        const double k = m_walker.scale(), left = m_walker.imageX(node.x), top = m_walker.imageY(node.y);
        const double blur = 4.0 * node.half * kFloatStep * k;
        const bool areFloatsSharp = blur < kSharpPixels;
        const double reach = kReachPixels * m_walker.ratio() + blur;
        const double minX = m_part.left() - reach, maxX = m_part.right() + 1 + reach;
        const double minY = m_part.top() - reach, maxY = m_part.bottom() + 1 + reach;
        for (const Index::Item &item : node.items) {
            const PenState &pen = m_pens[item.pen];
            if (item.gone || !pen.visible || (m_hasBlanked && m_transient.isBlanked(m_index.entity(item.entity))))
                continue;
            // The ends of a line, or two corners of a box.
            double ax = left + static_cast<double>(item.shape[0]) * k,
                   ay = top - static_cast<double>(item.shape[1]) * k;
            double bx = left + static_cast<double>(item.shape[2]) * k,
                   by = top - static_cast<double>(item.shape[3]) * k;
            if (std::max(ax, bx) < minX || std::min(ax, bx) > maxX || std::max(ay, by) < minY ||
                std::min(ay, by) > maxY)
                continue;
            if (std::abs(bx - ax) < m_tiny && std::abs(by - ay) < m_tiny && item.kind <= Index::ItemKind::Entity) {
                dot(0.5 * (ax + bx), 0.5 * (ay + by), pen.color);
                continue;
            }
            switch (item.kind) {
            case Index::ItemKind::Line:
                if (!areFloatsSharp) {
                    const auto &line = static_cast<const AcDbLine &>(m_index.entity(item.entity));
                    ax = m_walker.imageX(line.startPoint().x);
                    ay = m_walker.imageY(line.startPoint().y);
                    bx = m_walker.imageX(line.endPoint().x);
                    by = m_walker.imageY(line.endPoint().y);
                }
                m_walker.useColor(pen.color);
                m_walker.rasterLine(ax, ay, bx, by);
                break;
            case Index::ItemKind::Run:
                m_walker.walkRun(m_index.entity(item.entity), item.first, item.count, pen.color);
                break;
            case Index::ItemKind::Entity:
            case Index::ItemKind::Mark:
                m_walker.walk(m_index.entity(item.entity));
                break;
            case Index::ItemKind::Text:
                m_texts.push_back(item.entity);
                break;
            case Index::ItemKind::Hatch:
                break;
            }
        }
        return true;
    }

    QImage &m_image;
    QRect m_part;
    Drawing &m_drawing;
    const PaintStyle &m_style;
    DisplayIndex &m_index;
    const TransientGraphics &m_transient;
    bool m_hasBlanked;
    RasterWalker m_walker;
    double m_tiny; ///< what is smaller than this, in image pixels, is a dot
    std::vector<PenState> m_pens;
    std::vector<std::uint32_t> m_texts;
};

} // namespace

FrameCounts paintFrame(QImage &image, const QRect &part, Drawing &drawing, const ViewTransform &view,
                       const PaintStyle &style)
{
    return Frame(image, part, drawing, view, style).paint();
}

void paintOver(QImage &image, const QRect &part, const std::vector<const AcDbEntity *> &entities, int color,
               double width, Drawing &drawing, const ViewTransform &view, const PaintStyle &style)
{
    if (entities.empty())
        return;
    RasterWalker walker(image, part, drawing, view, style);
    QPainter painter(&image);
    Frame::preparePainter(painter, part, walker.ratio());
    walker.setPainter(&painter);
    walker.setPenWidth(width);
    for (const AcDbEntity *entity : entities) {
        const Extents box = extentsOf(*entity);
        if (!DisplayIndex::meets(box, walker.visible()))
            continue;
        if (std::max(box.maxX - box.minX, box.maxY - box.minY) * view.pixelsPerUnit >= 1.0 ||
            kindOf(*entity) == EntityKind::Point) {
            walker.walk(*entity, color);
        } else if (!entity->isErased() && !isInvisible(*entity)) {
            walker.useColor(color);
            walker.raster().dot(walker.imageX(box.minX), walker.imageY(box.minY));
        }
    }
}

void paintSelection(QImage &image, const QRect &part, const Selection &selection, int color, double width,
                    Drawing &drawing, const ViewTransform &view, const PaintStyle &style)
{
    if (selection.entities().size() <= kFewEntities)
        return paintOver(image, part, selection.entities(), color, width, drawing, view, style);
    auto &index = drawing.component<DisplayIndex>();
    RasterWalker walker(image, part, drawing, view, style);
    QPainter painter(&image);
    Frame::preparePainter(painter, part, walker.ratio());
    walker.setPainter(&painter);
    walker.setPenWidth(width);
    index.visitNodes(walker.visible(), [&](const DisplayIndex::Node &node) {
        for (const DisplayIndex::Item &item : node.items) {
            if (item.gone || !index.isVisible(item))
                continue;
            const Extents box = DisplayIndex::boxOf(node, item);
            const AcDbEntity &entity = index.entity(item.entity);
            if (!DisplayIndex::meets(box, walker.visible()) || !selection.contains(entity))
                continue;
            if (std::max(box.maxX - box.minX, box.maxY - box.minY) * view.pixelsPerUnit < 1.0 &&
                item.kind != DisplayIndex::ItemKind::Mark) {
                walker.useColor(color);
                walker.raster().dot(walker.imageX(box.minX), walker.imageY(box.minY));
            } else if (item.kind == DisplayIndex::ItemKind::Run) {
                walker.walkRun(entity, item.first, item.count, color);
            } else {
                walker.walk(entity, color);
            }
        }
        return true;
    });
}

void paintMarks(QImage &image, const QRect &part, Drawing &drawing, const ViewTransform &view, const PaintStyle &style)
{
    RasterWalker walker(image, part, drawing, view, style);
    QPainter painter(&image);
    Frame::preparePainter(painter, part, walker.ratio());
    walker.setPainter(&painter);
    MarkHatches hatches(walker.visible(), walker.scale());
    for (const auto &[key, mark] : drawing.component<TransientGraphics>().marks()) {
        const Extents box = boxOf(mark.rings);
        if (!DisplayIndex::meets(box, walker.visible()))
            continue;
        walker.useColor(mark.color);
        if (std::max(box.maxX - box.minX, box.maxY - box.minY) * walker.scale() < 1.0) {
            walker.raster().dot(walker.imageX(box.minX), walker.imageY(box.minY));
            continue;
        }
        if (hatches.isFilled(mark))
            walker.fillRings(mark.rings, mark.color);
        for (const PatternLine &line : hatches.linesOf(mark))
            walker.rasterLine(walker.imageX(line.x1), walker.imageY(line.y1), walker.imageX(line.x2),
                              walker.imageY(line.y2));
        for (const TransientRing &ring : mark.rings)
            walker.walkPath(ring, true, mark.color);
    }
}

void paintTemporary(QImage &image, const QRect &part, Drawing &drawing, const ViewTransform &view,
                    const PaintStyle &style)
{
    RasterWalker walker(image, part, drawing, view, style);
    walker.setPenWidth(kTemporaryWidth);
    for (const TransientPath &path : drawing.component<TransientGraphics>().temporary())
        walker.walkPath(path.vertices, path.closed, path.color);
}

} // namespace velmor
