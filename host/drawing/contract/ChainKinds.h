// What kind of value an item of an argument chain or of a dictionary entry holds, by its number.
#pragma once

#include "contracts/HostTypes.h"

namespace velmor {

enum class ChainKind {
    Text,
    Real,
    Short,
    Long,
    Point, ///< three coordinates; in a file, three groups: code, code + 10, code + 20
    Name,  ///< of an entity or of a selection set
    None,  ///< no value
    Unknown,
};

/// type is a ResbufKind or a group code of a drawing file.
ChainKind chainKindOf(int type);

/// A text that acutRelRb and acutDelBuffer can free.
wchar_t *newChainText(const wchar_t *text);

} // namespace velmor
