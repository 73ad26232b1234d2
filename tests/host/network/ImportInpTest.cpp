#include "tests/host/network/NetworkFixture.h"

#include "host/services/Text.h"
#include "tests/host/services/TestFolder.h"

#include <gmock/gmock.h>

#include <cmath>
#include <fstream>
#include <set>

namespace velmor {
namespace {

using test::TestFolder;
using testing::Contains;
using testing::HasSubstr;

/// A network of two sections in metres; the second one is bent.
constexpr char kSmall[] = "[OPTIONS]\nFLOW_UNITS CMS\n"
                          "[JUNCTIONS]\nA 10\nB 9\n[OUTFALLS]\nC 8 FREE\n"
                          "[CONDUITS]\nD1 A B 12.5 0.01\nD2 B C 30 0.01\n"
                          "[COORDINATES]\nA 0 0\nB 10 0\nC 10 20\n"
                          "[VERTICES]\nD2 15 0\nD2 15 20\n"
                          "[POLYGONS]\nS1 0 0\nS1 10 0\nS1 10 10\n";

class ImportOfANetwork : public test::NetworkFixture {
protected:
    NetworkImportResult import(const std::string &text, bool withPolygons = false)
    {
        return importInpText(*drawing, text, "test.inp", {withPolygons});
    }
    std::vector<const AcDbEntity *> onLayer(const std::wstring &layer) const
    {
        std::vector<const AcDbEntity *> found;
        for (const AcDbEntity *entity : drawing->modelSpace().entities())
            if (entity->layer() == layer)
                found.push_back(entity);
        return found;
    }
    static std::vector<std::string> textsOf(const NetworkImportResult &result)
    {
        std::vector<std::string> texts;
        for (const Finding &finding : result.findings)
            texts.push_back(std::to_string(finding.line) + ": " + finding.text);
        return texts;
    }
};

TEST_F(ImportOfANetwork, DrawsNodesAndSectionsOnLayersOfTheirOwn)
{
    const auto result = import(kSmall);

    ASSERT_TRUE(result) << result.message;
    EXPECT_EQ(result.nodes, 3u);
    EXPECT_EQ(result.sections, 2u);
    EXPECT_EQ(result.polygons, 0u);
    EXPECT_FALSE(result.convertedFromFeet);
    EXPECT_TRUE(result.findings.empty());
    EXPECT_EQ(onLayer(kNodeLayer).size(), 3u);
    EXPECT_EQ(onLayer(kSectionLayer).size(), 2u);
    EXPECT_EQ(drawing->modelSpace().entities().size(), 5u);
    EXPECT_EQ(namesOf(network().sections()), L"D1 D2");
    EXPECT_EQ(namesOf(network().nodes()), L"A B C");
}

TEST_F(ImportOfANetwork, ABentConduitIsOneStraightSectionBetweenItsNodes)
{
    ASSERT_TRUE(import(kSmall));
    const auto bent = network().sectionByName(L"D2");
    ASSERT_TRUE(bent);

    EXPECT_EQ(bent->GetType(), ZEMGis::Topology::kSectionStraight);
    EXPECT_EQ(bent->GetStartPoint(), AcGePoint3d(10, 0));
    EXPECT_EQ(bent->GetEndPoint(), AcGePoint3d(10, 20));
    EXPECT_EQ(bent->GetStartingNode()->GetName(), L"B");
    EXPECT_EQ(bent->GetEndingNode()->GetName(), L"C");
    EXPECT_EQ(bent->GetLength2D(), 30.0) << "the length of the file, shorter or longer than drawn";
    const auto *drawn = dynamic_cast<const AcDbPolyline *>(onLayer(kSectionLayer)[1]);
    ASSERT_NE(drawn, nullptr);
    EXPECT_EQ(drawn->vertices(), (std::vector<AcDbPolyline::Vertex>{{10, 0}, {15, 0}, {15, 20}, {10, 20}}));
    EXPECT_FALSE(drawn->isClosed());
}

TEST_F(ImportOfANetwork, ALengthOfTheFileFollowsWhenTheConduitIsDrawnAnew)
{
    ASSERT_TRUE(import(kSmall));
    const double length = network().sectionByName(L"D1")->GetLength2D();
    AcDbEntity *opened = nullptr;
    ASSERT_EQ(acdbOpenAcDbEntity(opened, network().sectionByName(L"D1")->GetObjectId(), AcDb::kForWrite), Acad::eOk);
    auto &line = static_cast<AcDbLine &>(*opened);
    const double drawn = line.startPoint().distanceTo(line.endPoint());
    ASSERT_NE(length, drawn) << "else nothing is told apart here";
    ASSERT_EQ(line.setStartPoint({-drawn, 0}), Acad::eOk) << "twice as long";
    line.close();
    EXPECT_DOUBLE_EQ(network().sectionByName(L"D1")->GetLength2D(), 2.0 * length);

    drawing = Drawing::read(drawing->write()).drawing;
    ASSERT_TRUE(drawing);
    EXPECT_DOUBLE_EQ(network().sectionByName(L"D1")->GetLength2D(), 2.0 * length);
}

TEST_F(ImportOfANetwork, AnAbsentOrZeroLengthIsTheDrawnOne)
{
    const auto result = import("[OPTIONS]\nFLOW_UNITS LPS\n[JUNCTIONS]\nA\nB\n[COORDINATES]\nA 0 0\nB 30 40\n"
                               "[CONDUITS]\nD1 A B 0\nD2 A B\nD3 A B -5\nD4 A B x\n[VERTICES]\nD2 30 0\n");
    ASSERT_TRUE(result);

    EXPECT_EQ(network().sectionByName(L"D1")->GetLength2D(), 50.0);
    EXPECT_EQ(network().sectionByName(L"D2")->GetLength2D(), 70.0);
    EXPECT_EQ(network().sectionByName(L"D3")->GetLength2D(), 50.0);
    EXPECT_EQ(network().sectionByName(L"D4")->GetLength2D(), 50.0);
    EXPECT_EQ(textsOf(result),
              (std::vector<std::string>{"10: conduit D1 has no length; its drawn length counts",
                                        "11: conduit D2 has no length; its drawn length counts",
                                        "12: \"-5\" is no length of conduit D3; its drawn length counts",
                                        "13: \"x\" is no length of conduit D4; its drawn length counts"}));
}

TEST_F(ImportOfANetwork, FlowUnitsDecideBetweenFeetAndMetres)
{
    for (const std::string unit : {"CFS", "GPM", "mgd"}) {
        drawing = Drawing::createNew();
        std::string text = kSmall;
        text.replace(text.find("CMS"), 3, unit);
        const auto result = import(text);
        ASSERT_TRUE(result);
        EXPECT_TRUE(result.convertedFromFeet) << unit;
        const auto section = network().sectionByName(L"D1");
        EXPECT_DOUBLE_EQ(section->GetEndPoint().x, 3.048);
        EXPECT_DOUBLE_EQ(section->GetLength2D(), 3.81);
    }
    for (const std::string unit : {"CMS", "LPS", "mld"}) {
        drawing = Drawing::createNew();
        std::string text = kSmall;
        text.replace(text.find("CMS"), 3, unit);
        EXPECT_FALSE(import(text).convertedFromFeet) << unit;
        EXPECT_EQ(network().sectionByName(L"D1")->GetEndPoint().x, 10.0);
    }
}

TEST_F(ImportOfANetwork, WithoutFlowUnitsTheFormatsDefaultIsTakenAndTold)
{
    std::string text = kSmall;
    const auto none = import(text.erase(text.find("FLOW_UNITS"), 15));
    EXPECT_TRUE(none.convertedFromFeet);
    EXPECT_THAT(textsOf(none), Contains(HasSubstr("CFS is taken")));

    drawing = Drawing::createNew();
    text = kSmall;
    const auto unknown = import(text.replace(text.find("CMS"), 3, "AFD"));
    EXPECT_TRUE(unknown.convertedFromFeet);
    EXPECT_THAT(textsOf(unknown), Contains("2: flow units \"AFD\" are not known"));
}

TEST_F(ImportOfANetwork, NodesComeFromEveryNodeTable)
{
    const auto result =
        import("[OPTIONS]\nFLOW_UNITS CMS\n[STORAGE]\nS 1\n[DIVIDERS]\nV 1\n[OUTFALLS]\nO 1\n[JUNCTIONS]\nJ 1\n"
               "[CONDUITS]\n1 S V 1\n2 V J 1\n3 J O 1\n"
               "[COORDINATES]\nS 0 0\nV 1 0\nJ 2 0\nO 3 0\n");
    EXPECT_EQ(result.nodes, 4u);
    EXPECT_EQ(result.sections, 3u);
    EXPECT_TRUE(result.findings.empty());
}

TEST_F(ImportOfANetwork, TablesMayStandInAnyOrderAndCaseWithCommentsTabsAndBothLineEnds)
{
    const auto result = import(
        "\xEF\xBB\xBF[title]\r\nsome ; text\r\n[vertices]\r\nd1\t5\t5\r\n[Coordinates]\r\n;; header\r\nA\t0\t0\r\n"
        "B 10 0 ; trailing\r\n\r\n[conduits]\r\n;5\r\nD1 a B 7.5\r\n[options]\r\nflow_units cms\r\n"
        "[Junctions]\r\nA 1\r\n;comment between rows\r\nB 1");
    ASSERT_TRUE(result) << result.message;
    EXPECT_EQ(textsOf(result), std::vector<std::string>());
    const auto section = network().sectionByName(L"D1");
    ASSERT_TRUE(section);
    EXPECT_EQ(section->GetStartingNode()->GetName(), L"A") << "names fit without regard to case";
    EXPECT_EQ(dynamic_cast<const AcDbPolyline *>(onLayer(kSectionLayer)[0])->vertices().size(), 3u);
}

TEST_F(ImportOfANetwork, NamesThatDifferInCaseOnlyAreTwoNodesWhenBothAreDefined)
{
    ASSERT_TRUE(
        import("[OPTIONS]\nFLOW_UNITS CMS\n[JUNCTIONS]\na\nA\n[CONDUITS]\nD a A 1\n[COORDINATES]\na 0 0\nA 1 0\n"));
    EXPECT_EQ(network().sectionByName(L"D")->GetStartingNode()->GetName(), L"a");
    EXPECT_EQ(network().sectionByName(L"D")->GetEndingNode()->GetName(), L"A");
}

TEST_F(ImportOfANetwork, QuotedNamesMayHoldBlanksAndSemicolons)
{
    ASSERT_TRUE(import(
        "[OPTIONS]\nFLOW_UNITS CMS\n[JUNCTIONS]\n\"MH 1; old\" 5\nB 5\n[CONDUITS]\n\"main pipe\" \"MH 1; old\" B 3\n"
        "[COORDINATES]\n\"MH 1; old\" 0 0\nB 4 0\n"));
    EXPECT_EQ(namesOf(network().nodes()), L"MH 1; old B");
    EXPECT_EQ(namesOf(network().sections()), L"main pipe");
}

TEST_F(ImportOfANetwork, NamesAreReadAsUtf8OrElseInTheCodePageOfTheRegion)
{
    std::string text = kSmall;
    text.replace(text.find("A 10"), 1, "\xC5\xA0-1");
    text.replace(text.find("D1 A B"), 4, "D1 \xC5\xA0-1");
    text.replace(text.find("\nA 0 0") + 1, 1, "\xC5\xA0-1");
    EXPECT_TRUE(import(text).findings.empty());
    EXPECT_TRUE(network().nodeByName(L"Š-1"));

    drawing = Drawing::createNew();
    for (auto at = text.find("\xC5\xA0"); at != std::string::npos; at = text.find("\xC5\xA0"))
        text.replace(at, 2, "\x8A");
    EXPECT_THAT(textsOf(import(text)), Contains(HasSubstr("1250")));
    EXPECT_TRUE(network().nodeByName(L"Š-1"));
}

TEST_F(ImportOfANetwork, EveryLossIsToldWithItsLine)
{
    const auto result =
        import("[OPTIONS]\nFLOW_UNITS CMS\n"
               "[JUNCTIONS]\nA\nB\nNOWHERE\nA\n"                                               // 4 to 7
               "[CONDUITS]\nD1 A B 1\nD2 A\nD3 A GONE 1\nD4 NOWHERE B 1\nD1 B A 1\nD5 A A 1\n" // 9 to 14
               "[PUMPS]\nP1 A B\n[WEIRS]\nW1 A B\n"                                            // 16, 18
               "[COORDINATES]\nA 0 0\nB 1 x\nB 1\nB 2 0\nX 5 5\nB 3 0\n"                       // 20 to 25
               "[VERTICES]\nP1 1 1\nD2 1 1\nZ 1 1\nD1 1 one\n");                               // 27 to 30
    ASSERT_TRUE(result);
    EXPECT_EQ(result.nodes, 2u);
    EXPECT_EQ(result.sections, 2u);
    EXPECT_EQ(network().nodeByName(L"B")->GetObjectId(), network().nodes()[1]->GetObjectId());
    EXPECT_EQ(network().sectionByName(L"D1")->GetEndPoint(), AcGePoint3d(3, 0)) << "the last coordinates count";
    EXPECT_EQ(textsOf(result), (std::vector<std::string>{
                                   "6: junction NOWHERE has no coordinates and was left out",
                                   "7: node A is defined already; this junction was left out",
                                   "10: conduit D2 needs two nodes; the row was left out",
                                   "11: conduit D3 ends at GONE, which no table defines; it was left out",
                                   "12: conduit D4 ends at NOWHERE, which has no coordinates; it was left out",
                                   "13: conduit D1 is defined already; this one was left out",
                                   "14: conduit D5 begins and ends at one place and is drawn as a point",
                                   "16: pump P1 is not a conduit and was left out",
                                   "18: weir W1 is not a conduit and was left out",
                                   "21: the place of node B needs two numbers; the row was left out",
                                   "22: the place of node B needs two numbers; the row was left out",
                                   "24: coordinates of X, which is no node; the row was left out",
                                   "25: node B has coordinates already; these count",
                                   "29: a bend of Z, which is no conduit; the row was left out",
                                   "30: a bend of conduit D1 needs two numbers; the row was left out",
                               }));
}

TEST_F(ImportOfANetwork, BendsOnTheirNeighboursAreDroppedWithoutALossOfWay)
{
    ASSERT_TRUE(import(
        "[OPTIONS]\nFLOW_UNITS CMS\n[JUNCTIONS]\nA\nB\n[CONDUITS]\nD1 A B 9\nD2 A B 9\n[COORDINATES]\nA 0 0\nB 9 0\n"
        "[VERTICES]\nD1 0 0\nD1 4 4\nD1 4 4\nD1 9 0\nD2 9 0\n"));
    const auto sections = onLayer(kSectionLayer);
    EXPECT_EQ(dynamic_cast<const AcDbPolyline *>(sections[0])->vertices().size(), 3u);
    EXPECT_NE(dynamic_cast<const AcDbLine *>(sections[1]), nullptr);
}

TEST_F(ImportOfANetwork, PolygonsAreClosedRingsWithoutRepeatsInTheirOwnOrder)
{
    std::string text = kSmall;
    text += "S2 0 0\nS2 0 10\nS2 0 10\nS2 10 10\nS2 0 0\nS3 1 1\nS3 2 2\nS3 1 1\n[SUBCATCHMENTS]\nS1 x\nS4 x\n";
    const auto result = import(text, true);

    EXPECT_EQ(result.polygons, 2u);
    const auto rings = onLayer(kPolygonLayer);
    ASSERT_EQ(rings.size(), 2u);
    const auto *second = dynamic_cast<const AcDbPolyline *>(rings[1]);
    ASSERT_NE(second, nullptr);
    EXPECT_TRUE(second->isClosed());
    EXPECT_EQ(second->vertices(), (std::vector<AcDbPolyline::Vertex>{{0, 0}, {0, 10}, {10, 10}})) << "clockwise stays";
    EXPECT_EQ(drawing->data(*second, kSubcatchmentKey), (DataItems{{1, std::wstring(L"S2")}}));
    EXPECT_THAT(textsOf(result), testing::ElementsAre("27: polygon S3 has fewer than three corners and was left out",
                                                      "32: subcatchment S4 has no polygon"));
}

TEST_F(ImportOfANetwork, PolygonsAreLeftAsideUnlessAskedFor)
{
    EXPECT_EQ(import(std::string(kSmall) + "S9 bad\n").findings.size(), 0u);
    EXPECT_TRUE(onLayer(kPolygonLayer).empty());
    EXPECT_FALSE(drawing->findLayer(kPolygonLayer));
}

TEST_F(ImportOfANetwork, AFileThatHoldsNoNetworkLeavesTheDrawingAsItWas)
{
    const auto revision = drawing->revision();
    const auto layers = drawing->layers().size();
    const std::pair<std::string, const char *> cases[] = {
        {"", "test.inp is empty"},
        {"no table at all\n", "test.inp is not a SWMM network file: it has no [TABLE]"},
        {std::string("[JUNCTIONS]\nA\0B\n", 16), "test.inp is not a SWMM network file: it is not a text file"},
        {"[TITLE]\nx\n", "test.inp defines no nodes, so there is no network to draw"},
        {"[JUNCTIONS]\nA\n[CONDUITS]\nD A A 1\n",
         "test.inp has no coordinates for its nodes, so there is nothing to draw; export the network with its map"},
        {"[JUNCTIONS]\nA\n[COORDINATES]\nA one two\n",
         "test.inp has no coordinates for its nodes, so there is nothing to draw; export the network with its map"},
    };
    for (const auto &[text, message] : cases) {
        const auto result = import(text, true);
        EXPECT_FALSE(result);
        EXPECT_EQ(result.message, message);
        EXPECT_TRUE(result.findings.empty());
        EXPECT_EQ(drawing->revision(), revision);
        EXPECT_EQ(drawing->layers().size(), layers);
    }
}

TEST_F(ImportOfANetwork, FilesThatCannotBeReadAreToldByName)
{
    TestFolder folder;
    folder.write("empty.inp", "");
    const auto missing = importInp(*drawing, folder.path() / "none.inp");
    const auto directory = importInp(*drawing, folder.path());
    const auto empty = importInp(*drawing, folder.path() / "empty.inp");

    EXPECT_EQ(missing.status, FileStatus::NotFound);
    EXPECT_THAT(missing.message, HasSubstr("none.inp"));
    EXPECT_EQ(directory.status, FileStatus::NotAFile);
    EXPECT_THAT(directory.message, HasSubstr(folder.path().string()));
    EXPECT_EQ(empty.status, FileStatus::Empty);
    EXPECT_THAT(empty.message, HasSubstr("empty.inp"));
    EXPECT_TRUE(drawing->modelSpace().entities().empty());
}

TEST_F(ImportOfANetwork, ATruncatedFileGivesWhatItStillHolds)
{
    // Cut anywhere, the import ends with a network or with a message, and never with half of a section.
    const std::string text = kSmall;
    std::set<bool> outcomes;
    for (std::size_t length = 0; length < text.size(); ++length) {
        drawing = Drawing::createNew();
        const auto result = import(text.substr(0, length), true);
        outcomes.insert(static_cast<bool>(result));
        EXPECT_EQ(result.message.empty(), static_cast<bool>(result));
        EXPECT_EQ(network().sections().size(), result.sections);
        EXPECT_EQ(network().nodes().size(), result.nodes);
        EXPECT_EQ(onLayer(kPolygonLayer).size(), result.polygons);
    }
    EXPECT_EQ(outcomes.size(), 2u);
}

TEST_F(ImportOfANetwork, NumbersThatAreNoneOrTooFarAreNoCoordinates)
{
    const auto result =
        import("[OPTIONS]\nFLOW_UNITS CMS\n[JUNCTIONS]\nA\nB\nC\nD\nE\n[CONDUITS]\nX A B 1\n[COORDINATES]\n"
               "A +1.5e2 -2\nB 1,5 2\nC nan 0\nD 0 1e300\nE 0x10 0\n");
    ASSERT_TRUE(result);
    EXPECT_EQ(result.nodes, 1u);
    EXPECT_EQ(positionOf(*onLayer(kNodeLayer)[0]), AcGePoint3d(150, -2));
}

TEST_F(ImportOfANetwork, ASecondNetworkJoinsTheFirst)
{
    ASSERT_TRUE(import(kSmall));
    EXPECT_EQ(network().sections().size(), 2u);
    ASSERT_TRUE(import(kSmall));
    EXPECT_EQ(network().sections().size(), 4u);
    std::set<std::wstring> guids;
    for (const auto &section : network().sections())
        guids.insert(section->GetGuid());
    EXPECT_EQ(guids.size(), 4u);
}

// --- Real networks
// -----------------------------------------------------------------------------------------------------

std::filesystem::path dataFolder()
{
    if (const char *folder = std::getenv("VELMOR_DATA_DIR"))
        return folder;
    const char *source = std::getenv("VELMOR_SOURCE_DIR");
    return std::filesystem::path(source ? source : ".").lexically_normal().parent_path() / "shared" / "data";
}

struct RealNetwork {
    const char *file;
    std::size_t nodes, sections, bends, polygons; ///< bends of conduits; weirs and pumps may have some too
    bool feet;
    double left, bottom, right, top; ///< of nodes and polygons, in the file's units
};

class RealNetworks : public testing::TestWithParam<RealNetwork> {};

TEST_P(RealNetworks, ComeInWhole)
{
    const RealNetwork &expected = GetParam();
    const auto file = dataFolder() / expected.file;
    if (!std::filesystem::exists(file))
        GTEST_SKIP() << "no sample data in " << dataFolder() << "; set VELMOR_DATA_DIR";
    const auto drawing = Drawing::createNew();

    const auto result = importInp(*drawing, file, {.withPolygons = true});

    ASSERT_TRUE(result) << result.message;
    EXPECT_EQ(result.nodes, expected.nodes);
    EXPECT_EQ(result.sections, expected.sections);
    EXPECT_EQ(result.polygons, expected.polygons);
    EXPECT_EQ(result.convertedFromFeet, expected.feet);

    const Network &network = drawing->component<Network>();
    EXPECT_EQ(network.sections().size(), expected.sections);
    EXPECT_EQ(network.nodes().size(), expected.nodes);
    std::size_t bends = 0;
    Extents extents;
    for (const AcDbEntity *entity : drawing->modelSpace().entities()) {
        if (entity->layer() == kSectionLayer) {
            if (const auto *polyline = dynamic_cast<const AcDbPolyline *>(entity))
                bends += polyline->numVerts() - 2;
        } else {
            extents.add(extentsOf(*entity));
        }
    }
    EXPECT_EQ(bends, expected.bends);
    const double scale = expected.feet ? 0.3048 : 1.0;
    EXPECT_NEAR(extents.minX / scale, expected.left, 0.051);
    EXPECT_NEAR(extents.minY / scale, expected.bottom, 0.051);
    EXPECT_NEAR(extents.maxX / scale, expected.right, 0.051);
    EXPECT_NEAR(extents.maxY / scale, expected.top, 0.051);
    for (const auto &section : network.sections()) {
        EXPECT_GT(section->GetLength2D(), 0.0);
        ASSERT_TRUE(section->GetStartingNode());
        ASSERT_TRUE(section->GetEndingNode());
        EXPECT_EQ(network.GetSectionByGuid(section->GetGuid().c_str()), section);
    }
}

INSTANTIATE_TEST_SUITE_P(
    All, RealNetworks,
    testing::Values(
        RealNetwork{"net_bellinge_small.inp", 16, 15, 0, 13, false, 583150.8, 6132829.7, 583440.5, 6133100.0},
        RealNetwork{"net_epa_site_drainage_ft.inp", 12, 11, 23, 7, true, 29.3, 1.8, 1411.3, 1442.2},
        RealNetwork{"net_cos_reduced_inlets.inp", 128, 121, 36, 163, false, 390361.0, 5781489.0, 391379.4, 5782454.6},
        RealNetwork{"net_311_conduits_ft.inp", 302, 311, 224, 129, true, 2581405.8, 465834.8, 2591287.8, 477017.6},
        RealNetwork{"net_522_conduits_holes_ft.inp", 412, 522, 0, 237, true, 659301.5, 1300257.0, 731704.1, 1379359.4},
        RealNetwork{"net_ajax_1984_conduits.inp", 1998, 1984, 205, 1982, false, 657214.6, 4853297.9, 661353.4,
                    4857375.2}),
    [](const auto &network) {
        std::string name = network.param.file;
        return name.substr(4, name.find('.') - 4);
    });

} // namespace
} // namespace velmor
