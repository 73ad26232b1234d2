// Whether a file is still the one that a drawing was read from or saved to.
#pragma once

#include <filesystem>
#include <string>

namespace velmor {

class Drawing;

/// Size and time of a file: another program that writes it changes them. Empty for a file that is not there.
std::string markOf(const std::filesystem::path &file);

/// Whether two paths lead to one file, also where there is none yet.
bool isSameFile(const std::filesystem::path &a, const std::filesystem::path &b);

/// What is known of a drawing's own file (drawing.component<FileMark>()). Drawing::load and Drawing::save keep it.
class FileMark {
public:
    explicit FileMark(Drawing &) {}

    /// The file with that mark holds what the drawing was at that time.
    void set(std::filesystem::path file, std::string mark);
    /// True when that file is the drawing's own one and somebody else has written it since. False for any other file,
    /// and for one that is not there: nothing can be written over then.
    bool isOthersNow(const std::filesystem::path &file) const;

private:
    std::filesystem::path m_file;
    std::string m_mark;
};

} // namespace velmor
