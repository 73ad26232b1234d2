// Drop-down cells of the extended list and their popup.
#include "tests/controls/ListFixture.h"

#include "controls/rules/ListMessages.h"

using list_clicks::cellOf;
using list_clicks::clickArrow;
using list_clicks::clickAt;
using list_clicks::clickCell;
using list_clicks::pressKey;
using list_clicks::sendMouse;
using testing::ElementsAre;
using testing::IsEmpty;

class ListPopup : public ListWidgetTest {
protected:
    const std::vector<std::wstring> strings = {L"Asphalt", L"Brick", L"", L"Clay", L"Dirt", L"Brass"};

    /// Two rows; column 2 drops down, with the choice of that index.
    void FillCombos(int initial, int height = 6)
    {
        Fill({L"a", L"b"});
        for (int row = 0; row < 2; ++row)
            list->SetComboBox(row, 2, true, &strings, height, initial);
        Show();
    }
    void Press(int key, const QString &text = {}) { pressKey(*list->GetPopup()->GetListBox(), key, text); }
    int Selected() const { return list->GetPopup()->GetListBox()->currentRow(); }
    void ClickChoice(int choice)
    {
        QListWidget *box = list->GetPopup()->GetListBox();
        const QPoint at = box->visualItemRect(box->item(choice)).center();
        sendMouse(*box->viewport(), QEvent::MouseButtonPress, at);
        sendMouse(*box->viewport(), QEvent::MouseButtonRelease, at);
    }
};

// --- Opening ---------------------------------------------------------------------------------------------------------

TEST_F(ListPopup, AClickOnTheArrowOpensTheChoicesWithTheCellsOneSelected)
{
    FillCombos(3);
    clickArrow(*list, 1, 2);

    ASSERT_NE(list->GetPopup(), nullptr);
    EXPECT_TRUE(list->GetPopup()->isVisible());
    EXPECT_EQ(list->GetPopup()->GetListBox()->count(), 5); // without the empty one
    EXPECT_EQ(Selected(), 2);
    EXPECT_EQ(list->GetCurSel(), 1);
    EXPECT_FALSE(list->GetCells().IsArrowDown()); // the button is up again
    EXPECT_THAT(told, IsEmpty());
}

TEST_F(ListPopup, AClickBesideTheArrowOpensNothing)
{
    FillCombos(0);
    const QRect cell = cellOf(*list, 0, 2);
    clickAt(*list, QPoint(cell.right() - cell.height() - 2, cell.center().y()));

    EXPECT_EQ(list->GetPopup(), nullptr);
    EXPECT_EQ(list->GetCurSel(), 0);
}

TEST_F(ListPopup, ThePopupStandsBelowItsCellInWholeRows)
{
    FillCombos(0);
    clickArrow(*list, 0, 2);
    const QRect cell = cellOf(*list, 0, 2);
    const QPoint corner = list->viewport()->mapToGlobal(cell.topLeft());
    const QRect place = list->GetPopup()->geometry();
    const int row = list->GetPopup()->GetListBox()->sizeHintForRow(0);

    EXPECT_EQ(place.left(), corner.x());
    EXPECT_EQ(place.top(), corner.y() + cell.height() - 1);
    EXPECT_EQ(place.width(), cell.width() - 1);
    EXPECT_LE(place.height(), 6 * cell.height() - 2);
    EXPECT_EQ((place.height() - 4) % row, 0);
    EXPECT_EQ(list->GetPopup()->GetScrollBar()->width(), 11);
}

TEST_F(ListPopup, ThePopupStandsAboveItsCellWhereTheScreenEnds)
{
    FillCombos(0, 8);
    window.move(50, window.screen()->availableGeometry().bottom() - 120);
    QApplication::processEvents();
    clickArrow(*list, 0, 2);

    const int top = list->viewport()->mapToGlobal(cellOf(*list, 0, 2).topLeft()).y();
    EXPECT_LE(list->GetPopup()->geometry().bottom(), top + 1);
    EXPECT_GE(list->GetPopup()->geometry().bottom(), top - 1);
}

TEST_F(ListPopup, TheScrollBarBeginsWithTheVisibleRowsAndTheSelection)
{
    FillCombos(4, 4);
    clickArrow(*list, 0, 2);
    const CXComboList &popup = *list->GetPopup();
    const int row = popup.GetListBox()->sizeHintForRow(0);

    EXPECT_EQ(popup.GetScrollBar()->maximum(), 5);
    EXPECT_EQ(popup.GetScrollBar()->pageStep(), (popup.height() - 4) / row);
    EXPECT_EQ(popup.GetScrollBar()->value(), 3);
    EXPECT_EQ(popup.GetListBox()->indexAt(QPoint(2, 2)).row(),
              std::min(2, 5 - (popup.height() - 4) / row)); // one above, as far as there are rows below
}

TEST_F(ListPopup, AnEmptyCellTakesTheFirstChoiceAndTellsNothing)
{
    FillCombos(-1);
    clickArrow(*list, 0, 2);

    EXPECT_EQ(Text(0, 2), L"Asphalt");
    EXPECT_EQ(Selected(), 0);
    EXPECT_THAT(told, IsEmpty());
}

TEST_F(ListPopup, WithoutChoicesThePopupIsOneEmptyRow)
{
    Fill({L"a"});
    const std::vector<std::wstring> none;
    list->SetComboBox(0, 2, true, &none, 0, 0);
    Show();
    clickArrow(*list, 0, 2);

    ASSERT_NE(list->GetPopup(), nullptr);
    EXPECT_GT(list->GetPopup()->height(), 4);
    Press(Qt::Key_Return);
    EXPECT_EQ(list->GetPopup(), nullptr);
    EXPECT_EQ(Text(0, 2), L"");
    EXPECT_THAT(told, IsEmpty());
}

TEST_F(ListPopup, AltDownAndF4OpenIt)
{
    FillCombos(1);
    list->setCurrentIndex(list->model()->index(1, 2));
    pressKey(*list, Qt::Key_Down, {}, Qt::AltModifier);
    ASSERT_NE(list->GetPopup(), nullptr);
    EXPECT_FALSE(list->GetCells().IsArrowDown());
    Press(Qt::Key_Escape);
    pressKey(*list, Qt::Key_F4);
    EXPECT_NE(list->GetPopup(), nullptr);
}

TEST_F(ListPopup, ASecondClickOnTheArrowOpensAnother)
{
    FillCombos(1);
    clickArrow(*list, 0, 2);
    const QPointer<CXComboList> first = list->GetPopup();
    clickArrow(*list, 1, 2);

    ASSERT_NE(list->GetPopup(), nullptr);
    EXPECT_NE(list->GetPopup(), first.data());
    EXPECT_EQ(list->GetCells().GetComboRow(), 1);
}

// --- Keys ------------------------------------------------------------------------------------------------------------

TEST_F(ListPopup, AnArrowKeyWritesTheChoiceItLeavesAndTellsNothing)
{
    // The cell is written before the key goes on to the list box.
    FillCombos(0);
    clickArrow(*list, 0, 2);
    list->SetItemText(0, 2, L"?");

    Press(Qt::Key_Down);
    EXPECT_EQ(Text(0, 2), L"Asphalt");
    EXPECT_EQ(Selected(), 1);
    Press(Qt::Key_Down);
    EXPECT_EQ(Text(0, 2), L"Brick");
    EXPECT_EQ(Selected(), 2);
    Press(Qt::Key_Up);
    EXPECT_EQ(Text(0, 2), L"Clay");
    EXPECT_EQ(Selected(), 1);
    EXPECT_NE(list->GetPopup(), nullptr);
    EXPECT_THAT(told, IsEmpty());
}

TEST_F(ListPopup, EnterWritesTheSelectedChoiceAndTells)
{
    FillCombos(0);
    clickArrow(*list, 1, 2);
    Press(Qt::Key_Down);
    Press(Qt::Key_Return);

    EXPECT_EQ(Text(1, 2), L"Brick");
    EXPECT_EQ(list->GetPopup(), nullptr);
    EXPECT_THAT(told, ElementsAre(Place(1, 2)));
}

TEST_F(ListPopup, EnterTellsAlsoOfTheChoiceAsBefore)
{
    FillCombos(1);
    clickArrow(*list, 0, 2);
    Press(Qt::Key_Enter);

    EXPECT_EQ(Text(0, 2), L"Brick");
    EXPECT_THAT(told, ElementsAre(Place(0, 2)));
}

TEST_F(ListPopup, EscapeClosesAndLeavesTheTextThatStandsThere)
{
    FillCombos(0);
    clickArrow(*list, 0, 2);
    Press(Qt::Key_Down);
    Press(Qt::Key_Down);
    Press(Qt::Key_Escape);

    EXPECT_EQ(list->GetPopup(), nullptr);
    EXPECT_EQ(Text(0, 2), L"Brick");
    EXPECT_THAT(told, IsEmpty());
}

TEST_F(ListPopup, ALetterGoesToTheNextChoiceThatBeginsWithIt)
{
    FillCombos(0);
    clickArrow(*list, 0, 2);
    Press(Qt::Key_B, QStringLiteral("b"));
    EXPECT_EQ(Selected(), 1);
    EXPECT_EQ(list->GetPopup()->GetScrollBar()->value(), 1);
    Press(Qt::Key_B, QStringLiteral("b"));
    EXPECT_EQ(Selected(), 4);
    Press(Qt::Key_Z, QStringLiteral("z"));
    EXPECT_EQ(Selected(), 4);
    Press(Qt::Key_B, QStringLiteral("b"));
    EXPECT_EQ(Selected(), 1);
}

TEST_F(ListPopup, HomeAndEndGoToTheEnds)
{
    FillCombos(1);
    clickArrow(*list, 0, 2);
    Press(Qt::Key_End);
    EXPECT_EQ(Selected(), 4);
    EXPECT_EQ(list->GetPopup()->GetScrollBar()->value(), 5);
    Press(Qt::Key_Home);
    EXPECT_EQ(Selected(), 0);
    EXPECT_EQ(list->GetPopup()->GetScrollBar()->value(), 0);
}

// --- Mouse and focus -------------------------------------------------------------------------------------------------

TEST_F(ListPopup, AClickOnAChoiceTakesItAndTells)
{
    FillCombos(0);
    clickArrow(*list, 1, 2);
    ClickChoice(2);

    EXPECT_EQ(Text(1, 2), L"Clay");
    EXPECT_EQ(list->GetPopup(), nullptr);
    EXPECT_THAT(told, ElementsAre(Place(1, 2)));
}

TEST_F(ListPopup, TheButtonsWayUpFromTheArrowTakesNoChoice)
{
    // On a real screen the popup gets it.
    FillCombos(0);
    const QRect cell = cellOf(*list, 1, 2);
    sendMouse(*list->viewport(), QEvent::MouseButtonPress, QPoint(cell.right() - 3, cell.center().y()));
    ASSERT_NE(list->GetPopup(), nullptr);
    EXPECT_TRUE(list->GetCells().IsArrowDown());
    sendMouse(*list->GetPopup()->GetListBox()->viewport(), QEvent::MouseButtonRelease, QPoint(3, 3));

    EXPECT_NE(list->GetPopup(), nullptr);
    EXPECT_FALSE(list->GetCells().IsArrowDown());
    EXPECT_EQ(list->GetCurrentRow(), 1);
    EXPECT_THAT(told, IsEmpty());
}

TEST_F(ListPopup, TheButtonMayBeDrawnFromTheArrowToAChoice)
{
    FillCombos(0);
    const QRect cell = cellOf(*list, 1, 2);
    sendMouse(*list->viewport(), QEvent::MouseButtonPress, QPoint(cell.right() - 3, cell.center().y()));
    ASSERT_NE(list->GetPopup(), nullptr);
    QListWidget *box = list->GetPopup()->GetListBox();
    const QPoint at = box->visualItemRect(box->item(3)).center();
    sendMouse(*box->viewport(), QEvent::MouseMove, at);
    box->setCurrentRow(3);
    sendMouse(*box->viewport(), QEvent::MouseButtonRelease, at);

    EXPECT_EQ(list->GetPopup(), nullptr);
    EXPECT_EQ(Text(1, 2), L"Dirt");
    EXPECT_THAT(told, ElementsAre(Place(1, 2)));
}

TEST_F(ListPopup, AClickOnTheFrameTakesTheSelectedChoice)
{
    FillCombos(1);
    clickArrow(*list, 0, 2);
    sendMouse(*list->GetPopup(), QEvent::MouseButtonPress, QPoint(0, 0));

    EXPECT_EQ(list->GetPopup(), nullptr);
    EXPECT_THAT(told, ElementsAre(Place(0, 2)));
}

TEST_F(ListPopup, TheOtherButtonsTakeNothing)
{
    FillCombos(1);
    clickArrow(*list, 0, 2);
    QWidget &choices = *list->GetPopup()->GetListBox()->viewport();
    sendMouse(choices, QEvent::MouseButtonPress, QPoint(3, 3), Qt::RightButton);
    sendMouse(choices, QEvent::MouseButtonRelease, QPoint(3, 3), Qt::RightButton);
    sendMouse(*list->GetPopup(), QEvent::MouseButtonPress, QPoint(0, 0), Qt::MiddleButton);

    EXPECT_NE(list->GetPopup(), nullptr);
    EXPECT_EQ(Text(0, 2), L"Brick");
    EXPECT_THAT(told, IsEmpty());
}

TEST_F(ListPopup, AClickElsewhereIsAnEscape)
{
    FillCombos(1);
    clickArrow(*list, 0, 2);
    sendMouse(*list->GetPopup(), QEvent::MouseButtonPress, QPoint(-50, -50));

    EXPECT_EQ(list->GetPopup(), nullptr);
    EXPECT_THAT(told, IsEmpty());
}

TEST_F(ListPopup, AClickOnAPlainCellClosesIt)
{
    FillCombos(1);
    clickArrow(*list, 0, 2);
    clickCell(*list, 1, 0);

    EXPECT_EQ(list->GetPopup(), nullptr);
    EXPECT_EQ(list->GetCurSel(), 1);
}

TEST_F(ListPopup, TheThirdLossOfTheFocusClosesIt)
{
    FillCombos(1);
    clickArrow(*list, 0, 2);
    EXPECT_EQ(list->GetPopup()->GetKeys().GetFocusLosses(), 2); // those of the opening
    QFocusEvent loss(QEvent::FocusOut, Qt::ActiveWindowFocusReason);
    QApplication::sendEvent(list->GetPopup()->GetListBox(), &loss);

    EXPECT_EQ(list->GetPopup(), nullptr);
    EXPECT_THAT(told, IsEmpty());
}

TEST_F(ListPopup, TheScrollBarMovesTheChoices)
{
    FillCombos(0, 2);
    clickArrow(*list, 0, 2);
    QScrollBar *bar = list->GetPopup()->GetScrollBar();
    bar->setSliderDown(true);
    bar->setValue(2);

    EXPECT_EQ(list->GetPopup()->GetListBox()->indexAt(QPoint(2, 2)).row(), 2);
    EXPECT_EQ(Selected(), 0);
}

TEST_F(ListPopup, ItClosesWithItsList)
{
    FillCombos(1);
    clickArrow(*list, 0, 2);
    const QPointer<CXComboList> popup = list->GetPopup();
    window.hide();
    EXPECT_EQ(list->GetPopup(), nullptr);
    window.show();
    clickArrow(*list, 0, 2);
    const QPointer<CXComboList> second = list->GetPopup();
    delete list;
    EXPECT_TRUE(second.isNull());
    list = new CXListCtrl(&window);
}

TEST_F(ListPopup, TheListMayBeFilledAnewInsideTheNotice)
{
    FillCombos(0);
    onTold = [this] {
        list->DeleteAllItems();
        list->InsertItem(0, L"new");
        list->SetComboBox(0, 2, true, &strings, 6, 3);
    };
    clickArrow(*list, 1, 2);
    ClickChoice(1);
    EXPECT_EQ(list->GetItemCount(), 1);
    EXPECT_EQ(Text(0, 2), L"Clay");
    onTold = nullptr;
    clickArrow(*list, 0, 2);
    EXPECT_NE(list->GetPopup(), nullptr);
}

TEST_F(ListPopup, ItAnswersTheRegisteredMessages)
{
    FillCombos(0);
    clickArrow(*list, 0, 2);
    list->GetPopup()->GetListBox()->setCurrentRow(2);
    EXPECT_EQ(list->OnPopupMessage(CXComboList::KeyDownMessage()), 0);
    EXPECT_EQ(Text(0, 2), L"Clay");
    EXPECT_THAT(told, IsEmpty());
    list->OnPopupMessage(0xC123); // another one's
    EXPECT_NE(list->GetPopup(), nullptr);
    list->OnPopupMessage(CXComboList::ReturnMessage());
    EXPECT_EQ(list->GetPopup(), nullptr);
    EXPECT_THAT(told, ElementsAre(Place(0, 2)));
    list->OnPopupMessage(CXComboList::EscapeMessage()); // nothing is open
    list->OnPopupMessage(CXComboList::ButtonUpMessage());
    EXPECT_THAT(told, ElementsAre(Place(0, 2)));
}
