// The handlers that hand the editor over or that are guarded: all their calls in order, the dialog away while the
// prompt is open, and nothing at all while another command runs.
#include "tests/definition/journal_lines.h"
#include "tests/definition/made_area.h"
#include "tests/definition/manual_fixture.h"

using namespace ZEMGis;
using testing::Each;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;
using velmor::journalText;

namespace {

class SmallHandlers : public ManualDefinitionTest {
protected:
    /// What stood while a prompt was open.
    struct Asked {
        std::wstring text;
        bool dialogVisible;
        bool editorHandedOver;
        bool guarded;
        bool operator==(const Asked &) const = default;
    };
    /// Clicks with every prompt left by the answer, which is told what stood.
    JournalLines click(CDialogUnderTest &dialog, int control, velmor::Answer answer)
    {
        m_asked.clear();
        CPromptsUnderTest prompts;
        prompts.m_answer = [&](const velmor::Prompt &prompt) {
            m_asked.push_back({prompt.text, dialog.isVisible(), dialog.IsEditorCommandRunning(),
                               Notification::CNotificationFramework::Instance()->IsCommandActive() != 0});
            return answer;
        };
        m_session.setPromptSource(&prompts);
        JournalLines lines = recorded([&] {
            EXPECT_TRUE(dialog.isEnabled(control)) << control;
            dialog.click(control);
        });
        m_session.setPromptSource(nullptr);
        EXPECT_TRUE(dialog.isVisible()) << control;
        EXPECT_FALSE(dialog.IsEditorCommandRunning()) << control;
        return lines;
    }
    /// One prompt, while the dialog was away and the guard stood.
    void expectAskedAway(int control) const
    {
        ASSERT_THAT(m_asked, SizeIs(1)) << control;
        EXPECT_FALSE(m_asked.front().dialogVisible) << control;
        EXPECT_TRUE(m_asked.front().editorHandedOver) << control;
        EXPECT_TRUE(m_asked.front().guarded) << control;
    }
    std::string handleOf(const wchar_t *section)
    {
        return journalText(network().sectionByName(section)->GetObjectId());
    }
    static std::string highlight() { return std::to_string(CModuleConfiguration::Instance()->GetHighlightColor()); }
    static std::string waitPrompt() { return "acedGetString(0, " + journalText(message(50200)) + ")"; }
    static velmor::Answer enter() { return {velmor::Answer::Enter{}}; }
    static velmor::Answer escape() { return {velmor::Answer::Escape{}}; }

    std::vector<Asked> m_asked;
};

TEST_F(SmallHandlers, TheZoomButtonGoesToTheSectionAndDrawsItWithTheDialogAwayUntilAnAnswer)
{
    run([&](CDialogUnderTest &dialog) {
        dialog.choose(257, 0);
        select(dialog, {L"D1", L"D3"});
        dialog.click(205);
        dialog.type(218, "2.5");
        EXPECT_THAT(click(dialog, 217, enter()),
                    ElementsAre("SetActiveCommand(CA_ZOOM)", "CAdUiBaseDialog::BeginEditorCommand()", "acedRedraw(4)",
                                "CZEMCEdit::zoom(1, 2.5, 75, 30, 225, 30)", // 60 units, 2.5 times round their middle
                                "CEntity::DrawTemporary(" + handleOf(L"D3") + ", " + highlight() + ", 0)",
                                "AcTransactionManager::flushGraphics()", "acedUpdateDisplay()", waitPrompt(),
                                "CAdUiBaseDialog::CompleteEditorCommand(1)", "~SetActiveCommand(CA_ZOOM)"));
        expectAskedAway(217);
        EXPECT_EQ(m_asked.front().text, message(50200));
    });
}

TEST_F(SmallHandlers, WithoutASectionTheZoomButtonOnlyWipesAndWaits)
{
    run([&](CDialogUnderTest &dialog) {
        EXPECT_THAT(click(dialog, 217, escape()),
                    ElementsAre("SetActiveCommand(CA_ZOOM)", "CAdUiBaseDialog::BeginEditorCommand()", "acedRedraw(4)",
                                "AcTransactionManager::flushGraphics()", "acedUpdateDisplay()", waitPrompt(),
                                "CAdUiBaseDialog::CompleteEditorCommand(1)", "~SetActiveCommand(CA_ZOOM)"));
        expectAskedAway(217);
    });
}

TEST_F(SmallHandlers, HidePutsTheDialogAwayUntilAnyAnswer)
{
    run([&](CDialogUnderTest &dialog) {
        for (const velmor::Answer &answer : {enter(), escape(), velmor::Answer{std::wstring(L"anything")}}) {
            EXPECT_THAT(click(dialog, 3, answer),
                        ElementsAre("SetActiveCommand(CA_HIDE)", "CAdUiBaseDialog::BeginEditorCommand()", waitPrompt(),
                                    "CAdUiBaseDialog::CompleteEditorCommand(1)", "~SetActiveCommand(CA_HIDE)"));
            expectAskedAway(3);
            EXPECT_EQ(m_asked.front().text, message(50200));
        }
    });
}

TEST_F(SmallHandlers, TheSectionsToolRunsWithTheDialogAwayAndAsksNothingElse)
{
    run([&](CDialogUnderTest &dialog) {
        EXPECT_THAT(click(dialog, 100, escape()),
                    ElementsAre("SetActiveCommand(CA_INFO)", "CAdUiBaseDialog::BeginEditorCommand()",
                                "CCatchmentAreaManager::StartCAInfoTooltipSections()",
                                "CAdUiBaseDialog::CompleteEditorCommand(1)", "~SetActiveCommand(CA_INFO)"));
        expectAskedAway(100);
    });
}

TEST_F(SmallHandlers, TheAreasToolIndexesTheAreasOfAllTypesFirst)
{
    for (const int type : {1, 2, 4})
        ASSERT_TRUE(makeArea(L"area " + std::to_wstring(type), type, 1000.0 * type));
    run([&](CDialogUnderTest &dialog) {
        EXPECT_THAT(click(dialog, 101, escape()),
                    ElementsAre("SetActiveCommand(CA_INFO)", "CAdUiBaseDialog::BeginEditorCommand()",
                                "CCatchmentAreaManager::GetAllCatchmentAreas(7)",
                                "CTopoEditor::CreateCustomSpatialIndex(3)",
                                "CCatchmentAreaManager::SetSpatialIndexCA(index)",
                                "CCatchmentAreaManager::StartCAInfoTooltipAreas()",
                                "CAdUiBaseDialog::CompleteEditorCommand(1)", "~SetActiveCommand(CA_INFO)"));
        expectAskedAway(101);
    });
}

TEST_F(SmallHandlers, WhileAnotherCommandRunsTheGuardedOnesCallNothingAndChangeNothing)
{
    const AcDbObjectId box = addBox(2000, 0, 2010, 10, L"0");
    constexpr int kGuarded[] = {204, 205, 217, 207, 246, 219, 221, 3, 100, 101};
    run([&](CDialogUnderTest &dialog) {
        prepare(dialog, 0, {L"D1", L"D2", L"D3"});
        dialog.click(205);
        const auto makeReady = [&] {
            dialog.addMainRow(box, 100);
            dialog.selectRows({0});
            dialog.GetDlgItem(221)->setEnabled(true);
        };
        makeReady();
        int opened = 0;
        onNested([&](CAdUiBaseDialog &) { ++opened; });
        {
            const Notification::SetActiveCommand other(L"OTHER");
            for (const int control : kGuarded) {
                EXPECT_THAT(click(dialog, control, escape()), IsEmpty()) << control;
                EXPECT_THAT(m_asked, IsEmpty()) << control;
            }
        }
        EXPECT_EQ(opened, 0);
        EXPECT_EQ(dialog.text(266), "D2");
        EXPECT_EQ(dialog.list()->topLevelItemCount(), 1);
        EXPECT_THAT(areas(), IsEmpty());
        // The same clicks reach their handlers once the other command is over.
        for (const int control : kGuarded) {
            if (control == 221)
                makeReady();
            EXPECT_THAT(click(dialog, control, escape()), Not(IsEmpty())) << control;
        }
        EXPECT_EQ(opened, 3);
        EXPECT_THAT(areas(), SizeIs(1));
    });
}

TEST_F(SmallHandlers, AStepToTheNextSectionRedrawsItAndItsMarksAndNothingElse)
{
    run([&](CDialogUnderTest &dialog) {
        dialog.choose(257, 0);
        select(dialog, {L"D1", L"D2"});
        EXPECT_THAT(click(dialog, 205, escape()),
                    ElementsAre("SetActiveCommand(CA_NEXT)", "acedRedraw(4)",
                                "CEntity::DrawTemporary(" + handleOf(L"D2") + ", " + highlight() + ", 0)",
                                "AcTransactionManager::flushGraphics()", "acedUpdateDisplay()",
                                "CCatchmentAreaManager::UnMarkAllCatchments(7)",
                                "CCatchmentAreaManager::GetCABySection(" + handleOf(L"D2") + ", 1)",
                                "AcTransactionManager::flushGraphics()", "acedUpdateDisplay()",
                                "~SetActiveCommand(CA_NEXT)"));
    });
}

TEST_F(SmallHandlers, AllSectionsAreDrawnAfterTheMarkColourWasAskedFor)
{
    run([&](CDialogUnderTest &dialog) {
        select(dialog, {L"D1", L"D2"});
        dialog.choose(257, 0);
        EXPECT_THAT(recorded([&] { dialog.choose(257, 2); }),
                    ElementsAre("acedRedraw(4)", "CModuleConfiguration::GetGSValueInt(MARK_COLOR, 0)",
                                "CEntity::DrawTemporary(" + handleOf(L"D1") + ", " + highlight() + ", 0)",
                                "CEntity::DrawTemporary(" + handleOf(L"D2") + ", " + highlight() + ", 0)",
                                "AcTransactionManager::flushGraphics()", "acedUpdateDisplay()",
                                "CCatchmentAreaManager::UnMarkAllCatchments(7)",
                                "CCatchmentAreaManager::GetCABySection(" + handleOf(L"D1") + ", 1)",
                                "AcTransactionManager::flushGraphics()", "acedUpdateDisplay()"));
    });
}

TEST_F(SmallHandlers, ASelectionForAllSectionsShowsTheCurrentOneThenAllThenTheMarks)
{
    run([&](CDialogUnderTest &dialog) {
        dialog.click(296);
        const JournalLines lines = recorded([&] { select(dialog, {L"D1", L"D2"}); });
        const std::string first = "CEntity::DrawTemporary(" + handleOf(L"D1") + ", " + highlight() + ", 0)";
        const std::string second = "CEntity::DrawTemporary(" + handleOf(L"D2") + ", " + highlight() + ", 0)";
        const std::string marks = "CCatchmentAreaManager::GetCABySection(" + handleOf(L"D1") + ", 1)";
        EXPECT_THAT(lines,
                    ElementsAre("acedRedraw(4)", "acedRedraw(4)", "CZEMCEdit::zoom(1, 1.5, 5, 30, 95, 30)", first,
                                "AcTransactionManager::flushGraphics()", "acedUpdateDisplay()", // the current one
                                "acedRedraw(4)", "CModuleConfiguration::GetGSValueInt(MARK_COLOR, 0)", "acedRedraw(4)",
                                "CZEMCEdit::zoom(2, 1.5, 5, 20, 95, 80)", first, second,
                                "AcTransactionManager::flushGraphics()", "acedUpdateDisplay()", // all
                                "CCatchmentAreaManager::UnMarkAllCatchments(7)", marks,
                                "AcTransactionManager::flushGraphics()", "acedUpdateDisplay()", // the types' end
                                "CCatchmentAreaManager::UnMarkAllCatchments(7)", marks,
                                "AcTransactionManager::flushGraphics()", "acedUpdateDisplay()"));
    });
}

TEST_F(SmallHandlers, WhatTheMarkColourIsMakesNoDifferenceToWhatIsDrawn)
{
    setSetting("MARK_COLOR", 5);
    run([&](CDialogUnderTest &dialog) {
        const JournalLines lines = recorded([&] { select(dialog, {L"D1", L"D2"}); });
        EXPECT_THAT(lines, testing::Contains("CModuleConfiguration::GetGSValueInt(MARK_COLOR, 1)"));
        std::vector<std::string> colours;
        for (const auto &entry : entriesOf("CEntity::DrawTemporary"))
            colours.push_back(entry.arguments.at(1));
        EXPECT_THAT(colours, SizeIs(3)); // the current one, then both
        EXPECT_THAT(colours, Each(highlight()));
    });
}

} // namespace
