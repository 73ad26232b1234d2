#include "controls/treelist/TLCDragWnd.h"
#include "controls/treelist/TLCDropWnd.h"
#include "controls/treelist/TreeListCtrl.h"
#include "controls/treelist/TreeListDragWatch.h"
#include "controls/treelist/TreeListGlyphs.h"

#include <QApplication>
#include <QPainter>
#include <QScrollBar>
#include <QTimerEvent>

#include <algorithm>
#include <cstdlib>

namespace {

/// Answers of DragOver.
enum Answer : int { kRefused = 0, kNeutral = 1, kOnItem = 2, kAtRoot = 3 };

/// Milliseconds until a hovered item expands and between two steps of scrolling, over an item that takes the rows and
/// over one that refuses them.
constexpr int kExpandTaking = 1000, kScrollTaking = 200;
constexpr int kExpandRefusing = 500, kScrollRefusing = 100;

int cursorOf(int answer)
{
    switch (answer) {
    case kRefused:
        return tree_list_glyphs::kCursorRefused;
    case kNeutral:
        return 0;
    default:
        return tree_list_glyphs::kCursorDrag;
    }
}

/// True when a modal dialog keeps the widget from its input.
bool isBlocked(const QWidget &widget)
{
    const QWidget *const modal = QApplication::activeModalWidget();
    return modal != nullptr && modal != widget.window() && !modal->isAncestorOf(&widget);
}

bool takesInput(const CTreeListCtrl &control)
{
    return control.isEnabled() && control.isVisible() && !isBlocked(control);
}

/// The tree list whose own window is under a point of the screen: its header, bars and editors are other windows.
CTreeListCtrl *controlAt(const QPoint &onScreen)
{
    QWidget *const under = WidgetUnderDrag(onScreen);
    if (under == nullptr)
        return nullptr;
    auto *control = qobject_cast<CTreeListCtrl *>(under);
    if (control == nullptr) {
        control = qobject_cast<CTreeListCtrl *>(under->parentWidget());
        if (control == nullptr || control->viewport() != under)
            return nullptr;
    }
    return takesInput(*control) ? control : nullptr;
}

} // namespace

// --- The press ---

void CTreeListCtrl::WatchPress()
{
    UnwatchPress();
    m_pDragWatch = new DragWatch(*this);
}

void CTreeListCtrl::UnwatchPress()
{
    if (!m_pDragWatch)
        return;
    qApp->removeEventFilter(m_pDragWatch);
    m_pDragWatch->deleteLater(); // it may be what calls
    m_pDragWatch.clear();
}

bool CTreeListCtrl::HasLostCapture() const
{
    return m_pDragWatch && static_cast<const DragWatch *>(m_pDragWatch.data())->HasLostCapture();
}

// --- The source ---

int CTreeListCtrl::BeginDraging(const QPoint &point)
{
    if (!HasStyle(StyleDrag))
        return 0;
    const bool pressed = !m_pDragWatch.isNull(); // else another module begins the drag
    if (!pressed)
        WatchPress();
    const QPointer<CTreeListCtrl> self(this);
    // Over a question of the owner's the button goes up where nobody tells, whether he asked it before or asks it now.
    const bool granted =
        !HasLostCapture() && NotifyDrag(NotifyBeginDrag, GetSelectedItem(), GetSelectColumn(), this) >= 0;
    if (!self)
        return 0;
    if (!granted || HasLostCapture() || !takesInput(*this)) {
        if (!pressed)
            UnwatchPress();
        return 0;
    }
    SetState(kControlDragging, 0);
    m_dragStart = point;
    m_dragOffset = QPoint(CTLCDragWnd::kOffset, CTLCDragWnd::kOffset);
    return 1;
}

int CTreeListCtrl::DoDraging(const QPoint &point)
{
    if (!GetState(kControlDragging))
        return 0;
    if (!m_pDragWnd) {
        const QPoint way = point - m_dragStart;
        const int distance = QApplication::startDragDistance();
        if (std::abs(way.x()) <= distance && std::abs(way.y()) <= distance)
            return 0;
        if (!OpenDragWindows(point))
            return 0;
    }
    if (GetSelectedCount() == 0) { // the owner deleted what is dragged
        EndDraging(point, false);
        return 0;
    }
    MoveDragWindow(point);

    const QPointer<CTreeListCtrl> self(this);
    const QPoint onScreen = viewport()->mapToGlobal(point);
    if (!EnterTarget(controlAt(onScreen)) || !self || !GetState(kControlDragging))
        return 0;
    int answer = kRefused;
    CTreeListItem *item = nullptr;
    if (m_pDragTarget) {
        answer = m_pDragTarget->DragOver(this, m_pDragTarget->viewport()->mapFromGlobal(onScreen), &item);
        if (!self || !GetState(kControlDragging))
            return 0;
    }
    if (!m_pDragTarget)
        answer = kRefused; // it went while it was asked
    ShowCursor(cursorOf(answer));
    if (answer == kOnItem || answer == kAtRoot)
        PlaceDropWindow(*m_pDragTarget, item);
    else
        m_pDropWnd->hide();
    return answer;
}

/// False when there is no drag: the row in edit refuses to end, or nothing is selected any more.
bool CTreeListCtrl::OpenDragWindows(const QPoint &point)
{
    const QPointer<CTreeListCtrl> self(this);
    // The press began an edit, as every click does. Movement says that a drag was meant: what was typed before is kept.
    FinishModify();
    if (!self || !GetState(kControlDragging))
        return false;
    if (GetState(kControlEditing) || GetSelectedCount() == 0) {
        EndDraging(point, false);
        return false;
    }
    HideTip();
    if (CTreeListLayeredWnd::IsAvailable()) {
        m_pDragWnd = new CTLCDragWnd(this, GetDragImage(QSize(CTLCDragWnd::kSide, CTLCDragWnd::kSide)));
    } else {
        QRegion shape;
        const QPixmap picture = GetPlainDragImage(shape);
        m_pDragWnd = new CTLCDragWnd(this, picture, shape);
    }
    m_pDropWnd = new CTLCDropWnd(this);
    return true;
}

void CTreeListCtrl::MoveDragWindow(const QPoint &point)
{
    const QPoint offset = m_pDragWnd->IsLayered() ? m_dragOffset : CTLCDragWnd::kPlainOffset;
    m_pDragWnd->ShowAt(viewport()->mapToGlobal(point) + offset);
}

/// Leaves the old target for another one; null: for none. False when this control is gone.
bool CTreeListCtrl::EnterTarget(CTreeListCtrl *target)
{
    if (target == m_pDragTarget)
        return true;
    const QPointer<CTreeListCtrl> self(this);
    const QPointer<CTreeListCtrl> next(target);
    LeaveTarget();
    if (!self)
        return false;
    if (next && GetState(kControlDragging) && takesInput(*next)) {
        m_pDragTarget = next;
        next->DragEnter(this);
    }
    return !self.isNull();
}

void CTreeListCtrl::LeaveTarget()
{
    const QPointer<CTreeListCtrl> target = m_pDragTarget;
    m_pDragTarget.clear();
    if (m_pDropWnd)
        m_pDropWnd->hide();
    if (GetState(kControlDragging) && m_pDragWnd)
        ShowCursor(tree_list_glyphs::kCursorRefused);
    if (target)
        target->DragLeave(this);
}

/// At the client's left edge, level with the middle of the item. The root's place is the first empty row.
void CTreeListCtrl::PlaceDropWindow(const CTreeListCtrl &target, const CTreeListItem *item)
{
    QRect row;
    const QRect client = target.GetClient();
    int middle = 0;
    if (item != nullptr && target.GetItemRect(item, row)) {
        middle = row.top() + row.height() / 2;
    } else {
        const int height = target.GetItemHeight();
        middle = (target.GetVisibleCount() - target.GetTopIndex()) * height + height / 2;
        middle = std::min(middle, client.bottom() + 1 - height / 2);
    }
    m_pDropWnd->ShowBeside(target.viewport()->mapToGlobal(QPoint(client.left(), middle)));
}

int CTreeListCtrl::EndDraging(const QPoint &point, bool drop)
{
    if (!GetState(kControlDragging))
        return 0;
    // All of the drag is over before anybody is told: a notice may ask a question, or begin the next drag.
    SetState(0, kControlDragging | kControlCaptured);
    delete m_pDragWnd.data();
    delete m_pDropWnd.data();
    UnwatchPress();
    ShowCursor(0);
    const QPointer<CTreeListCtrl> target = m_pDragTarget;
    m_pDragTarget.clear();
    if (!target)
        return 0;
    if (drop && takesInput(*target) && GetSelectedCount() > 0)
        return target->Drop(this, target->viewport()->mapFromGlobal(viewport()->mapToGlobal(point)));
    target->DragLeave(this);
    return 0;
}

void CTreeListCtrl::OnCancelMode()
{
    EndDraging(m_dragStart, false);
}

void CTreeListCtrl::AbandonDrag()
{
    EndDraging(m_dragStart, false);
    UnwatchPress();
    StopTimers();
}

CTLCDragWnd *CTreeListCtrl::GetDragWnd() const
{
    return m_pDragWnd;
}

CTLCDropWnd *CTreeListCtrl::GetDropWnd() const
{
    return m_pDropWnd;
}

CTreeListCtrl *CTreeListCtrl::GetDragTarget() const
{
    return m_pDragTarget;
}

// --- The target ---

std::int64_t CTreeListCtrl::NotifyDrag(int code, CTreeListItem *item, int column, CTreeListCtrl *source)
{
    const QPointer<CTreeListCtrl> self(this);
    CTreeListCtrl *const outer = m_pNoticeSource;
    m_pNoticeSource = source;
    const std::int64_t answer = Notify(code, item, column);
    if (self)
        m_pNoticeSource = outer;
    return answer;
}

void CTreeListCtrl::DragEnter(CTreeListCtrl *source)
{
    NotifyDrag(NotifyDragEnter, nullptr, 0, source);
}

void CTreeListCtrl::DragLeave(CTreeListCtrl *source)
{
    ++m_nDragLeaves;
    SetTargetItem(nullptr);
    SetHoverItem(nullptr);
    NotifyDrag(NotifyDragLeave, nullptr, 0, source);
}

int CTreeListCtrl::DragOver(CTreeListCtrl *source, const QPoint &point, CTreeListItem **item)
{
    const QPointer<CTreeListCtrl> self(this);
    const int leaves = m_nDragLeaves;
    if (item != nullptr)
        *item = nullptr;
    m_dragOverPoint = point;
    CTreeListItem *const over = GetClient().contains(point) ? HitTest(point) : nullptr;
    m_pOver = over;
    int answer = AnswerDragOver(source, over);
    if (!self || leaves != m_nDragLeaves)
        return kRefused; // the owner ended the drag while he was asked
    const bool gone = m_pOver != over;
    m_pOver = nullptr;
    if (gone)
        answer = kRefused; // the owner deleted the item that he was asked about
    CTreeListItem *const still = gone ? nullptr : over;

    const bool hovers = answer == kOnItem || answer == kRefused;
    const bool anew = still != m_pHoverItem;
    SetTargetItem(answer == kOnItem ? still : nullptr);
    SetHoverItem(hovers ? still : nullptr);
    if (hovers && still != nullptr && HasStyle(StyleTree)) {
        BeginTimer(kTimerScroll, answer == kOnItem ? kScrollTaking : kScrollRefusing, anew);
        BeginTimer(kTimerExpand, answer == kOnItem ? kExpandTaking : kExpandRefusing, anew);
    }
    if (item != nullptr)
        *item = still;
    return answer;
}

int CTreeListCtrl::AnswerDragOver(CTreeListCtrl *source, CTreeListItem *item)
{
    if (source == this) {
        if (!HasStyle(StyleDrop) || !HasStyle(StyleDropSelf))
            return kNeutral;
        if (item == nullptr) {
            if (!HasStyle(StyleDropRoot))
                return kNeutral;
            TreeListPosition position = GetFirstSelectedItemPosition();
            const CTreeListItem *const first = GetNextSelectedItem(position);
            return first != nullptr && GetParentItem(first) == nullptr ? kNeutral : kAtRoot;
        }
        if (IsInSelectsTree(item))
            return kNeutral;
    } else {
        if (!HasStyle(StyleDrop))
            return kRefused;
        if (item == nullptr)
            return HasStyle(StyleDropRoot) ? kAtRoot : kRefused;
    }
    return NotifyDrag(NotifyDragOver, item, 0, source) < 0 ? kRefused : kOnItem;
}

int CTreeListCtrl::Drop(CTreeListCtrl *source, const QPoint &point)
{
    const QPointer<CTreeListCtrl> self(this);
    const QPointer<CTreeListCtrl> from(source);
    CTreeListItem *item = nullptr;
    const int answer = DragOver(source, point, &item);
    if (!self || !from)
        return kRefused;
    m_pOver = item;
    DragLeave(source);
    if (!self || !from)
        return kRefused;
    const bool gone = m_pOver != item;
    m_pOver = nullptr;
    if (gone || (answer != kOnItem && answer != kAtRoot))
        return gone ? kRefused : answer;
    NotifyDrag(NotifyDrop, item, 0, source);
    return answer;
}

void CTreeListCtrl::SetTargetItem(CTreeListItem *item)
{
    CTreeListItem *const old = m_pTargetItem;
    if (old == item)
        return;
    m_pTargetItem = item;
    if (old != nullptr)
        InvalidateItem(old);
    if (item != nullptr)
        InvalidateItem(item);
}

void CTreeListCtrl::SetHoverItem(CTreeListItem *item)
{
    if (item == nullptr)
        StopTimers();
    CTreeListItem *const old = m_pHoverItem;
    if (old == item)
        return;
    m_pHoverItem = item;
    if (old != nullptr)
        InvalidateItem(old);
    if (item != nullptr)
        InvalidateItem(item);
}

void CTreeListCtrl::ForgetDragged(const CTreeListItem *item)
{
    if (m_pTargetItem == item)
        m_pTargetItem = nullptr;
    if (m_pOver == item)
        m_pOver = nullptr;
    if (m_pHoverItem == item) {
        m_pHoverItem = nullptr;
        StopTimers();
    }
}

// --- Timers of the target ---

/// anew false: one that runs at that interval goes on, so that a hand that trembles over an item still expands it.
void CTreeListCtrl::BeginTimer(int timer, int interval, bool anew)
{
    const auto index = static_cast<std::size_t>(timer);
    if (!anew && m_timerIntervals[index] == interval)
        return;
    StopTimer(timer);
    m_timerIds[index] = startTimer(interval);
    m_timerIntervals[index] = interval;
}

void CTreeListCtrl::StopTimer(int timer)
{
    const auto index = static_cast<std::size_t>(timer);
    if (m_timerIntervals[index] < 0)
        return;
    killTimer(m_timerIds[index]);
    m_timerIds[index] = 0;
    m_timerIntervals[index] = -1;
}

void CTreeListCtrl::StopTimers()
{
    StopTimer(kTimerExpand);
    StopTimer(kTimerScroll);
}

int CTreeListCtrl::GetTimerInterval(int timer) const
{
    const bool known = timer == kTimerExpand || timer == kTimerScroll;
    return known ? m_timerIntervals[static_cast<std::size_t>(timer)] : -1;
}

void CTreeListCtrl::timerEvent(QTimerEvent *event)
{
    for (const int timer : {kTimerExpand, kTimerScroll}) {
        if (GetTimerInterval(timer) >= 0 && m_timerIds[static_cast<std::size_t>(timer)] == event->timerId()) {
            OnTimer(timer);
            return;
        }
    }
    QAbstractScrollArea::timerEvent(event);
}

void CTreeListCtrl::OnTimer(int timer)
{
    if (GetTimerInterval(timer) < 0)
        return;
    CTreeListItem *const item = HitTest(m_dragOverPoint);
    if (timer == kTimerExpand) {
        StopTimer(kTimerExpand);
        if (item != nullptr && item == m_pHoverItem)
            Expand(item, kExpand);
        return;
    }
    const int row = item != nullptr ? GetShowIndex(item) : -1;
    const int top = GetTopIndex();
    const int rows = std::max(1, GetClient().height() / GetItemHeight());
    QAbstractSlider::SliderAction step = QAbstractSlider::SliderNoAction;
    if (row >= 0 && row == top)
        step = QAbstractSlider::SliderSingleStepSub;
    else if (row >= top + rows - 1)
        step = QAbstractSlider::SliderSingleStepAdd;
    if (step == QAbstractSlider::SliderNoAction) {
        StopTimer(kTimerScroll);
        return;
    }
    verticalScrollBar()->triggerAction(step);
    StopTimer(kTimerExpand);
    CTreeListItem *const now = HitTest(m_dragOverPoint);
    if (now != m_pTargetItem)
        SetTargetItem(nullptr); // the owner was not asked about the row that came under the pointer
    SetHoverItem(now);
}

// --- The picture of the dragged rows ---

/// The client with nothing but the selected rows that are on the screen; rows: where they stand.
QImage CTreeListCtrl::PaintSelectedRows(QRegion &rows) const
{
    const QRect client = GetClient();
    const qreal ratio = devicePixelRatioF();
    QImage whole(client.size() * ratio, QImage::Format_ARGB32_Premultiplied);
    whole.setDevicePixelRatio(ratio);
    whole.fill(Qt::transparent);
    CTreeListItem *item = GetFirstShowItem(GetTopIndex());
    for (; item != nullptr; item = GetNextShowItem(item)) {
        QRect row;
        if (!GetItemRect(item, row) || row.top() > client.bottom())
            break;
        if (item->Has(kItemSelected))
            rows += row & client;
    }
    if (whole.isNull() || rows.isEmpty())
        return whole;
    QImage all = whole;
    QPainter painter(&all);
    DrawCtrl(painter, client);
    painter.end();
    QPainter cut(&whole);
    cut.setClipRegion(rows);
    cut.drawImage(0, 0, all);
    return whole;
}

QPixmap CTreeListCtrl::GetDragImage(const QSize &size) const
{
    QRegion rows;
    const QImage selected = PaintSelectedRows(rows);
    const qreal ratio = devicePixelRatioF();
    QImage image(size * ratio, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::transparent);
    if (image.isNull())
        return {};
    const QPoint centre(size.width() / 2, size.height() / 2);
    QPainter painter(&image);
    painter.drawImage(centre - m_dragStart, selected);
    // Half transparent around the pointer, and nothing at the edges.
    QRadialGradient fading(centre, std::min(centre.x(), centre.y()));
    fading.setColorAt(0.0, QColor(0, 0, 0, 128));
    fading.setColorAt(0.5, QColor(0, 0, 0, 128));
    fading.setColorAt(1.0, QColor(0, 0, 0, 0));
    painter.setCompositionMode(QPainter::CompositionMode_DestinationIn);
    painter.fillRect(QRect(QPoint(), size), fading);
    painter.end();
    return QPixmap::fromImage(image);
}

/// As large as the client, with the selected rows from its top on; shape: what they take of it.
QPixmap CTreeListCtrl::GetPlainDragImage(QRegion &shape) const
{
    QRegion rows;
    const QImage selected = PaintSelectedRows(rows);
    QImage image(selected.size(), selected.format());
    image.setDevicePixelRatio(selected.devicePixelRatio());
    image.fill(Qt::transparent);
    shape = rows.translated(0, -rows.boundingRect().top());
    if (shape.isEmpty())
        shape = QRegion(0, 0, 1, 1); // none of them is on the screen
    if (!image.isNull()) {
        QPainter painter(&image);
        painter.drawImage(QPoint(0, -rows.boundingRect().top()), selected);
    }
    return QPixmap::fromImage(image);
}
