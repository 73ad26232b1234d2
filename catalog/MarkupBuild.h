// The element tree of a markup text, built by a scan over its tokens that never gives up.
#pragma once

#include "catalog/MarkupIndex.h"

#include <string>
#include <string_view>

/// What a build found at the top level of its text.
struct CMarkupBuild {
    std::uint32_t first = 0, last = 0; ///< top-level elements; 0 for none
    std::uint32_t begin = 0, end = 0;  ///< the records that were added
    bool isDamaged = false;
    bool isTopDamaged = false; ///< damage stands around the top level itself
    /// An end tag without start and the first element that is not ended are told whatever was told before; a fault of a
    /// token only when nothing was.
    std::wstring error;
};

/// Adds records for the elements of a text to the index, as children of iParent at its level + 1, one after the other
/// in document order. The chain of the top-level ones is linked in itself but not yet to the parent; starts are offsets
/// in the text given. Uses no call stack for depth: 100,000 levels are fine.
///
/// An end tag closes the innermost open element of its name; those inside that one, and all at the end of the text, are
/// not ended: they shrink to their start tags, and their children become their following siblings.
///
/// The text needs the padding of CMarkupText behind it. On std::bad_alloc the index holds records without use.
CMarkupBuild BuildMarkup(std::wstring_view text, CMarkupIndex &index, std::uint32_t iParent, bool ignoreCase);

/// Two names as wholes.
bool EqualMarkupNames(std::wstring_view a, std::wstring_view b, bool ignoreCase);
