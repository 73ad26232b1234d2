// Drawings in the closed format, through a converter that is installed beside the program.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace velmor {

/// Whether a file's bytes begin like those of the closed format.
bool isClosedFormat(std::string_view bytes);

/// The programs that can turn such a file into a DXF file, in the order in which they are tried.
inline constexpr const char *kDwgConverters[] = {"dwg2dxf", "ODAFileConverter"};

/// The text of the DXF file that the first converter of the search path makes of a file. Nothing when none is installed
/// or it fails; message is then one line that says so. The file itself is only read.
std::optional<std::string> convertedDwg(const std::filesystem::path &file, std::string &message);

} // namespace velmor
