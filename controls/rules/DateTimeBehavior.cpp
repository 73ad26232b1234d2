#include "controls/rules/DateTimeBehavior.h"

#include "controls/rules/NumberText.h"

namespace AMSEdit {

namespace {

CalendarTime joined(const CalendarTime &date, const CalendarTime &time)
{
    return {date.GetYear(), date.GetMonth(), date.GetDay(), time.GetHour(), time.GetMinute(), time.GetSecond()};
}

} // namespace

DateTimeBehavior::DateTimeBehavior(CEditBox &edit, const IRegionalSettings &settings, const IClock &clock)
    : DateBehavior(edit, settings, clock), TimeBehavior(edit, settings, clock)
{
}

DateTimeBehavior::Parts DateTimeBehavior::Shown() const
{
    if (HasFlag(DateOnly))
        return Parts::Date;
    return HasFlag(TimeOnly) ? Parts::Time : Parts::Both;
}

std::wstring DateTimeBehavior::TextBehindDate() const
{
    const std::wstring text = Text();
    const bool hasMore = Shown() == Parts::Both && static_cast<int>(text.size()) > kDateLength;
    return hasMore ? text.substr(kDateLength) : std::wstring();
}

std::wstring DateTimeBehavior::TextBeforeTime() const
{
    return Shown() == Parts::Both ? DateForm(ValidDate()) + L" " : std::wstring();
}

CalendarTime DateTimeBehavior::SmallestTime() const
{
    return Shown() == Parts::Both ? CalendarTime::TimeOfDay(0, 0, 0) : TimeBehavior::SmallestTime();
}

CalendarTime DateTimeBehavior::LargestTime() const
{
    return Shown() == Parts::Both ? CalendarTime::TimeOfDay(23, 59, 59) : TimeBehavior::LargestTime();
}

int DateTimeBehavior::HiddenSecond() const
{
    if (Shown() != Parts::Both)
        return TimeBehavior::HiddenSecond();
    CalendarTime min;
    GetRange(&min, nullptr);
    return min.GetSecond();
}

void DateTimeBehavior::SetDateTime(const CalendarTime &value)
{
    if (!value.IsValid())
        return;
    if (Shown() == Parts::Both)
        Edit().SetWindowText(Form(value));
    else if (Shown() == Parts::Date)
        SetDate(value);
    else
        SetTime(value);
}

CalendarTime DateTimeBehavior::GetDateTime() const
{
    if (Shown() == Parts::Date)
        return GetDate();
    if (Shown() == Parts::Time)
        return GetTime();
    const CalendarTime date = GetDate(), time = GetTime();
    const bool complete = date.IsValid() && time.IsValid() && Text()[kDateLength] == L' ';
    return complete ? joined(date, time) : CalendarTime();
}

bool DateTimeBehavior::IsValid() const
{
    if (Shown() == Parts::Date)
        return DateBehavior::IsValid();
    if (Shown() == Parts::Time)
        return TimeBehavior::IsValid();
    return IsWithinRange(GetDateTime());
}

void DateTimeBehavior::ShowErrorMessage()
{
    if (Shown() == Parts::Date) {
        DateBehavior::ShowErrorMessage();
    } else if (Shown() == Parts::Time) {
        TimeBehavior::ShowErrorMessage();
    } else {
        CalendarTime min, max;
        GetRange(&min, &max);
        Edit().AfxMessageBox(L"Please specify a date and time between " + Form(min) + L" and " + Form(max) + L".",
                             kWarningExclamation);
    }
}

std::wstring DateTimeBehavior::GetValidText() const
{
    if (Shown() == Parts::Date)
        return DateBehavior::GetValidText();
    if (Shown() == Parts::Time)
        return TimeBehavior::GetValidText();
    if (Text().empty())
        return {};
    CalendarTime min, max;
    GetRange(&min, &max);
    const CalendarTime date = ValidDate(), value = joined(date, ValidTime());
    // The date is within the range: the time of its first or last day may still lead out of it.
    if ((value < min || max < min) && date.DateAlone() == min.DateAlone())
        return Form(min);
    if (value > max && date.DateAlone() == max.DateAlone())
        return Form(max);
    return Form(value);
}

void DateTimeBehavior::OnChar(wchar_t character, unsigned repeat, unsigned keyFlags)
{
    const bool isBoth = Shown() == Parts::Both;
    if (isBoth && Place() == kDateLength && IsPrintable(character) && !IsReadOnly())
        TypeBlank({character, repeat, keyFlags});
    else if (Shown() == Parts::Date || (isBoth && Place() <= kDateLength))
        DateBehavior::OnChar(character, repeat, keyFlags);
    else
        TimeBehavior::OnChar(character, repeat, keyFlags);
}

void DateTimeBehavior::TypeBlank(const TypedKey &key)
{
    TypeSeparator(key, L' ', HourTakes(key.character));
}

void DateTimeBehavior::OnKeyDown(unsigned key, unsigned repeat, unsigned keyFlags)
{
    if (Shown() == Parts::Date || (Shown() == Parts::Both && Place() <= kDateLength))
        DateBehavior::OnKeyDown(key, repeat, keyFlags);
    else
        TimeBehavior::OnKeyDown(key, repeat, keyFlags);
}

} // namespace AMSEdit
