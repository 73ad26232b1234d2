// The cells of the extended list and what clicks, popup and editor do to them, without the widget.
#include "controls/rules/ListCells.h"
#include "controls/rules/ListMessages.h"

#include <gmock/gmock.h>

#include <new>
#include <set>
#include <string>
#include <utility>
#include <vector>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

using Place = std::pair<int, int>;

class ListCells : public testing::Test, protected IListCellsView {
protected:
    void RepaintCell(int row, int column) override { painted.emplace_back(row, column); }
    void RepaintHeader(int column) override { headers.push_back(column); }
    void TellChanged(int row, int column) override
    {
        told.emplace_back(row, column);
        steps.emplace_back("tell");
        if (onTold)
            onTold();
    }
    void ClosePopup() override { steps.emplace_back("close"); }

    /// Two columns and rows of these texts in column 0.
    void Fill(const std::vector<std::wstring> &texts)
    {
        cells.InsertColumn(0, L"Name", kFormatLeft);
        cells.InsertColumn(1, L"Value", kFormatRight);
        for (const std::wstring &text : texts)
            Append(text);
        painted.clear();
    }
    int Append(const std::wstring &text)
    {
        return cells.InsertItem(cells.GetItemCount(), text, kSystemColor, kSystemColor);
    }
    std::vector<int> States(int column) const
    {
        std::vector<int> states;
        for (int row = 0; row < cells.GetItemCount(); ++row)
            states.push_back(cells.GetCheckbox(row, column));
        return states;
    }
    /// Ends an edit of the current cell; numbers are valid when they begin with a digit, and get a mark.
    CListCells::EditEnd End(const std::wstring &text)
    {
        return cells.EndEditing(text, [](std::wstring &typed) {
            const bool valid = !typed.empty() && typed.front() >= L'0' && typed.front() <= L'9';
            typed += L"!";
            return valid;
        });
    }

    CListCells cells{*this};
    std::vector<Place> painted;
    std::vector<int> headers;
    std::vector<Place> told;
    std::vector<std::string> steps;
    std::function<void()> onTold;
};

} // namespace

// --- Rows and columns ------------------------------------------------------------------------------------------------

TEST_F(ListCells, ARecordBeginsWithItsDefaults)
{
    Fill({L"a"});
    const CellRecord &record = *cells.GetRecord(0, 1);

    EXPECT_TRUE(record.enabled);
    EXPECT_FALSE(record.bold || record.combo || record.comboPressed || record.noDraw || record.checkExclusive ||
                 record.numeric);
    EXPECT_EQ(record.comboStrings, nullptr);
    EXPECT_EQ(record.comboListHeight, 10);
    EXPECT_EQ(record.comboInitialSel, 0);
    EXPECT_EQ(record.textColor, kSystemColor);
    EXPECT_EQ(record.backColor, kSystemColor);
    EXPECT_EQ(record.checkState, -1);
    EXPECT_EQ(record.itemData, 0U);
}

TEST_F(ListCells, ARowInsertedBeforeAColumnHasNoRecordForIt)
{
    cells.InsertColumn(0, L"Name", kFormatLeft);
    Append(L"early");
    cells.InsertColumn(1, L"Value", kFormatLeft);
    Append(L"late");

    EXPECT_EQ(cells.GetRecordCount(0), 1);
    EXPECT_EQ(cells.GetRecordCount(1), 2);
    EXPECT_FALSE(cells.SetCheckbox(0, 1, 1, false));
    EXPECT_EQ(cells.GetCheckbox(0, 1), -1);
    EXPECT_FALSE(cells.SetCellNumeric(0, 1, true));
    EXPECT_TRUE(cells.SetItemText(0, 1, L"a text all the same"));
    EXPECT_EQ(cells.GetItemText(0, 1), L"a text all the same");
    EXPECT_EQ(cells.TargetOf(0, 1), CListCells::Target::Other);
    EXPECT_TRUE(cells.SetCheckbox(1, 1, 1, false));
}

TEST_F(ListCells, AColumnInFrontMovesTheTextsAndLeavesTheRecords)
{
    Fill({L"a"});
    cells.SetItemText(0, 1, L"b");
    cells.SetBold(0, 0, true);

    EXPECT_EQ(cells.InsertColumn(0, L"New", kFormatLeft), 0);
    EXPECT_EQ(cells.GetItemText(0, 0), L"");
    EXPECT_EQ(cells.GetItemText(0, 1), L"a");
    EXPECT_EQ(cells.GetItemText(0, 2), L"b");
    EXPECT_TRUE(cells.GetBold(0, 0));
    EXPECT_EQ(cells.GetRecordCount(0), 2);
}

TEST_F(ListCells, AColumnNumberBeyondTheLastGoesToTheEndAndANegativeOneIsRefused)
{
    EXPECT_EQ(cells.InsertColumn(7, L"x", kFormatCenter), 0);
    EXPECT_EQ(cells.InsertColumn(-1, L"y", kFormatLeft), -1);
    EXPECT_EQ(cells.GetColumnCount(), 1);
    EXPECT_EQ(cells.GetColumnFormat(0), kFormatCenter);
    EXPECT_EQ(cells.GetColumnFormat(1), kFormatLeft);
    EXPECT_FALSE(cells.SetHeaderText(1, L"z"));
    EXPECT_EQ(cells.GetHeaderText(0), L"x");
    EXPECT_EQ(cells.GetHeaderText(1), L"");
}

TEST_F(ListCells, RowsComeInAtTheirPlaceAndOutOfRangeIsRefused)
{
    Fill({L"a", L"c"});

    EXPECT_EQ(cells.InsertItem(1, L"b", kSystemColor, kSystemColor), 1);
    EXPECT_EQ(cells.InsertItem(3, L"d", kSystemColor, kSystemColor), 3);
    EXPECT_EQ(cells.InsertItem(-1, L"x", kSystemColor, kSystemColor), -1);
    EXPECT_EQ(cells.InsertItem(5, L"x", kSystemColor, kSystemColor), -1);
    EXPECT_EQ(cells.GetItemCount(), 4);
    EXPECT_EQ(cells.GetItemText(1, 0), L"b");
    EXPECT_EQ(cells.GetItemText(3, 0), L"d");
}

TEST_F(ListCells, TheColoursOfARowGoToItsFirstColumnOnly)
{
    Fill({});
    cells.InsertItem(0, L"a", 0x0000FF, 0x00FF00);

    EXPECT_EQ(cells.GetRecord(0, 0)->textColor, 0x0000FFU);
    EXPECT_EQ(cells.GetRecord(0, 0)->backColor, 0x00FF00U);
    EXPECT_EQ(cells.GetRecord(0, 1)->textColor, kSystemColor);
    EXPECT_EQ(cells.GetRecord(0, 1)->backColor, kSystemColor);
}

TEST_F(ListCells, ATextWithColoursSetsBothAndANullTextOnlyTheColours)
{
    Fill({L"a"});

    EXPECT_TRUE(cells.SetItemText(0, 1, L"b", 0x112233, 0x445566));
    EXPECT_EQ(cells.GetItemText(0, 1), L"b");
    EXPECT_TRUE(cells.SetItemText(0, 1, nullptr, kSystemColor, 0x010203));
    EXPECT_EQ(cells.GetItemText(0, 1), L"b");
    EXPECT_EQ(cells.GetRecord(0, 1)->textColor, kSystemColor);
    EXPECT_EQ(cells.GetRecord(0, 1)->backColor, 0x010203U);
    EXPECT_FALSE(cells.SetItemText(1, 0, L"x", 0, 0));
    EXPECT_FALSE(cells.SetItemText(0, 2, nullptr, 0, 0));
}

TEST_F(ListCells, EverySetterRefusesACellOutsideTheList)
{
    Fill({L"a"});
    const std::vector<std::wstring> strings = {L"x"};
    for (const Place &place : std::vector<Place>{{-1, 0}, {1, 0}, {0, -1}, {0, 2}}) {
        const auto [row, column] = place;
        EXPECT_FALSE(cells.SetItemText(row, column, L"x"));
        EXPECT_EQ(cells.GetItemText(row, column), L"");
        EXPECT_FALSE(cells.SetCheckbox(row, column, 1, false));
        EXPECT_EQ(cells.GetCheckbox(row, column), -1);
        EXPECT_FALSE(cells.SetComboBox(row, column, true, &strings, 1, 0));
        EXPECT_FALSE(cells.SetBold(row, column, true));
        EXPECT_FALSE(cells.GetBold(row, column));
        EXPECT_FALSE(cells.SetCellNumeric(row, column, true));
        EXPECT_FALSE(cells.SetNoDraw(row, column, true));
    }
    EXPECT_FALSE(cells.SetItemData(1, 5));
    EXPECT_EQ(cells.GetItemData(1), 0U);
    EXPECT_FALSE(cells.SetEnabled(-1, false));
    EXPECT_FALSE(cells.GetEnabled(1));
    EXPECT_FALSE(cells.DeleteItem(1));
    EXPECT_FALSE(cells.DeleteItem(-1));
    EXPECT_FALSE(cells.SetHeaderCheckedState(2, 1));
    EXPECT_EQ(cells.GetHeaderCheckedState(2), -1);
    EXPECT_EQ(cells.CountCheckedItems(2), 0);
    EXPECT_THAT(painted, IsEmpty());
}

TEST_F(ListCells, ItemDataAreTheRowsAndGoWithIt)
{
    Fill({L"a", L"b"});
    cells.SetItemData(0, 0x1122334455667788U);
    cells.SetItemData(1, 7);

    EXPECT_EQ(cells.GetItemData(0), 0x1122334455667788U);
    EXPECT_TRUE(cells.DeleteItem(0));
    EXPECT_EQ(cells.GetItemData(0), 7U);
    cells.DeleteAllItems();
    EXPECT_EQ(cells.GetItemCount(), 0);
    EXPECT_EQ(cells.GetColumnCount(), 2);
}

TEST_F(ListCells, ASetterPaintsItsOwnCellOnly)
{
    Fill({L"a", L"b"});
    cells.SetItemText(1, 1, L"x");
    cells.SetCheckbox(0, 1, 1, false);
    cells.SetBold(1, 0, true);
    cells.SetCellNumeric(1, 1, true);

    EXPECT_THAT(painted, ElementsAre(Place(1, 1), Place(0, 1), Place(1, 0), Place(1, 1)));
}

TEST_F(ListCells, EnablingARowPaintsAllOfIt)
{
    Fill({L"a", L"b"});
    EXPECT_TRUE(cells.SetEnabled(1, false));

    EXPECT_THAT(painted, ElementsAre(Place(1, 0), Place(1, 1)));
    EXPECT_FALSE(cells.GetEnabled(1));
    EXPECT_TRUE(cells.GetEnabled(0));
}

// --- A row whose records could not be had ----------------------------------------------------------------------------

TEST_F(ListCells, ARowWithoutRecordsStaysAsPlainTextThatTakesNoClicks)
{
    Fill({L"a"});
    cells.SetRecordMaker([](std::size_t) -> std::vector<CellRecord> { throw std::bad_alloc(); });

    EXPECT_EQ(Append(L"poor"), -1);
    ASSERT_EQ(cells.GetItemCount(), 2);
    EXPECT_EQ(cells.GetItemText(1, 0), L"poor");
    EXPECT_FALSE(cells.HasRecords(1));
    EXPECT_EQ(cells.TargetOf(1, 0), CListCells::Target::Refused);
    EXPECT_EQ(cells.TargetOf(1, -1), CListCells::Target::Refused);
    EXPECT_FALSE(cells.SetItemData(1, 3));
    EXPECT_EQ(cells.GetItemData(1), 0U);
    EXPECT_FALSE(cells.SetCheckbox(1, 0, 1, false));
    EXPECT_FALSE(cells.SetEnabled(1, true));
    EXPECT_TRUE(cells.SetItemText(1, 1, L"text"));
    EXPECT_TRUE(cells.DeleteItem(1));
}

// --- Check boxes -----------------------------------------------------------------------------------------------------

TEST_F(ListCells, AFreeCheckBoxFlipsAndTells)
{
    Fill({L"a", L"b"});
    cells.SetCheckbox(0, 0, 0, false);
    cells.SetCheckbox(1, 0, 1, false);

    cells.ClickCheckbox(0, 0);
    EXPECT_THAT(States(0), ElementsAre(1, 1));
    cells.ClickCheckbox(1, 0);
    EXPECT_THAT(States(0), ElementsAre(1, 0));
    EXPECT_THAT(told, ElementsAre(Place(0, 0), Place(1, 0)));
}

TEST_F(ListCells, AnExclusiveBoxClearsItsColumnAndEndsSet)
{
    Fill({L"a", L"b", L"c"});
    for (int row = 0; row < 3; ++row)
        cells.SetCheckbox(row, 1, row == 0 ? 1 : 0, true);
    painted.clear();

    cells.ClickCheckbox(2, 1);
    EXPECT_THAT(States(1), ElementsAre(0, 0, 1));
    EXPECT_THAT(painted, ElementsAre(Place(0, 1), Place(1, 1), Place(2, 1), Place(2, 1)));
    EXPECT_THAT(told, ElementsAre(Place(2, 1)));
}

TEST_F(ListCells, AClickOnTheSetExclusiveBoxLeavesItAndStillTells)
{
    Fill({L"a", L"b"});
    cells.SetCheckbox(0, 1, 1, true);
    cells.SetCheckbox(1, 1, 1, true); // set by the program beside the other

    cells.ClickCheckbox(0, 1);
    EXPECT_THAT(States(1), ElementsAre(1, 1));
    EXPECT_THAT(told, ElementsAre(Place(0, 1)));
}

TEST_F(ListCells, AnExclusiveClickGivesEveryRowOfTheColumnAState)
{
    Fill({L"a", L"b"});
    cells.SetCheckbox(0, 1, 0, true);

    cells.ClickCheckbox(0, 1);
    EXPECT_THAT(States(1), ElementsAre(1, 0));
}

TEST_F(ListCells, AClickOnACellWithoutABoxDoesNothing)
{
    Fill({L"a"});
    cells.ClickCheckbox(0, 0);
    cells.ClickCheckbox(4, 4);
    EXPECT_EQ(cells.GetCheckbox(0, 0), -1);
    EXPECT_THAT(told, IsEmpty());
}

TEST_F(ListCells, TheHeadersBoxFollowsSettersAndClicks)
{
    Fill({L"a", L"b"});
    cells.SetCheckbox(0, 0, 1, false);
    EXPECT_EQ(cells.GetHeaderCheckedState(0), -1); // it has none
    cells.SetHeaderCheckedState(0, 0);

    cells.SetCheckbox(1, 0, 0, false);
    EXPECT_EQ(cells.GetHeaderCheckedState(0), 0);
    cells.SetCheckbox(1, 0, 1, false);
    EXPECT_EQ(cells.GetHeaderCheckedState(0), 1);
    cells.ClickCheckbox(0, 0);
    EXPECT_EQ(cells.GetHeaderCheckedState(0), 0);
    cells.ClickCheckbox(0, 0);
    EXPECT_EQ(cells.GetHeaderCheckedState(0), 1);
    EXPECT_EQ(cells.GetHeaderCheckedState(1), -1);
}

TEST_F(ListCells, TheHeaderFollowsBehindTheNotice)
{
    Fill({L"a"});
    cells.SetHeaderCheckedState(0, 0);
    cells.SetCheckbox(0, 0, 0, false);
    int during = -2;
    onTold = [&] { during = cells.GetHeaderCheckedState(0); };

    cells.ClickCheckbox(0, 0);
    EXPECT_EQ(during, 0);
    EXPECT_EQ(cells.GetHeaderCheckedState(0), 1);
}

TEST_F(ListCells, CheckedRowsAreCountedAsTheyComeAndGo)
{
    Fill({L"a", L"b", L"c"});
    for (int row = 0; row < 3; ++row)
        cells.SetCheckbox(row, 1, 1, false);
    EXPECT_EQ(cells.CountCheckedItems(1), 3);
    cells.SetCheckbox(0, 1, 2, false); // only 1 counts
    EXPECT_EQ(cells.CountCheckedItems(1), 2);
    cells.DeleteItem(1);
    EXPECT_EQ(cells.CountCheckedItems(1), 1);
    cells.SetCheckbox(1, 1, -1, false);
    EXPECT_EQ(cells.CountCheckedItems(1), 0);
    cells.SetCheckbox(1, 1, 1, false);
    cells.DeleteAllItems();
    EXPECT_EQ(cells.CountCheckedItems(1), 0);
}

TEST_F(ListCells, TheParentMayFillTheListAnewWhenItIsTold)
{
    Fill({L"a", L"b"});
    cells.SetCheckbox(1, 0, 0, false);
    cells.SetHeaderCheckedState(0, 0);
    onTold = [this] {
        cells.DeleteAllItems();
        Append(L"new");
        cells.SetCheckbox(0, 0, 1, false);
    };

    cells.ClickCheckbox(1, 0);
    EXPECT_EQ(cells.GetItemCount(), 1);
    EXPECT_EQ(cells.GetHeaderCheckedState(0), 1);
}

// --- What a click means ----------------------------------------------------------------------------------------------

TEST_F(ListCells, AClickMeansWhatItsCellIs)
{
    Fill({L"a", L"b", L"c"});
    cells.SetCheckbox(0, 1, 0, false);
    cells.SetComboBox(0, 1, true, nullptr, 3, 0);
    cells.SetComboBox(1, 1, true, nullptr, 3, 0);
    cells.SetEnabled(2, false);
    using Target = CListCells::Target;

    EXPECT_EQ(cells.TargetOf(0, 0), Target::Other);
    EXPECT_EQ(cells.TargetOf(0, 1), Target::CheckBox); // before the drop-down
    EXPECT_EQ(cells.TargetOf(1, 1), Target::DropDown);
    EXPECT_EQ(cells.TargetOf(2, 1), Target::Refused);
    EXPECT_EQ(cells.TargetOf(2, -1), Target::Refused); // beside the columns too
    EXPECT_EQ(cells.TargetOf(0, -1), Target::None);
    EXPECT_EQ(cells.TargetOf(-1, 0), Target::None);
    EXPECT_EQ(cells.TargetOf(3, 0), Target::None);
}

TEST_F(ListCells, TheArrowHoldsTheYAgainstTheRightEdge)
{
    const ListRect cell{100, 40, 200, 60};

    EXPECT_EQ(CListCells::ArrowLeft(cell), 180);
    EXPECT_FALSE(CListCells::IsOnArrow(cell, 179, 50));
    EXPECT_TRUE(CListCells::IsOnArrow(cell, 180, 50));
    EXPECT_TRUE(CListCells::IsOnArrow(cell, 180, 200)); // far below the cell
    EXPECT_FALSE(CListCells::IsOnArrow(cell, 180, 201));
    // A narrow column far down in a long list: no click hits its arrow.
    EXPECT_FALSE(CListCells::IsOnArrow({0, 300, 50, 320}, 45, 310));
}

// --- Drop-down -------------------------------------------------------------------------------------------------------

TEST_F(ListCells, ADropDownTakesItsInitialChoiceWhenThereIsSuch)
{
    Fill({L"a"});
    const std::vector<std::wstring> strings = {L"one", L"two"};
    cells.SetItemText(0, 1, L"text");

    EXPECT_TRUE(cells.SetComboBox(0, 1, true, &strings, 5, 2));
    EXPECT_EQ(cells.GetItemText(0, 1), L"text");
    EXPECT_TRUE(cells.SetComboBox(0, 1, true, &strings, 5, -1));
    EXPECT_EQ(cells.GetItemText(0, 1), L"text");
    EXPECT_TRUE(cells.SetComboBox(0, 1, true, &strings, 5, 1));
    EXPECT_EQ(cells.GetItemText(0, 1), L"two");
}

TEST_F(ListCells, ADropDownSwitchedOffKeepsItsOtherFields)
{
    Fill({L"a"});
    const std::vector<std::wstring> strings = {L"one"}, others = {L"x"};
    cells.SetComboBox(0, 1, true, &strings, 5, 0);

    EXPECT_TRUE(cells.SetComboBox(0, 1, false, &others, 9, 3));
    EXPECT_FALSE(cells.GetRecord(0, 1)->combo);
    EXPECT_EQ(cells.GetRecord(0, 1)->comboStrings, &strings);
    EXPECT_EQ(cells.GetRecord(0, 1)->comboListHeight, 5);
    EXPECT_EQ(cells.GetRecord(0, 1)->comboInitialSel, 0);
}

TEST_F(ListCells, ThePopupShowsAllChoicesButEmptyOnes)
{
    Fill({L"a"});
    const std::vector<std::wstring> strings = {L"", L"one", L"", L"two"};
    cells.SetComboBox(0, 1, true, &strings, 5, -1);
    cells.SetItemText(0, 1, L"two");
    cells.PressArrow(0, 1);

    const CListCells::Choices choices = cells.OpenChoices();
    EXPECT_THAT(choices.strings, ElementsAre(L"one", L"two"));
    EXPECT_EQ(choices.selected, 1);
    EXPECT_EQ(cells.GetItemText(0, 1), L"two");
}

TEST_F(ListCells, AnEmptyCellTakesTheFirstChoiceAsItsPopupOpens)
{
    Fill({L"a"});
    const std::vector<std::wstring> strings = {L"one", L"two"};
    cells.SetComboBox(0, 1, true, &strings, 5, -1);
    cells.PressArrow(0, 1);

    EXPECT_EQ(cells.OpenChoices().selected, 0);
    EXPECT_EQ(cells.GetItemText(0, 1), L"one");
    EXPECT_THAT(told, IsEmpty());
}

TEST_F(ListCells, ATextThatIsNoChoiceSelectsTheFirstAndStays)
{
    Fill({L"a"});
    const std::vector<std::wstring> strings = {L"one", L"two"};
    cells.SetComboBox(0, 1, true, &strings, 5, -1);
    cells.SetItemText(0, 1, L"TWO"); // an exact match is asked for
    cells.PressArrow(0, 1);

    EXPECT_EQ(cells.OpenChoices().selected, 0);
    EXPECT_EQ(cells.GetItemText(0, 1), L"TWO");
}

TEST_F(ListCells, WithoutChoicesNothingIsSelected)
{
    Fill({L"a"});
    cells.SetComboBox(0, 1, true, nullptr, 5, 0);
    cells.PressArrow(0, 1);

    EXPECT_EQ(cells.OpenChoices().selected, -1);
    cells.TakeChoice(nullptr);
    EXPECT_THAT(steps, ElementsAre("close"));
}

TEST_F(ListCells, TheArrowIsDownUntilItIsReleased)
{
    Fill({L"a"});
    cells.SetComboBox(0, 1, true, nullptr, 5, 0);
    painted.clear();

    cells.PressArrow(0, 1);
    EXPECT_TRUE(cells.IsArrowDown());
    EXPECT_TRUE(cells.GetRecord(0, 1)->comboPressed);
    cells.ReleaseArrow();
    EXPECT_FALSE(cells.IsArrowDown());
    EXPECT_FALSE(cells.GetRecord(0, 1)->comboPressed);
    EXPECT_THAT(painted, ElementsAre(Place(0, 1), Place(0, 1)));
    EXPECT_EQ(cells.GetComboRow(), 0); // the popup's answers still go there
    EXPECT_EQ(cells.GetComboColumn(), 1);
}

TEST_F(ListCells, ReleasingAnArrowWhoseRowIsGoneOnlyForgetsIt)
{
    Fill({L"a"});
    cells.SetComboBox(0, 1, true, nullptr, 5, 0);
    cells.PressArrow(0, 1);
    cells.DeleteAllItems();

    cells.ReleaseArrow();
    EXPECT_FALSE(cells.IsArrowDown());
}

TEST_F(ListCells, MovingThroughThePopupWritesAndEnterTells)
{
    Fill({L"a"});
    const std::vector<std::wstring> strings = {L"one", L"two"};
    cells.SetComboBox(0, 1, true, &strings, 5, 0);
    cells.PressArrow(0, 1);
    const std::wstring two = L"two";

    EXPECT_TRUE(cells.ShowChoice(&two));
    EXPECT_EQ(cells.GetItemText(0, 1), L"two");
    EXPECT_THAT(told, IsEmpty());
    cells.TakeChoice(&two); // as before, told all the same
    EXPECT_THAT(told, ElementsAre(Place(0, 1)));
    EXPECT_THAT(steps, ElementsAre("close", "tell"));
}

TEST_F(ListCells, AChoiceForARowThatIsGoneIsNotTold)
{
    Fill({L"a"});
    cells.SetComboBox(0, 1, true, nullptr, 5, 0);
    cells.PressArrow(0, 1);
    cells.DeleteAllItems();
    const std::wstring choice = L"x";

    cells.TakeChoice(&choice);
    EXPECT_THAT(steps, ElementsAre("close"));
}

// --- In-place editor -------------------------------------------------------------------------------------------------

TEST_F(ListCells, OnlyEditColumnsAreEditedInPlace)
{
    Fill({L"a"});
    cells.m_editColumns.Add(1);

    EXPECT_TRUE(cells.CanEdit(0, 1));
    EXPECT_FALSE(cells.CanEdit(0, 0));
    EXPECT_FALSE(cells.CanEdit(1, 1));
    EXPECT_FALSE(cells.CanEdit(-1, 1));
    cells.m_editColumns.Clear();
    EXPECT_FALSE(cells.CanEdit(0, 1));
}

TEST_F(ListCells, AnyTextIsValidInACellThatIsNotNumeric)
{
    Fill({L"a"});
    cells.m_nCurrentRow = 0;
    cells.m_nCurrentColumn = 1;

    EXPECT_EQ(End(L"words"), CListCells::EditEnd::Written);
    EXPECT_EQ(cells.GetItemText(0, 1), L"words");
    EXPECT_THAT(told, ElementsAre(Place(0, 1)));
}

TEST_F(ListCells, ATextLeftAsItWasIsNotTold)
{
    Fill({L"a"});
    cells.SetItemText(0, 1, L"words");
    cells.m_nCurrentRow = 0;
    cells.m_nCurrentColumn = 1;

    EXPECT_EQ(End(L"words"), CListCells::EditEnd::Written);
    EXPECT_THAT(told, IsEmpty());
}

TEST_F(ListCells, ANumericCellTakesWhatTheRuleMakesOfTheText)
{
    Fill({L"a"});
    cells.SetCellNumeric(0, 1, true);
    cells.SetItemText(0, 1, L"5!");
    cells.m_nCurrentRow = 0;
    cells.m_nCurrentColumn = 1;

    EXPECT_EQ(End(L"5"), CListCells::EditEnd::Written); // the same in its own form
    EXPECT_THAT(told, IsEmpty());
    EXPECT_EQ(End(L"6"), CListCells::EditEnd::Written);
    EXPECT_EQ(cells.GetItemText(0, 1), L"6!");
    EXPECT_EQ(End(L"x"), CListCells::EditEnd::Refused);
    EXPECT_EQ(cells.GetItemText(0, 1), L"6!");
    EXPECT_THAT(told, ElementsAre(Place(0, 1)));
}

TEST_F(ListCells, AnEditOfARowWithoutRecordsEndsInNothing)
{
    Fill({L"a"});
    cells.m_nCurrentRow = 0;
    cells.m_nCurrentColumn = 1;
    cells.DeleteAllItems();

    EXPECT_EQ(End(L"x"), CListCells::EditEnd::NoRecord);
    EXPECT_THAT(told, IsEmpty());
}

TEST_F(ListCells, TheNumericLimitsBeginAsTheDialogsExpectThem)
{
    EXPECT_EQ(cells.m_numericLimits, (ListNumericLimits{0.001, 1000.0, 6, 3}));
}

// --- Messages --------------------------------------------------------------------------------------------------------

TEST(ListMessages, EachNameHasANumberOfItsOwn)
{
    std::set<unsigned> numbers;
    for (const auto name : {kComboReturn, kComboEscape, kComboKeyDown, kComboButtonUp, kListDataChanged}) {
        EXPECT_GE(RegisteredMessage(name), 0xC000U);
        EXPECT_LE(RegisteredMessage(name), 0xFFFFU);
        numbers.insert(RegisteredMessage(name));
    }
    EXPECT_EQ(numbers.size(), 5U);
    EXPECT_EQ(RegisteredMessage(L"WM_SOMETHING_ELSE"), 0U);
}
