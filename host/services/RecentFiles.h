// The files that were opened or saved last, kept in the user's folder from one run to the next.
//
// They stand in recent.txt there, a path on each line, the latest first. The file is read at every question, so that
// programs that run at a time share one list.
#pragma once

#include "host/drawing/Drawing.h"

#include <filesystem>
#include <vector>

namespace velmor {

class RecentFiles {
public:
    static constexpr std::size_t kMost = 12;

    /// Without a user's folder (an empty path) there is no list.
    explicit RecentFiles(const std::filesystem::path &userFolder);
    /// That of the program's user.
    static RecentFiles ofUser();

    /// The latest first, each once; files that are not there (any more) are left out, but not forgotten.
    std::vector<std::filesystem::path> list() const;
    /// Puts a file first.
    SaveResult add(const std::filesystem::path &file) const;
    SaveResult clear() const;

private:
    std::vector<std::filesystem::path> all() const;
    SaveResult write(const std::vector<std::filesystem::path> &files) const;
    std::filesystem::path m_file;
};

} // namespace velmor
