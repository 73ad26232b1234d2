// A row while it is painted; what the sources of painting share.
#pragma once

#include "controls/treelist/TreeListCtrl.h"

#include <QColor>
#include <QRect>

struct CTreeListCtrl::RowLook {
    QRect rect; ///< all columns
    QRect clip; ///< what is painted at all
    CTreeListItem *item = nullptr;
    TreeListColor ground = colorBk;
    QColor text;         ///< of a cell that is not selected
    bool filled = false; ///< with a colour of the selection
};

inline QRect RectOf(const TreeListRect &rect)
{
    return {rect.left, rect.top, rect.right - rect.left, rect.bottom - rect.top};
}

inline TreeListRect PlaceOf(const QRect &rect)
{
    return {rect.left(), rect.top(), rect.left() + rect.width(), rect.top() + rect.height()};
}
