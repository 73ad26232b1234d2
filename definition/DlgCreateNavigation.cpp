// Selection of sections, the current section and what the drawing shows of it, definition methods and area types.
#include "definition/DlgCreateCatchmentArea.h"

#include "controls/WideText.h"
#include "definition/DefinitionConstants.h"
#include "definition/DefinitionMessages.h"
#include "definition/ReadableColour.h"
#include "ui_definition.h"

using namespace ControlId;
using ZEMGis::CModuleConfiguration;
using ZEMGis::Notification::CNotificationFramework;
using ZEMGis::Notification::SetActiveCommand;
using ZEMGis::Sewage::CatchmentAreas;
using ZEMGis::Sewage::CCatchmentAreaManager;

namespace {

constexpr CControlSet kNavigation{kBtnPrevious, kBtnNext};

bool isCommandActive()
{
    return CNotificationFramework::Instance()->IsCommandActive() != 0;
}

void wipeTemporaryDrawing()
{
    acedRedraw(nullptr, 4);
}

} // namespace

std::intptr_t CDlgCreateCatchmentArea::OnWindowMessage(unsigned message, std::uintptr_t wParam, std::intptr_t lParam)
{
    if (message == ZEMGis::Selection::kSelectionDoneMessage)
        return OnSelectionDone();
    return CAdUiBaseDialog::OnWindowMessage(message, wParam, lParam);
}

std::intptr_t CDlgCreateCatchmentArea::OnSelectionDone()
{
    EraseTempBoundaries();
    DeleteRows();
    ReadSelection();
    EnableControls(EnablingTable::kAfterSelection, true);
    OnMethodChanged();
    SetStatus(FormatCount(Msg(MessageId::kSectionCount), static_cast<int>(m_sections.size())), kColourGuidance);
    const enmDefinitionMethod method = Method();
    if (method == kMethodCurrentSection || method == kMethodTypedArea)
        RefreshNavigation();
    else
        EnableControls(kNavigation, false);
    ShowSectionAreas();
    return 0;
}

void CDlgCreateCatchmentArea::ReadSelection()
{
    m_sections.clear();
    m_selectionExtra.clear();
    SetStatus({}, kColourGuidance);
    m_nCurrentSection = 0;
    const std::unique_ptr<ZEMGis::Selection::CSelectionSet> selection(m_ui->btnSelect->GetSelection());
    m_sections = selection->m_sections;
    m_selectionExtra = selection->m_extra;
}

void CDlgCreateCatchmentArea::RefreshNavigation()
{
    RefreshMembers();
    SetStatus({}, kColourGuidance);
    DeleteRows();
    m_ui->editArea->clear();
    const enmDefinitionMethod method = Method();
    const bool goesBySection = method != kMethodAllSections && method != kMethodAutomatic;
    const int count = static_cast<int>(m_sections.size());
    const bool hasNeighbours = goesBySection && count > 1;
    // Each is set once: a button that is off for a moment loses the focus.
    EnableControl(kBtnPrevious, hasNeighbours && m_nCurrentSection != 0);
    EnableControl(kBtnNext, hasNeighbours && m_nCurrentSection != count - 1);
    if (goesBySection)
        ShowCurrentSection();
}

void CDlgCreateCatchmentArea::ShowCurrentSection()
{
    if (const SectionPtr section = CurrentSection()) {
        const std::wstring name = section->GetName();
        SetNamedText(m_ui->textSection, MessageId::kCurrentSection, name, kColourPlain);
        m_ui->editName->setText(ToQString(MakeAreaName(name)));
    }
    HighlightCurrentSection();
}

void CDlgCreateCatchmentArea::HighlightCurrentSection()
{
    wipeTemporaryDrawing();
    const int colour = CModuleConfiguration::Instance()->GetHighlightColor();
    RefreshMembers();
    const SectionPtr section = CurrentSection();
    if (m_bZoom) {
        wipeTemporaryDrawing();
        if (section)
            CZEMCEdit::zoom(section->GetObjectId(), GetNumber(m_ui->editZoom));
    }
    if (section)
        section->DrawTemporary(colour, 0);
    RefreshDrawingDisplay();
}

void CDlgCreateCatchmentArea::HighlightAllSections()
{
    wipeTemporaryDrawing();
    // Asked for and not used: sections are drawn in the highlight colour.
    int markColour = 2;
    CModuleConfiguration::Instance()->GetGSValueInt(L"MARK_COLOR", markColour);
    RefreshMembers();
    if (m_bZoom) {
        wipeTemporaryDrawing();
        AcDbObjectIdArray ids;
        for (const SectionPtr &section : m_sections) {
            if (section)
                ids.push_back(section->GetObjectId());
        }
        if (!ids.empty())
            CZEMCEdit::zoom(ids, GetNumber(m_ui->editZoom));
    }
    const int colour = CModuleConfiguration::Instance()->GetHighlightColor();
    for (const SectionPtr &section : m_sections) {
        if (section)
            section->DrawTemporary(colour, 0);
    }
    RefreshDrawingDisplay();
}

void CDlgCreateCatchmentArea::ShowSectionAreas()
{
    EraseTempHatches();
    CCatchmentAreaManager::Instance()->UnMarkAllCatchments(ZEMGis::Sewage::kTypeAll);
    if (const SectionPtr section = CurrentSection())
        MarkSectionAreas(section);
    RefreshDrawingDisplay();
}

void CDlgCreateCatchmentArea::ShowDefinedAreas()
{
    CCatchmentAreaManager *manager = CCatchmentAreaManager::Instance();
    std::set<AreaPtr> defined; // an area of two sections counts once
    for (const SectionPtr &section : m_sections) {
        if (!section)
            continue;
        CatchmentAreas areas;
        manager->GetCABySection(section, areas, ZEMGis::Sewage::kTypeAll);
        defined.insert(areas.begin(), areas.end());
    }
    const int mask = GetTypeMask();
    for (const AreaPtr &area : defined) {
        if (area && area->GetType() == mask && area->IsHidden() == 0)
            area->Mark(m_colorDefined, m_hatchScale, 0.0, kHatchPattern, 0);
    }
}

void CDlgCreateCatchmentArea::MarkSectionAreas(const SectionPtr &section)
{
    CCatchmentAreaManager *manager = CCatchmentAreaManager::Instance();
    CatchmentAreas areas;
    manager->GetCABySection(section, areas, static_cast<unsigned>(GetTypeMask()));
    // Overlapping hatches differ by their angle.
    double angle = 0.0;
    for (const AreaPtr &area : areas) {
        if (!area || area->IsHidden() != 0)
            continue;
        area->Mark(m_colorDefined, m_hatchScale, angle, kHatchPattern, 0);
        angle += kHatchAngleStep;
        std::vector<std::wstring> guids;
        area->GetSubCatchments(guids);
        for (const std::wstring &guid : guids) {
            if (const AreaPtr sub = manager->GetCatchmentAreaByGuid(guid))
                sub->Mark(m_colorDefined, m_hatchScale, angle, kHatchPattern, 0);
            angle += kHatchAngleStep;
        }
    }
}

void CDlgCreateCatchmentArea::OnBtnPrevious()
{
    if (isCommandActive())
        return;
    const SetActiveCommand command(L"CA_PREV");
    MoveToSection(-1);
}

void CDlgCreateCatchmentArea::OnBtnNext()
{
    if (isCommandActive())
        return;
    const SetActiveCommand command(L"CA_NEXT");
    MoveToSection(1);
}

void CDlgCreateCatchmentArea::MoveToSection(int step)
{
    m_nCurrentSection += step; // the buttons are off at the ends
    RefreshNavigation();
    EraseTempBoundaries();
    ShowSectionAreas();
}

void CDlgCreateCatchmentArea::OnBtnZoom()
{
    if (isCommandActive())
        return;
    const SetActiveCommand command(L"CA_ZOOM");
    BeginEditorCommand();
    wipeTemporaryDrawing();
    if (const SectionPtr section = CurrentSection()) {
        CZEMCEdit::zoom(section->GetObjectId(), GetNumber(m_ui->editZoom));
        section->DrawTemporary(CModuleConfiguration::Instance()->GetHighlightColor(), 0);
    }
    RefreshDrawingDisplay();
    std::wstring answer;
    acedGetString(0, Msg(MessageId::kWaitForKey).c_str(), answer);
    CompleteEditorCommand(1);
}

void CDlgCreateCatchmentArea::OnCheckZoom()
{
    RefreshMembers();
    CModuleConfiguration::Instance()->SetGSValueInt(L"ZOOM_ONOFF", m_bZoom);
}

void CDlgCreateCatchmentArea::OnMethodChanged()
{
    const enmDefinitionMethod method = Method();
    EnableForMethod(method);
    const bool nothingSelected = m_sections.empty();
    const auto showIdle = [&] {
        if (nothingSelected)
            SetStatus(Msg(MessageId::kIdle), kColourGuidance);
    };
    switch (method) {
    case kMethodCurrentSection:
    case kMethodTypedArea:
        showIdle(); // and wiped again by the next step
        RefreshNavigation();
        break;
    case kMethodAllSections:
        showIdle();
        EnableControls(kNavigation, false);
        ShowCurrentSection();
        HighlightAllSections();
        break;
    case kMethodAutomatic:
        RefreshNavigation();
        showIdle();
        HighlightAllSections();
        break;
    }
    OnTypeChanged();
}

void CDlgCreateCatchmentArea::EnableForMethod(enmDefinitionMethod method)
{
    using EnablingTable::Switch;
    for (const EnablingTable::MethodRow &row : EnablingTable::kMethodTable) {
        switch (row.m_byMethod[method]) {
        case Switch::Off:
            EnableControls(row.m_controls, false);
            break;
        case Switch::On:
            EnableControls(row.m_controls, true);
            break;
        case Switch::OffWhileListIsEmpty:
            if (m_ui->listAreas->topLevelItemCount() == 0)
                EnableControls(row.m_controls, false);
            break;
        case Switch::Keep:
            break;
        }
    }
}

void CDlgCreateCatchmentArea::OnTypeChanged()
{
    RefreshMembers();
    const std::array isOn{m_bCatchmentType != 0, m_bHouseType != 0, m_bIndustrialType != 0};
    const bool typedArea = Method() == kMethodTypedArea;
    for (std::size_t type = 0; type < isOn.size(); ++type) {
        if (isOn[type])
            RunTypeSteps(EnablingTable::kTypeTable[type], typedArea);
    }
    ShowSectionAreas();
}

void CDlgCreateCatchmentArea::RunTypeSteps(std::span<const EnablingTable::TypeStep> steps, bool typedArea)
{
    using EnablingTable::TypeAction;
    for (const EnablingTable::TypeStep &step : steps) {
        switch (step.m_action) {
        case TypeAction::Enable:
            EnableControls(step.m_controls, true);
            break;
        case TypeAction::Disable:
            EnableControls(step.m_controls, false);
            break;
        case TypeAction::EnableIfTypedArea:
            if (typedArea)
                EnableControls(step.m_controls, true);
            break;
        case TypeAction::MatchTypedArea:
            EnableControls(step.m_controls, typedArea);
            break;
        case TypeAction::UseCoefficientSource:
            OnCoeffSourceChanged();
            break;
        }
    }
}

void CDlgCreateCatchmentArea::KeepOneType(int bit)
{
    using namespace ZEMGis::Sewage;
    if (GetTypeMask() == 0) {
        m_bCatchmentType = bit == kTypeCatchment;
        m_bHouseType = bit == kTypeHouse;
        m_bIndustrialType = bit == kTypeIndustrial;
    }
    ShowMembers();
}

void CDlgCreateCatchmentArea::OnCheckCatch()
{
    KeepOneType(ZEMGis::Sewage::kTypeCatchment);
    EnableControls(EnablingTable::kWithCatchmentCheck, m_bCatchmentType != 0);
    if (m_bCatchmentType) {
        OnCoeffSourceChanged();
        EnableControls(EnablingTable::kTypedArea, Method() == kMethodTypedArea);
    } else {
        EnableControls(EnablingTable::kWithoutCatchmentCheck, false);
    }
    ShowSectionAreas();
}

void CDlgCreateCatchmentArea::OnCheckHouse()
{
    KeepOneType(ZEMGis::Sewage::kTypeHouse);
    EnableControls(EnablingTable::kWithHouseCheck, m_bHouseType != 0);
    if (m_bHouseType)
        EnableControls(EnablingTable::kTypedArea, Method() == kMethodTypedArea);
    ShowSectionAreas();
}

void CDlgCreateCatchmentArea::OnCheckIndustrial()
{
    KeepOneType(ZEMGis::Sewage::kTypeIndustrial);
    ShowSectionAreas();
}

CDlgCreateCatchmentArea::SectionPtr CDlgCreateCatchmentArea::CurrentSection() const
{
    const bool valid = m_nCurrentSection >= 0 && m_nCurrentSection < static_cast<int>(m_sections.size());
    return valid ? m_sections[static_cast<std::size_t>(m_nCurrentSection)] : SectionPtr();
}
