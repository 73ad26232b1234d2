// Keys and scroll bar of a drop-down's popup, without the widget.
#include "controls/rules/ComboKeys.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

class ComboKeys : public testing::Test {
protected:
    ComboNotice Press(ComboKey key, int selected, wchar_t letter = 0) { return keys.PressKey(key, letter, selected); }

    /// Ten choices, four of them visible, the sixth selected.
    void SetUp() override { keys.Start(4, 5); }

    const std::vector<std::wstring> choices = {L"Asphalt", L"asbestos", L"Brick",  L"Clay",   L"Dirt",
                                               L"Earth",   L"Brass",    L"Gravel", L"Hedges", L"Ice"};
    CComboKeys keys{choices};
};

} // namespace

TEST_F(ComboKeys, TheScrollBarBeginsAtTheSelection)
{
    EXPECT_EQ(keys.GetScroll().page, 4);
    EXPECT_EQ(keys.GetScroll().maximum, 10);
    EXPECT_EQ(keys.GetScroll().position, 5);
    keys.Start(4, -1);
    EXPECT_EQ(keys.GetScroll().position, 0);
}

TEST_F(ComboKeys, TheTopRowIsOneAboveTheSelection)
{
    EXPECT_EQ(CComboKeys::TopAtStart(5), 4);
    EXPECT_EQ(CComboKeys::TopAtStart(1), 0);
    EXPECT_EQ(CComboKeys::TopAtStart(0), 0);
    EXPECT_EQ(CComboKeys::TopAtStart(-1), 0);
}

TEST_F(ComboKeys, EnterAndEscapeTellAndMoveNothing)
{
    EXPECT_EQ(Press(ComboKey::Enter, 5), ComboNotice::Return);
    EXPECT_EQ(Press(ComboKey::Escape, 5), ComboNotice::Escape);
    EXPECT_EQ(keys.GetScroll().position, 5);
}

TEST_F(ComboKeys, EachNavigationKeyHasItsPosition)
{
    struct Case {
        ComboKey key;
        int selected, position;
    };
    for (const auto &[key, selected, position] : {
             Case{ComboKey::PageUp, 5, 2}, Case{ComboKey::PageUp, 1, 0}, Case{ComboKey::PageDown, 5, 8},
             Case{ComboKey::PageDown, 9, 10}, Case{ComboKey::End, 5, 10}, Case{ComboKey::Home, 5, 0},
             Case{ComboKey::Up, 5, 4}, Case{ComboKey::Up, 0, 0}, Case{ComboKey::Down, 5, 6},
             Case{ComboKey::Down, -1, 1}, // nothing selected counts as the first
         }) {
        EXPECT_EQ(Press(key, selected), ComboNotice::KeyDown);
        EXPECT_EQ(keys.GetScroll().position, position) << static_cast<int>(key) << " at " << selected;
    }
}

TEST_F(ComboKeys, ALetterGoesToTheNextChoiceThatBeginsWithIt)
{
    EXPECT_EQ(Press(ComboKey::Letter, 2, L'B'), ComboNotice::KeyDown);
    EXPECT_EQ(keys.GetScroll().position, 6);
    EXPECT_EQ(Press(ComboKey::Letter, 6, L'B'), ComboNotice::KeyDown); // on from the start
    EXPECT_EQ(keys.GetScroll().position, 2);
    EXPECT_EQ(Press(ComboKey::Letter, 0, L'A'), ComboNotice::KeyDown); // upper and lower case alike
    EXPECT_EQ(keys.GetScroll().position, 1);
}

TEST_F(ComboKeys, ALetterThatNoChoiceBeginsWithTellsNothing)
{
    EXPECT_EQ(Press(ComboKey::Letter, 2, L'Z'), ComboNotice::None);
    EXPECT_EQ(keys.GetScroll().position, 5);
}

TEST_F(ComboKeys, AnyOtherKeyIsTheListBoxsAlone)
{
    EXPECT_EQ(Press(ComboKey::Other, 2), ComboNotice::None);
    EXPECT_EQ(keys.GetScroll().position, 5);
}

TEST_F(ComboKeys, TheThirdLossOfTheFocusCloses)
{
    EXPECT_EQ(keys.LoseFocus(), ComboNotice::None);
    EXPECT_EQ(keys.LoseFocus(), ComboNotice::None);
    EXPECT_EQ(keys.LoseFocus(), ComboNotice::Escape);
    EXPECT_EQ(keys.GetFocusLosses(), 3);
}

TEST(ComboKeysWithoutChoices, EveryKeyStaysAtZero)
{
    const std::vector<std::wstring> none;
    CComboKeys keys(none);
    keys.Start(0, -1);

    EXPECT_EQ(keys.GetScroll().page, 1);
    EXPECT_EQ(keys.PressKey(ComboKey::Down, 0, -1), ComboNotice::KeyDown);
    EXPECT_EQ(keys.GetScroll().position, 0);
    EXPECT_EQ(keys.PressKey(ComboKey::Letter, L'A', -1), ComboNotice::None);
}
