// The rule of a numeric edit: how many digits stand before and behind the decimal point, the sign, group separators, a
// fixed prefix, a range that counts when the focus leaves.
#pragma once

#include "controls/rules/Behavior.h"
#include "controls/rules/RegionalSettings.h"

#include <limits>
#include <string_view>

namespace AMSEdit {

/// Flags of a numeric behaviour above those of the focus loss.
inline constexpr unsigned PadZerosBeforeDecimal =
    0x0100; ///< at focus loss: leading zeros up to the whole digits allowed
inline constexpr unsigned PadZerosAfterDecimal = 0x0200; ///< at focus loss: zeros up to the decimals allowed
inline constexpr unsigned NoPadIfEmpty =
    0x0400; ///< at focus loss an empty box stays empty, and nothing further happens to it
inline constexpr unsigned TrimLeadingZeros = 0x0800; ///< at focus loss leading zeros go
inline constexpr unsigned CannotBeNegative = 0x1000; ///< the sign is not taken
inline constexpr unsigned DecimalAfterMaxWhole =
    0x2000; ///< a digit behind a full whole part brings the decimal point with it

/// Surplus digits are cut, never rounded: whole digits lose the tail (123456 with four becomes 1234), and so do
/// decimals. A programmatic set is cut in the same way.
class NumericBehavior : public Behavior {
public:
    /// A negative number of whole digits stands for its absolute value and sets CannotBeNegative. Sign, decimal point
    /// and group separator come from the settings: where they don't answer "-", "." and ",".
    NumericBehavior(CEditBox &edit, int maxWholeDigits, int maxDecimalPlaces, const IRegionalSettings &settings);

    /// Negative n as in the constructor. Any other n makes negative numbers allowed again, so AllowNegative(false)
    /// stands behind it.
    void SetMaxWholeDigits(int n);
    int GetMaxWholeDigits() const { return m_nMaxWholeDigits; }
    void SetMaxDecimalPlaces(int n);
    int GetMaxDecimalPlaces() const { return m_nMaxDecimalPlaces; }
    void AllowNegative(bool allow);
    bool IsNegativeAllowed() const { return !HasFlag(CannotBeNegative); }
    /// 0: no separators.
    void SetDigitsInGroup(int n);
    int GetDigitsInGroup() const { return m_nDigitsInGroup; }
    /// Equal characters: the group separator becomes "." beside a decimal ",", and "," beside any other.
    void SetSeparators(wchar_t decimalPoint, wchar_t groupSeparator);
    /// Each may be null.
    void GetSeparators(wchar_t *decimalPoint, wchar_t *groupSeparator) const;
    wchar_t GetNegativeSign() const { return m_chNegativeSign; }
    void SetPrefix(const std::wstring &prefix);
    const std::wstring &GetPrefix() const { return m_strPrefix; }
    /// Digits, decimals, grouping, both separators and the prefix from a mask such as "$ ###,###.##", read from the
    /// right; what stands in front of the number is the prefix. Makes negative numbers allowed. A mask that makes the
    /// separators equal gets another group separator, as with SetSeparators.
    void SetMask(const std::wstring &mask);
    std::wstring GetMask() const;
    /// Stored as given, also where min is above max: every value is then invalid.
    void SetRange(double min, double max);
    /// Each may be null.
    void GetRange(double *min, double *max) const;

    /// Six decimals behind a ".", whatever the box's decimal point is, then held to the box's rules: on a box with
    /// another decimal point the "." is dropped.
    void SetDouble(double value, bool trimZeros);
    /// 0 for an empty box.
    double GetDouble() const;
    void SetInt(int value);
    /// Whole part, held to what an int takes; 0 for an empty box.
    int GetInt() const;

    /// An invalid value becomes the bound that it is beyond. An empty box counts as 0.
    void AdjustWithinRange();
    /// True within the range, both bounds included.
    virtual bool IsValid() const;
    virtual void ShowErrorMessage();
    /// IsValid, but true for a disabled box. With showError an invalid one shows the message and takes the focus.
    bool CheckIfValid(bool showError) { return CheckValue(*this, showError); }

    std::wstring GetValidText() const override;
    void OnChar(wchar_t character, unsigned repeat, unsigned keyFlags) override;
    void OnKeyDown(unsigned key, unsigned repeat, unsigned keyFlags) override;
    void OnKillFocus(IEditSurface *newFocus) override;

    /// Digits, first decimal point and sign (in front, wherever it stood) of a text without the prefix. With math
    /// symbols the point is "." and the sign "-".
    std::wstring GetNumericText(std::wstring_view text, bool useMathSymbols) const;
    /// The number of a text without the prefix, with separators and prefix; an empty number has no prefix.
    std::wstring GetSeparatedText(std::wstring_view text) const;
    static std::wstring GetDoubleText(double value, bool trimZeros);

private:
    struct Typing;
    using Key = TypedKey;

    /// Where the number begins in a text of the box: behind the prefix where the text has it in full.
    std::size_t NumberStart(std::wstring_view text) const;
    std::wstring NumberOfBox(bool useMathSymbols) const;
    int CountSeparators(std::wstring_view text) const;
    /// Puts the text in its valid form and moves the caret by the separators that have come or gone since there were
    /// oldCount: it then stands on the same digit as before.
    void AdjustSeparators(int oldCount);
    /// Puts a text that a replacement has left in another form in its valid one; the caret stays behind the same digit.
    void Settle();
    void MakeSeparatorsDiffer();
    void ExchangePrefix(const std::wstring &prefix);

    Typing LookAtBox() const;
    void EnterNormally(const Key &key);
    void EnterAndAdjust(const Key &key, int separators);
    void TypeInPrefix(const Typing &typing, const Key &key);
    void TypeSign(const Typing &typing, const Key &key);
    void TypeDecimalPoint(const Typing &typing, const Key &key);
    void TypeDigit(const Typing &typing, const Key &key);
    void TypeDecimal(const Typing &typing, const Key &key);
    void TypeBehindFullWhole(const Typing &typing, const Key &key);

    std::wstring TextWithoutLeadingZeros(std::wstring text) const;
    std::wstring PaddedText(std::wstring text) const;
    /// Puts the box's own sign and decimal point in place of "-" and ".".
    std::wstring InOwnSymbols(std::wstring text) const;

    int m_nMaxWholeDigits;
    int m_nMaxDecimalPlaces;
    wchar_t m_chNegativeSign = L'-';
    wchar_t m_chDecimalPoint = L'.';
    wchar_t m_chGroupSeparator = L',';
    int m_nDigitsInGroup = 0;
    std::wstring m_strPrefix;
    double m_dMinValue = -std::numeric_limits<double>::max();
    double m_dMaxValue = std::numeric_limits<double>::max();
};

/// A currency edit of the settings: groups of three, two decimals, prefix "$", decimals padded and leading zeros cut at
/// focus loss; then what the settings answer. A symbol that stands behind the number is left out.
void SetUpCurrency(NumericBehavior &behavior, const IRegionalSettings &settings);

} // namespace AMSEdit
