// Between the definition dialog's members and its controls.
#include "definition/DlgCreateCatchmentArea.h"

#include "controls/WideText.h"
#include "definition/NumericFields.h"
#include "definition/ReadableColour.h"
#include "ui_definition.h"

using namespace ControlId;

namespace {

constexpr char kTextColour[] = "textColour"; ///< property: the required colour, in blue, green, red byte order

} // namespace

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
        EnableControl(control, enabled && !EnablingTable::kNotOffered.Contains(control));
}

void CDlgCreateCatchmentArea::SetStatus(const std::wstring &text, std::uint32_t colour)
{
    SetColouredText(m_ui->textStatus, text, colour);
}

void CDlgCreateCatchmentArea::SetColouredText(QLabel *label, const std::wstring &text, std::uint32_t colour)
{
    label->setText(ToQString(text));
    QFont font = label->font();
    font.setBold(true);
    label->setFont(font);
    label->setProperty(kTextColour, colour);
    ApplyColour(label);
}

void CDlgCreateCatchmentArea::ApplyColour(QLabel *label)
{
    const QVariant required = label->property(kTextColour);
    if (!required.isValid())
        return;
    QPalette colours = label->palette();
    colours.setColor(QPalette::WindowText,
                     ReadableColour(ColourOf(required.toUInt()), palette().color(QPalette::Window)));
    label->setPalette(colours);
}

void CDlgCreateCatchmentArea::SetSwatch(QLabel *label, int colourIndex)
{
    QPalette colours = label->palette();
    colours.setColor(QPalette::Window, ColourOf(acedGetRGB(colourIndex)));
    label->setPalette(colours);
}

double CDlgCreateCatchmentArea::GetNumber(const QLineEdit *edit) const
{
    return NumberValue(ToWide(edit->text()));
}

void CDlgCreateCatchmentArea::SetNumber(QLineEdit *edit, double value)
{
    edit->setText(ToQString(NumberText(value, NumericField(edit->property(kControlIdProperty).toInt()))));
}
