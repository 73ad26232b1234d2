#include "tests/host/sewage/AreaWorld.h"

#include "host/drawing/Journal.h"

namespace velmor::test {
namespace {

class CatchmentJournal : public AreaWorld {
protected:
    void TearDown() override { Journal::instance().setRecording(false); }
    static std::vector<std::string> operations()
    {
        std::vector<std::string> found;
        for (const JournalEntry &entry : Journal::instance().entries())
            found.push_back(entry.operation);
        return found;
    }
};

TEST_F(CatchmentJournal, HoldsEachOperationOnceWithItsArguments)
{
    const SectionPtr s1 = section(L"S1");
    const std::string handle = journalText(s1->GetHandleText());
    Journal::instance().setRecording(true);
    const AreaPtr area = manager().CreateCA(kSquare, L"North", 3,
                                            bag({{L"CA_GUID", L"{G}"}, {L"CA_COEFF", 0.5}, {L"CA_TYPE_ISLAND", 0}}));
    manager().AssignCA({{s1, 0.25}, {{}, 0.5}}, area);
    area->SetPropertyData(L"CA_ISLANDS", CDataBox(CStringArray{L"{I}", L"{J}"}));
    area->Mark(3, 1.5, 0.0, L"ANSI31", 0);
    SectionShares sections;
    area->GetConnectedSections(sections);
    manager().DeleteCA(area);
    Journal::instance().setRecording(false);

    const std::vector<JournalEntry> expected{
        {"CCatchmentAreaManager::CreateCA",
         {"POLYGON ((0 0, 100 0, 100 100, 0 100, 0 0))", "North", "3", "CA_GUID={G}; CA_COEFF=0.5; CA_TYPE_ISLAND=0"}},
        {"CCatchmentAreaManager::AssignCA", {"[" + handle + " 0.25, null 0.5]", "{G}"}},
        {"CCatchmentArea::SetPropertyData", {"{G}", "CA_ISLANDS", "[{I}, {J}]"}},
        {"CCatchmentArea::Mark", {"{G}", "3", "1.5", "0", "ANSI31", "0"}},
        {"CCatchmentAreaManager::DeleteCA", {"{G}"}},
    };
    EXPECT_EQ(Journal::instance().entries(), expected) << testing::PrintToString(operations());
}

TEST_F(CatchmentJournal, KeepsOutWhatAnOperationWorksThrough)
{
    Journal::instance().setRecording(true);
    const AreaPtr area = manager().SetHiddenCA(section(L"S1"), 5.0, 1, {});
    area->GetCenterPoint();
    manager().WriteCatchmentLabel(area, nullptr);
    CCatchmentAreaManager::StartCAInfoTooltipSections();
    Journal::instance().setRecording(false);
    const std::vector<std::string> expected{"CCatchmentAreaManager::SetHiddenCA",
                                            "CCatchmentAreaManager::WriteCatchmentLabel",
                                            "CCatchmentAreaManager::StartCAInfoTooltipSections"};
    EXPECT_EQ(operations(), expected);
}

} // namespace
} // namespace velmor::test
