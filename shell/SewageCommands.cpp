#include "shell/SewageCommands.h"

#include "contracts/CoreServices.h"
#include "definition/DlgCreateCatchmentArea.h"
#include "dialogs/DlgCatchmentSections.h"

namespace {

constexpr unsigned kReviewNotAvailable = 60030;

} // namespace

void RunSewageCreate()
{
    CDlgCreateCatchmentArea dialog(nullptr);
    dialog.DoModal();
}

void RunSewageEdit()
{
    acedAlert(ZEMGis::CModuleConfiguration::Instance()->GetMsg(kReviewNotAvailable).c_str());
}

void RunSectionShares(boost::shared_ptr<ZEMGis::Sewage::CCatchmentArea> area)
{
    CDlgCatchmentSections dialog(nullptr);
    dialog.m_area = std::move(area);
    dialog.DoModal();
}
