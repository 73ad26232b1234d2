// What each key does in a numeric edit.
#include "controls/rules/NumberText.h"
#include "controls/rules/NumericBehavior.h"

#include <algorithm>

namespace AMSEdit {

/// The box as a key finds it.
struct NumericBehavior::Typing {
    std::wstring text;
    Selection selection;
    int length = 0;
    int prefixLength = 0;
    int point = -1; ///< position of the decimal point in the text, -1 for none
    int separators = 0;
    int negative = 0; ///< 1 for a negative number
    int wholeDigits = 0;
    int decimals = 0;

    bool HasPoint() const { return point >= 0; }
    bool IsBehindPoint() const { return HasPoint() && selection.start > point; }
    wchar_t At(int position) const { return position < length ? text[static_cast<std::size_t>(position)] : L'\0'; }
};

NumericBehavior::Typing NumericBehavior::LookAtBox() const
{
    Typing typing;
    typing.text = Edit().GetWindowText();
    typing.selection = Edit().GetSel();
    typing.length = static_cast<int>(typing.text.size());
    typing.prefixLength = static_cast<int>(m_strPrefix.size());
    for (std::size_t i = NumberStart(typing.text); i < typing.text.size(); ++i) {
        const wchar_t character = typing.text[i];
        if (IsDigit(character))
            ++(typing.HasPoint() ? typing.decimals : typing.wholeDigits);
        else if (character == m_chNegativeSign)
            typing.negative = 1;
        else if (character == m_chDecimalPoint && !typing.HasPoint())
            typing.point = static_cast<int>(i);
        else if (character == m_chGroupSeparator)
            ++typing.separators;
    }
    return typing;
}

void NumericBehavior::EnterNormally(const Key &key)
{
    if (ShouldEnter(key.character))
        DefaultChar(key.character, key.repeat, key.keyFlags);
}

void NumericBehavior::EnterAndAdjust(const Key &key, int separators)
{
    EnterNormally(key);
    AdjustSeparators(separators);
}

void NumericBehavior::Settle()
{
    const std::wstring text = Edit().GetWindowText(), valid = GetValidText();
    if (valid == text)
        return;
    const auto isSeparator = [this](wchar_t character) { return character == m_chGroupSeparator; };
    const auto sameDigit = [&](int position) {
        auto left = position - std::count_if(text.begin(), text.begin() + position, isSeparator);
        auto at = valid.begin();
        for (; left > 0 && at != valid.end(); ++at)
            left -= isSeparator(*at) ? 0 : 1;
        return static_cast<int>(at - valid.begin());
    };
    const Selection selection = Edit().GetSel();
    Edit().SetWindowText(valid);
    Edit().SetSel(sameDigit(selection.start), sameDigit(selection.end), true);
}

void NumericBehavior::OnChar(wchar_t character, unsigned repeat, unsigned keyFlags)
{
    if (IsReadOnly())
        return;
    const Key key{character, repeat, keyFlags};
    const Typing typing = LookAtBox();
    if (!IsPrintable(character))
        EnterAndAdjust(key, typing.separators);
    else if (typing.selection.start < typing.prefixLength)
        TypeInPrefix(typing, key);
    else if (character == m_chNegativeSign && IsNegativeAllowed())
        TypeSign(typing, key);
    else if (character == m_chDecimalPoint && m_nMaxDecimalPlaces >= 1)
        TypeDecimalPoint(typing, key);
    else if (IsDigit(character))
        TypeDigit(typing, key);
}

void NumericBehavior::TypeInPrefix(const Typing &typing, const Key &key)
{
    const auto [start, end] = typing.selection;
    const wchar_t character = key.character;
    if (character == m_strPrefix[static_cast<std::size_t>(start)] && ShouldEnter(character)) {
        if (typing.length <= start)
            DefaultChar(character, key.repeat, key.keyFlags);
        else
            Overwrite(typing.selection, typing.length, std::wstring(1, character));
        // A prefix under way stays, though an empty number has none.
        if (!m_strPrefix.starts_with(Edit().GetWindowText()))
            Settle();
        return;
    }
    if (!IsDigit(character) && character != m_chNegativeSign && character != m_chDecimalPoint)
        return;
    if (!ShouldEnter(character))
        return;
    Edit().SetSel(start, end == typing.length ? end : typing.prefixLength);
    Edit().ReplaceSel(m_strPrefix.substr(static_cast<std::size_t>(start)), true);
    // A box too short for its prefix would come here for ever.
    if (Edit().GetSel().start >= typing.prefixLength)
        OnChar(character, key.repeat, key.keyFlags);
}

void NumericBehavior::TypeSign(const Typing &typing, const Key &key)
{
    const auto [start, end] = typing.selection;
    const int front = typing.prefixLength;
    const bool hasSign = typing.At(front) == m_chNegativeSign;
    const std::wstring sign(1, m_chNegativeSign);
    if (start == front) {
        if (!hasSign)
            EnterNormally(key);
        else if (ShouldEnter(key.character))
            Overwrite(typing.selection, typing.length, sign);
    } else if (ShouldEnter(key.character)) {
        Edit().SetSel(front, hasSign ? front + 1 : front);
        Edit().ReplaceSel(hasSign ? std::wstring() : sign, true);
        const int moved = hasSign ? -1 : 1;
        Edit().SetSel(start + moved, end + moved);
    }
    Settle();
}

void NumericBehavior::TypeDecimalPoint(const Typing &typing, const Key &key)
{
    const auto [start, end] = typing.selection;
    if (!typing.HasPoint() || (start <= typing.point && end > typing.point))
        EnterAndAdjust(key, typing.separators);
    else if (ShouldEnter(key.character))
        Edit().SetSel(typing.point + 1, typing.point + 1);
}

void NumericBehavior::TypeDigit(const Typing &typing, const Key &key)
{
    const long long wholeEnd =
        static_cast<long long>(m_nMaxWholeDigits) + typing.negative + typing.separators + typing.prefixLength;
    if (typing.IsBehindPoint()) {
        TypeDecimal(typing, key);
    } else if (typing.selection.start == wholeEnd) {
        TypeBehindFullWhole(typing, key);
    } else if (typing.wholeDigits == m_nMaxWholeDigits) {
        if (!ShouldEnter(key.character))
            return;
        Selection selection = typing.selection;
        if (typing.At(selection.start) == m_chGroupSeparator)
            ++selection.start;
        Overwrite(selection, typing.length, std::wstring(1, key.character));
        Settle();
    } else {
        EnterAndAdjust(key, typing.separators);
    }
}

void NumericBehavior::TypeDecimal(const Typing &typing, const Key &key)
{
    if (typing.decimals < m_nMaxDecimalPlaces) {
        EnterAndAdjust(key, typing.separators);
    } else if (typing.selection.start <= static_cast<long long>(typing.point) + m_nMaxDecimalPlaces &&
               ShouldEnter(key.character)) {
        Overwrite(typing.selection, typing.length, std::wstring(1, key.character));
        Settle();
    }
}

void NumericBehavior::TypeBehindFullWhole(const Typing &typing, const Key &key)
{
    if (!HasFlag(DecimalAfterMaxWhole) || m_nMaxDecimalPlaces < 1 || !ShouldEnter(key.character))
        return;
    const auto [start, end] = typing.selection;
    Edit().SetSel(start, end == typing.length ? end : start + 2);
    Edit().ReplaceSel({m_chDecimalPoint, key.character}, true);
    Settle();
}

void NumericBehavior::OnKeyDown(unsigned key, unsigned repeat, unsigned keyFlags)
{
    if (key != kKeyDelete) {
        Behavior::OnKeyDown(key, repeat, keyFlags);
        return;
    }
    const Typing typing = LookAtBox();
    const auto [start, end] = typing.selection;
    if (start < typing.prefixLength && typing.length > typing.prefixLength) {
        if (end == typing.length) {
            Behavior::OnKeyDown(key, repeat, keyFlags);
            Settle();
        }
        return;
    }
    if (typing.selection.IsCaret() && typing.At(start) == m_chGroupSeparator)
        Behavior::OnKeyDown(kKeyRight, 1, 0);
    Behavior::OnKeyDown(key, repeat, keyFlags);
    AdjustSeparators(typing.separators);
    if (end == typing.length)
        Edit().SetSel(start, start);
}

} // namespace AMSEdit
