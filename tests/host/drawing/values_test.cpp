// Geometry values, argument chains and colours of the contract.
#include "contracts/DrawingHost.h"

#include <gmock/gmock.h>
#include <malloc.h>
#include <numbers>
#include <utility>

namespace {
constexpr double kPi = std::numbers::pi;
}

TEST(Points, AreEqualWithinTheToleranceOnly)
{
    const AcGePoint3d point(5071234.5, 1.0, -2.0);
    EXPECT_TRUE(AcGePoint3d(0, 0, 0) == AcGePoint3d(1e-11, 0, 0));
    EXPECT_FALSE(AcGePoint3d(0, 0, 0) == AcGePoint3d(1e-9, 0, 0));
    EXPECT_TRUE(AcGePoint3d(0, 0, 0) == AcGePoint3d(0, 0, 1e-11));
    EXPECT_FALSE(AcGePoint3d(0, 0, 0) == AcGePoint3d(0, 0, 1e-9));
    EXPECT_TRUE(point == point);
    EXPECT_DOUBLE_EQ(AcGePoint3d(1, 2, 3).distanceTo(AcGePoint3d(3, 5, 9)), 7.0);
    EXPECT_DOUBLE_EQ((AcGeVector3d{2, 3, 6}).length(), 7.0);
}

TEST(BulgeArc, AHalfCircleHasItsCentreInTheMiddleOfTheChord)
{
    const AcGeCircArc2d arc({0, 0}, {10, 0}, 1.0);
    EXPECT_NEAR(arc.center().x, 5.0, 1e-12);
    EXPECT_NEAR(arc.center().y, 0.0, 1e-12);
    EXPECT_NEAR(arc.radius(), 5.0, 1e-12);
    EXPECT_NEAR(arc.length(), 5.0 * kPi, 1e-12);
}

TEST(BulgeArc, TheCentreLiesLeftOfAFlatPositiveBulgeAndRightOfANegativeOne)
{
    const double quarter = std::tan(kPi / 8.0); // a quarter of a circle
    const AcGeCircArc2d left({1, 0}, {0, 1}, quarter);
    EXPECT_NEAR(left.center().x, 0.0, 1e-12);
    EXPECT_NEAR(left.center().y, 0.0, 1e-12);
    EXPECT_NEAR(left.radius(), 1.0, 1e-12);
    EXPECT_NEAR(left.length(), kPi / 2.0, 1e-12);
    const AcGeCircArc2d right({1, 0}, {0, 1}, -quarter);
    EXPECT_NEAR(right.center().x, 1.0, 1e-12);
    EXPECT_NEAR(right.center().y, 1.0, 1e-12);
    EXPECT_NEAR(right.length(), kPi / 2.0, 1e-12);
    const AcGeCircArc2d wide({1, 0}, {0, 1}, 1.0 / quarter); // the other three quarters
    EXPECT_NEAR(wide.center().x, 1.0, 1e-12);
    EXPECT_NEAR(wide.center().y, 1.0, 1e-12);
    EXPECT_NEAR(wide.length(), 1.5 * kPi, 1e-12);
}

TEST(BulgeArc, WithoutABulgeItIsTheChord)
{
    const AcGeCircArc2d straight({0, 0}, {3, 4}, 0.0);
    EXPECT_DOUBLE_EQ(straight.length(), 5.0);
    EXPECT_TRUE(std::isinf(straight.radius()));
}

TEST(PlaneGeometry, AnglesRunFromZeroToAFullTurnInAllEightDirections)
{
    const double from[3] = {100.0, 200.0, 7.0};
    for (int i = 0; i < 8; ++i) {
        const double angle = i * kPi / 4.0;
        double to[3];
        acutPolar(from, angle, 10.0, to);
        EXPECT_NEAR(to[0], 100.0 + 10.0 * std::cos(angle), 1e-12);
        EXPECT_NEAR(to[1], 200.0 + 10.0 * std::sin(angle), 1e-12);
        EXPECT_EQ(to[2], 7.0);
        EXPECT_NEAR(acutAngle(from, to), angle, 1e-12) << i;
    }
    const double tiny[3] = {200.0, 200.0 - 1e-300, 0.0};
    EXPECT_LT(acutAngle(from, tiny), 2.0 * kPi);
    EXPECT_GE(acutAngle(from, tiny), 0.0);
}

TEST(PlaneGeometry, AStepOfNoLengthStaysWhereItIs)
{
    double point[3] = {5071234.123, 1.5, 2.5};
    acutPolar(point, 90.0, 0.0, point);
    EXPECT_EQ(point[0], 5071234.123);
    EXPECT_EQ(point[1], 1.5);
    EXPECT_EQ(point[2], 2.5);
}

TEST(Chains, AreBuiltFromPairsInOrder)
{
    const double point[3] = {1.0, 2.0, 3.0};
    const std::int64_t picks[2] = {77, 88};
    std::wstring text = L"_-BOUNDARY";
    resbuf *chain = acutBuildList(RTSTR, text.c_str(), RT3DPOINT, point, RTPICKS, picks, RTSHORT, -5, RTREAL, 2.5,
                                  RTLONG, 100000, RTSTR, L"", RTNONE);
    text[0] = L'x'; // the chain has texts of its own
    const resbuf *item = chain;
    ASSERT_NE(item, nullptr);
    EXPECT_EQ(item->restype, RTSTR);
    EXPECT_STREQ(item->resval.rstring, L"_-BOUNDARY");
    item = item->rbnext;
    EXPECT_EQ(item->restype, RT3DPOINT);
    EXPECT_EQ(item->resval.rpoint[2], 3.0);
    item = item->rbnext;
    EXPECT_EQ(item->resval.rlname[1], 88);
    item = item->rbnext;
    EXPECT_EQ(item->resval.rint, -5);
    item = item->rbnext;
    EXPECT_EQ(item->resval.rreal, 2.5);
    item = item->rbnext;
    EXPECT_EQ(item->resval.rlong, 100000);
    item = item->rbnext;
    EXPECT_STREQ(item->resval.rstring, L"");
    EXPECT_EQ(item->rbnext, nullptr);
    EXPECT_EQ(acutRelRb(chain), RTNORM);
}

TEST(Chains, APlanePointIsReadAsTwoNumbers)
{
    const double point[2] = {1.0, 2.0};
    resbuf *chain = acutBuildList(RTPOINT, point, 0);
    ASSERT_NE(chain, nullptr);
    EXPECT_EQ(chain->resval.rpoint[1], 2.0);
    EXPECT_EQ(chain->resval.rpoint[2], 0.0);
    acutRelRb(chain);
}

TEST(Chains, AnUnknownKindGivesNoChain)
{
    EXPECT_EQ(acutBuildList(RTSTR, L"x", 4711, 5, RTNONE), nullptr);
    EXPECT_EQ(acutBuildList(RTNONE), nullptr);
    EXPECT_EQ(acutRelRb(nullptr), RTERROR);
}

TEST(Chains, ALongChainIsMadeAndFreedManyTimes)
{
    const auto inUse = [] { return ::mallinfo2().uordblks; };
    const double point[3] = {1.0, 2.0, 3.0};
    const auto once = [&] {
        resbuf *chain = acutBuildList(RTSTR, L"_-BOUNDARY", RTSTR, L"_A", RTNONE), *last = chain;
        while (last->rbnext)
            last = last->rbnext;
        for (int i = 0; i < 50; ++i) {
            last = last->rbnext = acutBuildList(RT3DPOINT, point, RTNONE);
        }
        last->rbnext = acutBuildList(RTSTR, L"", RTNONE);
        acutRelRb(chain);
    };
    once();
    const std::size_t before = inUse();
    for (int i = 0; i < 1000; ++i)
        once();
    EXPECT_LT(inUse(), before + 10000); // 1000 chains that stayed would be 3 MB
}

TEST(Chains, ABufferIsFreedAndForgotten)
{
    resbuf *chain = acutBuildList(RTSTR, L"value", RTNONE);
    wchar_t *text = std::exchange(chain->resval.rstring, nullptr);
    acutDelBuffer(text);
    EXPECT_EQ(text, nullptr);
    acutDelBuffer(text);
    acutRelRb(chain);
}

TEST(Colours, NamedOnesAreInBlueGreenRedOrder)
{
    EXPECT_EQ(acedGetRGB(1), 0x0000FFu); // red
    EXPECT_EQ(acedGetRGB(2), 0x00FFFFu);
    EXPECT_EQ(acedGetRGB(3), 0x00FF00u);
    EXPECT_EQ(acedGetRGB(4), 0xFFFF00u);
    EXPECT_EQ(acedGetRGB(5), 0xFF0000u); // blue
    EXPECT_EQ(acedGetRGB(6), 0xFF00FFu);
    EXPECT_EQ(acedGetRGB(7), 0xFFFFFFu);
    EXPECT_EQ(acedGetRGB(8), 0x808080u);
    EXPECT_EQ(acedGetRGB(9), 0xC0C0C0u);
}

TEST(Colours, TheWheelFollowsItsRule)
{
    const auto rgb = [](unsigned red, unsigned green, unsigned blue) { return red | green << 8 | blue << 16; };
    EXPECT_EQ(acedGetRGB(10), rgb(255, 0, 0));
    EXPECT_EQ(acedGetRGB(11), rgb(255, 127, 127));
    EXPECT_EQ(acedGetRGB(12), rgb(165, 0, 0));
    EXPECT_EQ(acedGetRGB(13), rgb(165, 82, 82));
    EXPECT_EQ(acedGetRGB(19), rgb(38, 19, 19));
    EXPECT_EQ(acedGetRGB(20), rgb(255, 63, 0));
    EXPECT_EQ(acedGetRGB(22), rgb(165, 41, 0));
    EXPECT_EQ(acedGetRGB(30), rgb(255, 127, 0));
    EXPECT_EQ(acedGetRGB(50), rgb(255, 255, 0));
    EXPECT_EQ(acedGetRGB(90), rgb(0, 255, 0));
    EXPECT_EQ(acedGetRGB(130), rgb(0, 255, 255));
    EXPECT_EQ(acedGetRGB(170), rgb(0, 0, 255));
    EXPECT_EQ(acedGetRGB(210), rgb(255, 0, 255));
    EXPECT_EQ(acedGetRGB(240), rgb(255, 0, 63));
    EXPECT_EQ(acedGetRGB(248), rgb(38, 0, 9));
}

TEST(Colours, TheLastSixAreGreys)
{
    unsigned last = 0;
    for (int index = 250; index <= 255; ++index) {
        const std::uint32_t color = acedGetRGB(index);
        EXPECT_EQ(color & 255, color >> 8 & 255);
        EXPECT_EQ(color & 255, color >> 16 & 255);
        EXPECT_GT(color & 255, last);
        last = color & 255;
    }
    EXPECT_EQ(acedGetRGB(250), 0x333333u);
    EXPECT_EQ(acedGetRGB(255), 0xFFFFFFu);
}

TEST(Colours, ByLayerByBlockAndNonsenseShowWhite)
{
    for (const int index : {0, 256, -1, 257, 1 << 30})
        EXPECT_EQ(acedGetRGB(index), 0xFFFFFFu) << index;
}
