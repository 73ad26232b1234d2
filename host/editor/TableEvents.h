// Works a control that is a table to a screen reader, by what it offers to one. Its class doesn't matter, so this
// serves the lists and trees that a module brings; those of the toolkit are worked by their models (ControlEvents).
//
// Rows and columns count from 0 as the control shows them: rows in a closed branch are none. Each operation answers as
// those of ControlEvents do. The control's owner may fill it anew in each of them, so nothing of it is kept between
// two.
#pragma once

#include "host/editor/ControlEvents.h"

#include <QPointer>

class QAccessibleInterface;
class QAccessibleTableInterface;

namespace velmor {

class TableEvents {
public:
    using Problem = ControlEvents::Problem;
    using ItemPath = ControlEvents::ItemPath;

    /// Whether the control is such a table, and no item view of the toolkit.
    static bool isTable(QWidget &control);
    /// REQUIRES: isTable(control). The number is for the problems' texts.
    TableEvents(QWidget &control, int number) : m_control(&control), m_number(number) {}

    Problem selectRows(const std::vector<int> &rows);
    /// Presses the row's first cell, which selects the row. The first text is that of the first row alike on any level,
    /// each further one leads to a row right beneath; closed rows on the way are opened.
    Problem clickItem(const ItemPath &item);
    /// A check box that stands in between is neither on nor off.
    Problem tickItem(const ItemPath &item, bool on);
    /// Enters the text as a person would; whether the owner took it is seen by expectCell.
    Problem editCell(int row, int column, const std::wstring &text);

    Problem expectItem(const std::wstring &text) const;
    Problem expectTick(const ItemPath &item, bool on) const;
    Problem expectRows(int count) const;
    Problem expectCell(int row, int column, const std::wstring &text) const;

private:
    /// Null once the control is gone.
    QAccessibleTableInterface *table() const;
    QAccessibleInterface *cell(int row, int column) const;
    std::wstring textOf(int row, int column) const;
    /// The row that has the text and stands right beneath the row above (-1: anywhere); -1 for none.
    int findRow(const std::wstring &text, int above) const;
    /// -1 for none. A row that stands in a closed branch is none.
    int findRow(const ItemPath &item) const;
    int openWay(const ItemPath &item);
    int rowAbove(int row) const;
    /// The cell of the row that carries its check box; null for none.
    QAccessibleInterface *checkOf(int row) const;
    Problem noItem(const ItemPath &item) const;

    QPointer<QWidget> m_control;
    int m_number;
};

} // namespace velmor
