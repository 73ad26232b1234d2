// What commands may do with the part of the drawing that a window shows.
#pragma once

#include "host/editor/Session.h"
#include "host/editor/ViewTransform.h"

namespace velmor {

class ViewControl {
public:
    virtual ~ViewControl() = default;
    virtual const ViewTransform &shownView() const = 0;
    virtual void showEverything() = 0;
    /// Nearer for a factor above 1, about the middle.
    virtual void zoomBy(double factor) = 0;
    /// Shows another centre at the same scale.
    virtual void centreOn(const AcGePoint3d &point) = 0;
    /// What was shown before the last change; false when there is none.
    virtual bool showPrevious() = 0;
    /// Metres in the drawing to metres on the screen: 500 for 1:500.
    virtual double scaleDenominator() const = 0;
    /// Printing and PDF, with what is shown as one of the choices.
    virtual void openPlotDialog() = 0;
};

/// That of the session's window; null without one.
inline ViewControl *viewControl(Session &session)
{
    return dynamic_cast<ViewControl *>(session.view());
}

} // namespace velmor
