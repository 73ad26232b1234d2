// Whether a person works in the drawing for a dialog that stepped aside.
#pragma once

namespace velmor {

/// True while an open dialog has handed the editor over: between its BeginEditorCommand and CompleteEditorCommand. No
/// command of a module can be started meanwhile.
bool isEditorHandedOver();

} // namespace velmor
