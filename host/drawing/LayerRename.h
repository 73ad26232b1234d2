// Another name for a layer of a drawing.
#pragma once

#include "host/drawing/Drawing.h"

namespace velmor {

enum class LayerNaming {
    Fine,
    Zero,    ///< layer 0 keeps its name, which every program expects
    BadName, ///< empty, too long for a file, or with characters that no name may have
    Taken,   ///< another layer has it
};

/// Whether the layer can get the name. Another spelling of its own is another name.
/// REQUIRES: index < drawing.layers().size()
LayerNaming canRenameLayer(const Drawing &drawing, std::size_t index, std::wstring_view name);

/// Gives the layer the name where it can have it; what it answers is what canRenameLayer does. The layer stays what it
/// is in all else: its place in the list, what lies on it, and, in the file, all that its record says. A save writes
/// the new name wherever the file names the layer: on entities and their parts, in blocks, in extended data of others.
LayerNaming renameLayer(Drawing &drawing, std::size_t index, const std::wstring &name);

/// Whether two names are those of one layer: case does not count.
bool sameName(std::wstring_view a, std::wstring_view b);

} // namespace velmor
