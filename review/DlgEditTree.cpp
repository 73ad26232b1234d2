// The review dialog's lists: areas by type with their counts, the tree, the sections of the area in focus.
#include "review/DlgEditCatchmentArea.h"

#include "controls/WideText.h"
#include "controls/XListCtrl.h"
#include "dialogs/DialogControls.h"
#include "review/ReviewControls.h"
#include "ui_review.h"

#include <QScrollBar>

#include <boost/make_shared.hpp>

using namespace ZEMGis::Sewage;

namespace {

constexpr int kSharePlaces = 4;
constexpr double kPercent = 100.0;

/// A number that is one thing as long as this lives and another one behind it, however that comes.
class CNumberWhile {
public:
    CNumberWhile(int &number, int meanwhile, int behind) : m_number(number), m_behind(behind) { m_number = meanwhile; }
    ~CNumberWhile() { m_number = m_behind; }
    CNumberWhile(const CNumberWhile &) = delete;
    CNumberWhile &operator=(const CNumberWhile &) = delete;

private:
    int &m_number;
    int m_behind;
};

void showCount(AMSEdit::CAMSNumericEdit *edit, const CatchmentAreas &areas)
{
    SetNumber(edit, static_cast<double>(areas.size()));
}

} // namespace

void CDlgEditCatchmentArea::LoadAreas()
{
    RefreshMembers();
    for (CatchmentAreas *areas : {&m_allAreas, &m_catchAreas, &m_houseAreas, &m_industryAreas})
        areas->clear();
    m_checkedAreas.clear();
    m_checkedGuids.clear();
    CCatchmentAreaManager::Instance()->GetAllCatchmentAreas(m_allAreas, kTypeAll);
    m_order->Take(m_allAreas);
    for (const AreaPtr &area : m_allAreas) {
        if (!area)
            continue;
        const int type = area->GetType();
        if (type & kTypeCatchment)
            m_catchAreas.push_back(area);
        if (type & kTypeHouse)
            m_houseAreas.push_back(area);
        if (type & kTypeIndustrial)
            m_industryAreas.push_back(area);
    }
    UpdateCounts();
}

void CDlgEditCatchmentArea::UpdateCounts()
{
    showCount(m_ui->editCountCatchment, m_catchAreas);
    showCount(m_ui->editCountHouse, m_houseAreas);
    showCount(m_ui->editCountIndustry, m_industryAreas);
    showCount(m_ui->editCountAll, m_allAreas);
}

int CDlgEditCatchmentArea::FilterMask() const
{
    switch (m_comboMode) {
    case kFilterCatchment:
        return kTypeCatchment;
    case kFilterHouse:
        return kTypeHouse;
    case kFilterIndustry:
        return kTypeIndustrial;
    default:
        return kTypeAll;
    }
}

const CatchmentAreas &CDlgEditCatchmentArea::FilteredAreas() const
{
    switch (FilterMask()) {
    case kTypeCatchment:
        return m_catchAreas;
    case kTypeHouse:
        return m_houseAreas;
    case kTypeIndustrial:
        return m_industryAreas;
    default:
        return m_allAreas;
    }
}

void CDlgEditCatchmentArea::FillTree()
{
    CCatchmentTree &tree = *m_ui->treeAreas;
    const int filling = ++m_fillings;
    tree.Empty();
    m_itemPayloads.clear();
    const CatchmentAreas areas = FilteredAreas();
    m_itemPayloads.reserve(areas.size());
    const auto payloads = boost::make_shared<CCatchItemData[]>(areas.size()); // each keeps all of them alive
    std::vector<std::unique_ptr<CCatchmentTreeItem>> others; // all but the first go into the tree at once
    others.reserve(areas.size());
    for (const AreaPtr &area : areas) {
        if (!area)
            continue;
        auto item = std::make_unique<CCatchmentTreeItem>(ToQString(area->GetName()));
        CCatchItemData &payload = payloads[static_cast<std::ptrdiff_t>(m_itemPayloads.size())];
        m_itemPayloads.emplace_back(payloads, &payload);
        if (tree.topLevelItemCount() == 0) {
            // Selected before it has its payload, so that whoever hears of it here takes no area from it.
            CCatchmentTreeItem &first = *item;
            tree.addTopLevelItem(item.release());
            tree.SelectItem(&first);
            if (filling != m_fillings)
                return; // what heard of it failed, and the tree was filled anew
            CompleteItem(first, area, payload);
        } else {
            CompleteItem(*item, area, payload);
            others.push_back(std::move(item));
        }
    }
    QList<QTreeWidgetItem *> items;
    items.reserve(static_cast<qsizetype>(others.size()));
    for (auto &item : others)
        items.push_back(item.release());
    tree.addTopLevelItems(items);

    if (m_currentArea) {
        if (CCatchmentTreeItem *item = FindTreeItem(m_currentArea->GetGuid()))
            tree.SelectItem(item);
        else
            m_currentArea.reset();
    }
    ApplyTreeSelection();
}

void CDlgEditCatchmentArea::RefillTree()
{
    const CNumberWhile refilling(m_treeRefilling, 1, 0);
    FillTree();
}

void CDlgEditCatchmentArea::CompleteItem(CCatchmentTreeItem &item, const AreaPtr &area, CCatchItemData &payload)
{
    constexpr int kAreaKind = 1;
    payload.m_bIsland = kAreaKind;
    payload.m_id = area->GetObjectId();
    payload.m_text = area->GetGuid();
    payload.m_area = area->GetArea();
    payload.m_coefficient = area->GetFlowCoeff();
    payload.m_slope = area->GetPopulation();
    item.m_pPayload = &payload;

    SectionShares sections;
    area->GetConnectedSections(sections);
    QList<QTreeWidgetItem *> children;
    children.reserve(static_cast<qsizetype>(sections.size()));
    for (auto &[section, share] : sections) {
        if (section)
            children.push_back(new CCatchmentTreeItem(std::move(section)));
    }
    if (!children.isEmpty())
        item.addChildren(children);
}

CCatchmentTreeItem *CDlgEditCatchmentArea::FindTreeItem(const std::wstring &guid) const
{
    const CCatchmentTree &tree = *m_ui->treeAreas;
    for (int row = 0; row < tree.topLevelItemCount(); ++row) {
        CCatchmentTreeItem *item = tree.AreaItem(row);
        if (item->m_pPayload && item->m_pPayload->m_text == guid)
            return item;
    }
    return nullptr;
}

void CDlgEditCatchmentArea::FillSectionList()
{
    CXListCtrl &list = *m_ui->listSections;
    list.DeleteAllItems();
    if (!m_currentArea)
        return;
    SectionShares sections;
    m_currentArea->GetConnectedSections(sections);
    for (const auto &[section, share] : sections) {
        if (!section)
            continue;
        const int row = list.InsertItem(list.GetItemCount(), section->GetName());
        list.SetItemData(row, reinterpret_cast<std::uint64_t>(section.get()));
        list.SetItemText(row, 1, ToWide(QString::number(share * kPercent, 'f', kSharePlaces)));
        list.SetCellNumeric(row, 1);
    }
}

void CDlgEditCatchmentArea::OnFilter()
{
    RefreshMembers();
    RefillTree();
    ApplyTreeSelection();
}

void CDlgEditCatchmentArea::OnBtnExpand()
{
    CCatchmentTree &tree = *m_ui->treeAreas;
    if (tree.topLevelItemCount() == 0)
        return;
    QTreeWidgetItem *selected = tree.SelectedItem();
    QTreeWidgetItem *taken = selected ? selected : tree.topLevelItem(0);
    tree.setUpdatesEnabled(false);
    tree.expandAll();
    tree.SelectItem(taken);
    tree.scrollToItem(taken);
    tree.horizontalScrollBar()->setValue(tree.horizontalScrollBar()->minimum());
    tree.setUpdatesEnabled(true);
    tree.viewport()->update();
}

void CDlgEditCatchmentArea::OnBtnCollapse()
{
    CCatchmentTree &tree = *m_ui->treeAreas;
    if (tree.topLevelItemCount() == 0)
        return;
    tree.collapseAll();
    tree.SelectItem(tree.topLevelItem(0));
    tree.viewport()->update();
}
