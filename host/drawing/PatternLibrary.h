// The hatch patterns that can be used by name: the user's files, and a set of our own under the usual names.
//
// The user's files lie on the support path: patterns.pat with any number of patterns, and NAME.pat with one of that
// name. What they define wins over ours. They are read when a pattern is first asked for, and again when they changed.
#pragma once

#include "host/drawing/PatternFile.h"

#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace velmor {

class PatternLibrary {
public:
    static PatternLibrary &instance();

    /// How a file of the support path is found by name (an empty path: there is none); also forgets what was read.
    void setSource(std::function<std::filesystem::path(const std::filesystem::path &)> supportFile);

    /// By name, upper and lower case alike; null for one that is known nowhere. What was wrong in a file is told once,
    /// with file and line, by the notices. Valid until the next call of refresh or setSource.
    const Pattern *find(std::wstring_view name);
    /// Looks whether the user's files changed, and reads those that did.
    void refresh();
    /// All patterns in the order of their names, the user's in place of ours; ANSI31 among them always. A NAME.pat that
    /// was not asked for yet is not among them.
    std::vector<const Pattern *> all();
    /// Whether a pattern comes from a file of the user.
    bool isUsers(std::wstring_view name);
    /// Grows when a file was read anew.
    unsigned revision() const { return m_revision; }

private:
    struct UserFile {
        std::filesystem::path path; ///< empty: there is none
        std::filesystem::file_time_type time;
        std::uintmax_t size = 0;
        bool operator==(const UserFile &) const = default;
    };
    PatternLibrary();
    UserFile stateOf(const std::filesystem::path &name) const;
    void readUserFile(const std::filesystem::path &name);
    void readSharedFile();

    using Patterns = std::map<std::wstring, Pattern>; ///< by folded name
    std::function<std::filesystem::path(const std::filesystem::path &)> m_supportFile;
    Patterns m_own;
    std::map<std::filesystem::path, UserFile> m_files; ///< as they were when they were read
    std::map<std::filesystem::path, Patterns> m_users;
    unsigned m_revision = 0;
};

/// The file with patterns of the user.
inline constexpr char kUserPatternFile[] = "patterns.pat";

} // namespace velmor
