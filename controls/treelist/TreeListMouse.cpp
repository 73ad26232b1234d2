#include "controls/treelist/TreeListCtrl.h"
#include "controls/treelist/TreeListGlyphs.h"

#include <QMouseEvent>

#include <utility>

namespace {

constexpr int kPartsWithCursor = kHitButton | kHitCheck | kHitLock;

/// Number of the cursor over a part; 0: the arrow.
int cursorOf(int flag)
{
    switch (flag) {
    case kHitButton:
        return tree_list_glyphs::kCursorButton;
    case kHitCheck:
        return tree_list_glyphs::kCursorCheck;
    case kHitLock:
        return tree_list_glyphs::kCursorLock;
    default:
        return 0;
    }
}

} // namespace

void CTreeListCtrl::mousePressEvent(QMouseEvent *event)
{
    event->accept();
    const QPointer<CTreeListCtrl> self(this);
    const QPoint point = event->position().toPoint();
    if (event->button() == Qt::LeftButton)
        OnLeftDown(point, event->modifiers());
    else if (event->button() == Qt::RightButton && !GetState(kControlDragging))
        OnRightDown(point);
    if (self && hasFocus() && ShownEditor()) // the press took it, and the row is still in edit
        SetCtrlFocus();
}

void CTreeListCtrl::OnLeftDown(const QPoint &point, Qt::KeyboardModifiers keys)
{
    const QPointer<CTreeListCtrl> self(this);
    EndDraging(point, false); // a press whose way up went elsewhere
    if (!self)
        return;
    WatchPress();
    HideTip();
    setFocus(Qt::MouseFocusReason);
    if (!self)
        return;
    const QPoint origin = RowsOrigin();
    ClickRow(point, keys);
    if (!self)
        return;
    m_pressShift = RowsOrigin() - origin;
    if (!GetState(kControlDragging))
        UnwatchPress();
}

void CTreeListCtrl::ClickRow(const QPoint &point, Qt::KeyboardModifiers keys)
{
    int flag = 0;
    int column = -1;
    CTreeListItem *const hit = HitTest(point, &flag, &column);
    const CTreeListItemGuard item(*this, hit);
    const auto repaint = [this] {
        Layout();
        Invalidate();
    };
    if (hit == nullptr) {
        UnwatchPress();
        FinishModify();
        SelectItem(nullptr, 0, true);
        if (item.IsModelAlive())
            repaint();
        return;
    }
    if (ClickPart(hit, flag, column)) {
        if (item.IsModelAlive())
            repaint();
        return;
    }
    if (!ClickInEdit(hit, flag, column)) {
        UnwatchPress();
        repaint();
        return;
    }
    if (item.Get() != nullptr) {
        if (item.Get()->Has(kItemSelected))
            ActiveItem(item.Get(), column);
        else
            SelectItem(item.Get(), column, !keys.testFlag(Qt::ControlModifier));
    }
    // A press that the owner kept from selecting its row drags no other one.
    if (item.Get() != nullptr && item.Get()->Has(kItemSelected) && BeginDraging(point))
        SetState(kControlCaptured, 0);
    if (!item.IsModelAlive())
        return;
    repaint();
    CTreeListItem *const selected = GetSelectedItem();
    const int selectColumn = GetSelectColumn();
    if (selected != nullptr && selectColumn >= 0 && selectColumn < GetColumnCount())
        BeginModify(selected, selectColumn);
}

QPoint CTreeListCtrl::RowsOrigin() const
{
    return {-GetHorzScroll(), -GetVertScroll() * GetItemHeight()};
}

bool CTreeListCtrl::ClickPart(CTreeListItem *item, int flag, int column)
{
    if ((flag & kPartsWithCursor) == 0)
        return false;
    ShowCursor(cursorOf(flag));
    if (flag == kHitButton)
        Expand(item, item->Has(kItemExpanded) ? kCollapse : kExpand, column);
    else if (flag == kHitCheck)
        SetItemCheck(item, true);
    else
        SetItemLock(item, true);
    return true;
}

bool CTreeListCtrl::ClickInEdit(CTreeListItem *item, int flag, int column)
{
    if (!GetState(kControlEditing))
        return true;
    if (item == GetModifyItem())
        return flag != kHitText || BeginModify(item, column) != 0 || !GetState(kControlEditing);
    FinishModify();
    // Refused: the row stays in edit with what was typed, so the click may not take the selection away from it.
    return !GetState(kControlEditing);
}

void CTreeListCtrl::OnRightDown(const QPoint &point)
{
    const QPointer<CTreeListCtrl> self(this);
    HideTip();
    setFocus(Qt::MouseFocusReason);
    if (!self)
        return;
    int column = -1;
    CTreeListItem *const hit = HitTest(point, nullptr, &column);
    if (hit == nullptr || hit->Has(kItemSelected))
        return;
    // What a menu opens for is the row under the pointer.
    const CTreeListItemGuard item(*this, hit);
    if (GetState(kControlEditing) && hit != GetModifyItem()) {
        FinishModify();
        if (GetState(kControlEditing))
            return;
    }
    if (item.Get() != nullptr)
        SelectItem(item.Get(), column, true);
}

void CTreeListCtrl::mouseDoubleClickEvent(QMouseEvent *event)
{
    event->accept();
    if (event->button() == Qt::RightButton && !GetState(kControlDragging))
        OnRightDown(event->position().toPoint());
    if (event->button() != Qt::LeftButton)
        return;
    int flag = 0;
    int column = -1;
    // What the first press brought into view went away from under the pointer.
    const QPoint point = event->position().toPoint() + std::exchange(m_pressShift, {});
    CTreeListItem *const item = HitTest(point, &flag, &column);
    if (item == nullptr)
        return;
    HideTip();
    const QPointer<CTreeListCtrl> self(this);
    if (flag == kHitImage || flag == kHitText) {
        if (HasStyle(StyleTree))
            Expand(item, kToggle, column);
    } else if (ClickPart(item, flag, column) && self) { // two quick clicks on a check box are two clicks
        Layout();
        Invalidate();
    }
}

void CTreeListCtrl::mouseReleaseEvent(QMouseEvent *event)
{
    event->accept();
    if (event->button() != Qt::LeftButton)
        return;
    const QPointer<CTreeListCtrl> self(this);
    const QPoint point = event->position().toPoint();
    if (GetState(kControlDragging)) {
        SetState(0, kControlCaptured);
        EndDraging(point);
    }
    if (!self)
        return;
    UnwatchPress();
    SetPartCursor(point);
}

void CTreeListCtrl::mouseMoveEvent(QMouseEvent *event)
{
    event->accept();
    const QPoint point = event->position().toPoint();
    if (GetState(kControlDragging) && event->buttons().testFlag(Qt::LeftButton)) {
        DoDraging(point);
        return;
    }
    const QPointer<CTreeListCtrl> self(this);
    OnCancelMode(); // the button went up where nobody told
    if (!self)
        return;
    if (event->buttons() == Qt::NoButton)
        ShowTip(point);
    else
        HideTip();
    SetPartCursor(point);
}

void CTreeListCtrl::SetPartCursor(const QPoint &point)
{
    int flag = 0;
    const bool onRow = HitTest(point, &flag) != nullptr;
    ShowCursor(onRow ? cursorOf(flag) : 0);
}

void CTreeListCtrl::ShowCursor(int number)
{
    if (m_nCursor == number)
        return;
    m_nCursor = number;
    viewport()->setCursor(number != 0 ? tree_list_glyphs::Cursor(number, devicePixelRatioF())
                                      : QCursor(Qt::ArrowCursor));
}
