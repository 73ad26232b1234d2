// What a numeric edit does when the focus leaves, and its range.
#include "controls/rules/NumberText.h"
#include "controls/rules/NumericBehavior.h"
#include "controls/rules/SelectionSaver.h"

#include <algorithm>

namespace AMSEdit {

namespace {

/// The padding flags, and all that act at focus loss.
constexpr unsigned kFocusLossFlags = 0x0FFF;
/// No box is padded beyond this.
constexpr std::size_t kMostPadding = 32767;

std::size_t PaddedCount(int digits)
{
    return std::min(static_cast<std::size_t>(std::max(digits, 0)), kMostPadding);
}

} // namespace

void NumericBehavior::OnKillFocus(IEditSurface *newFocus)
{
    Behavior::OnKillFocus(newFocus);
    const std::wstring number = NumberOfBox(true);
    std::wstring work = number;
    if (HasFlag(TrimLeadingZeros) && !number.empty())
        work = TextWithoutLeadingZeros(work);
    else if (!(GetFlags() & kFocusLossFlags) || (number.empty() && HasFlag(NoPadIfEmpty)))
        return;
    work = PaddedText(work);
    if (work != number) {
        const SelectionSaver selection(&Edit());
        Edit().SetWindowText(InOwnSymbols(work));
    }

    ValueState state = ValueState::Empty;
    if (!work.empty())
        state = IsValid() ? ValueState::Valid : ValueState::Invalid;
    ActOnLostFocus(
        state, [this] { AdjustWithinRange(); }, [this] { ShowErrorMessage(); });
}

std::wstring NumericBehavior::TextWithoutLeadingZeros(std::wstring text) const
{
    // The sign and the point are looked for as the box writes them, though the text has "-" and "."
    std::wstring sign;
    if (text.starts_with(m_chNegativeSign)) {
        sign = m_chNegativeSign;
        text.erase(0, 1);
    }
    text.erase(0, text.find_first_not_of(L'0'));
    if (text.empty() || text.starts_with(m_chDecimalPoint))
        text.insert(text.begin(), L'0');
    return sign + text;
}

std::wstring NumericBehavior::PaddedText(std::wstring text) const
{
    if (HasFlag(PadZerosAfterDecimal) && m_nMaxDecimalPlaces >= 1) {
        if (text.find(L'.') == std::wstring::npos) {
            if (text.empty() || text == L"-")
                text = L"0";
            text += L'.';
        }
        const std::size_t decimals = text.size() - text.find(L'.') - 1;
        const std::size_t wanted = PaddedCount(m_nMaxDecimalPlaces);
        text.append(wanted - std::min(wanted, decimals), L'0');
    }
    if (HasFlag(PadZerosBeforeDecimal) && m_nMaxWholeDigits >= 1) {
        const std::size_t first = text.starts_with(L'-') ? 1 : 0;
        const std::size_t digits = std::min(text.find(L'.'), text.size()) - first;
        const std::size_t wanted = PaddedCount(m_nMaxWholeDigits);
        text.insert(first, wanted - std::min(wanted, digits), L'0');
    }
    return text;
}

std::wstring NumericBehavior::InOwnSymbols(std::wstring text) const
{
    std::ranges::replace(text, L'.', m_chDecimalPoint);
    std::ranges::replace(text, L'-', m_chNegativeSign);
    return text;
}

bool NumericBehavior::IsValid() const
{
    const double value = GetDouble();
    return value >= m_dMinValue && value <= m_dMaxValue;
}

void NumericBehavior::AdjustWithinRange()
{
    if (IsValid())
        return;
    if (Edit().GetWindowText().empty())
        Edit().SetWindowText(L" "); // a set that ends in an empty box
    else
        Redraw();
    const double value = GetDouble();
    if (value < m_dMinValue)
        SetDouble(m_dMinValue, true);
    else if (value > m_dMaxValue)
        SetDouble(m_dMaxValue, true);
}

void NumericBehavior::ShowErrorMessage()
{
    const bool hasMin = m_dMinValue > -std::numeric_limits<double>::max();
    const bool hasMax = m_dMaxValue < std::numeric_limits<double>::max();
    const std::wstring min = GetDoubleText(m_dMinValue, true), max = GetDoubleText(m_dMaxValue, true);
    std::wstring message = L"Please specify a valid numeric value.";
    if (hasMin && hasMax)
        message = L"Please specify a numeric value between " + min + L" and " + max + L".";
    else if (hasMin)
        message = L"Please specify a numeric value greater than or equal to " + min + L".";
    else if (hasMax)
        message = L"Please specify a numeric value less than or equal to " + max + L".";
    Edit().AfxMessageBox(message, kWarningExclamation);
}

} // namespace AMSEdit
