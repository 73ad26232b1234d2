// Names of areas: from the nodes of their sections, and typed in the tree.
#include "review/DlgEditCatchmentArea.h"

#include "controls/WideText.h"
#include "review/NodeNames.h"

using namespace ZEMGis::Sewage;

namespace {

ZEMGis::Selection::CSelectionSet SelectionOf(const SectionShares &sections)
{
    ZEMGis::Selection::CSelectionSet set;
    for (const auto &[section, share] : sections)
        set.m_sections.push_back(section);
    return set;
}

} // namespace

void CDlgEditCatchmentArea::OnBtnRename()
{
    CatchmentAreas areas;
    CCatchmentAreaManager::Instance()->GetAllCatchmentAreas(areas, kTypeAll);
    for (const AreaPtr &area : areas) {
        SectionShares sections;
        if (!area || area->GetConnectedSections(sections) == 0)
            continue;
        const std::wstring name = NameFromNodes(SelectionOf(sections));
        if (!name.empty())
            area->SetName(name);
    }
    LoadAreas();
    FillTree(); // its selection event runs inside
}

void CDlgEditCatchmentArea::OnTreeNameEdited(CCatchmentTreeItem *item, const QString &text)
{
    if (item->Parent())
        return;
    // The area in focus, which is the item's own as far as the edit began on the selected item.
    if (m_currentArea)
        m_currentArea->SetName(ToWide(text));
    item->setText(0, text);
}
