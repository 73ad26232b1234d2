// Dialogs of modules over one catchment area, as the host offers them.
#pragma once

#include "contracts/AreaDialogs.h"

namespace velmor {

/// The dialog for the shares of an area's sections; null while no module has given one.
ZEMGis::Sewage::AreaDialog sectionSharesDialog();

} // namespace velmor
