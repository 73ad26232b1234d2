#include "controls/treelist/TreeListCtrl.h"

#include "contracts/HostDialog.h"
#include "controls/treelist/TreeListAccessible.h"
#include "controls/treelist/TreeListColors.h"
#include "controls/treelist/TreeListEditors.h"
#include "controls/treelist/TreeListGlyphs.h"
#include "controls/treelist/TreeListHeaderCtrl.h"
#include "controls/treelist/TreeListTipCtrl.h"

#include <QEvent>
#include <QFontInfo>
#include <QScrollBar>

#include <memory>
#include <new>
#include <utility>

namespace {

/// Single rows that are marked one by one; beyond that the whole view is.
constexpr int kMarkedItems = 8;

CAdUiBaseDialog *DialogOf(const QWidget &widget)
{
    for (QWidget *above = widget.parentWidget(); above; above = above->parentWidget()) {
        if (auto *dialog = qobject_cast<CAdUiBaseDialog *>(above))
            return dialog;
    }
    return nullptr;
}

} // namespace

// --- Life ------------------------------------------------------------------------------------------------------------

CTreeListOwner::~CTreeListOwner() = default;

CTreeListCtrl::CTreeListCtrl(QWidget *parent)
    : QAbstractScrollArea(parent), m_colors(tree_list_colors::kDefaults), m_glyphs(std::make_unique<CTreeListGlyphs>())
{
    setObjectName(QLatin1String(kClassName));
    setFocusPolicy(Qt::StrongFocus);
    setFrameStyle(QFrame::Box | QFrame::Plain);
    setLineWidth(1);
    viewport()->setMouseTracking(true);
    viewport()->setCursor(Qt::ArrowCursor);
    viewport()->setAttribute(Qt::WA_OpaquePaintEvent);
    verticalScrollBar()->setSingleStep(1);
    horizontalScrollBar()->setSingleStep(kTreeListStep);
    m_client = maximumViewportSize();
    m_accessible = std::make_unique<CTreeListAccessible>(*this);
}

CTreeListCtrl::~CTreeListCtrl()
{
    // What the parts do while they go comes back to a control that is whole, and to no owner.
    m_pOwner = nullptr;
    m_nRedrawOff = 1;
    AbandonDrag();
    delete std::exchange(m_pStatic, nullptr);
    delete std::exchange(m_pEdit, nullptr);
    delete std::exchange(m_pCombo, nullptr);
    delete std::exchange(m_pTip, nullptr);
    delete std::exchange(m_pHeader, nullptr);
    m_accessible.reset();
}

int CTreeListCtrl::Create(std::uint32_t style, const QRect &rect, QWidget *parent, int id)
{
    if (GetState(kControlCreated))
        return 0;
    if (parent && parent != parentWidget())
        setParent(parent);
    setProperty(kControlIdProperty, id);
    if (!rect.isNull())
        setGeometry(rect);
    if (style & StyleClientEdge)
        setFrameStyle(QFrame::StyledPanel | QFrame::Sunken);
    try {
        m_pHeader = new CTreeListHeaderCtrl(this);
        m_pTip = new CTreeListTipCtrl(this);
        if (!CreateEditors())
            return 0;
    } catch (const std::bad_alloc &) {
        return 0;
    }
    SetState(kControlCreated, 0);
    SetStyle(style & ~StyleClientEdge);
    SetOwnHeight();
    return 1;
}

// --- Style and notices -----------------------------------------------------------------------------------------------

std::uint32_t CTreeListCtrl::SetStyle(std::uint32_t style)
{
    const std::uint32_t old = CTreeListModel::SetStyle(style);
    if (m_pHeader) {
        unsigned bits = 0;
        bits |= HasStyle(StyleHeader) ? 1 : 0;
        bits |= HasStyle(StyleHeaderDrag) ? 2 : 0;
        bits |= HasStyle(StyleHeaderDrop) ? 4 : 0;
        bits |= HasStyle(StyleHeaderSort) ? 8 : 0;
        m_pHeader->SetStyle(bits);
    }
    Layout();
    Invalidate();
    return old;
}

std::int64_t CTreeListCtrl::Notify(int code, CTreeListItem *item, int column)
{
    CTreeListOwner *owner = m_pOwner;
    if (!owner)
        return 0;
    const bool drags = code == NotifyBeginDrag || (code <= NotifyDragEnter && code >= NotifyDrop);
    const TreeListNotice notice{this, code, item, column, drags ? m_pNoticeSource : nullptr};
    CAdUiBaseDialog *dialog = DialogOf(*this);
    if (!dialog)
        return owner->OnTreeListNotify(notice);
    std::int64_t answer = 0;
    const bool done = dialog->RunHandler([&] { answer = owner->OnTreeListNotify(notice); });
    return done ? answer : -1;
}

// --- What the model tells --------------------------------------------------------------------------------------------

void CTreeListCtrl::SetRedraw(bool on)
{
    if (!on) {
        ++m_nRedrawOff;
        return;
    }
    if (m_nRedrawOff > 0 && --m_nRedrawOff == 0 && m_bPaintDue)
        viewport()->update();
}

void CTreeListCtrl::Invalidate()
{
    if (m_bPaintDue) // told to the window already, or told when drawing is on again
        return;
    m_bPaintDue = true;
    if (m_nRedrawOff == 0)
        viewport()->update();
}

void CTreeListCtrl::InvalidateItem(const CTreeListItem *item)
{
    if (m_bPaintDue)
        return;
    // Finding a row costs more than marking the view, and filling marks every row.
    if (m_nRedrawOff > 0 || ++m_nItemsDue > kMarkedItems) {
        Invalidate();
        return;
    }
    QRect row;
    if (GetItemRect(item, row))
        viewport()->update(QRect(0, row.top(), viewport()->width(), row.height()));
}

int CTreeListCtrl::GetFontHeight() const
{
    return -QFontInfo(font()).pixelSize();
}

void CTreeListCtrl::OnItemDeleted(const CTreeListItem *item)
{
    ForgetDragged(item);
    if (m_accessible)
        m_accessible->ItemDeleted(item);
    if (m_pTip && m_pTip->IsOf(item))
        HideTip();
}

void CTreeListCtrl::OnTextChanged(const CTreeListItem *item, int column)
{
    if (m_pTip && m_pTip->IsOf(item, column))
        HideTip();
    if (m_accessible)
        m_accessible->TextChanged(item, column);
}

void CTreeListCtrl::OnStateChanged(const CTreeListItem *item, std::uint32_t changed)
{
    if (m_accessible)
        m_accessible->StateChanged(item, changed);
    if (item == GetModifyItem() && changed & (kItemShowsCheck | kItemShowsLock | kItemShowsImage))
        PlaceEditor();
}

void CTreeListCtrl::OnColumnsChanged()
{
    HideTip();
    Layout();
    if (m_pHeader)
        m_pHeader->OnColumnsChanged();
    if (m_accessible)
        m_accessible->ColumnsChanged();
    PlaceEditor();
    Invalidate();
}

void CTreeListCtrl::OnRowsChanged()
{
    if (m_accessible)
        m_accessible->RowsChanged();
}

// --- Events ----------------------------------------------------------------------------------------------------------

bool CTreeListCtrl::event(QEvent *event)
{
    const bool done = QAbstractScrollArea::event(event);
    if (event->type() == QEvent::Paint)
        DrawNcFrame();
    return done;
}

bool CTreeListCtrl::viewportEvent(QEvent *event)
{
    switch (event->type()) {
    case QEvent::Leave:
        HideTip();
        break;
    case QEvent::Paint:
        if (m_nRedrawOff > 0) { // the rows may be half changed: what stands stays until drawing is on again
            m_bPaintDue = true;
            return true;
        }
        if (m_bLayoutDue)
            LayoutNow();
        m_bPaintDue = false;
        m_nItemsDue = 0;
        break;
    default:
        break;
    }
    return QAbstractScrollArea::viewportEvent(event);
}

void CTreeListCtrl::changeEvent(QEvent *event)
{
    QAbstractScrollArea::changeEvent(event);
    if (event->type() != QEvent::FontChange && event->type() != QEvent::StyleChange)
        return;
    HideTip();
    if (GetState(kControlCreated) && GetItemHeight() == m_nOwnHeight)
        SetOwnHeight();
    Layout();
    Invalidate();
}

void CTreeListCtrl::SetOwnHeight()
{
    SetItemHeight(-1);
    m_nOwnHeight = GetItemHeight();
}

void CTreeListCtrl::showEvent(QShowEvent *event)
{
    QAbstractScrollArea::showEvent(event);
    LayoutNow();
}

void CTreeListCtrl::hideEvent(QHideEvent *event)
{
    QAbstractScrollArea::hideEvent(event);
    HideTip();
    if (GetState(kControlCaptured | kControlDragging))
        OnCancelMode();
}
