// The rule of an edit for a date and a time, or for one of the two.
#pragma once

#include "controls/rules/TimeBehavior.h"

namespace AMSEdit {

/// A date, a blank and a time: places 0 to 9 are the date's, those from 11 on the time's. A blank at place 10 is
/// written over the one that stands there, and so it is in front of a digit that the hour takes.
///
/// DateOnly shows and checks the date alone, TimeOnly the time alone; with both the date alone.
/// The range is one of whole dates and times. The time alone has the range of TimeBehavior.
class DateTimeBehavior : public DateBehavior, public TimeBehavior {
public:
    explicit DateTimeBehavior(CEditBox &edit, const IRegionalSettings &settings, const IClock &clock = SystemClock());

    /// What the box shows of it. A value without a valid status changes nothing.
    void SetDateTime(const CalendarTime &value);
    /// A date alone is at midnight, a time alone on 1899-12-30. Not valid while the text is not in its full form.
    CalendarTime GetDateTime() const;
    void SetToNow() { SetDateTime(Clock().Now()); }
    void SetRange(const CalendarTime &min, const CalendarTime &max) { DateBehavior::SetRange(min, max); }
    void GetRange(CalendarTime *min, CalendarTime *max) const { DateBehavior::GetRange(min, max); }
    bool IsWithinRange(const CalendarTime &value, bool ignoreTime = false) const
    {
        return DateBehavior::IsWithinRange(value, ignoreTime);
    }
    void SetDateSeparator(wchar_t separator) { DateBehavior::SetSeparator(separator); }
    void SetTimeSeparator(wchar_t separator) { TimeBehavior::SetSeparator(separator); }

    bool IsValid() const override;
    void ShowErrorMessage() override;
    std::wstring GetValidText() const override;
    void OnChar(wchar_t character, unsigned repeat, unsigned keyFlags) override;
    void OnKeyDown(unsigned key, unsigned repeat, unsigned keyFlags) override;

protected:
    bool ShowsDate() const override { return Shown() != Parts::Time; }
    bool ShowsTime() const override { return Shown() != Parts::Date; }
    std::wstring TextBehindDate() const override;
    int HourStart() const override { return Shown() == Parts::Time ? 0 : kDateLength + 1; }
    std::wstring TextBeforeTime() const override;
    CalendarTime SmallestTime() const override;
    CalendarTime LargestTime() const override;
    int HiddenSecond() const override;

private:
    enum class Parts { Both, Date, Time };
    Parts Shown() const;
    std::wstring Form(const CalendarTime &value) const { return DateForm(value) + L" " + TimeForm(value); }
    void TypeBlank(const TypedKey &key);
};

} // namespace AMSEdit
