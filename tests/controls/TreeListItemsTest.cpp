// Items of the tree list: insertion, order, counts, places in the tree, texts, memory.
#include "tests/controls/TreeListShape.h"

#include <gmock/gmock.h>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class TreeListItems : public TreeListShape {};

} // namespace

// --- What is there at first ---

TEST_F(TreeListItems, AListBeginsWithAnExpandedRootOneColumnAndNoItems)
{
    CTreeListItem *root = list.GetRootItem();
    ASSERT_NE(root, nullptr);
    EXPECT_EQ(root->Level(), 0);
    EXPECT_EQ(root->ChildCount(), 1);
    EXPECT_EQ(root->ShowCount(), 1);
    EXPECT_EQ(list.GetItemState(root, ~0u), kItemDefaultState | kItemExpanded | kItemExpandedOnce);
    EXPECT_EQ(list.GetColumnCount(), 1);
    EXPECT_EQ(list.GetCount(), 0);
    EXPECT_EQ(list.GetVisibleCount(), 0);
    EXPECT_EQ(list.GetSelectColumn(), -1);
    EXPECT_EQ(list.GetSelectedItem(), nullptr);
    EXPECT_EQ(list.GetFocusItem(), nullptr);
    EXPECT_EQ(list.GetItemHeight() % 2, 0);
}

TEST_F(TreeListItems, ANewItemHasTheToldDefaults)
{
    CTreeListItem *item = Add(L"a");
    EXPECT_EQ(item->Level(), 1);
    EXPECT_EQ(item->ChildCount(), 1);
    EXPECT_EQ(item->ShowCount(), 1);
    EXPECT_EQ(item->State(), 0x2020030u);
    EXPECT_EQ(item->Data(), 0u);
    EXPECT_EQ(list.GetCheck(item), kCheckOff);
    EXPECT_EQ(list.GetLock(item), kCheckOff);
    TreeListImages images = {9, 9, 9, 9};
    EXPECT_EQ(list.GetItemImage(item, images), 1);
    EXPECT_EQ(images.normal, 0);
    EXPECT_EQ(images.expanded, 0);
    EXPECT_EQ(images.selected, 0);
    EXPECT_EQ(images.expandedSelected, 0);
    EXPECT_EQ(item->ColumnModify(0), -1);
    EXPECT_EQ(item->SpareText(0), L"");
}

TEST_F(TreeListItems, APlainItemTakesAboutAHundredBytes)
{
    EXPECT_LE(sizeof(CTreeListItem), 104u);
}

// --- Insertion ---

TEST_F(TreeListItems, TheLastValueAppends)
{
    Add(L"a");
    Add(L"b");
    list.InsertItem(L"c", TreeListRoot(), TreeListLast());
    EXPECT_EQ(Shape(), L"a b c");
}

TEST_F(TreeListItems, TheFirstValuePutsInFront)
{
    Add(L"a");
    list.InsertItem(L"b", TreeListRoot(), TreeListFirst());
    EXPECT_EQ(Shape(), L"b a");
}

TEST_F(TreeListItems, ASortedInsertComparesNothingAndAppends)
{
    for (const bool header : {false, true}) {
        list.DeleteAllItems();
        list.SetStyle(header ? StyleHeader | StyleHeaderSort : 0);
        for (const wchar_t *text : {L"m", L"z", L"a"})
            list.InsertItem(text, TreeListRoot(), TreeListSorted());
        EXPECT_EQ(Shape(), L"m z a");
    }
}

TEST_F(TreeListItems, TheSortedPlaceIsTheLastChild)
{
    CTreeListItem *a = Add(L"a");
    CTreeListItem *b = Add(L"b", a);
    EXPECT_EQ(list.GetSortChildItem(TreeListRoot()), a);
    EXPECT_EQ(list.GetSortChildItem(a), b);
    EXPECT_EQ(list.GetSortChildItem(b), nullptr);
}

TEST_F(TreeListItems, AnItemGoesBehindTheChildThatIsNamed)
{
    CTreeListItem *a = Add(L"a");
    Add(L"b");
    list.InsertItem(L"c", TreeListRoot(), a);
    EXPECT_EQ(Shape(), L"a c b");
}

TEST_F(TreeListItems, BehindWhatIsNoChildOfTheParentMeansFirst)
{
    CTreeListItem *a = Add(L"a");
    CTreeListItem *inner = Add(L"x", a);
    list.InsertItem(L"b", TreeListRoot(), inner);
    EXPECT_EQ(Shape(), L"b a(x)");
    list.InsertItem(L"c", TreeListRoot(), nullptr);
    EXPECT_EQ(Shape(), L"c b a(x)");
    list.InsertItem(L"d", TreeListRoot(), TreeListRoot());
    EXPECT_EQ(Shape(), L"d c b a(x)");
}

TEST_F(TreeListItems, AChildIsOfItsParentOnly)
{
    CTreeListItem *a = Add(L"a");
    CTreeListItem *inner = Add(L"x", a);
    EXPECT_EQ(list.GetValidChildItem(a, inner), inner);
    EXPECT_EQ(list.GetValidChildItem(TreeListRoot(), a), a);
    EXPECT_EQ(list.GetValidChildItem(list.GetRootItem(), a), a);
    EXPECT_EQ(list.GetValidChildItem(TreeListRoot(), inner), nullptr);
    EXPECT_EQ(list.GetValidChildItem(a, nullptr), nullptr);
    EXPECT_EQ(list.GetValidChildItem(a, TreeListLast()), nullptr);
    EXPECT_EQ(list.GetValidChildItem(nullptr, a), nullptr);
}

TEST_F(TreeListItems, TheFormsForOnlyFirstAndNext)
{
    CTreeListItem *only = list.InsertItemNew(L"a", list.GetRootItem());
    EXPECT_EQ(list.InsertItemNew(L"b", list.GetRootItem()), nullptr) << "not the only one";
    list.InsertItemFirst(L"c", TreeListRoot());
    list.InsertItemNext(L"d", only);
    CTreeListItem *inner = list.InsertItemFirst(L"x", only);
    list.InsertItemNext(L"y", inner);
    EXPECT_EQ(Shape(), L"c a(x y) d");
    EXPECT_EQ(inner->Level(), 2);
    EXPECT_EQ(list.GetNextSiblingItem(inner)->Level(), 2) << "that of its sibling";
    EXPECT_EQ(list.InsertItemNext(L"e", list.GetRootItem()), nullptr);
}

TEST_F(TreeListItems, AWrongParentGetsNothing)
{
    TreeListJournal other;
    CTreeListItem *foreign = other.InsertItem(L"f");
    for (CTreeListItem *parent : {static_cast<CTreeListItem *>(nullptr), TreeListFirst(), TreeListLast(),
                                  TreeListSorted(), foreign, other.GetRootItem()}) {
        EXPECT_EQ(list.InsertItem(L"x", parent), nullptr);
        EXPECT_EQ(list.InsertItemNew(L"x", parent), nullptr);
        EXPECT_EQ(list.InsertItemFirst(L"x", parent), nullptr);
        EXPECT_EQ(list.InsertItemNext(L"x", parent), nullptr);
    }
    EXPECT_EQ(list.GetCount(), 0);
    EXPECT_EQ(other.GetCount(), 1);
}

TEST_F(TreeListItems, ByIndexTheListIsFlat)
{
    EXPECT_EQ(list.InsertItem(7, L"a"), 0) << "past the count: last";
    EXPECT_EQ(list.InsertItem(0, L"b"), 0);
    EXPECT_EQ(list.InsertItem(2, L"c"), 2) << "at the count: last";
    EXPECT_EQ(list.InsertItem(1, L"d"), 1) << "in front of the item of that index";
    EXPECT_EQ(list.InsertItem(-1, L"e"), -1);
    EXPECT_EQ(Shape(), L"b d a c");
}

TEST_F(TreeListItems, ByIndexTheRowsInViewCount)
{
    CTreeListItem *a = Add(L"a");
    Add(L"x", a);
    Add(L"b");
    EXPECT_EQ(list.InsertItem(1, L"c"), 1);
    EXPECT_EQ(Shape(), L"a(x) c b") << "hidden rows have no index";
    list.Expand(a, kExpand);
    EXPECT_EQ(list.InsertItem(1, L"d"), 1);
    EXPECT_EQ(Shape(), L"a(d x) c b");
}

TEST_F(TreeListItems, ANewItemTakesOneTextPerColumnWithTheColumnsDefaults)
{
    list.InsertColumn(L"second");
    list.InsertColumn(L"third");
    list.SetColumnDefaultText(0, L"none");
    list.SetColumnDefaultText(2, L"new");
    CTreeListItem *item = Add(L"a");
    EXPECT_EQ(list.GetItemText(item, 0), L"a");
    EXPECT_EQ(list.GetItemText(item, 1), L"");
    EXPECT_EQ(list.GetItemText(item, 2), L"new");
}

TEST_F(TreeListItems, ACheckOrLockOfExactlyOneIsInherited)
{
    CTreeListItem *parent = Add(L"p");
    list.SetCheck(parent, kCheckOn);
    list.SetLock(parent, kCheckOn);
    CTreeListItem *child = Add(L"c", parent);
    EXPECT_EQ(child->State(), kItemShowsCheck | kItemShowsLock | kItemChecked | kItemLocked);
    list.SetCheck(parent, kCheckMixed);
    list.SetLock(parent, kCheckMixed);
    EXPECT_EQ(Add(L"d", parent)->State(), kItemDefaultState);
    list.SetCheck(parent, kCheckOff);
    EXPECT_EQ(list.GetCheck(Add(L"e", parent)), kCheckOff);
}

TEST_F(TreeListItems, AFailedAllocationGivesNullAndLeavesTheTree)
{
    FailingAllocator allocator;
    {
        TreeListJournal poor(allocator);
        poor.InsertColumn(L"second");
        poor.SetColumnDefaultText(1, L"long enough for a block of its own size");
        CTreeListItem *first = poor.InsertItem(L"a");
        poor.Expand(first, kExpand);
        allocator.asked = 0;
        poor.InsertItem(L"b", first);
        const int needed = allocator.asked;
        ASSERT_GE(needed, 3) << "item, text, longer text";
        const std::string before = "2 2";
        for (int failing = 1; failing <= needed; ++failing) {
            const long out = allocator.out;
            allocator.failAt = failing;
            EXPECT_EQ(poor.InsertItem(L"c", first), nullptr) << failing;
            EXPECT_EQ(allocator.out, out) << "what was had is given back";
            EXPECT_EQ(poor.InsertItem(0, L"c") >= 0, true) << "there is memory again";
            poor.DeleteItem(poor.GetFirstVisibleItem());
            EXPECT_EQ(std::to_string(poor.GetCount()) + " " + std::to_string(poor.GetVisibleCount()), before);
            EXPECT_EQ(first->ChildCount(), 2);
            EXPECT_EQ(first->LastChild(), first->FirstChild());
        }
        allocator.failAt = 1;
        EXPECT_EQ(poor.InsertItem(1, L"c"), -1);
    }
    EXPECT_EQ(allocator.out, 0);
}

TEST_F(TreeListItems, ATextThatCannotBeHadLeavesTheOldOne)
{
    FailingAllocator allocator;
    TreeListJournal poor(allocator);
    CTreeListItem *item = poor.InsertItem(L"old");
    const auto failsAt = [&](int failing) {
        allocator.failAt = failing;
        return std::pair(poor.SetItemText(item, 0, std::wstring(100, L'n')), poor.GetItemText(item));
    };
    EXPECT_EQ(failsAt(1), std::pair(0, std::wstring(L"old")));
    allocator.failAt = 1;
    EXPECT_EQ(poor.SetItemImage(item, 1, 2, 3, 4), 0);
    allocator.failAt = 2; // the first is for what holds it
    EXPECT_EQ(poor.SetItemSpareText(item, 0, L"spare"), 0);
    allocator.failAt = 1;
    EXPECT_EQ(poor.SetItemModify(item, 0, kEditorEdit), 0);
    EXPECT_EQ(item->SpareText(0), L"");
    EXPECT_EQ(item->ColumnModify(0), -1);
    EXPECT_EQ(failsAt(0).first, 1);
}

TEST_F(TreeListItems, EmptyTextsTakeNoMemory)
{
    FailingAllocator allocator;
    TreeListJournal counted(allocator);
    counted.InsertColumn(L"second");
    CTreeListItem *item = counted.InsertItem(L"");
    counted.SetItemText(item, 1, L"");
    EXPECT_EQ(allocator.asked, 1) << "the item";
}

TEST_F(TreeListItems, AWideListWithoutMemoryForItsIndexStillAnswers)
{
    FailingAllocator allocator;
    {
        TreeListJournal poor(allocator);
        std::vector<CTreeListItem *> items;
        for (int made = 0; made < 300; ++made) {
            allocator.failAt = made % 2 ? 3 : 0; // item, text, then what the index asks for
            items.push_back(poor.InsertItem(L"x"));
            ASSERT_NE(items.back(), nullptr);
        }
        allocator.failAt = 0;
        for (int row = 0; row < 300; ++row) {
            EXPECT_EQ(poor.GetFirstShowItem(row), items[static_cast<std::size_t>(row)]);
            EXPECT_EQ(poor.GetShowIndex(items[static_cast<std::size_t>(row)]), row);
        }
    }
    EXPECT_EQ(allocator.out, 0);
}

TEST_F(TreeListItems, TheMemoryOfAllItemsIsGivenBackWithThem)
{
    FailingAllocator allocator(true);
    TreeListJournal pooled(allocator);
    for (int round = 0; round < 2; ++round) {
        for (int made = 0; made < 5000; ++made)
            pooled.SetItemImage(pooled.InsertItem(std::wstring(static_cast<std::size_t>(made % 900), L'x')), 1, 1, 1,
                                1);
        EXPECT_GT(allocator.out, 0);
        pooled.DeleteAllItems();
        EXPECT_EQ(allocator.out, 0);
    }
}

// --- Counts ---

TEST_F(TreeListItems, CountsRunUpAndStopShowingAtTheFirstCollapsedAncestor)
{
    CTreeListItem *a = Add(L"a");
    CTreeListItem *b = Add(L"b", a);
    CTreeListItem *c = Add(L"c", b);
    list.Expand(b, kExpand);
    EXPECT_EQ(c->ShowCount(), 1);
    EXPECT_EQ(b->ShowCount(), 2) << "expanded";
    EXPECT_EQ(a->ShowCount(), 1) << "collapsed";
    EXPECT_EQ(list.GetRootItem()->ShowCount(), 2);
    EXPECT_EQ(a->ChildCount(), 3);
    EXPECT_EQ(list.GetRootItem()->ChildCount(), 4);
    EXPECT_EQ(list.GetCount(), 3);
    EXPECT_EQ(list.GetVisibleCount(), 1) << "rows in view";
    list.Expand(a, kExpand);
    EXPECT_EQ(list.GetVisibleCount(), 3);
    Add(L"d", b);
    EXPECT_EQ(list.GetVisibleCount(), 4);
    EXPECT_EQ(list.GetRootItem()->ShowCount(), 5) << "the rows in view plus one";
}

TEST_F(TreeListItems, DeletionTakesTheCountsOffUpward)
{
    CTreeListItem *a = Add(L"a");
    CTreeListItem *b = Add(L"b", a);
    Add(L"c", b);
    Add(L"d", a);
    for (CTreeListItem *item : {a, b})
        list.Expand(item, kExpand);
    ASSERT_EQ(list.GetVisibleCount(), 4);
    EXPECT_EQ(list.DeleteItem(b), 1);
    EXPECT_EQ(Shape(), L"a(d)");
    EXPECT_EQ(a->ChildCount(), 2);
    EXPECT_EQ(a->ShowCount(), 2);
    EXPECT_EQ(list.GetCount(), 2);
    EXPECT_EQ(list.GetVisibleCount(), 2);
}

// --- What an item holds ---

TEST_F(TreeListItems, ATextOfAnyCharactersComesBackAsItWasSet)
{
    list.InsertColumn(L"second");
    list.InsertColumn(L"third");
    CTreeListItem *item = Add(L"plain");
    const std::vector<std::wstring> texts = {L"",
                                             L"\u010dvor",
                                             L"\U0001F600",
                                             std::wstring(1, static_cast<wchar_t>(-1)),
                                             std::wstring(L"a\0b", 3),
                                             L"\u00ff",
                                             L"\u0100",
                                             std::wstring(255, L'x'),
                                             std::wstring(256, L'x'),
                                             std::wstring(70000, L'\u0161')};
    for (const std::wstring &one : texts) {
        for (const std::wstring &other : texts) {
            ASSERT_EQ(list.SetItemText(item, 1, one), 1);
            ASSERT_EQ(list.SetItemText(item, 2, other), 1);
            ASSERT_EQ(list.GetItemText(item, 0), L"plain");
            ASSERT_EQ(list.GetItemText(item, 1), one);
            ASSERT_EQ(list.GetItemText(item, 2), other);
        }
    }
}

TEST_F(TreeListItems, TheWidestCharacterOfAnItemSaysHowManyBytesEachTakes)
{
    list.InsertColumn(L"second");
    CTreeListItem *item = Add(L"plain\u00ff");
    EXPECT_EQ(item->TextView(0).bytesEach, 1u);
    EXPECT_EQ(item->TextView(0).length, 6u);
    list.SetItemText(item, 1, L"\u0161");
    EXPECT_EQ(item->TextView(0).bytesEach, 2u);
    list.SetItemText(item, 1, L"\U0001F600");
    EXPECT_EQ(item->TextView(0).bytesEach, 4u);
    list.SetItemText(item, 1, L"narrow");
    EXPECT_EQ(item->TextView(0).bytesEach, 1u) << "and back";
    EXPECT_EQ(item->TextView(5).length, 0u);
    EXPECT_EQ(item->TextView(-1).length, 0u);
}

TEST_F(TreeListItems, ATextOfNoColumnOrNoItemIsRefused)
{
    TreeListJournal other;
    CTreeListItem *foreign = other.InsertItem(L"f");
    CTreeListItem *item = Add(L"a");
    EXPECT_EQ(list.SetItemText(item, 1, L"x"), 0);
    EXPECT_EQ(list.SetItemText(item, -1, L"x"), 0);
    EXPECT_EQ(list.SetItemText(nullptr, 0, L"x"), 0);
    EXPECT_EQ(list.SetItemText(foreign, 0, L"x"), 0);
    EXPECT_EQ(list.SetItemSpareText(item, 1, L"x"), 0);
    EXPECT_EQ(list.GetItemText(item, 1), L"");
    EXPECT_EQ(list.GetItemText(item, -1), L"");
    EXPECT_EQ(list.GetItemText(nullptr), L"");
    EXPECT_EQ(other.GetItemText(foreign), L"f");
}

TEST_F(TreeListItems, ANewTextIsToldToTheView)
{
    CTreeListItem *item = Add(L"a");
    list.steps.clear();
    list.SetItemText(item, 0, L"b");
    EXPECT_THAT(list.steps, ElementsAre("text", "repaint item"));
}

TEST_F(TreeListItems, DataImagesSpareTextsAndKindsAreKept)
{
    list.InsertColumn(L"second");
    CTreeListItem *item = Add(L"a");
    EXPECT_EQ(list.SetItemData(item, 0xFFFFFFFF), 1);
    EXPECT_EQ(list.GetItemData(item), 0xFFFFFFFFu);
    EXPECT_EQ(list.SetItemData(nullptr, 1), 0);
    EXPECT_EQ(list.GetItemData(nullptr), 0u);
    EXPECT_EQ(list.SetItemImage(item, 1, 2, 3, -4), 1);
    TreeListImages images;
    ASSERT_EQ(list.GetItemImage(item, images), 1);
    EXPECT_EQ(images.normal, 1);
    EXPECT_EQ(images.expanded, 2);
    EXPECT_EQ(images.selected, 3);
    EXPECT_EQ(images.expandedSelected, -4);
    EXPECT_EQ(list.SetItemImage(nullptr, 1, 2, 3, 4), 0);
    EXPECT_EQ(list.GetItemImage(nullptr, images), 0);
    EXPECT_EQ(list.SetItemSpareText(item, 1, L"spare"), 1);
    EXPECT_EQ(item->SpareText(1), L"spare");
    EXPECT_EQ(list.GetItemText(item, 1), L"");
    EXPECT_EQ(list.SetItemModify(item, 1, kEditorCombo), 1);
    EXPECT_EQ(item->ColumnModify(1), kEditorCombo);
    EXPECT_EQ(item->ColumnModify(0), -1);
    EXPECT_EQ(list.SetItemModify(item, 1, 3), 0);
    EXPECT_EQ(list.SetItemModify(item, 2, kEditorEdit), 0);
    EXPECT_EQ(list.SetItemModify(item, 1, -1), 1);
    EXPECT_EQ(item->ColumnModify(1), -1);
}

TEST_F(TreeListItems, SettingExpandedSetsExpandedOnceAndClearingThatClearsBoth)
{
    CTreeListItem *a = Add(L"a");
    Add(L"b", a);
    EXPECT_EQ(list.SetItemState(a, kItemExpanded, 0), 1);
    EXPECT_EQ(list.GetItemState(a, 0x6), 0x6u);
    EXPECT_EQ(list.GetVisibleCount(), 2) << "the counts follow";
    list.SetItemState(a, 0, kItemExpanded);
    EXPECT_EQ(list.GetItemState(a, 0x6), 0x4u);
    EXPECT_EQ(list.GetVisibleCount(), 1);
    list.SetItemState(a, kItemExpanded, 0);
    list.SetItemState(a, 0, kItemExpandedOnce);
    EXPECT_EQ(list.GetItemState(a, 0x6), 0u);
    EXPECT_EQ(list.GetVisibleCount(), 1);
    EXPECT_THAT(list.notes, IsEmpty());
}

TEST_F(TreeListItems, TheSelectedBitAndTheSelectionAreOne)
{
    CTreeListItem *a = Add(L"a");
    CTreeListItem *b = Add(L"b");
    list.SetItemState(a, kItemSelected, 0);
    EXPECT_EQ(list.GetSelectedItem(), a);
    list.SetItemState(b, kItemSelected, 0);
    EXPECT_EQ(list.GetSelectedItem(), b);
    EXPECT_EQ(list.GetItemState(a, kItemSelected), 0u) << "one at a time without multi-selection";
    list.SetItemState(b, 0, kItemSelected);
    EXPECT_EQ(list.GetSelectedCount(), 0);
}

TEST_F(TreeListItems, TheRootStaysExpandedAndUnselected)
{
    Add(L"a");
    EXPECT_EQ(list.SetItemState(list.GetRootItem(), kItemSelected, kItemExpanded | kItemExpandedOnce), 1);
    EXPECT_EQ(list.GetItemState(TreeListRoot(), 0x7), 0x6u);
    EXPECT_EQ(list.GetVisibleCount(), 1);
    EXPECT_EQ(list.SetItemState(nullptr, 1, 0), 0);
}
