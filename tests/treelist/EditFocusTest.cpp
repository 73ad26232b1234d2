// Where the focus goes and where the cell goes: an edit ends, or its editor goes along.
#include "tests/treelist/EditFixture.h"

#include "controls/treelist/TreeListHeaderCtrl.h"
#include "controls/treelist/TreeListTipCtrl.h"

#include <QDialog>
#include <QMenu>
#include <QTimer>

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using Told = JournalOwner::Told;

class EditFocusTest : public TreeListEditTest {};

// --- Focus -----------------------------------------------------------------------------------------------------------

TEST_F(EditFocusTest, TheFocusSetsItsStateBitAndTakesItAway)
{
    CreateEdited();
    EXPECT_TRUE(list->GetState(kControlFocused));
    other->setFocus();
    EXPECT_FALSE(list->GetState(kControlFocused));
    list->setFocus();
    EXPECT_TRUE(list->GetState(kControlFocused));
    Begin(pipe12, 1);
    EXPECT_TRUE(list->GetState(kControlFocused));
}

TEST_F(EditFocusTest, AFocusThatLeavesFinishesTheEdit)
{
    CreateEdited();
    Begin(pipe12, 1);
    TypeOver(QStringLiteral("50"));
    other->setFocus();
    EXPECT_FALSE(InEdit());
    EXPECT_EQ(Text(pipe12, 1), L"50");
    EXPECT_FALSE(Edit().isVisible());
    EXPECT_FALSE(list->GetState(kControlFocused));
    EXPECT_TRUE(other->hasFocus());
    EXPECT_EQ(owner.told.back(), (Told{NotifyEndEdit, L"Pipe 1-2", 0}));
}

TEST_F(EditFocusTest, AFocusThatMovesBetweenEditorAndControlEndsNothing)
{
    CreateEdited();
    Begin(pipe12, 1);
    TypeOver(QStringLiteral("50"));
    list->setFocus();
    EXPECT_TRUE(InEdit());
    EXPECT_TRUE(Edit().isVisible());
    Edit().setFocus();
    EXPECT_TRUE(InEdit());
    EXPECT_TRUE(list->GetState(kControlFocused));
    EXPECT_THAT(owner.told, IsEmpty());
}

TEST_F(EditFocusTest, AFocusThatLeavesTheHeaderLeavesTheControl)
{
    CreateEdited();
    Begin(pipe12, 0);
    list->GetHeader()->setFocus();
    EXPECT_TRUE(list->GetState(kControlFocused));
    EXPECT_TRUE(InEdit());
    other->setFocus();
    EXPECT_FALSE(list->GetState(kControlFocused));
    EXPECT_FALSE(InEdit());
    list->GetHeader()->setFocus(); // and it comes in there
    EXPECT_TRUE(list->GetState(kControlFocused));
}

TEST_F(EditFocusTest, APressOnAPartGivesTheFocusBackToTheEditor)
{
    CreateEdited(kTreeStyle | StyleCheck | StyleLock);
    for (CTreeListItem *item : {pipe12, pipe23})
        list->SetItemState(item, kItemShowsCheck | kItemShowsLock, 0);
    list->SelectItem(pipe12, 1);
    Begin(pipe12, 1);
    TypeOver(QStringLiteral("123"));
    Edit().setSelection(0, 2);
    for (const int part : {kHitButton, kHitCheck, kHitLock}) {
        Click(PlaceOf(pipe23, part));
        EXPECT_TRUE(InEdit());
        EXPECT_TRUE(Edit().hasFocus()) << part;
        EXPECT_EQ(Edit().selectedText(), QStringLiteral("12"));
    }
    const QPoint at = PlaceOf(pipe12, kHitText, 2);
    Mouse(QEvent::MouseButtonPress, at, Qt::RightButton, Qt::RightButton);
    EXPECT_TRUE(Edit().hasFocus());
    Type(QStringLiteral("9"));
    EXPECT_EQ(Edit().text(), QStringLiteral("93"));
}

TEST_F(EditFocusTest, AnEditorIsTypedIntoEvenWhenTheControlHasTheFocus)
{
    CreateEdited();
    Begin(pipe12, 1);
    TypeOver(QStringLiteral("12"));
    list->setFocus();
    Type(QStringLiteral("3"));
    EXPECT_EQ(Edit().text(), QStringLiteral("123"));
    EXPECT_TRUE(Edit().hasFocus());
    list->setFocus();
    Key(Qt::Key_Return);
    EXPECT_EQ(Text(pipe12, 1), L"123");
}

TEST_F(EditFocusTest, AnEditorThatEndsLeavesTheFocusToItsControl)
{
    CreateEdited();
    QPushButton behind(QStringLiteral("Behind"), &window); // next in the window's order
    behind.setGeometry(410, 50, 100, 30);
    behind.show();
    for (const int column : {1, 2}) {
        Begin(pipe12, column);
        list->FinishModify();
        EXPECT_TRUE(list->hasFocus());
        EXPECT_FALSE(behind.hasFocus());
    }
}

TEST_F(EditFocusTest, ARefusedTextTakesTheFocusBack)
{
    CreateEdited();
    Begin(pipe12, 1);
    TypeOver(QStringLiteral("nonsense"));
    Answer(NotifyColumnChanging, -1);
    other->setFocus();
    EXPECT_TRUE(InEdit());
    EXPECT_TRUE(Edit().hasFocus());
    EXPECT_EQ(Edit().text(), QStringLiteral("nonsense"));
    EXPECT_TRUE(list->GetState(kControlFocused));
    EXPECT_EQ(owner.CountOf(NotifyColumnChanging), 1);
}

TEST_F(EditFocusTest, AFocusThatLeavesARowWithoutAnEditorFinishesItToo)
{
    CreateEdited();
    Begin(pipe12, 0);
    other->setFocus();
    EXPECT_FALSE(InEdit());
    EXPECT_THAT(owner.told, ElementsAre(Told{NotifyEndControl, L"Pipe 1-2", 0}, Told{NotifyEndEdit, L"Pipe 1-2", 1}));
}

TEST_F(EditFocusTest, AFocusThatLeavesHidesTheTip)
{
    CreateEdited();
    list->SetItemText(pipe12, 2, L"a text that is much too long for its column");
    Move(PlaceOf(pipe12, kHitText, 2));
    ASSERT_TRUE(list->GetTip()->isVisible());
    other->setFocus();
    EXPECT_FALSE(list->GetTip()->isVisible());
}

TEST_F(EditFocusTest, AnotherWindowFinishesTheEdit)
{
    CreateEdited();
    Begin(pipe12, 1);
    TypeOver(QStringLiteral("50"));
    QWidget window2;
    window2.show();
    window2.activateWindow();
    Settle();
    EXPECT_FALSE(InEdit());
    EXPECT_EQ(Text(pipe12, 1), L"50");
}

TEST_F(EditFocusTest, ARefusedTextIsThereWhenTheWindowIsActiveAgain)
{
    CreateEdited();
    Begin(pipe12, 1);
    TypeOver(QStringLiteral("nonsense"));
    Answer(NotifyColumnChanging, -1);
    QWidget window2;
    window2.show();
    window2.activateWindow();
    Settle();
    EXPECT_TRUE(InEdit());
    EXPECT_FALSE(list->GetState(kControlFocused));
    window.activateWindow();
    Settle();
    EXPECT_TRUE(Edit().hasFocus());
    EXPECT_TRUE(list->GetState(kControlFocused));
    EXPECT_EQ(Edit().text(), QStringLiteral("nonsense"));
}

TEST_F(EditFocusTest, AHiddenWindowKeepsWhatWasTyped)
{
    CreateEdited();
    Begin(pipe12, 1);
    TypeOver(QStringLiteral("50"));
    window.hide();
    Settle();
    EXPECT_FALSE(InEdit());
    EXPECT_EQ(Text(pipe12, 1), L"50");
}

TEST_F(EditFocusTest, AControlThatIsDisabledKeepsWhatWasTyped)
{
    CreateEdited();
    Begin(pipe12, 1);
    TypeOver(QStringLiteral("50"));
    list->setEnabled(false);
    EXPECT_FALSE(InEdit());
    EXPECT_EQ(Text(pipe12, 1), L"50");
    list->setEnabled(true);
    Begin(pipe12, 1);
    EXPECT_TRUE(Edit().isEnabled());
    EXPECT_TRUE(Edit().hasFocus());
}

TEST_F(EditFocusTest, ADropDownIsNoOtherPlace)
{
    CreateEdited();
    Begin(pipe12, 2);
    Combo().ShowDropDown(true);
    Settle();
    ASSERT_NE(QApplication::activePopupWidget(), nullptr);
    EXPECT_TRUE(InEdit());
    Key(Qt::Key_Down);
    Key(Qt::Key_Return);
    Settle();
    EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
    EXPECT_TRUE(InEdit());
    EXPECT_EQ(Combo().GetWindowText(), L"area");
    EXPECT_THAT(owner.told, IsEmpty());
}

TEST_F(EditFocusTest, AMenuIsNoOtherPlace)
{
    CreateEdited();
    Begin(pipe12, 1);
    QMenu menu(&Edit());
    menu.addAction(QStringLiteral("Paste"));
    menu.popup(QPoint(10, 10));
    Settle();
    EXPECT_TRUE(InEdit());
    menu.close();
    Settle();
    EXPECT_TRUE(InEdit());
    EXPECT_TRUE(Edit().hasFocus());
}

TEST_F(EditFocusTest, APopupThatIsNotTheListsGivesTheFocusBack)
{
    CreateEdited();
    Begin(pipe12, 1);
    TypeOver(QStringLiteral("50"));
    QWidget popup(&window, Qt::Popup);
    QLineEdit inside(&popup);
    inside.setFocus();
    popup.show();
    Settle();
    ASSERT_TRUE(inside.hasFocus());
    EXPECT_TRUE(InEdit());
    popup.close();
    Settle();
    EXPECT_TRUE(InEdit());
    EXPECT_TRUE(Edit().hasFocus());
    EXPECT_EQ(Edit().text(), QStringLiteral("50"));
    other->setFocus(Qt::MenuBarFocusReason);
    EXPECT_TRUE(InEdit());
}

TEST_F(EditFocusTest, AMessageThatTheOwnerShowsWhileHeRefusesIsToldOnce)
{
    CreateEdited();
    Begin(pipe12, 1);
    TypeOver(QStringLiteral("nonsense"));
    onNotice = [](const TreeListNotice &notice) {
        if (notice.code != NotifyColumnChanging)
            return;
        QDialog message;
        QTimer::singleShot(0, &message, &QDialog::accept);
        message.exec();
    };
    Answer(NotifyColumnChanging, -1);
    EXPECT_EQ(list->FinishModify(), 0);
    Settle();
    EXPECT_TRUE(InEdit());
    EXPECT_EQ(Edit().text(), QStringLiteral("nonsense"));
    EXPECT_EQ(owner.CountOf(NotifyColumnChanging), 1);
    EXPECT_EQ(owner.CountOf(NotifyEndEdit), 0);
}

TEST_F(EditFocusTest, AMessageThatTheOwnerShowsAtTheBeginLosesNoText)
{
    CreateEdited();
    onNotice = [this](const TreeListNotice &notice) {
        if (notice.code == NotifyBeginControl)
            other->setFocus();
    };
    EXPECT_EQ(list->BeginModify(pipe12, 1), 0);
    EXPECT_FALSE(InEdit());
    EXPECT_EQ(Text(pipe12, 1), L"42.50");
    EXPECT_FALSE(Edit().isVisible());
}

// --- The cell moves --------------------------------------------------------------------------------------------------

TEST_F(EditFocusTest, TheEditorGoesWithItsRowWhenTheViewScrolls)
{
    CreateEdited();
    AddRows(40);
    Settle();
    Begin(pipe23, 1);
    TypeOver(QStringLiteral("50"));
    const int top = Edit().y();
    list->verticalScrollBar()->setValue(2);
    Settle();
    EXPECT_EQ(Edit().geometry(), TextOf(pipe23, 1));
    EXPECT_EQ(Edit().y(), top - 40);
    EXPECT_TRUE(InEdit());
    list->verticalScrollBar()->setValue(30); // out of sight, and back
    list->verticalScrollBar()->setValue(0);
    EXPECT_EQ(Edit().y(), top);
    EXPECT_EQ(Edit().text(), QStringLiteral("50"));
    EXPECT_TRUE(InEdit());
}

TEST_F(EditFocusTest, TheEditorGoesWithItsColumn)
{
    CreateEdited();
    Begin(pipe12, 1);
    TypeOver(QStringLiteral("50"));
    list->SetColumnWidth(0, 120);
    Settle();
    EXPECT_EQ(Edit().geometry(), TextOf(pipe12, 1));
    list->SetColumnWidth(1, 100);
    Settle();
    EXPECT_EQ(Edit().geometry(), TextOf(pipe12, 1));
    EXPECT_EQ(Edit().width(), 96);
    list->SetColumnOrderArray({1, 2, 0});
    Settle();
    EXPECT_EQ(Edit().geometry(), TextOf(pipe12, 1));
    EXPECT_LT(Edit().x(), 10);
    EXPECT_EQ(Edit().text(), QStringLiteral("50"));
    EXPECT_TRUE(InEdit());
}

TEST_F(EditFocusTest, TheEditorGoesWithItsTextWhenMarksComeAndGo)
{
    CreateEdited(kTreeStyle | StyleCheck);
    list->SetColumnModify(0, kEditorEdit);
    Begin(pipe12, 0);
    const int left = Edit().x();
    list->SetItemState(pipe12, 0, kItemShowsCheck);
    EXPECT_EQ(Edit().x(), left - 16);
    EXPECT_EQ(Edit().geometry(), TextOf(pipe12, 0));
}

TEST_F(EditFocusTest, TheEditorGoesWithItsRowWhenRowsComeAndGo)
{
    CreateEdited();
    Begin(pipe23, 1);
    TypeOver(QStringLiteral("50"));
    list->Expand(pipe12, kCollapse);
    Settle();
    EXPECT_EQ(Edit().geometry(), TextOf(pipe23, 1));
    list->InsertItem(L"First", TreeListRoot(), TreeListFirst());
    Settle();
    EXPECT_EQ(Edit().geometry(), TextOf(pipe23, 1));
    list->DeleteItem(pipe12);
    Settle();
    EXPECT_EQ(Edit().geometry(), TextOf(pipe23, 1));
    EXPECT_TRUE(InEdit());
}

TEST_F(EditFocusTest, ARowThatACollapseHidesFinishesItsEdit)
{
    CreateEdited();
    Begin(pipe12, 1);
    TypeOver(QStringLiteral("50"));
    list->Expand(outfall1, kCollapse);
    Settle();
    EXPECT_FALSE(InEdit());
    EXPECT_EQ(Text(pipe12, 1), L"50");
    EXPECT_FALSE(Edit().isVisible());
    EXPECT_TRUE(list->hasFocus());
}

TEST_F(EditFocusTest, ARefusedTextOfAHiddenRowWaitsUntilTheRowIsShown)
{
    CreateEdited();
    Begin(pipe12, 1);
    TypeOver(QStringLiteral("nonsense"));
    Answer(NotifyColumnChanging, -1);
    list->Expand(outfall1, kCollapse);
    Settle();
    EXPECT_FALSE(Edit().isVisible());
    EXPECT_TRUE(InEdit());
    list->Expand(outfall1, kExpand);
    Settle();
    EXPECT_TRUE(Edit().isVisible());
    EXPECT_EQ(Edit().text(), QStringLiteral("nonsense"));
    EXPECT_TRUE(Edit().hasFocus());
    EXPECT_EQ(owner.CountOf(NotifyColumnChanging), 1);
}

TEST_F(EditFocusTest, ARefusedTextOfAHiddenRowIsAskedForAgain)
{
    CreateEdited();
    for (const int column : {1, 2}) {
        const std::wstring typed = column == 1 ? L"nonsense" : L"outfall";
        Begin(pipe12, column);
        column == 1 ? Edit().SetWindowText(typed) : Combo().SetWindowText(typed);
        Answer(NotifyColumnChanging, -1);
        list->Expand(outfall1, kCollapse);
        Settle();
        ASSERT_TRUE(InEdit());
        EXPECT_EQ(list->FinishModify(), 0);
        EXPECT_TRUE(InEdit());
        EXPECT_EQ(owner.CountOf(NotifyColumnChanging), 2);
        Answer(NotifyColumnChanging, 0);
        EXPECT_EQ(list->FinishModify(), 1);
        EXPECT_EQ(Text(pipe12, column), typed);
        list->Expand(outfall1, kExpand);
        Settle();
        EXPECT_FALSE(Edit().isVisible());
        EXPECT_FALSE(Combo().isVisible());
    }
}

TEST_F(EditFocusTest, AColumnThatIsHiddenFinishesItsEdit)
{
    CreateEdited();
    Begin(pipe12, 1);
    TypeOver(QStringLiteral("50"));
    list->SetColumnWidth(1, 0);
    Settle();
    EXPECT_FALSE(InEdit());
    EXPECT_EQ(Text(pipe12, 1), L"50");
}

TEST_F(EditFocusTest, ACellThatIsOutOfSightIsBroughtIntoViewToBeEdited)
{
    CreateEdited();
    AddRows(40);
    CTreeListItem *last = list->GetLastVisibleItem();
    ASSERT_EQ(list->BeginModify(last, 1), 1);
    EXPECT_TRUE(list->viewport()->rect().contains(Edit().geometry()));
    EXPECT_EQ(Edit().geometry(), TextOf(last, 1));
}

// --- The row goes ----------------------------------------------------------------------------------------------------

TEST_F(EditFocusTest, ADeletedRowTakesItsEditorAlong)
{
    CreateEdited();
    Begin(pipe12, 1);
    TypeOver(QStringLiteral("50"));
    list->DeleteItem(outfall1);
    EXPECT_FALSE(InEdit());
    EXPECT_FALSE(Edit().isVisible());
    EXPECT_TRUE(list->hasFocus());
    EXPECT_THAT(owner.told, Contains(Told{NotifyEndEdit, L"Pipe 1-2", -1}));
    EXPECT_EQ(list->BeginModify(pipe98, 1), 1);
}

TEST_F(EditFocusTest, ADeletedColumnTakesItsEditorAlong)
{
    CreateEdited();
    Begin(pipe12, 1);
    TypeOver(QStringLiteral("50"));
    list->DeleteColumn(1);
    Settle();
    EXPECT_FALSE(InEdit());
    EXPECT_FALSE(Edit().isVisible());
    EXPECT_EQ(Text(pipe12, 1), L"section");
}

TEST_F(EditFocusTest, AnOwnerWhoFillsTheListAnewInANoticeLeavesNoEditor)
{
    for (const int code :
         {NotifyBeginControl, NotifyEndControl, NotifyColumnChanging, NotifyRowChanging, NotifyEndEdit}) {
        SCOPED_TRACE(code);
        QWidget parent;
        CTreeListCtrl tree(&parent);
        ASSERT_NE(tree.Create(kTreeStyle, QRect(0, 0, 300, 200), &parent, 1), 0);
        tree.SetColumnModify(0, kEditorEdit);
        tree.SetColumnWidth(0, 100);
        CTreeListItem *item = tree.InsertItem(L"row");
        JournalOwner filler;
        bool filled = false;
        filler.onNotice = [&](const TreeListNotice &notice) {
            if (notice.code != code || std::exchange(filled, true))
                return;
            tree.DeleteAllItems();
            tree.InsertItem(L"new");
        };
        tree.SetOwner(&filler);
        parent.show();
        parent.activateWindow();
        Settle();
        if (tree.BeginModify(item, 0)) {
            tree.GetEdit()->setText(QStringLiteral("typed"));
            tree.FinishModify();
        }
        EXPECT_TRUE(filled);
        EXPECT_FALSE(tree.GetState(kControlEditing | kControlEndingEdit));
        EXPECT_TRUE(tree.GetEdit()->isHidden());
        EXPECT_EQ(tree.GetItemText(tree.GetFirstVisibleItem(), 0), L"new");
        tree.SetOwner(nullptr);
    }
}

TEST_F(EditFocusTest, AControlThatGoesInEditGoesWhole)
{
    CreateEdited();
    Begin(pipe12, 2);
    delete list;
    EXPECT_EQ(window.findChild<QComboBox *>(), nullptr);
    list = new CTreeListCtrl(&window);
}
