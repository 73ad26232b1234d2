// The review dialog's choice of a label block.
#include "review/DlgEditCatchmentArea.h"

#include "dialogs/CatchLabelDlg.h"

using ZEMGis::Notification::CNotificationFramework;
using ZEMGis::Notification::SetActiveCommand;

void CDlgEditCatchmentArea::OnBtnDefineLabel()
{
    if (CNotificationFramework::Instance()->IsCommandActive() != 0)
        return;
    const SetActiveCommand command(L"CA_DEFINE_LAB");
    CCatchLabelDlg dialog(this);
    if (dialog.DoModal() != kOk)
        return;
    m_labelAttributes = dialog.m_attributes;
    m_labelBlockId = dialog.m_blockId;
}
