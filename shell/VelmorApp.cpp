#include "shell/VelmorApp.h"

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
