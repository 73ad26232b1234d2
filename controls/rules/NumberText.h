// Numbers and texts, the same in every locale of the process.
#pragma once

#include <string>
#include <string_view>

namespace AMSEdit {

inline constexpr bool IsDigit(wchar_t character)
{
    return character >= L'0' && character <= L'9';
}

/// True for a character that shows; control characters are those that do not.
bool IsPrintable(wchar_t character);
/// White space cut from both ends.
std::wstring Trimmed(std::wstring_view text);

/// Six decimals behind a ".". With trimZeros trailing zeros are cut, and then a trailing ".".
std::wstring FixedText(double value, bool trimZeros);
/// Value of digits with a "." and a leading "-"; text without a number is 0, what is too large is infinite.
double DoubleOf(std::wstring_view text);
/// Leading whole number of a text, behind white space and a sign; 0 when there is none. Held to what an int takes.
int WholeNumberOf(std::wstring_view text);

} // namespace AMSEdit
