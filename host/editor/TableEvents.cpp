#include "host/editor/TableEvents.h"

#include "host/editor/UiMessage.h"

#include <QAbstractItemView>
#include <QAccessible>

#include <algorithm>

namespace velmor {

namespace {

/// The toolkit has no name of its own for it.
QString expandAction()
{
    return QStringLiteral("Expand");
}

/// False when the part doesn't offer it.
bool act(QAccessibleInterface *part, const QString &action)
{
    QAccessibleActionInterface *actions = part ? part->actionInterface() : nullptr;
    if (!actions || !actions->actionNames().contains(action))
        return false;
    actions->doAction(action);
    return true;
}

} // namespace

bool TableEvents::isTable(QWidget &control)
{
    if (qobject_cast<QAbstractItemView *>(&control))
        return false;
    QAccessibleInterface *part = QAccessible::queryAccessibleInterface(&control);
    return part && part->tableInterface();
}

QAccessibleTableInterface *TableEvents::table() const
{
    QAccessibleInterface *part = m_control ? QAccessible::queryAccessibleInterface(m_control) : nullptr;
    return part ? part->tableInterface() : nullptr;
}

QAccessibleInterface *TableEvents::cell(int row, int column) const
{
    QAccessibleTableInterface *rows = table();
    const bool isInside = rows && row >= 0 && row < rows->rowCount() && column >= 0 && column < rows->columnCount();
    return isInside ? rows->cellAt(row, column) : nullptr;
}

std::wstring TableEvents::textOf(int row, int column) const
{
    const QAccessibleInterface *part = cell(row, column);
    return part ? part->text(QAccessible::Name).toStdWString() : std::wstring();
}

int TableEvents::rowAbove(int row) const
{
    const QAccessibleInterface *part = cell(row, 0);
    if (!part)
        return -1;
    // What opens and closes a row's branch controls the row.
    for (const auto &[other, relation] : part->relations(QAccessible::Controller)) {
        if (relation == QAccessible::Controller && other && other->tableCellInterface())
            return other->tableCellInterface()->rowIndex();
    }
    return -1;
}

int TableEvents::findRow(const std::wstring &text, int above) const
{
    const int count = table() ? table()->rowCount() : 0;
    for (int row = above + 1; row < count; ++row) {
        if (textOf(row, 0) == text && (above < 0 || rowAbove(row) == above))
            return row;
    }
    return -1;
}

int TableEvents::findRow(const ItemPath &item) const
{
    int row = -1;
    for (const std::wstring &text : item) {
        row = findRow(text, row);
        if (row < 0)
            break;
    }
    return row;
}

int TableEvents::openWay(const ItemPath &item)
{
    for (std::size_t length = 1; length < item.size(); ++length) {
        const int row = findRow(ItemPath(item.begin(), item.begin() + static_cast<std::ptrdiff_t>(length)));
        if (row < 0)
            return -1;
        for (int column = 0; table() && column < table()->columnCount() && !act(cell(row, column), expandAction());)
            ++column;
    }
    return findRow(item);
}

QAccessibleInterface *TableEvents::checkOf(int row) const
{
    for (int column = 0; table() && column < table()->columnCount(); ++column) {
        QAccessibleInterface *part = cell(row, column);
        if (part && part->state().checkable)
            return part;
    }
    return nullptr;
}

TableEvents::Problem TableEvents::noItem(const ItemPath &item) const
{
    return uiMessage("control.noText", {std::to_wstring(m_number), item.empty() ? std::wstring() : item.back()});
}

TableEvents::Problem TableEvents::selectRows(const std::vector<int> &rows)
{
    const int count = table() ? table()->rowCount() : 0;
    for (const int row : rows) {
        if (row < 0 || row >= count)
            return uiMessage("control.noRow", {std::to_wstring(m_number), std::to_wstring(row)});
    }
    for (const int row : rows) {
        if (table())
            table()->selectRow(row);
    }
    for (const int row : table() ? table()->selectedRows() : QList<int>()) {
        if (table() && std::ranges::find(rows, row) == rows.end())
            table()->unselectRow(row);
    }
    for (const int row : rows) {
        if (table() && !table()->isRowSelected(row))
            return uiMessage("control.notSelected", {std::to_wstring(m_number), std::to_wstring(row)});
    }
    return std::nullopt;
}

TableEvents::Problem TableEvents::clickItem(const ItemPath &item)
{
    const int row = openWay(item);
    if (row < 0)
        return noItem(item);
    if (!act(cell(row, 0), QAccessibleActionInterface::pressAction()) && table())
        table()->selectRow(row);
    return std::nullopt;
}

TableEvents::Problem TableEvents::tickItem(const ItemPath &item, bool on)
{
    const int row = openWay(item);
    if (row < 0)
        return noItem(item);
    // From in between the first turn leads to one side, and the second to the other.
    for (int turn = 0; turn < 2 && expectTick(item, on); ++turn) {
        if (!act(checkOf(row), QAccessibleActionInterface::toggleAction()))
            break;
    }
    return m_control ? expectTick(item, on) : std::nullopt;
}

TableEvents::Problem TableEvents::editCell(int row, int column, const std::wstring &text)
{
    QAccessibleInterface *part = cell(row, column);
    if (!part)
        return uiMessage("control.noCell", {std::to_wstring(m_number)});
    if (!part->state().editable)
        return uiMessage("control.noEditor", {std::to_wstring(m_number)});
    part->setText(QAccessible::Value, QString::fromStdWString(text));
    return std::nullopt;
}

TableEvents::Problem TableEvents::expectItem(const std::wstring &text) const
{
    std::wstring shown;
    const QList<int> rows = table() ? table()->selectedRows() : QList<int>();
    for (const int row : rows) {
        bool isCurrent = rows.size() == 1;
        for (int column = 0; !isCurrent && column < table()->columnCount(); ++column)
            isCurrent = cell(row, column) && cell(row, column)->state().active;
        if (isCurrent)
            shown = textOf(row, 0);
    }
    if (shown != text)
        return uiMessage("control.item", {std::to_wstring(m_number), shown, text});
    return std::nullopt;
}

TableEvents::Problem TableEvents::expectTick(const ItemPath &item, bool on) const
{
    const int row = findRow(item);
    if (row < 0)
        return noItem(item);
    const QAccessibleInterface *part = checkOf(row);
    if (!part)
        return uiMessage("control.noTick", {std::to_wstring(m_number), item.back()});
    const QAccessible::State state = part->state();
    if (state.checkStateMixed)
        return uiMessage("control.partTicked", {std::to_wstring(m_number), item.back()});
    if (bool(state.checked) != on)
        return uiMessage(on ? "control.unticked" : "control.ticked", {std::to_wstring(m_number), item.back()});
    return std::nullopt;
}

TableEvents::Problem TableEvents::expectRows(int count) const
{
    const int rows = table() ? table()->rowCount() : 0;
    if (rows != count)
        return uiMessage("control.rows", {std::to_wstring(m_number), std::to_wstring(rows), std::to_wstring(count)});
    return std::nullopt;
}

TableEvents::Problem TableEvents::expectCell(int row, int column, const std::wstring &text) const
{
    if (!cell(row, column))
        return uiMessage("control.noCell", {std::to_wstring(m_number)});
    const std::wstring shown = textOf(row, column);
    if (shown != text)
        return uiMessage("control.cell", {std::to_wstring(m_number), shown, text});
    return std::nullopt;
}

} // namespace velmor
