// Dragging rows: when a drag begins, its windows, and what each place under it answers.
#include "tests/treelist/DragFixture.h"

#include "controls/treelist/TreeListEditors.h"
#include "controls/treelist/TreeListHeaderCtrl.h"

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

// --- Begin -----------------------------------------------------------------------------------------------------------

TEST_F(TreeDrag, APressAsksTheOwnerAndCapturesTheMouse)
{
    Press(Type(4));
    EXPECT_THAT(Told(), ElementsAre("left SelChanging(Pond, 1)", "left SelChanged(Pond, 1)",
                                    "left BeginDrag(Pond, 1) from left"));
    EXPECT_EQ(left->GetState(kControlDragging | kControlCaptured), kControlDragging | kControlCaptured);
    EXPECT_EQ(left->GetDragWnd(), nullptr);
    Release(Type(4));
    ExpectNothingLeft();
}

TEST_F(TreeDrag, WithoutItsStyleNothingIsDraggedNorAsked)
{
    left->SetStyle(left->GetStyle() & ~StyleDrag);
    Press(Text(4));
    EXPECT_THAT(Told(), Not(Contains("left BeginDrag(Pond, 0) from left")));
    EXPECT_EQ(left->BeginDraging(Text(4)), 0);
    EXPECT_FALSE(Dragging());
}

TEST_F(TreeDrag, ANegativeAnswerRefusesTheDrag)
{
    Refuse(NotifyBeginDrag, -7);
    DragRow(4);
    EXPECT_FALSE(Dragging());
    EXPECT_EQ(left->GetDragWnd(), nullptr);
    Release(Text(4));
    ExpectNothingLeft();
}

TEST_F(TreeDrag, ARowThatWasNotSelectedIsNotDragged)
{
    Refuse(NotifySelChanging);
    Press(Text(4));
    EXPECT_THAT(Told(), ElementsAre("left SelChanging(Pond, 0)"));
    EXPECT_FALSE(Dragging());
}

TEST_F(TreeDrag, ButtonCheckBoxAndLockBeginNoDrag)
{
    for (const QPoint &part : {Button(0), Check(3), Lock(3)}) {
        Press(part);
        EXPECT_FALSE(Dragging());
        Release(part);
    }
    EXPECT_FALSE(Dragging());
}

TEST_F(TreeDrag, WithinTheThresholdNoWindowOpens)
{
    Press(Text(4));
    for (const QPoint &way : {QPoint(10, 0), QPoint(0, 10), QPoint(-10, -10), QPoint(10, 10)}) {
        Move(Text(4) + way);
        EXPECT_EQ(left->GetDragWnd(), nullptr);
    }
    for (const QPoint &way : {QPoint(11, 0), QPoint(0, -11)}) {
        Press(Text(4));
        Move(Text(4) + way);
        EXPECT_NE(left->GetDragWnd(), nullptr);
        Release(Text(4));
    }
}

TEST_F(TreeDrag, AButtonUpWithinTheThresholdIsAPlainClick)
{
    left->SetStyle(left->GetStyle() & ~StyleReadOnly);
    left->SetColumnModify(1, kEditorEdit);
    Press(Type(4));
    Move(Type(4) + QPoint(9, 2));
    Told();
    Release(Check(4));
    EXPECT_THAT(Told(), IsEmpty());
    EXPECT_EQ(left->GetSelectedItem(), Left(L"Pond"));
    EXPECT_EQ(left->GetModifyItem(), Left(L"Pond"));
    EXPECT_EQ(left->GetModifyColumn(), 1);
    EXPECT_TRUE(left->GetEdit()->isVisible());
    EXPECT_EQ(left->GetCursorNumber(), 8006); // as after any other click
    ExpectNothingLeft();
}

// --- A drag and the edit that its press began ------------------------------------------------------------------------

TEST_F(TreeDrag, MovementEndsTheEditThatThePressBegan)
{
    left->SetStyle(left->GetStyle() & ~StyleReadOnly);
    left->SetColumnModify(1, kEditorEdit);
    Press(Type(4));
    ASSERT_EQ(left->GetModifyItem(), Left(L"Pond"));
    Told();
    Move(Type(4) + QPoint(11, 0));
    EXPECT_THAT(Told(),
                ElementsAre("left EndControl(Pond, 1)", "left EndEdit(Pond, 1)", "left DragEnter(-, 0) from left"));
    EXPECT_EQ(left->GetModifyItem(), nullptr);
    EXPECT_FALSE(left->GetEdit()->isVisible());
    EXPECT_NE(left->GetDragWnd(), nullptr);
}

TEST_F(TreeDrag, WhatWasTypedBeforeIsKeptWhenItsRowIsDragged)
{
    left->SetStyle(left->GetStyle() & ~StyleReadOnly);
    left->SetColumnModify(0, kEditorEdit);
    left->SetColumnModify(1, kEditorEdit);
    Click(Type(4));
    left->GetEdit()->setText(QStringLiteral("open"));
    Press(Text(4));
    Move(Text(4) + QPoint(0, 12));
    EXPECT_EQ(left->GetItemText(Left(L"Pond"), 1), L"open");
    EXPECT_NE(left->GetDragWnd(), nullptr);
}

TEST_F(TreeDrag, ARowWhoseEditMayNotEndIsNotDragged)
{
    left->SetStyle(left->GetStyle() & ~StyleReadOnly);
    left->SetColumnModify(1, kEditorEdit);
    Press(Type(4));
    left->GetEdit()->setText(QStringLiteral("open"));
    Refuse(NotifyColumnChanging);
    Move(Type(4) + QPoint(11, 0));
    EXPECT_EQ(left->GetModifyItem(), Left(L"Pond"));
    EXPECT_TRUE(left->GetEdit()->isVisible());
    EXPECT_EQ(left->GetEdit()->text(), QStringLiteral("open"));
    ExpectNothingLeft();
}

// --- The drag window -------------------------------------------------------------------------------------------------

TEST_F(TreeDrag, TheDragWindowStandsAroundThePointerAndFollowsIt)
{
    DragRow(4);
    ASSERT_NE(left->GetDragWnd(), nullptr);
    EXPECT_EQ(left->GetDragWnd()->objectName(), QStringLiteral("Morvane.TLCDragWnd"));
    EXPECT_EQ(left->GetDropWnd()->objectName(), QStringLiteral("Morvane.TLCDropWnd"));
    EXPECT_EQ(left->GetDragWnd()->size(), QSize(320, 320));
    EXPECT_TRUE(left->GetDragWnd()->isVisible());
    const QPoint start = left->viewport()->mapToGlobal(Text(4) + QPoint(11, 0));
    EXPECT_EQ(left->GetDragWnd()->pos(), start - QPoint(160, 160));
    Move({300, 250});
    EXPECT_EQ(left->GetDragWnd()->pos(), left->viewport()->mapToGlobal(QPoint(300, 250)) - QPoint(160, 160));
}

TEST_F(TreeDrag, ThePictureIsHalfTransparentAndFadesToNothingAtItsEdges)
{
    Press(Text(4));
    const QImage image = left->GetDragImage(QSize(320, 320)).toImage();
    const auto alpha = [&image](int x, int y) { return qAlpha(image.pixel(x, y)); };
    EXPECT_NEAR(alpha(160, 160), 128, 2);
    EXPECT_LT(alpha(60, 160), alpha(100, 160));
    EXPECT_LE(alpha(1, 160), 2);
    EXPECT_EQ(alpha(160, 135), 0); // the row above is not dragged
    EXPECT_EQ(alpha(160, 185), 0);
}

TEST_F(TreeDrag, ThePictureShowsAllSelectedRowsWhereTheyStand)
{
    Click(Text(2));
    Press(Text(4), Qt::ControlModifier);
    const QImage image = left->GetDragImage(QSize(320, 320)).toImage();
    EXPECT_GT(qAlpha(image.pixel(160, 160)), 0);
    EXPECT_EQ(qAlpha(image.pixel(160, 140)), 0);
    EXPECT_GT(qAlpha(image.pixel(160, 120)), 0); // two rows above
}

TEST_F(TreeDrag, WithoutBlendingTheWindowIsPlainAndBesideThePointer)
{
    CTreeListLayeredWnd::Assume(false);
    DragRow(4);
    ASSERT_NE(left->GetDragWnd(), nullptr);
    EXPECT_FALSE(left->GetDragWnd()->IsLayered());
    EXPECT_EQ(left->GetDragWnd()->size(), left->GetClient().size());
    EXPECT_EQ(left->GetDragWnd()->pos(), left->viewport()->mapToGlobal(Text(4) + QPoint(11, 0)) + QPoint(20, 4));
    const QRegion shape = left->GetDragWnd()->mask();
    EXPECT_TRUE(shape.contains(QPoint(100, 10)));
    EXPECT_FALSE(shape.contains(QPoint(100, 30)));
    EXPECT_EQ(left->GetDragTarget(), left); // it is not under its own pointer
}

TEST_F(TreeDrag, TheWindowsTakeNoFocus)
{
    Press(Text(4));
    QWidget *const before = QApplication::focusWidget();
    Move(OnRight(Text(1)));
    QApplication::processEvents();
    EXPECT_EQ(QApplication::focusWidget(), before);
    EXPECT_TRUE(left->GetDropWnd()->isVisible());
    EXPECT_EQ(left->GetDragTarget(), right);
}

// --- Targets ---------------------------------------------------------------------------------------------------------

TEST_F(TreeDrag, ANewTargetIsEnteredAfterTheOldOneIsLeft)
{
    DragRow(4);
    Told();
    DragOverRight(1);
    EXPECT_THAT(Told(), ElementsAre("left DragLeave(-, 0) from left", "right DragEnter(-, 0) from left",
                                    "right DragOver(Side, 0) from left"));
    DragOverRight(2);
    EXPECT_THAT(Told(), ElementsAre("right DragOver(Pond, 0) from left"));
    Move(kBetween);
    EXPECT_THAT(Told(), ElementsAre("right DragLeave(-, 0) from left"));
    EXPECT_EQ(left->GetDragTarget(), nullptr);
}

TEST_F(TreeDrag, WhereNoTargetIsTheDropIsRefused)
{
    for (const QPoint &nowhere : {kBetween, QPoint(100, 350), QPoint(100, 700), QPoint(-50, -50)}) {
        DragPondOverSide();
        Move(nowhere);
        EXPECT_EQ(left->GetCursorNumber(), 8016);
        EXPECT_FALSE(left->GetDropWnd()->isVisible());
        EXPECT_EQ(right->GetTargetItem(), nullptr);
        Release(nowhere);
        ExpectNothingLeft();
    }
}

TEST_F(TreeDrag, ADisabledControlIsNoTarget)
{
    right->setEnabled(false);
    DragRow(4);
    DragOverRight(1);
    EXPECT_EQ(left->GetDragTarget(), nullptr);
    EXPECT_EQ(left->GetCursorNumber(), 8016);
}

TEST_F(TreeDrag, AHeaderIsNoTarget)
{
    right->SetStyle(right->GetStyle() | StyleHeader);
    QApplication::processEvents();
    const QPoint header = right->GetHeader()->mapTo(&window, QPoint(100, right->GetHeader()->height() / 2));
    DragRow(4);
    Move(left->viewport()->mapFrom(&window, header));
    EXPECT_EQ(left->GetDragTarget(), nullptr);
}

TEST_F(TreeDrag, AnEditorOverARowOfAnotherControlIsNoTarget)
{
    right->SetStyle(right->GetStyle() & ~StyleReadOnly);
    right->SetColumnModify(1, kEditorEdit);
    right->BeginModify(Right(L"Side"), 1);
    ASSERT_TRUE(right->GetEdit()->isVisible());
    const QPoint inEdit = right->GetEdit()->mapTo(&window, right->GetEdit()->rect().center());
    Press(Text(4));
    ASSERT_TRUE(right->BeginModify(Right(L"Side"), 1)); // the press took the focus away from it
    Move(left->viewport()->mapFrom(&window, inEdit));
    EXPECT_EQ(left->GetDragTarget(), nullptr);
}

// --- Answers ---------------------------------------------------------------------------------------------------------

TEST_F(TreeDrag, ADropWithinTheControlNeedsBothItsStyles)
{
    DragRow(4);
    for (const std::uint32_t missing : {StyleDrop, StyleDropSelf}) {
        left->SetStyle((kStyle | StyleReadOnly) & ~missing);
        Told();
        CTreeListItem *item = nullptr;
        EXPECT_EQ(left->DragOver(left, Text(3), &item), 1);
        EXPECT_THAT(Told(), IsEmpty());
    }
}

TEST_F(TreeDrag, AnItemTakesTheRowsUnlessTheOwnerRefuses)
{
    DragRow(4);
    Told();
    CTreeListItem *item = nullptr;
    EXPECT_EQ(left->DragOver(left, Text(3), &item), 2);
    EXPECT_EQ(item, Left(L"Side"));
    EXPECT_THAT(Told(), ElementsAre("left DragOver(Side, 0) from left"));
    Refuse(NotifyDragOver, -3);
    EXPECT_EQ(left->DragOver(left, Text(3), &item), 0);
}

TEST_F(TreeDrag, ADraggedRowAndItsDescendantsAnswerNeutrallyUnasked)
{
    DragRow(0); // Main, with its two pipes
    Told();
    for (const int row : {0, 1, 2})
        EXPECT_EQ(left->DragOver(left, Text(row), nullptr), 1) << row;
    EXPECT_THAT(Told(), IsEmpty());
    EXPECT_EQ(left->DragOver(left, Text(3), nullptr), 2);
}

TEST_F(TreeDrag, AnyOfTheSelectedRowsKeepsItsOwnSubtree)
{
    Click(Text(0));
    Press(Text(4), Qt::ControlModifier);
    EXPECT_EQ(left->DragOver(left, Text(1), nullptr), 1); // below Main, which is not the newest
    EXPECT_EQ(left->DragOver(left, Text(3), nullptr), 2);
}

TEST_F(TreeDrag, EmptySpaceOfTheSameControlTakesWhatDoesNotStandAtTheRoot)
{
    DragRow(1); // Pipe 1
    EXPECT_EQ(left->DragOver(left, Text(8), nullptr), 3);
    left->SetStyle((kStyle | StyleReadOnly) & ~StyleDropRoot);
    EXPECT_EQ(left->DragOver(left, Text(8), nullptr), 1);
    Release(Text(1));
    left->SetStyle(kStyle | StyleReadOnly);
    DragRow(4); // Pond, at the root already
    EXPECT_EQ(left->DragOver(left, Text(8), nullptr), 1);
}

TEST_F(TreeDrag, TheNewestOfTheSelectedSaysWhetherTheyStandAtTheRoot)
{
    Click(Text(4));
    Press(Text(1), Qt::ControlModifier);
    EXPECT_EQ(left->DragOver(left, Text(8), nullptr), 3);
    Release(Text(1));
    Press(Text(4)); // selected already: the newest again
    EXPECT_EQ(left->DragOver(left, Text(8), nullptr), 1);
}

TEST_F(TreeDrag, AnotherControlAnswersByItsStylesAndItsOwner)
{
    DragRow(4);
    Told();
    CTreeListItem *item = nullptr;
    EXPECT_EQ(right->DragOver(left, Text(0), &item), 2);
    EXPECT_EQ(item, Right(L"Main"));
    EXPECT_EQ(right->DragOver(left, Text(8), &item), 3);
    EXPECT_EQ(item, nullptr);
    EXPECT_THAT(Told(), ElementsAre("right DragOver(Main, 0) from left"));

    right->SetStyle((kStyle | StyleReadOnly) & ~(StyleDropRoot | StyleDropSelf));
    EXPECT_EQ(right->DragOver(left, Text(8), &item), 0);
    EXPECT_EQ(right->DragOver(left, Text(0), &item), 2);
    Refuse(NotifyDragOver);
    EXPECT_EQ(right->DragOver(left, Text(0), &item), 0);
    answer = nullptr;
    Told();
    right->SetStyle((kStyle | StyleReadOnly) & ~StyleDrop);
    EXPECT_EQ(right->DragOver(left, Text(0), &item), 0);
    EXPECT_EQ(right->DragOver(left, Text(8), &item), 0);
    EXPECT_THAT(Told(), IsEmpty());
}

// --- Cursor and marker -----------------------------------------------------------------------------------------------

TEST_F(TreeDrag, TheCursorTellsTheAnswer)
{
    DragRow(4);
    EXPECT_EQ(left->GetCursorNumber(), 0); // over itself: neutral, the arrow
    EXPECT_EQ(left->viewport()->cursor().shape(), Qt::ArrowCursor);
    Move(Text(3));
    EXPECT_EQ(left->GetCursorNumber(), 8015);
    EXPECT_EQ(left->viewport()->cursor().shape(), Qt::BitmapCursor);
    Move(OnRight(Text(8)));
    EXPECT_EQ(left->GetCursorNumber(), 8015);
    Refuse(NotifyDragOver);
    DragOverRight(0);
    EXPECT_EQ(left->GetCursorNumber(), 8016);
    Release(OnRight(Text(0)));
    EXPECT_EQ(left->GetCursorNumber(), 0);
}

TEST_F(TreeDrag, TheMarkerStandsAtTheClientsLeftAndTheItemsMiddle)
{
    DragRow(4);
    EXPECT_FALSE(left->GetDropWnd()->isVisible()); // neutral
    Move(Text(3));
    const auto leftMiddle = [this] { return left->GetDropWnd()->pos() + QPoint(0, CTLCDropWnd::kHeight / 2); };
    EXPECT_TRUE(left->GetDropWnd()->isVisible());
    EXPECT_EQ(leftMiddle(), left->viewport()->mapToGlobal(QPoint(0, 3 * kRow + kRow / 2)));
    DragOverRight(1);
    EXPECT_EQ(leftMiddle(), right->viewport()->mapToGlobal(QPoint(0, kRow + kRow / 2)));
    Refuse(NotifyDragOver);
    DragOverRight(0);
    EXPECT_FALSE(left->GetDropWnd()->isVisible());
}

TEST_F(TreeDrag, AtTheRootTheMarkerStandsBesideTheFirstEmptyRow)
{
    DragRow(4);
    Move(OnRight(Text(8)));
    EXPECT_EQ(left->GetDropWnd()->pos() + QPoint(0, CTLCDropWnd::kHeight / 2),
              right->viewport()->mapToGlobal(QPoint(0, 3 * kRow + kRow / 2)));
}
