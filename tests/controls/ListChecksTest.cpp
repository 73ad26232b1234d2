// Check boxes of the extended list under clicks and keys.
#include "tests/controls/ListFixture.h"

using list_clicks::cellOf;
using list_clicks::clickCell;
using list_clicks::pressKey;
using list_clicks::sendMouse;
using testing::ElementsAre;
using testing::IsEmpty;

class ListChecks : public ListWidgetTest {
protected:
    void FillChecks(bool exclusive)
    {
        Fill({L"a", L"b", L"c"});
        for (int row = 0; row < 3; ++row)
            list->SetCheckbox(row, 1, 0, exclusive);
        Show();
    }
    std::vector<int> States() const
    {
        return {list->GetCheckbox(0, 1), list->GetCheckbox(1, 1), list->GetCheckbox(2, 1)};
    }
};

TEST_F(ListChecks, AClickFlipsAFreeBoxTellsAndSelectsTheRow)
{
    FillChecks(false);

    clickCell(*list, 1, 1);
    EXPECT_THAT(States(), ElementsAre(0, 1, 0));
    EXPECT_EQ(list->GetCurSel(), 1);
    clickCell(*list, 1, 1);
    EXPECT_THAT(States(), ElementsAre(0, 0, 0));
    EXPECT_THAT(told, ElementsAre(Place(1, 1), Place(1, 1)));
}

TEST_F(ListChecks, AClickOnAnotherCellOfTheRowFlipsNothing)
{
    FillChecks(false);
    clickCell(*list, 1, 0);

    EXPECT_THAT(States(), ElementsAre(0, 0, 0));
    EXPECT_THAT(told, IsEmpty());
}

TEST_F(ListChecks, OnlyOneOfAnExclusiveColumnIsSet)
{
    FillChecks(true);
    clickCell(*list, 0, 1);
    clickCell(*list, 2, 1);

    EXPECT_THAT(States(), ElementsAre(0, 0, 1));
}

TEST_F(ListChecks, AClickOnTheSetExclusiveBoxLeavesItSetAndStillTells)
{
    FillChecks(true);
    clickCell(*list, 2, 1);
    clickCell(*list, 2, 1);

    EXPECT_THAT(States(), ElementsAre(0, 0, 1));
    EXPECT_THAT(told, ElementsAre(Place(2, 1), Place(2, 1)));
}

TEST_F(ListChecks, TheParentIsToldBeforeTheRowIsSelected)
{
    FillChecks(false);
    list->SetCurSel(0);
    int selected = -2;
    onTold = [&] { selected = list->GetCurSel(); };

    clickCell(*list, 1, 1);
    EXPECT_EQ(selected, 0);
    EXPECT_EQ(list->GetCurSel(), 1);
}

TEST_F(ListChecks, TheHeadersBoxFollowsTheClicks)
{
    FillChecks(false);
    list->SetHeaderCheckedState(1, 0);
    for (int row = 0; row < 3; ++row)
        clickCell(*list, row, 1);
    EXPECT_EQ(list->GetHeaderCheckedState(1), 1);
    EXPECT_EQ(list->CountCheckedItems(1), 3);
    clickCell(*list, 0, 1);
    EXPECT_EQ(list->GetHeaderCheckedState(1), 0);
}

TEST_F(ListChecks, SpaceClicksTheCurrentCellsBox)
{
    FillChecks(true);
    list->setCurrentIndex(list->model()->index(1, 1));
    pressKey(*list, Qt::Key_Space, QStringLiteral(" "));
    EXPECT_THAT(States(), ElementsAre(0, 1, 0));
    list->setCurrentIndex(list->model()->index(1, 0));
    pressKey(*list, Qt::Key_Space, QStringLiteral(" "));
    EXPECT_THAT(States(), ElementsAre(0, 1, 0));
    EXPECT_THAT(told, ElementsAre(Place(1, 1)));
}

TEST_F(ListChecks, ADoubleClickIsTwoClicks)
{
    FillChecks(false);
    const QPoint at = cellOf(*list, 0, 1).center();
    sendMouse(*list->viewport(), QEvent::MouseButtonPress, at);
    sendMouse(*list->viewport(), QEvent::MouseButtonRelease, at);
    sendMouse(*list->viewport(), QEvent::MouseButtonDblClick, at);
    sendMouse(*list->viewport(), QEvent::MouseButtonRelease, at);

    EXPECT_THAT(States(), ElementsAre(0, 0, 0));
    EXPECT_EQ(told.size(), 2U);
}

TEST_F(ListChecks, TheRightButtonFlipsNothing)
{
    FillChecks(false);
    const QPoint at = cellOf(*list, 0, 1).center();
    sendMouse(*list->viewport(), QEvent::MouseButtonPress, at, Qt::RightButton);
    sendMouse(*list->viewport(), QEvent::MouseButtonRelease, at, Qt::RightButton);

    EXPECT_THAT(States(), ElementsAre(0, 0, 0));
}

TEST_F(ListChecks, TheListMayBeFilledAnewInsideTheNotice)
{
    FillChecks(false);
    onTold = [this] {
        list->DeleteAllItems();
        list->InsertItem(0, L"new");
        list->SetCheckbox(0, 1, 1, false);
    };

    clickCell(*list, 2, 1);
    EXPECT_EQ(list->GetItemCount(), 1);
    EXPECT_EQ(list->GetCurSel(), -1);
    clickCell(*list, 0, 1);
    EXPECT_EQ(list->GetCheckbox(0, 1), 1);
}

TEST_F(ListChecks, AProgramsAidTicksByTheSameRule)
{
    FillChecks(true);
    list->SetCheckbox(0, 1, 1, true);
    auto *model = list->model();

    EXPECT_TRUE(model->setData(model->index(2, 1), Qt::Checked, Qt::CheckStateRole));
    EXPECT_THAT(States(), ElementsAre(0, 0, 1));
    EXPECT_THAT(told, ElementsAre(Place(2, 1)));
    EXPECT_FALSE(model->setData(model->index(2, 0), Qt::Checked, Qt::CheckStateRole));
}
