#include "host/sewage/PolygonText.h"
#include "contracts/CoreServices.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace velmor {
namespace {

using Ring = std::vector<AcGePoint2d>;

TEST(PolygonText, TheRingComesInItsOrderWithoutTheRepeat)
{
    EXPECT_EQ(ringOfPolygonText(L"POLYGON ((0 0, 4 0, 4 3, 0 0))"), (Ring{{0, 0}, {4, 0}, {4, 3}}));
    EXPECT_EQ(ringOfPolygonText(L"POLYGON((4 3,4 0,0 0,4 3))"), (Ring{{4, 3}, {4, 0}, {0, 0}}));
}

TEST(PolygonText, LettersOfEitherCaseBlanksExponentsAndHeightsAreTaken)
{
    EXPECT_EQ(ringOfPolygonText(L"\n polygon z ( ( 0 0 7 ,\t1e2 0 7, 1E+2 -2.5e-1 7, 0 0 7 ) ) \r\n"),
              (Ring{{0, 0}, {100, 0}, {100, -0.25}}));
}

TEST(PolygonText, InnerRingsAreDropped)
{
    EXPECT_EQ(ringOfPolygonText(L"POLYGON ((0 0, 9 0, 9 9, 0 0), (1 1, 2 1, 2 2, 1 1))"),
              (Ring{{0, 0}, {9, 0}, {9, 9}}));
}

TEST(PolygonText, TextThatMakesNoRingGivesNothing)
{
    for (const wchar_t *text :
         {L"", L"POLYGON EMPTY", L"POLYGON", L"POLYGON (())", L"POLYGON ((0 0, 4 0, 4 3, 0 0)",
          L"POLYGON ((0 0, 4 0, 4 3, 0 0)) x", L"POLYGON ((0 0, 4 0, 4 3, 0 1))", L"POLYGON ((0 0, 4 0, 0 0))",
          L"POLYGON ((0 0, 0 0, 0 0, 0 0))", L"POLYGON ((0 0, 4 0, 4 0, 0 0))", L"POLYGON ((0 0, 4 nan, 4 3, 0 0))",
          L"POLYGON ((0 0, 4 1e999, 4 3, 0 0))", L"POLYGON ((0 0, 4 0x1, 4 3, 0 0))", L"POLYGON ((0 0, 4, 4 3, 0 0))",
          L"POLYGON ((0 0 1 2 3, 4 0, 4 3, 0 0))", L"POLYGON ((0 0, 4 0, 4 3, 0 0), (1 1))x",
          L"MULTIPOLYGON (((0 0, 4 0, 4 3, 0 0)))", L"LINESTRING (0 0, 4 0, 4 3, 0 0)"})
        EXPECT_FALSE(ringOfPolygonText(text)) << text;
}

TEST(PolygonText, TheTextOfTheContractReadsBackTheSameDoubles)
{
    std::mt19937_64 random(20);
    std::uniform_real_distribution<double> x(5.5e6, 5.6e6), y(-3.0, 3.0);
    for (int round = 0; round < 200; ++round) {
        AcGePoint3dArray points;
        Ring expected;
        for (int i = 0; i < 12; ++i) {
            points.emplace_back(x(random), y(random), 0.0);
            expected.push_back({points.back().x, points.back().y});
        }
        const std::wstring text =
            ZEMGis::Utility::CTransform::PolygonText(ZEMGis::Utility::CTransform::AcadPoly2GeosPoly(points));
        ASSERT_EQ(ringOfPolygonText(text), expected) << text;
    }
}

TEST(PolygonText, TheTextOfNoPointsMakesNoRing)
{
    EXPECT_FALSE(ringOfPolygonText(
        ZEMGis::Utility::CTransform::PolygonText(ZEMGis::Utility::CTransform::AcadPoly2GeosPoly({}))));
}

} // namespace
} // namespace velmor
