#include "definition/ControlIds.h"
#include "definition/NumericFields.h"

#include <gtest/gtest.h>

#include <cmath>
#include <regex>

namespace {

const CNumericField &coefficient = NumericField(ControlId::kEditCoefficient);
const CNumericField &area = NumericField(ControlId::kEditArea);
const CNumericField &zoom = NumericField(ControlId::kEditZoom);
const CNumericField &number = NumericField(ControlId::kEditNumber);

TEST(NumericFields, EachEditHasItsWholeDigitsDecimalsAndSign)
{
    struct Row {
        int control, whole, decimals;
        bool negative;
    };
    constexpr Row kRows[] = {
        {218, 4, 4, false}, {215, 4, 4, true},  {213, 8, 4, true},  {220, 8, 4, true},
        {216, 8, 4, true},  {222, 4, 4, false}, {326, 8, 0, false},
    };
    EXPECT_EQ(DefinitionNumericFields().size(), std::size(kRows));
    for (const Row &row : kRows) {
        const CNumericField &field = NumericField(row.control);
        EXPECT_EQ(field.m_nWholeDigits, row.whole) << row.control;
        EXPECT_EQ(field.m_nDecimals, row.decimals) << row.control;
        EXPECT_EQ(field.m_bNegative, row.negative) << row.control;
    }
}

TEST(NumberTexts, TrailingZerosAndALonePointAreCut)
{
    EXPECT_EQ(NumberText(1000.0, area), L"1000");
    EXPECT_EQ(NumberText(1.5, area), L"1.5");
    EXPECT_EQ(NumberText(0.0, area), L"0");
    EXPECT_EQ(NumberText(0.25, area), L"0.25");
}

TEST(NumberTexts, SurplusDecimalsAreCutNotRounded)
{
    EXPECT_EQ(NumberText(1.23456, area), L"1.2345");
    EXPECT_EQ(NumberText(0.99999, area), L"0.9999");
}

TEST(NumberTexts, SurplusWholeDigitsLoseTheTail)
{
    EXPECT_EQ(NumberText(123456.0, coefficient), L"1234");
    EXPECT_EQ(NumberText(-1e6, coefficient), L"-1000"); // the marker for a value that is not known
}

TEST(NumberTexts, AFieldWithoutNegativesDropsTheSignAndOneWithoutDecimalsTheDecimals)
{
    EXPECT_EQ(NumberText(-2.5, zoom), L"2.5");
    EXPECT_EQ(NumberText(-2.5, area), L"-2.5");
    EXPECT_EQ(NumberText(7.9, number), L"7");
}

TEST(NumberTexts, WhatIsNoNumberShowsNothing)
{
    EXPECT_EQ(NumberText(std::nan(""), area), L"");
    EXPECT_EQ(NumberText(HUGE_VAL, area), L"");
}

TEST(NumberTexts, TheLargestNumberFits)
{
    EXPECT_EQ(NumberText(-1.7976931348623157e308, area), L"-17976931");
}

TEST(NumberValues, AnEmptyTextIsZero)
{
    EXPECT_EQ(NumberValue(L""), 0.0);
    EXPECT_EQ(NumberValue(L"."), 0.0);
    EXPECT_EQ(NumberValue(L"-"), 0.0);
}

TEST(NumberValues, ThePointIsTheDecimalPointAndCommasCountForNothing)
{
    EXPECT_EQ(NumberValue(L"1.5"), 1.5);
    EXPECT_EQ(NumberValue(L"1,234.5"), 1234.5);
    EXPECT_EQ(NumberValue(L".5"), 0.5);
    EXPECT_EQ(NumberValue(L"-2"), -2.0);
    EXPECT_EQ(NumberValue(L"1.2.3"), 1.23);
}

TEST(NumberValues, TextAndValueAgreeBothWays)
{
    for (const double value : {0.0, 0.0001, 0.35, 1.0, 99.9999, 1234.5678, -17.25})
        EXPECT_EQ(NumberValue(NumberText(value, area)), value) << value;
}

TEST(Typing, DigitsBeyondTheFieldAreNotTaken)
{
    const std::wregex pattern(TypingPattern(coefficient));
    for (const wchar_t *good : {L"", L"0.35", L"-1", L"1234.5678", L".5", L"7."})
        EXPECT_TRUE(std::regex_match(good, pattern));
    for (const wchar_t *bad : {L"12345", L"1.23456", L"abc", L"1e3", L"1 2", L"--1"})
        EXPECT_FALSE(std::regex_match(bad, pattern));
    EXPECT_FALSE(std::regex_match(L"-1", std::wregex(TypingPattern(zoom))));
    EXPECT_FALSE(std::regex_match(L"1.5", std::wregex(TypingPattern(number))));
}

} // namespace
