#include "controls/treelist/TreeListCtrl.h"

#include <QPixmap>

int CTreeListCtrl::BeginDraging(const QPoint &)
{
    return 0;
}
int CTreeListCtrl::DoDraging(const QPoint &)
{
    return 0;
}
int CTreeListCtrl::EndDraging(const QPoint &, bool)
{
    return 0;
}
void CTreeListCtrl::DragEnter(CTreeListCtrl *) {}
void CTreeListCtrl::DragLeave(CTreeListCtrl *) {}
int CTreeListCtrl::DragOver(CTreeListCtrl *, const QPoint &, CTreeListItem **)
{
    return 0;
}
int CTreeListCtrl::Drop(CTreeListCtrl *, const QPoint &)
{
    return 0;
}
void CTreeListCtrl::SetTargetItem(CTreeListItem *item)
{
    m_pTargetItem = item;
}
void CTreeListCtrl::SetHoverItem(CTreeListItem *item)
{
    m_pHoverItem = item;
}
void CTreeListCtrl::OnTimer(int) {}
int CTreeListCtrl::GetTimerInterval(int timer) const
{
    return m_timerIntervals[timer];
}
void CTreeListCtrl::OnCancelMode() {}
CTLCDragWnd *CTreeListCtrl::GetDragWnd() const
{
    return nullptr;
}
CTLCDropWnd *CTreeListCtrl::GetDropWnd() const
{
    return nullptr;
}
CTreeListCtrl *CTreeListCtrl::GetDragTarget() const
{
    return nullptr;
}
QPixmap CTreeListCtrl::GetDragImage(const QSize &) const
{
    return {};
}
void CTreeListCtrl::timerEvent(QTimerEvent *event)
{
    QAbstractScrollArea::timerEvent(event);
}
void CTreeListCtrl::StopTimers() {}
void CTreeListCtrl::AbandonDrag() {}
void CTreeListCtrl::ForgetDragged(const CTreeListItem *item)
{
    if (m_pTargetItem == item)
        m_pTargetItem = nullptr;
    if (m_pHoverItem == item)
        m_pHoverItem = nullptr;
}
