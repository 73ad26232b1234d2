// What a tree list shows and does while rows hang over it: target and hovered item, expanding and scrolling by time.
#include "tests/treelist/DragFixture.h"

using testing::ElementsAre;

namespace {

constexpr auto kExpandTimer = CTreeListCtrl::kTimerExpand;
constexpr auto kScrollTimer = CTreeListCtrl::kTimerScroll;

class TreeTarget : public TreeDrag {
protected:
    /// Rows for three pages and more in the right control: 15 rows fit its client.
    void FillRight()
    {
        for (int row = 0; row < 60; ++row)
            right->InsertItem(L"Row " + std::to_wstring(row));
        ASSERT_EQ(right->GetClient().height() / kRow, 15);
        log.clear();
    }
    void ExpectTimers(int expand, int scroll)
    {
        EXPECT_EQ(right->GetTimerInterval(kExpandTimer), expand);
        EXPECT_EQ(right->GetTimerInterval(kScrollTimer), scroll);
    }
    CTreeListItem *RowOfRight(int row) const { return right->GetFirstShowItem(row); }
};

} // namespace

TEST_F(TreeTarget, AnItemThatTakesTheRowsIsTargetAndHovered)
{
    DragRow(4);
    DragOverRight(1);
    EXPECT_EQ(right->GetTargetItem(), Right(L"Side"));
    EXPECT_EQ(right->GetHoverItem(), Right(L"Side"));
    ExpectTimers(1000, 200);
}

TEST_F(TreeTarget, AnItemThatRefusesThemIsOnlyHoveredAndItsTimesAreHalf)
{
    DragRow(4);
    DragOverRight(1);
    Refuse(NotifyDragOver);
    DragOverRight(1);
    EXPECT_EQ(right->GetTargetItem(), nullptr);
    EXPECT_EQ(right->GetHoverItem(), Right(L"Side"));
    ExpectTimers(500, 100);
}

TEST_F(TreeTarget, AtTheRootNothingIsTargetOrHovered)
{
    DragPondOverSide();
    Move(OnRight(Text(8)));
    EXPECT_EQ(right->GetTargetItem(), nullptr);
    EXPECT_EQ(right->GetHoverItem(), nullptr);
    ExpectTimers(-1, -1);
}

TEST_F(TreeTarget, OverTheDraggedRowNothingIsTargetOrHovered)
{
    DragRow(4);
    Move(Text(3));
    ASSERT_EQ(left->GetHoverItem(), Left(L"Side"));
    Move(Text(4));
    EXPECT_EQ(left->GetTargetItem(), nullptr);
    EXPECT_EQ(left->GetHoverItem(), nullptr);
    EXPECT_EQ(left->GetTimerInterval(kExpandTimer), -1);
    EXPECT_EQ(left->GetTimerInterval(kScrollTimer), -1);
}

TEST_F(TreeTarget, OutsideTheTreeStyleNoTimerRuns)
{
    right->SetStyle(right->GetStyle() & ~StyleTree);
    DragRow(4);
    DragOverRight(1);
    EXPECT_EQ(right->GetHoverItem(), Right(L"Side"));
    ExpectTimers(-1, -1);
}

TEST_F(TreeTarget, LeavingForgetsTargetHoverAndTimers)
{
    DragPondOverSide();
    Move(kBetween);
    EXPECT_EQ(right->GetTargetItem(), nullptr);
    EXPECT_EQ(right->GetHoverItem(), nullptr);
    ExpectTimers(-1, -1);
}

TEST_F(TreeTarget, ADeletedItemIsNoTargetAnyMore)
{
    DragPondOverSide();
    right->DeleteItem(Right(L"Side"));
    EXPECT_EQ(right->GetTargetItem(), nullptr);
    EXPECT_EQ(right->GetHoverItem(), nullptr);
    ExpectTimers(-1, -1);
}

TEST_F(TreeTarget, AnAncestorsDeletionTakesTheTargetAlong)
{
    right->Expand(Right(L"Side"), kExpand);
    DragRow(4);
    DragOverRight(2);
    ASSERT_EQ(right->GetHoverItem(), Right(L"Pipe 3"));
    right->DeleteItem(Right(L"Side"));
    EXPECT_EQ(right->GetTargetItem(), nullptr);
    EXPECT_EQ(right->GetHoverItem(), nullptr);
}

// --- Timer 1 ---------------------------------------------------------------------------------------------------------

TEST_F(TreeTarget, TheHoveredItemExpandsWhenItsTimeHasCome)
{
    DragPondOverSide();
    right->OnTimer(kExpandTimer);
    EXPECT_TRUE(Right(L"Side")->Has(kItemExpanded));
    EXPECT_THAT(Told(), ElementsAre("right Expanding(Side, 0)", "right Expanded(Side, 0)"));
    EXPECT_EQ(right->GetTimerInterval(kExpandTimer), -1);
}

TEST_F(TreeTarget, AnExpandedItemStaysExpanded)
{
    right->Expand(Right(L"Side"), kExpand);
    DragPondOverSide();
    right->OnTimer(kExpandTimer);
    EXPECT_TRUE(Right(L"Side")->Has(kItemExpanded));
}

TEST_F(TreeTarget, AnItemThatIsNoLongerUnderThePointerDoesNotExpand)
{
    DragPondOverSide();
    right->InsertItem(L"Brook", TreeListRoot(), TreeListFirst()); // Side moves down, Main is under the pointer now
    right->OnTimer(kExpandTimer);
    EXPECT_FALSE(Right(L"Side")->Has(kItemExpanded));
    EXPECT_FALSE(Right(L"Main")->Has(kItemExpanded));
    EXPECT_EQ(right->GetTimerInterval(kExpandTimer), -1);
}

TEST_F(TreeTarget, TheEventOfARunningTimerComesToItsRule)
{
    DragPondOverSide();
    // The numbers of the event system are the control's own; one of these is the timer that expands.
    for (int id = 0; id < 64 && right->GetTimerInterval(kExpandTimer) >= 0; ++id) {
        QTimerEvent event(id);
        QApplication::sendEvent(right, &event);
    }
    EXPECT_TRUE(Right(L"Side")->Has(kItemExpanded));
}

// --- Timer 2 ---------------------------------------------------------------------------------------------------------

TEST_F(TreeTarget, AtTheTopRowItScrollsUpByALine)
{
    FillRight();
    right->verticalScrollBar()->setValue(10);
    DragRow(4);
    DragOverRight(0);
    ASSERT_EQ(right->GetHoverItem(), RowOfRight(10));
    right->OnTimer(kScrollTimer);
    EXPECT_EQ(right->GetTopIndex(), 9);
    EXPECT_EQ(right->GetHoverItem(), RowOfRight(9));
    EXPECT_EQ(right->GetTargetItem(), nullptr); // nobody was asked about that row yet
    ExpectTimers(-1, 200);
    DragOverRight(0);
    EXPECT_EQ(right->GetTargetItem(), RowOfRight(9));
    ExpectTimers(1000, 200);
}

TEST_F(TreeTarget, AtTheLastFullRowItScrollsDownByALine)
{
    FillRight();
    right->verticalScrollBar()->setValue(10);
    DragRow(4);
    DragOverRight(14);
    right->OnTimer(kScrollTimer);
    EXPECT_EQ(right->GetTopIndex(), 11);
    EXPECT_EQ(right->GetHoverItem(), RowOfRight(11 + 14));
    ExpectTimers(-1, 200);
}

TEST_F(TreeTarget, BelowTheLastFullRowItScrollsDownToo)
{
    right->resize(380, 310); // half a row more
    QApplication::processEvents();
    FillRight();
    right->verticalScrollBar()->setValue(10);
    DragRow(4);
    Move(OnRight({120, 305}));
    ASSERT_EQ(right->GetHoverItem(), RowOfRight(25));
    right->OnTimer(kScrollTimer);
    EXPECT_EQ(right->GetTopIndex(), 11);
}

TEST_F(TreeTarget, InBetweenTheTimerEnds)
{
    FillRight();
    right->verticalScrollBar()->setValue(10);
    DragRow(4);
    for (const int row : {1, 13}) {
        DragOverRight(row);
        ASSERT_EQ(right->GetTimerInterval(kScrollTimer), 200);
        right->OnTimer(kScrollTimer);
        EXPECT_EQ(right->GetTopIndex(), 10);
        ExpectTimers(1000, -1);
    }
}

TEST_F(TreeTarget, WithNoRowUnderThePointerTheTimerEnds)
{
    DragRow(4);
    DragOverRight(2);
    right->DeleteAllItems();
    right->OnTimer(kScrollTimer);
    ExpectTimers(-1, -1);
}

TEST_F(TreeTarget, AtTheVeryTopTheViewStays)
{
    FillRight();
    DragRow(4);
    DragOverRight(0);
    right->OnTimer(kScrollTimer);
    EXPECT_EQ(right->GetTopIndex(), 0);
    EXPECT_EQ(right->GetHoverItem(), RowOfRight(0));
    EXPECT_EQ(right->GetTargetItem(), RowOfRight(0)); // the same row
}

TEST_F(TreeTarget, ATremblingHandKeepsTheTimersOfItsItem)
{
    DragPondOverSide();
    right->OnTimer(kScrollTimer); // in between: ended
    ExpectTimers(1000, -1);
    Move(OnRight(Text(1) + QPoint(3, 2)));
    ExpectTimers(1000, 200);
}
