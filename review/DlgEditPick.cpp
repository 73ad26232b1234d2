// The review dialog's pick in the drawing: each picked area is checked, or let go of when it was checked already.
#include "review/DlgEditCatchmentArea.h"

#include "ui_review.h"

using namespace ZEMGis::Sewage;
using ZEMGis::Notification::CNotificationFramework;
using ZEMGis::Notification::SetActiveCommand;

void CDlgEditCatchmentArea::OnBtnPick()
{
    if (CNotificationFramework::Instance()->IsCommandActive() != 0)
        return;
    const SetActiveCommand command(L"CA_SELOBJ");
    if (m_checkedAreas.empty())
        SetHighlight(0);
    BeginEditorCommand();
    std::vector<ZEMGis::Topology::CEntity *> entities;
    for (const AreaPtr &area : m_allAreas) {
        if (area)
            entities.push_back(area.get());
    }
    CCatchmentAreaManager::SetSpatialIndexCA(
        ZEMGis::Topology::CTopoEditor::Instance()->CreateCustomSpatialIndex(entities));
    for (int status = RTNORM; status == RTNORM;) {
        status = CCatchmentAreaManager::StartCAInfoTooltipAreas();
        const CCatchmentArea *picked = status == RTNORM ? CCatchmentAreaManager::GetInteractivelySelectedCA() : nullptr;
        if (!picked)
            continue;
        const std::wstring guid = picked->GetGuid();
        TogglePicked(CCatchmentAreaManager::Instance()->GetCatchmentAreaByGuid(guid), guid);
    }
    ApplyChecksToTree();
    if (const CCatchmentArea *picked = CCatchmentAreaManager::GetInteractivelySelectedCA())
        m_ui->treeAreas->SelectItem(FindTreeItem(picked->GetGuid()));
    CompleteEditorCommand(1);
    if (m_checkedAreas.empty())
        SetHighlight(1);
}

void CDlgEditCatchmentArea::TogglePicked(const AreaPtr &area, const std::wstring &guid)
{
    if (m_checkedGuids.insert(guid).second) {
        if (!area)
            return;
        m_checkedAreas.insert(area);
        MarkArea(area, MarkLook());
    } else {
        m_checkedGuids.erase(guid);
        if (!area)
            return;
        m_checkedAreas.erase(area);
        area->UnMark();
    }
}

void CDlgEditCatchmentArea::ApplyChecksToTree()
{
    // An item without a payload keeps its tick.
    m_ui->treeAreas->SetChecks([this](const CCatchmentTreeItem &item) {
        return item.m_pPayload ? m_checkedGuids.contains(item.m_pPayload->m_text) : item.IsChecked();
    });
}
