#include "controls/rules/TreeListOrder.h"

#include <algorithm>
#include <new>

namespace {
constexpr int kEntries = 128;
}

/// Entries are items in a leaf, nodes elsewhere.
struct TreeListOrderNode {
    TreeListOrderNode *parent = nullptr;
    bool leaf = true;
    std::uint16_t used = 0;
    mutable std::uint16_t last = 0; ///< place asked for last: changes come in runs
    std::int32_t shown[kEntries];
    void *entries[kEntries];

    int PlaceOf(const void *entry) const
    {
        for (int next = last; next <= last + 1 && next < used; ++next) {
            if (entries[next] == entry) {
                last = static_cast<std::uint16_t>(next);
                return next;
            }
        }
        const auto place = std::find(entries, entries + used, entry) - entries;
        last = static_cast<std::uint16_t>(place);
        return static_cast<int>(place);
    }
    TreeListOrderNode *NodeAt(int at) const { return static_cast<TreeListOrderNode *>(entries[at]); }
    int Sum(int from, int to) const
    {
        int sum = 0;
        for (int at = from; at < to; ++at)
            sum += shown[at];
        return sum;
    }
    /// The entry of this node in all those above.
    void ChangeAbove(int difference)
    {
        for (TreeListOrderNode *node = this; node->parent; node = node->parent)
            node->parent->shown[node->parent->PlaceOf(node)] += difference;
    }
};

TreeListOrderNode *CTreeListOrder::MakeNode(bool leaf) noexcept
{
    void *memory = m_pool.Allocate(sizeof(TreeListOrderNode));
    if (!memory)
        return nullptr;
    auto *node = new (memory) TreeListOrderNode;
    node->leaf = leaf;
    return node;
}

void CTreeListOrder::ReleaseNodes(TreeListOrderNode *node) noexcept
{
    if (!node->leaf) {
        for (int at = 0; at < node->used; ++at)
            ReleaseNodes(node->NodeAt(at));
    }
    m_pool.Release(node, sizeof(TreeListOrderNode));
}

namespace {

/// Tells an entry where it stands.
void settle(TreeListOrderNode *node, int at, TreeListOrderNode *CTreeListItem::*place)
{
    if (node->leaf)
        static_cast<CTreeListItem *>(node->entries[at])->*place = node;
    else
        node->NodeAt(at)->parent = node;
}

/// Moves the entries from there on to the end of another node; how many rows they show.
int moveEntries(TreeListOrderNode *from, int first, TreeListOrderNode *to, TreeListOrderNode *CTreeListItem::*place)
{
    int moved = 0;
    for (int at = first; at < from->used; ++at) {
        to->entries[to->used] = from->entries[at];
        to->shown[to->used] = from->shown[at];
        settle(to, to->used++, place);
        moved += from->shown[at];
    }
    from->used = static_cast<std::uint16_t>(first);
    return moved;
}

} // namespace

void CTreeListOrder::Added(CTreeListItem *child) noexcept
{
    CTreeListItem *parent = child->m_pParent;
    if (parent->m_pIndex) {
        TreeListOrderNode *leaf;
        int at = 0;
        if (const CTreeListItem *previous = child->m_pPrevious) {
            leaf = previous->m_pOrder;
            at = leaf->PlaceOf(previous) + 1;
        } else {
            leaf = child->m_pNext->m_pOrder;
        }
        if (!Insert(parent, leaf, at, child, child->m_nShowCount))
            Drop(parent);
        return;
    }
    // Where memory was short the next try comes when there are twice as many.
    const int count = parent->m_nChildren;
    if (count < kMade || (count & (count - 1)) != 0)
        return;
    parent->m_pIndex = MakeNode(true);
    TreeListOrderNode *leaf = parent->m_pIndex;
    for (CTreeListItem *each = parent->m_pChild; leaf && each; each = each->m_pNext) {
        if (!Insert(parent, leaf, leaf->used, each, each->m_nShowCount)) {
            Drop(parent);
            return;
        }
        leaf = each->m_pOrder;
    }
}

bool CTreeListOrder::Insert(CTreeListItem *parent, TreeListOrderNode *node, int at, void *entry, int shown) noexcept
{
    constexpr auto place = &CTreeListItem::m_pOrder;
    if (node->used == kEntries) {
        TreeListOrderNode *right = MakeNode(node->leaf);
        if (!right)
            return false;
        if (!node->parent) {
            TreeListOrderNode *top = MakeNode(false);
            if (!top) {
                ReleaseNodes(right);
                return false;
            }
            top->entries[0] = node;
            top->shown[0] = node->Sum(0, node->used);
            top->used = 1;
            node->parent = top;
            parent->m_pIndex = top;
        }
        // Behind the last one nothing moves, so that a list that is filled in order gets full nodes.
        const int moved = moveEntries(node, at == kEntries ? kEntries : kEntries / 2, right, place);
        node->ChangeAbove(-moved);
        if (!Insert(parent, node->parent, node->parent->PlaceOf(node) + 1, right, moved)) {
            ReleaseNodes(right);
            return false;
        }
        if (at > node->used || node->used == kEntries) {
            at -= node->used;
            node = right;
        }
    }
    std::move_backward(node->entries + at, node->entries + node->used, node->entries + node->used + 1);
    std::move_backward(node->shown + at, node->shown + node->used, node->shown + node->used + 1);
    node->entries[at] = entry;
    node->shown[at] = shown;
    ++node->used;
    node->last = static_cast<std::uint16_t>(at);
    settle(node, at, place);
    node->ChangeAbove(shown);
    return true;
}

void CTreeListOrder::Removing(CTreeListItem *child) noexcept
{
    CTreeListItem *parent = child->m_pParent;
    TreeListOrderNode *leaf = child->m_pOrder;
    if (!leaf)
        return;
    if (parent->m_nChildren <= kGivenUp) {
        Drop(parent);
        return;
    }
    child->m_pOrder = nullptr;
    Remove(parent, leaf, leaf->PlaceOf(child));
}

void CTreeListOrder::Remove(CTreeListItem *parent, TreeListOrderNode *node, int at) noexcept
{
    constexpr auto place = &CTreeListItem::m_pOrder;
    node->ChangeAbove(-node->shown[at]);
    std::move(node->entries + at + 1, node->entries + node->used, node->entries + at);
    std::move(node->shown + at + 1, node->shown + node->used, node->shown + at);
    --node->used;

    TreeListOrderNode *above = node->parent;
    if (!above) {
        if (!node->leaf && node->used == 1) { // one level is one too many
            parent->m_pIndex = node->NodeAt(0);
            parent->m_pIndex->parent = nullptr;
            m_pool.Release(node, sizeof(TreeListOrderNode));
        }
        return;
    }
    if (node->used > kEntries / 4)
        return;
    // Nearly empty: it joins a neighbour with room.
    const int own = above->PlaceOf(node);
    for (const int left : {own - 1, own}) {
        if (left < 0 || left + 1 >= above->used)
            continue;
        TreeListOrderNode *one = above->NodeAt(left), *other = above->NodeAt(left + 1);
        if (one->used + other->used > kEntries * 3 / 4)
            continue;
        const int moved = moveEntries(other, 0, one, place);
        above->shown[left] += moved;
        above->shown[left + 1] -= moved; // nothing is left to be taken off above
        Remove(parent, above, left + 1);
        m_pool.Release(other, sizeof(TreeListOrderNode));
        return;
    }
    if (node->used == 0) {
        Remove(parent, above, own);
        m_pool.Release(node, sizeof(TreeListOrderNode));
    }
}

void CTreeListOrder::ChangeIn(const CTreeListItem *child, int difference) noexcept
{
    TreeListOrderNode *leaf = child->m_pOrder;
    leaf->shown[leaf->PlaceOf(child)] += difference;
    leaf->ChangeAbove(difference);
}

void CTreeListOrder::Drop(CTreeListItem *parent) noexcept
{
    for (CTreeListItem *child = parent->m_pChild; child; child = child->m_pNext)
        child->m_pOrder = nullptr;
    if (parent->m_pIndex)
        ReleaseNodes(parent->m_pIndex);
    parent->m_pIndex = nullptr;
}

CTreeListItem *CTreeListOrder::Find(const CTreeListItem *parent, int &row) noexcept
{
    for (const TreeListOrderNode *node = parent->m_pIndex;;) {
        int at = 0;
        while (at < node->used && row >= node->shown[at])
            row -= node->shown[at++];
        if (at == node->used)
            return nullptr;
        if (node->leaf)
            return static_cast<CTreeListItem *>(node->entries[at]);
        node = node->NodeAt(at);
    }
}

int CTreeListOrder::RowsBefore(const CTreeListItem *child) noexcept
{
    const TreeListOrderNode *node = child->m_pOrder;
    int rows = node->Sum(0, node->PlaceOf(child));
    for (; node->parent; node = node->parent)
        rows += node->parent->Sum(0, node->parent->PlaceOf(node));
    return rows;
}
