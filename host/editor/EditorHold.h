// Whether a person works in the drawing for a dialog that stepped aside.
#pragma once

namespace velmor {

/// True while an open dialog has handed the editor over: between its BeginEditorCommand and CompleteEditorCommand.
bool isEditorHandedOver();

} // namespace velmor
