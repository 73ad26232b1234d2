// The list as a screen reader sees it.
#include "controls/treelist/TreeListAccessibleParts.h"
#include "controls/treelist/TreeListCtrl.h"

#include <algorithm>

CTreeListTable::CTreeListTable(CTreeListCtrl &control) : QAccessibleWidget(&control, QAccessible::Tree) {}

CTreeListAccessible *CTreeListTable::Access() const
{
    const auto *control = qobject_cast<const CTreeListCtrl *>(object());
    return control ? CTreeListAccessible::Of(*control) : nullptr;
}

CTreeListItem *CTreeListTable::ItemAt(int row) const
{
    const CTreeListAccessible *access = Access();
    return access ? access->Control().GetFirstShowItem(row) : nullptr;
}

void *CTreeListTable::interface_cast(QAccessible::InterfaceType type)
{
    if (type == QAccessible::TableInterface)
        return static_cast<QAccessibleTableInterface *>(this);
    return QAccessibleWidget::interface_cast(type);
}

QAccessible::State CTreeListTable::state() const
{
    QAccessible::State state = QAccessibleWidget::state();
    const CTreeListAccessible *access = Access();
    state.multiSelectable = access && access->Control().HasStyle(StyleMultiSelect);
    state.readOnly = access && access->Control().HasStyle(StyleReadOnly);
    return state;
}

QAccessibleInterface *CTreeListTable::childAt(int x, int y) const
{
    CTreeListAccessible *access = Access();
    if (!access || !rect().contains(x, y))
        return nullptr;
    const QPoint point(x, y);
    if (QWidget *editor = access->Editor(); editor && editor->rect().contains(editor->mapFromGlobal(point)))
        return QAccessible::queryAccessibleInterface(editor);
    CTreeListCtrl &control = access->Control();
    const QPoint inside = control.viewport()->mapFromGlobal(point);
    if (control.viewport()->rect().contains(inside)) {
        int column = -1;
        const CTreeListItem *item = control.HitTest(inside, nullptr, &column);
        return access->Cell(item, column);
    }
    for (const int column : control.GetColumnOrderArray()) {
        if (access->HasHeader() && access->HeaderRect(column).contains(point))
            return access->Header(column);
    }
    return nullptr;
}

int CTreeListTable::childCount() const
{
    const CTreeListAccessible *access = Access();
    if (!access)
        return 0;
    return (access->RowCount() + access->HasHeader()) * access->ColumnCount() + (access->Editor() ? 1 : 0);
}

QAccessibleInterface *CTreeListTable::child(int index) const
{
    CTreeListAccessible *access = Access();
    const int columns = access ? access->ColumnCount() : 0;
    if (columns == 0 || index < 0)
        return nullptr;
    if (access->HasHeader()) {
        if (index < columns)
            return access->Header(access->ColumnAt(index));
        index -= columns;
    }
    if (index / columns < access->RowCount())
        return access->CellAt(index / columns, index % columns);
    QWidget *editor = index == access->RowCount() * columns ? access->Editor() : nullptr;
    return editor ? QAccessible::queryAccessibleInterface(editor) : nullptr;
}

int CTreeListTable::indexOfChild(const QAccessibleInterface *child) const
{
    const CTreeListAccessible *access = Access();
    if (!access || !child || !child->isValid())
        return -1;
    const int columns = access->ColumnCount(), headers = access->HasHeader() ? columns : 0;
    if (QWidget *editor = access->Editor(); editor && child->object() == editor)
        return headers + access->RowCount() * columns;
    if (child->parent() != this)
        return -1;
    if (const auto *header = dynamic_cast<const CTreeListHeaderCell *>(child))
        return access->PlaceOf(header->Column());
    const auto *cell = dynamic_cast<const CTreeListCell *>(child);
    const int row = cell ? cell->rowIndex() : -1;
    return row < 0 ? -1 : headers + row * columns + cell->columnIndex();
}

QAccessibleInterface *CTreeListTable::focusChild() const
{
    CTreeListAccessible *access = Access();
    if (!access)
        return nullptr;
    if (QWidget *editor = access->Editor())
        return QAccessible::queryAccessibleInterface(editor);
    return access->Control().hasFocus() ? access->FocusCell() : nullptr;
}

QAccessibleInterface *CTreeListTable::cellAt(int row, int place) const
{
    CTreeListAccessible *access = Access();
    return access ? access->CellAt(row, place) : nullptr;
}

int CTreeListTable::selectedCellCount() const
{
    return selectedRowCount() * columnCount();
}

QList<QAccessibleInterface *> CTreeListTable::selectedCells() const
{
    QList<QAccessibleInterface *> cells;
    for (const int row : selectedRows()) {
        for (int place = 0; place < columnCount(); ++place)
            cells.append(cellAt(row, place));
    }
    return cells;
}

QString CTreeListTable::columnDescription(int place) const
{
    const CTreeListAccessible *access = Access();
    return access ? QString::fromStdWString(access->Control().GetColumnText(access->ColumnAt(place))) : QString();
}

QString CTreeListTable::rowDescription(int) const
{
    return {};
}

int CTreeListTable::selectedRowCount() const
{
    return static_cast<int>(selectedRows().size());
}

int CTreeListTable::columnCount() const
{
    const CTreeListAccessible *access = Access();
    return access ? access->ColumnCount() : 0;
}

int CTreeListTable::rowCount() const
{
    const CTreeListAccessible *access = Access();
    return access ? access->RowCount() : 0;
}

QList<int> CTreeListTable::selectedRows() const
{
    QList<int> rows;
    const CTreeListAccessible *access = Access();
    if (!access)
        return rows;
    const CTreeListCtrl &control = access->Control();
    TreeListPosition position = control.GetFirstSelectedItemPosition();
    for (int count = control.GetSelectedCount(); count > 0; --count) {
        const int row = control.GetShowIndex(control.GetNextSelectedItem(position));
        if (row >= 0)
            rows.append(row);
    }
    std::sort(rows.begin(), rows.end());
    return rows;
}

bool CTreeListTable::isRowSelected(int row) const
{
    const CTreeListItem *item = ItemAt(row);
    return item && item->Has(kItemSelected);
}

bool CTreeListTable::selectRow(int row)
{
    CTreeListItem *item = ItemAt(row);
    if (!item || item->Has(kItemSelected))
        return item != nullptr;
    CTreeListCtrl &control = Access()->Control();
    const CTreeListItemGuard guard(control, item);
    control.SelectItem(item, std::max(control.GetSelectColumn(), 0), false);
    return guard.Get() && guard.Get()->Has(kItemSelected);
}

bool CTreeListTable::unselectRow(int row)
{
    CTreeListItem *item = ItemAt(row);
    if (!item || !item->Has(kItemSelected))
        return item != nullptr;
    CTreeListCtrl &control = Access()->Control();
    const int column = std::max(control.GetSelectColumn(), 0);
    const CTreeListItemGuard guard(control, item);
    if (!control.HasStyle(StyleMultiSelect)) {
        control.SelectItem(nullptr, column);
    } else if (item == control.GetSelectedItem()) {
        // SelectItem leaves the newest one selected.
        const std::int64_t answer = control.Notify(NotifySelChanging, item, column);
        if (answer == -1 || answer == -2 || !guard.Get())
            return false;
        control.Select(item, false);
        control.Notify(NotifySelChanged, guard.Get(), column);
    } else {
        control.SelectItem(item, column, false);
    }
    return guard.Get() && !guard.Get()->Has(kItemSelected);
}
