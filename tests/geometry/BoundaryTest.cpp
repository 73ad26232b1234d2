// CZEMCBoundary over a real drawing and a boundary command that makes what each test says.
#include "geometry/ZEMCBoundary.h"

#include "tests/geometry/ScriptedHost.h"

#include <gmock/gmock.h>

#include <cmath>

namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

const PickSet kNothing(0);
const PickSet kThree(3);
const AcGePoint3d kPoint(1.5, 2.5, 3.5);

class Boundary : public testing::Test {
protected:
    ScriptedHost host;
    AcDbObjectId boundary;
    AcDbObjectIdArray others;

    /// Closed, a whole number of units high and 1 wide.
    AcDbObjectId addHeight(double height)
    {
        return host.addPolyline({{0, 0, 0}, {1, 0, 0}, {1, height, 0}, {0, height, 0}});
    }
};

/// A class derived from the polyline, which is not a polyline for the walk.
class DerivedPolyline final : public AcDbPolyline {
public:
    using AcDbPolyline::AcDbPolyline;
    static AcRxClass *desc()
    {
        static AcRxClass description(L"DerivedPolyline", AcDbPolyline::desc());
        return &description;
    }
    AcRxClass *isA() const override { return desc(); }
};

} // namespace

// --- The dialogue with the host command
// --------------------------------------------------------------------------------

TEST_F(Boundary, APointWithIslandsAndNoSetRunsTheShortDialogue)
{
    CZEMCBoundary::CreateBoundary(kPoint, boundary, others, kNothing.name);
    ASSERT_THAT(host.commands, SizeIs(1));
    EXPECT_THAT(host.commands[0], ElementsAre("'_-BOUNDARY'", "'_A'", "'_I'", "'_Y'", "''", "<1.5,2.5,3.5>", "''"));
    EXPECT_FALSE(host.throughChain);
}

TEST_F(Boundary, APointWithIslandsOverASetMakesANewBoundarySet)
{
    CZEMCBoundary::CreateBoundary(kPoint, boundary, others, kThree.name);
    ASSERT_THAT(host.commands, SizeIs(1));
    EXPECT_THAT(host.commands[0], ElementsAre("'_-BOUNDARY'", "'_A'", "'_B'", "'_N'", "<picks 3>", "''", "'_I'", "'_Y'",
                                              "''", "<1.5,2.5,3.5>", "''"));
}

TEST_F(Boundary, APointWithoutIslandsAnswersOneMoreQuestion)
{
    CZEMCBoundary::CreateBoundary(kPoint, boundary, kNothing.name);
    CZEMCBoundary::CreateBoundary(kPoint, boundary, kThree.name);
    ASSERT_THAT(host.commands, SizeIs(2));
    EXPECT_THAT(host.commands[0],
                ElementsAre("'_-BOUNDARY'", "'_A'", "'_I'", "'_N'", "''", "''", "<1.5,2.5,3.5>", "''"));
    EXPECT_THAT(host.commands[1], ElementsAre("'_-BOUNDARY'", "'_A'", "'_B'", "'_N'", "<picks 3>", "''", "'_I'", "'_N'",
                                              "''", "''", "<1.5,2.5,3.5>", "''"));
    EXPECT_FALSE(host.throughChain);
}

TEST_F(Boundary, SeveralPointsGoThroughAChainWithANodeForEach)
{
    const AcGePoint3dArray points = {{1, 2, 3}, {4, 5, 6}};
    CZEMCBoundary::CreateBoundary(points, boundary, others, kNothing.name);
    CZEMCBoundary::CreateBoundary(points, boundary, others, kThree.name);
    ASSERT_THAT(host.commands, SizeIs(2));
    EXPECT_THAT(host.commands[0], ElementsAre("'_-BOUNDARY'", "'_A'", "'_I'", "'_Y'", "''", "'_O'", "'_P'", "''",
                                              "<1,2,3>", "<4,5,6>", "''"));
    EXPECT_THAT(host.commands[1], ElementsAre("'_-BOUNDARY'", "'_A'", "'_I'", "'_Y'", "'_B'", "'_N'", "<picks 3>", "''",
                                              "'_O'", "'_P'", "''", "<1,2,3>", "<4,5,6>", "''"));
    EXPECT_TRUE(host.throughChain);
}

TEST_F(Boundary, ASetThatHasNoLengthCountsAsEmpty)
{
    const ads_name none = {0, 0};
    const PickSet negative(-1);
    CZEMCBoundary::CreateBoundary(kPoint, boundary, others, none);
    CZEMCBoundary::CreateBoundary(kPoint, boundary, others, negative.name);
    ASSERT_THAT(host.commands, SizeIs(2));
    EXPECT_THAT(host.commands[0], SizeIs(7));
    EXPECT_THAT(host.commands[1], SizeIs(7));
}

TEST_F(Boundary, OnlyThePointFormWithoutIslandsLocksTheDocument)
{
    CZEMCBoundary::CreateBoundary(kPoint, boundary, others, kNothing.name);
    CZEMCBoundary::CreateBoundary(kPoint, boundary, kNothing.name);
    CZEMCBoundary::CreateBoundary(AcGePoint3dArray{kPoint}, boundary, others, kNothing.name);
    CZEMCBoundary::CreateBoundary(AcGePoint3dArray{kPoint}, boundary, kNothing.name);
    EXPECT_THAT(host.locksDuringCommand, ElementsAre(0, 1, 0, 0));
    EXPECT_EQ(host.locks, 0);
}

// --- What the command made
// ---------------------------------------------------------------------------------------------

TEST_F(Boundary, TheLargestNewPolylineIsTheBoundaryAndTheOthersAreIslands)
{
    host.addSquare(0, 0, 100); // stood before
    AcDbObjectId small, large, middle;
    host.command = [&] {
        small = host.addSquare(0, 0, 1);
        large = host.addSquare(0, 0, 9);
        middle = host.addSquare(0, 0, 5);
    };
    EXPECT_TRUE(CZEMCBoundary::CreateBoundary(kPoint, boundary, others, kThree.name));
    EXPECT_EQ(boundary, large);
    EXPECT_THAT(others, ElementsAre(small, middle));
}

TEST_F(Boundary, OthersAreAppendedAndNotCleared)
{
    const AcDbObjectId before = host.addSquare(0, 0, 3);
    others = {before};
    AcDbObjectId island;
    host.command = [&] {
        host.addSquare(0, 0, 9);
        island = host.addSquare(1, 1, 1);
    };
    EXPECT_TRUE(CZEMCBoundary::CreateBoundary(kPoint, boundary, others, kNothing.name));
    EXPECT_THAT(others, ElementsAre(before, island));
}

TEST_F(Boundary, OfTwoEqualAreasTheOneFoundFirstWins)
{
    AcDbObjectId first, second;
    host.command = [&] {
        first = addHeight(4);
        second = host.addSquare(50, 50, 2);
    };
    EXPECT_TRUE(CZEMCBoundary::CreateBoundary(kPoint, boundary, others, kNothing.name));
    EXPECT_EQ(boundary, first);
    EXPECT_THAT(others, ElementsAre(second));
}

TEST_F(Boundary, WithoutAnAreaAboveZeroThereIsNoBoundary)
{
    const AcDbObjectId untouched = host.addSquare(0, 0, 1);
    boundary = untouched;
    host.command = [&] {
        host.addPolyline({{0, 0, 0}, {5, 0, 0}});
        host.addPolyline({{0, 0, 0}, {5, 5, 0}, {0, 0, 0}});
    };
    EXPECT_FALSE(CZEMCBoundary::CreateBoundary(kPoint, boundary, others, kNothing.name));
    EXPECT_EQ(boundary, untouched);
    EXPECT_THAT(others, IsEmpty());
    EXPECT_FALSE(CZEMCBoundary::CreateBoundary(AcGePoint3dArray{kPoint}, boundary, others, kNothing.name));
}

TEST_F(Boundary, WhatIsOpenForWritingElsewhereIsPassedOver)
{
    AcDbEntity *held = nullptr;
    AcDbObjectId readable;
    host.command = [&] {
        ASSERT_EQ(acdbOpenAcDbEntity(held, host.addSquare(0, 0, 9), AcDb::kForWrite), Acad::eOk);
        readable = host.addSquare(0, 0, 2);
    };
    EXPECT_TRUE(CZEMCBoundary::CreateBoundary(kPoint, boundary, others, kNothing.name));
    EXPECT_EQ(boundary, readable);
    EXPECT_THAT(others, IsEmpty());
    double area = -1;
    EXPECT_FALSE(CZEMCBoundary::GetArea(area, held->objectId()));
    EXPECT_EQ(area, -1);
    held->close();
}

TEST_F(Boundary, ACommandThatMakesNothingGivesFalse)
{
    host.addSquare(0, 0, 9);
    EXPECT_FALSE(CZEMCBoundary::CreateBoundary(kPoint, boundary, others, kNothing.name));
    EXPECT_FALSE(CZEMCBoundary::CreateBoundary(kPoint, boundary, kNothing.name));
    EXPECT_TRUE(boundary.isNull());
}

TEST_F(Boundary, WithoutIslandsTheFirstNewPolylineWinsWhateverItsSize)
{
    AcDbObjectId line;
    host.command = [&] {
        line = host.addPolyline({{0, 0, 0}, {5, 0, 0}}, false);
        host.addSquare(0, 0, 9);
    };
    EXPECT_TRUE(CZEMCBoundary::CreateBoundary(kPoint, boundary, kNothing.name));
    EXPECT_EQ(boundary, line);
    int standing = 0;
    for (const AcDbEntity *entity : host.drawing().modelSpace().entities())
        standing += !entity->isErased();
    EXPECT_EQ(standing, 2) << "the others stay in the drawing";
}

TEST_F(Boundary, SeveralPointsGiveTheLargestToo)
{
    AcDbObjectId small, large;
    host.command = [&] {
        small = host.addSquare(0, 0, 1);
        large = host.addSquare(20, 0, 9);
    };
    EXPECT_TRUE(CZEMCBoundary::CreateBoundary(AcGePoint3dArray{kPoint}, boundary, others, kNothing.name));
    EXPECT_EQ(boundary, large);
    EXPECT_THAT(others, ElementsAre(small));
}

// --- The walk over all polylines
// -----------------------------------------------------------------------------------------

TEST_F(Boundary, FindNewPolyTellsWhetherTheDrawingHoldsAPolylineAtAll)
{
    AcDbObjectIdArray found = {AcDbObjectId()};
    CZEMCBoundary::RememberPolylines();
    EXPECT_FALSE(CZEMCBoundary::FindNewPoly(found));
    EXPECT_THAT(found, IsEmpty()) << "the list is cleared first";
    host.addSquare(0, 0, 1);
    CZEMCBoundary::RememberPolylines();
    EXPECT_TRUE(CZEMCBoundary::FindNewPoly(found));
    EXPECT_THAT(found, IsEmpty());
}

TEST_F(Boundary, APolylineIsNewOnlyOnce)
{
    CZEMCBoundary::RememberPolylines();
    const AcDbObjectId first = host.addSquare(0, 0, 1), second = host.addSquare(0, 0, 2);
    AcDbObjectIdArray found;
    EXPECT_TRUE(CZEMCBoundary::FindNewPoly(found));
    EXPECT_THAT(found, ElementsAre(first, second));
    EXPECT_TRUE(CZEMCBoundary::FindNewPoly(found));
    EXPECT_THAT(found, IsEmpty()) << "what was found is known from then on";
    const AcDbObjectId third = host.addSquare(0, 0, 3);
    EXPECT_TRUE(CZEMCBoundary::FindNewPoly(found));
    EXPECT_THAT(found, ElementsAre(third));
}

TEST_F(Boundary, ErasedPolylinesAreNotSeen)
{
    CZEMCBoundary::RememberPolylines();
    const AcDbObjectId gone = host.addSquare(0, 0, 1);
    AcDbEntity *entity = nullptr;
    ASSERT_EQ(acdbOpenAcDbEntity(entity, gone, AcDb::kForWrite), Acad::eOk);
    host.drawing().erase(*entity);
    entity->close();
    AcDbObjectIdArray found;
    EXPECT_FALSE(CZEMCBoundary::FindNewPoly(found));
    EXPECT_THAT(found, IsEmpty());
}

TEST_F(Boundary, OnlyTheTwoPlanePolylineClassesCountAndNoClassDerivedFromThem)
{
    CZEMCBoundary::RememberPolylines();
    auto &drawing = host.drawing();
    drawing.append(std::make_unique<AcDbLine>(AcGePoint3d(0, 0), AcGePoint3d(1, 1)));
    drawing.append(std::make_unique<AcDb3dPolyline>(std::vector<AcGePoint3d>{{0, 0}, {1, 0}, {1, 1}}, true));
    drawing.append(std::make_unique<DerivedPolyline>(std::vector<AcDbPolyline::Vertex>{{0, 0}, {1, 0}, {1, 1}}, true));
    AcDbObjectIdArray found;
    EXPECT_FALSE(CZEMCBoundary::FindNewPoly(found));
    const AcDbObjectId old = drawing.append(
        std::make_unique<AcDb2dPolyline>(std::vector<AcDb2dPolyline::Vertex>{{0, 0}, {1, 0}, {1, 1}}, true));
    EXPECT_TRUE(CZEMCBoundary::FindNewPoly(found));
    EXPECT_THAT(found, ElementsAre(old));
}

TEST_F(Boundary, PolylinesOfPaperSpacesAreKnownAndFoundLikeThoseOfModelSpace)
{
    velmor::BlockRecord &paper = *host.drawing().findBlock(L"*Paper_Space");
    const auto add = [&] {
        return host.drawing().append(
            std::make_unique<AcDbPolyline>(std::vector<AcDbPolyline::Vertex>{{0, 0}, {8, 0}, {8, 8}, {0, 8}}, true),
            paper);
    };
    add();
    CZEMCBoundary::RememberPolylines();
    AcDbObjectIdArray found;
    EXPECT_TRUE(CZEMCBoundary::FindNewPoly(found));
    EXPECT_THAT(found, IsEmpty());
    const AcDbObjectId fresh = add();
    EXPECT_TRUE(CZEMCBoundary::FindNewPoly(found));
    EXPECT_THAT(found, ElementsAre(fresh));
}

TEST_F(Boundary, PolylinesOfBlocksAreFoundInBlockTableOrder)
{
    velmor::BlockRecord &block = host.drawing().addBlock(L"HOUSE");
    CZEMCBoundary::RememberPolylines();
    const AcDbObjectId inBlock = host.drawing().append(
        std::make_unique<AcDbPolyline>(std::vector<AcDbPolyline::Vertex>{{0, 0}, {8, 0}, {8, 8}, {0, 8}}, true), block);
    const AcDbObjectId inModel = host.addSquare(0, 0, 1);
    AcDbObjectIdArray found;
    EXPECT_TRUE(CZEMCBoundary::FindNewPoly(found));
    EXPECT_THAT(found, ElementsAre(inModel, inBlock)) << "model space stands first";
    host.command = [&] {
        host.drawing().append(
            std::make_unique<AcDbPolyline>(std::vector<AcDbPolyline::Vertex>{{0, 0}, {9, 0}, {9, 9}, {0, 9}}, true),
            block);
    };
    EXPECT_TRUE(CZEMCBoundary::CreateBoundary(kPoint, boundary, others, kNothing.name));
}

TEST_F(Boundary, TheLastPolylineOfALargeDrawingIsFoundAmongTheKnownOnes)
{
    // Made out of order and partly erased, so that the known ones are no unbroken run.
    AcDbObjectIdArray ids;
    for (int i = 0; i < 2000; ++i)
        ids.push_back(host.addSquare(i, 0, 1));
    for (std::size_t i = 0; i < ids.size(); i += 3) {
        AcDbEntity *entity = nullptr;
        ASSERT_EQ(acdbOpenAcDbEntity(entity, ids[i], AcDb::kForWrite), Acad::eOk);
        host.drawing().erase(*entity);
        entity->close();
    }
    CZEMCBoundary::RememberPolylines();
    AcDbEntity *entity = nullptr;
    ASSERT_EQ(acdbOpenAcDbEntity(entity, ids[1], AcDb::kForWrite), Acad::eOk);
    host.drawing().erase(*entity);
    entity->close();
    const AcDbObjectId fresh = host.addSquare(5, 5, 5);
    AcDbObjectIdArray found;
    EXPECT_TRUE(CZEMCBoundary::FindNewPoly(found));
    EXPECT_THAT(found, ElementsAre(fresh));
}

TEST_F(Boundary, KnownPolylinesAreKnownHoweverTheirIdsLieInTheBlocks)
{
    // Made by turns in five blocks, so that the ids come in several runs along the walk.
    std::vector<velmor::BlockRecord *> blocks = {&host.drawing().modelSpace()};
    for (const wchar_t *name : {L"A", L"B", L"C", L"D"})
        blocks.push_back(&host.drawing().addBlock(name));
    const auto add = [&](velmor::BlockRecord &block) {
        return host.drawing().append(
            std::make_unique<AcDbPolyline>(std::vector<AcDbPolyline::Vertex>{{0, 0}, {1, 0}, {1, 1}}, true), block);
    };
    for (int i = 0; i < 300; ++i) {
        for (std::size_t turn = 0; turn < blocks.size(); ++turn)
            add(*blocks[(turn * 3 + std::size_t(i)) % blocks.size()]);
    }
    CZEMCBoundary::RememberPolylines();
    AcDbObjectIdArray found, fresh;
    EXPECT_TRUE(CZEMCBoundary::FindNewPoly(found));
    EXPECT_THAT(found, IsEmpty());
    for (velmor::BlockRecord *block : blocks)
        fresh.push_back(add(*block));
    EXPECT_TRUE(CZEMCBoundary::FindNewPoly(found));
    EXPECT_THAT(found, testing::UnorderedElementsAreArray(fresh));
    EXPECT_EQ(found.front(), fresh.front()) << "model space stands first";
    EXPECT_TRUE(CZEMCBoundary::FindNewPoly(found));
    EXPECT_THAT(found, IsEmpty());
}

TEST_F(Boundary, WithoutADrawingNothingIsFound)
{
    host.addSquare(0, 0, 1);
    velmor::setWorkingDrawing(nullptr);
    AcDbObjectIdArray found;
    CZEMCBoundary::RememberPolylines();
    EXPECT_FALSE(CZEMCBoundary::FindNewPoly(found));
}

// --- Measures
// ------------------------------------------------------------------------------------------------------------

TEST_F(Boundary, AreaIsTheCurvesOwnWithItsArcs)
{
    double area = 7;
    EXPECT_TRUE(CZEMCBoundary::GetArea(area, host.addSquare(0, 0, 3)));
    EXPECT_DOUBLE_EQ(area, 9);
    EXPECT_TRUE(CZEMCBoundary::GetArea(area, host.addPolyline({{0, 0, 1}, {2, 0, 1}})));
    EXPECT_NEAR(area, std::acos(-1.0), 1e-12);
}

TEST_F(Boundary, AreaOfWhatIsNoCurveStaysUnwritten)
{
    const AcDbObjectId text = host.drawing().append(std::make_unique<velmor::TextEntity>(velmor::TextShape{}));
    double area = 7;
    EXPECT_FALSE(CZEMCBoundary::GetArea(area, text));
    EXPECT_FALSE(CZEMCBoundary::GetArea(area, AcDbObjectId()));
    EXPECT_EQ(area, 7);
}

TEST_F(Boundary, CentroidIsThatOfTheVerticesOfAllThreeKinds)
{
    AcGePoint3d centroid;
    EXPECT_TRUE(CZEMCBoundary::GetCentroid(centroid, host.addSquare(2, 4, 2)));
    EXPECT_EQ(centroid, AcGePoint3d(3, 5, 0));
    auto &drawing = host.drawing();
    const std::vector<AcDbPolyline::Vertex> square = {{0, 0}, {2, 0}, {2, 2}, {0, 2}};
    EXPECT_TRUE(
        CZEMCBoundary::GetCentroid(centroid, drawing.append(std::make_unique<AcDb2dPolyline>(square, true, 5.0))));
    EXPECT_EQ(centroid, AcGePoint3d(1, 1, 5));
    EXPECT_TRUE(CZEMCBoundary::GetCentroid(
        centroid, drawing.append(std::make_unique<AcDb3dPolyline>(
                      std::vector<AcGePoint3d>{{0, 0, 1}, {2, 0, 1}, {2, 2, 1}, {0, 2, 1}}, true))));
    EXPECT_EQ(centroid, AcGePoint3d(1, 1, 1));
    EXPECT_TRUE(CZEMCBoundary::GetCentroid(centroid, host.addPolyline({{0, 0, 1}, {2, 0, 1}})));
    EXPECT_EQ(centroid, AcGePoint3d(1, 0, 0)) << "an arc counts as its chord";
}

TEST_F(Boundary, CentroidOfAnythingElseIsRefused)
{
    AcGePoint3d centroid(7, 7, 7);
    EXPECT_FALSE(CZEMCBoundary::GetCentroid(centroid, AcDbObjectId()));
    EXPECT_FALSE(CZEMCBoundary::GetCentroid(centroid, host.addPolyline({})));
    EXPECT_FALSE(CZEMCBoundary::GetCentroid(
        centroid, host.drawing().append(std::make_unique<AcDbLine>(AcGePoint3d(0, 0), AcGePoint3d(1, 1)))));
    EXPECT_EQ(centroid, AcGePoint3d(7, 7, 7));
}

TEST_F(Boundary, LengthOfStraightSegmentsLeavesTheClosingOneOutAndSucceeds)
{
    double length = 99;
    EXPECT_TRUE(CZEMCBoundary::GetLength(length, host.addPolyline({{0, 0}, {3, 0}, {3, 4}}, true)));
    EXPECT_DOUBLE_EQ(length, 7);
    EXPECT_TRUE(CZEMCBoundary::GetLength(length, host.addPolyline({{0, 0}}, true)));
    EXPECT_EQ(length, 0);
}

TEST_F(Boundary, LengthWithArcsCountsTheClosingOneAndStillFails)
{
    const double pi = std::acos(-1.0);
    double length = 99;
    EXPECT_FALSE(CZEMCBoundary::GetLength(length, host.addPolyline({{0, 0, 1}, {2, 0, 0}, {2, 4, 0}}, false)));
    EXPECT_NEAR(length, pi + 4 + std::hypot(2, 4), 1e-12);
    EXPECT_FALSE(CZEMCBoundary::GetLength(length, host.addPolyline({{0, 0, -1}, {2, 0, -1}}, true)));
    EXPECT_NEAR(length, 2 * pi, 1e-12) << "a bulge to the right is as long";
    EXPECT_FALSE(CZEMCBoundary::GetLength(length, host.addPolyline({{0, 0, std::tan(pi / 8)}, {1, 1, 0}}, false)));
    EXPECT_NEAR(length, pi / 2 + std::sqrt(2.0), 1e-12);
}

TEST_F(Boundary, LengthOfWhatIsNoLightWeightPolylineIsZeroAndFails)
{
    double length = 99;
    EXPECT_FALSE(CZEMCBoundary::GetLength(length, AcDbObjectId()));
    EXPECT_EQ(length, 0);
    length = 99;
    EXPECT_FALSE(CZEMCBoundary::GetLength(
        length, host.drawing().append(std::make_unique<AcDbLine>(AcGePoint3d(0, 0), AcGePoint3d(1, 1)))));
    EXPECT_EQ(length, 0);
    EXPECT_FALSE(CZEMCBoundary::GetLength(length, host.addPolyline({})));
    EXPECT_EQ(length, 0);
}

// --- Containment
// ---------------------------------------------------------------------------------------------------------

TEST_F(Boundary, APointIsInsideByTheVerticesAlone)
{
    const AcDbObjectId square = host.addSquare(0, 0, 2);
    EXPECT_TRUE(CZEMCBoundary::IsPointInside(square, {1, 1, 50}));
    EXPECT_FALSE(CZEMCBoundary::IsPointInside(square, {3, 1, 0}));
    const AcDbObjectId lens = host.addPolyline({{0, 0, 1}, {2, 0, 0}, {2, 2, 0}, {0, 2, 0}});
    EXPECT_FALSE(CZEMCBoundary::IsPointInside(lens, {1, -0.5, 0})) << "inside the arc but not inside its chord";
    const AcDbObjectId open = host.addPolyline({{0, 0}, {2, 0}, {2, 2}, {0, 2}}, false);
    EXPECT_TRUE(CZEMCBoundary::IsPointInside(open, {1, 1, 0})) << "the test closes the ring";
    const AcDbObjectId old = host.drawing().append(
        std::make_unique<AcDb2dPolyline>(std::vector<AcDb2dPolyline::Vertex>{{0, 0}, {2, 0}, {2, 2}, {0, 2}}, true));
    EXPECT_TRUE(CZEMCBoundary::IsPointInside(old, {1, 1, 0}));
}

TEST_F(Boundary, NoPointIsInsideAnyOtherClass)
{
    const AcDbObjectId spatial = host.drawing().append(
        std::make_unique<AcDb3dPolyline>(std::vector<AcGePoint3d>{{0, 0, 1}, {2, 0, 1}, {2, 2, 1}, {0, 2, 1}}, true));
    EXPECT_FALSE(CZEMCBoundary::IsPointInside(spatial, {1, 1, 0}));
    const AcDbObjectId derived = host.drawing().append(
        std::make_unique<DerivedPolyline>(std::vector<AcDbPolyline::Vertex>{{0, 0}, {2, 0}, {2, 2}, {0, 2}}, true));
    EXPECT_FALSE(CZEMCBoundary::IsPointInside(derived, {1, 1, 0}));
    EXPECT_FALSE(CZEMCBoundary::IsPointInside(AcDbObjectId(), {1, 1, 0}));
}

TEST_F(Boundary, AnOpenWrapperAnswersForReadingAndForWriting)
{
    const AcDbObjectId square = host.addSquare(0, 0, 2);
    for (const AcDb::OpenMode mode : {AcDb::kForRead, AcDb::kForWrite}) {
        const CZEMCPolylineLWPtr opened(square, mode);
        EXPECT_TRUE(CZEMCBoundary::IsPointInside(opened, {1, 1, 0}));
        EXPECT_FALSE(CZEMCBoundary::IsPointInside(opened, {3, 1, 0}));
    }
    const CZEMCPolylineLWPtr neverOpened;
    EXPECT_FALSE(CZEMCBoundary::IsPointInside(neverOpened, {1, 1, 0}));
}

class BoundarySection : public Boundary {
protected:
    /// Is a section of that type and place inside the square from (10, 10) to (20, 20)?
    bool inside(const SectionPlace &place)
    {
        const AcDbObjectId square = host.addSquare(10, 10, 10);
        const AcDbObjectId line = host.drawing().append(std::make_unique<AcDbLine>(place.start, place.end));
        host.sections[line.handle().value()] = place;
        return CZEMCBoundary::IsSectionInside(square, line);
    }
};

TEST_F(BoundarySection, TheMiddleOfTheChordDecides)
{
    EXPECT_TRUE(inside({1, {12, 12}, {18, 18}}));
    EXPECT_TRUE(inside({1, {0, 15}, {30, 15}})) << "both ends outside";
    EXPECT_FALSE(inside({1, {12, 12}, {40, 12}})) << "one end inside";
}

TEST_F(BoundarySection, BothEndsInsideAndTheMiddleOutsideIsOutside)
{
    const AcDbObjectId horseshoe =
        host.addPolyline({{0, 0}, {30, 0}, {30, 20}, {20, 20}, {20, 10}, {10, 10}, {10, 20}, {0, 20}});
    const SectionPlace place{1, {5, 15}, {25, 15}};
    const AcDbObjectId line = host.drawing().append(std::make_unique<AcDbLine>(place.start, place.end));
    host.sections[line.handle().value()] = place;
    EXPECT_TRUE(CZEMCBoundary::IsPointInside(horseshoe, place.start));
    EXPECT_TRUE(CZEMCBoundary::IsPointInside(horseshoe, place.end));
    EXPECT_FALSE(CZEMCBoundary::IsSectionInside(horseshoe, line));
}

TEST_F(BoundarySection, AnyOtherTypeIsTestedAtTheOrigin)
{
    EXPECT_FALSE(inside({2, {12, 12}, {18, 18}}));
    EXPECT_FALSE(inside({0, {12, 12}, {18, 18}}));
    const AcDbObjectId roundOrigin = host.addSquare(-5, -5, 10);
    const AcDbObjectId line =
        host.drawing().append(std::make_unique<AcDbLine>(AcGePoint3d(100, 100), AcGePoint3d(101, 100)));
    host.sections[line.handle().value()] = {2, {100, 100}, {101, 100}};
    EXPECT_TRUE(CZEMCBoundary::IsSectionInside(roundOrigin, line));
}

TEST_F(BoundarySection, ARingReadOnceAnswersForManySectionsAsTheIdsDo)
{
    // Middles on and about all edges of a horseshoe and of the box round it.
    const AcDbObjectId horseshoe =
        host.addPolyline({{0, 0}, {30, 0}, {30, 20}, {20, 20}, {20, 10}, {10, 10}, {10, 20}, {0, 20}});
    const CBoundaryRing ring(horseshoe);
    int insides = 0, all = 0;
    for (double x = -5; x <= 35; x += 2.5) {
        for (double y = -5; y <= 25; y += 2.5) {
            const SectionPlace place{1, {x - 1, y}, {x + 1, y}};
            const AcDbObjectId line = host.drawing().append(std::make_unique<AcDbLine>(place.start, place.end));
            host.sections[line.handle().value()] = place;
            const bool inside = CZEMCBoundary::IsSectionInside(horseshoe, line);
            EXPECT_EQ(CZEMCBoundary::IsSectionInside(ring, CSectionPoint(line)), inside) << x << ' ' << y;
            EXPECT_EQ(CZEMCBoundary::IsPointInside(horseshoe, CSectionPoint(line).m_point), inside) << x << ' ' << y;
            insides += inside ? 1 : 0;
            ++all;
        }
    }
    EXPECT_GT(insides, all / 5);
    EXPECT_LT(insides, all / 2);
}

TEST_F(BoundarySection, AnUnknownSectionOrWhatIsNoCurveIsNotInside)
{
    const AcDbObjectId square = host.addSquare(10, 10, 10);
    const AcDbObjectId line =
        host.drawing().append(std::make_unique<AcDbLine>(AcGePoint3d(12, 12), AcGePoint3d(18, 18)));
    EXPECT_FALSE(CZEMCBoundary::IsSectionInside(square, line)) << "a line that is no section";
    host.sections[line.handle().value()] = {1, {12, 12}, {18, 18}};
    EXPECT_TRUE(CZEMCBoundary::IsSectionInside(square, line));
    EXPECT_FALSE(CZEMCBoundary::IsSectionInside(AcDbObjectId(), line));
    const AcDbObjectId text = host.drawing().append(std::make_unique<velmor::TextEntity>(velmor::TextShape{}));
    EXPECT_FALSE(CZEMCBoundary::IsSectionInside(text, line));
}

// --- Drawing
// ---------------------------------------------------------------------------------------------------------------

TEST_F(Boundary, ACopyIsAClosedLightWeightPolylineOverTheVertices)
{
    const AcDbObjectId source = host.addPolyline({{0, 0, 1}, {2, 0, 0}, {2, 2, 0}}, false);
    AcDbObjectId copy;
    EXPECT_TRUE(CZEMCBoundary::CopyToPolylineLW(source, copy));
    const CZEMCPolylineLWPtr opened(copy, AcDb::kForRead);
    ASSERT_TRUE(opened.isOpen());
    EXPECT_TRUE(opened.polyline()->isClosed());
    EXPECT_EQ(opened.polyline()->vertices(), (std::vector<AcDbPolyline::Vertex>{{0, 0, 0}, {2, 0, 0}, {2, 2, 0}}));
    EXPECT_FALSE(source.isErased());
    EXPECT_FALSE(copy == source);

    const AcDbObjectId old = host.drawing().append(
        std::make_unique<AcDb2dPolyline>(std::vector<AcDb2dPolyline::Vertex>{{0, 0}, {5, 0}, {5, 5}}, true));
    EXPECT_TRUE(CZEMCBoundary::CopyToPolylineLW(old, copy));
    const CZEMCPolylineLWPtr second(copy, AcDb::kForRead);
    EXPECT_EQ(second.polyline()->numVerts(), 3u);
}

TEST_F(Boundary, ACopyOfAnythingElseIsDrawnOverNoVertices)
{
    AcDbObjectId copy;
    EXPECT_FALSE(CZEMCBoundary::CopyToPolylineLW(AcDbObjectId(), copy));
    EXPECT_TRUE(copy.isNull());
    const AcDbObjectId line = host.drawing().append(std::make_unique<AcDbLine>(AcGePoint3d(0, 0), AcGePoint3d(1, 1)));
    EXPECT_TRUE(CZEMCBoundary::CopyToPolylineLW(line, copy));
    if (const CZEMCPolylineLWPtr opened(copy, AcDb::kForRead); opened.isOpen()) {
        EXPECT_EQ(opened.polyline()->numVerts(), 0u);
    }
}

TEST_F(Boundary, APolygonNeedsMoreThanTwoPoints)
{
    AcDbObjectId polygon;
    const auto before = host.drawing().modelSpace().entities().size();
    EXPECT_FALSE(CZEMCBoundary::DrawPolygon({}, polygon));
    EXPECT_FALSE(CZEMCBoundary::DrawPolygon({{0, 0}, {1, 1}}, polygon));
    EXPECT_EQ(host.drawing().modelSpace().entities().size(), before);
    EXPECT_TRUE(CZEMCBoundary::DrawPolygon({{0, 0}, {1, 1}, {0, 1}}, polygon));
    const CZEMCPolylineLWPtr opened(polygon, AcDb::kForRead);
    ASSERT_TRUE(opened.isOpen());
    EXPECT_TRUE(opened.polyline()->isClosed());
    EXPECT_EQ(opened.polyline()->numVerts(), 3u);
    velmor::setWorkingDrawing(nullptr);
    EXPECT_FALSE(CZEMCBoundary::DrawPolygon({{0, 0}, {1, 1}, {0, 1}}, polygon)) << "no drawing, no id";
}

// --- Trace
// -----------------------------------------------------------------------------------------------------------------

TEST_F(Boundary, NothingIsTracedWhileTheSwitchIsOff)
{
    host.command = [&] { host.addSquare(0, 0, 2); };
    CZEMCBoundary::CreateBoundary(kPoint, boundary, others, kNothing.name);
    CZEMCBoundary::IsPointInside(boundary, kPoint);
    EXPECT_THAT(host.takeTrace(), IsEmpty());
}

TEST_F(Boundary, TheFormWithIslandsTracesItsSteps)
{
    host.logging = 1;
    host.command = [&] {
        host.addSquare(0, 0, 2);
        host.addSquare(0, 0, 1.5);
    };
    EXPECT_TRUE(CZEMCBoundary::CreateBoundary(kPoint, boundary, others, kNothing.name));
    EXPECT_THAT(
        host.takeTrace(),
        ElementsAre(EndsWith("[CZEMCBoundary::CreateBoundary], Entering function , CZEMCBoundary::CreateBoundary"),
                    EndsWith("[CZEMCBoundary::FindNewPoly], ok = '1'"),
                    EndsWith("[CZEMCBoundary::CreateBoundary], Broj novih polylinija:2"),
                    EndsWith("[CZEMCBoundary::CreateBoundary], povTemp = '4'"),
                    EndsWith("[CZEMCBoundary::CreateBoundary], povTemp = '2.25'"),
                    EndsWith("[CZEMCBoundary::CreateBoundary], ok = '1'"),
                    EndsWith("[CZEMCBoundary::CreateBoundary], Exiting function , CZEMCBoundary::CreateBoundary")));
}

TEST_F(Boundary, ATraceThatFindsNothingTellsItsCountsAndNoSuccess)
{
    host.logging = 1;
    host.command = [] {};
    EXPECT_FALSE(CZEMCBoundary::CreateBoundary(kPoint, boundary, others, kNothing.name));
    EXPECT_THAT(host.takeTrace(), ElementsAre(HasSubstr("Entering"), HasSubstr("FindNewPoly], ok = '0'"),
                                              EndsWith("Broj novih polylinija:0"), HasSubstr("Exiting")));
    host.command = [&] { host.addPolyline({{0, 0}, {1, 0}}, false); };
    EXPECT_FALSE(CZEMCBoundary::CreateBoundary(kPoint, boundary, others, kNothing.name));
    EXPECT_THAT(host.takeTrace(),
                ElementsAre(HasSubstr("Entering"), HasSubstr("FindNewPoly], ok = '1'"),
                            EndsWith("Broj novih polylinija:1"), EndsWith("povTemp = '0'"), HasSubstr("Exiting")));
}

TEST_F(Boundary, TheFormWithSeveralPointsTracesNoCountsAndTheOthersOnlyTheirFrame)
{
    host.logging = 1;
    host.command = [&] { host.addSquare(0, 0, 2); };
    CZEMCBoundary::CreateBoundary(AcGePoint3dArray{kPoint}, boundary, others, kNothing.name);
    EXPECT_THAT(host.takeTrace(), ElementsAre(HasSubstr("Entering"), HasSubstr("FindNewPoly], ok = '1'"),
                                              HasSubstr("CreateBoundary], ok = '1'"), HasSubstr("Exiting")));
    CZEMCBoundary::CreateBoundary(kPoint, boundary, kNothing.name);
    EXPECT_THAT(host.takeTrace(), ElementsAre(HasSubstr("Entering"), HasSubstr("FindNewPoly"), HasSubstr("Exiting")));
    CZEMCBoundary::CreateBoundary(AcGePoint3dArray{kPoint}, boundary, kNothing.name);
    EXPECT_THAT(host.takeTrace(), ElementsAre(HasSubstr("Entering"), HasSubstr("FindNewPoly"), HasSubstr("Exiting")));
}

TEST_F(BoundarySection, ContainmentTracesItsFrames)
{
    host.logging = 1;
    inside({1, {12, 12}, {18, 18}});
    EXPECT_THAT(host.takeTrace(), ElementsAre(HasSubstr("Entering function , CZEMCBoundary::IsSectionInside"),
                                              HasSubstr("Entering function , CZEMCBoundary::IsPointInside"),
                                              HasSubstr("Exiting function , CZEMCBoundary::IsPointInside"),
                                              HasSubstr("Exiting function , CZEMCBoundary::IsSectionInside")));
}

TEST_F(Boundary, TraceLinesNameTheSourceByItsPathFromTheTopFolder)
{
    host.logging = 1;
    CZEMCBoundary::CreateBoundary(kPoint, boundary, kNothing.name);
    EXPECT_THAT(host.takeTrace().front(), testing::StartsWith("geometry/ZEMCBoundary.cpp       ("));
}
