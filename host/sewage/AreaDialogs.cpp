#include "host/sewage/AreaDialogs.h"

#include "host/drawing/Journal.h"

namespace {

ZEMGis::Sewage::AreaDialog g_sectionShares = nullptr;

} // namespace

ZEMGis::Sewage::AreaDialog velmor::sectionSharesDialog()
{
    return g_sectionShares;
}

void ZEMGis::Sewage::SetSectionSharesDialog(AreaDialog dialog)
{
    velmor::journal("SetSectionSharesDialog", dialog != nullptr);
    g_sectionShares = dialog;
}
