// Drawings in the closed format, through a converter that is installed beside the program.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace velmor {

/// Whether a file's bytes begin like those of the closed format.
bool isClosedFormat(std::string_view bytes);

/// The program that turns such a file into a DXF file, called as PROGRAM -y -o OUT IN.
inline constexpr const char *kDwgConverter = "dwg2dxf";

/// The text of the DXF file that the converter makes of a file. Nothing when it is not on the search path or fails;
/// message is then one line that says so. The file itself is only read.
std::optional<std::string> convertedDwg(const std::filesystem::path &file, std::string &message);

} // namespace velmor
