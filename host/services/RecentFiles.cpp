#include "host/services/RecentFiles.h"

#include "host/drawing/dxf/AtomicFile.h"
#include "host/services/Services.h"

#include <algorithm>
#include <array>

namespace velmor {

namespace fs = std::filesystem;

RecentFiles::RecentFiles(const fs::path &userFolder)
    : m_file(userFolder.empty() ? fs::path() : userFolder / "recent.txt")
{
}

RecentFiles RecentFiles::ofUser()
{
    return RecentFiles(Services::instance().paths().userFolder());
}

std::vector<fs::path> RecentFiles::all() const
{
    std::vector<fs::path> files;
    const ReadFileResult read = m_file.empty() ? ReadFileResult{FileStatus::NotFound, {}, {}} : readWholeFile(m_file);
    const std::string &text = read.bytes;
    for (std::size_t from = 0; from < text.size();) {
        const std::size_t end = std::min(text.find('\n', from), text.size());
        const fs::path file = text.substr(from, end - from);
        if (file.is_absolute() && std::ranges::find(files, file) == files.end() && files.size() < kMost)
            files.push_back(file);
        from = end + 1;
    }
    return files;
}

std::vector<fs::path> RecentFiles::list() const
{
    auto files = all();
    std::error_code error;
    std::erase_if(files, [&](const fs::path &file) { return !fs::is_regular_file(file, error); });
    return files;
}

SaveResult RecentFiles::add(const fs::path &file) const
{
    std::error_code error;
    const fs::path whole = fs::absolute(file, error).lexically_normal();
    // A name with a line end can't stand on a line.
    if (error || file.empty() || whole.string().find('\n') != std::string::npos)
        return {};
    auto files = all();
    std::erase(files, whole);
    files.insert(files.begin(), whole);
    files.resize(std::min(files.size(), kMost));
    return write(files);
}

SaveResult RecentFiles::clear() const
{
    return write({});
}

SaveResult RecentFiles::write(const std::vector<fs::path> &files) const
{
    if (m_file.empty())
        return {};
    std::error_code error;
    fs::create_directories(m_file.parent_path(), error);
    std::string text;
    for (const fs::path &file : files)
        text += file.string() + '\n';
    const std::array<std::string_view, 1> pieces{text};
    return writeFileAtomically(m_file, pieces, false);
}

} // namespace velmor
