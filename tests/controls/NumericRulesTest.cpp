// What a numeric edit holds: its setters, its valid form, masks, values, and what the regional settings give it.
#include "controls/rules/ValidatingEdit.h"

#include "tests/controls/PinnedSettings.h"
#include "tests/controls/SequenceBox.h"

#include <gmock/gmock.h>

#include <cmath>
#include <limits>

using namespace AMSEdit;

namespace {

class NumericEdit : public TNumericEdit<SequenceBox> {
public:
    explicit NumericEdit(int whole = 9, int places = 4, const IRegionalSettings &settings = CNoRegionalSettings())
        : TValidatingEdit(whole, places, settings)
    {
    }
    std::wstring After(const std::wstring &text)
    {
        SetWindowText(text);
        return GetText();
    }
};

std::pair<wchar_t, wchar_t> separatorsOf(const NumericBehavior &edit)
{
    wchar_t decimalPoint = 0, groupSeparator = 0;
    edit.GetSeparators(&decimalPoint, &groupSeparator);
    return {decimalPoint, groupSeparator};
}

using Separators = std::pair<wchar_t, wchar_t>;

} // namespace

TEST(NumericDefaults, AreThoseOfAPlainNumber)
{
    NumericEdit edit(9, 4);
    EXPECT_EQ(edit.GetMaxWholeDigits(), 9);
    EXPECT_EQ(edit.GetMaxDecimalPlaces(), 4);
    EXPECT_EQ(edit.GetNegativeSign(), L'-');
    EXPECT_EQ(separatorsOf(edit), Separators(L'.', L','));
    EXPECT_EQ(edit.GetDigitsInGroup(), 0);
    EXPECT_EQ(edit.GetPrefix(), L"");
    EXPECT_EQ(edit.GetFlags(), 0u);
    EXPECT_TRUE(edit.IsNegativeAllowed());
    double min = 0, max = 0;
    edit.GetRange(&min, &max);
    EXPECT_EQ(min, -1.7976931348623157e308);
    EXPECT_EQ(max, 1.7976931348623157e308);
}

TEST(NumericFlags, HaveTheirValues)
{
    EXPECT_EQ(KillFocusBeepIfInvalid, 0x0001u);
    EXPECT_EQ(KillFocusBeepIfEmpty, 0x0002u);
    EXPECT_EQ(KillFocusRepairIfInvalid, 0x0004u);
    EXPECT_EQ(KillFocusRepairIfEmpty, 0x0008u);
    EXPECT_EQ(KillFocusRefocusIfInvalid, 0x0010u);
    EXPECT_EQ(KillFocusRefocusIfEmpty, 0x0020u);
    EXPECT_EQ(KillFocusMessageIfInvalid, 0x0050u);
    EXPECT_EQ(KillFocusMessageIfEmpty, 0x00A0u);
    EXPECT_EQ(PadZerosBeforeDecimal, 0x0100u);
    EXPECT_EQ(PadZerosAfterDecimal, 0x0200u);
    EXPECT_EQ(NoPadIfEmpty, 0x0400u);
    EXPECT_EQ(TrimLeadingZeros, 0x0800u);
    EXPECT_EQ(CannotBeNegative, 0x1000u);
    EXPECT_EQ(DecimalAfterMaxWhole, 0x2000u);
    EXPECT_EQ(kStyleReadOnly, 0x800u);
    EXPECT_EQ(kWarningExclamation, 48u);
}

TEST(NumericDefaults, NegativeWholeDigitsMeanTheirAbsoluteValueAndNoNegativeNumbers)
{
    NumericEdit edit(-6, 2);
    EXPECT_EQ(edit.GetMaxWholeDigits(), 6);
    EXPECT_FALSE(edit.IsNegativeAllowed());
    EXPECT_EQ(edit.After(L"-12"), L"12");
    NumericEdit smallest(std::numeric_limits<int>::min(), 2);
    EXPECT_EQ(smallest.GetMaxWholeDigits(), std::numeric_limits<int>::max());
}

TEST(NumericDefaults, SignAndSeparatorsComeFromTheSettings)
{
    const PinnedSettings settings{{RegionalQuery::NegativeSign, L"~x"},
                                  {RegionalQuery::DecimalPoint, L","},
                                  {RegionalQuery::GroupSeparator, L" "}};
    NumericEdit edit(9, 4, settings);
    EXPECT_EQ(edit.GetNegativeSign(), L'~') << "one character is kept";
    EXPECT_EQ(separatorsOf(edit), Separators(L',', L' '));
}

TEST(NumericDefaults, EachQueryThatFailsLeavesItsDefault)
{
    EXPECT_EQ(separatorsOf(NumericEdit(9, 4, PinnedSettings{{RegionalQuery::GroupSeparator, L"'"}})),
              Separators(L'.', L'\''));
    EXPECT_EQ(separatorsOf(NumericEdit(9, 4, PinnedSettings{{RegionalQuery::DecimalPoint, L";"}})),
              Separators(L';', L','));
    EXPECT_EQ(separatorsOf(NumericEdit(9, 4, PinnedSettings{{RegionalQuery::DecimalPoint, L""}})),
              Separators(L'.', L','));
    EXPECT_EQ(NumericEdit(9, 4, PinnedSettings{{RegionalQuery::DecimalPoint, L","}}).GetNegativeSign(), L'-');
}

TEST(NumericDefaults, EqualSeparatorsOfTheSettingsAreMadeToDiffer)
{
    EXPECT_EQ(separatorsOf(NumericEdit(9, 4, PinnedSettings{{RegionalQuery::DecimalPoint, L","}})),
              Separators(L',', L'.'));
    EXPECT_EQ(separatorsOf(NumericEdit(9, 4, PinnedSettings{{RegionalQuery::GroupSeparator, L"."}})),
              Separators(L'.', L','));
}

TEST(NumericSetters, SetMaxWholeDigitsTakesTheSignAsAMode)
{
    NumericEdit edit;
    edit.SetMaxWholeDigits(-4);
    EXPECT_EQ(edit.GetMaxWholeDigits(), 4);
    EXPECT_FALSE(edit.IsNegativeAllowed());
    edit.SetMaxWholeDigits(4);
    EXPECT_TRUE(edit.IsNegativeAllowed());
}

TEST(NumericSetters, SetMaxWholeDigitsAfterAllowNegativeMakesNegativesAllowedAgain)
{
    NumericEdit edit;
    edit.AllowNegative(false);
    EXPECT_FALSE(edit.IsNegativeAllowed());
    edit.SetMaxWholeDigits(4);
    EXPECT_TRUE(edit.IsNegativeAllowed());
    edit.AllowNegative(false);
    EXPECT_EQ(edit.GetFlags(), CannotBeNegative);
}

TEST(NumericSetters, EachSetterRedrawsOnceAndOnlyForAChange)
{
    NumericEdit edit;
    edit.SetWindowText(L"-123456.789");
    const auto setsOf = [&](auto set) {
        const int before = edit.sets;
        set();
        return edit.sets - before;
    };
    EXPECT_EQ(setsOf([&] { edit.SetMaxWholeDigits(9); }), 0);
    EXPECT_EQ(setsOf([&] { edit.SetMaxWholeDigits(-5); }), 1) << "digits and sign in one";
    EXPECT_EQ(edit.GetText(), L"12345.789");
    EXPECT_EQ(setsOf([&] { edit.SetMaxDecimalPlaces(4); }), 0);
    EXPECT_EQ(setsOf([&] { edit.SetMaxDecimalPlaces(1); }), 1);
    EXPECT_EQ(edit.GetText(), L"12345.7");
    EXPECT_EQ(setsOf([&] { edit.SetDigitsInGroup(0); }), 0);
    EXPECT_EQ(setsOf([&] { edit.SetDigitsInGroup(3); }), 1);
    EXPECT_EQ(edit.GetText(), L"12,345.7");
    EXPECT_EQ(setsOf([&] { edit.SetPrefix(L""); }), 0);
    EXPECT_EQ(setsOf([&] { edit.SetPrefix(L"$"); }), 1);
    EXPECT_EQ(edit.GetText(), L"$12,345.7");
    EXPECT_EQ(setsOf([&] { edit.SetSeparators(L'.', L','); }), 0);
    EXPECT_EQ(setsOf([&] { edit.AllowNegative(false); }), 0);
    EXPECT_EQ(setsOf([&] { edit.SetRange(0, 1); }), 0) << "a redraw of a text that stays valid sets nothing";
    EXPECT_EQ(edit.GetText(), L"$12,345.7");
}

TEST(NumericSetters, SetSeparatorsMakesEqualOnesDiffer)
{
    NumericEdit edit;
    edit.SetSeparators(L',', L',');
    EXPECT_EQ(separatorsOf(edit), Separators(L',', L'.'));
    edit.SetSeparators(L'.', L'.');
    EXPECT_EQ(separatorsOf(edit), Separators(L'.', L','));
    edit.SetSeparators(L'*', L'*');
    EXPECT_EQ(separatorsOf(edit), Separators(L'*', L','));
    edit.GetSeparators(nullptr, nullptr);
}

TEST(NumericSetters, ANewPrefixTakesTheOldOnesPlace)
{
    NumericEdit edit;
    edit.SetPrefix(L"B/.");
    EXPECT_EQ(edit.After(L"12.5"), L"B/.12.5");
    edit.SetPrefix(L"EUR 1: ");
    EXPECT_EQ(edit.GetText(), L"EUR 1: 12.5");
    EXPECT_EQ(edit.GetDouble(), 12.5);
    edit.SetPrefix(L"");
    EXPECT_EQ(edit.GetText(), L"12.5");
}

TEST(NumericSetters, ARangeIsStoredAsGiven)
{
    NumericEdit edit;
    edit.SetRange(5, 1);
    double min = 0, max = 0;
    edit.GetRange(&min, nullptr);
    edit.GetRange(nullptr, &max);
    EXPECT_EQ(min, 5);
    EXPECT_EQ(max, 1);
}

TEST(NumericValidText, SurplusDigitsAreCutAndNeverRounded)
{
    NumericEdit edit(4, 4);
    const std::pair<const wchar_t *, const wchar_t *> table[] = {
        {L"", L""},
        {L"123456", L"1234"},
        {L"1.23456", L"1.2345"},
        {L"1.99999", L"1.9999"},
        {L"123456.78", L"1234.78"},
        {L"-123456.78", L"-1234.78"},
        {L"12-3", L"-123"},
        {L"--1-", L"-1"},
        {L"-", L"-"},
        {L".", L"."},
        {L"-.", L"-."},
        {L".5", L".5"},
        {L"5.", L"5."},
        {L"1.2.3", L"1.23"},
        {L"..1", L".1"},
        {L"1,234", L"1234"},
        {L" 1 2 ", L"12"},
        {L"1e5", L"15"},
        {L"abc", L""},
        {L"1.23456-", L"1.2345"},
        {L"1.2345-", L"-1.2345"},
        {L"007", L"007"},
    };
    for (const auto &[given, valid] : table) {
        EXPECT_EQ(edit.After(given), valid) << "for " << std::string(given, given + std::wcslen(given));
        EXPECT_EQ(edit.GetValidText(), valid) << "applied again";
    }
}

TEST(NumericValidText, WithoutDecimalsThePointEndsTheNumber)
{
    NumericEdit edit(4, 0);
    EXPECT_EQ(edit.After(L"12.5"), L"12");
    EXPECT_EQ(edit.After(L".5"), L"");
    EXPECT_EQ(edit.After(L"12.-"), L"12");
}

TEST(NumericValidText, WithoutWholeDigitsOnlyDecimalsStay)
{
    NumericEdit edit(0, 2);
    EXPECT_EQ(edit.After(L"12.567"), L".56");
    EXPECT_EQ(edit.After(L"12"), L"");
}

TEST(NumericValidText, GroupsAreCountedFromThePoint)
{
    NumericEdit edit(9, 4);
    edit.SetDigitsInGroup(3);
    const std::pair<const wchar_t *, const wchar_t *> table[] = {
        {L"1", L"1"},
        {L"123", L"123"},
        {L"1234", L"1,234"},
        {L"123456", L"123,456"},
        {L"1234567", L"1,234,567"},
        {L"-123", L"-123"},
        {L"-1234", L"-1,234"},
        {L"-123456", L"-123,456"},
        {L"1234.5678", L"1,234.5678"},
        {L"1,2,3,4", L"1,234"},
        {L".5678", L".5678"},
        {L"-", L"-"},
    };
    for (const auto &[given, valid] : table)
        EXPECT_EQ(edit.After(given), valid);
    edit.SetDigitsInGroup(1);
    EXPECT_EQ(edit.After(L"-123"), L"-1,2,3");
    edit.SetDigitsInGroup(std::numeric_limits<int>::max());
    EXPECT_EQ(edit.After(L"1234567"), L"1234567");
    edit.SetDigitsInGroup(-3);
    EXPECT_EQ(edit.After(L"1234567"), L"1234567");
}

TEST(NumericValidText, AnEmptyNumberHasNoPrefix)
{
    NumericEdit edit;
    edit.SetPrefix(L"$ ");
    EXPECT_EQ(edit.After(L""), L"");
    EXPECT_EQ(edit.After(L"$ "), L"");
    EXPECT_EQ(edit.After(L"abc"), L"");
    EXPECT_EQ(edit.After(L"1"), L"$ 1");
    EXPECT_EQ(edit.After(L"$ 1"), L"$ 1");
    EXPECT_EQ(edit.After(L"$1"), L"$ 1");
    EXPECT_EQ(edit.After(L"-"), L"$ -");
    EXPECT_EQ(edit.After(L"."), L"$ .");
}

TEST(NumericText, KeepsDigitsFirstPointAndSign)
{
    NumericEdit edit;
    edit.SetSeparators(L',', L'.');
    EXPECT_EQ(edit.GetNumericText(L"a1.234,5,6-b", true), L"-1234.56");
    EXPECT_EQ(edit.GetNumericText(L"a1.234,5,6-b", false), L"-1234,56");
    EXPECT_EQ(edit.GetNumericText(L"", true), L"");
    EXPECT_EQ(edit.GetNumericText(L"---", false), L"-");
}

TEST(NumericText, TheOwnSignIsPutInFrontWithoutMathSymbols)
{
    NumericEdit edit(9, 4, PinnedSettings{{RegionalQuery::NegativeSign, L"~"}});
    EXPECT_EQ(edit.GetNumericText(L"5~", false), L"~5");
    EXPECT_EQ(edit.GetNumericText(L"5~", true), L"-5");
    EXPECT_EQ(edit.After(L"-5~"), L"~5");
    EXPECT_EQ(edit.GetDouble(), -5.0);
}

TEST(NumericValues, DoublesGoInAndOut)
{
    NumericEdit edit(9, 4);
    const std::pair<double, const wchar_t *> table[] = {
        {0.0, L"0"},          {1.5, L"1.5"},       {-1.5, L"-1.5"},       {100.0, L"100"},      {0.25, L"0.25"},
        {1.23456, L"1.2345"}, {1e9, L"100000000"}, {-0.0001, L"-0.0001"}, {0.00001, L"0.0000"}, {1.9999999, L"2"},
    };
    for (const auto &[value, text] : table) {
        edit.SetDouble(value, true);
        EXPECT_EQ(edit.GetText(), text);
    }
    edit.SetDouble(1.5, false);
    EXPECT_EQ(edit.GetText(), L"1.5000") << "six decimals, of which four have room";
    EXPECT_EQ(edit.GetDouble(), 1.5);
}

TEST(NumericValues, ZeroIsALoneZero)
{
    NumericEdit edit;
    edit.SetDouble(0.0, true);
    EXPECT_EQ(edit.GetText(), L"0");
}

TEST(NumericValues, SixDecimalsAreWrittenAndTrailingZerosCutOnRequest)
{
    EXPECT_EQ(NumericBehavior::GetDoubleText(1.5, false), L"1.500000");
    EXPECT_EQ(NumericBehavior::GetDoubleText(1.5, true), L"1.5");
    EXPECT_EQ(NumericBehavior::GetDoubleText(100, true), L"100");
    EXPECT_EQ(NumericBehavior::GetDoubleText(-0.0000001, true), L"-0");
    EXPECT_EQ(NumericBehavior::GetDoubleText(2.0 / 3, false), L"0.666667");
    EXPECT_EQ(NumericBehavior::GetDoubleText(std::numeric_limits<double>::max(), false).size(), 316u);
}

TEST(NumericValues, OnABoxWithADecimalCommaThePointOfASetValueIsDropped)
{
    NumericEdit edit;
    edit.SetSeparators(L',', L'.');
    edit.SetDouble(1.5, true);
    EXPECT_EQ(edit.GetText(), L"15");
    edit.SetSeparators(L'.', L',');
    edit.SetDouble(1.5, true);
    EXPECT_EQ(edit.GetText(), L"1.5");
}

TEST(NumericValues, AnEmptyBoxIsZero)
{
    NumericEdit edit;
    EXPECT_EQ(edit.GetDouble(), 0.0);
    EXPECT_EQ(edit.GetInt(), 0);
    for (const wchar_t *text : {L"-", L".", L"-."}) {
        EXPECT_EQ(edit.After(text), text);
        EXPECT_EQ(edit.GetDouble(), 0.0);
        EXPECT_EQ(edit.GetInt(), 0);
    }
}

TEST(NumericValues, SeparatorsAndPrefixDoNotCount)
{
    NumericEdit edit;
    edit.SetDigitsInGroup(3);
    edit.SetPrefix(L"$ ");
    edit.SetSeparators(L',', L'.');
    EXPECT_EQ(edit.After(L"-1234567,25"), L"$ -1.234.567,25");
    EXPECT_EQ(edit.GetDouble(), -1234567.25);
    EXPECT_EQ(edit.GetInt(), -1234567);
}

TEST(NumericValues, IntegersGoInAndOut)
{
    NumericEdit edit(10, 4);
    edit.SetInt(-42);
    EXPECT_EQ(edit.GetText(), L"-42");
    EXPECT_EQ(edit.GetInt(), -42);
    edit.SetInt(std::numeric_limits<int>::min());
    EXPECT_EQ(edit.GetInt(), std::numeric_limits<int>::min());
    edit.SetWindowText(L"12.9");
    EXPECT_EQ(edit.GetInt(), 12);
    edit.SetWindowText(L"9999999999");
    EXPECT_EQ(edit.GetInt(), std::numeric_limits<int>::max());
    edit.SetWindowText(L"-9999999999");
    EXPECT_EQ(edit.GetInt(), std::numeric_limits<int>::min());
}

TEST(NumericValues, NumbersBeyondADoubleAreInfinite)
{
    NumericEdit edit(400, 400);
    edit.SetWindowText(std::wstring(400, L'9'));
    EXPECT_EQ(edit.GetDouble(), std::numeric_limits<double>::infinity());
    EXPECT_FALSE(edit.IsValid());
    edit.SetWindowText(L"-." + std::wstring(399, L'0') + L"1");
    EXPECT_EQ(edit.GetDouble(), 0.0);
}

TEST(NumericValues, WhatIsNoNumberLeavesTheBoxEmpty)
{
    NumericEdit edit;
    edit.SetDouble(std::nan(""), true);
    EXPECT_EQ(edit.GetText(), L"");
    edit.SetDouble(std::numeric_limits<double>::infinity(), true);
    EXPECT_EQ(edit.GetText(), L"");
}

TEST(NumericMask, IsReadFromTheRight)
{
    struct Row {
        const wchar_t *mask;
        int whole, places, group;
        const wchar_t *prefix;
        Separators separators;
    };
    const Row table[] = {
        {L"$ ###,###.##", 6, 2, 3, L"$ ", {L'.', L','}}, {L"#", 1, 0, 0, L"", {L'.', L','}},
        {L"####", 4, 0, 0, L"", {L'.', L','}},           {L"##.##", 2, 2, 0, L"", {L'.', L','}},
        {L"#,####", 5, 0, 4, L"", {L'.', L','}},         {L"#,###,###", 7, 0, 3, L"", {L'.', L','}},
        {L"##,###.#", 5, 1, 3, L"", {L'.', L','}},       {L"EUR: ##", 2, 0, 0, L"EUR: ", {L'.', L','}},
        {L"#$##", 2, 0, 0, L"#$", {L'.', L','}},         {L"", 0, 0, 0, L"", {L'.', L','}},
        {L"abc", 0, 0, 0, L"abc", {L'.', L','}},         {L".##", 0, 2, 0, L"", {L'.', L','}},
    };
    for (const Row &row : table) {
        NumericEdit edit;
        edit.SetMask(row.mask);
        EXPECT_EQ(edit.GetMaxWholeDigits(), row.whole) << row.mask;
        EXPECT_EQ(edit.GetMaxDecimalPlaces(), row.places) << row.mask;
        EXPECT_EQ(edit.GetDigitsInGroup(), row.group) << row.mask;
        EXPECT_EQ(edit.GetPrefix(), row.prefix) << row.mask;
        EXPECT_EQ(separatorsOf(edit), row.separators) << row.mask;
    }
}

TEST(NumericMask, TheOwnSeparatorsCountAsWell)
{
    NumericEdit edit;
    edit.SetSeparators(L',', L'\'');
    edit.SetMask(L"###'###,##");
    EXPECT_EQ(edit.GetMaxWholeDigits(), 6);
    EXPECT_EQ(edit.GetMaxDecimalPlaces(), 2);
    EXPECT_EQ(edit.GetDigitsInGroup(), 3);
    EXPECT_EQ(separatorsOf(edit), Separators(L',', L'\''));
    edit.SetMask(L"###,###.##");
    EXPECT_EQ(separatorsOf(edit), Separators(L'.', L',')) << "the characters of the mask are kept";
}

TEST(NumericMask, MakesNegativeNumbersAllowedAndRedraws)
{
    NumericEdit edit;
    edit.AllowNegative(false);
    edit.SetWindowText(L"123456.789");
    edit.SetMask(L"$ ###,###.##");
    EXPECT_TRUE(edit.IsNegativeAllowed());
    EXPECT_EQ(edit.GetText(), L"$ 123,456.78");
    edit.SetMask(L"####");
    EXPECT_EQ(edit.GetText(), L"1234");
}

TEST(NumericMask, NeverLeavesTheSeparatorsEqual)
{
    const PinnedSettings croatian{{RegionalQuery::DecimalPoint, L","}, {RegionalQuery::GroupSeparator, L"."}};
    NumericEdit edit(9, 4, croatian);
    edit.SetMask(L"#####.##");
    EXPECT_EQ(separatorsOf(edit), (Separators{L'.', L','}));
    edit.SetDigitsInGroup(3);
    EXPECT_EQ(edit.After(L"1234"), L"1,234");
    edit.SetWindowText(L"12.5");
    edit.SetSel(3, 3);
    edit.OnChar(L'3', 1, 0);
    EXPECT_EQ(edit.GetText(), L"12.35");
    EXPECT_EQ(edit.GetSel(), (Selection{4, 4})) << "behind the digit typed, not behind the next one";

    NumericEdit plain;
    plain.SetSeparators(L';', L'.');
    plain.SetMask(L"####.##");
    EXPECT_EQ(separatorsOf(plain), (Separators{L'.', L','}));
}

TEST(NumericMask, IsGivenBackFromTheRules)
{
    for (const wchar_t *mask : {L"$ ###,###.##", L"#", L"##.##", L"#,###,###", L"####.#"}) {
        NumericEdit edit;
        edit.SetMask(mask);
        EXPECT_EQ(edit.GetMask(), mask);
    }
    EXPECT_EQ(NumericEdit(4, 2).GetMask(), L"####.##");
    EXPECT_EQ(NumericEdit(0, 0).GetMask(), L"");
    EXPECT_EQ(NumericEdit(0, 2).GetMask(), L".##");
}

TEST(NumericMask, OfABoxWithoutALimitIsHeldToWhatABoxCanShow)
{
    EXPECT_EQ(NumericEdit(std::numeric_limits<int>::max(), 0).GetMask().size(), 32767u);
}

TEST(NumericCurrency, WithoutAnswersOfTheSettings)
{
    NumericEdit edit;
    SetUpCurrency(edit, CNoRegionalSettings());
    EXPECT_EQ(edit.GetPrefix(), L"$");
    EXPECT_EQ(edit.GetDigitsInGroup(), 3);
    EXPECT_EQ(edit.GetMaxDecimalPlaces(), 2);
    EXPECT_EQ(edit.GetMaxWholeDigits(), 9);
    EXPECT_EQ(edit.GetFlags(), 0xE00u);
    EXPECT_EQ(edit.After(L"1234567.891"), L"$1,234,567.89");
}

TEST(NumericCurrency, EachSettingOverridesItsDefault)
{
    const auto currency = [](const PinnedSettings &settings) {
        auto edit = std::make_unique<NumericEdit>();
        SetUpCurrency(*edit, settings);
        return edit;
    };
    EXPECT_EQ(currency({{RegionalQuery::CurrencySymbol, L"kn"}})->GetPrefix(), L"kn");
    EXPECT_EQ(currency({{RegionalQuery::MoneyGrouping, L"4;0"}})->GetDigitsInGroup(), 4);
    EXPECT_EQ(currency({{RegionalQuery::MoneyDecimalPlaces, L"0"}})->GetMaxDecimalPlaces(), 0);
    EXPECT_EQ(currency({{RegionalQuery::MoneySymbolPosition, L"0"}})->GetPrefix(), L"$");
    EXPECT_EQ(currency({{RegionalQuery::MoneySymbolPosition, L"2"}})->GetPrefix(), L"$ ");
    EXPECT_EQ(currency({{RegionalQuery::MoneySymbolPosition, L"1"}})->GetPrefix(), L"");
    EXPECT_EQ(currency({{RegionalQuery::MoneySymbolPosition, L"3"}})->GetPrefix(), L"");
    EXPECT_EQ(separatorsOf(*currency({{RegionalQuery::MoneyDecimalPoint, L";"}})), Separators(L';', L','));
    EXPECT_EQ(separatorsOf(*currency({{RegionalQuery::MoneyGroupSeparator, L"'"}})), Separators(L'.', L'\''));
}

TEST(NumericCurrency, OfASettingWithABlankBehindItsSymbol)
{
    NumericEdit edit;
    SetUpCurrency(edit, PinnedSettings{{RegionalQuery::CurrencySymbol, L"kn"},
                                       {RegionalQuery::MoneySymbolPosition, L"2"},
                                       {RegionalQuery::MoneyDecimalPoint, L","},
                                       {RegionalQuery::MoneyGroupSeparator, L"."}});
    EXPECT_EQ(edit.After(L"1234,567"), L"kn 1.234,56");
    EXPECT_EQ(edit.GetDouble(), 1234.56);
}
