#include "host/editor/RestingPointer.h"

#include "host/editor/CommandStack.h"
#include "host/editor/PointMonitors.h"
#include "host/editor/Session.h"
#include "host/editor/Viewport.h"

#include <QPainter>
#include <QPainterPath>

namespace velmor {

namespace {

constexpr int kOutlineColour = 4, kFillOpacity = 40;
constexpr double kOutlineWidth = 2.0;

} // namespace

RestingPointer::RestingPointer(Session &session, Viewport &view) : QObject(&view), m_session(session), m_view(view)
{
    m_timer.setParent(this);
    m_timer.setSingleShot(true);
    m_timer.setInterval(kRest);
    connect(&m_timer, &QTimer::timeout, this, &RestingPointer::rests);
    connect(&view, &Viewport::pointerMoved, this, [this](double x, double y) { moved({x, y}); });
}

void RestingPointer::moved(const AcGePoint3d &point)
{
    Drawing *drawing = m_session.drawing();
    if (drawing == nullptr)
        return;
    m_point = point;
    auto &monitors = drawing->component<PointMonitors>();
    if (monitors.moveTo(point))
        m_view.update();
    if (isAsked(monitors))
        m_timer.start();
}

/// The open prompt asks for the monitor's point, and not for that of a command inside, say of a zoom.
bool RestingPointer::isAsked(const PointMonitors &monitors) const
{
    return monitors.isWaiting() && m_view.asksForPoint() &&
           m_session.commands().running().size() == monitors.commands();
}

void RestingPointer::rests()
{
    Drawing *drawing = m_session.drawing();
    if (drawing == nullptr || !isAsked(drawing->component<PointMonitors>()))
        return;
    drawing->component<PointMonitors>().rest(m_point);
    m_view.update();
}

void paintRestingOutline(QPainter &painter, Drawing &drawing, const ViewTransform &view, const PaintStyle &style)
{
    const auto &outline = drawing.component<PointMonitors>().outline();
    if (outline.empty())
        return;
    QPainterPath path; // islands are holes in it
    for (const auto &ring : outline) {
        QPolygonF polygon;
        for (const AcGePoint2d &point : ring)
            polygon << view.toView(point.x, point.y);
        path.addPolygon(polygon);
        path.closeSubpath();
    }
    QColor colour = style.color(kOutlineColour);
    painter.setPen(QPen(colour, kOutlineWidth));
    colour.setAlpha(kFillOpacity);
    painter.setBrush(colour);
    painter.drawPath(path);
    painter.setBrush(Qt::NoBrush);
}

} // namespace velmor
