// Properties of the date and time edits, over every date of some years and over random keys.
#include "tests/controls/FieldSequence.h"

#include <random>

using namespace AMSEdit;
using namespace sequence;

TEST(DateWalk, EveryDateOfNineYearsCanBeTypedInBothOrders)
{
    for (const bool dayFirst : {false, true}) {
        DateEdit edit(kNoAnswers, kNow);
        edit.ShowDayBeforeMonth(dayFirst);
        for (int year = 1996; year <= 2004; ++year) {
            for (int month = 1; month <= 12; ++month) {
                for (int day = 1; day <= LastDayOfMonth(year, month); ++day) {
                    edit.SetWindowText(L"");
                    edit.SetDate(year, month, day);
                    const std::wstring wanted = edit.GetWindowText();
                    edit.SetWindowText(L"");
                    for (const wchar_t character : wanted) {
                        if (character != L'/')
                            edit.Type(character);
                    }
                    ASSERT_EQ(edit.GetWindowText(), wanted);
                    ASSERT_EQ(edit.GetDate(), CalendarTime(year, month, day));
                }
            }
        }
    }
}

TEST(DateWalk, NoKeysMakeACompleteTextThatIsNoDateOfTheRange)
{
    constexpr unsigned kSeed = 20261121;
    SCOPED_TRACE("seed " + std::to_string(kSeed));
    std::mt19937 random(kSeed);
    const std::vector<std::wstring> keys = {L"0",      L"1",     L"2",    L"3",      L"4",     L"5",      L"6",
                                            L"7",      L"8",     L"9",    L"0",      L"1",     L"2",      L"9",
                                            L"/",      L"/",     L"x",    L"<BS>",   L"<Del>", L"<Left>", L"<Right>",
                                            L"<Home>", L"<End>", L"<Up>", L"<Down>", L"<Undo>"};
    const CalendarTime limits[][2] = {{{1900, 1, 1}, {9998, 12, 31}}, {{1990, 3, 10}, {2000, 6, 15}},
                                      {{2000, 2, 20}, {2000, 3, 5}},  {{2000, 6, 10}, {2000, 6, 15}},
                                      {{1999, 11, 30}, {2001, 1, 1}}, {{800, 5, 5}, {1200, 7, 7}}};
    int complete = 0, all = 0;
    for (const auto &[min, max] : limits) {
        for (const bool dayFirst : {false, true}) {
            DateEdit edit(kNoAnswers, kNow);
            edit.ShowDayBeforeMonth(dayFirst);
            edit.SetRange(min, max);
            for (int key = 0; key < 20000; ++key, ++all) {
                Press(edit, keys[random() % keys.size()]);
                if (edit.GetWindowText().size() < 10)
                    continue;
                ++complete;
                ASSERT_TRUE(edit.IsValid()) << Narrow(edit.Picture()) << " after key " << key;
            }
        }
    }
    EXPECT_GT(complete, all / 5);
}

TEST(DateWalk, NoKeysMakeACompleteTextThatIsNoDateAndTime)
{
    constexpr unsigned kSeed = 834521;
    SCOPED_TRACE("seed " + std::to_string(kSeed));
    std::mt19937 random(kSeed);
    const std::vector<std::wstring> keys = {
        L"0", L"1", L"2", L"3",       L"4",      L"5",     L"6",     L"7",      L"8",      L"9",     L"/", L":",
        L"a", L"p", L"m", L"_",       L"x",      L"<BS>",  L"<Del>", L"<Left>", L"0",      L"1",     L"2", L"9",
        L"0", L"5", L"1", L"<Right>", L"<Home>", L"<End>", L"<Up>",  L"<Down>", L"<Undo>", L"<Redo>"};
    int complete = 0, all = 0;
    for (const unsigned flags : {0U, 0x0100U, 0x0200U, 0x4000U, 0x4200U, 0x2000U, 0x6000U, 0x2200U, 0x7000U}) {
        DateTimeEdit edit(kNoAnswers, kNow);
        edit.ModifyFlags(flags, 0);
        edit.SetToNow();
        const std::size_t length = edit.GetWindowText().size();
        for (int key = 0; key < 20000; ++key, ++all) {
            Press(edit, keys[random() % keys.size()]);
            ASSERT_LE(edit.GetWindowText().size(), length) << Narrow(edit.Picture());
            if (edit.GetWindowText().size() < length)
                continue;
            ++complete;
            ASSERT_TRUE(edit.IsValid()) << Narrow(edit.Picture()) << " after key " << key << ", flags " << flags;
        }
    }
    EXPECT_GT(complete, all / 5);
}
