// Values of the edit of a date and a time, and of the edit that takes it from a mask.
#include "tests/controls/FieldSequence.h"

#include "controls/rules/MultiMaskedEdit.h"

using namespace AMSEdit;
using namespace sequence;

TEST(DateTimeValue, ARangeThatEndsBeforeItStartsOnTheSameDayHasASettledForm)
{
    SetAll(Both([](DateTimeEdit &edit) {
               edit.SetRange({1990, 11, 1, 12, 3, 0}, {1990, 11, 1, 5, 0, 0});
           }),
           {{L" ", L"11/01/1990 12:03"}, {L"11/01/1990 05:00", L"11/01/1990 12:03"}});
}

TEST(DateTimeValue, TextSetFromOutsideIsPutRightInBothParts)
{
    SetAll(Both(), {{L"", L""},
                    {L" ", L"11/21/2026 13:45"},
                    {L"06/15/2000", L"06/15/2000 13:45"},
                    {L"06/15/2000 10:30", L"06/15/2000 10:30"},
                    {L"06/15/2000x10:30", L"06/15/2000 10:30"},
                    {L"02/31/2001 25:30", L"02/28/2001 00:30"}});
    SetAll(Both([](DateTimeEdit &edit) { edit.ModifyFlags(DateOnly, 0); }),
           {{L" ", L"11/21/2026"}, {L"06/15/2000 10:30", L"06/15/2000"}});
    SetAll(Both([](DateTimeEdit &edit) { edit.ModifyFlags(TimeOnly, 0); }), {{L" ", L"13:45"}, {L"10:30", L"10:30"}});
    SetAll(Both([](DateTimeEdit &edit) { edit.ModifyFlags(WithSeconds, TwentyFourHour); }),
           {{L"06/15/2000 10:30:15 PM", L"06/15/2000 10:30:15 PM"}});
}

TEST(DateTimeValue, TheRangeIsOneOfWholeDatesAndTimes)
{
    const auto limited = [](DateTimeEdit &edit) { edit.SetRange({2000, 1, 1, 8, 0, 0}, {2000, 6, 15, 16, 0, 0}); };
    SetAll(Both(limited), {{L"06/15/2000 17:00", L"06/15/2000 16:00"},
                           {L"01/01/2000 07:00", L"01/01/2000 08:00"},
                           {L"03/03/2000 23:00", L"03/03/2000 23:00"},
                           {L"03/03/2000 01:00", L"03/03/2000 01:00"}});
    DateTimeEdit edit(kTwentyFour, kNow);
    limited(edit);
    EXPECT_TRUE(edit.IsWithinRange({2000, 3, 3, 23, 0, 0}));
    EXPECT_FALSE(edit.IsWithinRange({2000, 6, 15, 16, 0, 1}));
    EXPECT_TRUE(edit.IsWithinRange({2000, 6, 15, 16, 0, 1}, true));
    Place(edit, L"06/15/2000_16:0|0");
    Press(edit, L"1");
    EXPECT_FALSE(edit.IsValid());
}

TEST(DateTimeValue, IsValidAsksForBothParts)
{
    DateTimeEdit edit(kTwentyFour, kNow);
    edit.SetDateTime({2000, 6, 15, 10, 30, 0});
    EXPECT_EQ(edit.GetWindowText(), L"06/15/2000 10:30");
    EXPECT_EQ(edit.GetDateTime(), CalendarTime(2000, 6, 15, 10, 30, 0));
    EXPECT_TRUE(edit.IsValid());
    edit.SetSel(10, 16);
    edit.ReplaceSel(L"", true);
    EXPECT_FALSE(edit.IsValid());
    edit.SetDateTime({2000, 6, 15, 10, 30, 0});
    edit.SetSel(10, 11);
    edit.ReplaceSel(L"-", true);
    EXPECT_FALSE(edit.IsValid());
    edit.SetDateTime(CalendarTime());
    EXPECT_EQ(edit.GetWindowText(), L"06/15/2000-10:30");
}

TEST(DateTimeValue, APartIsSetWithoutTheOther)
{
    DateTimeEdit edit(kTwentyFour, kNow);
    edit.SetDateTime({2000, 6, 15, 10, 30, 0});
    edit.SetDate(2001, 2, 3);
    EXPECT_EQ(edit.GetWindowText(), L"02/03/2001 10:30");
    edit.SetTime(23, 59, 0);
    EXPECT_EQ(edit.GetWindowText(), L"02/03/2001 23:59");
    edit.SetHour(7);
    edit.SetMonth(12);
    EXPECT_EQ(edit.GetWindowText(), L"12/03/2001 07:59");
    edit.ShowDayBeforeMonth(true);
    EXPECT_EQ(edit.GetWindowText(), L"03/12/2001 07:59");
    edit.SetDateSeparator(L'.');
    edit.SetTimeSeparator(L'.');
    EXPECT_EQ(edit.GetWindowText(), L"03.12.2001 07.59");
    EXPECT_EQ(edit.GetDateTime(), CalendarTime(2001, 12, 3, 7, 59, 0));
    edit.SetWindowText(L"");
    edit.SetMinute(5);
    EXPECT_EQ(edit.GetWindowText(), L"21.11.2026 13.05");
    edit.SetToNow();
    EXPECT_EQ(edit.GetWindowText(), L"21.11.2026 13.45");
}

TEST(DateTimeValue, AloneAPartHasNoUseForTheOther)
{
    DateTimeEdit edit(kTwentyFour, kNow);
    edit.ModifyFlags(TimeOnly, 0);
    edit.SetDateTime({2000, 6, 15, 10, 30, 0});
    EXPECT_EQ(edit.GetWindowText(), L"10:30");
    EXPECT_EQ(edit.GetDateTime(), CalendarTime::TimeOfDay(10, 30, 0));
    edit.SetDate(2001, 2, 3);
    edit.SetDateSeparator(L':');
    edit.SetDateSeparator(L'-');
    EXPECT_EQ(edit.GetWindowText(), L"10:30");
    edit.ModifyFlags(DateOnly, TimeOnly);
    edit.SetDateTime({2000, 6, 15, 10, 30, 0});
    EXPECT_EQ(edit.GetWindowText(), L"06-15-2000");
    EXPECT_EQ(edit.GetDateTime(), CalendarTime(2000, 6, 15));
    edit.SetTime(3, 4, 5);
    edit.SetHour(3);
    EXPECT_EQ(edit.GetWindowText(), L"06-15-2000");
}

TEST(DateTimeValue, TheFlagsHaveTheirValues)
{
    EXPECT_EQ(DateOnly, 0x0100u);
    EXPECT_EQ(TimeOnly, 0x0200u);
    EXPECT_EQ(DayBeforeMonth, 0x1000u);
    EXPECT_EQ(TwentyFourHour, 0x2000u);
    EXPECT_EQ(WithSeconds, 0x4000u);
}

TEST(DateTimeValue, WithoutSecondsThoseOfTheSmallestDateAndTimeCount)
{
    DateTimeEdit edit(kTwentyFour, kNow);
    edit.SetRange({2000, 1, 1, 8, 0, 30}, {2000, 6, 15, 16, 0, 10});
    edit.SetWindowText(L"06/15/2000 15:00");
    EXPECT_EQ(edit.GetDateTime(), CalendarTime(2000, 6, 15, 15, 0, 30));
    edit.SetWindowText(L"01/01/2000 08:00");
    EXPECT_TRUE(edit.IsValid());
    edit.SetWindowText(L"06/15/2000 16:00");
    EXPECT_FALSE(edit.IsValid());
    // The time alone has a range of its own.
    edit.ModifyFlags(TimeOnly, 0);
    edit.SetWindowText(L"15:00");
    EXPECT_EQ(edit.GetDateTime(), CalendarTime::TimeOfDay(15, 0, 0));
}

TEST(DateTimeValue, TheTimeAloneTakesNoFieldOfADate)
{
    DateTimeEdit edit(kTwentyFour, kNow);
    edit.ModifyFlags(TimeOnly | WithSeconds, 0);
    edit.SetWindowText(L"13:45:30"); // as long as a date up to its year
    edit.SetYear(2001);
    EXPECT_EQ(edit.GetWindowText(), L"13:45:30");
    edit.SetMonth(2);
    edit.SetDay(3);
    EXPECT_EQ(edit.GetWindowText(), L"13:45:30");
}

TEST(MultiMaskedDates, FiveMasksChooseTheDateAndTimeWithTheirFlags)
{
    struct Row {
        const wchar_t *mask;
        unsigned flags;
        const wchar_t *now;
    };
    for (const Row &row :
         {Row{L"##/##/#### ##:##:##", WithSeconds, L"11/21/2026 13:45:30"},
          Row{L"##/##/#### ##:##", 0, L"11/21/2026 13:45"}, Row{L"##/##/####", DateOnly, L"11/21/2026"},
          Row{L"##:##:##", TimeOnly | WithSeconds, L"13:45:30"}, Row{L"##:##", TimeOnly, L"13:45"}}) {
        TMultiMaskedEdit<FakeEditBox> edit(kTwentyFour, kNow);
        edit.SetMask(row.mask);
        EXPECT_EQ(edit.GetMask(), row.mask);
        EXPECT_EQ(edit.CurrentKind(), MaskChoice::Kind::DateTime);
        EXPECT_EQ(edit.DateTimeBehavior::GetFlags(), row.flags | TwentyFourHour) << Narrow(row.mask);
        edit.SetWindowText(L" ");
        EXPECT_EQ(edit.GetWindowText(), row.now) << Narrow(row.mask);
        edit.OnKeyDown(kKeyHome, 1, 0);
        edit.OnKeyDown(kKeyDown, 1, 0);
        EXPECT_NE(edit.GetWindowText(), row.now) << "the key goes to the date and time";
        edit.SetWindowText(L"");
        edit.DateTimeBehavior::ModifyFlags(KillFocusRepairIfEmpty, 0);
        edit.OnKillFocus(nullptr);
        EXPECT_EQ(edit.GetWindowText(), row.now) << Narrow(row.mask);
    }
}

TEST(MultiMaskedDates, FlagsOfAnEarlierMaskStay)
{
    TMultiMaskedEdit<FakeEditBox> edit(kTwentyFour, kNow);
    edit.SetMask(L"##:##:##");
    edit.SetMask(L"##:##");
    edit.SetWindowText(L" ");
    EXPECT_EQ(edit.GetWindowText(), L"13:45:30");
    edit.SetMask(L"##/##/####");
    edit.SetWindowText(L" ");
    EXPECT_EQ(edit.GetWindowText(), L"11/21/2026");
    edit.SetMask(L"##/##/#### ##:##");
    edit.SetWindowText(L" ");
    EXPECT_EQ(edit.GetWindowText(), L"11/21/2026");
}
