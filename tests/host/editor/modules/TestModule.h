// What the test modules have in common.
#pragma once

#include "contracts/DrawingHost.h"

#define MODULE_ENTRY extern "C" __attribute__((visibility("default")))

inline AcEdCommandStack *commandStack()
{
    return dynamic_cast<AcEdCommandStack *>(acrxSysRegistry()->at(L"ACAD_REGISTERED_COMMANDS"));
}
inline AcRxDynamicLinker *dynamicLinker()
{
    return dynamic_cast<AcRxDynamicLinker *>(acrxSysRegistry()->at(L"DynamicLinker"));
}
