// Keys in a date edit, as sequences: text and selection after every key.
#include "tests/controls/FieldSequence.h"

using namespace AMSEdit;
using namespace sequence;

namespace {

/// From 10 March 1990 to 15 June 2000.
void Narrowed(DateEdit &edit)
{
    edit.SetRange({1990, 3, 10}, {2000, 6, 15});
}

} // namespace

TEST(DateTyping, DigitsAndSeparatorsFillTheFields)
{
    TypeAll(Date(), {{L"|", L"0>0| 6>06| />06/| 1>06/1| 5>06/15| />06/15/| 2>06/15/2| 0>06/15/20| 0>06/15/200| "
                            L"0>06/15/2000| 5>06/15/2000| />06/15/2000|"},
                     {L"|", L"1>1| 2>12| />12/| 3>12/3| 1>12/31| />12/31/| 1>12/31/1| 9>12/31/19| 9>12/31/199| "
                            L"9>12/31/1999|"}});
}

TEST(DateTyping, ADigitAtASeparatorsPlaceWritesItAndIsHandledAgainBehindIt)
{
    TypeAll(Date(), {{L"|", L"0>0| 6>06| 1>06/1| 5>06/15| 2>06/15/2| 0>06/15/20| 0>06/15/200| 0>06/15/2000|"},
                     {L"06|/15/2000", L"2>06/2|5/2000"},
                     {L"06/15|/2000", L"3>06/15/3|000"}});
}

TEST(DateTyping, ADigitThatTheNextFieldDoesNotTakeWritesNoSeparator)
{
    TypeAll(Date(), {{L"|", L"0>0| 6>06| 4>06| 5>06| 9>06|"},
                     {L"|", L"2>02| 3>02| 2>02/2|"},
                     {L"06/15|/2000", L"0>06/15|/2000"},
                     {L"06|/15/2000", L"5>06|/15/2000"}});
}

TEST(DateTyping, ADigitThatOnlyTheSecondPlaceTakesIsPaddedAtTheEnd)
{
    TypeAll(Date(), {{L"|", L"5>05|"},
                     {L"|", L"2>02|"},
                     {L"|", L"9>09|"},
                     {L"|", L"0>0| 6>06| />06/| 4>06/04|"},
                     {L"|", L"6>06| />06/| 9>06/09| />06/09/|"}});
}

TEST(DateTyping, NothingIsPaddedWhereAFieldCanNotStartWithZero)
{
    TypeAll(Date([](DateEdit &edit) {
                edit.SetRange({2000, 10, 20}, {2000, 12, 31});
            }),
            {{L"|", L"5>| 0>| 1>1| />1| 1>11|"}, {L"|", L"1>1| 0>10| />10/| 5>10/| 2>10/2| />10/2|"}});
}

TEST(DateTyping, ABoxTooShortForItsFieldsDoesNotHang)
{
    auto edit = Date()();
    edit->SetMaxLength(2);
    Press(*edit, L"0");
    Press(*edit, L"6");
    Press(*edit, L"1");
    EXPECT_EQ(edit->GetWindowText(), L"06");
}

TEST(DateTyping, InsideTheTextSuchADigitIsDropped)
{
    TypeAll(Date(), {{L"|06/15/2000", L"5>|06/15/2000 2>|06/15/2000"}, {L"06/|15/2000", L"4>06/|15/2000"}});
}

TEST(DateTyping, TheSeparatorBehindALoneDigitPadsIt)
{
    TypeAll(Date(), {{L"|", L"1>1| />01/| 1>01/1| />01/01/|"},
                     {L"|", L"1>1| />01/| 2>01/2| />01/02/|"},
                     {L"|", L"1>1| />01/| 3>01/3| />01/03/|"}});
}

TEST(DateTyping, TheSeparatorBehindALoneZeroIsDropped)
{
    TypeAll(Date(), {{L"|", L"0>0| />0|"}, {L"|", L"6>06| />06/| 0>06/0| />06/0|"}});
}

TEST(DateTyping, TheSeparatorIsTakenAtItsOwnPlacesAlone)
{
    TypeAll(Date(), {{L"|06/15/2000", L"/>|06/15/2000"},
                     {L"0|6/15/2000", L"/>0|6/15/2000"},
                     {L"06|/15/2000", L"/>06/|15/2000 />06/|15/2000"},
                     {L"06/15|/2000", L"/>06/15/|2000 />06/15/|2000"}});
}

TEST(DateTyping, OtherCharactersAreDropped)
{
    TypeAll(Date(), {{L"|", L"x>| ->| .>| _>| />|"},
                     {L"06/15/2000|", L"x>06/15/2000| 1>06/15/2000|"},
                     {L"06|/15/2000", L"->06|/15/2000 .>06|/15/2000"}});
}

TEST(DateTyping, AMonthEndsAtTwelveAndStartsAtOne)
{
    TypeAll(
        Date(),
        {{L"|", L"1>1| 3>1| 9>1| 0>10|"}, {L"|", L"1>1| 1>11|"}, {L"|", L"1>1| 2>12|"}, {L"|", L"0>0| 0>0| 1>01|"}});
}

TEST(DateTyping, ADayEndsWithItsMonth)
{
    TypeAll(Date(), {{L"|", L"6>06| />06/| 3>06/3| 1>06/3| 0>06/30|"},
                     {L"|", L"7>07| />07/| 3>07/3| 2>07/3| 1>07/31|"},
                     {L"|", L"4>04| />04/| 3>04/3| 1>04/3| 0>04/30|"},
                     {L"|", L"9>09| />09/| 3>09/3| 1>09/3| 0>09/30|"},
                     {L"|", L"1>1| 1>11| />11/| 3>11/3| 1>11/3| 0>11/30|"},
                     {L"|", L"6>06| />06/| 0>06/0| 0>06/0| 1>06/01|"}});
}

TEST(DateTyping, The31stOfFebruaryCanNotBeTyped)
{
    // At the end a 3 is a padded one; inside the text it is dropped.
    TypeAll(Date(), {{L"|", L"2>02| />02/| 3>02/03|"}, {L"02/|15/2000", L"3>02/|15/2000"}});
}

TEST(DateTyping, FebruaryHas29DaysUntilTheYearTellsOtherwise)
{
    TypeAll(Date(), {{L"|", L"2>02| />02/| 2>02/2| 9>02/29| />02/29/| 2>02/29/2| 0>02/29/20| 0>02/29/200| "
                            L"1>02/28/2001|"},
                     {L"|", L"2>02| />02/| 2>02/2| 9>02/29| 2>02/29/2| 0>02/29/20| 0>02/29/200| 4>02/29/2004|"},
                     {L"02/2|8/2001", L"9>02/2|8/2001"},
                     {L"02/2|8/2004", L"9>02/29|/2004"},
                     {L"02/2|8/1900", L"9>02/2|8/1900"}});
}

TEST(DateTyping, AYearIsHeldToTheRangeDigitByDigit)
{
    TypeAll(Date(), {{L"06/15/|2000", L"0>06/15/|2000"},
                     {L"|", L"6>06| />06/| 4>06/04| />06/04/| 0>06/04/| 1>06/04/1| 8>06/04/1| 9>06/04/19| "
                            L"0>06/04/190| 0>06/04/1900|"},
                     {L"|", L"6>06| />06/| 4>06/04| />06/04/| 9>06/04/9| 9>06/04/99| 9>06/04/999| 9>06/04/999| "
                            L"8>06/04/9998|"}});
}

TEST(DateTyping, LaterYearDigitsThatFallOutOfTheRangeBecomeTheSmallestAndAreSelected)
{
    TypeAll(Date(), {{L"06/15/|2000", L"1>06/15/1[9]00 8>06/15/1[9]00 9>06/15/19|00"}});
    TypeAll(Date(Narrowed), {{L"01/20/|1995", L"2>01/20/2[000]"}});
}

TEST(DateTyping, ASecondDigitThatCanNotFollowBecomesTheSmallestAndIsSelected)
{
    TypeAll(Date(), {{L"|06/15/2000", L"1>1[0]/15/2000 2>12|/15/2000 3>12/3[0]/2000 1>12/31|/2000 1>12/31/1[9]00"},
                     {L"|10/15/2000", L"0>0[1]/15/2000"},
                     {L"06/|15/2000", L"3>06/3[0]/2000 1>06/3[0]/2000 0>06/30|/2000"},
                     {L"06/|10/2000", L"0>06/0[1]/2000"},
                     {L"06/|12/2000", L"2>06/2|2/2000"}});
}

TEST(DateTyping, ADayThatTheNewMonthDoesNotHaveIsCutAndSelected)
{
    TypeAll(Date(), {{L"0|1/31/2001", L"2>02/[28]/2001"},
                     {L"0|1/31/2000", L"2>02/[29]/2000"},
                     {L"0|1/31/2000", L"4>04/[30]/2000"},
                     {L"0|1/30/2000", L"4>04|/30/2000"},
                     {L"|03/31/2000", L"1>1[0]/31/2000 1>11/[30]/2000"}});
}

TEST(DateTyping, AtTheFirstDigitOfAMonthTheDayFollowsUnselected)
{
    TypeAll(Date(), {{L"|12/31/2001", L"0>0|2/28/2001"}, {L"|01/31/2000", L"1>1|1/30/2000"}});
}

TEST(DateTyping, AYearThatIsNoLeapYearCutsThe29thOfFebruary)
{
    TypeAll(Date(), {{L"02/29/200|0", L"1>02/28/2001|"}, {L"02/29/|2000", L"3>02/28/3|000"}});
}

TEST(DateTyping, WithTheDayInFrontTheMonthCutsTheDayBeforeIt)
{
    TypeAll(DayFirstDate(), {{L"|", L"3>3| 1>31| .>31.| 0>31.0| 2>29.02| .>29.02.| 2>29.02.2| 0>29.02.20| "
                                    L"0>29.02.200| 1>28.02.2001|"},
                             {L"|", L"3>3| 1>31| 0>31.0| 4>30.04|"},
                             {L"|", L"4>04| .>04.| 9>04.09|"},
                             {L"|", L"3>3| 2>3| 1>31| 1>31.1| 3>31.1| .>31.01.|"},
                             {L"31.0|1.2000", L"6>30.06|.2000"},
                             {L"|15.06.2000", L"3>3[0].06.2000 1>3[0].06.2000"}});
}

TEST(DateTyping, InTheYearOfTheMaximumALaterMonthIsRefused)
{
    TypeAll(Date([](DateEdit &edit) {
                edit.SetRange({1900, 1, 1}, {2000, 6, 15});
            }),
            {{L"0|5/20/2000", L"7>0|5/20/2000 6>06/[15]/2000"},
             {L"|05/20/2000", L"1>|05/20/2000"},
             {L"0|5/20/1999", L"7>07|/20/1999"},
             // No year yet: the present one, held to the range, which is the last.
             {L"|", L"0>0| 7>0| 6>06| />06/| 1>06/1| 6>06/1| 5>06/15|"}});
}

TEST(DateTyping, InTheYearOfTheMinimumAnEarlierMonthIsRefused)
{
    TypeAll(Date(Narrowed), {{L"0|3/15/1990", L"2>0|3/15/1990 4>04|/15/1990"}, {L"0|3/15/1991", L"2>02|/15/1991"}});
}

TEST(DateTyping, InTheMonthOfALimitTheDaysBeyondItAreRefused)
{
    TypeAll(Date(Narrowed), {{L"03/|15/1990", L"0>03/|15/1990 1>03/1|5/1990 0>03/10|/1990"},
                             {L"04/|15/1990", L"0>04/0|5/1990"},
                             {L"06/|10/2000", L"2>06/|10/2000 1>06/1|0/2000 6>06/1|0/2000 5>06/15|/2000"},
                             {L"05/|10/2000", L"2>05/2|0/2000"}});
}

TEST(DateTyping, AYearThatBringsTheMonthOutOfTheRangeMakesItTheFirstThatFits)
{
    TypeAll(
        Date(Narrowed),
        {{L"08/20/|1995", L"2>01/20/2[000]"}, {L"02/05/199|1", L"0>03/31/1990|"}, {L"06/20/|1995", L"2>06/15/2[000]"}});
}

TEST(DateTyping, UpAndDownStepTheFieldUnderTheCaret)
{
    TypeAll(Date(), {{L"|06/15/2000", L"<Up>>|07/15/2000 <Down>>|06/15/2000 <Down>>|05/15/2000"},
                     {L"0|6/15/2000", L"<Up>>0|7/15/2000"},
                     {L"06|/15/2000", L"<Up>>07|/15/2000"},
                     {L"06/|15/2000", L"<Up>>06/|16/2000 <Down>>06/|15/2000"},
                     {L"06/1|5/2000", L"<Down>>06/1|4/2000"},
                     {L"06/15|/2000", L"<Up>>06/16|/2000"},
                     {L"06/15/|2000", L"<Up>>06/15/|2001"},
                     {L"06/15/200|0", L"<Down>>06/15/199|9"},
                     {L"06/15/2000|", L"<Up>>06/15/2000| <Down>>06/15/2000|"},
                     {L"06/[15]/2000", L"<Up>>06/[16]/2000"},
                     {L"[06/15/2000]", L"<Up>>[07/15/2000]"}});
    TypeAll(DayFirstDate(), {{L"|15.06.2000", L"<Up>>|16.06.2000"}, {L"15.|06.2000", L"<Up>>15.|07.2000"}});
}

TEST(DateTyping, AtAFieldsLimitAStepChangesNothing)
{
    TypeAll(Date(), {{L"|12/15/2000", L"<Up>>|12/15/2000"},
                     {L"|01/15/2000", L"<Down>>|01/15/2000"},
                     {L"06/|30/2000", L"<Up>>06/|30/2000"},
                     {L"06/|01/2000", L"<Down>>06/|01/2000"},
                     {L"06/15/|9998", L"<Up>>06/15/|9998"},
                     {L"06/15/|1900", L"<Down>>06/15/|1900"}});
    TypeAll(Date(Narrowed), {{L"|06/01/2000", L"<Up>>|06/01/2000"},
                             {L"|03/15/1990", L"<Down>>|03/15/1990"},
                             {L"06/|15/2000", L"<Up>>06/|15/2000"},
                             {L"03/|10/1990", L"<Down>>03/|10/1990"},
                             {L"04/15/|2000", L"<Up>>04/15/|2000"},
                             {L"04/15/|1990", L"<Down>>04/15/|1990"}});
}

TEST(DateTyping, SteppingFrom31JanuaryToFebruaryCutsTheDay)
{
    TypeAll(Date(), {{L"|01/31/2001", L"<Up>>|02/28/2001 <Up>>|03/28/2001"},
                     {L"|01/31/2000", L"<Up>>|02/29/2000"},
                     {L"|03/31/2001", L"<Down>>|02/28/2001"},
                     {L"02/29/|2000", L"<Up>>02/28/|2001"},
                     {L"02/29/|2004", L"<Down>>02/28/|2003"}});
}

TEST(DateTyping, AStepFromAnEmptyOrHalfTypedFieldLeadsToItsSmallestValue)
{
    TypeAll(Date(), {{L"|", L"<Down>>| <Up>>|01 <Up>>|02 <Down>>|01"},
                     {L"|", L"1>1| <Up>>0|1"},
                     {L"|", L"6>06| />06/| <Up>>06/|01"},
                     {L"|", L"6>06| />06/| 4>06/04| />06/04/| 2>06/04/2| <Up>>06/04/1|900"}});
}

TEST(DateTyping, BackspaceInsideTheTextMovesTheCaret)
{
    TypeAll(Date(), {{L"06/15|/2000", L"<BS>>06/1|5/2000 <BS>>06/|15/2000 <BS>>06|/15/2000"},
                     {L"06/[15]/2000", L"<BS>>06/|15/2000"},
                     {L"|06/15/2000", L"<BS>>|06/15/2000"}});
}

TEST(DateTyping, BackspaceAtTheEndDeletes)
{
    TypeAll(Date(), {{L"06/15/2000|", L"<BS>>06/15/200| <BS>>06/15/20| <BS>>06/15/2| <BS>>06/15/| <BS>>06/15| "
                                      L"<BS>>06/1| <BS>>06/| <BS>>06| <BS>>0| <BS>>| <BS>>|"},
                     {L"06/15/[2000]", L"<BS>>06/15/|"},
                     {L"[06/15/2000]", L"<BS>>|"}});
}

TEST(DateTyping, DeleteWorksAtTheEndAlone)
{
    TypeAll(Date(), {{L"06/15/200|0", L"<Del>>06/15/200|"},
                     {L"06/15/20|00", L"<Del>>06/15/20|00"},
                     {L"06/[15]/2000", L"<Del>>06/[15]/2000"},
                     {L"06/[15/2000]", L"<Del>>06/|"},
                     {L"06/[15]/2000", L"<Clear>>06/[15]/2000"},
                     {L"06/15/[2000]", L"<Clear>>06/15/|"},
                     {L"06/15/2000|", L"<Del>>06/15/2000|"}});
}

TEST(DateTyping, ASelectionIsTypedOverCharacterByCharacter)
{
    TypeAll(Date(), {{L"[06/15/2000]", L"0>0|6/15/2000 7>07|/15/2000 1>07/1|5/2000 1>07/11|/2000 2>07/11/2|000 "
                                       L"0>07/11/20|00 0>07/11/200|0 1>07/11/2001|"}});
}

TEST(DateTyping, UndoGoesBackKeyByKeyAlsoToAHalfTypedDate)
{
    TypeAll(Date(), {{L"|", L"6>06| 1>06/1| 5>06/15| <Undo>>06/1| <Undo>>06| <Undo>>| <Redo>>06| <Redo>>06/1|"}});
}

TEST(DateTyping, ACutMayBreakTheFormUntilTheNextSet)
{
    auto edit = Date()();
    Place(*edit, L"06/[15/]2000");
    edit->PressCut();
    EXPECT_EQ(edit->Clipboard(), L"15/");
    EXPECT_EQ(edit->GetWindowText(), L"06/2000");
    EXPECT_FALSE(edit->IsValid());
    edit->Redraw();
    EXPECT_EQ(edit->GetWindowText(), L"06/20/2000");
}

TEST(DateTyping, APasteThatIsNoDateIsPutRightAndTheSelectionStays)
{
    auto edit = Date()();
    Place(*edit, L"06/15/[2000]");
    edit->SetClipboard(L"1800");
    edit->PressPaste();
    EXPECT_EQ(edit->Picture(), L"06/15/[2026]");
    edit->SetSel(6, 10);
    edit->SetClipboard(L"1999");
    edit->PressPaste();
    EXPECT_EQ(edit->Picture(), L"06/15/1999|");
}

TEST(DateTyping, AReadOnlyBoxIgnoresKeys)
{
    auto edit = Date()();
    Place(*edit, L"|06/15/2000");
    edit->SetReadOnly(true);
    for (const wchar_t *key : {L"1", L"<BS>", L"<Del>"}) {
        Press(*edit, key);
        EXPECT_EQ(edit->Picture(), L"|06/15/2000") << Narrow(key);
    }
    Press(*edit, L"<Up>");
    EXPECT_EQ(edit->GetWindowText(), L"06/15/2000");
}

TEST(DateTyping, AVetoedCharacterChangesNothing)
{
    class Vetoing : public DateEdit {
    public:
        using DateEdit::DateEdit;
        bool ShouldEnter(wchar_t character) override { return character != L'1' && character != L'/'; }
    };
    Vetoing edit(kNoAnswers, kNow);
    Place(edit, L"|");
    Press(edit, L"1");
    EXPECT_EQ(edit.Picture(), L"|");
    Press(edit, L"5");
    Press(edit, L"1"); // it would write the separator
    Press(edit, L"/");
    EXPECT_EQ(edit.Picture(), L"05|");
    Place(edit, L"05/12/|2000");
    Press(edit, L"1");
    EXPECT_EQ(edit.Picture(), L"05/12/|2000");
}
