// The pick in the drawing: it checks areas, and a second pick lets go of them again.
#include "tests/definition/journal_lines.h"
#include "tests/review/review_fixture.h"

using namespace ZEMGis;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;
using velmor::journalText;

namespace {

class Pick : public ReviewDialogTest {
protected:
    Pick()
    {
        addArea(L"A1", 1, 0);
        addArea(L"A2", 2, 20);
        addArea(L"A3", 4, 40);
    }
    static std::string mark(const char *guid)
    {
        return std::string("CCatchmentArea::Mark(") + guid + ", " +
               std::to_string(CModuleConfiguration::Instance()->GetHighlightColor()) +
               ", 1, 0.7853981633974483, ANSI31, 0)";
    }
};

TEST_F(Pick, EveryPickedAreaIsCheckedAndTheLastOneIsSelected)
{
    run([&](CReviewUnderTest &dialog) {
        pickAt(45, 5);
        pickAt(25, 5);
        endPicking();
        dialog.click(209);
        EXPECT_THAT(dialog.checkedNames(), ElementsAre(L"A2", L"A3"));
        EXPECT_THAT(dialog.CheckedGuids(), UnorderedElementsAre(L"{A2}", L"{A3}"));
        EXPECT_FALSE(dialog.item(L"A1")->IsChecked());
        EXPECT_TRUE(dialog.item(L"A2")->IsChecked());
        EXPECT_TRUE(dialog.item(L"A3")->IsChecked());
        EXPECT_EQ(dialog.selectedName(), L"A2");
        EXPECT_TRUE(dialog.isVisible());
    });
}

TEST_F(Pick, ASecondPickOfAnAreaLetsGoOfIt)
{
    run([&](CReviewUnderTest &dialog) {
        dialog.tick(L"A3");
        pickAt(25, 5);
        pickAt(45, 5);
        pickAt(25, 5);
        pickAt(25, 5);
        endPicking();
        dialog.click(209);
        EXPECT_THAT(dialog.checkedNames(), ElementsAre(L"A2"));
        EXPECT_FALSE(dialog.item(L"A3")->IsChecked());
    });
}

TEST_F(Pick, APickBesideAllAreasChangesNothingAndTheLoopGoesOn)
{
    run([&](CReviewUnderTest &dialog) {
        pickAt(25, 5);
        pickAt(500, 500);
        pickAt(5, 5);
        endPicking();
        dialog.click(209);
        EXPECT_THAT(dialog.checkedNames(), ElementsAre(L"A1", L"A2"));
        EXPECT_EQ(m_session.answers().size(), 0u);
    });
}

TEST_F(Pick, EveryCallComesInOrderWithTheDialogPutAwayMeanwhile)
{
    const std::string entity = journalText(areaNamed(L"A1")->GetObjectId());
    run([&](CReviewUnderTest &dialog) {
        pickAt(25, 5);
        pickAt(500, 500);
        pickAt(25, 5);
        pickAt(500, 500);
        endPicking();
        EXPECT_THAT(
            recorded([&] { dialog.click(209); }),
            ElementsAre(
                "SetActiveCommand(CA_SELOBJ)",
                // nothing is checked, so the highlight goes first
                "AcDbEntity::unhighlight(" + entity + ")", "CCatchmentArea::UnMark({A1})",
                "AcTransactionManager::flushGraphics()", "acedUpdateDisplay()", "CAdUiBaseDialog::BeginEditorCommand()",
                "CTopoEditor::CreateCustomSpatialIndex(3)", "CCatchmentAreaManager::SetSpatialIndexCA(index)",
                "CCatchmentAreaManager::StartCAInfoTooltipAreas()",
                "CCatchmentAreaManager::GetCatchmentAreaByGuid({A2})", mark("{A2}"),
                "CCatchmentAreaManager::StartCAInfoTooltipAreas()", "CCatchmentAreaManager::StartCAInfoTooltipAreas()",
                "CCatchmentAreaManager::GetCatchmentAreaByGuid({A2})", "CCatchmentArea::UnMark({A2})",
                "CCatchmentAreaManager::StartCAInfoTooltipAreas()", "CCatchmentAreaManager::StartCAInfoTooltipAreas()",
                // the last pick was a miss, so nothing is selected; nothing is checked again
                "CAdUiBaseDialog::CompleteEditorCommand(1)", "AcDbEntity::highlight(" + entity + ")",
                "CCatchmentArea::Mark({A1}, " + std::to_string(CModuleConfiguration::Instance()->GetHighlightColor()) +
                    ", 1, 0.7853981633974483, ANSI31, 0)",
                "AcTransactionManager::flushGraphics()", "acedUpdateDisplay()", "~SetActiveCommand(CA_SELOBJ)"));
        EXPECT_EQ(dialog.selectedName(), L"A1");
    });
}

TEST_F(Pick, WithCheckedAreasTheHighlightStaysWhileOnePicks)
{
    run([&](CReviewUnderTest &dialog) {
        dialog.tick(L"A3");
        endPicking();
        const JournalLines lines = recorded([&] { dialog.click(209); });
        ASSERT_GT(lines.size(), 2u);
        EXPECT_EQ(lines[1], "CAdUiBaseDialog::BeginEditorCommand()");
        EXPECT_EQ(lines[lines.size() - 2], "CAdUiBaseDialog::CompleteEditorCommand(1)");
    });
}

TEST_F(Pick, TheMarkHasTheDialogsScaleAndPattern)
{
    run([&](CReviewUnderTest &dialog) {
        dialog.type(352, "2.5");
        dialog.type(353, "NET");
        pickAt(25, 5);
        endPicking();
        const JournalLines lines = recorded([&] { dialog.click(209); });
        EXPECT_THAT(lines, testing::Contains("CCatchmentArea::Mark({A2}, " +
                                             std::to_string(CModuleConfiguration::Instance()->GetHighlightColor()) +
                                             ", 2.5, 0.7853981633974483, NET, 0)"));
    });
}

TEST_F(Pick, AnAreaThatTheFilterHidesStaysInTheSetsUntilTheSelectionIsAppliedNext)
{
    run([&](CReviewUnderTest &dialog) {
        dialog.click(129);
        pickAt(45, 5);
        endPicking();
        dialog.click(209);
        EXPECT_THAT(recorded([] { CReviewUnderTest::runPosted(); }), IsEmpty());
        EXPECT_THAT(dialog.CheckedGuids(), ElementsAre(L"{A3}"));
        EXPECT_THAT(dialog.checkedNames(), ElementsAre(L"A3"));
        EXPECT_FALSE(dialog.item(L"A1")->IsChecked());
        EXPECT_EQ(dialog.selectedName(), L"A1");
        dialog.clickItem(dialog.item(L"A1"));
        EXPECT_THAT(dialog.CheckedGuids(), IsEmpty());
    });
}

TEST_F(Pick, TheIndexHoldsEveryAreaWhateverTheFilterShows)
{
    run([&](CReviewUnderTest &dialog) {
        dialog.click(133);
        endPicking();
        EXPECT_THAT(recorded([&] { dialog.click(209); }),
                    testing::Contains("CTopoEditor::CreateCustomSpatialIndex(3)"));
    });
}

TEST_F(Pick, WithoutAnswersItEndsAtOnceAndTheDialogIsBack)
{
    run([&](CReviewUnderTest &dialog) {
        dialog.click(209);
        EXPECT_TRUE(dialog.isVisible());
        EXPECT_FALSE(dialog.IsEditorCommandRunning());
        EXPECT_THAT(dialog.CheckedGuids(), IsEmpty());
    });
}

} // namespace
