// Parameters of the areas in view: shown for one area and for many, and written to all of them.
#include "review/DlgEditCatchmentArea.h"

#include "catalog/NumberText.h"
#include "controls/ReadableColour.h"
#include "controls/WideText.h"
#include "dialogs/DialogControls.h"
#include "review/ParametersOfMany.h"
#include "review/ReviewColours.h"
#include "review/ReviewMessages.h"
#include "ui_review.h"

#include <QGuiApplication>
#include <QPalette>

using namespace ZEMGis::Sewage;

namespace {

// In blue, green, red byte order.
constexpr AMSEdit::ColorRef kWhite = 0xffffff, kRed = 255;

/// White; on a dark desktop the ground of its fields, where white would stand out as much as the red that means
/// something.
AMSEdit::ColorRef PaperColour()
{
    const QColor ground = QGuiApplication::palette().color(QPalette::Active, QPalette::Base);
    if (ContrastOf(ground, Qt::black) >= ContrastOf(ground, Qt::white))
        return kWhite;
    return static_cast<AMSEdit::ColorRef>(ground.red() | ground.green() << 8 | ground.blue() << 16);
}

/// Shown as long as it lives.
class CWaitCursor {
public:
    CWaitCursor() { QGuiApplication::setOverrideCursor(Qt::WaitCursor); }
    ~CWaitCursor() { QGuiApplication::restoreOverrideCursor(); }
    CWaitCursor(const CWaitCursor &) = delete;
    CWaitCursor &operator=(const CWaitCursor &) = delete;
};

void ShowArea(QLineEdit *edit, double hectares)
{
    edit->setText(ToQString(FourDecimals(hectares)));
}

void ShowValue(AMSEdit::CAMSNumericEdit *edit, double value)
{
    edit->SetBackgroundColor(PaperColour());
    SetNumber(edit, value);
}

/// A value below 0 is none: the field turns red and keeps its text.
void ShowCommonValue(AMSEdit::CAMSNumericEdit *edit, double value)
{
    if (value < 0.0)
        edit->SetBackgroundColor(kRed);
    else
        ShowValue(edit, value);
}

} // namespace

void CDlgEditCatchmentArea::ShowParameters()
{
    RefreshMembers();
    if (!m_checkedAreas.empty())
        ShowParametersOfMany();
    else if (m_currentArea)
        ShowParametersOfOne();
    else
        ClearParameters();
}

void CDlgEditCatchmentArea::ClearParameters()
{
    m_ui->textParameters->clear();
    m_ui->editArea->clear();
    m_ui->editCoefficient->clear();
    m_ui->editDensity->clear();
}

void CDlgEditCatchmentArea::ShowParametersOfOne()
{
    SetColouredText(m_ui->textParameters, Msg(ReviewMessage::kParametersOfOne), kColourOfOne);
    ShowArea(m_ui->editArea, m_currentArea->GetArea());
    EnableParameters(m_typeCatch != 0, m_typeHouse != 0);
    ShowValue(m_ui->editCoefficient, m_currentArea->GetFlowCoeff());
    ShowValue(m_ui->editDensity, m_currentArea->GetPopulation());
}

void CDlgEditCatchmentArea::ShowParametersOfMany()
{
    EnableParameters(true, true);
    CParametersOfMany many;
    for (const AreaPtr &area : m_checkedAreas) {
        if (area)
            many.Add(area->GetType(), area->GetArea(), area->GetFlowCoeff(), area->GetPopulation());
        else
            many.AddMissing();
    }
    ShowArea(m_ui->editArea, many.Area());
    ShowCommonValue(m_ui->editCoefficient, many.Coefficient());
    ShowCommonValue(m_ui->editDensity, many.Population());
    SetColouredText(m_ui->textParameters, Msg(ReviewMessage::kParametersOfMany) + L": " + std::to_wstring(many.Count()),
                    kColourOfMany);
}

void CDlgEditCatchmentArea::EnableParameters(bool coefficient, bool density)
{
    m_ui->editCoefficient->setEnabled(coefficient);
    m_ui->labelCoefficient->setEnabled(coefficient);
    m_ui->editDensity->setEnabled(density);
    m_ui->labelDensity->setEnabled(density);
}

void CDlgEditCatchmentArea::OnBtnWriteData()
{
    const CWaitCursor cursor;
    RefreshMembers();
    for (const AreaPtr &area : Targets()) {
        if (area)
            WriteParameters(area);
    }
    ShowParameters();
}

void CDlgEditCatchmentArea::WriteParameters(const AreaPtr &area)
{
    const int type = area->GetType();
    if ((type & kTypeCatchment) != 0)
        area->SetFlowCoeff(GetNumber(m_ui->editCoefficient));
    if ((type & kTypeHouse) != 0)
        area->SetPopulation(GetNumber(m_ui->editDensity));
    ZEMGis::Data::CDataConfiguration::Instance()->GetDataDefinitionByID(L"SLIV_LABEL"); // asked for, never used
    const CZEMCEntityPtr entity(area->GetObjectId(), AcDb::kForRead);
    if (entity.isOpen())
        CCatchmentAreaManager::Instance()->WriteCatchmentLabel(area, SelectedLabelItem());
}
