// Regions against GEOS on a made town, as ratios in one run:
//   boundary_against_geos [SEGMENTS...] [--no-geos]
// GEOS nodes all linework (OverlayNGRobust), makes polygons of it (Polygonizer) and keeps a tree of them; then the
// 2,000 points are looked up. Ours builds its index and traces the same 2,000 regions with islands and true arcs. Each
// leg runs in a process of its own, so that its peak of memory can be told.
#include "bench/MadeTown.h"
#include "tests/host/boundary/Referee.h"

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <ctime>
#include <functional>
#include <string>

using namespace velmor;
using namespace velmor::boundary;

namespace {

/// Time of the processor: what else runs on the machine does not count.
double now()
{
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

double secondsSince(double start)
{
    return now() - start;
}

struct Leg {
    double seconds[6] = {};
    double peakMegabytes = 0.0;
    std::size_t found = 0;
};

double peakMegabytes()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return static_cast<double>(usage.ru_maxrss) / 1024.0;
}

/// Runs the leg in a child process; its peak is what it needs beyond what it started with.
Leg apart(const std::function<void(Leg &)> &run)
{
    int ends[2];
    if (pipe(ends) != 0)
        return {};
    const pid_t child = fork();
    if (child == 0) {
        Leg leg;
        run(leg);
        leg.peakMegabytes = peakMegabytes();
        const ssize_t written = write(ends[1], &leg, sizeof leg);
        _exit(written == sizeof leg ? 0 : 1);
    }
    Leg leg;
    const ssize_t got = read(ends[0], &leg, sizeof leg);
    close(ends[0]);
    close(ends[1]);
    waitpid(child, nullptr, 0);
    return got == sizeof leg ? leg : Leg{};
}

constexpr std::size_t kPoints = 2000, kOpen = 130;

/// Answers 2,000 points; `open` of them lie in no region.
double traceAll(Linework &lines, const bench::MadeTown &town, std::size_t open, std::size_t &found)
{
    const auto start = now();
    for (std::size_t i = 0; i < kPoints; ++i) {
        // The open ones are spread evenly.
        const bool isOpen = open > 0 && i * open / kPoints != (i + 1) * open / kPoints;
        const std::vector<Point> &points = isOpen ? town.openSections : town.sections;
        found += lines.regionAt(points[i % points.size()], {.islands = true}) ? 1 : 0;
    }
    return secondsSince(start);
}

void ours(Leg &leg, std::size_t segments)
{
    bench::MadeTown town = bench::makeTown(segments, 1);
    auto start = now();
    Linework lines(std::move(town.pieces));
    leg.seconds[0] = secondsSince(start);
    leg.seconds[1] = traceAll(lines, town, 0, leg.found);
    std::fprintf(stderr, "  ours keeps %.1f MB\n", static_cast<double>(lines.memoryBytes()) / 1e6);
}

void oursWithOpen(Leg &leg, std::size_t segments)
{
    const bench::MadeTown town = bench::makeTown(segments, 1);
    Linework lines(town.pieces);
    auto start = now();
    const Region region = lines.regionAt(town.openSections[0]);
    leg.seconds[0] = secondsSince(start); // one alone
    leg.found = region ? 1 : 0;
    start = now();
    Linework again(town.pieces);
    leg.seconds[1] = secondsSince(start);
    leg.seconds[2] = traceAll(again, town, kOpen, leg.found);
}

/// One open point in the worst place: between the teeth of combs that all hang together, whose one outline runs along
/// every piece twice.
void oneInCombs(Leg &leg, std::size_t segments)
{
    std::vector<Piece> pieces;
    const int rows = static_cast<int>(std::sqrt(segments / 2.0)), teeth = rows;
    for (int row = 0; row < rows; ++row) {
        pieces.push_back({{0.0, row * 10.0}, {0.0, row * 10.0 + 10.0}, 0.0, 0});
        for (int i = 0; i < teeth; ++i) {
            pieces.push_back({{i * 10.0, row * 10.0}, {i * 10.0 + 10.0, row * 10.0}, 0.0, 0});
            pieces.push_back({{i * 10.0 + 5.0, row * 10.0}, {i * 10.0 + 5.0, row * 10.0 + 7.0}, 0.0, 0});
        }
    }
    Linework lines(std::move(pieces));
    lines.regionAt({-1e6, -1e6});
    const double start = now();
    const Region region = lines.regionAt({teeth * 5.0 + 2.0, rows * 5.0 + 2.0});
    leg.seconds[0] = secondsSince(start);
    leg.found = region ? 1 : 0;
}

void geos(Leg &leg, std::size_t segments)
{
    const bench::MadeTown town = bench::makeTown(segments, 1);
    const auto start = now();
    const boundary::testing::Referee referee(town.pieces, {.perQuarter = 8});
    leg.seconds[0] = secondsSince(start);
    const auto second = now();
    for (std::size_t i = 0; i < kPoints; ++i)
        leg.found += referee.hasFace(town.sections[i % town.sections.size()]) ? 1 : 0;
    leg.seconds[1] = secondsSince(second);
}

void townAlone(Leg &, std::size_t segments)
{
    const bench::MadeTown town = bench::makeTown(segments, 1);
}

/// Seconds for a pick at a place where nothing was asked before: the best mean of some rounds of as many picks.
double freshPick(std::size_t segments, std::size_t picks)
{
    const bench::MadeTown town = bench::makeTown(segments, 1);
    Linework lines(town.pieces);
    double best = 1e9;
    for (std::size_t round = 0; round < 40; ++round) {
        // A stray piece far away makes it forget.
        const double x = 500000.0 + static_cast<double>(round);
        lines.insert(std::vector<Piece>{{{x, 0.0}, {x, 1.0}, 0.0, 0}});
        lines.regionAt({0.0, 0.0});
        const double start = now();
        for (std::size_t i = 0; i < picks; ++i)
            lines.regionAt(town.sections[(round * picks + i) % town.sections.size()], {.islands = true});
        best = std::min(best, secondsSince(start) / static_cast<double>(picks));
    }
    return best;
}

} // namespace

int main(int argc, char **argv)
{
    std::vector<std::size_t> sizes;
    bool withGeos = true;
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--no-geos") == 0)
            withGeos = false;
        else
            sizes.push_back(std::stoul(argv[i]));
    }
    if (sizes.empty())
        sizes = {100000};
    for (const std::size_t n : sizes) {
        std::printf("%zu segments\n", n);
        std::fflush(stdout);
        const Leg base = apart([n](Leg &leg) { townAlone(leg, n); });
        const Leg own = apart([n](Leg &leg) { ours(leg, n); });
        const Leg open = apart([n](Leg &leg) { oursWithOpen(leg, n); });
        const Leg combs = apart([n](Leg &leg) { oneInCombs(leg, n); });
        const double total = own.seconds[0] + own.seconds[1];
        std::printf("  index %.1f ms, 2000 regions %.1f ms (%zu found), together %.1f ms\n", own.seconds[0] * 1e3,
                    own.seconds[1] * 1e3, own.found, total * 1e3);
        std::printf("  with %zu open ones %.1f ms (%zu found): %.2f times; one open alone %.2f ms\n", kOpen,
                    (open.seconds[1] + open.seconds[2]) * 1e3, open.found, (open.seconds[1] + open.seconds[2]) / total,
                    open.seconds[0] * 1e3);
        std::printf("  one open alone in combs that hang together %.2f ms\n", combs.seconds[0] * 1e3);
        std::printf("  peak %.0f MB, of which the pieces handed in %.0f MB\n", own.peakMegabytes, base.peakMegabytes);
        if (withGeos) {
            const Leg other = apart([n](Leg &leg) { geos(leg, n); });
            const double theirs = other.seconds[0] + other.seconds[1];
            std::printf("  GEOS noding and polygons %.2f s, 2000 look-ups %.1f ms (%zu found), peak %.0f MB\n",
                        other.seconds[0], other.seconds[1] * 1e3, other.found, other.peakMegabytes);
            std::printf("  ratio of time %.4f, of memory %.3f\n", total / theirs,
                        own.peakMegabytes / other.peakMegabytes);
        }
        std::fflush(stdout);
    }
    constexpr std::size_t kPicks = 80; // all that the small town has
    for (const std::size_t n : sizes) {
        // In turns, so that a busy moment of the machine does not fall on one of them alone.
        double small = 1e9, pick = 1e9;
        for (int turn = 0; turn < 3; ++turn) {
            small = std::min(small, freshPick(10000, kPicks));
            pick = std::min(pick, freshPick(n, kPicks));
        }
        std::printf("a pick: %.2f us at 10000, %.2f us at %zu: %.2f times\n", small * 1e6, pick * 1e6, n, pick / small);
    }
    return 0;
}
