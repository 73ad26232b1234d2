#include "controls/treelist/TreeListCtrl.h"

void CTreeListCtrl::mousePressEvent(QMouseEvent *event)
{
    QAbstractScrollArea::mousePressEvent(event);
}
void CTreeListCtrl::mouseDoubleClickEvent(QMouseEvent *event)
{
    QAbstractScrollArea::mouseDoubleClickEvent(event);
}
void CTreeListCtrl::mouseReleaseEvent(QMouseEvent *event)
{
    QAbstractScrollArea::mouseReleaseEvent(event);
}
void CTreeListCtrl::mouseMoveEvent(QMouseEvent *event)
{
    QAbstractScrollArea::mouseMoveEvent(event);
}
void CTreeListCtrl::SetPartCursor(const QPoint &) {}
