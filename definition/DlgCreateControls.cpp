// Between the definition dialog's members and its controls.
#include "definition/DlgCreateCatchmentArea.h"

#include "controls/WideText.h"
#include "definition/DefinitionMessages.h"
#include "ui_definition.h"

using namespace ControlId;

void CDlgCreateCatchmentArea::RefreshMembers()
{
    m_bCatchmentType = m_ui->checkCatchment->isChecked();
    m_bHouseType = m_ui->checkHouse->isChecked();
    m_bIndustrialType = m_ui->checkIndustrial->isChecked();
    m_bSearchSubCatchments = m_ui->checkIslands->isChecked();
    m_bWriteLabel = m_ui->checkLabel->isChecked();
    m_bZoom = m_ui->checkZoom->isChecked();
    m_nCoeffSource = m_ui->radioAtv->isChecked() ? kCoeffFromTable : kCoeffFromTerrain;
    m_nRunoffIndex = m_ui->comboRunoff->currentIndex();
    m_nSlopeClass = m_ui->comboSlopeClass->currentIndex();
}

void CDlgCreateCatchmentArea::ShowMembers()
{
    m_ui->checkCatchment->setChecked(m_bCatchmentType != 0);
    m_ui->checkHouse->setChecked(m_bHouseType != 0);
    m_ui->checkIndustrial->setChecked(m_bIndustrialType != 0);
    m_ui->checkIslands->setChecked(m_bSearchSubCatchments != 0);
    m_ui->checkLabel->setChecked(m_bWriteLabel != 0);
    m_ui->checkZoom->setChecked(m_bZoom != 0);
    (m_nCoeffSource == kCoeffFromTable ? m_ui->radioAtv : m_ui->radioTerrain)->setChecked(true);
    m_ui->comboRunoff->setCurrentIndex(m_nRunoffIndex);
    m_ui->comboSlopeClass->setCurrentIndex(m_nSlopeClass);
}

int CDlgCreateCatchmentArea::GetTypeMask()
{
    using namespace ZEMGis::Sewage;
    RefreshMembers();
    return (m_bCatchmentType ? kTypeCatchment : 0) | (m_bHouseType ? kTypeHouse : 0) |
           (m_bIndustrialType ? kTypeIndustrial : 0);
}

enmDefinitionMethod CDlgCreateCatchmentArea::Method() const
{
    return static_cast<enmDefinitionMethod>(m_ui->comboMethod->currentData().toInt());
}

void CDlgCreateCatchmentArea::EnableControls(const CControlSet &controls, bool enabled)
{
    for (const int control : controls)
        EnableControl(control, enabled);
}

void CDlgCreateCatchmentArea::SetStatus(const std::wstring &text, std::uint32_t colour)
{
    SetNamedText(m_ui->textStatus, MessageId::kStatus, text, colour);
}
