// What the host sees of the module: two entry points; and what happens when the library comes and goes.
#include "shell/VelmorApp.h"

#include <dlfcn.h>

namespace {

/// Attaches the module when its library is loaded and detaches it when the library goes. An object rather than a pair
/// of loader functions: at the end of a program those would run after the host's own objects are gone.
class CModuleAttachment {
public:
    CModuleAttachment()
    {
        Dl_info library = {};
        dladdr(this, &library);
        ModuleHandle() = library.dli_fbase;
        acuiAttachModule(ModuleHandle());
        InitAcUiDLL();
    }
    ~CModuleAttachment() { acuiDetachModule(ModuleHandle()); }
    CModuleAttachment(const CModuleAttachment &) = delete;
    CModuleAttachment &operator=(const CModuleAttachment &) = delete;
};

CModuleAttachment g_attachment;
CVelmorApp g_app;

} // namespace

extern "C" {

ZEMX_CONTRACT int acrxEntryPoint(int message, void *packet);
ZEMX_CONTRACT int acrxGetApiVersion();

int acrxEntryPoint(int message, void *packet)
{
    return g_app.acrxEntryPoint(message, packet);
}

int acrxGetApiVersion()
{
    return kAcRxApiVersion;
}
}
