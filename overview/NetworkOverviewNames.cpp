// Names edited in the overview: of areas, sections and nodes.
#include "overview/NetworkOverviewDlg.h"

#include "overview/OverviewTexts.h"
#include "ui_overview.h"

#include <QAccessible>

using namespace OverviewMessage;
using ZEMGis::Data::CDataBox;
using ZEMGis::Topology::kNameProperty;

std::optional<CNetworkOverviewDlg::CNamed> CNetworkOverviewDlg::NamedBy(const CTreeListItem *item, int column) const
{
    const COverviewRow *row = m_tree->RowOf(item);
    if (!row)
        return std::nullopt;
    if (column == kNameColumn && row->m_kind == EOverviewRow::Area)
        return CNamed{CNamed::Area, row->m_nIndex};
    if (column == kNameColumn && row->m_kind == EOverviewRow::Section)
        return CNamed{CNamed::Section, row->m_nIndex};
    if (const int node = m_tree->NodeOf(*row, column); node >= 0)
        return CNamed{CNamed::Node, node};
    return std::nullopt;
}

ZEMGis::Topology::CEntity &CNetworkOverviewDlg::EntityOf(const CNamed &named) const
{
    const COverviewNetwork &network = m_tree->Network();
    const auto index = static_cast<std::size_t>(named.m_nIndex);
    switch (named.m_kind) {
    case CNamed::Area:
        return *network.m_areas[index];
    case CNamed::Section:
        return *network.m_sections[index];
    default:
        return *network.m_nodes[index];
    }
}

CNameList &CNetworkOverviewDlg::NamesOf(const CNamed &named)
{
    return named.m_kind == CNamed::Area ? m_areaNames : named.m_kind == CNamed::Section ? m_sectionNames : m_nodeNames;
}

void CNetworkOverviewDlg::ReadNames()
{
    const auto read = [](CNameList &names, const auto &entities) {
        names = {};
        for (const auto &entity : entities)
            names.Add(entity->GetName());
    };
    const COverviewNetwork &network = m_tree->Network();
    read(m_areaNames, network.m_areas);
    read(m_sectionNames, network.m_sections);
    read(m_nodeNames, network.m_nodes);
}

QString CNetworkOverviewDlg::TroubleText(ENameTrouble trouble, const CNamed &named, const std::wstring &name) const
{
    switch (trouble) {
    case ENameTrouble::Empty:
        return Msg(kNameEmpty);
    case ENameTrouble::ControlCharacter:
        return Msg(kNameControl);
    case ENameTrouble::TooLong:
        return Msg(kNameTooLong, QString::number(kLongestName));
    default:
        return Msg(named.m_kind == CNamed::Area      ? kNameOfArea
                   : named.m_kind == CNamed::Section ? kNameOfSection
                                                     : kNameOfNode,
                   ToQString(name));
    }
}

int CNetworkOverviewDlg::OnColumnChanging(const CTreeListItem *item, int column)
{
    const auto named = NamedBy(item, column);
    if (!named)
        return 0;
    const std::wstring name = TrimmedName(m_ui->treeNetwork->GetItemText(item, column));
    const ENameTrouble trouble = NamesOf(*named).Check(EntityOf(*named).GetName(), name);
    if (trouble == ENameTrouble::None)
        return 0;
    ShowMessage(TroubleText(trouble, *named, name), true);
    return -1;
}

int CNetworkOverviewDlg::OnRowChanging(CTreeListItem *item)
{
    // All is read and looked at before anything is written: a refused row leaves nothing behind.
    const CTreeListCtrl &tree = *m_ui->treeNetwork;
    std::vector<CRenaming> renamings;
    for (const int column : {kNameColumn, kFromColumn, kToColumn}) {
        const auto named = NamedBy(item, column);
        const std::wstring typed = tree.GetItemText(item, column);
        if (!named || typed == tree.GetModifyShadow(column))
            continue;
        CRenaming renaming{*named, EntityOf(*named).GetName(), TrimmedName(typed)};
        ENameTrouble trouble = NamesOf(*named).Check(renaming.m_strPresent, renaming.m_strName);
        for (const CRenaming &other : renamings) {
            if (other.m_named.m_kind != named->m_kind)
                continue;
            const bool isSameEntity = other.m_named.m_nIndex == named->m_nIndex; // of a section from a node to itself
            if (isSameEntity == (other.m_strName != renaming.m_strName))
                trouble = ENameTrouble::Doubled;
        }
        if (trouble != ENameTrouble::None) {
            ShowMessage(TroubleText(trouble, *named, renaming.m_strName), true);
            return -1;
        }
        renamings.push_back(std::move(renaming));
    }
    for (auto renaming = renamings.begin(); renaming != renamings.end(); ++renaming) {
        if (Write(renaming->m_named, renaming->m_strName))
            continue;
        ShowMessage(Msg(kNotRenamed, NamedOrNot(renaming->m_strPresent)), true);
        while (renaming != renamings.begin()) {
            --renaming;
            Write(renaming->m_named, renaming->m_strPresent);
        }
        return -1;
    }
    for (const CRenaming &renaming : renamings)
        ShowName(renaming.m_named);
    if (!renamings.empty())
        ShowFindingNames();
    ShowMessage(Msg(kHint), false);
    return 0;
}

bool CNetworkOverviewDlg::Write(const CNamed &named, const std::wstring &name)
{
    auto &entity = EntityOf(named);
    const std::wstring present = entity.GetName();
    if (name == present)
        return true;
    if (named.m_kind == CNamed::Area)
        m_tree->Network().m_areas[static_cast<std::size_t>(named.m_nIndex)]->SetName(name);
    else
        entity.SetPropertyData(kNameProperty, CDataBox(name));
    if (entity.GetName() != name)
        return false;
    NamesOf(named).Rename(present, name);
    return true;
}

void CNetworkOverviewDlg::ShowName(const CNamed &named)
{
    switch (named.m_kind) {
    case CNamed::Area:
        m_tree->ShowAreaName(named.m_nIndex);
        break;
    case CNamed::Section:
        m_tree->ShowSectionName(named.m_nIndex);
        break;
    case CNamed::Node:
        m_tree->ShowNodeName(named.m_nIndex);
        break;
    }
}

void CNetworkOverviewDlg::ShowMessage(const QString &text, bool isTrouble)
{
    constexpr QColor kOnLight(0xB0, 0x1C, 0x1C), kOnDark(0xFF, 0x9A, 0x8C);
    constexpr int kHalf = 128;
    QLabel &label = *m_ui->textMessage;
    m_bTrouble = isTrouble;
    label.setText(text);
    QFont font = this->font();
    font.setBold(isTrouble);
    label.setFont(font);
    QPalette colours = palette();
    if (isTrouble)
        colours.setColor(QPalette::WindowText,
                         colours.color(QPalette::Window).lightness() < kHalf ? kOnDark : kOnLight);
    label.setPalette(colours);
    if (isTrouble) {
        QAccessibleEvent told(&label, QAccessible::Alert);
        QAccessible::updateAccessibility(&told);
    }
}
