#include "controls/rules/FixedFieldBehavior.h"

#include "controls/rules/NumberText.h"
#include "controls/rules/SelectionSaver.h"

#include <algorithm>

namespace AMSEdit {

void FixedFieldBehavior::OnKillFocus(IEditSurface *newFocus)
{
    Behavior::OnKillFocus(newFocus);
    if (!(GetFlags() & kKillFocusFlags))
        return;
    const bool empty = Text().empty();
    ValueState state = ValueState::Empty;
    if (!empty)
        state = IsValid() ? ValueState::Valid : ValueState::Invalid;
    const auto repair = [&] {
        if (empty)
            Edit().SetWindowText(L" "); // not empty, so that its valid form is a value
        else
            Redraw();
    };
    ActOnLostFocus(state, repair, [this] { ShowErrorMessage(); });
}

bool FixedFieldBehavior::Enter(const TypedKey &key)
{
    if (!ShouldEnter(key.character))
        return false;
    const int place = Place();
    if (place == Length()) {
        DefaultChar(key.character, key.repeat, key.keyFlags);
    } else {
        Edit().SetSel(place, place + 1);
        Edit().ReplaceSel(std::wstring(1, key.character), true);
    }
    return true;
}

void FixedFieldBehavior::Write(int start, int end, const std::wstring &text)
{
    const SelectionSaver selection(&Edit());
    Edit().SetSel(start, end, true);
    Edit().ReplaceSel(text, true);
}

bool FixedFieldBehavior::TypeFirstDigit(const TwoDigitField &field, const TypedKey &key)
{
    if (field.first.Take(key.character)) {
        if (!Enter(key))
            return false;
        const std::wstring text = Text();
        const std::size_t second = static_cast<std::size_t>(field.start) + 1;
        if (second >= text.size())
            return true;
        const DigitLimits limits = field.second(key.character);
        if (!limits.Take(text[second])) {
            Write(field.start + 1, field.start + 2, std::wstring(1, limits.smallest));
            Edit().SetSel(field.start + 1, field.start + 2);
        }
        return true;
    }
    const bool pads = Place() == Length() && field.first.smallest == L'0' &&
                      field.second(L'0').Take(key.character) && //
                      ShouldEnter(key.character);
    if (pads)
        Edit().ReplaceSel(std::wstring(L"0") + key.character, true);
    return pads;
}

bool FixedFieldBehavior::TypeSecondDigit(const TwoDigitField &field, const TypedKey &key, wchar_t separator)
{
    const std::wstring text = Text();
    const wchar_t first = text[static_cast<std::size_t>(field.start)];
    if (field.second(first).Take(key.character))
        return Enter(key);
    const bool pads = key.character == separator && Place() == static_cast<int>(text.size()) &&
                      field.first.smallest == L'0' && field.second(L'0').Take(first) && ShouldEnter(key.character);
    if (pads) {
        Edit().SetSel(field.start, field.start + 1);
        Edit().ReplaceSel(std::wstring(L"0") + first + separator, true);
    }
    return pads;
}

bool FixedFieldBehavior::TypeSeparator(const TypedKey &key, wchar_t separator, bool nextFieldTakesIt)
{
    if (key.character == separator)
        return Enter(key);
    if (!nextFieldTakesIt || !ShouldEnter(key.character))
        return false;
    const int place = Place();
    Edit().SetSel(place, place + 1);
    Edit().ReplaceSel(std::wstring(1, separator), true);
    // A box too short for its fields would come here for ever.
    if (Place() > place)
        HandleAgain(key);
    return true;
}

void FixedFieldBehavior::StoreRange(CalendarRange &range, const CalendarTime &min, const CalendarTime &max)
{
    range = {min, max};
    Redraw();
}

void FixedFieldBehavior::StoreSeparator(wchar_t &separator, wchar_t other, std::span<const int> places)
{
    std::wstring text = Text();
    bool changed = false;
    for (const int place : places) {
        const auto at = static_cast<std::size_t>(place);
        if (at < text.size() && text[at] == separator && other != separator) {
            text[at] = other;
            changed = true;
        }
    }
    separator = other;
    if (changed)
        Edit().SetWindowText(text);
    Redraw();
}

bool FixedFieldBehavior::Step(int &value, int step, FieldRange range)
{
    if (step > 0 ? value >= range.largest : value <= range.smallest)
        return false;
    value = step > 0 ? std::max(value + step, range.smallest) : std::min(value + step, range.largest);
    return true;
}

std::wstring FixedFieldBehavior::Padded(int value, int digits)
{
    const bool negative = value < 0;
    std::wstring text = std::to_wstring(negative ? -static_cast<long long>(value) : value);
    const auto length = static_cast<std::size_t>(std::max(digits - (negative ? 1 : 0), 0));
    if (text.size() < length)
        text.insert(0, length - text.size(), L'0');
    return negative ? L"-" + text : text;
}

} // namespace AMSEdit
