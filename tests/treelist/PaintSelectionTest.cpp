// Rows that are selected, that a drag points to, and the one with the focus.
#include "tests/treelist/PaintFixture.h"

// --- Selection -------------------------------------------------------------------------------------------------------

TEST_F(TreeListPaint, ASelectedRowHasItsColourBehindEachText)
{
    CreateTree();
    list->SelectItem(pipe12, 0, true);
    for (int column = 0; column < 3; ++column) {
        EXPECT_EQ(Behind(pipe12, column), Told(colorSelected)) << column;
        EXPECT_EQ(Margin(pipe12, column), Told(colorBk)) << column;
        EXPECT_EQ(Behind(areaA, column), Told(colorBk)) << column;
        EXPECT_GT(CountOf(Cell(pipe12, column), Told(colorSelectedText)), 10) << column;
        EXPECT_GT(CountOf(Cell(areaA, column), Told(colorTextNormal)), 10) << column;
    }
}

TEST_F(TreeListPaint, FullRowSelectionFillsTheRowsWidth)
{
    CreateTree(kTreeStyle | StyleFullRowSelect);
    list->SelectItem(pipe12, 0, true);
    for (int column = 0; column < 3; ++column)
        EXPECT_EQ(Margin(pipe12, column), Told(colorSelected)) << column;
    EXPECT_EQ(Pixel(3, RowOf(pipe12).center().y()), Told(colorSelected)); // the indent too
    EXPECT_EQ(Pixel(335, RowOf(pipe12).center().y()), Told(colorBk));     // not beside the columns
}

TEST_F(TreeListPaint, CheckLockAndImageStayOnTheRowsOwnGround)
{
    CreateTree(kTreeStyle | StyleFullRowSelect | StyleAlternate | StyleCheck | StyleLock | StyleImage);
    list->SetItemState(pipe12, kItemShowsImage, 0);
    list->SelectItem(pipe12, 0, true);
    for (const int part : {kHitCheck, kHitLock, kHitImage}) {
        const QPoint middle = PlaceOf(pipe12, part);
        const int left = part == kHitLock ? middle.x() - 4 : middle.x() - 8;
        EXPECT_EQ(Pixel(left, middle.y() - 8), Told(colorAltEven)) << part;
        EXPECT_EQ(Pixel(left, middle.y() - 9), Told(colorSelected)) << part; // above its 16 pixels
    }
    EXPECT_EQ(Pixel(PlaceOf(pipe12, kHitButton).x() - 8, RowOf(pipe12).top() + 1), Told(colorSelected));
}

TEST_F(TreeListPaint, InTheSelectedColumnTheCellIsBrighter)
{
    for (const std::uint32_t full : {0U, std::uint32_t{StyleFullRowSelect}}) {
        if (full == 0)
            CreateTree(kTreeStyle | StyleSelectColumn);
        else
            list->SetStyle(kTreeStyle | StyleSelectColumn | full);
        list->SelectItem(pipe12, 2, true);
        EXPECT_EQ(Behind(pipe12, 2), Told(colorSelectedActive));
        EXPECT_EQ(Behind(pipe12, 1), Told(colorSelected));
        EXPECT_GT(CountOf(Cell(pipe12, 2), Told(colorSelectedActiveText)), 10);
    }
    list->SetStyle(kTreeStyle);
    EXPECT_EQ(Behind(pipe12, 2), Told(colorSelected));
}

TEST_F(TreeListPaint, OfManySelectedTheNewestHasTheFullColour)
{
    CreateTree(kTreeStyle | StyleMultiSelect | StyleSelectColumn);
    list->SelectItem(areaA, 1, true);
    list->SelectItem(areaC, 1, false);
    EXPECT_EQ(Behind(areaA, 0), Told(colorSelectedOther));
    EXPECT_EQ(Behind(areaA, 1), Told(colorSelectedOther)); // before the selected column's
    EXPECT_EQ(Behind(areaC, 0), Told(colorSelected));
    EXPECT_EQ(Behind(areaC, 1), Told(colorSelectedActive));
    EXPECT_GT(CountOf(Cell(areaA, 0), Told(colorSelectedOtherText)), 10);
}

TEST_F(TreeListPaint, WithoutTheFocusTheSelectionIsSeenOnlyWhenTheStyleSaysSo)
{
    CreateTree(kTreeStyle | StyleSelectColumn);
    list->SelectItem(pipe12, 1, true);
    list->SetState(0, kControlFocused);
    EXPECT_EQ(Behind(pipe12, 0), Told(colorBk));
    EXPECT_EQ(CountOf(Cell(pipe12, 0), Told(colorSelectedText)), 0);
    list->SetStyle(kTreeStyle | StyleSelectColumn | StyleShowSelectionAlways);
    for (int column = 0; column < 3; ++column)
        EXPECT_EQ(Behind(pipe12, column), Told(colorSelectedNoFocus)) << column;
    EXPECT_GT(CountOf(Cell(pipe12, 0), Told(colorSelectedNoFocusText)), 10);
    list->SetStyle(list->GetStyle() | StyleFullRowSelect);
    EXPECT_EQ(Margin(pipe12, 1), Told(colorSelectedNoFocus));
}

TEST_F(TreeListPaint, TheTargetOfADragIsActiveInAllOfItsCells)
{
    CreateTree();
    list->SetTargetItem(areaC);
    list->SetState(0, kControlFocused);
    for (int column = 0; column < 3; ++column)
        EXPECT_EQ(Behind(areaC, column), Told(colorSelectedActive)) << column;
    list->SetStyle(kTreeStyle | StyleFullRowSelect);
    EXPECT_EQ(Margin(areaC, 2), Told(colorSelectedActive));
    list->SetTargetItem(nullptr);
    EXPECT_EQ(Behind(areaC, 0), Told(colorBk));
}

TEST_F(TreeListPaint, OnlyTheTargetIsFilledNotTheHoveredRow)
{
    CreateTree(kTreeStyle | StyleFullRowSelect);
    list->SetHoverItem(areaC);
    EXPECT_EQ(Behind(areaC, 1), Told(colorBk));
    list->SetHoverItem(nullptr);
}

TEST_F(TreeListPaint, ACellWithoutRoomForTextIsNotFilled)
{
    CreateTree();
    list->SelectItem(pipe12, 0, true);
    list->SetColumnWidth(1, 4); // two pixels at each side
    EXPECT_EQ(CountOf(Picture().copy(160, RowOf(pipe12).top() + 1, 4, 18), Told(colorBk)), 4 * 18);
}

// --- Focus -----------------------------------------------------------------------------------------------------------

TEST_F(TreeListPaint, TheFocusItemHasADottedRectangle)
{
    CreateTree();
    list->SetSelectionMark(areaC);
    const QRect row = LineOf(5);
    ASSERT_EQ(RowOf(areaC).top(), row.top());
    const auto ofRow = [&] { return Picture().copy(row); };
    const QImage framed = ofRow();
    for (int x = 0; x < row.width(); ++x) {
        EXPECT_EQ(framed.pixelColor(x, 0), x % 2 == 0 ? Told(colorTextNormal) : Told(colorBk)) << x;
        EXPECT_EQ(framed.pixelColor(x, 19), x % 2 != 0 ? Told(colorTextNormal) : Told(colorBk)) << x;
    }
    for (int y = 0; y < 20; ++y)
        EXPECT_EQ(framed.pixelColor(0, y), y % 2 == 0 ? Told(colorTextNormal) : Told(colorBk)) << y;
    list->SetStyle(kTreeStyle | StyleBkColor);
    EXPECT_EQ(ofRow().pixelColor(1, 0), Told(colorTreeBk));
    list->SetTextColor(0x0000FF);
    EXPECT_EQ(ofRow().pixelColor(0, 0), QColor(Qt::red));
    list->SetSelectionMark(nullptr);
    EXPECT_EQ(ofRow().pixelColor(0, 0), Told(colorBk));
}

TEST_F(TreeListPaint, TheFocusRectangleLeavesTheGridItsSides)
{
    CreateTree(kTreeStyle | StyleHorzGrid | StyleVertGrid);
    list->SetSelectionMark(areaC);
    const QRect row = LineOf(5);
    EXPECT_TRUE(HasRightLine(CellAt(5, 2)));
    EXPECT_TRUE(HasBottomLine(CellAt(5, 1)));
    const QImage framed = Picture().copy(row);
    EXPECT_EQ(CountOf(framed.copy(0, 18, 329, 1), Told(colorTextNormal)), 165);
    EXPECT_GE(CountOf(framed.copy(328, 0, 1, 19), Told(colorTextNormal)), 9);
}
