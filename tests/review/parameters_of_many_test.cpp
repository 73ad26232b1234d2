// What the parameter fields show for several areas.
#include "review/ParametersOfMany.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

constexpr int kCatch = 1, kHouse = 2, kIndustry = 4;

/// The coefficient that is shown for areas with these, all of type catchment.
double coefficientOf(const std::vector<double> &values)
{
    CParametersOfMany many;
    for (const double value : values)
        many.Add(kCatch, 1.0, value, 77.0);
    return many.Coefficient();
}

double populationOf(const std::vector<double> &values)
{
    CParametersOfMany many;
    for (const double value : values)
        many.Add(kHouse, 1.0, 0.77, value);
    return many.Population();
}

TEST(ParametersOfMany, WithoutAnAreaNothingIsShownAndTheTotalIsZero)
{
    const CParametersOfMany many;
    EXPECT_EQ(many.Count(), 0);
    EXPECT_EQ(many.Area(), 0.0);
    EXPECT_EQ(many.Coefficient(), -1.0);
    EXPECT_EQ(many.Population(), -1.0);
}

TEST(ParametersOfMany, AreasAddUpWhateverTheirTypeAndAMissingOneOnlyCounts)
{
    CParametersOfMany many;
    many.Add(kCatch, 1.25, 0.5, 100.0);
    many.AddMissing();
    many.Add(kIndustry, 2.5, 0.5, 100.0);
    many.Add(0, 4.0, 0.5, 100.0);
    EXPECT_EQ(many.Count(), 4);
    EXPECT_EQ(many.Area(), 7.75);
}

TEST(ParametersOfMany, AParameterCountsOnlyWhereTheTypeHasItsBit)
{
    CParametersOfMany many;
    many.Add(kHouse | kIndustry, 1.0, 0.9, 120.0);
    EXPECT_EQ(many.Coefficient(), -1.0);
    EXPECT_EQ(many.Population(), 120.0);
    many.Add(kCatch | kIndustry, 1.0, 0.4, 900.0);
    EXPECT_EQ(many.Coefficient(), 0.4);
    EXPECT_EQ(many.Population(), 120.0);
}

TEST(ParametersOfMany, AreasThatAreAllOfAnotherTypeShowNoValue)
{
    CParametersOfMany many;
    many.Add(kIndustry, 1.0, 0.5, 100.0);
    many.Add(kIndustry, 1.0, 0.6, 200.0);
    EXPECT_EQ(many.Coefficient(), -1.0);
    EXPECT_EQ(many.Population(), -1.0);
}

TEST(ParametersOfMany, ADifferenceUpToAThousandthIsNoneAndTheLaterValueIsShown)
{
    EXPECT_EQ(coefficientOf({0.5, 0.5005}), 0.5005);
    EXPECT_EQ(populationOf({100.0, 100.0005}), 100.0005);
}

TEST(ParametersOfMany, AGreaterDifferenceLeavesNoValue)
{
    EXPECT_EQ(coefficientOf({0.5, 0.502}), -2.0);
    EXPECT_EQ(coefficientOf({0.502, 0.5}), -2.0);
    EXPECT_EQ(populationOf({100.0, 100.002}), -2.0);
}

TEST(ParametersOfMany, ADifferenceStaysWhateverFollows)
{
    EXPECT_EQ(coefficientOf({0.5, 0.7, 0.5, 0.5, 0.0}), -2.0);
    EXPECT_EQ(populationOf({1.0, 2.0, 2.0}), -2.0);
}

TEST(ParametersOfMany, AZeroSoFarNeverCountsAsADifference)
{
    EXPECT_EQ(coefficientOf({0.0, 0.9}), 0.9);
    EXPECT_EQ(coefficientOf({0.0, 0.0, 0.3}), 0.3);
    EXPECT_EQ(populationOf({0.0, 250.0}), 250.0);
}

TEST(ParametersOfMany, AZeroBehindAValueIsADifference)
{
    EXPECT_EQ(coefficientOf({0.9, 0.0}), -2.0);
}

TEST(ParametersOfMany, SmallStepsAreMeasuredFromTheLastValueNotFromTheFirst)
{
    EXPECT_EQ(coefficientOf({0.500, 0.5008, 0.5016, 0.5024}), 0.5024);
}

TEST(ParametersOfMany, AnUnknownValueStaysUnknown)
{
    EXPECT_EQ(coefficientOf({-1000000.0, 0.5}), -1000000.0);
}

} // namespace
