// A module that registers a command and then refuses to start.
#include "tests/host/editor/modules/TestModule.h"

MODULE_ENTRY int acrxGetApiVersion()
{
    return kAcRxApiVersion;
}

MODULE_ENTRY int acrxEntryPoint(int message, void *)
{
    if (message == kInitAppMsg)
        commandStack()->addCommand(L"TEST", L"test_never", nullptr, 0, [] {});
    return message == kInitAppMsg ? 3 : 0;
}
