#include "tests/host/sewage/AreaWorld.h"

#include "host/sewage/AreaPick.h"

namespace velmor::test {
namespace {

class Pick : public AreaWorld {
protected:
    void SetUp() override
    {
        AreaWorld::SetUp();
        square = create(L"{S}", kSquare, L"square");
        far = create(L"{F}", kFarSquare, L"far");
    }
    void useIndex()
    {
        CatchmentAreas areas;
        manager().GetAllCatchmentAreas(areas, 7);
        std::vector<ZEMGis::Topology::CEntity *> entities;
        for (const AreaPtr &area : areas)
            entities.push_back(area.get());
        CCatchmentAreaManager::SetSpatialIndexCA(
            ZEMGis::Topology::CTopoEditor::Instance()->CreateCustomSpatialIndex(entities));
    }
    int pickAt(double x, double y)
    {
        session.answers().push({AcGePoint3d(x, y)});
        return CCatchmentAreaManager::StartCAInfoTooltipAreas();
    }
    static CCatchmentArea *picked() { return CCatchmentAreaManager::GetInteractivelySelectedCA(); }

    AreaPtr square, far;
};

TEST_F(Pick, AnAreaIsFoundAnywhereInside)
{
    useIndex();
    EXPECT_EQ(pickAt(50, 50), RTNORM);
    EXPECT_EQ(picked(), square.get());
    EXPECT_EQ(pickAt(545, 5), RTNORM);
    EXPECT_EQ(picked(), far.get());
}

TEST_F(Pick, AnIslandComesBeforeItsMainArea)
{
    const AreaPtr island = create(L"{I}", kSmallSquare, L"island");
    useIndex();
    pickAt(30, 30);
    EXPECT_EQ(picked(), island.get());
    pickAt(60, 60);
    EXPECT_EQ(picked(), square.get());
}

TEST_F(Pick, ASecondPickOfTheSameAreaGivesItAgain)
{
    useIndex();
    pickAt(50, 50);
    CCatchmentArea *first = picked();
    EXPECT_EQ(pickAt(51, 50), RTNORM);
    EXPECT_EQ(picked(), first);
    EXPECT_NE(first, nullptr);
}

TEST_F(Pick, AMissIsAPickOfNothing)
{
    useIndex();
    pickAt(50, 50);
    EXPECT_EQ(pickAt(300, 300), RTNORM) << "the loop goes on";
    EXPECT_EQ(picked(), nullptr);
}

TEST_F(Pick, EndingWithoutAPickLeavesTheLastOne)
{
    useIndex();
    pickAt(50, 50);
    session.answers().push({Answer::Escape{}});
    EXPECT_NE(CCatchmentAreaManager::StartCAInfoTooltipAreas(), RTNORM);
    EXPECT_EQ(picked(), square.get());
    session.answers().push({Answer::Enter{}});
    EXPECT_NE(CCatchmentAreaManager::StartCAInfoTooltipAreas(), RTNORM);
    EXPECT_EQ(picked(), square.get());
}

TEST_F(Pick, NothingMoreToAnswerEndsIt)
{
    useIndex();
    EXPECT_NE(CCatchmentAreaManager::StartCAInfoTooltipAreas(), RTNORM);
    EXPECT_EQ(picked(), nullptr);
}

TEST_F(Pick, ANewInteractionForgetsTheLastOne)
{
    useIndex();
    pickAt(50, 50);
    useIndex();
    EXPECT_EQ(picked(), nullptr);
}

TEST_F(Pick, APointMayBeTyped)
{
    useIndex();
    session.answers().push({std::wstring(L"520,20")});
    EXPECT_EQ(CCatchmentAreaManager::StartCAInfoTooltipAreas(), RTNORM);
    EXPECT_EQ(picked(), far.get());
}

TEST_F(Pick, TypedTextThatIsNoPointIsAskedForAgain)
{
    useIndex();
    session.answers().push({std::wstring(L"52o,20")});
    session.answers().push({std::wstring(L"here")});
    session.answers().push({AcGePoint3d(520, 20)});
    EXPECT_EQ(CCatchmentAreaManager::StartCAInfoTooltipAreas(), RTNORM);
    EXPECT_EQ(picked(), far.get());
    EXPECT_EQ(session.answers().size(), 0u);
}

TEST_F(Pick, AnEmptyTextEndsItLikeEnter)
{
    useIndex();
    session.answers().push({std::wstring()});
    session.answers().push({AcGePoint3d(520, 20)});
    EXPECT_NE(CCatchmentAreaManager::StartCAInfoTooltipAreas(), RTNORM);
    EXPECT_EQ(session.answers().size(), 1u);
    session.answers().clear();
}

TEST_F(Pick, AnAreasOwnEntityCountsWhereverItWasPicked)
{
    useIndex();
    session.answers().push({Answer::Pick{far->GetObjectId(), AcGePoint3d(50, 50)}});
    EXPECT_EQ(CCatchmentAreaManager::StartCAInfoTooltipAreas(), RTNORM);
    EXPECT_EQ(picked(), far.get());
}

TEST_F(Pick, WithoutAnIndexEveryPickIsAMiss)
{
    EXPECT_EQ(pickAt(50, 50), RTNORM);
    EXPECT_EQ(picked(), nullptr);
    CCatchmentAreaManager::SetSpatialIndexCA({});
    EXPECT_EQ(pickAt(50, 50), RTNORM);
    EXPECT_EQ(picked(), nullptr);
}

TEST_F(Pick, AnAreaThatWasDeletedSinceIsNeverAnswered)
{
    useIndex();
    pickAt(50, 50);
    manager().DeleteCA(square);
    square.reset();
    EXPECT_EQ(picked(), nullptr);
    EXPECT_EQ(pickAt(50, 50), RTNORM) << "the index still holds what was deleted";
    EXPECT_EQ(picked(), nullptr);
}

TEST_F(Pick, AnAreaMadeAfterTheIndexIsNotFound)
{
    useIndex();
    create(L"{N}", L"POLYGON ((0 500, 50 500, 50 550, 0 550, 0 500))", L"new");
    EXPECT_EQ(pickAt(25, 525), RTNORM);
    EXPECT_EQ(picked(), nullptr);
}

TEST_F(Pick, ShowsWhatTheAreaIs)
{
    square->SetFlowCoeff(0.25);
    manager().AssignCA({{section(L"S1"), 0.3}, {section(L"S2"), 0.7}}, square);
    const std::wstring tip = areaTip(store(), *store().own(square.get()));
    for (const wchar_t *part : {L"square", L"1.0000 ha", L"0.25", L"S1 30.00 %", L"S2 70.00 %"})
        EXPECT_NE(tip.find(part), std::wstring::npos) << tip;
    useIndex();
    pickAt(50, 50);
    EXPECT_NE(session.lastStatus().find(L"square"), std::wstring::npos);
}

TEST_F(Pick, TheTipFollowsTheCursorWhileThePromptWaits)
{
    struct Watcher : PromptSource {
        std::optional<Answer> ask(const Prompt &prompt) override
        {
            if (prompt.tip) {
                inside = prompt.tip({50, 50});
                outside = prompt.tip({300, 300});
            }
            return std::nullopt;
        }
        std::wstring inside, outside = L"?";
    } watcher;
    useIndex();
    session.setPromptSource(&watcher);
    CCatchmentAreaManager::StartCAInfoTooltipAreas();
    session.setPromptSource(nullptr);
    EXPECT_NE(watcher.inside.find(L"square"), std::wstring::npos);
    EXPECT_EQ(watcher.outside, L"");
    EXPECT_EQ(picked(), nullptr) << "looking is no pick";
}

TEST_F(Pick, OverSectionsGoesOnUntilTheUserEndsIt)
{
    manager().AssignCA({{section(L"S1"), 1.0}}, square);
    session.answers().push({AcGePoint3d(65, 1)});
    session.answers().push({AcGePoint3d(300, 300)});
    session.answers().push({AcGePoint3d(15, 1)});
    session.answers().push({Answer::Escape{}});
    session.answers().push({AcGePoint3d(65, 1)});
    CCatchmentAreaManager::StartCAInfoTooltipSections();
    EXPECT_EQ(session.answers().size(), 1u) << "it ends at Escape";
    const std::wstring shown = session.lastStatus();
    EXPECT_NE(shown.find(L"S1"), std::wstring::npos) << shown;
    EXPECT_NE(shown.find(L"30.00 m"), std::wstring::npos) << shown;
    EXPECT_NE(shown.find(L"square 100.00 %"), std::wstring::npos) << shown;
}

} // namespace
} // namespace velmor::test
