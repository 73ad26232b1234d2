#include "shell/VelmorApp.h"

#include "contracts/AreaDialogs.h"
#include "shell/SewageCommands.h"

namespace {

constexpr wchar_t kGroup[] = L"ZEMXVelmor";

constexpr CommandEntry kCreate = {
    kGroup, L"zemsewage_create", L"zemsewage_create", kTransparentCommandFlag, RunSewageCreate, nullptr, -1};
constexpr CommandEntry kEdit = {
    kGroup, L"zemsewage_edit", L"zemsewage_edit", kTransparentCommandFlag, RunSewageEdit, nullptr, -1};
constexpr const CommandEntry *kCommands[] = {&kCreate, &kEdit};

} // namespace

CommandTable CVelmorApp::Commands() const
{
    return kCommands;
}

int CVelmorApp::On_kInitAppMsg(void *packet)
{
    const int result = AcRxArxApp::On_kInitAppMsg(packet);
    ZEMGis::Sewage::SetSectionSharesDialog(RunSectionShares);
    return result;
}

int CVelmorApp::On_kUnloadAppMsg(void *packet)
{
    ZEMGis::Sewage::SetSectionSharesDialog(nullptr);
    return AcRxArxApp::On_kUnloadAppMsg(packet);
}
