// The picture of a drawing that a view keeps, and what lies over it.
//
// The base picture holds the drawing alone. A view that moves by whole pixels shifts it and paints the strips that came
// in; a change of the drawing paints anew where it shows. Highlights, the selection, marks and temporary drawing are a
// picture of their own, so they never touch the base.
#pragma once

#include "host/drawing/Transient.h"
#include "host/editor/Painter.h"
#include "host/editor/Selection.h"
#include "host/editor/ViewTransform.h"

#include <QImage>

#include <optional>
#include <unordered_set>
#include <vector>

namespace velmor {

class ViewPicture {
public:
    /// How often what was painted, since the object was made; for tests and benchmarks.
    struct Counts {
        std::size_t full = 0;          ///< all of the base
        std::size_t strips = 0;        ///< parts of the base that came in by moving
        std::size_t patches = 0;       ///< parts of the base that changed
        std::size_t overlays = 0;      ///< all that lies over the base
        std::size_t overlayStrips = 0; ///< parts of that which came in by moving
    };

    /// The base picture as it is to be shown now; ratio: device pixels for a pixel of the view. The answer is valid
    /// until the next call.
    const QImage &base(Drawing &drawing, const ViewTransform &view, const PaintStyle &style, double ratio);
    /// What lies over it, on a transparent ground; a null image when that is nothing. Picked: entities that look as the
    /// selection does.
    const QImage &overlay(Drawing &drawing, const ViewTransform &view, const PaintStyle &style, double ratio,
                          const std::vector<const AcDbEntity *> &picked = {});
    /// Forgets both, as for another drawing.
    void reset();
    const Counts &counts() const { return m_counts; }

    /// Image pixels of a view at a ratio.
    static QSize imageSize(const QSizeF &size, double ratio) { return (size * ratio).toSize(); }

private:
    struct Shown { ///< what a picture goes by
        const Drawing *drawing = nullptr;
        double centerX = 0.0, centerY = 0.0, pixelsPerUnit = 0.0, ratio = 1.0;
        QSizeF size;
        QRgb background = 0;
        bool operator==(const Shown &) const = default;
    };
    static Shown shownOf(const Drawing &drawing, const ViewTransform &view, const PaintStyle &style, double ratio);
    /// Moves a picture to the view: the parts of it that came in and are still to be painted, or no value when all is.
    static std::optional<std::vector<QRect>> moved(QImage &image, Shown &shown, const Shown &wanted);
    void paintOverlay(const QRect &part, Drawing &drawing, const ViewTransform &view, const PaintStyle &style,
                      const std::vector<const AcDbEntity *> &picked);
    /// Where entities came out or went that were blanked since, as extents.
    Extents blankedSince(Drawing &drawing);

    Counts m_counts;
    QImage m_base, m_overlay;
    Shown m_baseShown, m_overlayShown;
    std::uint64_t m_baseRevision = 0, m_baseTransient = 0;
    std::unordered_set<const AcDbEntity *> m_blanked; ///< left out of the base
    std::uint64_t m_overlayRevisions[3] = {0, 0, 0};  ///< of transient graphics, selection, drawing
    std::vector<const AcDbEntity *> m_overlayPicked;
};

} // namespace velmor
