// The rule of a date edit: month, day and year of two, two and four digits, in the order and with the separator of the
// regional settings.
#pragma once

#include "controls/rules/FixedFieldBehavior.h"

namespace AMSEdit {

/// Flags of the date and time behaviours above those of the focus loss.
enum DateTimeFlag : unsigned {
    DateOnly = 0x0100,       ///< of a date and time: the date alone
    TimeOnly = 0x0200,       ///< of a date and time: the time alone
    DayBeforeMonth = 0x1000, ///< day at place 0 and month at 3, instead of the reverse
    TwentyFourHour = 0x2000, ///< without AM and PM
    WithSeconds = 0x4000,
};

/// A date outside the range can't be typed. Text set from outside is read by places, two characters for day and month
/// and four behind the last separator for the year; what makes no date within the range is put right: a year before
/// the range becomes the present one (held to the range) and one behind it the last, a month the first that fits, a day
/// the last that fits. Text without any of the three becomes today.
class DateBehavior : public virtual FixedFieldBehavior {
public:
    /// Separator and order from the settings; where they don't answer "/" and the month first.
    explicit DateBehavior(CEditBox &edit, const IRegionalSettings &settings, const IClock &clock = SystemClock());

    /// Put right where it makes no date within the range.
    void SetDate(int year, int month, int day);
    /// A value without a valid status changes nothing.
    void SetDate(const CalendarTime &value);
    /// At midnight; not valid while the text is not in its full form.
    CalendarTime GetDate() const;
    void SetToday();

    /// As they stand in the text; 0 while it is too short.
    int GetYear() const;
    int GetMonth() const;
    int GetDay() const;
    /// Put right where it can't stand in the text; then the fields that depend on it follow: after the year the month,
    /// after either the day. In a text that doesn't reach the field the date is completed.
    void SetYear(int year);
    void SetMonth(int month);
    void SetDay(int day);

    /// Stored as given. Years outside 1900 to 9998, which it starts with, are fine.
    void SetRange(const CalendarTime &min, const CalendarTime &max) { StoreRange(m_range, min, max); }
    /// Each may be null.
    void GetRange(CalendarTime *min, CalendarTime *max) const { m_range.Get(min, max); }
    /// True for a value of valid status from min to max, both included. ignoreTime: by the dates alone.
    bool IsWithinRange(const CalendarTime &value, bool ignoreTime = true) const;
    /// The date in the box keeps its value.
    void SetSeparator(wchar_t separator);
    wchar_t GetSeparator() const { return m_chSeparator; }
    void ShowDayBeforeMonth(bool dayBeforeMonth);
    bool IsDayShownBeforeMonth() const { return HasFlag(DayBeforeMonth); }

    bool IsValid() const override;
    void ShowErrorMessage() override;
    std::wstring GetValidText() const override;
    void OnChar(wchar_t character, unsigned repeat, unsigned keyFlags) override;
    /// Up and Down step the field that the caret is in.
    void OnKeyDown(unsigned key, unsigned repeat, unsigned keyFlags) override;

protected:
    static constexpr int kDateLength = 10;

    std::wstring DateForm(int year, int month, int day) const;
    std::wstring DateForm(const CalendarTime &date) const
    {
        return DateForm(date.GetYear(), date.GetMonth(), date.GetDay());
    }
    /// The date's part of the text.
    std::wstring DateText() const { return Text().substr(0, kDateLength); }
    /// The date's part in its full form, whatever the range.
    bool IsDateComplete() const;
    /// The nearest that a text's date comes to a valid one.
    CalendarTime ValidDate() const;
    const IClock &Clock() const { return m_clock; }
    /// False while the box shows no date: then there is none to be set.
    virtual bool ShowsDate() const { return true; }
    /// What stands behind the date and stays when the date is set.
    virtual std::wstring TextBehindDate() const { return {}; }

private:
    int MonthStart() const { return IsDayShownBeforeMonth() ? 3 : 0; }
    int DayStart() const { return IsDayShownBeforeMonth() ? 0 : 3; }
    int NumberAt(int start) const;

    /// The years that the limits stand in, held to four digits.
    FieldRange Years() const;
    FieldRange Months(int year) const;
    /// yearKnown: false lets February have 29 days.
    FieldRange Days(int year, int month, bool yearKnown) const;
    FieldRange DaysOfBox() const { return Days(ValidYear(), GetMonth(), IsYearValid()); }
    bool IsYearValid() const { return Years().Holds(GetYear()); }
    /// The year of the text, put right.
    int ValidYear() const { return ValidYear(GetYear()); }
    int ValidYear(int year) const;
    CalendarTime PutRight(int year, int month, int day) const;

    TwoDigitField MonthField() const;
    TwoDigitField DayField() const;
    DigitLimits YearDigit(int index) const;

    void TypeInField(int start, const TypedKey &key);
    void TypeInYear(const TypedKey &key);
    /// Month and day follow a changed year, the day a changed month. True when the day has changed.
    void FollowYear();
    bool FollowMonth();
    void StepField(int step);
    void WriteDate(const std::wstring &date);

    const IClock &m_clock;
    CalendarRange m_range{{1900, 1, 1, 0, 0, 0}, {9998, 12, 31, 23, 59, 59}};
    wchar_t m_chSeparator = L'/';
};

} // namespace AMSEdit
