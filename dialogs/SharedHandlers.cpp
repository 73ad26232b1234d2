#include "dialogs/SharedHandlers.h"

#include "contracts/CatchmentArea.h"
#include "dialogs/DialogTexts.h"

using ZEMGis::Notification::CNotificationFramework;
using ZEMGis::Notification::SetActiveCommand;

void HideUntilAnswered(CAdUiBaseDialog &dialog, unsigned prompt)
{
    if (CNotificationFramework::Instance()->IsCommandActive() != 0)
        return;
    const SetActiveCommand command(L"CA_HIDE");
    dialog.BeginEditorCommand();
    std::wstring answer;
    acedGetString(0, Msg(prompt).c_str(), answer);
    dialog.CompleteEditorCommand(1);
}

void ShowSectionInfo(CAdUiBaseDialog &dialog)
{
    if (CNotificationFramework::Instance()->IsCommandActive() != 0)
        return;
    const SetActiveCommand command(L"CA_INFO");
    dialog.BeginEditorCommand();
    ZEMGis::Sewage::CCatchmentAreaManager::StartCAInfoTooltipSections();
    dialog.CompleteEditorCommand(1);
}
