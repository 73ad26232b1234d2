// Clicks and typing in the cells of an extended list, as events to the real widget.
#pragma once

#include "controls/XListCtrl.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMouseEvent>

namespace list_clicks {

inline void sendMouse(QWidget &widget, QEvent::Type type, const QPoint &at, Qt::MouseButton button = Qt::LeftButton)
{
    QMouseEvent event(type, QPointF(at), QPointF(widget.mapToGlobal(at)), button,
                      type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::MouseButtons(button), Qt::NoModifier);
    QApplication::sendEvent(&widget, &event);
}

/// Down and up again at a point of the viewport.
inline void clickAt(CXListCtrl &list, const QPoint &at)
{
    sendMouse(*list.viewport(), QEvent::MouseButtonPress, at);
    sendMouse(*list.viewport(), QEvent::MouseButtonRelease, at);
}

inline QRect cellOf(const CXListCtrl &list, int row, int column)
{
    QRect cell;
    list.GetSubItemRect(row, column, CXListCtrl::kBounds, cell);
    return cell;
}

/// In the middle of the cell.
inline void clickCell(CXListCtrl &list, int row, int column)
{
    clickAt(list, cellOf(list, row, column).center());
}

/// On the arrow of a drop-down cell.
inline void clickArrow(CXListCtrl &list, int row, int column)
{
    const QRect cell = cellOf(list, row, column);
    clickAt(list, QPoint(cell.right() - cell.height() / 2, cell.center().y()));
}

inline void pressKey(QWidget &widget, int key, const QString &text = {},
                     Qt::KeyboardModifiers modifiers = Qt::NoModifier)
{
    QKeyEvent down(QEvent::KeyPress, key, modifiers, text);
    QApplication::sendEvent(&widget, &down);
    QKeyEvent up(QEvent::KeyRelease, key, modifiers, text);
    QApplication::sendEvent(&widget, &up);
}

/// Clicks a cell that is edited in place, types over its text, and commits by Enter. False when no editor opened.
inline bool typeIntoCell(CXListCtrl &list, int row, int column, const QString &text)
{
    clickCell(list, row, column);
    if (!list.IsEditing())
        return false;
    list.GetEditBox()->selectAll();
    list.GetEditBox()->insert(text);
    pressKey(*list.GetEditBox(), Qt::Key_Return);
    return true;
}

} // namespace list_clicks
