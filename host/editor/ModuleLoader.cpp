#include "host/editor/ModuleLoader.h"

#include "host/drawing/Journal.h"
#include "host/drawing/Texts.h"
#include "host/editor/CommandStack.h"
#include "host/editor/Session.h"

#include <algorithm>
#include <cstdlib>

#include <dlfcn.h>

namespace velmor {

namespace {

std::filesystem::path fullPath(const std::filesystem::path &path)
{
    std::error_code error;
    auto full = std::filesystem::weakly_canonical(path, error);
    return error ? path : full;
}

template <class Function>
Function entryPoint(void *handle, const char *name)
{
    return reinterpret_cast<Function>(dlsym(handle, name));
}

} // namespace

void ModuleLoader::unloadAll()
{
    while (!m_modules.empty())
        release(*m_modules.back());
}

Module *ModuleLoader::find(const std::filesystem::path &path) const
{
    const auto found = std::ranges::find_if(m_modules, [&](const auto &module) { return module->path == path; });
    return found == m_modules.end() ? nullptr : found->get();
}

std::optional<std::string> ModuleLoader::loadModule(const std::filesystem::path &path)
{
    const auto full = fullPath(path);
    if (find(full))
        return std::nullopt;
    std::error_code error;
    if (!std::filesystem::is_regular_file(full, error))
        return drawingText("module.none", {full.string()});
    void *handle = dlopen(full.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!handle)
        return drawingText("module.load", {dlerror()});
    const auto version = entryPoint<AcRxApiVersionPoint>(handle, "acrxGetApiVersion");
    const auto entry = entryPoint<AcRxEntryPoint>(handle, "acrxEntryPoint");
    std::string refusal;
    if (!version || !entry)
        refusal = drawingText("module.entry", {full.string()});
    else if (const int number = version(); number != kAcRxApiVersion)
        refusal =
            drawingText("module.version", {full.string(), std::to_string(number), std::to_string(kAcRxApiVersion)});
    if (!refusal.empty()) {
        dlclose(handle);
        return refusal;
    }
    m_modules.push_back(std::make_unique<Module>());
    Module &module = *m_modules.back();
    module.path = full;
    module.handle = handle;
    module.entry = entry;
    m_session.commands().setOwner(&module);
    const int answer = entry(kInitAppMsg, &module);
    m_session.commands().setOwner(nullptr);
    if (answer != 0) {
        release(module);
        return drawingText("module.refused", {full.string(), std::to_string(answer)});
    }
    return std::nullopt;
}

std::optional<std::string> ModuleLoader::unloadModule(const std::filesystem::path &path)
{
    const auto full = fullPath(path);
    Module *module = find(full);
    if (!module)
        return drawingText("module.notLoaded", {full.string()});
    if (!module->unlocked)
        return drawingText("module.locked", {full.string()});
    if (m_session.commands().isRunning())
        return drawingText("module.busy");
    release(*module);
    return std::nullopt;
}

void ModuleLoader::release(Module &module)
{
    module.entry(kUnloadAppMsg, &module);
    m_session.commands().removeAllOf(&module);
    dlclose(module.handle);
    std::erase_if(m_modules, [&](const auto &held) { return held.get() == &module; });
}

std::optional<std::string> ModuleLoader::load(const std::filesystem::path &path)
{
    return Session::current().modules().loadModule(path);
}

std::filesystem::path ModuleLoader::pathOf(const std::string &name)
{
    if (const char *folder = std::getenv("VELMOR_MODULE_DIR"); folder && *folder)
        return std::filesystem::path(folder) / (name + ".so");
    std::error_code error;
    const auto program = std::filesystem::read_symlink("/proc/self/exe", error);
    return program.parent_path().parent_path() / "lib" / (name + ".so");
}

Module *ModuleLoader::caller(const char *operation, const void *packet) const
{
    const auto module = std::ranges::find_if(m_modules, [&](const auto &known) { return known.get() == packet; });
    const bool isKnown = module != m_modules.end();
    journal(operation, isKnown ? (*module)->path.filename().string() : std::string());
    return isKnown ? module->get() : nullptr;
}

bool ModuleLoader::unlockApplication(void *packet)
{
    Module *module = caller("AcRxDynamicLinker::unlockApplication", packet);
    return module && (module->unlocked = true);
}

bool ModuleLoader::registerAppMDIAware(void *packet)
{
    Module *module = caller("AcRxDynamicLinker::registerAppMDIAware", packet);
    return module && (module->mdiAware = true);
}

} // namespace velmor
