// What the extended list and its header draw alike, in the colours of the desktop.
#pragma once

#include <QPalette>
#include <QRect>

class QPainter;

namespace list_painting {

/// A box with or without a tick; grey when not enabled.
void CheckBox(QPainter &painter, const QRect &box, bool ticked, const QPalette &palette, bool enabled);

/// The drop-down of a cell: an edge, a ground, and at the right a button with an arrow, as wide as the cell is high.
void DropDown(QPainter &painter, const QRect &cell, bool pressed, const QPalette &palette);

/// Ground of the first column: a light grey; on a dark desktop a grey as far from its ground.
QColor FirstColumnGround(const QPalette &palette);

} // namespace list_painting
