#include "overview/OverviewTree.h"

#include "overview/OverviewTexts.h"

#include <QStringList>

#include <array>

using namespace OverviewMessage;

namespace {

constexpr double kPercent = 100.0;

template <class T>
decltype(auto) Of(T &list, int index)
{
    return list[static_cast<std::size_t>(index)];
}

QString TypeText(int mask)
{
    QStringList types;
    for (const auto &[bit, message] :
         {std::pair{ZEMGis::Sewage::kTypeCatchment, kTypeCatchment}, std::pair{ZEMGis::Sewage::kTypeHouse, kTypeHouse},
          std::pair{ZEMGis::Sewage::kTypeIndustrial, kTypeIndustry}}) {
        if (mask & bit)
            types.append(Msg(message));
    }
    return types.join(QStringLiteral(", "));
}

int PictureOf(int mask)
{
    if (mask & ZEMGis::Sewage::kTypeCatchment)
        return kImageArea;
    return mask & ZEMGis::Sewage::kTypeHouse ? kImageHouse : kImageIndustrial;
}

QString CoefficientText(const CNetworkSums &sums)
{
    return sums.m_weightedHectares > 0.0 ? NumberText(sums.Coefficient(), kCoefficientDecimals) : QString();
}

} // namespace

void COverviewTree::InsertColumns()
{
    struct CColumn {
        unsigned m_nTitle;
        std::uint32_t m_nAlignment;
        int m_nEditor;
    };
    constexpr auto kColumns = std::to_array<CColumn>({
        {kColumnName, kColumnLeft, kEditorEdit},
        {kColumnLength, kColumnRight, kEditorStatic},
        {kColumnFrom, kColumnLeft, kEditorEdit},
        {kColumnTo, kColumnLeft, kEditorEdit},
        {kColumnType, kColumnLeft, kEditorStatic},
        {kColumnHectares, kColumnRight, kEditorStatic},
        {kColumnShare, kColumnRight, kEditorStatic},
        {kColumnDrains, kColumnRight, kEditorStatic},
        {kColumnCoefficient, kColumnRight, kEditorStatic},
        {kColumnNote, kColumnLeft, kEditorStatic},
    });
    constexpr std::uint32_t kAlignments = kColumnLeft | kColumnRight | kColumnCentred;
    constexpr int kFirstWidth = 80;
    for (std::size_t i = 0; i < kColumns.size(); ++i) {
        const int column = static_cast<int>(i);
        const std::wstring title = Msg(kColumns[i].m_nTitle).toStdWString();
        if (column >= m_control.GetColumnCount())
            m_control.InsertColumn(title, kColumnDefaultFormat, kFirstWidth);
        m_control.SetColumnText(column, title);
        m_control.SetColumnFormat(column, kColumns[i].m_nAlignment, kAlignments & ~kColumns[i].m_nAlignment);
        m_control.SetColumnModify(column, kColumns[i].m_nEditor);
    }
}

void COverviewTree::FitColumns()
{
    constexpr int kFitted = -2, kMarginInLetters = 2, kNameInLetters = 24, kLongestInLetters = 48;
    const QFontMetrics metrics = m_control.fontMetrics();
    const int letter = metrics.averageCharWidth();
    for (int column = 0; column < kOverviewColumns; ++column) {
        m_control.SetColumnWidth(column, kFitted);
        const int fitted = m_control.GetColumnWidth(column) + kMarginInLetters * letter;
        // Rows of areas are not open yet.
        int least = column == kNameColumn ? kNameInLetters * letter : 0;
        if (column == kTypeColumn) {
            for (const unsigned type : {kTypeCatchment, kTypeHouse, kTypeIndustry})
                least = std::max(least, metrics.horizontalAdvance(Msg(type)) + kMarginInLetters * letter);
        } else if (column == kShareColumn) {
            least = metrics.horizontalAdvance(NumberText(kPercent, kShareDecimals)) + kMarginInLetters * letter;
        }
        m_control.SetColumnWidth(column, std::clamp(fitted, least, kLongestInLetters * letter));
    }
}

void COverviewTree::Fill(COverviewNetwork network)
{
    m_rows.clear();
    m_control.DeleteAllItems();
    m_network = std::move(network);
    m_forest = BuildForest(static_cast<int>(m_network.m_nodes.size()), m_network.m_forestSections);
    m_sectionSums = SectionSums(m_network.m_forestSections, m_network.m_forestAreas);
    m_branchSums = BranchSums(m_forest, m_sectionSums);
    m_net = NetHectares(m_network.m_forestAreas);
    m_idle.assign(m_network.m_sections.size(), false);
    for (const int section : SectionsWithoutArea(m_network.m_sections.size(), m_network.m_forestAreas))
        Of(m_idle, section) = true;
    m_chosen.assign(m_network.m_sections.size(), false);
    m_branchRows.assign(m_forest.m_branches.size(), -1);
    m_sectionRows.assign(m_network.m_sections.size(), -1);
    m_areasOf.assign(m_network.m_sections.size(), {});
    m_areaRows.assign(m_network.m_areas.size(), {});
    m_nodeCells.assign(m_network.m_nodes.size(), {});
    for (std::size_t area = 0; area < m_network.m_forestAreas.size(); ++area) {
        for (const auto &[section, share] : m_network.m_forestAreas[area].m_shares)
            Of(m_areasOf, section).emplace_back(static_cast<int>(area), share);
    }
    // A branch that joins gets its row from the one it joins, which comes before it.
    for (std::size_t branch = 0; branch < m_forest.m_branches.size(); ++branch)
        InsertBranch(static_cast<int>(branch));
    InsertAreasWithoutSection();
    for (std::size_t branch = 0; branch < m_forest.m_branches.size(); ++branch) {
        if (m_forest.m_branches[branch].m_nParent < 0)
            m_control.Expand(Of(m_rows, m_branchRows[branch]).m_pItem, kExpand);
    }
}

CTreeListItem *COverviewTree::Insert(EOverviewRow kind, int index, const std::wstring &text, CTreeListItem *parent,
                                     int image)
{
    CTreeListItem *item = m_control.InsertItem(text, parent, TreeListLast());
    m_control.SetItemData(item, static_cast<std::uint32_t>(m_rows.size()));
    m_control.SetItemImage(item, image, image, image, image);
    m_control.SetItemState(item, kItemShowsCheck | kItemShowsImage, kItemShowsLock);
    m_rows.push_back({kind, index, item});
    return item;
}

void COverviewTree::SetText(CTreeListItem *item, int column, const QString &text)
{
    if (!text.isEmpty())
        m_control.SetItemText(item, column, text.toStdWString());
}

QString COverviewTree::BranchTitle(int branch) const
{
    const CForestBranch &values = Of(m_forest.m_branches, branch);
    const QString node = values.m_nNode < 0 ? QString() : NamedOrNot(Of(m_network.m_nodes, values.m_nNode)->GetName());
    switch (values.m_end) {
    case EBranchEnd::Outfall:
        return Msg(kOutfall, node);
    case EBranchEnd::NoNode:
        return Msg(kEndWithoutNode);
    case EBranchEnd::Ring:
        return Msg(kRing, node);
    default:
        return Msg(kBranch, node, NamedOrNot(Of(m_network.m_sections, values.m_steps.front().m_nIndex)->GetName()));
    }
}

void COverviewTree::InsertBranch(int branch)
{
    const CForestBranch &values = Of(m_forest.m_branches, branch);
    if (values.m_nParent < 0) {
        const bool drains = values.m_end == EBranchEnd::Outfall;
        Of(m_branchRows, branch) = static_cast<int>(m_rows.size());
        Insert(EOverviewRow::Branch, branch, {}, TreeListRoot(), drains ? kImageOutfall : kImageWarning);
    }
    const int row = Of(m_branchRows, branch);
    CTreeListItem *item = Of(m_rows, row).m_pItem;
    const CNetworkSums &sums = Of(m_branchSums, branch);
    SetText(item, kNameColumn, BranchTitle(branch));
    SetText(item, kLengthColumn, NumberText(sums.m_length, kLengthDecimals));
    SetText(item, kDrainsColumn, NumberText(sums.m_hectares, kAreaDecimals));
    SetText(item, kCoefficientColumn, CoefficientText(sums));
    QString note = Msg(kSectionCount, QString::number(sums.m_nSections));
    if (sums.m_nUnknownLengths > 0)
        note += Msg(kUnknownLengths, QString::number(sums.m_nUnknownLengths));
    SetText(item, kNoteColumn, note);
    for (const int column : {kNameColumn, kFromColumn, kToColumn})
        m_control.SetItemModify(item, column, kEditorStatic);
    if (values.m_nNode >= 0)
        Of(m_nodeCells, values.m_nNode).emplace_back(row, kNameColumn);
    for (const auto &[isBranch, index] : values.m_steps) {
        if (isBranch) {
            Of(m_branchRows, index) = static_cast<int>(m_rows.size());
            Insert(EOverviewRow::Branch, index, {}, item, kImageBranch);
        } else {
            InsertSection(index, item);
        }
    }
}

QString COverviewTree::SectionNote(int section) const
{
    QStringList notes;
    if (Of(m_idle, section))
        notes.append(Msg(kNoArea));
    if (Of(m_forest.m_inLoop, section))
        notes.append(Msg(kInLoop));
    if (Of(m_forest.m_upstreamElsewhere, section))
        notes.append(Msg(kUpstreamElsewhere));
    return notes.join(QStringLiteral(", "));
}

void COverviewTree::InsertSection(int section, CTreeListItem *parent)
{
    const auto &entity = Of(m_network.m_sections, section);
    const CForestSection &values = Of(m_network.m_forestSections, section);
    const int row = static_cast<int>(m_rows.size());
    Of(m_sectionRows, section) = row;
    CTreeListItem *item = Insert(EOverviewRow::Section, section, entity->GetName(), parent, kImageSection);
    if (values.m_length >= 0.0)
        SetText(item, kLengthColumn, NumberText(values.m_length, kLengthDecimals));
    for (const auto &[node, column] : {std::pair{values.m_nFrom, kFromColumn}, std::pair{values.m_nTo, kToColumn}}) {
        if (node < 0) {
            m_control.SetItemModify(item, column, kEditorStatic);
            continue;
        }
        Of(m_nodeCells, node).emplace_back(row, column);
        m_control.SetItemText(item, column, Of(m_network.m_nodes, node)->GetName());
    }
    const CNetworkSums &sums = Of(m_sectionSums, section);
    const auto &areas = Of(m_areasOf, section);
    if (!areas.empty()) {
        SetText(item, kDrainsColumn, NumberText(sums.m_hectares, kAreaDecimals));
        SetText(item, kCoefficientColumn, CoefficientText(sums));
    }
    SetText(item, kNoteColumn, SectionNote(section));
    for (const auto &[area, share] : areas)
        InsertArea(area, share, item);
}

void COverviewTree::InsertArea(int area, double share, CTreeListItem *parent)
{
    const auto &entity = Of(m_network.m_areas, area);
    const int type = entity->GetType();
    Of(m_areaRows, area).push_back(static_cast<int>(m_rows.size()));
    CTreeListItem *item = Insert(EOverviewRow::Area, area, entity->GetName(), parent, PictureOf(type));
    SetText(item, kTypeColumn, TypeText(type));
    const CForestArea &values = Of(m_network.m_forestAreas, area);
    const double net = Of(m_net, area), part = share < 0.0 ? share : net < 0.0 ? net : net * share;
    SetText(item, kHectaresColumn, KnownNumberText(net, kAreaDecimals));
    if (!values.m_shares.empty())
        SetText(item, kDrainsColumn, KnownNumberText(part, kAreaDecimals));
    SetText(item, kShareColumn, KnownNumberText(share * kPercent, kShareDecimals));
    SetText(item, kCoefficientColumn, KnownNumberText(values.m_coefficient, kCoefficientDecimals));
    const double whole = WholeShare(values);
    if (!IsWhole(whole))
        SetText(item, kNoteColumn, Msg(kSharesAddUpTo, KnownNumberText(whole * kPercent, kShareDecimals)));
    for (const int column : {kFromColumn, kToColumn})
        m_control.SetItemModify(item, column, kEditorStatic);
}

void COverviewTree::InsertAreasWithoutSection()
{
    CTreeListItem *group = nullptr;
    double lost = 0.0;
    for (std::size_t area = 0; area < m_network.m_areas.size(); ++area) {
        if (!m_network.m_forestAreas[area].m_shares.empty())
            continue;
        if (!group) {
            group =
                Insert(EOverviewRow::Group, 0, Msg(kAreasWithoutSection).toStdWString(), TreeListRoot(), kImageWarning);
            for (const int column : {kNameColumn, kFromColumn, kToColumn})
                m_control.SetItemModify(group, column, kEditorStatic);
        }
        lost += std::max(m_net[area], 0.0);
        InsertArea(static_cast<int>(area), 0.0, group);
    }
    if (group)
        SetText(group, kHectaresColumn, NumberText(lost, kAreaDecimals));
}

const COverviewRow *COverviewTree::RowOf(const CTreeListItem *item) const
{
    if (!item)
        return nullptr;
    const std::uint32_t row = m_control.GetItemData(item);
    return row < m_rows.size() && m_rows[row].m_pItem == item ? &m_rows[row] : nullptr;
}

std::wstring COverviewTree::KeyOf(const COverviewRow &row) const
{
    switch (row.m_kind) {
    case EOverviewRow::Branch: {
        // The first section of a branch is in no other one.
        const auto &steps = Of(m_forest.m_branches, row.m_nIndex).m_steps;
        const auto first = std::ranges::find(steps, false, &CForestStep::m_bBranch);
        return L"B" + Of(m_network.m_sections, first->m_nIndex)->GetGuid();
    }
    case EOverviewRow::Section:
        return L"S" + Of(m_network.m_sections, row.m_nIndex)->GetGuid();
    case EOverviewRow::Area: {
        const COverviewRow *above = RowOf(row.m_pItem->Parent());
        return L"A" + Of(m_network.m_areas, row.m_nIndex)->GetGuid() + (above ? KeyOf(*above) : std::wstring());
    }
    default:
        return L"G";
    }
}

COverviewTree::CView COverviewTree::View() const
{
    CView view;
    for (const COverviewRow &row : m_rows)
        view.m_states.try_emplace(KeyOf(row),
                                  CView::CState{row.m_pItem->Has(kItemExpanded),
                                                row.m_kind == EOverviewRow::Section && IsChosen(row.m_nIndex),
                                                m_control.GetCheck(row.m_pItem)});
    if (const COverviewRow *selected = RowOf(m_control.GetSelectedItem()))
        view.m_strSelected = KeyOf(*selected);
    return view;
}

void COverviewTree::Restore(const CView &view)
{
    CTreeListItem *selected = nullptr;
    for (const COverviewRow &row : m_rows) {
        const std::wstring key = KeyOf(row);
        const auto known = view.m_states.find(key);
        if (known == view.m_states.end())
            continue;
        m_control.Expand(row.m_pItem, known->second.m_bOpen ? kExpand : kCollapse);
        m_control.SetCheck(row.m_pItem, known->second.m_nCheck);
        if (row.m_kind == EOverviewRow::Section)
            Of(m_chosen, row.m_nIndex) = known->second.m_bChosen;
        if (key == view.m_strSelected)
            selected = row.m_pItem;
    }
    if (selected)
        m_control.SelectItem(selected, kNoteColumn, true);
}

void COverviewTree::Choose(const COverviewRow &row, bool choose)
{
    if (row.m_kind == EOverviewRow::Area)
        return;
    std::vector<int> sections, areas;
    Collect(row, sections, areas);
    for (const int section : sections)
        Of(m_chosen, section) = choose;
}

void COverviewTree::ShowBoxes()
{
    struct CParts {
        bool m_bOn = false, m_bOff = false;
    };
    std::vector<CParts> parts(m_rows.size());
    for (std::size_t i = m_rows.size(); i-- > 0;) { // what stands beneath a row comes behind it
        const COverviewRow &row = m_rows[i];
        const int present = m_control.GetCheck(row.m_pItem);
        CParts &part = parts[i];
        if (row.m_kind == EOverviewRow::Area || row.m_kind == EOverviewRow::Section) {
            const bool is = row.m_kind == EOverviewRow::Area ? present == kCheckOn : IsChosen(row.m_nIndex);
            (is ? part.m_bOn : part.m_bOff) = true;
        }
        if (const int check = !part.m_bOn ? kCheckOff : part.m_bOff ? kCheckMixed : kCheckOn; check != present)
            m_control.SetCheck(row.m_pItem, check);
        if (const COverviewRow *above = RowOf(row.m_pItem->Parent())) {
            CParts &whole = parts[static_cast<std::size_t>(above - m_rows.data())];
            whole.m_bOn |= part.m_bOn;
            whole.m_bOff |= part.m_bOff;
        }
    }
}

int COverviewTree::RowOfArea(int area) const
{
    const std::vector<int> &rows = Of(m_areaRows, area);
    return rows.empty() ? -1 : rows.front();
}

int COverviewTree::NodeOf(const COverviewRow &row, int column) const
{
    if (row.m_kind != EOverviewRow::Section)
        return -1;
    const CForestSection &section = Of(m_network.m_forestSections, row.m_nIndex);
    return column == kFromColumn ? section.m_nFrom : column == kToColumn ? section.m_nTo : -1;
}

void COverviewTree::Collect(const COverviewRow &row, std::vector<int> &sections, std::vector<int> &areas) const
{
    // Rows lie as they were inserted, so what stands beneath one is found by walking the tree.
    std::vector<const CTreeListItem *> open = {row.m_pItem};
    while (!open.empty()) {
        const CTreeListItem *item = open.back();
        open.pop_back();
        const COverviewRow &at = Of(m_rows, static_cast<int>(m_control.GetItemData(item)));
        if (at.m_kind == EOverviewRow::Section)
            sections.push_back(at.m_nIndex);
        else if (at.m_kind == EOverviewRow::Area)
            areas.push_back(at.m_nIndex);
        for (const CTreeListItem *child = item->FirstChild(); child; child = child->Next())
            open.push_back(child);
    }
}

void COverviewTree::ShowSectionName(int section)
{
    m_control.SetItemText(Of(m_rows, RowOfSection(section)).m_pItem, kNameColumn,
                          Of(m_network.m_sections, section)->GetName());
    const int branch = Of(m_forest.m_branchOf, section);
    m_control.SetItemText(Of(m_rows, RowOfBranch(branch)).m_pItem, kNameColumn, BranchTitle(branch).toStdWString());
}

void COverviewTree::ShowAreaName(int area)
{
    for (const int row : Of(m_areaRows, area))
        m_control.SetItemText(Of(m_rows, row).m_pItem, kNameColumn, Of(m_network.m_areas, area)->GetName());
}

void COverviewTree::ShowNodeName(int node)
{
    for (const auto &[row, column] : Of(m_nodeCells, node)) {
        const COverviewRow &at = Of(m_rows, row);
        m_control.SetItemText(at.m_pItem, column,
                              at.m_kind == EOverviewRow::Branch ? BranchTitle(at.m_nIndex).toStdWString()
                                                                : Of(m_network.m_nodes, node)->GetName());
    }
}
