// Shows an outline under the pointer when it rests in the view while a point is asked for.
#pragma once

#include "contracts/HostTypes.h"

#include <QObject>
#include <QTimer>

#include <chrono>
#include <vector>

class QPainter;

namespace velmor {

class Drawing;
class PointMonitors;
class Session;
class Viewport;
struct PaintStyle;
struct ViewTransform;

/// Watches a view's pointer for the monitors of the session's drawing (PointMonitors). It belongs to the view.
class RestingPointer final : public QObject {
    Q_OBJECT
public:
    /// The pointer rests when it has not moved for so long.
    static constexpr std::chrono::milliseconds kRest{120};
    RestingPointer(Session &session, Viewport &view);

private:
    void moved(const AcGePoint3d &point);
    bool isAsked(const PointMonitors &monitors) const;
    void rests();
    Session &m_session;
    Viewport &m_view;
    QTimer m_timer;
    AcGePoint3d m_point;
};

/// Paints the outline that the drawing's monitors gave.
void paintRestingOutline(QPainter &painter, Drawing &drawing, const ViewTransform &view, const PaintStyle &style);

} // namespace velmor
