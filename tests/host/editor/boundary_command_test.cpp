// The dialogue of the boundary command: argument lists as callers send them, and the prompts one by one.
#include "host/editor/BoundaryCommand.h"
#include "host/services/Text.h"
#include "tests/host/editor/EditorFixture.h"

#include <gmock/gmock.h>

#include <cstdarg>

namespace velmor {
namespace {

using test::EditorFixture;
using testing::Each;

class BoundaryCommandTest : public EditorFixture {
protected:
    // A square of 100 with a square of 20 in its middle, and beside both a bar that cuts the right half off when it
    // counts: it stands on a layer of its own.
    void SetUp() override
    {
        outer = rectangle(0, 0, 100, 100);
        island = rectangle(20, 40, 40, 60);
        bar = onLayer(line(60, -10, 60, 110), L"Bars");
        before = entityCount();
        EXPECT_EQ(acedSSAdd(nullptr, nullptr, set), RTNORM);
        for (const AcDbObjectId id : {outer, island}) {
            ads_name name;
            EXPECT_EQ(acdbGetAdsName(name, id), Acad::eOk);
            EXPECT_EQ(acedSSAdd(name, set, set), RTNORM);
        }
    }

    std::vector<double> newAreas()
    {
        std::vector<double> areas;
        for (const AcDbPolyline *polyline : polylinesFrom(before)) {
            EXPECT_TRUE(polyline->isClosed());
            areas.push_back(areaOf(*polyline));
        }
        return areas;
    }

    AcDbObjectId outer, island, bar;
    std::size_t before = 0;
    ads_name set = {0, 0};
    const ads_point point = {10, 10, 0};
};

// --- The lists, as they stand --------------------------------------------------------------------------------------

TEST_F(BoundaryCommandTest, PointWithIslandsWithoutASet)
{
    EXPECT_EQ(acedCommand(RTSTR, L"_-BOUNDARY", RTSTR, L"_A", RTSTR, L"_I", RTSTR, L"_Y", RTSTR, L"", RT3DPOINT, point,
                          RTSTR, L"", RTNONE),
              RTNORM);
    EXPECT_THAT(newAreas(), testing::ElementsAre(6000.0, 400.0)); // the visible bar counts
}

TEST_F(BoundaryCommandTest, PointWithIslandsOverASet)
{
    EXPECT_EQ(acedCommand(RTSTR, L"_-BOUNDARY", RTSTR, L"_A", RTSTR, L"_B", RTSTR, L"_N", RTPICKS, set, RTSTR, L"",
                          RTSTR, L"_I", RTSTR, L"_Y", RTSTR, L"", RT3DPOINT, point, RTSTR, L"", RTNONE),
              RTNORM);
    EXPECT_THAT(newAreas(), testing::ElementsAre(10000.0, 400.0)); // outer first, then islands; no bar in the set
}

TEST_F(BoundaryCommandTest, PointWithoutIslandsWithoutASet)
{
    EXPECT_EQ(acedCommand(RTSTR, L"_-BOUNDARY", RTSTR, L"_A", RTSTR, L"_I", RTSTR, L"_N", RTSTR, L"", RTSTR, L"",
                          RTPOINT, point, RTSTR, L"", RTNONE),
              RTNORM);
    EXPECT_THAT(newAreas(), testing::ElementsAre(6000.0));
}

TEST_F(BoundaryCommandTest, PointWithoutIslandsOverASet)
{
    EXPECT_EQ(acedCommand(RTSTR, L"_-BOUNDARY", RTSTR, L"_A", RTSTR, L"_B", RTSTR, L"_N", RTPICKS, set, RTSTR, L"",
                          RTSTR, L"_I", RTSTR, L"_N", RTSTR, L"", RTSTR, L"", RT3DPOINT, point, RTSTR, L"", RTNONE),
              RTNORM);
    EXPECT_THAT(newAreas(), testing::ElementsAre(10000.0));
}

/// Builds a chain as the callers of the list forms do: head, one node for each point, a last empty text.
class Chain {
public:
    Chain(std::initializer_list<const wchar_t *> before, const std::int64_t *picks,
          std::initializer_list<const wchar_t *> after, std::initializer_list<AcGePoint3d> points)
    {
        for (const wchar_t *text : before)
            link(acutBuildList(RTSTR, text, RTNONE));
        if (picks)
            link(acutBuildList(RTPICKS, picks, RTNONE));
        for (const wchar_t *text : after)
            link(acutBuildList(RTSTR, text, RTNONE));
        for (const AcGePoint3d &p : points) {
            resbuf *node = acutNewRb(RT3DPOINT);
            node->resval.rpoint[0] = p.x;
            node->resval.rpoint[1] = p.y;
            node->resval.rpoint[2] = p.z;
            link(node);
        }
        link(acutBuildList(RTSTR, L"", RTNONE));
    }
    ~Chain() { acutRelRb(m_head); }
    const resbuf *head() const { return m_head; }

private:
    void link(resbuf *node)
    {
        ASSERT_NE(node, nullptr);
        (m_last ? m_last->rbnext : m_head) = node;
        m_last = node;
    }
    resbuf *m_head = nullptr, *m_last = nullptr;
};

TEST_F(BoundaryCommandTest, PointsAsPolylinesWithoutASet)
{
    const Chain chain({L"_-BOUNDARY", L"_A", L"_I", L"_Y", L"", L"_O", L"_P", L""}, nullptr, {}, {{10, 10}, {80, 50}});
    EXPECT_EQ(acedCmd(chain.head()), RTNORM);
    EXPECT_THAT(newAreas(), testing::ElementsAre(6000.0, 400.0, 4000.0));
}

TEST_F(BoundaryCommandTest, PointsAsPolylinesOverASet)
{
    const Chain chain({L"_-BOUNDARY", L"_A", L"_I", L"_Y", L"_B", L"_N"}, set, {L"", L"_O", L"_P", L""},
                      {{10, 10}, {30, 50}});
    EXPECT_EQ(acedCmd(chain.head()), RTNORM);
    EXPECT_THAT(newAreas(), testing::ElementsAre(10000.0, 400.0, 400.0));
}

TEST_F(BoundaryCommandTest, PointsAsRegionsMakeNothingAndSaySo)
{
    const Chain chain({L"_-BOUNDARY", L"_A", L"_I", L"_N", L"", L"_O", L"_R", L""}, nullptr, {}, {{10, 10}, {80, 50}});
    EXPECT_EQ(acedCmd(chain.head()), RTNORM);
    EXPECT_TRUE(newAreas().empty());
    EXPECT_THAT(session.lastStatus(), testing::HasSubstr(L"not solid regions"));
    EXPECT_TRUE(session.alerts().empty()) << "a dialog that runs the command is not held up";
}

TEST_F(BoundaryCommandTest, PointsAsRegionsOverASetMakeNothingAndSaySo)
{
    const Chain chain({L"_-BOUNDARY", L"_A", L"_I", L"_N", L"", L"_B", L"_N"}, set, {L"", L"_O", L"_R", L""},
                      {{10, 10}});
    EXPECT_EQ(acedCmd(chain.head()), RTNORM);
    EXPECT_TRUE(newAreas().empty());
    EXPECT_THAT(session.lastStatus(), testing::HasSubstr(L"not solid regions"));
    EXPECT_TRUE(session.alerts().empty()) << "a dialog that runs the command is not held up";
}

// --- What comes out ------------------------------------------------------------------------------------------------

TEST_F(BoundaryCommandTest, TheSamePointTwiceGivesTheSameVertices)
{
    const auto trace = [&] {
        EXPECT_EQ(acedCommand(RTSTR, L"_-BOUNDARY", RTSTR, L"_A", RTSTR, L"_I", RTSTR, L"_Y", RTSTR, L"", RT3DPOINT,
                              point, RTSTR, L"", RTNONE),
                  RTNORM);
    };
    trace();
    trace(); // the first result is linework now, and lies on what was there
    const auto made = polylinesFrom(before);
    ASSERT_EQ(made.size(), 4u);
    EXPECT_EQ(made[0]->vertices(), made[2]->vertices());
    EXPECT_EQ(made[1]->vertices(), made[3]->vertices());
}

TEST_F(BoundaryCommandTest, TheResultStandsOnTheCurrentLayer)
{
    drawing().setCurrentLayer(drawing().ensureLayer(L"Results"));
    EXPECT_EQ(acedCommand(RTSTR, L"_-BOUNDARY", RTPOINT, point, RTSTR, L"", RTNONE), RTNORM);
    const auto made = polylinesFrom(before);
    ASSERT_EQ(made.size(), 2u);
    EXPECT_EQ(made[0]->layer(), L"Results");
}

TEST_F(BoundaryCommandTest, APointInNoClosedAreaMakesNothing)
{
    const ads_point outside = {500, 500, 0};
    EXPECT_EQ(acedCommand(RTSTR, L"_-BOUNDARY", RTSTR, L"_A", RTSTR, L"_I", RTSTR, L"_Y", RTSTR, L"", RT3DPOINT,
                          outside, RTSTR, L"", RTNONE),
              RTNORM);
    EXPECT_EQ(entityCount(), before);
    EXPECT_FALSE(session.lastStatus().empty());
}

TEST_F(BoundaryCommandTest, ArcsStayArcsAndCountInTheArea)
{
    drawing().append(std::make_unique<CircleEntity>(AcGePoint3d(300, 300), 10.0));
    const ads_point inside = {301, 302, 0};
    EXPECT_EQ(acedCommand(RTSTR, L"_-BOUNDARY", RTPOINT, inside, RTSTR, L"", RTNONE), RTNORM);
    const auto made = polylinesFrom(before);
    ASSERT_EQ(made.size(), 1u);
    EXPECT_NEAR(areaOf(*made[0]), 100.0 * std::numbers::pi, 1e-9);
}

TEST_F(BoundaryCommandTest, AGapIsClosedOnlyAsFarAsTheHostVariableAllows)
{
    line(200, 0, 210, 0);
    line(210, 0, 210, 10);
    line(210, 10, 200, 10);
    line(200, 10, 200, 0.4); // stops 0.4 short
    const ads_point inside = {205, 5, 0};
    const std::size_t start = entityCount();
    EXPECT_EQ(acedCommand(RTSTR, L"_-BOUNDARY", RTPOINT, inside, RTSTR, L"", RTNONE), RTNORM);
    EXPECT_EQ(entityCount(), start);
    EXPECT_THAT(session.lastStatus(), testing::HasSubstr(L"not closed"));
    EXPECT_TRUE(session.setVariable(L"HPGAPTOL", 0.5));
    EXPECT_EQ(acedCommand(RTSTR, L"_-BOUNDARY", RTPOINT, inside, RTSTR, L"", RTNONE), RTNORM);
    EXPECT_EQ(entityCount(), start + 1);
}

TEST_F(BoundaryCommandTest, TwoPointsInOneRegionDrawItOnce)
{
    const ads_point second = {11, 12, 0};
    EXPECT_EQ(acedCommand(RTSTR, L"_-BOUNDARY", RTPOINT, point, RTPOINT, second, RTSTR, L"", RTNONE), RTNORM);
    EXPECT_EQ(polylinesFrom(before).size(), 2u);
}

// --- Prompts -------------------------------------------------------------------------------------------------------

TEST_F(BoundaryCommandTest, AListThatEndsBeforeTheCommandDoesIsCancelledAndMakesNothing)
{
    EXPECT_EQ(acedCommand(RTSTR, L"_-BOUNDARY", RTPOINT, point, RTNONE), RTCAN);
    EXPECT_EQ(acedCommand(RTSTR, L"_-BOUNDARY", RTSTR, L"_A", RTSTR, L"_I", RTNONE), RTCAN);
    EXPECT_EQ(entityCount(), before);
}

TEST_F(BoundaryCommandTest, OddInputIsRefusedAndTheRestStillCounts)
{
    EXPECT_EQ(acedCommand(RTSTR, L"_-BOUNDARY", RTSTR, L"_Q", RTSHORT, 7, RTSTR, L"_A", RTSTR, L"_X", RTSTR, L"",
                          RTPOINT, point, RTSTR, L"", RTNONE),
              RTREJ);
    EXPECT_EQ(newAreas().size(), 2u);
}

TEST_F(BoundaryCommandTest, APointThatIsNoNumberIsRefused)
{
    const ads_point wrong = {std::numeric_limits<double>::quiet_NaN(), 0, 0};
    EXPECT_EQ(acedCommand(RTSTR, L"_-BOUNDARY", RTPOINT, wrong, RTSTR, L"", RTNONE), RTREJ);
    EXPECT_EQ(entityCount(), before);
}

TEST_F(BoundaryCommandTest, AFreedSetIsRefused)
{
    EXPECT_EQ(acedSSFree(set), RTNORM);
    EXPECT_EQ(acedCommand(RTSTR, L"_-BOUNDARY", RTSTR, L"_A", RTSTR, L"_B", RTSTR, L"_N", RTPICKS, set, RTSTR, L"",
                          RTSTR, L"", RTPOINT, point, RTSTR, L"", RTNONE),
              RTREJ);
    EXPECT_EQ(entityCount(), before);
}

TEST_F(BoundaryCommandTest, APersonIsAskedPromptByPrompt)
{
    struct Recorder final : PromptSource {
        std::optional<Answer> ask(const Prompt &prompt) override
        {
            asked.push_back(prompt.text);
            return m_answers.ask(prompt);
        }
        std::vector<std::wstring> asked;
        AnswerQueue m_answers;
    } person;
    for (const wchar_t *text : {L"A", L"B", L"New"})
        person.m_answers.push({std::wstring(text)});
    person.m_answers.push({AcDbObjectIdArray{outer}});
    for (const wchar_t *text : {L"", L"is", L"No", L"", L"", L"10,10", L""})
        person.m_answers.push({std::wstring(text)});
    session.setPromptSource(&person);
    EXPECT_EQ(session.commands().start(L"-BOUNDARY"), RunStatus::Done);
    session.setPromptSource(nullptr);
    EXPECT_THAT(newAreas(), testing::ElementsAre(10000.0));
    ASSERT_EQ(person.asked.size(), 11u);
    EXPECT_THAT(person.asked[0], testing::HasSubstr(L"Internal point"));
    EXPECT_THAT(person.asked[3], testing::HasSubstr(L"Select objects"));
    EXPECT_THAT(person.asked[7], testing::HasSubstr(L"Ray direction"));
}

TEST_F(BoundaryCommandTest, ANewBoundarySetOfNothingBoundsNothing)
{
    EXPECT_EQ(acedCommand(RTSTR, L"_-BOUNDARY", RTSTR, L"_A", RTSTR, L"_B", RTSTR, L"_N", RTSTR, L"", RTSTR, L"",
                          RTPOINT, point, RTSTR, L"", RTNONE),
              RTNORM);
    EXPECT_EQ(entityCount(), before);
}

TEST_F(BoundaryCommandTest, ASetThatIsFreedBetweenItsPickAndThePointBoundsNothing)
{
    struct Freeing final : PromptSource {
        std::optional<Answer> ask(const Prompt &prompt) override
        {
            if (prompt.kind == PromptKind::Point && picked)
                acedSSFree(*set);
            picked = picked || prompt.kind == PromptKind::Selection;
            return m_answers.ask(prompt);
        }
        ads_name *set = nullptr;
        bool picked = false;
        AnswerQueue m_answers;
    } person;
    person.set = &set;
    for (const wchar_t *text : {L"A", L"B", L"New"})
        person.m_answers.push({std::wstring(text)});
    person.m_answers.push({Answer::Set{set[0]}});
    for (const wchar_t *text : {L"", L"", L"10,10", L""})
        person.m_answers.push({std::wstring(text)});
    session.setPromptSource(&person);
    EXPECT_EQ(session.commands().start(L"-BOUNDARY"), RunStatus::Done);
    session.setPromptSource(nullptr);
    EXPECT_TRUE(person.picked);
    EXPECT_EQ(session.selectionSets().size(), 0u);
    EXPECT_EQ(entityCount(), before);
}

TEST_F(BoundaryCommandTest, ABoundarySetIsTypedAsASelectionIsAtItsOwnPrompt)
{
    const std::wstring handle = L"#" + handleText(*open(outer));
    for (const auto &[typed, areas] : std::vector<std::pair<std::wstring, std::vector<double>>>{
             {handle, {10000.0}}, {L"0,30", {10000.0}}, {L"ALL", {6000.0, 400.0}}, {L"all", {6000.0, 400.0}}}) {
        for (const std::wstring &text : {std::wstring(L"_A"), std::wstring(L"_B"), std::wstring(L"_N"), typed,
                                         std::wstring(), std::wstring(), std::wstring(L"10,10"), std::wstring()})
            session.answers().push({text});
        EXPECT_EQ(session.commands().start(L"-BOUNDARY"), RunStatus::Done) << utf8(typed);
        EXPECT_EQ(newAreas(), areas) << utf8(typed);
        before = entityCount();
        for (AcDbEntity *made : drawing().modelSpace().entities())
            if (const AcDbObjectId id = idOf(*made); id != outer && id != island && id != bar)
                drawing().erase(*made);
    }
}

TEST_F(BoundaryCommandTest, WhatIsTakenOutOfTheBoundarySetAgainDoesNotBound)
{
    for (const bool asSet : {false, true}) {
        for (const wchar_t *text : {L"_A", L"_B", L"_N"})
            session.answers().push({std::wstring(text)});
        session.answers().push(asSet ? Answer{Answer::Set{set[0]}} : Answer{AcDbObjectIdArray{outer, island}});
        session.answers().push({Answer::Removed{{island}}});
        for (const wchar_t *text : {L"", L"", L"10,10", L""})
            session.answers().push({std::wstring(text)});
        EXPECT_EQ(session.commands().start(L"-BOUNDARY"), RunStatus::Done);
        EXPECT_THAT(newAreas(), testing::ElementsAre(10000.0));
        before = entityCount();
    }
    EXPECT_EQ(session.selectionSets().find(set)->members().size(), 2u) << "the set itself is its owner's";
}

TEST_F(BoundaryCommandTest, ASelectionThatMeansNothingIsRefusedAndAskedForAgain)
{
    for (const wchar_t *text :
         {L"_A", L"_B", L"_N", L"1000,1000", L"#FFFFFF", L"something", L"all", L"", L"", L"10,10", L""})
        session.answers().push({std::wstring(text)});
    EXPECT_EQ(session.commands().start(L"-BOUNDARY"), RunStatus::InputRefused);
    EXPECT_THAT(newAreas(), testing::ElementsAre(6000.0, 400.0));
}

TEST_F(BoundaryCommandTest, EscapeLeavesTheDrawingAsItWas)
{
    session.answers().push({std::wstring(L"10,10")});
    session.answers().push({Answer::Escape{}});
    EXPECT_EQ(session.commands().start(L"-BOUNDARY"), RunStatus::Cancelled);
    EXPECT_EQ(entityCount(), before);
}

TEST_F(BoundaryCommandTest, TheShortFormTakesOnePoint)
{
    EXPECT_TRUE(session.commands().run(L"BOUNDARY 10,10"));
    EXPECT_THAT(newAreas(), testing::ElementsAre(6000.0, 400.0));
}

TEST_F(BoundaryCommandTest, SeveralCommandsMayStandInOneList)
{
    const ads_point right = {80, 50, 0};
    EXPECT_EQ(acedCommand(RTSTR, L"_-BOUNDARY", RTPOINT, point, RTSTR, L"", RTSTR, L"_-BOUNDARY", RTPOINT, right, RTSTR,
                          L"", RTNONE),
              RTNORM);
    EXPECT_THAT(newAreas(), testing::ElementsAre(6000.0, 400.0, 4000.0));
}

} // namespace
} // namespace velmor
