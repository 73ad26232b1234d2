#include "tests/host/commands/CommandsFixture.h"

namespace velmor {
namespace {

using test::CommandsFixture;
constexpr double kPi = std::numbers::pi;

class DrawCommands : public CommandsFixture {};

// --- LINE
// --------------------------------------------------------------------------------------------------------

TEST_F(DrawCommands, LinesGoFromPointToPointTillEnter)
{
    ASSERT_TRUE(run(L"LINE 0,0 @10,0 @5<90 20,5 \"\"")) << std::string(why.begin(), why.end());
    const auto lines = living();
    ASSERT_EQ(lines.size(), 3u);
    const auto &second = static_cast<AcDbLine &>(*lines[1]);
    EXPECT_EQ(second.startPoint().x, 10.0);
    EXPECT_NEAR(second.endPoint().x, 10.0, 1e-12);
    EXPECT_NEAR(second.endPoint().y, 5.0, 1e-12);
    EXPECT_EQ(static_cast<AcDbLine &>(*lines[2]).endPoint().x, 20.0);
}

TEST_F(DrawCommands, CloseDrawsBackToTheFirstPointAndEnds)
{
    ASSERT_TRUE(run(L"L 0,0 10,0 10,10 C"));
    const auto lines = living();
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_EQ(static_cast<AcDbLine &>(*lines[2]).endPoint().x, 0.0);
    EXPECT_EQ(static_cast<AcDbLine &>(*lines[2]).endPoint().y, 0.0);
}

TEST_F(DrawCommands, UndoTakesTheLastLineAndGoesOnFromItsStart)
{
    ASSERT_TRUE(run(L"LINE 0,0 10,0 10,10 Undo 20,0 \"\""));
    const auto lines = living();
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(static_cast<AcDbLine &>(*lines[1]).startPoint().x, 10.0);
    EXPECT_EQ(static_cast<AcDbLine &>(*lines[1]).startPoint().y, 0.0);
}

TEST_F(DrawCommands, EscapeKeepsTheLinesThatWereDrawnAsOneStep)
{
    run(L"LINE 0,0 10,0 10,10");
    EXPECT_EQ(living().size(), 2u);
    auto &history = drawing().component<UndoHistory>();
    EXPECT_EQ(history.undo(), 1u);
    EXPECT_EQ(living().size(), 0u);
}

TEST_F(DrawCommands, WhatIsNoPointIsRefusedWithWordsAndThePromptStands)
{
    EXPECT_FALSE(run(L"LINE 0,0 nowhere 10,0 \"\""));
    EXPECT_TRUE(wasTold(L"a point"));
    EXPECT_EQ(living().size(), 1u);
    EXPECT_FALSE(run(L"LINE 0,0 0,0 5,0 \"\""));
    EXPECT_TRUE(wasTold(L"another one is needed"));
}

// --- PLINE
// -------------------------------------------------------------------------------------------------------

TEST_F(DrawCommands, APolylineGoesOnWithASmoothArc)
{
    ASSERT_TRUE(run(L"PLINE 0,0 10,0 Arc 10,10 Line 0,10 \"\""));
    const auto *polyline = only<AcDbPolyline>();
    ASSERT_TRUE(polyline);
    const auto &v = polyline->vertices();
    ASSERT_EQ(v.size(), 4u);
    EXPECT_EQ(v[0].bulge, 0.0);
    EXPECT_NEAR(v[1].bulge, 1.0, 1e-12); // from eastwards to the point straight above: half a circle
    EXPECT_EQ(v[2].bulge, 0.0);
    EXPECT_FALSE(polyline->isClosed());
}

TEST_F(DrawCommands, ASecondArcFollowsTheEndOfTheFirst)
{
    ASSERT_TRUE(run(L"PL 0,0 10,0 A 20,10 20,20 \"\""));
    const auto &v = only<AcDbPolyline>()->vertices();
    ASSERT_EQ(v.size(), 4u);
    EXPECT_NEAR(v[1].bulge, std::tan(kPi / 8.0), 1e-12); // a quarter, which ends northwards
    EXPECT_NEAR(v[2].bulge, 0.0, 1e-12);                 // straight on
}

TEST_F(DrawCommands, APolylineIsClosedByLineOrArc)
{
    ASSERT_TRUE(run(L"PL 0,0 10,0 10,10 Close"));
    EXPECT_TRUE(only<AcDbPolyline>()->isClosed());
    EXPECT_EQ(only<AcDbPolyline>()->vertices().size(), 3u);
    run(L"ERASE ALL \"\"");
    ASSERT_TRUE(run(L"PL 0,0 10,0 A 10,10 Close"));
    EXPECT_NEAR(only<AcDbPolyline>()->vertices()[2].bulge, std::tan(kPi / 8.0), 1e-12); // westwards, then a quarter
}

TEST_F(DrawCommands, UndoOfAPolylineTakesVerticesDownToTheFirst)
{
    ASSERT_TRUE(run(L"PL 0,0 10,0 U 5,5 \"\""));
    const auto *polyline = only<AcDbPolyline>();
    ASSERT_TRUE(polyline);
    ASSERT_EQ(polyline->vertices().size(), 2u);
    EXPECT_EQ(polyline->vertices()[1].x, 5.0);
}

// --- CIRCLE
// ------------------------------------------------------------------------------------------------------

TEST_F(DrawCommands, ACircleTakesRadiusDiameterOrAPointOnIt)
{
    ASSERT_TRUE(run(L"CIRCLE 5,5 2.5"));
    EXPECT_EQ(last<CircleEntity>()->radius(), 2.5);
    ASSERT_TRUE(run(L"C 5,5 D 3"));
    EXPECT_EQ(last<CircleEntity>()->radius(), 1.5);
    ASSERT_TRUE(run(L"C 5,5 8,9"));
    EXPECT_EQ(last<CircleEntity>()->radius(), 5.0);
}

TEST_F(DrawCommands, ACircleThroughTwoAndThreePoints)
{
    ASSERT_TRUE(run(L"CIRCLE 2P 0,0 6,8"));
    EXPECT_EQ(last<CircleEntity>()->radius(), 5.0);
    EXPECT_EQ(last<CircleEntity>()->center().x, 3.0);
    ASSERT_TRUE(run(L"CIRCLE 3P 5000000,5000000 5000010,5000000 5000010,5000010"));
    EXPECT_NEAR(last<CircleEntity>()->center().x, 5000005.0, 1e-9);
    EXPECT_NEAR(last<CircleEntity>()->radius(), 5.0 * std::sqrt(2.0), 1e-9);
}

TEST_F(DrawCommands, ThreePointsOnALineMakeNoCircleAndNoArc)
{
    EXPECT_FALSE(run(L"CIRCLE 3P 0,0 1,1 2,2"));
    EXPECT_FALSE(run(L"ARC 0,0 1,1 2,2"));
    EXPECT_TRUE(wasTold(L"one line"));
    EXPECT_EQ(living().size(), 0u);
}

TEST_F(DrawCommands, ARadiusOfNothingIsRefused)
{
    EXPECT_FALSE(run(L"CIRCLE 0,0 0"));
    EXPECT_FALSE(run(L"CIRCLE 0,0 -1"));
    EXPECT_EQ(living().size(), 0u);
}

// --- ARC
// ---------------------------------------------------------------------------------------------------------

TEST_F(DrawCommands, AnArcThroughThreePointsPassesTheSecondEitherWay)
{
    // The upper half of a circle, once from the right and once from the left.
    for (const wchar_t *line : {L"ARC 5,0 0,5 -5,0", L"ARC -5,0 0,5 5,0"}) {
        ASSERT_TRUE(run(line));
        const auto *arc = last<AcDbArc>();
        ASSERT_TRUE(arc);
        EXPECT_NEAR(arc->radius(), 5.0, 1e-12);
        EXPECT_NEAR(arc->startPoint().x, 5.0, 1e-9);
        EXPECT_NEAR(arc->endPoint().x, -5.0, 1e-9);
    }
}

TEST_F(DrawCommands, AnArcAroundItsCentreRunsCounterClockwise)
{
    ASSERT_TRUE(run(L"ARC 5,0 Centre 0,0 0,5"));
    EXPECT_NEAR(last<AcDbArc>()->endAngle() - last<AcDbArc>()->startAngle(), kPi / 2.0, 1e-12);
    ASSERT_TRUE(run(L"ARC C 0,0 5,0 Angle 45"));
    EXPECT_NEAR(last<AcDbArc>()->endAngle(), kPi / 4.0, 1e-12);
    ASSERT_TRUE(run(L"ARC C 0,0 5,0 A -45"));
    EXPECT_NEAR(last<AcDbArc>()->startAngle(), -kPi / 4.0, 1e-12);
    EXPECT_NEAR(last<AcDbArc>()->endAngle(), 0.0, 1e-12);
    EXPECT_FALSE(run(L"ARC C 0,0 5,0 A 0"));
}

// --- POINT, TEXT
// -------------------------------------------------------------------------------------------------

TEST_F(DrawCommands, APointStandsWhereItIsSaid)
{
    ASSERT_TRUE(run(L"POINT 3,4"));
    ASSERT_TRUE(only<PointEntity>());
    EXPECT_EQ(only<PointEntity>()->position().y, 4.0);
}

TEST_F(DrawCommands, ATextHasPlaceHeightAngleAndWords)
{
    ASSERT_TRUE(run(L"TEXT 1,2 3 90 \"MH 1\"")) << std::string(why.begin(), why.end());
    const auto *text = only<TextEntity>();
    ASSERT_TRUE(text);
    EXPECT_EQ(text->shape().text, L"MH 1");
    EXPECT_EQ(text->shape().height, 3.0);
    EXPECT_NEAR(text->shape().rotation, kPi / 2.0, 1e-12);
}

TEST_F(DrawCommands, FurtherLinesStandBelowAndTheHeightIsKeptForTheNextText)
{
    ASSERT_TRUE(run(L"TEXT 0,0 3 0 one two \"\""));
    ASSERT_EQ(living().size(), 2u);
    EXPECT_NEAR(static_cast<TextEntity &>(*living()[1]).shape().position.y, -5.0, 1e-12);
    ASSERT_TRUE(run(L"TEXT 0,20 \"\" \"\" next"));
    EXPECT_EQ(last<TextEntity>()->shape().height, 3.0);
}

TEST_F(DrawCommands, ANetworkIsMadeOfWhatWasDrawn)
{
    // Two pipes between three manholes, drawn and named by hand in an empty drawing.
    ASSERT_TRUE(run(L"LAYER Pipes"));
    ASSERT_TRUE(run(L"LINE 0,0 50,0 80,40 \"\""));
    ASSERT_TRUE(run(L"TEXT 0,1 1 0 M1"));
    ASSERT_TRUE(run(L"TEXT 50,1 1 0 M2"));
    ASSERT_TRUE(run(L"TEXT 80,41 1 0 M3"));
    ASSERT_TRUE(run(L"SECTIONS Pipes"));
    EXPECT_TRUE(wasTold(L"2 sections, 3 nodes"));
    ASSERT_TRUE(run(L"LIST \"#" + handleText(*living()[0]) + L"\" \"\""));
    EXPECT_TRUE(wasTold(L"Section:"));
}

} // namespace
} // namespace velmor
