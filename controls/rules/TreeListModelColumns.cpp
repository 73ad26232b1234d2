// Columns, their display order and their sort order.
#include "controls/rules/TreeListModel.h"
#include "controls/rules/TreeListModelPrivate.h"

#include <algorithm>

namespace {

bool isShown(const CTreeListColumnInfo &column)
{
    return !(column.format & kColumnHidden);
}

bool sorts(const CTreeListColumnInfo &column)
{
    return (column.format & kColumnSorts) && (column.format & kColumnSortBits);
}

/// Takes a column's number in or out; a new one goes before the first that is greater.
void enter(std::vector<int> &order, int column, bool in)
{
    const auto found = std::find(order.begin(), order.end(), column);
    if ((found != order.end()) == in)
        return;
    if (in)
        order.insert(std::find_if(order.begin(), order.end(), [column](int other) { return other > column; }), column);
    else
        order.erase(found);
}

/// A deleted column's number goes, those above come down.
void takeOut(std::vector<int> &order, int column)
{
    std::erase(order, column);
    for (int &other : order)
        other -= other > column;
}

} // namespace

void CTreeListModel::ColumnsChanged()
{
    OnColumnsChanged();
    Layout();
    Invalidate();
}

/// Brings both orders up to date with a column's format.
void CTreeListModel::EnterOrders(int column)
{
    const CTreeListColumnInfo &info = *m_columns[static_cast<std::size_t>(column)];
    enter(m_showOrder, column, isShown(info));
    enter(m_sortOrder, column, sorts(info));
}

int CTreeListModel::InsertColumn(const std::wstring &text, std::uint32_t format, int width, int image, int minWidth,
                                 int maxWidth)
{
    if (width < 0)
        return -1;
    auto info = std::make_unique<CTreeListColumnInfo>();
    info->text = text;
    info->format = format;
    info->width = width;
    info->image = image;
    info->minWidth = minWidth;
    info->maxWidth = maxWidth;
    m_columns.push_back(std::move(info));
    const int column = GetColumnCount() - 1;
    EnterOrders(column);
    OnModifyColumnInserted(column);
    ColumnsChanged();
    return column;
}

int CTreeListModel::DeleteColumn(int column)
{
    if (column < 0 || column >= GetColumnCount())
        return 0;
    m_nSelectColumn = m_nSelectColumn == column ? -1 : m_nSelectColumn - (m_nSelectColumn > column);
    // Kept to the end: a column that a notice inserts meanwhile must not be taken for this one by its address.
    const std::unique_ptr<CTreeListColumnInfo> gone = std::move(m_columns[static_cast<std::size_t>(column)]);
    m_columns.erase(m_columns.begin() + column);
    takeOut(m_showOrder, column);
    takeOut(m_sortOrder, column);
    CTreeListItem *item = m_pRoot->m_pChild;
    while (item) {
        d->pool.RemoveColumn(item, column);
        if (item->m_pChild) {
            item = item->m_pChild;
            continue;
        }
        while (item && !item->m_pNext)
            item = item->m_pParent;
        item = item ? item->m_pNext : nullptr;
    }
    OnModifyColumnDeleted(column);
    ColumnsChanged();
    return 1;
}

const CTreeListColumnInfo *CTreeListModel::GetColumns(int column) const
{
    const bool there = column >= 0 && column < GetColumnCount();
    return there ? m_columns[static_cast<std::size_t>(column)].get() : nullptr;
}

// --- Properties of a column ---

int CTreeListModel::SetColumnText(int column, const std::wstring &text)
{
    if (!GetColumns(column))
        return 0;
    m_columns[static_cast<std::size_t>(column)]->text = text;
    ColumnsChanged();
    return 1;
}

std::wstring CTreeListModel::GetColumnText(int column) const
{
    const CTreeListColumnInfo *info = GetColumns(column);
    return info ? info->text : std::wstring();
}

int CTreeListModel::SetColumnFormat(int column, std::uint32_t add, std::uint32_t remove)
{
    if (!GetColumns(column))
        return 0;
    std::uint32_t &format = m_columns[static_cast<std::size_t>(column)]->format;
    format = (format & ~remove) | add;
    EnterOrders(column);
    ColumnsChanged();
    return 1;
}

std::uint32_t CTreeListModel::GetColumnFormat(int column) const
{
    const CTreeListColumnInfo *info = GetColumns(column);
    return info ? info->format : 0;
}

int CTreeListModel::SetColumnWidth(int column, int width, int)
{
    if (!GetColumns(column) || width < 0)
        return 0;
    m_columns[static_cast<std::size_t>(column)]->width = width;
    ColumnsChanged();
    return 1;
}

int CTreeListModel::GetColumnWidth(int column) const
{
    const CTreeListColumnInfo *info = GetColumns(column);
    return info ? info->width : 0;
}

int CTreeListModel::SetColumnImage(int column, int image)
{
    if (!GetColumns(column))
        return 0;
    m_columns[static_cast<std::size_t>(column)]->image = image;
    ColumnsChanged();
    return 1;
}

int CTreeListModel::GetColumnImage(int column) const
{
    const CTreeListColumnInfo *info = GetColumns(column);
    return info ? info->image : -1;
}

int CTreeListModel::SetColumnModify(int column, int kind)
{
    if (!GetColumns(column) || kind < kEditorStatic || kind > kEditorCombo)
        return 0;
    m_columns[static_cast<std::size_t>(column)]->modify = kind;
    return 1;
}

int CTreeListModel::GetColumnModify(int column) const
{
    const CTreeListColumnInfo *info = GetColumns(column);
    return info ? info->modify : 0;
}

int CTreeListModel::SetColumnDefaultText(int column, const std::wstring &text)
{
    if (!GetColumns(column))
        return 0;
    m_columns[static_cast<std::size_t>(column)]->defaultText = text;
    return 1;
}

std::wstring CTreeListModel::GetColumnDefaultText(int column) const
{
    const CTreeListColumnInfo *info = GetColumns(column);
    return info ? info->defaultText : std::wstring();
}

// --- Orders ---

int CTreeListModel::SetColumnOrderArray(const std::vector<int> &order)
{
    std::vector<int> shown;
    for (const int column : order) {
        const CTreeListColumnInfo *info = GetColumns(column);
        if (!info)
            return 0;
        if (isShown(*info))
            shown.push_back(column);
    }
    if (!std::is_permutation(shown.begin(), shown.end(), m_showOrder.begin(), m_showOrder.end()))
        return 0;
    m_showOrder = std::move(shown);
    ColumnsChanged();
    return 1;
}

int CTreeListModel::GetTotalWidth() const
{
    int width = 0;
    for (const int column : m_showOrder)
        width += GetColumnWidth(column);
    return width;
}
