// Base of the dock panels' widgets, and the list of all panels.
//
// A panel is a widget over a model; the model knows no widget and keeps itself up through the drawing's observers, so
// that a change costs by what changed. A panel's file adds its row to the list with a PanelRegistration.
#pragma once

#include "host/drawing/Drawing.h"

#include <QWidget>

#include <functional>
#include <string>
#include <vector>

namespace velmor {

class Session;

class Panel : public QWidget {
    Q_OBJECT
public:
    using QWidget::QWidget;
    /// The session has another drawing (null: none). The former one is still there during the call and gone after it.
    virtual void setDrawing(Drawing *drawing) = 0;
    /// The drawing or what is selected may have changed. Called only while the panel is shown; must cost next to
    /// nothing when nothing did.
    virtual void bringUpToDate() = 0;
};

struct PanelSpec {
    const char *name;  ///< of the dock, for keeping its place ("layers")
    const char *title; ///< name of the title's text; with its mnemonic it is the entry of the view menu
    const char *key;   ///< that shows and hides it ("Ctrl+1")
    bool onTheRight;   ///< else at the bottom
    bool shown;        ///< at the first start
    std::function<Panel *(Session &session)> make;
};

/// All panels, in the order of their keys.
std::vector<PanelSpec> panelSpecs();

struct PanelRegistration {
    explicit PanelRegistration(PanelSpec spec);
};

/// Does a piece of work on the session's drawing as one undo step, under the guard that takes back what failed. False
/// when it could not be done: another command runs or a dialog holds the drawing (the status line says so), or it
/// failed (an alert says so). The view is shown anew.
bool changeDrawing(Session &session, const std::wstring &name, const std::function<void(Drawing &)> &work);

/// Selects entities of the session's drawing, nothing else, and takes the view to where they are.
void selectAndShow(Session &session, const AcDbObjectIdArray &ids, Extents extents);

/// Starts a command as if it were typed; the status line gets the reason when it can't be started. The
/// view is shown anew when it ends.
void startCommand(Session &session, const std::wstring &line);

} // namespace velmor
