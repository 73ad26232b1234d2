// What the example town promises of itself: which sections lie in which closed regions of its boundary layer.
#include "geometry/ZEMCBoundary.h"

#include "host/drawing/Drawing.h"
#include "host/editor/Session.h"
#include "host/network/Network.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <filesystem>
#include <map>
#include <set>

namespace {

std::filesystem::path example(const char *name)
{
    const char *folder = std::getenv("VELMOR_SOURCE_DIR");
    return std::filesystem::path(folder ? folder : ".") / "examples" / name;
}

} // namespace

TEST(ExampleTown, EverySectionButTwoLiesInAClosedRegionOfTheBoundaryLayer)
{
    velmor::Session session;
    session.setMessageSink({});
    velmor::LoadResult plan = velmor::Drawing::load(example("town_plan.dxf"));
    ASSERT_NE(plan.drawing, nullptr) << plan.message;
    EXPECT_TRUE(plan.report.findings.empty());
    EXPECT_TRUE(plan.report.unread.empty());
    session.setDrawing(std::move(plan.drawing));
    velmor::Drawing &drawing = *session.drawing();
    const auto imported = velmor::importInp(drawing, example("town.inp"));
    ASSERT_TRUE(imported) << imported.message;
    EXPECT_EQ(imported.sections, 70u);
    EXPECT_EQ(imported.nodes, 71u);

    ads_name set = {0, 0};
    ASSERT_EQ(acedSSAdd(nullptr, nullptr, set), RTNORM);
    for (AcDbEntity *entity : drawing.modelSpace().entities()) {
        if (entity->layer() != L"Granice slivova")
            continue;
        ads_name name;
        ASSERT_EQ(acdbGetAdsName(name, entity->objectId()), Acad::eOk);
        acedSSAdd(name, set, set);
    }

    std::map<std::pair<double, double>, int> sectionsByCentre;
    std::vector<std::wstring> outside;
    std::size_t islands = 0;
    for (const auto &section : drawing.component<velmor::Network>().sections()) {
        const AcGePoint3d a = section->GetStartPoint(), b = section->GetEndPoint();
        AcDbObjectId boundary;
        AcDbObjectIdArray others;
        if (!CZEMCBoundary::CreateBoundary({(a.x + b.x) / 2, (a.y + b.y) / 2}, boundary, others, set)) {
            outside.push_back(section->GetName());
            continue;
        }
        EXPECT_TRUE(CZEMCBoundary::IsSectionInside(boundary, section->GetObjectId()));
        AcGePoint3d centre;
        ASSERT_TRUE(CZEMCBoundary::GetCentroid(centre, boundary));
        if (sectionsByCentre[{centre.x, centre.y}]++ == 0)
            islands += others.size();
    }
    acedSSFree(set);

    EXPECT_EQ(outside.size(), 2u);
    EXPECT_EQ(sectionsByCentre.size(), 58u);
    EXPECT_EQ(islands, 8u);
    std::map<int, int> regionsBySections;
    for (const auto &[centre, sections] : sectionsByCentre)
        ++regionsBySections[sections];
    EXPECT_EQ(regionsBySections, (std::map<int, int>{{1, 49}, {2, 8}, {3, 1}}));
}
