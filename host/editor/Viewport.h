// The drawing on the screen: pan, zoom, picking, and clicks as world points.
#pragma once

#include "host/drawing/Drawing.h"
#include "host/editor/Drafting.h"
#include "host/editor/ObjectSnap.h"
#include "host/editor/Painter.h"
#include "host/editor/Picking.h"
#include "host/editor/Prompts.h"
#include "host/editor/Selection.h"
#include "host/editor/ViewPicture.h"
#include "host/editor/ViewTransform.h"

#include <QWidget>

#include <functional>
#include <optional>

class QAction;

namespace velmor {

/// Shows one drawing, and takes what a person points at in it.
///
/// The wheel zooms at the pointer; the middle button, or the left one while Space is held, pans; a double click of the
/// middle button shows everything. From the keyboard the arrow keys pan, Home shows everything, Backspace goes back to
/// the view before. What can be typed goes on to the parent.
///
/// While a point is asked for, the pointer is drawn to object snaps, ortho and polar tracking. While entities are asked
/// for, and while nothing is, a click takes the entity under the pointer and a window takes several: from left to right
/// those inside, from right to left also those that it crosses. A window is drawn by dragging, or by a click into the
/// open and a second one. Of several entities on top of each other Shift+Space, or one more click, takes the next.
/// Shift takes out of the selection. What is picked while nothing is asked for is the drawing's Selection.
class Viewport final : public QWidget {
    Q_OBJECT
public:
    explicit Viewport(QWidget *parent = nullptr);
    ~Viewport() override;

    /// The drawing stays the caller's and must outlive its being shown; null shows an empty field. All of it is shown
    /// first (of an empty drawing, all of what comes into it first), unless the view is moved before that.
    void setDrawing(Drawing *drawing);
    void setStyle(const PaintStyle &style);
    /// Where drafting settings are read, each time they are needed, and written by the keys. At first they are the
    /// view's own.
    void setDraftingSource(std::function<Drafting()> read, std::function<void(const Drafting &)> write);
    Drafting drafting() const { return m_readDrafting(); }

    const ViewTransform &view() const { return m_view; }
    /// Units on the ground for one on the screen: 500 for 1:500. The drawing's units count as metres when it names
    /// none.
    double scaleDenominator() const;
    QString scaleText() const; ///< "1:500"
    void showExtents(const Extents &extents);
    void showEverything();
    void zoomBy(double factor); ///< at the middle
    /// The view before the last change; a row of turns of the wheel, or of moves, is one change. False when there is
    /// none.
    bool zoomPrevious();
    /// By pixels of the view, as the content goes; what is less than a pixel of the screen is kept for the next time.
    void panBy(const QPointF &pixels);

    /// What is asked for; null: nothing. Only a prompt's kind and base, and whether it is a corner, free or has a tip,
    /// are looked at, and nothing of it is kept. With a tip, points are taken as free ones are.
    void setPrompt(const Prompt *prompt);
    /// A prompt for a point is open.
    bool asksForPoint() const { return m_asked == Asked::Point; }
    /// The topmost entity within the pick box around the point; null when there is none.
    AcDbEntity *entityAt(const AcGePoint3d &point) const;
    /// The entity that a click would take now; null when there is none.
    AcDbEntity *hovered() const;
    /// The object snap that a click would take now.
    const std::optional<SnapPoint> &snapPoint() const { return m_snap; }
    /// What the window that is being drawn would take; empty without one.
    const AcDbObjectIdArray &preview();
    /// Escape, from wherever it comes: drops a window that is being drawn (true), or lets go of the selection while
    /// nothing is asked for.
    bool escape();
    /// A key that was pressed or let go elsewhere in the window, as if the view had the focus.
    void takeKey(const QKeyEvent &event);
    /// Space counts as held no longer; it was no Enter.
    void dropSpace();
    /// What was picked here for the selection prompts that are going on; it is shown like the selection.
    const std::vector<const AcDbEntity *> &gathered() const { return m_gathered; }

    /// Actions with their keys: object snap (F3), ortho (F8), polar tracking (F10), the next of several entities
    /// (Shift+Space). The first three can be checked. They work in the whole window.
    const QList<QAction *> &draftActions() const { return m_draftActions; }
    /// What has been painted so far; for tests and benchmarks.
    const ViewPicture::Counts &paintCounts() const { return m_picture.counts(); }

    QSize sizeHint() const override { return {900, 640}; }

Q_SIGNALS:
    /// The pointer's place; while a point is asked for, the one that a click would give.
    void pointerMoved(double x, double y);
    void clicked(double x, double y);                       ///< a point that was asked for
    void entityPicked(AcDbObjectId id, double x, double y); ///< null id: there was none
    void selected(const AcDbObjectIdArray &ids, bool removing);
    void cancelled();        ///< Escape
    void entered();          ///< Enter, or the right button
    void viewChanged();      ///< another part or scale is shown
    void draftingChanged();  ///< by a key
    void selectionChanged(); ///< the drawing's Selection, or another drawing

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void leaveEvent(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void keyReleaseEvent(QKeyEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    enum class Asked { Nothing, Point, Entity, Selection, Text };
    enum class Gesture { None, Wheel, Pan }; ///< changes of the view that go on
    struct Box {                             ///< a window that is being drawn
        AcGePoint3d corner;                  ///< the first one, where it stays when the view moves
        QPointF from, to;                    ///< in pixels of the view
        bool isDragged = false;              ///< the button is down since its first corner
        bool removes = false;
        bool isCrossing() const { return to.x() < from.x(); }
    };
    struct Past {
        double centerX, centerY, pixelsPerUnit;
        bool operator==(const Past &) const = default;
    };

    // The view
    void zoomAt(const QPointF &viewPoint, double factor);
    void movePixels(const QPointF &pixels);
    void remember(Gesture gesture = Gesture::None);
    void viewMoved();
    void showWaiting();

    // Pointing
    void makeActions();
    void toggle(int which);
    void refreshActions();
    bool takesEntities() const { return m_asked != Asked::Point && m_asked != Asked::Text; }
    void pointTo(const QPointF &position);
    void findCandidates();
    void cycle();
    AcGePoint3d pointFor(const QPointF &position);
    void pressLeft(const QPointF &position, bool shift);
    void pickCandidate(const QPointF &position, bool shift);
    void finishBox();
    void dropBox();
    void updatePreview();
    void makePreview();
    void take(const AcDbObjectIdArray &ids, bool removing);
    void gather(const AcDbObjectIdArray &ids, bool removing);
    Extents extentsOfBox() const;
    void startPan(const QPointF &position);
    void endPan();

    // Painting what goes with the pointer
    void paintPointer(QPainter &painter);
    void paintBox(QPainter &painter);
    void paintSnap(QPainter &painter);
    void paintNorth(QPainter &painter);
    QColor inkColor() const;

    Drawing *m_drawing = nullptr;
    ViewTransform m_view;
    PaintStyle m_style;
    ViewPicture m_picture;
    std::vector<Past> m_past;
    Gesture m_gesture = Gesture::None;
    QPointF m_panRest;                 ///< of moves, less than a pixel of the screen
    bool m_showEverythingNext = false; ///< at the next paint that has something to show

    Drafting m_ownDrafting;
    std::function<Drafting()> m_readDrafting;
    std::function<void(const Drafting &)> m_writeDrafting;
    QList<QAction *> m_draftActions;
    std::shared_ptr<void> m_selectionWatch;

    Asked m_asked = Asked::Nothing;
    bool m_isCorner = false; ///< the point that is asked for is one of a window
    bool m_isFree = false;   ///< what lies under the pointer is asked for: no snap may draw it elsewhere
    std::optional<AcGePoint3d> m_base;
    QPointF m_pointer;
    bool m_pointerInside = false;
    std::optional<QPointF> m_panFrom;
    bool m_spaceHeld = false, m_spaceUsed = false;
    std::optional<Box> m_box;
    bool m_isPreviewStale = false; ///< it is made when it is painted or asked for, however often the pointer moved
    QString m_previewCount;
    AcDbObjectIdArray m_preview;
    QImage m_previewImage;
    std::vector<AcDbEntity *> m_candidates; ///< under the pointer, the nearest first
    std::size_t m_candidate = 0;            ///< the one that a click takes
    QPointF m_candidatesAt;
    std::optional<std::pair<QPointF, AcDbObjectId>> m_lastPick; ///< where a click took what
    /// Given as answers to the selection prompts that follow each other.
    std::vector<const AcDbEntity *> m_gathered;
    std::optional<SnapPoint> m_snap;
    AcGePoint3d m_guided; ///< where a click would be
};

} // namespace velmor
