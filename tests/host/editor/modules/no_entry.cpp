// A library that is no module.
#include "tests/host/editor/modules/TestModule.h"

MODULE_ENTRY int acrxGetApiVersion()
{
    return kAcRxApiVersion;
}
