// Frames of a made town, side by side with the toolkit's own drawing of the same lines in the same run:
//   frames [SEGMENTS...]
// For each size: a frame at full extent against one drawLines call over all segments; a frame of a zoomed-in window
// against drawing just what is visible in it; a step of panning; what lies under the pointer; memory. Times are the
// processor's and the best of several, so what else runs on the machine hardly counts. Ends with 1 when a figure is
// beyond its bound.
#include "bench/MadeTown.h"
#include "host/drawing/Drawing.h"
#include "host/editor/DisplayIndex.h"
#include "host/editor/FramePainter.h"
#include "host/editor/ObjectSnap.h"
#include "host/editor/Picking.h"
#include "host/editor/Selection.h"
#include "host/editor/ViewPicture.h"

#include <QApplication>
#include <QPainter>

#include <malloc.h>

#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <functional>
#include <random>

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

/// Says so when a figure is beyond its bound; the program then ends with 1.
bool isBeyond = false;
void bound(const char *what, double value, double most)
{
    if (value <= most)
        return;
    isBeyond = true;
    std::printf("  BEYOND ITS BOUND: %s is %.3f, at most %.3f is allowed\n", what, value, most);
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

    // A step of panning as the view does it: the picture is shifted, and what came in is painted.
    ViewPicture picture;
    ViewTransform moved = view;
    moved.pixelsPerUnit *= 2.5; // the town fills the view
    picture.base(*drawing, moved, style, 1.0);
    const auto slowestStep = [&](double pixels) {
        double slowest = 0.0;
        for (int i = 0; i < 12; ++i) {
            const double direction = i % 2 == 0 ? 1.0 : -1.0;
            const double begun = now();
            moved.panBy({direction * pixels, direction * std::round(0.6 * pixels)});
            picture.base(*drawing, moved, style, 1.0);
            slowest = std::max(slowest, now() - begun);
        }
        return slowest;
    };
    const double smallStep = slowestStep(16.0), largeStep = slowestStep(kWidth / 10);

    // What lies under the pointer, and snapping there, all over the view.
    constexpr int kPointers = 400;
    const auto pointers = [&](const ViewTransform &where, const std::function<void(const AcGePoint3d &)> &ask) {
        std::mt19937 random(7);
        std::uniform_real_distribution<double> across(0.0, kWidth), down(0.0, kHeight);
        std::pair<double, double> meanAndWorst{0.0, 0.0};
        for (int i = 0; i < kPointers; ++i) {
            const AcGePoint3d p = where.toWorld({across(random), down(random)});
            const double time = fastest(3, [&] { ask(p); });
            meanAndWorst.first += time / kPointers;
            meanAndWorst.second = std::max(meanAndWorst.second, time);
        }
        return meanAndWorst;
    };
    const auto under = [&](const ViewTransform &where) {
        return pointers(where, [&](const AcGePoint3d &p) { entityAt(*drawing, p, 6.0 / where.pixelsPerUnit); });
    };
    const auto snapped = [&](const ViewTransform &where) {
        return pointers(where, [&](const AcGePoint3d &p) {
            findSnap(*drawing, {p, 10.0 / where.pixelsPerUnit, 1023, AcGePoint3d(p.x + 50.0, p.y, 0.0)});
        });
    };

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
    std::printf("  a step of 16 pixels       %9.2f ms, of a tenth of the width %.2f ms  (%zu full frames)\n", smallStep,
                largeStep, picture.counts().full);
    std::printf("  window of %.0f, a frame    %9.2f ms  (%lld segments visible)\n", kWindow, zoomed,
                static_cast<long long>(visible.size()));
    std::printf("    drawLines, smooth       %9.2f ms  frame / drawLines %.2f\n", zoomedLines, zoomed / zoomedLines);
    std::printf("    drawLines, rough        %9.2f ms  frame / drawLines %.2f\n", zoomedRough, zoomed / zoomedRough);
    for (const auto &[name, where] : {std::pair{"full extent", view}, std::pair{"window", window}}) {
        const auto hit = under(where), snap = snapped(where);
        std::printf("  %-12s under the pointer %.3f ms (worst %.3f), all snaps %.3f ms (worst %.3f)\n", name, hit.first,
                    hit.second, snap.first, snap.second);
    }
    std::printf("  memory a segment, made    %9.0f bytes (scene %.0f)\n",
                (withScene - before) * 1e6 / static_cast<double>(segments),
                (withScene - withDrawing) * 1e6 / static_cast<double>(segments));
    std::string text = drawing->write();
    const double beforeReading = heapMegabytes() - static_cast<double>(text.capacity()) / 1e6;
    const auto read = Drawing::read(std::move(text)).drawing;
    read->component<DisplayIndex>().revision();
    const double bytesRead = (heapMegabytes() - beforeReading) * 1e6 / static_cast<double>(segments);
    std::printf("  memory a segment, read    %9.0f bytes (file text, drawing and scene)\n", bytesRead);

    // Panning with everything selected, and a step of the pointer while a window is drawn over what may be previewed.
    const AcDbObjectIdArray ids = entitiesIn(*drawing, index.visibleExtents(), SelectBy::Crossing);
    drawing->component<Selection>().set({ids.data(), ids.size()});
    picture.overlay(*drawing, moved, style, 1.0);
    double selectedStep = 0.0;
    for (int i = 0; i < 6; ++i) {
        moved.panBy({i % 2 == 0 ? 16.0 : -16.0, 10.0});
        const double begun = now();
        picture.base(*drawing, moved, style, 1.0);
        picture.overlay(*drawing, moved, style, 1.0);
        selectedStep = std::max(selectedStep, now() - begun);
    }
    std::printf("  a step of 16 pixels with all selected %.2f ms\n", selectedStep);

    // The bounds hold for a town of a million segments; a small one is little but the picture's own size.
    if (segments >= 1'000'000) {
        bound("a frame over one drawLines", full / fullLines, 0.5);
        bound("a step of panning, ms", std::max(smallStep, largeStep), 16.0);
        bound("a step of panning with all selected, ms", selectedStep, 16.0);
    }
    bound("a window's frame over drawLines of what is visible", zoomed / zoomedLines, 1.2);
    bound("under the pointer, ms", std::max(under(view).second, under(window).second), 1.0);
    bound("memory a segment, bytes", bytesRead, 400.0);
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
    const double growth = windows.back() / windows.front();
    std::printf("window frame, largest over smallest drawing: %.2f\n", growth);
    bound("a window's frame in the largest drawing over that in the smallest", growth, 1.5);
    return isBeyond ? 1 : 0;
}
