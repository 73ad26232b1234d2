// What a screen reader is told while the tree list changes.
#include "tests/treelist/AccessFixture.h"

#include "controls/treelist/TreeListAccessible.h"

#include <algorithm>
#include <functional>
#include <vector>

namespace {

using testing::Contains;
using testing::Field;
using testing::IsEmpty;
using testing::Not;

/// A notice to the screen reader: its kind, and the name of what it is about.
struct Heard {
    QAccessible::Event type = QAccessible::InvalidEvent;
    std::string name;
    bool operator==(const Heard &) const = default;
};
std::vector<Heard> heard;
std::function<void()> onHeard;

void hear(QAccessibleEvent *event)
{
    QAccessibleInterface *about = event->accessibleInterface();
    heard.push_back({event->type(), about ? about->text(QAccessible::Name).toStdString() : std::string()});
    if (onHeard)
        onHeard();
}

class TreeListNotices : public TreeListAccess {
protected:
    ~TreeListNotices() override
    {
        CTreeListAccessible::SetHandler(nullptr);
        onHeard = nullptr;
    }
    /// From now on what a screen reader is told is kept.
    void Listen()
    {
        CTreeListAccessible::SetHandler(hear);
        CTreeListAccessible::Of(*list)->RowsChanged(); // the rows that are there are told, too
        Settle();
        heard.clear();
    }
    /// How often the table as a whole was told since the last question; other notices are forgotten.
    static std::ptrdiff_t TablesTold()
    {
        Settle();
        const auto told = std::count(heard.begin(), heard.end(), Heard{QAccessible::TableModelChanged, ""});
        heard.clear();
        return told;
    }
};

} // namespace

TEST_F(TreeListNotices, AnotherFocusedCellIsTold)
{
    CreateTree();
    Listen();
    list->SelectItem(pipe12, 1);
    Settle();
    EXPECT_THAT(heard, Contains(Heard{QAccessible::Focus, "42.50"}));
    EXPECT_THAT(heard, Contains(Heard{QAccessible::Selection, "42.50"}));
    heard.clear();
    list->SelectItem(pipe12, 0);
    Settle();
    EXPECT_THAT(heard, Contains(Heard{QAccessible::Focus, "Pipe 1-2"}));
    heard.clear();
    Settle();
    EXPECT_THAT(heard, IsEmpty());
}

TEST_F(TreeListNotices, TheFocusedCellIsToldAgainWhenTheListGetsTheFocus)
{
    CreateTree();
    Listen();
    list->SelectItem(areaA, 0);
    Settle();
    other->setFocus();
    Settle();
    heard.clear();
    list->setFocus();
    Settle();
    EXPECT_THAT(heard, Contains(Heard{QAccessible::Focus, "Area A"}));
}

TEST_F(TreeListNotices, SelectingAndUnselectingOfSeveralRowsIsTold)
{
    CreateTree(kTreeStyle | StyleMultiSelect);
    Listen();
    list->SelectItem(pipe12, 0, false);
    list->SelectItem(pipe23, 0, false);
    Settle();
    EXPECT_THAT(heard, Contains(Heard{QAccessible::SelectionAdd, "Pipe 1-2"}));
    EXPECT_THAT(heard, Contains(Heard{QAccessible::SelectionAdd, "Pipe 2-3"}));
    heard.clear();
    list->SelectItem(pipe12, 0, false);
    Settle();
    EXPECT_THAT(heard, Contains(Heard{QAccessible::SelectionRemove, "Pipe 1-2"}));
}

TEST_F(TreeListNotices, ExpansionIsToldWithTheRowsThatChanged)
{
    CreateTree();
    Listen();
    list->Expand(outfall2, kExpand);
    Settle();
    EXPECT_THAT(heard, Contains(Heard{QAccessible::StateChanged, "Outfall 2"}));
    EXPECT_THAT(heard, Contains(Heard{QAccessible::TableModelChanged, ""}));
}

TEST_F(TreeListNotices, RowsInThePlaceOfAsManyOthersAreToldOnce)
{
    CreateTree();
    Listen();
    const int rows = Rows()->rowCount();
    list->DeleteItem(areaA);
    list->InsertItem(L"In its place", pipe12);
    EXPECT_EQ(TablesTold(), 1);
    list->DeleteAllItems();
    for (int row = 0; row < rows; ++row)
        list->InsertItem(L"New");
    ASSERT_EQ(Rows()->rowCount(), rows);
    EXPECT_EQ(TablesTold(), 1) << "filled anew";
    EXPECT_EQ(TablesTold(), 0);
}

TEST_F(TreeListNotices, RowsThatChangeTheirPlacesAreToldOnce)
{
    CreateTree();
    Listen();
    ASSERT_NE(list->ExchangeItem(areaA, areaB), 0);
    EXPECT_EQ(TablesTold(), 1);
    ASSERT_NE(list->MoveAfterItem(areaC, pipe12, TreeListLast()), 0);
    EXPECT_EQ(TablesTold(), 1);
}

TEST_F(TreeListNotices, AnotherOrderOfColumnsIsToldOnce)
{
    CreateTree();
    Listen();
    list->SetColumnOrderArray({2, 0, 1});
    EXPECT_EQ(TablesTold(), 1);
    list->SetColumnOrderArray({0, 1, 2});
    list->SetColumnOrderArray({2, 0, 1});
    EXPECT_EQ(TablesTold(), 0) << "it stands as it was told";
}

TEST_F(TreeListNotices, OtherColumnsInThePlaceOfAsManyAreToldOnce)
{
    CreateTree();
    Listen();
    const std::wstring title = list->GetColumnText(2);
    list->DeleteColumn(2);
    list->InsertColumn(title);
    EXPECT_EQ(TablesTold(), 1) << "its texts are gone";
    list->SetColumnText(2, L"Another title");
    EXPECT_EQ(TablesTold(), 1);
    list->SetColumnFormat(1, kColumnHidden, 0);
    list->SetColumnFormat(1, 0, kColumnHidden);
    EXPECT_EQ(TablesTold(), 0) << "it stands as it was told";
}

TEST_F(TreeListNotices, WhatOnlyLooksDifferentIsNoOtherTable)
{
    CreateTree();
    Listen();
    list->SetColumnWidth(1, 120);
    list->SetItemHeight(30);
    list->SetStyle(kTreeStyle | StyleVertGrid);
    list->resize(300, 200);
    EXPECT_EQ(TablesTold(), 0);
}

TEST_F(TreeListNotices, RowsThatChangedUnheardAreToldToTheNextOneWhoHears)
{
    CreateTree();
    Listen();
    CTreeListAccessible::SetHandler(nullptr);
    ASSERT_NE(list->ExchangeItem(areaA, areaB), 0);
    Settle();
    CTreeListAccessible::SetHandler(hear);
    list->SetItemText(areaC, 1, L"0.30");
    EXPECT_EQ(TablesTold(), 1);
}

TEST_F(TreeListNotices, ChangedTextsChecksAndLocksAreTold)
{
    CreateTree(kTreeStyle | StyleCheck | StyleLock);
    Listen();
    list->SetItemText(areaA, 1, L"0.30");
    Settle();
    EXPECT_THAT(heard, Contains(Heard{QAccessible::NameChanged, "0.30"}));
    heard.clear();
    list->SetItemCheck(areaA, true);
    Settle();
    EXPECT_THAT(heard, Contains(Heard{QAccessible::StateChanged, "Area A"}));
    EXPECT_THAT(heard, Contains(Heard{QAccessible::StateChanged, "Pipe 1-2"})) << "mixed now";
    EXPECT_THAT(heard, Not(Contains(Heard{QAccessible::StateChanged, "Area B"})));
    heard.clear();
    list->SetItemLock(areaB, true);
    Settle();
    EXPECT_THAT(heard, Contains(Heard{QAccessible::DescriptionChanged, "Area B"}));
}

TEST_F(TreeListNotices, ManyChangesAreToldAsOne)
{
    CreateEmpty();
    AddRows(1000);
    Show();
    Listen();
    for (CTreeListItem *item = list->GetFirstVisibleItem(); item; item = list->GetNextVisibleItem(item))
        list->SetItemText(item, 1, L"1.00");
    Settle();
    EXPECT_LT(heard.size(), 300u);
    EXPECT_THAT(heard, Contains(Heard{QAccessible::TableModelChanged, ""}));
    EXPECT_THAT(heard, Contains(Heard{QAccessible::SelectionWithin, ""}));
}

TEST_F(TreeListNotices, WhatHappensToARowThatIsDeletedBeforeItIsToldIsNotTold)
{
    CreateTree();
    Listen();
    list->SetItemText(areaA, 1, L"0.30");
    list->SetItemCheck(areaA, true);
    list->DeleteItem(areaA);
    list->InsertItem(L"In its place", pipe12); // in its memory, too
    list->InsertItem(L"And one more", pipe12);
    Settle();
    EXPECT_THAT(heard, Not(Contains(Field(&Heard::type, QAccessible::NameChanged))));
    EXPECT_THAT(heard, Contains(Heard{QAccessible::TableModelChanged, ""}));
}

TEST_F(TreeListNotices, WhoHearsANoticeMayEmptyTheListAtOnce)
{
    CreateTree(kTreeStyle | StyleCheck);
    Listen();
    onHeard = [this] {
        onHeard = nullptr;
        list->DeleteAllItems();
        for (int row = 0; row < 20; ++row) // in the memory of the others
            list->InsertItem(L"New");
    };
    for (CTreeListItem *item : {areaA, areaB, areaC}) {
        list->SetItemText(item, 1, L"0.30");
        list->SetItemCheck(item, true);
    }
    list->SelectItem(areaB, 1);
    Settle();
    EXPECT_EQ(Rows()->rowCount(), 20);
    EXPECT_FALSE(heard.empty());
    EXPECT_THAT(heard, Not(Contains(Heard{QAccessible::NameChanged, ""}))) << "of the new rows nothing has changed";
}
