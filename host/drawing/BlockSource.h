// Blocks that come out of drawing files: what CZEMCDraw::insertBlockDefinition goes by.
#pragma once

#include "host/drawing/Drawing.h"

#include <filesystem>
#include <string>

namespace velmor {

/// The block that stands under the name that a file's block would get, and came with the drawing itself: it is the
/// user's own, and insertBlockDefinition leaves it as it is and gives it in place of the file's. Null when there is
/// none. An empty name means the file's own.
BlockRecord *ownBlockInPlaceOf(const Drawing &drawing, const std::wstring &name, const std::filesystem::path &file);

} // namespace velmor
