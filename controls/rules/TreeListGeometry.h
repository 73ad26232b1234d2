// Where the parts of a cell of the tree list stand, in pixels: one geometry for painting and for hit testing.
//
// From a tree cell's left: a margin, the indent of the levels above, then each of button, check box, lock and image
// that is shown, a second margin with the style of locks or images, and the text up to a margin on the right. A main
// cell has no indent and no button, a list cell the text alone. Button, check box, lock and image stand in 16 pixels of
// height in the middle of the row, the text takes all of its height.
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
    int Width() const { return right - left; }
    int Height() const { return bottom - top; }
    bool IsEmpty() const { return right <= left || bottom <= top; }
    bool Contains(int x, int y) const { return x >= left && x < right && y >= top && y < bottom; }
    bool operator==(const TreeListRect &) const = default;
};

inline constexpr int kTreeListMargin = 2;    ///< at both ends of a cell, and behind lock and image
inline constexpr int kTreeListStep = 16;     ///< width of a level, a button, a check box and an image
inline constexpr int kTreeListLockWidth = 8; ///< width of a lock

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
    TreeListRect indent; ///< of the levels above
    TreeListRect button; ///< with lines alone too, for the item's own line
    TreeListRect check, lock, image, text;
};

/// Parts of a cell that stands in the given rectangle; they may lie outside of it when it is narrow.
TREELIST_API TreeListParts PartsOf(const TreeListCell &cell, const TreeListRect &rect);

/// The part at a point (TreeListHit); 0 outside of the cell's rectangle, and in it beside all parts.
TREELIST_API int PartAt(const TreeListParts &parts, const TreeListRect &rect, int x, int y);

/// True when a text of that width in pixels is seen whole in the cell. It may use up the margin on the right: automatic
/// widths leave one margin in all.
TREELIST_API bool TextFits(const TreeListParts &parts, const TreeListRect &rect, int textWidth);

/// Pixels from the cell's left edge to its text.
TREELIST_API int TextOffsetOf(const TreeListCell &cell);
