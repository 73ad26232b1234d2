// Columns, style word and row height of the tree list.
#include "tests/controls/TreeListJournal.h"

#include <gmock/gmock.h>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class TreeListColumns : public testing::Test {
protected:
    TreeListColumns()
    {
        list.InsertColumn(L"one");
        list.InsertColumn(L"two");
        list.InsertColumn(L"three");
        list.steps.clear();
    }
    TreeListJournal list;
};

class TreeListStyles : public testing::Test {
protected:
    std::uint32_t Repaired(std::uint32_t style)
    {
        list.SetStyle(style);
        return list.GetStyle();
    }
    TreeListJournal list;
};

} // namespace

TEST_F(TreeListColumns, AColumnOfItsOwnHasTheToldDefaults)
{
    const CTreeListColumnInfo *column = list.GetColumns(0);
    ASSERT_NE(column, nullptr);
    EXPECT_EQ(column->format, 0x104144u);
    EXPECT_EQ(column->minWidth, 0);
    EXPECT_EQ(column->maxWidth, 0);
    EXPECT_EQ(column->modify, 0);
    EXPECT_EQ(column->width, 30);
    EXPECT_EQ(column->text, L"");
    EXPECT_EQ(column->image, -1);
    EXPECT_EQ(column->defaultText, L"");
    EXPECT_EQ(column->reserved1, 0u);
    EXPECT_EQ(column->reserved2, 0u);
}

TEST_F(TreeListColumns, ANewColumnIsTheLastAndTakesItsArguments)
{
    EXPECT_EQ(list.InsertColumn(L"four", kColumnRight, 77, 3, 10, 200), 4);
    const CTreeListColumnInfo *column = list.GetColumns(4);
    EXPECT_EQ(column->text, L"four");
    EXPECT_EQ(column->format, kColumnRight);
    EXPECT_EQ(column->width, 77);
    EXPECT_EQ(column->image, 3);
    EXPECT_EQ(column->minWidth, 10);
    EXPECT_EQ(column->maxWidth, 200);
    EXPECT_THAT(list.GetColumnOrderArray(), ElementsAre(0, 1, 2, 3, 4));
    EXPECT_THAT(list.steps, ElementsAre("columns", "layout", "repaint"));
    EXPECT_EQ(list.InsertColumn(L"x", kColumnLeft, -1), -1);
    EXPECT_EQ(list.GetColumnCount(), 5);
}

TEST_F(TreeListColumns, AHiddenColumnIsKeptOutOfTheDisplayOrder)
{
    EXPECT_EQ(list.InsertColumn(L"four", kColumnLeft | kColumnHidden), 4);
    EXPECT_THAT(list.GetColumnOrderArray(), ElementsAre(0, 1, 2, 3));
    EXPECT_EQ(list.SetColumnFormat(1, kColumnHidden, 0), 1);
    EXPECT_THAT(list.GetColumnOrderArray(), ElementsAre(0, 2, 3));
    EXPECT_EQ(list.GetTotalWidth(), 90);
    list.SetColumnFormat(1, 0, kColumnHidden);
    EXPECT_THAT(list.GetColumnOrderArray(), ElementsAre(0, 1, 2, 3)) << "back in its place";
}

TEST_F(TreeListColumns, TheSortBitWithOneOfItsTwoCompanionsEntersTheSortOrder)
{
    list.InsertColumn(L"a", 0x200000);
    list.InsertColumn(L"b", 0x200000 | 0x1000000);
    list.InsertColumn(L"c", 0x2000000);
    list.InsertColumn(L"d", 0x200000 | 0x2000000);
    list.InsertColumn(L"e", 0x200000 | 0x3000000 | kColumnHidden);
    EXPECT_THAT(list.GetSortOrderArray(), ElementsAre(5, 7, 8));
    list.SetColumnFormat(5, 0, 0x1000000);
    list.SetColumnFormat(4, 0x1000000, 0);
    EXPECT_THAT(list.GetSortOrderArray(), ElementsAre(4, 7, 8));
}

TEST_F(TreeListColumns, DeletingAColumnRemovesItFromBothOrdersAndLowersTheNumbersAboveIt)
{
    list.SetColumnFormat(1, 0x1200000, 0);
    list.SetColumnFormat(3, 0x1200000, 0);
    list.SetColumnOrderArray({3, 1, 0, 2});
    EXPECT_EQ(list.DeleteColumn(1), 1);
    EXPECT_EQ(list.GetColumnCount(), 3);
    EXPECT_THAT(list.GetColumnOrderArray(), ElementsAre(2, 0, 1));
    EXPECT_THAT(list.GetSortOrderArray(), ElementsAre(2));
    EXPECT_EQ(list.GetColumnText(1), L"two");
    EXPECT_EQ(list.GetColumnText(2), L"three");
}

TEST_F(TreeListColumns, TheTextsOfADeletedColumnGoWithIt)
{
    CTreeListItem *top = list.InsertItem(L"a");
    CTreeListItem *item = list.InsertItem(L"b", top);
    for (int column = 0; column < 4; ++column) {
        list.SetItemText(item, column, std::wstring(static_cast<std::size_t>(column), L'\u0161') + L"t");
        list.SetItemSpareText(item, column, std::to_wstring(column));
        list.SetItemModify(item, column, column % 3);
    }
    list.DeleteColumn(1);
    EXPECT_EQ(list.GetItemText(item, 0), L"t");
    EXPECT_EQ(list.GetItemText(item, 1), L"\u0161\u0161t");
    EXPECT_EQ(list.GetItemText(item, 2), L"\u0161\u0161\u0161t");
    EXPECT_EQ(list.GetItemText(item, 3), L"");
    EXPECT_EQ(item->SpareText(1), L"2");
    EXPECT_EQ(item->ColumnModify(1), 2);
    EXPECT_EQ(item->ColumnModify(2), 0);
    EXPECT_EQ(item->ColumnModify(3), -1);
    list.InsertColumn(L"again");
    EXPECT_EQ(list.GetItemText(item, 3), L"");
    EXPECT_EQ(item->ColumnModify(3), -1);
    while (list.GetColumnCount() > 0)
        EXPECT_EQ(list.DeleteColumn(0), 1);
    EXPECT_EQ(list.GetItemText(top), L"");
    EXPECT_NE(list.InsertItem(L"c"), nullptr) << "a row without any text";
}

TEST_F(TreeListColumns, TheSelectedColumnKeepsToItsColumn)
{
    CTreeListItem *item = list.InsertItem(L"a");
    list.SelectItem(item, 2);
    list.DeleteColumn(3);
    EXPECT_EQ(list.GetSelectColumn(), 2);
    list.DeleteColumn(0);
    EXPECT_EQ(list.GetSelectColumn(), 1);
    list.DeleteColumn(1);
    EXPECT_EQ(list.GetSelectColumn(), -1);
}

TEST_F(TreeListColumns, WhatIsSetIsRead)
{
    EXPECT_EQ(list.SetColumnText(1, L"uno"), 1);
    EXPECT_EQ(list.GetColumnText(1), L"uno");
    EXPECT_EQ(list.SetColumnFormat(1, kColumnRight, kColumnLeft), 1);
    EXPECT_EQ(list.GetColumnFormat(1), (kColumnDefaultFormat & ~0x100u) | 0x200u);
    EXPECT_EQ(list.SetColumnImage(1, 4), 1);
    EXPECT_EQ(list.GetColumnImage(1), 4);
    EXPECT_EQ(list.SetColumnModify(1, kEditorCombo), 1);
    EXPECT_EQ(list.GetColumnModify(1), kEditorCombo);
    EXPECT_EQ(list.SetColumnModify(1, 3), 0);
    EXPECT_EQ(list.SetColumnModify(1, -1), 0);
    EXPECT_EQ(list.SetColumnDefaultText(1, L"usual"), 1);
    EXPECT_EQ(list.GetColumnDefaultText(1), L"usual");
    list.steps.clear();
    EXPECT_EQ(list.SetColumnWidth(1, 55), 1);
    EXPECT_EQ(list.GetColumnWidth(1), 55);
    EXPECT_THAT(list.steps, ElementsAre("columns", "layout", "repaint"));
    EXPECT_EQ(list.SetColumnWidth(1, 0), 1);
    EXPECT_EQ(list.GetTotalWidth(), 90);
}

TEST_F(TreeListColumns, AColumnThatThereIsNotIsRefused)
{
    for (const int column : {-1, 4, 1000}) {
        EXPECT_EQ(list.GetColumns(column), nullptr);
        EXPECT_EQ(list.DeleteColumn(column), 0);
        EXPECT_EQ(list.SetColumnText(column, L"x"), 0);
        EXPECT_EQ(list.SetColumnFormat(column, 1, 0), 0);
        EXPECT_EQ(list.SetColumnWidth(column, 5), 0);
        EXPECT_EQ(list.SetColumnImage(column, 1), 0);
        EXPECT_EQ(list.SetColumnModify(column, 1), 0);
        EXPECT_EQ(list.SetColumnDefaultText(column, L"x"), 0);
        EXPECT_EQ(list.GetColumnText(column), L"");
        EXPECT_EQ(list.GetColumnFormat(column), 0u);
        EXPECT_EQ(list.GetColumnWidth(column), 0);
        EXPECT_EQ(list.GetColumnImage(column), -1);
        EXPECT_EQ(list.GetColumnModify(column), 0);
        EXPECT_EQ(list.GetColumnDefaultText(column), L"");
    }
    EXPECT_EQ(list.GetColumnCount(), 4);
    EXPECT_THAT(list.steps, IsEmpty());
}

TEST_F(TreeListColumns, AnOrderHoldsEachShownColumnOnce)
{
    list.SetColumnFormat(2, kColumnHidden, 0);
    EXPECT_EQ(list.SetColumnOrderArray({3, 0, 1}), 1);
    EXPECT_THAT(list.GetColumnOrderArray(), ElementsAre(3, 0, 1));
    EXPECT_EQ(list.SetColumnOrderArray({1, 2, 0, 3}), 1) << "a hidden one is passed over";
    EXPECT_THAT(list.GetColumnOrderArray(), ElementsAre(1, 0, 3));
    for (const std::vector<int> &wrong :
         {std::vector<int>{}, {0, 1}, {0, 1, 1}, {0, 1, 3, 3}, {0, 1, 4}, {-1, 0, 1, 3}})
        EXPECT_EQ(list.SetColumnOrderArray(wrong), 0);
    EXPECT_THAT(list.GetColumnOrderArray(), ElementsAre(1, 0, 3));
}

// --- Row height ---

TEST_F(TreeListColumns, TheRowHeightComesFromTheFontAndIsEven)
{
    struct {
        int font, height;
    } const rows[] = {{-11, 16}, {-12, 18}, {13, 18}, {12, 18}, {0, 20}, {-1, 6}, {1, 6}};
    for (const auto &row : rows) {
        list.fontHeight = row.font;
        list.SetItemHeight(-1);
        EXPECT_EQ(list.GetItemHeight(), row.height) << row.font;
    }
}

TEST_F(TreeListColumns, SettingTheRowHeightAnswersTheOldOne)
{
    list.SetItemHeight(24);
    EXPECT_EQ(list.SetItemHeight(31), 24);
    EXPECT_EQ(list.GetItemHeight(), 32) << "an odd one gets one more";
    EXPECT_EQ(list.SetItemHeight(0), 0);
    EXPECT_EQ(list.SetItemHeight(-2), 0);
    EXPECT_EQ(list.GetItemHeight(), 32);
}

// --- Style ---

TEST_F(TreeListStyles, TheOldStyleIsAnswered)
{
    EXPECT_EQ(list.SetStyle(StyleMultiSelect | StyleReadOnly), 0u);
    EXPECT_EQ(list.SetStyle(0), StyleMultiSelect | StyleReadOnly);
    EXPECT_EQ(list.GetStyle(), 0u);
}

TEST_F(TreeListStyles, WithoutTheTreeItsThreeBitsGo)
{
    constexpr std::uint32_t three = StyleTreeLines | StyleTreeRootLines | StyleTreeButtons;
    EXPECT_EQ(Repaired(three), 0u);
    EXPECT_EQ(Repaired(three | StyleTree), three | StyleTree);
}

TEST_F(TreeListStyles, WithoutAHorizontalGridItsThreeBitsGo)
{
    constexpr std::uint32_t three = StyleGridInFirstColumn | StyleHorzGridEmptyRows | StyleHorzGridFull;
    EXPECT_EQ(three, 0x5800u);
    EXPECT_EQ(Repaired(three | StyleVertGrid), StyleVertGrid);
    EXPECT_EQ(Repaired(three | StyleHorzGrid), three | StyleHorzGrid);
}

TEST_F(TreeListStyles, WithoutAVerticalGridItsBitGoes)
{
    EXPECT_EQ(Repaired(StyleVertGridAll | StyleHorzGrid), StyleHorzGrid);
    EXPECT_EQ(Repaired(StyleVertGridAll | StyleVertGrid), StyleVertGridAll | StyleVertGrid);
}

TEST_F(TreeListStyles, WithBothGridsTheTwoBitsBeyondTheRowsStandOrGoTogether)
{
    constexpr std::uint32_t grids = StyleHorzGrid | StyleVertGrid;
    EXPECT_EQ(Repaired(grids | StyleHorzGridEmptyRows), grids);
    EXPECT_EQ(Repaired(grids | StyleVertGridAll), grids);
    constexpr std::uint32_t both = grids | StyleHorzGridEmptyRows | StyleVertGridAll;
    EXPECT_EQ(Repaired(both), both);
    EXPECT_EQ(Repaired(both | StyleHorzGridFull), both | StyleHorzGridFull);
}

TEST_F(TreeListStyles, HeaderDragAndDropNeedAHeader)
{
    constexpr std::uint32_t drag = StyleHeaderDrag | StyleHeaderDrop;
    EXPECT_EQ(Repaired(drag), 0u);
    EXPECT_EQ(Repaired(drag | StyleHeader), drag | StyleHeader);
}

TEST_F(TreeListStyles, AllOtherBitsStandAlone)
{
    constexpr std::uint32_t dependent = StyleTreeLines | StyleTreeRootLines | StyleTreeButtons |
                                        StyleGridInFirstColumn | StyleHorzGridEmptyRows | StyleHorzGridFull |
                                        StyleVertGridAll | StyleHeaderDrag | StyleHeaderDrop;
    for (unsigned bit = 0; bit < 32; ++bit) {
        const std::uint32_t style = 1u << bit;
        EXPECT_EQ(Repaired(style), style & ~dependent) << bit;
    }
}

TEST_F(TreeListStyles, TheStateWordAddsAndRemoves)
{
    EXPECT_EQ(list.GetState(~0u), 0u);
    list.SetState(kControlFocused | kControlBuffered, 0);
    list.SetState(kControlCreated, kControlFocused);
    EXPECT_EQ(list.GetState(~0u), 0x3u);
    EXPECT_EQ(list.GetState(kControlBuffered), 0x2u);
    EXPECT_EQ(list.GetState(kControlFocused), 0u);
}
