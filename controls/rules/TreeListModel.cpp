// Construction, style, and the making of items.
#include "controls/rules/TreeListModel.h"

#include "controls/rules/TreeListItemTexts.h"
#include "controls/rules/TreeListModelPrivate.h"

#include <utility>

CTreeListItemGuard::CTreeListItemGuard(CTreeListModel &model, CTreeListItem *item)
    : m_pModel(&model), m_pItem(item), m_pNextGuard(model.d->guards)
{
    model.d->guards = this;
}

CTreeListItemGuard::~CTreeListItemGuard()
{
    if (m_pModel)
        m_pModel->d->guards = m_pNextGuard;
}

CTreeListModel::CTreeListModel() : CTreeListModel(CTreeListAllocator::Standard()) {}

CTreeListModel::CTreeListModel(CTreeListAllocator &allocator) : d(std::make_unique<Private>(allocator))
{
    m_columns.push_back(std::make_unique<CTreeListColumnInfo>());
    EnterOrders(0);
    m_pRoot = new CTreeListItem;
    m_pRoot->m_nState |= kItemExpanded | kItemExpandedOnce;
}

CTreeListModel::~CTreeListModel()
{
    for (CTreeListItemGuard *guard = d->guards; guard; guard = guard->m_pNextGuard) {
        guard->m_pModel = nullptr;
        guard->m_pItem = nullptr;
    }
    // Bottom up, with nobody told any more.
    CTreeListItem *item = m_pRoot;
    while (item) {
        if (item->m_pChild) {
            item = item->m_pChild;
            continue;
        }
        CTreeListItem *next = item->m_pNext;
        CTreeListItem *parent = item->m_pParent;
        if (item->m_pIndex) {
            d->order.Drop(item);
        }
        if (item == m_pRoot)
            break;
        d->pool.DeleteItem(item);
        parent->m_pChild = next;
        item = next ? next : parent;
    }
    d->pool.DeleteContents(m_pRoot);
    delete m_pRoot;
}

std::uint32_t CTreeListModel::SetStyle(std::uint32_t style)
{
    if (!(style & StyleTree))
        style &= ~(StyleTreeLines | StyleTreeRootLines | StyleTreeButtons);
    if (!(style & StyleHorzGrid))
        style &= ~(StyleGridInFirstColumn | StyleHorzGridEmptyRows | StyleHorzGridFull);
    if (!(style & StyleVertGrid))
        style &= ~StyleVertGridAll;
    constexpr std::uint32_t bothGrids = StyleHorzGrid | StyleVertGrid;
    constexpr std::uint32_t beyondRows = StyleHorzGridEmptyRows | StyleVertGridAll;
    if ((style & bothGrids) == bothGrids && (style & beyondRows) != beyondRows)
        style &= ~beyondRows;
    if (!(style & StyleHeader))
        style &= ~(StyleHeaderDrag | StyleHeaderDrop);
    return std::exchange(m_nStyle, style);
}

int CTreeListModel::SetItemHeight(int height)
{
    if (height == -1) {
        const int font = GetFontHeight();
        height = font < 0 ? 5 - font : font > 0 ? font + 5 : 20;
    }
    if (height <= 0)
        return 0;
    const int old = std::exchange(m_nItemHeight, height + height % 2);
    Layout();
    Invalidate();
    return old;
}

// --- Which item an argument means ---

/// The root for its fixed value, null for the other ones and for null.
CTreeListItem *CTreeListModel::ItemOf(CTreeListItem *item) const
{
    return item == TreeListRoot() ? m_pRoot : IsFixedTreeListValue(item) ? nullptr : item;
}

bool CTreeListModel::OwnsItem(const CTreeListItem *item) const
{
    if (IsFixedTreeListValue(item))
        return false;
    while (item && item->m_pParent)
        item = item->m_pParent;
    return item && item == m_pRoot;
}

CTreeListItem *CTreeListModel::GetValidChildItem(const CTreeListItem *parent, CTreeListItem *child) const
{
    if (parent == TreeListRoot())
        parent = m_pRoot;
    const bool valid =
        child && parent && !IsFixedTreeListValue(child) && !IsFixedTreeListValue(parent) && child->m_pParent == parent;
    return valid ? child : nullptr;
}

CTreeListItem *CTreeListModel::GetSortChildItem(CTreeListItem *parent) const
{
    return GetLastChildItem(parent);
}

/// The child of parent behind which something goes; null: first.
CTreeListItem *CTreeListModel::PlaceBehind(CTreeListItem *parent, CTreeListItem *after) const
{
    if (after == TreeListFirst())
        return nullptr;
    if (after == TreeListSorted())
        return GetSortChildItem(parent);
    if (after == TreeListLast())
        return GetLastChildItem(parent);
    return GetValidChildItem(parent, after);
}

// --- Insertion ---

CTreeListItem *CTreeListModel::InsertItem(const std::wstring &text, CTreeListItem *parent, CTreeListItem *after)
{
    parent = ItemOf(parent);
    if (!OwnsItem(parent))
        return nullptr;
    return InsertBehind(text, parent, PlaceBehind(parent, after));
}

int CTreeListModel::InsertItem(int index, const std::wstring &text)
{
    if (index < 0)
        return -1;
    CTreeListItem *made = nullptr;
    if (index == 0) {
        made = InsertItem(text, m_pRoot, TreeListFirst());
    } else if (CTreeListItem *behind = GetFirstShowItem(index)) {
        made = InsertBehind(text, behind->m_pParent, behind->m_pPrevious);
    } else {
        index = GetVisibleCount();
        made = InsertItem(text, m_pRoot, TreeListLast());
    }
    return made ? index : -1;
}

CTreeListItem *CTreeListModel::InsertItemNew(const std::wstring &text, CTreeListItem *parent)
{
    parent = ItemOf(parent);
    return OwnsItem(parent) && !parent->m_pChild ? InsertBehind(text, parent, nullptr) : nullptr;
}

CTreeListItem *CTreeListModel::InsertItemFirst(const std::wstring &text, CTreeListItem *parent)
{
    parent = ItemOf(parent);
    return OwnsItem(parent) ? InsertBehind(text, parent, nullptr) : nullptr;
}

CTreeListItem *CTreeListModel::InsertItemNext(const std::wstring &text, CTreeListItem *sibling)
{
    sibling = ItemOf(sibling);
    return OwnsItem(sibling) && sibling != m_pRoot ? InsertBehind(text, sibling->m_pParent, sibling) : nullptr;
}

CTreeListItem *CTreeListModel::NewItem(const std::wstring &text, const CTreeListItem *parent)
{
    CTreeListItem *item = d->pool.NewItem();
    if (!item)
        return nullptr;
    const int columns = GetColumnCount();
    bool whole = columns == 0 || d->pool.SetText(item, 0, columns, text);
    for (int column = 1; column < columns; ++column) {
        const std::wstring &usual = m_columns[static_cast<std::size_t>(column)]->defaultText;
        if (!usual.empty())
            whole = whole && d->pool.SetText(item, column, columns, usual);
    }
    if (!whole) {
        d->pool.DeleteItem(item);
        return nullptr;
    }
    for (const Mark &mark : {Mark::kCheck, Mark::kLock}) {
        if (mark.ValueOf(parent->m_nState) == kCheckOn)
            item->m_nState = (item->m_nState & ~mark.Bits()) | mark.on;
    }
    return item;
}

CTreeListItem *CTreeListModel::InsertBehind(const std::wstring &text, CTreeListItem *parent, CTreeListItem *previous)
{
    CTreeListItem *item = NewItem(text, parent);
    if (!item)
        return nullptr;
    item->m_nLevel = parent->m_nLevel + 1;
    Link(item, parent, previous);
    RowsChanged();
    return item;
}

// --- Exchange and move ---

int CTreeListModel::ExchangeItem(CTreeListItem *one, CTreeListItem *other)
{
    if (one == other || !OwnsItem(one) || !OwnsItem(other))
        return 0;
    for (const CTreeListItem *above = one; above; above = above->m_pParent) {
        if (above == other)
            return 0;
    }
    for (const CTreeListItem *above = other; above; above = above->m_pParent) {
        if (above == one)
            return 0;
    }
    if (other->m_pNext == one)
        std::swap(one, other);
    CTreeListItem *oneParent = one->m_pParent, *otherParent = other->m_pParent;
    CTreeListItem *onePrevious = one->m_pPrevious, *otherPrevious = other->m_pPrevious;
    const bool neighbours = otherPrevious == one;
    Unlink(one);
    Unlink(other);
    Link(other, oneParent, onePrevious);
    Link(one, otherParent, neighbours ? other : otherPrevious);
    SetLevels(one, otherParent->m_nLevel + 1);
    SetLevels(other, oneParent->m_nLevel + 1);
    RowsChanged();
    return 1;
}

int CTreeListModel::MoveAfterItem(CTreeListItem *item, CTreeListItem *parent, CTreeListItem *after)
{
    parent = ItemOf(parent);
    if (item == m_pRoot || !OwnsItem(item) || !OwnsItem(parent))
        return 0;
    for (const CTreeListItem *above = parent; above; above = above->m_pParent) {
        if (above == item)
            return 0;
    }
    CTreeListItem *previous = PlaceBehind(parent, after);
    if (previous == item) // behind itself
        return 1;
    Unlink(item);
    Link(item, parent, previous);
    SetLevels(item, parent->m_nLevel + 1);
    RowsChanged();
    return 1;
}

// --- Links ---

void CTreeListModel::Link(CTreeListItem *item, CTreeListItem *parent, CTreeListItem *previous)
{
    CTreeListItem *next = previous ? previous->m_pNext : parent->m_pChild;
    item->m_pParent = parent;
    item->m_pPrevious = previous;
    item->m_pNext = next;
    (previous ? previous->m_pNext : parent->m_pChild) = item;
    (next ? next->m_pPrevious : parent->m_pLastChild) = item;
    ++parent->m_nChildren;
    d->order.Added(item);
    StatChildAdd(item, item->m_nChildCount, item->m_nShowCount);
}

void CTreeListModel::Unlink(CTreeListItem *item)
{
    CTreeListItem *parent = item->m_pParent;
    StatChildDel(item, item->m_nChildCount, item->m_nShowCount);
    --parent->m_nChildren;
    d->order.Removing(item);
    (item->m_pPrevious ? item->m_pPrevious->m_pNext : parent->m_pChild) = item->m_pNext;
    (item->m_pNext ? item->m_pNext->m_pPrevious : parent->m_pLastChild) = item->m_pPrevious;
    item->m_pParent = item->m_pPrevious = item->m_pNext = nullptr;
}

/// The item and its descendants, in the order of rows.
void CTreeListModel::SetLevels(CTreeListItem *top, int level)
{
    const int difference = level - top->m_nLevel;
    if (difference == 0)
        return;
    CTreeListItem *item = top;
    do {
        item->m_nLevel += difference;
        if (item->m_pChild) {
            item = item->m_pChild;
            continue;
        }
        while (item != top && !item->m_pNext)
            item = item->m_pParent;
        if (item != top)
            item = item->m_pNext;
    } while (item != top);
}

void CTreeListModel::RowsChanged()
{
    OnRowsChanged();
    Layout();
    Invalidate();
}

// --- What an item holds ---

int CTreeListModel::SetItemText(CTreeListItem *item, int column, const std::wstring &text)
{
    if (column < 0 || column >= GetColumnCount() || item == m_pRoot || !OwnsItem(item))
        return 0;
    if (!d->pool.SetText(item, column, GetColumnCount(), text))
        return 0;
    OnTextChanged(item, column);
    InvalidateItem(item);
    return 1;
}

std::wstring CTreeListModel::GetItemText(const CTreeListItem *item, int column) const
{
    return item && !IsFixedTreeListValue(item) ? item->Text(column) : std::wstring();
}

int CTreeListModel::SetItemSpareText(CTreeListItem *item, int column, const std::wstring &text)
{
    if (column < 0 || column >= GetColumnCount() || item == m_pRoot || !OwnsItem(item))
        return 0;
    return d->pool.SetSpareText(item, column, GetColumnCount(), text);
}

int CTreeListModel::SetItemData(CTreeListItem *item, std::uint32_t data)
{
    item = ItemOf(item);
    if (!OwnsItem(item))
        return 0;
    item->m_nData = data;
    return 1;
}

std::uint32_t CTreeListModel::GetItemData(const CTreeListItem *item) const
{
    if (item == TreeListRoot())
        return m_pRoot->m_nData;
    return item && !IsFixedTreeListValue(item) ? item->m_nData : 0;
}

int CTreeListModel::SetItemImage(CTreeListItem *item, int normal, int expanded, int selected, int expandedSelected)
{
    if (item == m_pRoot || !OwnsItem(item) || !d->pool.SetImages(item, {normal, expanded, selected, expandedSelected}))
        return 0;
    InvalidateItem(item);
    return 1;
}

int CTreeListModel::GetItemImage(const CTreeListItem *item, TreeListImages &images) const
{
    if (!item || IsFixedTreeListValue(item))
        return 0;
    images = item->Images();
    return 1;
}

int CTreeListModel::SetItemModify(CTreeListItem *item, int column, int kind)
{
    if (column < 0 || column >= GetColumnCount() || kind < -1 || kind > kEditorCombo || item == m_pRoot ||
        !OwnsItem(item))
        return 0;
    return d->pool.SetColumnModify(item, column, GetColumnCount(), kind);
}
