// Alphanumeric, masked and multi-masked edits: keys as sequences, and their valid forms.
#include "controls/rules/MultiMaskedEdit.h"

#include "tests/controls/KeySequence.h"
#include "tests/controls/MaskSymbols.h"
#include "tests/controls/PinnedSettings.h"

#include <memory>

using namespace AMSEdit;
using sequence::RunAll;

namespace {

using AlphanumericEdit = TAlphanumericEdit<SequenceBox>;
using MaskedEdit = TMaskedEdit<SequenceBox>;
using MultiMaskedEdit = TMultiMaskedEdit<SequenceBox>;
const CNoRegionalSettings kNoSettings;

auto Alphanumeric(int maxCharacters, const wchar_t *invalid)
{
    return [=] { return std::make_unique<AlphanumericEdit>(maxCharacters, invalid); };
}

/// With the symbols of digits and letters.
auto Masked(const wchar_t *mask)
{
    return [=] {
        auto edit = std::make_unique<MaskedEdit>(mask);
        edit->GetSymbolArray() = mask_symbols::kDigitsAndLetters;
        return edit;
    };
}

template <class Edit>
std::wstring after(Edit &edit, const wchar_t *text)
{
    edit.SetWindowText(text);
    return edit.GetText();
}

} // namespace

// Alphanumeric

TEST(Alphanumeric, AnInvalidCharacterBeepsAndIsDropped)
{
    RunAll(Alphanumeric(0, L"x%"), {{L"|", L"a>a| x>a|! b>ab| %>ab|! c>abc|"}, {L"a[bc]d", L"x>a[bc]d!"}});
}

TEST(Alphanumeric, WithoutInvalidCharactersNothingBeeps)
{
    RunAll(Alphanumeric(0, L""), {{L"|", L"%>%| '>%'| _>%'_| 5>%'_5|"}});
}

TEST(Alphanumeric, AFullBoxOverwrites)
{
    RunAll(Alphanumeric(3, L""), {{L"|", L"a>a| b>ab| c>abc| d>abc|"},
                                  {L"|abc", L"x>x|bc y>xy|c z>xyz| w>xyz|"},
                                  {L"[abc]", L"x>x|bc"},
                                  {L"a[bc]", L"x>ax|c"},
                                  {L"a|b", L"x>ax|b y>axy|"}});
}

TEST(Alphanumeric, AFullBoxStillTakesBackspaceAndDelete)
{
    RunAll(Alphanumeric(3, L""), {{L"abc|", L"<BS>>ab| <BS>>a|"}, {L"|abc", L"<Del>>|bc"}, {L"a[bc]", L"<BS>>a|"}});
}

TEST(Alphanumeric, KeysOtherThanCharactersGoToThePlatform)
{
    RunAll(Alphanumeric(3, L"x"), {{L"ab|", L"<Left>>a|b <Home>>|ab <End>>ab|"}});
}

TEST(Alphanumeric, TheValidFormIsCutFirstAndThenFreedOfInvalidCharacters)
{
    AlphanumericEdit edit(4, std::wstring(L"x"));
    EXPECT_EQ(after(edit, L"axbcdef"), L"abc");
    EXPECT_EQ(after(edit, L"xxxxabc"), L"");
    EXPECT_EQ(after(edit, L"abcd"), L"abcd");
    edit.SetMaxCharacters(0);
    EXPECT_EQ(after(edit, L"axbcdefxg"), L"abcdefg");
}

TEST(Alphanumeric, ASetterRedrawsOnlyForAChange)
{
    AlphanumericEdit edit(0, std::wstring(L""));
    edit.SetWindowText(L"abcdef");
    const int sets = edit.sets;
    edit.SetMaxCharacters(0);
    edit.SetInvalidCharacters(L"");
    EXPECT_EQ(edit.sets, sets);
    edit.SetMaxCharacters(4);
    EXPECT_EQ(edit.GetText(), L"abcd");
    edit.SetInvalidCharacters(L"bd");
    EXPECT_EQ(edit.GetText(), L"ac");
    EXPECT_EQ(edit.GetMaxCharacters(), 4);
    EXPECT_EQ(edit.GetInvalidCharacters(), L"bd");
}

TEST(Alphanumeric, APasteIsReducedToItsValidForm)
{
    AlphanumericEdit edit(5, std::wstring(L"x"));
    edit.SetClipboard(L"1x2");
    sequence::Run(edit, L"a|bc", L"<Paste>>a|12b");
    edit.SetClipboard(L"12");
    sequence::Run(edit, L"a|bc", L"<Paste>>a12|bc");
}

TEST(Alphanumeric, FocusLossChangesNothing)
{
    AlphanumericEdit edit(3, std::wstring(L"x"));
    edit.ModifyFlags(0xFF, 0);
    edit.OnKillFocus(nullptr);
    EXPECT_EQ(edit.defaults.size(), 1u);
    EXPECT_EQ(edit.beeps, 0);
}

TEST(Alphanumeric, AReadOnlyBoxIgnoresKeysAndDoesNotBeep)
{
    AlphanumericEdit edit(3, std::wstring(L"x"));
    edit.SetWindowText(L"ab");
    edit.SetReadOnly(true);
    for (const wchar_t character : std::wstring(L"cx\b"))
        edit.OnChar(character, 1, 0);
    EXPECT_EQ(edit.GetText(), L"ab");
    EXPECT_EQ(edit.beeps, 0);
}

TEST(Alphanumeric, TheHookRefusesWhatTheRulesAccept)
{
    class Vetoing : public AlphanumericEdit {
    public:
        Vetoing() : TValidatingEdit(2, std::wstring()) {}
        bool ShouldEnter(wchar_t character) override { return character != L'v'; }
    };
    RunAll([] { return std::make_unique<Vetoing>(); }, {{L"|", L"v>| a>a| v>a| b>ab|"}, {L"|ab", L"v>|ab c>c|b"}});
}

// Masked

TEST(MaskedSymbol, WithoutFunctionsTakesEverythingAsItIs)
{
    const Symbol symbol(L'*');
    EXPECT_EQ(symbol.GetSymbol(), L'*');
    EXPECT_TRUE(symbol.Validate(L'x'));
    EXPECT_EQ(symbol.Convert(L'x'), L'x');
}

TEST(MaskedSymbol, AsksItsFunctions)
{
    Symbol symbol(L'L', mask_symbols::IsLetter, mask_symbols::ToUpper);
    EXPECT_TRUE(symbol.Validate(L'x'));
    EXPECT_FALSE(symbol.Validate(L'5'));
    EXPECT_EQ(symbol.Convert(L'x'), L'X');
    symbol.SetSymbol(L'A');
    EXPECT_EQ(symbol.GetSymbol(), L'A');
}

TEST(Masked, ASymbolTakesWhatItValidates)
{
    RunAll(Masked(L"##LL"), {{L"|", L"a>| 1>1| x>1| 2>12| 3>12| a>12A| _>12A| b>12AB| c>12AB| 5>12AB|"}});
}

TEST(Masked, ADigitInFrontOfALiteralEntersTheLiteralByItself)
{
    RunAll(Masked(L"##/##"), {{L"|", L"1>1| 2>12| 3>12/3| 4>12/34| 5>12/34|"}});
    RunAll(Masked(L"(##) ##-L"), {{L"|", L"1>(1| 2>(12| 3>(12)_3| 4>(12)_34| a>(12)_34-A| b>(12)_34-A|"}});
    RunAll(Masked(L"--#"), {{L"|", L"5>--5|"}});
}

TEST(Masked, ALiteralCanBeTyped)
{
    RunAll(Masked(L"##/##"), {{L"|", L"/>| 1>1| />1| 2>12| />12/| />12/| 3>12/3|"}});
}

TEST(Masked, TheNextSymbolOfTheMaskDecidesAndNotALaterOne)
{
    RunAll(Masked(L"/#/L"), {{L"|", L"a>| 1>/1| 2>/1| a>/1/A|"}});
}

TEST(Masked, ALiteralBehindTheLastSymbolTakesItsOwnCharacterOnly)
{
    RunAll(Masked(L"#%"), {{L"1|", L"5>1| a>1| %>1%| %>1%|"}});
}

TEST(Masked, TypingInsideOverwrites)
{
    RunAll(Masked(L"##/##"), {{L"|12/34", L"9>9|2/34 8>98|/34 7>98/7|4 6>98/76| 5>98/76|"},
                              {L"12|/34", L"/>12/|34"},
                              {L"1[2/3]4", L"9>19|/34"},
                              {L"1[2/34]", L"9>19|"},
                              {L"[12/34]", L"9>9|"},
                              {L"12[/34]", L"5>12/5|4"}});
}

TEST(Masked, BackspaceDeletesAtTheEndAndMovesElsewhere)
{
    RunAll(Masked(L"##/##"), {{L"12/34|", L"<BS>>12/3| <BS>>12/| <BS>>12| <BS>>1| <BS>>| <BS>>|"},
                              {L"12|/34", L"<BS>>1|2/34 <BS>>|12/34 <BS>>|12/34"},
                              {L"1[2/]34", L"<BS>>1|2/34"},
                              {L"12[/34]", L"<BS>>12|"}});
}

TEST(Masked, DeleteDeletesAtTheEndOnly)
{
    RunAll(Masked(L"##/##"), {{L"12/3|4", L"<Del>>12/3| <Del>>12/3|"},
                              {L"12/|34", L"<Del>>12/|34"},
                              {L"|12/34", L"<Del>>|12/34"},
                              {L"1[2/]34", L"<Del>>1[2/]34"},
                              {L"1[2/34]", L"<Del>>1|"},
                              {L"[12/34]", L"<Del>>|"},
                              {L"1[2/34]", L"<Clear>>1|"},
                              {L"1[2/]34", L"<Clear>>1[2/]34"}});
}

TEST(Masked, UndoPutsWhatKeysMadeOfACutTextInItsForm)
{
    RunAll(Masked(L"##/##"), {{L"[1]0/0", L"<Cut>>|0/0~ 0>0|/0~ 7>07|0~ 6>07/6| <Undo>>07|/0"}});
}

TEST(Masked, OtherKeysMoveTheCaret)
{
    RunAll(Masked(L"##/##"), {{L"12|/34", L"<Right>>12/|34 <End>>12/34| <Left>>12/3|4 <Home>>|12/34"}});
}

TEST(Masked, BeyondTheMaskOnlyBackspaceCounts)
{
    auto edit = Masked(L"##")();
    sequence::Run(*edit, L"12|", L"3>12| a>12|");
    edit->defaults.clear();
    edit->OnChar(1, 1, 0);
    EXPECT_TRUE(edit->defaults.empty()) << "other control characters are dropped there";
    sequence::Run(*edit, L"12|", L"<BS>>1|");
    edit->OnChar(1, 1, 0);
    EXPECT_EQ(edit->defaults.back().code, 1u) << "inside they go to the platform";
}

TEST(Masked, WithoutASymbolEveryMaskCharacterIsALiteral)
{
    RunAll([] { return std::make_unique<MaskedEdit>(L"#a"); },
           {{L"|", L"1>| a>| #>#| 1>#| a>#a| a>#a|"}, {L"#a|", L"<BS>>#|"}});
    MaskedEdit edit(L"#a");
    EXPECT_EQ(after(edit, L"#ab"), L"#a");
    EXPECT_EQ(after(edit, L"1"), L"");
}

TEST(Masked, AnEmptyMaskTakesAnyText)
{
    RunAll(Masked(L""), {{L"|", L"a>a| 5>a5| ->a5-| <BS>>a5| <Left>>a|5 <BS>>|5"}});
}

TEST(Masked, TheValidFormFillsInLiteralsAndEndsAtTheFirstMisfit)
{
    const auto make = Masked(L"##/##-L");
    const std::pair<const wchar_t *, const wchar_t *> table[] = {
        {L"", L""},
        {L"12", L"12"},
        {L"123", L"12/3"},
        {L"1234", L"12/34"},
        {L"12/34", L"12/34"},
        {L"12/34-a", L"12/34-A"},
        {L"1234a", L"12/34-A"},
        {L"12/34-ab", L"12/34-A"},
        {L"12-34", L"12"},
        {L"1 2", L"1"},
        {L"/", L""},
        {L"1234/", L"12/34"},
        {L"12/", L"12/"},
        {L"a1", L"A1"},
        // The mask's own "#" and "L" are no literals: "#" is refused as what it stands for.
        {L"#", L""},
        {L"12/#", L"12/"},
        {L"12/34-#", L"12/34-"},
    };
    for (const auto &[given, valid] : table) {
        auto edit = make();
        EXPECT_EQ(after(*edit, given), valid);
        EXPECT_EQ(edit->GetValidText(), valid) << "applied again";
    }
}

TEST(Masked, LiteralsAtTheEndOfTheMaskMayBeFilledInWithoutTheCharacter)
{
    auto edit = Masked(L"#()")();
    EXPECT_EQ(after(*edit, L"12"), L"1()");
}

TEST(Masked, TheFirstSymbolThatFitsCounts)
{
    MaskedEdit edit(L"ab");
    edit.GetSymbolArray() = {Symbol(L'a', mask_symbols::IsLetter), Symbol(L'b', nullptr, mask_symbols::ToUpper)};
    EXPECT_EQ(after(edit, L"xy"), L"xy") << "both by the first symbol";
    sequence::Run(edit, L"|", L"x>x|");
    edit.OnChar(L'y', 1, 0);
    EXPECT_EQ(edit.GetText(), L"xY") << "typing goes by the symbol of the place";
}

TEST(Masked, ASetMaskRedrawsAndAnUnchangedOneDoesNot)
{
    auto edit = Masked(L"####")();
    edit->SetWindowText(L"1234");
    edit->SetMask(L"##/##");
    EXPECT_EQ(edit->GetText(), L"12/34");
    EXPECT_EQ(edit->GetMask(), L"##/##");
    edit->SetSel(0, 5);
    edit->ReplaceSel(L"x", true);
    edit->SetMask(L"##/##");
    EXPECT_EQ(edit->GetText(), L"x");
}

TEST(Masked, NumericTextIsItsDigits)
{
    auto edit = Masked(L"##/##-L")();
    edit->SetWindowText(L"1234a");
    EXPECT_EQ(edit->GetNumericText(), L"1234");
}

TEST(Masked, FocusLossChangesNothing)
{
    auto edit = Masked(L"##/##")();
    edit->ModifyFlags(0xFF, 0);
    edit->SetWindowText(L"1");
    edit->OnKillFocus(nullptr);
    EXPECT_EQ(edit->GetText(), L"1");
    EXPECT_EQ(edit->beeps + edit->focusTakes, 0);
}

TEST(Masked, AReadOnlyBoxIgnoresKeys)
{
    auto edit = Masked(L"##/##")();
    sequence::Place(*edit, L"12|");
    edit->SetReadOnly(true);
    for (const wchar_t character : std::wstring(L"3/\b"))
        edit->OnChar(character, 1, 0);
    EXPECT_EQ(edit->Picture(), L"12|");
}

TEST(Masked, TheHookRefusesWhatTheRulesAccept)
{
    class Vetoing : public MaskedEdit {
    public:
        Vetoing() : TValidatingEdit(L"#/#") { GetSymbolArray() = mask_symbols::kDigits; }
        bool ShouldEnter(wchar_t character) override { return character == L'1'; }
    };
    RunAll([] { return std::make_unique<Vetoing>(); }, {{L"|", L"2>| 1>1| />1| 2>1| 1>1/1|"}, {L"1|", L"<BS>>1|"}});
}

TEST(Masked, ABoxTooShortForItsMaskDoesNotHang)
{
    auto edit = Masked(L"#////#")();
    edit->SetMaxLength(1);
    sequence::Place(*edit, L"1|");
    edit->OnChar(L'2', 1, 0);
    EXPECT_EQ(edit->GetText(), L"1");
}

// Which behaviour a mask chooses

TEST(MaskChoice, ByTheCharactersOfTheMask)
{
    using Kind = MaskChoice::Kind;
    struct Row {
        const wchar_t *mask;
        MaskChoice choice;
    };
    for (const Row &row :
         {Row{L"", {Kind::Alphanumeric}}, Row{L"abcde", {Kind::Alphanumeric}},
          Row{L"##/##/#### ##:##:##", {Kind::DateTime, 0x4000}}, Row{L"##/##/#### ##:##", {Kind::DateTime, 0}},
          Row{L"##/##/####", {Kind::DateTime, 0x0100}}, Row{L"##:##:##", {Kind::DateTime, 0x4200}},
          Row{L"##:##", {Kind::DateTime, 0x0200}}, Row{L"#", {Kind::Numeric}}, Row{L"###,###.##", {Kind::Numeric}},
          Row{L"$ ##.#", {Kind::Numeric}}, Row{L"abc#", {Kind::Numeric}}, Row{L"#.", {Kind::Masked}},
          Row{L"##,", {Kind::Masked}}, Row{L"#-#", {Kind::Masked}}, Row{L"# #", {Kind::Masked}},
          Row{L"##/##", {Kind::Masked}}, Row{L"##/##/##", {Kind::Masked}}}) {
        EXPECT_EQ(ChooseByMask(row.mask, L'.', L','), row.choice) << row.mask;
    }
    EXPECT_EQ(ChooseByMask(L"#;#", L';', L','), MaskChoice{Kind::Numeric});
    EXPECT_EQ(ChooseByMask(L"#.#", L';', L','), MaskChoice{Kind::Masked});
}

TEST(MultiMasked, StartsAlphanumericWithTenInvalidCharacters)
{
    MultiMaskedEdit edit(kNoSettings);
    EXPECT_EQ(edit.GetInvalidCharacters(), L"%'*\"+?><:\\");
    EXPECT_EQ(edit.GetMaxCharacters(), 0);
    EXPECT_EQ(edit.GetMask(), L"");
    EXPECT_EQ(edit.CurrentKind(), MaskChoice::Kind::Alphanumeric);
    EXPECT_EQ(edit.GetMaxWholeDigits(), 9);
    EXPECT_EQ(edit.GetMaxDecimalPlaces(), 4);
    RunAll([] { return std::make_unique<MultiMaskedEdit>(kNoSettings); },
           {{L"|", L"a>a| %>a|! '>a|! *>a|! \">a|! +>a|! ?>a|! :>a|! \\>a|! b>ab| 5>ab5|"}});
}

TEST(MultiMasked, AMaskWithoutAPlaceForDigitsIsALengthLimit)
{
    MultiMaskedEdit edit(kNoSettings);
    edit.SetWindowText(L"abcdef");
    edit.SetMask(L"xxxx");
    EXPECT_EQ(edit.GetText(), L"abcd");
    EXPECT_EQ(edit.GetMask(), L"xxxx");
    EXPECT_EQ(edit.GetMaxCharacters(), 4);
    sequence::Run(edit, L"ab|cd", L"x>abx|d");
}

TEST(MultiMasked, AMaskOfOnePlaceIsANumberOfOneWholeDigit)
{
    MultiMaskedEdit edit(kNoSettings);
    edit.SetMask(L"#");
    EXPECT_EQ(edit.CurrentKind(), MaskChoice::Kind::Numeric);
    EXPECT_EQ(edit.GetMaxWholeDigits(), 1);
    EXPECT_EQ(edit.GetMaxDecimalPlaces(), 0);
    sequence::Run(edit, L"|", L"a>| 5>5| 6>5| ->-5|");
    EXPECT_EQ(edit.GetInt(), -5);
}

TEST(MultiMasked, ANumericMaskRoutesEverythingToTheNumber)
{
    MultiMaskedEdit edit(kNoSettings);
    edit.SetMask(L"$ ###,###.##");
    sequence::Run(edit, L"|", L"1>$_1| 2>$_12| 3>$_123| 4>$_1,234| %>$_1,234| <BS>>$_123|");
    sequence::Run(edit, L"|$_12", L"<Del>>|$_12");
    edit.SetClipboard(L"1x2");
    sequence::Run(edit, L"|", L"<Paste>>|$_12");
    edit.NumericBehavior::ModifyFlags(PadZerosAfterDecimal, 0);
    edit.OnKillFocus(nullptr);
    EXPECT_EQ(edit.GetText(), L"$ 12.00");
    EXPECT_EQ(edit.GetMask(), L"$ ###,###.##");
}

TEST(MultiMasked, ANumericMaskNeverLeavesTheSeparatorsEqual)
{
    const PinnedSettings croatian{{RegionalQuery::DecimalPoint, L","}, {RegionalQuery::GroupSeparator, L"."}};
    MultiMaskedEdit edit(croatian);
    edit.SetMask(L"#####.##");
    EXPECT_EQ(edit.CurrentKind(), MaskChoice::Kind::Numeric);
    sequence::Run(edit, L"12.|5", L"3>12.3|5");
    edit.SetDigitsInGroup(3);
    EXPECT_EQ(after(edit, L"1234"), L"1,234");
}

TEST(MultiMasked, AnyOtherMaskIsMasked)
{
    MultiMaskedEdit edit(kNoSettings);
    edit.GetSymbolArray() = mask_symbols::kDigits;
    edit.SetMask(L"##/##");
    EXPECT_EQ(edit.CurrentKind(), MaskChoice::Kind::Masked);
    EXPECT_EQ(edit.GetMask(), L"##/##");
    sequence::Run(edit, L"|", L"1>1| 2>12| 3>12/3| <BS>>12/| <Left>>12|/ <Del>>12|");
}

TEST(MultiMasked, ANewMaskPutsTheTextInItsForm)
{
    MultiMaskedEdit edit(kNoSettings);
    edit.GetSymbolArray() = mask_symbols::kDigits;
    edit.SetWindowText(L"a1234");
    edit.SetMask(L"####.#");
    EXPECT_EQ(edit.GetText(), L"1234");
    edit.SetMask(L"##/##");
    EXPECT_EQ(edit.GetText(), L"12/34");
    edit.SetMask(L"aaaaaa");
    EXPECT_EQ(edit.GetText(), L"12/34");
    edit.SetMask(L"###");
    EXPECT_EQ(edit.GetText(), L"123");
    edit.SetMask(L"###");
    EXPECT_EQ(edit.GetText(), L"123");
}
