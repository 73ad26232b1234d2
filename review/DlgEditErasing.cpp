// Areas are erased: the checked ones after a question, the one in focus at once.
#include "review/DlgEditCatchmentArea.h"

#include "contracts/QuestionBox.h"
#include "review/AreaLists.h"
#include "review/ReviewMessages.h"

#include <unordered_set>

using ZEMGis::Notification::CNotificationFramework;
using ZEMGis::Notification::SetActiveCommand;
using ZEMGis::Sewage::CCatchmentAreaManager;

namespace {

/// The store's own area of that GUID goes.
void EraseFromStore(const std::wstring &guid)
{
    CCatchmentAreaManager *manager = CCatchmentAreaManager::Instance();
    manager->DeleteCA(manager->GetCatchmentAreaByGuid(guid));
}

} // namespace

void CDlgEditCatchmentArea::OnBtnErase()
{
    if (CNotificationFramework::Instance()->IsCommandActive() != 0)
        return;
    const SetActiveCommand command(L"CA_ERASE");
    RefreshMembers();
    SetHighlight(0);
    if (!m_checkedAreas.empty()) {
        if (!AgreesToErase()) {
            SetHighlight(1);
            return;
        }
        EraseCheckedAreas();
    } else if (m_currentArea) {
        EraseCurrentArea();
    }
    RefillTree();
    RefreshAfterErase();
}

void CDlgEditCatchmentArea::OnDeleteKey()
{
    // Neither the guard nor the refill's flag: while the tree is filled, its selection event runs inside.
    if (m_currentArea) {
        SetHighlight(0);
        EraseCurrentArea();
    }
    FillTree();
    RefreshAfterErase();
}

bool CDlgEditCatchmentArea::AgreesToErase() const
{
    const std::wstring question = Msg(ReviewMessage::kAreasSelected) + L' ' + std::to_wstring(m_checkedAreas.size()) +
                                  L" \n" + Msg(ReviewMessage::kEraseQuestion);
    return acedAskYesNo(question.c_str());
}

void CDlgEditCatchmentArea::EraseCheckedAreas()
{
    std::unordered_set<std::wstring> erased;
    for (const AreaPtr &area : m_checkedAreas) {
        if (!area)
            continue;
        const std::wstring guid = area->GetGuid();
        area->UnMark();
        erased.insert(guid);
        EraseFromStore(guid);
        if (m_currentArea && m_currentArea->GetGuid() == guid)
            m_currentArea.reset();
    }
    // Nobody looks at the lists meanwhile, so that one pass takes all of them out.
    for (CatchmentAreas *areas : {&m_allAreas, &m_catchAreas, &m_houseAreas, &m_industryAreas})
        TakeOutOfList(*areas, erased);
    UpdateCounts();
    m_checkedAreas.clear();
    m_checkedGuids.clear();
}

void CDlgEditCatchmentArea::EraseCurrentArea()
{
    RemoveFromLists(m_currentArea);
    EraseFromStore(m_currentArea->GetGuid());
    m_currentArea.reset();
}

void CDlgEditCatchmentArea::RefreshAfterErase()
{
    ApplyTreeSelection();
    acedRedraw(nullptr, 4);
    RefreshDrawingDisplay();
}
