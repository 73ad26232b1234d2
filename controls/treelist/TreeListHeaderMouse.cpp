// Sizing and dragging the columns of the tree list's header.
#include "controls/treelist/TreeListGlyphs.h"
#include "controls/treelist/TreeListHeaderCtrl.h"
#include "controls/treelist/TreeListHeaderWindows.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QScrollBar>

#include <algorithm>

namespace {

constexpr int kScrollInterval = 50; // milliseconds
constexpr int kScrollStep = 16;     // pixels

} // namespace

CTLHDragWnd *CTreeListHeaderCtrl::GetDragWnd() const
{
    return m_pDragWnd;
}

CTLHDropWnd *CTreeListHeaderCtrl::GetDropWnd() const
{
    return m_pDropWnd;
}

// --- From the press to the release ---

bool CTreeListHeaderCtrl::EndsEdit()
{
    if (m_list.GetState(kControlEditing))
        m_list.FinishModify();
    return !m_list.GetState(kControlEditing);
}

void CTreeListHeaderCtrl::Begin(Gesture gesture, int column, const QPoint &at)
{
    m_gesture = gesture;
    m_nColumn = column;
    m_pColumn = m_list.GetColumns(column);
    m_press = at;
    m_nWidthBefore = m_list.GetColumnWidth(column);
    qApp->installEventFilter(this); // Escape goes to whoever has the focus
    update();
}

void CTreeListHeaderCtrl::End()
{
    if (m_gesture == Gesture::None)
        return;
    m_gesture = Gesture::None;
    m_nColumn = -1;
    m_pColumn = nullptr;
    m_scroll.stop();
    qApp->removeEventFilter(this);
    delete m_pDragWnd;
    delete m_pDropWnd;
    unsetCursor();
    update();
}

bool CTreeListHeaderCtrl::IsGestureAlive() const
{
    return m_pColumn != nullptr && m_list.GetColumns(m_nColumn) == m_pColumn;
}

void CTreeListHeaderCtrl::OnCancelMode()
{
    const int column = m_gesture == Gesture::Sizing && IsGestureAlive() ? m_nColumn : -1;
    End();
    if (column >= 0 && m_list.GetColumnWidth(column) != m_nWidthBefore)
        m_list.SetColumnWidth(column, m_nWidthBefore);
}

void CTreeListHeaderCtrl::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton || m_gesture != Gesture::None) {
        OnCancelMode();
        return;
    }
    if (!EndsEdit())
        return;
    const QPoint at = event->pos();
    if (const int divider = GetDividerAt(at.x()); divider >= 0)
        Begin(Gesture::Sizing, divider, at);
    else if (const int column = GetColumnAt(at.x()); column >= 0)
        Begin(Gesture::Pressed, column, at);
}

void CTreeListHeaderCtrl::mouseMoveEvent(QMouseEvent *event)
{
    const QPoint at = event->pos();
    if (m_gesture == Gesture::None) {
        SetHot(rect().contains(at) && GetDividerAt(at.x()) < 0 ? GetColumnAt(at.x()) : -1);
        SetCursorAt(at);
        return;
    }
    if (!(event->buttons() & Qt::LeftButton)) { // let go where nobody told us
        OnCancelMode();
        return;
    }
    const bool drags = m_gesture == Gesture::Pressed && (m_nStyle & kHeaderColumnDrag) &&
                       (at - m_press).manhattanLength() >= QApplication::startDragDistance();
    if (m_gesture == Gesture::Sizing)
        SizeTo(at.x());
    else if (drags)
        StartDrag();
    if (m_gesture == Gesture::Dragging)
        DragTo(at);
}

void CTreeListHeaderCtrl::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton || m_gesture == Gesture::None)
        return;
    const QPoint at = event->pos();
    const Gesture gesture = m_gesture;
    const int column = m_nColumn;
    if (gesture == Gesture::Sizing)
        SizeTo(at.x());
    End();
    if (gesture == Gesture::Dragging) {
        if (const auto place = PlaceAt(at))
            MoveColumn(column, *place);
    }
    SetCursorAt(at);
    if (gesture == Gesture::Pressed && rect().contains(at) && GetColumnAt(at.x()) == column)
        ClickColumn(column);
}

void CTreeListHeaderCtrl::mouseDoubleClickEvent(QMouseEvent *event)
{
    const int divider = GetDividerAt(event->pos().x());
    if (event->button() != Qt::LeftButton || divider < 0)
        mousePressEvent(event);
    else if (EndsEdit())
        FitColumn(divider);
}

void CTreeListHeaderCtrl::leaveEvent(QEvent *event)
{
    SetHot(-1);
    QWidget::leaveEvent(event);
}

bool CTreeListHeaderCtrl::eventFilter(QObject *watched, QEvent *event)
{
    const bool key = event->type() == QEvent::KeyPress || event->type() == QEvent::ShortcutOverride;
    if (key && static_cast<QKeyEvent *>(event)->key() == Qt::Key_Escape) {
        event->accept();
        if (event->type() == QEvent::KeyPress)
            OnCancelMode();
        return true;
    }
    if (event->type() == QEvent::WindowDeactivate && watched == window())
        OnCancelMode();
    return QWidget::eventFilter(watched, event);
}

// --- Sizing ---

void CTreeListHeaderCtrl::SizeTo(int x)
{
    if (x == m_press.x() && m_list.GetColumnWidth(m_nColumn) == m_nWidthBefore)
        return; // a click alone puts no limits on a width
    // By how far the pointer went and not by where the column stands now: a narrower list may scroll meanwhile.
    const int width = Limited(m_nColumn, m_nWidthBefore + x - m_press.x());
    if (width != m_list.GetColumnWidth(m_nColumn))
        m_list.SetColumnWidth(m_nColumn, width);
}

// --- Dragging ---

void CTreeListHeaderCtrl::StartDrag()
{
    const std::vector<Section> sections = Sections();
    const auto found = std::find_if(sections.begin(), sections.end(),
                                    [this](const Section &section) { return section.column == m_nColumn; });
    if (found == sections.end())
        return;
    m_gesture = Gesture::Dragging;
    m_nGrab = m_press.x() - found->left;
    m_pDragWnd = new CTLHDragWnd(PictureOf(*found), this);
    m_pDropWnd = new CTLHDropWnd(height(), this);
    update();
}

void CTreeListHeaderCtrl::DragTo(const QPoint &at)
{
    m_pointer = at;
    const bool beside = at.x() < 0 || at.x() >= width();
    if (!beside || !PlaceAt(at))
        m_scroll.stop();
    else if (!m_scroll.isActive())
        m_scroll.start(kScrollInterval, this);
    m_pDragWnd->ShowAt(mapToGlobal(QPoint(at.x() - m_nGrab, at.y() - m_press.y())));
    const auto place = PlaceAt(at);
    if (!place) {
        m_pDropWnd->hide();
        setCursor(tree_list_glyphs::Cursor(tree_list_glyphs::kCursorRefused, devicePixelRatioF()));
        return;
    }
    const std::vector<Section> sections = Sections();
    const auto before = static_cast<std::size_t>(*place);
    const int edge = before < sections.size() ? sections[before].left : sections.back().right();
    m_pDropWnd->ShowAtEdge(mapToGlobal(QPoint(edge, 0)));
    setCursor(Qt::ArrowCursor);
}

void CTreeListHeaderCtrl::OnScrollTimer()
{
    if (m_gesture != Gesture::Dragging || !m_scroll.isActive())
        return;
    QScrollBar *bar = m_list.horizontalScrollBar();
    bar->setValue(bar->value() + (m_pointer.x() < 0 ? -kScrollStep : kScrollStep));
    DragTo(m_pointer);
}

void CTreeListHeaderCtrl::timerEvent(QTimerEvent *event)
{
    if (event->timerId() == m_scroll.timerId())
        OnScrollTimer();
    else
        QWidget::timerEvent(event);
}

std::optional<int> CTreeListHeaderCtrl::PlaceAt(const QPoint &at) const
{
    const int beside = height(); // that far beside the header a column still is over it
    if (!(m_nStyle & kHeaderColumnDrop) || !rect().adjusted(-beside, -beside, beside, beside).contains(at))
        return std::nullopt;
    const std::vector<Section> sections = Sections();
    if (sections.empty())
        return std::nullopt;
    const auto found = std::find_if(sections.begin(), sections.end(), [&at](const Section &section) {
        return at.x() < section.left + section.width / 2;
    });
    return static_cast<int>(found - sections.begin());
}

void CTreeListHeaderCtrl::MoveColumn(int column, int place)
{
    std::vector<int> order = m_list.GetColumnOrderArray();
    const auto found = std::find(order.begin(), order.end(), column);
    if (found == order.end() || place < 0 || place > static_cast<int>(order.size()))
        return;
    const int from = static_cast<int>(found - order.begin());
    if (place == from || place == from + 1)
        return;
    order.erase(found);
    order.insert(order.begin() + (place > from ? place - 1 : place), column);
    m_list.SetColumnOrderArray(order);
}

// --- What lies under the pointer ---

void CTreeListHeaderCtrl::SetHot(int column)
{
    if (m_nHot == column)
        return;
    m_nHot = column;
    update();
}

void CTreeListHeaderCtrl::SetCursorAt(const QPoint &at)
{
    if (rect().contains(at) && GetDividerAt(at.x()) >= 0)
        setCursor(Qt::SplitHCursor);
    else
        unsetCursor();
}
