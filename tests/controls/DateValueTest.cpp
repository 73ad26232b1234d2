// Values of the date and time edits: texts set from outside, ranges, setters, regional settings, what happens when the
// focus leaves.
#include "tests/controls/FieldSequence.h"

#include "controls/rules/MultiMaskedEdit.h"

using namespace AMSEdit;
using namespace sequence;

namespace {

using Query = RegionalQuery;

const CalendarTime kFirst(1990, 3, 10), kLast(2000, 6, 15);

auto Date(std::function<void(DateEdit &)> setUp = {})
{
    return Make<DateEdit>(kNoAnswers, std::move(setUp));
}

auto Twelve(std::function<void(TimeEdit &)> setUp = {})
{
    return Make<TimeEdit>(kNoAnswers, std::move(setUp));
}

auto TwentyFour(std::function<void(TimeEdit &)> setUp = {})
{
    return Make<TimeEdit>(kTwentyFour, std::move(setUp));
}

auto Both(std::function<void(DateTimeEdit &)> setUp = {})
{
    return Make<DateTimeEdit>(kTwentyFour, std::move(setUp));
}

template <class Edit>
std::string After(Edit &edit, const wchar_t *text)
{
    edit.SetWindowText(text);
    return Narrow(edit.GetWindowText());
}

} // namespace

TEST(CalendarTime, IsValidFromYear100To9999WithADayOfItsMonth)
{
    EXPECT_TRUE(CalendarTime(100, 1, 1).IsValid());
    EXPECT_TRUE(CalendarTime(9999, 12, 31, 23, 59, 59).IsValid());
    EXPECT_TRUE(CalendarTime(2000, 2, 29).IsValid());
    EXPECT_TRUE(CalendarTime::TimeOfDay(0, 0, 0).IsValid());
    for (const CalendarTime &none :
         {CalendarTime(), CalendarTime(99, 12, 31), CalendarTime(10000, 1, 1), CalendarTime(2000, 0, 1),
          CalendarTime(2000, 13, 1), CalendarTime(2000, 1, 0), CalendarTime(2000, 4, 31), CalendarTime(2001, 2, 29),
          CalendarTime(1900, 2, 29), CalendarTime(2000, 1, 1, 24, 0, 0), CalendarTime(2000, 1, 1, 0, 60, 0),
          CalendarTime(2000, 1, 1, 0, 0, 60), CalendarTime(2000, 1, 1, -1, 0, 0)})
        EXPECT_FALSE(none.IsValid()) << none.GetYear() << '-' << none.GetMonth() << '-' << none.GetDay();
}

TEST(CalendarTime, TheLastDayOfAMonthFollowsTheLeapRule)
{
    const int days[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    for (int month = 1; month <= 12; ++month)
        EXPECT_EQ(LastDayOfMonth(2001, month), days[month - 1]) << month;
    EXPECT_EQ(LastDayOfMonth(2004, 2), 29);
    EXPECT_EQ(LastDayOfMonth(1900, 2), 28);
    EXPECT_EQ(LastDayOfMonth(2000, 2), 29);
}

TEST(CalendarTime, TheSystemsClockGivesAValidTime)
{
    EXPECT_TRUE(SystemClock().Now().IsValid());
}

TEST(DateValue, TheDefaultsWithoutAnswersAreTheMonthFirstAndASlash)
{
    DateEdit edit(kNoAnswers, kNow);
    CalendarTime min, max;
    edit.GetRange(&min, &max);
    EXPECT_EQ(min, CalendarTime(1900, 1, 1, 0, 0, 0));
    EXPECT_EQ(max, CalendarTime(9998, 12, 31, 23, 59, 59));
    edit.GetRange(nullptr, nullptr);
    EXPECT_EQ(edit.GetSeparator(), L'/');
    EXPECT_FALSE(edit.IsDayShownBeforeMonth());
    EXPECT_EQ(edit.GetFlags(), 0u);
}

TEST(DateValue, TheFirstMOrDOfTheShortPatternTellsTheOrder)
{
    const std::pair<const wchar_t *, bool> patterns[] = {
        {L"M/d/yyyy", false},  {L"dd.MM.yyyy", true}, {L"D/M/Y", true}, {L"yyyy-MM-dd", false},
        {L"yyyy-dd-MM", true}, {L"m/M/dd", false},    {L"", false},     {L"yyyy", false},
    };
    for (const auto &[pattern, dayFirst] : patterns) {
        const PinnedSettings settings{{Query::ShortDatePattern, pattern}, {Query::DateSeparator, L"-x"}};
        DateEdit edit(settings, kNow);
        EXPECT_EQ(edit.IsDayShownBeforeMonth(), dayFirst) << Narrow(pattern);
        EXPECT_EQ(edit.GetSeparator(), L'-');
    }
}

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

TEST(DateValue, TextSetFromOutsideIsReadByPlacesAndPutRight)
{
    SetAll(Date(), {{L"", L""},
                    {L" ", L"11/21/2026"},
                    {L"x", L"11/21/2026"},
                    {L"06/15/2000", L"06/15/2000"},
                    {L"06/15/2000 10:30", L"06/15/2000"},
                    {L"06-15/2000", L"06/15/2000"},
                    {L"06", L"06/30/2026"},
                    {L"06/15", L"06/15/2026"},
                    {L"06/15/20", L"06/15/2026"},
                    {L"13/15/2000", L"01/15/2000"},
                    {L"02/31/2000", L"02/29/2000"},
                    {L"02/31/2001", L"02/28/2001"},
                    {L"00/00/2000", L"01/31/2000"},
                    {L"06/15/1899", L"06/15/2026"},
                    {L"06/15/9999", L"06/15/9998"},
                    {L"6/15/2000", L"06/05/2000"}});
    SetAll(Make<DateEdit>(kDayFirst), {{L"15.06.2000", L"15.06.2000"}, {L"31.02.2001", L"28.02.2001"}});
}

TEST(DateValue, ADateBeyondTheRangeIsPutRight)
{
    SetAll(Date([](DateEdit &edit) { edit.SetRange(kFirst, kLast); }), {{L" ", L"01/21/2000"},
                                                                        {L"02/15/1990", L"03/15/1990"},
                                                                        {L"03/05/1990", L"03/31/1990"},
                                                                        {L"06/20/2000", L"06/15/2000"},
                                                                        {L"07/01/2000", L"01/01/2000"},
                                                                        {L"07/01/1980", L"01/01/2000"},
                                                                        {L"04/01/2015", L"04/01/2000"},
                                                                        {L"03/10/1990", L"03/10/1990"},
                                                                        {L"06/15/2000", L"06/15/2000"}});
}

TEST(DateValue, APresentYearBeforeTheRangeIsHeldToItsFirstYear)
{
    const PinnedClock before({1980, 5, 5});
    DateEdit early(kNoAnswers, before);
    early.SetRange(kFirst, kLast);
    EXPECT_EQ(After(early, L"07/01/1970"), "07/01/1990");
}

TEST(DateValue, ARangeOutsideTheDefaultsIsAcceptedAsGiven)
{
    DateEdit edit(kNoAnswers, kNow);
    const CalendarTime min(800, 5, 5), max(9999, 12, 31);
    edit.SetRange(min, max);
    CalendarTime foundMin, foundMax;
    edit.GetRange(&foundMin, &foundMax);
    EXPECT_EQ(foundMin, min);
    EXPECT_EQ(foundMax, max);
    EXPECT_EQ(After(edit, L"12/31/9999"), "12/31/9999");
    EXPECT_TRUE(edit.IsValid());
    edit.SetDate(900, 1, 2);
    EXPECT_EQ(edit.GetWindowText(), L"01/02/ 900");
    EXPECT_TRUE(edit.IsValid());
    EXPECT_EQ(edit.GetDate(), CalendarTime(900, 1, 2));
}

TEST(DateValue, ARangeThatHoldsNothingOrMakesNoDatesStillHasASettledForm)
{
    const CalendarTime limits[][2] = {{kLast, kFirst},
                                      {{2000, 6, 20}, {2000, 6, 10}},
                                      {{2000, 6, 1}, {2000, 3, 1}},
                                      {CalendarTime(), CalendarTime()},
                                      {{-5, 99, 123}, {123456, -7, 0}},
                                      {{2000, 2, 30}, {2000, 2, 30}}};
    for (const auto &[min, max] : limits) {
        for (const wchar_t *text : {L" ", L"06/15/2000", L"06/15/1850", L"12/31/9999", L"00/00/0000", L"x"}) {
            DateEdit edit(kNoAnswers, kNow);
            edit.SetRange(min, max);
            edit.SetWindowText(text);
            EXPECT_EQ(edit.GetValidText(), edit.GetWindowText());
        }
    }
}

TEST(DateTimeValue, ARangeThatEndsBeforeItStartsOnTheSameDayHasASettledForm)
{
    SetAll(Both([](DateTimeEdit &edit) {
               edit.SetRange({1990, 11, 1, 12, 3, 0}, {1990, 11, 1, 5, 0, 0});
           }),
           {{L" ", L"11/01/1990 12:03"}, {L"11/01/1990 05:00", L"11/01/1990 12:03"}});
}

TEST(DateValue, ASetterOfTheRangeRedraws)
{
    DateEdit edit(kNoAnswers, kNow);
    edit.SetDate(2015, 8, 20);
    edit.SetRange(kFirst, kLast);
    EXPECT_EQ(edit.GetWindowText(), L"01/20/2000");
}

TEST(DateValue, OfFieldsTooShortTextReads0)
{
    DateEdit edit(kNoAnswers, kNow);
    EXPECT_EQ(edit.GetYear(), 0);
    EXPECT_EQ(edit.GetMonth(), 0);
    EXPECT_EQ(edit.GetDay(), 0);
    EXPECT_FALSE(edit.GetDate().IsValid());
    edit.SetDate(2000, 6, 15);
    EXPECT_EQ(edit.GetYear(), 2000);
    EXPECT_EQ(edit.GetMonth(), 6);
    EXPECT_EQ(edit.GetDay(), 15);
    EXPECT_EQ(edit.GetDate(), CalendarTime(2000, 6, 15));
    edit.SetSel(9, 10);
    Press(edit, L"<Del>");
    EXPECT_EQ(edit.GetYear(), 0);
    EXPECT_EQ(edit.GetMonth(), 6);
}

TEST(DateValue, AnInvalidValueSetChangesNothing)
{
    DateEdit edit(kNoAnswers, kNow);
    edit.SetDate(2000, 6, 15);
    edit.SetDate(CalendarTime());
    EXPECT_EQ(edit.GetWindowText(), L"06/15/2000");
    edit.SetToday();
    EXPECT_EQ(edit.GetWindowText(), L"11/21/2026");
}

TEST(DateValue, ASetterOfAFieldKeepsTheSelectionAndTheDependentFieldsFollow)
{
    DateEdit edit(kNoAnswers, kNow);
    Place(edit, L"01/[31]/2000");
    edit.SetMonth(2);
    EXPECT_EQ(edit.Picture(), L"02/[29]/2000");
    edit.SetYear(2001);
    EXPECT_EQ(edit.Picture(), L"02/[28]/2001");
    edit.SetDay(5);
    EXPECT_EQ(edit.Picture(), L"02/[05]/2001");
    edit.SetDay(31);
    EXPECT_EQ(edit.GetWindowText(), L"02/28/2001");
    edit.SetMonth(13);
    EXPECT_EQ(edit.GetWindowText(), L"01/28/2001");
    edit.SetYear(1200);
    EXPECT_EQ(edit.GetWindowText(), L"01/28/2026");
}

TEST(DateValue, ASetterOfAFieldThatTheTextDoesNotReachCompletesTheDate)
{
    DateEdit edit(kNoAnswers, kNow);
    edit.SetDay(5);
    EXPECT_EQ(edit.GetWindowText(), L"11/05/2026");
    edit.SetWindowText(L"");
    edit.SetYear(2001);
    EXPECT_EQ(edit.GetWindowText(), L"11/21/2001");
    edit.SetWindowText(L"");
    edit.ShowDayBeforeMonth(true);
    edit.SetMonth(2);
    EXPECT_EQ(edit.GetWindowText(), L"21/02/2026");
}

TEST(DateValue, SeparatorAndOrderChangeWithoutTheDate)
{
    DateEdit edit(kNoAnswers, kNow);
    edit.SetDate(2000, 6, 15);
    edit.SetSeparator(L'-');
    EXPECT_EQ(edit.GetWindowText(), L"06-15-2000");
    edit.ShowDayBeforeMonth(true);
    EXPECT_EQ(edit.GetWindowText(), L"15-06-2000");
    EXPECT_EQ(edit.GetFlags(), unsigned{DayBeforeMonth});
    edit.ShowDayBeforeMonth(false);
    EXPECT_EQ(edit.GetWindowText(), L"06-15-2000");
}

TEST(DateValue, WithinTheRangeAreBothLimitsAndTheTimeCountsUnlessIgnored)
{
    DateEdit edit(kNoAnswers, kNow);
    edit.SetRange({1990, 3, 10, 8, 0, 0}, {2000, 6, 15, 16, 0, 0});
    EXPECT_TRUE(edit.IsWithinRange({1990, 3, 10, 7, 59, 59}, true));
    EXPECT_FALSE(edit.IsWithinRange({1990, 3, 10, 7, 59, 59}, false));
    EXPECT_TRUE(edit.IsWithinRange({1990, 3, 10, 8, 0, 0}, false));
    EXPECT_TRUE(edit.IsWithinRange({2000, 6, 15, 16, 0, 0}, false));
    EXPECT_FALSE(edit.IsWithinRange({2000, 6, 15, 16, 0, 1}, false));
    EXPECT_TRUE(edit.IsWithinRange({2000, 6, 15, 23, 0, 0}, true));
    EXPECT_FALSE(edit.IsWithinRange({2000, 6, 16}, true));
    EXPECT_FALSE(edit.IsWithinRange({1990, 3, 9}, true));
    EXPECT_FALSE(edit.IsWithinRange({1995, 2, 30}, true));
    EXPECT_FALSE(edit.IsWithinRange(CalendarTime(), true));
    // A date of the box has no time: it is held to the dates.
    edit.SetDate(1990, 3, 10);
    EXPECT_TRUE(edit.IsValid());
}

TEST(DateValue, IsValidAsksForTheWholeForm)
{
    DateEdit edit(kNoAnswers, kNow);
    EXPECT_FALSE(edit.IsValid());
    edit.SetDate(2000, 6, 15);
    EXPECT_TRUE(edit.IsValid());
    edit.SetSel(0, 1);
    edit.OnCut();
    EXPECT_FALSE(edit.IsValid()) << Narrow(edit.GetWindowText());
    edit.SetDate(2000, 6, 15);
    edit.SetSel(2, 3);
    edit.ReplaceSel(L"-", true);
    EXPECT_FALSE(edit.IsValid());
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
    SetAll(TwentyFour(),
           {{L"10:30 PM", L"22:30"}, {L"10:30 AM", L"10:30"}, {L"12:30 PM", L"00:30"}, {L"12:30 AM", L"12:30"}});
    SetAll(Twelve(), {{L"13:30", L"01:30 PM"},
                      {L"23:30", L"11:30 PM"},
                      {L"13:30 AM", L"01:30 PM"},
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

namespace {

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

TEST(DateValue, AfterAChangeOfARuleUndoBringsNoTextOfTheOldOne)
{
    DateEdit edit(kNoAnswers, kNow);
    const auto changes = {+[](DateEdit &e) { e.SetSeparator(L'-'); }, +[](DateEdit &e) { e.ShowDayBeforeMonth(true); },
                          +[](DateEdit &e) { e.SetRange(kFirst, kLast); }};
    for (const auto &change : changes) {
        Place(edit, L"|");
        for (const wchar_t *key : {L"0", L"6", L"1", L"5"})
            Press(edit, key);
        change(edit);
        for (int key = 0; key < 5; ++key) {
            Press(edit, L"<Undo>");
            EXPECT_EQ(edit.GetWindowText(), edit.GetValidText());
        }
    }
}

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
