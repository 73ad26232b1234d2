// What a numeric edit does when the focus leaves it, and its range.
#include "controls/rules/ValidatingEdit.h"

#include "tests/controls/KeySequence.h"
#include "tests/controls/PinnedSettings.h"

#include <gmock/gmock.h>

using namespace AMSEdit;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr double kUnset = 1.7976931348623157e308;

class NumericEdit : public TNumericEdit<SequenceBox> {
public:
    explicit NumericEdit(int whole = 4, int places = 3, const IRegionalSettings &settings = CNoRegionalSettings())
        : TValidatingEdit(whole, places, settings)
    {
    }
    std::wstring AfterFocusLoss(const std::wstring &text)
    {
        SetWindowText(text);
        journal.clear();
        OnKillFocus(nullptr);
        return GetText();
    }
};

struct Loss {
    unsigned flags;
    const wchar_t *before;
    const wchar_t *after;
};

void expectAfterLoss(const std::vector<Loss> &table)
{
    for (const auto &[flags, before, after] : table) {
        NumericEdit edit;
        edit.ModifyFlags(flags, 0);
        EXPECT_EQ(edit.AfterFocusLoss(before), after)
            << "from \"" << sequence::Narrow(before) << "\" with flags " << std::hex << flags;
        EXPECT_THAT(edit.defaults, testing::SizeIs(1)) << "the platform handles the message";
    }
}

} // namespace

TEST(NumericFocusLoss, WithoutFlagsNothingChanges)
{
    expectAfterLoss({{0, L"007", L"007"},
                     {0, L"-1.5", L"-1.5"},
                     {0, L"", L""},
                     {CannotBeNegative, L"007", L"007"},
                     {DecimalAfterMaxWhole, L"1.", L"1."}});
    NumericEdit edit;
    edit.SetRange(5, 6);
    EXPECT_EQ(edit.AfterFocusLoss(L"1"), L"1") << "the range is not enforced";
    EXPECT_THAT(edit.journal, IsEmpty());
}

TEST(NumericFocusLoss, LeadingZerosAreTrimmed)
{
    expectAfterLoss({{TrimLeadingZeros, L"007", L"7"},
                     {TrimLeadingZeros, L"000", L"0"},
                     {TrimLeadingZeros, L"0", L"0"},
                     {TrimLeadingZeros, L"-007", L"-7"},
                     {TrimLeadingZeros, L"-000", L"-0"},
                     {TrimLeadingZeros, L"00.5", L"0.5"},
                     {TrimLeadingZeros, L".5", L"0.5"},
                     {TrimLeadingZeros, L"-.5", L"-0.5"},
                     {TrimLeadingZeros, L"-", L"-0"},
                     {TrimLeadingZeros, L"100", L"100"},
                     {TrimLeadingZeros, L"", L""}});
}

TEST(NumericFocusLoss, ALeadingPointIsLookedForAsTheBoxWritesIt)
{
    // The number has "." there, and so no zero comes in front of it.
    NumericEdit edit;
    edit.SetSeparators(L',', L'.');
    edit.ModifyFlags(TrimLeadingZeros, 0);
    EXPECT_EQ(edit.AfterFocusLoss(L",5"), L",5");
    EXPECT_EQ(edit.AfterFocusLoss(L"00,5"), L",5");
    EXPECT_EQ(edit.AfterFocusLoss(L"007"), L"7");
}

TEST(NumericFocusLoss, ASignOfItsOwnHidesTheZerosBehindIt)
{
    NumericEdit edit(4, 3, PinnedSettings{{RegionalQuery::NegativeSign, L"~"}});
    edit.ModifyFlags(TrimLeadingZeros, 0);
    EXPECT_EQ(edit.AfterFocusLoss(L"~007"), L"~007");
    EXPECT_EQ(edit.AfterFocusLoss(L"007"), L"7");
}

TEST(NumericFocusLoss, DecimalsArePaddedWithZeros)
{
    expectAfterLoss({{PadZerosAfterDecimal, L"1", L"1.000"},
                     {PadZerosAfterDecimal, L"1.5", L"1.500"},
                     {PadZerosAfterDecimal, L"1.", L"1.000"},
                     {PadZerosAfterDecimal, L"1.234", L"1.234"},
                     {PadZerosAfterDecimal, L".5", L".500"},
                     {PadZerosAfterDecimal, L"", L"0.000"},
                     {PadZerosAfterDecimal, L"-", L"0.000"},
                     {PadZerosAfterDecimal, L"-1", L"-1.000"}});
    NumericEdit whole(4, 0);
    whole.ModifyFlags(PadZerosAfterDecimal, 0);
    EXPECT_EQ(whole.AfterFocusLoss(L"1"), L"1");
}

TEST(NumericFocusLoss, TheWholePartIsPaddedWithZeros)
{
    expectAfterLoss({{PadZerosBeforeDecimal, L"1", L"0001"},
                     {PadZerosBeforeDecimal, L"-1", L"-0001"},
                     {PadZerosBeforeDecimal, L"1.5", L"0001.5"},
                     {PadZerosBeforeDecimal, L"-.5", L"-0000.5"},
                     {PadZerosBeforeDecimal, L"1234", L"1234"},
                     {PadZerosBeforeDecimal, L"", L"0000"},
                     {PadZerosBeforeDecimal, L"-", L"-0000"}});
    NumericEdit decimals(0, 2);
    decimals.ModifyFlags(PadZerosBeforeDecimal, 0);
    EXPECT_EQ(decimals.AfterFocusLoss(L".5"), L".5");
}

TEST(NumericFocusLoss, TrimmingComesBeforePadding)
{
    expectAfterLoss({{TrimLeadingZeros | PadZerosAfterDecimal, L"007", L"7.000"},
                     {TrimLeadingZeros | PadZerosAfterDecimal | PadZerosBeforeDecimal, L"07", L"0007.000"},
                     {TrimLeadingZeros | PadZerosAfterDecimal, L"", L"0.000"},
                     {PadZerosAfterDecimal | PadZerosBeforeDecimal, L"", L"0000.000"},
                     {PadZerosAfterDecimal | PadZerosBeforeDecimal, L"-", L"0000.000"}});
}

TEST(NumericFocusLoss, AnEmptyBoxMayStayEmpty)
{
    const unsigned all = PadZerosAfterDecimal | PadZerosBeforeDecimal | TrimLeadingZeros | NoPadIfEmpty;
    expectAfterLoss({{all, L"", L""}, {NoPadIfEmpty, L"", L""}, {all, L"1", L"0001.000"}});
    NumericEdit edit;
    edit.ModifyFlags(NoPadIfEmpty | KillFocusBeepIfEmpty | KillFocusRefocusIfEmpty | KillFocusMessageIfEmpty, 0);
    edit.AfterFocusLoss(L"");
    EXPECT_THAT(edit.journal, IsEmpty()) << "and nothing further happens to it";
}

TEST(NumericFocusLoss, PaddingKeepsSeparatorsPrefixAndSelection)
{
    NumericEdit edit(6, 2);
    edit.SetDigitsInGroup(3);
    edit.SetPrefix(L"$ ");
    edit.ModifyFlags(PadZerosAfterDecimal, 0);
    sequence::Place(edit, L"$_1,2[34]");
    edit.OnKillFocus(nullptr);
    EXPECT_EQ(edit.Picture(), L"$ 1,2[34].00");
}

TEST(NumericFocusLoss, PaddingKeepsTheCharactersOfTheSettings)
{
    NumericEdit edit(6, 2, PinnedSettings{{RegionalQuery::NegativeSign, L"~"}});
    edit.SetSeparators(L',', L'.');
    edit.SetDigitsInGroup(3);
    edit.ModifyFlags(PadZerosAfterDecimal, 0);
    EXPECT_EQ(edit.AfterFocusLoss(L"~1234,5"), L"~1.234,50");
    EXPECT_EQ(edit.GetDouble(), -1234.5);
}

TEST(NumericFocusLoss, AnUnchangedNumberIsNotSet)
{
    NumericEdit edit;
    edit.SetDigitsInGroup(3);
    edit.ModifyFlags(PadZerosAfterDecimal | TrimLeadingZeros, 0);
    EXPECT_EQ(edit.AfterFocusLoss(L"1,234.500"), L"1,234.500");
    EXPECT_THAT(edit.journal, IsEmpty());
}

TEST(NumericFocusLoss, PaddingIsHeldToWhatABoxCanShow)
{
    NumericEdit edit(std::numeric_limits<int>::max(), std::numeric_limits<int>::max());
    edit.ModifyFlags(PadZerosBeforeDecimal | PadZerosAfterDecimal, 0);
    const std::wstring padded = edit.AfterFocusLoss(L"1");
    EXPECT_GE(padded.size(), 32767u);
    EXPECT_LE(padded.size(), 2 * 32767u + 1);
}

TEST(NumericFocusLoss, PaddingIsOneStepOfUndo)
{
    NumericEdit edit;
    edit.ModifyFlags(PadZerosAfterDecimal, 0);
    sequence::Run(edit, L"|", L"1>1|");
    edit.OnKillFocus(nullptr);
    EXPECT_EQ(edit.GetText(), L"1.000");
    edit.OnUndo();
    EXPECT_EQ(edit.GetText(), L"1");
}

// The flags of the low byte. The range is 10 to 20.

namespace {

struct Act {
    unsigned flags;
    const wchar_t *text;
    std::vector<std::wstring> journal;
    const wchar_t *after;
};

void expectActs(const std::vector<Act> &table)
{
    for (const Act &act : table) {
        NumericEdit edit;
        edit.SetRange(10, 20);
        edit.ModifyFlags(act.flags, 0);
        edit.AfterFocusLoss(act.text);
        EXPECT_EQ(edit.journal, act.journal)
            << "\"" << sequence::Narrow(act.text) << "\" with flags " << std::hex << act.flags;
        EXPECT_EQ(edit.GetText(), act.after) << "\"" << sequence::Narrow(act.text) << "\"";
    }
}

} // namespace

TEST(NumericFocusFlags, EachActsOnAnInvalidValueAlone)
{
    expectActs({{KillFocusBeepIfInvalid, L"5", {L"beep:48"}, L"5"},
                {KillFocusBeepIfInvalid, L"", {}, L""},
                {KillFocusBeepIfInvalid, L"15", {}, L"15"},
                {KillFocusRepairIfInvalid, L"5", {L"set:10"}, L"10"},
                {KillFocusRepairIfInvalid, L"25", {L"set:20"}, L"20"},
                {KillFocusRepairIfInvalid, L"", {}, L""},
                {KillFocusRefocusIfInvalid, L"5", {L"focus"}, L"5"},
                {KillFocusRefocusIfInvalid, L"", {}, L""},
                {KillFocusRefocusIfInvalid, L"10", {}, L"10"},
                {KillFocusMessageIfInvalid, L"5", {L"message:48", L"focus"}, L"5"},
                {KillFocusMessageIfInvalid, L"20", {}, L"20"}});
}

TEST(NumericFocusFlags, EachActsOnAnEmptyBoxAlone)
{
    expectActs({{KillFocusBeepIfEmpty, L"", {L"beep:48"}, L""},
                {KillFocusBeepIfEmpty, L"5", {}, L"5"},
                {KillFocusRepairIfEmpty, L"", {L"set: ", L"set:", L"set:10"}, L"10"},
                {KillFocusRepairIfEmpty, L"5", {}, L"5"},
                {KillFocusRefocusIfEmpty, L"", {L"focus"}, L""},
                {KillFocusRefocusIfEmpty, L"5", {}, L"5"},
                {KillFocusMessageIfEmpty, L"", {L"message:48", L"focus"}, L""},
                {KillFocusMessageIfEmpty, L"5", {}, L"5"}});
}

TEST(NumericFocusFlags, ALoneMessageBitDoesNothing)
{
    expectActs({{0x0040, L"5", {}, L"5"}, {0x0080, L"", {}, L""}, {0x0040, L"", {}, L""}, {0x0080, L"5", {}, L"5"}});
}

TEST(NumericFocusFlags, ActInAFixedOrder)
{
    expectActs({{0xFF, L"5", {L"beep:48", L"set:10", L"message:48", L"focus"}, L"10"},
                {0xFF, L"", {L"beep:48", L"set: ", L"set:", L"set:10", L"message:48", L"focus"}, L"10"}});
}

TEST(NumericFocusFlags, ARepairedValueIsWrittenBeforeTheMessageIsShown)
{
    NumericEdit edit;
    edit.SetRange(10, 20);
    edit.ModifyFlags(KillFocusRepairIfInvalid | KillFocusMessageIfInvalid, 0);
    edit.AfterFocusLoss(L"5");
    EXPECT_THAT(edit.journal, ElementsAre(L"set:10", L"message:48", L"focus"));
    EXPECT_THAT(edit.messages, ElementsAre(L"Please specify a numeric value between 10 and 20."));
}

TEST(NumericFocusFlags, AnEmptyBoxIsNotPutToTheRange)
{
    NumericEdit edit;
    edit.SetRange(10, 20);
    edit.ModifyFlags(KillFocusBeepIfInvalid | KillFocusMessageIfInvalid, 0);
    edit.AfterFocusLoss(L"");
    EXPECT_THAT(edit.journal, IsEmpty());
    EXPECT_FALSE(edit.IsValid());
}

TEST(NumericFocusFlags, AWholeNumberOfZeroIsNotEmptyAndAPaddedBoxNeither)
{
    NumericEdit edit;
    edit.SetRange(10, 20);
    edit.ModifyFlags(PadZerosAfterDecimal | KillFocusBeepIfEmpty | KillFocusRefocusIfInvalid, 0);
    edit.AfterFocusLoss(L"");
    EXPECT_THAT(edit.journal, ElementsAre(L"set:0.000", L"focus"));
}

// The range

TEST(NumericRange, BothBoundsAreValid)
{
    NumericEdit edit;
    edit.SetRange(-1.5, 2.5);
    for (const auto &[text, valid] : std::vector<std::pair<const wchar_t *, bool>>{
             {L"-1.5", true}, {L"2.5", true}, {L"0", true}, {L"-1.501", false}, {L"2.501", false}, {L"", true}}) {
        edit.SetWindowText(text);
        EXPECT_EQ(edit.IsValid(), valid) << text;
    }
}

TEST(NumericRange, AnEmptyBoxIsInvalidInARangeWithoutZeroOnceAsked)
{
    NumericEdit edit;
    edit.SetRange(1, 5);
    EXPECT_EQ(edit.GetText(), L"");
    EXPECT_FALSE(edit.CheckIfValid(false));
    EXPECT_THAT(edit.messages, IsEmpty());
}

TEST(NumericRange, MinAboveMaxMakesEveryValueInvalidAndIsAdjustedToMin)
{
    for (const wchar_t *text : {L"0", L"1", L"3", L""}) {
        NumericEdit edit;
        edit.SetRange(5, 1);
        edit.SetWindowText(text);
        EXPECT_FALSE(edit.IsValid());
        edit.AdjustWithinRange();
        EXPECT_EQ(edit.GetText(), L"5");
    }
}

TEST(NumericRange, ARangeThatIsNoNumberTakesNoValue)
{
    NumericEdit edit;
    edit.SetRange(std::numeric_limits<double>::quiet_NaN(), 5);
    edit.SetWindowText(L"1");
    EXPECT_FALSE(edit.IsValid());
    edit.AdjustWithinRange();
    EXPECT_EQ(edit.GetText(), L"1");
}

TEST(NumericRange, AdjustingSetsTheBoundThatIsExceeded)
{
    NumericEdit edit;
    edit.SetRange(0.25, 2);
    for (const auto &[text, adjusted] : std::vector<std::pair<const wchar_t *, const wchar_t *>>{
             {L"0", L"0.25"}, {L"-5", L"0.25"}, {L"3", L"2"}, {L"1.5", L"1.5"}, {L"", L"0.25"}}) {
        edit.SetWindowText(text);
        edit.AdjustWithinRange();
        EXPECT_EQ(edit.GetText(), adjusted) << text;
    }
}

TEST(NumericRange, ATextBeyondTheRulesIsCutBeforeItIsAdjusted)
{
    NumericEdit edit; // of four whole digits
    edit.SetRange(0, 2000);
    edit.ReplaceSel(L"123456", true); // past the filter
    ASSERT_FALSE(edit.IsValid());
    edit.AdjustWithinRange();
    EXPECT_EQ(edit.GetText(), L"1234") << "within the range once it is cut";
}

TEST(NumericRange, AValidValueIsNotTouched)
{
    NumericEdit edit;
    edit.SetRange(0, 5);
    edit.SetWindowText(L"2");
    edit.journal.clear();
    edit.AdjustWithinRange();
    EXPECT_THAT(edit.journal, IsEmpty());
}

TEST(NumericRange, CheckingShowsTheMessageAndTakesTheFocus)
{
    NumericEdit edit;
    edit.SetRange(1, 5);
    edit.SetWindowText(L"9");
    edit.journal.clear();
    EXPECT_FALSE(edit.CheckIfValid(true));
    EXPECT_THAT(edit.journal, ElementsAre(L"message:48", L"focus"));
    edit.SetWindowText(L"3");
    edit.journal.clear();
    EXPECT_TRUE(edit.CheckIfValid(true));
    EXPECT_THAT(edit.journal, IsEmpty());
}

TEST(NumericRange, ADisabledBoxCountsAsValid)
{
    NumericEdit edit;
    edit.SetRange(1, 5);
    edit.SetEnabled(false);
    EXPECT_TRUE(edit.CheckIfValid(true));
    EXPECT_THAT(edit.messages, IsEmpty());
    EXPECT_FALSE(edit.IsValid());
}

TEST(NumericRange, TheMessageNamesTheBoundsThatAreSet)
{
    struct Row {
        double min, max;
        const wchar_t *message;
    };
    for (const Row &row : {Row{-1.5, 2, L"Please specify a numeric value between -1.5 and 2."},
                           Row{0, kUnset, L"Please specify a numeric value greater than or equal to 0."},
                           Row{-kUnset, 2.25, L"Please specify a numeric value less than or equal to 2.25."},
                           Row{-kUnset, kUnset, L"Please specify a valid numeric value."}}) {
        NumericEdit edit;
        edit.SetRange(row.min, row.max);
        edit.ShowErrorMessage();
        EXPECT_THAT(edit.messages, ElementsAre(row.message));
        EXPECT_THAT(edit.journal, ElementsAre(L"message:48"));
    }
}
