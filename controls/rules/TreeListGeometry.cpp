#include "controls/rules/TreeListGeometry.h"

#include "controls/rules/TreeListModel.h"

#include <algorithm>

TreeListParts PartsOf(const TreeListCell &cell, const TreeListRect &rect)
{
    TreeListParts parts;
    TreeListRect glyphs = rect;
    glyphs.top = rect.top + (rect.Height() - kTreeListStep) / 2;
    glyphs.bottom = glyphs.top + kTreeListStep;
    int x = rect.left + kTreeListMargin;
    const auto take = [&x](int width, const TreeListRect &band) {
        const int left = x;
        x += width;
        return TreeListRect{left, band.top, x, band.bottom};
    };

    if (cell.kind == kCellTree) {
        if (cell.level > 1)
            parts.indent = take((cell.level - 1) * kTreeListStep, rect);
        if (cell.style & (StyleTreeLines | StyleTreeButtons))
            parts.button = take(kTreeListStep, glyphs);
    }
    if (cell.kind != kCellList) {
        if ((cell.style & StyleCheck) && (cell.state & kItemShowsCheck))
            parts.check = take(kTreeListStep, glyphs);
        if ((cell.style & StyleLock) && (cell.state & kItemShowsLock))
            parts.lock = take(kTreeListLockWidth, glyphs);
        if ((cell.style & StyleImage) && (cell.state & kItemShowsImage))
            parts.image = take(kTreeListStep, glyphs);
        if (cell.style & (StyleLock | StyleImage)) // by the styles alone, whether this item shows one or not
            x += kTreeListMargin;
    }
    parts.text = {x, rect.top, std::max(x, rect.right - kTreeListMargin), rect.bottom};
    return parts;
}

int PartAt(const TreeListParts &parts, const TreeListRect &rect, int x, int y)
{
    if (!rect.Contains(x, y))
        return 0;
    if (parts.button.Contains(x, y))
        return kHitButton;
    if (parts.check.Contains(x, y))
        return kHitCheck;
    if (parts.lock.Contains(x, y))
        return kHitLock;
    if (parts.image.Contains(x, y))
        return kHitImage;
    return parts.text.Contains(x, y) ? kHitText : 0;
}

bool TextFits(const TreeListParts &parts, const TreeListRect &rect, int textWidth)
{
    return textWidth <= std::max(0, rect.right - parts.text.left);
}

int TextOffsetOf(const TreeListCell &cell)
{
    return PartsOf(cell, {}).text.left;
}
