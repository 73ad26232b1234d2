// The name that an area takes from the nodes of its sections. No widgets, no drawing.
#pragma once

#include "contracts/CoreServices.h"

#include <string>

/// The first unbroken run of the digits 0 to 9; empty when there is none. "MH12a3" gives "12".
std::wstring FirstDigitRun(const std::wstring &name);

/// Of the sections' nodes, start before end, the one whose name has the lowest number (the first run of its digits); of
/// several with that number the last one. Nodes without digits don't count; empty when all are so.
std::wstring NameFromNodes(const ZEMGis::Selection::CSelectionSet &sections);
