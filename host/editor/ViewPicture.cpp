#include "host/editor/ViewPicture.h"

#include "host/editor/DisplayIndex.h"
#include "host/editor/FramePainter.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <utility>

namespace velmor {

namespace {

constexpr double kWholePixel = 0.02; ///< how far from a whole number of pixels a move may be
constexpr double kPatchMargin = 4.0; ///< pixels around what changed
constexpr double kOverlayWidth = 3.0;

/// Moves the content; what comes in keeps what was there.
void scroll(QImage &image, int dx, int dy)
{
    const int width = image.width() - std::abs(dx), height = image.height() - std::abs(dy);
    const auto bytes = static_cast<std::size_t>(width) * 4;
    const int fromX = std::max(0, -dx), toX = std::max(0, dx);
    const int fromY = std::max(0, -dy), toY = std::max(0, dy);
    uchar *bits = image.bits();
    const auto stride = image.bytesPerLine();
    for (int i = 0; i < height; ++i) {
        const int row = dy > 0 ? height - 1 - i : i; // never over what is still to be moved
        std::memmove(bits + (toY + row) * stride + toX * 4, bits + (fromY + row) * stride + fromX * 4, bytes);
    }
}

} // namespace

ViewPicture::Shown ViewPicture::shownOf(const Drawing &drawing, const ViewTransform &view, const PaintStyle &style,
                                        double ratio)
{
    return {&drawing, view.centerX, view.centerY, view.pixelsPerUnit, ratio, view.size, style.background.rgb()};
}

void ViewPicture::reset()
{
    m_base = {};
    m_overlay = {};
    m_baseShown = m_overlayShown = {};
    m_blanked.clear();
    m_baseTransient = 0;
}

std::optional<std::vector<QRect>> ViewPicture::moved(QImage &image, Shown &shown, const Shown &wanted)
{
    Shown same = shown;
    same.centerX = wanted.centerX;
    same.centerY = wanted.centerY;
    if (image.isNull() || same != wanted)
        return std::nullopt;
    const double scale = wanted.pixelsPerUnit * wanted.ratio;
    const double x = (shown.centerX - wanted.centerX) * scale, y = (wanted.centerY - shown.centerY) * scale;
    if (std::abs(x) >= image.width() || std::abs(y) >= image.height() || std::abs(x - std::round(x)) > kWholePixel ||
        std::abs(y - std::round(y)) > kWholePixel)
        return std::nullopt;
    const int dx = static_cast<int>(std::round(x)), dy = static_cast<int>(std::round(y));
    std::vector<QRect> strips;
    if (dx == 0 && dy == 0)
        return strips;
    scroll(image, dx, dy);
    shown = wanted;
    const int width = image.width(), height = image.height();
    const QRect across(0, dy > 0 ? 0 : height + dy, width, std::abs(dy));
    const QRect along(dx > 0 ? 0 : width + dx, std::max(0, dy), std::abs(dx), height - std::abs(dy));
    for (const QRect &strip : {across, along})
        if (!strip.isEmpty())
            strips.push_back(strip);
    return strips;
}

Extents ViewPicture::blankedSince(Drawing &drawing)
{
    Extents extents;
    const auto &transient = drawing.component<TransientGraphics>();
    if (std::exchange(m_baseTransient, transient.revision()) == transient.revision() ||
        m_blanked == transient.blanked())
        return extents;
    const auto addMissing = [&](const auto &from, const auto &in) {
        for (const AcDbEntity *entity : from)
            if (!in.contains(entity))
                extents.add(extentsOf(*entity));
    };
    addMissing(m_blanked, transient.blanked());
    addMissing(transient.blanked(), m_blanked);
    m_blanked = transient.blanked();
    return extents;
}

const QImage &ViewPicture::base(Drawing &drawing, const ViewTransform &view, const PaintStyle &style, double ratio)
{
    auto &index = drawing.component<DisplayIndex>();
    const Shown wanted = shownOf(drawing, view, style, ratio);
    const std::uint64_t revision = index.revision();
    auto changes = index.changedSince(m_baseRevision);
    const Extents blanked = blankedSince(drawing);
    if (changes)
        changes->add(blanked);
    const auto strips = changes ? moved(m_base, m_baseShown, wanted) : std::nullopt;
    for (const QRect &strip : strips.value_or(std::vector<QRect>())) {
        paintFrame(m_base, strip, drawing, view, style);
        ++m_counts.strips;
    }
    if (!strips) {
        const QSize size = imageSize(view.size, ratio);
        if (m_base.size() != size)
            m_base = QImage(size, QImage::Format_RGB32);
        m_base.setDevicePixelRatio(ratio);
        paintFrame(m_base, m_base.rect(), drawing, view, style);
        m_baseShown = wanted;
        ++m_counts.full;
    } else if (!changes->isEmpty()) {
        const QPointF a = view.toView(changes->minX, changes->maxY), b = view.toView(changes->maxX, changes->minY);
        const QRectF seen = QRectF(a, b).adjusted(-kPatchMargin, -kPatchMargin, kPatchMargin, kPatchMargin) &
                            QRectF(QPointF(), view.size);
        if (!seen.isEmpty()) {
            paintFrame(m_base, QRectF(seen.topLeft() * ratio, seen.size() * ratio).toAlignedRect(), drawing, view,
                       style);
            ++m_counts.patches;
        }
    }
    m_baseRevision = revision;
    return m_base;
}

const QImage &ViewPicture::overlay(Drawing &drawing, const ViewTransform &view, const PaintStyle &style, double ratio,
                                   const std::vector<const AcDbEntity *> &picked)
{
    const auto &transient = drawing.component<TransientGraphics>();
    const auto &selection = drawing.component<Selection>();
    if (transient.marks().empty() && transient.temporary().empty() && transient.highlighted().empty() &&
        selection.isEmpty() && picked.empty()) {
        m_overlay = {};
        return m_overlay;
    }
    const Shown wanted = shownOf(drawing, view, style, ratio);
    const std::uint64_t revisions[3] = {transient.revision(), selection.revision(),
                                        drawing.component<DisplayIndex>().revision()};
    if (!m_overlay.isNull() && std::ranges::equal(revisions, m_overlayRevisions) && picked == m_overlayPicked) {
        if (const auto strips = moved(m_overlay, m_overlayShown, wanted)) {
            for (const QRect &strip : *strips) {
                paintOverlay(strip, drawing, view, style, picked);
                ++m_counts.overlayStrips;
            }
            return m_overlay;
        }
    }
    ++m_counts.overlays;
    m_overlayShown = wanted;
    std::ranges::copy(revisions, m_overlayRevisions);
    m_overlayPicked = picked;
    const QSize size = imageSize(view.size, ratio);
    if (m_overlay.size() != size)
        m_overlay = QImage(size, QImage::Format_ARGB32_Premultiplied);
    m_overlay.setDevicePixelRatio(ratio);
    paintOverlay(m_overlay.rect(), drawing, view, style, picked);
    return m_overlay;
}

void ViewPicture::paintOverlay(const QRect &part, Drawing &drawing, const ViewTransform &view, const PaintStyle &style,
                               const std::vector<const AcDbEntity *> &picked)
{
    for (int y = part.top(); y <= part.bottom(); ++y) {
        auto *row = reinterpret_cast<QRgb *>(m_overlay.scanLine(y));
        std::fill(row + part.left(), row + part.right() + 1, QRgb{0});
    }
    const auto &transient = drawing.component<TransientGraphics>();
    paintMarks(m_overlay, part, drawing, view, style);
    const auto &selection = drawing.component<Selection>();
    paintSelection(m_overlay, part, selection, kSelectionColor, kOverlayWidth, drawing, view, style);
    paintOver(m_overlay, part, picked, kSelectionColor, kOverlayWidth, drawing, view, style);
    paintOver(m_overlay, part, transient.highlighted(), kHighlightColor, kOverlayWidth, drawing, view, style);
    paintTemporary(m_overlay, part, drawing, view, style);
}

} // namespace velmor
