// What the edits of dates and times share: a text of fields that each stand at a place of their own, every digit of
// which is checked against what the field can still become.
#pragma once

#include "controls/rules/Behavior.h"
#include "controls/rules/CalendarTime.h"
#include "controls/rules/RegionalSettings.h"

#include <functional>
#include <span>
#include <string>

namespace AMSEdit {

/// The smallest and the largest digit that a place takes, both included.
struct DigitLimits {
    wchar_t smallest = L'0';
    wchar_t largest = L'9';
    bool Take(wchar_t character) const { return character >= smallest && character <= largest; }
};

/// A number of two digits. What the second digit may be follows from the first.
struct TwoDigitField {
    int start = 0; ///< place of the first digit in the text
    DigitLimits first;
    std::function<DigitLimits(wchar_t firstDigit)> second;
};

/// Smallest and largest value of a field.
struct FieldRange {
    int smallest = 0;
    int largest = 0;
    bool Holds(int value) const { return value >= smallest && value <= largest; }
};

/// Base of the date and time behaviours. They inherit it virtually, so that an edit of both has one box and one word of
/// flags; each of them binds the box.
class FixedFieldBehavior : public virtual Behavior {
public:
    /// True for a text in its full form with a value within the range.
    virtual bool IsValid() const = 0;
    /// Tells both limits in a message.
    virtual void ShowErrorMessage() = 0;
    /// IsValid, but true for a disabled box. With showError an invalid one shows the message and takes the focus.
    bool CheckIfValid(bool showError) { return CheckValue(*this, showError); }

    void OnKillFocus(IEditSurface *newFocus) override;

protected:
    void SetFlag(unsigned flag, bool on) { ModifyFlags(on ? flag : 0, on ? 0 : flag); }
    std::wstring Text() const { return Edit().GetWindowText(); }
    int Length() const { return static_cast<int>(Text().size()); }
    /// Where a typed character goes: start of the selection, or the caret.
    int Place() const { return Edit().GetSel().start; }
    /// The key is handled once more, from where the caret is by now.
    void HandleAgain(const TypedKey &key) { OnChar(key.character, key.repeat, key.keyFlags); }

    /// Puts the character at the caret: appended at the end of the text, over one character elsewhere. False when an
    /// heir vetoes it.
    bool Enter(const TypedKey &key);
    /// Replaces the characters from start to end; the selection stays where it is.
    void Write(int start, int end, const std::wstring &text);

    // A printable key at the first place of a field, at its second, and behind it. Each tells whether it was taken.

    /// A second digit that can't follow the new first one becomes the smallest that can, and is selected. At the end of
    /// the text a digit that only the second place takes comes in behind a 0.
    bool TypeFirstDigit(const TwoDigitField &field, const TypedKey &key);
    /// The separator behind a lone digit at the end of the text puts a 0 in front of that digit.
    bool TypeSecondDigit(const TwoDigitField &field, const TypedKey &key, wchar_t separator);
    /// The separator is written over the one that stands there. So it is in front of a digit that the field behind it
    /// takes, and the digit is handled again then.
    bool TypeSeparator(const TypedKey &key, wchar_t separator, bool nextFieldTakesIt);
    /// Up and Down call stepField with 1 and -1, unless the box is read-only; other keys are those of a text that can
    /// be shortened from its end alone.
    template <class StepField>
    void HandleKey(unsigned key, unsigned repeat, unsigned keyFlags, StepField &&stepField)
    {
        if ((key == kKeyUp || key == kKeyDown) && !IsReadOnly())
            stepField(key == kKeyUp ? 1 : -1);
        else
            HandleKeyAtEndOnly(key, repeat, keyFlags);
    }

    /// Stores the limits and puts the text in the form that it then has to have.
    void StoreRange(CalendarRange &range, const CalendarTime &min, const CalendarTime &max);
    /// Stores another separator. In the text it takes the old one's place where that stands at one of the places; then
    /// the text is put in its valid form.
    void StoreSeparator(wchar_t &separator, wchar_t other, std::span<const int> places);

    /// The value one step up or down within the range, none at its end. From outside the range a step leads into it.
    static bool Step(int &value, int step, FieldRange range);

    /// A number with zeros in front up to so many digits.
    static std::wstring Padded(int value, int digits);
};

} // namespace AMSEdit
