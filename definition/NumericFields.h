// Numbers in the dialog's edits: how many digits each takes, and how text becomes a number and back. No widgets.
#pragma once

#include <span>
#include <string>
#include <string_view>

/// One numeric edit. The decimal point is "." whatever the locale, "," is a group separator that counts for nothing.
struct CNumericField {
    int m_nControl;
    int m_nWholeDigits;
    int m_nDecimals;
    bool m_bNegative;
};

/// The numeric edits of the definition dialog.
std::span<const CNumericField> DefinitionNumericFields();
/// The field of that control; a control without one is a mistake of the program and asserts.
const CNumericField &NumericField(int controlId);

/// Text of a value: six decimals with trailing zeros cut, then held to the field's digits. Surplus digits are cut,
/// never rounded: whole digits lose the tail.
std::wstring NumberText(double value, const CNumericField &field);
/// Value of a text: digits, a first "." and a "-" anywhere count, all else is passed over. Empty text is 0.
double NumberValue(std::wstring_view text);
/// What may be typed in the field, as a regular expression.
std::wstring TypingPattern(const CNumericField &field);
