// The small tree as a screen reader meets it.
#pragma once

#include "tests/treelist/TreeFixture.h"

#include <QAccessible>

#include <string>

inline std::string nameOf(QAccessibleInterface *part)
{
    return part ? part->text(QAccessible::Name).toStdString() : std::string("null");
}

class TreeListAccess : public TreeListTest {
protected:
    QAccessibleInterface *Table() const { return QAccessible::queryAccessibleInterface(list); }
    QAccessibleTableInterface *Rows() const { return Table()->tableInterface(); }
    QAccessibleInterface *Cell(int row, int place) const { return Rows()->cellAt(row, place); }
};
