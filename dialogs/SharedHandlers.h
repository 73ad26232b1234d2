// Handlers that the two main dialogs have alike. Each does nothing at all while a command of the family runs.
#pragma once

#include "contracts/HostDialog.h"

/// Hides the dialog until the person has answered a prompt, a message by its number; the answer is dropped.
void HideUntilAnswered(CAdUiBaseDialog &dialog, unsigned prompt);

/// Hides the dialog while the person looks at the network's sections.
void ShowSectionInfo(CAdUiBaseDialog &dialog);
