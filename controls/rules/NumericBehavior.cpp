#include "controls/rules/NumericBehavior.h"

#include "controls/rules/NumberText.h"
#include "controls/rules/SelectionSaver.h"

#include <algorithm>
#include <utility>

namespace AMSEdit {

namespace {

/// The absolute value; of the smallest number, which has none, the largest.
int AbsoluteOf(int n)
{
    if (n >= 0)
        return n;
    return n == std::numeric_limits<int>::min() ? std::numeric_limits<int>::max() : -n;
}

/// No box holds more digits than this, whatever it is told to allow.
constexpr int kMostDigits = 32767;

} // namespace

NumericBehavior::NumericBehavior(CEditBox &edit, int maxWholeDigits, int maxDecimalPlaces,
                                 const IRegionalSettings &settings)
    : Behavior(edit), m_nMaxWholeDigits(AbsoluteOf(maxWholeDigits)), m_nMaxDecimalPlaces(maxDecimalPlaces)
{
    if (maxWholeDigits < 0)
        StoreFlags(CannotBeNegative);
    m_chNegativeSign = QueryCharacter(settings, RegionalQuery::NegativeSign, m_chNegativeSign);
    m_chDecimalPoint = QueryCharacter(settings, RegionalQuery::DecimalPoint, m_chDecimalPoint);
    m_chGroupSeparator = QueryCharacter(settings, RegionalQuery::GroupSeparator, m_chGroupSeparator);
    MakeSeparatorsDiffer();
}

void NumericBehavior::MakeSeparatorsDiffer()
{
    if (m_chDecimalPoint == m_chGroupSeparator)
        m_chGroupSeparator = m_chDecimalPoint == L',' ? L'.' : L',';
}

void NumericBehavior::SetMaxWholeDigits(int n)
{
    const int digits = AbsoluteOf(n);
    const unsigned flags = n < 0 ? GetFlags() | CannotBeNegative : GetFlags() & ~CannotBeNegative;
    if (digits == m_nMaxWholeDigits && flags == GetFlags())
        return;
    m_nMaxWholeDigits = digits;
    StoreFlags(flags);
    Redraw();
}

void NumericBehavior::SetMaxDecimalPlaces(int n)
{
    if (std::exchange(m_nMaxDecimalPlaces, n) != n)
        Redraw();
}

void NumericBehavior::AllowNegative(bool allow)
{
    ModifyFlags(allow ? 0 : CannotBeNegative, allow ? CannotBeNegative : 0);
}

void NumericBehavior::SetDigitsInGroup(int n)
{
    if (std::exchange(m_nDigitsInGroup, n) != n)
        Redraw();
}

void NumericBehavior::SetSeparators(wchar_t decimalPoint, wchar_t groupSeparator)
{
    if (decimalPoint == m_chDecimalPoint && groupSeparator == m_chGroupSeparator)
        return;
    m_chDecimalPoint = decimalPoint;
    m_chGroupSeparator = groupSeparator;
    MakeSeparatorsDiffer();
    Redraw();
}

void NumericBehavior::GetSeparators(wchar_t *decimalPoint, wchar_t *groupSeparator) const
{
    if (decimalPoint)
        *decimalPoint = m_chDecimalPoint;
    if (groupSeparator)
        *groupSeparator = m_chGroupSeparator;
}

void NumericBehavior::SetPrefix(const std::wstring &prefix)
{
    if (prefix == m_strPrefix)
        return;
    ExchangePrefix(prefix);
}

void NumericBehavior::ExchangePrefix(const std::wstring &prefix)
{
    // The old prefix goes as a whole: a character of it could be read as part of the number.
    const std::wstring text = Edit().IsWindow() ? Edit().GetWindowText() : std::wstring();
    const std::size_t start = NumberStart(text);
    m_strPrefix = prefix;
    if (start > 0)
        Edit().SetWindowText(text.substr(start));
    Redraw();
}

void NumericBehavior::SetRange(double min, double max)
{
    m_dMinValue = min;
    m_dMaxValue = max;
    Redraw();
}

void NumericBehavior::GetRange(double *min, double *max) const
{
    if (min)
        *min = m_dMinValue;
    if (max)
        *max = m_dMaxValue;
}

void NumericBehavior::SetMask(const std::wstring &mask)
{
    m_nMaxWholeDigits = m_nMaxDecimalPlaces = m_nDigitsInGroup = 0;
    StoreFlags(GetFlags() & ~CannotBeNegative);
    std::wstring prefix;

    const int length = static_cast<int>(mask.size());
    int point = -1;
    for (int i = length - 1; i >= 0; --i) {
        const wchar_t character = mask[static_cast<std::size_t>(i)];
        if (character == L'#') {
            ++(point >= 0 ? m_nMaxWholeDigits : m_nMaxDecimalPlaces);
        } else if ((character == L'.' || character == m_chDecimalPoint) && point < 0) {
            point = i;
            m_chDecimalPoint = character;
        } else if (character == L',' || character == m_chGroupSeparator) {
            if (m_nDigitsInGroup == 0) {
                m_nDigitsInGroup = (point >= 0 ? point : length) - i - 1;
                m_chGroupSeparator = character;
            }
        } else {
            prefix = mask.substr(0, static_cast<std::size_t>(i) + 1);
            break;
        }
    }
    if (point < 0)
        m_nMaxWholeDigits = std::exchange(m_nMaxDecimalPlaces, 0);
    MakeSeparatorsDiffer();
    ExchangePrefix(prefix);
}

std::wstring NumericBehavior::GetMask() const
{
    const auto zeros = [](int count) {
        return std::wstring(static_cast<std::size_t>(std::clamp(count, 0, kMostDigits)), L'0');
    };
    std::wstring digits = zeros(m_nMaxWholeDigits);
    if (m_nMaxDecimalPlaces > 0)
        digits += m_chDecimalPoint + zeros(m_nMaxDecimalPlaces);
    std::wstring mask = GetSeparatedText(digits);
    std::ranges::replace(mask, L'0', L'#');
    return mask;
}

void NumericBehavior::SetDouble(double value, bool trimZeros)
{
    Edit().SetWindowText(GetDoubleText(value, trimZeros));
}

double NumericBehavior::GetDouble() const
{
    return DoubleOf(NumberOfBox(true));
}

void NumericBehavior::SetInt(int value)
{
    Edit().SetWindowText(std::to_wstring(value));
}

int NumericBehavior::GetInt() const
{
    return WholeNumberOf(NumberOfBox(true));
}

std::wstring NumericBehavior::GetDoubleText(double value, bool trimZeros)
{
    return FixedText(value, trimZeros);
}

std::size_t NumericBehavior::NumberStart(std::wstring_view text) const
{
    // A prefix such as "B/." would otherwise give its point to the number.
    return text.starts_with(m_strPrefix) ? m_strPrefix.size() : 0;
}

std::wstring NumericBehavior::NumberOfBox(bool useMathSymbols) const
{
    const std::wstring text = Edit().GetWindowText();
    return GetNumericText(std::wstring_view(text).substr(NumberStart(text)), useMathSymbols);
}

int NumericBehavior::CountSeparators(std::wstring_view text) const
{
    return static_cast<int>(std::ranges::count(text.substr(NumberStart(text)), m_chGroupSeparator));
}

std::wstring NumericBehavior::GetNumericText(std::wstring_view text, bool useMathSymbols) const
{
    std::wstring number;
    number.reserve(text.size() + 1);
    bool negative = false, point = false;
    for (const wchar_t character : text) {
        if (IsDigit(character)) {
            number += character;
        } else if (character == m_chNegativeSign) {
            negative = true;
        } else if (character == m_chDecimalPoint && !point) {
            point = true;
            number += useMathSymbols ? L'.' : m_chDecimalPoint;
        }
    }
    if (negative)
        number.insert(number.begin(), useMathSymbols ? L'-' : m_chNegativeSign);
    return number;
}

std::wstring NumericBehavior::GetSeparatedText(std::wstring_view text) const
{
    const std::wstring number = GetNumericText(text, false);
    const std::size_t point = std::min(number.find(m_chDecimalPoint), number.size());
    std::wstring whole = number.substr(0, point);
    if (m_nDigitsInGroup > 0) {
        const long long first = whole.starts_with(m_chNegativeSign) ? 1 : 0;
        for (long long position = static_cast<long long>(whole.size()) - (m_nDigitsInGroup + 1LL); position >= first;
             position -= m_nDigitsInGroup)
            whole.insert(static_cast<std::size_t>(position) + 1, 1, m_chGroupSeparator);
    }
    if (number.empty())
        return whole;
    return m_strPrefix + whole.append(number, point);
}

std::wstring NumericBehavior::GetValidText() const
{
    const std::wstring text = Edit().GetWindowText();
    std::wstring number;
    number.reserve(text.size() + 1);
    bool negative = false;
    long long kept = 0, point = -1;
    for (const wchar_t character : std::wstring_view(text).substr(NumberStart(text))) {
        if (character == m_chNegativeSign && IsNegativeAllowed()) {
            negative = true;
        } else if (IsDigit(character)) {
            if (point < 0 && kept == m_nMaxWholeDigits)
                continue;
            if (point >= 0 && kept > point + m_nMaxDecimalPlaces)
                break;
            number += character;
            ++kept;
        } else if (character == m_chDecimalPoint && point < 0) {
            if (m_nMaxDecimalPlaces == 0)
                break;
            point = kept++;
            number += character;
        }
    }
    if (negative)
        number.insert(number.begin(), m_chNegativeSign);
    return GetSeparatedText(number);
}

void NumericBehavior::AdjustSeparators(int oldCount)
{
    SelectionSaver selection(&Edit());
    const std::wstring valid = GetValidText();
    if (valid != Edit().GetWindowText())
        Edit().SetWindowText(valid);
    const int count = CountSeparators(valid);
    if (count != oldCount && selection.GetStart() > static_cast<int>(m_strPrefix.size()))
        selection.MoveBy(count - oldCount);
}

void SetUpCurrency(NumericBehavior &behavior, const IRegionalSettings &settings)
{
    std::wstring prefix = settings.Query(RegionalQuery::CurrencySymbol).value_or(L"$");
    switch (QueryNumber(settings, RegionalQuery::MoneySymbolPosition, 0)) {
    case 0:
        break;
    case 2:
        prefix += L' ';
        break;
    default:
        prefix.clear();
    }
    wchar_t decimalPoint = 0, groupSeparator = 0;
    behavior.GetSeparators(&decimalPoint, &groupSeparator);
    decimalPoint = QueryCharacter(settings, RegionalQuery::MoneyDecimalPoint, decimalPoint);
    groupSeparator = QueryCharacter(settings, RegionalQuery::MoneyGroupSeparator, groupSeparator);

    behavior.SetDigitsInGroup(QueryNumber(settings, RegionalQuery::MoneyGrouping, 3));
    behavior.SetMaxDecimalPlaces(QueryNumber(settings, RegionalQuery::MoneyDecimalPlaces, 2));
    behavior.SetPrefix(prefix);
    behavior.SetSeparators(decimalPoint, groupSeparator);
    behavior.ModifyFlags(PadZerosAfterDecimal | NoPadIfEmpty | TrimLeadingZeros, 0);
}

} // namespace AMSEdit
