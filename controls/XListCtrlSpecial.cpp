// Colour, hatch and layer columns of the extended list: their browse buttons and the layer list.
#include "contracts/DrawingHost.h"
#include "contracts/HostDialog.h"
#include "controls/WideText.h"
#include "controls/XListCtrl.h"

#include <QListWidget>
#include <QPushButton>

#include <algorithm>
#include <cwchar>
#include <string>
#include <utility>

namespace {

constexpr int kButtonWidth = 20;
constexpr int kLayersBelow = 20; // pixels from a cell's top to its layer list
constexpr int kLayersWidth = 150;
constexpr int kLayersHeight = 200;

} // namespace

QListWidget *CXListCtrl::GetLayerList() const
{
    return m_layers;
}

void CXListCtrl::AddColorColumn(int column)
{
    m_cells.m_colorColumns.Add(column);
    viewport()->update();
}

void CXListCtrl::ClearColorColumns()
{
    m_cells.m_colorColumns.Clear();
    viewport()->update();
}

void CXListCtrl::AddHatchColumn(int column)
{
    m_cells.m_hatchColumns.Add(column);
}

void CXListCtrl::ClearHatchColumns()
{
    m_cells.m_hatchColumns.Clear();
}

void CXListCtrl::AddLayerColumn(int column)
{
    m_cells.m_layerColumns.Add(column);
}

void CXListCtrl::ClearLayerColumns()
{
    m_cells.m_layerColumns.Clear();
}

void CXListCtrl::SetColorLabel(const std::wstring &label)
{
    m_cells.m_strColorLabel = label;
    viewport()->update();
}

bool CXListCtrl::HasBrowseButton(int row, int column) const
{
    if (row < 0 || row != m_cells.m_nCurrentRow || column != m_cells.m_nCurrentColumn)
        return false;
    return std::ranges::any_of(std::initializer_list<QPushButton *>{m_colorButton, m_hatchButton, m_layerButton},
                               [](const QPushButton *button) { return button && !button->isHidden(); });
}

void CXListCtrl::ShowBrowseButtons()
{
    const int row = m_cells.m_nCurrentRow, column = m_cells.m_nCurrentColumn;
    const bool known = row >= 0 && row < GetItemCount() && column < GetColumnCount();
    const auto show = [&](QPointer<QPushButton> &button, const CListCells::CColumnSet &columns, int controlId,
                          void (CXListCtrl::*browse)(), bool bitmap) {
        if (!known || !columns.Has(column)) {
            if (button)
                button->hide();
            return;
        }
        if (!button) {
            button = bitmap ? new ZEMGis::Utility::CZEMBitmapButton(viewport()) : new QPushButton(viewport());
            button->setText(QStringLiteral("..."));
            button->setProperty(kControlIdProperty, controlId);
            button->setAutoDefault(false);
            button->setFocusPolicy(Qt::NoFocus); // F4 and Alt+Down are its keys
            connect(button, &QPushButton::clicked, this,
                    [this, browse] { RunAsHandler([=, this] { (this->*browse)(); }); });
        }
        button->setAccessibleName(ToQString(m_cells.GetHeaderText(column) + L" " + m_cells.GetItemText(row, 0)));
        button->show();
    };
    show(m_colorButton, m_cells.m_colorColumns, kColorButton, &CXListCtrl::BrowseColor, false);
    show(m_hatchButton, m_cells.m_hatchColumns, kHatchButton, &CXListCtrl::BrowseHatch, true);
    show(m_layerButton, m_cells.m_layerColumns, kLayerButton, &CXListCtrl::DropLayers, true);
    PlaceBrowseButtons();
}

void CXListCtrl::PlaceBrowseButtons()
{
    QRect cell;
    const bool known = GetSubItemRect(m_cells.m_nCurrentRow, m_cells.m_nCurrentColumn, kBounds, cell);
    for (QPushButton *button : {m_colorButton.data(), m_hatchButton.data(), m_layerButton.data()}) {
        if (!button || button->isHidden())
            continue;
        if (known)
            button->setGeometry(cell.right() + 1 - kButtonWidth, cell.top(), kButtonWidth, cell.height());
        else
            button->hide();
    }
}

bool CXListCtrl::Browse(int row, int column)
{
    if (row < 0 || row >= GetItemCount())
        return false;
    void (CXListCtrl::*browse)() = m_cells.m_colorColumns.Has(column)   ? &CXListCtrl::BrowseColor
                                   : m_cells.m_hatchColumns.Has(column) ? &CXListCtrl::BrowseHatch
                                   : m_cells.m_layerColumns.Has(column) ? &CXListCtrl::DropLayers
                                                                        : nullptr;
    if (!browse)
        return false;
    m_cells.m_nCurrentRow = row;
    m_cells.m_nCurrentColumn = column;
    ShowBrowseButtons();
    RunAsHandler([=, this] { (this->*browse)(); });
    return true;
}

void CXListCtrl::BrowseColor()
{
    const int row = m_cells.m_nCurrentRow, column = m_cells.m_nCurrentColumn;
    int number = static_cast<int>(std::wcstol(m_cells.GetItemText(row, column).c_str(), nullptr, 10));
    if (acedSetColorDialog(number, true, 0))
        m_cells.WriteChoice(row, column, std::to_wstring(number));
}

void CXListCtrl::BrowseHatch()
{
    const int row = m_cells.m_nCurrentRow, column = m_cells.m_nCurrentColumn;
    std::wstring name = m_cells.GetItemText(row, column);
    if (name.empty())
        name = L"SOLID";
    std::wstring chosen;
    if (acedHatchPalletteDialog(name.c_str(), true, chosen))
        m_cells.WriteChoice(row, column, chosen);
}

void CXListCtrl::DropLayers()
{
    CloseLayers(false);
    QRect cell;
    if (!GetSubItemRect(m_cells.m_nCurrentRow, m_cells.m_nCurrentColumn, kBounds, cell))
        return;
    CStringArray names;
    CZEMCLayerTablePtr().allLayerNames(names);
    m_layersOf = {m_cells.m_nCurrentRow, m_cells.m_nCurrentColumn};
    m_layers = new QListWidget(this);
    m_layers->setWindowFlags(Qt::Popup);
    m_layers->setProperty(kControlIdProperty, kLayerList);
    m_layers->setAccessibleName(ToQString(m_cells.GetHeaderText(m_cells.m_nCurrentColumn)));
    for (const std::wstring &name : names)
        m_layers->addItem(ToQString(name));
    std::wstring shown = m_cells.GetItemText(m_cells.m_nCurrentRow, m_cells.m_nCurrentColumn);
    if (shown.empty())
        shown = L"0";
    if (const auto at = std::ranges::find(names, shown); at != names.end())
        m_layers->setCurrentRow(static_cast<int>(at - names.begin()));
    m_layers->setGeometry(QRect(viewport()->mapToGlobal(cell.topLeft() + QPoint(0, kLayersBelow)),
                                QSize(std::max(cell.width(), kLayersWidth), kLayersHeight)));
    connect(m_layers, &QListWidget::currentRowChanged, this, [this] { CloseLayers(true); });
    m_layers->installEventFilter(this);
    m_layers->show();
    m_layers->setFocus(Qt::PopupFocusReason);
}

void CXListCtrl::CloseLayers(bool take)
{
    if (!m_layers || std::exchange(m_bClosingLayers, true))
        return;
    QListWidget *layers = std::exchange(m_layers, nullptr);
    const QListWidgetItem *chosen = take ? layers->currentItem() : nullptr;
    const std::wstring name = chosen ? ToWide(chosen->text()) : std::wstring();
    layers->removeEventFilter(this);
    layers->hide();
    layers->deleteLater();
    m_bClosingLayers = false;
    if (chosen)
        m_cells.WriteChoice(m_layersOf.row, m_layersOf.column, name);
}
