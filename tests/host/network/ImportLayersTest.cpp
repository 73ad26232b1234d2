#include "tests/host/network/NetworkFixture.h"

#include <gmock/gmock.h>

namespace velmor {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class ImportOfLayers : public test::NetworkFixture {
protected:
    ImportOfLayers()
    {
        drawing->ensureLayer(L"CIJEVI");
        drawing->ensureLayer(L"IMENA");
    }
    AcDbEntity &on(const std::wstring &layer, std::unique_ptr<AcDbEntity> made)
    {
        AcDbEntity &entity = append(std::move(made));
        drawing->setLayerOf(entity, drawing->ensureLayer(layer));
        return entity;
    }
    AcDbEntity &pipe(double x1, double y1, double x2, double y2)
    {
        return on(L"CIJEVI", std::make_unique<AcDbLine>(AcGePoint3d(x1, y1), AcGePoint3d(x2, y2)));
    }
    AcDbEntity &text(const std::wstring &words, double x, double y, const std::wstring &layer = L"IMENA")
    {
        return on(layer, std::make_unique<TextEntity>(TextShape{.position = {x, y}, .text = words}));
    }
    AcDbEntity &manhole(double x, double y, const std::vector<std::wstring> &attributes)
    {
        BlockRecord &block = drawing->addBlock(L"OKNO");
        AcDbEntity &entity =
            on(L"OKNA",
               std::make_unique<AcDbBlockReference>(idOf(block), AcDbBlockReference::Placement{.position = {x, y}}));
        for (const std::wstring &value : attributes)
            drawing->appendAttribute(
                static_cast<AcDbBlockReference &>(entity),
                std::make_unique<AttributeEntity>(L"TAG", TextShape{.position = {x + 50, y}, .text = value}));
        return entity;
    }
    NetworkImportResult import(LayerImportOptions options = {})
    {
        if (options.sectionLayers.empty())
            options.sectionLayers = {L"cijevi"};
        return importLayers(*drawing, options);
    }
    static std::vector<std::string> textsOf(const NetworkImportResult &result)
    {
        std::vector<std::string> texts;
        for (const Finding &finding : result.findings)
            texts.push_back(finding.text);
        return texts;
    }
};

TEST_F(ImportOfLayers, LinesArcsAndPolylinesBecomeSectionsOfTheirType)
{
    AcDbEntity &line = pipe(0, 0, 30, 40);
    AcDbEntity &arc = on(L"CIJEVI", std::make_unique<AcDbArc>(AcGePoint3d(100, 0), 10.0, 0.0, 1.0));
    AcDbEntity &bent =
        on(L"CIJEVI",
           std::make_unique<AcDbPolyline>(std::vector<AcDbPolyline::Vertex>{{200, 0}, {210, 0}, {210, 10}}, false));
    drawing->erase(pipe(0, 0, 1, 1));
    on(L"0", std::make_unique<AcDbLine>(AcGePoint3d(0, 0), AcGePoint3d(5, 5)));

    const auto result = import();

    ASSERT_TRUE(result) << result.message;
    EXPECT_EQ(result.sections, 3u);
    EXPECT_EQ(result.nodes, 6u);
    EXPECT_EQ(network().GetSectionById(idOf(line))->GetType(), ZEMGis::Topology::kSectionStraight);
    EXPECT_EQ(network().GetSectionById(idOf(line))->GetLength2D(), 50.0);
    EXPECT_EQ(network().GetSectionById(idOf(arc))->GetType(), ZEMGis::Topology::kSectionArc);
    EXPECT_EQ(network().GetSectionById(idOf(bent))->GetType(), ZEMGis::Topology::kSectionStraight);
    EXPECT_EQ(network().GetSectionById(idOf(bent))->GetLength2D(), 20.0);
}

TEST_F(ImportOfLayers, EndsNearerThanTheToleranceAreOneNode)
{
    pipe(0, 0, 10, 0);
    pipe(10.005, 0, 20, 0);
    pipe(20, 0.5, 30, 0);

    const auto result = import({.endTolerance = 0.01});

    EXPECT_EQ(result.nodes, 5u);
    const auto &sections = network().sections();
    EXPECT_EQ(sections[0]->GetEndingNode(), sections[1]->GetStartingNode());
    EXPECT_NE(sections[1]->GetEndingNode(), sections[2]->GetStartingNode());
}

TEST_F(ImportOfLayers, TheNearestTextNamesANodeAndEachTextNamesOne)
{
    //  A --------- B     "B" is the nearest to both ends but nearer to the second
    pipe(0, 0, 4, 0);
    text(L"B", 3, 0);
    text(L" A\n", 0, -3);
    text(L"too far", 0, 6);

    const auto result = import({.nameDistance = 5.0});

    EXPECT_EQ(namesOf(network().nodes()), L"A B");
    EXPECT_EQ(namesOf(network().sections()), L"A-B");
    EXPECT_TRUE(result.findings.empty());
}

TEST_F(ImportOfLayers, AManholeSymbolAtAnEndBecomesTheNodeAndItsAttributeNamesIt)
{
    AcDbEntity &symbol = manhole(0, 0, {L"", L"RO-12", L"0.8"});
    manhole(500, 0, {L"RO-13"});
    pipe(0, 0, 4, 0);
    text(L"K2", 4, 1);

    const auto result = import();

    EXPECT_EQ(result.nodes, 2u);
    EXPECT_EQ(network().nodeByName(L"RO-12")->GetObjectId(), idOf(symbol));
    EXPECT_EQ(namesOf(network().sections()), L"RO-12-K2");
    EXPECT_FALSE(network().nodeByName(L"RO-13")) << "a symbol without a pipe is no node";
}

TEST_F(ImportOfLayers, NamesAreTakenFromTheChosenLayersOnly)
{
    pipe(0, 0, 4, 0);
    text(L"diameter 300", 0, 0.1, L"OPISI");
    text(L"A", 0, 2);
    text(L"B", 4, 2);

    import({.nameLayers = { L"IMENA" }});

    EXPECT_EQ(namesOf(network().nodes()), L"A B");
}

TEST_F(ImportOfLayers, ANodeWithoutATextGetsAFreeNameAndThisIsTold)
{
    pipe(0, 0, 100, 0);
    text(L"N1", 0, 1);

    const auto result = import();

    EXPECT_EQ(namesOf(network().nodes()), L"N1 N2");
    EXPECT_THAT(textsOf(result), ElementsAre("no text names the node at 100.000, 0.000; it is called N2"));
}

TEST_F(ImportOfLayers, SectionsBetweenTheSameNodesHaveDifferentNames)
{
    text(L"A", 0, 0);
    text(L"B", 10, 0);
    pipe(0, 0, 10, 0);
    on(L"CIJEVI", std::make_unique<AcDbPolyline>(std::vector<AcDbPolyline::Vertex>{{0, 0}, {5, 5}, {10, 0}}, false));

    import();

    EXPECT_EQ(namesOf(network().sections()), L"A-B A-B-2");
}

TEST_F(ImportOfLayers, ASecondRunTakesTheNewLinesAndTheNodesThatAreThere)
{
    text(L"A", 0, 0);
    AcDbEntity &later = on(L"0", std::make_unique<AcDbLine>(AcGePoint3d(10, 0), AcGePoint3d(20, 0)));
    pipe(0, 0, 10, 0);
    ASSERT_EQ(import().nodes, 2u);
    drawing->setLayerOf(later, *drawing->findLayer(L"CIJEVI"));

    const auto second = import();

    EXPECT_EQ(second.sections, 1u);
    EXPECT_EQ(second.nodes, 1u) << "one end stands on a node already";
    EXPECT_THAT(textsOf(second), testing::Contains(HasSubstr("is a section already")));
    EXPECT_EQ(network().sections()[0]->GetObjectId(), idOf(later)) << "in the drawing's order";
    EXPECT_EQ(network().sections()[0]->GetStartingNode(), network().sections()[1]->GetEndingNode());
}

TEST_F(ImportOfLayers, ClosedAndZeroLengthCurvesAreLeftOutAndTold)
{
    on(L"CIJEVI", std::make_unique<AcDbPolyline>(std::vector<AcDbPolyline::Vertex>{{0, 0}, {5, 5}, {9, 0}}, true));
    pipe(3, 3, 3, 3);
    on(L"CIJEVI", std::make_unique<CircleEntity>(AcGePoint3d(0, 0), 5.0));
    pipe(0, 0, 10, 0);

    const auto result = import();

    EXPECT_EQ(result.sections, 1u);
    EXPECT_EQ(std::ranges::count_if(result.findings, [](const Finding &f) { return f.severity == Severity::Warning; }),
              2);
}

TEST_F(ImportOfLayers, WrongChoicesAreRefusedAndLeaveTheDrawingAsItWas)
{
    text(L"A", 0, 0);
    const auto revision = drawing->revision();

    EXPECT_EQ(importLayers(*drawing, {}).message, "no layer was chosen for the sections");
    EXPECT_EQ(import({.sectionLayers = {L"none"}}).message, "the drawing has no layer \"none\"");
    EXPECT_EQ(import({.nameLayers = {L"nowhere"}}).message, "the drawing has no layer \"nowhere\"");
    EXPECT_EQ(import({.sectionLayers = {L"IMENA"}}).status, FileStatus::NotFound);
    EXPECT_EQ(import({.endTolerance = -1.0}).status, FileStatus::Refused);
    EXPECT_EQ(drawing->revision(), revision);
}

} // namespace
} // namespace velmor
