#include "shell/ModuleFrame.h"

namespace {

constexpr int kLocalNameSize = 132;

template <class Service>
Service *FindService(const wchar_t *name)
{
    return static_cast<Service *>(acrxSysRegistry()->at(name));
}

AcEdCommandStack *CommandStack()
{
    return FindService<AcEdCommandStack>(L"ACAD_REGISTERED_COMMANDS");
}

void AddCommand(AcEdCommandStack &stack, const CommandEntry &entry, void *moduleHandle)
{
    wchar_t loaded[kLocalNameSize] = L"";
    const wchar_t *localName = entry.m_pLocalName;
    if (!localName) {
        acuiLoadString(moduleHandle, entry.m_nLocalNameId, loaded, kLocalNameSize);
        localName = loaded;
    }
    void *const resources = (entry.m_nFlags & kSessionCommandFlag) ? nullptr : moduleHandle;
    stack.addCommand(entry.m_pGroup, entry.m_pGlobalName, localName, entry.m_nFlags, entry.m_pHandler,
                     entry.m_pUiContext, -1, resources, nullptr);
}

} // namespace

void *&ModuleHandle()
{
    static void *handle = nullptr;
    return handle;
}

int AcRxDbxApp::acrxEntryPoint(int message, void *packet)
{
    using Handler = int (AcRxDbxApp::*)(void *);
    static constexpr Handler handlers[] = {
        &AcRxDbxApp::On_kNullMsg,         &AcRxDbxApp::On_kInitAppMsg,    &AcRxDbxApp::On_kUnloadAppMsg,
        &AcRxDbxApp::On_kLoadDwgMsg,      &AcRxDbxApp::On_kUnloadDwgMsg,  &AcRxDbxApp::On_kInvkSubrMsg,
        &AcRxDbxApp::On_kCfgMsg,          &AcRxDbxApp::On_kEndMsg,        &AcRxDbxApp::On_kQuitMsg,
        &AcRxDbxApp::On_kSaveMsg,         &AcRxDbxApp::On_kDependencyMsg, &AcRxDbxApp::On_kNoDependencyMsg,
        &AcRxDbxApp::On_kOleUnloadAppMsg, &AcRxDbxApp::On_kPreQuitMsg,    &AcRxDbxApp::On_kInitDialogMsg,
        &AcRxDbxApp::On_kEndDialogMsg,
    };
    if (message < 0 || message >= static_cast<int>(std::size(handlers)))
        return 0;
    return (this->*handlers[message])(packet);
}

int AcRxDbxApp::On_kInitAppMsg(void *packet)
{
    m_hModule = ModuleHandle();
    if (auto *linker = FindService<AcRxDynamicLinker>(L"DynamicLinker")) {
        if (m_bUnlocked)
            linker->unlockApplication(packet);
        if (m_bMDIAware)
            linker->registerAppMDIAware(packet);
    }
    RegisterServerComponents();

    bool initialised = false;
    for (ClassEntry *entry : Classes()) {
        if (!entry)
            continue;
        entry->m_pInitialise();
        entry->m_bInitialised = true;
        initialised = true;
    }
    if (initialised)
        acrxBuildClassHierarchy();
    return 0;
}

int AcRxDbxApp::On_kUnloadAppMsg(void *)
{
    for (ClassEntry *entry : Classes()) {
        if (!entry || !entry->m_bInitialised)
            continue;
        entry->m_pCleanUp();
        entry->m_bInitialised = false;
    }
    return 0;
}

int AcRxArxApp::On_kInitAppMsg(void *packet)
{
    const int result = AcRxDbxApp::On_kInitAppMsg(packet);
    if (AcEdCommandStack *stack = CommandStack()) {
        for (const CommandEntry *entry : Commands()) {
            if (entry)
                AddCommand(*stack, *entry, m_hModule);
        }
    }
    for (const FunctionEntry *entry : Functions()) {
        if (entry)
            acedDefun(entry->m_pName, entry->m_nCode);
    }
    return result;
}

int AcRxArxApp::On_kUnloadAppMsg(void *packet)
{
    const int result = AcRxDbxApp::On_kUnloadAppMsg(packet);
    if (AcEdCommandStack *stack = CommandStack()) {
        for (const CommandEntry *entry : Commands()) {
            if (entry)
                stack->removeCmd(entry->m_pGroup, entry->m_pGlobalName);
        }
    }
    for (const FunctionEntry *entry : Functions()) {
        if (entry)
            acedUndef(entry->m_pName, entry->m_nCode);
    }
    return result;
}
