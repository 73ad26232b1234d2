// The drawing on the screen: pan, zoom, and clicks as world points.
#pragma once

#include "host/drawing/Drawing.h"
#include "host/editor/Painter.h"
#include "host/editor/ViewTransform.h"

#include <QPixmap>
#include <QWidget>

#include <optional>

namespace velmor {

/// Shows one drawing. The wheel zooms at the pointer, the middle button pans, a double click of the middle button shows
/// everything; from the keyboard the arrow keys pan and Home shows everything. What can be typed goes on to the parent.
class Viewport final : public QWidget {
    Q_OBJECT
public:
    explicit Viewport(QWidget *parent = nullptr);

    /// The drawing stays the caller's and must outlive its being shown; null shows an empty field. All of it is shown
    /// first (of an empty drawing, all of what comes into it first), unless the view is moved before that.
    void setDrawing(Drawing *drawing);
    void setStyle(const PaintStyle &style);
    const ViewTransform &view() const { return m_view; }
    void showExtents(const Extents &extents);
    void showEverything();
    void zoomBy(double factor);
    /// While a point is asked for: the pointer is a cross, and a rubber band runs from base (if any) to it.
    void setPicking(bool on, std::optional<AcGePoint3d> base = {});
    /// The topmost entity within some pixels of the point; null when there is none.
    AcDbEntity *entityAt(const AcGePoint3d &point) const;

    QSize sizeHint() const override { return {900, 640}; }

Q_SIGNALS:
    void pointerMoved(double x, double y);
    void clicked(double x, double y);
    void cancelled(); ///< Escape
    void entered();   ///< Enter, or the right button

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    struct Shown { ///< what the picture in m_picture shows
        const Drawing *drawing = nullptr;
        std::uint64_t revision = 0, transientRevision = 0;
        double centerX = 0.0, centerY = 0.0, pixelsPerUnit = 0.0;
        QSize size;
        bool operator==(const Shown &) const = default;
    };
    Shown wanted() const;
    void zoomAt(const QPointF &viewPoint, double factor);
    void panBy(const QPointF &pixels);
    void renderPicture();
    void paintRubberBand(QPainter &painter);

    Drawing *m_drawing = nullptr;
    ViewTransform m_view;
    PaintStyle m_style;
    QPixmap m_picture;
    Shown m_shown;
    bool m_showEverythingNext = false; ///< at the next paint that has something to show
    bool m_picking = false;
    std::optional<AcGePoint3d> m_base;
    std::optional<QPointF> m_dragFrom;
    QPointF m_pointer;
};

} // namespace velmor
