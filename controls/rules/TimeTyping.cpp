// Keys of a time edit.
#include "controls/rules/NumberText.h"
#include "controls/rules/TimeBehavior.h"

#include <cwctype>

namespace AMSEdit {

namespace {

constexpr int kFieldWidth = 3; // two digits and what stands behind them

wchar_t capitalOf(wchar_t character)
{
    return static_cast<wchar_t>(std::towupper(static_cast<std::wint_t>(character)));
}

} // namespace

TwoDigitField TimeBehavior::HourField() const
{
    const bool twelve = IsTwelveHour();
    const auto second = [=](wchar_t first) {
        DigitLimits limits;
        if (twelve && first == L'0')
            limits.smallest = L'1';
        if (first == L'2')
            limits.largest = L'3';
        else if (first == L'1' && twelve)
            limits.largest = L'2';
        return limits;
    };
    return {HourStart(), {L'0', twelve ? L'1' : L'2'}, second};
}

TwoDigitField TimeBehavior::Field(int index) const
{
    if (index == 0)
        return HourField();
    return {HourStart() + index * kFieldWidth, {L'0', L'5'}, [](wchar_t) { return DigitLimits(); }};
}

void TimeBehavior::OnChar(wchar_t character, unsigned repeat, unsigned keyFlags)
{
    if (IsReadOnly())
        return;
    const TypedKey key{character, repeat, keyFlags};
    const int place = Place() - HourStart();
    const wchar_t capital = capitalOf(character);
    if (!IsPrintable(character))
        TypeControlCharacter(key);
    else if (IsTwelveHour() && (capital == L'A' || capital == L'P'))
        TypeLetter(key, place);
    else if (place >= 0 && place < AmPmPlace() - 1)
        TypeDigit(key, place);
    else if (IsTwelveHour() && place == AmPmPlace() - 1 && character == L' ')
        Enter(key);
    else if (IsTwelveHour() && place >= AmPmPlace())
        StepOverLetter(key, place);
}

void TimeBehavior::TypeDigit(const TypedKey &key, int place)
{
    const int index = place / kFieldWidth;
    bool taken = false;
    switch (place % kFieldWidth) {
    case 0:
        taken = TypeFirstDigit(Field(index), key);
        break;
    case 1:
        taken = TypeSecondDigit(Field(index), key, index + 1 < Fields() ? m_chSeparator : L'\0');
        break;
    default:
        TypeSeparator(key, m_chSeparator, Field(index + 1).first.Take(key.character));
        break;
    }
    if (taken)
        AppendMissingAmPm();
}

void TimeBehavior::TypeLetter(const TypedKey &key, int place)
{
    const bool hasPlace = static_cast<int>(TimeText().size()) >= AmPmPlace() - 1;
    if (!hasPlace || !ShouldEnter(key.character))
        return;
    WriteAmPm(capitalOf(key.character) == L'A' ? m_strAm : m_strPm);
    if (place <= AmPmPlace()) {
        const int behind = HourStart() + AmPmPlace() + AmPmLength();
        Edit().SetSel(behind, behind);
    }
}

bool TimeBehavior::StepOverLetter(const TypedKey &key, int place)
{
    const auto at = static_cast<std::size_t>(place - AmPmPlace());
    const std::wstring shown = TimeText().substr(static_cast<std::size_t>(AmPmPlace()));
    const wchar_t capital = capitalOf(key.character);
    if (at == shown.size()) {
        for (const std::wstring &ampm : {m_strAm, m_strPm}) {
            if (at < ampm.size() && ampm.starts_with(shown) && capitalOf(ampm[at]) == capital) {
                if (ShouldEnter(key.character))
                    Edit().ReplaceSel(ampm.substr(at), true);
                return true;
            }
        }
    } else if (Edit().GetSel().IsCaret() && capitalOf(shown[at]) == capital) {
        OnKeyDown(kKeyRight, 1, 0);
        return true;
    }
    return false;
}

void TimeBehavior::OnKeyDown(unsigned key, unsigned repeat, unsigned keyFlags)
{
    HandleKey(key, repeat, keyFlags, [this](int step) { StepField(step); });
}

void TimeBehavior::StepField(int step)
{
    const int place = Place() - HourStart();
    if (place < 0)
        return;
    if (place >= AmPmPlace()) {
        if (!GetAMPM().empty() && place <= AmPmPlace() + AmPmLength())
            WriteAmPm(GetAMPM() == m_strAm ? m_strPm : m_strAm);
        return;
    }
    const int index = place / kFieldWidth;
    const FieldRange range = index == 0 ? Hours() : FieldRange{0, 59};
    if (int value = NumberAt(index * kFieldWidth); Step(value, step, range))
        SetField(index, value, range);
}

} // namespace AMSEdit
