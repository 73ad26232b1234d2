// A module that doesn't let itself be unloaded.
#include "tests/host/editor/modules/TestModule.h"

MODULE_ENTRY int acrxGetApiVersion()
{
    return kAcRxApiVersion;
}

MODULE_ENTRY int acrxEntryPoint(int message, void *)
{
    if (message == kInitAppMsg)
        commandStack()->addCommand(L"TEST", L"test_locked", nullptr, 0, [] {});
    return 0;
}
