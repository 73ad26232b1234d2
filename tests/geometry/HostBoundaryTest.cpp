// CZEMCBoundary driving the embedded host's own boundary command.
#include "geometry/ZEMCBoundary.h"

#include "host/drawing/Drawing.h"
#include "host/drawing/Journal.h"
#include "host/editor/Session.h"
#include "host/network/NetworkData.h"

#include <gmock/gmock.h>

#include <cmath>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using velmor::Journal;

class HostBoundary : public testing::Test {
protected:
    HostBoundary()
    {
        session.setMessageSink({});
        session.setDrawing(velmor::Drawing::createNew());
    }
    ~HostBoundary() override { Journal::instance().setRecording(false); }

    velmor::Drawing &drawing() { return *session.drawing(); }
    AcDbObjectId square(double x, double y, double side)
    {
        return drawing().append(std::make_unique<AcDbPolyline>(
            std::vector<AcDbPolyline::Vertex>{{x, y, 0}, {x + side, y, 0}, {x + side, y + side, 0}, {x, y + side, 0}},
            true));
    }
    AcDbObjectId line(double x1, double y1, double x2, double y2)
    {
        return drawing().append(std::make_unique<AcDbLine>(AcGePoint3d(x1, y1), AcGePoint3d(x2, y2)));
    }
    std::vector<AcDbPolyline::Vertex> vertices(AcDbObjectId id)
    {
        const CZEMCPolylineLWPtr opened(id, AcDb::kForRead);
        return opened.isOpen() ? opened.polyline()->vertices() : std::vector<AcDbPolyline::Vertex>();
    }
    double area(AcDbObjectId id)
    {
        double found = -1.0;
        EXPECT_TRUE(CZEMCBoundary::GetArea(found, id));
        return found;
    }

    velmor::Session session;
    const ads_name nothing = {0, 0};
    AcDbObjectId boundary;
    AcDbObjectIdArray others;
};

/// A set of the host with these members, freed at its end.
class Picked {
public:
    explicit Picked(const AcDbObjectIdArray &ids)
    {
        acedSSAdd(nullptr, nullptr, name);
        for (const AcDbObjectId &id : ids) {
            ads_name entity;
            acdbGetAdsName(entity, id);
            acedSSAdd(entity, name, name);
        }
    }
    ~Picked() { acedSSFree(name); }
    Picked(const Picked &) = delete;
    Picked &operator=(const Picked &) = delete;
    ads_name name = {0, 0};
};

} // namespace

TEST_F(HostBoundary, ARingGivesItsOuterOutlineAndTheInnerOneAmongTheOthers)
{
    square(0, 0, 10);
    square(4, 4, 2);
    ASSERT_TRUE(CZEMCBoundary::CreateBoundary({1, 1, 0}, boundary, others, nothing));
    EXPECT_DOUBLE_EQ(area(boundary), 100);
    ASSERT_THAT(others, SizeIs(1));
    EXPECT_DOUBLE_EQ(area(others[0]), 4);
}

TEST_F(HostBoundary, WithoutIslandsThereIsOneOutline)
{
    square(0, 0, 10);
    square(4, 4, 2);
    const auto before = drawing().modelSpace().entities().size();
    ASSERT_TRUE(CZEMCBoundary::CreateBoundary({1, 1, 0}, boundary, nothing));
    EXPECT_DOUBLE_EQ(area(boundary), 100);
    EXPECT_EQ(drawing().modelSpace().entities().size(), before + 1);
}

TEST_F(HostBoundary, OnlyTheSetBoundsWhenThereIsOne)
{
    const AcDbObjectId outer = square(0, 0, 10);
    line(5, -1, 5, 11);
    ASSERT_TRUE(CZEMCBoundary::CreateBoundary({1, 1, 0}, boundary, others, nothing));
    EXPECT_NEAR(area(boundary), 50, 1e-9);
    const Picked set({outer});
    // What the first run drew would bound as well, but it is not in the set.
    ASSERT_TRUE(CZEMCBoundary::CreateBoundary({1, 1, 0}, boundary, others, set.name));
    EXPECT_NEAR(area(boundary), 100, 1e-9);
    ASSERT_TRUE(CZEMCBoundary::CreateBoundary({1, 1, 0}, boundary, set.name));
    EXPECT_NEAR(area(boundary), 100, 1e-9);
}

TEST_F(HostBoundary, APointInNoClosedRegionGivesNothing)
{
    line(0, 0, 10, 0);
    line(10, 0, 10, 10);
    line(10, 10, 0, 10);
    EXPECT_FALSE(CZEMCBoundary::CreateBoundary({5, 5, 0}, boundary, others, nothing));
    EXPECT_FALSE(CZEMCBoundary::CreateBoundary({5, 5, 0}, boundary, nothing));
    EXPECT_FALSE(CZEMCBoundary::CreateBoundary({50, 50, 0}, boundary, others, nothing));
    EXPECT_TRUE(boundary.isNull());
    EXPECT_THAT(others, IsEmpty());
    EXPECT_EQ(drawing().modelSpace().entities().size(), 3u);
    EXPECT_THAT(session.alerts(), IsEmpty());
}

TEST_F(HostBoundary, CornersLieAtCrossingsAndArcsStayArcs)
{
    line(-1, 0, 11, 0);
    line(10, -1, 10, 5);
    line(0, -1, 0, 5);
    drawing().append(std::make_unique<AcDbArc>(AcGePoint3d(5, 5), 5.0, 0.0, std::acos(-1.0)));
    ASSERT_TRUE(CZEMCBoundary::CreateBoundary({5, 1, 0}, boundary, others, nothing));
    EXPECT_NEAR(area(boundary), 50 + 12.5 * std::acos(-1.0), 1e-9);
    const auto ring = vertices(boundary);
    int bulges = 0;
    for (const auto &vertex : ring)
        bulges += vertex.bulge != 0.0;
    EXPECT_EQ(bulges, 1);
    EXPECT_EQ(ring.size(), 4u);
}

TEST_F(HostBoundary, TheSamePointGivesTheSameVerticesEachTime)
{
    square(0, 0, 10);
    line(5, -1, 5, 11);
    line(-1, 5, 11, 5);
    ASSERT_TRUE(CZEMCBoundary::CreateBoundary({1, 1, 0}, boundary, others, nothing));
    const auto first = vertices(boundary);
    AcGePoint3d firstCentre, centre;
    ASSERT_TRUE(CZEMCBoundary::GetCentroid(firstCentre, boundary));
    for (int run = 0; run < 2; ++run) {
        // The outline of the last run lies in the drawing now and coincides with what bounds.
        ASSERT_TRUE(CZEMCBoundary::CreateBoundary({1.5, 2, 0}, boundary, others, nothing));
        EXPECT_EQ(vertices(boundary), first);
        ASSERT_TRUE(CZEMCBoundary::GetCentroid(centre, boundary));
        EXPECT_EQ(centre.x, firstCentre.x);
        EXPECT_EQ(centre.y, firstCentre.y);
        EXPECT_THAT(others, IsEmpty());
    }
}

TEST_F(HostBoundary, SeveralPointsGiveTheLargestRegionAndTheRest)
{
    square(0, 0, 10);
    square(20, 0, 30);
    ASSERT_TRUE(CZEMCBoundary::CreateBoundary(AcGePoint3dArray{{1, 1, 0}, {21, 1, 0}}, boundary, others, nothing));
    EXPECT_DOUBLE_EQ(area(boundary), 900);
    ASSERT_THAT(others, SizeIs(1));
    EXPECT_DOUBLE_EQ(area(others[0]), 100);
    const Picked set({square(100, 0, 5)});
    others.clear();
    ASSERT_TRUE(CZEMCBoundary::CreateBoundary(AcGePoint3dArray{{101, 1, 0}}, boundary, others, set.name));
    EXPECT_DOUBLE_EQ(area(boundary), 25);
}

TEST_F(HostBoundary, RegionsAreNotMade)
{
    square(0, 0, 10);
    square(20, 0, 30);
    EXPECT_FALSE(CZEMCBoundary::CreateBoundary(AcGePoint3dArray{{1, 1, 0}, {21, 1, 0}}, boundary, nothing));
    EXPECT_TRUE(boundary.isNull());
}

TEST_F(HostBoundary, TheHostTakesEveryArgumentOfThePointForms)
{
    const AcDbObjectId outer = square(0, 0, 10);
    const Picked set({outer});
    const ads_point point = {1, 1, 0};
    const std::int64_t *const picks = set.name;
    EXPECT_EQ(acedCommand(RTSTR, L"_-BOUNDARY", RTSTR, L"_A", RTSTR, L"_B", RTSTR, L"_N", RTPICKS, picks, RTSTR, L"",
                          RTSTR, L"_I", RTSTR, L"_Y", RTSTR, L"", RT3DPOINT, point, RTSTR, L"", RTNONE),
              RTNORM);
    EXPECT_EQ(acedCommand(RTSTR, L"_-BOUNDARY", RTSTR, L"_A", RTSTR, L"_I", RTSTR, L"_N", RTSTR, L"", RTSTR, L"",
                          RT3DPOINT, point, RTSTR, L"", RTNONE),
              RTNORM);
}

TEST_F(HostBoundary, TheJournalShowsTheDialogueAsItStands)
{
    square(0, 0, 10);
    Journal::instance().setRecording(true);
    CZEMCBoundary::CreateBoundary({1, 2, 0}, boundary, nothing);
    std::vector<std::vector<std::string>> commands;
    for (const velmor::JournalEntry &entry : Journal::instance().entries()) {
        if (entry.operation == "acedCommand")
            commands.push_back(entry.arguments);
    }
    ASSERT_THAT(commands, SizeIs(1));
    EXPECT_THAT(commands[0], ElementsAre("_-BOUNDARY", "_A", "_I", "_N", "", "", "1,2,0", ""));
}

TEST_F(HostBoundary, ASectionOfTheNetworkIsInsideByItsMiddle)
{
    const AcDbObjectId region = square(0, 0, 10);
    const auto section = [&](double x1, double x2) {
        const AcDbObjectId id = line(x1, 5, x2, 5);
        AcDbEntity *entity = nullptr;
        EXPECT_EQ(acdbOpenAcDbEntity(entity, id, AcDb::kForWrite), Acad::eOk);
        velmor::SectionData data;
        data.guid = L"{" + std::to_wstring(x1) + L"}";
        data.name = L"D1";
        drawing().setData(*entity, velmor::kSectionKey, velmor::itemsOf(data));
        entity->close();
        return id;
    };
    EXPECT_TRUE(CZEMCBoundary::IsSectionInside(region, section(-5, 11)));
    EXPECT_FALSE(CZEMCBoundary::IsSectionInside(region, section(1, 21)));
    EXPECT_FALSE(CZEMCBoundary::IsSectionInside(region, line(1, 5, 9, 5))) << "no section";
}
