// Values of the time edit: texts set from outside, ranges, setters, regional settings.
#include "tests/controls/FieldSequence.h"

using namespace AMSEdit;
using namespace sequence;

namespace {

using Query = RegionalQuery;

} // namespace

TEST(TimeValue, TheSettingsGiveSeparatorHoursAndTexts)
{
    struct Texts {
        const wchar_t *am, *pm, *wantedAm, *wantedPm;
    };
    for (const auto &[am, pm, wantedAm, wantedPm] :
         {Texts{L"dop.", L"odp.", L"dop.", L"odp."}, Texts{L"a", L"pm", L"AM", L"PM"}, Texts{L"", L"", L"AM", L"PM"}}) {
        const PinnedSettings settings{{Query::TimeSeparator, L".x"},
                                      {Query::TimeOfTwentyFourHours, L"0"},
                                      {Query::MorningText, am},
                                      {Query::AfternoonText, pm}};
        TimeEdit edit(settings, kNow);
        std::wstring foundAm, foundPm;
        edit.GetAMPMSymbols(&foundAm, &foundPm);
        EXPECT_EQ(foundAm, wantedAm);
        EXPECT_EQ(foundPm, wantedPm);
        EXPECT_EQ(edit.GetSeparator(), L'.');
        EXPECT_FALSE(edit.IsShowing24HourFormat());
    }
    EXPECT_TRUE(TimeEdit(kTwentyFour, kNow).IsShowing24HourFormat());
    EXPECT_FALSE(TimeEdit(kNoAnswers, kNow).IsShowing24HourFormat());
    EXPECT_FALSE(TimeEdit(kTwentyFour, kNow).IsShowingSeconds());
    EXPECT_TRUE(TimeEdit(PinnedSettings{{Query::TimeOfTwentyFourHours, L"2"}}, kNow).IsShowing24HourFormat());
}

TEST(TimeValue, TextSetFromOutsideIsReadByPlacesAndPutRight)
{
    SetAll(TwentyFour(), {{L"", L""},
                          {L" ", L"13:45"},
                          {L"10:30", L"10:30"},
                          {L"10", L"10:00"},
                          {L"10:3", L"10:00"},
                          {L"25:10", L"00:10"},
                          {L"10:70", L"10:00"},
                          {L"10-30", L"10:30"},
                          {L"10:30:45", L"10:30"}});
    SetAll(TwentyFour([](TimeEdit &edit) { edit.ShowSeconds(true); }),
           {{L"10:30", L"10:30:00"}, {L"10:30:99", L"10:30:00"}, {L" ", L"13:45:30"}});
    SetAll(Twelve(), {{L" ", L"01:45 PM"},
                      {L"10:30", L"10:30 AM"},
                      {L"10:30 PM", L"10:30 PM"},
                      {L"00:30 AM", L"01:30 AM"},
                      {L"10:30 XX", L"10:30 AM"}});
}

TEST(TimeValue, TheHourOfTwelveAndOfTwentyFourFollowOneAnother)
{
    SetAll(TwentyFour(), {{L"10:30 PM", L"22:30"},
                          {L"10:30 AM", L"10:30"},
                          {L"12:30 PM", L"00:30"},
                          {L"12:30 AM", L"12:30"},
                          {L"00:30 PM", L"00:30"}});
    SetAll(Twelve(), {{L"13:30", L"01:30 PM"},
                      {L"23:30", L"11:30 PM"},
                      {L"13:30 AM", L"01:30 PM"},
                      {L"13:30 PM", L"01:30 PM"},
                      {L"00:30", L"12:30 PM"},
                      {L"12:30", L"12:30 AM"}});
}

TEST(TimeValue, InTheAfternoon12IsAddedAnd24Becomes0)
{
    TimeEdit edit(kNoAnswers, kNow);
    const std::pair<const wchar_t *, int> rows[] = {{L"01:30 AM", 1},  {L"11:30 AM", 11}, {L"12:30 AM", 12},
                                                    {L"01:30 PM", 13}, {L"11:30 PM", 23}, {L"12:30 PM", 0}};
    for (const auto &[text, hour] : rows) {
        edit.SetWindowText(text);
        EXPECT_EQ(edit.GetTime(), CalendarTime::TimeOfDay(hour, 30, 0)) << Narrow(text);
    }
}

TEST(TimeValue, EveryTimeSetComesBack)
{
    for (const PinnedSettings *settings : {&kNoAnswers, &kTwentyFour}) {
        TimeEdit edit(*settings, kNow);
        edit.ShowSeconds(true);
        for (int hour = 0; hour < 24; ++hour) {
            const auto time = CalendarTime::TimeOfDay(hour, 7, 59);
            edit.SetTime(time);
            EXPECT_EQ(edit.GetTime(), time) << Narrow(edit.GetWindowText());
            edit.SetWindowText(L"");
            edit.SetTime(hour, 7, 59);
            EXPECT_EQ(edit.GetTime(), time) << Narrow(edit.GetWindowText());
        }
    }
}

TEST(TimeValue, SetTimeTakesAnHourOfTwelveWithItsText)
{
    TimeEdit edit(kNoAnswers, kNow);
    edit.SetTime(9, 30, 0, L"PM");
    EXPECT_EQ(edit.GetWindowText(), L"09:30 PM");
    EXPECT_EQ(edit.GetAMPM(), L"PM");
    edit.Show24HourFormat(true);
    EXPECT_EQ(edit.GetWindowText(), L"21:30");
    EXPECT_EQ(edit.GetAMPM(), L"");
    edit.SetTime(9, 30, 0, L"AM");
    EXPECT_EQ(edit.GetWindowText(), L"09:30");
    edit.Show24HourFormat(false);
    EXPECT_EQ(edit.GetWindowText(), L"09:30 AM");
    edit.SetToNow();
    EXPECT_EQ(edit.GetWindowText(), L"01:45 PM");
    edit.SetTime(CalendarTime());
    EXPECT_EQ(edit.GetWindowText(), L"01:45 PM");
}

TEST(TimeValue, OfFieldsTooShortTextReadsMinus1)
{
    TimeEdit edit(kTwentyFour, kNow);
    EXPECT_EQ(edit.GetHour(), -1);
    EXPECT_EQ(edit.GetMinute(), -1);
    EXPECT_EQ(edit.GetSecond(), -1);
    EXPECT_FALSE(edit.GetTime().IsValid());
    edit.ShowSeconds(true);
    edit.SetTime(10, 20, 30);
    EXPECT_EQ(edit.GetHour(), 10);
    EXPECT_EQ(edit.GetMinute(), 20);
    EXPECT_EQ(edit.GetSecond(), 30);
}

TEST(TimeValue, ASetterOfAFieldKeepsTheSelection)
{
    TimeEdit edit(kNoAnswers, kNow);
    Place(edit, L"09:[30]_AM");
    edit.SetHour(12);
    edit.SetMinute(5);
    EXPECT_EQ(Shown(edit.Picture()), L"12:[05]_AM");
    edit.SetAMPM(L"PM");
    edit.SetAMPM(L"XX");
    EXPECT_EQ(Shown(edit.Picture()), L"12:[05]_PM");
    edit.SetHour(99);
    edit.SetMinute(-4);
    edit.SetSecond(5); // none shown
    EXPECT_EQ(edit.GetWindowText(), L"12:00 PM");
    edit.SetWindowText(L"");
    edit.SetAMPM(L"PM");
    EXPECT_EQ(edit.GetWindowText(), L"");
    edit.SetMinute(5);
    EXPECT_EQ(edit.GetWindowText(), L"01:05 PM");
}

TEST(TimeValue, AFieldWrittenInABoxOfTwelveHoursBringsTheMissingMorning)
{
    TimeEdit edit(kNoAnswers, kNow);
    const auto strip = [&edit] {
        edit.SetWindowText(L"09:30 PM");
        edit.SetSel(5, 8);
        edit.ReplaceSel(L"", true);
    };
    strip();
    edit.SetHour(8);
    EXPECT_EQ(edit.GetWindowText(), L"08:30 AM");
    strip();
    edit.SetMinute(8);
    EXPECT_EQ(edit.GetWindowText(), L"09:08 AM");
    edit.ShowSeconds(true);
    EXPECT_EQ(edit.GetWindowText(), L"09:08:00 AM");
    edit.SetSel(8, 11);
    edit.ReplaceSel(L"", true);
    edit.SetSecond(7);
    EXPECT_EQ(edit.GetWindowText(), L"09:08:07 AM");
}

TEST(TimeValue, SecondsSeparatorAndTextsChangeWithoutTheTime)
{
    TimeEdit edit(kNoAnswers, kNow);
    edit.ShowSeconds(true);
    edit.SetTime(22, 30, 45);
    EXPECT_EQ(edit.GetWindowText(), L"10:30:45 PM");
    edit.SetSeparator(L'.');
    EXPECT_EQ(edit.GetWindowText(), L"10.30.45 PM");
    edit.SetAMPMSymbols(L"dop.", L"odp.");
    EXPECT_EQ(edit.GetWindowText(), L"10.30.45 odp.");
    edit.ShowSeconds(false);
    EXPECT_EQ(edit.GetWindowText(), L"10.30 odp.");
    edit.SetAMPMSymbols(L"a", L"pm");
    EXPECT_EQ(edit.GetWindowText(), L"10.30 PM");
    edit.SetAMPMSymbols(L"", L"");
    std::wstring am, pm;
    edit.GetAMPMSymbols(&am, &pm);
    EXPECT_EQ(am + pm, L"AMPM");
    edit.GetAMPMSymbols(nullptr, nullptr);
}

TEST(TimeValue, ATimeBeyondTheRangeBecomesTheNearerLimit)
{
    SetAll(TwentyFour([](TimeEdit &edit) {
               edit.SetRange(CalendarTime::TimeOfDay(8, 15, 0), CalendarTime::TimeOfDay(16, 45, 0));
           }),
           {{L"07:00", L"08:15"}, {L"17:00", L"16:45"}, {L"08:15", L"08:15"}, {L"16:45", L"16:45"}, {L" ", L"13:45"}});
    SetAll(TwentyFour([](TimeEdit &edit) {
               edit.SetRange(CalendarTime::TimeOfDay(16, 0, 0), CalendarTime::TimeOfDay(8, 0, 0));
           }),
           {{L"07:00", L"16:00"}, {L"17:00", L"16:00"}, {L"12:00", L"16:00"}});
}

TEST(TimeValue, WithoutSecondsThoseOfTheMinimumCount)
{
    TimeEdit edit(kTwentyFour, kNow);
    edit.SetRange(CalendarTime::TimeOfDay(8, 15, 30), CalendarTime::TimeOfDay(16, 45, 10));
    edit.SetWindowText(L"08:15");
    EXPECT_EQ(edit.GetTime(), CalendarTime::TimeOfDay(8, 15, 30));
    EXPECT_TRUE(edit.IsValid());
    edit.SetWindowText(L"16:45");
    EXPECT_FALSE(edit.IsValid());
    CalendarTime min, max;
    edit.GetRange(&min, &max);
    EXPECT_EQ(max, CalendarTime::TimeOfDay(16, 45, 10));
}

TEST(TimeValue, IsValidAsksForTheWholeFormOfItsOwnKind)
{
    TimeEdit twentyFour(kTwentyFour, kNow);
    TimeEdit twelve(kNoAnswers, kNow);
    const auto valid = [](TimeEdit &edit, const wchar_t *text) {
        edit.SetWindowText(L"");
        edit.ReplaceSel(text, true); // past the filter
        return edit.IsValid();
    };
    EXPECT_TRUE(valid(twentyFour, L"13:45"));
    EXPECT_FALSE(valid(twentyFour, L"13:45 PM"));
    EXPECT_FALSE(valid(twentyFour, L"13:45:10"));
    EXPECT_FALSE(valid(twentyFour, L"13-45"));
    EXPECT_FALSE(valid(twentyFour, L"13:4"));
    EXPECT_FALSE(valid(twentyFour, L""));
    EXPECT_FALSE(valid(twentyFour, L"24:00"));
    EXPECT_TRUE(valid(twelve, L"12:45 PM"));
    EXPECT_FALSE(valid(twelve, L"12:45"));
    EXPECT_FALSE(valid(twelve, L"13:45 PM"));
    EXPECT_FALSE(valid(twelve, L"00:45 PM"));
    EXPECT_FALSE(valid(twelve, L"12:45 XM"));
    EXPECT_FALSE(valid(twelve, L"12:60 AM"));
    twentyFour.ShowSeconds(true);
    EXPECT_TRUE(valid(twentyFour, L"13:45:10"));
    EXPECT_FALSE(valid(twentyFour, L"13:45"));
    EXPECT_FALSE(valid(twentyFour, L"13:45:60"));
    EXPECT_FALSE(twelve.IsWithinRange({2000, 6, 15, 8, 0, 0}, false));
    EXPECT_TRUE(twelve.IsWithinRange({2000, 6, 15, 8, 0, 0}, true));
    EXPECT_TRUE(twelve.IsWithinRange(CalendarTime::TimeOfDay(8, 0, 0), false));
}

TEST(TimeValue, ABoxOfTwentyFourHoursHasNoPlaceForAmAndPm)
{
    TimeEdit edit(kTwentyFour, kNow);
    edit.SetWindowText(L"13:45");
    edit.SetAMPM(L"PM");
    EXPECT_EQ(edit.GetWindowText(), L"13:45");
    edit.SetAMPM(L"AM");
    EXPECT_EQ(edit.GetWindowText(), L"13:45");
}

TEST(TimeValue, AfterAChangeOfARuleWithinAStepUndoBringsNoTextOfTheOldOne)
{
    for (const std::vector<const wchar_t *> &keys :
         std::vector<std::vector<const wchar_t *>>{{L"0", L"9", L"3"}, {L"0", L"9", L"3", L"0"}}) {
        ExpectUndoInFormBehindAChange<TimeEdit>([](TimeEdit &e) { e.SetSeparator(L'.'); }, keys);
        ExpectUndoInFormBehindAChange<TimeEdit>([](TimeEdit &e) { e.SetAMPMSymbols(L"dop.", L"odp."); }, keys);
        ExpectUndoInFormBehindAChange<TimeEdit>([](TimeEdit &e) { e.ShowSeconds(true); }, keys);
        ExpectUndoInFormBehindAChange<TimeEdit>(
            [](TimeEdit &e) { e.SetRange(CalendarTime::TimeOfDay(11, 0, 0), CalendarTime::TimeOfDay(16, 0, 0)); },
            keys);
    }
}
