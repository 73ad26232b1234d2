// What the host sees of the module: two entry points, and the one command that comes and goes with it.
//
// The tree list belongs to the module zemxvelmor, which the loader brings before this one and keeps as long as this one
// is there.
#include "overview/NetworkOverviewDlg.h"

#include <dlfcn.h>

namespace {

constexpr wchar_t kGroup[] = L"ZEMXOverview";
constexpr wchar_t kCommand[] = L"zemsewage_overview";
/// It may start while another command runs.
constexpr std::int32_t kTransparent = 1;

/// Stands in the host's chain of modules as long as the library is loaded.
class CModuleAttachment {
public:
    CModuleAttachment()
    {
        Dl_info library = {};
        dladdr(this, &library);
        m_pHandle = library.dli_fbase;
        acuiAttachModule(m_pHandle);
        InitAcUiDLL();
    }
    ~CModuleAttachment() { acuiDetachModule(m_pHandle); }
    CModuleAttachment(const CModuleAttachment &) = delete;
    CModuleAttachment &operator=(const CModuleAttachment &) = delete;
    void *Handle() const { return m_pHandle; }

private:
    void *m_pHandle = nullptr;
};

const CModuleAttachment g_attachment;

template <class Service>
Service *FindService(const wchar_t *name)
{
    return static_cast<Service *>(acrxSysRegistry()->at(name));
}

AcEdCommandStack *CommandStack()
{
    return FindService<AcEdCommandStack>(L"ACAD_REGISTERED_COMMANDS");
}

void RunSewageOverview()
{
    CNetworkOverviewDlg dialog(nullptr);
    dialog.DoModal();
}

int OnInit(void *packet)
{
    if (auto *linker = FindService<AcRxDynamicLinker>(L"DynamicLinker")) {
        linker->unlockApplication(packet);
        linker->registerAppMDIAware(packet);
    }
    if (AcEdCommandStack *stack = CommandStack())
        stack->addCommand(kGroup, kCommand, kCommand, kTransparent, RunSewageOverview, nullptr, -1,
                          g_attachment.Handle(), nullptr);
    return 0;
}

int OnUnload()
{
    if (AcEdCommandStack *stack = CommandStack())
        stack->removeCmd(kGroup, kCommand);
    return 0;
}

} // namespace

extern "C" {

ZEMX_CONTRACT int acrxEntryPoint(int message, void *packet);
ZEMX_CONTRACT int acrxGetApiVersion();

int acrxEntryPoint(int message, void *packet)
{
    switch (message) {
    case kInitAppMsg:
        return OnInit(packet);
    case kUnloadAppMsg:
        return OnUnload();
    default:
        return 0;
    }
}

int acrxGetApiVersion()
{
    return kAcRxApiVersion;
}
}
