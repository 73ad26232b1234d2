#include "controls/treelist/TreeListDragWatch.h"

#include <QApplication>
#include <QKeyEvent>
#include <QWindow>

CTreeListCtrl::DragWatch::DragWatch(CTreeListCtrl &control) : QObject(&control), m_control(control)
{
    qApp->installEventFilter(this);
}

bool CTreeListCtrl::DragWatch::eventFilter(QObject *watched, QEvent *event)
{
    if (m_bLost)
        return false;
    if (LosesCapture(watched, *event)) {
        m_bLost = true;
        m_control.OnCancelMode();
        return false;
    }
    if (LosesTarget(watched, *event)) {
        m_control.LeaveTarget();
        return false;
    }
    return TakesKey(*event);
}

bool CTreeListCtrl::DragWatch::LosesCapture(const QObject *watched, const QEvent &event) const
{
    switch (event.type()) {
    case QEvent::Show:
        return watched->isWidgetType() && static_cast<const QWidget *>(watched)->windowType() == Qt::Popup;
    case QEvent::WindowBlocked:
        return watched == m_control.window() || watched == m_control.window()->windowHandle();
    case QEvent::WindowDeactivate:
    case QEvent::Hide:
        return watched == &m_control;
    case QEvent::UngrabMouse:
        return watched == m_control.viewport();
    case QEvent::EnabledChange:
        return watched == &m_control && !m_control.isEnabled();
    default:
        return false;
    }
}

bool CTreeListCtrl::DragWatch::LosesTarget(const QObject *watched, const QEvent &event) const
{
    if (event.type() != QEvent::Hide && event.type() != QEvent::EnabledChange)
        return false;
    // Asked of the control itself: while the target is being destroyed it is a target still, and no control any more.
    const auto *const control = qobject_cast<const CTreeListCtrl *>(watched);
    if (control == nullptr || control == &m_control || control != m_control.GetDragTarget())
        return false;
    return event.type() == QEvent::Hide || !control->isEnabled();
}

bool CTreeListCtrl::DragWatch::TakesKey(QEvent &event)
{
    if (event.type() != QEvent::KeyPress && event.type() != QEvent::ShortcutOverride)
        return false;
    if (static_cast<QKeyEvent &>(event).key() != Qt::Key_Escape || !m_control.GetState(kControlDragging))
        return false;
    event.accept();
    if (event.type() == QEvent::KeyPress)
        m_control.OnCancelMode();
    return true;
}
