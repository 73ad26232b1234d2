// Bodies of the module's two commands, and of what the host offers for one area. Each opens one modal dialog and leaves
// nothing behind in memory.
#pragma once

#include "contracts/CatchmentArea.h"

/// zemsewage_create: the dialog in which catchment areas are defined.
void RunSewageCreate();
/// zemsewage_edit: the dialog in which they are reviewed.
void RunSewageEdit();
/// The dialog in which the shares of an area's sections are edited.
void RunSectionShares(boost::shared_ptr<ZEMGis::Sewage::CCatchmentArea> area);
