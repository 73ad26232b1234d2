// The boundary command as its callers count on it: what comes of a point, live and in a reopened drawing.
#include "tests/contracts/ContractsFixture.h"

#include "contracts/CatchmentArea.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace velmor::test {
namespace {

using testing::ElementsAre;

class BoundaryContract : public ContractsFixture {
protected:
    using Vertices = std::vector<AcDbPolyline::Vertex>;
    /// The polylines that one call makes.
    std::vector<const AcDbPolyline *> run(double x, double y, bool islands = true, const std::int64_t *set = nullptr)
    {
        const ads_point point = {x, y, 0};
        const std::size_t before = drawing().modelSpace().entities().size();
        const wchar_t *yes = islands ? L"_Y" : L"_N";
        if (set)
            status = islands ? acedCommand(RTSTR, L"_-BOUNDARY", RTSTR, L"_A", RTSTR, L"_B", RTSTR, L"_N", RTPICKS, set,
                                           RTSTR, L"", RTSTR, L"_I", RTSTR, yes, RTSTR, L"", RT3DPOINT, point, RTSTR,
                                           L"", RTNONE)
                             : acedCommand(RTSTR, L"_-BOUNDARY", RTSTR, L"_A", RTSTR, L"_B", RTSTR, L"_N", RTPICKS, set,
                                           RTSTR, L"", RTSTR, L"_I", RTSTR, yes, RTSTR, L"", RTSTR, L"", RT3DPOINT,
                                           point, RTSTR, L"", RTNONE);
        else
            status = islands ? acedCommand(RTSTR, L"_-BOUNDARY", RTSTR, L"_A", RTSTR, L"_I", RTSTR, yes, RTSTR, L"",
                                           RT3DPOINT, point, RTSTR, L"", RTNONE)
                             : acedCommand(RTSTR, L"_-BOUNDARY", RTSTR, L"_A", RTSTR, L"_I", RTSTR, yes, RTSTR, L"",
                                           RTSTR, L"", RT3DPOINT, point, RTSTR, L"", RTNONE);
        std::vector<const AcDbPolyline *> made;
        const auto &all = drawing().modelSpace().entities();
        for (std::size_t i = before; i < all.size(); ++i) {
            EXPECT_EQ(all[i]->isA(), AcDbPolyline::desc()) << "of the exact class";
            made.push_back(static_cast<const AcDbPolyline *>(all[i]));
            EXPECT_TRUE(made.back()->isClosed());
            EXPECT_EQ(all[i]->layer(), drawing().layer(drawing().currentLayer()).name);
        }
        return made;
    }
    static double areaOf(const AcDbPolyline &polyline)
    {
        double area = 0.0;
        EXPECT_EQ(polyline.getArea(area), Acad::eOk);
        return area;
    }
    static std::vector<double> areasOf(const std::vector<const AcDbPolyline *> &made)
    {
        std::vector<double> areas;
        for (const auto *polyline : made)
            areas.push_back(std::round(areaOf(*polyline) * 1e6) / 1e6);
        return areas;
    }
    void eraseAll(const std::vector<const AcDbPolyline *> &made)
    {
        for (const auto *polyline : made)
            drawing().erase(const_cast<AcDbPolyline &>(*polyline));
    }
    int status = 0;
};

TEST_F(BoundaryContract, APointInASquareGivesItsFourCornersExactly)
{
    const double x = 5071234.123, y = 4870000.457;
    line(x, y, x + 10.001, y), line(x + 10.001, y, x + 10.001, y + 10), line(x + 10.001, y + 10, x, y + 10),
        line(x, y + 10, x, y);
    reopen();
    const auto made = run(x + 1, y + 1);
    ASSERT_EQ(made.size(), 1u);
    Vertices vertices = made[0]->vertices();
    ASSERT_EQ(vertices.size(), 4u);
    const std::array<std::array<double, 2>, 4> corners{{{x, y}, {x + 10.001, y}, {x + 10.001, y + 10}, {x, y + 10}}};
    for (const auto &corner : corners)
        EXPECT_TRUE(std::ranges::any_of(vertices, [&](const auto &v) { return v.x == corner[0] && v.y == corner[1]; }));
    EXPECT_TRUE(made[0]->isOnlyLines());
}

TEST_F(BoundaryContract, LinesThatOverrunTheirCornersAreCutAtTheCrossingsAndArcsKeepTheirBulge)
{
    line(-5, 0, 15, 0), line(10, -5, 10, 10), line(0, -5, 0, 10);
    drawing().append(std::make_unique<AcDbArc>(AcGePoint3d(5, 10), 5.0, 0.0, 3.14159265358979323846));
    reopen();
    const auto made = run(5, 5);
    ASSERT_EQ(made.size(), 1u);
    EXPECT_NEAR(areaOf(*made[0]), 100.0 + 12.5 * 3.14159265358979323846, 1e-9);
    int arcs = 0;
    for (const auto &vertex : made[0]->vertices()) {
        arcs += vertex.bulge != 0.0;
        EXPECT_TRUE((std::abs(vertex.x) < 1e-9 || std::abs(vertex.x - 10) < 1e-9) &&
                    (std::abs(vertex.y) < 1e-9 || std::abs(vertex.y - 10) < 1e-9));
    }
    EXPECT_GE(arcs, 1);
}

TEST_F(BoundaryContract, IslandsComeWithTheOptionAndOnlyOfTheFirstLevel)
{
    box(0, 0, 100, 100), box(20, 20, 60, 60), box(30, 30, 40, 40);
    box(80, 80, 90, 90); // two that touch in a corner
    box(70, 70, 80, 80);
    reopen();
    EXPECT_THAT(areasOf(run(5, 5, false)), ElementsAre(10000.0));
    eraseAll({static_cast<const AcDbPolyline *>(entities().back())});
    auto areas = areasOf(run(5, 5, true));
    ASSERT_FALSE(areas.empty());
    EXPECT_EQ(areas.front(), 10000.0);
    double islands = 0.0;
    for (std::size_t i = 1; i < areas.size(); ++i)
        islands += areas[i];
    EXPECT_EQ(islands, 1600.0 + 100.0 + 100.0) << "not the one inside an island";
}

TEST_F(BoundaryContract, AnIslandThatTouchesTheOutlineInOnePointLeavesTheRegionWhole)
{
    box(0, 0, 100, 100);
    drawing().append(
        std::make_unique<AcDbPolyline>(std::vector<AcDbPolyline::Vertex>{{0, 50, 0}, {20, 40, 0}, {20, 60, 0}}, true));
    reopen();
    const auto areas = areasOf(run(50, 50));
    ASSERT_FALSE(areas.empty());
    // Decided: what hangs at the outline in one point is either an island of its own or a dent in the outline; in both
    // cases the area of the region is the square less the triangle.
    double net = areas.front();
    for (std::size_t i = 1; i < areas.size(); ++i)
        net -= areas[i];
    EXPECT_NEAR(net, 10000.0 - 200.0, 1e-6);
}

TEST_F(BoundaryContract, WhereNothingIsEnclosedNothingIsMadeAndNobodyIsHeldUp)
{
    box(0, 0, 10, 10);
    line(50, 0, 60, 0), line(60, 0, 60, 10); // open
    reopen();
    const std::size_t before = entities().size();
    const std::array<std::array<double, 2>, 4> places{{{5, 0}, {55, 5}, {1e7, 1e7}, {-3, -3}}};
    for (const auto &[x, y] : places) {
        EXPECT_TRUE(run(x, y).empty()) << x << "," << y;
        EXPECT_EQ(status, RTNORM);
    }
    EXPECT_EQ(entities().size(), before);
    EXPECT_TRUE(session.alerts().empty());
}

TEST_F(BoundaryContract, OnlyTheSetBoundsAndWithoutOneOnlyWhatIsVisible)
{
    const AcDbObjectId outer = box(0, 0, 100, 100);
    const AcDbObjectId cut = line(50, -10, 50, 110);
    drawing().setLayerOf(entityOf(cut), drawing().ensureLayer(L"CUT"));
    const std::wstring outerHandle = handleTextOf(outer);
    for (const bool afterwards : {false, true}) {
        if (afterwards)
            reopen();
        ads_name set, name;
        ASSERT_EQ(acedSSAdd(nullptr, nullptr, set), RTNORM);
        acdbGetAdsName(name, byHandle(outerHandle));
        acedSSAdd(name, set, set);
        auto made = run(10, 10, true, set);
        EXPECT_THAT(areasOf(made), ElementsAre(10000.0)) << "the line outside of the set does not bound";
        eraseAll(made);
        acedSSFree(set);
        made = run(10, 10);
        EXPECT_THAT(areasOf(made), ElementsAre(5000.0));
        eraseAll(made);
        Layer layer = drawing().layer(*drawing().findLayer(L"CUT"));
        layer.on = false;
        drawing().setLayer(*drawing().findLayer(L"CUT"), layer);
        made = run(10, 10);
        EXPECT_THAT(areasOf(made), ElementsAre(10000.0)) << "a layer that is off does not bound";
        eraseAll(made);
        layer.on = true;
        drawing().setLayer(*drawing().findLayer(L"CUT"), layer);
    }
}

TEST_F(BoundaryContract, TheSamePointGivesTheSamePolylineHoweverOftenAlsoOverASavedAreasOutline)
{
    line(-5, 0, 25, 0), line(20, -5, 20, 25), line(25, 20, -5, 20), line(0, 25, 0, -5);
    reopen();
    const auto first = run(10, 10);
    ASSERT_EQ(first.size(), 1u);
    const Vertices vertices = first[0]->vertices();
    for (int again = 0; again < 3; ++again) { // none of them is erased: their outlines coincide
        const auto made = run(10, 10);
        ASSERT_EQ(made.size(), 1u);
        EXPECT_EQ(made[0]->vertices(), vertices);
    }
    ASSERT_TRUE(ZEMGis::Sewage::CCatchmentAreaManager::Instance()->CreateCA(
        L"POLYGON ((0 0, 20 0, 20 20, 0 20, 0 0))", L"a", 1,
        boost::shared_ptr<ZEMGis::Data::CProperties>(new ZEMGis::Data::CProperties)));
    const auto made = run(10, 10);
    ASSERT_EQ(made.size(), 1u);
    EXPECT_EQ(made[0]->vertices(), vertices);
    reopen();
    const auto later = run(10, 10);
    ASSERT_EQ(later.size(), 1u);
    EXPECT_EQ(later[0]->vertices(), vertices);
}

TEST_F(BoundaryContract, SmallAndLargeRegionsFarFromTheOriginAmongManyLines)
{
    const double x = 5000000.001, y = 5000000.002;
    box(x, y, x + 1000, y + 1000);     // 100 hectares
    box(x + 2000, y, x + 2001, y + 1); // one square metre
    for (int i = 0; i < 20000; ++i)
        line(x + 3000 + i % 200, y + i / 200, x + 3000.5 + i % 200, y + i / 200);
    reopen();
    EXPECT_NEAR(areaOf(*run(x + 500, y + 500).at(0)), 1e6, 1e-3);
    EXPECT_NEAR(areaOf(*run(x + 2000.5, y + 0.5).at(0)), 1.0, 1e-8);
    EXPECT_TRUE(run(x + 3000.25, y + 0.5).empty());
}

TEST_F(BoundaryContract, OldPolylinesAndBlockReferencesBound)
{
    drawing().append(
        std::make_unique<AcDb2dPolyline>(std::vector<AcDbPolyline::Vertex>{{0, 0, 0}, {10, 0, 0}, {10, 10, 0}}, false));
    drawing().append(std::make_unique<AcDb3dPolyline>(std::vector<AcGePoint3d>{{10, 10, 3}, {0, 10, 4}}, false));
    BlockRecord &block = drawing().addBlock(L"SIDE");
    drawing().append(std::make_unique<AcDbLine>(AcGePoint3d(0, 0), AcGePoint3d(0, 10)), block);
    drawing().append(std::make_unique<AcDbBlockReference>(idOf(block), AcDbBlockReference::Placement{}));
    reopen();
    EXPECT_THAT(areasOf(run(5, 5)), ElementsAre(100.0));
}

TEST_F(BoundaryContract, AGapOfAMillimetreStaysOpenUntilTheVariableAllowsIt)
{
    line(0, 0, 10, 0), line(10, 0, 10, 10), line(10, 10, 0, 10), line(0, 10, 0, 0.001);
    reopen();
    EXPECT_TRUE(run(5, 5).empty());
    resbuf gap;
    gap.restype = RTREAL;
    gap.resval.rreal = 0.002;
    ASSERT_EQ(acedSetVar(L"HPGAPTOL", &gap), RTNORM);
    EXPECT_EQ(run(5, 5).size(), 1u);
}

TEST_F(BoundaryContract, TwoHundredRunsLeaveNoSetsBehind)
{
    for (int i = 0; i <= 20; ++i)
        line(i * 10, 0, i * 10, 100), line(0, i * 5, 200, i * 5);
    reopen();
    std::size_t made = 0;
    for (int i = 0; i < 200; ++i) {
        ads_name set;
        ASSERT_EQ(acedSSGet(L"X", nullptr, nullptr, nullptr, set), RTNORM);
        const auto found = run(i % 20 * 10 + 5, i / 20 * 10 + 2, true, set);
        made += found.size();
        eraseAll(found);
        EXPECT_EQ(acedSSFree(set), RTNORM);
    }
    EXPECT_EQ(made, 200u);
    EXPECT_EQ(session.selectionSets().size(), 0u);
}

} // namespace
} // namespace velmor::test
