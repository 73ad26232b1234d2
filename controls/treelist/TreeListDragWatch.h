// Sees, while a button is down in a tree list, what ends the press elsewhere.
#pragma once

#include "controls/treelist/TreeListCtrl.h"

/// Filters the application's events from the press to the button's way up: a capture that is lost (a window that opens
/// over it, a popup, the control disabled or hidden), Escape, and a target that is disabled or hidden.
class [[gnu::visibility("hidden")]] CTreeListCtrl::DragWatch : public QObject {
public:
    explicit DragWatch(CTreeListCtrl &control);

    bool HasLostCapture() const { return m_bLost; }

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    bool LosesCapture(const QObject *watched, const QEvent &event) const;
    bool LosesTarget(const QObject *watched, const QEvent &event) const;
    bool TakesKey(QEvent &event);

    CTreeListCtrl &m_control;
    bool m_bLost = false;
};
