// Windows that go along with the pointer while something is dragged.
#pragma once

#include "controls/rules/TreeListItem.h"

#include <QWidget>

#include <optional>

/// A small window over all others without frame, focus and input: the pointer finds what stands below. Where the
/// desktop can blend windows its pixels may be transparent; elsewhere it is plain, which is found out at run time.
///
/// It belongs to the widget whose drag it shows and goes with it.
class TREELIST_API CTreeListLayeredWnd : public QWidget {
public:
    /// windowClass becomes the object's name. Hidden at first.
    CTreeListLayeredWnd(QWidget *parent, const char *windowClass);

    /// True when this desktop blends windows.
    static bool IsAvailable();
    /// In place of what the desktop says; none: ask it again.
    static void Assume(std::optional<bool> available);

    bool IsLayered() const { return m_bLayered; }
    /// Moves the window and shows it. Pixels of the screen.
    void ShowAt(const QPoint &topLeft);

private:
    bool m_bLayered;
};

/// The widget under a point of the screen, as if there were no such windows; null when it is none of this process.
QWidget *WidgetUnderDrag(const QPoint &onScreen);
