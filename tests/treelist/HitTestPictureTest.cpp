// A grid of points over the painted picture: what stands at a point is what hit testing says.
#include "tests/treelist/PartMap.h"
#include "tests/treelist/TreeFixture.h"

#include <random>

class TreeListPicture : public TreeListTest {
protected:
    static constexpr char16_t kFirstLabel = u'!'; // one character a cell, each another one

    /// Levels 1 to 4, each row with a child more so that it has a button; every kind of missing glyph.
    void CreateLabelled(std::uint32_t style)
    {
        CreateEmpty(style | StyleMultiSelect | StyleShowSelectionAlways);
        list->InsertColumn(L"Note", kColumnLeft, 70);
        int row = 0;
        CTreeListItem *parent = TreeListRoot();
        for (int top = 0; top < 12; ++top) {
            CTreeListItem *item = AddLabelled(parent, row++);
            parent = item->Level() < 4 ? item : TreeListRoot();
        }
        for (CTreeListItem *item = list->GetFirstShowItem(0); item; item = list->GetNextShowItem(item)) {
            list->Select(item);
            if (item->Level() < 4) {
                list->Expand(item, kExpand);
            } else {
                CTreeListItem *below = list->InsertItem(L"", item);
                list->InsertItem(L"", below);
            }
        }
        for (const TreeListColor which :
             {colorSelectedOther, colorSelected, colorSelectedActive, colorSelectedNoFocus, colorSelectedOtherText,
              colorSelectedText, colorSelectedActiveText, colorSelectedNoFocusText})
            list->SetColor(which, PartMap::kTextFillColor);
        QPixmap square(16, 16);
        square.fill(QColor(PartMap::kImageFill));
        list->SetItemImages({QIcon(square)});
        Show();
    }
    CTreeListItem *AddLabelled(CTreeListItem *parent, int row)
    {
        CTreeListItem *item = list->InsertItem(L"", parent);
        for (int column = 0; column < 4; ++column)
            list->SetItemText(item, column, std::wstring(1, LabelOf(row, column)));
        std::uint32_t missing = 0;
        if (row % 5 == 2)
            missing |= kItemShowsCheck;
        if (row % 5 == 3)
            missing |= kItemShowsLock;
        list->SetItemState(item, row % 5 == 4 ? 0U : std::uint32_t{kItemShowsImage}, missing);
        return item;
    }
    static wchar_t LabelOf(int row, int column) { return static_cast<wchar_t>(kFirstLabel + row * 4 + column); }

    /// Compares every step-th pixel; how many points of each part were met.
    std::map<int, int> Compare(int step = 1)
    {
        const QRect client = list->GetClient();
        const PartMap map(*list, client.size());
        std::map<int, int> met;
        int wrong = 0;
        for (int y = 0; y < client.height() && wrong < 5; y += step) {
            for (int x = 0; x < client.width() && wrong < 5; x += step) {
                int flag = -1, column = -2;
                QRect rect;
                const CTreeListItem *item = list->HitTest({x, y}, &flag, &column, &rect);
                const int painted = map.PartAt(x, y);
                ++met[painted];
                bool right = flag == painted && (painted == 0 || item) && (!item || rect.contains(x, y));
                if (const char16_t label = map.LabelAt(x, y); right && label != 0)
                    right = item && item->Text(column) == std::wstring(1, static_cast<wchar_t>(label));
                if (item == nullptr)
                    right = right && column == -1;
                if (!right) {
                    ++wrong;
                    ADD_FAILURE() << "at " << x << ", " << y << ": painted " << painted << " of cell "
                                  << static_cast<int>(map.LabelAt(x, y)) << ", hit " << flag << " in column " << column;
                }
            }
        }
        return met;
    }
};

TEST_F(TreeListPicture, EachPointOfATreeIsThePartThatIsPaintedThere)
{
    CreateLabelled(kTreeStyle | StyleCheck | StyleLock | StyleImage);
    auto met = Compare();
    for (const int part : {0, int{kHitButton}, int{kHitCheck}, int{kHitLock}, int{kHitImage}, int{kHitText}})
        EXPECT_GT(met[part], 200) << part;
}

TEST_F(TreeListPicture, EachPointOfAListIsThePartThatIsPaintedThere)
{
    CreateLabelled(StyleHeader | StyleCheck | StyleLock | StyleImage);
    auto met = Compare();
    EXPECT_EQ(met[kHitButton], 0);
    for (const int part : {0, int{kHitCheck}, int{kHitLock}, int{kHitImage}, int{kHitText}})
        EXPECT_GT(met[part], 200) << part;
}

TEST_F(TreeListPicture, StylesThatLeaveGlyphsOutLeaveThemOutOfHitsToo)
{
    CreateLabelled(kTreeStyle);
    for (const std::uint32_t glyphs : {0u, +StyleCheck, +StyleLock, +StyleImage, StyleCheck | StyleImage}) {
        for (const std::uint32_t tree :
             {StyleTree | StyleTreeButtons, StyleTree | StyleTreeLines | StyleTreeButtons, 0u}) {
            list->SetStyle(glyphs | tree | StyleMultiSelect | StyleShowSelectionAlways);
            auto met = Compare(3);
            EXPECT_EQ(met[kHitCheck] > 0, (glyphs & StyleCheck) != 0);
            EXPECT_EQ(met[kHitLock] > 0, (glyphs & StyleLock) != 0);
            EXPECT_EQ(met[kHitImage] > 0, (glyphs & StyleImage) != 0);
            EXPECT_EQ(met[kHitButton] > 0, tree != 0);
        }
    }
}

TEST_F(TreeListPicture, ScrolledViewsAreHitWhereTheyArePainted)
{
    CreateLabelled(kTreeStyle | StyleCheck | StyleLock | StyleImage);
    window.resize(520, 160);
    list->resize(190, 140);
    Settle();
    for (const int row : {0, 1, 5, 100}) {
        for (const int pixels : {0, 1, 17, 60, 159, 161, 1000}) {
            list->verticalScrollBar()->setValue(row);
            list->horizontalScrollBar()->setValue(pixels);
            Compare(2);
        }
    }
    EXPECT_GT(list->GetVertScroll(), 0);
    EXPECT_GT(list->GetHorzScroll(), 161);
}

TEST_F(TreeListPicture, ColumnsInAnotherOrderAreHitWhereTheyArePainted)
{
    CreateLabelled(kTreeStyle | StyleCheck | StyleLock | StyleImage);
    for (const std::vector<int> &order :
         {std::vector{3, 2, 1, 0}, std::vector{1, 0, 2, 3}, std::vector{2, 3, 0, 1}, std::vector{0, 3, 1, 2}}) {
        ASSERT_NE(list->SetColumnOrderArray(order), 0);
        const auto met = Compare(2);
        EXPECT_GT(met.at(kHitCheck), 0);
    }
}

TEST_F(TreeListPicture, NarrowColumnsCutTheirPartsOffForBoth)
{
    CreateLabelled(kTreeStyle | StyleCheck | StyleLock | StyleImage);
    for (int width = 1; width <= 130; width += 3) {
        list->SetColumnWidth(0, width);
        Compare(2);
    }
    list->SetColumnWidth(0, 100);
    for (int width = 1; width <= 12; ++width) {
        list->SetColumnWidth(1, width);
        Compare(2);
    }
}

TEST_F(TreeListPicture, AColumnOfWidthZeroIsNeitherPaintedNorHit)
{
    CreateLabelled(kTreeStyle | StyleCheck | StyleLock | StyleImage);
    for (int hidden = 0; hidden < 4; ++hidden) {
        const int width = list->GetColumnWidth(hidden);
        list->SetColumnWidth(hidden, 0);
        Compare(2);
        for (int x = 0; x < list->GetClient().width(); ++x) {
            int column = -1;
            list->HitTest({x, 5}, nullptr, &column);
            EXPECT_NE(column, hidden);
        }
        list->SetColumnWidth(hidden, width);
    }
}

TEST_F(TreeListPicture, RowsOfAnyHeightAreHitWhereTheyArePainted)
{
    CreateLabelled(kTreeStyle | StyleCheck | StyleLock | StyleImage);
    for (const int height : {10, 16, 18, 24, 40}) {
        list->SetItemHeight(height);
        const auto met = Compare(2);
        EXPECT_GT(met.at(kHitImage), 0) << height;
    }
}

TEST_F(TreeListPicture, AnyMixtureIsHitAsItIsPainted)
{
    CreateLabelled(kTreeStyle | StyleCheck | StyleLock | StyleImage);
    constexpr unsigned kSeed = 20261121;
    std::mt19937 random(kSeed);
    const auto draw = [&random](int most) { return static_cast<int>(random() % static_cast<unsigned>(most + 1)); };
    constexpr std::uint32_t kMixed[] = {
        StyleTree,     StyleTreeLines, StyleTreeRootLines, StyleTreeButtons, StyleCheck,   StyleLock,        StyleImage,
        StyleHorzGrid, StyleVertGrid,  StyleHeader,        StyleAlternate,   StyleBkColor, StyleSelectColumn};
    int parts = 0;
    for (int round = 0; round < 60; ++round) {
        std::uint32_t style = StyleMultiSelect | StyleShowSelectionAlways;
        for (const std::uint32_t bit : kMixed)
            style |= draw(1) ? bit : 0;
        // Lines without buttons keep the place of the button, and nothing is painted there to compare with.
        if ((style & StyleTreeLines) != 0)
            style |= StyleTreeButtons;
        list->SetStyle(style);
        for (int column = 0; column < 4; ++column)
            list->SetColumnWidth(column, draw(5) == 0 ? 0 : draw(150));
        std::vector<int> order{0, 1, 2, 3};
        std::shuffle(order.begin(), order.end(), random);
        list->SetColumnOrderArray(order);
        list->SetItemHeight(8 + draw(30));
        list->resize(60 + draw(340), 60 + draw(240));
        list->Expand(list->GetFirstShowItem(draw(3)), kToggle);
        Settle();
        list->verticalScrollBar()->setValue(draw(12));
        list->horizontalScrollBar()->setValue(draw(200));
        for (const auto &[part, count] : Compare(3))
            parts += part != 0 ? count : 0;
        if (HasFailure()) {
            ADD_FAILURE() << "round " << round << " of seed " << kSeed << ", style " << std::hex << style;
            return;
        }
    }
    EXPECT_GT(parts, 20000);
}
