#include "shell/SewageCommands.h"

#include "contracts/CoreServices.h"
#include "definition/DlgCreateCatchmentArea.h"

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
