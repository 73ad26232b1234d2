// Area, centroid, normal, slope and azimuth of a polygon in one call.
#include "geometry/Polygon.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

namespace {

const std::vector<CVertex> kLShape = {{0, 0, 0}, {4, 0, 0}, {4, 1, 0}, {1, 1, 0}, {1, 3, 0}, {0, 3, 0}};

struct Properties {
    bool ok = false;
    double area = -1, slope = -1, azimuth = -1;
    CVertex centroid{}, normal{};
};
Properties PropertiesOf(const std::vector<CVertex> &vertices)
{
    CPolygon polygon;
    for (const CVertex &vertex : vertices)
        EXPECT_TRUE(polygon.AddPoint(vertex));
    Properties result;
    result.ok = polygon.GetAreaProperties(result.area, result.centroid, result.normal, result.slope, result.azimuth);
    return result;
}

/// A face that rises by perX along x.
Properties Rising(double perX)
{
    return PropertiesOf({{0, 0, 0}, {1, 0, perX}, {1, 1, perX}});
}

} // namespace

TEST(PolygonProperties, OfALevelShape)
{
    for (const bool closed : {false, true}) {
        std::vector<CVertex> ring = kLShape;
        if (closed)
            ring.push_back(ring.front());
        const Properties found = PropertiesOf(ring);
        EXPECT_TRUE(found.ok);
        EXPECT_NEAR(found.area, 6.0, 1e-12);
        EXPECT_NEAR(found.centroid.x, 1.5, 1e-12);
        EXPECT_NEAR(found.centroid.y, 1.0, 1e-12);
        EXPECT_EQ(found.normal, (CVertex{0, 0, 1}));
        EXPECT_EQ(found.slope, 0.0);
        EXPECT_EQ(found.azimuth, 0.0);
    }
}

TEST(PolygonProperties, AzimuthPointsDownhillClockwiseFromNorth)
{
    const auto rising = [](double perX, double perY) {
        std::vector<CVertex> ring;
        for (const CVertex &v : std::vector<CVertex>{{0, 0, 0}, {2, 0, 0}, {2, 2, 0}, {0, 2, 0}})
            ring.push_back({v.x, v.y, perX * v.x + perY * v.y});
        return PropertiesOf(ring);
    };
    EXPECT_NEAR(rising(0.5, 0).slope, 0.5, 1e-12);
    EXPECT_NEAR(rising(0.5, 0).azimuth, 270.0, 1e-5) << "falls to the west";
    EXPECT_NEAR(rising(-0.5, 0).azimuth, 90.0, 1e-5) << "falls to the east";
    EXPECT_NEAR(rising(0, -0.5).azimuth, 0.0, 1e-5) << "falls to the north";
    EXPECT_NEAR(rising(0, 0.5).azimuth, 180.0, 1e-5);
    EXPECT_EQ(rising(0.0099, 0).azimuth, 0.0) << "too level for a direction";
    EXPECT_NEAR(rising(0.0101, 0).azimuth, 270.0, 1e-5);
    EXPECT_NEAR(rising(0.5, 0).area, 4 * std::sqrt(1.25), 1e-12);
}

TEST(PolygonProperties, OfAnUprightFaceHaveTheGreatestSlope)
{
    const Properties upright = PropertiesOf({{0, 0, 0}, {2, 0, 0}, {2, 0, 2}});
    EXPECT_TRUE(upright.ok);
    EXPECT_EQ(upright.slope, std::numeric_limits<double>::max());
}

TEST(PolygonProperties, OfATinyShapeGiveTheMeanOfItsVertices)
{
    const Properties tiny = PropertiesOf({{0, 0, 0}, {0.02, 0, 0}, {0, 0.02, 0}});
    EXPECT_TRUE(tiny.ok);
    EXPECT_NEAR(tiny.centroid.x, 0.02 / 3, 1e-15);
    const Properties line = PropertiesOf({{0, 0, 0}, {4, 0, 0}});
    EXPECT_TRUE(line.ok);
    EXPECT_EQ(line.area, 0.0);
    EXPECT_EQ(line.centroid, (CVertex{2, 0, 0}));
}

TEST(PolygonProperties, OfAnEmptyPolygonAreRefused)
{
    EXPECT_FALSE(PropertiesOf({}).ok);
}

TEST(PolygonProperties, CollinearVerticesAreDroppedOnTheWay)
{
    const Properties found = PropertiesOf({{0, 0, 0}, {1, 0, 0}, {2, 0, 0}, {2, 1, 0}, {2, 2, 0}, {0, 2, 0}});
    EXPECT_NEAR(found.area, 4.0, 1e-12);
    EXPECT_NEAR(found.centroid.x, 1.0, 1e-12);
    EXPECT_NEAR(found.centroid.y, 1.0, 1e-12);
}

TEST(PolygonProperties, OfAClockwiseRingAreOneTriangleAndTheMeanOfAllVertices)
{
    // Seen clockwise no diagonal lies inside, so only the last triangle (the first three vertices) is measured; its
    // area is below zero, and that sign is looked at before the area loses it.
    for (const bool closed : {false, true}) {
        std::vector<CVertex> ring = {{0, 0, 0}, {0, 2, 0}, {1, 2, 0}, {4, 0, 0}};
        if (closed)
            ring.push_back(ring.front());
        const Properties found = PropertiesOf(ring);
        EXPECT_TRUE(found.ok);
        EXPECT_NEAR(found.area, 1.0, 1e-12);
        EXPECT_NEAR(found.centroid.x, 1.25, 1e-12);
        EXPECT_NEAR(found.centroid.y, 1.0, 1e-12);
        EXPECT_EQ(found.slope, 0.0);
    }
}

TEST(PolygonProperties, UpToATwiceAreaOfAThousandthTheCentroidIsTheMeanOfTheVertices)
{
    // Trapezoids whose mean of vertices is not their centroid.
    const Properties below = PropertiesOf({{0, 0, 0}, {0.03, 0, 0}, {0.01, 0.02, 0}, {0, 0.02, 0}}); // twice: 0.0008
    EXPECT_NEAR(below.area, 0.0004, 1e-15);
    EXPECT_NEAR(below.centroid.x, 0.01, 1e-12);
    EXPECT_NEAR(below.centroid.y, 0.01, 1e-12);
    const Properties above = PropertiesOf({{0, 0, 0}, {0.045, 0, 0}, {0.015, 0.02, 0}, {0, 0.02, 0}}); // twice: 0.0012
    EXPECT_NEAR(above.area, 0.0006, 1e-15);
    EXPECT_NEAR(above.centroid.x, 0.01625, 1e-12);
    EXPECT_NEAR(above.centroid.y, 0.025 / 3, 1e-12);
}

TEST(PolygonProperties, AFaceWhoseNormalRisesLessThanAThousandthCountsAsUpright)
{
    constexpr double kUpright = 1 / 0.0009, kSteep = 1 / 0.0011; // about one over the normal's rise
    EXPECT_EQ(Rising(kUpright).slope, std::numeric_limits<double>::max());
    EXPECT_NEAR(Rising(kSteep).slope, kSteep, 1e-6);
}
