// The keyboard of the tree list: keys of a row in edit, keys of the rows, and what is left to the window.
#include "tests/treelist/EditFixture.h"

#include <QDialog>
#include <QShortcut>
#include <QVBoxLayout>

using testing::ElementsAre;
using testing::IsEmpty;
using Told = JournalOwner::Told;

class KeysTest : public TreeListEditTest {
protected:
    void Select(CTreeListItem *item, int column = 0)
    {
        list->SelectItem(item, column, true);
        owner.told.clear();
    }
    void ExpectSelected(CTreeListItem *item) const
    {
        EXPECT_EQ(list->GetSelectedItem(), item);
        EXPECT_EQ(list->GetFocusItem(), item);
        EXPECT_EQ(list->GetSelectedCount(), 1);
    }
    CTreeListItem *Row(int index) const { return list->GetFirstShowItem(index); }
    int LastRowOfPage() const { return list->GetTopIndex() + list->GetCountPerPage(); }
    /// 40 rows without children and nothing else; 13 whole rows fit.
    void CreateRows()
    {
        CreateEmpty();
        AddRows(40);
        Show();
        ASSERT_GT(list->GetCountPerPage(), 5);
        ASSERT_LT(list->GetCountPerPage(), 20);
    }
};

// --- A row in edit ---------------------------------------------------------------------------------------------------

TEST_F(KeysTest, TabGoesToTheNextEditableColumnAndShiftTabToThePrevious)
{
    CreateEdited();
    list->SetColumnOrderArray({1, 0, 2});
    Begin(pipe12, 1);
    EXPECT_TRUE(Key(Qt::Key_Tab));
    EXPECT_EQ(list->GetModifyColumn(), 2);
    EXPECT_TRUE(Combo().isVisible());
    EXPECT_TRUE(Combo().GetList()->hasFocus());
    EXPECT_TRUE(Key(Qt::Key_Backtab, Qt::ShiftModifier));
    EXPECT_EQ(list->GetModifyColumn(), 1);
    EXPECT_TRUE(Edit().hasFocus());
    EXPECT_TRUE(Key(Qt::Key_Tab));
    EXPECT_TRUE(Key(Qt::Key_Tab, Qt::ShiftModifier)); // as some desktops send it
    EXPECT_EQ(list->GetModifyColumn(), 1);
}

TEST_F(KeysTest, TabInTheLastEditableColumnStaysThere)
{
    CreateEdited();
    Begin(pipe12, 2);
    Combo().SetCurSel(1);
    EXPECT_TRUE(Key(Qt::Key_Tab));
    EXPECT_EQ(list->GetModifyColumn(), 2);
    EXPECT_TRUE(Combo().GetList()->hasFocus());
    EXPECT_EQ(Combo().GetWindowText(), L"area");
    EXPECT_THAT(owner.told, IsEmpty());
    Begin(pipe12, 1);
    EXPECT_TRUE(Key(Qt::Key_Backtab, Qt::ShiftModifier));
    EXPECT_EQ(list->GetModifyColumn(), 1);
}

TEST_F(KeysTest, TabTellsOfTheColumnThatItLeaves)
{
    CreateEdited();
    Begin(pipe12, 1);
    TypeOver(QStringLiteral("50"));
    Key(Qt::Key_Tab);
    EXPECT_THAT(owner.told,
                ElementsAre(Told{NotifyEndControl, L"Pipe 1-2", 1}, Told{NotifyColumnChanging, L"Pipe 1-2", 1},
                            Told{NotifyBeginControl, L"Pipe 1-2", 2}));
    EXPECT_EQ(Text(pipe12, 1), L"50");
    EXPECT_TRUE(InEdit());
}

TEST_F(KeysTest, TabOutOfARefusedColumnStaysInIt)
{
    CreateEdited();
    Begin(pipe12, 1);
    TypeOver(QStringLiteral("nonsense"));
    Answer(NotifyColumnChanging, -1);
    EXPECT_TRUE(Key(Qt::Key_Tab));
    EXPECT_EQ(list->GetModifyColumn(), 1);
    EXPECT_EQ(Edit().text(), QStringLiteral("nonsense"));
    EXPECT_TRUE(Edit().hasFocus());
}

TEST_F(KeysTest, EnterFinishesTheEdit)
{
    for (const int key : {Qt::Key_Return, Qt::Key_Enter}) {
        if (!outfall1)
            CreateEdited();
        list->SetItemText(pipe12, 1, L"42.50");
        Begin(pipe12, 1);
        TypeOver(QStringLiteral("50"));
        EXPECT_TRUE(Key(key));
        EXPECT_FALSE(InEdit());
        EXPECT_EQ(Text(pipe12, 1), L"50");
        EXPECT_TRUE(list->hasFocus());
        EXPECT_EQ(owner.told.back(), (Told{NotifyEndEdit, L"Pipe 1-2", 0}));
    }
}

TEST_F(KeysTest, EscapeCancelsTheEdit)
{
    CreateEdited();
    Begin(pipe12, 1);
    TypeOver(QStringLiteral("50"));
    EXPECT_TRUE(Key(Qt::Key_Escape));
    EXPECT_FALSE(InEdit());
    EXPECT_EQ(Text(pipe12, 1), L"42.50");
    EXPECT_TRUE(list->hasFocus());
    EXPECT_EQ(owner.told.back(), (Told{NotifyEndEdit, L"Pipe 1-2", -1}));
    EXPECT_FALSE(Key(Qt::Key_Escape)); // not in edit any more: the dialog's
}

TEST_F(KeysTest, OtherKeysBelongToTheEditor)
{
    CreateEdited();
    Select(pipe12, 1);
    Begin(pipe12, 1);
    for (const int key : {Qt::Key_Home, Qt::Key_Right, Qt::Key_Up, Qt::Key_Down, Qt::Key_PageDown, Qt::Key_Left})
        Key(key);
    Key(Qt::Key_Space, Qt::NoModifier, QStringLiteral(" "));
    EXPECT_TRUE(InEdit());
    EXPECT_EQ(list->GetSelectColumn(), 1);
    ExpectSelected(pipe12);
    EXPECT_EQ(Edit().text(), QStringLiteral(" 42.50"));
    EXPECT_THAT(owner.told, IsEmpty());
}

TEST_F(KeysTest, TheKeysOfADropDownOpenIt)
{
    CreateEdited();
    Begin(pipe12, 2);
    for (const auto &[key, keys] : {std::pair{Qt::Key_F4, Qt::NoModifier}, std::pair{Qt::Key_Down, Qt::AltModifier}}) {
        Key(key, keys);
        Settle();
        EXPECT_NE(QApplication::activePopupWidget(), nullptr) << key;
        Combo().ShowDropDown(false);
        Settle();
        EXPECT_TRUE(InEdit());
        EXPECT_TRUE(Combo().GetList()->hasFocus());
    }
}

TEST_F(KeysTest, AKeyOfAShownEditorIsTakenBeforeTheWindowsShortcuts)
{
    CreateEdited();
    int shortcuts = 0;
    for (const int key : {Qt::Key_Escape, Qt::Key_Return})
        QObject::connect(new QShortcut(QKeySequence(key), &window), &QShortcut::activated, [&] { ++shortcuts; });
    Begin(pipe12, 1);
    for (const int key : {Qt::Key_Escape, Qt::Key_Return, Qt::Key_Tab}) {
        QKeyEvent ask(QEvent::ShortcutOverride, key, Qt::NoModifier);
        ask.ignore();
        QApplication::sendEvent(&Edit(), &ask);
        EXPECT_TRUE(ask.isAccepted()) << key;
    }
    QKeyEvent other2(QEvent::ShortcutOverride, Qt::Key_F5, Qt::NoModifier);
    other2.ignore();
    QApplication::sendEvent(&Edit(), &other2);
    EXPECT_FALSE(other2.isAccepted());
    EXPECT_EQ(shortcuts, 0);
}

TEST_F(KeysTest, ADialogStaysOpenWhileItsListIsInEdit)
{
    QDialog dialog;
    auto *tree = new CTreeListCtrl(&dialog);
    (new QVBoxLayout(&dialog))->addWidget(tree);
    auto *standard = new QPushButton(QStringLiteral("OK"), &dialog);
    standard->setDefault(true);
    QObject::connect(standard, &QPushButton::clicked, &dialog, &QDialog::accept);
    ASSERT_NE(tree->Create(kTreeStyle, QRect(), &dialog, 1), 0);
    tree->SetColumnWidth(0, 100);
    tree->SetColumnModify(0, kEditorEdit);
    CTreeListItem *item = tree->InsertItem(L"row");
    dialog.show();
    dialog.activateWindow();
    Settle();
    tree->setFocus();
    ASSERT_EQ(tree->BeginModify(item, 0), 1);
    Key(Qt::Key_Return);
    EXPECT_TRUE(dialog.isVisible());
    EXPECT_FALSE(tree->GetState(kControlEditing));
    ASSERT_EQ(tree->BeginModify(item, 0), 1);
    Key(Qt::Key_Escape);
    EXPECT_TRUE(dialog.isVisible());
    EXPECT_FALSE(tree->GetState(kControlEditing));
    Key(Qt::Key_Escape);
    EXPECT_FALSE(dialog.isVisible());
}

TEST_F(KeysTest, TheKeysOfEditingWorkInACellWithoutAnEditorThatWasClicked)
{
    CreateEdited();
    Click(PlaceOf(pipe12));
    ASSERT_TRUE(InEdit());
    EXPECT_TRUE(Key(Qt::Key_Tab));
    EXPECT_EQ(list->GetModifyColumn(), 1);
    EXPECT_TRUE(Edit().hasFocus());
    Key(Qt::Key_Escape);

    Click(PlaceOf(pipe12));
    ASSERT_TRUE(InEdit());
    EXPECT_TRUE(Key(Qt::Key_Return));
    EXPECT_FALSE(InEdit());
    Click(PlaceOf(pipe12));
    EXPECT_TRUE(Key(Qt::Key_Escape));
    EXPECT_FALSE(InEdit());
}

TEST_F(KeysTest, EscapeCancelsARowInEditThatIsNotTheFocusItem)
{
    CreateEdited();
    Select(pipe23);
    Begin(pipe12, 0);
    list->SetItemText(pipe12, 1, L"50");
    EXPECT_TRUE(Key(Qt::Key_Escape));
    EXPECT_FALSE(InEdit());
    EXPECT_EQ(Text(pipe12, 1), L"42.50");
    ExpectSelected(pipe23);
}

TEST_F(KeysTest, ARowThatWasClickedIsLeftByTheArrowsAndEnterEditsTheNewOne)
{
    CreateEdited();
    Click(PlaceOf(pipe12));
    Key(Qt::Key_Down);
    ExpectSelected(areaA);
    Key(Qt::Key_Right);
    EXPECT_EQ(list->GetSelectColumn(), 1);
    Key(Qt::Key_Return);
    EXPECT_EQ(list->GetModifyItem(), areaA);
    EXPECT_EQ(list->GetModifyColumn(), 1);
    EXPECT_TRUE(Edit().hasFocus());
    EXPECT_EQ(owner.CountOf(NotifyEndEdit), 1);
}

TEST_F(KeysTest, TabLeavesAListInWhichNoColumnCanBeEdited)
{
    CreateEdited();
    list->SetColumnModify(1, kEditorStatic);
    list->SetColumnModify(2, kEditorStatic);
    Click(PlaceOf(pipe12));
    ASSERT_TRUE(InEdit());
    Key(Qt::Key_Tab);
    EXPECT_TRUE(other->hasFocus());
    EXPECT_FALSE(InEdit());
}

// --- Rows ------------------------------------------------------------------------------------------------------------

TEST_F(KeysTest, EnterEditsTheFocusItemInTheSelectedColumn)
{
    CreateEdited();
    Select(pipe12, 1);
    EXPECT_TRUE(Key(Qt::Key_Return));
    EXPECT_EQ(list->GetModifyItem(), pipe12);
    EXPECT_EQ(list->GetModifyColumn(), 1);
    Key(Qt::Key_Escape);
    EXPECT_TRUE(Key(Qt::Key_Enter, Qt::KeypadModifier));
    EXPECT_EQ(list->GetModifyItem(), pipe12);
    Key(Qt::Key_Escape);
    EXPECT_FALSE(InEdit());
}

TEST_F(KeysTest, EnterInAListToReadBelongsToTheDialog)
{
    CreateEdited(kTreeStyle | StyleReadOnly);
    Select(pipe12, 1);
    QKeyEvent ask(QEvent::ShortcutOverride, Qt::Key_Return, Qt::NoModifier);
    ask.ignore();
    QApplication::sendEvent(list, &ask);
    EXPECT_FALSE(ask.isAccepted());
    EXPECT_FALSE(Key(Qt::Key_Return));
    EXPECT_FALSE(Key(Qt::Key_Enter, Qt::KeypadModifier));
    EXPECT_FALSE(InEdit());
    EXPECT_TRUE(Key(Qt::Key_Down));
}

TEST_F(KeysTest, SpaceExpandsAndCollapses)
{
    CreateEdited();
    Select(pipe12, 2);
    EXPECT_TRUE(Key(Qt::Key_Space));
    EXPECT_FALSE(pipe12->Has(kItemExpanded));
    EXPECT_THAT(owner.told, ElementsAre(Told{NotifyExpanding, L"Pipe 1-2", 2}, Told{NotifyExpanded, L"Pipe 1-2", 2}));
    EXPECT_TRUE(Key(Qt::Key_Space));
    EXPECT_TRUE(pipe12->Has(kItemExpanded));
    list->SelectItem(nullptr);
    EXPECT_TRUE(Key(Qt::Key_Space)); // with nothing to do
}

TEST_F(KeysTest, UpAndDownGoByOneVisibleRow)
{
    CreateEdited();
    Select(areaB, 1);
    EXPECT_TRUE(Key(Qt::Key_Down));
    ExpectSelected(pipe23);
    EXPECT_THAT(owner.told,
                ElementsAre(Told{NotifySelChanging, L"Pipe 2-3", 1}, Told{NotifySelChanged, L"Pipe 2-3", 1}));
    EXPECT_EQ(list->GetSelectColumn(), 1);
    EXPECT_TRUE(Key(Qt::Key_Up));
    ExpectSelected(areaB);
    list->Expand(pipe12, kCollapse);
    Select(pipe23);
    Key(Qt::Key_Up);
    ExpectSelected(pipe12);
    Key(Qt::Key_Down);
    ExpectSelected(pipe23);
}

TEST_F(KeysTest, UpInTheFirstRowAndDownInTheLastKeepTheSelection)
{
    CreateEdited();
    Select(outfall1);
    EXPECT_TRUE(Key(Qt::Key_Up));
    ExpectSelected(outfall1);
    Select(outfall2);
    EXPECT_TRUE(Key(Qt::Key_Down));
    ExpectSelected(outfall2);
    EXPECT_THAT(owner.told, IsEmpty());
}

TEST_F(KeysTest, HomeAndEndGoToTheFirstAndLastVisibleRow)
{
    CreateEdited();
    Select(areaB);
    EXPECT_TRUE(Key(Qt::Key_End));
    ExpectSelected(outfall2); // its pipe is collapsed away
    EXPECT_TRUE(Key(Qt::Key_Home));
    ExpectSelected(outfall1);
}

TEST_F(KeysTest, WithoutAFocusItemTheArrowsBeginAtTheFirstRow)
{
    CreateEdited();
    ASSERT_EQ(list->GetFocusItem(), nullptr);
    Key(Qt::Key_Down);
    ExpectSelected(outfall1);
}

TEST_F(KeysTest, WithoutASelectedColumnTheKeysTakeTheFirstShownOne)
{
    CreateEdited();
    list->SetColumnOrderArray({1, 0, 2});
    ASSERT_EQ(list->GetSelectColumn(), -1);
    Key(Qt::Key_Down);
    EXPECT_EQ(list->GetSelectColumn(), 1);
    Key(Qt::Key_Return);
    EXPECT_EQ(list->GetModifyItem(), outfall1);
    EXPECT_EQ(list->GetModifyColumn(), 1);
    Key(Qt::Key_Escape);
    list->DeleteColumn(1);
    ASSERT_EQ(list->GetSelectColumn(), -1);
    Key(Qt::Key_Return);
    EXPECT_EQ(list->GetModifyColumn(), 0);
}

TEST_F(KeysTest, KeysOfAFocusItemInACollapsedBranchGoToItsBranch)
{
    CreateEdited();
    Select(areaB, 1);
    list->Expand(pipe12, kCollapse);
    Key(Qt::Key_Return);
    EXPECT_EQ(list->GetModifyItem(), pipe12);
    EXPECT_TRUE(Edit().isVisible());
    Key(Qt::Key_Escape);
    Key(Qt::Key_Space);
    EXPECT_TRUE(pipe12->Has(kItemExpanded));
    list->Expand(pipe12, kCollapse);
    Key(Qt::Key_Right, Qt::ShiftModifier);
    EXPECT_TRUE(pipe12->Has(kItemExpanded));
    list->Expand(pipe12, kCollapse);
    Key(Qt::Key_Plus, Qt::KeypadModifier);
    EXPECT_TRUE(pipe12->Has(kItemExpanded));
}

TEST_F(KeysTest, AFocusItemInACollapsedBranchIsLeftToItsBranch)
{
    CreateEdited();
    Select(areaB);
    list->Expand(outfall1, kCollapse);
    Key(Qt::Key_Down);
    ExpectSelected(outfall1);
    Key(Qt::Key_Down);
    ExpectSelected(outfall2);
}

TEST_F(KeysTest, KeysSelectOneRowEvenWhereManyAreSelected)
{
    CreateEdited(kTreeStyle | StyleMultiSelect);
    list->SelectItem(pipe12, 0, true);
    list->SelectItem(areaA, 0, false);
    ASSERT_EQ(list->GetSelectedCount(), 2);
    Key(Qt::Key_Down);
    ExpectSelected(areaB);
    list->SelectItem(areaA, 0, false);
    Key(Qt::Key_Right);
    ExpectSelected(areaA);
}

TEST_F(KeysTest, ShiftWithLeftAndRightCollapsesAndExpandsInATree)
{
    CreateEdited();
    Select(pipe12, 1);
    EXPECT_TRUE(Key(Qt::Key_Left, Qt::ShiftModifier));
    EXPECT_FALSE(pipe12->Has(kItemExpanded));
    EXPECT_TRUE(Key(Qt::Key_Right, Qt::ShiftModifier));
    EXPECT_TRUE(pipe12->Has(kItemExpanded));
    EXPECT_EQ(list->GetSelectColumn(), 1);

    list->SetStyle(StyleHeader);
    EXPECT_TRUE(Key(Qt::Key_Left, Qt::ShiftModifier));
    EXPECT_TRUE(pipe12->Has(kItemExpanded));
    EXPECT_EQ(list->GetSelectColumn(), 0);
}

TEST_F(KeysTest, LeftAndRightGoOverTheShownColumnsAndStopAtTheirEnds)
{
    CreateEdited();
    list->SetColumnOrderArray({2, 0, 1});
    Select(pipe12, 0);
    EXPECT_TRUE(Key(Qt::Key_Right));
    EXPECT_EQ(list->GetSelectColumn(), 1);
    EXPECT_THAT(owner.told,
                ElementsAre(Told{NotifySelChanging, L"Pipe 1-2", 1}, Told{NotifySelChanged, L"Pipe 1-2", 1}));
    Key(Qt::Key_Right);
    EXPECT_EQ(list->GetSelectColumn(), 1);
    for (int times = 0; times < 4; ++times)
        Key(Qt::Key_Left);
    EXPECT_EQ(list->GetSelectColumn(), 2);
    ExpectSelected(pipe12);
}

TEST_F(KeysTest, LeftAndRightWithoutAFocusItemTakeTheFirstVisibleOne)
{
    CreateEdited();
    EXPECT_TRUE(Key(Qt::Key_Right));
    ExpectSelected(outfall1);
    EXPECT_EQ(list->GetSelectColumn(), 0);
}

TEST_F(KeysTest, PlusAndMinusOfTheKeypadExpandAndCollapse)
{
    CreateEdited();
    Select(pipe12);
    EXPECT_TRUE(Key(Qt::Key_Minus, Qt::KeypadModifier));
    EXPECT_FALSE(pipe12->Has(kItemExpanded));
    EXPECT_TRUE(Key(Qt::Key_Plus, Qt::KeypadModifier));
    EXPECT_TRUE(pipe12->Has(kItemExpanded));
    EXPECT_FALSE(Key(Qt::Key_Minus)); // of the letters
    EXPECT_TRUE(pipe12->Has(kItemExpanded));
}

TEST_F(KeysTest, AKeyWithAltBelongsToTheDesktop)
{
    CreateEdited();
    Select(pipe12);
    EXPECT_FALSE(Key(Qt::Key_Down, Qt::AltModifier));
    ExpectSelected(pipe12);
}

TEST_F(KeysTest, WithNoColumnsShownTheKeysAreSwallowed)
{
    CreateEdited();
    Select(pipe12);
    for (int column = 0; column < 3; ++column)
        list->SetColumnFormat(column, kColumnHidden, 0);
    ASSERT_TRUE(list->GetColumnOrderArray().empty());
    for (const int key : {Qt::Key_Down, Qt::Key_Home, Qt::Key_Space, Qt::Key_Return, Qt::Key_Left, Qt::Key_A})
        EXPECT_TRUE(Key(key)) << key;
    ExpectSelected(pipe12);
    EXPECT_TRUE(pipe12->Has(kItemExpanded));
    EXPECT_THAT(owner.told, IsEmpty());
    Key(Qt::Key_Tab);
    EXPECT_TRUE(other->hasFocus());
}

TEST_F(KeysTest, AnEmptyListTakesItsKeysAndDoesNothing)
{
    CreateEmpty();
    Show();
    for (const int key : {Qt::Key_Down, Qt::Key_Up, Qt::Key_Home, Qt::Key_End, Qt::Key_PageDown, Qt::Key_PageUp,
                          Qt::Key_Left, Qt::Key_Right, Qt::Key_Space, Qt::Key_Return})
        EXPECT_TRUE(Key(key)) << key;
    EXPECT_EQ(list->GetSelectedItem(), nullptr);
    EXPECT_THAT(owner.told, IsEmpty());
}

TEST_F(KeysTest, KeysOfTheRowsGoBeforeTheWindowsShortcuts)
{
    CreateEdited();
    for (const int key : {Qt::Key_Down, Qt::Key_Return, Qt::Key_Space, Qt::Key_PageUp, Qt::Key_Left}) {
        QKeyEvent ask(QEvent::ShortcutOverride, key, Qt::NoModifier);
        ask.ignore();
        QApplication::sendEvent(list, &ask);
        EXPECT_TRUE(ask.isAccepted()) << key;
    }
    for (const int key : {Qt::Key_Escape, Qt::Key_F1, Qt::Key_A, Qt::Key_Plus}) {
        QKeyEvent ask(QEvent::ShortcutOverride, key, Qt::NoModifier);
        ask.ignore();
        QApplication::sendEvent(list, &ask);
        EXPECT_FALSE(ask.isAccepted()) << key;
    }
}

TEST_F(KeysTest, AVetoKeepsTheSelection)
{
    CreateEdited();
    Select(pipe12);
    Answer(NotifySelChanging, -1);
    EXPECT_TRUE(Key(Qt::Key_Down));
    ExpectSelected(pipe12);
}

// --- Page keys -------------------------------------------------------------------------------------------------------

TEST_F(KeysTest, PageDownSelectsTheLastWholeRowOfThePage)
{
    CreateRows();
    Select(Row(2));
    EXPECT_TRUE(Key(Qt::Key_PageDown));
    EXPECT_EQ(list->GetTopIndex(), 0);
    ExpectSelected(Row(LastRowOfPage()));
}

TEST_F(KeysTest, PageDownAtThePagesEdgeScrollsByAFullPageLessOne)
{
    CreateRows();
    const int page = list->GetClient().height() / list->GetItemHeight();
    Select(Row(page - 1));
    ASSERT_EQ(list->GetTopIndex(), 0);
    ASSERT_EQ(LastRowOfPage(), page - 1);
    EXPECT_TRUE(Key(Qt::Key_PageDown));
    EXPECT_EQ(list->GetTopIndex(), page - 1);
    ExpectSelected(Row(2 * (page - 1)));
}

TEST_F(KeysTest, PageUpSelectsTheFirstRowOfThePageAndThenScrolls)
{
    CreateRows();
    const int page = list->GetClient().height() / list->GetItemHeight();
    list->verticalScrollBar()->setValue(20);
    Select(Row(23));
    ASSERT_EQ(list->GetTopIndex(), 20);
    EXPECT_TRUE(Key(Qt::Key_PageUp));
    EXPECT_EQ(list->GetTopIndex(), 20);
    ExpectSelected(Row(20));
    EXPECT_TRUE(Key(Qt::Key_PageUp));
    EXPECT_EQ(list->GetTopIndex(), 20 - (page - 1));
    ExpectSelected(Row(20 - (page - 1)));
}

TEST_F(KeysTest, APageKeyOnlyBringsAFocusItemThatLiesOffThePageIntoView)
{
    CreateRows();
    Select(Row(3));
    for (const int key : {Qt::Key_PageDown, Qt::Key_PageUp}) {
        list->verticalScrollBar()->setValue(10);
        EXPECT_TRUE(Key(key));
        ExpectSelected(Row(3));
        EXPECT_EQ(list->GetTopIndex(), 3);
    }
    Select(Row(30));
    list->verticalScrollBar()->setValue(0);
    EXPECT_TRUE(Key(Qt::Key_PageUp));
    ExpectSelected(Row(30));
    EXPECT_EQ(LastRowOfPage(), 30);
    EXPECT_THAT(owner.told, IsEmpty());
}

TEST_F(KeysTest, PageKeysEndAtTheFirstAndLastRow)
{
    CreateRows();
    for (int times = 0; times < 12; ++times)
        Key(Qt::Key_PageDown);
    ExpectSelected(Row(39));
    for (int times = 0; times < 12; ++times)
        Key(Qt::Key_PageUp);
    ExpectSelected(Row(0));
    EXPECT_EQ(list->GetTopIndex(), 0);
}

TEST_F(KeysTest, PageDownInAListShorterThanThePageSelectsItsLastRow)
{
    CreateEdited();
    Select(pipe12);
    Key(Qt::Key_PageDown);
    ExpectSelected(outfall2);
    Key(Qt::Key_PageUp);
    ExpectSelected(outfall1);
}
