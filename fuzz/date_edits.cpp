// Date and time edits under random keys, pastes, sets, ranges and flags: no crash, the caret inside the text, every set
// ends in a form that stays, and keys alone never make a whole text that is no value of the range.
#include "tests/controls/FakeEditBox.h"

#include "controls/rules/DateTimeEdits.h"
#include "controls/rules/MultiMaskedEdit.h"

#include <cstdint>
#include <cstdlib>
#include <string_view>

using namespace AMSEdit;

namespace {

class Bytes {
public:
    Bytes(const std::uint8_t *data, std::size_t size) : m_data(data), m_size(size) {}
    bool Empty() const { return m_at == m_size; }
    unsigned Next() { return Empty() ? 0 : m_data[m_at++]; }
    int Number() { return static_cast<int>(Next() << 8 | Next()); }

private:
    const std::uint8_t *m_data;
    std::size_t m_size;
    std::size_t m_at = 0;
};

class Clock : public IClock {
    CalendarTime Now() const override { return {2026, 11, 21, 13, 45, 30}; }
};

class Settings : public IRegionalSettings {
public:
    explicit Settings(unsigned bits) : m_bits(bits) {}
    std::optional<std::wstring> Query(RegionalQuery query) const override
    {
        switch (query) {
        case RegionalQuery::DateSeparator:
            return m_bits & 1 ? L"." : L"/";
        case RegionalQuery::TimeSeparator:
            return m_bits & 2 ? L"." : L":";
        case RegionalQuery::ShortDatePattern:
            return m_bits & 4 ? L"d.M.y" : L"M/d/y";
        case RegionalQuery::TimeOfTwentyFourHours:
            return m_bits & 8 ? L"1" : L"0";
        case RegionalQuery::MorningText:
            return m_bits & 16 ? L"dop." : L"AM";
        case RegionalQuery::AfternoonText:
            return m_bits & 16 ? L"odp." : L"PM";
        default:
            return std::nullopt;
        }
    }

private:
    unsigned m_bits;
};

void demand(bool holds)
{
    if (!holds)
        std::abort();
}

constexpr std::wstring_view kCharacters = L"0123456789//::.. -APMapmdox\x10d\b";
constexpr unsigned kKeys[] = {kKeyLeft, kKeyRight, kKeyHome, kKeyEnd, kKeyUp, kKeyDown, kKeyDelete};

CalendarTime limitOf(Bytes &bytes)
{
    const int year = bytes.Number() % 10500 - 100;
    const int month = static_cast<int>(bytes.Next() % 16) - 1, day = static_cast<int>(bytes.Next() % 36) - 2;
    return {year, month, day, static_cast<int>(bytes.Next() % 26), static_cast<int>(bytes.Next() % 62), 0};
}

std::wstring textOf(Bytes &bytes)
{
    std::wstring text;
    for (unsigned length = bytes.Next() % 26; length > 0; --length)
        text += kCharacters[bytes.Next() % kCharacters.size()];
    return text;
}

template <class Edit>
class Run {
public:
    Run(Edit &edit, Bytes &bytes) : m_edit(edit), m_bytes(bytes) {}

    void Go()
    {
        while (!m_bytes.Empty()) {
            Step();
            const auto [start, end] = m_edit.GetSel();
            const std::wstring text = m_edit.GetWindowText();
            demand(start >= 0 && start <= end && end <= static_cast<int>(text.size()));
            if (m_settled)
                demand(text == m_edit.GetValidText());
            if (m_settled && m_rangeFits && !text.empty())
                demand(m_edit.IsValid());
            if (m_typedOnly && m_rangeFits && m_wholeLength != 0 && text.size() >= m_wholeLength)
                demand(text.size() == m_wholeLength && m_edit.IsValid());
        }
        m_edit.SetWindowText(m_edit.GetValidText());
        demand(m_edit.GetWindowText() == m_edit.GetValidText());
    }

private:
    void Step()
    {
        m_settled = false;
        const unsigned what = m_bytes.Next();
        if (what < 160) {
            m_edit.Type(kCharacters[what % kCharacters.size()]);
        } else if (what < 200) {
            m_edit.PressKey(kKeys[what % std::size(kKeys)]);
        } else if (what < 210) {
            const int start = static_cast<int>(m_bytes.Next() % 24);
            m_edit.SetSel(start, start + static_cast<int>(m_bytes.Next() % 24));
        } else if (what < 218) {
            m_edit.SetWindowText(textOf(m_bytes));
            Settled();
        } else if (what < 224) {
            m_edit.SetClipboard(textOf(m_bytes));
            m_edit.PressPaste();
            Settled();
        } else if (what < 228) {
            m_edit.PressCut();
            m_typedOnly = false;
        } else if (what < 232) {
            m_edit.PressUndo();
        } else if (what < 234) {
            m_edit.PressRedo();
        } else if (what < 238) {
            Change();
            Settled();
        } else if (what < 242) {
            SetField();
            m_typedOnly = false;
        } else if (what < 246) {
            m_edit.PressClear();
        } else {
            m_edit.ModifyFlags(what & 0xFF, 0);
            m_edit.OnKillFocus(nullptr);
            m_typedOnly = false;
        }
    }

    void Settled()
    {
        m_settled = true;
        m_typedOnly = true;
        m_wholeLength = m_edit.GetWindowText().size();
    }

    void Change()
    {
        const unsigned what = m_bytes.Next();
        if (what < 64) {
            const CalendarTime min = limitOf(m_bytes), max = limitOf(m_bytes);
            m_edit.SetRange(min, max);
            // Only a range of whole days is sure to hold what the keys of both parts make.
            m_rangeFits = min.IsValid() && max.IsValid() && Fits(min, max);
        } else {
            if constexpr (std::is_base_of_v<DateBehavior, Edit>)
                m_edit.ShowDayBeforeMonth(what & 1);
            if constexpr (std::is_base_of_v<TimeBehavior, Edit>) {
                m_edit.ShowSeconds(what & 2);
                m_edit.Show24HourFormat(what & 4);
            }
            if constexpr (std::is_base_of_v<DateTimeBehavior, Edit>)
                m_edit.ModifyFlags(what & 8 ? DateOnly : 0U, what & 16 ? TimeOnly : 0U);
            m_edit.Redraw();
        }
    }

    static bool Fits(const CalendarTime &min, const CalendarTime &max)
    {
        if constexpr (!std::is_base_of_v<TimeBehavior, Edit>)
            return min.DateAlone() <= max.DateAlone();
        return false; // a time leads out of a range by keys, as no digit is held to it
    }

    void SetField()
    {
        const int value = static_cast<int>(m_bytes.Next()) - 20;
        if constexpr (std::is_base_of_v<DateBehavior, Edit>) {
            m_edit.SetMonth(value);
            m_edit.SetDay(value);
            m_edit.SetYear(value * 50);
        }
        if constexpr (std::is_base_of_v<TimeBehavior, Edit>) {
            m_edit.SetHour(value);
            m_edit.SetMinute(value);
            m_edit.SetSecond(value);
            m_edit.SetAMPM(L"PM");
        }
    }

    Edit &m_edit;
    Bytes &m_bytes;
    bool m_settled = false;
    bool m_typedOnly = false; ///< nothing but keys since the text last had its whole form
    bool m_rangeFits = true;
    std::size_t m_wholeLength = 0;
};

template <class Edit>
void run(const Settings &settings, Bytes &bytes)
{
    const Clock clock;
    Edit edit(settings, clock);
    Run<Edit>(edit, bytes).Go();
}

/// The edit of several masks: the same keys, with its mask changed in between.
void runMultiMasked(const Settings &settings, Bytes &bytes)
{
    constexpr const wchar_t *kMasks[] = {
        L"##/##/#### ##:##:##", L"##/##/####", L"##:##", L"#,###.##", L"(##) ##", L"x"};
    const Clock clock;
    TMultiMaskedEdit<FakeEditBox> edit(settings, clock);
    while (!bytes.Empty()) {
        const unsigned what = bytes.Next();
        if (what < 20)
            edit.SetMask(kMasks[what % std::size(kMasks)]);
        else if (what < 60)
            edit.PressKey(kKeys[what % std::size(kKeys)]);
        else if (what < 80)
            edit.SetWindowText(textOf(bytes));
        else if (what < 90)
            edit.OnKillFocus(nullptr);
        else
            edit.Type(kCharacters[what % kCharacters.size()]);
        const auto [start, end] = edit.GetSel();
        demand(start >= 0 && start <= end && end <= static_cast<int>(edit.GetWindowText().size()));
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    Bytes bytes(data, size);
    const unsigned kind = bytes.Next() % 4;
    const Settings settings(bytes.Next());
    if (kind == 0)
        run<TDateEdit<FakeEditBox>>(settings, bytes);
    else if (kind == 1)
        run<TTimeEdit<FakeEditBox>>(settings, bytes);
    else if (kind == 2)
        run<TDateTimeEdit<FakeEditBox>>(settings, bytes);
    else
        runMultiMasked(settings, bytes);
    return 0;
}
