// Rules of regions, each on a small shape.
#include "tests/host/boundary/Shapes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>

using namespace velmor::boundary;
using namespace velmor::boundary::testing;

namespace {

Region islandsAt(const std::vector<Piece> &pieces, Point point)
{
    Linework lines(pieces);
    return lines.regionAt(point, {.islands = true});
}

} // namespace

TEST(Regions, TheRingStartsAtItsLowestThenLeftmostVertexAndRunsCounterClockwise)
{
    // Given clockwise, from the top.
    const Region region = islandsAt(loops("10 10, 10 0, 0 0, 0 10"), {5, 5});
    ASSERT_EQ(region.status, Status::Found);
    EXPECT_EQ(region.outer, ring("0 0, 10 0, 10 10, 0 10"));
    EXPECT_TRUE(region.islands.empty());
}

TEST(Regions, PiecesNeedNotBeSplitWhereTheyCross)
{
    // Four long lines that cross beyond each corner.
    const Region region = islandsAt(chains("-5 0, 15 0; -5 10, 15 10; 0 -5, 0 15; 10 -5, 10 15"), {5, 5});
    ASSERT_EQ(region.status, Status::Found);
    EXPECT_EQ(region.outer, ring("0 0, 10 0, 10 10, 0 10"));
}

TEST(Regions, ALineThatTouchesFromOutsideAddsNoVertex)
{
    const Region region = islandsAt(loops("0 0, 10 0, 10 10, 0 10") + chains("10 5, 20 5; 5 10, 5 20"), {5, 5});
    EXPECT_EQ(region.outer, ring("0 0, 10 0, 10 10, 0 10"));
}

TEST(Regions, AVertexOnAStraightSideStays)
{
    const Region region = islandsAt(loops("0 0, 4 0, 10 0, 10 10, 0 10"), {5, 5});
    EXPECT_EQ(region.outer, ring("0 0, 4 0, 10 0, 10 10, 0 10"));
}

TEST(Regions, AVertexThatALongerPieceRunsThroughIsNone)
{
    // The neighbour's side has a vertex at 4 0, ours runs through it: whichever comes first.
    const auto ours = loops("0 0, 10 0, 10 10, 0 10"), theirs = loops("0 0, 4 0, 10 0, 10 -10, 0 -10");
    EXPECT_EQ(islandsAt(ours + theirs, {5, 5}).outer, ring("0 0, 10 0, 10 10, 0 10"));
    EXPECT_EQ(islandsAt(theirs + ours, {5, 5}).outer, ring("0 0, 10 0, 10 10, 0 10"));
}

TEST(Regions, CoincidentAndOverlappingPiecesCountOnce)
{
    // Every side twice, once in other direction, and overlaps of different length.
    const auto square = loops("0 0, 10 0, 10 10, 0 10"), back = loops("0 0, 0 10, 10 10, 10 0");
    const Region region = islandsAt(square + back + chains("2 0, 8 0; 5 0, 14 0; 10 3, 10 4"), {5, 5});
    ASSERT_EQ(region.status, Status::Found);
    EXPECT_EQ(region.outer, ring("0 0, 10 0, 10 10, 0 10"));
    EXPECT_TRUE(region.islands.empty());
}

TEST(Regions, DanglingEndsInsideAreDropped)
{
    const Region region =
        islandsAt(loops("0 0, 10 0, 10 10, 0 10") + chains("10 5, 6 5, 6 6; 0 2, 3 3; 3 3, 3 4"), {5, 4});
    EXPECT_EQ(region.outer, ring("0 0, 10 0, 10 10, 0 10"));
    EXPECT_TRUE(region.islands.empty());
}

TEST(Regions, ALoneLineInsideIsNoIsland)
{
    const Region region = islandsAt(loops("0 0, 10 0, 10 10, 0 10") + chains("4 4, 6 4, 6 6"), {5, 5});
    EXPECT_EQ(region.outer, ring("0 0, 10 0, 10 10, 0 10"));
    EXPECT_TRUE(region.islands.empty());
}

TEST(Regions, IslandsAreOfTheFirstLevelOnly)
{
    // Two islands; one of them holds a third, and consists of two rooms.
    const auto pieces =
        loops("0 0, 20 0, 20 10, 0 10; 2 2, 8 2, 8 8, 2 8; 4 4, 6 4, 6 6, 4 6; 12 2, 18 2, 18 8, 12 8") +
        chains("15 2, 15 8");
    const Region region = islandsAt(pieces, {10, 5});
    EXPECT_EQ(region.outer, ring("0 0, 20 0, 20 10, 0 10"));
    ASSERT_EQ(region.islands.size(), 2U);
    EXPECT_EQ(region.islands[0], ring("2 2, 8 2, 8 8, 2 8"));
    EXPECT_EQ(region.islands[1], ring("12 2, 18 2, 18 8, 12 8"));
}

TEST(Regions, IslandsAreLeftOutUnlessAskedFor)
{
    Linework lines(loops("0 0, 20 0, 20 10, 0 10; 2 2, 8 2, 8 8, 2 8"));
    EXPECT_TRUE(lines.regionAt({10, 5}).islands.empty());
    EXPECT_EQ(lines.regionAt({10, 5}, {.islands = true}).islands.size(), 1U);
}

TEST(Regions, TheRayGoesOnBeyondIslands)
{
    // Three islands stand between the point and the side on its right.
    const Region region = islandsAt(
        loops("0 0, 30 0, 30 10, 0 10; 4 4, 6 4, 6 6, 4 6; 10 3, 13 3, 13 7, 10 7; 20 1, 25 1, 25 9, 20 9"), {2, 5});
    EXPECT_EQ(region.outer, ring("0 0, 30 0, 30 10, 0 10"));
    EXPECT_EQ(region.islands.size(), 3U);
}

TEST(Regions, AHoleOnABridgeIsAnIsland)
{
    // A key-holed polygon: in along a bridge, round the hole, back along the bridge.
    const Region region = islandsAt(loops("0 0, 10 0, 10 5, 6 5, 6 6, 4 6, 4 4, 6 4, 6 5, 10 5, 10 10, 0 10"), {2, 2});
    EXPECT_EQ(region.outer, ring("0 0, 10 0, 10 5, 10 10, 0 10"));
    ASSERT_EQ(region.islands.size(), 1U);
    EXPECT_EQ(region.islands[0], ring("4 4, 6 4, 6 5, 6 6, 4 6"));
}

TEST(Regions, IslandsJoinedByABridgeStayTwo)
{
    const Region region = islandsAt(
        loops("0 0, 20 0, 20 10, 0 10; 2 2, 8 2, 8 8, 2 8; 12 2, 18 2, 18 8, 12 8") + chains("8 5, 12 5"), {10, 1});
    EXPECT_EQ(region.islands.size(), 2U);
}

TEST(Regions, AHoleThatTouchesTheOutlineInAPointIsAnIsland)
{
    const Region region = islandsAt(loops("0 0, 10 0, 10 10, 0 10; 5 0, 7 3, 3 3"), {1, 5});
    EXPECT_EQ(region.outer, ring("0 0, 10 0, 10 10, 0 10"));
    ASSERT_EQ(region.islands.size(), 1U);
    EXPECT_EQ(region.islands[0], ring("5 0, 7 3, 3 3"));
}

TEST(Regions, TwoFacesThatTouchInAPointAreTwo)
{
    // A bow tie.
    const auto pieces = chains("0 0, 10 10; 0 10, 10 0; 0 0, 0 10; 10 0, 10 10");
    EXPECT_EQ(islandsAt(pieces, {1, 5}).outer, ring("0 0, 5 5, 0 10"));
    EXPECT_EQ(islandsAt(pieces, {9, 5}).outer, ring("10 0, 10 10, 5 5"));
}

TEST(Regions, APointOnTheLineworkHasNoFace)
{
    Linework lines(loops("0 0, 10 0, 10 10, 0 10 1"));
    EXPECT_EQ(lines.regionAt({5, 0}).status, Status::OnEdge);
    EXPECT_EQ(lines.regionAt({10, 10}).status, Status::OnEdge);
    EXPECT_EQ(lines.regionAt({-5, 5}).status, Status::OnEdge); // on the arc
}

TEST(Regions, NothingAroundIsNotEnclosed)
{
    Linework none;
    EXPECT_EQ(none.regionAt({0, 0}).status, Status::NotEnclosed);
    Linework lines(loops("0 0, 10 0, 10 10, 0 10"));
    for (const Point p : {Point{-5, 5}, Point{15, 5}, Point{5, -5}, Point{5, 15}})
        EXPECT_EQ(lines.regionAt(p).status, Status::NotEnclosed) << p.x << ' ' << p.y;
}

TEST(Regions, ACircleOfTwoArcsKeepsBothVertices)
{
    const Region region = islandsAt(loops("-5 0 1, 5 0 1"), {1, 1});
    ASSERT_EQ(region.outer.size(), 2U);
    EXPECT_NEAR(signedArea(region.outer), 25 * std::numbers::pi, 1e-12);
    EXPECT_NEAR(region.outer[0].bulge, 1.0, 1e-14);
    EXPECT_NEAR(region.outer[1].bulge, 1.0, 1e-14);
}

TEST(Regions, ArcsStayArcs)
{
    // A stadium whose ends are cut by a line through the left arc.
    const Region region = islandsAt(loops("0 0, 10 0 1, 10 4, 0 4 1") + chains("-1 -5, -1 9"), {5, 2});
    ASSERT_EQ(region.outer.size(), 6U);
    const double h = std::sqrt(3.0); // the line cuts a circle of radius 2 at distance 1 from its centre
    const double segment = 4.0 * std::acos(0.5) - h;
    EXPECT_NEAR(signedArea(region.outer), 40 + 4 * std::numbers::pi - segment, 1e-12);
}

TEST(Regions, ALineTangentToAnArcStaysOutside)
{
    // A rounded corner: both sides leave the arc tangentially, and go on beyond it.
    const double b = std::tan(std::numbers::pi / 8);
    const auto pieces = chains("2 0, 12 0; 0 2, 0 12; 12 0, 12 12; 0 12, 12 12; -5 0, 2 0; 0 -5, 0 2") +
                        std::vector<Piece>{{{0, 2}, {2, 0}, b, 99}};
    const Region outside = islandsAt(pieces, {0.2, 0.2});
    EXPECT_NEAR(signedArea(outside.outer), 4 - std::numbers::pi, 1e-12);
    const Region inside = islandsAt(pieces, {5, 5});
    EXPECT_NEAR(signedArea(inside.outer), 144 - (4 - std::numbers::pi), 1e-12);
}

TEST(Regions, CirclesThatTouchAreTwoFaces)
{
    const auto pieces = loops("-10 0 1, 0 0 1; 0 0 1, 6 0 1");
    EXPECT_NEAR(signedArea(islandsAt(pieces, {-5, 0}).outer), 25 * std::numbers::pi, 1e-10);
    EXPECT_NEAR(signedArea(islandsAt(pieces, {3, 0}).outer), 9 * std::numbers::pi, 1e-10);
}

TEST(Regions, ACircleWithinACircleTouchingItLeavesACrescent)
{
    const auto pieces = loops("-10 0 1, 10 0 1; 0 0 1, 10 0 1");
    const Region crescent = islandsAt(pieces, {-5, 0});
    EXPECT_NEAR(signedArea(crescent.outer), 100 * std::numbers::pi, 1e-9);
    ASSERT_EQ(crescent.islands.size(), 1U);
    EXPECT_NEAR(signedArea(crescent.islands[0]), 25 * std::numbers::pi, 1e-9);
}

TEST(Regions, EqualArcsCountOnceAndOverlapsOfArcsToo)
{
    // The same circle three times, cut in different places.
    const double q = std::tan(std::numbers::pi / 8);
    const std::string s = std::to_string(q);
    std::vector<Piece> pieces = loops("-5 0 1, 5 0 1; 0 -5 1, 0 5 1; 5 0 1, -5 0 1");
    const Region region = islandsAt(pieces, {1, 1});
    ASSERT_EQ(region.status, Status::Found);
    EXPECT_NEAR(signedArea(region.outer), 25 * std::numbers::pi, 1e-9);
    EXPECT_TRUE(region.islands.empty());
    EXPECT_GE(region.outer.size(), 2U);
}

TEST(Regions, AnUnevenFaceIsFoundFromEveryCorner)
{
    // A comb: the ray from one tooth meets sides of others.
    const auto pieces =
        loops("0 0, 70 0, 70 10, 60 10, 60 2, 50 2, 50 10, 40 10, 40 2, 30 2, 30 10, 20 10, 20 2, 10 2, 10 10, 0 10");
    Linework lines(pieces);
    const Region first = lines.regionAt({5, 5});
    for (const Point p : {Point{25, 9}, Point{45, 9}, Point{65, 9}, Point{35, 1}})
        EXPECT_EQ(lines.regionAt(p).outer, first.outer);
    EXPECT_NEAR(signedArea(first.outer), 700 - 3 * 80, 1e-12);
}

TEST(Linework, InsertedPiecesDivideARegionAndRemovedOnesGiveItBack)
{
    Linework lines(loops("0 0, 10 0, 10 10, 0 10"));
    const Ring whole = lines.regionAt({2, 5}).outer;
    std::vector<Piece> wall = chains("5 -1, 5 11");
    wall[0].source = 7;
    lines.insert(wall);
    EXPECT_EQ(lines.regionAt({2, 5}).outer, ring("0 0, 5 0, 5 10, 0 10"));
    lines.remove(7);
    EXPECT_EQ(lines.regionAt({2, 5}).outer, whole);
    EXPECT_EQ(lines.size(), 4U);
}

TEST(Linework, ManyInsertsAndRemovesGiveTheSameAsOneLoad)
{
    Linework grown;
    std::vector<Piece> all;
    for (std::uint32_t i = 0; i < 200; ++i) {
        const double x = i % 20 * 10.0, y = i / 20 * 10.0;
        std::vector<Piece> square{{{x, y}, {x + 9, y}, 0, i},
                                  {{x + 9, y}, {x + 9, y + 9}, 0, i},
                                  {{x + 9, y + 9}, {x, y + 9}, 0, i},
                                  {{x, y + 9}, {x, y}, 0, i}};
        grown.insert(square);
        if (i % 3 == 0) {
            grown.remove(i);
            EXPECT_EQ(grown.regionAt({x + 1, y + 1}).status, Status::NotEnclosed);
        } else {
            all = all + square;
        }
    }
    Linework loaded(all);
    EXPECT_EQ(grown.size(), loaded.size());
    for (std::uint32_t i = 0; i < 200; ++i) {
        const Point p{i % 20 * 10.0 + 3, i / 20 * 10.0 + 3};
        EXPECT_EQ(grown.regionAt(p).outer, loaded.regionAt(p).outer);
        EXPECT_EQ(grown.regionAt(p).status, i % 3 == 0 ? Status::NotEnclosed : Status::Found);
    }
}

TEST(Linework, PiecesWithoutLengthOrWithoutNumbersArePassedOver)
{
    const double inf = std::numeric_limits<double>::infinity(), nan = std::numeric_limits<double>::quiet_NaN();
    auto pieces = loops("0 0, 10 0, 10 10, 0 10");
    pieces.push_back({{5, 5}, {5, 5}});
    pieces.push_back({{nan, 5}, {6, 5}});
    pieces.push_back({{4, 5}, {inf, 5}});
    pieces.push_back({{4, 5}, {6, 5}, nan});
    pieces.push_back({{4, 5}, {1e300, 5}});
    Linework lines(pieces);
    EXPECT_EQ(lines.size(), 4U);
    EXPECT_EQ(lines.regionAt({2, 2}).outer, ring("0 0, 10 0, 10 10, 0 10"));
}

TEST(SignedArea, CountsArcsAndDirection)
{
    EXPECT_DOUBLE_EQ(signedArea(ring("0 0, 4 0, 4 3")), 6.0);
    EXPECT_DOUBLE_EQ(signedArea(ring("4 3, 4 0, 0 0")), -6.0);
    EXPECT_NEAR(signedArea(ring("-1 0 1, 1 0 1")), std::numbers::pi, 1e-14);
    EXPECT_NEAR(signedArea(ring("-1 0 -1, 1 0 -1")), -std::numbers::pi, 1e-14);
    EXPECT_NEAR(signedArea(ring("0 0, 2 0 1, 2 2, 0 2 -1")), 4.0, 1e-14);
    // A flat arc over a chord of 2 with a rise of 1e-6: two thirds of chord times rise.
    EXPECT_NEAR(signedArea(ring("0 0 1e-6, 2 0")), 2.0 * 1e-6 * 2 / 3, 1e-18);
    EXPECT_EQ(signedArea({}), 0.0);
}

// ---- Gaps

TEST(Gaps, AnOutlineThatDoesNotCloseIsOpenAndTheGapIsTold)
{
    // A square whose last side stops 0.3 short of its first corner.
    Linework lines(chains("0 0, 10 0, 10 10, 0 10, 0 0.3"));
    const Region region = lines.regionAt({5, 5});
    ASSERT_EQ(region.status, Status::Open);
    EXPECT_TRUE(region.outer.empty());
    ASSERT_EQ(region.gaps.size(), 1U);
    EXPECT_NEAR(region.gaps[0].width, 0.3, 1e-12);
    EXPECT_EQ(region.gaps[0].from, (Point{0, 0.3}));
    EXPECT_EQ(region.gaps[0].to, (Point{0, 0}));
}

TEST(Gaps, AGapInLineOfSightIsTold)
{
    // The right side is missing, and the point looks out through it.
    Linework lines(chains("10 10, 0 10, 0 0, 10 0"));
    const Region region = lines.regionAt({5, 5});
    ASSERT_EQ(region.status, Status::Open);
    ASSERT_EQ(region.gaps.size(), 1U);
    EXPECT_DOUBLE_EQ(region.gaps[0].width, 10.0);
}

TEST(Gaps, AnEndThatStopsShortOfAWallGapsToTheWall)
{
    const Region region = Linework(chains("0 -5, 0 15; 0 0, 10 0, 10 10, 0.25 10")).regionAt({5, 5});
    ASSERT_EQ(region.status, Status::Open);
    const auto gap = std::find_if(region.gaps.begin(), region.gaps.end(), [](const Gap &g) {
        return g.from == Point{0.25, 10};
    });
    ASSERT_NE(gap, region.gaps.end());
    EXPECT_EQ(gap->to, (Point{0, 10}));
    EXPECT_DOUBLE_EQ(gap->width, 0.25);
}

TEST(Gaps, GapsComeNearestToThePointFirstAndAtMostEight)
{
    // Twelve posts on a wall, and the wall does not close.
    std::string text = "100 1, 100 60, 0 60, 0 0, 100 0";
    for (int i = 1; i <= 12; ++i)
        text += "; " + std::to_string(i * 7) + " 0, " + std::to_string(i * 7) + " 3";
    const Region region = Linework(chains(text)).regionAt({36, 2});
    ASSERT_EQ(region.status, Status::Open);
    ASSERT_EQ(region.gaps.size(), 8U);
    EXPECT_EQ(region.gaps[0].from, (Point{35, 3}));
    for (std::size_t i = 1; i < region.gaps.size(); ++i) {
        EXPECT_LE(std::hypot(region.gaps[i - 1].from.x - 36, region.gaps[i - 1].from.y - 2),
                  std::hypot(region.gaps[i].from.x - 36, region.gaps[i].from.y - 2));
    }
}

TEST(Gaps, APointBetweenClosedPartsIsNotEnclosedRatherThanOpen)
{
    // Four houses around a place: nothing there hangs loose.
    Linework lines(loops(
        "0 10, 10 10, 10 20, 0 20; 20 10, 30 10, 30 20, 20 20; 10 0, 20 0, 20 5, 10 5; 10 25, 20 25, 20 30, 10 30"));
    EXPECT_EQ(lines.regionAt({15, 15}).status, Status::NotEnclosed);
}

TEST(Gaps, NoGapIsClosedUnlessTheToleranceAllowsIt)
{
    Linework lines(chains("0 0, 10 0, 10 10, 0 10, 0 0.3"));
    EXPECT_EQ(lines.regionAt({5, 5}, {.gapTolerance = 0.2}).status, Status::Open);
    const Region region = lines.regionAt({5, 5}, {.gapTolerance = 0.5});
    ASSERT_EQ(region.status, Status::Found);
    EXPECT_NEAR(signedArea(region.outer), 100.0, 1e-12);
    EXPECT_EQ(lines.regionAt({5, 5}).status, Status::Open); // what was joined for one question is not for the next
}

TEST(Gaps, SeveralGapsAreClosedAtOnceAndAnEndIsJoinedToTheWallAhead)
{
    // Two angles that leave gaps at two corners, and a wall inside that stops short of the opposite side.
    Linework lines(chains("0.1 0, 10 0, 10 9.9; 9.9 10, 0 10, 0 0.1; 5 0, 5 9.95"));
    const Region region = lines.regionAt({2, 5}, {.gapTolerance = 0.2});
    ASSERT_EQ(region.status, Status::Found);
    EXPECT_NEAR(signedArea(region.outer), 50.0 - 0.005, 1e-12);
    EXPECT_NEAR(signedArea(lines.regionAt({8, 5}, {.gapTolerance = 0.2}).outer), 50.0 - 0.005, 1e-12);
    EXPECT_EQ(lines.regionAt({2, 5}, {.gapTolerance = 0.1}).status, Status::Open);
}

TEST(Gaps, ADoubledEndIsStillLoose)
{
    auto pieces = chains("0 0, 10 0, 10 10, 0 10, 0 0.3");
    pieces.push_back(pieces.back());
    std::swap(pieces.back().a, pieces.back().b);
    Linework lines(pieces);
    EXPECT_EQ(lines.regionAt({5, 5}, {.gapTolerance = 0.5}).status, Status::Found);
    EXPECT_EQ(lines.regionAt({5, 5}).gaps.size(), 1U);
}

TEST(Gaps, WhatIsInsertedLaterIsSeenThroughTheToleranceToo)
{
    Linework lines(chains("0 0, 10 0, 10 10, 0 10, 0 0.3"));
    EXPECT_NEAR(signedArea(lines.regionAt({2, 5}, {.gapTolerance = 0.5}).outer), 100.0, 1e-12);
    lines.insert(chains("5 -1, 5 11"));
    EXPECT_NEAR(signedArea(lines.regionAt({2, 5}, {.gapTolerance = 0.5}).outer), 50.0, 1e-12);
}
