#include "catalog/NumberText.h"

#include "catalog/OwnedLocale.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <locale.h>

namespace {

bool IsBlank(wchar_t c)
{
    return c == L' ' || (c >= L'\t' && c <= L'\r');
}

bool IsDigit(wchar_t c)
{
    return c >= L'0' && c <= L'9';
}

/// Goes over the parts of a number.
class CNumberScan {
public:
    explicit CNumberScan(std::wstring_view text) : m_text(text) {}
    std::size_t At() const { return m_at; }
    bool Take(wchar_t c) { return m_at < m_text.size() && m_text[m_at] == c && ++m_at; }
    bool TakeSign() { return Take(L'-') || Take(L'+'); }
    void SkipBlanks()
    {
        while (m_at < m_text.size() && IsBlank(m_text[m_at]))
            ++m_at;
    }
    std::size_t TakeDigits()
    {
        const std::size_t from = m_at;
        while (m_at < m_text.size() && IsDigit(m_text[m_at]))
            ++m_at;
        return m_at - from;
    }
    void TakeExponent()
    {
        const std::size_t from = m_at;
        if (!Take(L'e') && !Take(L'E'))
            return;
        TakeSign();
        if (TakeDigits() == 0)
            m_at = from;
    }

private:
    std::wstring_view m_text;
    std::size_t m_at = 0;
};

} // namespace

TextNumber ReadDouble(std::wstring_view text)
{
    CNumberScan scan(text);
    scan.SkipBlanks();
    const std::size_t start = scan.At();
    scan.TakeSign();
    std::size_t digits = scan.TakeDigits();
    if (scan.Take(L'.'))
        digits += scan.TakeDigits();
    if (digits == 0)
        return {};
    scan.TakeExponent();
    std::string number;
    for (const wchar_t c : text.substr(start, scan.At() - start))
        number.push_back(static_cast<char>(c));
    static const COwnedLocale plain(LC_ALL_MASK, "C");
    return {strtod_l(number.c_str(), nullptr, plain.Get()), scan.At()};
}

int ReadInt(std::wstring_view text)
{
    CNumberScan scan(text);
    scan.SkipBlanks();
    const bool negative = scan.Take(L'-');
    if (!negative)
        scan.Take(L'+');
    const std::size_t start = scan.At();
    const std::size_t digits = scan.TakeDigits();
    constexpr long long beyond = 1LL + std::numeric_limits<int>::max();
    long long value = 0;
    for (const wchar_t c : text.substr(start, digits))
        value = std::min(value * 10 + (c - L'0'), beyond);
    return static_cast<int>(negative ? -value : std::min(value, beyond - 1));
}

double ParseNumber(std::wstring text)
{
    text.erase(text.find_last_not_of(L' ') + 1);
    std::ranges::replace(text, L',', L'.');
    if (text.empty())
        return kMissingNumber;
    const TextNumber number = ReadDouble(text);
    return number.length == text.size() && std::isfinite(number.value) ? number.value : kMissingNumber;
}

std::wstring FixedDecimals(double value, int decimals)
{
    std::array<char, std::numeric_limits<double>::max_exponent10 + 16> digits;
    const auto end =
        std::to_chars(digits.data(), digits.data() + digits.size(), value, std::chars_format::fixed, decimals).ptr;
    return {digits.data(), end};
}

std::wstring FourDecimals(double value)
{
    return FixedDecimals(value, 4);
}
