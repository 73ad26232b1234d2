// A contract's variant as the items that a drawing keeps under a key.
//
// A text is one item of code 1, a number one of code 40, a whole number one of code 90. A list is its length under
// code 90 and then one item of code 1 for each text; an empty list is two items of code 90, both 0.
#pragma once

#include "contracts/CoreServices.h"
#include "host/drawing/Drawing.h"

namespace velmor {

/// Empty for an empty box, which takes the data away when it is set.
DataItems itemsOf(const ZEMGis::Data::CDataBox &box);
/// An empty box for items of another shape.
ZEMGis::Data::CDataBox boxOf(const DataItems &items);
/// For journals and reports: a list in brackets, texts as they are, "null" for an empty box.
std::string describe(const ZEMGis::Data::CDataBox &box);

} // namespace velmor
