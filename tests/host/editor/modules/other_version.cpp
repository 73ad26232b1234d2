// A module of another version of the host.
#include "tests/host/editor/modules/TestModule.h"

MODULE_ENTRY int acrxGetApiVersion()
{
    return kAcRxApiVersion + 1;
}

MODULE_ENTRY int acrxEntryPoint(int, void *)
{
    acedAlert(L"must not be called");
    return 0;
}
