// Places in the tree list: rows and their numbers, relatives, exchange and move.
#include "tests/controls/TreeListShape.h"

namespace {

class TreeListPlaces : public TreeListShape {};

} // namespace

// --- Rows ---

TEST_F(TreeListPlaces, ARowIsFoundByItsIndexAndAnIndexByItsRow)
{
    CTreeListItem *a = Add(L"a");
    CTreeListItem *b = Add(L"b", a);
    CTreeListItem *c = Add(L"c", b);
    CTreeListItem *d = Add(L"d");
    list.Expand(a, kExpand);
    EXPECT_EQ(list.GetFirstShowItem(0), a);
    EXPECT_EQ(list.GetFirstShowItem(1), b);
    EXPECT_EQ(list.GetFirstShowItem(2), d);
    EXPECT_EQ(list.GetTreeListItem(2), d);
    EXPECT_EQ(list.GetShowIndex(d), 2);
    EXPECT_EQ(list.GetShowIndex(c), -1) << "hidden";
    EXPECT_EQ(list.GetShowIndex(list.GetRootItem()), -1);
    EXPECT_EQ(list.GetShowIndex(nullptr), -1);
}

TEST_F(TreeListPlaces, AnIndexAtTheRootsShowCountGivesNull)
{
    EXPECT_EQ(list.GetFirstShowItem(0), nullptr) << "an empty list";
    Add(L"a");
    Add(L"b");
    EXPECT_EQ(list.GetRootItem()->ShowCount(), 3);
    EXPECT_EQ(list.GetFirstShowItem(3), nullptr);
    EXPECT_EQ(list.GetFirstShowItem(2), nullptr) << "behind the last row";
    EXPECT_EQ(list.GetFirstShowItem(-1), nullptr);
    EXPECT_EQ(list.GetFirstShowItem(0x7FFFFFFF), nullptr);
}

TEST_F(TreeListPlaces, TheNextRowGoesDownOnlyWhenAskedAndExpanded)
{
    CTreeListItem *a = Add(L"a");
    CTreeListItem *b = Add(L"b", a);
    CTreeListItem *c = Add(L"c", b);
    CTreeListItem *d = Add(L"d");
    EXPECT_EQ(list.GetNextShowItem(a), d) << "collapsed";
    list.Expand(a, kExpand);
    EXPECT_EQ(list.GetNextShowItem(a), b);
    EXPECT_EQ(list.GetNextShowItem(a, false), d);
    EXPECT_EQ(list.GetNextShowItem(c), d) << "up over two parents";
    EXPECT_EQ(list.GetNextShowItem(d), nullptr) << "the end at the root";
    EXPECT_EQ(list.GetNextShowItem(nullptr), nullptr);
    EXPECT_EQ(list.GetNextShowItem(list.GetRootItem()), a);
    EXPECT_EQ(list.GetNextShowItem(list.GetRootItem(), false), nullptr);
}

TEST_F(TreeListPlaces, FirstLastAndPreviousRows)
{
    EXPECT_EQ(list.GetFirstVisibleItem(), nullptr);
    EXPECT_EQ(list.GetLastVisibleItem(), nullptr);
    CTreeListItem *a = Add(L"a");
    CTreeListItem *b = Add(L"b");
    CTreeListItem *c = Add(L"c", b);
    EXPECT_EQ(list.GetFirstVisibleItem(), a);
    EXPECT_EQ(list.GetLastVisibleItem(), b);
    list.Expand(b, kExpand);
    EXPECT_EQ(list.GetLastVisibleItem(), c);
    CTreeListItem *d = Add(L"d");
    EXPECT_EQ(list.GetPrevVisibleItem(d), c) << "the last of the expanded one above";
    EXPECT_EQ(list.GetPrevVisibleItem(c), b);
    EXPECT_EQ(list.GetPrevVisibleItem(b), a);
    EXPECT_EQ(list.GetPrevVisibleItem(a), nullptr);
    EXPECT_EQ(list.GetPrevVisibleItem(nullptr), nullptr);
}

// --- Relatives ---

TEST_F(TreeListPlaces, ATopLevelItemsParentReadsAsNullNotAsTheRoot)
{
    CTreeListItem *a = Add(L"a");
    CTreeListItem *b = Add(L"b", a);
    EXPECT_EQ(list.GetParentItem(a), nullptr);
    EXPECT_EQ(a->Parent(), list.GetRootItem());
    EXPECT_EQ(list.GetParentItem(b), a);
    EXPECT_EQ(list.GetParentItem(list.GetRootItem()), nullptr);
}

TEST_F(TreeListPlaces, ARelativeByItsCode)
{
    CTreeListItem *a = Add(L"a");
    CTreeListItem *b = Add(L"b", a);
    CTreeListItem *c = Add(L"c", a);
    CTreeListItem *d = Add(L"d");
    list.Expand(a, kExpand);
    list.SetStyle(StyleMultiSelect);
    list.Select(b);
    list.Select(d);
    EXPECT_EQ(list.GetNextItem(c, 0), list.GetRootItem());
    EXPECT_EQ(list.GetNextItem(b, 1), c);
    EXPECT_EQ(list.GetNextItem(c, 2), b);
    EXPECT_EQ(list.GetNextItem(c, 3), a);
    EXPECT_EQ(list.GetNextItem(a, 4), b);
    EXPECT_EQ(list.GetNextItem(d, 5), a);
    EXPECT_EQ(list.GetNextItem(c, 6), d);
    EXPECT_EQ(list.GetNextItem(d, 7), c);
    EXPECT_EQ(list.GetNextItem(nullptr, 9), d) << "newest first";
    EXPECT_EQ(list.GetNextItem(d, 10), b);
    EXPECT_EQ(list.GetNextItem(b, 10), nullptr);
    EXPECT_EQ(list.GetNextItem(c, 10), nullptr) << "not selected";
    for (const int code : {-1, 8, 11, 100})
        EXPECT_EQ(list.GetNextItem(a, code), nullptr) << code;
}

TEST_F(TreeListPlaces, FixedValuesAreNoItemsWhereAnItemIsMeant)
{
    CTreeListItem *a = Add(L"a");
    EXPECT_EQ(list.GetChildItem(TreeListRoot()), a);
    EXPECT_EQ(list.GetChildItem(nullptr), a);
    EXPECT_EQ(list.GetLastChildItem(TreeListRoot()), a);
    for (CTreeListItem *fixed : {TreeListFirst(), TreeListLast(), TreeListSorted()}) {
        EXPECT_EQ(list.GetChildItem(fixed), nullptr);
        EXPECT_EQ(list.GetParentItem(fixed), nullptr);
        EXPECT_EQ(list.GetNextSiblingItem(fixed), nullptr);
        EXPECT_EQ(list.GetPrevSiblingItem(fixed), nullptr);
        EXPECT_EQ(list.GetNextShowItem(fixed), nullptr);
        EXPECT_EQ(list.GetPrevVisibleItem(fixed), nullptr);
        EXPECT_EQ(list.GetShowIndex(fixed), -1);
        EXPECT_EQ(list.GetItemText(fixed), L"");
        EXPECT_EQ(list.GetItemData(fixed), 0u);
        EXPECT_EQ(list.GetItemState(fixed, ~0u), 0u);
        EXPECT_EQ(list.DeleteItem(fixed), 0);
        EXPECT_EQ(list.SelectItem(fixed), 0);
        EXPECT_EQ(list.Expand(fixed, kExpand), 0);
        EXPECT_FALSE(list.OwnsItem(fixed));
        EXPECT_FALSE(list.IsInSelectsTree(fixed));
    }
    EXPECT_EQ(list.GetCount(), 1);
}

// --- Exchange and move ---

TEST_F(TreeListPlaces, TwoItemsTakeEachOthersPlacesWithTheirDescendants)
{
    CTreeListItem *a = Add(L"a");
    CTreeListItem *x = Add(L"x", a);
    CTreeListItem *y = Add(L"y", x);
    CTreeListItem *b = Add(L"b");
    Add(L"c");
    EXPECT_EQ(list.ExchangeItem(x, b), 1);
    EXPECT_EQ(Shape(), L"a(b) x(y) c");
    EXPECT_EQ(b->Level(), 2);
    EXPECT_EQ(x->Level(), 1);
    EXPECT_EQ(y->Level(), 2);
    EXPECT_EQ(a->ChildCount(), 2);
    EXPECT_EQ(list.ExchangeItem(x, a), 1) << "neighbours";
    EXPECT_EQ(Shape(), L"x(y) a(b) c");
    EXPECT_EQ(list.ExchangeItem(x, a), 1) << "and the other way";
    EXPECT_EQ(Shape(), L"a(b) x(y) c");
}

TEST_F(TreeListPlaces, AnItemIsNotExchangedWithItselfItsDescendantTheRootOrNothing)
{
    TreeListJournal other;
    CTreeListItem *foreign = other.InsertItem(L"f");
    CTreeListItem *a = Add(L"a");
    CTreeListItem *x = Add(L"x", Add(L"w", a));
    EXPECT_EQ(list.ExchangeItem(a, a), 0);
    EXPECT_EQ(list.ExchangeItem(a, x), 0);
    EXPECT_EQ(list.ExchangeItem(x, a), 0);
    EXPECT_EQ(list.ExchangeItem(a, list.GetRootItem()), 0);
    EXPECT_EQ(list.ExchangeItem(a, nullptr), 0);
    EXPECT_EQ(list.ExchangeItem(a, foreign), 0);
    EXPECT_EQ(list.ExchangeItem(foreign, a), 0);
    EXPECT_EQ(Shape(), L"a(w(x))");
    EXPECT_EQ(other.GetCount(), 1);
}

TEST_F(TreeListPlaces, AnItemMovesWithItsDescendants)
{
    CTreeListItem *a = Add(L"a");
    CTreeListItem *x = Add(L"x", a);
    CTreeListItem *b = Add(L"b");
    Add(L"c", b);
    list.Select(x);
    EXPECT_EQ(list.MoveAfterItem(x, b), 1);
    EXPECT_EQ(Shape(), L"a b(c x)");
    EXPECT_EQ(list.MoveAfterItem(b, a, TreeListFirst()), 1);
    EXPECT_EQ(Shape(), L"a(b(c x))");
    EXPECT_EQ(x->Level(), 3);
    EXPECT_EQ(list.GetSelectedItem(), x) << "and stays selected";
    EXPECT_EQ(list.MoveAfterItem(x, TreeListRoot(), a), 1);
    EXPECT_EQ(Shape(), L"a(b(c)) x");
    EXPECT_EQ(list.GetVisibleCount(), 2);
    EXPECT_EQ(list.MoveAfterItem(x, TreeListRoot(), x), 1) << "behind itself: it stays";
    EXPECT_EQ(Shape(), L"a(b(c)) x");
}

TEST_F(TreeListPlaces, AnItemDoesNotMoveUnderItselfOrItsDescendants)
{
    TreeListJournal other;
    CTreeListItem *foreign = other.InsertItem(L"f");
    CTreeListItem *a = Add(L"a");
    CTreeListItem *x = Add(L"x", Add(L"w", a));
    EXPECT_EQ(list.MoveAfterItem(a, a), 0);
    EXPECT_EQ(list.MoveAfterItem(a, x), 0);
    EXPECT_EQ(list.MoveAfterItem(list.GetRootItem(), a), 0);
    EXPECT_EQ(list.MoveAfterItem(a, nullptr), 0);
    EXPECT_EQ(list.MoveAfterItem(nullptr, a), 0);
    EXPECT_EQ(list.MoveAfterItem(foreign, a), 0);
    EXPECT_EQ(list.MoveAfterItem(a, foreign), 0);
    EXPECT_EQ(Shape(), L"a(w(x))");
    EXPECT_EQ(list.GetCount(), 3);
    EXPECT_EQ(other.GetCount(), 1);
}
