// The value of a date edit: reading, writing, its range and its form.
#include "controls/rules/DateBehavior.h"

#include "controls/rules/NumberText.h"

#include <algorithm>

namespace AMSEdit {

namespace {

constexpr int kYearStart = 6;
constexpr int kSeparatorPlaces[] = {2, 5};

/// True for a short date pattern with the day in front.
bool hasDayFirst(const std::wstring &pattern)
{
    const auto found = pattern.find_first_of(L"MDd");
    return found != std::wstring::npos && pattern[found] != L'M';
}

/// The year as text of four characters, blanks in front.
std::wstring yearText(int year)
{
    std::wstring text = std::to_wstring(year);
    if (text.size() < 4)
        text.insert(0, 4 - text.size(), L' ');
    return text;
}

} // namespace

DateBehavior::DateBehavior(CEditBox &edit, const IRegionalSettings &settings, const IClock &clock) : m_clock(clock)
{
    Bind(edit);
    m_chSeparator = QueryCharacter(settings, RegionalQuery::DateSeparator, m_chSeparator);
    if (hasDayFirst(settings.Query(RegionalQuery::ShortDatePattern).value_or(L"")))
        StoreFlags(GetFlags() | DayBeforeMonth);
}

std::wstring DateBehavior::DateForm(int year, int month, int day) const
{
    const std::wstring monthText = Padded(month, 2), dayText = Padded(day, 2);
    const bool dayFirst = IsDayShownBeforeMonth();
    return (dayFirst ? dayText : monthText) + m_chSeparator + (dayFirst ? monthText : dayText) + m_chSeparator +
           yearText(year);
}

int DateBehavior::NumberAt(int start) const
{
    const std::wstring text = DateText();
    const auto at = static_cast<std::size_t>(start);
    return text.size() < at + 2 ? 0 : WholeNumberOf(std::wstring_view(text).substr(at, 2));
}

int DateBehavior::GetMonth() const
{
    return NumberAt(MonthStart());
}

int DateBehavior::GetDay() const
{
    return NumberAt(DayStart());
}

int DateBehavior::GetYear() const
{
    const std::wstring text = DateText();
    const auto separator = text.rfind(m_chSeparator);
    if (separator == std::wstring::npos || text.size() < separator + 5)
        return 0;
    return WholeNumberOf(std::wstring_view(text).substr(separator + 1, 4));
}

bool DateBehavior::IsDateComplete() const
{
    const std::wstring text = DateText();
    if (static_cast<int>(text.size()) < kDateLength)
        return false;
    for (int place = 0; place < kDateLength; ++place) {
        const wchar_t character = text[static_cast<std::size_t>(place)];
        const bool isSeparator = std::ranges::find(kSeparatorPlaces, place) != std::end(kSeparatorPlaces);
        // A year of three digits has a blank in front.
        const bool fits =
            isSeparator ? character == m_chSeparator : IsDigit(character) || (place == kYearStart && character == L' ');
        if (!fits)
            return false;
    }
    return true;
}

CalendarTime DateBehavior::GetDate() const
{
    return IsDateComplete() ? CalendarTime(GetYear(), GetMonth(), GetDay()) : CalendarTime();
}

void DateBehavior::SetDate(int year, int month, int day)
{
    WriteDate(DateForm(year, month, day));
}

void DateBehavior::SetDate(const CalendarTime &value)
{
    if (value.IsValid())
        WriteDate(DateForm(value));
}

void DateBehavior::WriteDate(const std::wstring &date)
{
    if (ShowsDate())
        Edit().SetWindowText(date + TextBehindDate());
}

void DateBehavior::SetToday()
{
    SetDate(m_clock.Now());
}

bool DateBehavior::IsWithinRange(const CalendarTime &value, bool ignoreTime) const
{
    if (!value.IsValid())
        return false;
    if (ignoreTime)
        return value.DateAlone() >= m_range.min.DateAlone() && value.DateAlone() <= m_range.max.DateAlone();
    return value >= m_range.min && value <= m_range.max;
}

bool DateBehavior::IsValid() const
{
    return Length() == kDateLength && IsWithinRange(GetDate(), true);
}

void DateBehavior::ShowErrorMessage()
{
    Edit().AfxMessageBox(L"Please specify a date between " + DateForm(m_range.min) + L" and " + DateForm(m_range.max) +
                             L".",
                         kWarningExclamation);
}

void DateBehavior::SetSeparator(wchar_t separator)
{
    StoreSeparator(m_chSeparator, separator,
                   std::span(kSeparatorPlaces, ShowsDate() ? std::size(kSeparatorPlaces) : 0));
}

void DateBehavior::ShowDayBeforeMonth(bool dayBeforeMonth)
{
    if (dayBeforeMonth == IsDayShownBeforeMonth())
        return;
    const CalendarTime date = GetDate();
    if (!date.IsValid()) {
        SetFlag(DayBeforeMonth, dayBeforeMonth);
        return;
    }
    StoreFlags(GetFlags() ^ DayBeforeMonth);
    SetDate(date);
    Redraw();
}

FieldRange DateBehavior::Years() const
{
    constexpr int kLargestYear = 9999;
    return {std::clamp(m_range.min.GetYear(), 0, kLargestYear), std::clamp(m_range.max.GetYear(), 0, kLargestYear)};
}

FieldRange DateBehavior::Months(int year) const
{
    const auto [first, last] = Years();
    return {year == first ? std::clamp(m_range.min.GetMonth(), 1, 12) : 1,
            year == last ? std::clamp(m_range.max.GetMonth(), 1, 12) : 12};
}

FieldRange DateBehavior::Days(int year, int month, bool yearKnown) const
{
    const auto [firstYear, lastYear] = Years();
    constexpr int kLongestFebruary = 29;
    FieldRange days = {1, month == 2 && !yearKnown ? kLongestFebruary : LastDayOfMonth(year, month)};
    if (year == firstYear && month == m_range.min.GetMonth())
        days.smallest = std::clamp(m_range.min.GetDay(), 1, 31);
    if (year == lastYear && month == m_range.max.GetMonth())
        days.largest = std::min(days.largest, std::clamp(m_range.max.GetDay(), 1, 31));
    return days;
}

int DateBehavior::ValidYear(int year) const
{
    const auto [first, last] = Years();
    if (year < first)
        return std::max(first, std::min(m_clock.Now().GetYear(), last));
    return std::min(year, std::max(first, last));
}

CalendarTime DateBehavior::PutRight(int year, int month, int day) const
{
    const int validYear = ValidYear(year);
    const FieldRange months = Months(validYear);
    const int validMonth = months.Holds(month) ? month : months.smallest;
    const FieldRange days = Days(validYear, validMonth, true);
    return {validYear, validMonth, days.Holds(day) ? day : days.largest};
}

CalendarTime DateBehavior::ValidDate() const
{
    const int year = GetYear(), month = GetMonth(), day = GetDay();
    if (year == 0 && month == 0 && day == 0) {
        const CalendarTime today = m_clock.Now();
        return PutRight(today.GetYear(), today.GetMonth(), today.GetDay());
    }
    return PutRight(year, month, day);
}

std::wstring DateBehavior::GetValidText() const
{
    return Text().empty() ? std::wstring() : DateForm(ValidDate());
}

void DateBehavior::SetYear(int year)
{
    const int valid = ValidYear(year);
    if (!ShowsDate() || Length() < kYearStart) {
        const CalendarTime date = ValidDate();
        SetDate(valid, date.GetMonth(), date.GetDay());
        return;
    }
    Write(kYearStart, kDateLength, yearText(valid));
    FollowYear();
}

void DateBehavior::SetMonth(int month)
{
    const FieldRange months = Months(ValidYear());
    const int valid = months.Holds(month) ? month : months.smallest;
    if (!ShowsDate() || Length() < MonthStart()) {
        const CalendarTime date = ValidDate();
        SetDate(date.GetYear(), valid, date.GetDay());
        return;
    }
    Write(MonthStart(), MonthStart() + 2, Padded(valid, 2));
    FollowMonth();
}

void DateBehavior::SetDay(int day)
{
    if (!ShowsDate() || Length() < DayStart()) {
        const CalendarTime date = ValidDate();
        SetDate(date.GetYear(), date.GetMonth(), day);
        return;
    }
    const FieldRange days = DaysOfBox();
    Write(DayStart(), DayStart() + 2, Padded(days.Holds(day) ? day : days.largest, 2));
}

void DateBehavior::FollowYear()
{
    const FieldRange months = Months(ValidYear());
    if (GetMonth() != 0 && !months.Holds(GetMonth()))
        Write(MonthStart(), MonthStart() + 2, Padded(months.smallest, 2));
    FollowMonth();
}

bool DateBehavior::FollowMonth()
{
    const FieldRange days = DaysOfBox();
    if (GetDay() == 0 || days.Holds(GetDay()))
        return false;
    Write(DayStart(), DayStart() + 2, Padded(days.largest, 2));
    return true;
}

} // namespace AMSEdit
