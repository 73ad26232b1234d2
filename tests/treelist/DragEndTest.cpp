// Every way in which a drag ends, and what it may not leave behind.
#include "tests/treelist/DragFixture.h"

#include <QDialog>
#include <QMenu>
#include <QTimer>

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

namespace {

class TreeDragEnd : public TreeDrag {
protected:
    /// A question to the user, answered at once.
    void Ask()
    {
        QDialog question(&window);
        QTimer::singleShot(0, &question, [&question] { question.reject(); });
        question.exec();
        ++asked;
    }
    /// Does something once, at the first notice of a code.
    void Once(int code, std::function<void()> what)
    {
        answer = [this, code, what = std::move(what)](const TreeListNotice &notice) -> std::int64_t {
            if (notice.code == code) {
                const auto now = what; // outlives what it does
                answer = nullptr;
                now();
            }
            return 0;
        };
    }
    void Escape()
    {
        QWidget *const focus = QApplication::focusWidget() != nullptr ? QApplication::focusWidget() : left.data();
        QKeyEvent event(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
        QApplication::sendEvent(focus, &event);
    }
    void ExpectEndedWithoutADrop()
    {
        EXPECT_THAT(Told(), ElementsAre("right DragLeave(-, 0) from left"));
        ExpectNothingLeft();
    }
    int asked = 0;
};

} // namespace

// --- Drop ------------------------------------------------------------------------------------------------------------

TEST_F(TreeDragEnd, TheTargetIsAskedLeftAndToldInThisOrder)
{
    DragPondOverSide();
    Release(OnRight(Text(1)));
    EXPECT_THAT(Told(), ElementsAre("right DragOver(Side, 0) from left", "right DragLeave(-, 0) from left",
                                    "right Drop(Side, 0) from left"));
    ExpectNothingLeft();
    EXPECT_EQ(left->GetCount(), 7); // nothing moves by itself
    EXPECT_EQ(right->GetCount(), 7);
}

TEST_F(TreeDragEnd, ADropAtTheRootNamesNoItem)
{
    DragPondOverSide();
    Move(OnRight(Text(8)));
    Told();
    Release(OnRight(Text(8)));
    EXPECT_THAT(Told(), ElementsAre("right DragLeave(-, 0) from left", "right Drop(-, 0) from left"));
}

TEST_F(TreeDragEnd, ARefusedDropOnlyLeaves)
{
    DragPondOverSide();
    Refuse(NotifyDragOver);
    Release(OnRight(Text(1)));
    EXPECT_THAT(Told(), ElementsAre("right DragOver(Side, 0) from left", "right DragLeave(-, 0) from left"));
    ExpectNothingLeft();
}

TEST_F(TreeDragEnd, ADropOnADescendantIsNeutralAndTellsNothing)
{
    DragRow(0);
    Move(Text(2));
    Told();
    Release(Text(2));
    EXPECT_THAT(Told(), ElementsAre("left DragLeave(-, 0) from left"));
    ExpectNothingLeft();
}

TEST_F(TreeDragEnd, WithoutATargetNobodyIsTold)
{
    DragPondOverSide();
    Move(kBetween);
    Told();
    Release(kBetween);
    EXPECT_THAT(Told(), IsEmpty());
    ExpectNothingLeft();
}

TEST_F(TreeDragEnd, TheOwnerMovesTheRowWhereItWasDropped)
{
    answer = [this](const TreeListNotice &notice) -> std::int64_t {
        if (notice.code == NotifyDrop)
            notice.control->MoveAfterItem(notice.source->GetSelectedItem(), notice.item);
        return 0;
    };
    DragRow(4);
    Move(Text(3));
    Release(Text(3));
    EXPECT_EQ(left->GetParentItem(Left(L"Pond")), Left(L"Side"));
    EXPECT_EQ(left->GetSelectedItem(), Left(L"Pond"));
    ExpectNothingLeft();
}

TEST_F(TreeDragEnd, ADropThatAsksTheUserLeavesNothingBehind)
{
    Once(NotifyDrop, [this] {
        ExpectNothingLeft(); // while the question is asked already
        Ask();
    });
    DragPondOverSide();
    Release(OnRight(Text(1)));
    EXPECT_EQ(asked, 1);
    ExpectNothingLeft();
    DragRow(3); // and the next one begins as ever
    EXPECT_NE(left->GetDragWnd(), nullptr);
}

// --- Ended without a drop --------------------------------------------------------------------------------------------

TEST_F(TreeDragEnd, Escape)
{
    DragPondOverSide();
    Escape();
    ExpectEndedWithoutADrop();
    Release(OnRight(Text(1)));
    EXPECT_THAT(Told(), IsEmpty());
}

TEST_F(TreeDragEnd, EscapeFromAnyWidgetThatHasTheFocus)
{
    DragPondOverSide();
    QWidget other(&window);
    QKeyEvent event(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
    QApplication::sendEvent(&other, &event);
    ExpectEndedWithoutADrop();
}

TEST_F(TreeDragEnd, EscapeWithinTheThresholdEndsTheDragAndTheNextOneTheEdit)
{
    left->SetStyle(left->GetStyle() & ~StyleReadOnly);
    left->SetColumnModify(0, kEditorEdit);
    Press(Text(4));
    Told();
    Escape();
    EXPECT_THAT(Told(), IsEmpty());
    ExpectNothingLeft();
    Escape();
    EXPECT_THAT(Told(), Contains("left EndEdit(Pond, -1)"));
    EXPECT_EQ(left->GetModifyItem(), nullptr);
}

TEST_F(TreeDragEnd, EscapeWithinTheThresholdFromAnyWidget)
{
    Press(Text(4));
    QKeyEvent event(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
    QApplication::sendEvent(&window, &event);
    ExpectNothingLeft();
}

TEST_F(TreeDragEnd, EscapeIsNoShortcutOfTheWindowMeanwhile)
{
    DragPondOverSide();
    QKeyEvent event(QEvent::ShortcutOverride, Qt::Key_Escape, Qt::NoModifier);
    event.ignore();
    QApplication::sendEvent(&window, &event);
    EXPECT_TRUE(event.isAccepted());
    EXPECT_EQ(left->GetDragTarget(), right); // the key itself comes next
}

TEST_F(TreeDragEnd, AnotherKeyGoesToWhatHasTheFocus)
{
    DragPondOverSide();
    QKeyEvent event(QEvent::KeyPress, Qt::Key_F9, Qt::NoModifier);
    QApplication::sendEvent(&window, &event);
    EXPECT_EQ(left->GetDragTarget(), right);
}

TEST_F(TreeDragEnd, TheWindowIsBlocked)
{
    for (QObject *blocked : {static_cast<QObject *>(&window), static_cast<QObject *>(window.windowHandle())}) {
        DragPondOverSide();
        QEvent event(QEvent::WindowBlocked);
        QApplication::sendEvent(blocked, &event);
        ExpectEndedWithoutADrop();
    }
}

TEST_F(TreeDragEnd, CancelMode)
{
    DragPondOverSide();
    left->OnCancelMode();
    ExpectEndedWithoutADrop();
}

TEST_F(TreeDragEnd, TheSourceIsDisabled)
{
    DragPondOverSide();
    left->setEnabled(false);
    ExpectEndedWithoutADrop();
}

TEST_F(TreeDragEnd, TheWholeWindowIsDisabled)
{
    DragPondOverSide();
    window.setEnabled(false);
    EXPECT_THAT(Told(), Contains("right DragLeave(-, 0) from left"));
    ExpectNothingLeft();
}

TEST_F(TreeDragEnd, TheSourceIsHidden)
{
    DragPondOverSide();
    left->hide();
    ExpectEndedWithoutADrop();
}

TEST_F(TreeDragEnd, AnotherWindowBecomesActive)
{
    DragPondOverSide();
    QWidget other;
    other.show();
    other.activateWindow();
    QApplication::processEvents();
    ExpectEndedWithoutADrop();
}

TEST_F(TreeDragEnd, APopupOpens)
{
    DragPondOverSide();
    QMenu menu(&window);
    menu.addAction(QStringLiteral("Zoom"));
    menu.popup(QPoint(10, 10));
    ExpectEndedWithoutADrop();
    menu.close();
}

TEST_F(TreeDragEnd, ADialogOpens)
{
    DragPondOverSide();
    Ask();
    ExpectEndedWithoutADrop();
}

TEST_F(TreeDragEnd, TheButtonWentUpWhereNobodyTold)
{
    DragPondOverSide();
    Hover(Text(1));
    ExpectEndedWithoutADrop();
}

TEST_F(TreeDragEnd, ANewPressEndsADragWhoseButtonUpNeverCame)
{
    DragPondOverSide();
    Press(Text(8));
    EXPECT_THAT(Told(),
                ElementsAre("right DragLeave(-, 0) from left", "left SelChanging(-, 0)", "left SelChanged(-, 0)"));
    ExpectNothingLeft();
}

TEST_F(TreeDragEnd, TheOtherButtonChangesNothing)
{
    DragPondOverSide();
    RightPress(Text(0));
    EXPECT_THAT(Told(), IsEmpty());
    EXPECT_EQ(left->GetDragTarget(), right);
}

TEST_F(TreeDragEnd, TheDraggedRowsAreDeleted)
{
    DragPondOverSide();
    left->DeleteItem(Left(L"Pond"));
    Told();
    Move(OnRight(Text(2)));
    ExpectEndedWithoutADrop();
}

// --- A press over which the capture is lost --------------------------------------------------------------------------

TEST_F(TreeDragEnd, AQuestionAtTheBeginBeginsNoDrag)
{
    Once(NotifyBeginDrag, [this] { Ask(); });
    Press(Text(4));
    EXPECT_EQ(asked, 1);
    ExpectNothingLeft();
}

TEST_F(TreeDragEnd, AQuestionAboutTheSelectionBeginsNoDrag)
{
    Once(NotifySelChanging, [this] { Ask(); });
    Press(Text(4));
    EXPECT_EQ(left->GetSelectedItem(), Left(L"Pond"));
    EXPECT_THAT(Told(), Not(Contains(testing::HasSubstr("BeginDrag")))); // nor is it asked for
    ExpectNothingLeft();
}

TEST_F(TreeDragEnd, AControlThatTheEndOfTheLastDragDisabledBeginsNone)
{
    DragPondOverSide();
    Once(NotifyDragLeave, [this] { left->setEnabled(false); });
    Press(Text(3)); // the way up of the button never came
    ExpectNothingLeft();
}

TEST_F(TreeDragEnd, AControlThatIsHiddenByItsPressBeginsNoDrag)
{
    Once(NotifySelChanging, [this] {
        left->hide();
        left->show();
    });
    Press(Text(4));
    EXPECT_THAT(Told(), Not(Contains(testing::HasSubstr("BeginDrag"))));
    ExpectNothingLeft();
}

TEST_F(TreeDragEnd, ADragThatAnotherModuleBeginsIsWatchedToo)
{
    left->SelectItem(Left(L"Pond"), 0, true);
    Refuse(NotifyBeginDrag);
    EXPECT_EQ(left->BeginDraging(Text(4)), 0);
    answer = nullptr;
    EXPECT_EQ(left->BeginDraging(Text(4)), 1);
    left->DoDraging(OnRight(Text(1)));
    ASSERT_EQ(left->GetDragTarget(), right);
    Told();
    QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
    QApplication::sendEvent(&window, &escape);
    ExpectEndedWithoutADrop();
}

TEST_F(TreeDragEnd, AQuestionWhenTheEditBeginsEndsTheDragThatThePressBegan)
{
    left->SetStyle(left->GetStyle() & ~StyleReadOnly);
    Once(NotifyBeginControl, [this] { Ask(); });
    Press(Text(4));
    EXPECT_EQ(asked, 1);
    ExpectNothingLeft();
}

// --- A target that goes ----------------------------------------------------------------------------------------------

TEST_F(TreeDragEnd, ATargetThatIsDisabledIsLeftAtOnce)
{
    DragPondOverSide();
    right->setEnabled(false);
    EXPECT_THAT(Told(), ElementsAre("right DragLeave(-, 0) from left"));
    EXPECT_EQ(left->GetDragTarget(), nullptr);
    EXPECT_EQ(right->GetHoverItem(), nullptr);
    EXPECT_EQ(left->GetCursorNumber(), 8016);
    Release(OnRight(Text(1)));
    EXPECT_THAT(Told(), IsEmpty());
    ExpectNothingLeft();
}

TEST_F(TreeDragEnd, ATargetThatIsHiddenIsLeftAtOnce)
{
    DragPondOverSide();
    right->hide();
    EXPECT_THAT(Told(), ElementsAre("right DragLeave(-, 0) from left"));
    Release(OnRight(Text(1)));
    EXPECT_THAT(Told(), IsEmpty());
    ExpectNothingLeft();
}

TEST_F(TreeDragEnd, ATargetThatIsDestroyedIsForgotten)
{
    DragPondOverSide();
    delete right.data();
    EXPECT_EQ(left->GetDragTarget(), nullptr);
    Move(OnRight(Text(2)));
    EXPECT_EQ(left->GetCursorNumber(), 8016);
    Release(OnRight(Text(2)));
    EXPECT_THAT(Told(), IsEmpty());
    ExpectNothingLeft();
}

TEST_F(TreeDragEnd, ASourceThatIsDestroyedLeavesItsTarget)
{
    DragPondOverSide();
    delete left.data();
    EXPECT_EQ(Told().size(), 1u);
    ExpectNothingLeft();
}

TEST_F(TreeDragEnd, ASourceThatIsDestroyedOverItselfLeavesNothing)
{
    DragRow(4);
    Move(Text(3));
    ASSERT_NE(left->GetTargetItem(), nullptr);
    delete left.data();
    ExpectNothingLeft();
}

// --- Notices that change what is dragged -----------------------------------------------------------------------------

TEST_F(TreeDragEnd, TheItemThatIsAskedAboutIsDeleted)
{
    DragRow(4);
    Once(NotifyDragOver, [this] { right->DeleteItem(Right(L"Side")); });
    DragOverRight(1);
    EXPECT_EQ(right->GetTargetItem(), nullptr);
    EXPECT_EQ(right->GetHoverItem(), nullptr);
    EXPECT_EQ(left->GetCursorNumber(), 8016);
    EXPECT_FALSE(left->GetDropWnd()->isVisible());
}

TEST_F(TreeDragEnd, AnItemThatGoesWhileItsControlIsLeftIsNotDroppedOn)
{
    DragPondOverSide();
    Once(NotifyDragLeave, [this] { right->DeleteAllItems(); });
    Release(OnRight(Text(1)));
    EXPECT_THAT(Told(), Not(Contains(testing::HasSubstr("Drop("))));
    ExpectNothingLeft();
}

TEST_F(TreeDragEnd, AQuestionWhileATargetIsAskedEndsTheDrag)
{
    DragRow(4);
    Once(NotifyDragOver, [this] { Ask(); });
    DragOverRight(1);
    EXPECT_EQ(asked, 1);
    ExpectNothingLeft();
}

TEST_F(TreeDragEnd, AQuestionWhileATargetIsEnteredEndsTheDrag)
{
    DragRow(4);
    Once(NotifyDragEnter, [this] { Ask(); });
    DragOverRight(1);
    EXPECT_EQ(asked, 1);
    ExpectNothingLeft();
}

TEST_F(TreeDragEnd, AQuestionWhileATargetIsLeftEndsTheDrag)
{
    DragPondOverSide();
    Once(NotifyDragLeave, [this] { Ask(); });
    Move(Text(3));
    EXPECT_EQ(asked, 1);
    ExpectNothingLeft();
}

TEST_F(TreeDragEnd, TheTargetGoesWhileItIsAsked)
{
    for (const int code : {NotifyDragEnter, NotifyDragOver}) {
        if (!right)
            right = Make(QRect(390, 0, 380, 300));
        right->show();
        DragRow(4);
        Once(code, [this] { delete right.data(); });
        DragOverRight(1);
        EXPECT_TRUE(right.isNull());
        EXPECT_EQ(left->GetCursorNumber(), 8016);
        Release(OnRight(Text(1)));
        ExpectNothingLeft();
    }
}

TEST_F(TreeDragEnd, TheSourceGoesWhileATargetIsAsked)
{
    DragRow(4);
    Once(NotifyDragOver, [this] { delete left.data(); });
    DragOverRight(1);
    EXPECT_TRUE(left.isNull());
    ExpectNothingLeft();
}

TEST_F(TreeDragEnd, TheSourceGoesByTheDrop)
{
    for (const int code : {NotifyDrop, NotifyDragLeave}) {
        if (!left) {
            left = Make(QRect(0, 0, 380, 300));
            left->show();
            left->Expand(Left(L"Main"), kExpand);
        }
        DragPondOverSide();
        Once(code, [this] { delete left.data(); });
        const QPoint at = OnRight(Text(1));
        Release(at);
        EXPECT_TRUE(left.isNull());
        ExpectNothingLeft();
    }
}

TEST_F(TreeDragEnd, TheTargetGoesByTheDrop)
{
    DragPondOverSide();
    Once(NotifyDrop, [this] { delete right.data(); });
    Release(OnRight(Text(1)));
    EXPECT_TRUE(right.isNull());
    ExpectNothingLeft();
}

TEST_F(TreeDragEnd, TheListIsFilledAnewByTheDrop)
{
    DragRow(4);
    Move(Text(3));
    Once(NotifyDrop, [this] {
        left->DeleteAllItems();
        left->InsertItem(L"New");
    });
    Release(Text(3));
    EXPECT_EQ(left->GetCount(), 1);
    ExpectNothingLeft();
}
