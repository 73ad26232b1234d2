#include "host/editor/Viewport.h"

#include "host/drawing/Transient.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>

namespace velmor {

namespace {

constexpr double kWheelFactor = 1.2; ///< zoom for one notch
constexpr double kPickPixels = 6.0;
constexpr double kPanFraction = 0.1; ///< of the view, for one arrow key

double distanceToSegment(const AcGePoint3d &p, double ax, double ay, double bx, double by)
{
    const double dx = bx - ax, dy = by - ay;
    const double lengthSquared = dx * dx + dy * dy;
    const double t =
        lengthSquared > 0.0 ? std::clamp(((p.x - ax) * dx + (p.y - ay) * dy) / lengthSquared, 0.0, 1.0) : 0.0;
    return std::hypot(p.x - ax - t * dx, p.y - ay - t * dy);
}

template <class Vertices>
double distanceToPath(const AcGePoint3d &p, const Vertices &vertices, bool closed)
{
    double best = 1e300;
    for (std::size_t i = 1; i < vertices.size(); ++i)
        best = std::min(best, distanceToSegment(p, vertices[i - 1].x, vertices[i - 1].y, vertices[i].x, vertices[i].y));
    if (closed && vertices.size() > 2)
        best = std::min(best, distanceToSegment(p, vertices[vertices.size() - 1].x, vertices[vertices.size() - 1].y,
                                                vertices[0].x, vertices[0].y));
    return best;
}

/// Distance of a point from an entity's linework; from its extents for kinds that have none.
double distanceTo(const AcDbEntity &entity, const AcGePoint3d &p)
{
    switch (kindOf(entity)) {
    case EntityKind::Line: {
        const auto &line = static_cast<const AcDbLine &>(entity);
        return distanceToSegment(p, line.startPoint().x, line.startPoint().y, line.endPoint().x, line.endPoint().y);
    }
    case EntityKind::Circle: {
        const auto &circle = static_cast<const CircleEntity &>(entity);
        return std::abs(std::hypot(p.x - circle.center().x, p.y - circle.center().y) - circle.radius());
    }
    case EntityKind::LwPolyline: {
        const auto &polyline = static_cast<const AcDbPolyline &>(entity);
        return distanceToPath(p, polyline.vertices(), polyline.isClosed());
    }
    case EntityKind::Polyline2d: {
        const auto &polyline = static_cast<const AcDb2dPolyline &>(entity);
        return distanceToPath(p, polyline.vertices(), polyline.isClosed());
    }
    case EntityKind::Polyline3d: {
        const auto &polyline = static_cast<const AcDb3dPolyline &>(entity);
        return distanceToPath(p, polyline.vertices(), polyline.isClosed());
    }
    case EntityKind::Arc: {
        const auto &arc = static_cast<const AcDbArc &>(entity);
        return std::abs(std::hypot(p.x - arc.center().x, p.y - arc.center().y) - arc.radius());
    }
    default:
        return extentsOf(entity).contains(p.x, p.y) ? 0.0 : 1e300;
    }
}

} // namespace

Viewport::Viewport(QWidget *parent) : QWidget(parent)
{
    setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setCursor(Qt::CrossCursor);
    setMinimumSize(320, 240);
}

void Viewport::setDrawing(Drawing *drawing)
{
    m_drawing = drawing;
    m_shown = {};
    m_showEverythingNext = true;
    update();
}

void Viewport::setStyle(const PaintStyle &style)
{
    m_style = style;
    m_shown = {};
    update();
}

void Viewport::showExtents(const Extents &extents)
{
    m_showEverythingNext = false;
    m_view.show(extents);
    update();
}

void Viewport::showEverything()
{
    m_showEverythingNext = true;
    update();
}

void Viewport::zoomBy(double factor)
{
    zoomAt(QPointF(width() / 2.0, height() / 2.0), factor);
}

void Viewport::zoomAt(const QPointF &viewPoint, double factor)
{
    m_showEverythingNext = false;
    m_view.zoomAt(viewPoint, factor);
    update();
}

void Viewport::panBy(const QPointF &pixels)
{
    m_showEverythingNext = false;
    m_view.panBy(pixels);
    update();
}

void Viewport::setPicking(bool on, std::optional<AcGePoint3d> base)
{
    m_picking = on;
    m_base = base;
    update();
}

AcDbEntity *Viewport::entityAt(const AcGePoint3d &point) const
{
    if (m_drawing == nullptr)
        return nullptr;
    const double reach = kPickPixels / m_view.pixelsPerUnit;
    AcDbEntity *best = nullptr;
    double bestDistance = reach;
    for (AcDbEntity *entity : m_drawing->modelSpace().entities()) {
        if (entity->isErased() || !m_drawing->layer(layerIndexOf(*entity)).visible())
            continue;
        Extents extents = extentsOf(*entity);
        extents.grow(reach);
        if (!extents.contains(point.x, point.y))
            continue;
        const double distance = distanceTo(*entity, point);
        if (distance <= bestDistance) {
            best = entity;
            bestDistance = distance;
        }
    }
    return best;
}

Viewport::Shown Viewport::wanted() const
{
    if (m_drawing == nullptr)
        return {nullptr, 0, 0, 0.0, 0.0, 0.0, size()};
    return {m_drawing,      m_drawing->revision(), m_drawing->component<TransientGraphics>().revision(),
            m_view.centerX, m_view.centerY,        m_view.pixelsPerUnit,
            size()};
}

void Viewport::renderPicture()
{
    m_picture = QPixmap(size() * devicePixelRatioF());
    m_picture.setDevicePixelRatio(devicePixelRatioF());
    m_picture.fill(m_style.background);
    if (m_drawing == nullptr)
        return;
    QPainter painter(&m_picture);
    paintDrawing(painter, *m_drawing, m_view, m_style);
}

void Viewport::paintEvent(QPaintEvent *)
{
    // An empty drawing waits for what comes into it first.
    if (m_showEverythingNext && m_drawing != nullptr) {
        const Extents all = visibleExtents(*m_drawing);
        m_showEverythingNext = all.isEmpty();
        m_view.show(all);
    }
    if (const Shown want = wanted(); want != m_shown || m_picture.isNull()) {
        renderPicture();
        m_shown = want;
    }
    QPainter painter(this);
    painter.drawPixmap(0, 0, m_picture);
    paintRubberBand(painter);
}

void Viewport::paintRubberBand(QPainter &painter)
{
    if (!m_picking || !m_base)
        return;
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(m_style.color(5), 1.0, Qt::DashLine));
    painter.drawLine(m_view.toView(m_base->x, m_base->y), m_pointer);
}

void Viewport::resizeEvent(QResizeEvent *event)
{
    m_view.size = event->size();
    QWidget::resizeEvent(event);
}

void Viewport::wheelEvent(QWheelEvent *event)
{
    const double notches = event->angleDelta().y() / 120.0;
    if (notches != 0.0)
        zoomAt(event->position(), std::pow(kWheelFactor, notches));
    event->accept();
}

void Viewport::mousePressEvent(QMouseEvent *event)
{
    m_pointer = event->position();
    if (event->button() == Qt::MiddleButton) {
        m_dragFrom = event->position();
        setCursor(Qt::ClosedHandCursor);
    } else if (event->button() == Qt::LeftButton) {
        m_showEverythingNext = false; // what is drawn by clicks must not move under the pointer
        const AcGePoint3d p = m_view.toWorld(event->position());
        Q_EMIT clicked(p.x, p.y);
    } else if (event->button() == Qt::RightButton) {
        Q_EMIT entered();
    }
}

void Viewport::mouseMoveEvent(QMouseEvent *event)
{
    m_pointer = event->position();
    if (m_dragFrom) {
        panBy(event->position() - *m_dragFrom);
        m_dragFrom = event->position();
    } else if (m_picking && m_base) {
        update();
    }
    const AcGePoint3d p = m_view.toWorld(event->position());
    Q_EMIT pointerMoved(p.x, p.y);
}

void Viewport::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() == Qt::MiddleButton) {
        m_dragFrom.reset();
        setCursor(Qt::CrossCursor);
    }
}

void Viewport::mouseDoubleClickEvent(QMouseEvent *event)
{
    if (event->button() == Qt::MiddleButton)
        showEverything();
}

void Viewport::keyPressEvent(QKeyEvent *event)
{
    const double stepX = width() * kPanFraction, stepY = height() * kPanFraction;
    switch (event->key()) {
    case Qt::Key_Escape:
        Q_EMIT cancelled();
        return;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        Q_EMIT entered();
        return;
    case Qt::Key_Home:
        return showEverything();
    case Qt::Key_Left:
        return panBy({stepX, 0.0});
    case Qt::Key_Right:
        return panBy({-stepX, 0.0});
    case Qt::Key_Up:
        return panBy({0.0, stepY});
    case Qt::Key_Down:
        return panBy({0.0, -stepY});
    default:
        QWidget::keyPressEvent(event); // letters, digits and signs go on to the command line
    }
}

void Viewport::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::PaletteChange)
        setStyle(palette().color(QPalette::Base).lightnessF() < 0.5 ? PaintStyle::dark() : PaintStyle::light());
    QWidget::changeEvent(event);
}

} // namespace velmor
