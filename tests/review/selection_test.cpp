// The tree's two selections: the selected item with the area in focus, and the ticks.
#include "tests/definition/journal_lines.h"
#include "tests/review/review_fixture.h"

#include "controls/WideText.h"

#include <QScrollBar>

using namespace ZEMGis;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;
using velmor::journalText;

namespace {

class TreeSelection : public ReviewDialogTest {
protected:
    TreeSelection()
    {
        addSection(L"D1", {0, 5}, {10, 5});
        addSection(L"D2", {10, 5}, {20, 5});
        addArea(L"A1", 1, 0, 0.5, 100, {{L"D1", 0.5}, {L"D2", 0.5}});
        addArea(L"A2", 6, 20, 0.5, 100, {{L"D2", 1.0}});
        addArea(L"A3", 1, 40);
    }
    AcDbObjectId section(const wchar_t *name) { return network().sectionByName(name)->GetObjectId(); }
    static AcDbObjectId entity(const wchar_t *area) { return areaNamed(area)->GetObjectId(); }
    static std::string highlighted(const AcDbObjectId &id) { return "AcDbEntity::highlight(" + journalText(id) + ")"; }
    static std::string plain(const AcDbObjectId &id) { return "AcDbEntity::unhighlight(" + journalText(id) + ")"; }
    static std::string mark(const char *guid)
    {
        return std::string("CCatchmentArea::Mark(") + guid + ", " +
               std::to_string(CModuleConfiguration::Instance()->GetHighlightColor()) +
               ", 1, 0.7853981633974483, ANSI31, 0)";
    }
    static std::string unmark(const char *guid) { return std::string("CCatchmentArea::UnMark(") + guid + ")"; }
    static std::string byGuid(const char *guid)
    {
        return std::string("CCatchmentAreaManager::GetCatchmentAreaByGuid(") + guid + ")";
    }
    static constexpr const char *kFlush = "AcTransactionManager::flushGraphics()";
    static constexpr const char *kUpdate = "acedUpdateDisplay()";
    static std::vector<int> types(const CReviewUnderTest &dialog)
    {
        return {dialog.isChecked(106), dialog.isChecked(131), dialog.isChecked(132)};
    }
};

TEST_F(TreeSelection, AnAreaIsHighlightedWithAllItsSections)
{
    run([&](CReviewUnderTest &dialog) {
        EXPECT_THAT(dialog.HighlightIds(), ElementsAre(entity(L"A1"), section(L"D1"), section(L"D2")));
        dialog.select(L"A3");
        EXPECT_THAT(dialog.HighlightIds(), ElementsAre(entity(L"A3")));
        EXPECT_EQ(dialog.currentName(), L"A3");
    });
}

TEST_F(TreeSelection, ASectionIsHighlightedWithItsAreaAndMakesItCurrent)
{
    run([&](CReviewUnderTest &dialog) {
        dialog.select(L"A3");
        dialog.selectSection(L"A1", L"D2");
        EXPECT_EQ(dialog.currentName(), L"A1");
        EXPECT_THAT(dialog.HighlightIds(), ElementsAre(entity(L"A1"), section(L"D2")));
    });
}

TEST_F(TreeSelection, TheEventTakesTheOldHighlightAwayTwiceAndThenShowsTheNewOne)
{
    run([&](CReviewUnderTest &dialog) {
        EXPECT_THAT(recorded([&] { dialog.select(L"A3"); }),
                    ElementsAre(plain(entity(L"A1")), plain(section(L"D1")), plain(section(L"D2")), unmark("{A1}"),
                                kFlush, kUpdate,
                                // and once more by what applies the selection
                                plain(entity(L"A1")), plain(section(L"D1")), plain(section(L"D2")), unmark("{A1}"),
                                kFlush, kUpdate, byGuid("{A3}"), highlighted(entity(L"A3")), mark("{A3}"), kFlush,
                                kUpdate));
    });
}

TEST_F(TreeSelection, TheTypeChecksFollowTheAreaAndAreOffWhileAnyAreaIsChecked)
{
    run([&](CReviewUnderTest &dialog) {
        EXPECT_THAT(types(dialog), ElementsAre(1, 0, 0));
        dialog.select(L"A2");
        EXPECT_THAT(types(dialog), ElementsAre(0, 1, 1));
        for (const int check : {106, 131, 132})
            EXPECT_TRUE(dialog.isEnabled(check)) << check;
        dialog.tick(L"A1");
        for (const int check : {106, 131, 132})
            EXPECT_FALSE(dialog.isEnabled(check)) << check;
        EXPECT_THAT(types(dialog), ElementsAre(0, 1, 1)); // those of the area in focus
        dialog.tick(L"A1", false);
        for (const int check : {106, 131, 132})
            EXPECT_TRUE(dialog.isEnabled(check)) << check;
    });
}

TEST_F(TreeSelection, AClickOnACheckBoxUpdatesTheSetsOnlyWithThePostedMessage)
{
    run([&](CReviewUnderTest &dialog) {
        dialog.clickCheckBox(dialog.item(L"A2"));
        EXPECT_TRUE(dialog.item(L"A2")->IsChecked());
        EXPECT_THAT(dialog.CheckedGuids(), IsEmpty());
        EXPECT_THAT(dialog.CheckedAreas(), IsEmpty());
        CReviewUnderTest::runPosted();
        EXPECT_THAT(dialog.CheckedGuids(), ElementsAre(L"{A2}"));
        EXPECT_THAT(dialog.checkedNames(), ElementsAre(L"A2"));
        EXPECT_EQ(dialog.selectedName(), L"A1"); // a check box selects nothing
        dialog.clickCheckBox(dialog.item(L"A2"));
        EXPECT_THAT(dialog.CheckedGuids(), ElementsAre(L"{A2}"));
        CReviewUnderTest::runPosted();
        EXPECT_THAT(dialog.CheckedGuids(), IsEmpty());
    });
}

TEST_F(TreeSelection, TheClicksOwnRunComesBeforeTheTickAndThePostedOneBehindIt)
{
    run([&](CReviewUnderTest &dialog) {
        EXPECT_THAT(recorded([&] { dialog.clickCheckBox(dialog.item(L"A2")); }),
                    ElementsAre(plain(entity(L"A1")), plain(section(L"D1")), plain(section(L"D2")), unmark("{A1}"),
                                kFlush, kUpdate, byGuid("{A1}"), highlighted(entity(L"A1")),
                                highlighted(section(L"D1")), highlighted(section(L"D2")), mark("{A1}"), kFlush,
                                kUpdate));
        EXPECT_THAT(recorded([] { CReviewUnderTest::runPosted(); }),
                    ElementsAre(plain(entity(L"A1")), plain(section(L"D1")), plain(section(L"D2")), unmark("{A1}"),
                                kFlush, kUpdate, byGuid("{A2}"), byGuid("{A1}"), highlighted(entity(L"A1")),
                                highlighted(section(L"D1")), highlighted(section(L"D2")), mark("{A2}"), kFlush,
                                kUpdate));
    });
}

TEST_F(TreeSelection, AClickOnTheTextSelectsAndAppliesTwiceWithTheSameOutcome)
{
    run([&](CReviewUnderTest &dialog) {
        const JournalLines lines = recorded([&] { dialog.clickItem(dialog.item(L"A2")); });
        EXPECT_EQ(std::ranges::count(lines, byGuid("{A2}")), 2);
        EXPECT_EQ(dialog.currentName(), L"A2");
        EXPECT_THAT(dialog.HighlightIds(), ElementsAre(entity(L"A2"), section(L"D2")));
        EXPECT_FALSE(dialog.item(L"A2")->IsChecked());
    });
}

TEST_F(TreeSelection, SpaceTicksTheSelectedItemByWayOfTheMessage)
{
    run([&](CReviewUnderTest &dialog) {
        dialog.select(L"A2");
        dialog.press(Qt::Key_Space, " ");
        EXPECT_TRUE(dialog.item(L"A2")->IsChecked());
        EXPECT_THAT(dialog.CheckedGuids(), ElementsAre(L"{A2}"));
        dialog.press(Qt::Key_Space, " ");
        EXPECT_THAT(dialog.CheckedGuids(), IsEmpty());
    });
}

TEST_F(TreeSelection, ATickedSectionDoesNothing)
{
    run([&](CReviewUnderTest &dialog) {
        dialog.clickCheckBox(dialog.item(L"A1", L"D1"));
        CReviewUnderTest::runPosted();
        EXPECT_TRUE(dialog.item(L"A1", L"D1")->IsChecked());
        EXPECT_THAT(dialog.CheckedAreas(), IsEmpty());
        EXPECT_THAT(dialog.CheckedGuids(), IsEmpty());
    });
}

TEST_F(TreeSelection, ATickByAnAidOfTheDesktopCountsToo)
{
    run([&](CReviewUnderTest &dialog) {
        dialog.item(L"A2")->setCheckState(0, Qt::Checked);
        EXPECT_THAT(dialog.CheckedGuids(), IsEmpty());
        CReviewUnderTest::runPosted();
        EXPECT_THAT(dialog.CheckedGuids(), ElementsAre(L"{A2}"));
    });
}

TEST_F(TreeSelection, AnEditedNameIsNoTick)
{
    run([&](CReviewUnderTest &dialog) {
        EXPECT_THAT(recorded([&] { dialog.editName(L"A1", "B1"); }), ElementsAre("CCatchmentArea::SetName({A1}, B1)"));
        EXPECT_THAT(recorded([] { CReviewUnderTest::runPosted(); }), IsEmpty());
        EXPECT_EQ(dialog.selectedName(), L"B1");
    });
}

TEST_F(TreeSelection, CheckedAreasComeInTheStoresOrderWhateverTheyWereCheckedIn)
{
    run([&](CReviewUnderTest &dialog) {
        for (const wchar_t *name : {L"A3", L"A1", L"A2"})
            dialog.tick(name);
        EXPECT_THAT(dialog.checkedNames(), ElementsAre(L"A1", L"A2", L"A3"));
    });
}

TEST_F(TreeSelection, AllAreCheckedAndUncheckedAtOnce)
{
    run([&](CReviewUnderTest &dialog) {
        dialog.click(129);
        dialog.click(124);
        EXPECT_THAT(dialog.checkedNames(), ElementsAre(L"A1", L"A3")); // what the filter shows
        EXPECT_THAT(dialog.CheckedGuids(), UnorderedElementsAre(L"{A1}", L"{A3}"));
        EXPECT_TRUE(dialog.item(L"A1")->IsChecked());
        EXPECT_FALSE(dialog.item(L"A1", L"D1")->IsChecked());
        dialog.click(125);
        EXPECT_THAT(dialog.CheckedAreas(), IsEmpty());
        EXPECT_FALSE(dialog.item(L"A3")->IsChecked());
    });
}

TEST_F(TreeSelection, CheckAllFillsTheSetsBeforeTheOldMarksAreTaken)
{
    run([&](CReviewUnderTest &dialog) {
        const JournalLines lines = recorded([&] {
            dialog.click(124);
            CReviewUnderTest::runPosted(); // ticks from code tell nobody
        });
        EXPECT_THAT(lines, ElementsAre(byGuid("{A1}"), byGuid("{A2}"), byGuid("{A3}"), plain(entity(L"A1")),
                                       plain(section(L"D1")), plain(section(L"D2")), unmark("{A1}"), unmark("{A2}"),
                                       unmark("{A3}"), unmark("{A1}"), kFlush, kUpdate, byGuid("{A1}"), byGuid("{A2}"),
                                       byGuid("{A3}"), byGuid("{A1}"), highlighted(entity(L"A1")),
                                       highlighted(section(L"D1")), highlighted(section(L"D2")), mark("{A1}"),
                                       mark("{A2}"), mark("{A3}"), kFlush, kUpdate));
    });
}

TEST_F(TreeSelection, UncheckAllTakesTheMarksOfAllAndMarksTheAreaInFocus)
{
    run([&](CReviewUnderTest &dialog) {
        dialog.click(124);
        const JournalLines lines = recorded([&] {
            dialog.click(125);
            CReviewUnderTest::runPosted();
        });
        EXPECT_THAT(lines, ElementsAre(plain(entity(L"A1")), plain(section(L"D1")), plain(section(L"D2")),
                                       unmark("{A1}"), unmark("{A2}"), unmark("{A3}"), unmark("{A1}"), kFlush, kUpdate,
                                       byGuid("{A1}"), highlighted(entity(L"A1")), highlighted(section(L"D1")),
                                       highlighted(section(L"D2")), mark("{A1}"), kFlush, kUpdate));
    });
}

TEST_F(TreeSelection, OnlyAreasHaveANameThatIsEdited)
{
    run([&](CReviewUnderTest &dialog) {
        EXPECT_TRUE(dialog.item(L"A1")->flags() & Qt::ItemIsEditable);
        EXPECT_FALSE(dialog.item(L"A1", L"D1")->flags() & Qt::ItemIsEditable);
        dialog.selectSection(L"A1", L"D1");
        dialog.press(Qt::Key_F2);
        EXPECT_EQ(dialog.treeEditor(), nullptr);
        dialog.select(L"A1");
        dialog.press(Qt::Key_F2);
        EXPECT_NE(dialog.treeEditor(), nullptr);
    });
}

TEST_F(TreeSelection, ExpandAllKeepsTheSelectedItemInViewAtTheLeft)
{
    run([&](CReviewUnderTest &dialog) {
        dialog.select(L"A2");
        dialog.click(114);
        for (const wchar_t *name : {L"A1", L"A2"})
            EXPECT_TRUE(dialog.item(name)->isExpanded());
        EXPECT_EQ(dialog.selectedName(), L"A2");
        EXPECT_EQ(dialog.tree()->horizontalScrollBar()->value(), dialog.tree()->horizontalScrollBar()->minimum());
        EXPECT_TRUE(dialog.tree()->updatesEnabled());
        EXPECT_TRUE(dialog.tree()->viewport()->rect().intersects(dialog.tree()->visualItemRect(dialog.item(L"A2"))));
    });
}

TEST_F(TreeSelection, CollapseAllSelectsTheFirstArea)
{
    run([&](CReviewUnderTest &dialog) {
        dialog.click(114);
        dialog.selectSection(L"A2", L"D2");
        dialog.click(115);
        EXPECT_FALSE(dialog.item(L"A1")->isExpanded());
        EXPECT_FALSE(dialog.item(L"A2")->isExpanded());
        EXPECT_EQ(dialog.selectedName(), L"A1");
        EXPECT_EQ(dialog.currentName(), L"A1");
    });
}

TEST_F(TreeSelection, LettersFindAnArea)
{
    addArea(L"Brook", 1, 60);
    run([&](CReviewUnderTest &dialog) {
        dialog.press(Qt::Key_B, "b");
        EXPECT_EQ(dialog.selectedName(), L"Brook");
        EXPECT_EQ(dialog.currentName(), L"Brook");
    });
}

TEST_F(TreeSelection, AnAreaThatIsGoneLeavesTheAreaInFocusAsItWas)
{
    run([&](CReviewUnderTest &dialog) {
        const AreaPtr gone = areaNamed(L"A2");
        const CReviewUnderTest::AreaPtr current = dialog.CurrentArea();
        Sewage::CCatchmentAreaManager::Instance()->DeleteCA(gone);
        dialog.select(L"A2");
        EXPECT_EQ(dialog.CurrentArea(), current);
        EXPECT_THAT(dialog.HighlightIds(), IsEmpty());
        dialog.selectSection(L"A2", L"D2");
        EXPECT_EQ(dialog.CurrentArea(), current);
        EXPECT_THAT(dialog.HighlightIds(), ElementsAre(section(L"D2"))); // in any case
    });
}

TEST_F(TreeSelection, ACheckedAreaThatIsGoneCountsAndIsPassedOver)
{
    run([&](CReviewUnderTest &dialog) {
        dialog.tick(L"A1");
        Sewage::CCatchmentAreaManager::Instance()->DeleteCA(areaNamed(L"A2"));
        dialog.tick(L"A2");
        EXPECT_THAT(dialog.checkedNames(), ElementsAre(L"(null)", L"A1"));
        EXPECT_EQ(dialog.CheckedGuids().size(), 2u);
        EXPECT_EQ(dialog.text(126), ToQString(message(11224) + L": 2"));
        dialog.click(252); // labels: the one that is there
        dialog.click(255);
    });
    EXPECT_THAT(alerts(), IsEmpty());
}

} // namespace
