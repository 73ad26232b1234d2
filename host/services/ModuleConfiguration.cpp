// The contract's configuration over the running program's services.
#include "contracts/CoreServices.h"
#include "contracts/LogEngine.h"
#include "host/drawing/Journal.h"
#include "host/services/Icons.h"
#include "host/services/Services.h"
#include "host/services/Text.h"

namespace ZEMGis {

using velmor::Services;

namespace {

/// The operation's entry in the journal tells the key and whether there was a value of that type.
template <class Value>
int readSetting(const char *operation, const wchar_t *key, Value &value)
{
    const auto set = key ? Services::instance().settings().value(velmor::utf8(key)) : std::nullopt;
    const Value *found = set ? std::get_if<Value>(&*set) : nullptr;
    velmor::journal(operation, key, found ? 1 : 0);
    if (!found)
        return 0;
    value = *found;
    return 1;
}

std::wstring withSeparator(const std::filesystem::path &folder)
{
    return folder.empty() ? std::wstring() : velmor::wide((folder / "").string());
}

} // namespace

CModuleConfiguration *CModuleConfiguration::Instance()
{
    static CModuleConfiguration configuration;
    return &configuration;
}

std::wstring CModuleConfiguration::GetMsg(unsigned number) const
{
    const auto &messages = Services::instance().messages();
    return messages.contains(number) ? messages.text(number) : std::wstring();
}

std::wstring CModuleConfiguration::GetPath(const wchar_t *kind) const
{
    velmor::journal("CModuleConfiguration::GetPath", kind);
    const std::wstring name = kind ? kind : L"";
    if (name == L"Support")
        return withSeparator(Services::instance().paths().supportFolder());
    if (name == L"Symbol")
        return withSeparator(Services::instance().symbolFolder());
    return {};
}

int CModuleConfiguration::GetGSValueInt(const wchar_t *key, int &value) const
{
    return readSetting("CModuleConfiguration::GetGSValueInt", key, value);
}
int CModuleConfiguration::GetGSValueDouble(const wchar_t *key, double &value) const
{
    return readSetting("CModuleConfiguration::GetGSValueDouble", key, value);
}
int CModuleConfiguration::GetGSValueString(const wchar_t *key, std::wstring &value) const
{
    return readSetting("CModuleConfiguration::GetGSValueString", key, value);
}

int CModuleConfiguration::SetGSValueInt(const wchar_t *key, int value)
{
    velmor::journal("CModuleConfiguration::SetGSValueInt", key, value);
    if (!key)
        return 0;
    const auto saved = Services::instance().set(velmor::utf8(key), value);
    if (!saved)
        Services::instance().notice(velmor::wide(saved.message));
    return saved ? 1 : 0;
}

int CModuleConfiguration::ShowGSDialog(const wchar_t *group)
{
    velmor::journal("CModuleConfiguration::ShowGSDialog", group);
    if (!group || velmor::settingGroup(group) == 0)
        return 0;
    if (const auto &show = Services::instance().settingsDialog())
        return show(group) ? 1 : 0;
    const std::wstring file = velmor::wide(Services::instance().settings().file().string());
    Services::instance().notice(velmor::uiText("ui.settings.noWindow") + L" " + file);
    return 0;
}

int CModuleConfiguration::GetHighlightColor() const
{
    return std::get<int>(Services::instance().settings().valueOrStandard("HIGHLIGHT_COLOR"));
}

void *CModuleConfiguration::LoadImageW(const wchar_t *name, unsigned type, int width, int height, unsigned flags) const
{
    velmor::journal("CModuleConfiguration::LoadImageW", name, type, width, height, flags);
    return const_cast<velmor::IconFile *>(velmor::findIcon(name ? name : L""));
}

} // namespace ZEMGis

int CLogEngine::GetLoggingOnOff()
{
    return velmor::Services::instance().isLogging() ? 1 : 0;
}
std::string CLogEngine::GetLogFileFullPath()
{
    return velmor::Services::instance().logFile();
}
