// The objects that a screen reader meets in a tree list: the list, a cell, a header of a column.
#pragma once

#include "controls/treelist/TreeListAccessible.h"

#include <QAccessibleWidget>

class CTreeListItem;

/// Names of the actions of a cell beside those that the toolkit names.
namespace tree_list_actions {
QString Expand();
QString Collapse();
QString Lock();
QString Edit();
} // namespace tree_list_actions

/// The list: a table whose children are the headers of the shown columns (when the header is shown), the cells row by
/// row, and the editor while one is open.
class CTreeListTable : public QAccessibleWidget, public QAccessibleTableInterface {
public:
    explicit CTreeListTable(CTreeListCtrl &control);

    void *interface_cast(QAccessible::InterfaceType type) override;
    QAccessible::State state() const override;
    QAccessibleInterface *childAt(int x, int y) const override;
    int childCount() const override;
    QAccessibleInterface *child(int index) const override;
    int indexOfChild(const QAccessibleInterface *child) const override;
    QAccessibleInterface *focusChild() const override;

    QAccessibleInterface *caption() const override { return nullptr; }
    QAccessibleInterface *summary() const override { return nullptr; }
    QAccessibleInterface *cellAt(int row, int place) const override;
    int selectedCellCount() const override;
    QList<QAccessibleInterface *> selectedCells() const override;
    QString columnDescription(int place) const override;
    QString rowDescription(int row) const override;
    int selectedColumnCount() const override { return 0; }
    int selectedRowCount() const override;
    int columnCount() const override;
    int rowCount() const override;
    QList<int> selectedColumns() const override { return {}; }
    /// In the order of the rows; rows in collapsed branches are none.
    QList<int> selectedRows() const override;
    bool isColumnSelected(int) const override { return false; }
    bool isRowSelected(int row) const override;
    bool selectRow(int row) override;
    bool selectColumn(int) override { return false; }
    bool unselectRow(int row) override;
    bool unselectColumn(int) override { return false; }
    /// Cells are known by item: nothing to do.
    void modelChange(QAccessibleTableModelChangeEvent *) override {}

private:
    /// Null once the control is being destroyed.
    CTreeListAccessible *Access() const;
    CTreeListItem *ItemAt(int row) const;
};

/// What cell and header share. Belongs to the toolkit's list of interfaces; CTreeListAccessible takes it off there.
class CTreeListPart : public QAccessibleInterface {
public:
    CTreeListPart(CTreeListAccessible &access, int column) : m_pAccess(&access), m_nColumn(column) {}
    int Column() const { return m_nColumn; }
    /// What it stood for is no more.
    void Gone() { m_pAccess = nullptr; }

    bool isValid() const override;
    QObject *object() const override { return nullptr; }
    QWindow *window() const override;
    QAccessibleInterface *childAt(int, int) const override { return nullptr; }
    QAccessibleInterface *parent() const override;
    QAccessibleInterface *child(int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface *) const override { return -1; }
    void setText(QAccessible::Text, const QString &) override {}

protected:
    CTreeListAccessible *m_pAccess;

private:
    int m_nColumn;
};

class CTreeListCell : public CTreeListPart, public QAccessibleTableCellInterface, public QAccessibleActionInterface {
public:
    CTreeListCell(CTreeListAccessible &access, const CTreeListItem &item, int column);
    /// Only while isValid.
    CTreeListItem *Item() const { return m_pItem; }

    void *interface_cast(QAccessible::InterfaceType type) override;
    bool isValid() const override;
    QString text(QAccessible::Text which) const override;
    /// Value or Name: enters the text.
    void setText(QAccessible::Text which, const QString &text) override;
    QRect rect() const override;
    /// What stands beneath a row is controlled by that row's cell in the first column, which opens and closes it.
    QList<QPair<QAccessibleInterface *, QAccessible::Relation>> relations(QAccessible::Relation match) const override;
    QAccessible::Role role() const override { return QAccessible::TreeItem; }
    QAccessible::State state() const override;

    bool isSelected() const override;
    QList<QAccessibleInterface *> columnHeaderCells() const override;
    QList<QAccessibleInterface *> rowHeaderCells() const override { return {}; }
    int columnIndex() const override;
    int rowIndex() const override;
    int columnExtent() const override { return 1; }
    int rowExtent() const override { return 1; }
    QAccessibleInterface *table() const override { return parent(); }

    QStringList actionNames() const override;
    QString localizedActionName(const QString &name) const override;
    void doAction(const QString &name) override;
    QStringList keyBindingsForAction(const QString &name) const override;

private:
    bool IsFirstColumn() const { return Column() == 0; }
    bool CanExpand() const;
    bool CanCheck() const;
    bool CanLock() const;
    bool CanEdit() const;

    CTreeListItem *m_pItem;
};

/// Pressing it is a click on a column that sorts; where the arrow stands it says which way.
class CTreeListHeaderCell : public CTreeListPart, public QAccessibleActionInterface {
public:
    using CTreeListPart::CTreeListPart;
    void *interface_cast(QAccessible::InterfaceType type) override;
    bool isValid() const override;
    QString text(QAccessible::Text which) const override;
    QRect rect() const override;
    QAccessible::Role role() const override { return QAccessible::ColumnHeader; }
    QAccessible::State state() const override;

    QStringList actionNames() const override;
    void doAction(const QString &name) override;
    QStringList keyBindingsForAction(const QString &) const override { return {}; }
};
