#include "controls/treelist/TreeListHeaderCtrl.h"

#include "contracts/CoreServices.h"
#include "controls/MyToolTipCtrl.h"
#include "controls/WideText.h"
#include "controls/treelist/TreeListHeaderWindows.h"

#include <QAction>
#include <QContextMenuEvent>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QScrollBar>
#include <QToolTip>

#include <algorithm>

namespace {

constexpr int kTolerance = 5; // pixels on both sides of a divider that belong to it
constexpr int kNarrow = 4;    // at most this part of a column belongs to a divider, so that its middle can be clicked
constexpr int kKeyStep = 8;   // pixels by which a key sizes a column

enum HeaderMessage : unsigned {
    kMsgHeader = 60200,
    kMsgFitColumn = 60201,
    kMsgFitAll = 60202,
    kMsgNameless = 60203,
};

QString message(unsigned number)
{
    return ToQString(ZEMGis::CModuleConfiguration::Instance()->GetMsg(number));
}

} // namespace

CTreeListHeaderCtrl::CTreeListHeaderCtrl(CTreeListCtrl *list) : QWidget(list), m_list(*list)
{
    setObjectName(QLatin1String(CTreeListCtrl::kHeaderClassName));
    setMouseTracking(true);
    setVisible(false);
    connect(list->horizontalScrollBar(), &QScrollBar::valueChanged, this, [this] { update(); });
    TellCurrent();
}

CTreeListHeaderCtrl::~CTreeListHeaderCtrl()
{
    End();
}

std::uint32_t CTreeListHeaderCtrl::SetStyle(std::uint32_t style)
{
    const std::uint32_t old = m_nStyle;
    m_nStyle = style;
    const bool shown = (style & kHeaderShown) != 0;
    const bool reached = focusPolicy() != Qt::NoFocus;
    setFocusPolicy(shown ? Qt::TabFocus : Qt::NoFocus);
    if (shown && !reached)
        ComeBeforeRows();
    setVisible(shown);
    update();
    return old;
}

/// Tab goes through the header to the rows, as they stand; from the rows it leaves the control.
void CTreeListHeaderCtrl::ComeBeforeRows()
{
    QWidget *before = m_list.previousInFocusChain();
    while (before != &m_list && before->focusPolicy() == Qt::NoFocus)
        before = before->previousInFocusChain();
    if (before != &m_list && before != this)
        setTabOrder(before, this);
}

QSize CTreeListHeaderCtrl::sizeHint() const
{
    return {m_list.GetTotalWidth(), GetHeight()};
}

// --- Columns and their places ---

std::vector<CTreeListHeaderCtrl::Section> CTreeListHeaderCtrl::Sections() const
{
    std::vector<Section> sections;
    int left = -m_list.GetHorzScroll();
    for (const int column : m_list.GetColumnOrderArray()) {
        const CTreeListColumnInfo *info = m_list.GetColumns(column);
        if (info == nullptr)
            continue;
        sections.push_back({column, left, std::max(0, info->width)});
        left += sections.back().width;
    }
    return sections;
}

QRect CTreeListHeaderCtrl::GetColumnRect(int column) const
{
    for (const Section &section : Sections()) {
        if (section.column == column)
            return {section.left, 0, section.width, height()};
    }
    return {};
}

int CTreeListHeaderCtrl::GetColumnAt(int x) const
{
    for (const Section &section : Sections()) {
        if (x >= section.left && x < section.right())
            return section.column;
    }
    return -1;
}

int CTreeListHeaderCtrl::GetDividerAt(int x) const
{
    const std::vector<Section> sections = Sections();
    int widthBefore = 0; // of the last section that has some
    int columnBefore = -1;
    for (std::size_t i = 0; i < sections.size(); ++i) {
        if (sections[i].width > 0) {
            widthBefore = sections[i].width;
            columnBefore = sections[i].column;
        }
        const int edge = sections[i].right();
        const bool last = i + 1 == sections.size();
        if (!last && sections[i + 1].width == 0)
            continue; // the edge of the last one without width stands for all of them
        const int after = last ? kNarrow * kTolerance : sections[i + 1].width;
        const bool closed = sections[i].width == 0;
        if (columnBefore >= 0 && x < edge && edge - x <= std::min(kTolerance, widthBefore / kNarrow))
            return columnBefore;
        if (x >= edge && x - edge < std::min(kTolerance, std::max(1, after / kNarrow)))
            return closed ? sections[i].column : columnBefore;
    }
    return -1;
}

int CTreeListHeaderCtrl::Limited(int column, int width) const
{
    const CTreeListColumnInfo *info = m_list.GetColumns(column);
    if (info == nullptr)
        return width;
    if (info->maxWidth > 0)
        width = std::min(width, info->maxWidth);
    return std::max({width, info->minWidth, 0});
}

void CTreeListHeaderCtrl::FitColumn(int column)
{
    if (m_list.GetColumns(column) != nullptr)
        m_list.SetColumnWidth(column, GetWholeWidth(column));
}

void CTreeListHeaderCtrl::OnColumnsChanged()
{
    if (m_gesture != Gesture::None && !IsGestureAlive())
        End();
    if (GetSortColumn() < 0)
        m_pSorted = nullptr;
    const auto &order = m_list.GetColumnOrderArray();
    if (std::find(order.begin(), order.end(), m_nCurrent) == order.end())
        m_nCurrent = hasFocus() && !order.empty() ? order.front() : -1;
    TellCurrent();
    update();
}

// --- Clicks ---

bool CTreeListHeaderCtrl::Sorts(int column) const
{
    const std::uint32_t format = m_list.GetColumnFormat(column);
    return (m_nStyle & kHeaderSort) && (format & kColumnSorts) && (format & kColumnSortBits);
}

int CTreeListHeaderCtrl::GetSortColumn() const
{
    for (int column = 0; m_pSorted != nullptr && column < m_list.GetColumnCount(); ++column) {
        if (m_list.GetColumns(column) == m_pSorted)
            return column;
    }
    return -1;
}

void CTreeListHeaderCtrl::SetSortColumn(int column, bool descending)
{
    m_pSorted = m_list.GetColumns(column);
    m_bDescending = descending;
    update();
}

void CTreeListHeaderCtrl::ClickColumn(int column)
{
    if (!Sorts(column))
        return;
    SetSortColumn(column, IsArrowOn(column) && !m_bDescending);
    Q_EMIT m_list.ColumnClicked(column);
}

int CTreeListCtrl::GetSortColumn() const
{
    return m_pHeader != nullptr ? m_pHeader->GetSortColumn() : -1;
}

bool CTreeListCtrl::IsSortDescending() const
{
    return m_pHeader != nullptr && m_pHeader->IsSortDescending();
}

void CTreeListCtrl::SetSortColumn(int column, bool descending)
{
    if (m_pHeader != nullptr)
        m_pHeader->SetSortColumn(column, descending);
}

// --- Keys ---

void CTreeListHeaderCtrl::SetCurrentColumn(int column)
{
    m_nCurrent = column;
    ShowCurrent();
    TellCurrent();
    update();
}

void CTreeListHeaderCtrl::ShowCurrent()
{
    const QRect rect = GetColumnRect(m_nCurrent);
    if (rect.isEmpty())
        return;
    QScrollBar *bar = m_list.horizontalScrollBar();
    if (rect.left() < 0 || rect.width() > width())
        bar->setValue(bar->value() + rect.left());
    else if (rect.right() >= width())
        bar->setValue(bar->value() + rect.right() + 1 - width());
}

void CTreeListHeaderCtrl::TellCurrent()
{
    const QString header = message(kMsgHeader);
    const CTreeListColumnInfo *info = m_list.GetColumns(m_nCurrent);
    const QString name = info == nullptr ? header : header + QStringLiteral(": ") + NameOf(m_nCurrent);
    if (name != accessibleName())
        setAccessibleName(name);
}

QString CTreeListHeaderCtrl::NameOf(int column) const
{
    const std::wstring text = m_list.GetColumnText(column);
    return text.empty() ? message(kMsgNameless).arg(column + 1) : ToQString(text);
}

void CTreeListHeaderCtrl::focusInEvent(QFocusEvent *event)
{
    const auto &order = m_list.GetColumnOrderArray();
    if (m_nCurrent < 0 && !order.empty())
        SetCurrentColumn(order.front());
    QWidget::focusInEvent(event);
    m_list.SetState(kControlFocused, 0); // the header is a part of the control
    m_list.Invalidate();
}

void CTreeListHeaderCtrl::focusOutEvent(QFocusEvent *event)
{
    QWidget::focusOutEvent(event);
    update();
    m_list.OnFocusLeft(event->reason());
}

void CTreeListHeaderCtrl::keyPressEvent(QKeyEvent *event)
{
    const auto &order = m_list.GetColumnOrderArray();
    const auto found = std::find(order.begin(), order.end(), m_nCurrent);
    if (found == order.end()) {
        QWidget::keyPressEvent(event);
        return;
    }
    const int count = static_cast<int>(order.size()), place = static_cast<int>(found - order.begin());
    const bool control = event->modifiers() & Qt::ControlModifier, shift = event->modifiers() & Qt::ShiftModifier;
    const int step = event->key() == Qt::Key_Left ? -1 : 1;
    const auto goTo = [&](int other) {
        SetCurrentColumn(order[static_cast<std::size_t>(std::clamp(other, 0, count - 1))]);
    };
    switch (event->key()) {
    case Qt::Key_Left:
    case Qt::Key_Right:
        if (control && !EndsEdit())
            break;
        if (control && shift) {
            const bool moves = (m_nStyle & kHeaderColumnDrag) && (m_nStyle & kHeaderColumnDrop);
            if (moves && place + step >= 0 && place + step < count)
                MoveColumn(m_nCurrent, step < 0 ? place - 1 : place + 2);
        } else if (control) {
            const int width = m_list.GetColumnWidth(m_nCurrent);
            if (const int limited = Limited(m_nCurrent, width + step * kKeyStep); limited != width)
                m_list.SetColumnWidth(m_nCurrent, limited);
        } else {
            goTo(place + step);
        }
        ShowCurrent();
        break;
    case Qt::Key_Home:
        goTo(0);
        break;
    case Qt::Key_End:
        goTo(count - 1);
        break;
    case Qt::Key_Plus:
        if (EndsEdit())
            FitColumn(m_nCurrent);
        break;
    case Qt::Key_Space:
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (EndsEdit())
            ClickColumn(m_nCurrent);
        break;
    default:
        QWidget::keyPressEvent(event);
    }
}

// --- The menu ---

std::unique_ptr<QMenu> CTreeListHeaderCtrl::MakeMenu(int column)
{
    auto menu = std::make_unique<QMenu>(this);
    const std::size_t shown = m_list.GetColumnOrderArray().size();
    for (int each = 0; each < m_list.GetColumnCount(); ++each) {
        const bool hidden = m_list.GetColumnFormat(each) & kColumnHidden;
        QAction *action = menu->addAction(NameOf(each).replace(QLatin1Char('&'), QStringLiteral("&&")));
        action->setCheckable(true);
        action->setChecked(!hidden);
        action->setEnabled(hidden || shown > 1); // a list without columns could not be brought back
        connect(action, &QAction::triggered, this, [this, each](bool show) {
            const std::uint32_t bit = kColumnHidden;
            m_list.SetColumnFormat(each, show ? 0 : bit, show ? bit : 0);
            if (show && m_list.GetColumnWidth(each) == 0)
                FitColumn(each); // shown means seen
        });
    }
    menu->addSeparator();
    if (column >= 0)
        connect(menu->addAction(message(kMsgFitColumn)), &QAction::triggered, this,
                [this, column] { FitColumn(column); });
    connect(menu->addAction(message(kMsgFitAll)), &QAction::triggered, this, [this] {
        for (const int each : std::vector<int>(m_list.GetColumnOrderArray()))
            FitColumn(each);
    });
    return menu;
}

void CTreeListHeaderCtrl::contextMenuEvent(QContextMenuEvent *event)
{
    OnCancelMode();
    if (!EndsEdit())
        return;
    const bool keyboard = event->reason() == QContextMenuEvent::Keyboard;
    const QRect current = GetColumnRect(m_nCurrent);
    const QPoint at = keyboard && !current.isEmpty() ? mapToGlobal(current.bottomLeft()) : event->globalPos();
    QMenu *menu = MakeMenu(keyboard ? m_nCurrent : GetColumnAt(event->pos().x())).release();
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->popup(at);
}

// --- Other events ---

bool CTreeListHeaderCtrl::event(QEvent *event)
{
    if (event->type() != QEvent::ToolTip)
        return QWidget::event(event);
    const auto *help = static_cast<QHelpEvent *>(event);
    const int x = help->pos().x();
    if (const QString text = CutTextAt(x); !text.isEmpty())
        QToolTip::showText(help->globalPos(), PlainTip(ToWide(text)), this, GetColumnRect(GetColumnAt(x)));
    else
        QToolTip::hideText();
    return true;
}

void CTreeListHeaderCtrl::hideEvent(QHideEvent *event)
{
    OnCancelMode();
    QWidget::hideEvent(event);
}

void CTreeListHeaderCtrl::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::EnabledChange && !isEnabled())
        OnCancelMode();
    if (event->type() == QEvent::LanguageChange)
        TellCurrent();
    QWidget::changeEvent(event);
    update();
}
