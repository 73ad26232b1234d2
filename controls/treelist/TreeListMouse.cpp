#include "controls/treelist/TreeListCtrl.h"

#include <QMouseEvent>

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
    if (event->buttons() == Qt::NoButton)
        ShowTip(event->position().toPoint());
    else
        HideTip();
}
void CTreeListCtrl::SetPartCursor(const QPoint &) {}
