#include "controls/rules/CalendarTime.h"

#include <ctime>

namespace AMSEdit {

namespace {

constexpr int kFirstYear = 100;
constexpr int kLastYear = 9999;

bool isLeapYear(int year)
{
    return (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
}

bool isWithin(int value, int smallest, int largest)
{
    return value >= smallest && value <= largest;
}

} // namespace

int LastDayOfMonth(int year, int month)
{
    switch (month) {
    case 2:
        return isLeapYear(year) ? 29 : 28;
    case 4:
    case 6:
    case 9:
    case 11:
        return 30;
    default:
        return 31;
    }
}

bool CalendarTime::IsValid() const
{
    return isWithin(m_nYear, kFirstYear, kLastYear) && isWithin(m_nMonth, 1, 12) &&
           isWithin(m_nDay, 1, LastDayOfMonth(m_nYear, m_nMonth)) && isWithin(m_nHour, 0, 23) &&
           isWithin(m_nMinute, 0, 59) && isWithin(m_nSecond, 0, 59);
}

const IClock &SystemClock()
{
    class System : public IClock {
        CalendarTime Now() const override
        {
            const std::time_t now = std::time(nullptr);
            std::tm local{};
            localtime_r(&now, &local);
            constexpr int kLastSecond = 59; // a leap second is the one before it
            return {local.tm_year + 1900, local.tm_mon + 1, local.tm_mday,
                    local.tm_hour,        local.tm_min,     local.tm_sec > kLastSecond ? kLastSecond : local.tm_sec};
        }
    };
    static const System system;
    return system;
}

} // namespace AMSEdit
