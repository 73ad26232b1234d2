#include "definition/SectionShares.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

TEST(SectionShares, AShareIsTheLengthOverTheTotal)
{
    CSectionShares shares;
    shares.Add(L"A", 30.0);
    shares.Add(L"B", 70.0);
    EXPECT_DOUBLE_EQ(shares.Of(L"A"), 0.3);
    EXPECT_DOUBLE_EQ(shares.Of(L"B"), 0.7);
}

TEST(SectionShares, ANameThatIsNotInTheListIsUnknown)
{
    CSectionShares shares;
    shares.Add(L"A", 30.0);
    EXPECT_EQ(shares.Of(L"B"), -1e6);
    EXPECT_EQ(CSectionShares().Of(L"A"), -1e6);
}

TEST(SectionShares, AnUnknownLengthStaysOutOfTheTotal)
{
    CSectionShares shares;
    shares.Add(L"A", 40.0);
    shares.Add(L"B", -1e6);
    shares.Add(L"C", 60.0);
    EXPECT_DOUBLE_EQ(shares.Of(L"A"), 0.4);
    EXPECT_DOUBLE_EQ(shares.Of(L"B"), -1e6 / 100.0);
}

TEST(SectionShares, OfTwoSectionsOfOneNameTheFirstLengthCountsAndTheTotalHoldsBoth)
{
    CSectionShares shares;
    shares.Add(L"A", 30.0);
    shares.Add(L"A", 70.0);
    EXPECT_DOUBLE_EQ(shares.Of(L"A"), 0.3);
}

TEST(SectionShares, ATotalOfZeroIsNotGuarded)
{
    CSectionShares shares;
    shares.Add(L"A", 0.0);
    EXPECT_TRUE(std::isnan(shares.Of(L"A")));
}

} // namespace
