// What a screen reader is told of a tree list: the list as a table of rows and shown columns, with an object for each
// cell and column header that somebody asked for.
//
// Objects are made when they are asked for and known by item and column number, so their ids stay the same while rows
// move. When an item goes, the objects of its cells become invalid at once and are destroyed when the event loop comes
// back, so that who just holds one does no harm. Notices to the screen reader are gathered and told then, too; without
// a screen reader nothing is gathered.
#pragma once

#include <QAccessible>

#include <cstdint>
#include <functional>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

class CTreeListCtrl;
class CTreeListItem;
class CTreeListPart;

/// One to a control, which tells it what changes. The interface of the control itself belongs to the toolkit.
class CTreeListAccessible {
public:
    /// The first one brings the factory of the interfaces to the toolkit, the last one takes it back: nothing of the
    /// module is known outside when it is unloaded.
    explicit CTreeListAccessible(CTreeListCtrl &control);
    ~CTreeListAccessible();
    CTreeListAccessible(const CTreeListAccessible &) = delete;
    CTreeListAccessible &operator=(const CTreeListAccessible &) = delete;

    /// That of a control; null while the control is destroyed.
    static CTreeListAccessible *Of(const CTreeListCtrl &control);
    /// Gets all notices in place of the platform, whether or not that has a screen reader; null: the platform again.
    static void SetHandler(QAccessible::UpdateHandler handler);

    // --- What the control tells ---

    void ItemDeleted(const CTreeListItem *item)
    {
        if (!m_cells.empty() || !m_changes.empty() || !m_telling.empty())
            Forget(item);
    }
    void TextChanged(const CTreeListItem *item, int column);
    /// changed: bits of the item's state
    void StateChanged(const CTreeListItem *item, std::uint32_t changed);
    /// Told when other columns stand there, in another order or with other titles; a width alone is nothing.
    void ColumnsChanged();
    /// Rows came, went or changed places, perhaps as many as before.
    void RowsChanged();
    void FocusIn();

    // --- What the interfaces ask ---

    CTreeListCtrl &Control() const { return m_control; }
    /// Null for no item and for a column that is not shown.
    QAccessibleInterface *Cell(const CTreeListItem *item, int column);
    /// The cell of a row and of a place among the shown columns; null outside.
    QAccessibleInterface *CellAt(int row, int place);
    QAccessibleInterface *Header(int column);
    /// The cell that the keys act on; null when there is none.
    QAccessibleInterface *FocusCell();
    /// The editor that is open; null when there is none.
    QWidget *Editor() const;
    /// Changes the text of a cell as a person would, vetoes of the owner included. False when it was refused.
    bool EnterText(CTreeListItem *item, int column, const QString &text);
    bool HasHeader() const;
    int ColumnCount() const;
    int RowCount() const;
    /// Number of a column by its place; -1 outside. And back.
    int ColumnAt(int place) const;
    int PlaceOf(int column) const;
    /// On the screen; empty for what is not shown.
    QRect CellRect(const CTreeListItem *item, int column) const;
    QRect HeaderRect(int column) const;

private:
    using Ids = std::vector<std::pair<int, QAccessible::Id>>; ///< by column number
    struct Change {
        std::uint32_t state = 0;  ///< bits that changed
        std::vector<int> columns; ///< whose text changed
    };

    QAccessibleInterface *Part(Ids &ids, int column, const std::function<CTreeListPart *()> &make);
    void Forget(const CTreeListItem *item);
    void Drop(const Ids &ids);
    void DropAll();
    void DestroyGone();
    /// The notes of an item; null when there are too many to tell them one by one.
    Change *Note(const CTreeListItem *item);
    /// Once the event loop is back: Tell.
    void Later();
    void Tell();
    /// That the table is another one, if it is.
    void TellRows();
    /// The shown columns in order: numbers and titles.
    std::vector<std::pair<int, std::wstring>> ShownColumns() const;
    void TellItem(CTreeListItem *item, const Change &change);
    void TellFocus();

    CTreeListCtrl &m_control;
    std::unordered_map<const CTreeListItem *, Ids> m_cells;
    Ids m_headers;
    std::vector<QAccessible::Id> m_gone;
    std::unordered_map<const CTreeListItem *, Change> m_changes, m_telling;
    bool m_bMany = false; ///< more changes than are told one by one
    bool m_bLater = false, m_bFocusDue = false;
    bool m_bRowsDue = false;                             ///< the rows are others than those told last
    std::vector<std::pair<int, std::wstring>> m_columns; ///< as told last
    int m_nNumbers = 0;                                  ///< of columns, shown or not
    QAccessible::Id m_focusCell = 0;                     ///< as told last
};
