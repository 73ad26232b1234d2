// The value of a time edit: reading, writing, its range and its form.
#include "controls/rules/TimeBehavior.h"

#include "controls/rules/NumberText.h"

#include <algorithm>

namespace AMSEdit {

namespace {

constexpr FieldRange kSixty = {0, 59};

} // namespace

TimeBehavior::TimeBehavior(CEditBox &edit, const IRegionalSettings &settings, const IClock &clock) : m_clock(clock)
{
    Bind(edit);
    m_chSeparator = QueryCharacter(settings, RegionalQuery::TimeSeparator, m_chSeparator);
    if (QueryNumber(settings, RegionalQuery::TimeOfTwentyFourHours, 0) != 0)
        StoreFlags(GetFlags() | TwentyFourHour);
    StoreSymbols(settings.Query(RegionalQuery::MorningText).value_or(m_strAm),
                 settings.Query(RegionalQuery::AfternoonText).value_or(m_strPm));
}

void TimeBehavior::StoreSymbols(const std::wstring &am, const std::wstring &pm)
{
    const bool fit = !am.empty() && am.size() == pm.size();
    m_strAm = fit ? am : L"AM";
    m_strPm = fit ? pm : L"PM";
}

std::wstring TimeBehavior::TimeText() const
{
    const std::wstring text = Text();
    const auto start = static_cast<std::size_t>(HourStart());
    return text.size() <= start ? std::wstring() : text.substr(start);
}

int TimeBehavior::NumberAt(int place) const
{
    const std::wstring text = TimeText();
    const auto at = static_cast<std::size_t>(place);
    return text.size() < at + 2 ? -1 : WholeNumberOf(std::wstring_view(text).substr(at, 2));
}

int TimeBehavior::GetHour() const
{
    return NumberAt(0);
}

int TimeBehavior::GetMinute() const
{
    return NumberAt(3);
}

int TimeBehavior::GetSecond() const
{
    return IsShowingSeconds() ? NumberAt(6) : -1;
}

std::wstring TimeBehavior::GetAMPM() const
{
    const std::wstring text = TimeText();
    const auto place = static_cast<std::size_t>(AmPmPlace());
    if (!IsTwelveHour() || text.size() < place)
        return {};
    const std::wstring ampm = text.substr(place, m_strAm.size());
    return ampm == m_strAm || ampm == m_strPm ? ampm : std::wstring();
}

std::wstring TimeBehavior::AmPmAtEndOf(const std::wstring &text) const
{
    if (text.ends_with(m_strAm))
        return m_strAm;
    return text.ends_with(m_strPm) ? m_strPm : std::wstring();
}

int TimeBehavior::HourOfDay(int hour, const std::wstring &ampm) const
{
    return ampm == m_strPm ? (hour + 12) % 24 : hour;
}

std::wstring TimeBehavior::FieldsForm(int hour, int minute, int second) const
{
    std::wstring form = Padded(hour, 2) + m_chSeparator + Padded(minute, 2);
    if (IsShowingSeconds())
        form += m_chSeparator + Padded(second, 2);
    return form;
}

std::wstring TimeBehavior::TimeForm(const CalendarTime &time) const
{
    if (!IsTwelveHour())
        return FieldsForm(time.GetHour(), time.GetMinute(), time.GetSecond());
    const bool afternoon = time.GetHour() == 0 || time.GetHour() > 12;
    const int hour = time.GetHour() == 0 ? 12 : time.GetHour() - (afternoon ? 12 : 0);
    return FieldsForm(hour, time.GetMinute(), time.GetSecond()) + L" " + (afternoon ? m_strPm : m_strAm);
}

bool TimeBehavior::IsTimeComplete() const
{
    std::wstring form = FieldsForm(GetHour(), GetMinute(), GetSecond());
    if (IsTwelveHour())
        form += L" " + GetAMPM();
    const bool ampmFits = !IsTwelveHour() || !GetAMPM().empty();
    return ampmFits && Hours().Holds(GetHour()) && kSixty.Holds(GetMinute()) &&
           (!IsShowingSeconds() || kSixty.Holds(GetSecond())) && TimeText() == form;
}

CalendarTime TimeBehavior::GetTime() const
{
    if (!IsTimeComplete())
        return {};
    return CalendarTime::TimeOfDay(HourOfDay(GetHour(), GetAMPM()), GetMinute(),
                                   IsShowingSeconds() ? GetSecond() : HiddenSecond());
}

void TimeBehavior::WriteTime(const std::wstring &time)
{
    if (ShowsTime())
        Edit().SetWindowText(TextBeforeTime() + time);
}

void TimeBehavior::SetTime(int hour, int minute, int second, const std::wstring &ampm)
{
    const std::wstring fields = FieldsForm(hour, minute, second);
    WriteTime(ampm.empty() ? fields : fields + L" " + ampm);
}

void TimeBehavior::SetTime(const CalendarTime &value)
{
    if (value.IsValid())
        WriteTime(TimeForm(value));
}

void TimeBehavior::SetToNow()
{
    SetTime(m_clock.Now());
}

bool TimeBehavior::IsWithinRange(const CalendarTime &value, bool ignoreDate) const
{
    if (!value.IsValid() || (!ignoreDate && value != value.TimeAlone()))
        return false;
    return value.TimeAlone() >= m_range.min.TimeAlone() && value.TimeAlone() <= m_range.max.TimeAlone();
}

bool TimeBehavior::IsValid() const
{
    return IsWithinRange(GetTime());
}

void TimeBehavior::ShowErrorMessage()
{
    Edit().AfxMessageBox(L"Please specify a time between " + TimeForm(m_range.min) + L" and " + TimeForm(m_range.max) +
                             L".",
                         kWarningExclamation);
}

CalendarTime TimeBehavior::ValidTime() const
{
    const std::wstring text = TimeText();
    const auto smallest = SmallestTime(), largest = LargestTime();
    CalendarTime time = m_clock.Now().TimeAlone();
    if (int hour = GetHour(); hour != -1) {
        // The text may be of a box that showed other hours or no seconds.
        const std::wstring ampm = AmPmAtEndOf(text);
        if (ampm.empty() || hour > 12)
            hour = FieldRange{0, 23}.Holds(hour) ? hour : Hours().smallest;
        else if (hour > 0 || IsTwelveHour())
            hour = HourOfDay(std::max(hour, 1), ampm);
        const int minute = kSixty.Holds(GetMinute()) ? GetMinute() : 0;
        const int second = kSixty.Holds(GetSecond()) ? GetSecond() : 0;
        time = CalendarTime::TimeOfDay(hour, minute, IsShowingSeconds() ? second : HiddenSecond());
    }
    if (time < smallest || smallest > largest)
        return smallest;
    return std::min(time, largest);
}

std::wstring TimeBehavior::GetValidText() const
{
    return Text().empty() ? std::wstring() : TimeForm(ValidTime());
}

void TimeBehavior::SetField(int index, int value, FieldRange range)
{
    const int start = HourStart() + index * 3;
    const std::wstring digits = Padded(std::clamp(value, range.smallest, range.largest), 2);
    if (!ShowsTime() || index >= Fields())
        return;
    if (Length() < start) {
        std::wstring time = TimeForm(ValidTime());
        WriteTime(time.replace(static_cast<std::size_t>(index) * 3, 2, digits));
        return;
    }
    Write(start, start + 2, digits);
    AppendMissingAmPm();
}

void TimeBehavior::SetHour(int hour)
{
    SetField(0, hour, Hours());
}

void TimeBehavior::SetMinute(int minute)
{
    SetField(1, minute, kSixty);
}

void TimeBehavior::SetSecond(int second)
{
    SetField(2, second, kSixty);
}

void TimeBehavior::SetAMPM(const std::wstring &ampm)
{
    const bool hasPlace = static_cast<int>(TimeText().size()) >= AmPmPlace() - 1;
    if (ShowsTime() && IsTwelveHour() && hasPlace && (ampm == m_strAm || ampm == m_strPm))
        WriteAmPm(ampm);
}

void TimeBehavior::WriteAmPm(const std::wstring &ampm)
{
    Write(HourStart() + AmPmPlace() - 1, Length(), L" " + ampm);
}

void TimeBehavior::AppendMissingAmPm()
{
    const std::wstring text = TimeText();
    const auto digits = static_cast<std::size_t>(AmPmPlace()) - 1;
    if (!IsTwelveHour() || text.size() < digits || !GetAMPM().empty())
        return;
    const std::wstring begun = text.size() > digits ? text.substr(digits + 1) : std::wstring();
    WriteAmPm(!begun.empty() && m_strPm.starts_with(begun) ? m_strPm : m_strAm);
}

void TimeBehavior::SetSeparator(wchar_t separator)
{
    const int places[] = {HourStart() + 2, HourStart() + 5};
    const int shown = ShowsTime() ? Fields() - 1 : 0;
    StoreSeparator(m_chSeparator, separator, std::span(places, static_cast<std::size_t>(shown)));
}

void TimeBehavior::Show24HourFormat(bool twentyFourHours)
{
    SetFlag(TwentyFourHour, twentyFourHours);
}

void TimeBehavior::ShowSeconds(bool seconds)
{
    SetFlag(WithSeconds, seconds);
}

void TimeBehavior::SetAMPMSymbols(const std::wstring &am, const std::wstring &pm)
{
    const std::wstring before = GetAMPM();
    const bool afternoon = before == m_strPm;
    StoreSymbols(am, pm);
    if (before.empty()) {
        Redraw();
        return;
    }
    std::wstring text = Text();
    text.resize(static_cast<std::size_t>(HourStart() + AmPmPlace()));
    Edit().SetWindowText(text + (afternoon ? m_strPm : m_strAm));
    Redraw();
}

void TimeBehavior::GetAMPMSymbols(std::wstring *am, std::wstring *pm) const
{
    if (am)
        *am = m_strAm;
    if (pm)
        *pm = m_strPm;
}

} // namespace AMSEdit
