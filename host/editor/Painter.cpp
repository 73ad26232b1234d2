#include "host/editor/Painter.h"

#include "host/drawing/Transient.h"
#include "host/drawing/Visibility.h"
#include "host/editor/DisplayIndex.h"
#include "host/editor/MarkHatches.h"
#include "host/editor/ShapeWalker.h"
#include "host/editor/TextPainter.h"

#include <QPainter>

#include <algorithm>
#include <cmath>
#include <map>

namespace velmor {

namespace {

constexpr int kMostWaitingLines = 1'000'000; ///< of one colour, before they are drawn
constexpr int kSolidAlpha = 110;
constexpr double kBrightestOnPaper = 0.36; ///< luminance; brighter lines are made darker on a light ground
constexpr double kDarkestOnScreen = 0.15;  ///< luminance; three times as bright as the dark ground

/// Relative luminance, from 0 for black to 1 for white.
double luminanceOf(const QColor &color)
{
    const auto linear = [](double part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

class ScenePainter final : private ShapeWalker {
public:
    ScenePainter(QPainter &painter, Drawing &drawing, const ViewTransform &view, const PaintStyle &style)
        : ShapeWalker(drawing, 1.0 / view.pixelsPerUnit), m_painter(painter), m_drawing(drawing), m_view(view),
          m_style(style), m_visible(view.visible()), m_texts(view)
    {
        m_visible.grow(2.0 / view.pixelsPerUnit);
    }

    void paint()
    {
        m_painter.setRenderHint(QPainter::Antialiasing, m_style.antialias);
        auto &transient = m_drawing.component<TransientGraphics>();
        MarkHatches hatches(m_visible, m_view.pixelsPerUnit * m_painter.device()->devicePixelRatioF());
        for (const auto &[key, mark] : transient.marks()) {
            if (!DisplayIndex::meets(boxOf(mark.rings), m_visible))
                continue;
            if (hatches.isFilled(mark))
                fillRings(mark.rings, mark.color);
            for (const PatternLine &it : hatches.linesOf(mark))
                line({it.x1, it.y1}, {it.x2, it.y2}, mark.color);
            for (const TransientRing &ring : mark.rings)
                walkPath(ring, true, mark.color);
        }
        flush();
        for (const AcDbEntity *entity : m_drawing.modelSpace().entities())
            walk(*entity);
        flush();
        m_penWidth = 3.0;
        for (const AcDbEntity *entity : transient.highlighted())
            walk(*entity, kHighlightColor);
        flush();
        m_penWidth = 2.5;
        for (const TransientPath &path : transient.temporary())
            walkPath(path.vertices, path.closed, path.color);
        flush();
    }

    void paint(const AcDbEntity &entity, int color, double width)
    {
        m_penWidth = width;
        walk(entity, color);
        flush();
    }

private:
    bool isVisible(const QPointF &a, const QPointF &b) const
    {
        return std::max(a.x(), b.x()) >= m_visible.minX && std::min(a.x(), b.x()) <= m_visible.maxX &&
               std::max(a.y(), b.y()) >= m_visible.minY && std::min(a.y(), b.y()) <= m_visible.maxY;
    }

    void line(const QPointF &a, const QPointF &b, int color) override
    {
        if (!isVisible(a, b))
            return;
        auto &lines = m_lines[color];
        lines.append(QLineF(m_view.toView(a.x(), a.y()), m_view.toView(b.x(), b.y())));
        if (lines.size() >= kMostWaitingLines)
            flush();
    }

    void wideLine(const QPointF &a, const QPointF &b, double width, int color) override
    {
        const double pixels = width * m_view.pixelsPerUnit;
        if (pixels <= m_penWidth)
            return line(a, b, color);
        flush();
        m_painter.setPen(QPen(m_style.color(color), pixels, Qt::SolidLine, Qt::FlatCap));
        m_painter.drawLine(m_view.toView(a.x(), a.y()), m_view.toView(b.x(), b.y()));
    }

    void fill(const QPainterPath &path, int color) override
    {
        flush();
        QColor fill = m_style.color(color);
        fill.setAlpha(kSolidAlpha);
        m_painter.fillPath(m_view.transform().map(path), fill);
    }

    void text(const TextShape &shape, const PlaneMap &map, int color) override
    {
        if (!m_texts.isVisible(shape, map, m_visible))
            return;
        flush(); // texts and lines keep their order
        m_texts.paint(m_painter, shape, map, m_style.color(color));
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
    TextPainter m_texts;
    double m_penWidth = 1.0;
    std::map<int, QVector<QLineF>> m_lines;
};

} // namespace

QColor PaintStyle::color(int index) const
{
    if (index == 7 || index == 0 || index == 256)
        return isDark() ? QColor(0xe8, 0xe8, 0xe8) : QColor(0x10, 0x10, 0x10);
    const std::uint32_t bgr = acedGetRGB(index);
    QColor color(static_cast<int>(bgr & 0xff), static_cast<int>(bgr >> 8 & 0xff), static_cast<int>(bgr >> 16 & 0xff));
    // The palette is made for a dark screen: its bright colours drown on paper.
    if (!isDark() && luminanceOf(color) > kBrightestOnPaper)
        color = color.darker(170);
    // Its dark ones, blue above all, drown on a ground that is not quite black.
    for (int part = 1; isDark() && luminanceOf(color) < kDarkestOnScreen; ++part) {
        const auto lighter = [&](int channel) { return channel + (255 - channel) * part / 20; };
        color = QColor(lighter(color.red()), lighter(color.green()), lighter(color.blue()));
    }
    return color;
}

void paintDrawing(QPainter &painter, Drawing &drawing, const ViewTransform &view, const PaintStyle &style)
{
    ScenePainter(painter, drawing, view, style).paint();
}

void paintEntity(QPainter &painter, const AcDbEntity &entity, int color, double width, Drawing &drawing,
                 const ViewTransform &view, const PaintStyle &style)
{
    ScenePainter(painter, drawing, view, style).paint(entity, color, width);
}

Extents visibleExtents(const Drawing &drawing)
{
    Extents all;
    for (const AcDbEntity *entity : drawing.modelSpace().entities())
        if (isShown(drawing, *entity))
            all.add(extentsOf(*entity));
    return all;
}

} // namespace velmor
