// What date and time edits do when the focus leaves, and their messages.
#include "tests/controls/FieldSequence.h"

using namespace AMSEdit;
using namespace sequence;

namespace {

const CalendarTime kFirst(1990, 3, 10), kLast(2000, 6, 15);

/// What an edit did when it lost the focus, without the texts it set.
template <class Edit>
std::vector<std::wstring> LoseFocus(Edit &edit)
{
    edit.journal.clear();
    edit.defaults.clear();
    edit.OnKillFocus(nullptr);
    EXPECT_EQ(edit.defaults.size(), 1u);
    return edit.journal;
}

using Steps = std::vector<std::wstring>;

} // namespace

TEST(DateFocusLoss, WithoutFlagsInTheLowByteNothingHappens)
{
    DateEdit edit(kNoAnswers, kNow);
    edit.ModifyFlags(DayBeforeMonth, 0);
    Press(edit, L"6");
    EXPECT_EQ(LoseFocus(edit), Steps{});
    EXPECT_EQ(edit.GetWindowText(), L"06");
}

TEST(DateFocusLoss, AnEmptyBoxObeysTheFlagsForEmpty)
{
    struct Row {
        unsigned flag;
        Steps steps;
        const wchar_t *text;
    };
    for (const Row &row :
         {Row{KillFocusBeepIfEmpty, {L"beep:48"}, L""},
          Row{KillFocusRepairIfEmpty, {L"set: ", L"set:11/21/2026"}, L"11/21/2026"},
          Row{KillFocusMessageIfEmpty, {L"message:48", L"focus"}, L""}, Row{KillFocusRefocusIfEmpty, {L"focus"}, L""},
          Row{0x0080, {}, L""}, Row{KillFocusBeepIfInvalid, {}, L""}, Row{KillFocusRepairIfInvalid, {}, L""},
          Row{KillFocusMessageIfInvalid, {}, L""},
          Row{0x00AA, {L"beep:48", L"set: ", L"set:11/21/2026", L"message:48", L"focus"}, L"11/21/2026"}}) {
        DateEdit edit(kNoAnswers, kNow);
        edit.ModifyFlags(row.flag, 0);
        EXPECT_EQ(LoseFocus(edit), row.steps) << row.flag;
        EXPECT_EQ(edit.GetWindowText(), row.text) << row.flag;
    }
}

TEST(DateFocusLoss, AnInvalidTextObeysTheFlagsForInvalid)
{
    struct Row {
        unsigned flag;
        Steps steps;
        const wchar_t *text;
    };
    for (const Row &row : {Row{KillFocusBeepIfInvalid, {L"beep:48"}, L"06"},
                           Row{KillFocusRepairIfInvalid, {L"set:06/30/2026"}, L"06/30/2026"},
                           Row{KillFocusMessageIfInvalid, {L"message:48", L"focus"}, L"06"},
                           Row{KillFocusRefocusIfInvalid, {L"focus"}, L"06"}, Row{0x0040, {}, L"06"},
                           Row{KillFocusBeepIfEmpty, {}, L"06"}, Row{KillFocusRepairIfEmpty, {}, L"06"},
                           Row{0x0055, {L"beep:48", L"set:06/30/2026", L"message:48", L"focus"}, L"06/30/2026"}}) {
        DateEdit edit(kNoAnswers, kNow);
        edit.ModifyFlags(row.flag, 0);
        Press(edit, L"6");
        EXPECT_EQ(LoseFocus(edit), row.steps) << row.flag;
        EXPECT_EQ(edit.GetWindowText(), row.text) << row.flag;
    }
}

TEST(DateFocusLoss, AValidTextIsLeftAlone)
{
    DateEdit edit(kNoAnswers, kNow);
    edit.ModifyFlags(0x00FF, 0);
    edit.SetDate(2000, 6, 15);
    EXPECT_EQ(LoseFocus(edit), Steps{});
}

TEST(DateFocusLoss, TimesAndDatesWithTimesAreRepairedTheSameWay)
{
    TimeEdit time(kTwentyFour, kNow);
    time.ModifyFlags(KillFocusRepairIfEmpty | KillFocusRepairIfInvalid, 0);
    LoseFocus(time);
    EXPECT_EQ(time.GetWindowText(), L"13:45");
    Place(time, L"13:4|5");
    Press(time, L"<Del>");
    LoseFocus(time);
    EXPECT_EQ(time.GetWindowText(), L"13:00");

    DateTimeEdit both(kTwentyFour, kNow);
    both.ModifyFlags(KillFocusRepairIfEmpty | KillFocusRepairIfInvalid, 0);
    LoseFocus(both);
    EXPECT_EQ(both.GetWindowText(), L"11/21/2026 13:45");
    both.SetSel(10, 16);
    Press(both, L"<Del>");
    EXPECT_EQ(both.GetWindowText(), L"11/21/2026");
    LoseFocus(both);
    EXPECT_EQ(both.GetWindowText(), L"11/21/2026 13:45");
    EXPECT_TRUE(both.IsValid());
}

TEST(DateMessage, ItTellsBothLimitsInTheTextForm)
{
    DateEdit date(kNoAnswers, kNow);
    date.SetRange(kFirst, kLast);
    date.ShowErrorMessage();
    EXPECT_EQ(date.messages.back(), L"Please specify a date between 03/10/1990 and 06/15/2000.");

    TimeEdit time(kNoAnswers, kNow);
    time.SetRange(CalendarTime::TimeOfDay(8, 15, 0), CalendarTime::TimeOfDay(16, 45, 0));
    time.ShowErrorMessage();
    EXPECT_EQ(time.messages.back(), L"Please specify a time between 08:15 AM and 04:45 PM.");

    DateTimeEdit both(kTwentyFour, kNow);
    both.SetRange({2000, 1, 1, 8, 0, 0}, {2000, 6, 15, 16, 0, 0});
    both.ShowErrorMessage();
    EXPECT_EQ(both.messages.back(), L"Please specify a date and time between 01/01/2000 08:00 and 06/15/2000 16:00.");
    both.ModifyFlags(TimeOnly, 0);
    both.ShowErrorMessage();
    EXPECT_EQ(both.messages.back(), L"Please specify a time between 00:00 and 23:59.");
    both.ModifyFlags(DateOnly, TimeOnly);
    both.ShowErrorMessage();
    EXPECT_EQ(both.messages.back(), L"Please specify a date between 01/01/2000 and 06/15/2000.");
}

TEST(DateMessage, CheckIfValidShowsItAndTakesTheFocusButADisabledBoxCountsAsValid)
{
    DateEdit edit(kNoAnswers, kNow);
    EXPECT_FALSE(edit.CheckIfValid(false));
    EXPECT_TRUE(edit.messages.empty());
    EXPECT_FALSE(edit.CheckIfValid(true));
    EXPECT_EQ(edit.journal, (Steps{L"message:48", L"focus"}));
    edit.SetEnabled(false);
    EXPECT_TRUE(edit.CheckIfValid(true));
    edit.SetEnabled(true);
    edit.SetDate(2000, 6, 15);
    EXPECT_TRUE(edit.CheckIfValid(true));
    EXPECT_EQ(edit.messages.size(), 1u);
}
