// What the overview shows in the drawing: checked rows highlighted, the selected one zoomed to.
#include "overview/NetworkOverviewDlg.h"

#include "ui_overview.h"

#include <algorithm>
#include <set>

using ZEMGis::CModuleConfiguration;

namespace {

constexpr double kMarkAngle = 0.7853981633974483, kMarkScale = 1.0;
constexpr const wchar_t *kMarkPattern = L"ANSI31";
constexpr int kWipe = 4;

} // namespace

void CNetworkOverviewDlg::OnCheck(const CTreeListItem *item)
{
    if (const COverviewRow *row = m_tree->RowOf(item))
        m_tree->Choose(*row, m_ui->treeNetwork->GetCheck(item) != kCheckOn);
}

void CNetworkOverviewDlg::PostChecks()
{
    if (m_bChecksPosted)
        return;
    m_bChecksPosted = true;
    QMetaObject::invokeMethod(
        this,
        [this] {
            m_bChecksPosted = false;
            if (!m_bEnded)
                RunHandler([this] { ApplyChecks(); });
        },
        Qt::QueuedConnection);
}

void CNetworkOverviewDlg::ApplyChecks()
{
    m_bHighlighting = true;
    const CTreeListCtrl &tree = *m_ui->treeNetwork;
    const COverviewNetwork &network = m_tree->Network();
    m_tree->ShowBoxes();
    const int colour = CModuleConfiguration::Instance()->GetHighlightColor();
    std::vector<int> sections;
    CGuids areas;
    for (const COverviewRow &row : m_tree->Rows()) {
        if (row.m_kind == EOverviewRow::Section && m_tree->IsChosen(row.m_nIndex))
            sections.push_back(row.m_nIndex);
        else if (row.m_kind == EOverviewRow::Area && tree.GetCheck(row.m_pItem) == kCheckOn)
            areas.insert(network.m_areas[static_cast<std::size_t>(row.m_nIndex)]->GetGuid());
    }
    std::ranges::sort(sections);
    // What is drawn over the drawing can only be wiped as a whole.
    std::vector<int> added;
    if (std::ranges::includes(sections, m_drawnSections)) {
        std::ranges::set_difference(sections, m_drawnSections, std::back_inserter(added));
    } else {
        acedRedraw(nullptr, kWipe);
        added = sections;
    }
    m_drawnSections = std::move(sections); // also those that a failure leaves out
    for (const int section : added)
        network.m_sections[static_cast<std::size_t>(section)]->DrawTemporary(colour, 0);
    for (const auto &area : network.m_areas) {
        const std::wstring guid = area->GetGuid();
        if (areas.contains(guid)) {
            if (m_markedAreas.insert(guid).second)
                area->Mark(colour, kMarkScale, kMarkAngle, kMarkPattern, 0);
        } else if (m_markedAreas.erase(guid) > 0) {
            area->UnMark();
        }
    }
    RefreshDrawingDisplay();
    m_bHighlighting = false;
}

void CNetworkOverviewDlg::ClearHighlight()
{
    // Forgotten first: what fails here is not tried again.
    const std::vector<int> sections = std::exchange(m_drawnSections, {});
    const CGuids areas = std::exchange(m_markedAreas, {});
    if (!sections.empty())
        acedRedraw(nullptr, kWipe);
    for (const auto &area : m_tree->Network().m_areas) {
        if (areas.contains(area->GetGuid()))
            area->UnMark();
    }
    if (!sections.empty() || !areas.empty())
        RefreshDrawingDisplay();
}

void CNetworkOverviewDlg::CheckAll(bool check)
{
    SetAllChecks(check);
    ApplyChecks();
}

void CNetworkOverviewDlg::SetAllChecks(bool check)
{
    CTreeListCtrl &tree = *m_ui->treeNetwork;
    m_bFilling = true;
    for (CTreeListItem *item = tree.GetChildItem(nullptr); item; item = tree.GetNextSiblingItem(item)) {
        tree.SetCheck(item, check ? kCheckOn : kCheckOff);
        tree.SetItemCheck(item, false); // all beneath it follow
    }
    m_tree->ChooseAll(check);
    m_bFilling = false;
}

void CNetworkOverviewDlg::OnBtnCheckRow()
{
    CTreeListCtrl &tree = *m_ui->treeNetwork;
    CTreeListItem *item = tree.GetFocusItem() ? tree.GetFocusItem() : tree.GetSelectedItem();
    if (!item)
        return;
    m_bFilling = true;
    OnCheck(item);
    tree.SetItemCheck(item, true);
    m_bFilling = false;
    ApplyChecks();
}

void CNetworkOverviewDlg::ZoomToSelected()
{
    constexpr double kStandardZoom = 2.0;
    const CTreeListItem *item = m_ui->treeNetwork->GetSelectedItem();
    const COverviewRow *row = m_tree->RowOf(item);
    if (!row || item == m_pZoomed || !m_ui->checkZoom->isChecked())
        return;
    m_pZoomed = item;
    std::vector<int> sections, areas;
    if (row->m_kind == EOverviewRow::Section)
        sections = {row->m_nIndex}; // and not the areas that drain to it, which may lie far around
    else
        m_tree->Collect(*row, sections, areas);
    const COverviewNetwork &network = m_tree->Network();
    std::set<AcDbObjectId> ids;
    for (const int section : sections)
        ids.insert(network.m_sections[static_cast<std::size_t>(section)]->GetObjectId());
    for (const int area : areas) {
        if (row->m_kind != EOverviewRow::Branch)
            ids.insert(network.m_areas[static_cast<std::size_t>(area)]->GetObjectId());
    }
    ids.erase(AcDbObjectId());
    if (ids.empty())
        return;
    double factor = kStandardZoom;
    CModuleConfiguration::Instance()->GetGSValueDouble(L"DEFAULT_ZOOM", factor);
    CZEMCEdit::zoom(AcDbObjectIdArray(ids.begin(), ids.end()), factor);
    RefreshDrawingDisplay();
}
