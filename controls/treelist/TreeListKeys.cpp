// The keyboard of the tree list: keys of its rows and of a row in edit.
#include "controls/treelist/TreeListCtrl.h"
#include "controls/treelist/TreeListEditors.h"

#include <QApplication>
#include <QKeyEvent>
#include <QScrollBar>

#include <algorithm>

namespace {

bool IsEnter(int key)
{
    return key == Qt::Key_Return || key == Qt::Key_Enter;
}

bool IsTab(int key)
{
    return key == Qt::Key_Tab || key == Qt::Key_Backtab;
}

} // namespace

// --- Ways in ---------------------------------------------------------------------------------------------------------

bool CTreeListCtrl::eventFilter(QObject *watched, QEvent *event)
{
    const bool editor = m_pEdit && (watched == m_pEdit || watched == m_pCombo->GetList());
    if (!editor && watched != this)
        return QAbstractScrollArea::eventFilter(watched, event);
    switch (event->type()) {
    case QEvent::ShortcutOverride: // the keys of the list go before shortcuts of its window
        if (TakesKey(*static_cast<QKeyEvent *>(event))) {
            event->accept();
            return true;
        }
        break;
    case QEvent::KeyPress:
        if (PreTranslateMessage(static_cast<QKeyEvent *>(event))) {
            event->accept();
            return true;
        }
        break;
    case QEvent::Enter: // the viewport below is not told that the pointer left it
        if (editor)
            HideTip();
        break;
    case QEvent::FocusIn:
        if (editor) {
            SetState(kControlFocused, 0);
            Invalidate();
        }
        break;
    case QEvent::FocusOut:
        if (editor) {
            // The editor loses the focus first: it may get it back at once.
            const QPointer<CTreeListCtrl> alive(this);
            watched->event(event);
            if (alive)
                OnFocusLeft(static_cast<QFocusEvent *>(event)->reason());
            return true;
        }
        break;
    default:
        break;
    }
    return QAbstractScrollArea::eventFilter(watched, event);
}

void CTreeListCtrl::keyPressEvent(QKeyEvent *event)
{
    event->ignore(); // what PreTranslateMessage left is not for the scroll bars either
}

bool CTreeListCtrl::IsKeyForEditor() const
{
    if (!GetState(kControlEditing))
        return false;
    return ShownEditor() || (GetModifyItem() == GetFocusItem() && GetModifyColumn() == GetSelectColumn());
}

bool CTreeListCtrl::TakesKey(const QKeyEvent &event) const
{
    if (event.modifiers() & (Qt::AltModifier | Qt::MetaModifier))
        return false;
    const int key = event.key();
    if (key == Qt::Key_Escape)
        return GetState(kControlEditing | kControlDragging);
    if (IsKeyForEditor() && (IsEnter(key) || IsTab(key)))
        return true;
    if (ShownEditor())
        return false;
    switch (key) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return !HasStyle(StyleReadOnly);
    case Qt::Key_Space:
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
    case Qt::Key_Home:
    case Qt::Key_End:
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_Left:
    case Qt::Key_Right:
        return true;
    case Qt::Key_Plus:
    case Qt::Key_Minus:
        return event.modifiers().testFlag(Qt::KeypadModifier);
    default:
        return false;
    }
}

bool CTreeListCtrl::PreTranslateMessage(QKeyEvent *event)
{
    if (event->type() != QEvent::KeyPress || event->modifiers() & (Qt::AltModifier | Qt::MetaModifier))
        return false;
    if (GetState(kControlDragging) && event->key() == Qt::Key_Escape) {
        OnCancelMode();
        return true;
    }
    if (IsKeyForEditor() || (GetState(kControlEditing) && event->key() == Qt::Key_Escape)) {
        const bool shown = ShownEditor();
        if (PreTranslateKeyDownMessage2(event))
            return true;
        if (shown)
            return hasFocus() && GiveKeyToEditor(event);
    }
    if (GetColumnOrderArray().empty())
        return !IsTab(event->key());
    return PreTranslateKeyDownMessage(event);
}

/// An editor that stands there is typed into, wherever in the control the focus is.
bool CTreeListCtrl::GiveKeyToEditor(QKeyEvent *event)
{
    SetCtrlFocus();
    QWidget *editor = QApplication::focusWidget();
    if (!editor || editor == this)
        return false;
    QApplication::sendEvent(editor, event);
    return true;
}

// --- A row in edit ---------------------------------------------------------------------------------------------------

bool CTreeListCtrl::PreTranslateKeyDownMessage2(QKeyEvent *event)
{
    const int key = event->key();
    if (IsEnter(key)) {
        FinishModify();
        return true;
    }
    if (key == Qt::Key_Escape)
        return CancelModify();
    if (!IsTab(key) || event->modifiers() & Qt::ControlModifier)
        return false;
    const bool back = key == Qt::Key_Backtab || event->modifiers() & Qt::ShiftModifier;
    const int column = back ? GetPrevModifyCol() : GetNextModifyCol();
    if (column < 0)
        return ShownEditor();
    BeginModify(GetModifyItem(), column);
    return true;
}

// --- Rows ------------------------------------------------------------------------------------------------------------

bool CTreeListCtrl::PreTranslateKeyDownMessage(QKeyEvent *event)
{
    const bool shift = event->modifiers().testFlag(Qt::ShiftModifier);
    const bool keypad = event->modifiers().testFlag(Qt::KeypadModifier);
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        // Nothing is edited in a list to read: Enter belongs to the dialog's button.
        return BeginModify(RowForKeys(), ColumnForKeys()) || !HasStyle(StyleReadOnly);
    case Qt::Key_Space:
        Expand(RowForKeys(), kToggle, ColumnForKeys());
        return true;
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
        MoveByPage(event->key() == Qt::Key_PageDown);
        return true;
    case Qt::Key_Home:
        SelectByKey(GetFirstVisibleItem());
        return true;
    case Qt::Key_End:
        SelectByKey(GetLastVisibleItem());
        return true;
    case Qt::Key_Up:
    case Qt::Key_Down:
        MoveByRow(event->key() == Qt::Key_Down);
        return true;
    case Qt::Key_Left:
    case Qt::Key_Right:
        if (shift && HasStyle(StyleTree))
            Expand(RowForKeys(), event->key() == Qt::Key_Left ? kCollapse : kExpand, ColumnForKeys());
        else
            MoveByColumn(event->key() == Qt::Key_Right);
        return true;
    case Qt::Key_Plus:
    case Qt::Key_Minus:
        if (keypad)
            Expand(RowForKeys(), event->key() == Qt::Key_Plus ? kExpand : kCollapse, ColumnForKeys());
        return keypad;
    default:
        return false;
    }
}

/// The focus item, or the row that stands for it when it lies in a collapsed branch.
CTreeListItem *CTreeListCtrl::RowForKeys() const
{
    CTreeListItem *item = GetFocusItem();
    while (item && GetShowIndex(item) < 0)
        item = GetParentItem(item);
    return item;
}

/// The first shown column when none is selected.
int CTreeListCtrl::ColumnForKeys() const
{
    const std::vector<int> &order = GetColumnOrderArray();
    return GetColumns(GetSelectColumn()) || order.empty() ? GetSelectColumn() : order.front();
}

void CTreeListCtrl::SelectByKey(CTreeListItem *item)
{
    if (item) // none would clear the selection
        SelectItem(item, ColumnForKeys(), true);
}

void CTreeListCtrl::MoveByRow(bool down)
{
    CTreeListItem *from = RowForKeys();
    if (!from)
        SelectByKey(GetFirstVisibleItem());
    else if (from != GetFocusItem()) // it lies in a collapsed branch
        SelectByKey(from);
    else
        SelectByKey(down ? GetNextVisibleItem(from) : GetPrevVisibleItem(from));
}

void CTreeListCtrl::MoveByPage(bool down)
{
    const int more = GetCountPerPage(); // rows of a full page, less one
    const auto edge = [&] {
        const int row = down ? GetTopIndex() + more : GetTopIndex();
        return GetFirstShowItem(std::clamp(row, 0, std::max(GetVisibleCount() - 1, 0)));
    };
    CTreeListItem *focus = GetFocusItem();
    const int row = focus ? GetShowIndex(focus) : -1;
    if (row >= 0 && (row < GetTopIndex() || row > GetTopIndex() + more)) {
        EnsureVisible(focus, GetSelectColumn());
        return;
    }
    if (focus && focus == edge())
        verticalScrollBar()->setValue(GetTopIndex() + (down ? more : -more));
    SelectByKey(edge());
}

void CTreeListCtrl::MoveByColumn(bool right)
{
    const std::vector<int> &order = GetColumnOrderArray();
    if (order.empty())
        return;
    const auto found = std::find(order.begin(), order.end(), GetSelectColumn());
    const int at = found == order.end() ? -1 : static_cast<int>(found - order.begin());
    const int to = std::clamp(right ? at + 1 : at - 1, 0, static_cast<int>(order.size()) - 1);
    CTreeListItem *item = GetFocusItem() ? GetFocusItem() : GetFirstVisibleItem();
    if (item)
        SelectItem(item, order[to], true);
}
