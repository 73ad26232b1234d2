// The numbers of the tree list that other modules and stored settings know: each as it was agreed.
#include "tests/controls/TreeListJournal.h"

#include "controls/rules/TreeListGeometry.h"

#include <gmock/gmock.h>

#include <set>

TEST(TreeListTables, EachStyleHasItsBit)
{
    const std::pair<std::uint32_t, std::uint32_t> bits[] = {
        {StyleTree, 0x00000001},
        {StyleBkBitmap, 0x00000002},
        {StyleBkColor, 0x00000004},
        {StyleAlternate, 0x00000008},
        {StyleMultiSelect, 0x00000010},
        {StyleSelectColumn, 0x00000020},
        {StyleShowSelectionAlways, 0x00000040},
        {StyleFullRowSelect, 0x00000080},
        {StyleHeader, 0x00000100},
        {StyleHorzGrid, 0x00000200},
        {StyleVertGrid, 0x00000400},
        {StyleGridInFirstColumn, 0x00000800},
        {StyleHorzGridEmptyRows, 0x00001000},
        {StyleVertGridAll, 0x00002000},
        {StyleHorzGridFull, 0x00004000},
        {StyleReadOnly, 0x00008000},
        {StyleTreeLines, 0x00010000},
        {StyleTreeRootLines, 0x00020000},
        {StyleTreeButtons, 0x00040000},
        {StyleCheck, 0x00080000},
        {StyleLock, 0x00100000},
        {StyleImage, 0x00200000},
        {StyleHeaderSort, 0x00400000},
        {StyleClientEdge, 0x00800000},
        {StyleDrag, 0x01000000},
        {StyleDrop, 0x02000000},
        {StyleDropSelf, 0x04000000},
        {StyleDropRoot, 0x08000000},
        {StyleHeaderDrag, 0x10000000},
        {StyleHeaderDrop, 0x20000000},
        {StyleNoCheckPropagation, 0x40000000},
        {StyleNoLockPropagation, 0x80000000},
    };
    std::uint32_t all = 0;
    for (const auto &[name, bit] : bits) {
        EXPECT_EQ(name, bit) << std::hex << bit;
        all |= name;
    }
    EXPECT_EQ(all, 0xFFFFFFFFu);
}

TEST(TreeListTables, EachNoticeHasItsCode)
{
    EXPECT_EQ(NotifyColumnChanging, -420);
    EXPECT_EQ(NotifyRowChanging, -421);
    EXPECT_EQ(NotifyEndEdit, -422);
    EXPECT_EQ(NotifyDragEnter, -423);
    EXPECT_EQ(NotifyDragLeave, -424);
    EXPECT_EQ(NotifyDragOver, -425);
    EXPECT_EQ(NotifyDrop, -426);
    EXPECT_EQ(NotifyCheck, -427);
    EXPECT_EQ(NotifyLock, -428);
    EXPECT_EQ(NotifySelChanging, -450);
    EXPECT_EQ(NotifySelChanged, -451);
    EXPECT_EQ(NotifyExpanding, -454);
    EXPECT_EQ(NotifyExpanded, -455);
    EXPECT_EQ(NotifyBeginDrag, -456);
    EXPECT_EQ(NotifyBeginControl, -459);
    EXPECT_EQ(NotifyEndControl, -460);
}

TEST(TreeListTables, WhatIsToldBearsThoseCodes)
{
    TreeListJournal list;
    CTreeListItem *item = list.InsertItem(L"a");
    list.InsertItem(L"b", item);
    const auto told = [&list] {
        std::vector<int> codes;
        for (const TreeListNote &note : list.notes)
            codes.push_back(note.code);
        list.notes.clear();
        return codes;
    };
    list.SelectItem(item, 0);
    EXPECT_THAT(told(), testing::ElementsAre(-450, -451));
    list.Expand(item, 0);
    EXPECT_THAT(told(), testing::ElementsAre(-454, -455));
    list.SetItemCheck(item, true);
    EXPECT_THAT(told(), testing::ElementsAre(-427));
    list.SetItemLock(item, true);
    EXPECT_THAT(told(), testing::ElementsAre(-428));
    list.BeginModify(item, 0);
    list.SetItemText(item, 0, L"c");
    list.FinishModify();
    EXPECT_THAT(told(), testing::ElementsAre(-420, -421, -422));
}

TEST(TreeListTables, EachStateOfTheControlHasItsBit)
{
    EXPECT_EQ(kControlCreated, 0x1u);
    EXPECT_EQ(kControlBuffered, 0x2u);
    EXPECT_EQ(kControlFocused, 0x4u);
    EXPECT_EQ(kControlCaptured, 0x8u);
    EXPECT_EQ(kControlEditing, 0x10u);
    EXPECT_EQ(kControlEndingEdit, 0x20u);
    EXPECT_EQ(kControlDragging, 0x40u);
}

TEST(TreeListTables, EachStateOfAnItemHasItsBit)
{
    EXPECT_EQ(kItemSelected, 0x1u);
    EXPECT_EQ(kItemExpanded, 0x2u);
    EXPECT_EQ(kItemExpandedOnce, 0x4u);
    EXPECT_EQ(kItemShowsCheck, 0x10u);
    EXPECT_EQ(kItemShowsLock, 0x20u);
    EXPECT_EQ(kItemShowsImage, 0x40u);
    EXPECT_EQ(kItemChecked, 0x10000u);
    EXPECT_EQ(kItemUnchecked, 0x20000u);
    EXPECT_EQ(kItemLocked, 0x1000000u);
    EXPECT_EQ(kItemUnlocked, 0x2000000u);
    TreeListJournal list;
    EXPECT_EQ(list.InsertItem(L"a")->State(), 0x2020030u);
}

TEST(TreeListTables, AMarkReadsAsOneNothingOrTwo)
{
    TreeListJournal list;
    CTreeListItem *item = list.InsertItem(L"a");
    const auto marks = [&](std::uint32_t state) {
        list.SetItemState(item, state, 0x3030000);
        return std::pair(list.GetCheck(item), list.GetLock(item));
    };
    EXPECT_EQ(marks(0x1010000), std::pair(1, 1));
    EXPECT_EQ(marks(0x2020000), std::pair(0, 0));
    EXPECT_EQ(marks(0x3030000), std::pair(2, 2));
    EXPECT_EQ(marks(0x1020000), std::pair(0, 1));
}

TEST(TreeListTables, EachPartOfARowHasItsHitFlag)
{
    EXPECT_EQ(kHitButton, 0x02);
    EXPECT_EQ(kHitCheck, 0x04);
    EXPECT_EQ(kHitLock, 0x08);
    EXPECT_EQ(kHitImage, 0x10);
    EXPECT_EQ(kHitText, 0x20);
    // 2, indent 16, button 16, check 16, lock 8, image 16, 2, text
    const TreeListCell cell{kCellTree, 2, 0x1 | 0x40000 | 0x80000 | 0x100000 | 0x200000, 0x70};
    const TreeListRect rect{0, 0, 200, 20};
    const TreeListParts parts = PartsOf(cell, rect);
    const std::pair<int, int> flags[] = {{1, 0},     {17, 0},     {18, 0x02}, {33, 0x02}, {34, 0x04}, {49, 0x04},
                                         {50, 0x08}, {57, 0x08},  {58, 0x10}, {73, 0x10}, {74, 0},    {75, 0},
                                         {76, 0x20}, {197, 0x20}, {198, 0},   {200, 0}};
    for (const auto &[x, flag] : flags)
        EXPECT_EQ(PartAt(parts, rect, x, 10), flag) << x;
}

TEST(TreeListTables, EachEditorHasItsKind)
{
    EXPECT_EQ(kEditorStatic, 0);
    EXPECT_EQ(kEditorEdit, 1);
    EXPECT_EQ(kEditorCombo, 2);
}

TEST(TreeListTables, EachFormatOfAColumnHasItsBit)
{
    EXPECT_EQ(kColumnLeft, 0x100u);
    EXPECT_EQ(kColumnRight, 0x200u);
    EXPECT_EQ(kColumnCentred, 0x400u);
    EXPECT_EQ(kColumnImageLeft, 0x10000u);
    EXPECT_EQ(kColumnImageRight, 0x20000u);
    EXPECT_EQ(kColumnImageCentred, 0x40000u);
    EXPECT_EQ(kColumnSorts, 0x200000u);
    EXPECT_EQ(kColumnShowsImage, 0x400000u);
    EXPECT_EQ(kColumnSortBits, 0x3000000u);
    EXPECT_EQ(kColumnHidden, 0x10000000u);
}

TEST(TreeListTables, TheFormatsBitsPutAColumnIntoItsOrders)
{
    TreeListJournal list;
    list.InsertColumn(L"hidden", 0x10000000);
    list.InsertColumn(L"sortable", 0x1200000);
    list.InsertColumn(L"bit alone", 0x200000);
    list.InsertColumn(L"sortable too", 0x2200000);
    EXPECT_THAT(list.GetColumnOrderArray(), testing::ElementsAre(0, 2, 3, 4));
    EXPECT_THAT(list.GetSortOrderArray(), testing::ElementsAre(2, 4));
}

TEST(TreeListTables, AColumnBeginsWithItsDefaults)
{
    const CTreeListColumnInfo info;
    EXPECT_EQ(info.format, 0x104144u);
    EXPECT_EQ(info.minWidth, 0);
    EXPECT_EQ(info.maxWidth, 0);
    EXPECT_EQ(info.modify, 0);
    EXPECT_EQ(info.width, 30);
    EXPECT_EQ(info.text, L"");
    EXPECT_EQ(info.image, -1);
    EXPECT_EQ(info.defaultText, L"");
}

namespace {

/// a (b, c (collapsed: d)), e; a and e selected, e the newest.
class TreeListCodes : public testing::Test {
protected:
    TreeListCodes()
    {
        list.SetStyle(0x1 | 0x10);
        a = list.InsertItem(L"a");
        b = list.InsertItem(L"b", a);
        c = list.InsertItem(L"c", a);
        d = list.InsertItem(L"d", c);
        e = list.InsertItem(L"e");
        list.Expand(a, 0);
        list.SelectItem(a, 0, false);
        list.SelectItem(e, 0, false);
    }
    TreeListJournal list;
    CTreeListItem *a, *b, *c, *d, *e;
};

} // namespace

TEST_F(TreeListCodes, EachCodeOfGetNextItemHasItsMeaning)
{
    EXPECT_EQ(list.GetNextItem(c, 0), list.GetRootItem());
    EXPECT_EQ(list.GetNextItem(b, 1), c);
    EXPECT_EQ(list.GetNextItem(c, 2), b);
    EXPECT_EQ(list.GetNextItem(d, 3), c);
    EXPECT_EQ(list.GetNextItem(c, 4), d);
    EXPECT_EQ(list.GetNextItem(c, 5), a);
    EXPECT_EQ(list.GetNextItem(c, 6), e);
    EXPECT_EQ(list.GetNextItem(e, 7), c);
    EXPECT_EQ(list.GetNextItem(b, 9), e);
    EXPECT_EQ(list.GetNextItem(e, 10), a);
    for (const int code : {-1, 8, 11, 12})
        EXPECT_EQ(list.GetNextItem(c, code), nullptr) << code;
}

TEST_F(TreeListCodes, EachCodeOfExpandHasItsMeaning)
{
    EXPECT_EQ(list.Expand(c, 0), 0);
    EXPECT_TRUE(c->Has(0x2));
    EXPECT_EQ(list.Expand(c, 0), 1);
    EXPECT_EQ(list.Expand(c, 1), 0);
    EXPECT_FALSE(c->Has(0x2));
    EXPECT_EQ(list.Expand(c, 1), 1);
    EXPECT_EQ(list.Expand(c, 2), 0);
    EXPECT_TRUE(c->Has(0x2));
    EXPECT_EQ(list.Expand(c, 2), 0);
    EXPECT_FALSE(c->Has(0x2));
    EXPECT_EQ(list.Expand(c, 4), 0);
    EXPECT_EQ(list.Expand(c, -1), 0);
    EXPECT_FALSE(c->Has(0x2));
    list.Expand(c, 0);
    EXPECT_EQ(list.Expand(c, 3), 0);
    EXPECT_EQ(c->FirstChild(), nullptr);
    EXPECT_EQ(list.GetCount(), 4);
}

TEST_F(TreeListCodes, EachFixedValueHasItsMeaning)
{
    const auto fixed = [](std::uintptr_t value) { return reinterpret_cast<CTreeListItem *>(value); };
    EXPECT_EQ(TreeListRoot(), fixed(0xFFFF0001));
    EXPECT_EQ(TreeListLast(), fixed(0xFFFF0002));
    EXPECT_EQ(TreeListFirst(), fixed(0xFFFF0003));
    EXPECT_EQ(TreeListSorted(), fixed(0xFFFF0004));

    CTreeListItem *last = list.InsertItem(L"last", fixed(0xFFFF0001), fixed(0xFFFF0002));
    EXPECT_EQ(last->Parent(), list.GetRootItem());
    EXPECT_EQ(last->Previous(), e);
    CTreeListItem *first = list.InsertItem(L"first", fixed(0xFFFF0001), fixed(0xFFFF0003));
    EXPECT_EQ(first->Next(), a);
    CTreeListItem *sorted = list.InsertItem(L"an early text", fixed(0xFFFF0001), fixed(0xFFFF0004));
    EXPECT_EQ(sorted->Previous(), last);
}
