// Small handlers of the definition dialog: the small dialogs that it opens, hiding it, and the information tools.
#include "definition/DlgCreateCatchmentArea.h"

#include "definition/DefinitionMessages.h"
#include "dialogs/CatchLabelDlg.h"
#include "dialogs/CatchLayerDlg.h"
#include "dialogs/SharedHandlers.h"
#include "dialogs/TerrainTypeSimpleDlg.h"
#include "ui_definition.h"

using ZEMGis::Notification::CNotificationFramework;
using ZEMGis::Notification::SetActiveCommand;
using namespace ZEMGis::Sewage;

void CDlgCreateCatchmentArea::OnBtnLayers()
{
    if (CNotificationFramework::Instance()->IsCommandActive() != 0)
        return;
    const SetActiveCommand command(L"CA_LAYER");
    CCatchLayerDlg dialog(this);
    dialog.m_chosenLayers = m_boundaryLayers;
    if (dialog.DoModal() != kOk)
        return;
    m_boundaryLayers = dialog.m_chosenLayers;
    m_layerSelection = std::move(dialog.m_selectionSet);
    ShowLayerSummary();
}

void CDlgCreateCatchmentArea::OnBtnTerrain()
{
    if (CNotificationFramework::Instance()->IsCommandActive() != 0)
        return;
    const SetActiveCommand command(L"CA_CATALOG");
    CTerrainTypeSimpleDlg dialog(this);
    if (dialog.DoModal() == kOk) {
        m_ui->comboTerrain->clear();
        AddTerrainTypes(dialog.m_catalog);
    }
    SelectFirstTerrain();
}

void CDlgCreateCatchmentArea::OnBtnLabelBlock()
{
    if (CNotificationFramework::Instance()->IsCommandActive() != 0)
        return;
    const SetActiveCommand command(L"CA_DEFINE_LAB");
    CCatchLabelDlg dialog(this);
    dialog.m_strBlockName = m_strBlockName;
    dialog.m_strBlockPath = m_strBlockPath;
    if (dialog.DoModal() != kOk)
        return;
    m_labelBlockId = dialog.m_blockId;
    m_labelAttributes = dialog.m_attributes;
    m_strBlockName = dialog.m_strBlockName;
    m_strBlockPath = dialog.m_strBlockPath;
}

void CDlgCreateCatchmentArea::OnBtnSettings()
{
    if (CNotificationFramework::Instance()->IsCommandActive() != 0)
        return;
    const SetActiveCommand command(L"CA_PARAMS");
    ZEMGis::CModuleConfiguration::Instance()->ShowGSDialog(L"TCE1");
    ReadConfiguration();
}

void CDlgCreateCatchmentArea::OnBtnHide()
{
    HideUntilAnswered(*this, MessageId::kWaitForKey);
}

void CDlgCreateCatchmentArea::OnBtnInfoSections()
{
    ShowSectionInfo(*this);
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
