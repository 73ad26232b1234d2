// A tip beside the pointer that follows it and never stands in the way of a click.
#pragma once

#include <QString>

class QPoint;
class QWidget;

namespace velmor {

/// Shows a text beside a place of the widget, within the widget as far as it fits; an empty text hides the tip.
void showPointerTip(QWidget &widget, const QPoint &place, const QString &text);
void hidePointerTip(QWidget &widget);
/// What the tip of a widget says now; empty when it is hidden.
QString pointerTipText(const QWidget &widget);

} // namespace velmor
