// Notices that delete items, fill the tree list anew or call back into it; deletion.
#include "tests/controls/TreeListJournal.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <stdexcept>
#include <utility>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class TreeListNotices : public testing::Test {
protected:
    TreeListNotices() : list(memory)
    {
        list.SetStyle(StyleMultiSelect);
        a = list.InsertItem(L"a");
        b = list.InsertItem(L"b", a);
        c = list.InsertItem(L"c", a);
        d = list.InsertItem(L"d");
        list.Expand(a, kExpand);
        Forget();
    }
    void Forget()
    {
        list.notes.clear();
        list.steps.clear();
        list.ensured.clear();
        list.deleted.clear();
    }
    /// Does something once, when that code is told.
    void On(int code, std::function<void(CTreeListItem *)> what)
    {
        list.answer = [this, code, what](int told, CTreeListItem *item, int) {
            if (told == code && !std::exchange(m_done, true))
                what(item);
            return 0;
        };
        m_done = false;
    }
    int Told(int code) const
    {
        return static_cast<int>(
            std::count_if(list.notes.begin(), list.notes.end(), [=](const auto &note) { return note.code == code; }));
    }
    void Refill()
    {
        list.DeleteAllItems();
        list.InsertItem(L"x", list.InsertItem(L"new"));
    }
    void ExpectRefilled()
    {
        EXPECT_EQ(list.GetCount(), 2);
        EXPECT_EQ(list.GetVisibleCount(), 1);
        EXPECT_EQ(list.GetItemText(list.GetFirstVisibleItem()), L"new");
        EXPECT_EQ(list.GetSelectedCount(), 0);
    }

    FailingAllocator memory; ///< blocks by themselves: a sanitizer sees what is used after its end
    TreeListJournal list;
    CTreeListItem *a, *b, *c, *d;

private:
    bool m_done = false;
};

} // namespace

// --- Deletion ---

TEST_F(TreeListNotices, EachDeletedItemIsToldChildrenFirst)
{
    list.DeleteItem(a);
    EXPECT_THAT(list.deleted, ElementsAre(L"b", L"c", L"a"));
    ASSERT_EQ(list.notes.size(), 3u);
    for (std::size_t at = 0; at < 3; ++at)
        EXPECT_EQ(list.notes[at], (TreeListNote{NotifySelChanging, std::vector{b, c, a}[at], -1}));
    EXPECT_EQ(list.GetCount(), 1);
}

TEST_F(TreeListNotices, NoAnswerSavesAnItemThatIsBeingDeleted)
{
    list.answer = [](int, CTreeListItem *, int) { return -1; };
    EXPECT_EQ(list.DeleteItem(a), 1);
    EXPECT_EQ(list.DeleteItem(d), 1);
    EXPECT_EQ(list.GetCount(), 0);
}

TEST_F(TreeListNotices, NullAndTheRootMeanAllItems)
{
    for (CTreeListItem *all : {static_cast<CTreeListItem *>(nullptr), list.GetRootItem(), TreeListRoot()}) {
        list.InsertItem(L"x", list.InsertItem(L"y"));
        EXPECT_EQ(list.DeleteItem(all), 1);
        EXPECT_EQ(list.GetCount(), 0);
        EXPECT_EQ(list.GetVisibleCount(), 0);
        EXPECT_FALSE(list.ItemHasChildren(list.GetRootItem()));
    }
    EXPECT_EQ(list.DeleteItemX(nullptr), 0);
    EXPECT_EQ(list.DeleteItemX(list.GetRootItem()), 0);
}

TEST_F(TreeListNotices, DeletingAllTurnsRedrawingOffAroundIt)
{
    EXPECT_EQ(list.DeleteAllItems(), 1);
    ASSERT_GE(list.steps.size(), 2u);
    EXPECT_EQ(list.steps.front(), "redraw off");
    EXPECT_EQ(list.steps.back(), "redraw on");
    EXPECT_THAT(list.deleted, ElementsAre(L"b", L"c", L"a", L"d"));
}

TEST_F(TreeListNotices, WhatStandsInTheTreeIsNotDeletedFast)
{
    EXPECT_EQ(list.DeleteItemFast(b), 0);
    EXPECT_EQ(list.DeleteItemFast(list.GetRootItem()), 0);
    EXPECT_EQ(list.DeleteItemFast(nullptr), 0);
    EXPECT_EQ(list.GetCount(), 4);
}

TEST_F(TreeListNotices, AnItemOfAnotherListIsNotDeleted)
{
    TreeListJournal other;
    CTreeListItem *foreign = other.InsertItem(L"f");
    EXPECT_EQ(list.DeleteItem(foreign), 0);
    EXPECT_EQ(other.GetCount(), 1);
    EXPECT_FALSE(list.OwnsItem(foreign));
    EXPECT_TRUE(list.OwnsItem(b));
    EXPECT_TRUE(list.OwnsItem(list.GetRootItem()));
    EXPECT_FALSE(list.OwnsItem(nullptr));
}

TEST_F(TreeListNotices, AnItemThatIsBeingDeletedIsReadButNotChanged)
{
    list.SetItemData(b, 7);
    On(NotifySelChanging, [&](CTreeListItem *going) {
        ASSERT_EQ(going, b);
        EXPECT_EQ(list.GetItemText(going), L"b");
        EXPECT_EQ(list.GetItemData(going), 7u);
        EXPECT_EQ(list.GetParentItem(going), a);
        EXPECT_EQ(list.GetParentItem(a), nullptr);
        EXPECT_EQ(list.GetShowIndex(going), -1);
        EXPECT_FALSE(list.OwnsItem(going) || list.OwnsItem(a));
        EXPECT_EQ(list.DeleteItem(going), 0);
        EXPECT_EQ(list.DeleteItem(a), 0);
        EXPECT_EQ(list.DeleteItemFast(going), 0);
        EXPECT_EQ(list.DeleteItemFast(a), 0);
        EXPECT_EQ(list.InsertItem(L"x", going), nullptr);
        EXPECT_EQ(list.InsertItemNext(L"x", going), nullptr);
        EXPECT_EQ(list.MoveAfterItem(going, TreeListRoot()), 0);
        EXPECT_EQ(list.MoveAfterItem(d, a), 0);
        EXPECT_EQ(list.ExchangeItem(c, d), 0);
        EXPECT_EQ(list.SetItemText(going, 0, L"x"), 0);
        EXPECT_EQ(list.SetItemData(going, 8), 0);
        EXPECT_EQ(list.SetItemState(going, kItemSelected, 0), 0);
        EXPECT_EQ(list.SelectItem(going), 0);
        EXPECT_EQ(list.Select(a), 0);
        EXPECT_EQ(list.SetSelectionMark(a), nullptr);
        EXPECT_EQ(list.Expand(a, kCollapse), 0);
        EXPECT_EQ(list.SetItemCheck(a, true), 0);
        EXPECT_EQ(list.GetCount(), 1) << "the counts are taken off already";
    });
    list.DeleteItem(a);
    EXPECT_THAT(list.deleted, ElementsAre(L"b", L"c", L"a"));
    EXPECT_EQ(list.GetSelectedCount(), 0);
    EXPECT_EQ(list.GetFocusItem(), nullptr);
}

TEST_F(TreeListNotices, ANoticeOfDeletionMayDeleteOthers)
{
    CTreeListItem *e = list.InsertItem(L"e", d);
    On(NotifySelChanging, [&](CTreeListItem *) { EXPECT_EQ(list.DeleteItem(e), 1); });
    list.DeleteItem(a);
    EXPECT_THAT(list.deleted, ElementsAre(L"e", L"b", L"c", L"a"));
    EXPECT_EQ(list.GetCount(), 1);
    EXPECT_EQ(d->ChildCount(), 1);
}

TEST_F(TreeListNotices, ARefillFromWithinTheDeletionOfAllStays)
{
    On(NotifySelChanging, [&](CTreeListItem *) { Refill(); });
    list.DeleteAllItems();
    ExpectRefilled();
    EXPECT_THAT(list.deleted, ElementsAre(L"b", L"c", L"a", L"d"));
}

TEST_F(TreeListNotices, AnOwnerWhoThrowsAtADeletionIsHeardWhenAllAreGone)
{
    list.Select(c);
    const auto throws = [](int code, CTreeListItem *, int) -> std::int64_t {
        if (code == NotifySelChanging)
            throw std::runtime_error("owner");
        return 0;
    };
    list.answer = throws;
    EXPECT_THROW(list.DeleteItem(a), std::runtime_error);
    EXPECT_THAT(list.deleted, ElementsAre(L"b", L"c", L"a"));
    EXPECT_EQ(list.GetCount(), 1);
    EXPECT_EQ(list.GetSelectedCount(), 0);
    list.answer = nullptr;
    list.Expand(list.InsertItem(L"x", d)->Parent(), kExpand);
    list.answer = throws;
    Forget();
    EXPECT_THROW(list.Expand(d, kCollapseAndDelete), std::runtime_error);
    EXPECT_EQ(list.GetCount(), 1);
    EXPECT_EQ(list.GetVisibleCount(), 1);
    EXPECT_THROW(list.DeleteAllItems(), std::runtime_error);
    EXPECT_EQ(list.GetCount(), 0);
    EXPECT_EQ(std::count(list.steps.begin(), list.steps.end(), "redraw off"), 2);
    EXPECT_EQ(std::count(list.steps.begin(), list.steps.end(), "redraw on"), 2);
}

TEST_F(TreeListNotices, ALongChainIsDeletedWithoutDeepCalls)
{
    CTreeListItem *deepest = d;
    for (int chain = 0; chain < 100; ++chain) {
        CTreeListItem *top = list.InsertItem(L""), *item = top;
        for (int depth = 1; depth < 1000; ++depth)
            item = list.InsertItem(L"", item);
        ASSERT_EQ(list.MoveAfterItem(top, deepest), 1);
        deepest = item;
    }
    EXPECT_EQ(deepest->Level(), 100001);
    list.SetItemCheck(d, true);
    EXPECT_EQ(list.GetCheck(deepest), kCheckOn);
    list.DeleteItem(d);
    EXPECT_EQ(list.GetCount(), 3);
}

// --- Expansion ---

TEST_F(TreeListNotices, AnItemIsFilledWhenItIsAboutToExpand)
{
    On(NotifyExpanding, [&](CTreeListItem *item) {
        list.InsertItem(L"x", item);
        list.InsertItem(L"y", item);
    });
    EXPECT_EQ(list.Expand(d, kExpand), 0);
    EXPECT_EQ(d->ShowCount(), 3);
    EXPECT_EQ(list.GetVisibleCount(), 6);
}

TEST_F(TreeListNotices, AnItemThatGoesWhileItExpandsIsNotTouched)
{
    On(NotifyExpanding, [&](CTreeListItem *item) { list.DeleteItem(item); });
    EXPECT_EQ(list.Expand(d, kExpand), 0);
    EXPECT_EQ(Told(NotifyExpanded), 0);
    EXPECT_EQ(list.GetCount(), 3);
    On(NotifyExpanding, [&](CTreeListItem *) { Refill(); });
    EXPECT_EQ(list.Expand(a, kCollapse), 0);
    ExpectRefilled();
}

TEST_F(TreeListNotices, AnItemThatTheOwnerExpandsHimselfIsExpandedOnce)
{
    On(NotifyExpanding, [&](CTreeListItem *item) { list.Expand(item, kCollapse); });
    EXPECT_EQ(list.Expand(a, kCollapse), 1);
    EXPECT_EQ(Told(NotifyExpanded), 1);
    EXPECT_EQ(list.GetVisibleCount(), 2);
    EXPECT_EQ(a->ShowCount(), 1);
}

TEST_F(TreeListNotices, AnItemThatGoesWhileItsChildrenAreDeletedIsNotTouched)
{
    On(NotifySelChanging, [&](CTreeListItem *) { list.DeleteItem(a); });
    EXPECT_EQ(list.Expand(a, kCollapseAndDelete), 0);
    EXPECT_EQ(Told(NotifyExpanded), 0);
    EXPECT_EQ(list.GetCount(), 1);
    EXPECT_EQ(list.steps.back(), "repaint") << "redrawing is on again";
    EXPECT_EQ(std::count(list.steps.begin(), list.steps.end(), "redraw on"), 1);
}

TEST_F(TreeListNotices, ANoticeOfACompletedExpansionMayDeleteTheItem)
{
    On(NotifyExpanded, [&](CTreeListItem *item) { list.DeleteItem(item); });
    EXPECT_EQ(list.Expand(a, kToggle), 0);
    EXPECT_EQ(list.GetCount(), 1);
}

// --- Selection ---

TEST_F(TreeListNotices, AnItemThatGoesWhileItIsBeingSelectedIsNotSelected)
{
    list.Select(d);
    On(NotifySelChanging, [&](CTreeListItem *item) { list.DeleteItem(item); });
    EXPECT_EQ(list.SelectItem(b), 0);
    EXPECT_EQ(Told(NotifySelChanged), 0);
    EXPECT_EQ(list.GetSelectedItem(), d);
    On(NotifySelChanging, [&](CTreeListItem *) { Refill(); });
    EXPECT_EQ(list.SelectItem(c), 0);
    ExpectRefilled();
}

TEST_F(TreeListNotices, AnItemThatGoesOnceItIsSelectedIsNotShown)
{
    On(NotifySelChanged, [&](CTreeListItem *) { Refill(); });
    EXPECT_EQ(list.SelectItem(b), 1);
    EXPECT_THAT(list.ensured, IsEmpty());
    ExpectRefilled();
    EXPECT_EQ(list.GetFocusItem(), nullptr);
}

TEST_F(TreeListNotices, ANoticeMaySelectAnotherItem)
{
    On(NotifySelChanging, [&](CTreeListItem *) { list.SelectItem(d, 0); });
    EXPECT_EQ(list.SelectItem(b, 0), 1);
    EXPECT_EQ(list.GetSelectedItem(), b) << "the later one stands";
    EXPECT_EQ(list.GetSelectedCount(), 1);
    On(NotifySelChanged, [&](CTreeListItem *) { list.SelectItem(d, 0); });
    list.SelectItem(c, 0);
    EXPECT_EQ(list.GetSelectedItem(), d);
    EXPECT_EQ(list.GetSelectedCount(), 1);
    EXPECT_EQ(list.GetFocusItem(), d);
}

// --- Check and lock ---

TEST_F(TreeListNotices, AnItemThatGoesBeforeItIsCheckedIsNotTouched)
{
    On(NotifyCheck, [&](CTreeListItem *item) { list.DeleteItem(item); });
    EXPECT_EQ(list.SetItemCheck(b, true), 0);
    EXPECT_EQ(list.GetCount(), 3);
    On(NotifyLock, [&](CTreeListItem *) { Refill(); });
    EXPECT_EQ(list.SetItemLock(a, true), 0);
    ExpectRefilled();
}

// --- Editing ---

TEST_F(TreeListNotices, ARowInEditThatIsDeletedEndsItsEdit)
{
    list.SetColumnModify(0, kEditorEdit);
    for (CTreeListItem *item : {b, a}) { // itself, and an ancestor of the row
        CTreeListItem *row = item == a ? c : b;
        ASSERT_EQ(list.BeginModify(row, 0), 1);
        Forget();
        EXPECT_EQ(list.DeleteItem(item), 1);
        EXPECT_EQ(list.GetModifyItem(), nullptr);
        EXPECT_EQ(list.GetModifyColumn(), -1);
        EXPECT_EQ(list.GetState(kControlEditing | kControlEndingEdit), 0u);
        EXPECT_EQ(std::count(list.notes.begin(), list.notes.end(), TreeListNote{NotifyEndEdit, row, -1}), 1);
    }
    ASSERT_EQ(list.BeginModify(d, 0), 1);
    list.DeleteAllItems();
    EXPECT_EQ(list.GetModifyItem(), nullptr);
}

TEST_F(TreeListNotices, AnEditThatBeginsOnARowBeingDeletedIsForgotten)
{
    list.SetColumnModify(0, kEditorEdit);
    On(NotifySelChanging, [&](CTreeListItem *going) { list.BeginModify(going, 0); });
    list.DeleteItem(a);
    EXPECT_EQ(list.GetModifyItem(), nullptr);
    EXPECT_EQ(list.GetState(kControlEditing), 0u);
    EXPECT_EQ(list.GetCount(), 1);
}

TEST_F(TreeListNotices, ARowWhoseEndOfEditDeletesItIsDeletedOnce)
{
    list.SetColumnModify(0, kEditorEdit);
    list.BeginModify(b, 0);
    On(NotifyEndEdit, [&](CTreeListItem *item) { list.DeleteItem(item); });
    EXPECT_EQ(list.DeleteItem(b), 1);
    EXPECT_THAT(list.deleted, ElementsAre(L"b"));
    EXPECT_EQ(list.GetCount(), 3);
    EXPECT_EQ(list.GetModifyItem(), nullptr);
}

// --- Guards ---

TEST_F(TreeListNotices, AGuardIsEmptyOnceItsItemIsDeleted)
{
    const CTreeListItemGuard outer(list, b);
    const CTreeListItemGuard other(list, d);
    const CTreeListItemGuard nothing(list, nullptr);
    {
        const CTreeListItemGuard inner(list, b);
        list.DeleteItem(a);
        EXPECT_EQ(inner.Get(), nullptr);
    }
    EXPECT_EQ(outer.Get(), nullptr);
    EXPECT_EQ(other.Get(), d);
    EXPECT_EQ(nothing.Get(), nullptr);
}

TEST_F(TreeListNotices, AllMemoryIsGivenBackWithTheList)
{
    FailingAllocator own;
    {
        TreeListJournal filled(own);
        for (int made = 0; made < 200; ++made) {
            CTreeListItem *item = filled.InsertItem(std::wstring(static_cast<std::size_t>(made) * 20, L'x'));
            filled.SetItemImage(filled.InsertItem(L"y", item), 1, 2, 3, 4);
            filled.SetItemSpareText(item, 0, L"spare");
            filled.SetItemModify(item, 0, kEditorEdit);
        }
        EXPECT_GT(own.out, 0);
        filled.answer = [](int, CTreeListItem *, int) -> std::int64_t { throw 1; };
    }
    EXPECT_EQ(own.out, 0) << "and nobody is told";
}
