// The toolbox of CPolygon that nothing calls at present.
#include "geometry/Polygon.h"

#include <gmock/gmock.h>

#include <cmath>
#include <limits>
#include <random>
#include <vector>

namespace {

using testing::ElementsAre;

void Fill(CPolygon &polygon, const std::vector<CVertex> &vertices)
{
    for (const CVertex &vertex : vertices)
        ASSERT_TRUE(polygon.AddPoint(vertex));
}

/// Polygon on the x axis whose vertex i stands at x = i.
void FillNumbered(CPolygon &polygon, int count)
{
    for (int i = 0; i < count; ++i)
        ASSERT_TRUE(polygon.AddPoint({double(i), 0, 0}));
}

std::vector<int> Numbers(const CPolygon &polygon)
{
    std::vector<int> numbers;
    for (int i = 0; i < polygon.GetSize(); ++i)
        numbers.push_back(int(polygon[i].x));
    return numbers;
}

double TriangleArea(const CPolygon &triples, int first)
{
    const CVertex a = triples[first], b = triples[first + 1], c = triples[first + 2];
    return 0.5 * std::abs((b.x - a.x) * (c.y - a.y) - (c.x - a.x) * (b.y - a.y));
}

double TotalArea(const CPolygon &triples)
{
    double total = 0.0;
    for (int i = 0; i + 2 < triples.GetSize(); i += 3)
        total += TriangleArea(triples, i);
    return total;
}

void FillCircle(CPolygon &polygon, double radius, int count, double fromAngle, double toAngle)
{
    for (int i = 0; i < count; ++i) {
        const double angle = fromAngle + (toAngle - fromAngle) * i / (count - 1);
        ASSERT_TRUE(polygon.AddPoint({radius * std::cos(angle), radius * std::sin(angle), 0}));
    }
}

const std::vector<CVertex> kUnitSquare = {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}};
const std::vector<CVertex> kLShape = {{0, 0, 0}, {4, 0, 0}, {4, 1, 0}, {1, 1, 0}, {1, 3, 0}, {0, 3, 0}};
constexpr double kPi = 3.141592653589793;

} // namespace

// --- Single points and segments
// ----------------------------------------------------------------------------------------

TEST(PolygonTurn, LeftIsStrictAndLeftOnIsNot)
{
    const CVertex a{0, 0, 0}, b{2, 0, 0};
    EXPECT_TRUE(CPolygon::IsLeft(a, b, {1, 1, 0}));
    EXPECT_FALSE(CPolygon::IsLeft(a, b, {1, 0, 0}));
    EXPECT_FALSE(CPolygon::IsLeft(a, b, {1, -1, 0}));
    EXPECT_TRUE(CPolygon::IsLeftOn(a, b, {1, 0, 0}));
    EXPECT_TRUE(CPolygon::IsLeftOn(a, b, {1, 1, 0}));
    EXPECT_FALSE(CPolygon::IsLeftOn(a, b, {1, -1, 0}));
    EXPECT_TRUE(CPolygon::IsLeft({0, 0, 9}, {2, 0, -9}, {1, 1, 4})) << "z plays no part";
}

TEST(PolygonTurn, CollinearIsADoubledAreaBelowTheTolerance)
{
    const CVertex a{0, 0, 0}, b{1, 0, 0};
    EXPECT_TRUE(CPolygon::IsCollinear(a, b, {0.5, 0.0009, 0}));
    EXPECT_TRUE(CPolygon::IsCollinear(a, b, {0.5, -0.0009, 0}));
    EXPECT_FALSE(CPolygon::IsCollinear(a, b, {0.5, 0.001, 0}));
    EXPECT_FALSE(CPolygon::IsCollinear(a, b, {0.5, 0.0011, 0}));
}

TEST(PolygonTurn, BetweenLooksAtXUnlessTheSegmentIsUpright)
{
    EXPECT_TRUE(CPolygon::IsBetween({0, 0, 0}, {2, 2, 0}, {1, 1, 0}));
    EXPECT_TRUE(CPolygon::IsBetween({2, 2, 0}, {0, 0, 0}, {2, 2, 0})) << "ends count, in either direction";
    EXPECT_FALSE(CPolygon::IsBetween({0, 0, 0}, {2, 2, 0}, {3, 3, 0}));
    EXPECT_FALSE(CPolygon::IsBetween({0, 0, 0}, {2, 2, 0}, {1, 1.5, 0}));
    EXPECT_TRUE(CPolygon::IsBetween({1, 3, 0}, {1, 0, 0}, {1, 2, 0}));
    EXPECT_FALSE(CPolygon::IsBetween({1, 3, 0}, {1, 0, 0}, {1, 4, 0}));
}

TEST(PolygonTurn, ProperIntersectionNeedsInnerPointsOfBoth)
{
    EXPECT_TRUE(CPolygon::IntersectProperly({0, 0, 0}, {2, 2, 0}, {0, 2, 0}, {2, 0, 0}));
    EXPECT_FALSE(CPolygon::IntersectProperly({0, 0, 0}, {2, 2, 0}, {1, 1, 0}, {2, 0, 0})) << "touches";
    EXPECT_FALSE(CPolygon::IntersectProperly({0, 0, 0}, {2, 0, 0}, {1, 0, 0}, {3, 0, 0})) << "overlaps";
    EXPECT_FALSE(CPolygon::IntersectProperly({0, 0, 0}, {1, 1, 0}, {3, 0, 0}, {2, 5, 0}));
}

TEST(PolygonTurn, IntersectionCountsTouchesAndOverlaps)
{
    EXPECT_TRUE(CPolygon::Intersect({0, 0, 0}, {2, 2, 0}, {0, 2, 0}, {2, 0, 0}));
    EXPECT_TRUE(CPolygon::Intersect({0, 0, 0}, {2, 2, 0}, {1, 1, 0}, {2, 0, 0}));
    EXPECT_TRUE(CPolygon::Intersect({1, 1, 0}, {2, 0, 0}, {0, 0, 0}, {2, 2, 0}));
    EXPECT_TRUE(CPolygon::Intersect({0, 0, 0}, {2, 0, 0}, {1, 0, 0}, {3, 0, 0}));
    EXPECT_FALSE(CPolygon::Intersect({0, 0, 0}, {2, 0, 0}, {3, 0, 0}, {4, 0, 0}));
    EXPECT_FALSE(CPolygon::Intersect({0, 0, 0}, {2, 0, 0}, {0, 1, 0}, {2, 1, 0}));
}

TEST(PolygonTurn, EqualWithinTheToleranceOfEachCoordinate)
{
    EXPECT_TRUE(CPolygon::IsEqual({1, 1, 0}, {1, 1, 0.001}));
    EXPECT_FALSE(CPolygon::IsEqual({1, 1, 0}, {1, 1, 0.0011}));
    EXPECT_FALSE(CPolygon::IsEqual({0, 0, 0}, {0, 0.0011, 0}));
}

TEST(PolygonAngle, IsTheTurnInDegrees)
{
    EXPECT_NEAR(CPolygon::TurnAngle({0, 0, 0}, {1, 0, 0}, {1, 1, 0}), 90.0, 1e-6);
    EXPECT_NEAR(CPolygon::TurnAngle({0, 0, 0}, {1, 0, 0}, {1, -1, 0}), 90.0, 1e-6) << "no sign";
    EXPECT_NEAR(CPolygon::TurnAngle({0, 0, 0}, {1, 0, 0}, {2, 1, 0}), 45.0, 1e-6);
    EXPECT_NEAR(CPolygon::TurnAngle({0, 0, 0}, {1, 0, 0}, {0, 0, 0}), 180.0, 1e-6) << "straight back";
    EXPECT_NEAR(CPolygon::VectorAngle({1, 0, 0}, {0, 0, 5}), 90.0, 1e-6);
    EXPECT_DOUBLE_EQ(CPolygon::VectorAngle({0, 1, 0}, {1, 0, 0}), std::acos(0.0) * 57.2957795);
}

TEST(PolygonAngle, IsNeverBelowZeroNorUndefined)
{
    for (double x = 0.1; x < 3.0; x += 0.1) {
        const double straight = CPolygon::TurnAngle({0, 0, 0}, {x, x / 3, 0}, {2 * x, 2 * x / 3, 0});
        EXPECT_GE(straight, 0.0);
        EXPECT_LT(straight, 1e-5);
    }
    EXPECT_EQ(CPolygon::TurnAngle({1, 1, 0}, {1, 1, 0}, {2, 1, 0}), 0.0);
}

TEST(PolygonNormal, IsTheCrossProductAndNormalizeKeepsZero)
{
    EXPECT_EQ(CPolygon::Normal({1, 1, 1}, {3, 1, 1}, {1, 4, 1}), (CVertex{0, 0, 6}));
    EXPECT_EQ(CPolygon::Normalize({0, 3, 4}), (CVertex{0, 0.6, 0.8}));
    EXPECT_EQ(CPolygon::Normalize({0, 0, 0}), (CVertex{0, 0, 0}));
}

TEST(PolygonProjection, IsTheFootOnTheLine)
{
    const CVertex foot = CPolygon::ProjectOnLine({0, 2, 9}, {0, 0, 5}, {3, 3, 7});
    EXPECT_NEAR(foot.x, 1.0, 1e-12);
    EXPECT_NEAR(foot.y, 1.0, 1e-12);
    EXPECT_EQ(foot.z, 5.0);
    EXPECT_EQ(CPolygon::ProjectOnLine({4, 2, 9}, {1, 0, 5}, {1.0005, 3, 7}), (CVertex{1, 2, 5})) << "upright";
    EXPECT_EQ(CPolygon::ProjectOnLine({4, 2, 9}, {0, 1, 5}, {3, 1.0005, 7}), (CVertex{4, 1, 5})) << "level";
}

// --- Vertices
// ------------------------------------------------------------------------------------------------------------

TEST(PolygonVertices, AreRemovedAndInserted)
{
    CPolygon polygon;
    FillNumbered(polygon, 5);
    polygon.RemovePoint(1);
    EXPECT_THAT(Numbers(polygon), ElementsAre(0, 2, 3, 4));
    EXPECT_TRUE(polygon.InsertPoint(0, {9, 0, 0}));
    EXPECT_THAT(Numbers(polygon), ElementsAre(9, 0, 2, 3, 4));
    EXPECT_TRUE(polygon.InsertPoint(3, {8, 0, 0}));
    EXPECT_THAT(Numbers(polygon), ElementsAre(9, 0, 2, 8, 3, 4));
    EXPECT_TRUE(polygon.InsertPoint(6, {7, 0, 0}));
    EXPECT_THAT(Numbers(polygon), ElementsAre(9, 0, 2, 8, 3, 4, 7));
    EXPECT_TRUE(polygon.InsertPoint(0, polygon[6]));
    EXPECT_EQ(Numbers(polygon).front(), 7);
}

TEST(PolygonKeepRange, FromZeroKeepsTheRange)
{
    CPolygon polygon;
    FillNumbered(polygon, 7);
    EXPECT_TRUE(polygon.KeepRange(0, 3));
    EXPECT_THAT(Numbers(polygon), ElementsAre(0, 1, 2, 3));
}

TEST(PolygonKeepRange, SkipsAVertexAtEachRemovalInFront)
{
    CPolygon polygon;
    FillNumbered(polygon, 8);
    EXPECT_TRUE(polygon.KeepRange(3, 6)); // 0..6, then removals at 0, 1, 2 of what is left
    EXPECT_THAT(Numbers(polygon), ElementsAre(1, 3, 5, 6));
}

TEST(PolygonKeepRange, SkipsAVertexAtEachRemovalOverTheSeam)
{
    CPolygon polygon;
    FillNumbered(polygon, 8);
    EXPECT_TRUE(polygon.KeepRange(5, 2)); // removals at 2, 3, 4 of what is left
    EXPECT_THAT(Numbers(polygon), ElementsAre(0, 1, 3, 5, 7));
}

TEST(PolygonKeepRange, StaysWithinItsBlockWhenTheRunIsShort)
{
    CPolygon polygon;
    FillNumbered(polygon, 5);
    EXPECT_TRUE(polygon.KeepRange(3, 3));
    EXPECT_EQ(polygon.GetSize(), 1);
}

TEST(PolygonDistance, TakesTheShorterWayRoundAClosedPolygon)
{
    CPolygon open, closed;
    Fill(open, kLShape);
    Fill(closed, kLShape);
    ASSERT_TRUE(closed.Close()); // 7 vertices, 6 edges
    EXPECT_EQ(closed.VertexDistance(1, 3), 2);
    EXPECT_EQ(closed.VertexDistance(0, 5), 1);
    EXPECT_EQ(closed.VertexDistance(5, 0), 1);
    EXPECT_EQ(closed.VertexDistance(0, 3), 3);
    EXPECT_EQ(open.VertexDistance(1, 5), 4);
    EXPECT_EQ(open.VertexDistance(5, 1), -4);
}

TEST(PolygonArea, IsTheSameInBothDirections)
{
    CPolygon shape, clockwise, tilted;
    Fill(shape, kLShape);
    Fill(clockwise, {kLShape.rbegin(), kLShape.rend()});
    EXPECT_DOUBLE_EQ(shape.Area(), 6.0);
    EXPECT_DOUBLE_EQ(clockwise.Area(), 6.0);
    Fill(tilted, {{0, 0, 0}, {3, 0, 4}, {3, 2, 4}, {0, 2, 0}});
    EXPECT_DOUBLE_EQ(tilted.Area(), 10.0);
    EXPECT_EQ(CPolygon().Area(), 0.0);
}

TEST(PolygonPath, RunsBetweenVerticesOrOverTheSeam)
{
    CPolygon square; // edges 1 to 4 long
    Fill(square, {{0, 0, 0}, {1, 0, 0}, {1, 2, 0}, {-2, 2, 0}});
    const double closing = std::hypot(2, 2);
    EXPECT_DOUBLE_EQ(square.PathLength(0, 4), 1 + 2 + 3 + closing);
    EXPECT_DOUBLE_EQ(square.PathLength(0, 3), 6.0);
    EXPECT_DOUBLE_EQ(square.PathLength(1, 3), 5.0);
    EXPECT_DOUBLE_EQ(square.PathLength(2, 1), 3 + closing + 1);
    EXPECT_DOUBLE_EQ(square.PathLength(3, 0), closing);
    EXPECT_DOUBLE_EQ(square.PathLength(2, 4), 3 + closing);
    EXPECT_EQ(square.PathLength(2, 2), 0.0);
}

TEST(PolygonPath, OutsideItsVerticesHasNoLength)
{
    CPolygon square;
    Fill(square, kUnitSquare);
    EXPECT_EQ(square.PathLength(-1, 2), 0.0);
    EXPECT_EQ(square.PathLength(4, 2), 0.0);
    EXPECT_EQ(square.PathLength(0, 5), 0.0);
}

TEST(PolygonNearest, IsTheFirstOfEqualsInThePlane)
{
    CPolygon square;
    Fill(square, kUnitSquare);
    int index = -1;
    EXPECT_EQ(square.NearestVertex({0.5, 0.5, 0}, &index), (CVertex{0, 0, 0}));
    EXPECT_EQ(index, 0);
    EXPECT_EQ(square.NearestVertex({0.9, 0.9, 1000}, &index), (CVertex{1, 1, 0}));
    EXPECT_EQ(index, 2);
    EXPECT_EQ(square.NearestVertex({2, 0, 0}), (CVertex{1, 0, 0}));
}

TEST(PolygonDiagonal, LiesInTheConeAndMeetsNoEdge)
{
    CPolygon shape; // a U, open upward
    Fill(shape, {{0, 0, 0}, {6, 0, 0}, {6, 4, 0}, {4, 4, 0}, {4, 2, 0}, {2, 2, 0}, {2, 4, 0}, {0, 4, 0}});
    EXPECT_TRUE(shape.IsInCone(0, 4));
    EXPECT_TRUE(shape.IsDiagonal(0, 4));
    EXPECT_TRUE(shape.IsDiagonal(4, 0)) << "from a reflex corner";
    EXPECT_FALSE(shape.IsInCone(3, 6)) << "across the opening";
    EXPECT_TRUE(shape.IsDiagonalClear(3, 6));
    EXPECT_FALSE(shape.IsDiagonal(3, 6));
    EXPECT_TRUE(shape.IsInCone(1, 6));
    EXPECT_FALSE(shape.IsDiagonalClear(1, 6)) << "through the opening";
    EXPECT_FALSE(shape.IsDiagonal(1, 6));
}

TEST(PolygonSimplify, DropsSmallTurnsButNotTwoInARow)
{
    CPolygon polygon; // turns: 0 at 1, 0 at 2, 0 at 3, 90 at 4
    Fill(polygon, {{0, 0, 0}, {1, 0, 0}, {2, 0, 0}, {3, 0, 0}, {4, 0, 0}, {4, 5, 0}});
    EXPECT_TRUE(polygon.Simplify(10.0));
    // Dropping vertex 1 brings vertex 2 to its place, which is not looked at again; then vertex 3 goes.
    ASSERT_EQ(polygon.GetSize(), 4);
    EXPECT_EQ(polygon[1], (CVertex{2, 0, 0}));
    EXPECT_EQ(polygon[2], (CVertex{4, 0, 0}));
    EXPECT_EQ(polygon[3], (CVertex{4, 5, 0}));
}

TEST(PolygonSimplify, KeepsATurnOfExactlyTheAngle)
{
    CPolygon polygon;
    Fill(polygon, {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}});
    const double turn = CPolygon::TurnAngle(polygon[0], polygon[1], polygon[2]);
    EXPECT_TRUE(polygon.Simplify(turn));
    EXPECT_EQ(polygon.GetSize(), 3);
    EXPECT_TRUE(polygon.Simplify(std::nextafter(turn, 180.0)));
    EXPECT_EQ(polygon.GetSize(), 2);
}

TEST(PolygonIndexRange, WrapsOverTheSeam)
{
    CPolygon polygon;
    FillNumbered(polygon, 6);
    std::vector<int> plain, wrapped, inside, insideWrapped;
    for (int i = -1; i <= 6; ++i) {
        if (polygon.IsIndexInRange(1, 3, i))
            plain.push_back(i);
        if (polygon.IsIndexInRange(4, 1, i))
            wrapped.push_back(i);
        if (polygon.IsIndexInsideRange(1, 3, i))
            inside.push_back(i);
        if (polygon.IsIndexInsideRange(4, 1, i))
            insideWrapped.push_back(i);
    }
    EXPECT_THAT(plain, ElementsAre(1, 2, 3));
    EXPECT_THAT(wrapped, ElementsAre(0, 1, 4, 5));
    EXPECT_THAT(inside, ElementsAre(2));
    EXPECT_THAT(insideWrapped, ElementsAre(0, 5));
}

// --- Areas and triangles
// -----------------------------------------------------------------------------------------------

TEST(PolygonTriangulate, CoversTheShapeWithTriples)
{
    CPolygon shape, triangles;
    Fill(shape, kLShape);
    ASSERT_TRUE(shape.Close());
    ASSERT_TRUE(shape.Triangulate(triangles));
    EXPECT_EQ(triangles.GetSize(), 12);
    EXPECT_NEAR(TotalArea(triangles), 6.0, 1e-12);
    for (int i = 0; i < 12; i += 3) {
        const double x = (triangles[i].x + triangles[i + 1].x + triangles[i + 2].x) / 3;
        const double y = (triangles[i].y + triangles[i + 1].y + triangles[i + 2].y) / 3;
        EXPECT_EQ(shape.Contains(x, y), 1);
    }
}

TEST(PolygonTriangulate, LeavesEmptyTriplesForDroppedVertices)
{
    CPolygon shape, triangles;
    Fill(shape, {{1, 1, 0}, {2, 1, 0}, {3, 1, 0}, {3, 3, 0}, {1, 3, 0}, {1, 1, 0}});
    ASSERT_TRUE(shape.Triangulate(triangles));
    ASSERT_EQ(triangles.GetSize(), 9);
    EXPECT_NEAR(TotalArea(triangles), 4.0, 1e-12);
}

TEST(PolygonTriangulate, NeedsAClosedPolygonOfFourVertices)
{
    CPolygon open, small, triangles;
    Fill(open, kLShape);
    EXPECT_FALSE(open.Triangulate(triangles));
    Fill(small, {{0, 0, 0}, {1, 0, 0}, {0, 0, 0}});
    EXPECT_FALSE(small.Triangulate(triangles));
    CPolygon triangle;
    Fill(triangle, {{0, 0, 0}, {2, 0, 0}, {0, 2, 0}, {0, 0, 0}});
    ASSERT_TRUE(triangle.Triangulate(triangles));
    ASSERT_EQ(triangles.GetSize(), 3);
    EXPECT_EQ(triangles[1], (CVertex{2, 0, 0}));
}

TEST(PolygonFan, MakesATripleForEachEdge)
{
    CPolygon shape, triangles;
    Fill(shape, kLShape);
    ASSERT_TRUE(shape.Close());
    ASSERT_TRUE(shape.FanTriangles(triangles, {0.5, 0.5, 0}));
    ASSERT_EQ(triangles.GetSize(), 18);
    EXPECT_EQ(triangles[0], (CVertex{0.5, 0.5, 0}));
    EXPECT_EQ(triangles[4], (CVertex{4, 0, 0}));
    EXPECT_EQ(triangles[5], (CVertex{4, 1, 0}));
}

TEST(PolygonFan, OfFourVerticesIsTheFirstThree)
{
    CPolygon triangle, triangles;
    Fill(triangle, {{0, 0, 0}, {2, 0, 0}, {0, 2, 0}, {0, 0, 0}});
    ASSERT_TRUE(triangle.FanTriangles(triangles, {9, 9, 9}));
    ASSERT_EQ(triangles.GetSize(), 3);
    EXPECT_EQ(triangles[2], (CVertex{0, 2, 0}));
}

TEST(PolygonDelaunay, TrianglesHaveEmptyCirclesAndCoverTheHull)
{
    CPolygon points, triangles;
    Fill(points, {{0, 0, 0}, {5, 1, 0}, {6, 5, 0}, {1, 4, 0}, {3, 2.5, 0}, {2, 1.5, 0}});
    ASSERT_TRUE(points.DelaunayTriangles(triangles));
    EXPECT_EQ(triangles.GetSize(), 3 * (2 * 6 - 2 - 4)) << "six points, four of them on the hull";
    EXPECT_NEAR(TotalArea(triangles), 0.5 * std::abs(0 * 1 - 5 * 0 + 5 * 5 - 6 * 1 + 6 * 4 - 1 * 5 + 0), 1e-12);
    for (int i = 0; i < triangles.GetSize(); i += 3) {
        const CVertex a = triangles[i], b = triangles[i + 1], c = triangles[i + 2];
        const double d = 2 * (a.x * (b.y - c.y) + b.x * (c.y - a.y) + c.x * (a.y - b.y));
        const double a2 = a.x * a.x + a.y * a.y, b2 = b.x * b.x + b.y * b.y, c2 = c.x * c.x + c.y * c.y;
        const double x = (a2 * (b.y - c.y) + b2 * (c.y - a.y) + c2 * (a.y - b.y)) / d;
        const double y = (a2 * (c.x - b.x) + b2 * (a.x - c.x) + c2 * (b.x - a.x)) / d;
        const double radius = std::hypot(a.x - x, a.y - y);
        for (int k = 0; k < points.GetSize(); ++k)
            EXPECT_GE(std::hypot(points[k].x - x, points[k].y - y), radius - 1e-9);
    }
}

TEST(PolygonDelaunay, OfATriangleIsTheTriangleAndOfFewerNothing)
{
    CPolygon triangle, triangles;
    Fill(triangle, {{0, 0, 0}, {2, 0, 0}, {0, 2, 0}});
    ASSERT_TRUE(triangle.DelaunayTriangles(triangles));
    EXPECT_EQ(triangles.GetSize(), 3);
    CPolygon line;
    Fill(line, {{0, 0, 0}, {2, 0, 0}});
    ASSERT_TRUE(line.DelaunayTriangles(triangles));
    EXPECT_EQ(triangles.GetSize(), 0);
    CPolygon straight;
    FillNumbered(straight, 3);
    ASSERT_TRUE(straight.DelaunayTriangles(triangles));
    EXPECT_EQ(triangles.GetSize(), 0) << "upright faces do not count";
}

TEST(PolygonDelaunay, AFacesOwnVerticesNeverLieBelowIt)
{
    // At map coordinates rounding lifts a corner off the plane through itself.
    std::mt19937 random(7);
    std::uniform_real_distribution<double> offset(-50.0, 50.0);
    for (int run = 0; run < 500; ++run) {
        const auto place = [&] { return CVertex{457123.0 + offset(random), 5072456.0 + offset(random), 0.0}; };
        const CVertex a = place(), b = place(), c = place();
        if (std::abs(CPolygon::Normal(a, b, c).z) < 100.0)
            continue;
        CPolygon triangle, triangles;
        Fill(triangle, {a, b, c});
        ASSERT_TRUE(triangle.DelaunayTriangles(triangles));
        EXPECT_EQ(triangles.GetSize(), 3) << "run " << run;
    }
}

TEST(PolygonDelaunay, FourPointsOnACircleGiveAllFourTriangles)
{
    CPolygon square, triangles;
    Fill(square, kUnitSquare);
    ASSERT_TRUE(square.DelaunayTriangles(triangles));
    EXPECT_EQ(triangles.GetSize(), 12);
}

// --- Curvature
// -------------------------------------------------------------------------------------------------------------

TEST(PolygonSpline, PassesThroughTheVerticesSmoothlyWithFreeEnds)
{
    CPolygon curve;
    Fill(curve, {{0, 1, 0}, {1, 3, 0}, {2.5, 2, 0}, {3, -1, 0}, {5, 0, 0}});
    std::vector<double> b, c, d;
    ASSERT_TRUE(curve.NaturalSpline(b, c, d));
    ASSERT_EQ(b.size(), 5u);
    ASSERT_EQ(c.size(), 5u);
    ASSERT_EQ(d.size(), 5u);
    EXPECT_NEAR(c[0], 0.0, 1e-12);
    EXPECT_NEAR(c[4], 0.0, 1e-12);
    for (std::size_t i = 0; i < 4; ++i) {
        const double h = curve[int(i) + 1].x - curve[int(i)].x;
        EXPECT_NEAR(curve[int(i)].y + h * (b[i] + h * (c[i] + h * d[i])), curve[int(i) + 1].y, 1e-12);
        EXPECT_NEAR(b[i] + h * (2 * c[i] + 3 * h * d[i]), b[i + 1], 1e-12);
        EXPECT_NEAR(2 * c[i] + 6 * h * d[i], 2 * c[i + 1], 1e-12);
    }
}

TEST(PolygonSpline, OfTwoVerticesIsTheirLineAndOfOneNothing)
{
    CPolygon line, point;
    Fill(line, {{0, 0, 0}, {2, 4, 0}});
    std::vector<double> b, c, d;
    ASSERT_TRUE(line.NaturalSpline(b, c, d));
    EXPECT_EQ(b, (std::vector<double>{2, 2}));
    EXPECT_EQ(c, (std::vector<double>{0, 0}));
    EXPECT_EQ(d, (std::vector<double>{0, 0}));
    Fill(point, {{0, 0, 0}});
    EXPECT_FALSE(point.NaturalSpline(b, c, d));
}

TEST(PolygonCurvature, OfASplineOverACircleIsTwiceTheInverseRadius)
{
    CPolygon left, right;
    FillCircle(left, 10.0, 41, 0.0, kPi);
    FillCircle(right, 10.0, 41, kPi, 0.0);
    EXPECT_NEAR(left.SplineCurvature(20, 10), 2.0 / 10.0, 1e-3);
    EXPECT_NEAR(right.SplineCurvature(20, 10), -2.0 / 10.0, 1e-3);
}

TEST(PolygonCurvature, OfASplineIsClampedToThePolygonAndZeroWithoutASpan)
{
    CPolygon circle, straight, heap;
    FillCircle(circle, 10.0, 41, 0.0, kPi);
    EXPECT_NEAR(circle.SplineCurvature(20, 1000), 2.0 / 10.0, 1e-3);
    EXPECT_NEAR(circle.SplineCurvature(40, 5), 0.0, 1e-9) << "a free end does not bend";
    EXPECT_EQ(circle.SplineCurvature(20, 0), 0.0);
    FillNumbered(straight, 9);
    EXPECT_NEAR(straight.SplineCurvature(4, 3), 0.0, 1e-12);
    Fill(heap, {{1, 1, 0}, {1, 1, 0}, {1, 1, 0}});
    EXPECT_EQ(heap.SplineCurvature(1, 1), 0.0) << "no direction, no divisor";
}

TEST(PolygonCurvature, AtAVertexIsTheChangeOfDirectionOverTheEdgeBefore)
{
    CPolygon corner;
    Fill(corner, {{0, 0, 0}, {2, 0, 0}, {2, 5, 0}, {3, 5, 0}});
    EXPECT_EQ(corner.DiscreteCurvature(0), 0.0);
    EXPECT_EQ(corner.DiscreteCurvature(3), 0.0);
    EXPECT_NEAR(corner.DiscreteCurvature(1), std::sqrt(2.0) / 2.0, 1e-12) << "left";
    EXPECT_NEAR(corner.DiscreteCurvature(2), -std::sqrt(2.0) / 5.0, 1e-12) << "right";
}
