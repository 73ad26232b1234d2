#include "definition/ReadableColour.h"

#include <gtest/gtest.h>

namespace {

TEST(ReadableColours, ColoursOfTheSeamStandInBlueGreenRedOrder)
{
    EXPECT_EQ(ColourOf(kColourGuidance), QColor(0, 0, 255));
    EXPECT_EQ(ColourOf(kColourResult), QColor(255, 91, 0));
}

TEST(ReadableColours, OnALightBackgroundEveryColourStaysAsGiven)
{
    for (const QColor &background : {QColor(Qt::white), QColor(239, 239, 239), QColor(192, 192, 192)}) {
        for (const std::uint32_t given : {kColourGuidance, kColourResult, kColourPlain})
            EXPECT_EQ(ReadableColour(ColourOf(given), background), ColourOf(given));
    }
}

TEST(ReadableColours, OnADarkBackgroundAReadableColourStaysAsGiven)
{
    EXPECT_EQ(ReadableColour(ColourOf(kColourResult), Qt::black), QColor(255, 91, 0));
}

TEST(ReadableColours, EveryColourReachesTheContrastOnDark)
{
    for (const QColor &background : {QColor(45, 45, 45), QColor(Qt::black)}) {
        for (const std::uint32_t given : {kColourGuidance, kColourResult, kColourPlain})
            EXPECT_GE(ContrastOf(ReadableColour(ColourOf(given), background), background), 4.5);
    }
}

TEST(ReadableColours, OrangeStaysOrangeAndBlueBlueOnDark)
{
    const QColor orange = ReadableColour(ColourOf(kColourResult), QColor(90, 90, 90));
    EXPECT_NEAR(orange.hslHue(), ColourOf(kColourResult).hslHue(), 2);
    const QColor blue = ReadableColour(ColourOf(kColourGuidance), QColor(45, 45, 45));
    EXPECT_NEAR(blue.hslHue(), ColourOf(kColourGuidance).hslHue(), 2);
}

} // namespace
