// The review dialog's two selections: the tree's selected item, which is the area in focus, and its ticks.
#include "review/DlgEditCatchmentArea.h"

#include "controls/XListCtrl.h"
#include "review/ReviewControls.h"
#include "ui_review.h"

using namespace ZEMGis::Sewage;

std::intptr_t CDlgEditCatchmentArea::OnWindowMessage(unsigned message, std::uintptr_t wParam, std::intptr_t lParam)
{
    if (message == kTreeCheckMessage) {
        ApplyTreeSelection();
        return 0;
    }
    if (message == CXListCtrl::DataChangedMessage()) {
        OnShareChanged(static_cast<int>(wParam));
        return 0;
    }
    return CAdUiBaseDialog::OnWindowMessage(message, wParam, lParam);
}

void CDlgEditCatchmentArea::OnTreeSelectionChanged()
{
    if (m_treeRefilling != 0)
        return;
    SetHighlight(0);
    ApplyTreeSelection();
}

void CDlgEditCatchmentArea::OnTreeClick(CCatchmentTreeItem *item, bool onCheckBox)
{
    ApplyTreeSelection();
    if (onCheckBox)
        PostTreeCheck(item);
}

void CDlgEditCatchmentArea::OnTreeSpace()
{
    PostTreeCheck(m_ui->treeAreas->SelectedItem());
}

void CDlgEditCatchmentArea::PostTreeCheck(CCatchmentTreeItem *item)
{
    if (std::exchange(m_bTreeCheckPosted, true))
        return;
    const auto address = reinterpret_cast<std::intptr_t>(item);
    QMetaObject::invokeMethod(
        this,
        [this, address] {
            m_bTreeCheckPosted = false;
            if (m_bEnded)
                return;
            RunHandler([&] { OnWindowMessage(kTreeCheckMessage, ReviewControl::kTreeAreas, address); });
        },
        Qt::QueuedConnection);
}

void CDlgEditCatchmentArea::ApplyTreeSelection()
{
    SetHighlight(0);
    m_highlightIds.clear();
    m_checkedAreas.clear();
    m_checkedGuids.clear();
    CollectCheckedAreas();
    const CCatchmentTreeItem *item = m_ui->treeAreas->SelectedItem();
    const CCatchmentTreeItem *parent = item ? item->Parent() : nullptr;
    const CCatchItemData *payload = parent ? parent->m_pPayload : item ? item->m_pPayload : nullptr;
    const AreaPtr area =
        payload ? CCatchmentAreaManager::Instance()->GetCatchmentAreaByGuid(payload->m_text) : AreaPtr();
    if (area) {
        m_currentArea = area;
        m_highlightIds.push_back(area->GetObjectId());
    }
    if (parent) {
        m_highlightIds.push_back(item->SectionId());
    } else if (area) {
        SectionShares sections;
        area->GetConnectedSections(sections);
        for (const auto &[section, share] : sections) {
            if (section)
                m_highlightIds.push_back(section->GetObjectId());
        }
    }
    ShowSelection();
}

void CDlgEditCatchmentArea::CollectCheckedAreas()
{
    const CCatchmentTree &tree = *m_ui->treeAreas;
    CCatchmentAreaManager *manager = CCatchmentAreaManager::Instance();
    for (int row = 0; row < tree.topLevelItemCount(); ++row) {
        const CCatchmentTreeItem *item = tree.AreaItem(row);
        if (!item->IsChecked() || !item->m_pPayload)
            continue;
        const std::wstring &guid = item->m_pPayload->m_text;
        m_checkedAreas.insert(m_checkedAreas.end(), manager->GetCatchmentAreaByGuid(guid)); // mostly in order
        m_checkedGuids.insert(guid);
    }
}

void CDlgEditCatchmentArea::ShowSelection()
{
    if (m_ui->treeAreas->SelectedItem()) {
        SetHighlight(1);
        FillSectionList();
        if (m_currentArea) {
            const int type = m_currentArea->GetType();
            m_ui->checkCatchment->setChecked((type & kTypeCatchment) != 0);
            m_ui->checkHouse->setChecked((type & kTypeHouse) != 0);
            m_ui->checkIndustry->setChecked((type & kTypeIndustrial) != 0);
        }
        for (const int check :
             {ReviewControl::kCheckCatchment, ReviewControl::kCheckHouse, ReviewControl::kCheckIndustry})
            EnableControl(check, m_checkedAreas.empty());
    } else {
        m_ui->listSections->DeleteAllItems();
    }
    ShowParameters();
}

void CDlgEditCatchmentArea::SetAllChecks(int state)
{
    CCatchmentTree &tree = *m_ui->treeAreas;
    tree.SetChecks([state](const CCatchmentTreeItem &) { return state != 0; });
    if (state == 0)
        return; // the sets follow with the next ApplyTreeSelection
    CCatchmentAreaManager *manager = CCatchmentAreaManager::Instance();
    for (int row = 0; row < tree.topLevelItemCount(); ++row) {
        const CCatchItemData *payload = tree.AreaItem(row)->m_pPayload;
        if (!payload)
            continue;
        m_checkedAreas.insert(m_checkedAreas.end(), manager->GetCatchmentAreaByGuid(payload->m_text));
        m_checkedGuids.insert(payload->m_text);
    }
}

void CDlgEditCatchmentArea::OnBtnCheckAll()
{
    SetAllChecks(1);
    ApplyTreeSelection();
}

void CDlgEditCatchmentArea::OnBtnUncheckAll()
{
    SetAllChecks(0);
    ApplyTreeSelection();
}
