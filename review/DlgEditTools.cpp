// Small handlers of the review dialog, and the connections of all that edits areas.
#include "review/DlgEditCatchmentArea.h"

#include "controls/XListCtrl.h"
#include "dialogs/SharedHandlers.h"
#include "review/ReviewMessages.h"
#include "ui_review.h"

using ZEMGis::CModuleConfiguration;
using ZEMGis::Notification::CNotificationFramework;
using ZEMGis::Notification::SetActiveCommand;

void CDlgEditCatchmentArea::ConnectEditing()
{
    using Dialog = CDlgEditCatchmentArea;
    Handle(m_ui->btnWriteData, &QAbstractButton::clicked, &Dialog::OnBtnWriteData);
    Handle(m_ui->checkCatchment, &QAbstractButton::clicked, &Dialog::OnCheckCatch);
    Handle(m_ui->checkHouse, &QAbstractButton::clicked, &Dialog::OnCheckHouse);
    Handle(m_ui->checkIndustry, &QAbstractButton::clicked, &Dialog::OnCheckIndustry);
    Handle(m_ui->btnErase, &QAbstractButton::clicked, &Dialog::OnBtnErase);
    Handle(m_ui->treeAreas, &CCatchmentTree::DeletePressed, &Dialog::OnDeleteKey);
    Handle(m_ui->btnRename, &QAbstractButton::clicked, &Dialog::OnBtnRename);
    Handle(m_ui->btnSettings, &QAbstractButton::clicked, &Dialog::OnBtnSettings);
    Handle(m_ui->editScale, &QLineEdit::textChanged, &Dialog::OnScaleChanged);
    Handle(m_ui->btnHide, &QAbstractButton::clicked, &Dialog::OnBtnHide);
    Handle(m_ui->btnInfo, &QAbstractButton::clicked, &Dialog::OnBtnInfo);
    connect(m_ui->treeAreas, &CCatchmentTree::NameEdited, this, [this](CCatchmentTreeItem *item, const QString &text) {
        RunHandler([&] { OnTreeNameEdited(item, text); });
    });
}

void CDlgEditCatchmentArea::OnScaleChanged()
{
    ShowSelection();
}

void CDlgEditCatchmentArea::ReadDecimalPlaces()
{
    constexpr int kDefault = 4;
    m_decimalPlaces = kDefault;
    CModuleConfiguration::Instance()->GetGSValueInt(L"DECIMAL_PLACES_CATCHMENT", m_decimalPlaces);
}

void CDlgEditCatchmentArea::OnBtnSettings()
{
    if (CNotificationFramework::Instance()->IsCommandActive() != 0)
        return;
    const SetActiveCommand command(L"CA_PARAMS");
    CModuleConfiguration::Instance()->ShowGSDialog(L"TCE2");
    ReadDecimalPlaces();
}

void CDlgEditCatchmentArea::OnBtnHide()
{
    HideUntilAnswered(*this, ReviewMessage::kWaitForKey);
}

void CDlgEditCatchmentArea::OnBtnInfo()
{
    ShowSectionInfo(*this);
}
