// Date and time edits under random keys, pastes, sets, ranges and flags: no crash, the caret inside the text, every set
// ends in a form that stays, and keys alone never make a whole text that is no value of the range.
#include "fuzz/Require.h"
#include "tests/controls/EditOps.h"
#include "tests/controls/FakeEditBox.h"

#include "controls/rules/DateTimeEdits.h"
#include "controls/rules/MultiMaskedEdit.h"

#include <cstdint>
#include <string_view>

using namespace AMSEdit;
using edit_ops::Bytes;

namespace {

/// Two bytes, the higher one first.
int numberOf(Bytes &bytes)
{
    const unsigned high = bytes.Next();
    return static_cast<int>(high << 8 | bytes.Next());
}

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

constexpr std::wstring_view kCharacters = L"0123456789//::.. -APMapmdox\x10d\b";
constexpr unsigned kKeys[] = {kKeyLeft, kKeyRight, kKeyHome, kKeyEnd, kKeyUp, kKeyDown, kKeyDelete};

CalendarTime limitOf(Bytes &bytes)
{
    const int year = numberOf(bytes) % 10500 - 100;
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
        while (!m_bytes.AtEnd()) {
            Step();
            const auto [start, end] = m_edit.GetSel();
            const std::wstring text = m_edit.GetWindowText();
            require(start >= 0 && start <= end && end <= static_cast<int>(text.size()));
            if (m_settled)
                require(text == m_edit.GetValidText());
            if (m_settled && m_rangeFits && !text.empty())
                require(m_edit.IsValid());
            if (m_typedOnly && m_rangeFits && m_wholeLength != 0 && text.size() >= m_wholeLength)
                require(text.size() == m_wholeLength && m_edit.IsValid());
        }
        m_edit.SetWindowText(m_edit.GetValidText());
        require(m_edit.GetWindowText() == m_edit.GetValidText());
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
        const std::wstring before = m_edit.GetWindowText();
        switch (m_bytes.Below(8)) {
        case 0:
        case 1:
            ChangeRange();
            break;
        case 2:
            ChangeSeparators();
            break;
        case 3:
            ChangeSymbols();
            break;
        case 4:
            SetValues();
            break;
        default:
            ChangeFlags();
            break;
        }
        // What sets the text leaves it in its valid form by itself.
        if (m_edit.GetWindowText() == before)
            m_edit.Redraw();
    }

    void ChangeRange()
    {
        const CalendarTime min = limitOf(m_bytes), max = limitOf(m_bytes);
        m_edit.SetRange(min, max);
        // Only a range of whole days is sure to hold what the keys of both parts make.
        m_rangeFits = min.IsValid() && max.IsValid() && Fits(min, max);
    }

    void ChangeSeparators()
    {
        static constexpr wchar_t separators[] = {L'/', L'.', L':', L'-'};
        const wchar_t first = separators[m_bytes.Below(std::size(separators))];
        const wchar_t second = separators[m_bytes.Below(std::size(separators))];
        if constexpr (std::is_base_of_v<DateTimeBehavior, Edit>) {
            m_edit.SetDateSeparator(first);
            m_edit.SetTimeSeparator(second);
        } else {
            m_edit.SetSeparator(first);
        }
    }

    void ChangeSymbols()
    {
        static const wchar_t *const texts[] = {L"AM", L"PM", L"dop.", L"odp.", L"", L"x"};
        const wchar_t *const am = texts[m_bytes.Below(std::size(texts))];
        const wchar_t *const pm = texts[m_bytes.Below(std::size(texts))];
        if constexpr (std::is_base_of_v<TimeBehavior, Edit>)
            m_edit.SetAMPMSymbols(am, pm);
    }

    void SetValues()
    {
        const CalendarTime value = limitOf(m_bytes);
        const unsigned what = m_bytes.Next();
        const bool byFields = what & 1;
        if constexpr (std::is_base_of_v<DateBehavior, Edit>) {
            if (byFields)
                m_edit.SetDate(value.GetYear(), value.GetMonth(), value.GetDay());
            else if (what & 2)
                m_edit.SetDate(value);
        }
        if constexpr (std::is_base_of_v<TimeBehavior, Edit>) {
            if (byFields)
                m_edit.SetTime(value.GetHour(), value.GetMinute(), value.GetSecond(), what & 4 ? L"PM" : L"");
            else if (what & 4)
                m_edit.SetTime(value);
        }
        if constexpr (std::is_base_of_v<DateTimeBehavior, Edit>) {
            if (what & 8)
                m_edit.SetDateTime(value);
        }
    }

    void ChangeFlags()
    {
        const unsigned what = m_bytes.Next();
        if constexpr (std::is_base_of_v<DateBehavior, Edit>)
            m_edit.ShowDayBeforeMonth(what & 1);
        if constexpr (std::is_base_of_v<TimeBehavior, Edit>) {
            m_edit.ShowSeconds(what & 2);
            m_edit.Show24HourFormat(what & 4);
        }
        if constexpr (std::is_base_of_v<DateTimeBehavior, Edit>)
            m_edit.ModifyFlags(what & 8 ? DateOnly : 0U, what & 16 ? TimeOnly : 0U);
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
    while (!bytes.AtEnd()) {
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
        require(start >= 0 && start <= end && end <= static_cast<int>(edit.GetWindowText().size()));
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
