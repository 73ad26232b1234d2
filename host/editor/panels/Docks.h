// The window's dock panels: made from the list of panels, with their entries in the view menu.
#pragma once

#include "host/drawing/Drawing.h"

#include <QObject>
#include <QTimer>

#include <vector>

class QDockWidget;
class QMainWindow;
class QMenu;

namespace velmor {

class Panel;
class Session;

class Docks final : public QObject, private DrawingObserver {
    Q_OBJECT
public:
    /// Makes all panels of the list as docks of the window, and their entries at the end of the view menu, followed by
    /// the menus of language and theme. Window, menu and session are the caller's and outlive this.
    Docks(QMainWindow &window, QMenu &viewMenu, Session &session);
    ~Docks() override;

    /// To be called from SessionView::showDrawing: the former drawing is still there.
    void showDrawing(Drawing *drawing);
    /// Something may have changed: a command ended, the view was asked to show its result, other entities are selected.
    void bringUpToDate();

    /// Places, sizes and which panels are shown, from the user's settings and into them.
    void restoreLayout();
    void keepLayout() const;

protected:
    /// What the window makes itself, the tabs of docks that share a place, gets its name here.
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    struct Dock {
        QDockWidget *widget;
        Panel *panel;
    };
    void addAppearance(QMenu &viewMenu);
    void noteChange();

    void entityAppended(AcDbEntity &) override { noteChange(); }
    void entityModified(AcDbEntity &) override { noteChange(); }
    void entityErased(AcDbEntity &, bool) override { noteChange(); }
    void dataChanging(AcDbObject &, const std::string &) override { noteChange(); }

    QMainWindow &m_window;
    Session &m_session;
    Drawing *m_drawing = nullptr;
    std::vector<Dock> m_docks;
    QTimer m_later;       ///< many changes are taken up at once
    bool m_noted = false; ///< the timer runs
};

} // namespace velmor
