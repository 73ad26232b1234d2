// The keys and the menu of a tree list's header.
#include "tests/treelist/HeaderFixture.h"

#include "controls/treelist/TreeListEditors.h"

#include <QContextMenuEvent>
#include <QMenu>

using testing::ElementsAre;
using testing::HasSubstr;

namespace {

class HeaderKeys : public HeaderTest {
protected:
    void Focus()
    {
        header->setFocus(Qt::TabFocusReason);
        Settle();
    }
    std::string Name() const { return header->accessibleName().toStdString(); }
    QMenu *OpenMenu() const
    {
        for (auto *menu : header->findChildren<QMenu *>()) {
            if (menu->isVisible())
                return menu;
        }
        return nullptr;
    }
};

using HeaderMenu = HeaderKeys;

std::vector<std::string> textsOf(const QMenu &menu)
{
    std::vector<std::string> texts;
    for (const QAction *action : menu.actions())
        texts.push_back(action->isSeparator() ? "-" : action->text().toStdString());
    return texts;
}

} // namespace

TEST_F(HeaderKeys, TabReachesTheHeaderAndItsNameTellsTheColumn)
{
    EXPECT_TRUE(header->focusPolicy() & Qt::TabFocus);
    EXPECT_FALSE(header->focusPolicy() & Qt::ClickFocus);
    EXPECT_FALSE(Name().empty());
    Focus();
    EXPECT_EQ(header->GetCurrentColumn(), 0);
    EXPECT_THAT(Name(), HasSubstr("Name"));
    PressKey(Qt::Key_Right);
    EXPECT_THAT(Name(), HasSubstr("Length"));

    list->SetStyle(kStyle & ~StyleHeader);
    EXPECT_EQ(header->focusPolicy(), Qt::NoFocus);
}

TEST_F(HeaderKeys, TabGoesThroughTheHeaderToTheRowsAndOnToTheNextControl)
{
    QWidget form;
    QPushButton above(&form);
    CTreeListCtrl rows(&form);
    QPushButton below(&form);
    rows.Create(kStyle, QRect(0, 40, 300, 200), &form, 7);
    form.show();
    const auto next = [](const QWidget *widget) {
        do
            widget = widget->nextInFocusChain();
        while (!widget->isVisible() || !(widget->focusPolicy() & Qt::TabFocus));
        return widget;
    };
    EXPECT_EQ(next(&above), rows.GetHeader());
    EXPECT_EQ(next(rows.GetHeader()), &rows);
    EXPECT_EQ(next(&rows), &below);
}

TEST_F(HeaderKeys, ArrowsHomeAndEndGoAlongTheShownColumns)
{
    list->SetColumnOrderArray({2, 0, 1});
    Focus();
    std::vector<int> seen = {header->GetCurrentColumn()};
    for (const int key :
         {Qt::Key_Right, Qt::Key_Right, Qt::Key_Right, Qt::Key_Left, Qt::Key_Home, Qt::Key_Left, Qt::Key_End}) {
        PressKey(key);
        seen.push_back(header->GetCurrentColumn());
    }
    EXPECT_THAT(seen, ElementsAre(2, 0, 1, 1, 0, 2, 2, 1));
}

TEST_F(HeaderKeys, WithControlAColumnGetsWiderAndNarrowerWithinItsLimits)
{
    Focus();
    PressKey(Qt::Key_Right, Qt::ControlModifier);
    EXPECT_EQ(Width(0), kName + 8);
    PressKey(Qt::Key_Left, Qt::ControlModifier);
    PressKey(Qt::Key_Left, Qt::ControlModifier);
    EXPECT_EQ(Width(0), kName - 8);

    const int column = list->InsertColumn(L"Limited", kColumnDefaultFormat, 54, -1, 50, 60);
    header->SetCurrentColumn(column);
    PressKey(Qt::Key_Left, Qt::ControlModifier);
    EXPECT_EQ(Width(column), 50);
    PressKey(Qt::Key_Right, Qt::ControlModifier);
    PressKey(Qt::Key_Right, Qt::ControlModifier);
    EXPECT_EQ(Width(column), 60);
}

TEST_F(HeaderKeys, WithControlAndShiftAColumnIsMovedWhereTheStyleLetsIt)
{
    Focus();
    PressKey(Qt::Key_Right, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_THAT(Order(), ElementsAre(1, 0, 2));
    PressKey(Qt::Key_Right, Qt::ControlModifier | Qt::ShiftModifier);
    PressKey(Qt::Key_Right, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_THAT(Order(), ElementsAre(1, 2, 0));
    PressKey(Qt::Key_Left, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_THAT(Order(), ElementsAre(1, 0, 2));
    EXPECT_EQ(header->GetCurrentColumn(), 0);

    list->SetStyle(kStyle & ~StyleHeaderDrop);
    PressKey(Qt::Key_Left, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_THAT(Order(), ElementsAre(1, 0, 2));
}

TEST_F(HeaderKeys, PlusFitsAndSpaceAndEnterClick)
{
    MakeSortable(0);
    Focus();
    PressKey(Qt::Key_Plus);
    EXPECT_EQ(Width(0), header->GetWholeWidth(0));
    PressKey(Qt::Key_Space);
    PressKey(Qt::Key_Return);
    EXPECT_THAT(clicked, ElementsAre(0, 0));
    EXPECT_TRUE(list->IsSortDescending());
}

TEST_F(HeaderKeys, TheHeaderIsAPartOfTheControlWhoseFocusLeavesWithIt)
{
    CTreeListItem *item = list->InsertItem(L"P 1");
    list->setFocus();
    ASSERT_EQ(list->BeginModify(item, 0), 1);
    Focus();
    EXPECT_NE(list->GetState(kControlFocused), 0u);
    EXPECT_NE(list->GetState(kControlEditing), 0u);
    other->setFocus();
    EXPECT_EQ(list->GetState(kControlFocused), 0u);
    EXPECT_EQ(list->GetState(kControlEditing), 0u);

    Focus();
    EXPECT_NE(list->GetState(kControlFocused), 0u);
    other->setFocus();
    EXPECT_EQ(list->GetState(kControlFocused), 0u);
}

TEST_F(HeaderKeys, WhatChangesColumnsEndsTheEditOfARowAndIsGivenUpWhereTheOwnerKeepsIt)
{
    MakeSortable(0);
    CTreeListItem *item = list->InsertItem(L"P 1");
    Focus();
    const struct {
        int key;
        Qt::KeyboardModifiers modifiers;
    } keys[] = {{Qt::Key_Space, Qt::NoModifier},
                {Qt::Key_Return, Qt::NoModifier},
                {Qt::Key_Plus, Qt::NoModifier},
                {Qt::Key_Right, Qt::ControlModifier},
                {Qt::Key_Right, Qt::ControlModifier | Qt::ShiftModifier}};
    for (const auto &[key, modifiers] : keys) {
        owner.answers[NotifyColumnChanging] = {-1};
        ASSERT_EQ(list->BeginModify(item, 1), 1);
        list->GetEdit()->setText(QStringLiteral("wrong"));
        PressKey(key, modifiers);
        EXPECT_NE(list->GetState(kControlEditing), 0u) << key;
        list->CancelModify();
        EXPECT_THAT(clicked, ElementsAre()) << key;
        EXPECT_EQ(Width(0), kName) << key;
        EXPECT_THAT(Order(), ElementsAre(0, 1, 2)) << key;

        owner.answers.clear();
        ASSERT_EQ(list->BeginModify(item, 1), 1);
        PressKey(key, modifiers);
        EXPECT_EQ(list->GetState(kControlEditing), 0u) << key;
        clicked.clear();
        list->SetColumnWidth(0, kName);
        list->SetColumnOrderArray({0, 1, 2});
    }
}

TEST_F(HeaderKeys, SpaceAndEnterOnAColumnThatIsNotSortableDoNothingToTheRows)
{
    CTreeListItem *top = list->InsertItem(L"top");
    list->InsertItem(L"below", top);
    list->SelectItem(top, 0);
    Focus();
    PressKey(Qt::Key_Space);
    PressKey(Qt::Key_Return);
    EXPECT_EQ(list->GetVisibleCount(), 1);
    EXPECT_EQ(list->GetState(kControlEditing), 0u);
}

TEST_F(HeaderKeys, OtherKeysReachTheRows)
{
    list->SelectItem(list->InsertItem(L"one"), 0);
    CTreeListItem *two = list->InsertItem(L"two");
    Focus();
    PressKey(Qt::Key_Down);
    EXPECT_EQ(list->GetSelectedItem(), two);
}

TEST_F(HeaderKeys, TheColumnThatKeysGoToIsScrolledIntoView)
{
    list->SetColumnWidth(0, 300);
    list->SetColumnWidth(2, 300);
    Settle();
    Focus();
    PressKey(Qt::Key_End);
    EXPECT_EQ(header->GetColumnRect(2).right() + 1, header->width());
    PressKey(Qt::Key_Home);
    EXPECT_EQ(header->GetColumnRect(0).left(), 0);
}

TEST_F(HeaderKeys, AColumnThatGoesTakesNoKeysAlong)
{
    Focus();
    PressKey(Qt::Key_End);
    list->DeleteColumn(2);
    EXPECT_EQ(header->GetCurrentColumn(), 0);
    PressKey(Qt::Key_Right);
    EXPECT_EQ(header->GetCurrentColumn(), 1);
}

TEST_F(HeaderMenu, ItShowsAndHidesEachColumn)
{
    const auto menu = header->MakeMenu(1);
    ASSERT_THAT(textsOf(*menu), testing::SizeIs(6));
    EXPECT_THAT(textsOf(*menu), testing::Contains("Length"));
    EXPECT_TRUE(menu->actions()[1]->isChecked());
    menu->actions()[1]->trigger();
    EXPECT_THAT(Order(), ElementsAre(0, 2));
    EXPECT_NE(list->GetColumnFormat(1) & kColumnHidden, 0u);

    const auto again = header->MakeMenu(0);
    EXPECT_FALSE(again->actions()[1]->isChecked());
    again->actions()[1]->trigger();
    EXPECT_THAT(Order(), testing::UnorderedElementsAre(0, 1, 2));
}

TEST_F(HeaderMenu, AColumnThatIsShownAgainIsSeenThoughItWasClosed)
{
    list->SetColumnWidth(1, 0);
    list->SetColumnFormat(1, kColumnHidden, 0);
    header->MakeMenu(0)->actions()[1]->trigger();
    EXPECT_EQ(Width(1), header->GetWholeWidth(1));
    EXPECT_GT(Width(1), 0);
}

TEST_F(HeaderMenu, TheLastShownColumnCannotBeHidden)
{
    header->MakeMenu(0)->actions()[1]->trigger();
    header->MakeMenu(0)->actions()[2]->trigger();
    const auto menu = header->MakeMenu(0);
    EXPECT_FALSE(menu->actions()[0]->isEnabled());
    EXPECT_TRUE(menu->actions()[1]->isEnabled());
}

TEST_F(HeaderMenu, ItFitsTheColumnOrAllOfThem)
{
    list->InsertItem(L"A section with a name that is longer than all others");
    const auto menu = header->MakeMenu(1);
    menu->actions()[4]->trigger();
    EXPECT_EQ(Width(1), header->GetWholeWidth(1));
    EXPECT_EQ(Width(0), kName);
    menu->actions()[5]->trigger();
    for (const int column : {0, 1, 2})
        EXPECT_EQ(Width(column), header->GetWholeWidth(column));

    EXPECT_THAT(textsOf(*header->MakeMenu(-1)), testing::SizeIs(5)) << "beside all columns there is none to fit";
}

TEST_F(HeaderMenu, AColumnIsNamedAsItIsAndByItsNumberWhenItHasNoName)
{
    list->SetColumnText(1, L"Length & slope");
    list->SetColumnText(2, L"");
    const auto texts = textsOf(*header->MakeMenu(-1));
    EXPECT_EQ(texts[1], "Length && slope");
    EXPECT_THAT(texts[2], HasSubstr("3"));
}

TEST_F(HeaderMenu, TheRightButtonOpensItAndTakesBackADrag)
{
    Press(At(kName));
    MoveTo(At(kName + 30));
    QContextMenuEvent event(QContextMenuEvent::Mouse, At(30), header->mapToGlobal(At(30)));
    QApplication::sendEvent(header, &event);
    EXPECT_EQ(Width(0), kName);
    ASSERT_NE(OpenMenu(), nullptr);
    OpenMenu()->close();
}

TEST_F(HeaderMenu, TheMenuKeyOpensItForTheColumnOfTheKeys)
{
    Focus();
    PressKey(Qt::Key_Right);
    QContextMenuEvent event(QContextMenuEvent::Keyboard, At(10), header->mapToGlobal(At(10)));
    QApplication::sendEvent(header, &event);
    ASSERT_NE(OpenMenu(), nullptr);
    EXPECT_EQ(header->mapFromGlobal(OpenMenu()->pos()).x(), kName);
    OpenMenu()->actions()[4]->trigger();
    EXPECT_EQ(Width(1), header->GetWholeWidth(1));
    OpenMenu()->close();
}
