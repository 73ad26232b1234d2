#include "host/drawing/FileMark.h"

#include <sys/stat.h>

namespace velmor {

namespace fs = std::filesystem;

std::string markOf(const fs::path &file)
{
    struct stat state = {};
    if (file.empty() || ::stat(file.c_str(), &state) != 0)
        return {};
    return std::to_string(state.st_size) + ' ' + std::to_string(state.st_mtim.tv_sec) + ' ' +
           std::to_string(state.st_mtim.tv_nsec);
}

bool isSameFile(const fs::path &a, const fs::path &b)
{
    std::error_code error;
    if (fs::equivalent(a, b, error) && !error)
        return true;
    const auto absoluteA = fs::weakly_canonical(a, error), absoluteB = fs::weakly_canonical(b, error);
    return !error && absoluteA == absoluteB;
}

void FileMark::set(fs::path file, std::string mark)
{
    std::error_code error;
    m_file = file.empty() ? file : fs::absolute(file, error);
    m_mark = std::move(mark);
}

bool FileMark::isOthersNow(const fs::path &file) const
{
    if (m_file.empty() || !isSameFile(file, m_file))
        return false;
    const std::string now = markOf(file);
    return !now.empty() && now != m_mark;
}

} // namespace velmor
