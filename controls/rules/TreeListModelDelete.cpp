// Deletion.
#include "controls/rules/TreeListModel.h"
#include "controls/rules/TreeListModelPrivate.h"

int CTreeListModel::DeleteItem(CTreeListItem *item)
{
    if (item && ItemOf(item) != m_pRoot)
        return DeleteItemX(item);
    EndModifyWithin(nullptr);
    CTreeListItem grave;
    Bury(grave, m_pRoot);
    DestroyBuried(grave);
    RowsChanged();
    return 1;
}

int CTreeListModel::DeleteItemX(CTreeListItem *item)
{
    if (item == m_pRoot || !OwnsItem(item))
        return 0;
    const CTreeListItemGuard guard(*this, item);
    EndModifyWithin(item);
    if (OwnsItem(guard.Get())) { // the owner was told of the edit's end
        Unlink(item);
        DeleteItemFast(item);
        RowsChanged();
    }
    return 1;
}

int CTreeListModel::DeleteItemFast(CTreeListItem *item)
{
    // An item without a parent is the root or unlinked; those in a grave have one.
    if (!ItemOf(item) || item == m_pRoot || item->m_pParent)
        return 0;
    CTreeListItem grave;
    grave.m_pChild = grave.m_pLastChild = item;
    item->m_pParent = &grave;
    DestroyBuried(grave);
    return 1;
}

int CTreeListModel::DeleteAllItems()
{
    SetRedraw(false);
    DeleteItem(nullptr);
    SetRedraw(true);
    return 1;
}

/// Children in their order, then their parent.
void CTreeListModel::DestroyBuried(CTreeListItem &grave)
{
    CTreeListItem *item = &grave;
    for (;;) {
        while (item->m_pChild)
            item = item->m_pChild;
        if (item == &grave)
            return;
        CTreeListItem *parent = item->m_pParent;
        DestroyLeaf(item);
        item = parent;
    }
}

void CTreeListModel::DestroyLeaf(CTreeListItem *item)
{
    RemoveSelected(item);
    if (m_pFocusItem == item)
        m_pFocusItem = nullptr;
    Notify(NotifySelChanging, item, -1);
    // Once more: the owner had its say.
    ForgetModify(item);
    RemoveSelected(item);
    if (m_pFocusItem == item)
        m_pFocusItem = nullptr;
    // It is its parent's first child: those before it are gone.
    CTreeListItem *parent = item->m_pParent;
    parent->m_pChild = item->m_pNext;
    (item->m_pNext ? item->m_pNext->m_pPrevious : parent->m_pLastChild) = nullptr;
    item->m_pParent = item->m_pNext = nullptr;
    item->m_pOrder = nullptr;
    d->order.Drop(item);
    OnItemDeleted(item);
    for (CTreeListItemGuard *guard = d->guards; guard; guard = guard->m_pNextGuard) {
        if (guard->m_pItem == item)
            guard->m_pItem = nullptr;
    }
    d->pool.DeleteItem(item);
}
