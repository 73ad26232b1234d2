// Where the parts of a cell of the tree list stand, in pixels: one geometry for painting and for hit testing.
#pragma once

#include "controls/rules/TreeListItem.h"

#include <cstdint>

/// Parts of a row, as hit testing tells them.
enum TreeListHit : int {
    kHitButton = 0x02,
    kHitCheck = 0x04,
    kHitLock = 0x08,
    kHitImage = 0x10,
    kHitText = 0x20,
};

/// Left and top belong to the rectangle, right and bottom don't.
struct TreeListRect {
    int left = 0, top = 0, right = 0, bottom = 0;
    bool IsEmpty() const { return right <= left || bottom <= top; }
    bool Contains(int x, int y) const { return x >= left && x < right && y >= top && y < bottom; }
};

/// Kinds of cells: the first column with and without the tree, any other column.
enum TreeListCellKind : int { kCellTree, kCellMain, kCellList };

/// What the geometry of one cell depends on.
struct TreeListCell {
    TreeListCellKind kind = kCellList;
    int level = 1;           ///< of the item
    std::uint32_t style = 0; ///< of the control
    std::uint32_t state = 0; ///< of the item
};

/// Places of the parts; an empty rectangle for a part that is not shown.
struct TreeListParts {
    TreeListRect button, check, lock, image, text;
};

/// Parts of a cell that stands in the given rectangle; they may lie outside of it when it is narrow.
TREELIST_API TreeListParts PartsOf(const TreeListCell &cell, const TreeListRect &rect);

/// Pixels from the cell's left edge to its text.
TREELIST_API int TextOffsetOf(const TreeListCell &cell);
