#include "host/services/Paths.h"

#include "host/drawing/dxf/AtomicFile.h"

#include <array>
#include <cstdlib>

namespace velmor {

namespace fs = std::filesystem;

namespace {

/// Support files that the module writes back.
constexpr auto kWrittenFiles = std::to_array<std::string_view>({"ZEMXTerrainType.cfg"});

fs::path fromVariable(const char *name)
{
    const char *value = std::getenv(name);
    return value && *value ? fs::path(value) : fs::path();
}

bool isFile(const fs::path &path)
{
    std::error_code error;
    return fs::is_regular_file(path, error);
}

bool isFolder(const fs::path &path)
{
    std::error_code error;
    return fs::is_directory(path, error);
}

} // namespace

Paths Paths::fromEnvironment()
{
    std::vector<fs::path> resources;
    if (const fs::path chosen = fromVariable("VELMOR_RESOURCES"); !chosen.empty()) {
        resources.push_back(chosen);
    } else {
        std::error_code error;
        const fs::path program = fs::read_symlink("/proc/self/exe", error);
        if (!error)
            resources.push_back(program.parent_path().parent_path() / "share" / "velmor");
        resources.emplace_back(VELMOR_SOURCE_RESOURCES);
    }
    fs::path user = fromVariable("VELMOR_CONFIG_DIR");
    if (user.empty()) {
        fs::path base = fromVariable("XDG_CONFIG_HOME");
        if (base.empty() && !fromVariable("HOME").empty())
            base = fromVariable("HOME") / ".config";
        if (!base.empty())
            user = base / "velmor";
    }
    return {std::move(resources), std::move(user)};
}

fs::path Paths::resource(std::string_view relative) const
{
    std::error_code error;
    for (const fs::path &folder : m_resourceFolders)
        if (fs::exists(folder / relative, error))
            return folder / relative;
    return {};
}

fs::path Paths::settingsFile() const
{
    return m_userFolder.empty() ? fs::path() : m_userFolder / "settings.cfg";
}

fs::path Paths::supportFile(const fs::path &name) const
{
    if (name.empty())
        return {};
    if (name.is_absolute())
        return isFile(name) ? name : fs::path();
    for (const fs::path &folder : m_supportFolders)
        if (isFile(folder / name))
            return folder / name;
    const fs::path users = m_userFolder.empty() ? fs::path() : m_userFolder / "support" / name;
    if (!users.empty() && isFile(users))
        return users;
    const fs::path shipped = resource("support/" + name.string());
    if (shipped.empty() || !isFile(shipped))
        return {};
    for (const std::string_view written : kWrittenFiles) {
        if (name != written || users.empty())
            continue;
        // All of it or nothing: half a file of the user's would win from then on.
        const ReadFileResult read = readWholeFile(shipped);
        const std::string_view pieces[] = {read.bytes};
        std::error_code error;
        fs::create_directories(users.parent_path(), error);
        if (read && !error && writeFileAtomically(users, pieces, false))
            return users;
    }
    return shipped;
}

fs::path Paths::supportFolder() const
{
    for (const fs::path &folder : m_supportFolders)
        if (isFolder(folder))
            return folder;
    if (!m_userFolder.empty()) {
        std::error_code error;
        fs::create_directories(m_userFolder / "support", error);
        if (isFolder(m_userFolder / "support"))
            return m_userFolder / "support";
    }
    return resource("support");
}

} // namespace velmor
