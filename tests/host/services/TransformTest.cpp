#include "contracts/CoreServices.h"

#include <geos/geom/GeometryFactory.h>
#include <geos/geom/Polygon.h>
#include <geos/io/WKTReader.h>

#include <gtest/gtest.h>

#include <limits>
#include <random>

namespace ZEMGis::Utility {
namespace {

std::wstring textOf(const AcGePoint3dArray &points)
{
    return CTransform::PolygonText(CTransform::AcadPoly2GeosPoly(points));
}

TEST(PolygonText, ClosesTheRingAndKeepsOrderWithoutHeights)
{
    EXPECT_EQ(textOf({{0, 0, 5}, {10, 0, 6}, {10, 4.5, 7}}), L"POLYGON ((0 0, 10 0, 10 4.5, 0 0))");
    EXPECT_EQ(textOf({{0, 0}, {0, 10}, {10, 0}}), L"POLYGON ((0 0, 0 10, 10 0, 0 0))") << "clockwise stays clockwise";
}

TEST(PolygonText, ARingThatIsClosedAlreadyIsNotClosedAgain)
{
    EXPECT_EQ(textOf({{0, 0}, {10, 0}, {10, 4}, {0, 0, 9}}), L"POLYGON ((0 0, 10 0, 10 4, 0 0))");
}

TEST(PolygonText, FewerThanThreeCornersGiveAnEmptyPolygonAndNoException)
{
    EXPECT_EQ(textOf({}), L"POLYGON EMPTY");
    EXPECT_EQ(textOf({{1, 1}}), L"POLYGON EMPTY");
    EXPECT_EQ(textOf({{1, 1}, {2, 2}}), L"POLYGON EMPTY");
    EXPECT_EQ(textOf({{1, 1}, {2, 2}, {1, 1}}), L"POLYGON EMPTY");
    EXPECT_EQ(CTransform::PolygonText(nullptr), L"POLYGON EMPTY");
}

TEST(PolygonText, CoordinatesThatAreNoNumbersGiveAnEmptyPolygon)
{
    EXPECT_EQ(textOf({{0, 0}, {std::numeric_limits<double>::quiet_NaN(), 0}, {1, 1}}), L"POLYGON EMPTY");
    EXPECT_EQ(textOf({{0, 0}, {std::numeric_limits<double>::infinity(), 0}, {1, 1}}), L"POLYGON EMPTY");
}

TEST(PolygonText, ReadsBackToTheSameNumbers)
{
    // Corners of any size that a drawing may have, and ring crossings too: the text does not judge the shape.
    std::mt19937_64 random(20260); // fixed, so that a failure repeats
    std::uniform_real_distribution<double> exponent(-12, 12), digit(-1, 1);
    for (int round = 0; round < 200; ++round) {
        AcGePoint3dArray points;
        for (int i = 0; i < 8; ++i)
            points.emplace_back(digit(random) * std::pow(10.0, exponent(random)),
                                digit(random) * std::pow(10.0, exponent(random)));
        std::string text;
        for (const wchar_t c : textOf(points))
            text.push_back(static_cast<char>(c));

        const auto read = geos::io::WKTReader().read<geos::geom::Polygon>(text);
        const auto coordinates = read->getExteriorRing()->getCoordinates();
        ASSERT_EQ(coordinates->size(), points.size() + 1);
        for (std::size_t i = 0; i < points.size(); ++i) {
            EXPECT_EQ(coordinates->getAt(i).x, points[i].x);
            EXPECT_EQ(coordinates->getAt(i).y, points[i].y);
        }
        EXPECT_EQ(coordinates->getAt(points.size()).x, points[0].x);
    }
}

TEST(PolygonText, HolesFollowTheOuterRing)
{
    const auto polygon =
        geos::io::WKTReader().read<geos::geom::Polygon>("POLYGON ((0 0, 9 0, 9 9, 0 0), (5 2, 6 2, 6 3, 5 2))");
    EXPECT_EQ(CTransform::PolygonText(polygon.get()), L"POLYGON ((0 0, 9 0, 9 9, 0 0), (5 2, 6 2, 6 3, 5 2))");
}

} // namespace
} // namespace ZEMGis::Utility
