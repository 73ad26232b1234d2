// What is wrong, told in two lines above the tree and listed below it: shares, sections that drain nothing, splits,
// loops, and parts without an outfall.
#include "overview/NetworkOverviewDlg.h"

#include "overview/OverviewTexts.h"
#include "ui_overview.h"

using namespace OverviewMessage;

namespace {

constexpr int kRowRole = Qt::UserRole, kKindRole = Qt::UserRole + 1, kIndexRole = Qt::UserRole + 2;
constexpr double kPercent = 100.0;

enum class EVerdict { Good, Wrong, NothingYet };

void ShowLine(QLabel &icon, QLabel &line, EVerdict verdict, const QString &text)
{
    const bool isWrong = verdict == EVerdict::Wrong;
    if (line.font().bold() != isWrong) {
        QFont font; // nothing but its weight is the line's own: the rest goes on following the dialog
        font.setBold(isWrong);
        line.setFont(font);
    }
    const int size = line.fontMetrics().height();
    const QStyle::StandardPixmap sign = isWrong                     ? QStyle::SP_MessageBoxWarning
                                        : verdict == EVerdict::Good ? QStyle::SP_DialogApplyButton
                                                                    : QStyle::SP_MessageBoxInformation;
    icon.setPixmap(
        line.style()->standardIcon(sign, nullptr, &line).pixmap(QSize(size, size), line.devicePixelRatioF()));
    line.setText(text);
}

} // namespace

void CNetworkOverviewDlg::ShowGlance()
{
    const COverviewNetwork &network = m_tree->Network();
    const std::size_t areaCount = network.m_areas.size(), sectionCount = network.m_sections.size();
    const std::size_t notWhole = AreasNotWhole(network.m_forestAreas).size();
    const std::size_t idle = SectionsWithoutArea(sectionCount, network.m_forestAreas).size();
    const auto number = [](std::size_t count) { return QString::number(count); };
    // Where there are no areas yet nothing can drain, and that is no fault.
    const auto verdict = [](bool isYet, std::size_t wrong) {
        return !isYet ? EVerdict::NothingYet : wrong == 0 ? EVerdict::Good : EVerdict::Wrong;
    };
    ShowLine(*m_ui->iconShares, *m_ui->textShares, verdict(areaCount > 0, notWhole),
             areaCount == 0  ? Msg(kNoAreas)
             : notWhole == 0 ? Msg(kSharesWhole, number(areaCount))
                             : Msg(kSharesNotWhole, number(notWhole), number(areaCount)));
    ShowLine(*m_ui->iconDrains, *m_ui->textDrains, verdict(sectionCount > 0 && areaCount > 0, idle),
             sectionCount == 0 ? Msg(kNoNetwork)
             : idle == 0       ? Msg(kAllDrain, number(sectionCount))
                               : Msg(kSomeDrainNothing, number(idle), number(sectionCount)));
}

void CNetworkOverviewDlg::ShowFindings()
{
    ShowGlance();
    const COverviewNetwork &network = m_tree->Network();
    const CNetworkForest &forest = m_tree->Forest();
    const std::size_t sectionCount = network.m_sections.size();
    const std::vector<int> notWhole = AreasNotWhole(network.m_forestAreas);
    const std::vector<int> idle = SectionsWithoutArea(sectionCount, network.m_forestAreas);
    QTreeWidget &list = *m_ui->treeFindings;
    list.clear();
    if (QTreeWidgetItem *group = AddGroup(kFindingShares, notWhole.size())) {
        for (const int area : notWhole)
            AddFinding(*group, ShareOfArea, area, m_tree->RowOfArea(area));
    }
    const std::vector<int> notKnown = AreasNotKnown(network.m_forestAreas);
    if (QTreeWidgetItem *group = AddGroup(kFindingUnknown, notKnown.size())) {
        for (const int area : notKnown)
            AddFinding(*group, AreaName, area, m_tree->RowOfArea(area));
    }
    if (QTreeWidgetItem *group = AddGroup(kFindingNoArea, idle.size())) {
        for (const int section : idle)
            AddFinding(*group, SectionName, section, m_tree->RowOfSection(section));
    }
    std::vector<int> firstElsewhere(network.m_nodes.size(), -1); // a section that leaves a split, by node
    std::vector<int> loops, ends;
    for (std::size_t section = sectionCount; section-- > 0;) {
        if (const int from = network.m_forestSections[section].m_nFrom;
            from >= 0 && forest.m_upstreamElsewhere[section])
            firstElsewhere[static_cast<std::size_t>(from)] = static_cast<int>(section);
    }
    for (std::size_t section = 0; section < sectionCount; ++section) {
        if (forest.m_inLoop[section])
            loops.push_back(static_cast<int>(section));
    }
    for (std::size_t branch = 0; branch < forest.m_branches.size(); ++branch) {
        const EBranchEnd end = forest.m_branches[branch].m_end;
        if (end == EBranchEnd::NoNode || end == EBranchEnd::Ring)
            ends.push_back(static_cast<int>(branch));
    }
    if (QTreeWidgetItem *group = AddGroup(kFindingSplits, forest.m_splits.size())) {
        for (const int node : forest.m_splits)
            AddFinding(*group, NodeName, node, m_tree->RowOfSection(firstElsewhere[static_cast<std::size_t>(node)]));
    }
    if (QTreeWidgetItem *group = AddGroup(kFindingLoops, loops.size())) {
        for (const int section : loops)
            AddFinding(*group, SectionName, section, m_tree->RowOfSection(section));
    }
    if (QTreeWidgetItem *group = AddGroup(kFindingNoOutfall, ends.size())) {
        for (const int branch : ends)
            AddFinding(*group, BranchName, branch, m_tree->RowOfBranch(branch));
    }
    list.setVisible(list.topLevelItemCount() > 0);
}

QTreeWidgetItem *CNetworkOverviewDlg::AddGroup(unsigned title, std::size_t count)
{
    constexpr std::size_t kShownAtOnce = 20;
    if (count == 0)
        return nullptr;
    auto *group = new QTreeWidgetItem(m_ui->treeFindings, {Msg(title) + QStringLiteral(" (%1)").arg(count)});
    group->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable);
    group->setExpanded(count <= kShownAtOnce);
    return group;
}

void CNetworkOverviewDlg::AddFinding(QTreeWidgetItem &group, EFinding kind, int index, int row)
{
    auto *finding = new QTreeWidgetItem(&group, {FindingText(kind, index)});
    finding->setData(0, kRowRole, row);
    finding->setData(0, kKindRole, static_cast<int>(kind));
    finding->setData(0, kIndexRole, index);
}

QString CNetworkOverviewDlg::FindingText(EFinding kind, int index) const
{
    const COverviewNetwork &network = m_tree->Network();
    const auto at = static_cast<std::size_t>(index);
    switch (kind) {
    case ShareOfArea:
        return Msg(kShareOf, NamedOrNot(network.m_areas[at]->GetName()),
                   KnownNumberText(WholeShare(network.m_forestAreas[at]) * kPercent, kShareDecimals));
    case AreaName:
        return NamedOrNot(network.m_areas[at]->GetName());
    case SectionName:
        return NamedOrNot(network.m_sections[at]->GetName());
    case NodeName:
        return NamedOrNot(network.m_nodes[at]->GetName());
    default:
        return ToQString(m_ui->treeNetwork->GetItemText(
            m_tree->Rows()[static_cast<std::size_t>(m_tree->RowOfBranch(index))].m_pItem, kNameColumn));
    }
}

void CNetworkOverviewDlg::ShowFindingNames()
{
    for (QTreeWidgetItemIterator at(m_ui->treeFindings); *at; ++at) {
        const QVariant kind = (*at)->data(0, kKindRole);
        if (!kind.isValid())
            continue;
        const QString text = FindingText(static_cast<EFinding>(kind.toInt()), (*at)->data(0, kIndexRole).toInt());
        if (text != (*at)->text(0))
            (*at)->setText(0, text);
    }
}

void CNetworkOverviewDlg::OnFinding(const QTreeWidgetItem *finding)
{
    if (!finding) // the list was made anew since
        return;
    if (const QVariant row = finding->data(0, kRowRole); row.isValid())
        LeadTo(row.toInt());
}

void CNetworkOverviewDlg::LeadTo(int row)
{
    CTreeListCtrl &tree = *m_ui->treeNetwork;
    if (row < 0 || static_cast<std::size_t>(row) >= m_tree->Rows().size())
        return;
    // Each step tells of itself, and what fails there fills the tree anew.
    const int filling = m_nFillings;
    if (tree.GetState(kControlEditing) != 0 && tree.FinishModify() == 0)
        return; // the message says what is wrong with the row in edit
    const auto item = [&] {
        return filling == m_nFillings ? m_tree->Rows()[static_cast<std::size_t>(row)].m_pItem : nullptr;
    };
    for (CTreeListItem *above = tree.GetParentItem(item()); above; above = item() ? tree.GetParentItem(above) : nullptr)
        tree.Expand(above, kExpand);
    m_pZoomed = nullptr; // also when it is selected already
    if (item())
        tree.SelectItem(item(), kNameColumn, true);
    if (item())
        ZoomToSelected();
    if (item())
        tree.EnsureVisible(item(), kNameColumn);
}
