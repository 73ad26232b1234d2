// A question that the person answers with Yes or No.
#pragma once

#include "contracts/HostTypes.h"

/// Asks over the open dialog, with the buttons Yes and No; the question may have several lines. True for Yes alone:
/// No, Escape and a host that has nobody to ask count as No. Belongs on the main thread and throws nothing.
ZEMX_CONTRACT bool acedAskYesNo(const wchar_t *question);
