// A module with two commands, which it takes out again when it is unloaded.
#include "tests/host/editor/modules/TestModule.h"

#include <stdexcept>

namespace {
void sayHello()
{
    acedAlert(L"hello from the module");
}
void throwUp()
{
    throw std::runtime_error("the module's command failed");
}
} // namespace

MODULE_ENTRY int acrxGetApiVersion()
{
    return kAcRxApiVersion;
}

MODULE_ENTRY int acrxEntryPoint(int message, void *packet)
{
    if (message == kInitAppMsg) {
        dynamicLinker()->unlockApplication(packet);
        dynamicLinker()->registerAppMDIAware(packet);
        commandStack()->addCommand(L"TEST", L"test_hello", L"test_gruss", 1, sayHello);
        commandStack()->addCommand(L"TEST", L"test_throw", nullptr, 0, throwUp);
    } else if (message == kUnloadAppMsg) {
        commandStack()->removeCmd(L"TEST", L"test_hello");
    }
    return 0;
}
