// The walk through the tree, the counts and expansion.
#include "controls/rules/TreeListModel.h"
#include "controls/rules/TreeListModelPrivate.h"

#include <utility>

namespace {

bool isItem(const CTreeListItem *item)
{
    return item && !IsFixedTreeListValue(item);
}

} // namespace

// --- Relatives ---

CTreeListItem *CTreeListModel::GetParentItem(const CTreeListItem *item) const
{
    if (!isItem(item) || !item->m_pParent || item->m_pParent->m_nLevel == 0)
        return nullptr;
    return item->m_pParent;
}

CTreeListItem *CTreeListModel::GetChildItem(const CTreeListItem *item) const
{
    if (!item || item == TreeListRoot())
        item = m_pRoot;
    return isItem(item) ? item->m_pChild : nullptr;
}

CTreeListItem *CTreeListModel::GetLastChildItem(const CTreeListItem *item) const
{
    if (!item || item == TreeListRoot())
        item = m_pRoot;
    return isItem(item) ? item->m_pLastChild : nullptr;
}

CTreeListItem *CTreeListModel::GetNextSiblingItem(const CTreeListItem *item) const
{
    return isItem(item) ? item->m_pNext : nullptr;
}

CTreeListItem *CTreeListModel::GetPrevSiblingItem(const CTreeListItem *item) const
{
    return isItem(item) ? item->m_pPrevious : nullptr;
}

bool CTreeListModel::ItemHasChildren(const CTreeListItem *item) const
{
    return item && GetChildItem(item);
}

CTreeListItem *CTreeListModel::GetNextItem(CTreeListItem *item, int code) const
{
    switch (code) {
    case kNextRoot:
        return GetRootItem();
    case kNextSibling:
        return GetNextSiblingItem(item);
    case kPreviousSibling:
        return GetPrevSiblingItem(item);
    case kNextParent:
        return GetParentItem(item);
    case kNextChild:
        return GetChildItem(item);
    case kFirstVisible:
        return GetFirstVisibleItem();
    case kNextVisible:
        return GetNextVisibleItem(item);
    case kPreviousVisible:
        return GetPrevVisibleItem(item);
    case kFirstSelected:
        return GetSelectedItem();
    case kNextSelected: {
        if (!isItem(item) || item->m_nSelectSlot < 0)
            return nullptr;
        TreeListPosition position = item->m_nSelectSlot;
        GetNextSelectedItem(position);
        return GetNextSelectedItem(position);
    }
    default:
        return nullptr;
    }
}

int CTreeListModel::GetCount() const
{
    return m_pRoot->m_nChildCount - 1;
}

int CTreeListModel::GetVisibleCount() const
{
    return m_pRoot->m_nShowCount - 1;
}

// --- Rows ---

CTreeListItem *CTreeListModel::GetFirstVisibleItem() const
{
    return m_pRoot->m_pChild;
}

CTreeListItem *CTreeListModel::GetLastVisibleItem() const
{
    CTreeListItem *item = m_pRoot->m_pLastChild;
    while (item && item->Has(kItemExpanded) && item->m_pLastChild)
        item = item->m_pLastChild;
    return item;
}

CTreeListItem *CTreeListModel::GetNextVisibleItem(const CTreeListItem *item) const
{
    return GetNextShowItem(const_cast<CTreeListItem *>(item), true);
}

CTreeListItem *CTreeListModel::GetPrevVisibleItem(const CTreeListItem *item) const
{
    if (!isItem(item))
        return nullptr;
    CTreeListItem *before = item->m_pPrevious;
    if (!before)
        return GetParentItem(item);
    while (before->Has(kItemExpanded) && before->m_pLastChild)
        before = before->m_pLastChild;
    return before;
}

CTreeListItem *CTreeListModel::GetNextShowItem(CTreeListItem *item, bool descend) const
{
    item = ItemOf(item);
    if (!item)
        return nullptr;
    if (descend && item->Has(kItemExpanded) && item->m_pChild)
        return item->m_pChild;
    while (item && !item->m_pNext)
        item = item->m_pParent;
    return item ? item->m_pNext : nullptr;
}

CTreeListItem *CTreeListModel::GetTreeListItem(int index) const
{
    return GetFirstShowItem(index);
}

CTreeListItem *CTreeListModel::GetFirstShowItem(int index) const
{
    if (index < 0 || index >= m_pRoot->m_nShowCount)
        return nullptr;
    const CTreeListItem *parent = m_pRoot;
    for (;;) {
        CTreeListItem *child;
        if (parent->m_pIndex) {
            child = CTreeListOrder::Find(parent, index);
        } else {
            child = parent->m_pChild;
            while (child && index >= child->m_nShowCount) {
                index -= child->m_nShowCount;
                child = child->m_pNext;
            }
        }
        if (!child || index == 0)
            return child;
        --index;
        parent = child;
    }
}

int CTreeListModel::GetShowIndex(const CTreeListItem *item) const
{
    if (!isItem(item) || item == m_pRoot)
        return -1;
    int row = 0;
    for (; item->m_pParent; item = item->m_pParent) {
        if (!item->m_pParent->Has(kItemExpanded))
            return -1;
        if (item->m_pOrder) {
            row += CTreeListOrder::RowsBefore(item);
        } else {
            for (const CTreeListItem *before = item->m_pPrevious; before; before = before->m_pPrevious)
                row += before->m_nShowCount;
        }
        ++row; // the parent's own
    }
    return item == m_pRoot ? row - 1 : -1;
}

// --- The counts ---

void CTreeListModel::StatChildAdd(CTreeListItem *item, int add, int addShown)
{
    CTreeListItem *parent = item->m_pParent;
    if (!parent)
        return;
    for (CTreeListItem *above = parent; above; above = above->m_pParent)
        above->m_nChildCount += add;
    // The item's own place in its parent's index is taken and given back with the links.
    parent->m_nShownBelow += addShown;
    if (parent->Has(kItemExpanded)) {
        parent->m_nShowCount += addShown;
        AddShownAbove(parent, addShown);
    }
}

void CTreeListModel::StatChildDel(CTreeListItem *item, int del, int delShown)
{
    StatChildAdd(item, -del, -delShown);
}

/// The item's show count grew by so many: all who count it follow, up to the first collapsed one.
void CTreeListModel::AddShownAbove(CTreeListItem *item, int shown)
{
    if (shown == 0)
        return;
    while (CTreeListItem *parent = item->m_pParent) {
        d->order.Changed(item, shown);
        parent->m_nShownBelow += shown;
        if (!parent->Has(kItemExpanded))
            return;
        parent->m_nShowCount += shown;
        item = parent;
    }
}

void CTreeListModel::StatExpand(CTreeListItem *item)
{
    item->m_nShowCount += item->m_nShownBelow;
    AddShownAbove(item, item->m_nShownBelow);
}

void CTreeListModel::StatCollapse(CTreeListItem *item)
{
    item->m_nShowCount -= item->m_nShownBelow;
    AddShownAbove(item, -item->m_nShownBelow);
}

// --- Expansion ---

int CTreeListModel::Expand(CTreeListItem *item, int code, int column)
{
    item = ItemOf(item);
    if (!OwnsItem(item))
        return 0;
    if (item->Has(kItemExpandedOnce) && !item->m_pChild)
        return 1;
    if (code == kToggle)
        code = item->Has(kItemExpanded) ? kCollapse : kExpand;
    if (code != kExpand && code != kCollapse && code != kCollapseAndDelete)
        return 0;
    const bool expand = code == kExpand;
    if (item->Has(kItemExpanded) == expand)
        return 1;
    if (item == m_pRoot)
        return 0;

    const CTreeListItemGuard guard(*this, item);
    if (Notify(NotifyExpanding, item, column) == -1 || !guard.Get())
        return 0;
    if (item->Has(kItemExpanded) == expand) // the owner did it himself
        return 1;
    {
        const RedrawOff off(*this);
        if (code == kCollapseAndDelete && GetModifyItem() != item) // that one stays
            EndModifyWithin(item);
        if (code == kCollapseAndDelete && OwnsItem(guard.Get())) {
            CTreeListItem grave;
            Bury(grave, item);
            DestroyBuried(grave);
        }
        if (OwnsItem(guard.Get()) && item->Has(kItemExpanded) != expand) {
            const std::uint32_t state = item->m_nState;
            ChangeState(item, expand              ? state | kItemExpanded | kItemExpandedOnce
                              : code == kCollapse ? state & ~kItemExpanded
                                                  : state & ~(kItemExpanded | kItemExpandedOnce));
        }
    }
    RowsChanged();
    if (guard.Get())
        Notify(NotifyExpanded, item, column);
    return 0; // the model may be gone
}

/// Takes all children with their descendants out of the tree and into the grave. Nothing in a grave stands in the tree
/// any more, so nothing that a notice does can change it.
void CTreeListModel::Bury(CTreeListItem &grave, CTreeListItem *parent)
{
    if (!parent->m_pChild)
        return;
    const int count = parent->m_nChildCount - 1;
    const int shown = parent->m_nShownBelow;
    d->order.Drop(parent);
    grave.m_pChild = std::exchange(parent->m_pChild, nullptr);
    grave.m_pLastChild = std::exchange(parent->m_pLastChild, nullptr);
    parent->m_nChildren = 0;
    parent->m_nShownBelow = 0;
    for (CTreeListItem *child = grave.m_pChild; child; child = child->m_pNext)
        child->m_pParent = &grave;
    for (CTreeListItem *above = parent; above; above = above->m_pParent)
        above->m_nChildCount -= count;
    if (parent->Has(kItemExpanded)) {
        parent->m_nShowCount -= shown;
        AddShownAbove(parent, -shown);
    }
}
