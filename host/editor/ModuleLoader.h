// Loads modules into the session and takes them out again.
#pragma once

#include "contracts/DrawingHost.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace velmor {

class Session;

/// A loaded module. Its address is the packet that the module's entry point gets.
struct Module {
    std::filesystem::path path;
    void *handle = nullptr; ///< of the dynamic linker
    AcRxEntryPoint entry = nullptr;
    bool unlocked = false; ///< the module lets itself be unloaded
    bool mdiAware = false;
};

class ModuleLoader final : public AcRxDynamicLinker {
public:
    explicit ModuleLoader(Session &session) : m_session(session) {}
    ~ModuleLoader() override { unloadAll(); }

    /// Binds the library, tests its version and sends the init message. Nothing, or one line that says why not; the
    /// session is then as it was before. A module that is loaded already is left alone.
    std::optional<std::string> loadModule(const std::filesystem::path &path);
    /// Sends the unload message and takes out the module's commands. Refused for a module that did not unlock
    /// itself, and while a command runs.
    std::optional<std::string> unloadModule(const std::filesystem::path &path);
    /// Unloads what is still loaded, unlocked or not; the last one first.
    void unloadAll();
    const std::vector<std::unique_ptr<Module>> &modules() const { return m_modules; }

    /// loadModule of the one session.
    static std::optional<std::string> load(const std::filesystem::path &path);
    /// Where a program finds a module of that name: VELMOR_MODULE_DIR, or the folder "lib" beside the program's own.
    static std::filesystem::path pathOf(const std::string &name);

    // Contract
    bool unlockApplication(void *packet) override;
    bool registerAppMDIAware(void *packet) override;

private:
    Module *find(const std::filesystem::path &path) const;
    void release(Module &module);
    /// The module of a packet, null for a packet of none; the call is written to the journal.
    Module *caller(const char *operation, const void *packet) const;

    Session &m_session;
    std::vector<std::unique_ptr<Module>> m_modules;
};

} // namespace velmor
