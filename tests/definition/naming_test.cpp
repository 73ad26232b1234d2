#include "definition/AreaNaming.h"

#include <gtest/gtest.h>

namespace {

TEST(AreaNaming, TheFirstProposalCarriesACounter)
{
    const CAreaNameParts parts{L"S-", L"", L"_"};
    EXPECT_EQ(NextFreeAreaName(parts, L"D1", {}), L"S-D1_1");
}

TEST(AreaNaming, AUsedNameRaisesTheCounter)
{
    const CAreaNameParts parts{L"S-", L"", L"_"};
    EXPECT_EQ(NextFreeAreaName(parts, L"D1", {L"S-D1_1"}), L"S-D1_2");
    EXPECT_EQ(NextFreeAreaName(parts, L"D1", {L"S-D1_1", L"S-D1_2"}), L"S-D1_3");
}

TEST(AreaNaming, ACounterReachesTwoOnlyWhenOneIsTaken)
{
    EXPECT_EQ(NextFreeAreaName({}, L"D1", {L"D1_2", L"D1_3"}), L"D1_1");
}

TEST(AreaNaming, WithAllPiecesEmptyTheCounterFollowsTheBase)
{
    const CAreaNameParts parts{L"", L"", L""};
    EXPECT_EQ(NextFreeAreaName(parts, L"D1", {}), L"D11");
}

TEST(AreaNaming, PiecesStandInTheOrderPrefixBaseSuffixDelimiterCounter)
{
    const CAreaNameParts parts{L"<", L">", L"#"};
    EXPECT_EQ(NextFreeAreaName(parts, L"D1", {}), L"<D1>#1");
}

TEST(AreaNaming, TheComparisonOfNamesMindsCase)
{
    EXPECT_EQ(NextFreeAreaName({}, L"D1", {L"d1_1"}), L"D1_1");
}

TEST(AreaNaming, AProposalBuiltOnASavedNameGrows)
{
    const CAreaNameParts parts{L"S-", L"", L"_"};
    EXPECT_EQ(NextFreeAreaName(parts, L"S-D1_1", {L"S-D1_1"}), L"S-S-D1_1_1");
}

TEST(FreeNumbers, TheSmallestGapIsTaken)
{
    EXPECT_EQ(SmallestFreeNumber({}), 1);
    EXPECT_EQ(SmallestFreeNumber({1, 2, 4}), 3);
    EXPECT_EQ(SmallestFreeNumber({1, 2, 3}), 4);
    EXPECT_EQ(SmallestFreeNumber({2, 3}), 1);
    EXPECT_EQ(SmallestFreeNumber({1, 2, 4}, 4), 5);
}

TEST(FileTitles, FolderAndExtensionAreCutWithEitherSlash)
{
    EXPECT_EQ(FileTitle(L"/opt/symbols/CatchLabel.dwg"), L"CatchLabel");
    EXPECT_EQ(FileTitle(L"C:\\Symbol\\CatchLabel.dwg"), L"CatchLabel");
    EXPECT_EQ(FileTitle(L"/opt/v1.2/Label"), L"Label");
    EXPECT_EQ(FileTitle(L"a.b.dwg"), L"a.b");
    EXPECT_EQ(FileTitle(L""), L"");
}

TEST(CountMessages, TheNumberTakesTheFirstPlaceholder)
{
    EXPECT_EQ(FormatCount(L"Odabrano %d dionica", 7), L"Odabrano 7 dionica");
    EXPECT_EQ(FormatCount(L"%d of %d", 2), L"2 of %d");
}

TEST(CountMessages, ATextWithoutPlaceholderOrWithAForeignOneStays)
{
    EXPECT_EQ(FormatCount(L"ready", 7), L"ready");
    EXPECT_EQ(FormatCount(L"%s%n", 7), L"%s%n");
    EXPECT_EQ(FormatCount(L"50%", 7), L"50%");
}

TEST(CountMessages, ADoubledPercentSignStandsForOne)
{
    EXPECT_EQ(FormatCount(L"%d areas, 100%%", 7), L"7 areas, 100%");
    EXPECT_EQ(FormatCount(L"100%% ready", 7), L"100% ready");
    EXPECT_EQ(FormatCount(L"%%d of %d", 7), L"%d of 7");
}

} // namespace
