// What a module brings for a single catchment area that the person chose in the host: a dialog over that area.
//
// The host knows no dialog of a module. A module that has one gives it to the host when it is loaded and takes it back
// before it is unloaded; the host offers it while it is there. All calls belong on the main thread.
#pragma once

#include "contracts/CatchmentArea.h"

namespace ZEMGis::Sewage {

/// Runs a modal dialog over the area, which is never null; what it changes goes straight to the area. The host calls it
/// outside of commands, with the document not locked.
using AreaDialog = void (*)(boost::shared_ptr<CCatchmentArea> area);

/// Gives the host the dialog in which a person edits the shares of an area's sections; it takes the place of the one
/// given before. Null takes it back.
ZEMX_CONTRACT void SetSectionSharesDialog(AreaDialog dialog);

} // namespace ZEMGis::Sewage
