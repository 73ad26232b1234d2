// The user's regional settings, as the edits ask for them. A test pins them; the program takes them from the desktop.
#pragma once

#include <optional>
#include <string>

namespace AMSEdit {

/// The questions, with the numbers that they go by.
enum class RegionalQuery {
    DecimalPoint = 14,          ///< of numbers
    GroupSeparator = 15,        ///< of numbers
    CurrencySymbol = 20,        ///
    MoneyDecimalPoint = 22,     ///
    MoneyGroupSeparator = 23,   ///
    MoneyGrouping = 24,         ///< digits between separators, "3"; more groups may follow behind ";"
    MoneyDecimalPlaces = 25,    ///< "2"
    MoneySymbolPosition = 27,   ///< "0" in front, "1" behind, "2" in front with a blank, "3" behind with a blank
    DateSeparator = 29,         ///
    TimeSeparator = 30,         ///
    ShortDatePattern = 31,      ///< "dd.MM.yyyy"
    TimeOfTwentyFourHours = 35, ///< "1", or "0" for twelve hours
    MorningText = 40,           ///< "AM"
    AfternoonText = 41,         ///< "PM"
    NegativeSign = 81,
};

class IRegionalSettings {
public:
    virtual ~IRegionalSettings() = default;
    /// The answer as text; nothing when the query does not succeed.
    virtual std::optional<std::wstring> Query(RegionalQuery query) const = 0;
};

/// Settings that answer nothing: every edit keeps its own defaults.
class CNoRegionalSettings : public IRegionalSettings {
public:
    std::optional<std::wstring> Query(RegionalQuery) const override { return std::nullopt; }
};

/// First character of the answer; what is given as otherwise when there is none.
wchar_t QueryCharacter(const IRegionalSettings &settings, RegionalQuery query, wchar_t otherwise);
/// Leading whole number of the answer, 0 when it starts with none; what is given as otherwise without an answer.
int QueryNumber(const IRegionalSettings &settings, RegionalQuery query, int otherwise);

} // namespace AMSEdit
