// Selection and focus of the tree list.
#include "tests/controls/TreeListJournal.h"

#include <gmock/gmock.h>

#include <map>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class TreeListSelection : public testing::Test {
protected:
    TreeListSelection()
    {
        list.InsertColumn(L"second");
        for (const wchar_t *text : {L"a", L"b", L"c", L"d"})
            items.push_back(list.InsertItem(text));
        a = items[0];
        b = items[1];
        c = items[2];
        Forget();
    }
    void Forget()
    {
        list.notes.clear();
        list.steps.clear();
        list.ensured.clear();
        list.changes.clear();
    }
    /// Newest first.
    std::wstring Selected()
    {
        std::wstring texts;
        for (TreeListPosition at = list.GetFirstSelectedItemPosition(); at != -1;)
            texts += list.GetItemText(list.GetNextSelectedItem(at));
        return texts;
    }
    std::vector<int> Codes() const
    {
        std::vector<int> codes;
        for (const TreeListNote &note : list.notes)
            codes.push_back(note.code);
        return codes;
    }
    void Veto(int code, std::int64_t with)
    {
        list.answer = [=](int told, CTreeListItem *, int) { return told == code ? with : 0; };
    }

    TreeListJournal list;
    std::vector<CTreeListItem *> items;
    CTreeListItem *a, *b, *c;
};

} // namespace

TEST_F(TreeListSelection, SelectingTellsBeforeAndAfterThenShowsTheItemAndRepaints)
{
    EXPECT_EQ(list.SelectItem(b, 1), 1);
    EXPECT_THAT(list.notes, ElementsAre(TreeListNote{NotifySelChanging, b, 1}, TreeListNote{NotifySelChanged, b, 1}));
    EXPECT_THAT(list.steps, ElementsAre("ensure visible", "repaint"));
    EXPECT_EQ(list.GetSelectedItem(), b);
    EXPECT_EQ(list.GetFocusItem(), b);
    EXPECT_EQ(list.GetSelectColumn(), 1);
    EXPECT_TRUE(b->Has(kItemSelected));
}

TEST_F(TreeListSelection, TheNewestSelectedInItsColumnIsOnlyShown)
{
    list.SelectItem(b, 1);
    Forget();
    EXPECT_EQ(list.SelectItem(b, 1), 1);
    EXPECT_THAT(list.notes, IsEmpty());
    EXPECT_THAT(list.steps, ElementsAre("ensure visible", "repaint"));
}

TEST_F(TreeListSelection, TheNewestSelectedInItsColumnDoesNotFlipAndKeepsTheOthers)
{
    list.SetStyle(StyleMultiSelect);
    list.SelectItem(a);
    list.SelectItem(b, 0, false);
    list.SelectItem(b, 0, false);
    EXPECT_EQ(Selected(), L"ba");
    list.SelectItem(b, 0, true);
    EXPECT_EQ(Selected(), L"ba");
}

TEST_F(TreeListSelection, AnotherColumnOfTheSelectedItemIsAChange)
{
    list.SelectItem(b, 1);
    Forget();
    list.SelectItem(b, 0);
    EXPECT_THAT(Codes(), ElementsAre(NotifySelChanging, NotifySelChanged));
    EXPECT_EQ(Selected(), L"b");
    EXPECT_EQ(list.GetSelectColumn(), 0);
}

TEST_F(TreeListSelection, MinusOneAndMinusTwoStopIt)
{
    list.SelectItem(a, 1);
    for (const int veto : {-1, -2}) {
        Veto(NotifySelChanging, veto);
        Forget();
        EXPECT_EQ(list.SelectItem(b, 0), 0);
        EXPECT_EQ(list.SelectItem(nullptr, 0), 0);
        EXPECT_THAT(Codes(), ElementsAre(NotifySelChanging, NotifySelChanging));
        EXPECT_THAT(list.steps, IsEmpty());
        EXPECT_EQ(Selected(), L"a");
        EXPECT_EQ(list.GetFocusItem(), a);
        EXPECT_EQ(list.GetSelectColumn(), 1);
    }
    Veto(NotifySelChanging, -3);
    EXPECT_EQ(list.SelectItem(b, 0), 1) << "other answers don't";
    EXPECT_EQ(Selected(), L"b");
}

TEST_F(TreeListSelection, NothingUnselectsAllAndShowsNothing)
{
    list.SetStyle(StyleMultiSelect);
    list.SelectItem(a);
    list.SelectItem(b, 0, false);
    for (const bool clear : {true, false}) {
        Forget();
        EXPECT_EQ(list.SelectItem(nullptr, 1, clear), 1);
        EXPECT_THAT(list.notes, ElementsAre(TreeListNote{NotifySelChanging, nullptr, 1},
                                            TreeListNote{NotifySelChanged, nullptr, 1}));
        EXPECT_THAT(list.steps, ElementsAre("repaint"));
        EXPECT_EQ(Selected(), L"");
        EXPECT_EQ(list.GetSelectedCount(), 0);
        EXPECT_FALSE(a->Has(kItemSelected) || b->Has(kItemSelected));
        EXPECT_EQ(list.GetFocusItem(), nullptr);
        EXPECT_EQ(list.GetSelectColumn(), 1);
    }
}

TEST_F(TreeListSelection, WithoutMultiSelectionTheOneBeforeIsUnselected)
{
    for (const bool clear : {true, false}) {
        list.SelectItem(a, 0, clear);
        list.SelectItem(b, 0, clear);
        EXPECT_EQ(Selected(), L"b");
        EXPECT_FALSE(a->Has(kItemSelected));
    }
}

TEST_F(TreeListSelection, WithMultiSelectionAndClearAllOthersAreUnselected)
{
    list.SetStyle(StyleMultiSelect);
    list.SelectItem(a);
    list.SelectItem(b, 0, false);
    list.SelectItem(c, 0, true);
    EXPECT_EQ(Selected(), L"c");
    EXPECT_EQ(list.GetSelectedCount(), 1);
}

TEST_F(TreeListSelection, WithMultiSelectionAndNoClearTheItemFlips)
{
    list.SetStyle(StyleMultiSelect);
    list.SelectItem(a, 0, false);
    list.SelectItem(b, 0, false);
    list.SelectItem(c, 0, false);
    EXPECT_EQ(Selected(), L"cba") << "newest first";
    list.SelectItem(b, 0, false);
    EXPECT_EQ(Selected(), L"ca");
    EXPECT_EQ(list.GetFocusItem(), b) << "the focus goes to the one that was unselected";
    list.SelectItem(b, 1, false);
    EXPECT_EQ(Selected(), L"bca");
}

TEST_F(TreeListSelection, ActiveMakesASelectedItemTheNewestWithoutNotices)
{
    list.SetStyle(StyleMultiSelect);
    for (CTreeListItem *item : {a, b, c})
        list.SelectItem(item, 0, false);
    Forget();
    EXPECT_EQ(list.ActiveItem(a, 1), 1);
    EXPECT_EQ(Selected(), L"acb");
    EXPECT_EQ(list.GetFocusItem(), a);
    EXPECT_EQ(list.GetSelectColumn(), 1);
    EXPECT_THAT(list.notes, IsEmpty());
    EXPECT_THAT(list.ensured, ElementsAre(a));
}

TEST_F(TreeListSelection, ActiveSelectsNothing)
{
    list.SetStyle(StyleMultiSelect);
    list.SelectItem(a);
    list.ActiveItem(b, 0);
    EXPECT_EQ(Selected(), L"a");
    EXPECT_EQ(list.GetFocusItem(), b);
}

TEST_F(TreeListSelection, ActiveInSingleSelectionSetsColumnAndFocusAndShowsTheItem)
{
    list.SelectItem(a, 0);
    Forget();
    EXPECT_EQ(list.ActiveItem(a, 1), 1);
    EXPECT_EQ(list.GetSelectColumn(), 1);
    EXPECT_EQ(list.GetFocusItem(), a);
    EXPECT_THAT(list.ensured, ElementsAre(a));
    EXPECT_EQ(Selected(), L"a");
}

TEST_F(TreeListSelection, QuietSelectionTellsNobody)
{
    EXPECT_EQ(list.Select(a), 1);
    EXPECT_EQ(list.Select(b), 1);
    EXPECT_EQ(Selected(), L"b");
    EXPECT_EQ(list.Select(b, false), 1);
    EXPECT_EQ(list.Select(b, false), 1);
    EXPECT_EQ(Selected(), L"");
    list.SetStyle(StyleMultiSelect);
    list.Select(a);
    list.Select(b);
    list.Select(a);
    EXPECT_EQ(Selected(), L"ba") << "what is selected keeps its place";
    EXPECT_THAT(list.notes, IsEmpty());
    EXPECT_THAT(list.ensured, IsEmpty());
}

TEST_F(TreeListSelection, TheMarkIsTheFocusItem)
{
    EXPECT_EQ(list.SetSelectionMark(a), nullptr);
    EXPECT_EQ(list.SetSelectionMark(b), a);
    EXPECT_EQ(list.GetSelectionMark(), b);
    EXPECT_EQ(list.GetFocusItem(), b);
    EXPECT_EQ(list.SetSelectionMark(nullptr), b);
    EXPECT_EQ(list.GetFocusItem(), nullptr);
}

TEST_F(TreeListSelection, ASelectedItemAndItsDescendantsAreInTheSelectionsTree)
{
    CTreeListItem *inner = list.InsertItem(L"x", list.InsertItem(L"w", a));
    list.Select(a);
    EXPECT_TRUE(list.IsInSelectsTree(a));
    EXPECT_TRUE(list.IsInSelectsTree(inner));
    EXPECT_FALSE(list.IsInSelectsTree(b));
    EXPECT_FALSE(list.IsInSelectsTree(nullptr));
    EXPECT_FALSE(list.IsInSelectsTree(list.GetRootItem()));
}

TEST_F(TreeListSelection, WhatCannotBeSelectedChangesNothing)
{
    TreeListJournal other;
    CTreeListItem *foreign = other.InsertItem(L"f");
    list.SelectItem(a, 0);
    Forget();
    EXPECT_EQ(list.SelectItem(foreign), 0);
    EXPECT_EQ(list.SelectItem(list.GetRootItem()), 0);
    EXPECT_EQ(list.SelectItem(b, 2), 0);
    EXPECT_EQ(list.SelectItem(b, -2), 0);
    EXPECT_EQ(list.Select(foreign), 0);
    EXPECT_EQ(list.Select(nullptr), 0);
    EXPECT_EQ(list.Select(list.GetRootItem()), 0);
    EXPECT_EQ(list.ActiveItem(foreign, 0), 0);
    EXPECT_EQ(list.ActiveItem(nullptr, 0), 0);
    EXPECT_EQ(list.ActiveItem(b, 2), 0);
    EXPECT_EQ(list.SetSelectionMark(foreign), nullptr);
    EXPECT_EQ(list.SetSelectionMark(list.GetRootItem()), nullptr);
    EXPECT_EQ(Selected(), L"a");
    EXPECT_EQ(list.GetFocusItem(), a);
    EXPECT_EQ(list.GetSelectColumn(), 0);
    EXPECT_THAT(list.notes, IsEmpty());
    EXPECT_THAT(list.ensured, IsEmpty());
}

TEST_F(TreeListSelection, PositionsStayGoodWhileSelectedItemsAreDeleted)
{
    list.SetStyle(StyleMultiSelect);
    for (CTreeListItem *item : items)
        list.Select(item);
    std::wstring seen;
    for (TreeListPosition at = list.GetFirstSelectedItemPosition(); at != -1;) {
        CTreeListItem *item = list.GetNextSelectedItem(at);
        seen += list.GetItemText(item);
        list.DeleteItem(item);
    }
    EXPECT_EQ(seen, L"dcba");
    EXPECT_EQ(list.GetCount(), 0);
    TreeListPosition end = -1;
    EXPECT_EQ(list.GetNextSelectedItem(end), nullptr);
    end = 100;
    EXPECT_EQ(list.GetNextSelectedItem(end), nullptr);
    EXPECT_EQ(end, -1);
}

TEST_F(TreeListSelection, TheListOfSelectedItemsDoesNotGrowWithChanges)
{
    list.SetStyle(StyleMultiSelect);
    list.Select(a);
    list.Select(b);
    for (int turn = 0; turn < 10000; ++turn)
        list.ActiveItem(turn % 2 ? b : a, 0);
    EXPECT_EQ(Selected(), L"ba");
    EXPECT_LT(list.GetFirstSelectedItemPosition(), 100);
}

TEST_F(TreeListSelection, TheViewIsToldWhoBecomesAndCeasesToBeTheNewestOrTheFocusItem)
{
    list.SetStyle(StyleMultiSelect);
    const auto told = [this] {
        std::map<std::wstring, int> bitsOf;
        for (const auto &[item, bits] : list.changes)
            bitsOf[item->Text(0)] |= static_cast<int>(bits);
        std::wstring texts;
        for (const auto &[text, bits] : bitsOf)
            texts += bits == kItemSelected ? text : L"?";
        Forget();
        return texts;
    };
    list.Select(a);
    EXPECT_EQ(told(), L"a");
    list.Select(b);
    EXPECT_EQ(told(), L"ab") << "a is no longer the newest";
    list.SelectItem(c, 0, false);
    EXPECT_EQ(told(), L"bc");
    list.SelectItem(c, 1, false);
    EXPECT_EQ(told(), L"bc") << "b is the newest again";
    list.Select(b, false);
    EXPECT_EQ(told(), L"ab");
    list.Select(b);
    told();
    list.ActiveItem(a, 0);
    EXPECT_EQ(told(), L"abc") << "c loses the focus";
    list.SetSelectionMark(items[3]);
    EXPECT_EQ(told(), L"ad");
}

// --- Deletion ---

TEST_F(TreeListSelection, ADeletedSelectedItemLeavesTheSelection)
{
    list.SetStyle(StyleMultiSelect);
    for (CTreeListItem *item : {a, b, c})
        list.SelectItem(item, 0, false);
    list.DeleteItem(c);
    EXPECT_EQ(Selected(), L"ba");
    EXPECT_EQ(list.GetSelectedItem(), b);
    list.DeleteItem(a);
    EXPECT_EQ(Selected(), L"b");
    EXPECT_EQ(list.GetSelectedCount(), 1);
}

TEST_F(TreeListSelection, ADeletedFocusItemClearsTheFocus)
{
    list.SelectItem(a);
    list.DeleteItem(b);
    EXPECT_EQ(list.GetFocusItem(), a);
    list.DeleteItem(a);
    EXPECT_EQ(list.GetFocusItem(), nullptr);
}

TEST_F(TreeListSelection, ManySelectedItemsAreDeletedInAnyOrder)
{
    constexpr int kMany = 100000; // a walk over the selection for each would take minutes
    list.SetStyle(StyleMultiSelect);
    for (const bool oldestFirst : {true, false}) {
        list.DeleteAllItems();
        std::vector<CTreeListItem *> made;
        for (int row = 0; row < kMany; ++row) {
            made.push_back(list.InsertItem(L""));
            list.Select(made.back());
        }
        ASSERT_EQ(list.GetSelectedCount(), kMany);
        if (oldestFirst) {
            for (CTreeListItem *item : made)
                list.DeleteItem(item);
        } else {
            while (CTreeListItem *item = list.GetSelectedItem())
                list.DeleteItem(item);
        }
        EXPECT_EQ(list.GetSelectedCount(), 0);
        EXPECT_EQ(list.GetCount(), 0);
        Forget();
        list.deleted.clear();
    }
}

// --- Columns that there are not --------------------------------------------------------------------------------------

TEST_F(TreeListSelection, NothingIsSelectedInAColumnThatThereIsNot)
{
    list.SelectItem(a, 1);
    Forget();
    for (const int column : {-2, 2, 99}) {
        EXPECT_EQ(list.SelectItem(nullptr, column), 0);
        EXPECT_EQ(list.SelectItem(b, column), 0);
    }
    EXPECT_THAT(list.notes, IsEmpty());
    EXPECT_EQ(Selected(), L"a");
    EXPECT_EQ(list.GetSelectColumn(), 1);
}

TEST_F(TreeListSelection, AColumnThatItsNoticeDeletesIsNotTheSelectedOne)
{
    list.answer = [this](int code, CTreeListItem *, int) {
        if (code == NotifySelChanging)
            list.DeleteColumn(1);
        return 0;
    };
    EXPECT_EQ(list.SelectItem(a, 1), 1);
    EXPECT_EQ(list.GetSelectColumn(), -1);
    EXPECT_THAT(list.notes.back(), (TreeListNote{NotifySelChanged, a, -1}));
    list.answer = nullptr;
    EXPECT_EQ(list.SelectItem(b, list.GetSelectColumn()), 1); // so do the keys
}

TEST_F(TreeListSelection, AColumnIsFollowedToItsNewNumber)
{
    list.answer = [this](int code, CTreeListItem *, int) {
        if (code == NotifySelChanging)
            list.DeleteColumn(0);
        return 0;
    };
    EXPECT_EQ(list.SelectItem(a, 1), 1);
    EXPECT_EQ(list.GetSelectColumn(), 0);
}
