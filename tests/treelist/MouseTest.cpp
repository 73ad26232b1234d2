// What the buttons of the mouse do over the rows.
#include "tests/treelist/DragFixture.h"

#include "controls/treelist/TreeListEditors.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

/// Without dragging, so that a press tells of itself only.
class TreeClick : public TreeMouse {
protected:
    TreeClick()
    {
        left->SetStyle(kStyle & ~(StyleDrag | StyleReadOnly));
        log.clear();
    }
    /// The first column edited in a box, the second one too.
    void EditColumns()
    {
        left->SetColumnModify(0, kEditorEdit);
        left->SetColumnModify(1, kEditorEdit);
    }
    void ReadOnly() { left->SetStyle(left->GetStyle() | StyleReadOnly); }
    CTreeListItem *Item(const std::wstring &text) const { return Find(*left, text); }
};

} // namespace

// --- Left button down ------------------------------------------------------------------------------------------------

TEST_F(TreeClick, APressTakesTheFocusOnWhateverPart)
{
    for (const QPoint &point : {Button(0), Check(2), Text(1), Text(8)}) {
        right->setFocus();
        Press(point);
        EXPECT_TRUE(left->hasFocus());
    }
    right->setFocus();
    RightPress(Text(0));
    EXPECT_TRUE(left->hasFocus());
}

TEST_F(TreeClick, APressBelowTheLastRowEndsTheEditThenClearsTheSelection)
{
    EditColumns();
    Click(Text(1));
    ASSERT_EQ(left->GetModifyItem(), Item(L"Side"));
    Told();
    Click(Text(5));
    EXPECT_THAT(Told(), ElementsAre("left EndControl(Side, 0)", "left EndEdit(Side, 1)", "left SelChanging(-, 0)",
                                    "left SelChanged(-, 0)"));
    EXPECT_EQ(left->GetSelectedCount(), 0);
    EXPECT_EQ(left->GetModifyItem(), nullptr);
    EXPECT_EQ(left->GetSelectColumn(), 0);
}

TEST_F(TreeClick, APressRightOfAllColumnsClearsTheSelectionToo)
{
    ReadOnly();
    Click(Text(0));
    ASSERT_EQ(left->GetSelectedCount(), 1);
    Click({350, 10});
    EXPECT_EQ(left->GetSelectedCount(), 0);
}

TEST_F(TreeClick, TheButtonExpandsAndCollapsesByTheStateAndSelectsNothing)
{
    Press(Button(0));
    EXPECT_THAT(Told(), ElementsAre("left Expanding(Main, 0)", "left Expanded(Main, 0)"));
    EXPECT_TRUE(Item(L"Main")->Has(kItemExpanded));
    EXPECT_EQ(left->GetCursorNumber(), 8005);
    Release(Button(0));
    Press(Button(0));
    EXPECT_THAT(Told(), ElementsAre("left Expanding(Main, 0)", "left Expanded(Main, 0)"));
    EXPECT_FALSE(Item(L"Main")->Has(kItemExpanded));
    EXPECT_EQ(left->GetSelectedCount(), 0);
}

TEST_F(TreeClick, WithoutTheTreeThereIsNoButtonToPress)
{
    left->SetStyle(left->GetStyle() & ~(StyleTree | StyleCheck | StyleLock));
    ReadOnly();
    Press(Button(0));
    EXPECT_FALSE(Item(L"Main")->Has(kItemExpanded));
    EXPECT_EQ(left->GetSelectedItem(), Item(L"Main"));
}

TEST_F(TreeClick, TheCheckBoxFlipsAndSelectsNothing)
{
    Press(Check(2));
    EXPECT_THAT(Told(), ElementsAre("left Check(Pond, 0)"));
    EXPECT_EQ(left->GetCheck(Item(L"Pond")), kCheckOn);
    EXPECT_EQ(left->GetCursorNumber(), 8006);
    Release(Check(2));
    Click(Check(2));
    EXPECT_EQ(left->GetCheck(Item(L"Pond")), kCheckOff);
    EXPECT_EQ(left->GetSelectedCount(), 0);
}

TEST_F(TreeClick, ARefusedCheckStays)
{
    Refuse(NotifyCheck);
    Click(Check(2));
    EXPECT_EQ(left->GetCheck(Item(L"Pond")), kCheckOff);
}

TEST_F(TreeClick, TheLockFlipsAndSelectsNothing)
{
    Press(Lock(2));
    EXPECT_THAT(Told(), ElementsAre("left Lock(Pond, 0)"));
    EXPECT_EQ(left->GetLock(Item(L"Pond")), kCheckOn);
    EXPECT_EQ(left->GetCursorNumber(), 8007);
    EXPECT_EQ(left->GetSelectedCount(), 0);
}

TEST_F(TreeClick, AClickOnAPartBeginsNoEdit)
{
    EditColumns();
    Click(Text(2));
    ASSERT_TRUE(left->FinishModify());
    for (const QPoint &part : {Button(0), Check(2), Lock(2)}) {
        Click(part);
        EXPECT_EQ(left->GetModifyItem(), nullptr);
    }
}

TEST_F(TreeClick, ASingleClickSelectsAndEdits)
{
    EditColumns();
    Press(Type(2));
    EXPECT_THAT(Told(),
                ElementsAre("left SelChanging(Pond, 1)", "left SelChanged(Pond, 1)", "left BeginControl(Pond, 1)"));
    EXPECT_EQ(left->GetSelectedItem(), Item(L"Pond"));
    EXPECT_EQ(left->GetSelectColumn(), 1);
    EXPECT_EQ(left->GetModifyItem(), Item(L"Pond"));
    EXPECT_EQ(left->GetModifyColumn(), 1);
    EXPECT_TRUE(left->GetEdit()->isVisible());
}

TEST_F(TreeClick, ARefusedSelectionLeavesTheOldOneInEdit)
{
    EditColumns();
    Click(Text(0));
    Told();
    Refuse(NotifySelChanging, -2);
    Click(Image(2));
    EXPECT_EQ(left->GetSelectedItem(), Item(L"Main"));
    EXPECT_EQ(left->GetModifyItem(), Item(L"Main"));
}

TEST_F(TreeClick, AnItemThatIsSelectedBecomesTheNewest)
{
    ReadOnly();
    Click(Text(0));
    Click(Text(1), Qt::ControlModifier);
    Click(Text(2), Qt::ControlModifier);
    ASSERT_EQ(left->GetSelectedCount(), 3);
    ASSERT_EQ(left->GetSelectedItem(), Item(L"Pond"));
    Told();
    Click(Type(0));
    EXPECT_THAT(Told(), IsEmpty()); // it is made active, not selected anew
    EXPECT_EQ(left->GetSelectedCount(), 3);
    EXPECT_EQ(left->GetSelectedItem(), Item(L"Main"));
    EXPECT_EQ(left->GetSelectColumn(), 1);
}

TEST_F(TreeClick, WithoutControlTheOthersAreUnselected)
{
    ReadOnly();
    Click(Text(0));
    Click(Text(1), Qt::ControlModifier);
    Click(Text(2));
    EXPECT_EQ(left->GetSelectedCount(), 1);
    EXPECT_EQ(left->GetSelectedItem(), Item(L"Pond"));
}

TEST_F(TreeClick, AClickOnAnotherColumnOfTheSelectedRowEditsThatColumn)
{
    left->SetStyle(left->GetStyle() & ~StyleMultiSelect);
    EditColumns();
    Click(Text(2));
    ASSERT_EQ(left->GetModifyColumn(), 0);
    Click(Type(2));
    EXPECT_EQ(left->GetModifyItem(), Item(L"Pond"));
    EXPECT_EQ(left->GetModifyColumn(), 1);
}

TEST_F(TreeClick, TheTextOfAnotherRowFinishesTheEditBeforeTheSelectionMoves)
{
    EditColumns();
    Click(Text(0));
    left->GetEdit()->setText(QStringLiteral("Trunk"));
    Told();
    Press(Text(2));
    EXPECT_THAT(Told(), ElementsAre("left EndControl(Trunk, 0)", "left ColumnChanging(Trunk, 0)",
                                    "left RowChanging(Trunk, 0)", "left EndEdit(Trunk, 0)", "left SelChanging(Pond, 0)",
                                    "left SelChanged(Pond, 0)", "left BeginControl(Pond, 0)"));
}

TEST_F(TreeClick, ARefusedColumnKeepsTheRowInEditAndTheSelection)
{
    EditColumns();
    Click(Text(0));
    left->GetEdit()->setText(QStringLiteral("Trunk"));
    Refuse(NotifyColumnChanging);
    Told();
    Press(Text(2));
    EXPECT_THAT(Told(), testing::Not(testing::Contains("left SelChanging(Pond, 0)")));
    EXPECT_FALSE(Dragging());
    EXPECT_EQ(left->GetSelectedItem(), left->GetModifyItem());
    EXPECT_NE(left->GetModifyItem(), Item(L"Pond"));
    EXPECT_TRUE(left->GetEdit()->isVisible());
    EXPECT_EQ(left->GetEdit()->text(), QStringLiteral("Trunk"));
}

TEST_F(TreeClick, AnotherColumnOfTheRowInEditTakesTheEditAlong)
{
    EditColumns();
    Click(Text(2));
    left->GetEdit()->setText(QStringLiteral("Lake"));
    Told();
    Press(Type(2));
    // Moved by the click on the text, and begun once more as by every click.
    EXPECT_THAT(Told(),
                ElementsAre("left EndControl(Lake, 0)", "left ColumnChanging(Lake, 0)", "left BeginControl(Lake, 1)",
                            "left EndControl(Lake, 1)", "left BeginControl(Lake, 1)"));
    EXPECT_EQ(left->GetModifyColumn(), 1);
    EXPECT_EQ(left->GetItemText(left->GetModifyItem(), 0), L"Lake");
}

TEST_F(TreeClick, ARefusedColumnKeepsTheSelectedColumnToo)
{
    EditColumns();
    Click(Text(2));
    left->GetEdit()->setText(QStringLiteral("Lake"));
    Refuse(NotifyColumnChanging);
    Press(Type(2));
    EXPECT_EQ(left->GetModifyColumn(), 0);
    EXPECT_EQ(left->GetSelectColumn(), 0);
    EXPECT_EQ(left->GetEdit()->text(), QStringLiteral("Lake"));
}

TEST_F(TreeClick, APressBelowTheLastRowLosesNothingThatWasTypedAndRefused)
{
    EditColumns();
    Click(Text(2));
    left->GetEdit()->setText(QStringLiteral("Lake"));
    Refuse(NotifyColumnChanging);
    Press(Text(8));
    EXPECT_EQ(left->GetSelectedCount(), 0);
    EXPECT_NE(left->GetModifyItem(), nullptr);
    EXPECT_TRUE(left->GetEdit()->isVisible());
    EXPECT_EQ(left->GetEdit()->text(), QStringLiteral("Lake"));
}

TEST_F(TreeClick, APressOnAnyPlaceOfAnotherRowEndsTheEditBeforeTheSelectionMoves)
{
    EditColumns();
    left->SetItemState(Item(L"Pond"), kItemShowsImage, 0);
    for (const QPoint &place : {Image(2), QPoint(1, Image(2).y()), QPoint(201, Type(2).y())}) { // two beside all parts
        const int column = place.x() > 200 ? 1 : 0;
        Click(Text(0));
        Told();
        Press(place);
        const std::string cell = "(Pond, " + std::to_string(column) + ')';
        EXPECT_THAT(Told(), ElementsAre("left EndControl(Main, 0)", "left EndEdit(Main, 1)", "left SelChanging" + cell,
                                        "left SelChanged" + cell, "left BeginControl" + cell));
        Release(place);
    }
}

TEST_F(TreeClick, ARefusedTextStaysInItsEditorWhereverAnotherRowIsPressed)
{
    EditColumns();
    left->SetItemState(Item(L"Pond"), kItemShowsImage, 0);
    Click(Text(0));
    left->GetEdit()->setText(QStringLiteral("Lake"));
    Refuse(NotifyColumnChanging);
    for (const QPoint &place : {Image(2), QPoint(1, Image(2).y()), QPoint(201, Type(2).y()), Text(2)}) {
        Click(place);
        EXPECT_EQ(left->GetSelectedItem(), Item(L"Main"));
        EXPECT_EQ(left->GetModifyItem(), Item(L"Main"));
        EXPECT_TRUE(left->GetEdit()->isVisible());
        EXPECT_EQ(left->GetEdit()->text(), QStringLiteral("Lake"));
    }
}

TEST_F(TreeClick, APressBesideTheTextOfTheRowInEditEndsItsColumnOnly)
{
    EditColumns();
    left->SetItemState(Item(L"Main"), kItemShowsImage, 0);
    Click(Type(0));
    Told();
    Press(Image(0));
    EXPECT_EQ(left->GetModifyItem(), Item(L"Main"));
    EXPECT_EQ(left->GetModifyColumn(), 0);
    EXPECT_THAT(Told(), ElementsAre("left EndControl(Main, 1)", "left BeginControl(Main, 0)"));
}

TEST_F(TreeClick, AnItemThatANoticeDeletesIsNotTouchedAgain)
{
    answer = [this](const TreeListNotice &notice) {
        if (notice.code == NotifySelChanging && notice.column >= 0)
            left->DeleteAllItems();
        return 0;
    };
    Click(Text(1));
    EXPECT_EQ(left->GetCount(), 0);
    EXPECT_EQ(left->GetSelectedCount(), 0);
    EXPECT_EQ(left->GetModifyItem(), nullptr);
}

TEST_F(TreeClick, TheListMayBeFilledAnewWhileThePressEndsAnEdit)
{
    EditColumns();
    Click(Text(0));
    answer = [this](const TreeListNotice &notice) {
        if (notice.code == NotifyEndEdit) {
            answer = nullptr;
            left->DeleteAllItems();
            left->InsertItem(L"New");
        }
        return 0;
    };
    Press(Text(2));
    EXPECT_EQ(left->GetSelectedCount(), 0);
    EXPECT_EQ(left->GetCount(), 1);
}

// --- Double click ----------------------------------------------------------------------------------------------------

TEST_F(TreeClick, ADoubleClickOnTheTextTogglesInTheTree)
{
    ReadOnly();
    DoubleClick(Text(0));
    EXPECT_THAT(Told(), ElementsAre("left Expanding(Main, 0)", "left Expanded(Main, 0)"));
    EXPECT_TRUE(Item(L"Main")->Has(kItemExpanded));
    DoubleClick(Text(0));
    EXPECT_FALSE(Item(L"Main")->Has(kItemExpanded));
}

TEST_F(TreeClick, ADoubleClickOnTheImageTogglesInTheTree)
{
    left->SetItemState(Item(L"Main"), kItemShowsImage, 0);
    DoubleClick(Image(0));
    EXPECT_TRUE(Item(L"Main")->Has(kItemExpanded));
}

TEST_F(TreeClick, ADoubleClickOnAnotherColumnsTextTogglesToo)
{
    DoubleClick(Type(0));
    EXPECT_TRUE(Item(L"Main")->Has(kItemExpanded));
}

TEST_F(TreeClick, ADoubleClickOutsideTheTreeStyleTogglesNothing)
{
    left->SetStyle(left->GetStyle() & ~StyleTree);
    DoubleClick(Text(0));
    EXPECT_FALSE(Item(L"Main")->Has(kItemExpanded));
}

TEST_F(TreeClick, TwoQuickClicksOnACheckBoxAreTwoClicks)
{
    Click(Check(2));
    DoubleClick(Check(2));
    EXPECT_EQ(left->GetCheck(Item(L"Pond")), kCheckOff);
    EXPECT_THAT(Told(), ElementsAre("left Check(Pond, 0)", "left Check(Pond, 0)"));
}

TEST_F(TreeClick, ADoubleClickTakesTheRowThatItsFirstPressBroughtIntoView)
{
    ReadOnly();
    for (int each = 0; each < 30; ++each)
        left->InsertItem(L"Part", left->InsertItem(L"Row " + std::to_wstring(each)));
    left->resize(380, 110); // five rows and a half
    const QPoint last = Text(5);
    ASSERT_EQ(left->HitTest(last), Item(L"Row 2"));
    Click(last);
    ASSERT_EQ(left->GetVertScroll(), 1);
    ASSERT_EQ(left->HitTest(last), Item(L"Row 3"));
    Told();
    DoubleClick(last);
    EXPECT_THAT(Told(), ElementsAre("left Expanding(Row 2, 0)", "left Expanded(Row 2, 0)"));
}

TEST_F(TreeClick, ADoubleClickTakesThePartOfTheColumnThatItsFirstPressBroughtIntoView)
{
    ReadOnly();
    left->SetColumnWidth(1, 400);
    QApplication::processEvents();
    left->horizontalScrollBar()->setValue(100);
    ASSERT_EQ(left->GetHorzScroll(), 100);
    const QPoint place = Check(0); // of a control that is not scrolled; here it is the text
    Click(place);
    ASSERT_EQ(left->GetHorzScroll(), 0);
    Told();
    DoubleClick(place);
    EXPECT_THAT(Told(), ElementsAre("left Expanding(Main, 0)", "left Expanded(Main, 0)"));
}

TEST_F(TreeClick, ADoubleClickAfterTheRowsMovedByThemselvesTakesWhatIsThere)
{
    ReadOnly();
    for (int each = 0; each < 30; ++each)
        left->InsertItem(L"Part", left->InsertItem(L"Row " + std::to_wstring(each)));
    left->resize(380, 110);
    Click(Text(5));
    left->verticalScrollBar()->setValue(3);
    Told();
    DoubleClick(Text(5));
    EXPECT_THAT(Told(), ElementsAre("left Expanding(Row 5, 0)", "left Expanded(Row 5, 0)"));
}

TEST_F(TreeClick, ADoubleClickBelowTheLastRowDoesNothing)
{
    DoubleClick(Text(6));
    EXPECT_THAT(Told(), IsEmpty());
}

// --- Right button ----------------------------------------------------------------------------------------------------

TEST_F(TreeClick, TheRightButtonSelectsTheRowForItsMenuAndEditsNothing)
{
    EditColumns();
    RightPress(Type(2));
    EXPECT_THAT(Told(), ElementsAre("left SelChanging(Pond, 1)", "left SelChanged(Pond, 1)"));
    EXPECT_EQ(left->GetSelectedItem(), Item(L"Pond"));
    EXPECT_EQ(left->GetModifyItem(), nullptr);
}

TEST_F(TreeClick, TheRightButtonLeavesASelectionThatItIsPressedIn)
{
    ReadOnly();
    Click(Text(0));
    Click(Text(1), Qt::ControlModifier);
    Told();
    RightPress(Text(0));
    EXPECT_THAT(Told(), IsEmpty());
    EXPECT_EQ(left->GetSelectedCount(), 2);
}

TEST_F(TreeClick, TheRightButtonChangesNoCheckBoxAndExpandsNothing)
{
    RightPress(Check(0));
    RightPress(Button(0));
    EXPECT_EQ(left->GetCheck(Item(L"Main")), kCheckOff);
    EXPECT_FALSE(Item(L"Main")->Has(kItemExpanded));
}

TEST_F(TreeClick, TheRightButtonOnAnotherRowFinishesTheEditFirst)
{
    EditColumns();
    Click(Text(0));
    Told();
    RightPress(Text(2));
    EXPECT_THAT(Told(), ElementsAre("left EndControl(Main, 0)", "left EndEdit(Main, 1)", "left SelChanging(Pond, 0)",
                                    "left SelChanged(Pond, 0)"));
}

// --- Moving and the cursors ------------------------------------------------------------------------------------------

TEST_F(TreeClick, TheCursorFollowsThePartThatItPasses)
{
    const std::vector<std::pair<QPoint, int>> parts = {
        {Button(1), 8005}, {Check(1), 8006}, {Lock(1), 8007}, {Text(1), 0},      {Check(2), 8006},
        {Type(1), 0},      {Lock(2), 8007},  {Text(6), 0},    {Button(0), 8005}, {{350, 10}, 0}};
    for (const auto &[point, number] : parts) {
        Hover(point);
        EXPECT_EQ(left->GetCursorNumber(), number) << point.x() << ' ' << point.y();
        EXPECT_EQ(left->viewport()->cursor().shape(), number != 0 ? Qt::BitmapCursor : Qt::ArrowCursor);
    }
}

TEST_F(TreeClick, TheButtonUpSetsTheCursorOfThePartBelow)
{
    Press(Button(0));
    Release(Check(0));
    EXPECT_EQ(left->GetCursorNumber(), 8006);
}

TEST_F(TreeClick, OtherButtonsDoNothing)
{
    Send(*left, QEvent::MouseButtonPress, Text(0), Qt::MiddleButton, Qt::MiddleButton);
    Send(*left, QEvent::MouseButtonRelease, Text(0), Qt::MiddleButton, Qt::NoButton);
    EXPECT_THAT(Told(), IsEmpty());
}

// --- A control that goes ---------------------------------------------------------------------------------------------

namespace {

/// Leaves nothing readable behind when it goes.
class GoingTree : public CTreeListCtrl {
public:
    using CTreeListCtrl::CTreeListCtrl;
    static void operator delete(void *block, std::size_t bytes)
    {
        auto *byte = static_cast<volatile unsigned char *>(block);
        for (std::size_t each = 0; each < bytes; ++each)
            byte[each] = 0xDD;
        ::operator delete(block);
    }
};

struct Going {
    int code;
    QPoint place;
    bool twice;
};

class TreeClickThatEndsIt : public TreeMouse, public testing::WithParamInterface<Going> {
protected:
    TreeClickThatEndsIt()
    {
        delete left.data();
        left = new GoingTree(&window);
        left->Create(kStyle, QRect(0, 0, 380, 300), &window, 1);
        left->setFrameShape(QFrame::NoFrame);
        left->SetItemHeight(kRow);
        left->SetColumnWidth(0, 200);
        left->SetColumnModify(0, kEditorEdit);
        left->InsertItem(L"Pipe", left->InsertItem(L"Main"));
        left->SetOwner(this);
        left->show();
        QApplication::processEvents();
        answer = [this](const TreeListNotice &notice) {
            if (notice.code == GetParam().code && notice.control == left)
                delete left.data();
            return 0;
        };
    }
};

} // namespace

TEST_P(TreeClickThatEndsIt, TouchesNothingOfIt)
{
    if (GetParam().twice) {
        left->SetStyle(kStyle | StyleReadOnly);
        Send(*left, QEvent::MouseButtonDblClick, GetParam().place, Qt::LeftButton, Qt::LeftButton);
    } else {
        Press(GetParam().place);
    }
    EXPECT_EQ(left, nullptr);
    QApplication::processEvents();
}
INSTANTIATE_TEST_SUITE_P(
    Notices, TreeClickThatEndsIt,
    testing::Values(Going{NotifySelChanging, {120, 10}, false}, Going{NotifySelChanged, {120, 10}, false},
                    Going{NotifySelChanging, {120, 250}, false}, // below the last row
                    Going{NotifySelChanged, {120, 250}, false}, Going{NotifyBeginDrag, {120, 10}, false},
                    Going{NotifyExpanding, {10, 10}, false}, Going{NotifyExpanded, {10, 10}, false},
                    Going{NotifyExpanded, {120, 10}, true}, Going{NotifyCheck, {26, 10}, false},
                    Going{NotifyLock, {38, 10}, false}, Going{NotifyCheck, {26, 10}, true}));
