#include "controls/treelist/TreeListAccessible.h"

#include "controls/WideText.h"
#include "controls/treelist/TreeListAccessibleParts.h"
#include "controls/treelist/TreeListCtrl.h"

#include <QScrollBar>

#include <algorithm>
#include <iterator>

namespace {

/// More changed items than these are told as one change of all.
constexpr std::size_t kMostChanges = 256;

int s_nControls = 0;

QAccessible::UpdateHandler s_handler = nullptr;

bool isHeard()
{
    return s_handler || QAccessible::isActive();
}

void send(QAccessibleEvent &event)
{
    if (s_handler)
        s_handler(&event);
    else
        QAccessible::updateAccessibility(&event);
}

QAccessibleInterface *makeInterface(const QString &, QObject *object)
{
    auto *control = qobject_cast<CTreeListCtrl *>(object);
    return control ? new CTreeListTable(*control) : nullptr;
}

void sendState(QAccessibleInterface *cell, const QAccessible::State &changed)
{
    QAccessibleStateChangeEvent event(cell, changed);
    send(event);
}

void send(QAccessibleInterface *cell, QAccessible::Event what)
{
    QAccessibleEvent event(cell, what);
    send(event);
}

} // namespace

CTreeListAccessible::CTreeListAccessible(CTreeListCtrl &control) : m_control(control)
{
    if (s_nControls++ == 0)
        QAccessible::installFactory(makeInterface);
}

CTreeListAccessible::~CTreeListAccessible()
{
    DropAll();
    DestroyGone();
    if (--s_nControls == 0)
        QAccessible::removeFactory(makeInterface);
}

CTreeListAccessible *CTreeListAccessible::Of(const CTreeListCtrl &control)
{
    return control.m_accessible.get();
}

void CTreeListAccessible::SetHandler(QAccessible::UpdateHandler handler)
{
    s_handler = handler;
}

// --- Cells ---

QAccessibleInterface *CTreeListAccessible::Part(Ids &ids, int column, const std::function<CTreeListPart *()> &make)
{
    const auto found = std::find_if(ids.begin(), ids.end(), [column](const auto &id) { return id.first == column; });
    if (found != ids.end()) {
        if (QAccessibleInterface *part = QAccessible::accessibleInterface(found->second))
            return part;
        ids.erase(found);
    }
    CTreeListPart *part = make();
    ids.emplace_back(column, QAccessible::registerAccessibleInterface(part));
    return part;
}

QAccessibleInterface *CTreeListAccessible::Cell(const CTreeListItem *item, int column)
{
    if (!item || item == m_control.GetRootItem() || PlaceOf(column) < 0)
        return nullptr;
    return Part(m_cells[item], column, [&] { return new CTreeListCell(*this, *item, column); });
}

QAccessibleInterface *CTreeListAccessible::CellAt(int row, int place)
{
    return Cell(m_control.GetFirstShowItem(row), ColumnAt(place));
}

QAccessibleInterface *CTreeListAccessible::Header(int column)
{
    if (!HasHeader() || PlaceOf(column) < 0)
        return nullptr;
    return Part(m_headers, column, [&] { return new CTreeListHeaderCell(*this, column); });
}

QAccessibleInterface *CTreeListAccessible::FocusCell()
{
    const CTreeListItem *item = m_control.GetFocusItem();
    if (m_control.GetShowIndex(item) < 0)
        return nullptr;
    const int column = m_control.GetSelectColumn();
    return Cell(item, PlaceOf(column) >= 0 ? column : ColumnAt(0));
}

QWidget *CTreeListAccessible::Editor() const
{
    if (!m_control.GetState(kControlEditing))
        return nullptr;
    if (CTreeListEditCtrl *edit = m_control.GetEdit(); edit && edit->isVisible())
        return edit;
    CTreeListComboCtrl *combo = m_control.GetCombo();
    return combo && combo->isVisible() ? combo->GetList() : nullptr;
}

bool CTreeListAccessible::EnterText(CTreeListItem *item, int column, const QString &text)
{
    CTreeListCtrl &control = m_control; // this may go with a notice
    const CTreeListItemGuard guard(control, item);
    if (control.BeginModify(item, column) == 0 || !guard.Get())
        return false;
    const std::wstring wide = ToWide(text);
    if (control.GetControl(item, column) == kEditorCombo) {
        const int index = control.GetCombo()->FindStringExact(wide);
        if (index < 0) {
            control.CancelModify();
            return false;
        }
        control.GetCombo()->SetCurSel(index);
    } else {
        control.GetEdit()->SetWindowText(wide);
    }
    control.FinishModify();
    if (control.GetState(kControlEditing)) // refused, and open again: nobody sits there to go on
        control.CancelModify();
    return guard.Get() && control.GetItemText(guard.Get(), column) == wide;
}

bool CTreeListAccessible::HasHeader() const
{
    return m_control.HasStyle(StyleHeader);
}

int CTreeListAccessible::ColumnCount() const
{
    return static_cast<int>(m_control.GetColumnOrderArray().size());
}

int CTreeListAccessible::RowCount() const
{
    return m_control.GetVisibleCount();
}

int CTreeListAccessible::ColumnAt(int place) const
{
    const std::vector<int> &order = m_control.GetColumnOrderArray();
    return place >= 0 && place < std::ssize(order) ? order[static_cast<std::size_t>(place)] : -1;
}

int CTreeListAccessible::PlaceOf(int column) const
{
    const std::vector<int> &order = m_control.GetColumnOrderArray();
    const auto found = std::find(order.begin(), order.end(), column);
    return found == order.end() ? -1 : static_cast<int>(found - order.begin());
}

QRect CTreeListAccessible::CellRect(const CTreeListItem *item, int column) const
{
    QRect rect;
    if (!m_control.GetItemRect(item, column, rect, false))
        return {};
    return {m_control.viewport()->mapToGlobal(rect.topLeft()), rect.size()};
}

QRect CTreeListAccessible::HeaderRect(int column) const
{
    const int height = m_control.viewportMargins().top();
    int left = -m_control.GetHorzScroll();
    for (const int shown : m_control.GetColumnOrderArray()) {
        const int width = m_control.GetColumnWidth(shown);
        if (shown == column)
            return {m_control.viewport()->mapToGlobal(QPoint(left, -height)), QSize(width, height)};
        left += width;
    }
    return {};
}

void CTreeListAccessible::Drop(const Ids &ids)
{
    for (const auto &[column, id] : ids) {
        if (auto *part = static_cast<CTreeListPart *>(QAccessible::accessibleInterface(id))) {
            part->Gone();
            m_gone.push_back(id);
        }
    }
}

void CTreeListAccessible::DropAll()
{
    for (const auto &[item, ids] : m_cells)
        Drop(ids);
    m_cells.clear();
    Drop(m_headers);
    m_headers.clear();
}

void CTreeListAccessible::Forget(const CTreeListItem *item)
{
    m_changes.erase(item);
    m_telling.erase(item);
    const auto found = m_cells.find(item);
    if (found == m_cells.end())
        return;
    Drop(found->second);
    m_cells.erase(found);
    Later();
}

void CTreeListAccessible::DestroyGone()
{
    for (const QAccessible::Id id : std::exchange(m_gone, {}))
        QAccessible::deleteAccessibleInterface(id);
}

// --- Notices ---

void CTreeListAccessible::Later()
{
    if (std::exchange(m_bLater, true))
        return;
    // Nothing of the list may be asked in the middle of its changes.
    QMetaObject::invokeMethod(
        &m_control,
        [this] {
            m_bLater = false;
            DestroyGone();
            Tell();
        },
        Qt::QueuedConnection);
}

CTreeListAccessible::Change *CTreeListAccessible::Note(const CTreeListItem *item)
{
    Later();
    if (m_bMany || (m_changes.size() >= kMostChanges && !m_changes.contains(item))) {
        m_bMany = true;
        return nullptr;
    }
    return &m_changes[item];
}

void CTreeListAccessible::TextChanged(const CTreeListItem *item, int column)
{
    if (!isHeard())
        return;
    Change *change = Note(item);
    if (change && std::find(change->columns.begin(), change->columns.end(), column) == change->columns.end())
        change->columns.push_back(column);
}

void CTreeListAccessible::StateChanged(const CTreeListItem *item, std::uint32_t changed)
{
    if (!isHeard())
        return;
    if (Change *change = Note(item))
        change->state |= changed;
}

void CTreeListAccessible::ColumnsChanged()
{
    // Columns beyond a deleted one have other numbers now: what stood for a number stands for it no more.
    const int numbers = m_control.GetColumnCount();
    const int before = std::exchange(m_nNumbers, numbers);
    if (numbers < before && (!m_cells.empty() || !m_headers.empty())) {
        DropAll();
        Later();
    }
    // One that goes and one that comes in its place may bear the same title.
    if (numbers != before)
        m_bRowsDue = true;
    if (isHeard())
        Later();
}

void CTreeListAccessible::RowsChanged()
{
    m_bRowsDue = true; // also for a reader who comes later
    if (isHeard())
        Later();
}

void CTreeListAccessible::FocusIn()
{
    if (!isHeard())
        return;
    m_bFocusDue = true;
    Later();
}

void CTreeListAccessible::Tell()
{
    if (!isHeard())
        return;
    TellRows();
    if (std::exchange(m_bMany, false)) {
        QAccessibleTableModelChangeEvent event(&m_control, QAccessibleTableModelChangeEvent::DataChanged);
        send(event);
        QAccessibleEvent selection(&m_control, QAccessible::SelectionWithin); // may be among what was not noted
        send(selection);
    }
    // Who hears a notice may change the list at once: no place among the changes is kept over one.
    m_telling = std::exchange(m_changes, {});
    while (!m_telling.empty()) {
        const auto next = m_telling.extract(m_telling.begin());
        TellItem(const_cast<CTreeListItem *>(next.key()), next.mapped());
    }
    TellFocus();
}

void CTreeListAccessible::TellRows()
{
    std::vector<std::pair<int, std::wstring>> columns = ShownColumns();
    const bool areOthers = columns != m_columns;
    if (!std::exchange(m_bRowsDue, false) && !areOthers)
        return;
    m_columns = std::move(columns);
    QAccessibleTableModelChangeEvent event(&m_control, QAccessibleTableModelChangeEvent::ModelReset);
    send(event);
}

std::vector<std::pair<int, std::wstring>> CTreeListAccessible::ShownColumns() const
{
    std::vector<std::pair<int, std::wstring>> columns;
    for (const int column : m_control.GetColumnOrderArray())
        columns.emplace_back(column, m_control.GetColumnText(column));
    return columns;
}

void CTreeListAccessible::TellItem(CTreeListItem *item, const Change &change)
{
    const CTreeListItemGuard guard(m_control, item);
    const auto shown = [&](int column) {
        return m_control.GetShowIndex(guard.Get()) >= 0 ? Cell(guard.Get(), column) : nullptr;
    };
    for (const int column : change.columns) {
        if (QAccessibleInterface *cell = shown(column))
            send(cell, QAccessible::NameChanged);
    }
    QAccessible::State changed;
    changed.expanded = changed.collapsed = (change.state & kItemExpanded) != 0;
    changed.checked = changed.checkStateMixed = (change.state & (kItemChecked | kItemUnchecked)) != 0;
    if (QAccessibleInterface *first = shown(0); first && !(changed == QAccessible::State()))
        sendState(first, changed);
    if (QAccessibleInterface *first = shown(0); first && (change.state & (kItemLocked | kItemUnlocked)) != 0)
        send(first, QAccessible::DescriptionChanged);
    if ((change.state & kItemSelected) == 0)
        return;
    const int column = PlaceOf(m_control.GetSelectColumn()) >= 0 ? m_control.GetSelectColumn() : ColumnAt(0);
    if (QAccessibleInterface *cell = shown(column)) {
        QAccessible::State selected;
        selected.selected = true;
        sendState(cell, selected);
    }
    if (QAccessibleInterface *cell = shown(column)) {
        const bool isMulti = m_control.HasStyle(StyleMultiSelect);
        if (guard.Get()->Has(kItemSelected))
            send(cell, isMulti ? QAccessible::SelectionAdd : QAccessible::Selection);
        else if (isMulti)
            send(cell, QAccessible::SelectionRemove);
    }
}

void CTreeListAccessible::TellFocus()
{
    if (!m_control.hasFocus() || Editor())
        return;
    QAccessibleInterface *cell = FocusCell();
    const QAccessible::Id id = cell ? QAccessible::uniqueId(cell) : 0;
    const bool isDue = std::exchange(m_bFocusDue, false);
    if (!cell || (id == m_focusCell && !isDue)) {
        m_focusCell = id;
        return;
    }
    m_focusCell = id;
    send(cell, QAccessible::Focus);
}
