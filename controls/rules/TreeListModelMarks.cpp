// The state word of an item, its check and its lock.
#include "controls/rules/TreeListModel.h"
#include "controls/rules/TreeListModelPrivate.h"

namespace {

const CTreeListItem *readable(const CTreeListItem *item, const CTreeListItem *root)
{
    if (item == TreeListRoot())
        return root;
    return IsFixedTreeListValue(item) ? nullptr : item;
}

} // namespace

/// The expanded bit with the counts that go with it; the selected bit is the caller's affair.
void CTreeListModel::ChangeState(CTreeListItem *item, std::uint32_t state)
{
    const std::uint32_t changed = item->m_nState ^ state;
    if (changed == 0)
        return;
    item->m_nState = state;
    if (changed & kItemExpanded) {
        if (state & kItemExpanded)
            StatExpand(item);
        else
            StatCollapse(item);
    }
    OnStateChanged(item, changed);
}

int CTreeListModel::SetItemState(CTreeListItem *item, std::uint32_t add, std::uint32_t remove)
{
    item = ItemOf(item);
    if (!OwnsItem(item))
        return 0;
    std::uint32_t state = item->m_nState & ~remove;
    if (remove & kItemExpandedOnce)
        state &= ~kItemExpanded;
    state |= add;
    if (add & kItemExpanded)
        state |= kItemExpandedOnce;
    if (item == m_pRoot)
        state = (state | kItemExpanded | kItemExpandedOnce) & ~kItemSelected;
    const bool select = state & kItemSelected;
    if (select != item->Has(kItemSelected) && !Select(item, select))
        return 0;
    const bool rows = (item->m_nState ^ state) & kItemExpanded;
    ChangeState(item, state);
    if (rows)
        RowsChanged();
    else
        InvalidateItem(item);
    return 1;
}

std::uint32_t CTreeListModel::GetItemState(const CTreeListItem *item, std::uint32_t mask) const
{
    item = readable(item, m_pRoot);
    return item ? item->m_nState & mask : 0;
}

// --- Check and lock ---

int CTreeListModel::SetCheck(CTreeListItem *item, int check)
{
    return SetMark(item, check, Mark::kCheck);
}

int CTreeListModel::SetLock(CTreeListItem *item, int lock)
{
    return SetMark(item, lock, Mark::kLock);
}

int CTreeListModel::GetCheck(const CTreeListItem *item) const
{
    item = readable(item, m_pRoot);
    return item ? Mark::kCheck.ValueOf(item->m_nState) : kCheckOff;
}

int CTreeListModel::GetLock(const CTreeListItem *item) const
{
    item = readable(item, m_pRoot);
    return item ? Mark::kLock.ValueOf(item->m_nState) : kCheckOff;
}

int CTreeListModel::SetItemCheck(CTreeListItem *item, bool toggle)
{
    return SetMarkWithOthers(item, toggle, Mark::kCheck);
}

int CTreeListModel::SetItemLock(CTreeListItem *item, bool toggle)
{
    return SetMarkWithOthers(item, toggle, Mark::kLock);
}

int CTreeListModel::SetMark(CTreeListItem *item, int value, const Mark &mark)
{
    item = ItemOf(item);
    if (value < kCheckOff || value > kCheckMixed || !OwnsItem(item))
        return 0;
    ChangeState(item, (item->m_nState & ~mark.Bits()) | mark.BitsOf(value));
    InvalidateItem(item);
    return 1;
}

int CTreeListModel::SetMarkWithOthers(CTreeListItem *item, bool toggle, const Mark &mark)
{
    item = ItemOf(item);
    if (!OwnsItem(item))
        return 0;
    const CTreeListItemGuard guard(*this, item);
    if (Notify(mark.notice, item, 0) == -1 || !guard.Get()) // gone, or the model
        return 0;
    if (toggle) {
        const int flipped = mark.ValueOf(item->m_nState) == kCheckOn ? kCheckOff : kCheckOn;
        ChangeState(item, (item->m_nState & ~mark.Bits()) | mark.BitsOf(flipped));
    }
    if (!HasStyle(mark.stays)) {
        const std::uint32_t bits = item->m_nState & mark.Bits();
        for (CTreeListItem *below = item->m_pChild; below;) {
            ChangeState(below, (below->m_nState & ~mark.Bits()) | bits);
            if (below->m_pChild) {
                below = below->m_pChild;
                continue;
            }
            while (below != item && !below->m_pNext)
                below = below->m_pParent;
            below = below == item ? nullptr : below->m_pNext;
        }
        SetItemParentStatus(item, mark);
    }
    Invalidate();
    return 1;
}

/// The parent gets all that its children with a box hold, then its parent; with no such child it stays as it is.
void CTreeListModel::SetItemParentStatus(CTreeListItem *item, const Mark &mark)
{
    for (CTreeListItem *parent = GetParentItem(item); parent; parent = GetParentItem(parent)) {
        std::uint32_t bits = 0;
        for (const CTreeListItem *child = parent->m_pChild; child; child = child->m_pNext) {
            if (child->Has(mark.box))
                bits |= child->m_nState & mark.Bits();
        }
        if (bits)
            ChangeState(parent, (parent->m_nState & ~mark.Bits()) | bits);
    }
}
