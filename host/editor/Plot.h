// A drawing on paper, to scale.
//
// A page has a frame with the drawing, a north arrow in the frame's corner, and below it a line with the file, the
// scale and the date. Lengths on paper are millimetres from its upper left corner, y down.
#pragma once

#include "host/drawing/Drawing.h"

#include <QPageLayout>
#include <QRectF>
#include <QString>

#include <filesystem>
#include <optional>

class QPainter;

namespace velmor {

struct PlotSettings {
    QPageSize::PageSizeId paper = QPageSize::A4;
    QPageLayout::Orientation orientation = QPageLayout::Landscape;
    std::optional<Extents> window = {}; ///< what is shown; none: everything visible
    double denominator = 0.0;           ///< n of 1:n; 0: the largest usual scale at which everything shown fits
    bool title = true, north = true;
    QString file = {}, date = {}; ///< of the title line
};

/// Where the drawing comes to stand.
struct PlotPlan {
    QSizeF paper;             ///< turned as it is printed
    QRectF frame;             ///< of the drawing
    QRectF title;             ///< of the line below; empty without one
    double denominator = 1.0; ///< n of 1:n
    double millimetresPerUnit = 1.0;
    double centerX = 0.0, centerY = 0.0; ///< of the frame, in the drawing
    bool fits = true;                    ///< all that is to be shown lies in the frame

    /// Where a point of the drawing comes to stand on the paper.
    QPointF onPaper(double x, double y) const
    {
        return {frame.center().x() + (x - centerX) * millimetresPerUnit,
                frame.center().y() - (y - centerY) * millimetresPerUnit};
    }
};

/// Nothing for a drawing (or a window of it) in which there is nothing to show.
std::optional<PlotPlan> planPlot(const Drawing &drawing, const PlotSettings &settings);

/// Paints the page; one unit of the painter is dotsPerMillimetre dots. Lines come as lines.
void paintPlot(QPainter &painter, Drawing &drawing, const PlotSettings &settings, const PlotPlan &plan,
               double dotsPerMillimetre);

/// Writes the page as a PDF file: beside the old file, then over it. On failure the answer has a message of one line,
/// and an older file is as it was.
SaveResult savePdf(Drawing &drawing, const std::filesystem::path &file, const PlotSettings &settings,
                   const PlotPlan &plan);

/// Prints the page on the printer of that name. Nothing, or one line that says why not.
std::optional<std::wstring> printPlot(Drawing &drawing, const PlotSettings &settings, const PlotPlan &plan,
                                      const QString &printer);

/// What the title line calls the session's drawing.
QString plotFileName(const class Session &session);

/// "1:500", "1:2.5".
QString scaleText(double denominator);

} // namespace velmor
