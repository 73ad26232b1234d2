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
    const CTreeListCtrl &tree = *m_ui->treeNetwork;
    const COverviewNetwork &network = m_tree->Network();
    const int colour = CModuleConfiguration::Instance()->GetHighlightColor();
    std::vector<int> sections;
    CGuids areas;
    for (const COverviewRow &row : m_tree->Rows()) {
        if (tree.GetCheck(row.m_pItem) != kCheckOn)
            continue;
        if (row.m_kind == EOverviewRow::Section)
            sections.push_back(row.m_nIndex);
        else if (row.m_kind == EOverviewRow::Area)
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
    for (const int section : added)
        network.m_sections[static_cast<std::size_t>(section)]->DrawTemporary(colour, 0);
    m_drawnSections = std::move(sections);
    for (const auto &area : network.m_areas) {
        const std::wstring guid = area->GetGuid();
        const bool isMarked = m_markedAreas.contains(guid), mark = areas.contains(guid);
        if (mark && !isMarked)
            area->Mark(colour, kMarkScale, kMarkAngle, kMarkPattern, 0);
        else if (isMarked && !mark)
            area->UnMark();
    }
    m_markedAreas = std::move(areas);
    RefreshDrawingDisplay();
}

void CNetworkOverviewDlg::ClearHighlight()
{
    if (!m_drawnSections.empty())
        acedRedraw(nullptr, kWipe);
    for (const auto &area : m_tree->Network().m_areas) {
        if (m_markedAreas.contains(area->GetGuid()))
            area->UnMark();
    }
    if (!m_drawnSections.empty() || !m_markedAreas.empty())
        RefreshDrawingDisplay();
    m_drawnSections.clear();
    m_markedAreas.clear();
}

void CNetworkOverviewDlg::CheckAll(bool check)
{
    CTreeListCtrl &tree = *m_ui->treeNetwork;
    m_bFilling = true;
    for (CTreeListItem *item = tree.GetChildItem(nullptr); item; item = tree.GetNextSiblingItem(item)) {
        tree.SetCheck(item, check ? kCheckOn : kCheckOff);
        tree.SetItemCheck(item, false); // all beneath it follow
    }
    m_bFilling = false;
    ApplyChecks();
}

void CNetworkOverviewDlg::OnBtnCheckRow()
{
    CTreeListCtrl &tree = *m_ui->treeNetwork;
    CTreeListItem *item = tree.GetFocusItem() ? tree.GetFocusItem() : tree.GetSelectedItem();
    if (!item)
        return;
    m_bFilling = true;
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
