#include "tests/host/sewage/SavedWorld.h"

#include "geometry/Polygon.h"

#include <random>

namespace velmor::test {
namespace {

class Persistence : public SavedWorld {
protected:
    void saveAndLoad()
    {
        LoadResult loaded = Drawing::read(drawing().write());
        ASSERT_TRUE(loaded.drawing) << loaded.message;
        EXPECT_FALSE(loaded.report.damaged());
        session.setDrawing(std::move(loaded.drawing));
    }
};

TEST_P(Persistence, EveryAreaComesBackAsItWas)
{
    makeAreas();
    const auto recordsBefore = records();
    const auto ringsBefore = rings();
    const auto centresBefore = centres();
    const std::string jsonBefore = json();
    ASSERT_EQ(recordsBefore.size(), 5u);
    for (int round = 0; round < 2; ++round) {
        saveAndLoad();
        EXPECT_EQ(records(), recordsBefore);
        EXPECT_EQ(rings(), ringsBefore) << "the very doubles, in their order";
        EXPECT_EQ(centres(), centresBefore);
        EXPECT_EQ(json(), jsonBefore) << "sections, shares and handles too";
    }
}

TEST_P(Persistence, TheStoredPolylineIsStillClosedAndOnItsLayer)
{
    makeAreas();
    saveAndLoad();
    const AreaPtr area = manager().GetCatchmentAreaByGuid(L"{M}");
    ASSERT_TRUE(area);
    const AcDbEntity &entity = entityOf(area);
    EXPECT_EQ(entity.isA(), GetParam() ? AcDb2dPolyline::desc() : AcDbPolyline::desc());
    EXPECT_TRUE(static_cast<const AcDbCurve &>(entity).isClosed());
    EXPECT_EQ(entity.layer(), L"VELMOR_CATCHMENTS");
}

TEST_P(Persistence, ALabelIsStillTheAreasLabel)
{
    makeAreas();
    saveAndLoad();
    ASSERT_EQ(labelCount(), 2);
    EXPECT_NE(manager().DeleteCatchmentLabel(manager().GetCatchmentAreaByGuid(L"{M}")), 0);
    EXPECT_EQ(labelCount(), 1);
    manager().DeleteCA(manager().GetCatchmentAreaByGuid(L"{H}"));
    EXPECT_EQ(labelCount(), 0);
    saveAndLoad();
    EXPECT_EQ(labelCount(), 0);
    EXPECT_FALSE(manager().GetCatchmentAreaByGuid(L"{H}"));
}

TEST_P(Persistence, LoadedAreasCanBeChangedAndSavedAgain)
{
    makeAreas();
    saveAndLoad();
    const AreaPtr area = manager().GetCatchmentAreaByGuid(L"{I}");
    area->SetName(L"renamed");
    area->SetFlowCoeff(0.75);
    manager().AssignCA({{section(L"S3"), 1.0}}, area);
    manager().GetCatchmentAreaByGuid(L"{H}")->SetType(5);
    create(L"{N}", kSquare, L"new");
    const auto before = records();
    saveAndLoad();
    EXPECT_EQ(records(), before);
    EXPECT_EQ(namesBySection(L"S3"), (Names{L"renamed", L"S3_1"}));
    EXPECT_EQ(names(), (Names{L"Čakovec \"1\"", L"renamed", L"lost island", L"", L"S3_1", L"new"}));
}

TEST_P(Persistence, AnAreaOfManySectionsIsKeptWhole)
{
    const AreaPtr area = create(L"{G}", kSquare);
    std::string network = "[JUNCTIONS]\n[OUTFALLS]\nX 0 FREE\n[CONDUITS]\n", coordinates = "[COORDINATES]\nX 0 0\n";
    std::string junctions = "[JUNCTIONS]\n";
    for (int i = 0; i < 1500; ++i) {
        const std::string number = std::to_string(i);
        junctions += "N" + number + " 1 0\n";
        network += "P" + number + " N" + number + " X 10 0.01 0 0\n";
        coordinates += "N" + number + " " + number + " 900\n";
    }
    ASSERT_TRUE(importInpText(drawing(), junctions + network + coordinates, "many.inp"));
    SectionShares sections;
    for (int i = 0; i < 1500; ++i)
        sections.emplace_back(drawing().component<Network>().sectionByName(L"P" + std::to_wstring(i)), 1.0 / 1500.0);
    manager().AssignCA(sections, area);
    const auto before = records();
    saveAndLoad();
    EXPECT_EQ(records(), before);
    EXPECT_EQ(manager().GetCatchmentAreaByGuid(L"{G}")->GetConnectedSections(sections), 1500);
}

TEST_P(Persistence, TheCentreIsTheModulesCentreAfterSavingAndLoading)
{
    // What the definition dialog finds for the traced polyline, the store answers after a restart.
    std::mt19937_64 random(11);
    std::uniform_real_distribution<double> x(5.43e6, 5.44e6), offset(-60.0, 60.0), radius(3.0, 90.0);
    std::vector<CVertex> expected;
    for (int i = 0; i < 100; ++i) {
        AcGePoint3dArray points;
        CPolygon polygon;
        const double middleX = x(random), middleY = x(random);
        const int corners = 3 + i % 17, direction = i % 4 ? 1 : -1;
        for (int c = 0; c < corners; ++c) {
            const double angle = direction * 6.283185307179586 * c / corners, r = radius(random);
            points.emplace_back(middleX + r * std::cos(angle), middleY + r * std::sin(angle), 0.0);
            polygon.AddPoint({points.back().x, points.back().y, 0.0});
        }
        expected.push_back(polygon.Centroid());
        const std::wstring text =
            ZEMGis::Utility::CTransform::PolygonText(ZEMGis::Utility::CTransform::AcadPoly2GeosPoly(points));
        ASSERT_TRUE(manager().CreateCA(text, L"r", 1, {})) << text;
    }
    saveAndLoad();
    const auto found = centres();
    ASSERT_EQ(found.size(), expected.size());
    for (std::size_t i = 0; i < found.size(); ++i) {
        EXPECT_EQ(found[i].x, expected[i].x) << "area " << i;
        EXPECT_EQ(found[i].y, expected[i].y) << "area " << i;
    }
}

INSTANTIATE_TEST_SUITE_P(OfAnyVersion, Persistence, testing::Bool(),
                         [](const auto &param) { return param.param ? "R12" : "R2013"; });

} // namespace
} // namespace velmor::test
