// Selection and focus.
#include "controls/rules/TreeListModel.h"
#include "controls/rules/TreeListModelPrivate.h"

#include <algorithm>
#include <new>
#include <utility>

// --- The list of selected items ---

CTreeListItem *CTreeListModel::GetSelectedItem() const
{
    return d->selected.empty() ? nullptr : d->selected.back();
}

int CTreeListModel::GetSelectedCount() const
{
    return d->selectedCount;
}

TreeListPosition CTreeListModel::GetFirstSelectedItemPosition() const
{
    return static_cast<TreeListPosition>(d->selected.size()) - 1;
}

CTreeListItem *CTreeListModel::GetNextSelectedItem(TreeListPosition &position) const
{
    const auto next = [this](TreeListPosition from) {
        while (from >= 0 && !d->selected[static_cast<std::size_t>(from)])
            --from;
        return std::max<TreeListPosition>(from, -1);
    };
    const TreeListPosition at = next(std::min(position, GetFirstSelectedItemPosition()));
    position = at < 0 ? -1 : next(at - 1);
    return at < 0 ? nullptr : d->selected[static_cast<std::size_t>(at)];
}

/// For one more, so that AddSelected can't fail. False when there is no memory; nothing has changed then.
bool CTreeListModel::MakeRoomForSelected()
{
    std::vector<CTreeListItem *> &selected = d->selected;
    if (selected.size() > 2 * static_cast<std::size_t>(d->selectedCount) + 16) {
        std::erase(selected, nullptr);
        for (std::size_t slot = 0; slot < selected.size(); ++slot)
            selected[slot]->m_nSelectSlot = static_cast<std::int32_t>(slot);
    }
    if (selected.size() < selected.capacity())
        return true;
    try {
        selected.reserve(std::max<std::size_t>(8, 2 * selected.capacity()));
    } catch (const std::bad_alloc &) {
        return false;
    }
    return true;
}

/// As the newest, into the room that was made.
void CTreeListModel::AddSelected(CTreeListItem *item)
{
    d->selected.push_back(item);
    item->m_nSelectSlot = static_cast<std::int32_t>(d->selected.size()) - 1;
    item->m_nState |= kItemSelected;
    ++d->selectedCount;
}

void CTreeListModel::RemoveSelected(CTreeListItem *item)
{
    if (item->m_nSelectSlot < 0)
        return;
    std::vector<CTreeListItem *> &selected = d->selected;
    selected[static_cast<std::size_t>(item->m_nSelectSlot)] = nullptr;
    while (!selected.empty() && !selected.back())
        selected.pop_back();
    item->m_nSelectSlot = -1;
    item->m_nState &= ~kItemSelected;
    --d->selectedCount;
}

void CTreeListModel::UnselectAll()
{
    while (CTreeListItem *item = GetSelectedItem()) {
        RemoveSelected(item);
        OnStateChanged(item, kItemSelected);
    }
}

/// The newest one is drawn in a look of its own; before: who it was.
void CTreeListModel::TellNewest(CTreeListItem *before)
{
    CTreeListItem *now = GetSelectedItem();
    if (before == now)
        return;
    for (CTreeListItem *item : {before, now}) {
        if (item && item->Has(kItemSelected))
            OnStateChanged(item, kItemSelected);
    }
}

void CTreeListModel::SetFocusItem(CTreeListItem *item)
{
    CTreeListItem *old = std::exchange(m_pFocusItem, item);
    if (old == item)
        return;
    if (old)
        OnStateChanged(old, kItemSelected);
    if (item)
        OnStateChanged(item, kItemSelected);
}

// --- Operations ---

int CTreeListModel::SelectItem(CTreeListItem *item, int column, bool clear)
{
    if (column < -1 || column >= std::max(1, GetColumnCount()) || (item && (item == m_pRoot || !OwnsItem(item))))
        return 0;
    if (item && item == GetSelectedItem() && column == m_nSelectColumn) {
        EnsureVisible(item, column);
        Invalidate();
        return 1;
    }
    const CTreeListItemGuard guard(*this, item);
    const CTreeListColumnInfo *info = GetColumns(column);
    const std::int64_t answer = Notify(NotifySelChanging, item, column);
    if (!guard.IsModelAlive() || answer == -1 || answer == -2 || guard.Get() != item)
        return 0;
    column = ColumnOf(info, column); // the owner may have taken columns away
    if (item && !MakeRoomForSelected())
        return 0;

    CTreeListItem *newest = GetSelectedItem();
    if (!item || !HasStyle(StyleMultiSelect) || clear)
        UnselectAll();
    if (item && item->Has(kItemSelected)) {
        RemoveSelected(item);
        OnStateChanged(item, kItemSelected);
    } else if (item) {
        AddSelected(item);
        OnStateChanged(item, kItemSelected);
    }
    TellNewest(newest);
    SetFocusItem(item);
    m_nSelectColumn = column;

    Notify(NotifySelChanged, item, column);
    if (!guard.IsModelAlive())
        return 0;
    if (guard.Get())
        EnsureVisible(item, column);
    Invalidate();
    return 1;
}

/// The number that a column has by now; -1 when it is gone. info: what it was under that number, null for none.
int CTreeListModel::ColumnOf(const CTreeListColumnInfo *info, int column) const
{
    if (!info || GetColumns(column) == info)
        return column;
    for (int each = 0; each < GetColumnCount(); ++each) {
        if (GetColumns(each) == info)
            return each;
    }
    return -1;
}

int CTreeListModel::Select(CTreeListItem *item, bool select)
{
    if (item == m_pRoot || !OwnsItem(item))
        return 0;
    if (item->Has(kItemSelected) == select)
        return 1;
    if (select && !MakeRoomForSelected())
        return 0;
    CTreeListItem *newest = GetSelectedItem();
    if (select) {
        if (!HasStyle(StyleMultiSelect))
            UnselectAll();
        AddSelected(item);
    } else {
        RemoveSelected(item);
    }
    OnStateChanged(item, kItemSelected);
    TellNewest(newest);
    Invalidate();
    return 1;
}

int CTreeListModel::ActiveItem(CTreeListItem *item, int column)
{
    if (item == m_pRoot || !OwnsItem(item) || column < -1 || column >= std::max(1, GetColumnCount()))
        return 0;
    CTreeListItem *newest = GetSelectedItem();
    if (HasStyle(StyleMultiSelect) && item->Has(kItemSelected) && item != newest) {
        if (!MakeRoomForSelected())
            return 0;
        RemoveSelected(item);
        AddSelected(item);
        TellNewest(newest);
    }
    m_nSelectColumn = column;
    SetFocusItem(item);
    Invalidate();
    EnsureVisible(item, column);
    return 1;
}

CTreeListItem *CTreeListModel::SetSelectionMark(CTreeListItem *item)
{
    if (item && (item == m_pRoot || !OwnsItem(item)))
        return nullptr;
    CTreeListItem *old = m_pFocusItem;
    SetFocusItem(item);
    Invalidate();
    return old;
}

bool CTreeListModel::IsInSelectsTree(const CTreeListItem *item) const
{
    if (!OwnsItem(item))
        return false;
    for (; item; item = item->m_pParent) {
        if (item->Has(kItemSelected))
            return true;
    }
    return false;
}
