// Columns of the dialogs' extended lists.
#pragma once

#include "controls/XListCtrl.h"

#include <QFontMetrics>
#include <QScrollBar>

#include <algorithm>

/// Gives a column that width, or as much more as its header and its texts need in the user's font, which is bold in the
/// first column; no text gets more room than a long name needs.
inline void FitColumn(CXListCtrl &list, int column, int width)
{
    constexpr int kLongName = 40; // characters
    QFont font = list.font();
    font.setBold(true);
    const QFontMetrics metrics(font);
    const int room = metrics.height(); // beside a text, for its indents
    const int widest = kLongName * metrics.averageCharWidth();
    list.SetColumnWidth(column, CXListCtrl::kSizedToHeader);
    int needed = std::max(list.GetColumnWidth(column),
                          metrics.horizontalAdvance(QString::fromStdWString(list.GetHeaderText(column))) + room);
    list.SetColumnWidth(column, CXListCtrl::kSizedToTexts);
    int texts = list.GetColumnWidth(column);
    for (int row = 0; row < list.GetItemCount(); ++row)
        texts =
            std::max(texts, metrics.horizontalAdvance(QString::fromStdWString(list.GetItemText(row, column))) + room);
    needed = std::max(needed, std::min(texts, widest));
    list.SetColumnWidth(column, std::max(width, needed));
}

/// Lets the list be wide enough for all its columns beside a scroll bar.
inline void ShowAllColumns(CXListCtrl &list)
{
    int width = 2 * list.frameWidth() + list.verticalScrollBar()->sizeHint().width();
    for (int column = 0; column < list.GetColumnCount(); ++column)
        width += list.GetColumnWidth(column);
    list.setMinimumWidth(std::max(list.minimumWidth(), width));
}
