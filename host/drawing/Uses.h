// What of a drawing's layers and blocks something refers to, and taking out what nothing does.
#pragma once

#include "host/drawing/Drawing.h"

#include <string>
#include <unordered_set>
#include <vector>

namespace velmor {

/// Found in one pass over the entities and over the tags that are kept unread. Where tags are not understood, a name
/// or a handle in them counts as a use, so that a layer or a block is rather kept than lost.
struct Uses {
    std::vector<bool> layers; ///< by index; layer 0 and the current one always
    std::unordered_set<const BlockRecord *> blocks;
};
Uses usesOf(const Drawing &drawing);

struct Purged {
    std::vector<std::wstring> layers, blocks; ///< names of what went, in the order of their tables
};
/// Takes out every block and layer that nothing refers to, what becomes free by that included.
Purged purgeUnused(Drawing &drawing, bool blocks = true, bool layers = true);

} // namespace velmor
