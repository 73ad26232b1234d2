#include "definition/NumericFields.h"

#include "definition/ControlIds.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <charconv>
#include <cmath>
#include <cwchar>

namespace {

constexpr auto kFields = std::to_array<CNumericField>({
    {ControlId::kEditZoom, 4, 4, false},
    {ControlId::kEditCoefficient, 4, 4, true},
    {ControlId::kEditArea, 8, 4, true},
    {ControlId::kEditDensity, 8, 4, true},
    {ControlId::kEditSlope, 8, 4, true},
    {ControlId::kEditIntensity, 4, 4, false},
    {ControlId::kEditNumber, 8, 0, false},
});

/// Six decimals of the largest double and its sign.
constexpr int kLongestNumber = 330;

} // namespace

std::span<const CNumericField> DefinitionNumericFields()
{
    return kFields;
}

const CNumericField &NumericField(int controlId)
{
    const auto found = std::ranges::find(kFields, controlId, &CNumericField::m_nControl);
    assert(found != kFields.end());
    return *found;
}

std::wstring NumberText(double value, const CNumericField &field)
{
    if (!std::isfinite(value))
        return {};
    std::array<char, kLongestNumber> buffer;
    const auto written =
        std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, std::chars_format::fixed, 6);
    std::string_view text(buffer.data(), static_cast<std::size_t>(written.ptr - buffer.data()));
    text = text.substr(0, text.find_last_not_of('0') + 1);
    if (text.ends_with('.'))
        text.remove_suffix(1);

    const bool negative = text.starts_with('-');
    if (negative)
        text.remove_prefix(1);
    const std::size_t point = std::min(text.find('.'), text.size());
    std::string_view whole =
        text.substr(0, std::min<std::size_t>(point, static_cast<std::size_t>(field.m_nWholeDigits)));
    std::string_view decimals = text.substr(std::min(point + 1, text.size()));
    decimals = decimals.substr(0, static_cast<std::size_t>(field.m_nDecimals));

    std::wstring result;
    if (negative && field.m_bNegative)
        result += L'-';
    result.append(whole.begin(), whole.end());
    if (!decimals.empty()) {
        result += L'.';
        result.append(decimals.begin(), decimals.end());
    }
    return result;
}

double NumberValue(std::wstring_view text)
{
    std::string number;
    bool negative = false, point = false;
    for (const wchar_t character : text) {
        if (character >= L'0' && character <= L'9')
            number += static_cast<char>(character);
        else if (character == L'-')
            negative = true;
        else if (character == L'.' && !point) {
            point = true;
            number += '.';
        }
    }
    double value = 0.0;
    std::from_chars(number.data(), number.data() + number.size(), value);
    return negative ? -value : value;
}

std::wstring TypingPattern(const CNumericField &field)
{
    std::wstring pattern = field.m_bNegative ? L"-?" : L"";
    pattern += L"\\d{0," + std::to_wstring(field.m_nWholeDigits) + L"}";
    if (field.m_nDecimals > 0)
        pattern += L"(\\.\\d{0," + std::to_wstring(field.m_nDecimals) + L"})?";
    return pattern;
}
