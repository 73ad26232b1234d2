// Editing a row of a tree list, without a widget: steps, notices in order with their arguments, refusals.
#include "tests/controls/EditedTree.h"

using testing::ElementsAre;
using testing::IsEmpty;

// --- Begin -----------------------------------------------------------------------------------------------------------

TEST_F(TreeListEditing, BeginningNotesRowColumnAndAShadowOfAllTexts)
{
    EXPECT_EQ(tree.BeginModify(tree.a, 1), 1);
    ExpectInEdit(tree.a, 1);
    for (int column = 0; column < 4; ++column)
        EXPECT_EQ(tree.GetModifyShadow(column), tree.GetItemText(tree.a, column));
    EXPECT_EQ(tree.GetModifyShadow(3), L"a3");
    EXPECT_EQ(tree.GetModifyShadow(4), L"");
    EXPECT_EQ(tree.GetModifyShadow(-1), L"");
    EXPECT_THAT(tree.journal, ElementsAre("begin control a 1"));
    EXPECT_GT(tree.repaints, 0);
}

TEST_F(TreeListEditing, AReadOnlyListRefusesTheBegin)
{
    tree.SetStyle(StyleReadOnly);
    EXPECT_EQ(tree.BeginModify(tree.a, 1), 0);
    ExpectNothingInEdit();
    EXPECT_THAT(tree.journal, IsEmpty());
}

TEST_F(TreeListEditing, WhatIsNoCellIsNotEdited)
{
    EXPECT_EQ(tree.BeginModify(nullptr, 1), 0);
    EXPECT_EQ(tree.BeginModify(tree.GetRootItem(), 1), 0);
    EXPECT_EQ(tree.BeginModify(TreeListRoot(), 1), 0);
    EXPECT_EQ(tree.BeginModify(tree.a, -1), 0);
    EXPECT_EQ(tree.BeginModify(tree.a, 4), 0);
    ExpectNothingInEdit();
    EXPECT_THAT(tree.journal, IsEmpty());
}

TEST_F(TreeListEditing, ARowIsEditedInAColumnWithoutAnEditorToo)
{
    tree.SetColumnModify(2, kEditorStatic);
    EXPECT_EQ(tree.BeginModify(tree.a, 2), 1);
    EXPECT_TRUE(tree.InEdit());
    EXPECT_EQ(tree.GetModifyColumn(), 2);
}

TEST_F(TreeListEditing, AnEditThatTheOwnerEndsBeforeItsEditorIsShownHasNotBegun)
{
    tree.onNotice = [this](int code, CTreeListItem *, int) {
        if (code == NotifyBeginControl)
            tree.FinishModify();
    };
    EXPECT_EQ(tree.BeginModify(tree.a, 1), 0);
    ExpectNothingInEdit();
    EXPECT_EQ(tree.GetItemText(tree.a, 1), L"a1");
    EXPECT_THAT(tree.journal, ElementsAre("begin control a 1", "end control a 1", "end a 1"));
}

// --- Another column of the row ---------------------------------------------------------------------------------------

TEST_F(TreeListEditing, AColumnLeftUnchangedIsNotAskedFor)
{
    Begin(tree.a, 1);
    EXPECT_EQ(tree.BeginModify(tree.a, 2), 1);
    ExpectInEdit(tree.a, 2);
    EXPECT_THAT(tree.journal, ElementsAre("end control a 1", "begin control a 2"));
}

TEST_F(TreeListEditing, AColumnLeftWithAnotherTextIsAskedFor)
{
    Begin(tree.a, 1);
    tree.Type(L"new");
    std::wstring seen;
    tree.onNotice = [&](int code, CTreeListItem *item, int column) {
        if (code == NotifyColumnChanging)
            seen = tree.GetItemText(item, column);
    };
    EXPECT_EQ(tree.BeginModify(tree.a, 2), 1);
    ExpectInEdit(tree.a, 2);
    EXPECT_EQ(seen, L"new");
    EXPECT_EQ(tree.GetItemText(tree.a, 1), L"new");
    EXPECT_EQ(tree.GetModifyShadow(1), L"a1");
    EXPECT_THAT(tree.journal, ElementsAre("end control a 1", "column a 1", "begin control a 2"));
}

TEST_F(TreeListEditing, ARefusedColumnIsNotLeftAndItsEditorComesBack)
{
    Begin(tree.a, 1);
    tree.Type(L"new");
    tree.answers[NotifyColumnChanging] = -7;
    EXPECT_EQ(tree.BeginModify(tree.a, 2), 0);
    ExpectInEdit(tree.a, 1);
    EXPECT_EQ(tree.GetItemText(tree.a, 1), L"a1");
    EXPECT_EQ(tree.editor, L"new");
    EXPECT_THAT(tree.journal, ElementsAre("end control a 1", "column a 1", "restore a 1"));
}

TEST_F(TreeListEditing, BeginningTheSameCellAnewAsksForItsText)
{
    Begin(tree.a, 1);
    tree.Type(L"new");
    EXPECT_EQ(tree.BeginModify(tree.a, 1), 1);
    ExpectInEdit(tree.a, 1);
    EXPECT_EQ(tree.editor, L"new");
    EXPECT_THAT(tree.journal, ElementsAre("end control a 1", "column a 1", "begin control a 1"));
}

TEST_F(TreeListEditing, UpdatingTheColumnAloneKeepsTheRowInEdit)
{
    EXPECT_EQ(tree.UpdateModifyColumn(), 0);
    Begin(tree.a, 1);
    tree.Type(L"new");
    EXPECT_EQ(tree.UpdateModifyColumn(), 1);
    EXPECT_TRUE(tree.InEdit());
    EXPECT_FALSE(tree.Ending());
    EXPECT_FALSE(tree.shown);
    EXPECT_EQ(tree.GetItemText(tree.a, 1), L"new");
    EXPECT_THAT(tree.TakeJournal(), ElementsAre("end control a 1", "column a 1"));

    tree.answers[NotifyColumnChanging] = -1;
    EXPECT_EQ(tree.UpdateModifyColumn(), 0);
    EXPECT_TRUE(tree.InEdit());
    EXPECT_EQ(tree.GetItemText(tree.a, 1), L"a1");
    EXPECT_THAT(tree.journal, ElementsAre("column a 1"));
}

// --- Another row -----------------------------------------------------------------------------------------------------

TEST_F(TreeListEditing, AnotherRowEndsTheEditOfTheFirst)
{
    Begin(tree.a, 1);
    tree.Type(L"new");
    EXPECT_EQ(tree.BeginModify(tree.b, 2), 1);
    ExpectInEdit(tree.b, 2);
    EXPECT_EQ(tree.GetModifyShadow(2), L"b2");
    EXPECT_EQ(tree.GetItemText(tree.a, 1), L"new");
    EXPECT_THAT(tree.journal, ElementsAre("end control a 1", "column a 1", "row a 1", "end a 0", "begin control b 2"));
}

TEST_F(TreeListEditing, AnotherRowDoesNotBeginWhenTheFirstIsRefused)
{
    for (const int code : {NotifyColumnChanging, NotifyRowChanging}) {
        Begin(tree.a, 1);
        tree.Type(L"new");
        tree.answers = {{code, -1}};
        EXPECT_EQ(tree.BeginModify(tree.b, 2), 0);
        ExpectNothingInEdit();
        EXPECT_EQ(tree.GetItemText(tree.a, 1), L"a1");
        EXPECT_EQ(tree.TakeJournal().back(), "end a -1");
    }
}

TEST_F(TreeListEditing, AnotherRowThatANoticeDeletesIsNotBegun)
{
    Begin(tree.a, 1);
    tree.onNotice = [this](int code, CTreeListItem *, int) {
        if (code == NotifyEndEdit)
            tree.DeleteItem(std::exchange(tree.b, nullptr));
    };
    EXPECT_EQ(tree.BeginModify(tree.b, 2), 0);
    ExpectNothingInEdit();
}

// --- The end of the row ----------------------------------------------------------------------------------------------

TEST_F(TreeListEditing, UpdatingARowThatIsNotInEditIsNothing)
{
    EXPECT_EQ(tree.UpdateModify(), 0);
    EXPECT_EQ(tree.UpdateModifyColumns(), 0);
    EXPECT_EQ(tree.FinishModify(), 0);
    EXPECT_EQ(tree.CancelModify(), 0);
    EXPECT_THAT(tree.journal, IsEmpty());
}

TEST_F(TreeListEditing, ARowWithNothingChangedTellsTheEndWithOneAndNothingElse)
{
    Begin(tree.a, 1);
    const int repaints = tree.repaints;
    EXPECT_EQ(tree.UpdateModify(), 1);
    ExpectNothingInEdit();
    EXPECT_GT(tree.repaints, repaints);
    EXPECT_THAT(tree.journal, ElementsAre("end control a 1", "end a 1"));
}

TEST_F(TreeListEditing, AnAcceptedRowTellsColumnRowAndEnd)
{
    Begin(tree.a, 1);
    tree.Type(L"new");
    EXPECT_EQ(tree.UpdateModify(), 1);
    ExpectNothingInEdit();
    EXPECT_EQ(tree.GetItemText(tree.a, 1), L"new");
    EXPECT_THAT(tree.journal, ElementsAre("end control a 1", "column a 1", "row a 1", "end a 0"));
}

TEST_F(TreeListEditing, ARefusedColumnAtTheRowsEndLeavesTheRowAsBeforeTheEdit)
{
    Begin(tree.a, 1);
    tree.Type(L"one");
    ASSERT_EQ(tree.BeginModify(tree.a, 2), 1);
    tree.Type(L"two");
    tree.TakeJournal();
    tree.answers[NotifyColumnChanging] = -1;
    EXPECT_EQ(tree.UpdateModify(), 0);
    ExpectNothingInEdit();
    EXPECT_EQ(tree.GetItemText(tree.a, 1), L"a1");
    EXPECT_EQ(tree.GetItemText(tree.a, 2), L"a2");
    EXPECT_THAT(tree.journal, ElementsAre("end control a 2", "column a 2", "end a -1"));
}

TEST_F(TreeListEditing, ARefusedRowGetsAllItsTextsBack)
{
    Begin(tree.a, 1);
    tree.Type(L"one");
    ASSERT_EQ(tree.BeginModify(tree.a, 2), 1);
    tree.Type(L"two");
    tree.TakeJournal();
    tree.answers[NotifyRowChanging] = -1;
    EXPECT_EQ(tree.UpdateModify(), 0);
    ExpectNothingInEdit();
    EXPECT_EQ(tree.GetItemText(tree.a, 1), L"a1");
    EXPECT_EQ(tree.GetItemText(tree.a, 2), L"a2");
    EXPECT_THAT(tree.journal, ElementsAre("end control a 2", "column a 2", "row a 2", "end a -1"));
}

TEST_F(TreeListEditing, ARowChangedInAnEarlierColumnIsAskedForWithoutItsLastColumn)
{
    Begin(tree.a, 1);
    tree.Type(L"one");
    ASSERT_EQ(tree.BeginModify(tree.a, 2), 1);
    tree.TakeJournal();
    EXPECT_EQ(tree.UpdateModify(), 1);
    EXPECT_EQ(tree.GetItemText(tree.a, 1), L"one");
    EXPECT_THAT(tree.journal, ElementsAre("end control a 2", "row a 2", "end a 0"));
}

TEST_F(TreeListEditing, OnlyNegativeAnswersRefuse)
{
    tree.answers = {{NotifyColumnChanging, 5}, {NotifyRowChanging, std::int64_t{1} << 40}, {NotifyEndEdit, -1}};
    Begin(tree.a, 1);
    tree.Type(L"new");
    EXPECT_EQ(tree.UpdateModify(), 1);
    EXPECT_EQ(tree.GetItemText(tree.a, 1), L"new");

    tree.answers = {{NotifyRowChanging, -(std::int64_t{1} << 40)}}; // a 64-bit answer
    Begin(tree.a, 1);
    tree.Type(L"newer");
    EXPECT_EQ(tree.UpdateModify(), 0);
    EXPECT_EQ(tree.GetItemText(tree.a, 1), L"new");
}

TEST_F(TreeListEditing, FinishingEndsTheRowAsUpdatingDoes)
{
    Begin(tree.a, 1);
    EXPECT_EQ(tree.FinishModify(), 1);
    ExpectNothingInEdit();
    EXPECT_THAT(tree.TakeJournal(), ElementsAre("end control a 1", "end a 1"));

    Begin(tree.a, 1);
    tree.Type(L"new");
    EXPECT_EQ(tree.FinishModify(), 1);
    ExpectNothingInEdit();
    EXPECT_EQ(tree.GetItemText(tree.a, 1), L"new");
    EXPECT_THAT(tree.journal, ElementsAre("end control a 1", "column a 1", "row a 1", "end a 0"));
}

TEST_F(TreeListEditing, FinishingWithARefusedColumnKeepsTheRowInEditAndShowsTheEditorAgain)
{
    Begin(tree.a, 1);
    tree.Type(L"one");
    ASSERT_EQ(tree.BeginModify(tree.a, 2), 1);
    tree.Type(L"two");
    tree.TakeJournal();
    tree.answers[NotifyColumnChanging] = -1;
    EXPECT_EQ(tree.FinishModify(), 0);
    ExpectInEdit(tree.a, 2);
    EXPECT_EQ(tree.editor, L"two");
    EXPECT_EQ(tree.GetItemText(tree.a, 1), L"one");
    EXPECT_EQ(tree.GetItemText(tree.a, 2), L"a2");
    EXPECT_THAT(tree.TakeJournal(), ElementsAre("end control a 2", "column a 2", "restore a 2"));

    tree.answers.clear();
    tree.Type(L"three");
    EXPECT_EQ(tree.FinishModify(), 1);
    EXPECT_EQ(tree.GetItemText(tree.a, 2), L"three");
}

TEST_F(TreeListEditing, FinishingWithARefusedRowEndsTheEdit)
{
    Begin(tree.a, 1);
    tree.Type(L"new");
    tree.answers[NotifyRowChanging] = -1;
    EXPECT_EQ(tree.FinishModify(), 0);
    ExpectNothingInEdit();
    EXPECT_EQ(tree.GetItemText(tree.a, 1), L"a1");
    EXPECT_THAT(tree.journal, ElementsAre("end control a 1", "column a 1", "row a 1", "end a -1"));
}

TEST_F(TreeListEditing, UpdatingAllColumnsLeavesARefusedOneToTheCaller)
{
    Begin(tree.a, 1);
    tree.Type(L"new");
    tree.answers[NotifyColumnChanging] = -1;
    EXPECT_EQ(tree.UpdateModifyColumns(), 0);
    EXPECT_TRUE(tree.InEdit());
    EXPECT_FALSE(tree.Ending());
    EXPECT_FALSE(tree.shown);
    EXPECT_EQ(tree.GetItemText(tree.a, 1), L"a1");
    EXPECT_THAT(tree.journal, ElementsAre("end control a 1", "column a 1"));
}

TEST_F(TreeListEditing, CancellingTakesAllTextsFromTheShadowAndAsksNobody)
{
    Begin(tree.a, 1);
    tree.Type(L"one");
    ASSERT_EQ(tree.BeginModify(tree.a, 2), 1);
    tree.Type(L"two");
    tree.TakeJournal();
    EXPECT_EQ(tree.CancelModify(), 1);
    ExpectNothingInEdit();
    EXPECT_EQ(tree.GetItemText(tree.a, 1), L"a1");
    EXPECT_EQ(tree.GetItemText(tree.a, 2), L"a2");
    EXPECT_THAT(tree.journal, ElementsAre("end control a 2", "end a -1"));
}

TEST_F(TreeListEditing, TheEndIsToldWhileTheRowIsStillKnown)
{
    Begin(tree.a, 1);
    tree.Type(L"new");
    bool told = false;
    tree.onNotice = [&](int code, CTreeListItem *item, int) {
        if (code != NotifyEndEdit)
            return;
        told = true;
        EXPECT_EQ(tree.GetModifyItem(), item);
        EXPECT_EQ(tree.GetModifyShadow(1), L"a1");
        EXPECT_TRUE(tree.Ending());
    };
    tree.FinishModify();
    EXPECT_TRUE(told);
    ExpectNothingInEdit();
}

// --- Columns of the edit ---------------------------------------------------------------------------------------------

TEST_F(TreeListEditing, TheModifiedColumnIsTheFirstThatDiffersFromTheShadow)
{
    EXPECT_EQ(tree.GetModifiedColumnIndex(), -1);
    Begin(tree.a, 3);
    EXPECT_EQ(tree.GetModifiedColumnIndex(), -1);
    tree.SetItemText(tree.a, 3, L"x");
    EXPECT_EQ(tree.GetModifiedColumnIndex(), 3);
    tree.SetItemText(tree.a, 1, L"x");
    EXPECT_EQ(tree.GetModifiedColumnIndex(), 1);
    tree.SetItemText(tree.a, 1, L"a1");
    EXPECT_EQ(tree.GetModifiedColumnIndex(), 3);
}

TEST_F(TreeListEditing, TheKindOfACellIsItsOwnOrElseItsColumns)
{
    tree.SetColumnModify(1, kEditorCombo);
    EXPECT_EQ(tree.GetControl(tree.a, 1), kEditorCombo);
    tree.SetItemModify(tree.a, 1, kEditorStatic);
    EXPECT_EQ(tree.GetControl(tree.a, 1), kEditorStatic);
    EXPECT_EQ(tree.GetControl(tree.b, 1), kEditorCombo);
    tree.SetItemModify(tree.a, 1, -1);
    EXPECT_EQ(tree.GetControl(tree.a, 1), kEditorCombo);
    EXPECT_EQ(tree.GetControl(tree.a, 7), kEditorStatic);
    EXPECT_EQ(tree.GetControl(nullptr, 1), kEditorStatic);
}

TEST_F(TreeListEditing, ANewColumnIsNotEdited)
{
    const int column = tree.InsertColumn(L"new");
    EXPECT_EQ(tree.GetControl(tree.a, column), kEditorStatic);
}

TEST_F(TreeListEditing, TheNextAndPreviousColumnAreThoseShownThatCanBeEdited)
{
    EXPECT_EQ(tree.GetNextModifyCol(), -1);
    EXPECT_EQ(tree.GetPrevModifyCol(), -1);
    tree.SetColumnOrderArray({2, 0, 3, 1});
    Begin(tree.a, 0);
    EXPECT_EQ(tree.GetNextModifyCol(), 3);
    EXPECT_EQ(tree.GetPrevModifyCol(), 2);
    tree.SetColumnModify(3, kEditorStatic);
    EXPECT_EQ(tree.GetNextModifyCol(), 1);
    tree.SetItemModify(tree.a, 3, kEditorCombo);
    EXPECT_EQ(tree.GetNextModifyCol(), 3);
    tree.SetColumnWidth(3, 0);
    EXPECT_EQ(tree.GetNextModifyCol(), 1);
    tree.SetColumnFormat(1, kColumnHidden, 0);
    EXPECT_EQ(tree.GetNextModifyCol(), -1);
    tree.SetItemModify(tree.a, 2, kEditorStatic);
    EXPECT_EQ(tree.GetPrevModifyCol(), -1);
}

TEST_F(TreeListEditing, ThereIsNoWayRoundFromTheLastColumnToTheFirst)
{
    Begin(tree.a, 3);
    EXPECT_EQ(tree.GetNextModifyCol(), -1);
    ASSERT_EQ(tree.BeginModify(tree.a, 0), 1);
    EXPECT_EQ(tree.GetPrevModifyCol(), -1);
}

// --- What goes while it is in edit -----------------------------------------------------------------------------------

TEST_F(TreeListEditing, ARowDeletedInEditTellsItsEndBeforeItGoes)
{
    Begin(tree.a, 1);
    tree.Type(L"new");
    std::wstring text;
    tree.onNotice = [&](int code, CTreeListItem *item, int) {
        if (code == NotifyEndEdit)
            text = tree.GetItemText(item, 1);
    };
    tree.DeleteItem(tree.a);
    ExpectNothingInEdit();
    EXPECT_EQ(text, L"a1");
    ASSERT_GE(tree.journal.size(), 2u);
    EXPECT_EQ(tree.journal[0], "end control a 1");
    EXPECT_EQ(tree.journal[1], "end a -1");
    EXPECT_THAT(tree.journal, testing::Not(testing::Contains("destroyed in edit")));
}

TEST_F(TreeListEditing, ARowWhoseParentIsDeletedEndsItsEdit)
{
    Begin(tree.c, 1);
    tree.DeleteItem(tree.a);
    ExpectNothingInEdit();
    EXPECT_EQ(tree.journal[1], "end c -1");
}

TEST_F(TreeListEditing, AnotherRowThatIsDeletedLeavesTheEdit)
{
    Begin(tree.a, 1);
    tree.DeleteItem(tree.b);
    ExpectInEdit(tree.a, 1);
    tree.DeleteItem(tree.c);
    ExpectInEdit(tree.a, 1);
}

TEST_F(TreeListEditing, EmptyingTheListEndsTheEdit)
{
    Begin(tree.c, 1);
    tree.DeleteAllItems();
    ExpectNothingInEdit();
    EXPECT_EQ(tree.journal[1], "end c -1");
    Begin(tree.AddRow(L'd', TreeListRoot()), 1);
    tree.DeleteItem(nullptr);
    ExpectNothingInEdit();
}

TEST_F(TreeListEditing, ChildrenDeletedByACollapseEndTheirEdit)
{
    tree.Expand(tree.a, kExpand);
    Begin(tree.c, 1);
    EXPECT_EQ(tree.Expand(tree.a, kCollapseAndDelete), 0);
    ExpectNothingInEdit();
    EXPECT_FALSE(tree.ItemHasChildren(tree.a));
    EXPECT_EQ(tree.journal[1], "end c -1");
}

TEST_F(TreeListEditing, ARowWhoseChildrenACollapseDeletesStaysInEdit)
{
    tree.Expand(tree.a, kExpand);
    Begin(tree.a, 1);
    tree.Type(L"new");
    EXPECT_EQ(tree.Expand(tree.a, kCollapseAndDelete), 0);
    ExpectInEdit(tree.a, 1);
    EXPECT_EQ(tree.FinishModify(), 1);
    EXPECT_EQ(tree.GetItemText(tree.a, 1), L"new");
}

TEST_F(TreeListEditing, ARowInEditThatIsMovedStaysInEdit)
{
    Begin(tree.c, 1);
    tree.Type(L"new");
    tree.MoveAfterItem(tree.c, TreeListRoot(), TreeListFirst());
    ExpectInEdit(tree.c, 1);
    EXPECT_EQ(tree.FinishModify(), 1);
    EXPECT_EQ(tree.GetItemText(tree.c, 1), L"new");
}

TEST_F(TreeListEditing, AnOwnerWhoBeginsARowThatIsBeingDeletedIsRefusedOrForgotten)
{
    Begin(tree.a, 1);
    tree.onNotice = [this](int code, CTreeListItem *item, int) {
        if (code == NotifySelChanging)
            tree.BeginModify(item, 1);
    };
    tree.DeleteItem(tree.a);
    ExpectNothingInEdit();
    EXPECT_THAT(tree.journal, testing::Not(testing::Contains("destroyed in edit")));
}

TEST_F(TreeListEditing, AnInsertedColumnBelongsToTheShadow)
{
    Begin(tree.a, 1);
    tree.Type(L"new");
    const int column = tree.InsertColumn(L"late");
    ExpectInEdit(tree.a, 1);
    EXPECT_EQ(tree.GetModifiedColumnIndex(), -1);
    tree.SetItemText(tree.a, column, L"x");
    EXPECT_EQ(tree.GetModifiedColumnIndex(), column);
    EXPECT_EQ(tree.CancelModify(), 1);
    EXPECT_EQ(tree.GetItemText(tree.a, column), L"");
}

TEST_F(TreeListEditing, ADeletedColumnBeforeTheOneInEditMovesIt)
{
    Begin(tree.a, 2);
    tree.Type(L"new");
    tree.DeleteColumn(0);
    ExpectInEdit(tree.a, 1);
    EXPECT_EQ(tree.GetModifyShadow(1), L"a2");
    EXPECT_EQ(tree.FinishModify(), 1);
    EXPECT_EQ(tree.GetItemText(tree.a, 1), L"new");
    EXPECT_EQ(tree.GetItemText(tree.a, 2), L"a3");
}

TEST_F(TreeListEditing, ADeletedColumnBehindTheOneInEditLeavesIt)
{
    Begin(tree.a, 1);
    tree.DeleteColumn(3);
    ExpectInEdit(tree.a, 1);
    EXPECT_EQ(tree.GetModifyShadow(3), L"");
}

TEST_F(TreeListEditing, ADeletedColumnInEditEndsTheRowWithItsOtherTexts)
{
    Begin(tree.a, 0);
    tree.Type(L"zero");
    ASSERT_EQ(tree.BeginModify(tree.a, 1), 1);
    tree.Type(L"lost with its column");
    tree.TakeJournal();
    tree.DeleteColumn(1);
    ExpectNothingInEdit();
    EXPECT_EQ(tree.GetItemText(tree.a, 0), L"zero");
    EXPECT_EQ(tree.GetItemText(tree.a, 1), L"a2");
    EXPECT_THAT(tree.journal, ElementsAre("end control a -1", "row a -1", "end a 0"));
}
