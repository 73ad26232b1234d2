// Where the program's own files lie: shipped resources, and what belongs to the user.
//
// Resources are looked for in the folder that VELMOR_RESOURCES names (then nowhere else), in share/velmor beside the
// program's bin folder, and in the source folder the program was built from. They hold messages/, support/, symbols/,
// icons/ and forms/. The user's folder is VELMOR_CONFIG_DIR, else velmor in XDG_CONFIG_HOME or in ~/.config; it may
// hold messages/ and support/ of its own, and settings.cfg.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace velmor {

class Paths {
public:
    Paths(std::vector<std::filesystem::path> resourceFolders, std::filesystem::path userFolder)
        : m_resourceFolders(std::move(resourceFolders)), m_userFolder(std::move(userFolder))
    {
    }
    static Paths fromEnvironment();

    /// Full path of a shipped file or folder ("messages/hr.txt"); empty when there is none.
    std::filesystem::path resource(std::string_view relative) const;
    /// Empty when the environment names none; the folder need not exist.
    const std::filesystem::path &userFolder() const { return m_userFolder; }
    std::filesystem::path settingsFile() const;

    /// Folders that are searched for support files before the user's and the shipped ones; from the settings.
    void setSupportFolders(std::vector<std::filesystem::path> folders) { m_supportFolders = std::move(folders); }
    /// Full path of a support file by name: in the set folders, the user's folder, the shipped ones. Empty when there
    /// is none. A shipped file that the program may write (the terrain catalogue) is copied to the user's folder
    /// first, so that the shipped one stays as it is. An absolute path answers itself when the file exists.
    std::filesystem::path supportFile(const std::filesystem::path &name) const;
    /// The folder in which a new support file belongs; made when it is the user's. Empty when there is none.
    std::filesystem::path supportFolder() const;

private:
    std::vector<std::filesystem::path> m_resourceFolders, m_supportFolders;
    std::filesystem::path m_userFolder;
};

} // namespace velmor
