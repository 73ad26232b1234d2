// The guard against overlapping commands; the other small services that need nothing of the host.
#include "contracts/CoreServices.h"
#include "host/drawing/Journal.h"

namespace ZEMGis {

namespace Notification {

namespace {

/// Names of the commands that are active now, outermost first.
std::vector<std::wstring> &activeCommands()
{
    static std::vector<std::wstring> names;
    return names;
}

} // namespace

CNotificationFramework *CNotificationFramework::Instance()
{
    static CNotificationFramework framework;
    return &framework;
}

int CNotificationFramework::IsCommandActive() const
{
    return activeCommands().empty() ? 0 : 1;
}

SetActiveCommand::SetActiveCommand(const wchar_t *name)
{
    velmor::journal("SetActiveCommand", name);
    activeCommands().emplace_back(name ? name : L"");
}

SetActiveCommand::~SetActiveCommand()
{
    velmor::journal("~SetActiveCommand", activeCommands().back());
    activeCommands().pop_back();
}

} // namespace Notification

namespace System {

class CGisSystem {};

CSystemManager *CSystemManager::Instance()
{
    static CSystemManager manager;
    return &manager;
}

CGisSystem *CSystemManager::GetActiveSystem() const
{
    static CGisSystem system;
    return &system;
}

} // namespace System

namespace Data {

class CDataDefinition {};

CDataConfiguration *CDataConfiguration::Instance()
{
    static CDataConfiguration configuration;
    return &configuration;
}

CDataDefinition *CDataConfiguration::GetDataDefinitionByID(const wchar_t *id) const
{
    velmor::journal("CDataConfiguration::GetDataDefinitionByID", id);
    static CDataDefinition definition; // every key may be attached, so one definition serves all
    return &definition;
}

} // namespace Data

namespace Selection {

CSelectionSet::~CSelectionSet() = default;

} // namespace Selection

} // namespace ZEMGis
