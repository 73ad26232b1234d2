// Paints the visible part of a drawing into an image for the screen, from the display index.
#pragma once

#include "host/drawing/Drawing.h"
#include "host/drawing/HatchPattern.h"
#include "host/drawing/Transient.h"
#include "host/editor/Painter.h"
#include "host/editor/Selection.h"
#include "host/editor/ViewTransform.h"

#include <QImage>
#include <QRect>

#include <cstddef>
#include <vector>

namespace velmor {

/// What a frame took; for tests and benchmarks.
struct FrameCounts {
    std::size_t lines = 0; ///< drawn as lines
    std::size_t dots = 0;  ///< too small for more than a dot
    std::size_t texts = 0;
};

/// Paints model space into a part of the image (a rectangle of its own pixels), whose former content there goes. The
/// image has 32 bits a pixel; its device pixel ratio says how many of its pixels are one of the view's. What falls in
/// one pixel is drawn once. Filled areas lie below lines, texts above them. A picture painted in parts is the same as
/// one painted whole.
/// REQUIRES: image.size() == view.size * ratio.
FrameCounts paintFrame(QImage &image, const QRect &part, Drawing &drawing, const ViewTransform &view,
                       const PaintStyle &style);

/// Paints some entities into a part of the image, over what is there, in one colour and with a wide pen; the image may
/// be transparent.
void paintOver(QImage &image, const QRect &part, const std::vector<const AcDbEntity *> &entities, int color,
               double width, Drawing &drawing, const ViewTransform &view, const PaintStyle &style);

/// The same for those members of a selection that the part shows, at a cost that follows what lies in the part.
void paintSelection(QImage &image, const QRect &part, const Selection &selection, int color, double width,
                    Drawing &drawing, const ViewTransform &view, const PaintStyle &style);

/// Paints the drawing's marks: their outlines, and their patterns as far as the part shows them. Lines that could not
/// be told apart are thinned, so the time goes by the picture and not by the scale of a pattern.
void paintMarks(QImage &image, const QRect &part, Drawing &drawing, const ViewTransform &view, const PaintStyle &style);
/// Paints the drawing's temporary drawing.
void paintTemporary(QImage &image, const QRect &part, Drawing &drawing, const ViewTransform &view,
                    const PaintStyle &style);

} // namespace velmor
