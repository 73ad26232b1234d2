// The rule of a time edit: hour, minute and, where shown, second of two digits each, and AM or PM in a box of twelve
// hours.
#pragma once

#include "controls/rules/DateBehavior.h"

namespace AMSEdit {

/// An hour, minute or second that there is not can't be typed. Text set from outside is read by places, two characters
/// a field; what makes no time within the range is put right: an hour, minute or second that there is not becomes the
/// smallest one, a time beyond the range the nearer limit. Text without any field becomes the present time.
///
/// In a box of twelve hours 12 with the text of the afternoon is hour 0 of the day, and 12 with the text of the morning
/// hour 12: the first adds 12 and 24 becomes 0, the second adds nothing. A value is shown the same way, so that the box
/// gives back what it was given.
class TimeBehavior : public virtual FixedFieldBehavior {
public:
    /// Separator, hours of the day and the texts of morning and afternoon from the settings; where they don't answer
    /// ":", twelve hours, "AM" and "PM".
    explicit TimeBehavior(CEditBox &edit, const IRegionalSettings &settings, const IClock &clock = SystemClock());

    /// Put right where it makes no time within the range. ampm: the text of the morning or of the afternoon beside an
    /// hour of twelve; empty beside one of twenty-four.
    void SetTime(int hour, int minute, int second, const std::wstring &ampm = {});
    /// Its time of the day. A value without a valid status changes nothing.
    void SetTime(const CalendarTime &value);
    /// On 1899-12-30, with the seconds of the smallest time where none are shown; not valid while the text is not in
    /// its full form.
    CalendarTime GetTime() const;
    void SetToNow();

    /// As they stand in the text; -1 while it is too short.
    int GetHour() const;
    int GetMinute() const;
    int GetSecond() const;
    /// The text of the morning or of the afternoon; empty while neither is there.
    std::wstring GetAMPM() const;
    /// Held to what the field can be. In a text that doesn't reach the field the time is completed.
    void SetHour(int hour);
    void SetMinute(int minute);
    void SetSecond(int second);
    /// Any other text than the two changes nothing, nor does a box that has no place for it yet.
    void SetAMPM(const std::wstring &ampm);

    /// The times of the day count. Stored as given.
    void SetRange(const CalendarTime &min, const CalendarTime &max) { StoreRange(m_range, min, max); }
    /// Each may be null.
    void GetRange(CalendarTime *min, CalendarTime *max) const { m_range.Get(min, max); }
    /// True for a value of valid status whose time of the day is from min to max, both included. Without ignoreDate it
    /// also has to be of 1899-12-30.
    bool IsWithinRange(const CalendarTime &value, bool ignoreDate = true) const;
    /// The time in the box keeps its value with each of these.
    void SetSeparator(wchar_t separator);
    wchar_t GetSeparator() const { return m_chSeparator; }
    void Show24HourFormat(bool twentyFourHours);
    bool IsShowing24HourFormat() const { return HasFlag(TwentyFourHour); }
    void ShowSeconds(bool seconds);
    bool IsShowingSeconds() const { return HasFlag(WithSeconds); }
    /// Texts of unequal length, or an empty one: both become "AM" and "PM".
    void SetAMPMSymbols(const std::wstring &am, const std::wstring &pm);
    void GetAMPMSymbols(std::wstring *am, std::wstring *pm) const;

    bool IsValid() const override;
    void ShowErrorMessage() override;
    std::wstring GetValidText() const override;
    /// In a box of twelve hours A and P, small or capital, set the field from anywhere.
    void OnChar(wchar_t character, unsigned repeat, unsigned keyFlags) override;
    /// Up and Down step the field that the caret is in, and turn AM to PM and back.
    void OnKeyDown(unsigned key, unsigned repeat, unsigned keyFlags) override;

protected:
    /// Place of the first digit of the hour in the box's text.
    virtual int HourStart() const { return 0; }
    virtual bool ShowsTime() const { return true; }
    /// What stands in front of the time and stays when the time is set.
    virtual std::wstring TextBeforeTime() const { return {}; }
    /// The limits that hold for the time of the day.
    virtual CalendarTime SmallestTime() const { return m_range.min.TimeAlone(); }
    virtual CalendarTime LargestTime() const { return m_range.max.TimeAlone(); }
    /// The second that a box has which shows none.
    virtual int HiddenSecond() const { return m_range.min.GetSecond(); }

    std::wstring TimeForm(const CalendarTime &time) const;
    /// The time's part of the text.
    std::wstring TimeText() const;
    bool IsTimeComplete() const;
    CalendarTime ValidTime() const;
    /// True for a digit that an hour may start with.
    bool HourTakes(wchar_t digit) const { return HourField().first.Take(digit); }

private:
    std::wstring FieldsForm(int hour, int minute, int second) const;
    int NumberAt(int place) const;
    bool IsTwelveHour() const { return !IsShowing24HourFormat(); }
    FieldRange Hours() const { return IsTwelveHour() ? FieldRange{1, 12} : FieldRange{0, 23}; }
    /// Fields of digits: two, or three with seconds.
    int Fields() const { return IsShowingSeconds() ? 3 : 2; }
    /// Place of the text of morning or afternoon behind HourStart; in front of it stands a blank.
    int AmPmPlace() const { return Fields() * 3; }
    int AmPmLength() const { return static_cast<int>(m_strAm.size()); }
    void StoreSymbols(const std::wstring &am, const std::wstring &pm);
    /// Which of the two texts ends a text; empty for neither.
    std::wstring AmPmAtEndOf(const std::wstring &text) const;
    /// Hour of the day by the hour of twelve and one of the two texts.
    int HourOfDay(int hour, const std::wstring &ampm) const;

    TwoDigitField HourField() const;
    TwoDigitField Field(int index) const;
    void SetField(int index, int value, FieldRange range);
    void WriteTime(const std::wstring &time);
    void WriteAmPm(const std::wstring &ampm);
    /// Writes the text of the morning, or the one that has been begun, behind digits that are all there.
    void AppendMissingAmPm();
    void TypeLetter(const TypedKey &key, int place);
    void TypeDigit(const TypedKey &key, int place);
    bool StepOverLetter(const TypedKey &key, int place);
    void StepField(int step);

    const IClock &m_clock;
    CalendarRange m_range{CalendarTime::TimeOfDay(0, 0, 0), CalendarTime::TimeOfDay(23, 59, 59)};
    wchar_t m_chSeparator = L':';
    std::wstring m_strAm = L"AM";
    std::wstring m_strPm = L"PM";
};

} // namespace AMSEdit
