#include "tests/house/IncludeRules.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <sstream>
#include <stdexcept>

namespace house {

namespace {

/// For each folder the folders that it may include; its own always. A folder that stands here as "a/b" has rules of
/// its own, any other one those of its first part.
const std::map<std::string, std::set<std::string>> &arrows()
{
    static const std::map<std::string, std::set<std::string>> table = {
        {"contracts", {}},
        {"catalog", {"contracts"}},
        {"geometry", {"contracts"}},
        {"controls", {"controls/rules", "contracts"}},
        {"controls/rules", {}},
        {"controls/treelist", {"controls", "controls/rules", "contracts"}},
        {"dialogs", {"controls", "controls/rules", "catalog", "geometry", "contracts"}},
        {"definition", {"dialogs", "controls", "controls/rules", "catalog", "geometry", "contracts"}},
        {"review", {"dialogs", "controls", "controls/rules", "catalog", "geometry", "contracts"}},
        {"shell", {"contracts", "dialogs", "definition", "review"}},
        {"overview", {"contracts", "overview/forest"}},
        {"overview/forest", {}},
        {"host", {"contracts"}},
        {"host/boundary", {}},
        {"host/drawing", {"contracts"}},
        {"host/services", {"contracts", "host/drawing"}},
        {"host/network", {"contracts", "host/drawing", "host/services"}},
        {"host/editor", {"contracts", "host/drawing", "host/services", "host/network", "host/boundary"}},
        {"host/sewage", {"contracts", "host/drawing", "host/services", "host/network", "host/editor"}},
        {"app",
         {"host", "host/drawing", "host/services", "host/network", "host/editor", "host/sewage", "host/boundary"}},
    };
    return table;
}

/// Single headers beyond the table: what the module shows of itself to another one.
const std::map<std::string, std::string> kShownHeaders = {{"overview", "controls/treelist/TreeListCtrl.h"}};

/// Folders whose files may include every other one.
const std::set<std::string> kOpenFolders = {"tests", "bench", "fuzz"};
/// Folders that build without Qt, and the one contract that needs it.
const std::set<std::string> kWithoutQt = {"catalog", "geometry", "controls/rules", "host/boundary", "overview/forest"};
constexpr char kQtContract[] = "contracts/HostDialog.h";

/// The folder of the table that a path belongs to; empty for a file at the top.
std::string folderOf(const std::string &path)
{
    const auto first = path.find('/');
    if (first == std::string::npos)
        return "";
    const auto second = path.find('/', first + 1);
    if (second != std::string::npos && arrows().contains(path.substr(0, second)))
        return path.substr(0, second);
    return path.substr(0, first);
}

bool isProjectFolder(const std::string &folder)
{
    return arrows().contains(folder) || kOpenFolders.contains(folder);
}

bool isQtHeader(const std::string &include)
{
    static const std::regex pattern("Q[A-Z][A-Za-z]*(/.*)?|q[a-z]+(_p)?\\.h|Qt[A-Z].*");
    return std::regex_match(include, pattern);
}

std::string whyNot(const std::string &path, const std::string &include, bool quoted)
{
    const std::string from = folderOf(path), to = folderOf(include);
    if (!isProjectFolder(from))
        return "the folder stands in no rule";
    if (kWithoutQt.contains(from) && (isQtHeader(include) || include == kQtContract))
        return from + " builds without Qt";
    if (!quoted)
        return isProjectFolder(to) ? "project headers stand in quotes" : "";
    if (isGenerated(include))
        return "";
    if (to.empty() || include.find("..") != std::string::npos)
        return "project headers are named from the top folder";
    if (from == to || kOpenFolders.contains(from))
        return "";
    if (const auto shown = kShownHeaders.find(from); shown != kShownHeaders.end() && shown->second == include)
        return "";
    const auto rule = arrows().find(from);
    return rule->second.contains(to) ? "" : from + " may not include " + to;
}

bool hasSourceSuffix(const std::string &path)
{
    return path.ends_with(".h") || path.ends_with(".cpp");
}

} // namespace

bool isGenerated(const std::string &include)
{
    return include.find('/') == std::string::npos &&
           (include.starts_with("ui_") || include.starts_with("moc_") || include.ends_with(".moc"));
}

std::vector<Finding> checkIncludes(const std::string &path, const std::string &text)
{
    static const std::regex pattern(R"(^\s*#\s*include\s*([<"])([^>"]+)[>"])");
    std::vector<Finding> findings;
    std::istringstream lines(text);
    std::size_t number = 0;
    for (std::string line; std::getline(lines, line);) {
        ++number;
        std::smatch match;
        if (!std::regex_search(line, match, pattern))
            continue;
        if (std::string reason = whyNot(path, match[2], match[1] == "\""); !reason.empty())
            findings.push_back({path, number, match[2], reason});
    }
    return findings;
}

std::vector<std::string> projectFiles(const std::filesystem::path &top)
{
    static const std::set<std::string> skipped = {".git", "build", "out", ".cache"};
    std::vector<std::string> files;
    for (auto entry = std::filesystem::recursive_directory_iterator(top);
         entry != std::filesystem::recursive_directory_iterator(); ++entry) {
        if (entry.depth() == 0 && skipped.contains(entry->path().filename().string()))
            entry.disable_recursion_pending();
        else if (entry->is_regular_file())
            files.push_back(entry->path().lexically_relative(top).generic_string());
    }
    std::sort(files.begin(), files.end());
    return files;
}

std::vector<std::string> projectSources(const std::filesystem::path &top)
{
    std::vector<std::string> files = projectFiles(top);
    std::erase_if(files, [](const std::string &path) { return !hasSourceSuffix(path); });
    return files;
}

std::string readFile(const std::filesystem::path &path)
{
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

std::filesystem::path sourceFolder()
{
    const char *folder = std::getenv("VELMOR_SOURCE_DIR");
    if (!folder || !*folder)
        throw std::runtime_error("VELMOR_SOURCE_DIR does not name the source folder (ctest sets it)");
    return folder;
}

} // namespace house
