// What the review dialog shows in the drawing: the highlight of the selection with its hatch preview, and labels.
#include "review/DlgEditCatchmentArea.h"

#include "controls/WideText.h"
#include "dialogs/DialogControls.h"
#include "ui_review.h"

using namespace ZEMGis::Sewage;
using ZEMGis::Notification::CNotificationFramework;
using ZEMGis::Notification::SetActiveCommand;

namespace {

constexpr double kMarkAngle = 0.7853981633974483;

bool isCommandActive()
{
    return CNotificationFramework::Instance()->IsCommandActive() != 0;
}

} // namespace

void CDlgEditCatchmentArea::SetHighlight(int on)
{
    RefreshMembers();
    for (const AcDbObjectId &id : m_highlightIds) {
        const CZEMCEntityPtr entity(id, AcDb::kForWrite);
        if (!entity.isOpen())
            continue;
        if (on)
            entity->highlight(kNullSubent, false);
        else
            entity->unhighlight(kNullSubent, false);
    }
    if (!on) {
        for (const AreaPtr &area : m_checkedAreas) {
            if (area)
                area->UnMark();
        }
        if (m_currentArea)
            m_currentArea->UnMark();
    } else {
        const CMarkLook look = MarkLook();
        if (m_checkedAreas.empty() && m_currentArea)
            MarkArea(m_currentArea, look);
        for (const AreaPtr &area : m_checkedAreas) {
            if (area)
                MarkArea(area, look);
        }
    }
    // Off as well as on: a new selection shows the old one first.
    if (m_highlightIds.empty())
        return;
    if (m_checkZoom)
        CZEMCEdit::zoom(m_highlightIds, GetNumber(m_ui->editZoom));
    RefreshDrawingDisplay();
}

CDlgEditCatchmentArea::CMarkLook CDlgEditCatchmentArea::MarkLook() const
{
    return {ZEMGis::CModuleConfiguration::Instance()->GetHighlightColor(), GetNumber(m_ui->editScale),
            ToWide(m_ui->editPattern->text())};
}

void CDlgEditCatchmentArea::MarkArea(const AreaPtr &area, const CMarkLook &look)
{
    area->Mark(look.m_nColour, look.m_scale, kMarkAngle, look.m_strPattern.c_str(), 0);
}

void CDlgEditCatchmentArea::OnBtnPattern()
{
    if (isCommandActive())
        return;
    const SetActiveCommand command(L"CA_HATCH");
    std::wstring pattern;
    if (acedHatchPalletteDialog(L"ANSI31", true, pattern)) // whatever the pattern is now
        m_ui->editPattern->setText(ToQString(pattern));
    ShowSelection();
}

void CDlgEditCatchmentArea::OnBtnLabel()
{
    if (isCommandActive())
        return;
    const SetActiveCommand command(L"CA_LABEL");
    RefreshMembers();
    CCatchmentAreaManager *manager = CCatchmentAreaManager::Instance();
    for (const AreaPtr &target : Targets()) {
        if (!target)
            continue;
        if (const AreaPtr area = manager->GetCatchmentAreaByGuid(target->GetGuid()))
            manager->WriteCatchmentLabel(area, SelectedLabelItem());
    }
    RefreshDrawingDisplay();
}

void CDlgEditCatchmentArea::OnBtnEraseLabels()
{
    if (isCommandActive())
        return;
    const SetActiveCommand command(L"CA_ERASE_LAB");
    CCatchmentAreaManager *manager = CCatchmentAreaManager::Instance();
    for (const AreaPtr &target : Targets()) {
        if (!target)
            continue;
        if (const AreaPtr area = manager->GetCatchmentAreaByGuid(target->GetGuid()))
            manager->DeleteCatchmentLabel(area);
    }
    RefreshDrawingDisplay();
}
