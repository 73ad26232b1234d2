// A boundary by a point inside it: rows, previews, what is asked of the host, and every way out.
#include "tests/definition/manual_fixture.h"

#include <dlfcn.h>

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using testing::UnorderedElementsAre;

namespace {

/// How many of the next settings of a host variable the host refuses.
int theRefusals = 0;
/// Whether the next setting of a host variable to this value fails, with an exception; none at -1.
int theFailing = -1;

} // namespace

// Stands before the host's own, which it calls.
int acedSetVar(const wchar_t *name, const resbuf *value)
{
    using Function = int (*)(const wchar_t *, const resbuf *);
    static const auto host = reinterpret_cast<Function>(dlsym(RTLD_NEXT, "_Z10acedSetVarPKwPK6resbuf"));
    if (theRefusals > 0) {
        --theRefusals;
        velmor::journal("refused", name, value->resval.rint);
        return RTERROR;
    }
    if (theFailing >= 0 && value->resval.rint == theFailing) {
        theFailing = -1;
        throw std::runtime_error("the variable is locked");
    }
    return host(name, value);
}

namespace {

using PointPick = ManualDefinitionTest;

constexpr std::string_view kBegin = "CAdUiBaseDialog::BeginEditorCommand";
constexpr std::string_view kComplete = "CAdUiBaseDialog::CompleteEditorCommand";
constexpr std::string_view kUnMark = "CCatchmentAreaManager::UnMarkAllCatchments";

TEST_F(PointPick, ARegionWithTwoIslandsGivesThreeRowsAndTheMainRowIsTheTotalLessBoth)
{
    addSecondCourtyard();
    run([&](CDialogUnderTest &dialog) {
        prepare(dialog, 1, {L"D4"});
        EXPECT_FALSE(dialog.isEnabled(221));
        dialog.check(268, true);
        pickPoint(dialog, 240, 20);
        EXPECT_EQ(rows(dialog),
                  Rows({mainText() + " 0.9200 chosen", islandText() + " 0.0400", islandText() + " 0.0400"}));
        EXPECT_EQ(dialog.text(213), "0.92");
        EXPECT_TRUE(dialog.isEnabled(221));
        EXPECT_TRUE(dialog.isVisible());
        EXPECT_THAT(alerts(), IsEmpty());
        EXPECT_EQ(snaps(), kSnaps);

        ASSERT_THAT(loosePolylines(), SizeIs(3));
        EXPECT_EQ(dialog.LastBoundary(), loosePolylines()[0]);
        EXPECT_THAT(dialog.LastIslands(), ElementsAre(loosePolylines()[1], loosePolylines()[2]));
        ASSERT_THAT(hatches(), SizeIs(1));
        ASSERT_THAT(hatch(0)->loops(), SizeIs(3));
        for (const AcDbHatch::Loop &loop : hatch(0)->loops())
            EXPECT_EQ(loop.type, AcDbHatch::kExternal);
    });
    EXPECT_THAT(loosePolylines(), IsEmpty());
    EXPECT_THAT(hatches(), IsEmpty());
}

TEST_F(PointPick, WithoutTheIslandCheckTheSamePointGivesOneRowOfTheFullArea)
{
    addSecondCourtyard();
    run([&](CDialogUnderTest &dialog) {
        prepare(dialog, 1, {L"D4"});
        pickPoint(dialog, 240, 20);
        EXPECT_EQ(rows(dialog), Rows{mainText() + " 1.0000 chosen"});
        EXPECT_EQ(dialog.text(213), "1");
        ASSERT_THAT(loosePolylines(), SizeIs(1));
        EXPECT_EQ(dialog.LastBoundary(), loosePolylines()[0]);
        EXPECT_THAT(dialog.LastIslands(), IsEmpty());
        EXPECT_THAT(hatch(0)->loops(), SizeIs(1));
    });
}

TEST_F(PointPick, IslandsOfAnEarlierPickAreRememberedUntilAPickThatLooksForIslands)
{
    run([&](CDialogUnderTest &dialog) {
        prepare(dialog, 1, {L"D4"});
        dialog.check(268, true);
        pickPoint(dialog, 240, 20);
        ASSERT_THAT(dialog.LastIslands(), SizeIs(1));
        dialog.check(268, false);
        pickPoint(dialog, 50, 50);
        EXPECT_THAT(dialog.LastIslands(), SizeIs(1));
        dialog.check(268, true);
        pickPoint(dialog, 150, 50);
        EXPECT_THAT(dialog.LastIslands(), IsEmpty());
    });
}

TEST_F(PointPick, ThePreviewHasTheSettingsScaleAndColour)
{
    setSetting("CATCH_HATCH_SCALE", 3.5);
    setSetting("CATCH_HATCH_COLOR_TEMP", 6);
    run([&](CDialogUnderTest &dialog) {
        prepare(dialog, 1, {L"D1"});
        pickPoint(dialog, 50, 50);
        ASSERT_THAT(hatches(), SizeIs(1));
        EXPECT_EQ(hatch(0)->patternName(), L"ANSI31");
        EXPECT_EQ(hatch(0)->patternScale(), 3.5);
        EXPECT_EQ(hatch(0)->patternAngle(), 0.0);
        EXPECT_EQ(hatch(0)->colorIndex(), 6);
        EXPECT_FALSE(hatch(0)->lines().empty());
    });
}

TEST_F(PointPick, ThePreviewIsMadeInTheRequiredOrderTheBoundaryFirstAndThenEachIsland)
{
    addSecondCourtyard();
    setSetting("CATCH_HATCH_SCALE", 3.5);
    run([&](CDialogUnderTest &dialog) {
        prepare(dialog, 1, {L"D4"});
        dialog.check(268, true);
        answer(240, 20);
        auto found = record({"AcDbHatch::setNormal", "AcDbHatch::setElevation", "AcDbHatch::setPatternAngle",
                             "AcDbHatch::setPatternScale", "AcDbHatch::setPattern", "AcDbHatch::setAssociative",
                             "AcDbHatch::setHatchStyle", "AcDbHatch::appendLoop", "AcDbHatch::evaluateHatch",
                             "AcDbEntity::setColorIndex", "AcDbHatch::setColorIndex", "CZEMCDraw::appendToModelSpace"},
                            [&] { dialog.click(208); });
        const auto loop = [](AcDbObjectId id) { return "appendLoop 1 " + velmor::journalText(id); };
        const std::vector<std::string> expected{"setNormal 0 0 1",
                                                "setElevation 0",
                                                "setPatternAngle 0",
                                                "setPatternScale 3.5",
                                                "setPattern 1 ANSI31",
                                                "setAssociative 0",
                                                "setHatchStyle 0",
                                                loop(dialog.LastBoundary()),
                                                loop(dialog.LastIslands().at(0)),
                                                loop(dialog.LastIslands().at(1)),
                                                "evaluateHatch 0",
                                                "setColorIndex 0 4",
                                                "appendToModelSpace AcDbHatch"};
        ASSERT_EQ(found.size(), 2 * expected.size()) << "by the pick and by the choice of its row";
        EXPECT_EQ(std::vector(found.begin(), found.begin() + 13), expected);
        EXPECT_EQ(std::vector(found.begin() + 13, found.end()), expected);
    });
}

TEST_F(PointPick, ItsCallsComeInOrder)
{
    run([&](CDialogUnderTest &dialog) {
        prepare(dialog, 1, {L"D1", L"D2"});
        answer(50, 50);
        const auto found =
            record({kBegin, kComplete, kUnMark, "acedSetVar", "CCatchmentAreaManager::GetCABySection", "acedGetPoint",
                    "acedCommand", "CZEMCDraw::appendToModelSpace", "acedUpdateDisplay", "acedAlert"},
                   [&] { dialog.click(208); });
        const auto section = [&](const wchar_t *name) {
            return velmor::journalText(network().sectionByName(name)->GetHandleText());
        };
        EXPECT_THAT(found,
                    ElementsAre("BeginEditorCommand", "UnMarkAllCatchments 7", "acedSetVar OSMODE 0",
                                "GetCABySection " + section(L"D1") + " 7", "GetCABySection " + section(L"D2") + " 7",
                                "acedGetPoint " + velmor::journalText(message(2001)),
                                testing::StartsWith("acedCommand _-BOUNDARY "), "appendToModelSpace AcDbHatch",
                                "UnMarkAllCatchments 7", "appendToModelSpace AcDbHatch", "acedUpdateDisplay",
                                "CompleteEditorCommand 1", "acedUpdateDisplay", "acedSetVar OSMODE 37"));
    });
}

TEST_F(PointPick, WhatItDrawsIsAnAidAsSoonAsItStandsInTheDrawing)
{
    addSecondCourtyard();
    run([&](CDialogUnderTest &dialog) {
        prepare(dialog, 1, {L"D4"});
        dialog.check(268, true);
        answer(240, 20);
        const auto found =
            record({"acedCommand", "CZEMCDraw::appendToModelSpace", "acedSetAid"}, [&] { dialog.click(208); });
        const auto aid = [](AcDbObjectId id) { return "acedSetAid " + velmor::journalText(id); };
        ASSERT_THAT(hatches(), SizeIs(1)); // the row's own; the one of the pick went when the row was chosen
        EXPECT_THAT(found, ElementsAre(testing::StartsWith("acedCommand _-BOUNDARY "), "appendToModelSpace AcDbHatch",
                                       testing::StartsWith("acedSetAid "), aid(dialog.LastBoundary()),
                                       aid(dialog.LastIslands().at(0)), aid(dialog.LastIslands().at(1)),
                                       "appendToModelSpace AcDbHatch", aid(hatches().front())));
    });
}

TEST_F(PointPick, TheLastStepsAreTheDialogTheDisplayAndTheSnaps)
{
    run([&](CDialogUnderTest &dialog) {
        prepare(dialog, 1, {L"D1"});
        answerEscape();
        EXPECT_THAT(record({kBegin, kComplete, "acedSetVar", "acedUpdateDisplay"}, [&] { dialog.click(208); }),
                    ElementsAre("BeginEditorCommand", "acedSetVar OSMODE 0", "CompleteEditorCommand 1",
                                "acedUpdateDisplay", "acedSetVar OSMODE 37"));
    });
}

TEST_F(PointPick, SnapsThatCannotBeSwitchedOffAreWrittenBackAtOnceAndOnceMoreAtTheEnd)
{
    run([&](CDialogUnderTest &dialog) {
        prepare(dialog, 1, {L"D1"});
        answerEscape();
        theRefusals = 1;
        EXPECT_THAT(record({"acedSetVar", "acedGetPoint", "refused"}, [&] { dialog.click(208); }),
                    ElementsAre("refused OSMODE 0", "acedSetVar OSMODE 37", testing::StartsWith("acedGetPoint "),
                                "acedSetVar OSMODE 37"));
        EXPECT_EQ(theRefusals, 0);
        EXPECT_EQ(snaps(), kSnaps);
    });
}

TEST_F(PointPick, SnapsWhoseSwitchingBackFailsAreToldByNameAndEndNothing)
{
    run([&](CDialogUnderTest &dialog) {
        prepare(dialog, 1, {L"D1"});
        answerEscape();
        theFailing = kSnaps;
        dialog.click(208);
        EXPECT_EQ(theFailing, -1);
        ASSERT_THAT(alerts(), SizeIs(1));
        EXPECT_THAT(velmor::journalText(alerts().front()),
                    testing::AllOf(testing::HasSubstr("OSMODE"), testing::HasSubstr("the variable is locked")));
        EXPECT_TRUE(dialog.isVisible());
        EXPECT_FALSE(dialog.IsEditorCommandRunning());
        pickPoint(dialog, 50, 50);
        EXPECT_THAT(rows(dialog), SizeIs(1));
    });
}

TEST_F(PointPick, SnapsWhoseSwitchingBackFailsOnTheWayOutOfAnotherFailureLeaveThatOneToBeTold)
{
    run([&](CDialogUnderTest &dialog) {
        prepare(dialog, 1, {L"D1"});
        CPromptsUnderTest prompts;
        prompts.m_answer = [](const velmor::Prompt &) -> velmor::Answer { throw std::runtime_error("no hand"); };
        m_session.setPromptSource(&prompts);
        theFailing = kSnaps;
        dialog.click(208);
        m_session.setPromptSource(nullptr);
        EXPECT_EQ(theFailing, -1);
        ASSERT_THAT(alerts(), SizeIs(1));
        EXPECT_THAT(velmor::journalText(alerts().front()), testing::HasSubstr("no hand"));
        EXPECT_TRUE(dialog.isVisible());
    });
}

TEST_F(PointPick, WhileThePointIsAskedTheDialogIsAwaySnapsAreOffAndTheOldDefinitionIsGone)
{
    run([&](CDialogUnderTest &dialog) {
        prepare(dialog, 1, {L"D1"});
        pickPoint(dialog, 50, 50);
        CPromptsUnderTest prompts;
        prompts.m_answer = [&](const velmor::Prompt &) {
            EXPECT_FALSE(dialog.isVisible());
            EXPECT_EQ(snaps(), 0);
            EXPECT_THAT(rows(dialog), IsEmpty());
            EXPECT_THAT(loosePolylines(), IsEmpty());
            EXPECT_THAT(hatches(), IsEmpty());
            return velmor::Answer{velmor::Answer::Escape{}};
        };
        m_session.setPromptSource(&prompts);
        dialog.click(208);
        ASSERT_THAT(prompts.m_asked, SizeIs(1));
        EXPECT_EQ(prompts.m_asked[0].kind, velmor::PromptKind::Point);
        EXPECT_EQ(prompts.m_asked[0].text, message(2001));
        EXPECT_FALSE(prompts.m_asked[0].base);
        EXPECT_TRUE(dialog.isVisible());
        EXPECT_EQ(snaps(), kSnaps);
    });
}

TEST_F(PointPick, EscapeAndEnterLeaveNoRowsAndRestoreTheSnaps)
{
    for (const bool escape : {true, false}) {
        run([&](CDialogUnderTest &dialog) {
            prepare(dialog, 1, {L"D1"});
            escape ? answerEscape() : answerEnter();
            dialog.click(208);
            EXPECT_THAT(rows(dialog), IsEmpty());
            EXPECT_EQ(snaps(), kSnaps);
            EXPECT_TRUE(dialog.isVisible());
            EXPECT_FALSE(dialog.isEnabled(221));
            EXPECT_TRUE(dialog.LastBoundary().isNull());
        });
        EXPECT_THAT(alerts(), IsEmpty());
    }
}

TEST_F(PointPick, APointInNoRegionIsToldAndLeavesNoRows)
{
    for (const bool islands : {true, false}) {
        alerts().clear();
        run([&](CDialogUnderTest &dialog) {
            prepare(dialog, 1, {L"D5"});
            dialog.check(268, islands);
            pickPoint(dialog, 510, 510);
            EXPECT_THAT(alerts(), ElementsAre(message(2002)));
            EXPECT_THAT(rows(dialog), IsEmpty());
            EXPECT_FALSE(dialog.isEnabled(221));
            EXPECT_EQ(snaps(), kSnaps);
            EXPECT_TRUE(dialog.isVisible());
        });
    }
}

TEST_F(PointPick, AKnownCentreIsToldThePolylineStaysForGoodAndTheSnapsStayOff)
{
    for (const bool islands : {false, true}) {
        alerts().clear();
        m_session.setVariable(L"OSMODE", 37);
        const std::size_t before = loosePolylines().size();
        run([&](CDialogUnderTest &dialog) {
            prepare(dialog, 1, {L"D1"});
            if (areas().empty()) {
                pickPoint(dialog, 50, 50);
                dialog.click(221);
                ASSERT_THAT(areas(), SizeIs(1));
            }
            const AcDbObjectId last = dialog.LastBoundary();
            dialog.check(268, islands);
            answer(50, 50);
            const auto calls =
                record({kComplete, "acedSetVar", "acedUpdateDisplay", "acedAlert"}, [&] { dialog.click(208); });
            EXPECT_THAT(calls, ElementsAre("acedSetVar OSMODE 0", "acedAlert " + velmor::journalText(message(2005)),
                                           "CompleteEditorCommand 1"));
            EXPECT_THAT(rows(dialog), IsEmpty());
            EXPECT_EQ(snaps(), 0);
            EXPECT_TRUE(dialog.isVisible());
            EXPECT_EQ(dialog.LastBoundary(), last);
            EXPECT_THAT(loosePolylines(), SizeIs(before + 1));
            EXPECT_THAT(hatches(), IsEmpty());
        });
        EXPECT_THAT(loosePolylines(), SizeIs(before + 1)) << "it stands in no list of the dialog";
    }
}

TEST_F(PointPick, OnlyMarkedTextOfTheAreaGoesAndTheCounterIsEmptied)
{
    run([&](CDialogUnderTest &dialog) {
        prepare(dialog, 1, {L"D1"});
        for (const int control : {208, 209, 239}) {
            dialog.type(213, "123");
            dialog.type(326, "45");
            answerEscape();
            dialog.click(control);
            EXPECT_EQ(dialog.text(213), "123") << control;
            EXPECT_EQ(dialog.text(326), "") << control;
            dialog.Control<QLineEdit>(213)->setSelection(1, 1);
            answerEscape();
            dialog.click(control);
            EXPECT_EQ(dialog.text(213), "13") << control;
        }
    });
}

TEST_F(PointPick, ANextPickReplacesTheDefinition)
{
    run([&](CDialogUnderTest &dialog) {
        prepare(dialog, 1, {L"D1"});
        dialog.check(268, true);
        pickPoint(dialog, 240, 20);
        ASSERT_THAT(rows(dialog), SizeIs(2));
        pickPoint(dialog, 50, 50);
        EXPECT_THAT(rows(dialog), SizeIs(1));
        EXPECT_THAT(loosePolylines(), SizeIs(1));
        EXPECT_THAT(hatches(), SizeIs(1));
    });
}

TEST_F(PointPick, ItRunsAlthoughACommandIsActive)
{
    run([&](CDialogUnderTest &dialog) {
        prepare(dialog, 1, {L"D1"});
        const ZEMGis::Notification::SetActiveCommand command(L"OTHER");
        pickPoint(dialog, 50, 50);
        EXPECT_THAT(rows(dialog), SizeIs(1));
    });
}

TEST_F(PointPick, WhatFailsInItBringsDialogSnapsAndDrawingBackAndLeavesNothingBehind)
{
    run([&](CDialogUnderTest &dialog) {
        prepare(dialog, 1, {L"D1"});
        pickPoint(dialog, 50, 50);
        ASSERT_THAT(loosePolylines(), SizeIs(1));
        CPromptsUnderTest prompts;
        prompts.m_answer = [](const velmor::Prompt &) -> velmor::Answer { throw std::runtime_error("no hand"); };
        m_session.setPromptSource(&prompts);
        dialog.click(208);
        m_session.setPromptSource(nullptr);
        EXPECT_THAT(alerts(), SizeIs(1));
        EXPECT_TRUE(dialog.isVisible());
        EXPECT_FALSE(dialog.IsEditorCommandRunning());
        EXPECT_EQ(snaps(), kSnaps);
        EXPECT_THAT(loosePolylines(), SizeIs(1)) << "came back with the handler's other changes";
        pickPoint(dialog, 150, 50);
        EXPECT_THAT(loosePolylines(), SizeIs(1)) << "went with the next pick";
    });
    EXPECT_THAT(loosePolylines(), IsEmpty());
    EXPECT_THAT(hatches(), IsEmpty());
}

class DefinedAreas : public ManualDefinitionTest {
protected:
    /// Saves the region around a point for the sections as one type.
    void save(CDialogUnderTest &dialog, std::initializer_list<const wchar_t *> sections, int type, double x, double y)
    {
        select(dialog, sections);
        dialog.check(type, true);
        for (const int other : {106, 107, 108})
            dialog.check(other, other == type);
        dialog.type(215, "0.35");
        pickPoint(dialog, x, y);
        dialog.click(221);
    }
    /// What a pick marks before it asks.
    std::vector<std::string> marksOf(CDialogUnderTest &dialog, int control)
    {
        answerEscape();
        return record({"CCatchmentArea::Mark"}, [&] { dialog.click(control); });
    }
    static std::string markOf(std::size_t area)
    {
        return "Mark " + velmor::journalText(areas().at(area)->GetGuid()) + " 3 2 0 ANSI31 0";
    }
};

TEST_F(DefinedAreas, EachPickMarksAreasOfExactlyTheChosenTypesOnceAndNoHiddenOnes)
{
    run([&](CDialogUnderTest &dialog) {
        dialog.choose(257, 1);
        dialog.check(274, false);
        save(dialog, {L"D1", L"D2"}, 106, 50, 50); // of two sections
        save(dialog, {L"D3"}, 107, 150, 50);
        save(dialog, {L"D4"}, 106, 240, 20);
        dialog.choose(257, 3);
        select(dialog, {L"D1"});
        dialog.type(215, "0.35");
        dialog.type(213, "2");
        dialog.click(221);
        ASSERT_THAT(areas(), SizeIs(4));
        dialog.choose(257, 1);
        select(dialog, {L"D1", L"D2", L"D3", L"D4", L"D5"});
        for (const int control : {208, 209, 239}) {
            EXPECT_THAT(marksOf(dialog, control), UnorderedElementsAre(markOf(0), markOf(2))) << control;
            dialog.check(107, true);
            dialog.check(106, false);
            EXPECT_THAT(marksOf(dialog, control), ElementsAre(markOf(1))) << control;
            dialog.check(106, true);
            EXPECT_THAT(marksOf(dialog, control), IsEmpty()) << "of both types: none; " << control;
            dialog.check(107, false);
        }
    });
}

TEST_F(DefinedAreas, AnAreaOfTwoTypesIsNotShownForOneOfThem)
{
    run([&](CDialogUnderTest &dialog) {
        prepare(dialog, 1, {L"D1"});
        dialog.check(107, true);
        pickPoint(dialog, 50, 50);
        dialog.click(221);
        ASSERT_THAT(areas(), SizeIs(1));
        EXPECT_THAT(marksOf(dialog, 208), ElementsAre(markOf(0)));
        dialog.check(107, false);
        EXPECT_THAT(marksOf(dialog, 208), IsEmpty());
    });
}

} // namespace
