// What the drawing keeps of the review dialog's controls, and between members and controls.
#include "review/DlgEditCatchmentArea.h"

#include "controls/WideText.h"
#include "dialogs/DialogControls.h"
#include "dialogs/DrawingSettings.h"
#include "review/ReviewControls.h"
#include "ui_review.h"

namespace {

constexpr const wchar_t *kKeyZoomFactor = L"ZEMX_CATCHMENT_m_edZoom";
constexpr const wchar_t *kKeyZoom = L"ZEMX_CATCHMENT_m_checkZoom";
constexpr const wchar_t *kKeyFilter = L"ZEMX_CATCHMENT_m_comboMode";
constexpr const wchar_t *kKeyPattern = L"ZEMX_CATCHMENT_m_edHatchType";
constexpr const wchar_t *kKeyScale = L"ZEMX_CATCHMENT_m_edHScale";
constexpr const wchar_t *kKeyLabel = L"ZEMX_CATCHMENT_m_cmbLabel";

} // namespace

void CDlgEditCatchmentArea::RestoreSettings()
{
    const CZEMCDictionaryPtr dictionary(AcDb::kForRead);
    double zoomFactor = GetNumber(m_ui->editZoom), scale = GetNumber(m_ui->editScale);
    std::wstring pattern = ToWide(m_ui->editPattern->text());
    int label = m_ui->comboLabel->currentIndex();
    dictionary.dctRead(kSettingsDictionary, kKeyZoomFactor, zoomFactor, false);
    dictionary.dctRead(kSettingsDictionary, kKeyZoom, m_checkZoom, false);
    dictionary.dctRead(kSettingsDictionary, kKeyFilter, m_comboMode, false);
    dictionary.dctRead(kSettingsDictionary, kKeyPattern, pattern, false);
    dictionary.dctRead(kSettingsDictionary, kKeyScale, scale, false);
    dictionary.dctRead(kSettingsDictionary, kKeyLabel, label, false);
    ShowMembers();
    SetNumber(m_ui->editZoom, zoomFactor);
    m_ui->editPattern->setText(ToQString(pattern));
    SetNumber(m_ui->editScale, scale);
    const bool known = label >= 0 && label < m_ui->comboLabel->count();
    m_ui->comboLabel->setCurrentIndex(known ? label : 0);
}

void CDlgEditCatchmentArea::SaveSettings()
{
    CZEMCDictionaryPtr dictionary(AcDb::kForRead);
    dictionary.upgradeOpen();
    RefreshMembers();
    dictionary.dctWrite(kSettingsDictionary, kKeyZoomFactor, GetNumber(m_ui->editZoom), false, true, kCodeDouble);
    dictionary.dctWrite(kSettingsDictionary, kKeyZoom, m_checkZoom, false, true, kCodeInt);
    dictionary.dctWrite(kSettingsDictionary, kKeyFilter, m_comboMode, false, true, kCodeInt);
    dictionary.dctWrite(kSettingsDictionary, kKeyPattern, ToWide(m_ui->editPattern->text()), false, true, kCodeText);
    dictionary.dctWrite(kSettingsDictionary, kKeyScale, GetNumber(m_ui->editScale), false, true, kCodeDouble);
    dictionary.dctWrite(kSettingsDictionary, kKeyLabel, m_ui->comboLabel->currentIndex(), false, true, kCodeInt);
}

void CDlgEditCatchmentArea::RefreshMembers()
{
    const std::array<QRadioButton *, 4> radios{m_ui->radioCatchment, m_ui->radioHouse, m_ui->radioIndustry,
                                               m_ui->radioAll};
    for (std::size_t i = 0; i < radios.size(); ++i) {
        if (radios[i]->isChecked())
            m_comboMode = static_cast<int>(i);
    }
    m_checkZoom = m_ui->checkZoom->isChecked();
    m_typeCatch = m_ui->checkCatchment->isChecked();
    m_typeHouse = m_ui->checkHouse->isChecked();
    m_typeIndustry = m_ui->checkIndustry->isChecked();
}

void CDlgEditCatchmentArea::ShowMembers()
{
    const std::array<QRadioButton *, 4> radios{m_ui->radioCatchment, m_ui->radioHouse, m_ui->radioIndustry,
                                               m_ui->radioAll};
    for (QRadioButton *radio : radios)
        radio->setAutoExclusive(false); // none of them is pressed for a filter that none stands for
    for (std::size_t i = 0; i < radios.size(); ++i)
        radios[i]->setChecked(m_comboMode == static_cast<int>(i));
    for (QRadioButton *radio : radios)
        radio->setAutoExclusive(true);
    m_ui->checkZoom->setChecked(m_checkZoom != 0);
    m_ui->checkCatchment->setChecked(m_typeCatch != 0);
    m_ui->checkHouse->setChecked(m_typeHouse != 0);
    m_ui->checkIndustry->setChecked(m_typeIndustry != 0);
}

ZEMGis::Data::CCatalogItem *CDlgEditCatchmentArea::SelectedLabelItem() const
{
    return LabelItemOf(*m_ui->comboLabel);
}

std::vector<CDlgEditCatchmentArea::AreaPtr> CDlgEditCatchmentArea::Targets() const
{
    std::vector<AreaPtr> targets(m_checkedAreas.begin(), m_checkedAreas.end());
    if (targets.empty() && m_currentArea)
        targets.push_back(m_currentArea);
    return targets;
}
