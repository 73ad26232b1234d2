#include "host/sewage/AreaRing.h"
#include "geometry/Polygon.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace velmor {
namespace {

using Ring = std::vector<AcGePoint3d>;

CVertex centroidOfModule(const Ring &ring)
{
    CPolygon polygon;
    for (const AcGePoint3d &p : ring)
        polygon.AddPoint({p.x, p.y, p.z});
    return polygon.Centroid();
}

TEST(AreaRing, TheCentreIsTheVeryNumberThatTheModuleFinds)
{
    // Star-shaped rings of both directions, near the origin and at the size of national coordinates.
    std::mt19937_64 random(7);
    std::uniform_real_distribution<double> radius(5.0, 80.0), shift(-1.0, 1.0);
    std::uniform_int_distribution<int> corners(3, 40);
    int clockwise = 0;
    for (int round = 0; round < 2000; ++round) {
        const double size = round % 3 == 0 ? 0.0 : round % 3 == 1 ? 5e5 : 5e6;
        const AcGePoint3d middle(size * shift(random), size * shift(random), round % 5 == 0 ? 12.25 : 0.0);
        Ring ring;
        const int count = corners(random);
        for (int i = 0; i < count; ++i) {
            const double angle = 6.283185307179586 * i / count, r = radius(random);
            ring.emplace_back(middle.x + r * std::cos(angle), middle.y + r * std::sin(angle), middle.z);
        }
        if (round % 2) {
            std::reverse(ring.begin(), ring.end());
            ++clockwise;
        }
        const CVertex expected = centroidOfModule(ring);
        const AcGePoint3d centre = centreOfRing(ring);
        ASSERT_EQ(centre.x, expected.x) << "round " << round;
        ASSERT_EQ(centre.y, expected.y) << "round " << round;
        ASSERT_EQ(centre.z, expected.z) << "round " << round;
    }
    EXPECT_EQ(clockwise, 1000);
}

TEST(AreaRing, TheClosingRepeatDoesNotMoveTheModulesCentre)
{
    // What the dialog traced may repeat its first vertex; the stored ring never does.
    for (const bool reversed : {false, true}) {
        Ring ring{{0.1, 0.2}, {40.7, 3.3}, {38.9, 29.1}, {11.3, 33.7}};
        if (reversed)
            std::reverse(ring.begin(), ring.end());
        const AcGePoint3d centre = centreOfRing(ring);
        ring.push_back(ring.front());
        const CVertex closed = centroidOfModule(ring);
        EXPECT_NEAR(centre.x, closed.x, 1e-12);
        EXPECT_NEAR(centre.y, closed.y, 1e-12);
    }
}

TEST(AreaRing, AClockwiseLGivesTheMeanOfItsVertices)
{
    Ring ring{{0, 0}, {30, 0}, {30, 10}, {10, 10}, {10, 30}, {0, 30}};
    EXPECT_EQ(centreOfRing(ring), AcGePoint3d(11.0, 11.0));
    std::reverse(ring.begin(), ring.end());
    EXPECT_EQ(centreOfRing(ring), AcGePoint3d(80.0 / 6.0, 80.0 / 6.0));
}

TEST(AreaRing, ARingOfNoAreaGivesTheMeanOfItsVertices)
{
    EXPECT_EQ(centreOfRing({{0, 0}, {0.03, 0}, {0.03, 0.03}}), AcGePoint3d(0.02, 0.01)) << "doubled area 0.0009";
    EXPECT_EQ(centreOfRing({{0, 0}, {6, 0}}), AcGePoint3d(3.0, 0.0));
}

TEST(AreaRing, PolylinesOfAllThreeKindsGiveTheirRing)
{
    const Ring expected{{1, 2, 5}, {4, 2, 5}, {4, 6, 5}};
    EXPECT_EQ(ringOf(AcDbPolyline({{1, 2}, {4, 2}, {4, 6}}, true, 5.0)), expected);
    EXPECT_EQ(ringOf(AcDbPolyline({{1, 2}, {4, 2}, {4, 6}, {1, 2}}, true, 5.0)), expected) << "repeat left out";
    EXPECT_EQ(ringOf(AcDb2dPolyline({{1, 2}, {4, 2}, {4, 6}}, true, 5.0)), expected);
    EXPECT_EQ(ringOf(AcDb3dPolyline({{1, 2, 5}, {4, 2, 5}, {4, 6, 5}, {1, 2, 5}}, false)), expected);
    EXPECT_TRUE(ringOf(AcDbLine({0, 0}, {1, 1})).empty());
}

} // namespace
} // namespace velmor
