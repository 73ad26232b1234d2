// Regions against the referee on real networks and drawings.
#include "tests/host/boundary/RealLines.h"
#include "tests/host/boundary/Referee.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

using namespace velmor::boundary;
using namespace velmor::boundary::testing;

namespace {

/// Points that a person might pick: near the middle of faces, and scattered around the linework.
std::vector<Point> picks(const Referee &referee, const std::vector<Piece> &pieces, std::size_t count)
{
    std::vector<Point> points = referee.insidePoints(count / 2);
    std::mt19937_64 random(4711);
    std::normal_distribution<double> step(0.0, 1.0);
    while (points.size() < count) {
        const Piece &piece = pieces[random() % pieces.size()];
        const double away = std::hypot(piece.b.x - piece.a.x, piece.b.y - piece.a.y) * 0.5 + 0.1;
        points.push_back(
            {(piece.a.x + piece.b.x) / 2 + away * step(random), (piece.a.y + piece.b.y) / 2 + away * step(random)});
    }
    return points;
}

void judgeLinework(const std::string &name, const std::vector<Piece> &pieces, std::size_t count, const Chords &chords,
                   bool isWelded = false)
{
    ASSERT_FALSE(pieces.empty()) << name;
    Linework lines(pieces);
    const Referee referee(isWelded ? welded(pieces, lines.nodeTolerance()) : pieces, chords);
    const Verdict v = compare(lines, referee, picks(referee, pieces, count));
    std::printf(
        "%s: %zu pieces, %zu faces, %zu points, %zu found, %zu on an edge, %zu not judged, %zu wrong, worst %.1e; "
        "%zu differ by moved nodes, the widest face of them %.1e\n",
        name.c_str(), pieces.size(), referee.faces(), v.points, v.found, v.onEdge, v.unjudged, v.wrong, v.worst,
        v.moved, v.widestMoved);
    EXPECT_EQ(v.wrong, 0U) << name << ' ' << v.firstWrong;
    EXPECT_GT(v.found * 5, v.points) << name;
    EXPECT_LT(v.unjudged * 50, v.points) << name;
    // A node may move by the tolerance; that shows beyond the millionth part only in slivers.
    EXPECT_LT(v.widestMoved, 0.05) << name;
}

class RealLines : public ::testing::TestWithParam<const char *> {
protected:
    void SetUp() override
    {
        if (dataFolder().empty())
            GTEST_SKIP() << "no folder of shared data (VELMOR_DATA_DIR)";
    }
};

using RealNetwork = RealLines;
using RealDrawing = RealLines;
using RealDrawingWithArcs = RealLines;

} // namespace

TEST(ExampleTown, RegionsAgreeWithTheReferee)
{
    const auto plan = std::filesystem::path(std::getenv("VELMOR_SOURCE_DIR")) / "examples" / "town_plan.dxf";
    judgeLinework("town_plan.dxf", piecesOfDrawing(plan), 5000, {.rise = 1e-6}, true);
}

TEST_P(RealNetwork, RegionsOfItsPolygonsAgreeWithTheReferee)
{
    judgeLinework(GetParam(), piecesOf(polygonsOf(dataFolder() / GetParam())), 2000, {});
}

INSTANTIATE_TEST_SUITE_P(All, RealNetwork,
                         ::testing::Values("net_bellinge_small.inp", "net_epa_site_drainage_ft.inp",
                                           "net_cos_reduced_inlets.inp", "net_311_conduits_ft.inp",
                                           "net_522_conduits_holes_ft.inp", "net_ajax_1984_conduits.inp"));

TEST_P(RealDrawing, RegionsAgreeWithTheReferee)
{
    judgeLinework(GetParam(), piecesOfDrawing(dataFolder() / GetParam()), 5000, {.perQuarter = 64});
}

INSTANTIATE_TEST_SUITE_P(Straight, RealDrawing,
                         ::testing::Values("dwg_nanaimo_sewers_R2000_cp1250.dxf", "dwg_cadastre_100k_R12.dxf"));

TEST_P(RealDrawingWithArcs, RegionsAgreeWithTheReferee)
{
    // Lines and arcs there meet within 1e-10 only, which the referee would take for gaps.
    judgeLinework(GetParam(), piecesOfDrawing(dataFolder() / GetParam()), 5000, {.rise = 1e-5}, true);
}

INSTANTIATE_TEST_SUITE_P(Curved, RealDrawingWithArcs,
                         ::testing::Values("dwg_bulges_R2000.dxf", "dwg_loose_loops_R2013.dxf"));
