// The texts that a user reads, by number (the module's) or by name (the program's own), in Croatian or English.
//
// Shipped in messages/hr.txt and messages/en.txt as lines "NUMBER = text" and "name = text". A file of the same name
// in the user's folder replaces texts line by line. A text whose placeholders differ from the shipped one's is
// refused, since it could not be filled in.
#pragma once

#include "host/services/KeyValueText.h"
#include "host/services/Paths.h"

#include <initializer_list>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace velmor {

class Messages {
public:
    /// Reads the texts of a language ("hr", "en"). What was wrong is told by findings().
    void load(const Paths &paths, std::string_view language);
    /// The text; for an unknown number or name a text that names it.
    std::wstring text(unsigned number) const;
    std::wstring text(std::string_view name) const;
    bool contains(unsigned number) const { return m_byNumber.contains(number); }
    bool contains(std::string_view name) const { return m_byName.contains(name); }
    /// All names of the program's own texts, in order.
    std::vector<std::string> names() const;
    const std::string &language() const { return m_language; }
    const std::vector<FileFinding> &findings() const { return m_findings; }

private:
    void readFile(const std::filesystem::path &file, bool users);
    std::map<unsigned, std::wstring> m_byNumber;
    std::map<std::string, std::wstring, std::less<>> m_byName;
    std::string m_language;
    std::vector<FileFinding> m_findings;
};

/// Placeholders of a text, sorted: "%d", "%.2f", "%s" (filled in as by printf) and "%1" (by position).
std::vector<std::string> placeholdersOf(std::string_view text);

/// "hr" or "en": the one asked for, else the one of the settings, else that of the locale (LC_ALL, LC_MESSAGES, LANG),
/// else "en". Empty texts ask for nothing; unknown ones are passed over.
std::string chooseLanguage(std::string_view asked, std::string_view fromSettings);

/// A text of the program's own in the running program's language.
std::wstring uiText(std::string_view name);
/// The same in UTF-8, with %1, %2, ... replaced by the parts in turn; for messages and findings.
std::string uiLine(std::string_view name, std::initializer_list<std::string_view> parts = {});

} // namespace velmor
