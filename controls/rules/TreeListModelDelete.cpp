// Deletion.
#include "controls/rules/TreeListModel.h"
#include "controls/rules/TreeListModelPrivate.h"

#include <exception>

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
    const RedrawOff off(*this);
    return DeleteItem(nullptr);
}

/// Children in their order, then their parent. An owner who throws is heard when all are gone.
void CTreeListModel::DestroyBuried(CTreeListItem &grave)
{
    std::exception_ptr thrown;
    CTreeListItem *item = &grave;
    for (;;) {
        while (item->m_pChild)
            item = item->m_pChild;
        if (item == &grave)
            break;
        CTreeListItem *parent = item->m_pParent;
        const auto tell = [&thrown](const auto &notice) {
            try {
                notice();
            } catch (...) {
                thrown = std::current_exception();
            }
        };
        LeaveSelection(item);
        tell([this, item] { Notify(NotifySelChanging, item, -1); });
        tell([this, item] { ForgetModify(item); });
        DestroyLeaf(item);
        item = parent;
    }
    if (thrown) {
        RowsChanged();
        std::rethrow_exception(thrown);
    }
}

void CTreeListModel::LeaveSelection(CTreeListItem *item)
{
    RemoveSelected(item);
    if (m_pFocusItem == item)
        m_pFocusItem = nullptr;
}

void CTreeListModel::DestroyLeaf(CTreeListItem *item)
{
    LeaveSelection(item); // once more: the owner had its say
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
