// The working core of CPolygon: storage, centroid, containment, closing.
#include "geometry/Polygon.h"

#include "contracts/DrawingHost.h"

#include <gmock/gmock.h>

#include <limits>
#include <optional>
#include <random>
#include <string>
#include <vector>

// This program's host: the one call that a polygon makes.
static std::vector<std::wstring> g_alerts;
void acedAlert(const wchar_t *text)
{
    g_alerts.emplace_back(text);
}

// A refused allocation is what some of these tests are about.
extern "C" const char *__asan_default_options()
{
    return "allocator_may_return_null=1";
}

namespace {

void Fill(CPolygon &polygon, const std::vector<CVertex> &vertices)
{
    for (const CVertex &vertex : vertices)
        ASSERT_TRUE(polygon.AddPoint(vertex));
}

void ExpectVertex(const CVertex &actual, double x, double y, double z = 0.0)
{
    EXPECT_DOUBLE_EQ(actual.x, x);
    EXPECT_DOUBLE_EQ(actual.y, y);
    EXPECT_DOUBLE_EQ(actual.z, z);
}

const std::vector<CVertex> kUnitSquare = {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}};
const std::vector<CVertex> kLShape = {{0, 0, 0}, {4, 0, 0}, {4, 1, 0}, {1, 1, 0}, {1, 3, 0}, {0, 3, 0}};

std::vector<CVertex> Reversed(std::vector<CVertex> vertices)
{
    std::reverse(vertices.begin(), vertices.end());
    return vertices;
}

} // namespace

TEST(Vertex, HasTheUsualVectorOperations)
{
    const CVertex a{1, 2, 3}, b{4, -5, 6};
    EXPECT_EQ(a + b, (CVertex{5, -3, 9}));
    EXPECT_EQ(a - b, (CVertex{-3, 7, -3}));
    EXPECT_EQ(a * 2.0, (CVertex{2, 4, 6}));
    EXPECT_EQ(a / 2.0, (CVertex{0.5, 1, 1.5}));
    EXPECT_EQ(a.Dot(b), 12.0);
    EXPECT_EQ(a.Cross(b), (CVertex{27, 6, -13}));
    EXPECT_EQ((CVertex{2, 3, 6}).SquaredLength(), 49.0);
    EXPECT_EQ((CVertex{2, 3, 6}).Length(), 7.0);
}

TEST(PolygonStorage, StartsEmptyAndGrowsByOne)
{
    CPolygon polygon;
    EXPECT_EQ(polygon.GetSize(), 0);
    for (int i = 0; i < 5; ++i) {
        EXPECT_TRUE(polygon.AddPoint({double(i), 0, 0}));
        EXPECT_EQ(polygon.GetSize(), i + 1);
    }
    for (int i = 0; i < 5; ++i)
        EXPECT_EQ(polygon[i].x, i);
}

TEST(PolygonStorage, AddingOneOfItsOwnVerticesStoresItsValue)
{
    CPolygon polygon;
    Fill(polygon, {{7, 8, 9}});
    for (int i = 0; i < 1000; ++i)
        ASSERT_TRUE(polygon.AddPoint(polygon[0]));
    EXPECT_EQ(polygon[1000], (CVertex{7, 8, 9}));
}

TEST(PolygonStorage, ASizedConstructorGivesThatManyVertices)
{
    const CPolygon none(0);
    EXPECT_EQ(none.GetSize(), 0);
    CPolygon polygon(3);
    EXPECT_EQ(polygon.GetSize(), 3);
    for (int i = 0; i < 3; ++i)
        polygon[i] = {1, 1, 1};
    EXPECT_TRUE(g_alerts.empty());
}

TEST(PolygonStorage, ASizedConstructorWithoutMemoryTellsTheUserAndStaysEmpty)
{
    g_alerts.clear();
    const CPolygon polygon(-1);
    EXPECT_EQ(polygon.GetSize(), 0);
    EXPECT_EQ(g_alerts, std::vector<std::wstring>{L"Unable to allocate sufficient memory for polygon"});
    g_alerts.clear();
}

TEST(PolygonStorage, SizeZeroFreesAndARefusedSizeLeavesTheOldState)
{
    CPolygon polygon;
    Fill(polygon, kUnitSquare);
    EXPECT_FALSE(polygon.SetSize(-1));
    ASSERT_EQ(polygon.GetSize(), 4);
    EXPECT_EQ(polygon[2], (CVertex{1, 1, 0}));
    EXPECT_TRUE(g_alerts.empty()) << "only the sized constructor speaks to the user";

    EXPECT_TRUE(polygon.SetSize(2));
    EXPECT_EQ(polygon[1], (CVertex{1, 0, 0}));
    EXPECT_TRUE(polygon.SetSize(0));
    EXPECT_EQ(polygon.GetSize(), 0);
    EXPECT_TRUE(polygon.SetSize(0));
    EXPECT_TRUE(polygon.AddPoint({1, 2, 3}));
    EXPECT_EQ(polygon[0], (CVertex{1, 2, 3}));
}

TEST(PolygonStorage, AssignmentCopiesAndSelfAssignmentDoesNothing)
{
    CPolygon from, to;
    Fill(from, kUnitSquare);
    Fill(to, kLShape);
    to = from;
    ASSERT_EQ(to.GetSize(), 4);
    from[0] = {9, 9, 9};
    EXPECT_EQ(to[0], (CVertex{0, 0, 0}));
    CPolygon &same = to;
    to = same;
    ASSERT_EQ(to.GetSize(), 4);
    EXPECT_EQ(to[3], (CVertex{0, 1, 0}));
    to = CPolygon();
    EXPECT_EQ(to.GetSize(), 0);
}

TEST(PolygonStorage, RemovingTheLastVertexLeavesAnEmptyPolygonThatCanGrow)
{
    CPolygon polygon;
    Fill(polygon, {{1, 1, 1}, {2, 2, 2}});
    polygon.RemovePoint(0);
    ASSERT_EQ(polygon.GetSize(), 1);
    EXPECT_EQ(polygon[0], (CVertex{2, 2, 2}));
    polygon.RemovePoint(0);
    EXPECT_EQ(polygon.GetSize(), 0);
    EXPECT_TRUE(polygon.AddPoint({3, 3, 3}));
    EXPECT_EQ(polygon[0], (CVertex{3, 3, 3}));
}

// --- Containment
// -------------------------------------------------------------------------------------------------------

TEST(PolygonContains, IsHalfOpenOnTheUnitSquare)
{
    CPolygon square;
    Fill(square, kUnitSquare);
    EXPECT_EQ(square.Contains(0.5, 0.5), 1);
    EXPECT_EQ(square.Contains(0.5, 0.0), 0) << "lower edge";
    EXPECT_EQ(square.Contains(0.0, 0.5), 0) << "left edge";
    EXPECT_EQ(square.Contains(0.5, 1.0), 1) << "upper edge";
    EXPECT_EQ(square.Contains(1.0, 0.5), 1) << "right edge";
    EXPECT_EQ(square.Contains(0.0, 0.0), 0);
    EXPECT_EQ(square.Contains(1.0, 1.0), 1);
    EXPECT_EQ(square.Contains(-0.1, 0.5), 0);
    EXPECT_EQ(square.Contains(1.1, 0.5), 0);
    EXPECT_EQ(square.Contains(0.5, 1.1), 0);
    EXPECT_EQ(square.Contains(0.5, -0.1), 0);
}

TEST(PolygonContains, GivesTheSameForBothDirectionsAndAnyStart)
{
    for (std::size_t start = 0; start < kUnitSquare.size(); ++start) {
        std::vector<CVertex> vertices = kUnitSquare;
        std::rotate(vertices.begin(), vertices.begin() + long(start), vertices.end());
        for (const auto &ring : {vertices, Reversed(vertices)}) {
            CPolygon square;
            Fill(square, ring);
            EXPECT_EQ(square.Contains(0.5, 0.0), 0);
            EXPECT_EQ(square.Contains(0.5, 1.0), 1);
            EXPECT_EQ(square.Contains(1.0, 0.5), 1);
            EXPECT_EQ(square.Contains(0.0, 0.5), 0);
        }
    }
}

TEST(PolygonContains, HasNoTolerance)
{
    CPolygon square;
    Fill(square, kUnitSquare);
    EXPECT_EQ(square.Contains(std::nextafter(0.0, 1.0), 0.5), 1);
    EXPECT_EQ(square.Contains(std::nextafter(1.0, 2.0), 0.5), 0);
    EXPECT_EQ(square.Contains(0.5, std::nextafter(1.0, 2.0)), 0);
    EXPECT_EQ(square.Contains(0.5, std::nextafter(0.0, 1.0)), 1);
}

TEST(PolygonContains, ARepeatedLastVertexChangesNothing)
{
    CPolygon open, closed;
    Fill(open, kLShape);
    Fill(closed, kLShape);
    ASSERT_TRUE(closed.Close());
    ASSERT_EQ(closed.GetSize(), open.GetSize() + 1);
    for (double x = -0.25; x <= 4.5; x += 0.25) {
        for (double y = -0.25; y <= 3.5; y += 0.25)
            EXPECT_EQ(open.Contains(x, y), closed.Contains(x, y)) << x << ", " << y;
    }
}

TEST(PolygonContains, IgnoresZ)
{
    CPolygon square;
    Fill(square, {{0, 0, 5}, {1, 0, -3}, {1, 1, 100}, {0, 1, 0}});
    EXPECT_EQ(square.Contains(0.5, 0.5), 1);
    EXPECT_EQ(square.Contains(1.5, 0.5), 0);
}

TEST(PolygonContains, ADegeneratePolygonHasNoInside)
{
    CPolygon point, line;
    Fill(point, {{1, 1, 0}});
    EXPECT_EQ(point.Contains(1, 1), 0);
    Fill(line, {{0, 0, 0}, {2, 2, 0}});
    EXPECT_EQ(line.Contains(1, 1), 0);
    EXPECT_EQ(line.Contains(0.5, 1), 0);
}

TEST(PolygonContains, AgreesWithWindingOnRandomRings)
{
    const unsigned seed = 20240607;
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    std::uniform_real_distribution<double> radius(1.0, 10.0), place(-11.0, 11.0);
    int inside = 0, total = 0;
    for (int round = 0; round < 50; ++round) {
        const int count = 3 + round % 20;
        std::vector<CVertex> ring;
        for (int i = 0; i < count; ++i) {
            const double angle = 6.283185307179586 * i / count, r = radius(random);
            ring.push_back({r * std::cos(angle), r * std::sin(angle), 0});
        }
        CPolygon polygon;
        Fill(polygon, ring);
        for (int probe = 0; probe < 100; ++probe) {
            const double x = place(random), y = place(random);
            double turned = 0.0; // angle that the ring turns round the point
            for (int i = 0; i < count; ++i) {
                const CVertex a = ring[std::size_t(i)], b = ring[std::size_t((i + 1) % count)];
                turned += std::atan2((a.x - x) * (b.y - y) - (b.x - x) * (a.y - y),
                                     (a.x - x) * (b.x - x) + (a.y - y) * (b.y - y));
            }
            const int expected = std::abs(turned) > 3.0 ? 1 : 0;
            EXPECT_EQ(polygon.Contains(x, y), expected) << x << ", " << y;
            inside += expected;
            ++total;
        }
    }
    EXPECT_GT(inside, total / 20) << "too few of the probes lay inside to say anything";
}

// --- Centroid
// ----------------------------------------------------------------------------------------------------------

TEST(PolygonCentroid, OfASquareIsItsCentreInBothDirections)
{
    CPolygon square, clockwise;
    Fill(square, kUnitSquare);
    Fill(clockwise, Reversed(kUnitSquare));
    ExpectVertex(square.Centroid(), 0.5, 0.5);
    ExpectVertex(clockwise.Centroid(), 0.5, 0.5);
}

TEST(PolygonCentroid, OfACounterClockwiseLShapeIsItsAreaCentroid)
{
    CPolygon shape;
    Fill(shape, kLShape);
    // 4 x 1 about (2, 0.5) and 1 x 2 about (0.5, 2)
    const CVertex centroid = shape.Centroid();
    EXPECT_NEAR(centroid.x, (4 * 2.0 + 2 * 0.5) / 6, 1e-12);
    EXPECT_NEAR(centroid.y, (4 * 0.5 + 2 * 2.0) / 6, 1e-12);
}

TEST(PolygonCentroid, OfAClockwiseLShapeIsTheMeanOfItsVertices)
{
    CPolygon shape;
    Fill(shape, Reversed(kLShape));
    ExpectVertex(shape.Centroid(), (0 + 4 + 4 + 1 + 1 + 0) / 6.0, (0 + 0 + 1 + 1 + 3 + 3) / 6.0);
}

TEST(PolygonCentroid, OfAClosedClockwiseRingLeavesTheRepeatOut)
{
    CPolygon shape;
    Fill(shape, Reversed(kLShape));
    ASSERT_TRUE(shape.Close());
    ASSERT_EQ(shape.GetSize(), 7);
    ExpectVertex(shape.Centroid(), 10 / 6.0, 8 / 6.0);
}

TEST(PolygonCentroid, OfTwoVerticesIsTheirMean)
{
    CPolygon line;
    Fill(line, {{0, 0, 0}, {4, 2, 6}});
    ExpectVertex(line.Centroid(), 2, 1, 3);
}

TEST(PolygonCentroid, OfASmallClosedTriangleIsTheMeanOfThreeVertices)
{
    // Doubled area 0.001, which is not above the tolerance.
    CPolygon triangle;
    Fill(triangle, {{0, 0, 0}, {0.1, 0, 0}, {0, 0.01, 0}, {0, 0, 0}});
    ASSERT_TRUE(triangle.IsClosed());
    const CVertex centroid = triangle.Centroid();
    EXPECT_NEAR(centroid.x, 0.1 / 3, 1e-15);
    EXPECT_NEAR(centroid.y, 0.01 / 3, 1e-15);
}

TEST(PolygonCentroid, OfADoubledAreaOfOneThousandthOrLessIsTheMeanOfTheVertices)
{
    const auto centroidX = [](double side) { // a square with an extra vertex on top, doubled area 2 side^2
        CPolygon shape;
        Fill(shape, {{0, 0, 0}, {side, 0, 0}, {side, side, 0}, {side / 4, side, 0}, {0, side, 0}});
        return shape.Centroid().x / side;
    };
    EXPECT_NEAR(centroidX(0.0224), 0.5, 1e-9);      // 0.0010035
    EXPECT_NEAR(centroidX(0.0223), 2.25 / 5, 1e-9); // 0.00099458
}

TEST(PolygonCentroid, CarriesZ)
{
    CPolygon square;
    Fill(square, {{0, 0, 7}, {1, 0, 7}, {1, 1, 7}, {0, 1, 7}});
    ExpectVertex(square.Centroid(), 0.5, 0.5, 7);
}

TEST(PolygonCentroid, WeighsATiltedFaceByItsAreaInSpace)
{
    CPolygon tilted; // 2 x 1 in plan, rising along x
    Fill(tilted, {{0, 0, 0}, {2, 0, 2}, {2, 1, 2}, {0, 1, 0}});
    const CVertex centroid = tilted.Centroid();
    EXPECT_NEAR(centroid.x, 1.0, 1e-12);
    EXPECT_NEAR(centroid.y, 0.5, 1e-12);
    EXPECT_NEAR(centroid.z, 1.0, 1e-12);
}

TEST(PolygonCentroid, IsReturnedByValueAndNotSharedBetweenPolygons)
{
    CPolygon square, shape;
    Fill(square, kUnitSquare);
    Fill(shape, kLShape);
    const CVertex first = square.Centroid();
    shape.Centroid();
    ExpectVertex(first, 0.5, 0.5);
    ExpectVertex(square.Centroid(), 0.5, 0.5);
}

/// The centroid of the area by its definition, one plain step after the other; none when the mean stands for it.
std::optional<CVertex> CentroidStepByStep(const std::vector<CVertex> &ring)
{
    CVertex sum{0.0, 0.0, 0.0};
    double total = 0.0;
    for (std::size_t i = 0; i + 2 < ring.size(); ++i) {
        const CVertex &a = ring[0], &b = ring[i + 1], &c = ring[i + 2];
        const CVertex normal = (b - a).Cross(c - a);
        const double weight = normal.z < 0.0 ? -normal.Length() : normal.Length();
        total += weight;
        sum += (a + b + c) / 3.0 * weight;
    }
    if (total <= 0.001)
        return {};
    return sum * (1.0 / total);
}

TEST(PolygonCentroid, OfLevelAndOfOtherRingsIsTheSumOfTheFanToTheLastBit)
{
    std::mt19937_64 random(11);
    std::uniform_real_distribution<double> reach(0.2, 90.0), height(-5.0, 300.0);
    int compared = 0;
    for (int vertices = 3; vertices < 60; ++vertices) {
        for (const int unlevel : {-1, 0, 1, vertices / 2, vertices - 1}) {
            std::vector<CVertex> ring;
            const double z = vertices % 3 == 0 ? 0.0 : height(random);
            for (int i = 0; i < vertices; ++i) {
                const double angle = 6.28318 * i / vertices, r = reach(random);
                ring.push_back({5071234.567 + r * std::cos(angle), 4321.0 + r * std::sin(angle),
                                i == unlevel ? height(random) : z});
            }
            CPolygon polygon;
            Fill(polygon, ring);
            const std::optional<CVertex> expected = CentroidStepByStep(ring);
            if (!expected)
                continue;
            ++compared;
            EXPECT_EQ(polygon.Centroid(), *expected) << vertices << " vertices, odd one " << unlevel;
        }
    }
    EXPECT_GT(compared, 250);
}

// --- Closing
// -------------------------------------------------------------------------------------------------------------

TEST(PolygonClosed, WithinTheToleranceOfEachCoordinate)
{
    const auto closed = [](CVertex last) {
        CPolygon polygon;
        Fill(polygon, {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, last});
        return polygon.IsClosed();
    };
    EXPECT_TRUE(closed({0, 0, 0}));
    EXPECT_TRUE(closed({0.001, 0, 0}));
    EXPECT_TRUE(closed({0, -0.001, 0}));
    EXPECT_TRUE(closed({0.001, 0.001, 0.001}));
    EXPECT_FALSE(closed({0.0011, 0, 0}));
    EXPECT_FALSE(closed({0, -0.0011, 0}));
    EXPECT_FALSE(closed({0, 0, 0.0011}));
}

TEST(PolygonClosed, CloseRepeatsTheFirstVertexOnce)
{
    CPolygon square;
    Fill(square, kUnitSquare);
    EXPECT_FALSE(square.IsClosed());
    EXPECT_TRUE(square.Close());
    EXPECT_TRUE(square.IsClosed());
    ASSERT_EQ(square.GetSize(), 5);
    EXPECT_EQ(square[4], square[0]);
    EXPECT_TRUE(square.Close());
    EXPECT_EQ(square.GetSize(), 5);
}

TEST(PolygonTranslate, MovesEveryVertex)
{
    CPolygon square;
    Fill(square, kUnitSquare);
    square.Translate({10, 20, 30});
    EXPECT_EQ(square[0], (CVertex{10, 20, 30}));
    EXPECT_EQ(square[2], (CVertex{11, 21, 30}));
    square.Translate(square[0]);
    EXPECT_EQ(square[2], (CVertex{21, 41, 60}));
}
