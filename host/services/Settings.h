// The user's settings: one table of keys, and a text file that holds those that were set.
//
// Only a key that was set has a value here: a caller keeps its own default otherwise. The table's defaults are what a
// settings dialog shows.
#pragma once

#include "host/services/KeyValueText.h"

#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>

namespace velmor {

using SettingValue = std::variant<int, double, std::wstring>;

/// Groups of the settings dialog; a key may stand in several.
enum SettingGroup : unsigned {
    kGroupDefinition = 1, ///< "TCE1", opened from the definition dialog
    kGroupReview = 2,     ///< "TCE2", opened from the review dialog
    kGroupProgram = 4,    ///< the program's own
};

struct SettingSpec {
    const char *key;
    unsigned groups;
    SettingValue standard;              ///< shown when the key is not set; also fixes the type
    double lowest = 0.0, highest = 0.0; ///< limits of a number, both included
    const char *caption;                ///< name of the caption among the messages
    /// Shown in the review's group instead, where the two groups differ.
    std::optional<SettingValue> reviewStandard = std::nullopt;
};

std::span<const SettingSpec> settingTable();
/// Null for a key that the table does not hold.
const SettingSpec *findSetting(std::string_view key);
/// 0 for another name than "TCE1" and "TCE2".
unsigned settingGroup(std::wstring_view name);

class Settings {
public:
    /// Reads the file; one that does not exist holds no settings. Wrong lines are findings and stay in the file.
    void load(const std::filesystem::path &file);
    const std::filesystem::path &file() const { return m_file; }
    const std::vector<FileFinding> &findings() const { return m_findings; }

    /// What was set, in the type of the table; nothing for a key that was not. A key that the table does not hold
    /// gives its text.
    std::optional<SettingValue> value(std::string_view key) const;
    /// The same, else the table's default for the group that shows it. REQUIRES a key of the table.
    SettingValue valueOrStandard(std::string_view key, SettingGroup shownIn = kGroupProgram) const;
    /// Sets a key for this run and writes it to the file, in which nothing else changes. Refused for a value of the
    /// wrong type or beyond the limits.
    SaveResult set(std::string_view key, const SettingValue &value);
    /// Takes the key out, here and in the file.
    SaveResult reset(std::string_view key);

private:
    SaveResult writeLine(std::string_view key, const std::string *line);
    std::filesystem::path m_file;
    std::map<std::string, SettingValue, std::less<>> m_values;
    std::vector<FileFinding> m_findings;
};

} // namespace velmor
