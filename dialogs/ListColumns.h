// Columns of the dialogs' extended lists.
#pragma once

#include "controls/XListCtrl.h"

#include <QScrollBar>

#include <algorithm>

/// Gives a column that width, or as much more as its header and its texts need in the user's font.
inline void FitColumn(CXListCtrl &list, int column, int width)
{
    for (const int fitted : {CXListCtrl::kSizedToHeader, CXListCtrl::kSizedToTexts}) {
        list.SetColumnWidth(column, fitted);
        width = std::max(width, list.GetColumnWidth(column));
    }
    list.SetColumnWidth(column, width);
}

/// Lets the list be wide enough for all its columns beside a scroll bar.
inline void ShowAllColumns(CXListCtrl &list)
{
    int width = 2 * list.frameWidth() + list.verticalScrollBar()->sizeHint().width();
    for (int column = 0; column < list.GetColumnCount(); ++column)
        width += list.GetColumnWidth(column);
    list.setMinimumWidth(std::max(list.minimumWidth(), width));
}
