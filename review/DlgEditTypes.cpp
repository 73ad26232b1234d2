// Shares of the current area's sections, its type, and the lists that areas stand in by type.
#include "review/DlgEditCatchmentArea.h"

#include "catalog/NumberText.h"
#include "controls/WideText.h"
#include "controls/XListCtrl.h"
#include "review/AreaLists.h"
#include "ui_review.h"

using namespace ZEMGis::Sewage;
using ZEMGis::Topology::CSection;
using ZEMGis::Topology::CTopologyMultiStorage;

namespace {

constexpr int kShareColumn = 1;
constexpr double kPercent = 100.0;

} // namespace

void CDlgEditCatchmentArea::OnShareChanged(int row)
{
    const auto *section = reinterpret_cast<const CSection *>(m_ui->listSections->GetItemData(row));
    if (section && m_currentArea)
        WriteShare(section->GetGuid(), ParseNumber(m_ui->listSections->GetItemText(row, kShareColumn)));
    const QModelIndex current = m_ui->listSections->currentIndex();
    FillSectionList(); // a rejected entry goes by it
    // The next share is entered from where this one was.
    m_ui->listSections->setCurrentIndex(m_ui->listSections->model()->index(current.row(), current.column()));
}

void CDlgEditCatchmentArea::WriteShare(const std::wstring &sectionGuid, double percent)
{
    if (percent < 0.0 || percent > kPercent)
        return;
    const SectionPtr section = CTopologyMultiStorage::Instance()->GetTopology()->GetSectionByGuid(sectionGuid.c_str());
    m_currentArea->SetConnectedSectionShare(section, percent / kPercent, 1);
}

void CDlgEditCatchmentArea::OnCheckCatch()
{
    KeepOneType(kTypeCatchment);
    ApplyTypes();
}

void CDlgEditCatchmentArea::OnCheckHouse()
{
    KeepOneType(kTypeHouse);
    ApplyTypes();
}

void CDlgEditCatchmentArea::OnCheckIndustry()
{
    KeepOneType(kTypeIndustrial);
    ApplyTypes();
}

void CDlgEditCatchmentArea::KeepOneType(int bit)
{
    RefreshMembers();
    if (m_typeCatch || m_typeHouse || m_typeIndustry)
        return;
    m_typeCatch = bit == kTypeCatchment;
    m_typeHouse = bit == kTypeHouse;
    m_typeIndustry = bit == kTypeIndustrial;
    ShowMembers();
}

void CDlgEditCatchmentArea::ApplyTypes()
{
    const int mask =
        (m_typeCatch ? kTypeCatchment : 0) | (m_typeHouse ? kTypeHouse : 0) | (m_typeIndustry ? kTypeIndustrial : 0);
    if (!m_currentArea || !m_checkedAreas.empty())
        return;
    m_currentArea->SetType(mask);
    UpdateTypeLists(m_currentArea);
    RefillTree();
}

void CDlgEditCatchmentArea::UpdateTypeLists(const AreaPtr &area)
{
    for (const auto &[bit, areas] : TypeLists())
        KeepInList(*areas, area, (area->GetType() & bit) != 0);
    UpdateCounts();
}

void CDlgEditCatchmentArea::RemoveFromLists(const AreaPtr &area)
{
    if (!area)
        return;
    TakeOutOfList(m_allAreas, *area);
    for (const auto &[bit, areas] : TypeLists()) {
        if ((area->GetType() & bit) != 0)
            TakeOutOfList(*areas, *area);
    }
    UpdateCounts();
}

std::array<CDlgEditCatchmentArea::CTypeList, 3> CDlgEditCatchmentArea::TypeLists()
{
    return {{{kTypeCatchment, &m_catchAreas}, {kTypeHouse, &m_houseAreas}, {kTypeIndustrial, &m_industryAreas}}};
}
