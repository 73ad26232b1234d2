// What areas bring to sections and branches, and which shares are not whole.
#include "overview/forest/NetworkSums.h"

#include <gmock/gmock.h>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

// 0 <- 1 <- 2, and 3 joins at 1.
const std::vector<CForestSection> kSections = {{1, 0, 30.0}, {2, 1, 20.0}, {3, 1, 5.0}};

} // namespace

TEST(Sums, ASectionHasTheNetHectaresOfEachAreaTimesItsShare)
{
    const std::vector<CForestArea> areas = {{4.0, 0.5, {{0, 0.25}, {1, 0.75}}, {}}, {2.0, 1.0, {{0, 1.0}}, {}}};
    const auto sums = SectionSums(kSections, areas);
    EXPECT_DOUBLE_EQ(sums[0].m_hectares, 3.0);
    EXPECT_DOUBLE_EQ(sums[0].m_runoffHectares, 2.5);
    EXPECT_DOUBLE_EQ(sums[0].Coefficient(), 2.5 / 3.0);
    EXPECT_DOUBLE_EQ(sums[1].m_hectares, 3.0);
    EXPECT_DOUBLE_EQ(sums[1].Coefficient(), 0.5);
    EXPECT_EQ(sums[2].m_hectares, 0.0);
    EXPECT_EQ(sums[2].Coefficient(), 0.0) << "nothing to take the mean of";
}

TEST(Sums, ABranchHasAllThatStandsBeneathIt)
{
    const std::vector<CForestArea> areas = {{4.0, 0.5, {{0, 0.25}, {1, 0.75}}, {}}, {2.0, 1.0, {{2, 1.0}}, {}}};
    const CNetworkForest forest = BuildForest(4, kSections);
    const auto sums = BranchSums(forest, SectionSums(kSections, areas));
    ASSERT_EQ(sums.size(), 2u);
    EXPECT_EQ(sums[0].m_nSections, 3);
    EXPECT_DOUBLE_EQ(sums[0].m_length, 55.0);
    EXPECT_DOUBLE_EQ(sums[0].m_hectares, 6.0);
    EXPECT_DOUBLE_EQ(sums[0].Coefficient(), 4.0 / 6.0);
    EXPECT_EQ(sums[1].m_nSections, 1);
    EXPECT_DOUBLE_EQ(sums[1].m_length, 5.0);
    EXPECT_DOUBLE_EQ(sums[1].m_hectares, 2.0);
}

TEST(Sums, AnUnknownLengthIsLeftOutAndCounted)
{
    const std::vector<CForestSection> sections = {{1, 0, 30.0}, {2, 1, -1000000.0}};
    const auto sums = BranchSums(BuildForest(3, sections), SectionSums(sections, {}));
    EXPECT_DOUBLE_EQ(sums[0].m_length, 30.0);
    EXPECT_EQ(sums[0].m_nUnknownLengths, 1);
}

TEST(Sums, AShareACoefficientOrAnAreaThatIsNotKnownEntersNoSum)
{
    constexpr double kUnknown = -1000000.0;
    const std::vector<CForestArea> areas = {{4.0, 0.5, {{0, kUnknown}, {1, 0.5}}, {}},
                                            {2.0, kUnknown, {{1, 1.0}}, {}},
                                            {-100.0, 0.9, {{1, 1.0}}, {}},
                                            {3.0, 0.5, {{2, 1.0}}, {2}}};
    const auto sums = SectionSums(kSections, areas);
    EXPECT_EQ(sums[0].m_hectares, 0.0);
    EXPECT_DOUBLE_EQ(sums[1].m_hectares, 4.0);
    EXPECT_DOUBLE_EQ(sums[1].Coefficient(), 0.5) << "the mean of those that have one";
    EXPECT_DOUBLE_EQ(sums[2].m_hectares, 3.0) << "an island of unknown size takes nothing off";
    EXPECT_LT(NetHectares(areas)[2], 0.0);
    EXPECT_LT(WholeShare(areas[0]), 0.0);
    EXPECT_THAT(AreasNotWhole(areas), ElementsAre(0));
    EXPECT_THAT(SectionsWithoutArea(3, areas), ElementsAre(0));
}

TEST(Sums, AreasOfWhichANumberIsNotKnownAreListed)
{
    constexpr double kUnknown = -1000000.0;
    const std::vector<CForestArea> areas = {{4.0, 0.5, {{0, 1.0}}, {}},
                                            {4.0, 0.5, {{0, kUnknown}}, {}},
                                            {4.0, kUnknown, {{0, 1.0}}, {}},
                                            {-100.0, 0.5, {{0, 1.0}}, {}},
                                            {4.0, 0.5, {}, {}}};
    EXPECT_THAT(AreasNotKnown(areas), ElementsAre(1, 2, 3));
}

TEST(Sums, AnAreaThatIsAllIslandsHasNothingOfItsOwn)
{
    const std::vector<CForestArea> areas = {
        {0.3, 0.5, {{0, 1.0}}, {1, 2}}, {0.1, 0.5, {{0, 1.0}}, {}}, {0.2 + 1e-15, 0.5, {{0, 1.0}}, {}}};
    EXPECT_EQ(NetHectares(areas)[0], 0.0) << "and not some last bit below it, which would be unknown";
}

TEST(Sums, AnIslandIsTakenOffItsAreaOnceAndNoAreaOffItself)
{
    const std::vector<CForestArea> areas = {
        {10.0, 0.5, {{0, 1.0}}, {1, 1, 2, 0, 9, -1}}, {1.0, 0.5, {{0, 1.0}}, {}}, {2.0, 0.5, {{0, 1.0}}, {}}};
    EXPECT_THAT(NetHectares(areas), ElementsAre(7.0, 1.0, 2.0));
    EXPECT_DOUBLE_EQ(SectionSums(kSections, areas)[0].m_hectares, 10.0) << "the sum is the ground that drains";
}

TEST(Sums, SharesOfSectionsThatAreNotThereArePassedOver)
{
    const std::vector<CForestArea> areas = {{4.0, 0.5, {{7, 0.5}, {-1, 0.5}}, {}}};
    for (const CNetworkSums &sum : SectionSums(kSections, areas))
        EXPECT_EQ(sum.m_hectares, 0.0);
    EXPECT_THAT(SectionsWithoutArea(kSections.size(), areas), ElementsAre(0, 1, 2));
}

TEST(Shares, AreWholeWhenTheyAre100PercentWithFourDecimals)
{
    EXPECT_TRUE(IsWhole(1.0));
    EXPECT_TRUE(IsWhole(0.1 + 0.2 + 0.7));
    EXPECT_TRUE(IsWhole(1.0 + 4e-7));
    EXPECT_FALSE(IsWhole(1.0 + 6e-7));
    EXPECT_FALSE(IsWhole(0.999999)) << "three times 33.3333";
    EXPECT_FALSE(IsWhole(0.0));
}

TEST(Shares, AreasThatAreNotWholeAreListedAndOneWithoutSectionsIsOne)
{
    const std::vector<CForestArea> areas = {{1.0, 0.5, {{0, 0.4}, {1, 0.6}}, {}},
                                            {1.0, 0.5, {{0, 0.4}, {1, 0.5}}, {}},
                                            {1.0, 0.5, {{2, 1.1}}, {}},
                                            {1.0, 0.5, {}, {}}};
    EXPECT_THAT(AreasNotWhole(areas), ElementsAre(1, 2, 3));
    EXPECT_DOUBLE_EQ(WholeShare(areas[1]), 0.9);
}

TEST(Shares, ASectionWithAShareOfNothingDrainsNothing)
{
    const std::vector<CForestArea> areas = {{1.0, 0.5, {{0, 1.0}, {1, 0.0}}, {}}};
    EXPECT_THAT(SectionsWithoutArea(3, areas), ElementsAre(1, 2));
    EXPECT_THAT(SectionsWithoutArea(0, areas), IsEmpty());
}
