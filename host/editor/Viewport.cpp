#include "host/editor/Viewport.h"

#include "host/editor/Captions.h"
#include "host/editor/DisplayIndex.h"
#include "host/editor/DrawingUnits.h"
#include "host/editor/FramePainter.h"
#include "host/editor/RestingPointer.h"

#include <QPainter>

#include <algorithm>
#include <array>
#include <cmath>

namespace velmor {

namespace {

constexpr std::size_t kMostPast = 50; ///< views that can be gone back to
constexpr double kNorthSize = 34.0, kNorthMargin = 12.0;
constexpr double kMarkerSize = 5.0; ///< half of an object snap's marker, pixels
constexpr double kTipOffset = 14.0;

const char *nameOf(SnapBit kind)
{
    switch (kind) {
    case kSnapEnd:
        return "ui.snap.end";
    case kSnapMiddle:
        return "ui.snap.middle";
    case kSnapCenter:
        return "ui.snap.center";
    case kSnapNode:
        return "ui.snap.node";
    case kSnapQuadrant:
        return "ui.snap.quadrant";
    case kSnapIntersection:
        return "ui.snap.intersection";
    case kSnapInsertion:
        return "ui.snap.insertion";
    case kSnapPerpendicular:
        return "ui.snap.perpendicular";
    case kSnapNearest:
    case kSnapSuppressed:
        break;
    }
    return "ui.snap.nearest";
}

/// Each kind has a shape of its own.
void paintMarker(QPainter &painter, SnapBit kind, const QPointF &p)
{
    const double r = kMarkerSize;
    const QRectF square(p.x() - r, p.y() - r, 2.0 * r, 2.0 * r);
    const auto cross = [&] {
        painter.drawLine(square.topLeft(), square.bottomRight());
        painter.drawLine(square.topRight(), square.bottomLeft());
    };
    switch (kind) {
    case kSnapEnd:
        painter.drawRect(square);
        break;
    case kSnapMiddle:
        painter.drawPolygon(QPolygonF{{p.x(), p.y() - r}, {p.x() + r, p.y() + r}, {p.x() - r, p.y() + r}});
        break;
    case kSnapCenter:
        painter.drawEllipse(square);
        break;
    case kSnapNode:
        painter.drawEllipse(square);
        cross();
        break;
    case kSnapQuadrant:
        painter.drawPolygon(QPolygonF{{p.x(), p.y() - r}, {p.x() + r, p.y()}, {p.x(), p.y() + r}, {p.x() - r, p.y()}});
        break;
    case kSnapIntersection:
        cross();
        break;
    case kSnapInsertion:
        painter.drawRect(QRectF(p.x() - r, p.y() - r, 1.3 * r, 1.3 * r));
        painter.drawRect(QRectF(p.x() - 0.3 * r, p.y() - 0.3 * r, 1.3 * r, 1.3 * r));
        break;
    case kSnapPerpendicular:
        painter.drawPolyline(QPolygonF{square.topLeft(), square.bottomLeft(), square.bottomRight()});
        painter.drawPolyline(QPolygonF{{p.x() - r, p.y()}, p, {p.x(), p.y() + r}});
        break;
    case kSnapNearest:
    case kSnapSuppressed:
        painter.drawPolygon(QPolygonF{square.topLeft(), square.topRight(), square.bottomLeft(), square.bottomRight()});
        break;
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
    setDraftingSource({}, {});
    makeActions();
}

Viewport::~Viewport() = default;

void Viewport::setDrawing(Drawing *drawing)
{
    m_selectionWatch.reset();
    m_drawing = drawing;
    m_picture.reset();
    m_past.clear();
    m_box.reset();
    m_preview = {};
    m_previewImage = {};
    m_previewCount.clear();
    m_isPreviewStale = false;
    m_candidates.clear();
    m_gathered.clear();
    m_lastPick.reset();
    m_snap.reset();
    m_showEverythingNext = true;
    if (m_drawing != nullptr)
        m_selectionWatch = m_drawing->component<Selection>().onChange([this] {
            update();
            Q_EMIT selectionChanged();
        });
    update();
    Q_EMIT selectionChanged();
}

void Viewport::setStyle(const PaintStyle &style)
{
    m_style = style;
    m_picture.reset();
    update();
}

void Viewport::setDraftingSource(std::function<Drafting()> read, std::function<void(const Drafting &)> write)
{
    m_readDrafting = read ? std::move(read) : [this] { return m_ownDrafting; };
    m_writeDrafting = write ? std::move(write) : [this](const Drafting &drafting) { m_ownDrafting = drafting; };
    refreshActions();
}

// --- The view

double Viewport::scaleDenominator() const
{
    constexpr double kMetresPerInch = 0.0254;
    const double metres = m_drawing != nullptr ? metresPerUnit(*m_drawing) : 1.0;
    return metres / m_view.pixelsPerUnit * logicalDpiX() / kMetresPerInch;
}

QString Viewport::scaleText() const
{
    const double denominator = scaleDenominator();
    if (!(denominator > 0.0) || !std::isfinite(denominator))
        return {};
    // Three digits are enough for what a screen can tell.
    const double digits = std::pow(10.0, std::max(0.0, std::floor(std::log10(denominator)) - 2.0));
    const double shown = std::round(denominator / digits) * digits;
    return QStringLiteral("1:%1").arg(shown, 0, 'f', denominator < 10.0 ? 2 : 0);
}

void Viewport::remember(Gesture gesture)
{
    if (gesture != Gesture::None && gesture == m_gesture)
        return;
    m_gesture = gesture;
    const Past now{m_view.centerX, m_view.centerY, m_view.pixelsPerUnit};
    if (!m_past.empty() && m_past.back() == now)
        return;
    m_past.push_back(now);
    if (m_past.size() > kMostPast)
        m_past.erase(m_past.begin());
}

void Viewport::viewMoved()
{
    m_showEverythingNext = false;
    if (m_box)
        m_box->from = m_view.toView(m_box->corner.x, m_box->corner.y);
    if (m_box)
        updatePreview();
    update();
    Q_EMIT viewChanged();
}

void Viewport::showExtents(const Extents &extents)
{
    showWaiting();
    if (extents.isEmpty())
        return;
    remember();
    m_view.show(extents);
    viewMoved();
}

void Viewport::showEverything()
{
    remember();
    m_showEverythingNext = true;
    update();
}

/// An empty drawing waits for what comes into it first.
void Viewport::showWaiting()
{
    if (!m_showEverythingNext || m_drawing == nullptr)
        return;
    const Extents all = m_drawing->component<DisplayIndex>().visibleExtents();
    if (all.isEmpty())
        return;
    m_showEverythingNext = false;
    m_view.show(all);
    Q_EMIT viewChanged();
}

bool Viewport::zoomPrevious()
{
    m_gesture = Gesture::None;
    if (m_past.empty())
        return false;
    const Past past = m_past.back();
    m_past.pop_back();
    m_view.centerX = past.centerX;
    m_view.centerY = past.centerY;
    m_view.pixelsPerUnit = past.pixelsPerUnit;
    viewMoved();
    return true;
}

void Viewport::zoomBy(double factor)
{
    showWaiting();
    remember();
    zoomAt(QPointF(width() / 2.0, height() / 2.0), factor);
}

void Viewport::zoomAt(const QPointF &viewPoint, double factor)
{
    m_view.zoomAt(viewPoint, factor);
    viewMoved();
}

void Viewport::panBy(const QPointF &pixels)
{
    showWaiting();
    remember(Gesture::Pan);
    movePixels(pixels);
}

void Viewport::movePixels(const QPointF &pixels)
{
    // By whole pixels of the screen, so that what is drawn can be shifted.
    const double ratio = devicePixelRatioF();
    m_panRest += pixels * ratio;
    const QPointF whole(std::round(m_panRest.x()), std::round(m_panRest.y()));
    m_panRest -= whole;
    if (whole.isNull())
        return;
    m_view.panBy(whole / ratio);
    viewMoved();
}

void Viewport::resizeEvent(QResizeEvent *event)
{
    m_view.size = event->size();
    QWidget::resizeEvent(event);
    Q_EMIT viewChanged();
}

void Viewport::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::PaletteChange)
        setStyle(palette().color(QPalette::Base).lightnessF() < 0.5 ? PaintStyle::dark() : PaintStyle::light());
    QWidget::changeEvent(event);
}

AcDbEntity *Viewport::entityAt(const AcGePoint3d &point) const
{
    return m_drawing == nullptr ? nullptr
                                : velmor::entityAt(*m_drawing, point, drafting().pickBox / m_view.pixelsPerUnit);
}

// --- Painting

QColor Viewport::inkColor() const
{
    return m_style.color(7);
}

void Viewport::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    if (m_drawing == nullptr) {
        painter.fillRect(rect(), m_style.background);
        return;
    }
    showWaiting();
    const double ratio = devicePixelRatioF();
    painter.drawImage(0, 0, m_picture.base(*m_drawing, m_view, m_style, ratio));
    if (const QImage &overlay = m_picture.overlay(*m_drawing, m_view, m_style, ratio, m_gathered); !overlay.isNull())
        painter.drawImage(0, 0, overlay);
    makePreview();
    if (!m_previewImage.isNull())
        painter.drawImage(0, 0, m_previewImage);
    painter.setRenderHint(QPainter::Antialiasing);
    paintRestingOutline(painter, *m_drawing, m_view, m_style);
    paintNorth(painter);
    paintPointer(painter);
    paintBox(painter);
    paintSnap(painter);
}

void Viewport::paintPointer(QPainter &painter)
{
    if (m_asked == Asked::Point && m_base) {
        painter.setPen(QPen(m_style.color(5), 1.0, Qt::DashLine));
        const QPointF from = m_view.toView(m_base->x, m_base->y), to = m_view.toView(m_guided.x, m_guided.y);
        if (m_isCorner)
            painter.drawRect(QRectF(from, to).normalized());
        else
            painter.drawLine(from, to);
    }
    if (const AcDbEntity *entity = hovered(); entity != nullptr && !m_box && takesEntities()) {
        paintEntity(painter, *entity, kHighlightColor, 2.0, *m_drawing, m_view, m_style);
        if (m_candidates.size() > 1) { // which of how many
            painter.setPen(inkColor());
            painter.drawText(m_pointer + QPointF(kTipOffset, -kTipOffset),
                             QStringLiteral("%1/%2").arg(m_candidate + 1).arg(m_candidates.size()));
        }
    }
}

void Viewport::paintBox(QPainter &painter)
{
    if (!m_box)
        return;
    QColor color = m_style.color(m_box->isCrossing() ? 3 : 5);
    painter.setPen(QPen(color, 1.0, m_box->isCrossing() ? Qt::DashLine : Qt::SolidLine));
    color.setAlpha(45);
    painter.setBrush(color);
    painter.drawRect(QRectF(m_box->from, m_box->to).normalized());
    painter.setBrush(Qt::NoBrush);
    painter.setPen(inkColor());
    painter.drawText(m_box->to + QPointF(kTipOffset, -kTipOffset), m_previewCount);
}

void Viewport::paintSnap(QPainter &painter)
{
    if (!m_snap || m_asked != Asked::Point || !m_pointerInside)
        return;
    const Drafting settings = drafting();
    const QPointF p = m_view.toView(m_snap->point.x, m_snap->point.y);
    if (settings.markers) {
        painter.setPen(QPen(m_style.color(30), 2.0));
        paintMarker(painter, m_snap->kind, p);
    }
    if (!settings.tips)
        return;
    const QString name = uiString(nameOf(m_snap->kind));
    QRectF tip = painter.fontMetrics().boundingRect(name).adjusted(-4, -2, 4, 2);
    tip.moveTopLeft(p + QPointF(kTipOffset, kTipOffset));
    if (tip.right() > width())
        tip.moveRight(p.x() - kTipOffset);
    if (tip.bottom() > height())
        tip.moveBottom(p.y() - kTipOffset);
    painter.setPen(QPen(palette().color(QPalette::ToolTipText), 1.0));
    painter.setBrush(palette().color(QPalette::ToolTipBase));
    painter.drawRect(tip);
    painter.setBrush(Qt::NoBrush);
    painter.drawText(tip, Qt::AlignCenter, name);
}

void Viewport::paintNorth(QPainter &painter)
{
    const double top = kNorthMargin;
    const QFontMetricsF metrics(painter.font());
    const QString north = uiString("ui.view.north"), scale = scaleText();
    const double line = top + kNorthSize * 1.15 + metrics.ascent() + 3.0;
    // What is drawn below must not make the scale unreadable.
    const double half = std::max(metrics.horizontalAdvance(scale), kNorthSize) / 2.0 + 5.0;
    const double middle = width() - kNorthMargin / 2.0 - half;
    QColor ground = m_style.background;
    ground.setAlpha(200);
    painter.setPen(Qt::NoPen);
    painter.setBrush(ground);
    painter.drawRoundedRect(
        QRectF(middle - half, top - 5.0, 2.0 * half, line + metrics.lineSpacing() + metrics.descent() - top + 8.0), 4.0,
        4.0);
    QColor ink = inkColor();
    painter.setPen(QPen(ink, 1.2));
    painter.setBrush(ink);
    painter.drawPolygon(
        QPolygonF{{middle, top}, {middle, top + kNorthSize}, {middle - kNorthSize * 0.3, top + kNorthSize * 1.15}});
    painter.setBrush(Qt::NoBrush);
    painter.drawPolygon(
        QPolygonF{{middle, top}, {middle, top + kNorthSize}, {middle + kNorthSize * 0.3, top + kNorthSize * 1.15}});
    const auto centred = [&](const QString &text, double y) {
        painter.drawText(QPointF(middle - metrics.horizontalAdvance(text) / 2.0, y), text);
    };
    centred(north, line);
    centred(scale, line + metrics.lineSpacing());
}

} // namespace velmor
