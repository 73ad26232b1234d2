// The boundary command in a drawing of 20,000 lines: the first time, when the linework is not indexed yet, and again.
//
// A town's parcels, streets and cables; each run asks for the region around another section. Ends with 1 when the
// first run takes longer than a person would wait for (two seconds), or when no region was found.
#include "bench/MadeTown.h"
#include "host/editor/CommandStack.h"
#include "host/editor/Session.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>

using namespace velmor;

namespace {

double secondsSince(std::chrono::steady_clock::time_point begun)
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begun).count();
}

std::unique_ptr<AcDbEntity> entityOf(const boundary::Piece &piece)
{
    return std::make_unique<AcDbPolyline>(
        std::vector<AcDbPolyline::Vertex>{{piece.a.x, piece.a.y, piece.bulge}, {piece.b.x, piece.b.y, 0.0}}, false);
}

} // namespace

int main(int argc, char **argv)
{
    constexpr double kLongestFirst = 2.0;
    constexpr int kMore = 20;
    const std::size_t lines = argc > 1 ? std::strtoull(argv[1], nullptr, 10) : 20000;
    const bench::MadeTown town = bench::TownMaker(lines, 1).make();
    auto drawing = Drawing::createNew();
    for (const boundary::Piece &piece : town.pieces)
        drawing->append(entityOf(piece));
    Session session;
    session.setMessageSink({});
    session.setDrawing(std::move(drawing));
    const auto &entities = session.drawing()->modelSpace().entities();

    double first = 0.0, later = 0.0;
    std::size_t found = 0;
    for (int i = 0; i <= kMore; ++i) {
        const boundary::Point &seed = town.sections[static_cast<std::size_t>(i) % town.sections.size()];
        const double point[3] = {seed.x, seed.y, 0.0};
        const std::size_t before = entities.size();
        const auto begun = std::chrono::steady_clock::now();
        acedCommand(RTSTR, L"_-BOUNDARY", RTPOINT, point, RTSTR, L"", RTNONE);
        const double taken = secondsSince(begun);
        i == 0 ? first = taken : later = std::max(later, taken);
        found += entities.size() > before;
    }
    std::printf("boundary command over %zu lines: first %.1f ms, later at most %.2f ms, regions found %zu of %d\n",
                lines, first * 1e3, later * 1e3, found, kMore + 1);
    return first <= kLongestFirst && found > 0 ? 0 : 1;
}
