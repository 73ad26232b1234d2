#include "host/editor/ObjectSnap.h"
#include "tests/host/editor/ViewShapes.h"

#include <gtest/gtest.h>

#include <cmath>

namespace velmor {
namespace {

using test::kPi;
using test::Vertices;

constexpr double kExact = 1e-9;

class Snap : public testing::Test, protected test::ViewShapes {
protected:
    std::optional<SnapPoint> at(double x, double y, int modes, std::optional<AcGePoint3d> base = {},
                                double aperture = 1.0)
    {
        return findSnap(*drawing, {{x, y}, aperture, modes, base});
    }
    /// With the pointer a little beside the place, only that mode, the place is found.
    void expect(SnapBit kind, double x, double y, double tolerance = kExact)
    {
        const auto found = at(x + 0.3, y - 0.2, kind);
        ASSERT_TRUE(found) << kind << " at " << x << ", " << y;
        EXPECT_EQ(found->kind, kind);
        EXPECT_NEAR(found->point.x, x, tolerance);
        EXPECT_NEAR(found->point.y, y, tolerance);
    }
    void expectNone(double x, double y, int modes) { EXPECT_FALSE(at(x, y, modes)) << x << ", " << y; }
};

// --- End and middle

TEST_F(Snap, EndsAndMiddleOfALine)
{
    line(10, 10, 30, 20);
    expect(kSnapEnd, 10, 10);
    expect(kSnapEnd, 30, 20);
    expect(kSnapMiddle, 20, 15);
    expectNone(20, 15, kSnapEnd);
}

TEST_F(Snap, EndsAndMiddleOfAnArc)
{
    arc(0, 0, 10, 0.0, 0.5 * kPi);
    expect(kSnapEnd, 10, 0);
    expect(kSnapEnd, 0, 10);
    expect(kSnapMiddle, 10 * std::sqrt(0.5), 10 * std::sqrt(0.5));
}

TEST_F(Snap, EndsAndMiddlesOfASegmentOfEveryPolyline)
{
    polyline({{0, 0, 0}, {10, 0, 1.0}, {20, 0, 0}}); // the second one is a half circle below
    expect(kSnapEnd, 0, 0);
    expect(kSnapEnd, 10, 0);
    expect(kSnapEnd, 20, 0);
    expect(kSnapMiddle, 5, 0);
    expect(kSnapMiddle, 15, -5);
    polyline2d({{0, 100, 0}, {10, 100, 0}, {10, 110, 0}}, true);
    expect(kSnapEnd, 10, 110);
    expect(kSnapMiddle, 10, 105);
    expect(kSnapMiddle, 5, 105); // of the closing segment
    polyline3d({{0, 200, 5}, {10, 200, 7}});
    expect(kSnapEnd, 10, 200);
    expect(kSnapMiddle, 5, 200);
}

TEST_F(Snap, EndsAndMiddleOfALongPolylineInItsRuns)
{
    Vertices vertices;
    for (int i = 0; i <= 200; ++i)
        vertices.push_back({10.0 * i, i % 2 ? 4.0 : 0.0, 0.0});
    polyline(vertices);
    expect(kSnapEnd, 1000, 0);
    expect(kSnapEnd, 2000, 0);
    expect(kSnapMiddle, 1995, 2);
    expectNone(2010, 2, kSnapMiddle | kSnapEnd);
}

TEST_F(Snap, EndsAndMiddleOfAnEllipticArcByItsLength)
{
    ellipse(0, 0, 10, 0, 0.5, 0.0, 0.5 * kPi);
    expect(kSnapEnd, 10, 0);
    expect(kSnapEnd, 0, 5);
    // The half of the length, summed up in small chords.
    constexpr int kSteps = 2'000'000;
    const auto chord = [](int i) {
        const double a = 0.5 * kPi * i / kSteps, b = 0.5 * kPi * (i + 1) / kSteps;
        return std::hypot(10 * (std::cos(b) - std::cos(a)), 5 * (std::sin(b) - std::sin(a)));
    };
    double length = 0.0, along = 0.0;
    for (int i = 0; i < kSteps; ++i)
        length += chord(i);
    int i = 0;
    while (along < 0.5 * length)
        along += chord(i++);
    const double t = 0.5 * kPi * i / kSteps;
    expect(kSnapMiddle, 10 * std::cos(t), 5 * std::sin(t), 1e-4);
}

TEST_F(Snap, EndsAndMiddleOfASplineByItsLength)
{
    spline({{0, 0}, {1, 0}, {2, 0}, {12, 0}}); // along the x axis, the faster the farther
    expect(kSnapEnd, 0, 0);
    expect(kSnapEnd, 12, 0);
    expect(kSnapMiddle, 6, 0, 1e-4);
}

TEST_F(Snap, CirclesAndFullEllipsesHaveNeitherEndsNorMiddles)
{
    circle(0, 0, 10);
    ellipse(100, 0, 10, 0, 0.5);
    for (const double x : {10.0, -10.0, 110.0, 90.0})
        expectNone(x, 0, kSnapEnd | kSnapMiddle);
}

// --- Centre, node, quadrant, insertion

TEST_F(Snap, TheCentreIsOfferedAtItselfAndOnItsCurve)
{
    circle(0, 0, 10);
    arc(100, 0, 10, 0.0, 0.5 * kPi);
    ellipse(200, 0, 10, 0, 0.5);
    polyline({{300, 0, 1.0}, {320, 0, 0}}); // a half circle around (310, 0), below
    expect(kSnapCenter, 0, 0);
    for (const auto &[x, y, center] :
         {std::tuple{10.0, 0.0, 0.0}, {107.0710678, 7.0710678, 100.0}, {200.0, 5.0, 200.0}, {310.0, -10.0, 310.0}}) {
        const auto found = at(x, y, kSnapCenter);
        ASSERT_TRUE(found) << x;
        EXPECT_NEAR(found->point.x, center, kExact);
        EXPECT_NEAR(found->point.y, 0.0, kExact);
    }
    expectNone(92.9289322, -7.0710678, kSnapCenter); // on the arc's circle, but not on the arc
    expectNone(5, 5, kSnapCenter);
}

TEST_F(Snap, NodesArePoints)
{
    point(7, 8);
    expect(kSnapNode, 7, 8);
    expectNone(7, 8, kSnapEnd | kSnapMiddle | kSnapCenter | kSnapInsertion);
}

TEST_F(Snap, QuadrantsOfCirclesArcsEllipsesAndBulges)
{
    circle(0, 0, 10);
    expect(kSnapQuadrant, 10, 0);
    expect(kSnapQuadrant, 0, 10);
    expect(kSnapQuadrant, -10, 0);
    expect(kSnapQuadrant, 0, -10);
    arc(100, 0, 10, 0.25 * kPi, 0.75 * kPi);
    expect(kSnapQuadrant, 100, 10);
    expectNone(110, 0, kSnapQuadrant); // not on the arc
    ellipse(200, 0, 6, 8, 0.5);
    expect(kSnapQuadrant, 206, 8);
    expect(kSnapQuadrant, 196, 3);
    polyline({{300, 0, 1.0}, {320, 0, 0}});
    expect(kSnapQuadrant, 310, -10);
}

TEST_F(Snap, InsertionOfTextsAttributesAndReferences)
{
    text(1, 2, 2.5, L"text");
    mtext(101, 2, 2.5, L"two\nlines");
    AcDbBlockReference &block = reference(201, 2);
    TextShape shape;
    shape.position = {205, 6};
    shape.text = L"M1";
    drawing->appendAttribute(block, std::make_unique<AttributeEntity>(L"NAME", shape));
    expect(kSnapInsertion, 1, 2);
    expect(kSnapInsertion, 101, 2);
    expect(kSnapInsertion, 201, 2);
    expect(kSnapInsertion, 205, 6);
}

// --- Intersection

TEST_F(Snap, IntersectionsOfLinesArcsAndEllipses)
{
    line(0, 0, 10, 10);
    line(0, 10, 10, 0);
    expect(kSnapIntersection, 5, 5);
    line(100, 0, 120, 0);
    arc(110, -6, 10, 0.0, kPi); // meets the line at x = 110 - 8 and 110 + 8
    expect(kSnapIntersection, 102, 0);
    expect(kSnapIntersection, 118, 0);
    circle(200, 0, 10);
    circle(212, 0, 10); // at x = 206, y = 8 and -8
    expect(kSnapIntersection, 206, 8);
    expect(kSnapIntersection, 206, -8);
    ellipse(300, 0, 10, 0, 0.5);
    line(300, -20, 300, 20);
    expect(kSnapIntersection, 300, 5, 1e-6);
    spline({{400, 0}, {401, 0}, {402, 0}, {412, 0}});
    line(405, -5, 405, 5);
    expect(kSnapIntersection, 405, 0, 1e-6);
}

TEST_F(Snap, ACurveCrossesItselfButDoesNotWhereItGoesOn)
{
    polyline({{0, 0, 0}, {10, 10, 0}, {10, 0, 0}, {0, 10, 0}});
    expect(kSnapIntersection, 5, 5);
    expectNone(10, 10, kSnapIntersection);
    circle(100, 0, 10); // kept as two halves
    expectNone(110, 0, kSnapIntersection);
    expectNone(90, 0, kSnapIntersection);
    ellipse(200, 0, 10, 0, 0.5); // a chain of arcs
    for (double t = 0.0; t < 6.3; t += 0.1)
        expectNone(200 + 10 * std::cos(t), 5 * std::sin(t), kSnapIntersection);
}

TEST_F(Snap, LinesThatOnlyWouldMeetFartherOnDoNotIntersect)
{
    line(0, 0, 4, 4);
    line(0, 10, 10, 0);
    expectNone(5, 5, kSnapIntersection);
}

TEST_F(Snap, ALineThatTouchesACircleMeetsItThere)
{
    circle(0, 0, 10);
    line(-20, 10, 20, 10);
    const auto found = at(0.2, 9.9, kSnapIntersection);
    ASSERT_TRUE(found);
    EXPECT_NEAR(found->point.x, 0.0, 1e-5);
    EXPECT_NEAR(found->point.y, 10.0, kExact);
}

TEST_F(Snap, IntersectionsFarFromTheOriginKeepTheirDigits)
{
    const double x = 5'657'214.125, y = 4'853'297.5;
    line(x - 10, y - 10, x + 10, y + 10);
    line(x - 10, y + 10, x + 10, y - 10);
    expect(kSnapIntersection, x, y, 2e-9);
}

// --- Perpendicular and nearest

TEST_F(Snap, PerpendicularOfEachKindOfCurveFromTheBase)
{
    line(0, 0, 20, 0);
    circle(100, 0, 10);
    polyline({{200, 0, 0}, {220, 0, 0}});
    ellipse(300, 0, 10, 0, 0.5);
    const auto foot = [&](double x, double y, const AcGePoint3d &base) { return at(x, y, kSnapPerpendicular, base); };
    auto found = foot(7.5, 0.2, {7, 30});
    ASSERT_TRUE(found);
    EXPECT_NEAR(found->point.x, 7.0, kExact);
    EXPECT_NEAR(found->point.y, 0.0, kExact);
    found = foot(3, 0.2, {15, 30}); // on the line, but away from the foot
    ASSERT_TRUE(found);
    EXPECT_NEAR(found->point.x, 15.0, kExact);
    EXPECT_FALSE(foot(3, 0.2, {50, 30})); // the foot would be beyond the end
    found = foot(100.2, 10.1, {100, 50});
    ASSERT_TRUE(found);
    EXPECT_NEAR(found->point.x, 100.0, kExact);
    EXPECT_NEAR(found->point.y, 10.0, kExact);
    found = foot(205, 0.3, {205.5, -9});
    ASSERT_TRUE(found);
    EXPECT_NEAR(found->point.x, 205.5, kExact);
    found = foot(310, 0.2, {350, 0});
    ASSERT_TRUE(found);
    EXPECT_NEAR(found->point.x, 310.0, 1e-5);
    EXPECT_NEAR(found->point.y, 0.0, 1e-5);
}

TEST_F(Snap, WithoutABaseNothingIsPerpendicular)
{
    line(0, 0, 20, 0);
    expectNone(7, 0, kSnapPerpendicular);
}

TEST_F(Snap, NearestOfEachKindOfCurve)
{
    line(0, 0, 20, 0);
    circle(100, 0, 10);
    polyline2d({{200, 0, 0}, {220, 0, 0}});
    polyline3d({{240, 0, 3}, {260, 0, 4}});
    ellipse(300, 0, 10, 0, 0.5);
    spline({{400, 0}, {401, 0}, {402, 0}, {412, 0}});
    for (const auto &[x, y, ex, ey] : {std::array{7.0, 0.4, 7.0, 0.0},
                                       {100.0, 10.5, 100.0, 10.0},
                                       {205.0, -0.5, 205.0, 0.0},
                                       {245.0, -0.5, 245.0, 0.0},
                                       {300.0, 5.3, 300.0, 5.0},
                                       {407.0, 0.3, 407.0, 0.0}}) {
        const auto found = at(x, y, kSnapNearest);
        ASSERT_TRUE(found) << x;
        EXPECT_EQ(found->kind, kSnapNearest);
        EXPECT_NEAR(found->point.x, ex, 1e-5);
        EXPECT_NEAR(found->point.y, ey, 1e-5);
    }
}

// --- Which one

TEST_F(Snap, TheNearestOfSeveralIsTaken)
{
    line(0, 0, 1, 0);
    EXPECT_EQ(at(0.1, 0, kSnapEnd | kSnapMiddle)->kind, kSnapEnd);
    EXPECT_EQ(at(0.4, 0, kSnapEnd | kSnapMiddle)->kind, kSnapMiddle);
}

TEST_F(Snap, AtTheSamePlaceTheEndGoesBeforeTheIntersectionAndBothBeforeTheNearest)
{
    line(0, 0, 10, 0);
    line(0, 0, 0, 10);
    EXPECT_EQ(at(0.1, 0.1, kSnapEnd | kSnapIntersection | kSnapNearest)->kind, kSnapEnd);
    EXPECT_EQ(at(0.1, 0.1, kSnapIntersection | kSnapNearest)->kind, kSnapIntersection);
    EXPECT_EQ(at(0.1, 0.1, kSnapNearest)->kind, kSnapNearest);
}

TEST_F(Snap, APointInTheFieldGoesBeforeACentreFarAway)
{
    circle(0, 0, 10);
    EXPECT_EQ(at(10.2, 0.1, kSnapCenter | kSnapQuadrant)->kind, kSnapQuadrant);
    EXPECT_EQ(at(7.2, 7.0, kSnapCenter | kSnapQuadrant)->kind, kSnapCenter);
}

TEST_F(Snap, OnlyWithinTheAperture)
{
    line(0, 0, 20, 0);
    EXPECT_TRUE(at(-0.9, 0.9, kSnapEnd));
    EXPECT_FALSE(at(-1.1, 0.0, kSnapEnd));
}

TEST_F(Snap, NoModeNoSnap)
{
    line(0, 0, 20, 0);
    EXPECT_FALSE(at(0, 0, 0));
    Drafting drafting;
    drafting.snaps = kSnapEnd | kSnapSuppressed;
    EXPECT_EQ(drafting.activeSnaps(), 0);
}

TEST_F(Snap, WhatIsErasedOrHiddenIsNotSnappedTo)
{
    AcDbEntity &gone = line(0, 0, 20, 0);
    hide(line(0, 50, 20, 50));
    EXPECT_TRUE(at(0, 0, kSnapEnd));
    drawing->erase(gone);
    expectNone(0, 0, kSnapEnd);
    expectNone(0, 50, kSnapEnd);
    drawing->erase(gone, false);
    EXPECT_TRUE(at(0, 0, kSnapEnd));
}

// --- In blocks

TEST_F(Snap, ContentsOfReferencesAreSnappedToWhereTheyAreDrawn)
{
    reference(100, 50, 3.0, 3.0, 0.5 * kPi); // the line from (-1, 0) to (1, 0) stands upright, three times as long
    expect(kSnapEnd, 100, 53);
    expect(kSnapEnd, 100, 47);
    expect(kSnapQuadrant, 106, 50);
    expect(kSnapMiddle, 100, 50);
    const auto center = at(100 + 6 * std::sqrt(0.5), 50 + 6 * std::sqrt(0.5), kSnapCenter);
    ASSERT_TRUE(center);
    EXPECT_NEAR(center->point.x, 100, kExact);
}

TEST_F(Snap, ACircleInAnUnevenlyScaledBlockHasTheQuadrantsOfAnEllipse)
{
    reference(0, 0, 10.0, 5.0);
    expect(kSnapQuadrant, 20, 0);
    expect(kSnapQuadrant, 0, 10);
    expectNone(20 * std::sqrt(0.5), 10 * std::sqrt(0.5), kSnapQuadrant);
}

TEST_F(Snap, AFieldFullOfEntitiesIsNarrowedAndStillGivesTheNearest)
{
    for (int i = 0; i < 120; ++i)
        for (int j = 0; j < 120; ++j)
            line(i, j, i + 0.5, j + 0.25);
    const auto found = at(60.1, 60.1, kSnapEnd, {}, 1000.0);
    ASSERT_TRUE(found);
    EXPECT_NEAR(found->point.x, 60.0, kExact);
    EXPECT_NEAR(found->point.y, 60.0, kExact);
}

// --- Ortho and polar tracking

TEST(Drafting, OrthoKeepsTheLargerOfBothDirections)
{
    Drafting drafting;
    drafting.ortho = true;
    const AcGePoint3d base(10, 10);
    EXPECT_EQ(guidedPoint({30, 14}, base, drafting, 1.0), AcGePoint3d(30, 10));
    EXPECT_EQ(guidedPoint({12, -5}, base, drafting, 1.0), AcGePoint3d(10, -5));
    EXPECT_EQ(guidedPoint({12, -5}, {}, drafting, 1.0), AcGePoint3d(12, -5));
}

TEST(Drafting, PolarTrackingDrawsToARayOnlyWhenItIsNear)
{
    Drafting drafting;
    drafting.polar = true;
    drafting.polarStep = 30.0;
    const AcGePoint3d base(0, 0);
    const AcGePoint3d near = guidedPoint({100 * std::cos(0.53), 100 * std::sin(0.53)}, base, drafting, 2.0);
    EXPECT_NEAR(std::atan2(near.y, near.x), kPi / 6.0, 1e-12);
    EXPECT_NEAR(std::hypot(near.x, near.y), 100.0, 0.1);
    const AcGePoint3d far(100 * std::cos(0.7), 100 * std::sin(0.7));
    EXPECT_EQ(guidedPoint(far, base, drafting, 2.0), far);
    EXPECT_EQ(guidedPoint({0.5, 70}, base, drafting, 2.0), AcGePoint3d(0, 70));
    EXPECT_EQ(guidedPoint({-70, 0.5}, base, drafting, 2.0), AcGePoint3d(-70, 0));
}

} // namespace
} // namespace velmor
