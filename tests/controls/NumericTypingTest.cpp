// Keys in a numeric edit, as sequences: text, selection and beeps after every key.
#include "tests/controls/KeySequence.h"

#include "controls/rules/ValidatingEdit.h"

#include <memory>

using namespace AMSEdit;
using sequence::Row;
using sequence::RunAll;

namespace {

using NumericEdit = TNumericEdit<SequenceBox>;
const CNoRegionalSettings kNoSettings;

/// What a box allows; the rest is at its default.
struct Setup {
    int whole = 4;
    int places = 4;
    int group = 0;
    const wchar_t *prefix = L"";
    unsigned flags = 0;
    wchar_t decimalPoint = L'.';
    wchar_t groupSeparator = L',';
};

auto Numeric(const Setup &setup)
{
    return [setup] {
        auto edit = std::make_unique<NumericEdit>(setup.whole, setup.places, kNoSettings);
        edit->SetSeparators(setup.decimalPoint, setup.groupSeparator);
        edit->SetDigitsInGroup(setup.group);
        edit->SetPrefix(setup.prefix);
        edit->ModifyFlags(setup.flags, 0);
        return edit;
    };
}

const Setup kPlain;
const Setup kGrouped{.whole = 9, .places = 2, .group = 3};
const Setup kMoney{.whole = 6, .places = 2, .group = 3, .prefix = L"$ "};

} // namespace

TEST(NumericTyping, DigitsFillTheWholePartAndThenTheDecimals)
{
    RunAll(Numeric(kPlain),
           {{L"|", L"1>1| 2>12| 3>123| 4>1234| 5>1234| .>1234.| 5>1234.5| 6>1234.56| 7>1234.567| 8>1234.5678| "
                   L"9>1234.5678|"},
            {L"|", L"0>0| 0>00| 0>000| 0>0000| 0>0000|"},
            {L"|", L".>.| 1>.1| 2>.12| 3>.123| 4>.1234| 5>.1234|"},
            {L"1|3", L"2>12|3 9>129|3"},
            {L"1.|3", L"2>1.2|3 9>1.29|3"},
            {L"|.5", L"1>1|.5 2>12|.5 3>123|.5 4>1234|.5 5>1234|.5"}});
}

TEST(NumericTyping, AFifthWholeDigitIsDroppedWhenFourAreAllowed)
{
    RunAll(Numeric(kPlain), {{L"1234|", L"5>1234|"}, {L"-1234|", L"5>-1234|"}, {L"1234|.5", L"9>1234|.5"}});
}

TEST(NumericTyping, WithDecimalAfterMaxWholeADigitBehindTheFullWholePartBringsThePoint)
{
    RunAll(Numeric({.flags = DecimalAfterMaxWhole}), {{L"1234|", L"5>1234.5| 6>1234.56|"},
                                                      {L"1234|.5678", L"9>1234.9|678"},
                                                      {L"1234|.", L"9>1234.9|"},
                                                      {L"1234[.56]", L"9>1234.9|"},
                                                      {L"1234[.5]67", L"9>1234.9|67"},
                                                      {L"-1234|", L"5>-1234.5|"},
                                                      {L"12|34", L"9>129|4"},
                                                      {L"|", L"1>1| 2>12| 3>123| 4>1234| 5>1234.5|"}});
    RunAll(Numeric({.places = 0, .flags = DecimalAfterMaxWhole}), {{L"1234|", L"5>1234|"}});
    RunAll(Numeric({.places = 2, .group = 3, .prefix = L"$ ", .flags = DecimalAfterMaxWhole}),
           {{L"$_1,234|", L"5>$_1,234.5| 6>$_1,234.56| 7>$_1,234.56|"}});
    RunAll(Numeric({.whole = 0, .places = 3, .flags = DecimalAfterMaxWhole}), {{L"|", L"5>.5| 6>.56|"}});
}

TEST(NumericTyping, OtherCharactersAreDroppedWithoutABeep)
{
    RunAll(Numeric(kPlain), {{L"|", L"a>| _>| ,>| +>| e>| $>| #>| E>|"},
                             {L"1|2", L"a>1|2 _>1|2 ,>1|2 x>1|2"},
                             {L"1[2]3", L"a>1[2]3 _>1[2]3"}});
}

TEST(NumericTyping, AMinusTogglesTheSignWhereverTheCaretStands)
{
    RunAll(Numeric(kPlain), {{L"12|", L"->-12| ->12| ->-12|"},
                             {L"1|2", L"->-1|2 ->1|2"},
                             {L"1.2|5", L"->-1.2|5 ->1.2|5"},
                             {L"1[23]4", L"->-1[23]4 ->1[23]4"},
                             {L"1[234]", L"->-1[234] ->1[234]"},
                             {L"-|", L"->|"},
                             {L"|", L"->-| 1>-1| ->1| ->-1|"}});
}

TEST(NumericTyping, AMinusAtTheFrontIsEnteredOrOverwritesTheSign)
{
    RunAll(Numeric(kPlain), {{L"|12", L"->-|12 ->|12"},
                             {L"|-12", L"->-|12"},
                             {L"[12]34", L"->-|34"},
                             {L"[1234]", L"->-|"},
                             {L"[-12]", L"->-|"},
                             {L"[-1]2", L"->-|12"}});
}

TEST(NumericTyping, AMinusIsDroppedWhereNegativeNumbersAreNotAllowed)
{
    RunAll(Numeric({.flags = CannotBeNegative}), {{L"|", L"->| 1>1| ->1|"}, {L"1[2]3", L"->1[2]3"}});
}

TEST(NumericTyping, APointMovesTheCaretBehindTheOneThatIsThere)
{
    RunAll(Numeric(kPlain), {{L"12|", L".>12.| .>12.|"},
                             {L"1|2.5", L".>12.|5"},
                             {L"|12.5", L".>12.|5"},
                             {L"12.5|", L".>12.|5"},
                             {L"12.[5]", L".>12.|5"},
                             {L"1[2].5", L".>12.|5"}});
}

TEST(NumericTyping, APointOverASelectionThatHoldsThePointReplacesIt)
{
    RunAll(Numeric(kPlain),
           {{L"1[2.]5", L".>1.|5"}, {L"[12.5]", L".>.|"}, {L"12[.5]", L".>12.|"}, {L"12[.]5", L".>12.|5"}});
}

TEST(NumericTyping, APointSplitsTheNumberAndSurplusDecimalsAreCut)
{
    RunAll(Numeric(kPlain),
           {{L"12|34", L".>12.|34"}, {L"|1234", L".>.|1234"}, {L"-|12", L".>-.|12"}, {L"|-12", L".>-|.12"}});
    RunAll(Numeric({.places = 1}), {{L"1|234", L".>1.|2"}, {L"|", L".>.| 5>.5| 6>.5|"}});
}

TEST(NumericTyping, APointIsDroppedWhereThereAreNoDecimals)
{
    RunAll(Numeric({.places = 0}), {{L"|", L".>| 1>1| .>1| 2>12|"}, {L"1|2", L".>1|2"}});
}

TEST(NumericTyping, AFullWholePartIsOverwritten)
{
    RunAll(Numeric(kPlain), {{L"|1234", L"5>5|234 6>56|34 7>567|4 8>5678| 9>5678|"},
                             {L"12|34", L"9>129|4"},
                             {L"12|34.5", L"9>129|4.5 8>1298|.5 7>1298|.5"},
                             {L"-|1234", L"5>-5|234"},
                             {L"|1234.5", L"0>0|234.5"}});
}

TEST(NumericTyping, OverwritingReplacesOneCharacterOrTheSelectionToTheEnd)
{
    RunAll(Numeric(kPlain), {{L"1[23]4", L"9>19|34"},
                             {L"1[234]", L"9>19|"},
                             {L"[1234]", L"9>9|"},
                             {L"[12]34", L"9>9|234"},
                             {L"12[34.56]7", L"9>129|4.567"},
                             {L"1.[2345]", L"9>1.9|"},
                             {L"1.2[34]5", L"9>1.29|45"}});
}

TEST(NumericTyping, ADigitBeforeTheSignOfAFullNumberTakesTheSignsPlaceAndTheTailIsCut)
{
    RunAll(Numeric(kPlain), {{L"|-1234", L"5>5|123"}});
}

TEST(NumericTyping, FullDecimalsAreOverwritten)
{
    RunAll(Numeric(kPlain), {{L"1234.5|678", L"9>1234.59|78 8>1234.598|8 7>1234.5987| 6>1234.5987|"},
                             {L"1234.|5678", L"9>1234.9|678"},
                             {L"1234.5678|", L"9>1234.5678|"}});
}

TEST(NumericTyping, ASelectionIsReplacedWhereThereIsRoom)
{
    RunAll(Numeric(kPlain), {{L"1.[23]", L"9>1.9|"},
                             {L"12[3.5]6", L"9>129|6"},
                             {L"[12]3", L"9>9|3"},
                             {L"[123]", L"9>9|"},
                             {L"1.[2]", L"9>1.9|"}});
}

TEST(NumericTyping, BackspaceDeletesAndThePartsStayWithinTheirDigits)
{
    RunAll(Numeric(kPlain), {{L"12|", L"<BS>>1| <BS>>| <BS>>|"},
                             {L"12|.5", L"<BS>>1|.5 <BS>>|.5 <BS>>|.5"},
                             {L"1.|5", L"<BS>>1|5"},
                             {L"1[23]4", L"<BS>>1|4"},
                             {L"-|5", L"<BS>>|5"},
                             {L"123.|4567", L"<BS>>123|4"}});
}

TEST(NumericTyping, DeleteDeletesTheNextCharacterOrTheSelection)
{
    RunAll(Numeric(kPlain), {{L"|12", L"<Del>>|2 <Del>>| <Del>>|"},
                             {L"1|2", L"<Del>>1| <Del>>1|"},
                             {L"1[23]4", L"<Del>>1|4"},
                             {L"1[234]", L"<Del>>1|"},
                             {L"[1234]", L"<Del>>|"},
                             {L"12|.5", L"<Del>>12|5"},
                             {L"|-5", L"<Del>>|5"},
                             {L"123|.4567", L"<Del>>123|4"}});
}

TEST(NumericTyping, OtherKeysGoToTheBox)
{
    RunAll(Numeric(kPlain), {{L"12|3", L"<Left>>1|23 <Home>>|123 <Left>>|123 <Right>>1|23 <End>>123| <Right>>123|"}});
}

TEST(NumericTyping, SeparatorsComeAndGoWithTheDigitsAndTheCaretStaysOnItsDigit)
{
    RunAll(Numeric(kGrouped), {{L"|", L"1>1| 2>12| 3>123| 4>1,234| 5>12,345| 6>123,456| 7>1,234,567| 8>12,345,678| "
                                      L"9>123,456,789| 1>123,456,789| .>123,456,789.| 1>123,456,789.1| "
                                      L"2>123,456,789.12| 3>123,456,789.12|"},
                               {L"1|23", L"9>1,9|23 8>19,8|23"},
                               {L"|123", L"9>9,|123"},
                               {L"123,456|", L"<BS>>12,345| <BS>>1,234| <BS>>123| <BS>>12| <BS>>1| <BS>>|"},
                               {L"12,345,6|78", L"<BS>>1,234,5|78"},
                               {L"1,2|34", L"<BS>>1|34"},
                               {L"1,2|34", L"<Del>>12|4"},
                               {L"|1,234", L"<Del>>|234"},
                               {L"12,34|5", L".>1,234.|5"},
                               {L"1,234.5|", L"<BS>>1,234.| <BS>>1,234|"}});
}

TEST(NumericTyping, BackspaceBehindASeparatorStepsOverIt)
{
    RunAll(Numeric(kGrouped), {{L"1,|234", L"<BS>>1|,234 <BS>>|234"}});
}

TEST(NumericTyping, DeleteBeforeASeparatorDeletesTheDigitBehindIt)
{
    RunAll(Numeric(kGrouped), {{L"1|,234", L"<Del>>1|34"}, {L"1|,234,567", L"<Del>>1|34,567"}});
}

TEST(NumericTyping, DeletingToTheEndLeavesABareCaretAtTheOldStart)
{
    RunAll(Numeric(kGrouped), {{L"1,2[34]", L"<Del>>12|"},
                               {L"12,3[45]", L"<Del>>123|"},
                               {L"1[,234]", L"<Del>>1|"},
                               {L"1,234|", L"<Del>>1,234|"}});
}

TEST(NumericTyping, TheCaretMovesByTheCountOfSeparatorsAlsoWhereTheSelectionHeldThem)
{
    RunAll(Numeric(kGrouped), {{L"1[,2]34", L"<Del>>|134"}, {L"12[3,4]56", L"<BS>>1,|256"}});
}

TEST(NumericTyping, ANegativeNumberNeverGetsASeparatorBehindItsSign)
{
    RunAll(Numeric(kGrouped), {{L"123|", L"->-123| 4>-1,234| <BS>>-123|"},
                               {L"123,456|", L"->-123,456| 7>-1,234,567| ->1,234,567|"},
                               {L"1,23|4", L"->-1,23|4 ->1,23|4"},
                               {L"|1,234", L"->-|1,234"},
                               {L"[1],234", L"->-|234"}});
}

TEST(NumericTyping, OverwritingStepsOverASeparator)
{
    RunAll(Numeric({.places = 0, .group = 3}), {{L"|1,234", L"9>9|,234 8>9,8|34 7>9,87|4 6>9,876| 5>9,876|"},
                                                {L"1[,2]34", L"5>1,5|34"},
                                                {L"1[,234]", L"5>15|"}});
}

TEST(NumericTyping, OtherSeparatorsDoTheSame)
{
    RunAll(Numeric({.whole = 6, .places = 2, .group = 3, .decimalPoint = L',', .groupSeparator = L'.'}),
           {{L"|", L"1>1| 2>12| 3>123| 4>1.234| ,>1.234,| .>1.234,| 5>1.234,5| ,>1.234,|5"},
            {L"123.456|", L"<BS>>12.345| .>12.345|"}});
    RunAll(Numeric({.whole = 5, .group = 2, .groupSeparator = L'\''}),
           {{L"|", L"1>1| 2>12| 3>1'23| 4>12'34| 5>1'23'45| 6>1'23'45| .>1'23'45.|"}});
}

TEST(NumericTyping, TheFirstDigitBringsThePrefixAndTheLastOneTakesItAlong)
{
    RunAll(Numeric(kMoney), {{L"|", L"1>$_1| 2>$_12| 3>$_123| 4>$_1,234| <BS>>$_123| <BS>>$_12| <BS>>$_1| <BS>>|"},
                             {L"|", L"->$_-| 5>$_-5|"},
                             {L"|", L".>$_.| 5>$_.5|"},
                             {L"$_|1", L"<Del>>|"}});
}

TEST(NumericTyping, ThePrefixCanBeTypedByHand)
{
    RunAll(Numeric(kMoney), {{L"|", L"$>$|~ _>$_|~ 5>$_5|"},
                             {L"|", L"$>$|~ 5>$_5|"},
                             {L"|", L"$>$|~ $>$|~ x>$|~"},
                             {L"[$_12]", L"$>$|~ <BS>>|"}});
}

TEST(NumericTyping, ACharacterOfThePrefixIsTypedOverItself)
{
    RunAll(Numeric(kMoney), {{L"|$_12", L"$>$|_12 _>$_|12"}, {L"$|_12", L"$>$|_12"}});
}

TEST(NumericTyping, WhatBelongsToTheNumberJumpsBehindThePrefix)
{
    RunAll(Numeric(kMoney), {{L"|$_12", L"5>$_5|12"},
                             {L"$|_12", L"5>$_5|12"},
                             {L"|$_12", L".>$_.|12"},
                             {L"|$_12", L"->$_-|12"},
                             {L"$[_12]", L"5>$_5|"},
                             {L"[$_12]", L"7>$_7|"},
                             {L"[$_1]2", L"7>$_7|12"},
                             {L"|$_12", L"a>|$_12 ,>|$_12"}});
}

TEST(NumericTyping, ThePrefixCannotBeDeletedAlone)
{
    RunAll(Numeric(kMoney), {{L"|$_12", L"<Del>>|$_12"},
                             {L"$|_12", L"<Del>>$|_12"},
                             {L"[$_1]2", L"<Del>>[$_1]2"},
                             {L"[$_]12", L"<Del>>[$_]12"},
                             {L"[$_12]", L"<Del>>|"},
                             {L"$[_12]", L"<Del>>|"},
                             {L"$_|12", L"<BS>>$|_12"}});
}

TEST(NumericTyping, ACaretRightBehindThePrefixStaysWhenASeparatorGoes)
{
    RunAll(Numeric(kMoney), {{L"$_1|,234", L"<BS>>$_|234"}, {L"$_|1,234", L"<Del>>$_|234"}});
}

TEST(NumericTyping, APrefixThatIsAllTheTextIsDeletedLikeAnyText)
{
    RunAll(Numeric(kMoney), {{L"|", L"$>$|~ _>$_|~ <Left>>$|_~ <Del>>|"}, {L"|", L"$>$|~ <Home>>|$~ <Del>>|"}});
}

TEST(NumericTyping, TheSignStandsBehindThePrefix)
{
    RunAll(Numeric(kMoney), {{L"$_1|2", L"->$_-1|2 ->$_1|2"},
                             {L"$_|12", L"->$_-|12 ->$_|12"},
                             {L"$_|-12", L"->$_-|12"},
                             {L"$_-|", L"->|"}});
}

TEST(NumericTyping, FullPartsBehindAPrefixAreOverwrittenOrRefused)
{
    RunAll(Numeric(kMoney), {{L"$_123,45|6", L"9>$_123,459|"},
                             {L"$_|123,456", L"9>$_9|23,456"},
                             {L"$_123,456|", L"7>$_123,456|"},
                             {L"$_-123,456|", L"7>$_-123,456|"},
                             {L"$_1.2|3", L"9>$_1.29|"},
                             {L"$_1.23|", L"9>$_1.23|"}});
}

TEST(NumericTyping, APrefixWithADecimalPointOfItsOwnLeavesTheNumberAlone)
{
    RunAll(Numeric({.places = 2, .prefix = L"B/."}),
           {{L"|", L"5>B/.5| 6>B/.56| .>B/.56.| 7>B/.56.7| <BS>>B/.56.| <BS>>B/.56|"}, {L"B/.5|", L"<BS>>|"}});
}

TEST(NumericTyping, ACutPastTheKeyRulesIsPutRightByTheNextKey)
{
    RunAll(Numeric(kGrouped), {{L"123,[456]", L"<Cut>>123,|~ 7>1,237|"}, {L"1[2]3,456", L"<Cut>>1|3,456"}});
}

TEST(NumericTyping, EachKeyIsOneStepOfUndo)
{
    RunAll(Numeric(kGrouped), {{L"|", L"1>1| 2>12| <Undo>>1| <Undo>>| <Undo>>| <Redo>>1| <Redo>>12| <Redo>>12|"},
                               {L"123|", L"4>1,234| <Undo>>123| <Redo>>1,234| <Undo>>123| 5>1,235| <Redo>>1,235|"},
                               {L"1|23", L"->-1|23 a>-1|23 <Undo>>1|23"}});
}

TEST(NumericTyping, AReadOnlyBoxIgnoresKeys)
{
    auto edit = Numeric(kMoney)();
    edit->SetWindowText(L"12");
    edit->SetReadOnly(true);
    for (const wchar_t *start : {L"$_1|2", L"|$_12", L"$_[12]"}) {
        edit->SetReadOnly(false);
        sequence::Place(*edit, start);
        edit->SetReadOnly(true);
        for (const wchar_t character : std::wstring(L"5.-$ \b"))
            edit->OnChar(character, 1, 0);
        EXPECT_EQ(sequence::Shown(edit->Picture()), start);
    }
}

TEST(NumericTyping, TheHookRefusesWhatTheRulesAccept)
{
    class Vetoing : public NumericEdit {
    public:
        Vetoing() : NumericEdit(4, 2, kNoSettings) {}
        bool ShouldEnter(wchar_t) override { return false; }
    };
    const auto make = [] {
        auto edit = std::make_unique<Vetoing>();
        edit->SetPrefix(L"$ ");
        edit->ModifyFlags(DecimalAfterMaxWhole, 0);
        return edit;
    };
    RunAll(make, {{L"|", L"1>| ->| .>| $>|"},
                  {L"$_12|", L"1>$_12| ->$_12| .>$_12| <BS>>$_12|"},
                  {L"$_1234|", L"5>$_1234|"},
                  {L"$_1|234", L"5>$_1|234"},
                  {L"$_1.|23", L"5>$_1.|23"},
                  {L"$_|1.2", L".>$_|1.2"},
                  {L"$_|-1", L"->$_|-1"},
                  {L"|$_1", L"$>|$_1 5>|$_1"}});
}

TEST(NumericTyping, ABoxTooShortForItsPrefixDoesNotHang)
{
    auto edit = Numeric(kMoney)();
    edit->SetMaxLength(1);
    edit->Type(L'5');
    EXPECT_EQ(edit->GetText(), L"$");
    edit->Type(L'5');
    EXPECT_EQ(edit->GetText(), L"$");
}
