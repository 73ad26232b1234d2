// Icons of the module's resources by name. Qt-free: an icon is the file that holds it.
#pragma once

#include <filesystem>
#include <string>

namespace velmor {

/// What CModuleConfiguration::LoadImageW hands out.
struct IconFile {
    std::filesystem::path path; ///< an .svg or .png file
};

/// The icon of that name (icons/NAME.svg or .png among the resources); null when there is none. Lives as long as the
/// program.
const IconFile *findIcon(const std::wstring &name);

} // namespace velmor
