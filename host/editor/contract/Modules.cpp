// What a module asks of the host when it starts: the service dictionary, external functions, the resource chain.
#include "contracts/DrawingHost.h"
#include "host/drawing/Journal.h"
#include "host/editor/CommandStack.h"
#include "host/editor/ModuleLoader.h"
#include "host/editor/Session.h"

#include <algorithm>
#include <cwchar>
#include <filesystem>
#include <map>
#include <vector>

#include <dlfcn.h>

using velmor::journal;
using velmor::Session;

AcRxObject::~AcRxObject() = default;

namespace {

class SystemRegistry final : public AcRxDictionary {
public:
    AcRxObject *at(const wchar_t *name) const override
    {
        Session *session = Session::currentOrNull();
        if (!session || !name)
            return nullptr;
        if (std::wcscmp(name, L"DynamicLinker") == 0)
            return &session->modules();
        if (std::wcscmp(name, L"ACAD_REGISTERED_COMMANDS") == 0)
            return &session->commands();
        return nullptr;
    }
};

/// Names of external functions by code: the table stands for the life of the program.
std::map<int, std::wstring> &functionNames()
{
    static std::map<int, std::wstring> names;
    return names;
}

/// Modules with resources, in the order of attaching.
struct AttachedModule {
    void *handle = nullptr;
    const AcUiString *strings = nullptr;
    int stringCount = 0;
};
std::vector<AttachedModule> &attachedModules()
{
    static std::vector<AttachedModule> modules;
    return modules;
}

auto findModule(void *handle)
{
    return std::ranges::find(attachedModules(), handle, &AttachedModule::handle);
}

void attach(void *handle)
{
    if (handle && findModule(handle) == attachedModules().end())
        attachedModules().push_back({handle, nullptr, 0});
}

/// Writes the call with the file name of the library that lies at the handle; empty when none does.
void journalModule(const char *operation, const void *handle)
{
    if (!velmor::Journal::instance().isRecording())
        return;
    Dl_info library = {};
    const bool known = handle && dladdr(handle, &library) != 0 && library.dli_fname;
    journal(operation, known ? std::filesystem::path(library.dli_fname).filename().string() : std::string());
}

} // namespace

AcRxDictionary *acrxSysRegistry()
{
    static SystemRegistry registry;
    return &registry;
}

void acrxBuildClassHierarchy()
{
    // Class descriptors of this host know their parents from the start.
    journal("acrxBuildClassHierarchy");
}

void InitAcUiDLL()
{
    journal("InitAcUiDLL");
}

void acuiAttachModule(void *moduleHandle)
{
    journalModule("acuiAttachModule", moduleHandle);
    attach(moduleHandle);
}

void acuiDetachModule(void *moduleHandle)
{
    journalModule("acuiDetachModule", moduleHandle);
    std::erase_if(attachedModules(), [&](const AttachedModule &module) { return module.handle == moduleHandle; });
}

void acuiSetStringTable(void *moduleHandle, const AcUiString *entries, int count)
{
    journalModule("acuiSetStringTable", moduleHandle);
    attach(moduleHandle);
    if (const auto module = findModule(moduleHandle); module != attachedModules().end()) {
        module->strings = entries;
        module->stringCount = entries ? count : 0;
    }
}

bool acuiLoadString(void *moduleHandle, int id, wchar_t *buffer, int length)
{
    const auto module = findModule(moduleHandle);
    if (module == attachedModules().end() || !buffer || length < 1)
        return false;
    const AcUiString *end = module->strings + module->stringCount;
    const AcUiString *entry = std::find_if(module->strings, end, [&](const AcUiString &row) { return row.id == id; });
    if (entry == end || !entry->text)
        return false;
    const std::size_t taken = std::min(std::wcslen(entry->text), static_cast<std::size_t>(length - 1));
    std::wmemcpy(buffer, entry->text, taken);
    buffer[taken] = L'\0';
    return true;
}

int acedDefun(const wchar_t *name, short code)
{
    journal("acedDefun", name, code);
    if (!name || !*name || code < 0)
        return RTERROR;
    functionNames()[code] = name;
    return RTNORM;
}

int acedUndef(const wchar_t *name, short code)
{
    journal("acedUndef", name, code);
    const auto found = functionNames().find(code);
    if (!name || found == functionNames().end() || found->second != name)
        return RTERROR;
    functionNames().erase(found);
    return RTNORM;
}

int acedRegFunc(int (*)(), int code)
{
    journal("acedRegFunc", code);
    return RTERROR;
}

int acedGetFunCode()
{
    return RTERROR;
}
