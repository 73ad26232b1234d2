#include "controls/rules/NumberText.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cwctype>
#include <limits>

namespace AMSEdit {

namespace {

/// Six decimals of the largest double, its sign and its point.
constexpr std::size_t kLongestNumber = 330;

/// Digits that stand in a row of this length fit any figure of a double.
constexpr std::size_t kShortNumber = 64;

} // namespace

bool IsPrintable(wchar_t character)
{
    // The C locale of a process may know ASCII alone; a character of another script shows all the same.
    if (character < 0x80)
        return character >= 0x20 && character != 0x7f;
    return character >= 0xa0;
}

std::wstring Trimmed(std::wstring_view text)
{
    const auto isSpace = [](wchar_t character) { return std::iswspace(static_cast<std::wint_t>(character)) != 0; };
    while (!text.empty() && isSpace(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && isSpace(text.back()))
        text.remove_suffix(1);
    return std::wstring(text);
}

std::wstring FixedText(double value, bool trimZeros)
{
    std::array<char, kLongestNumber> buffer;
    const auto written =
        std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, std::chars_format::fixed, 6);
    std::string_view text(buffer.data(), static_cast<std::size_t>(written.ptr - buffer.data()));
    if (trimZeros) {
        while (text.ends_with('0'))
            text.remove_suffix(1);
        while (text.ends_with('.'))
            text.remove_suffix(1);
    }
    return std::wstring(text.begin(), text.end());
}

double DoubleOf(std::wstring_view text)
{
    const bool negative = text.starts_with(L'-');
    if (negative)
        text.remove_prefix(1);
    std::array<char, kShortNumber> buffer;
    std::string longer;
    char *digits = buffer.data();
    if (text.size() > buffer.size()) {
        longer.resize(text.size());
        digits = longer.data();
    }
    std::size_t length = 0;
    for (const wchar_t character : text) {
        if (!IsDigit(character) && character != L'.')
            break;
        digits[length++] = static_cast<char>(character);
    }
    double value = 0.0;
    const auto read = std::from_chars(digits, digits + length, value);
    if (read.ec == std::errc::result_out_of_range) {
        const std::string_view number(digits, length);
        const bool whole = number.substr(0, number.find('.')).find_first_not_of('0') != std::string_view::npos;
        value = whole ? std::numeric_limits<double>::infinity() : 0.0;
    }
    return negative ? -value : value;
}

int WholeNumberOf(std::wstring_view text)
{
    const auto isSpace = [](wchar_t character) { return std::iswspace(static_cast<std::wint_t>(character)) != 0; };
    while (!text.empty() && isSpace(text.front()))
        text.remove_prefix(1);
    const bool negative = text.starts_with(L'-');
    if (negative || text.starts_with(L'+'))
        text.remove_prefix(1);
    constexpr long long kLargest = std::numeric_limits<int>::max();
    long long value = 0;
    for (const wchar_t character : text) {
        if (!IsDigit(character))
            break;
        value = value * 10 + (character - L'0');
        if (value > kLargest)
            return negative ? std::numeric_limits<int>::min() : std::numeric_limits<int>::max();
    }
    return static_cast<int>(negative ? -value : value);
}

} // namespace AMSEdit
