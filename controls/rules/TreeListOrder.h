// An index over the children of an item that has many: how many rows they show, in order.
#pragma once

#include "controls/rules/TreeListItemPool.h"

/// Children stand in the leaves of a tree of nodes, and each node knows the sum of the show counts of all that it
/// holds, so that a row is found, and the rows before a child are counted, by depth and not by width. Made when an item
/// gets many children, given up when few are left. Where there is no memory for it the item has none; callers walk the
/// children then.
class CTreeListOrder {
public:
    /// From that many children on, and down to that many.
    static constexpr int kMade = 64, kGivenUp = 24;

    explicit CTreeListOrder(CTreeListItemPool &pool) : m_pool(pool.Blocks()) {}

    /// The child stands among its siblings and is counted in its parent's number of children.
    void Added(CTreeListItem *child) noexcept;
    /// The child still stands among its siblings, and is not counted any more.
    void Removing(CTreeListItem *child) noexcept;
    /// The child's show count became another one.
    void Changed(const CTreeListItem *child, int difference) noexcept
    {
        if (child->m_pOrder)
            ChangeIn(child, difference);
    }
    /// Gives up the index over that item's children.
    void Drop(CTreeListItem *parent) noexcept;

    /// The child of that row, counted from the parent's first child; row becomes the number of rows that it stands
    /// behind the child's own. Null when there are not so many. The parent has an index.
    static CTreeListItem *Find(const CTreeListItem *parent, int &row) noexcept;
    /// Rows of the siblings before it. The child's parent has an index.
    static int RowsBefore(const CTreeListItem *child) noexcept;

private:
    bool Insert(CTreeListItem *parent, TreeListOrderNode *node, int at, void *entry, int shown) noexcept;
    TreeListOrderNode *MakeNode(bool leaf) noexcept;
    void ReleaseNodes(TreeListOrderNode *node) noexcept;
    void Remove(CTreeListItem *parent, TreeListOrderNode *node, int at) noexcept;
    static void ChangeIn(const CTreeListItem *child, int difference) noexcept;

    CTreeListBlockPool &m_pool;
};
