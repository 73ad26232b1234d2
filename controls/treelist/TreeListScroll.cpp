#include "controls/treelist/TreeListCtrl.h"
#include "controls/treelist/TreeListGlyphs.h"
#include "controls/treelist/TreeListHeaderCtrl.h"
#include "controls/treelist/TreeListTipCtrl.h"

#include <QResizeEvent>
#include <QScrollBar>
#include <QWheelEvent>

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace {

/// What a wheel tells for one notch.
constexpr int kWheelNotch = 120;

/// "Rows per page": what fits, less one when there is any.
int RowsOfPage(int clientHeight, int itemHeight)
{
    const int rows = std::max(0, clientHeight) / std::max(1, itemHeight);
    return rows > 0 ? rows - 1 : 0;
}

/// Furthest position of a bar over a range of which a page is seen; 0: no bar.
int LastPosition(int range, int page)
{
    return std::max(0, range - std::max(1, page));
}

void SetBar(QScrollBar &bar, int last, int page)
{
    bar.setPageStep(std::max(1, page));
    bar.setRange(0, last);
}

} // namespace

// --- Layout ----------------------------------------------------------------------------------------------------------

/// Expanding asks for it once for each item, so it is only noted here.
void CTreeListCtrl::Layout()
{
    if (m_bLayoutDue)
        return;
    m_bLayoutDue = true;
    QMetaObject::invokeMethod(
        this, [this] { UpToDate(); }, Qt::QueuedConnection);
}

void CTreeListCtrl::UpToDate() const
{
    if (m_bLayoutDue && !m_bLayingOut)
        const_cast<CTreeListCtrl *>(this)->LayoutNow();
}

void CTreeListCtrl::LayoutNow()
{
    if (std::exchange(m_bLayingOut, true))
        return;
    m_bLayoutDue = false;
    HideTip(); // its cell may have moved
    const int headerHeight = m_pHeader && (m_pHeader->GetStyle() & 1) ? m_pHeader->GetHeight() : 0;
    if (std::exchange(m_nHeaderHeight, headerHeight) != headerHeight)
        setViewportMargins(0, headerHeight, 0, 0);
    SetAllScroll();
    if (m_pHeader) {
        const QRect client = viewport()->geometry();
        m_pHeader->setGeometry(client.left(), client.top() - headerHeight, client.width(), headerHeight);
    }
    m_bLayingOut = false;
    PlaceEditor();
}

void CTreeListCtrl::SetAllScroll()
{
    const QSize room = maximumViewportSize();
    const int upright = verticalScrollBar()->sizeHint().width();
    const int level = horizontalScrollBar()->sizeHint().height();
    bool vertical = false, horizontal = false;
    for (;;) { // a bar that is needed once stays, so this ends
        m_client = (room - QSize(vertical ? upright : 0, horizontal ? level : 0)).expandedTo(QSize(0, 0));
        const bool wantsVertical = LastPosition(GetVisibleCount(), RowsOfPage(m_client.height(), GetItemHeight())) > 0;
        const bool wantsHorizontal = GetTotalWidth() > m_client.width();
        if ((vertical || !wantsVertical) && (horizontal || !wantsHorizontal))
            break;
        vertical = vertical || wantsVertical;
        horizontal = horizontal || wantsHorizontal;
    }
    SetVertScroll();
    SetHorzScroll();
}

bool CTreeListCtrl::SetVertScroll()
{
    const int page = RowsOfPage(m_client.height(), GetItemHeight());
    const int last = LastPosition(GetVisibleCount(), page);
    SetBar(*verticalScrollBar(), last, page);
    return last > 0;
}

bool CTreeListCtrl::SetHorzScroll()
{
    const int last = LastPosition(GetTotalWidth(), m_client.width());
    SetBar(*horizontalScrollBar(), last, m_client.width());
    return last > 0;
}

QRect CTreeListCtrl::GetClient() const
{
    UpToDate();
    return {QPoint(0, 0), m_client};
}

int CTreeListCtrl::GetHorzScroll() const
{
    UpToDate();
    return horizontalScrollBar()->value();
}

int CTreeListCtrl::GetVertScroll() const
{
    UpToDate();
    return verticalScrollBar()->value();
}

int CTreeListCtrl::GetTopIndex() const
{
    return GetVertScroll();
}

int CTreeListCtrl::GetCountPerPage() const
{
    return RowsOfPage(GetClient().height(), GetItemHeight());
}

// --- Moving the view -------------------------------------------------------------------------------------------------

int CTreeListCtrl::ColumnLeft(int column) const
{
    int left = 0;
    for (const int number : GetColumnOrderArray()) {
        if (number == column)
            return left;
        left += GetColumnWidth(number);
    }
    return -1;
}

int CTreeListCtrl::EnsureVisible(CTreeListItem *item, int column)
{
    const int row = item ? GetShowIndex(item) : -1;
    if (row < 0)
        return 0;
    const int page = GetCountPerPage();
    QScrollBar &rows = *verticalScrollBar();
    if (row < rows.value())
        rows.setValue(row);
    else if (row > rows.value() + page)
        rows.setValue(row - page);

    int left = ColumnLeft(column);
    if (left < 0)
        return 1;
    const int right = left + GetColumnWidth(column);
    if (column == 0 && HasStyle(StyleTree))
        left += (item->Level() - 1) * kTreeListStep;
    QScrollBar &pixels = *horizontalScrollBar();
    if (left < pixels.value())
        pixels.setValue(left);
    else if (right > pixels.value() + m_client.width())
        pixels.setValue(right - left > m_client.width() ? left : right - m_client.width());
    return 1;
}

void CTreeListCtrl::scrollContentsBy(int dx, int dy)
{
    HideTip();
    m_pressShift = {};
    const std::int64_t down = std::int64_t{dy} * GetItemHeight();
    // The background picture goes sideways with the columns and stands still up and down.
    const bool picture = HasStyle(StyleBkBitmap) && dy != 0;
    if (picture || std::abs(down) >= viewport()->height() || std::abs(dx) >= viewport()->width())
        Invalidate();
    else
        viewport()->scroll(dx, static_cast<int>(down));
    PlaceEditor();
}

void CTreeListCtrl::resizeEvent(QResizeEvent *event)
{
    QAbstractScrollArea::resizeEvent(event);
    HideTip();
    LayoutNow();
}

void CTreeListCtrl::wheelEvent(QWheelEvent *event)
{
    event->accept();
    const QPointer<CTreeListCtrl> alive(this);
    if (GetState(kControlEditing))
        FinishModify();
    if (!alive)
        return;
    HideTip();
    const QPoint turned = event->angleDelta();
    if (std::abs(turned.x()) > std::abs(turned.y())) { // sideways, which goes by pixels
        QAbstractScrollArea::wheelEvent(event);
        event->accept();
        return;
    }
    m_nWheel += turned.y();
    if (std::abs(m_nWheel) < kWheelNotch)
        return;
    const auto step =
        std::exchange(m_nWheel, 0) > 0 ? QAbstractSlider::SliderPageStepSub : QAbstractSlider::SliderPageStepAdd;
    QMetaObject::invokeMethod(
        this,
        [this, step] {
            UpToDate();
            verticalScrollBar()->triggerAction(step);
        },
        Qt::QueuedConnection);
}

// --- Tip -------------------------------------------------------------------------------------------------------------

void CTreeListCtrl::ShowTip(const QPoint &point)
{
    int column = -1;
    CTreeListItem *item = nullptr;
    if (m_pTip && GetState(kControlFocused) && !GetState(kControlCaptured | kControlDragging) &&
        GetClient().contains(point))
        item = HitTest(point, nullptr, &column);
    // Over an editor the old text would hide what is being typed.
    const bool edited = item && item == GetModifyItem() && column == GetModifyColumn() && ShownEditor();
    QRect cell, text;
    if (!item || edited || !GetItemRect(item, column, cell, false) || !GetItemRect(item, column, text, true)) {
        HideTip();
        return;
    }
    if (m_pTip->IsOf(item, column))
        return;
    const TreeListText words = item->TextView(column);
    m_glyphs->texts.SetFont(font());
    if (m_glyphs->texts.WidthOf(words) <= std::max(0, cell.left() + cell.width() - text.left())) { // as TextFits has it
        HideTip();
        return;
    }
    m_pTip->Show(item, column, OneLine(words), QRect(viewport()->mapToGlobal(text.topLeft()), text.size()),
                 TreeListAlignment(GetColumnFormat(column)));
}

void CTreeListCtrl::HideTip()
{
    if (m_pTip)
        m_pTip->Hide();
}
