#include "host/editor/Plot.h"

#include "host/drawing/dxf/AtomicFile.h"
#include "host/editor/Asker.h"
#include "host/editor/DrawingUnits.h"
#include "host/editor/Painter.h"
#include "host/services/Messages.h"

#include <QBuffer>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>

#include <algorithm>
#include <cmath>

namespace velmor {

namespace {

constexpr double kMargin = 10.0, kTitleHeight = 9.0, kTitleText = 3.2; ///< millimetres
constexpr double kNorthSize = 14.0;
constexpr double kLineWidth = 0.1; ///< of all lines; also what is too small to be drawn
constexpr int kPdfDotsPerInch = 1200;
constexpr double kMillimetresPerInch = 25.4;

/// The next denominator from n upwards that a ruler shows: 1, 2, 2.5, 5, 10, 20, ...
double usualScale(double n)
{
    const double power = std::pow(10.0, std::floor(std::log10(n)));
    for (const double step : {1.0, 2.0, 2.5, 5.0})
        if (step * power >= n * (1.0 - 1e-9))
            return step * power;
    return 10.0 * power;
}

void paintNorth(QPainter &painter, const QRectF &frame)
{
    const double x = frame.right() - kNorthSize / 2.0, top = frame.top() + 2.0, bottom = top + kNorthSize;
    painter.setPen(QPen(Qt::black, 0.25));
    painter.setBrush(Qt::NoBrush);
    painter.drawLine(QLineF(x, bottom, x, top));
    painter.setBrush(Qt::black);
    painter.drawPolygon(QPolygonF({{x, top}, {x - 1.6, top + 5.0}, {x + 1.6, top + 5.0}}));
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setPixelSize(4);
    painter.setFont(font);
    painter.drawText(QRectF(x + 1.0, top + 5.0, 6.0, 5.0), Qt::AlignLeft | Qt::AlignVCenter,
                     QString::fromStdWString(uiText("ui.plot.north")));
}

void paintTitle(QPainter &painter, const PlotSettings &settings, const PlotPlan &plan)
{
    painter.setPen(QPen(Qt::black, 0.25));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(plan.title);
    // A font of a few pixels is hinted out of shape; so it is set large and made small.
    constexpr double kFontPixels = 100.0;
    const double factor = kTitleText / kFontPixels;
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setPixelSize(static_cast<int>(kFontPixels));
    painter.save();
    painter.translate(plan.title.topLeft());
    painter.scale(factor, factor);
    painter.setFont(font);
    const QRectF inside(kFontPixels, 0.0, plan.title.width() / factor - 2.0 * kFontPixels,
                        plan.title.height() / factor);
    const QString scale =
        QString::fromStdWString(uiText("ui.plot.scale")) + QLatin1Char(' ') + scaleText(plan.denominator);
    const QString file =
        painter.fontMetrics().elidedText(settings.file, Qt::ElideMiddle, static_cast<int>(inside.width() * 0.5));
    painter.drawText(inside, Qt::AlignLeft | Qt::AlignVCenter, file);
    painter.drawText(inside, Qt::AlignHCenter | Qt::AlignVCenter, scale);
    painter.drawText(inside, Qt::AlignRight | Qt::AlignVCenter, settings.date);
    painter.restore();
}

} // namespace

QString scaleText(double denominator)
{
    return QStringLiteral("1:") + QString::fromStdWString(realText(denominator, 3));
}

std::optional<PlotPlan> planPlot(const Drawing &drawing, const PlotSettings &settings)
{
    const Extents shown = settings.window ? *settings.window : visibleExtents(drawing);
    if (shown.isEmpty())
        return std::nullopt;
    PlotPlan plan;
    plan.paper = QPageSize(settings.paper).size(QPageSize::Millimeter);
    if (settings.orientation == QPageLayout::Landscape)
        plan.paper.transpose();
    plan.frame = QRectF(QPointF(), plan.paper).adjusted(kMargin, kMargin, -kMargin, -kMargin);
    if (settings.title) {
        plan.title = plan.frame;
        plan.title.setTop(plan.frame.bottom() - kTitleHeight);
        plan.frame.setBottom(plan.title.top());
    }
    const double millimetres = metresPerUnit(drawing) * 1000.0; // of a unit on the ground
    const double width = (shown.maxX - shown.minX) * millimetres, height = (shown.maxY - shown.minY) * millimetres;
    const double needed = std::max(width / plan.frame.width(), height / plan.frame.height());
    plan.denominator = settings.denominator > 0.0 ? settings.denominator : needed > 0.0 ? usualScale(needed) : 1.0;
    plan.fits = needed <= plan.denominator * (1.0 + 1e-9);
    plan.millimetresPerUnit = millimetres / plan.denominator;
    plan.centerX = (shown.minX + shown.maxX) / 2.0;
    plan.centerY = (shown.minY + shown.maxY) / 2.0;
    return plan;
}

void paintPlot(QPainter &painter, Drawing &drawing, const PlotSettings &settings, const PlotPlan &plan,
               double dotsPerMillimetre)
{
    painter.save();
    painter.scale(dotsPerMillimetre, dotsPerMillimetre);
    painter.save();
    painter.setClipRect(plan.frame);
    painter.translate(plan.frame.topLeft());
    painter.scale(kLineWidth, kLineWidth); // a pixel of the view is a line's width
    ViewTransform view;
    view.size = plan.frame.size() / kLineWidth;
    view.centerX = plan.centerX;
    view.centerY = plan.centerY;
    view.pixelsPerUnit = plan.millimetresPerUnit / kLineWidth;
    paintDrawing(painter, drawing, view, PaintStyle::light());
    painter.restore();
    painter.setPen(QPen(Qt::black, 0.25));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(plan.frame);
    if (settings.north)
        paintNorth(painter, plan.frame);
    if (settings.title)
        paintTitle(painter, settings, plan);
    painter.restore();
}

SaveResult savePdf(Drawing &drawing, const std::filesystem::path &file, const PlotSettings &settings,
                   const PlotPlan &plan)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    {
        QPdfWriter writer(&buffer);
        writer.setResolution(kPdfDotsPerInch);
        writer.setPageSize(QPageSize(settings.paper));
        writer.setPageOrientation(settings.orientation);
        writer.setPageMargins(QMarginsF());
        writer.setTitle(settings.file);
        writer.setCreator(QStringLiteral("Velmor"));
        QPainter painter;
        if (!painter.begin(&writer))
            return {FileStatus::NotWritable, uiLine("ui.plot.failed", {file.string()})};
        paintPlot(painter, drawing, settings, plan, kPdfDotsPerInch / kMillimetresPerInch);
    }
    buffer.close();
    const std::string_view pieces[] = {{bytes.constData(), static_cast<std::size_t>(bytes.size())}};
    return writeFileAtomically(file, pieces, false);
}

} // namespace velmor
