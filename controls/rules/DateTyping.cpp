// Keys of a date edit.
#include "controls/rules/DateBehavior.h"
#include "controls/rules/NumberText.h"

#include <algorithm>

namespace AMSEdit {

namespace {

constexpr int kSecondField = 3;
constexpr int kYearStart = 6;
constexpr int kYearDigits = 4;

wchar_t tensOf(int value)
{
    return static_cast<wchar_t>(L'0' + value / 10);
}

wchar_t unitsOf(int value)
{
    return static_cast<wchar_t>(L'0' + value % 10);
}

} // namespace

TwoDigitField DateBehavior::MonthField() const
{
    const FieldRange months = Months(ValidYear());
    const auto second = [months](wchar_t first) {
        const bool tens = first == L'1';
        DigitLimits limits = {tens ? L'0' : L'1', tens ? L'2' : L'9'};
        if (first == tensOf(months.smallest))
            limits.smallest = unitsOf(months.smallest);
        if (first == tensOf(months.largest))
            limits.largest = unitsOf(months.largest);
        return limits;
    };
    return {MonthStart(), {tensOf(months.smallest), tensOf(months.largest)}, second};
}

TwoDigitField DateBehavior::DayField() const
{
    const FieldRange days = DaysOfBox();
    const auto second = [days](wchar_t first) {
        DigitLimits limits = {first == L'0' ? L'1' : L'0', L'9'};
        if (first == tensOf(days.smallest))
            limits.smallest = unitsOf(days.smallest);
        if (first == tensOf(days.largest))
            limits.largest = unitsOf(days.largest);
        return limits;
    };
    return {DayStart(), {tensOf(days.smallest), tensOf(days.largest)}, second};
}

DigitLimits DateBehavior::YearDigit(int index) const
{
    const auto count = static_cast<std::size_t>(index);
    std::wstring before = count == 0 ? std::wstring() : Text().substr(kYearStart, count);
    std::ranges::replace_if(
        before, [](wchar_t character) { return !IsDigit(character); }, L'0');
    const auto [first, last] = Years();
    const std::wstring smallest = Padded(first, kYearDigits), largest = Padded(last, kYearDigits);
    DigitLimits limits;
    if (before <= smallest.substr(0, count))
        limits.smallest = smallest[count];
    if (before >= largest.substr(0, count))
        limits.largest = largest[count];
    return limits;
}

void DateBehavior::OnChar(wchar_t character, unsigned repeat, unsigned keyFlags)
{
    if (IsReadOnly())
        return;
    const TypedKey key{character, repeat, keyFlags};
    if (!IsPrintable(character))
        TypeControlCharacter(key);
    else if (Place() < kSecondField)
        TypeInField(0, key);
    else if (Place() < kYearStart)
        TypeInField(kSecondField, key);
    else if (Place() < kDateLength)
        TypeInYear(key);
}

void DateBehavior::TypeInField(int start, const TypedKey &key)
{
    const bool isMonth = start == MonthStart();
    const TwoDigitField field = isMonth ? MonthField() : DayField();
    switch (Place() - start) {
    case 0:
        if (TypeFirstDigit(field, key) && isMonth)
            FollowMonth();
        break;
    case 1:
        if (TypeSecondDigit(field, key, m_chSeparator) && isMonth && FollowMonth() && DayStart() > start)
            Edit().SetSel(DayStart(), DayStart() + 2);
        break;
    default: {
        DigitLimits next = YearDigit(0);
        if (start == 0)
            next = (isMonth ? DayField() : MonthField()).first;
        TypeSeparator(key, m_chSeparator, next.Take(key.character));
        break;
    }
    }
}

void DateBehavior::TypeInYear(const TypedKey &key)
{
    const int index = Place() - kYearStart;
    if (!YearDigit(index).Take(key.character) || !Enter(key))
        return;
    Selection replaced{kYearStart + kYearDigits, 0};
    for (int later = index + 1; later < kYearDigits && kYearStart + later < Length(); ++later) {
        const int place = kYearStart + later;
        const DigitLimits limits = YearDigit(later);
        if (limits.Take(Text()[static_cast<std::size_t>(place)]))
            continue;
        Write(place, place + 1, std::wstring(1, limits.smallest));
        replaced = {std::min(replaced.start, place), place + 1};
    }
    if (replaced.end > 0)
        Edit().SetSel(replaced.start, replaced.end);
    if (IsYearValid())
        FollowYear();
}

void DateBehavior::OnKeyDown(unsigned key, unsigned repeat, unsigned keyFlags)
{
    HandleKey(key, repeat, keyFlags, [this](int step) { StepField(step); });
}

void DateBehavior::StepField(int step)
{
    const int place = Place();
    // Just behind two digits the caret is still theirs; behind the year it is not.
    if (place >= kYearStart + kYearDigits)
        return;
    if (place >= kYearStart) {
        if (int year = GetYear(); Step(year, step, Years()))
            SetYear(year);
    } else if ((place < kSecondField) == (MonthStart() == 0)) {
        if (int month = GetMonth(); Step(month, step, Months(ValidYear())))
            SetMonth(month);
    } else {
        if (int day = GetDay(); Step(day, step, DaysOfBox()))
            SetDay(day);
    }
}

} // namespace AMSEdit
