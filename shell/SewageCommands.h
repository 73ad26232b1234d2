// Bodies of the module's two commands. Each opens one modal dialog and leaves nothing behind in memory.
#pragma once

/// zemsewage_create: the dialog in which catchment areas are defined.
void RunSewageCreate();
/// zemsewage_edit: the dialog in which they are reviewed. This version has none and says so.
void RunSewageEdit();
