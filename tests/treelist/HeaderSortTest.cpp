// Clicks on the header of a tree list.
#include "tests/treelist/HeaderFixture.h"

using testing::ElementsAre;
using testing::IsEmpty;

using HeaderSort = HeaderTest;

TEST_F(HeaderSort, AClickOnASortableColumnIsToldAndTurnsItsArrow)
{
    MakeSortable(1);
    EXPECT_EQ(list->GetSortColumn(), -1);
    Click(kName + 30);
    EXPECT_THAT(clicked, ElementsAre(1));
    EXPECT_EQ(list->GetSortColumn(), 1);
    EXPECT_FALSE(list->IsSortDescending());

    Click(kName + 30);
    EXPECT_THAT(clicked, ElementsAre(1, 1));
    EXPECT_TRUE(list->IsSortDescending());
    Click(kName + 30);
    EXPECT_FALSE(list->IsSortDescending());
}

TEST_F(HeaderSort, AnotherColumnBeginsUpward)
{
    MakeSortable(0);
    MakeSortable(1);
    Click(kName + 30);
    Click(kName + 30);
    ASSERT_TRUE(list->IsSortDescending());
    Click(30);
    EXPECT_EQ(list->GetSortColumn(), 0);
    EXPECT_FALSE(list->IsSortDescending());
}

TEST_F(HeaderSort, AColumnIsSortableByItsBitWithAnyOfTheTwoOthers)
{
    const struct {
        std::uint32_t format;
        bool sortable;
    } rows[] = {{0, false},
                {kColumnSorts, false},
                {0x1000000, false},
                {0x3000000, false},
                {kColumnSorts | 0x1000000, true},
                {kColumnSorts | 0x2000000, true},
                {kColumnSorts | 0x3000000, true}};
    for (const auto &row : rows) {
        clicked.clear();
        list->SetColumnFormat(1, row.format, kColumnSorts | kColumnSortBits);
        Click(kName + 30);
        EXPECT_EQ(clicked.size(), row.sortable ? 1u : 0u) << row.format;
    }
}

TEST_F(HeaderSort, WithoutItsStyleNoClickIsTold)
{
    MakeSortable(1);
    list->SetStyle(kStyle & ~StyleHeaderSort);
    Click(kName + 30);
    EXPECT_THAT(clicked, IsEmpty());
    EXPECT_EQ(list->GetSortColumn(), -1);
}

TEST_F(HeaderSort, NothingIsSorted)
{
    MakeSortable(0);
    CTreeListItem *second = list->InsertItem(L"b");
    CTreeListItem *first = list->InsertItem(L"a");
    Click(30);
    EXPECT_EQ(list->GetFirstShowItem(0), second);
    EXPECT_EQ(list->GetFirstShowItem(1), first);
}

TEST_F(HeaderSort, APressOnOneColumnAndAReleaseOnAnotherIsNoClick)
{
    list->SetStyle(kStyle & ~StyleHeaderDrag);
    MakeSortable(0);
    MakeSortable(1);
    Press(At(30));
    Release(At(kName + 30));
    EXPECT_THAT(clicked, IsEmpty());
    Press(At(30));
    Release(QPoint(30, header->height() + 20));
    EXPECT_THAT(clicked, IsEmpty());
}

TEST_F(HeaderSort, AClickOnADividerIsNoClickOnAColumn)
{
    MakeSortable(0);
    Click(kName - 2);
    EXPECT_THAT(clicked, IsEmpty());
}

TEST_F(HeaderSort, TheArrowGoesWithItsColumnAndLeavesWithIt)
{
    MakeSortable(2);
    list->SetSortColumn(2, true);
    EXPECT_THAT(clicked, IsEmpty());
    list->DeleteColumn(1);
    EXPECT_EQ(list->GetSortColumn(), 1);
    EXPECT_TRUE(list->IsSortDescending());
    list->DeleteColumn(1);
    EXPECT_EQ(list->GetSortColumn(), -1);
    list->InsertColumn(L"New");
    EXPECT_EQ(list->GetSortColumn(), -1);

    list->SetSortColumn(1);
    EXPECT_EQ(list->GetSortColumn(), 1);
    list->SetSortColumn(-1);
    EXPECT_EQ(list->GetSortColumn(), -1);
}

TEST_F(HeaderSort, TheOwnerMayChangeTheColumnsWhenHeIsTold)
{
    MakeSortable(2);
    QObject::connect(list, &CTreeListCtrl::ColumnClicked, list, [this](int column) { list->DeleteColumn(column); });
    Click(kName + kLength + 20);
    EXPECT_EQ(list->GetColumnCount(), 2);
    EXPECT_EQ(list->GetSortColumn(), -1);
}

TEST_F(HeaderSort, AColumnThatANoticeOfTheDeletionInsertsHasNotTheOldOnesArrow)
{
    MakeSortable(2);
    list->SetSortColumn(2);
    ASSERT_EQ(list->BeginModify(list->InsertItem(L"P 1"), 2), 1);
    int told = 0;
    owner.onNotice = [this, &told](const TreeListNotice &) {
        if (told++ == 0)
            list->InsertColumn(L"New");
    };
    list->DeleteColumn(2);
    ASSERT_GT(told, 0);
    ASSERT_EQ(list->GetColumnCount(), 3);
    EXPECT_EQ(list->GetSortColumn(), -1);
}
