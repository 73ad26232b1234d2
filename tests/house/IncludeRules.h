// Which folder may include which: the arrows of docs/architecture.md, in the one place where they are checked.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace house {

/// One include line that breaks a rule.
struct Finding {
    std::string file; ///< from the top folder
    std::size_t line = 0;
    std::string include;
    std::string reason;
    bool operator==(const Finding &) const = default;
};

/// Checks the include lines of one source. path is from the top folder, with "/".
std::vector<Finding> checkIncludes(const std::string &path, const std::string &text);

/// True when an #include "..." of that name may be missing because a tool makes the file during the build.
bool isGenerated(const std::string &include);

/// Every .h and .cpp of the project, from the top folder, sorted; without what a build leaves behind.
std::vector<std::string> projectSources(const std::filesystem::path &top);

/// Every other file as well.
std::vector<std::string> projectFiles(const std::filesystem::path &top);

std::string readFile(const std::filesystem::path &path);
/// The top folder of the sources, from VELMOR_SOURCE_DIR.
std::filesystem::path sourceFolder();

} // namespace house
