// Clicks and keys of the extended list.
#include "controls/XComboList.h"
#include "controls/XListCtrl.h"

#include <QApplication>
#include <QMouseEvent>

#include <utility>

void CXListCtrl::mousePressEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton)
        Click(event);
    else
        QTableView::mousePressEvent(event);
}

void CXListCtrl::mouseDoubleClickEvent(QMouseEvent *event)
{
    // Two quick clicks on a check box are two clicks.
    mousePressEvent(event);
}

void CXListCtrl::PassOn(QMouseEvent *event)
{
    m_bClickGoesOn = true;
    m_pressedAt = event->position().toPoint();
    setFocus(Qt::MouseFocusReason);
    QTableView::mousePressEvent(event);
}

void CXListCtrl::Click(QMouseEvent *event)
{
    m_bClickGoesOn = false;
    const QPoint point = event->position().toPoint();
    const Cell cell = HitTest(point);
    switch (m_cells.TargetOf(cell.row, cell.column)) {
    case CListCells::Target::Refused:
        return;
    case CListCells::Target::CheckBox:
        m_cells.ClickCheckbox(cell.row, cell.column);
        PassOn(event);
        return;
    case CListCells::Target::DropDown:
        ClickDropDown(cell, point, event);
        return;
    case CListCells::Target::None:
    case CListCells::Target::Other:
        ClosePopup();
        PassOn(event);
        return;
    }
}

void CXListCtrl::ClickDropDown(const Cell &cell, const QPoint &point, QMouseEvent *event)
{
    ClosePopup();
    const bool onArrow = CListCells::IsOnArrow(CellRect(cell.row, cell.column), point.x(), point.y());
    if (onArrow)
        m_cells.PressArrow(cell.row, cell.column);
    // Only the selected row shows its drop-down, so the popup comes once the click has selected it.
    PassOn(event);
    if (!onArrow)
        return;
    OpenPopupIfDue();
    if (m_popup)
        setState(NoState); // the popup gets what the mouse does from here on
}

void CXListCtrl::mouseReleaseEvent(QMouseEvent *event)
{
    QTableView::mouseReleaseEvent(event);
    if (event->button() != Qt::LeftButton || !std::exchange(m_bClickGoesOn, false))
        return;
    const QPoint point = event->position().toPoint();
    if ((point - m_pressedAt).manhattanLength() < QApplication::startDragDistance())
        OnClicked(point);
    else
        m_cells.ReleaseArrow();
}

void CXListCtrl::OnButtonUpOverPopup()
{
    if (std::exchange(m_bClickGoesOn, false))
        OnClicked(m_pressedAt);
}

void CXListCtrl::OnClicked(const QPoint &point)
{
    m_cells.ReleaseArrow();
    const Cell cell = HitTest(point);
    m_cells.m_nCurrentRow = cell.column < 0 ? -1 : cell.row;
    m_cells.m_nCurrentColumn = cell.column;
    CloseLayers(false);
    if (m_cells.CanEdit(cell.row, cell.column))
        OpenEditBox(cell.row, cell.column);
    ShowBrowseButtons();
}

bool CXListCtrl::HandleCellKey(QKeyEvent *event)
{
    const QModelIndex current = currentIndex();
    if (!current.isValid())
        return false;
    const int row = current.row(), column = current.column();
    const bool alone = (event->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
    const CListCells::Target target = m_cells.TargetOf(row, column);
    if (alone && event->key() == Qt::Key_F2)
        return EditCell(row, column);
    if (alone && event->key() == Qt::Key_Space && target == CListCells::Target::CheckBox) {
        m_cells.ClickCheckbox(row, column);
        return true;
    }
    const bool opens = (alone && event->key() == Qt::Key_F4) ||
                       (event->modifiers() == Qt::AltModifier && event->key() == Qt::Key_Down);
    return opens && target != CListCells::Target::Refused && (OpenPopup(row, column) || Browse(row, column));
}

void CXListCtrl::keyPressEvent(QKeyEvent *event)
{
    if (HandleCellKey(event))
        event->accept();
    else
        QTableView::keyPressEvent(event);
}
