#include "controls/XListCtrl.h"

#include "contracts/HostDialog.h"
#include "controls/WideText.h"
#include "controls/XComboList.h"
#include "controls/XHeaderCtrl.h"
#include "controls/XListDelegate.h"
#include "controls/XListModel.h"
#include "controls/rules/ListMessages.h"

#include <QHelpEvent>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QScrollBar>
#include <QToolTip>

#include <algorithm>

namespace {

constexpr unsigned kGridLines = 1;
constexpr int kRowPadding = 8; // pixels that a row is higher than its letters

} // namespace

CXListCtrl::CXListCtrl(QWidget *parent)
    : QTableView(parent), m_cells(*this), m_model(new CXListModel(*this)),
      m_delegate(new CXListDelegate(*this, *m_model)), m_header(new CXHeaderCtrl(m_cells, this))
{
    setHorizontalHeader(m_header);
    setModel(m_model);
    setItemDelegate(m_delegate);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setTabKeyNavigation(false);
    setShowGrid(false);
    setWordWrap(false);
    setCornerButtonEnabled(false);
    setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    // A click takes the focus when it goes on to the table, behind what it does to its cell.
    setFocusPolicy(Qt::TabFocus);
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    SetRowHeight();
    connect(m_header, &QHeaderView::sectionResized, this, &CXListCtrl::PlaceChildren);
    connect(m_header, &QHeaderView::sectionMoved, this, &CXListCtrl::PlaceChildren);
    connect(selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] { viewport()->update(); });
}

CXListCtrl::~CXListCtrl()
{
    if (m_popup)
        m_popup->Close();
    CloseLayers(false);
    if (m_edit)
        m_edit->removeEventFilter(this);
    setModel(nullptr); // what is left of the table would ask for cells that are gone
}

unsigned CXListCtrl::DataChangedMessage()
{
    return RegisteredMessage(kListDataChanged);
}

void CXListCtrl::SetRowHeight()
{
    QFont bold = font();
    bold.setWeight(QFont::Bold);
    const int height = std::max(fontMetrics().height(), QFontMetrics(bold).height()) + kRowPadding;
    verticalHeader()->setMinimumSectionSize(1);
    verticalHeader()->setDefaultSectionSize(height);
}

// --- Columns ---------------------------------------------------------------------------------------------------------

int CXListCtrl::InsertColumn(int column, const std::wstring &text, int width, int format)
{
    const int made = m_model->InsertColumn(column, text, format);
    if (made >= 0)
        m_header->OnColumnInserted(made);
    SetColumnWidth(made, width);
    return made;
}

bool CXListCtrl::SetColumnWidth(int column, int width)
{
    if (column < 0 || column >= GetColumnCount())
        return false;
    if (width == kSizedToHeader) {
        width = m_header->WidthOf(column);
    } else if (width == kSizedToTexts) {
        width = 0;
        for (int row = 0; row < GetItemCount(); ++row) {
            const QModelIndex index = m_model->index(row, column);
            const int text = QFontMetrics(m_delegate->FontOf(index)).horizontalAdvance(m_model->ShownText(row, column));
            constexpr int kAny = 1000;
            const QRect cell(0, 0, kAny, rowHeight(row));
            width = std::max(width, text + 2 + kAny - m_delegate->TextPlace(cell, index).width());
        }
    }
    m_header->resizeSection(column, std::max(width, 0));
    return true;
}

int CXListCtrl::GetColumnWidth(int column) const
{
    return m_header->sectionSize(column);
}

bool CXListCtrl::SetHeaderText(int column, const std::wstring &text)
{
    return m_cells.SetHeaderText(column, text);
}

void CXListCtrl::SetExtendedStyle(unsigned style)
{
    setShowGrid((style & kGridLines) != 0);
}

void CXListCtrl::SetNumericLimits(double min, double max, int whole, int decimals)
{
    m_cells.m_numericLimits = {min, max, whole, decimals};
}

// --- Rows ------------------------------------------------------------------------------------------------------------

int CXListCtrl::InsertItem(int row, const std::wstring &text)
{
    return InsertItem(row, text, kSystemColor, kSystemColor);
}

int CXListCtrl::InsertItem(int row, const std::wstring &text, std::uint32_t textColor, std::uint32_t backColor)
{
    return m_model->InsertRow(row, text, textColor, backColor);
}

bool CXListCtrl::DeleteItem(int row)
{
    if (row < 0 || row >= GetItemCount())
        return false;
    // The toolkit would choose another row in place of the current one.
    if (currentIndex().row() == row)
        selectionModel()->setCurrentIndex({}, QItemSelectionModel::NoUpdate);
    m_model->RemoveRows(row, row);
    return true;
}

bool CXListCtrl::DeleteAllItems()
{
    if (GetItemCount() == 0)
        return true;
    selectionModel()->setCurrentIndex({}, QItemSelectionModel::NoUpdate);
    m_model->RemoveRows(0, GetItemCount() - 1);
    return true;
}

bool CXListCtrl::SetCurSel(int row)
{
    if (row < 0 || row >= GetItemCount())
        return false;
    const int column = std::max(currentIndex().column(), 0);
    const auto how =
        selectionMode() == SingleSelection ? QItemSelectionModel::ClearAndSelect : QItemSelectionModel::Select;
    selectionModel()->setCurrentIndex(m_model->index(row, column), how | QItemSelectionModel::Rows);
    return true;
}

int CXListCtrl::GetCurSel() const
{
    int first = -1;
    for (const QItemSelectionRange &range : selectionModel()->selection()) {
        if (first < 0 || range.top() < first)
            first = range.top();
    }
    return first;
}

// --- Places ----------------------------------------------------------------------------------------------------------

ListRect CXListCtrl::CellRect(int row, int column) const
{
    QRect rect;
    GetSubItemRect(row, column, kBounds, rect);
    return {rect.left(), rect.top(), rect.right() + 1, rect.bottom() + 1};
}

bool CXListCtrl::GetSubItemRect(int row, int column, int code, QRect &rect) const
{
    if (row < 0 || row >= GetItemCount() || column < 0 || column >= GetColumnCount())
        return false;
    rect = visualRect(m_model->index(row, column));
    if (code == kIcon)
        rect.setWidth(0); // rows have no icons
    return true;
}

bool CXListCtrl::UpdateSubItem(int row, int column)
{
    if (row < 0 || row >= GetItemCount() || column < 0 || column >= GetColumnCount())
        return false;
    RepaintCell(row, column);
    return true;
}

CXListCtrl::Cell CXListCtrl::HitTest(const QPoint &point) const
{
    const int row = rowAt(point.y());
    return {row, row < 0 ? -1 : columnAt(point.x())};
}

void CXListCtrl::RepaintCell(int row, int column)
{
    m_model->CellChanged(row, column);
}

void CXListCtrl::RepaintHeader(int column)
{
    m_model->HeaderChanged(column);
}

// --- The parent ------------------------------------------------------------------------------------------------------

CAdUiBaseDialog *CXListCtrl::Dialog() const
{
    for (QWidget *above = parentWidget(); above; above = above->parentWidget()) {
        if (auto *dialog = qobject_cast<CAdUiBaseDialog *>(above))
            return dialog;
    }
    return nullptr;
}

void CXListCtrl::RunAsHandler(const std::function<void()> &handler)
{
    if (CAdUiBaseDialog *dialog = Dialog())
        dialog->RunHandler(handler);
    else
        handler();
}

void CXListCtrl::TellChanged(int row, int column)
{
    CAdUiBaseDialog *dialog = Dialog();
    if (!dialog) {
        Q_EMIT CellChanged(row, column);
        return;
    }
    dialog->RunHandler([=] {
        dialog->OnWindowMessage(DataChangedMessage(), static_cast<std::uintptr_t>(row),
                                static_cast<std::intptr_t>(column));
    });
}

// --- Events of the widget --------------------------------------------------------------------------------------------

QSize CXListCtrl::sizeHint() const
{
    constexpr int kRows = 5;
    int width = m_header->length() + 2 * frameWidth() + style()->pixelMetric(QStyle::PM_ScrollBarExtent);
    width = std::max(width, 160);
    return {width, m_header->sizeHint().height() + kRows * verticalHeader()->defaultSectionSize() + 2 * frameWidth()};
}

void CXListCtrl::PlaceChildren()
{
    PlaceEditBox();
    PlaceBrowseButtons();
}

void CXListCtrl::scrollContentsBy(int dx, int dy)
{
    QTableView::scrollContentsBy(dx, dy);
    PlaceChildren();
}

void CXListCtrl::resizeEvent(QResizeEvent *event)
{
    QTableView::resizeEvent(event);
    PlaceChildren();
}

void CXListCtrl::hideEvent(QHideEvent *event)
{
    ClosePopup();
    CloseLayers(false);
    QTableView::hideEvent(event);
}

void CXListCtrl::changeEvent(QEvent *event)
{
    QTableView::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
        SetRowHeight();
        PlaceChildren();
    }
}

void CXListCtrl::focusInEvent(QFocusEvent *event)
{
    QTableView::focusInEvent(event);
    viewport()->update();
}

void CXListCtrl::focusOutEvent(QFocusEvent *event)
{
    QTableView::focusOutEvent(event);
    viewport()->update();
}

bool CXListCtrl::ShowCutText(const QPoint &point, const QPoint &onScreen)
{
    const Cell cell = HitTest(point);
    const QModelIndex index = m_model->index(cell.row, cell.column);
    if (!index.isValid())
        return false;
    const QString text = m_model->ShownText(cell.row, cell.column);
    const QRect place = visualRect(index);
    const int needed = QFontMetrics(m_delegate->FontOf(index)).horizontalAdvance(text);
    if (needed <= m_delegate->TextPlace(place, index).width())
        return false;
    QToolTip::showText(onScreen, text.toHtmlEscaped(), viewport(), place);
    return true;
}

bool CXListCtrl::viewportEvent(QEvent *event)
{
    if (event->type() == QEvent::ToolTip) {
        const auto *help = static_cast<QHelpEvent *>(event);
        if (ShowCutText(help->pos(), help->globalPos()))
            return true;
    }
    return QTableView::viewportEvent(event);
}

bool CXListCtrl::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_edit && FilterEditBox(event))
        return true;
    if (watched == m_layers && event->type() == QEvent::Hide)
        CloseLayers(false);
    return QTableView::eventFilter(watched, event);
}

#include "moc_XListCtrl.cpp"
