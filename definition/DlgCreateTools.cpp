// Small handlers of the definition dialog: hiding it, and the information tools.
#include "definition/DlgCreateCatchmentArea.h"

#include "definition/DefinitionMessages.h"

using ZEMGis::Notification::CNotificationFramework;
using ZEMGis::Notification::SetActiveCommand;
using namespace ZEMGis::Sewage;

void CDlgCreateCatchmentArea::OnBtnHide()
{
    if (CNotificationFramework::Instance()->IsCommandActive() != 0)
        return;
    const SetActiveCommand command(L"CA_HIDE");
    BeginEditorCommand();
    std::wstring answer;
    acedGetString(0, Msg(MessageId::kWaitForKey).c_str(), answer);
    CompleteEditorCommand(1);
}

void CDlgCreateCatchmentArea::OnBtnInfoSections()
{
    if (CNotificationFramework::Instance()->IsCommandActive() != 0)
        return;
    const SetActiveCommand command(L"CA_INFO");
    BeginEditorCommand();
    CCatchmentAreaManager::StartCAInfoTooltipSections();
    CompleteEditorCommand(1);
}

void CDlgCreateCatchmentArea::OnBtnInfoAreas()
{
    if (CNotificationFramework::Instance()->IsCommandActive() != 0)
        return;
    const SetActiveCommand command(L"CA_INFO");
    BeginEditorCommand();
    CatchmentAreas areas;
    CCatchmentAreaManager::Instance()->GetAllCatchmentAreas(areas, kTypeAll);
    std::vector<ZEMGis::Topology::CEntity *> entities;
    for (const AreaPtr &area : areas) {
        if (area)
            entities.push_back(area.get());
    }
    CCatchmentAreaManager::SetSpatialIndexCA(
        ZEMGis::Topology::CTopoEditor::Instance()->CreateCustomSpatialIndex(entities));
    CCatchmentAreaManager::StartCAInfoTooltipAreas();
    CompleteEditorCommand(1);
}
