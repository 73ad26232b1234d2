// Widths of columns that follow their texts.
#include "controls/treelist/TextAdvances.h"
#include "controls/treelist/TreeListCtrl.h"

#include "controls/WideText.h"

#include <algorithm>

namespace {

// Automatic widths; -3 and -4 mean the same as -1 and -2.
constexpr int kFitItems = -1, kFitHeader = -2, kFitItemsToo = -3, kFitHeaderToo = -4;
constexpr int kBesideHeaderText = 4; // pixels that a column is wider than its header's text
constexpr int kBesideItemText = 2;   // the same for the text of an item
constexpr int kCellMargin = 2;       // left of all in a cell; no part of what stands before the text

bool followsTheHeader(int width)
{
    return width == kFitHeader || width == kFitHeaderToo;
}

bool isAutomatic(int width)
{
    return width == kFitItems || width == kFitItemsToo || followsTheHeader(width);
}

} // namespace

int CTreeListCtrl::SetColumnWidth(int column, int width, int min)
{
    const CTreeListColumnInfo *info = GetColumns(column);
    if (info == nullptr)
        return 0;
    return CTreeListModel::SetColumnWidth(column, isAutomatic(width) ? GetFittedWidth(column, width, min) : width);
}

int CTreeListCtrl::GetFittedWidth(int column, int code, int min) const
{
    const CTreeListColumnInfo *info = GetColumns(column);
    const QFontMetrics metrics = fontMetrics();
    const int start =
        followsTheHeader(code) ? metrics.horizontalAdvance(ToQString(info->text)) + kBesideHeaderText : min;
    CTreeListItem *item = GetFirstShowItem(0);
    if (item == nullptr)
        return start;
    TextAdvances texts(metrics);
    for (; item != nullptr; item = GetNextShowItem(item)) {
        const int decoration = column == 0 ? TextOffsetOf(GetCell(item, column)) - kCellMargin : 0;
        texts.Take(decoration, item->TextView(column));
    }
    return std::max(start, texts.Widest() + kBesideItemText);
}
