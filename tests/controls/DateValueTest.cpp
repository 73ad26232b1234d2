// Values of the date edit: texts set from outside, ranges, setters, regional settings.
#include "tests/controls/FieldSequence.h"

using namespace AMSEdit;
using namespace sequence;

namespace {

using Query = RegionalQuery;

const CalendarTime kFirst(1990, 3, 10), kLast(2000, 6, 15);

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
    SetAll(DayFirstDate(), {{L"15.06.2000", L"15.06.2000"}, {L"31.02.2001", L"28.02.2001"}});
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

TEST(DateValue, ATextLongerThanTheFormIsNotValid)
{
    DateEdit edit(kNoAnswers, kNow);
    edit.ReplaceSel(L"06/15/2000x", true); // past the filter
    EXPECT_EQ(edit.GetWindowText(), L"06/15/2000x");
    EXPECT_FALSE(edit.IsValid());
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

TEST(DateValue, AfterAChangeOfARuleWithinAStepUndoBringsNoTextOfTheOldOne)
{
    ExpectUndoInFormBehindAChange<DateEdit>([](DateEdit &e) { e.SetSeparator(L'-'); },
                                            {L"0", L"6", L"1", L"5", L"2", L"0", L"0", L"0"});
    ExpectUndoInFormBehindAChange<DateEdit>([](DateEdit &e) { e.SetSeparator(L'-'); }, {L"0", L"6", L"1"});
    ExpectUndoInFormBehindAChange<DateEdit>([](DateEdit &e) { e.ShowDayBeforeMonth(true); },
                                            {L"0", L"6", L"1", L"5", L"2", L"0", L"0", L"0"});
    ExpectUndoInFormBehindAChange<DateEdit>([](DateEdit &e) { e.ShowDayBeforeMonth(true); }, {L"0", L"6", L"1"});
    ExpectUndoInFormBehindAChange<DateEdit>([](DateEdit &e) { e.SetRange(kFirst, kLast); },
                                            {L"0", L"6", L"1", L"5", L"2", L"0", L"1", L"5"});
}
