#include "definition/ReadableColour.h"

#include <gtest/gtest.h>

namespace {

TEST(ReadableColours, ToldColoursStandInBlueGreenRedOrder)
{
    EXPECT_EQ(ColourOf(kColourGuidance), QColor(0, 0, 255));
    EXPECT_EQ(ColourOf(kColourResult), QColor(255, 91, 0));
}

TEST(ReadableColours, AReadableColourStaysAsTold)
{
    EXPECT_EQ(ReadableColour(ColourOf(kColourGuidance), Qt::white), QColor(0, 0, 255));
    EXPECT_EQ(ReadableColour(Qt::black, Qt::white), QColor(Qt::black));
}

TEST(ReadableColours, EveryColourReachesTheContrastOnLightAndDark)
{
    for (const QColor &background : {QColor(Qt::white), QColor(239, 239, 239), QColor(45, 45, 45), QColor(Qt::black)}) {
        for (const std::uint32_t told : {kColourGuidance, kColourResult, kColourPlain})
            EXPECT_GE(ContrastOf(ReadableColour(ColourOf(told), background), background), 4.5);
    }
}

TEST(ReadableColours, OrangeStaysOrangeAndBlueBlue)
{
    const QColor orange = ReadableColour(ColourOf(kColourResult), Qt::white);
    EXPECT_NEAR(orange.hslHue(), ColourOf(kColourResult).hslHue(), 2);
    const QColor blue = ReadableColour(ColourOf(kColourGuidance), QColor(45, 45, 45));
    EXPECT_NEAR(blue.hslHue(), ColourOf(kColourGuidance).hslHue(), 2);
}

} // namespace
