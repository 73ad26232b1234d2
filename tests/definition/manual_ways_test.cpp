// A boundary by an existing polyline, and corner by corner.
#include "tests/definition/manual_fixture.h"

#include "host/drawing/Entities.h"

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

constexpr std::string_view kBegin = "CAdUiBaseDialog::BeginEditorCommand";
constexpr std::string_view kComplete = "CAdUiBaseDialog::CompleteEditorCommand";
constexpr std::string_view kUnMark = "CCatchmentAreaManager::UnMarkAllCatchments";

class EntityPick : public ManualDefinitionTest {
protected:
    template <class Entity, class... Arguments>
    AcDbObjectId add(Arguments &&...arguments)
    {
        return drawing().append(std::make_unique<Entity>(std::forward<Arguments>(arguments)...));
    }
    /// A triangle of 1234.56789 square metres.
    AcDbObjectId addTriangle()
    {
        return add<AcDbPolyline>(std::vector<AcDbPolyline::Vertex>{{1000, 0, 0}, {1100, 0, 0}, {1000, 24.6913578, 0}},
                                 true);
    }
};

TEST_F(EntityPick, APolylineIsCopiedAndGivesOneRow)
{
    const AcDbObjectId source = addBox(1000, 0, 1100, 80, L"0");
    run([&](CDialogUnderTest &dialog) {
        prepare(dialog, 0, {L"D1"});
        dialog.check(268, true); // a pick never looks for islands
        addBox(1010, 10, 1020, 20, L"0");
        pickEntity(dialog, source);
        EXPECT_EQ(rows(dialog), Rows{mainText() + " 0.8000 chosen"});
        EXPECT_EQ(dialog.text(213), "0.8");
        EXPECT_TRUE(dialog.isEnabled(221));
        EXPECT_TRUE(dialog.isVisible());
        EXPECT_FALSE(source.isErased());
        const AcDbObjectId copy = dialog.LastBoundary();
        EXPECT_NE(copy, source);
        EXPECT_EQ(verticesOf(copy), verticesOf(source));
        EXPECT_THAT(dialog.LastIslands(), IsEmpty());
        ASSERT_THAT(hatches(), SizeIs(1));
        EXPECT_THAT(hatch(0)->loops(), SizeIs(1));
    });
    EXPECT_FALSE(source.isErased());
    EXPECT_THAT(hatches(), IsEmpty());
}

TEST_F(EntityPick, TheAreaIsShownCutAtFourPlacesUntilTheRowIsChosenAgain)
{
    const AcDbObjectId triangle = addTriangle();
    run([&](CDialogUnderTest &dialog) {
        prepare(dialog, 1, {L"D1"});
        pickEntity(dialog, triangle);
        EXPECT_EQ(rows(dialog), Rows{mainText() + " 0.1235 chosen"});
        EXPECT_EQ(dialog.text(213), "0.1234"); // set once more behind the row's rounded 0.1235
        dialog.selectRows({0});
        EXPECT_EQ(dialog.text(213), "0.1235");
    });
}

TEST_F(EntityPick, ItsCallsComeInOrderAndHatchesMarksAndSnapsAreLeftAlone)
{
    const AcDbObjectId triangle = addTriangle();
    run([&](CDialogUnderTest &dialog) {
        prepare(dialog, 1, {L"D1"});
        pickPoint(dialog, 50, 50);
        const AcDbObjectId preview = hatches().at(0);
        CPromptsUnderTest prompts;
        prompts.m_answer = [&](const velmor::Prompt &prompt) {
            EXPECT_EQ(prompt.kind, velmor::PromptKind::Entity);
            EXPECT_EQ(prompt.text, message(2006));
            EXPECT_FALSE(dialog.isVisible());
            EXPECT_EQ(snaps(), kSnaps);
            EXPECT_THAT(hatches(), ElementsAre(preview)); // it stays, though its boundary is gone
            EXPECT_THAT(rows(dialog), IsEmpty());
            return velmor::Answer{velmor::Answer::Pick{triangle, {}}};
        };
        m_session.setPromptSource(&prompts);
        EXPECT_THAT(record({kBegin, kComplete, kUnMark, "acedSetVar", "acedEntSel", "CZEMCDraw::appendToModelSpace",
                            "acedUpdateDisplay"},
                           [&] { dialog.click(209); }),
                    ElementsAre("BeginEditorCommand", "acedEntSel " + velmor::journalText(message(2006)),
                                "appendToModelSpace AcDbHatch", "UnMarkAllCatchments 7", "appendToModelSpace AcDbHatch",
                                "acedUpdateDisplay", "CompleteEditorCommand 1", "acedUpdateDisplay"));
    });
}

TEST_F(EntityPick, EscapeEnterAndAMissLeaveNoRowsAndTheShownArea)
{
    run([&](CDialogUnderTest &dialog) {
        prepare(dialog, 1, {L"D1"});
        for (const auto &reply : {velmor::Answer{velmor::Answer::Escape{}}, velmor::Answer{velmor::Answer::Enter{}},
                                  velmor::Answer{AcGePoint3d(-5000, -5000)}}) {
            pickPoint(dialog, 50, 50);
            m_session.answers().push(reply);
            EXPECT_THAT(record({kComplete, "acedUpdateDisplay", "acedAlert"}, [&] { dialog.click(209); }),
                        ElementsAre("CompleteEditorCommand 1", "acedUpdateDisplay"));
            EXPECT_THAT(rows(dialog), IsEmpty());
            EXPECT_EQ(dialog.text(213), "1");
            EXPECT_TRUE(dialog.isVisible());
        }
    });
}

TEST_F(EntityPick, AnEntityThatCannotBeOpenedIsToldAndTheAreaShowsZero)
{
    const AcDbObjectId triangle = addTriangle();
    run([&](CDialogUnderTest &dialog) {
        prepare(dialog, 1, {L"D1"});
        AcDbEntity *held = nullptr;
        ASSERT_EQ(acdbOpenAcDbEntity(held, triangle, AcDb::kForWrite), Acad::eOk);
        pickEntity(dialog, triangle);
        held->close();
        EXPECT_THAT(alerts(), ElementsAre(message(2002)));
        EXPECT_THAT(rows(dialog), IsEmpty());
        EXPECT_EQ(dialog.text(213), "0");
        EXPECT_FALSE(dialog.isEnabled(221));
    });
}

TEST_F(EntityPick, AnEntityWithoutVerticesGivesARowOfAnUnknownArea)
{
    const AcDbObjectId circle = add<velmor::CircleEntity>(AcGePoint3d(1000, 0), 10.0);
    run([&](CDialogUnderTest &dialog) {
        prepare(dialog, 1, {L"D1"});
        pickEntity(dialog, circle);
        EXPECT_THAT(alerts(), IsEmpty());
        EXPECT_EQ(rows(dialog), Rows{mainText() + " -100.0000 chosen"});
        EXPECT_EQ(dialog.text(213), "0");
        dialog.selectRows({0});
        EXPECT_EQ(dialog.text(213), "-100");
        EXPECT_TRUE(dialog.isEnabled(221));
        dialog.click(221);
        EXPECT_THAT(areas(), IsEmpty()); // no polygon, no area
    });
    EXPECT_THAT(hatches(), IsEmpty());
}

TEST_F(EntityPick, WithoutACentreTheOriginIsTested)
{
    const AcDbObjectId around = addBox(-10, -10, 10, 10, L"0");
    const AcDbObjectId circle = add<velmor::CircleEntity>(AcGePoint3d(1000, 0), 10.0);
    run([&](CDialogUnderTest &dialog) {
        prepare(dialog, 1, {L"D1"});
        pickEntity(dialog, around);
        dialog.click(221);
        ASSERT_THAT(areas(), SizeIs(1));
        pickEntity(dialog, circle);
        EXPECT_THAT(alerts(), ElementsAre(message(2005)));
        EXPECT_THAT(rows(dialog), IsEmpty());
    });
}

TEST_F(EntityPick, AKnownCentreIsToldAndThePolylineStaysForGood)
{
    const AcDbObjectId source = addBox(1000, 0, 1100, 80, L"0");
    run([&](CDialogUnderTest &dialog) {
        prepare(dialog, 1, {L"D1"});
        pickEntity(dialog, source);
        dialog.click(221);
        ASSERT_THAT(areas(), SizeIs(1));
        dialog.type(213, "7");
        answerPick(source);
        EXPECT_THAT(record({kComplete, "acedSetVar", "acedUpdateDisplay", "acedAlert"}, [&] { dialog.click(209); }),
                    ElementsAre("acedAlert " + velmor::journalText(message(2005)), "CompleteEditorCommand 1"));
        EXPECT_THAT(rows(dialog), IsEmpty());
        EXPECT_EQ(dialog.text(213), "7");
        EXPECT_EQ(snaps(), kSnaps);
    });
    EXPECT_THAT(loosePolylines(), SizeIs(2)) << "the source and the copy that stayed";
}

TEST_F(EntityPick, AnOldStylePolylineServesTooAndOneInSpaceGivesNoVertices)
{
    const AcDbObjectId plane = add<AcDb2dPolyline>(
        std::vector<AcDb2dPolyline::Vertex>{{1000, 0, 0}, {1200, 0, 0}, {1200, 100, 0}, {1000, 50, 0}}, true);
    const AcDbObjectId space =
        add<AcDb3dPolyline>(std::vector<AcGePoint3d>{{1000, 0, 5}, {1200, 0, 6}, {1200, 100, 7}, {1000, 50, 8}}, true);
    run([&](CDialogUnderTest &dialog) {
        prepare(dialog, 1, {L"D1"});
        pickEntity(dialog, plane);
        EXPECT_EQ(rows(dialog), Rows{mainText() + " 1.5000 chosen"});
        pickEntity(dialog, space);
        EXPECT_EQ(rows(dialog), Rows{mainText() + " -100.0000 chosen"});
    });
}

using Corners = ManualDefinitionTest;

TEST_F(Corners, ThreeClicksGiveATriangleWhoseLastCornerIsRepeated)
{
    run([&](CDialogUnderTest &dialog) {
        prepare(dialog, 0, {L"D1"});
        pickCorners(dialog, {{1000, 0}, {1100, 0}, {1000, 40}});
        EXPECT_EQ(rows(dialog), Rows{mainText() + " 0.2000 chosen"});
        EXPECT_EQ(dialog.text(213), "0.2");
        EXPECT_TRUE(dialog.isEnabled(221));
        ASSERT_THAT(loosePolylines(), ElementsAre(dialog.LastBoundary()));
        EXPECT_THAT(verticesOf(dialog.LastBoundary()),
                    ElementsAre(std::pair(1000, 0), std::pair(1100, 0), std::pair(1000, 40), std::pair(1000, 40)));
        EXPECT_THAT(lines(), IsEmpty());
        EXPECT_THAT(hatches(), SizeIs(1));
    });
    EXPECT_THAT(loosePolylines(), IsEmpty());
    EXPECT_THAT(hatches(), IsEmpty());
}

TEST_F(Corners, AClickOnTheFirstCornerEndsTheRingByItself)
{
    run([&](CDialogUnderTest &dialog) {
        prepare(dialog, 1, {L"D1"});
        pickCorners(dialog, {{1000, 0}, {1100, 0}, {1000, 40}, {1000, 0}});
        EXPECT_THAT(verticesOf(dialog.LastBoundary()),
                    ElementsAre(std::pair(1000, 0), std::pair(1100, 0), std::pair(1000, 40), std::pair(1000, 0)));
        EXPECT_EQ(rows(dialog), Rows{mainText() + " 0.2000 chosen"});
    });
}

TEST_F(Corners, TwoClicksOrFewerGiveNothing)
{
    run([&](CDialogUnderTest &dialog) {
        prepare(dialog, 1, {L"D1"});
        for (const auto &corners : std::initializer_list<std::initializer_list<std::pair<double, double>>>{
                 {}, {{1000, 0}}, {{1000, 0}, {1100, 0}}}) {
            pickCorners(dialog, corners);
            EXPECT_THAT(rows(dialog), IsEmpty());
            EXPECT_THAT(loosePolylines(), IsEmpty());
            EXPECT_THAT(lines(), IsEmpty());
            EXPECT_FALSE(dialog.isEnabled(221));
            EXPECT_TRUE(dialog.isVisible());
        }
    });
    EXPECT_THAT(alerts(), IsEmpty());
}

TEST_F(Corners, EscapeEndsTheCornersLikeEnter)
{
    run([&](CDialogUnderTest &dialog) {
        prepare(dialog, 1, {L"D1"});
        for (const auto &[x, y] : {std::pair(1000, 0), std::pair(1100, 0), std::pair(1000, 40)})
            answer(x, y);
        answerEscape();
        dialog.click(239);
        EXPECT_THAT(rows(dialog), SizeIs(1));
    });
}

TEST_F(Corners, EachNextCornerIsAskedFromTheLastWithTheLinesSoFarInTheDrawing)
{
    run([&](CDialogUnderTest &dialog) {
        prepare(dialog, 1, {L"D1"});
        const std::vector<AcGePoint3d> corners{{1000, 0}, {1100, 0}, {1000, 40}};
        CPromptsUnderTest prompts;
        prompts.m_answer = [&](const velmor::Prompt &prompt) {
            const std::size_t asked = prompts.m_asked.size() - 1;
            EXPECT_FALSE(dialog.isVisible());
            EXPECT_EQ(prompt.kind, velmor::PromptKind::Point);
            EXPECT_EQ(prompt.text, message(asked == 0 ? 215 : 125));
            EXPECT_EQ(prompt.base.has_value(), asked > 0);
            if (asked > 0) {
                EXPECT_EQ(*prompt.base, corners[asked - 1]);
            }
            EXPECT_THAT(lines(), SizeIs(asked == 0 ? 0 : asked - 1));
            EXPECT_EQ(snaps(), kSnaps);
            return asked < corners.size() ? velmor::Answer{corners[asked]} : velmor::Answer{velmor::Answer::Enter{}};
        };
        m_session.setPromptSource(&prompts);
        dialog.click(239);
        EXPECT_THAT(prompts.m_asked, SizeIs(4));
        EXPECT_THAT(lines(), IsEmpty());
    });
}

TEST_F(Corners, ItsCallsComeInOrderTheDisplayBeforeTheDialog)
{
    run([&](CDialogUnderTest &dialog) {
        prepare(dialog, 1, {L"D1"});
        for (const auto &[x, y] : {std::pair(1000, 0), std::pair(1100, 0), std::pair(1000, 40)})
            answer(x, y);
        answerEnter();
        const auto found = record({kBegin, kComplete, kUnMark, "acedSetVar", "CCatchmentAreaManager::GetCABySection",
                                   "acedGetPoint", "CZEMCDraw::line", "CZEMCDraw::polylineLW",
                                   "CZEMCDraw::appendToModelSpace", "acedSetAid", "acedUpdateDisplay"},
                                  [&] { dialog.click(239); });
        std::vector<std::string> names;
        for (const std::string &call : found)
            names.push_back(call.substr(0, call.find(' ')));
        EXPECT_THAT(names, ElementsAre("GetCABySection", "BeginEditorCommand", "acedGetPoint", "acedGetPoint", "line",
                                       "acedSetAid", "acedGetPoint", "line", "acedSetAid", "acedGetPoint", "polylineLW",
                                       "acedSetAid", "appendToModelSpace", "acedSetAid", "UnMarkAllCatchments",
                                       "appendToModelSpace", "acedSetAid", "acedUpdateDisplay", "acedUpdateDisplay",
                                       "CompleteEditorCommand"));
    });
}

TEST_F(Corners, AKnownCentreIsRefusedByTheSaveAlone)
{
    run([&](CDialogUnderTest &dialog) {
        prepare(dialog, 1, {L"D1"});
        pickPoint(dialog, 50, 50);
        dialog.click(221);
        ASSERT_THAT(areas(), SizeIs(1));
        pickCorners(dialog, {{0, 0}, {100, 0}, {100, 100}, {0, 100}, {0, 0}});
        EXPECT_THAT(alerts(), IsEmpty());
        EXPECT_THAT(rows(dialog), SizeIs(1));
        dialog.click(221);
        EXPECT_THAT(alerts(), ElementsAre(message(2005)));
        EXPECT_THAT(areas(), SizeIs(1));
    });
}

TEST_F(Corners, ThePreviewOfThePickBeforeStaysUntilARowIsChosen)
{
    run([&](CDialogUnderTest &dialog) {
        prepare(dialog, 1, {L"D1"});
        pickPoint(dialog, 50, 50);
        const AcDbObjectId preview = hatches().at(0);
        pickCorners(dialog, {{1000, 0}});
        EXPECT_THAT(hatches(), ElementsAre(preview));
        pickCorners(dialog, {{1000, 0}, {1100, 0}, {1000, 40}});
        EXPECT_TRUE(preview.isErased());
        EXPECT_THAT(hatches(), SizeIs(1));
    });
}

TEST_F(Corners, ALineOfCornersHasNoAreaAndIsShownAsZero)
{
    run([&](CDialogUnderTest &dialog) {
        prepare(dialog, 1, {L"D1"});
        pickCorners(dialog, {{1000, 0}, {1050, 0}, {1100, 0}});
        EXPECT_EQ(rows(dialog), Rows{mainText() + " 0.0000 chosen"});
    });
    EXPECT_THAT(hatches(), IsEmpty());
}

} // namespace
