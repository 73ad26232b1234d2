// Frames of a made town, side by side with the toolkit's own drawing of the same lines in the same run:
//   frames [SEGMENTS...]
// For each size: a frame at full extent against one drawLines call over all segments; a frame of a zoomed-in window
// against drawing just what is visible in it; a step of panning; what lies under the pointer; memory. Times are the
// processor's and the best of several, so what else runs on the machine hardly counts.
#include "bench/MadeTown.h"
#include "host/drawing/Drawing.h"
#include "host/editor/DisplayIndex.h"
#include "host/editor/FramePainter.h"

#include <QApplication>
#include <QPainter>

#include <malloc.h>

#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <functional>

using namespace velmor;

namespace {

constexpr int kWidth = 1600, kHeight = 1000;
constexpr double kWindow = 400.0; ///< units across, of the zoomed-in window

double now()
{
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) * 1e-6;
}

/// Milliseconds of the fastest of several runs.
double fastest(int runs, const std::function<void()> &work)
{
    double best = 1e300;
    for (int i = 0; i < runs; ++i) {
        const double start = now();
        work();
        best = std::min(best, now() - start);
    }
    return best;
}

double heapMegabytes()
{
    const auto info = mallinfo2();
    return static_cast<double>(info.uordblks + info.hblkhd) / 1e6;
}

std::unique_ptr<Drawing> drawingOf(const bench::MadeTown &town)
{
    auto drawing = Drawing::createNew();
    int color = 0;
    for (const boundary::Piece &piece : town.pieces) {
        std::unique_ptr<AcDbEntity> entity;
        if (piece.bulge == 0.0)
            entity = std::make_unique<AcDbLine>(AcGePoint3d(piece.a.x, piece.a.y), AcGePoint3d(piece.b.x, piece.b.y));
        else
            entity = std::make_unique<AcDbPolyline>(
                std::vector<AcDbPolyline::Vertex>{{piece.a.x, piece.a.y, piece.bulge}, {piece.b.x, piece.b.y, 0.0}},
                false);
        AcDbEntity &added = *entity;
        drawing->append(std::move(entity));
        drawing->setColorOf(added, 1 + color++ % 6);
    }
    return drawing;
}

QVector<QLineF> linesOf(const bench::MadeTown &town, const ViewTransform &view, bool onlyVisible)
{
    Extents part = view.visible();
    QVector<QLineF> lines;
    for (const boundary::Piece &piece : town.pieces) {
        Extents box;
        box.add(piece.a.x, piece.a.y);
        box.add(piece.b.x, piece.b.y);
        if (!onlyVisible || DisplayIndex::meets(box, part))
            lines.append(QLineF(view.toView(piece.a.x, piece.a.y), view.toView(piece.b.x, piece.b.y)));
    }
    return lines;
}

double drawLinesTime(const QVector<QLineF> &lines, bool smooth)
{
    QImage image(kWidth, kHeight, QImage::Format_RGB32);
    return fastest(5, [&] {
        image.fill(Qt::white);
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing, smooth);
        painter.setPen(QPen(Qt::black, 1.0, Qt::SolidLine, Qt::FlatCap));
        painter.drawLines(lines);
    });
}

double report(std::size_t segments)
{
    const bench::MadeTown town = bench::TownMaker(segments, 1).make();
    const double before = heapMegabytes();
    const auto drawing = drawingOf(town);
    const double withDrawing = heapMegabytes();
    auto &index = drawing->component<DisplayIndex>();
    double start = now();
    index.revision();
    const double built = now() - start;
    const double withScene = heapMegabytes();

    ViewTransform view;
    view.size = {kWidth, kHeight};
    view.show(index.visibleExtents());
    QImage image(kWidth, kHeight, QImage::Format_RGB32);
    const PaintStyle style = PaintStyle::light();
    FrameCounts counts;
    const double full = fastest(7, [&] { counts = paintFrame(image, image.rect(), *drawing, view, style); });
    if (std::getenv("FRAMES_PICTURES"))
        image.save(QStringLiteral("full_%1.png").arg(segments));
    const auto all = linesOf(town, view, false);
    const double fullLines = drawLinesTime(all, true), fullRough = drawLinesTime(all, false);
    const double strip =
        fastest(7, [&] { paintFrame(image, QRect(0, 0, kWidth / 10, kHeight), *drawing, view, style); });

    ViewTransform window = view;
    window.centerX = town.sections.front().x;
    window.centerY = town.sections.front().y;
    window.pixelsPerUnit = kWidth / kWindow;
    const double zoomed = fastest(15, [&] { paintFrame(image, image.rect(), *drawing, window, style); });
    if (std::getenv("FRAMES_PICTURES"))
        image.save(QStringLiteral("window_%1.png").arg(segments));
    const auto visible = linesOf(town, window, true);
    const double zoomedLines = drawLinesTime(visible, true), zoomedRough = drawLinesTime(visible, false);

    std::printf("%8zu segments, %d x %d pixels\n", segments, kWidth, kHeight);
    std::printf("  index built in            %9.2f ms\n", built);
    std::printf("  full extent, a frame      %9.2f ms  (%zu lines, %zu dots)\n", full, counts.lines, counts.dots);
    std::printf("    one drawLines, smooth   %9.2f ms  frame / drawLines %.2f\n", fullLines, full / fullLines);
    std::printf("    one drawLines, rough    %9.2f ms  frame / drawLines %.2f\n", fullRough, full / fullRough);
    std::printf("    a step of a tenth       %9.2f ms\n", strip);
    std::printf("  window of %.0f, a frame    %9.2f ms  (%lld segments visible)\n", kWindow, zoomed,
                static_cast<long long>(visible.size()));
    std::printf("    drawLines, smooth       %9.2f ms  frame / drawLines %.2f\n", zoomedLines, zoomed / zoomedLines);
    std::printf("    drawLines, rough        %9.2f ms  frame / drawLines %.2f\n", zoomedRough, zoomed / zoomedRough);
    const double bytes = (withScene - before) * 1e6 / static_cast<double>(segments);
    std::printf("  memory a segment          %9.0f bytes (scene %.0f)\n", bytes,
                (withScene - withDrawing) * 1e6 / static_cast<double>(segments));
    return zoomed;
}

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    std::vector<std::size_t> sizes;
    for (int i = 1; i < argc; ++i)
        sizes.push_back(std::strtoull(argv[i], nullptr, 10));
    if (sizes.empty())
        sizes = {10'000, 100'000, 1'000'000};
    std::vector<double> windows;
    for (const std::size_t size : sizes)
        windows.push_back(report(size));
    std::printf("window frame, largest over smallest drawing: %.2f\n", windows.back() / windows.front());
    return 0;
}
