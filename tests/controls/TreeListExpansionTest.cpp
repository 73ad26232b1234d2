// Expansion of the tree list, check and lock.
#include "tests/controls/TreeListJournal.h"

#include <gmock/gmock.h>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class TreeListExpansion : public testing::Test {
protected:
    TreeListExpansion()
    {
        a = list.InsertItem(L"a");
        b = list.InsertItem(L"b", a);
        c = list.InsertItem(L"c", a);
        d = list.InsertItem(L"d");
        Forget();
    }
    void Forget()
    {
        list.notes.clear();
        list.steps.clear();
        list.changes.clear();
    }

    TreeListJournal list;
    CTreeListItem *a, *b, *c, *d;
};

class TreeListMarks : public TreeListExpansion {};

} // namespace

TEST_F(TreeListExpansion, AChangeTellsBeforeAndAfterWithRedrawingOffAndAnswersZero)
{
    for (const int code : {kExpand, kCollapse}) {
        Forget();
        EXPECT_EQ(list.Expand(a, code, 3), 0);
        EXPECT_THAT(list.notes, ElementsAre(TreeListNote{NotifyExpanding, a, 3}, TreeListNote{NotifyExpanded, a, 3}));
        EXPECT_THAT(list.steps, ElementsAre("redraw off", "redraw on", "layout", "repaint"));
        EXPECT_EQ(a->Has(kItemExpanded), code == kExpand);
        EXPECT_TRUE(a->Has(kItemExpandedOnce));
    }
    EXPECT_EQ(list.changes.size(), 1u);
    EXPECT_EQ(list.changes[0].second, kItemExpanded);
}

TEST_F(TreeListExpansion, NothingToDoAnswersOneWithoutANotice)
{
    EXPECT_EQ(list.Expand(a, kCollapse), 1) << "collapsed";
    EXPECT_EQ(list.Expand(a, kCollapseAndDelete), 1) << "collapsed";
    EXPECT_EQ(a->ChildCount(), 3);
    list.Expand(a, kExpand);
    Forget();
    EXPECT_EQ(list.Expand(a, kExpand), 1) << "expanded";
    EXPECT_THAT(list.notes, IsEmpty());
    EXPECT_THAT(list.steps, IsEmpty());
}

TEST_F(TreeListExpansion, AnItemWithoutChildrenExpandsOnce)
{
    EXPECT_EQ(list.Expand(d, kExpand), 0);
    EXPECT_EQ(list.GetItemState(d, 0x6), 0x6u);
    Forget();
    for (const int code : {0, 1, 2, 3, 77})
        EXPECT_EQ(list.Expand(d, code), 1) << code;
    EXPECT_THAT(list.notes, IsEmpty());
    EXPECT_EQ(list.GetItemState(d, 0x6), 0x6u);
    list.InsertItem(L"late", d);
    EXPECT_EQ(list.GetVisibleCount(), 3) << "it is expanded";
}

TEST_F(TreeListExpansion, ToggleGoesByThePresentState)
{
    EXPECT_EQ(list.Expand(a, kToggle), 0);
    EXPECT_EQ(list.GetVisibleCount(), 4);
    EXPECT_EQ(list.Expand(a, kToggle), 0);
    EXPECT_EQ(list.GetVisibleCount(), 2);
}

TEST_F(TreeListExpansion, NullAndUnknownCodesAnswerZero)
{
    TreeListJournal other;
    EXPECT_EQ(list.Expand(nullptr, kExpand), 0);
    EXPECT_EQ(list.Expand(other.InsertItem(L"f"), kExpand), 0);
    for (const int code : {-1, 4, 100})
        EXPECT_EQ(list.Expand(a, code), 0);
    EXPECT_THAT(list.notes, IsEmpty());
    EXPECT_FALSE(a->Has(kItemExpanded));
}

TEST_F(TreeListExpansion, MinusOneStopsIt)
{
    list.answer = [](int code, CTreeListItem *, int) { return code == NotifyExpanding ? -1 : 0; };
    EXPECT_EQ(list.Expand(a, kExpand), 0);
    EXPECT_THAT(list.notes, ElementsAre(TreeListNote{NotifyExpanding, a, 0}));
    EXPECT_THAT(list.steps, IsEmpty());
    EXPECT_EQ(list.GetItemState(a, 0x6), 0u);
    list.answer = [](int code, CTreeListItem *, int) { return code == NotifyExpanding ? -2 : 0; };
    EXPECT_EQ(list.Expand(a, kExpand), 0);
    EXPECT_TRUE(a->Has(kItemExpanded)) << "other answers don't";
}

TEST_F(TreeListExpansion, CollapsingChangesNobodysChildCount)
{
    list.Expand(a, kExpand);
    list.Expand(a, kCollapse);
    EXPECT_EQ(a->ChildCount(), 3);
    EXPECT_EQ(b->ChildCount(), 1);
    EXPECT_EQ(list.GetRootItem()->ChildCount(), 5);
    EXPECT_EQ(a->ShowCount(), 1);
    EXPECT_EQ(list.GetRootItem()->ShowCount(), 3);
}

TEST_F(TreeListExpansion, ExpandingWithinACollapsedBranchShowsNothingYet)
{
    CTreeListItem *inner = list.InsertItem(L"x", b);
    list.Expand(b, kExpand);
    EXPECT_EQ(b->ShowCount(), 2);
    EXPECT_EQ(a->ShowCount(), 1);
    EXPECT_EQ(list.GetVisibleCount(), 2);
    list.Expand(a, kExpand);
    EXPECT_EQ(a->ShowCount(), 4);
    EXPECT_EQ(list.GetVisibleCount(), 5);
    EXPECT_EQ(list.GetShowIndex(inner), 2);
}

TEST_F(TreeListExpansion, CollapseAndDeleteTakesTheChildrenAwayFirst)
{
    list.Expand(a, kExpand);
    Forget();
    int rowsWhenTold = -1;
    list.answer = [&](int code, CTreeListItem *item, int) {
        if (code == NotifyExpanded)
            rowsWhenTold = item->ChildCount();
        return 0;
    };
    EXPECT_EQ(list.Expand(a, kCollapseAndDelete), 0);
    EXPECT_EQ(rowsWhenTold, 1);
    EXPECT_FALSE(list.ItemHasChildren(a));
    EXPECT_EQ(list.GetCount(), 2);
    EXPECT_EQ(list.GetVisibleCount(), 2);
    EXPECT_THAT(list.deleted, ElementsAre(L"b", L"c"));
    EXPECT_THAT(list.notes, ElementsAre(TreeListNote{NotifyExpanding, a, 0}, TreeListNote{NotifySelChanging, b, -1},
                                        TreeListNote{NotifySelChanging, c, -1}, TreeListNote{NotifyExpanded, a, 0}));
}

TEST_F(TreeListExpansion, AfterCollapseAndDeleteTheItemCountsAsNeverExpanded)
{
    list.Expand(a, kExpand);
    list.Expand(a, kCollapseAndDelete);
    EXPECT_EQ(list.GetItemState(a, 0x6), 0u);
    Forget();
    EXPECT_EQ(list.Expand(a, kExpand), 0) << "so the owner is asked to fill it again";
    EXPECT_EQ(list.notes.size(), 2u);
}

TEST_F(TreeListExpansion, TheRootCannotBeCollapsed)
{
    EXPECT_EQ(list.Expand(list.GetRootItem(), kExpand), 1);
    for (const int code : {kCollapse, kToggle, kCollapseAndDelete})
        EXPECT_EQ(list.Expand(TreeListRoot(), code), 0);
    EXPECT_EQ(list.GetVisibleCount(), 2);
    EXPECT_EQ(list.GetCount(), 4);
}

// --- Check and lock ---

TEST_F(TreeListMarks, TheThreeStatesOfAMark)
{
    struct {
        int value;
        std::uint32_t bits;
    } const rows[] = {{kCheckOn, 0x10000}, {kCheckOff, 0x20000}, {kCheckMixed, 0x30000}};
    for (const auto &row : rows) {
        EXPECT_EQ(list.SetCheck(a, row.value), 1);
        EXPECT_EQ(list.GetCheck(a), row.value);
        EXPECT_EQ(list.GetItemState(a, 0x30000), row.bits);
        EXPECT_EQ(list.SetLock(a, row.value), 1);
        EXPECT_EQ(list.GetLock(a), row.value);
        EXPECT_EQ(list.GetItemState(a, 0x3000000), row.bits << 8);
    }
    EXPECT_EQ(list.GetCheck(b), kCheckOff) << "the item's own only";
    EXPECT_THAT(list.notes, IsEmpty());
}

TEST_F(TreeListMarks, ValuesAndItemsThatThereAreNotAreRefused)
{
    EXPECT_EQ(list.SetCheck(a, 3), 0);
    EXPECT_EQ(list.SetCheck(a, -1), 0);
    EXPECT_EQ(list.SetCheck(nullptr, 1), 0);
    EXPECT_EQ(list.SetLock(nullptr, 1), 0);
    EXPECT_EQ(list.SetItemCheck(nullptr, true), 0);
    EXPECT_EQ(list.SetItemLock(nullptr, true), 0);
    EXPECT_EQ(list.GetCheck(nullptr), 0);
    EXPECT_EQ(list.GetLock(nullptr), 0);
    EXPECT_EQ(list.GetCheck(a), kCheckOff);
    EXPECT_THAT(list.notes, IsEmpty());
}

TEST_F(TreeListMarks, ACheckGoesToAllDescendants)
{
    CTreeListItem *inner = list.InsertItem(L"x", b);
    list.SetItemState(c, 0, kItemShowsCheck);
    EXPECT_EQ(list.SetItemCheck(a, true), 1);
    EXPECT_THAT(list.notes, ElementsAre(TreeListNote{NotifyCheck, a, 0}));
    for (CTreeListItem *item : {a, b, c, inner})
        EXPECT_EQ(list.GetCheck(item), kCheckOn);
    EXPECT_EQ(list.GetCheck(d), kCheckOff);
    EXPECT_EQ(list.GetLock(a), kCheckOff);
}

TEST_F(TreeListMarks, AParentOfAMixtureHoldsMixed)
{
    CTreeListItem *inner = list.InsertItem(L"x", b);
    list.InsertItem(L"y", b);
    list.SetItemCheck(inner, true);
    EXPECT_EQ(list.GetCheck(b), kCheckMixed);
    EXPECT_EQ(list.GetCheck(a), kCheckMixed) << "and so upward";
    EXPECT_EQ(list.GetItemState(b, 0x30000), 0x30000u);
    list.SetItemCheck(b, true);
    EXPECT_EQ(list.GetCheck(b), kCheckOn) << "a mixed one becomes checked";
    list.SetItemCheck(c, true);
    EXPECT_EQ(list.GetCheck(a), kCheckOn) << "all of them are";
    list.SetItemCheck(b, true);
    list.SetItemCheck(c, true);
    EXPECT_EQ(list.GetCheck(a), kCheckOff);
}

TEST_F(TreeListMarks, ChildrenWithoutABoxDoNotCountForTheirParent)
{
    list.SetItemState(c, 0, kItemShowsCheck);
    list.SetItemCheck(b, true);
    EXPECT_EQ(list.GetCheck(a), kCheckOn);
    list.SetItemState(b, 0, kItemShowsCheck);
    list.SetItemCheck(b, true);
    EXPECT_EQ(list.GetCheck(a), kCheckOn) << "with no box below, it stays";
}

TEST_F(TreeListMarks, TheInvisibleRootTakesNoPart)
{
    list.SetItemCheck(a, true);
    list.SetItemCheck(d, true);
    EXPECT_EQ(list.GetCheck(list.GetRootItem()), kCheckOff);
    EXPECT_EQ(list.GetCheck(list.InsertItem(L"e")), kCheckOff);
}

TEST_F(TreeListMarks, WithoutToggleThePresentStateSpreads)
{
    list.SetCheck(b, kCheckOn);
    list.InsertItem(L"x", b);
    list.SetCheck(list.GetChildItem(b), kCheckOff);
    EXPECT_EQ(list.SetItemCheck(b, false), 1);
    EXPECT_EQ(list.GetCheck(b), kCheckOn);
    EXPECT_EQ(list.GetCheck(list.GetChildItem(b)), kCheckOn);
    EXPECT_EQ(list.GetCheck(a), kCheckMixed);
}

TEST_F(TreeListMarks, WithoutPropagationItStaysOnTheOneItem)
{
    list.SetStyle(StyleNoCheckPropagation);
    list.SetItemCheck(a, true);
    EXPECT_EQ(list.GetCheck(a), kCheckOn);
    EXPECT_EQ(list.GetCheck(b), kCheckOff);
    list.SetItemLock(a, true);
    EXPECT_EQ(list.GetLock(b), kCheckOn) << "the lock's own bit";
    list.SetStyle(StyleNoLockPropagation);
    list.SetItemLock(b, true);
    EXPECT_EQ(list.GetLock(a), kCheckOn);
    list.SetItemCheck(a, false);
    EXPECT_EQ(list.GetCheck(b), kCheckOn);
}

TEST_F(TreeListMarks, ALockWorksAsACheckWithItsOwnBox)
{
    list.SetItemState(c, 0, kItemShowsLock);
    EXPECT_EQ(list.SetItemLock(b, true), 1);
    EXPECT_THAT(list.notes, ElementsAre(TreeListNote{NotifyLock, b, 0}));
    EXPECT_EQ(list.GetLock(a), kCheckOn);
    list.SetItemState(c, kItemShowsLock, kItemShowsCheck);
    list.SetItemLock(b, false);
    EXPECT_EQ(list.GetLock(a), kCheckMixed);
    EXPECT_EQ(list.GetCheck(a), kCheckOff);
}

TEST_F(TreeListMarks, OnlyMinusOneStopsIt)
{
    list.answer = [](int, CTreeListItem *, int) { return -1; };
    EXPECT_EQ(list.SetItemCheck(a, true), 0);
    EXPECT_EQ(list.SetItemLock(a, true), 0);
    EXPECT_EQ(a->State(), kItemDefaultState);
    list.answer = [](int, CTreeListItem *, int) { return -2; };
    EXPECT_EQ(list.SetItemCheck(a, true), 1);
    EXPECT_EQ(list.GetCheck(a), kCheckOn);
}
