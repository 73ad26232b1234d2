// A date and time of the calendar with a status, and where the present one comes from.
#pragma once

#include <compare>

namespace AMSEdit {

/// Last day of a month, 28 to 31. A month that is none has 31 days.
int LastDayOfMonth(int year, int month);

/// Fields are kept as they were given, also where they make no date; the status tells. A time alone stands on
/// 1899-12-30. Values are ordered by their fields, whatever their status.
class CalendarTime {
public:
    /// No date: status not valid.
    CalendarTime() = default;
    /// Valid from year 100 to 9999, with a day that its month has and a time of day.
    CalendarTime(int year, int month, int day, int hour = 0, int minute = 0, int second = 0)
        : m_nYear(year), m_nMonth(month), m_nDay(day), m_nHour(hour), m_nMinute(minute), m_nSecond(second)
    {
    }
    static CalendarTime TimeOfDay(int hour, int minute, int second) { return {1899, 12, 30, hour, minute, second}; }

    bool IsValid() const;
    int GetYear() const { return m_nYear; }
    int GetMonth() const { return m_nMonth; }
    int GetDay() const { return m_nDay; }
    int GetHour() const { return m_nHour; }
    int GetMinute() const { return m_nMinute; }
    int GetSecond() const { return m_nSecond; }
    /// At midnight of the same date.
    CalendarTime DateAlone() const { return {m_nYear, m_nMonth, m_nDay}; }
    /// The same time on 1899-12-30.
    CalendarTime TimeAlone() const { return TimeOfDay(m_nHour, m_nMinute, m_nSecond); }

    auto operator<=>(const CalendarTime &) const = default;

private:
    int m_nYear = 0;
    int m_nMonth = 0;
    int m_nDay = 0;
    int m_nHour = 0;
    int m_nMinute = 0;
    int m_nSecond = 0;
};

/// The smallest and the largest value that count, as they were given.
struct CalendarRange {
    CalendarTime min, max;
    /// Each may be null.
    void Get(CalendarTime *pMin, CalendarTime *pMax) const
    {
        if (pMin)
            *pMin = min;
        if (pMax)
            *pMax = max;
    }
};

/// Where the present comes from. A test pins it.
class IClock {
public:
    virtual ~IClock() = default;
    /// The present, in the time of the place.
    virtual CalendarTime Now() const = 0;
};

/// The clock of the system.
const IClock &SystemClock();

} // namespace AMSEdit
