#include "tests/host/network/NetworkFixture.h"

#include "host/drawing/Transient.h"

#include <gmock/gmock.h>

#include <cmath>

namespace velmor {
namespace {

using test::NetworkFixture;
using ZEMGis::Data::CDataBox;
using ZEMGis::Topology::CTopologyMultiStorage;
using ZEMGis::Topology::CTopologyStorage;
using ZEMGis::Topology::kUnknownValue;

class NetworkOfADrawing : public NetworkFixture {};

TEST_F(NetworkOfADrawing, IsEmptyInAnEmptyDrawing)
{
    EXPECT_TRUE(network().sections().empty());
    EXPECT_TRUE(network().nodes().empty());
    EXPECT_FALSE(network().sectionByName(L"D1"));
    EXPECT_TRUE(network().upstreamOf(L"D1").empty());
}

TEST_F(NetworkOfADrawing, TheThreeLookupsGiveTheSameSection)
{
    AcDbEntity &entity = addSection(L"D1", L"A", L"B");
    const auto section = network().GetSectionById(idOf(entity));
    ASSERT_TRUE(section);

    EXPECT_EQ(network().GetSectionByHandle(handleText(entity).c_str()), section);
    EXPECT_EQ(network().GetSectionByGuid(L"section D1"), section);
    EXPECT_EQ(network().sectionByName(L"D1"), section);
    EXPECT_EQ(section->GetHandleText(), handleText(entity));
    EXPECT_EQ(section->GetObjectId(), idOf(entity));
}

TEST_F(NetworkOfADrawing, WhatIsNoSectionGivesNull)
{
    AcDbEntity &node = addNode(L"A", 0, 0);
    AcDbEntity &line = append(std::make_unique<AcDbLine>(AcGePoint3d(0, 0), AcGePoint3d(1, 0)));
    addSection(L"D1", L"A", L"B");

    for (AcDbEntity *entity : {&node, &line}) {
        EXPECT_FALSE(network().GetSectionById(idOf(*entity)));
        EXPECT_FALSE(network().GetSectionByHandle(handleText(*entity).c_str()));
    }
    EXPECT_FALSE(network().GetSectionById({}));
    for (const wchar_t *text : {L"", L"0", L"FFFFFF", L"not a handle", static_cast<const wchar_t *>(nullptr)}) {
        EXPECT_FALSE(network().GetSectionByHandle(text));
        EXPECT_FALSE(network().GetSectionByGuid(text));
    }
    EXPECT_FALSE(network().GetSectionByGuid(L"SECTION D1")) << "GUIDs are compared exactly";
}

TEST_F(NetworkOfADrawing, ASectionThatLeftTheNetworkGivesNullAndComesBackAsTheSameObject)
{
    AcDbEntity &first = addSection(L"D1", L"A", L"B");
    addSection(L"D2", L"B", L"C");
    const auto section = network().GetSectionById(idOf(first));

    drawing->erase(first);
    EXPECT_FALSE(network().GetSectionById(idOf(first)));
    EXPECT_FALSE(network().GetSectionByGuid(L"section D1"));
    EXPECT_EQ(namesOf(network().sections()), L"D2");

    drawing->erase(first, false);
    EXPECT_EQ(network().GetSectionByGuid(L"section D1"), section);
    EXPECT_EQ(namesOf(network().sections()), L"D1 D2") << "in the drawing's order again";

    drawing->setData(first, kSectionKey, {});
    EXPECT_FALSE(network().GetSectionById(idOf(first)));
    EXPECT_EQ(namesOf(network().sections()), L"D2");
}

TEST_F(NetworkOfADrawing, FollowsWhatIsAddedAndRenamedAfterTheFirstQuestion)
{
    EXPECT_TRUE(network().sections().empty());
    AcDbEntity &entity = addSection(L"D1", L"A", L"B");
    addNode(L"A", 0, 0);
    const auto section = network().sectionByName(L"D1");
    ASSERT_TRUE(section);
    EXPECT_EQ(section->GetStartingNode()->GetName(), L"A");
    EXPECT_FALSE(section->GetEndingNode()) << "a node that is not there is null";

    SectionData data = *sectionDataOf(*drawing->data(entity, kSectionKey));
    data.name = L"D9";
    drawing->setData(entity, kSectionKey, itemsOf(data));

    EXPECT_EQ(network().sectionByName(L"D9"), section);
    EXPECT_FALSE(network().sectionByName(L"D1"));
    EXPECT_EQ(section->GetName(), L"D9");
}

TEST_F(NetworkOfADrawing, SectionsComeInTheDrawingsOrderAndTheFirstOfANameCounts)
{
    addSection(L"D2", L"A", L"B");
    AcDbEntity &one = addSection(L"D1", L"A", L"B");
    AcDbEntity &again =
        makeSection(std::make_unique<AcDbLine>(AcGePoint3d(), AcGePoint3d(1, 1)), {L"another", L"D1", 0.0, L"", L""});

    EXPECT_EQ(namesOf(network().sections()), L"D2 D1 D1");
    EXPECT_EQ(network().sectionByName(L"D1")->GetObjectId(), idOf(one));
    drawing->erase(one);
    EXPECT_EQ(network().sectionByName(L"D1")->GetObjectId(), idOf(again));
}

TEST_F(NetworkOfADrawing, EntitiesInsideBlockDefinitionsAreNoSections)
{
    BlockRecord &block = drawing->addBlock(L"PIECE");
    auto made = std::make_unique<AcDbLine>(AcGePoint3d(), AcGePoint3d(1, 1));
    AcDbEntity &entity = *made;
    drawing->append(std::move(made), block);
    EXPECT_TRUE(network().sections().empty());
    drawing->setData(entity, kSectionKey, itemsOf(SectionData{L"g", L"n", 0.0, L"", L""}));

    EXPECT_TRUE(network().sections().empty());
    EXPECT_FALSE(network().GetSectionById(idOf(entity)));
}

TEST_F(NetworkOfADrawing, DataOfAnotherShapeMakesNoSection)
{
    AcDbEntity &entity = append(std::make_unique<AcDbLine>(AcGePoint3d(), AcGePoint3d(1, 1)));
    for (const DataItems &items :
         {DataItems{{1, std::wstring(L"guid")}},
          DataItems{{1, std::wstring()}, {1, std::wstring(L"n")}, {40, 1.0}, {1, std::wstring()}, {1, std::wstring()}},
          DataItems{{40, 1.0}, {40, 1.0}, {40, 1.0}, {40, 1.0}, {40, 1.0}}}) {
        drawing->setData(entity, kSectionKey, items);
        EXPECT_TRUE(network().sections().empty());
    }
}

TEST_F(NetworkOfADrawing, AStraightSectionTellsItsEndsAndAnArcSectionItsType)
{
    const auto line = network().GetSectionById(idOf(addSection(L"D1", L"A", L"B")));
    const auto arc = network().GetSectionById(idOf(makeSection(
        std::make_unique<AcDbArc>(AcGePoint3d(0, 0), 10.0, 0.0, 1.5707963267948966), {L"g", L"D2", 0.0, L"", L""})));
    const auto bent = network().GetSectionById(idOf(
        makeSection(std::make_unique<AcDbPolyline>(std::vector<AcDbPolyline::Vertex>{{0, 0}, {3, 4}, {3, 10}}, false),
                    {L"h", L"D3", 0.0, L"", L""})));

    EXPECT_EQ(line->GetType(), ZEMGis::Topology::kSectionStraight);
    EXPECT_EQ(line->GetEndPoint(), AcGePoint3d(30, 40));
    EXPECT_EQ(arc->GetType(), ZEMGis::Topology::kSectionArc);
    EXPECT_NEAR(arc->GetLength2D(), 5.0 * 3.141592653589793, 1e-12);
    EXPECT_EQ(bent->GetType(), ZEMGis::Topology::kSectionStraight);
    EXPECT_EQ(bent->GetStartPoint(), AcGePoint3d(0, 0));
    EXPECT_EQ(bent->GetEndPoint(), AcGePoint3d(3, 10));
    EXPECT_EQ(bent->GetLength2D(), 11.0);
}

TEST_F(NetworkOfADrawing, ALengthOfItsOwnCountsBeforeTheDrawnOneAndMayBeUnknown)
{
    EXPECT_EQ(network().GetSectionById(idOf(addSection(L"D1", L"A", L"B", 62.5)))->GetLength2D(), 62.5);
    EXPECT_EQ(network().GetSectionById(idOf(addSection(L"D2", L"A", L"B")))->GetLength2D(), 50.0);
    EXPECT_EQ(network().GetSectionById(idOf(addSection(L"D3", L"A", L"B", kUnknownValue)))->GetLength2D(),
              kUnknownValue);
}

TEST_F(NetworkOfADrawing, LengthsAreThoseInThePlane)
{
    const auto slope = network().GetSectionById(idOf(makeSection(
        std::make_unique<AcDbLine>(AcGePoint3d(0, 0, 0), AcGePoint3d(3, 4, 100)), {L"g", L"D1", 0.0, L"", L""})));
    const auto steps = network().GetSectionById(idOf(
        makeSection(std::make_unique<AcDb3dPolyline>(std::vector<AcGePoint3d>{{0, 0, 0}, {0, 7, 50}, {1, 7, 9}}, false),
                    {L"h", L"D2", 0.0, L"", L""})));

    EXPECT_EQ(slope->GetLength2D(), 5.0);
    EXPECT_EQ(steps->GetLength2D(), 8.0);
    EXPECT_EQ(steps->GetEndPoint(), AcGePoint3d(1, 7, 9));
}

TEST_F(NetworkOfADrawing, PropertiesAreAttachedToTheEntityAndNullWhenAbsent)
{
    AcDbEntity &entity = addSection(L"D1", L"A", L"B");
    const auto section = network().GetSectionById(idOf(entity));
    CDataBox box(3);

    EXPECT_EQ(section->GetPropertyData(L"DIAMETER", box), 0);
    EXPECT_FALSE(box.IsNotNull());
    EXPECT_NE(section->SetPropertyData(L"DIAMETER", CDataBox(300.0)), 0);
    EXPECT_NE(section->GetPropertyData(L"DIAMETER", box), 0);
    EXPECT_EQ(box, CDataBox(300.0));
    EXPECT_TRUE(drawing->data(entity, "DIAMETER"));
    EXPECT_EQ(section->SetPropertyData(L"VELMOR_SECTION", CDataBox(1)), 0)
        << "the network's own record is out of reach";
    EXPECT_EQ(section->SetPropertyData(nullptr, CDataBox(1)), 0);
    EXPECT_EQ(section->GetName(), L"D1");
}

TEST_F(NetworkOfADrawing, TemporaryDrawingLeavesTheDrawingAlone)
{
    const auto section = network().GetSectionById(idOf(addSection(L"D1", L"A", L"B")));
    const auto revision = drawing->revision();

    section->DrawTemporary(2, 0);

    const auto &paths = drawing->component<TransientGraphics>().temporary();
    ASSERT_EQ(paths.size(), 1u);
    EXPECT_EQ(paths[0].color, 2);
    EXPECT_EQ(paths[0].vertices.size(), 2u);
    EXPECT_EQ(drawing->revision(), revision);
}

class Upstream : public NetworkFixture {
protected:
    //  S1: A-C   S2: B-C   S3: C-D   S4: D-E   S5: F-E
    void SetUp() override
    {
        for (const wchar_t *name : {L"A", L"B", L"C", L"D", L"E", L"F"})
            addNode(name, 0, 0);
        addSection(L"S1", L"A", L"C");
        addSection(L"S2", L"B", L"C");
        addSection(L"S3", L"C", L"D");
        addSection(L"S4", L"D", L"E");
        addSection(L"S5", L"F", L"E");
    }
};

TEST_F(Upstream, OfANodeIsEverythingThatDrainsThroughItNearestFirst)
{
    EXPECT_EQ(namesOf(network().upstreamOf(L"D")), L"S3 S1 S2");
    EXPECT_EQ(namesOf(network().upstreamOf(L"E")), L"S4 S5 S3 S1 S2");
    EXPECT_EQ(namesOf(network().upstreamOf(L"A")), L"");
}

TEST_F(Upstream, OfASectionBeginsWithTheSectionAndLeavesItsNeighboursOut)
{
    EXPECT_EQ(namesOf(network().upstreamOf(L"S4")), L"S4 S3 S1 S2");
    EXPECT_EQ(namesOf(network().upstreamOf(L"S1")), L"S1");
    EXPECT_EQ(namesOf(network().upstreamOf(L"none")), L"");
}

TEST_F(Upstream, ALoopIsWalkedOnce)
{
    addSection(L"S6", L"D", L"A");
    EXPECT_EQ(namesOf(network().upstreamOf(L"D")), L"S3 S1 S2 S6");
}

TEST_F(Upstream, ANodeCountsBeforeASectionOfTheSameName)
{
    addSection(L"D", L"E", L"F");
    EXPECT_EQ(namesOf(network().upstreamOf(L"D")), L"S3 S1 S2");
}

TEST(Topology, IsNeverNullAndFollowsTheWorkingDrawing)
{
    setWorkingDrawing(nullptr);
    auto &topology = CTopologyMultiStorage::Instance()->GetTopology();
    ASSERT_TRUE(topology);
    EXPECT_FALSE(topology->GetSectionByGuid(L"g"));
    EXPECT_FALSE(topology->GetSectionByHandle(L"20"));
    EXPECT_FALSE(topology->GetSectionById({}));

    // Two drawings one after the other, as likely as not at the same place in memory.
    for (int round = 0; round < 4; ++round) {
        const auto drawing = Drawing::createNew();
        setWorkingDrawing(drawing.get());
        auto made = std::make_unique<AcDbLine>(AcGePoint3d(), AcGePoint3d(1, 0));
        AcDbEntity &entity = *made;
        drawing->append(std::move(made));
        const std::wstring guid = L"g" + std::to_wstring(round);
        drawing->setData(entity, kSectionKey, itemsOf(SectionData{guid, L"D", 0.0, L"", L""}));
        EXPECT_TRUE(CTopologyMultiStorage::Instance()->GetTopology()->GetSectionByGuid(guid.c_str()));
        EXPECT_FALSE(CTopologyMultiStorage::Instance()->GetTopology()->GetSectionByGuid(L"g9"));
    }
    setWorkingDrawing(nullptr);
    EXPECT_FALSE(CTopologyMultiStorage::Instance()->GetTopology()->GetSectionByGuid(L"g3"));
}

TEST_F(NetworkOfADrawing, ALookupBetweenChangesDoesNotWalkTheNetworkAgain)
{
    // Growth that hangs on the size of the network would show as minutes here.
    constexpr int kCount = 20000;
    EXPECT_TRUE(network().sections().empty());
    for (int i = 0; i < kCount; ++i) {
        addSection(std::to_wstring(i), L"A", L"B");
        append(std::make_unique<AcDbPolyline>(std::vector<AcDbPolyline::Vertex>{{0, 0}, {1, 0}, {1, 1}}, true));
        ASSERT_TRUE(network().GetSectionByGuid((L"section " + std::to_wstring(i)).c_str()));
    }
    EXPECT_EQ(network().sections().size(), static_cast<std::size_t>(kCount));
}

} // namespace
} // namespace velmor
