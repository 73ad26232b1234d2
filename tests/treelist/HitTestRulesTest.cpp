// Where the parts of a row stand in pixels, and what a point is.
#include "tests/treelist/TreeFixture.h"

namespace {

constexpr std::uint32_t kAllGlyphs = StyleCheck | StyleLock | StyleImage;

TreeListParts TreeParts(std::uint32_t style, std::uint32_t state, int level, const TreeListRect &rect = {0, 0, 200, 20})
{
    return PartsOf({kCellTree, level, style, state}, rect);
}

} // namespace

// --- Geometry ---

TEST(TreeListGeometry, ATreeCellBeginsWithTwoPixelsAndSixteenForEachLevelAbove)
{
    EXPECT_EQ(TreeParts(StyleTree, 0, 1).text.left, 2);
    EXPECT_EQ(TreeParts(StyleTree, 0, 2).text.left, 18);
    EXPECT_EQ(TreeParts(StyleTree, 0, 5).text.left, 66);
    EXPECT_EQ(TreeParts(StyleTree, 0, 5).indent, (TreeListRect{2, 0, 66, 20}));
    EXPECT_TRUE(TreeParts(StyleTree, 0, 1).indent.IsEmpty());
}

TEST(TreeListGeometry, LinesOrButtonsKeepSixteenPixels)
{
    EXPECT_EQ(TreeParts(StyleTreeButtons, 0, 2).button, (TreeListRect{18, 2, 34, 18}));
    EXPECT_EQ(TreeParts(StyleTreeLines, 0, 2).button, (TreeListRect{18, 2, 34, 18}));
    EXPECT_EQ(TreeParts(StyleTreeLines | StyleTreeButtons, 0, 2).text.left, 34);
    EXPECT_TRUE(TreeParts(StyleTreeRootLines, 0, 2).button.IsEmpty());
}

TEST(TreeListGeometry, CheckLockAndImageTakeSixteenEightAndSixteen)
{
    const TreeListParts parts =
        TreeParts(StyleTreeButtons | kAllGlyphs, kItemShowsCheck | kItemShowsLock | kItemShowsImage, 1);
    EXPECT_EQ(parts.button, (TreeListRect{2, 2, 18, 18}));
    EXPECT_EQ(parts.check, (TreeListRect{18, 2, 34, 18}));
    EXPECT_EQ(parts.lock, (TreeListRect{34, 2, 42, 18}));
    EXPECT_EQ(parts.image, (TreeListRect{42, 2, 58, 18}));
    EXPECT_EQ(parts.text, (TreeListRect{60, 0, 198, 20})) << "two behind the image, two on the right";
}

TEST(TreeListGeometry, APartNeedsItsStyleAndTheBitOfTheItem)
{
    constexpr std::uint32_t kAll = kItemShowsCheck | kItemShowsLock | kItemShowsImage;
    const TreeListParts bits = TreeParts(0, kAll, 1);
    EXPECT_TRUE(bits.check.IsEmpty() && bits.lock.IsEmpty() && bits.image.IsEmpty());
    const TreeListParts styles = TreeParts(kAllGlyphs, 0, 1);
    EXPECT_TRUE(styles.check.IsEmpty() && styles.lock.IsEmpty() && styles.image.IsEmpty());
    for (const auto &[style, bit] :
         {std::pair{StyleCheck, kItemShowsCheck}, {StyleLock, kItemShowsLock}, {StyleImage, kItemShowsImage}}) {
        const TreeListParts one = TreeParts(style, bit, 1);
        EXPECT_EQ(!one.check.IsEmpty(), style == StyleCheck);
        EXPECT_EQ(!one.lock.IsEmpty(), style == StyleLock);
        EXPECT_EQ(!one.image.IsEmpty(), style == StyleImage);
    }
}

TEST(TreeListGeometry, TwoPixelsComeBehindLockOrImageByTheStyleAlone)
{
    EXPECT_EQ(TreeParts(0, 0, 1).text.left, 2);
    EXPECT_EQ(TreeParts(StyleCheck, 0, 1).text.left, 2);
    EXPECT_EQ(TreeParts(StyleLock, 0, 1).text.left, 4);
    EXPECT_EQ(TreeParts(StyleImage, 0, 1).text.left, 4);
    EXPECT_EQ(TreeParts(StyleLock | StyleImage, 0, 1).text.left, 4) << "once for both";
}

TEST(TreeListGeometry, AMainCellIsATreeCellWithoutIndentAndButton)
{
    constexpr std::uint32_t kStyle = kAllGlyphs | StyleTreeButtons | StyleTreeLines;
    constexpr std::uint32_t kAll = kItemShowsCheck | kItemShowsLock | kItemShowsImage;
    const TreeListParts parts = PartsOf({kCellMain, 7, kStyle, kAll}, {10, 40, 110, 60});
    EXPECT_TRUE(parts.indent.IsEmpty() && parts.button.IsEmpty());
    EXPECT_EQ(parts.check, (TreeListRect{12, 42, 28, 58}));
    EXPECT_EQ(parts.lock, (TreeListRect{28, 42, 36, 58}));
    EXPECT_EQ(parts.image, (TreeListRect{36, 42, 52, 58}));
    EXPECT_EQ(parts.text, (TreeListRect{54, 40, 108, 60}));
}

TEST(TreeListGeometry, AListCellIsItsText)
{
    const TreeListParts parts = PartsOf({kCellList, 3, 0xFFFFFFFF, 0xFFFFFFFF}, {10, 40, 110, 60});
    EXPECT_EQ(parts.text, (TreeListRect{12, 40, 108, 60}));
    EXPECT_TRUE(parts.button.IsEmpty() && parts.check.IsEmpty() && parts.lock.IsEmpty() && parts.image.IsEmpty());
}

TEST(TreeListGeometry, GlyphsStandInSixteenPixelsInTheMiddleOfTheRow)
{
    for (const int height : {16, 20, 30, 44}) {
        const TreeListParts parts =
            TreeParts(StyleTreeButtons | kAllGlyphs, kItemShowsCheck | kItemShowsLock, 1, {0, 100, 200, 100 + height});
        for (const TreeListRect &glyph : {parts.button, parts.check, parts.lock}) {
            EXPECT_EQ(glyph.Height(), 16);
            EXPECT_EQ(glyph.top - 100, 100 + height - glyph.bottom);
        }
        EXPECT_EQ(parts.text.Height(), height);
    }
}

TEST(TreeListGeometry, TheTextOfACellThatIsTooNarrowIsEmpty)
{
    const TreeListParts parts = TreeParts(StyleTreeButtons, 0, 3, {0, 0, 30, 20});
    EXPECT_TRUE(parts.text.IsEmpty());
    EXPECT_GE(parts.text.right, parts.text.left);
}

TEST(TreeListGeometry, NothingIsHitOutsideOfTheCell)
{
    const TreeListRect cell{0, 0, 10, 20};
    const TreeListParts parts = TreeParts(StyleTreeButtons, 0, 1, cell); // the button goes on to 18
    EXPECT_EQ(PartAt(parts, cell, 9, 10), kHitButton);
    EXPECT_EQ(PartAt(parts, cell, 10, 10), 0);
    EXPECT_EQ(PartAt(parts, cell, 1, 10), 0) << "the margin";
    const TreeListRect low{0, 10, 40, 18};
    const TreeListParts lowParts = TreeParts(StyleTreeButtons, 0, 1, low); // the button stands from 6 to 22
    EXPECT_EQ(PartAt(lowParts, low, 5, 9), 0);
    EXPECT_EQ(PartAt(lowParts, low, 5, 10), kHitButton);
}

TEST(TreeListGeometry, ATextMayUseTheMarginOnTheRightBeforeItCountsAsCut)
{
    const TreeListRect cell{0, 0, 50, 20};
    const TreeListParts parts = PartsOf({kCellList, 1, 0, 0}, cell);
    EXPECT_TRUE(TextFits(parts, cell, 48));
    EXPECT_FALSE(TextFits(parts, cell, 49));
    const TreeListRect none{0, 0, 1, 20};
    EXPECT_TRUE(TextFits(PartsOf({kCellList, 1, 0, 0}, none), none, 0));
    EXPECT_FALSE(TextFits(PartsOf({kCellList, 1, 0, 0}, none), none, 1));
}

TEST(TreeListGeometry, TheOffsetOfATextIsThatOfItsPart)
{
    const TreeListCell cell{kCellTree, 3, StyleTreeButtons | StyleCheck, kItemShowsCheck};
    EXPECT_EQ(TextOffsetOf(cell), 2 + 32 + 16 + 16);
    EXPECT_EQ(TextOffsetOf(TreeListCell{}), 2);
}

// --- Points of the control ---

class TreeListHits : public TreeListTest {
protected:
    struct Hit {
        CTreeListItem *item;
        int flag, column;
        QRect rect;
    };
    Hit At(int x, int y) const
    {
        Hit hit{nullptr, -7, -7, QRect(1, 1, 1, 1)};
        hit.item = list->HitTest({x, y}, &hit.flag, &hit.column, &hit.rect);
        return hit;
    }
};

TEST_F(TreeListHits, TheFlagsOfARowFollowItsPartsFromTheLeft)
{
    CreateTree(kTreeStyle | StyleCheck | StyleLock | StyleImage);
    list->SetItemState(pipe12, kItemShowsImage, 0);
    // The second row, level 2: 2 and 16, button, check, lock, image, 2, text to 158, 2.
    const std::vector<std::pair<int, int>> ends = {{18, 0},         {34, kHitButton}, {50, kHitCheck}, {58, kHitLock},
                                                   {74, kHitImage}, {76, 0},          {158, kHitText}, {160, 0}};
    int x = 0;
    for (const auto &[end, flag] : ends) {
        for (; x < end; ++x) {
            const Hit hit = At(x, 30);
            EXPECT_EQ(hit.flag, flag) << x;
            EXPECT_EQ(hit.item, pipe12);
            EXPECT_EQ(hit.column, 0);
        }
    }
    EXPECT_EQ(At(160, 30).column, 1);
    EXPECT_EQ(At(160, 30).flag, 0) << "the margin of the next cell";
    EXPECT_EQ(At(162, 30).flag, kHitText);
}

TEST_F(TreeListHits, TheRectangleIsThatOfThePartAndOfTheCellBesideAll)
{
    CreateTree(kTreeStyle | StyleCheck);
    EXPECT_EQ(At(20, 30).rect, QRect(18, 22, 16, 16));
    EXPECT_EQ(At(40, 30).rect, QRect(34, 22, 16, 16));
    EXPECT_EQ(At(60, 30).rect, QRect(50, 20, 108, 20));
    EXPECT_EQ(At(5, 30).rect, QRect(0, 20, 160, 20));
}

TEST_F(TreeListHits, APointBelowTheLastRowIsNothing)
{
    CreateTree();
    EXPECT_EQ(At(20, 139).item, outfall2);
    for (const int y : {140, 141, 250, 100000}) {
        const Hit hit = At(20, y);
        EXPECT_EQ(hit.item, nullptr);
        EXPECT_EQ(hit.flag, 0);
        EXPECT_EQ(hit.column, -1);
        EXPECT_TRUE(hit.rect.isNull());
    }
}

TEST_F(TreeListHits, APointPastAllColumnsIsNothing)
{
    CreateTree();
    EXPECT_EQ(At(329, 30).item, pipe12);
    const Hit hit = At(330, 30);
    EXPECT_EQ(hit.item, nullptr);
    EXPECT_EQ(hit.column, -1);
    EXPECT_EQ(At(-1, 30).item, nullptr);
}

TEST_F(TreeListHits, APointOfTheHeaderIsNoRow)
{
    CreateTree();
    EXPECT_EQ(At(20, -1).item, nullptr);
    EXPECT_EQ(At(20, -15).item, nullptr);
    EXPECT_EQ(At(20, 0).item, outfall1);
    list->resize(400, 100);
    Settle();
    list->verticalScrollBar()->setValue(2);
    for (int y = -1; y >= -40; --y) // rows that are scrolled out lie behind the header
        EXPECT_EQ(At(20, y).item, nullptr) << y;
}

TEST_F(TreeListHits, AnItemWithoutChildrenKeepsThePlaceOfItsButton)
{
    CreateTree();
    EXPECT_EQ(At(2 + 2 * 16 + 8, 50).item, areaA);
    EXPECT_EQ(At(2 + 2 * 16 + 8, 50).flag, kHitButton);
}

TEST_F(TreeListHits, WithoutTheTreeStyleTheFirstColumnHasNeitherIndentNorButton)
{
    CreateTree(StyleHeader);
    EXPECT_EQ(At(1, 50).flag, 0);
    EXPECT_EQ(At(2, 50).flag, kHitText);
    EXPECT_EQ(At(2, 50).item, areaA);
}

TEST_F(TreeListHits, AnEmptyControlIsHitNowhere)
{
    CreateEmpty();
    Show();
    EXPECT_EQ(At(20, 5).item, nullptr);
    EXPECT_EQ(list->HitTest({20, 5}), nullptr) << "answers that nobody wants";
}

TEST_F(TreeListHits, AHiddenColumnIsNeverHit)
{
    CreateTree();
    ASSERT_NE(list->SetColumnFormat(1, kColumnHidden, 0), 0);
    for (int x = 0; x < 250; ++x)
        EXPECT_NE(At(x, 30).column, 1);
    EXPECT_EQ(At(170, 30).column, 2);
}

TEST_F(TreeListHits, RowsAreFoundFromTheScrollPosition)
{
    CreateEmpty();
    AddRows(100);
    Show();
    list->verticalScrollBar()->setValue(37);
    EXPECT_EQ(At(20, 0).item->Text(0), L"Row 37");
    EXPECT_EQ(At(20, 19).item->Text(0), L"Row 37");
    EXPECT_EQ(At(20, 20).item->Text(0), L"Row 38");
}

// --- Rectangles of items ---

TEST_F(TreeListHits, TheRectangleOfARowGoesOverAllColumnsAndIsScrolled)
{
    CreateTree();
    QRect row;
    ASSERT_TRUE(list->GetItemRect(areaA, row));
    EXPECT_EQ(row, QRect(0, 40, 330, 20));
    list->resize(200, 120);
    Settle();
    list->verticalScrollBar()->setValue(2);
    list->horizontalScrollBar()->setValue(50);
    ASSERT_TRUE(list->GetItemRect(areaA, row));
    EXPECT_EQ(row, QRect(-50, 0, 330, 20));
    ASSERT_TRUE(list->GetItemRect(outfall1, row));
    EXPECT_EQ(row.top(), -40) << "a shown row above the client has its place";
}

TEST_F(TreeListHits, AnItemInNoShownRowHasNoRectangle)
{
    CreateTree();
    QRect rect(1, 2, 3, 4);
    EXPECT_FALSE(list->GetItemRect(pipe98, rect));
    EXPECT_TRUE(rect.isNull());
    EXPECT_FALSE(list->GetItemRect(nullptr, rect));
    EXPECT_FALSE(list->GetItemRect(list->GetRootItem(), rect));
    EXPECT_FALSE(list->GetItemRect(pipe98, 0, rect, true));
    EXPECT_FALSE(list->GetItemRectTree(pipe98, rect, false));
    EXPECT_FALSE(list->GetItemRectMain(pipe98, rect, false));
}

TEST_F(TreeListHits, TheRectangleOfACellIsWholeOrThatOfItsText)
{
    CreateTree();
    QRect rect;
    ASSERT_TRUE(list->GetItemRect(pipe12, 0, rect, false));
    EXPECT_EQ(rect, QRect(0, 20, 160, 20));
    ASSERT_TRUE(list->GetItemRect(pipe12, 0, rect, true));
    EXPECT_EQ(rect, QRect(34, 20, 124, 20));
    ASSERT_TRUE(list->GetItemRect(pipe12, 2, rect, false));
    EXPECT_EQ(rect, QRect(240, 20, 90, 20));
    ASSERT_TRUE(list->GetItemRect(pipe12, 2, rect, true));
    EXPECT_EQ(rect, QRect(242, 20, 86, 20));
    EXPECT_FALSE(list->GetItemRect(pipe12, 3, rect, false));
    EXPECT_FALSE(list->GetItemRect(pipe12, -1, rect, false));
    list->SetColumnWidth(1, 0);
    EXPECT_FALSE(list->GetItemRect(pipe12, 1, rect, false));
}

TEST_F(TreeListHits, TheFirstColumnHasARectangleWithTheTreeAndOneWithout)
{
    CreateTree();
    QRect tree, plain;
    ASSERT_TRUE(list->GetItemRectTree(areaA, tree, true));
    ASSERT_TRUE(list->GetItemRectMain(areaA, plain, true));
    EXPECT_EQ(tree, QRect(50, 40, 108, 20));
    EXPECT_EQ(plain, QRect(2, 40, 156, 20));
    ASSERT_TRUE(list->GetItemRectTree(areaA, tree, false));
    EXPECT_EQ(tree, QRect(0, 40, 160, 20));
}
