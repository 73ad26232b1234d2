// What a person does in the view with the mouse and the keys.
#include "host/editor/Viewport.h"

#include "host/drawing/ObjectAccess.h"
#include "host/editor/Captions.h"
#include "host/editor/FramePainter.h"

#include <QAction>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QTimer>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>
#include <unordered_set>
#include <utility>

namespace velmor {

namespace {

constexpr double kWheelFactor = 1.2; ///< zoom for one notch
constexpr double kPanFraction = 0.1; ///< of the view, for one arrow key
constexpr double kStill = 2.5;       ///< pixels within which the pointer counts as not moved
constexpr double kDragStart = 4.0;   ///< pixels beyond which a press and a release are a window
/// With more entities than this around it, a window shows only that there are so many: a preview would take longer
/// than a step of the pointer.
constexpr std::size_t kMostPreviewed = 60'000;
constexpr double kPreviewWidth = 2.0;

enum DraftAction { kActionSnap, kActionOrtho, kActionPolar, kActionCycle };

double distance(const QPointF &a, const QPointF &b)
{
    return std::hypot(a.x() - b.x(), a.y() - b.y());
}

} // namespace

// --- Actions

void Viewport::makeActions()
{
    struct Row {
        const char *text;
        QKeySequence key;
        bool isSwitch;
    };
    const Row rows[] = {{"ui.draft.snap", Qt::Key_F3, true},
                        {"ui.draft.ortho", Qt::Key_F8, true},
                        {"ui.draft.polar", Qt::Key_F10, true},
                        {"ui.draft.cycle", Qt::SHIFT | Qt::Key_Space, false}};
    for (const Row &row : rows) {
        auto *action = new QAction(this);
        keepCaptioned(action, [action, text = row.text] { action->setText(uiString(text)); });
        action->setShortcut(row.key);
        action->setCheckable(row.isSwitch);
        const int which = static_cast<int>(m_draftActions.size());
        connect(action, &QAction::triggered, this, [this, which] {
            if (which == kActionCycle)
                cycle();
            else
                toggle(which);
        });
        addAction(action);
        m_draftActions.append(action);
    }
    refreshActions();
}

void Viewport::refreshActions()
{
    if (m_draftActions.isEmpty())
        return;
    const Drafting settings = drafting();
    m_draftActions[kActionSnap]->setChecked(settings.activeSnaps() != 0);
    m_draftActions[kActionOrtho]->setChecked(settings.ortho);
    m_draftActions[kActionPolar]->setChecked(settings.polar);
}

void Viewport::toggle(int which)
{
    Drafting settings = drafting();
    if (which == kActionSnap) {
        if ((settings.snaps & ~kSnapSuppressed) == 0)
            settings.snaps = kSnapEnd | kSnapMiddle | kSnapCenter | kSnapIntersection; // nothing was chosen yet
        else
            settings.snaps ^= kSnapSuppressed;
    } else if (which == kActionOrtho) {
        settings.ortho = !settings.ortho;
        settings.polar = settings.polar && !settings.ortho;
    } else {
        settings.polar = !settings.polar;
        settings.ortho = settings.ortho && !settings.polar;
    }
    m_writeDrafting(settings);
    refreshActions();
    pointTo(m_pointer);
    Q_EMIT draftingChanged();
}

// --- What is asked for

void Viewport::setPrompt(const Prompt *prompt)
{
    dropBox();
    m_base.reset();
    m_asked = Asked::Nothing;
    m_isCorner = prompt != nullptr && prompt->corner;
    m_isFree = prompt != nullptr && (prompt->free || prompt->tip);
    if (prompt != nullptr) {
        m_base = prompt->base;
        switch (prompt->kind) {
        case PromptKind::Point:
        case PromptKind::Distance: // measured from the base
        case PromptKind::Angle:
            m_asked = Asked::Point;
            break;
        case PromptKind::Entity:
            m_asked = Asked::Entity;
            break;
        case PromptKind::Selection:
            m_asked = Asked::Selection;
            break;
        case PromptKind::Text:
        case PromptKind::Keyword:
        case PromptKind::Word:
        case PromptKind::Number:
            m_asked = Asked::Text;
            break;
        }
    }
    if (!m_gathered.empty() && m_asked != Asked::Selection) {
        // The next prompt of a row comes before anything else happens.
        QTimer::singleShot(0, this, [this] {
            if (m_asked != Asked::Selection && !std::exchange(m_gathered, {}).empty())
                update();
        });
    }
    m_lastPick.reset();
    m_snap.reset();
    m_candidates.clear();
    refreshActions(); // the variables may have been set since
    if (m_pointerInside)
        pointTo(m_pointer);
    update();
}

AcDbEntity *Viewport::hovered() const
{
    if (m_candidate >= m_candidates.size())
        return nullptr;
    AcDbEntity *entity = m_candidates[m_candidate];
    // The drawing may have changed since the pointer moved.
    return entity->isErased() || !m_drawing->layer(layerIndexOf(*entity)).visible() ? nullptr : entity;
}

void Viewport::findCandidates()
{
    if (m_candidate != 0 && distance(m_candidatesAt, m_pointer) <= kStill && hovered() != nullptr)
        return; // so that a choice by cycling stands while the hand shakes
    m_candidates.clear();
    m_candidate = 0;
    m_candidatesAt = m_pointer;
    if (m_drawing != nullptr)
        m_candidates = entitiesAt(*m_drawing, m_view.toWorld(m_pointer), drafting().pickBox / m_view.pixelsPerUnit);
}

void Viewport::cycle()
{
    if (!takesEntities())
        return;
    findCandidates();
    if (m_candidates.size() > 1)
        m_candidate = (m_candidate + 1) % m_candidates.size();
    m_lastPick.reset();
    update();
}

AcGePoint3d Viewport::pointFor(const QPointF &position)
{
    const AcGePoint3d free = m_view.toWorld(position);
    m_snap.reset();
    if (m_drawing == nullptr || m_isCorner || m_isFree)
        return free;
    const Drafting settings = drafting();
    if (settings.activeSnaps() != 0)
        m_snap = findSnap(*m_drawing, {free, settings.aperture / m_view.pixelsPerUnit, settings.activeSnaps(), m_base});
    if (m_snap)
        return m_snap->point;
    return guidedPoint(free, m_base, settings, settings.aperture / m_view.pixelsPerUnit);
}

void Viewport::pointTo(const QPointF &position)
{
    m_pointer = position;
    if (m_box) {
        m_box->to = position;
        updatePreview();
    } else if (m_asked == Asked::Point) {
        m_guided = pointFor(position);
        update();
    } else if (takesEntities()) {
        const AcDbEntity *before = hovered();
        const std::size_t count = m_candidates.size();
        findCandidates();
        if (hovered() != before || m_candidates.size() != count || m_candidates.size() > 1)
            update();
    }
}

// --- Windows

Extents Viewport::extentsOfBox() const
{
    Extents extents;
    for (const QPointF &corner : {m_box->from, m_box->to}) {
        const AcGePoint3d p = m_view.toWorld(corner);
        extents.add(p.x, p.y);
    }
    return extents;
}

void Viewport::updatePreview()
{
    m_preview = {};
    m_previewImage = {};
    m_previewCount.clear();
    m_isPreviewStale = m_box && m_drawing != nullptr;
    update();
}

const AcDbObjectIdArray &Viewport::preview()
{
    makePreview();
    return m_preview;
}

void Viewport::makePreview()
{
    if (!std::exchange(m_isPreviewStale, false))
        return;
    const Extents window = extentsOfBox();
    if (const std::size_t count = countNear(*m_drawing, window); count > kMostPreviewed) {
        m_previewCount = QStringLiteral("> %1").arg(kMostPreviewed);
        return;
    }
    m_preview = entitiesIn(*m_drawing, window, m_box->isCrossing() ? SelectBy::Crossing : SelectBy::Window);
    if (m_preview.empty())
        return;
    m_previewCount = QString::number(m_preview.size());
    std::vector<const AcDbEntity *> entities;
    for (const AcDbObjectId &id : m_preview)
        entities.push_back(static_cast<const AcDbEntity *>(ObjectAccess::object(id)));
    const double ratio = devicePixelRatioF();
    m_previewImage = QImage(ViewPicture::imageSize(size(), ratio), QImage::Format_ARGB32_Premultiplied);
    m_previewImage.setDevicePixelRatio(ratio);
    m_previewImage.fill(Qt::transparent);
    paintOver(m_previewImage, m_previewImage.rect(), entities, kHighlightColor, kPreviewWidth, *m_drawing, m_view,
              m_style);
}

void Viewport::dropBox()
{
    if (!m_box)
        return;
    m_box.reset();
    updatePreview();
}

void Viewport::finishBox()
{
    const Box box = *m_box;
    const Extents extents = extentsOfBox();
    const AcDbObjectIdArray ids =
        m_drawing == nullptr
            ? AcDbObjectIdArray()
            : entitiesIn(*m_drawing, extents, box.isCrossing() ? SelectBy::Crossing : SelectBy::Window);
    dropBox();
    if (!ids.empty())
        take(ids, box.removes);
}

void Viewport::take(const AcDbObjectIdArray &ids, bool removing)
{
    if (m_asked == Asked::Selection) {
        gather(ids, removing);
        Q_EMIT selected(ids, removing);
        return;
    }
    auto &selection = m_drawing->component<Selection>();
    if (removing)
        selection.remove({ids.data(), ids.size()});
    else
        selection.add({ids.data(), ids.size()});
}

void Viewport::gather(const AcDbObjectIdArray &ids, bool removing)
{
    std::unordered_set<const AcDbEntity *> known(m_gathered.begin(), m_gathered.end());
    for (const AcDbObjectId &id : ids) {
        const auto *entity = static_cast<const AcDbEntity *>(ObjectAccess::object(id));
        if (removing)
            known.erase(entity);
        else if (known.insert(entity).second)
            m_gathered.push_back(entity);
    }
    if (removing)
        std::erase_if(m_gathered, [&](const AcDbEntity *entity) { return !known.contains(entity); });
    update();
}

bool Viewport::escape()
{
    m_lastPick.reset();
    if (m_box) {
        dropBox();
        return true;
    }
    if (m_asked == Asked::Nothing && m_drawing != nullptr)
        m_drawing->component<Selection>().clear();
    return false;
}

// --- The mouse

void Viewport::pickCandidate(const QPointF &position, bool shift)
{
    AcDbEntity *entity = hovered();
    const bool isRepeated = m_lastPick && m_asked == Asked::Nothing && !shift && m_candidates.size() > 1 &&
                            distance(m_lastPick->first, position) <= kStill;
    if (isRepeated) {
        // One more click on the same place means the next one instead.
        take({m_lastPick->second}, true);
        const auto *last = ObjectAccess::object(m_lastPick->second);
        const auto at = std::ranges::find(m_candidates, last) - m_candidates.begin();
        m_candidate = (static_cast<std::size_t>(at) + 1) % m_candidates.size();
        entity = hovered();
    }
    if (entity == nullptr)
        return;
    m_lastPick = std::pair(position, idOf(*entity));
    take({idOf(*entity)}, shift);
    update();
}

void Viewport::pressLeft(const QPointF &position, bool shift)
{
    m_gesture = Gesture::None;
    if (m_box) {
        m_box->to = position;
        return finishBox();
    }
    m_showEverythingNext = false; // what is drawn by clicks must not move under the pointer
    if (m_asked == Asked::Point) {
        const AcGePoint3d p = pointFor(position);
        Q_EMIT clicked(p.x, p.y);
        return;
    }
    if (m_asked == Asked::Text || m_drawing == nullptr)
        return;
    findCandidates();
    if (m_asked == Asked::Entity) {
        const AcGePoint3d p = m_view.toWorld(position);
        AcDbEntity *entity = hovered();
        Q_EMIT entityPicked(entity != nullptr ? idOf(*entity) : AcDbObjectId(), p.x, p.y);
    } else if (hovered() != nullptr) {
        pickCandidate(position, shift);
    } else {
        m_box = Box{m_view.toWorld(position), position, position, true, shift};
    }
}

void Viewport::startPan(const QPointF &position)
{
    m_gesture = Gesture::None;
    showWaiting();
    remember(Gesture::Pan);
    m_panFrom = position;
    m_panRest = {};
    setCursor(Qt::ClosedHandCursor);
}

void Viewport::endPan()
{
    m_panFrom.reset();
    setCursor(m_spaceHeld ? Qt::OpenHandCursor : Qt::CrossCursor);
}

void Viewport::mousePressEvent(QMouseEvent *event)
{
    m_pointer = event->position();
    m_pointerInside = true;
    if (event->button() == Qt::MiddleButton || (event->button() == Qt::LeftButton && m_spaceHeld)) {
        m_spaceUsed = m_spaceHeld;
        startPan(event->position());
    } else if (event->button() == Qt::LeftButton) {
        pressLeft(event->position(), event->modifiers().testFlag(Qt::ShiftModifier));
    } else if (event->button() == Qt::RightButton) {
        if (m_box)
            dropBox();
        else
            Q_EMIT entered();
    }
}

void Viewport::mouseMoveEvent(QMouseEvent *event)
{
    m_pointerInside = true;
    if (m_panFrom) {
        movePixels(event->position() - *m_panFrom);
        m_panFrom = event->position();
        m_pointer = event->position();
    } else {
        pointTo(event->position());
    }
    const AcGePoint3d p = m_asked == Asked::Point && !m_panFrom ? m_guided : m_view.toWorld(event->position());
    Q_EMIT pointerMoved(p.x, p.y);
}

void Viewport::mouseReleaseEvent(QMouseEvent *event)
{
    if (m_panFrom && (event->button() == Qt::MiddleButton || event->button() == Qt::LeftButton)) {
        endPan();
    } else if (event->button() == Qt::LeftButton && m_box && m_box->isDragged) {
        m_box->isDragged = false;
        if (distance(m_box->from, event->position()) > kDragStart) {
            m_box->to = event->position();
            finishBox();
        }
    }
}

void Viewport::mouseDoubleClickEvent(QMouseEvent *event)
{
    if (event->button() == Qt::MiddleButton)
        showEverything();
    else
        mousePressEvent(event); // two quick clicks are two clicks
}

void Viewport::leaveEvent(QEvent *event)
{
    m_pointerInside = false;
    m_candidates.clear();
    update();
    QWidget::leaveEvent(event);
}

void Viewport::wheelEvent(QWheelEvent *event)
{
    const double notches = event->angleDelta().y() / 120.0;
    if (notches != 0.0) {
        showWaiting();
        remember(Gesture::Wheel);
        zoomAt(event->position(), std::pow(kWheelFactor, notches));
        m_candidates.clear();
    }
    event->accept();
}

// --- Keys

bool Viewport::event(QEvent *event)
{
    if (event->type() == QEvent::FocusOut)
        dropSpace();
    return QWidget::event(event);
}

void Viewport::dropSpace()
{
    if (!std::exchange(m_spaceHeld, false))
        return;
    endPan();
}

void Viewport::takeKey(const QKeyEvent &event)
{
    QKeyEvent copy(event.type(), event.key(), event.modifiers(), event.text(), event.isAutoRepeat());
    if (event.type() == QEvent::KeyPress)
        keyPressEvent(&copy);
    else
        keyReleaseEvent(&copy);
}

void Viewport::keyPressEvent(QKeyEvent *event)
{
    const double stepX = std::round(width() * kPanFraction), stepY = std::round(height() * kPanFraction);
    switch (event->key()) {
    case Qt::Key_Escape:
        if (!escape())
            Q_EMIT cancelled();
        return;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        Q_EMIT entered();
        return;
    case Qt::Key_Home:
        return showEverything();
    case Qt::Key_Backspace:
        zoomPrevious();
        return;
    case Qt::Key_Left:
        return panBy({stepX, 0.0});
    case Qt::Key_Right:
        return panBy({-stepX, 0.0});
    case Qt::Key_Up:
        return panBy({0.0, stepY});
    case Qt::Key_Down:
        return panBy({0.0, -stepY});
    case Qt::Key_Space:
        if (!event->isAutoRepeat()) {
            m_spaceHeld = true;
            m_spaceUsed = false;
            setCursor(Qt::OpenHandCursor);
        }
        return;
    default:
        QWidget::keyPressEvent(event); // letters, digits and signs go on to the command line
    }
}

void Viewport::keyReleaseEvent(QKeyEvent *event)
{
    if (event->key() != Qt::Key_Space || event->isAutoRepeat() || !m_spaceHeld)
        return QWidget::keyReleaseEvent(event);
    m_spaceHeld = false;
    endPan();
    if (!m_spaceUsed)
        Q_EMIT entered(); // Space alone is Enter
}

} // namespace velmor
