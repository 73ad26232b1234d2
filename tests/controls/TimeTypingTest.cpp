// Keys in a time edit and in one of a date and a time, as sequences: text and selection after every key.
#include "tests/controls/FieldSequence.h"

using namespace AMSEdit;
using namespace sequence;

namespace {

const PinnedSettings kOtherTexts{{RegionalQuery::MorningText, L"dop."}, {RegionalQuery::AfternoonText, L"odp."}};

void WithSecondsShown(TimeEdit &edit)
{
    edit.ShowSeconds(true);
}

} // namespace

TEST(TimeTyping, DigitsAndSeparatorsFillTheFields)
{
    TypeAll(TwentyFour(),
            {{L"|", L"1>1| 3>13| :>13:| 4>13:4| 5>13:45| 6>13:45| :>13:45|"}, {L"|", L"1>1| 3>13| 4>13:4| 5>13:45|"}});
    TypeAll(TwentyFour(WithSecondsShown), {{L"|", L"1>1| 2>12| :>12:| 3>12:3| 4>12:34| :>12:34:| 5>12:34:5| "
                                                  L"6>12:34:56| 7>12:34:56|"},
                                           {L"|", L"1>1| 2>12| 3>12:3| 4>12:34| 5>12:34:5| 6>12:34:56|"}});
}

TEST(TimeTyping, An24HourBoxTakesHoursFrom00To23)
{
    TypeAll(TwentyFour(), {{L"|", L"2>2| 4>2| 9>2| 3>23|"},
                           {L"|", L"0>0| 0>00|"},
                           {L"|", L"1>1| 9>19|"},
                           {L"|", L"3>03|"},
                           {L"|", L"9>09|"},
                           {L"|19:45", L"2>2[0]:45 3>23|:45"},
                           {L"|13:45", L"2>2|3:45"}});
}

TEST(TimeTyping, WithoutIt13CanNotBeTypedAsAnHour)
{
    TypeAll(Twelve(), {{L"|", L"1>1| 3>1| 9>1| 2>12|"},
                       {L"|", L"0>0| 0>0| 1>01|"},
                       {L"|", L"2>02|"},
                       {L"|09:30_AM", L"1>1[0]:30_AM 2>12|:30_AM"},
                       {L"|10:30_AM", L"0>0[1]:30_AM"},
                       {L"|12:30_AM", L"2>|12:30_AM 0>0|2:30_AM"}});
}

TEST(TimeTyping, MinutesAndSecondsStartWithZeroToFive)
{
    TypeAll(TwentyFour(WithSecondsShown), {{L"12:|34:56", L"6>12:|34:56 5>12:5|4:56 9>12:59|:56"},
                                           {L"12:34:|56", L"9>12:34:|56 0>12:34:0|6 0>12:34:00|"}});
}

TEST(TimeTyping, SeparatorsAndPaddingActAsInADate)
{
    TypeAll(TwentyFour(WithSecondsShown), {{L"|", L"1>1| :>01:| 5>01:5| :>01:05:| 7>01:05:07|"},
                                           {L"|", L"9>09| :>09:| 7>09:07| :>09:07:| 8>09:07:08|"},
                                           {L"|", L"0>0| :>00:|"},
                                           {L"12|:34:56", L":>12:|34:56 :>12:|34:56"},
                                           {L"12|:34:56", L"5>12:5|4:56"},
                                           {L"12|:34:56", L"7>12|:34:56"}});
    TypeAll(Twelve(), {{L"|", L"0>0| :>0|"}, {L"|", L"1>1| :>01:|"}});
}

TEST(TimeTyping, ADigitThatTheNextFieldDoesNotStartWithWritesNoSeparator)
{
    TypeAll(TwentyFour(), {{L"|", L"9>09| 7>09| :>09:| 7>09:07|"}, {L"|", L"0>0| 0>00| 0>00:0| 0>00:00|"}});
}

TEST(TimeTyping, OtherCharactersAreDropped)
{
    TypeAll(TwentyFour(), {{L"|", L"x>| :>| a>| P>| _>|"}, {L"13:45|", L"a>13:45| _>13:45| 1>13:45|"}});
    TypeAll(Twelve(), {{L"|", L"x>| :>| _>|"}, {L"09:30_AM|", L"x>09:30_AM| m>09:30_AM|"}});
}

TEST(TimeTyping, ABoxOfTwelveHoursGetsTheMorningWhenItsDigitsAreThere)
{
    TypeAll(Twelve(),
            {{L"|", L"9>09| :>09:| 3>09:3| 0>09:30|_AM 5>09:30|_AM"}, {L"|", L"1>1| 1>11| :>11:| 7>11:07|_AM"}});
    TypeAll(Twelve(WithSecondsShown), {{L"|", L"9>09| 3>09:3| 0>09:30| 1>09:30:1| 5>09:30:15|_AM"}});
    TypeAll(TwentyFour(), {{L"|", L"0>0| 9>09| 3>09:3| 0>09:30|"}});
}

TEST(TimeTyping, AAndPSetTheFieldFromAnywhereAndTheCaretMovesPastIt)
{
    TypeAll(Twelve(), {{L"09:30|_AM", L"p>09:30_PM| a>09:30_AM| P>09:30_PM| A>09:30_AM|"},
                       {L"|09:30_AM", L"P>09:30_PM|"},
                       {L"09:30_|AM", L"p>09:30_PM|"},
                       {L"09:30_A|M", L"p>09:30_P|M"},
                       {L"09:30_[AM]", L"p>09:30_PM|"},
                       {L"09:30_AM|", L"<BS>>09:30_A| <BS>>09:30_| <BS>>09:30| p>09:30_PM|"}});
    TypeAll(Twelve(WithSecondsShown), {{L"|09:30:15_AM", L"p>09:30:15_PM|"}});
}

TEST(TimeTyping, AAndPWaitForTheDigits)
{
    TypeAll(Twelve(), {{L"|", L"a>| 9>09| p>09| :>09:| a>09:| 3>09:3| p>09:3|"}});
}

TEST(TimeTyping, AnotherLetterOfTheFieldIsSteppedOver)
{
    TypeAll(Twelve(), {{L"09:30_A|M", L"m>09:30_AM|"},
                       {L"09:30_A|M", L"M>09:30_AM|"},
                       {L"09:30_A|M", L"x>09:30_A|M"},
                       {L"09:30_A[M]", L"m>09:30_A[M]"},
                       {L"09:30_PM|", L"<BS>>09:30_P| x>09:30_P| m>09:30_PM|"}});
    TypeAll(Make<TimeEdit>(kOtherTexts),
            {{L"|", L"9>09| 3>09:3| 0>09:30|_dop. p>09:30_odp.|"},
             {L"09:30_odp.|", L"<BS>>09:30_odp| <BS>>09:30_od| <BS>>09:30_o| d>09:30_odp.|"},
             {L"09:30_odp.|", L"<BS>>09:30_odp| <BS>>09:30_od| <BS>>09:30_o| <BS>>09:30_| o>09:30_odp.|"},
             {L"09:30_odp.|", L"<BS>>09:30_odp| <BS>>09:30_od| <BS>>09:30_o| <BS>>09:30_| d>09:30_dop.|"},
             {L"09:30_|dop.", L"d>09:30_d|op. o>09:30_do|p."},
             {L"09:30_dop|.", L".>09:30_dop.|"}});
}

TEST(TimeTyping, TheBlankInFrontOfTheFieldCanBeTyped)
{
    TypeAll(Twelve(),
            {{L"09:30|_AM", L"_>09:30_|AM"}, {L"09:30_AM|", L"<BS>>09:30_A| <BS>>09:30_| <BS>>09:30| _>09:30_|"}});
}

TEST(TimeTyping, ADigitCompletesAFieldThatHasBeenBegunOrIsMissing)
{
    TypeAll(Twelve(), {{L"09:30_AM|", L"<BS>>09:30_A| <BS>>09:30_| <Left>>09:30|_ <Left>>09:3|0_ 5>09:35|_AM"},
                       {L"09:30_PM|", L"<BS>>09:30_P| <Home>>|09:30_P 0>0|9:30_PM"}});
}

TEST(TimeTyping, UpAndDownStepTheFieldUnderTheCaret)
{
    TypeAll(TwentyFour(WithSecondsShown), {{L"|13:45:10", L"<Up>>|14:45:10 <Down>>|13:45:10"},
                                           {L"13|:45:10", L"<Down>>12|:45:10"},
                                           {L"13:|45:10", L"<Up>>13:|46:10"},
                                           {L"13:45|:10", L"<Up>>13:46|:10"},
                                           {L"13:45:|10", L"<Up>>13:45:|11"},
                                           {L"13:45:10|", L"<Down>>13:45:09|"}});
}

TEST(TimeTyping, AtAFieldsLimitAStepChangesNothing)
{
    TypeAll(TwentyFour(), {{L"|23:45", L"<Up>>|23:45"},
                           {L"|00:45", L"<Down>>|00:45"},
                           {L"13:|59", L"<Up>>13:|59"},
                           {L"13:|00", L"<Down>>13:|00"}});
    TypeAll(Twelve(), {{L"|12:30_AM", L"<Up>>|12:30_AM"}, {L"|01:30_PM", L"<Down>>|01:30_PM"}});
}

TEST(TimeTyping, UpAndDownOnTheFieldOfAmAndPmFlipIt)
{
    TypeAll(Twelve(), {{L"09:30_|AM", L"<Up>>09:30_|PM <Up>>09:30_|AM <Down>>09:30_|PM <Down>>09:30_|AM"},
                       {L"09:30_A|M", L"<Down>>09:30_P|M"},
                       {L"09:30_AM|", L"<Up>>09:30_PM|"},
                       {L"09:30|_AM", L"<Up>>09:31|_AM"}});
}

TEST(TimeTyping, AHalfTypedFieldOfAmAndPmIsNotFlipped)
{
    TypeAll(Twelve(), {{L"09:30_AM|", L"<BS>>09:30_A| <Up>>09:30_A| <Down>>09:30_A| <BS>>09:30_| <Up>>09:30_|"}});
}

TEST(TimeTyping, AStepFromAHalfTypedFieldLeadsToItsSmallestValueAndCompletesTheMorning)
{
    TypeAll(Twelve(), {{L"|", L"<Up>>|01 <Up>>|02"}, {L"|", L"9>09| :>09:| <Up>>09:|00_AM"}});
    TypeAll(TwentyFour(), {{L"|", L"<Down>>| <Up>>|00 <Up>>|01"}});
}

TEST(TimeTyping, BackspaceAndDeleteWorkAtTheEndAlone)
{
    TypeAll(TwentyFour(), {{L"13:|45", L"<BS>>13|:45"},
                           {L"13:45|", L"<BS>>13:4| <BS>>13:| <BS>>13|"},
                           {L"13|:45", L"<Del>>13|:45"},
                           {L"13:4|5", L"<Del>>13:4|"},
                           {L"13[:45]", L"<Del>>13|"}});
}

TEST(TimeTyping, AReadOnlyBoxIgnoresKeys)
{
    auto edit = Twelve()();
    Place(*edit, L"09:30_|AM");
    edit->SetReadOnly(true);
    for (const wchar_t *key : {L"1", L"p", L"<BS>", L"<Del>"}) {
        Press(*edit, key);
        EXPECT_EQ(Shown(edit->Picture()), L"09:30_|AM") << Narrow(key);
    }
    Press(*edit, L"<Up>");
    EXPECT_EQ(edit->GetWindowText(), L"09:30 AM");
}

TEST(DateTimeTyping, AReadOnlyBoxIgnoresKeysAtTheBlankToo)
{
    auto edit = Both()();
    Place(*edit, L"06/15/2000|_13:45");
    edit->SetReadOnly(true);
    for (const wchar_t *key : {L"1", L"_"}) {
        Press(*edit, key);
        EXPECT_EQ(Shown(edit->Picture()), L"06/15/2000|_13:45") << Narrow(key);
    }
}

TEST(TimeTyping, AVetoedCharacterChangesNothing)
{
    class Vetoing : public TimeEdit {
    public:
        using TimeEdit::TimeEdit;
        bool ShouldEnter(wchar_t) override { return false; }
    };
    Vetoing edit(kNoAnswers, kNow);
    Place(edit, L"09:30_A|M");
    for (const wchar_t *key : {L"p", L"1", L":"}) {
        Press(edit, key);
        EXPECT_EQ(Shown(edit.Picture()), L"09:30_A|M") << Narrow(key);
    }
    Place(edit, L"09|:30_AM");
    Press(edit, L"1");
    EXPECT_EQ(Shown(edit.Picture()), L"09|:30_AM");
}

TEST(DateTimeTyping, TheDateIsFollowedByABlankAndTheTime)
{
    TypeAll(Both(), {{L"|", L"0>0| 6>06| 1>06/1| 5>06/15| 2>06/15/2| 0>06/15/20| 0>06/15/200| 0>06/15/2000| "
                            L"1>06/15/2000_1| 3>06/15/2000_13| 4>06/15/2000_13:4| 5>06/15/2000_13:45| "
                            L"6>06/15/2000_13:45|"},
                     {L"|", L"6>06| />06/| 5>06/05| />06/05/| 1>06/05/1| 9>06/05/19| 9>06/05/199| 9>06/05/1999| "
                            L"x>06/05/1999| />06/05/1999| _>06/05/1999_| 9>06/05/1999_09| :>06/05/1999_09:|"},
                     {L"|", L"6>06| />06/| 5>06/05| />06/05/| 1>06/05/1| 9>06/05/19| 9>06/05/199| 9>06/05/1999| "
                            L"7>06/05/1999| _>06/05/1999_| 7>06/05/1999_07|"}});
    TypeAll(Make<DateTimeEdit>(kNoAnswers),
            {{L"06/05/1999|_09:30_PM", L"_>06/05/1999_|09:30_PM a>06/05/1999_09:30_AM|"},
             {L"06/05/199|9_09:30_PM", L"a>06/05/199|9_09:30_PM"},
             {L"06/05/1999|_09:30_PM", L"1>06/05/1999_1[0]:30_PM 2>06/05/1999_12|:30_PM"}});
}

TEST(DateTimeTyping, ThePartUnderTheCaretIsTheOneThatChanges)
{
    TypeAll(Both(), {{L"|06/15/2000_13:45", L"<Up>>|07/15/2000_13:45"},
                     {L"06/15/200|0_13:45", L"<Up>>06/15/200|1_13:45"},
                     {L"06/15/2000|_13:45", L"<Up>>06/15/2000|_13:45"},
                     {L"06/15/2000_|13:45", L"<Up>>06/15/2000_|14:45"},
                     {L"06/15/2000_13:45|", L"<Down>>06/15/2000_13:44|"},
                     {L"0|1/31/2001_13:45", L"2>02/[28]/2001_13:45"},
                     {L"06/15/2000_|13:45", L"<BS>>06/15/2000|_13:45 <BS>>06/15/200|0_13:45"},
                     {L"06/15/2000_13:4|5", L"<Del>>06/15/2000_13:4|"},
                     {L"06/15/2000_|19:45", L"2>06/15/2000_2[0]:45"}});
}

TEST(DateTimeTyping, TheDateAloneTakesNoTime)
{
    TypeAll(Both([](DateTimeEdit &edit) { edit.ModifyFlags(DateOnly, 0); }),
            {{L"|", L"6>06| 1>06/1| 5>06/15| 2>06/15/2| 0>06/15/20| 0>06/15/200| 0>06/15/2000| 1>06/15/2000| "
                    L"_>06/15/2000|"},
             {L"06/15/|2000", L"<Up>>06/15/|2001"}});
}

TEST(DateTimeTyping, TheTimeAloneStartsAtPlaceZero)
{
    TypeAll(Both([](DateTimeEdit &edit) { edit.ModifyFlags(TimeOnly, 0); }),
            {{L"|", L"1>1| 3>13| 4>13:4| 5>13:45|"}, {L"13:|45", L"<Up>>13:|46"}, {L"|13:45", L"2>2|3:45"}});
}

TEST(DateTimeTyping, WithBothFlagsItIsTheDateAlone)
{
    TypeAll(Both([](DateTimeEdit &edit) { edit.ModifyFlags(DateOnly | TimeOnly, 0); }),
            {{L"|", L"6>06| 1>06/1| 5>06/15| 2>06/15/2| 0>06/15/20|"}});
}

TEST(DateTimeTyping, UndoGoesBackKeyByKey)
{
    TypeAll(Both(), {{L"06/15/2000_13:4|5", L"2>06/15/2000_13:42| <BS>>06/15/2000_13:4| <Undo>>06/15/2000_13:42| "
                                            L"<Undo>>06/15/2000_13:4|5 <Redo>>06/15/2000_13:42|"}});
}
