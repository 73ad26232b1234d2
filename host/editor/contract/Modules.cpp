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
#include <utility>
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

/// External functions by code: the table stands for the life of the program.
struct ExternalFunction {
    std::wstring name;
    int (*function)() = nullptr;
};
std::map<int, ExternalFunction> &externalFunctions()
{
    static std::map<int, ExternalFunction> functions;
    return functions;
}
int runningFunction = RTERROR; ///< code of the one that is being called

constexpr wchar_t kExternalGroup[] = L"EXTERNAL";

/// What is typed to call it; empty for a function that can't be typed.
std::wstring commandOf(const ExternalFunction &external)
{
    const bool isCommand = external.name.size() > 2 && (external.name[0] | 0x20) == L'c' && external.name[1] == L':';
    return isCommand ? external.name.substr(2) : std::wstring();
}

/// Calls the function whose command the session is running.
void callExternal()
{
    Session *session = Session::currentOrNull();
    if (!session || session->commands().running().empty())
        return;
    const std::wstring command = session->commands().running().back();
    for (const auto &[code, external] : externalFunctions()) {
        if (!external.function || commandOf(external) != command)
            continue;
        struct Running { // ends also by an exception
            explicit Running(int own) : before(std::exchange(runningFunction, own)) {}
            ~Running() { runningFunction = before; }
            int before;
        } const running(code);
        const auto function = external.function; // it may take itself out of the table
        function();
        return;
    }
}

/// Gives an external function's command to the command table, or takes it away.
void setCommand(const ExternalFunction &external, bool on)
{
    Session *session = Session::currentOrNull();
    const std::wstring command = commandOf(external);
    if (!session || command.empty())
        return;
    const velmor::JournalPause pause;
    if (on)
        session->commands().addCommand(kExternalGroup, command.c_str(), command.c_str(), 0, &callExternal, nullptr, -1,
                                       nullptr, nullptr);
    else
        session->commands().removeCmd(kExternalGroup, command.c_str());
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
    ExternalFunction &external = externalFunctions()[code];
    setCommand(external, false);
    external = {name, nullptr};
    return RTNORM;
}

int acedUndef(const wchar_t *name, short code)
{
    journal("acedUndef", name, code);
    const auto found = externalFunctions().find(code);
    if (!name || found == externalFunctions().end() || found->second.name != name)
        return RTERROR;
    setCommand(found->second, false);
    externalFunctions().erase(found);
    return RTNORM;
}

int acedRegFunc(int (*function)(), int code)
{
    journal("acedRegFunc", code);
    const auto found = externalFunctions().find(code);
    if (found == externalFunctions().end())
        return RTERROR;
    setCommand(found->second, false);
    found->second.function = function;
    setCommand(found->second, function != nullptr);
    return RTNORM;
}

int acedGetFunCode()
{
    return runningFunction;
}
