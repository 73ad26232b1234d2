// A drawing file that is to become a block, as it lies on disk.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace velmor {

struct BlockFile {
    std::filesystem::path path; ///< the file that was read
    std::string bytes;
};

/// The file at path; when a ".dwg" is not there or is in the closed format, the ".dxf" of its name beside it, else what
/// an installed converter makes of it (see DwgConverter.h). Nothing when there is no file that can be read; a notice
/// says what is missing for a file in the closed format.
std::optional<BlockFile> readBlockFile(const std::filesystem::path &path);

/// The ".dxf" that is read in place of a ".dwg" that is not there; nothing when it isn't there either.
std::optional<std::filesystem::path> standInOf(const std::filesystem::path &path);

} // namespace velmor
