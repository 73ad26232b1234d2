#include "shell/SewageCommands.h"

#include "definition/DlgCreateCatchmentArea.h"
#include "dialogs/DlgCatchmentSections.h"
#include "review/DlgEditCatchmentArea.h"

void RunSewageCreate()
{
    CDlgCreateCatchmentArea dialog(nullptr);
    dialog.DoModal();
}

void RunSewageEdit()
{
    CDlgEditCatchmentArea dialog(nullptr);
    dialog.DoModal();
}

void RunSectionShares(boost::shared_ptr<ZEMGis::Sewage::CCatchmentArea> area)
{
    CDlgCatchmentSections dialog(nullptr);
    dialog.m_area = std::move(area);
    dialog.DoModal();
}
