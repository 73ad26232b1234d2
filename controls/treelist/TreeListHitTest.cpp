#include "controls/treelist/TreeListCtrl.h"

#include <QScrollBar>

namespace {

TreeListRect RectOf(const QRect &rect)
{
    return {rect.left(), rect.top(), rect.left() + rect.width(), rect.top() + rect.height()};
}

QRect RectOf(const TreeListRect &rect)
{
    return {rect.left, rect.top, rect.Width(), rect.Height()};
}

/// The part of a cell under a point, and its rectangle; the cell's beside all parts.
int PartUnder(const TreeListCell &cell, const QPoint &point, const QRect &place, QRect *rect)
{
    const TreeListRect whole = RectOf(place);
    const TreeListParts parts = PartsOf(cell, whole);
    const int part = PartAt(parts, whole, point.x(), point.y());
    if (!rect)
        return part;
    switch (part) {
    case kHitButton:
        *rect = RectOf(parts.button);
        break;
    case kHitCheck:
        *rect = RectOf(parts.check);
        break;
    case kHitLock:
        *rect = RectOf(parts.lock);
        break;
    case kHitImage:
        *rect = RectOf(parts.image);
        break;
    case kHitText:
        *rect = RectOf(parts.text);
        break;
    default:
        *rect = place;
    }
    return part;
}

} // namespace

TreeListCell CTreeListCtrl::GetCell(const CTreeListItem *item, int column) const
{
    TreeListCell cell;
    if (column == 0)
        cell.kind = HasStyle(StyleTree) ? kCellTree : kCellMain;
    cell.style = GetStyle();
    if (item) {
        cell.level = item->Level();
        cell.state = item->State();
    }
    return cell;
}

// --- Points ----------------------------------------------------------------------------------------------------------

CTreeListItem *CTreeListCtrl::HitTest(const QPoint &point, int *flag, int *column, QRect *rect) const
{
    if (flag)
        *flag = 0;
    if (column)
        *column = -1;
    if (rect)
        *rect = QRect();
    if (point.y() < 0) // the header, or above the control
        return nullptr;
    const int fromTop = point.y() / GetItemHeight();
    CTreeListItem *item = GetFirstShowItem(GetVertScroll() + fromTop);
    if (!item)
        return nullptr;
    const QRect row(-GetHorzScroll(), fromTop * GetItemHeight(), GetTotalWidth(), GetItemHeight());
    return HitTest(point, row, item, flag, column, rect);
}

CTreeListItem *CTreeListCtrl::HitTest(const QPoint &point, const QRect &row, CTreeListItem *item, int *flag,
                                      int *column, QRect *rect) const
{
    QRect cell(row.left(), row.top(), 0, row.height());
    for (const int number : GetColumnOrderArray()) {
        const int width = GetColumnWidth(number);
        if (width <= 0)
            continue;
        cell.moveLeft(cell.left() + cell.width());
        cell.setWidth(width);
        if (!cell.contains(point))
            continue;
        int part = 0;
        if (number != 0)
            part = HitTestList(point, cell, item, number, rect);
        else
            part = HasStyle(StyleTree) ? HitTestTree(point, cell, item, rect) : HitTestMain(point, cell, item, rect);
        if (flag)
            *flag = part;
        if (column)
            *column = number;
        return item;
    }
    return nullptr;
}

int CTreeListCtrl::HitTestTree(const QPoint &point, const QRect &cell, const CTreeListItem *item, QRect *rect) const
{
    return PartUnder({kCellTree, item->Level(), GetStyle(), item->State()}, point, cell, rect);
}

int CTreeListCtrl::HitTestMain(const QPoint &point, const QRect &cell, const CTreeListItem *item, QRect *rect) const
{
    return PartUnder({kCellMain, item->Level(), GetStyle(), item->State()}, point, cell, rect);
}

int CTreeListCtrl::HitTestList(const QPoint &point, const QRect &cell, const CTreeListItem *item, int column,
                               QRect *rect) const
{
    return PartUnder(GetCell(item, column), point, cell, rect);
}

// --- Places ----------------------------------------------------------------------------------------------------------

bool CTreeListCtrl::GetItemRect(const CTreeListItem *item, QRect &rect) const
{
    rect = QRect();
    const int row = item ? GetShowIndex(item) : -1;
    if (row < 0)
        return false;
    rect = QRect(-GetHorzScroll(), (row - GetVertScroll()) * GetItemHeight(), GetTotalWidth(), GetItemHeight());
    return true;
}

bool CTreeListCtrl::GetItemRect(const CTreeListItem *item, int column, QRect &rect, bool textOnly) const
{
    const int left = ColumnLeft(column), width = GetColumnWidth(column);
    QRect row;
    rect = QRect();
    if (left < 0 || width <= 0 || !GetItemRect(item, row))
        return false;
    rect = QRect(row.left() + left, row.top(), width, row.height());
    if (textOnly)
        rect = RectOf(PartsOf(GetCell(item, column), RectOf(rect)).text);
    return true;
}

bool CTreeListCtrl::GetItemRectTree(const CTreeListItem *item, QRect &rect, bool textOnly) const
{
    if (!GetItemRect(item, 0, rect, false))
        return false;
    if (textOnly)
        rect = RectOf(PartsOf({kCellTree, item->Level(), GetStyle(), item->State()}, RectOf(rect)).text);
    return true;
}

bool CTreeListCtrl::GetItemRectMain(const CTreeListItem *item, QRect &rect, bool textOnly) const
{
    if (!GetItemRect(item, 0, rect, false))
        return false;
    if (textOnly)
        rect = RectOf(PartsOf({kCellMain, item->Level(), GetStyle(), item->State()}, RectOf(rect)).text);
    return true;
}
