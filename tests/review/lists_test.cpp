// The review dialog's lists: areas by type, counts, filter, tree and the sections of the area in focus.
#include "tests/definition/journal_lines.h"
#include "tests/review/review_fixture.h"

#include "controls/WideText.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class Lists : public ReviewDialogTest {
protected:
    Lists()
    {
        addSection(L"D1", {0, 5}, {10, 5});
        addSection(L"D2", {10, 5}, {20, 5});
        addArea(L"rain", 1, 0, 0.5, 100, {{L"D2", 0.25}, {L"D1", 0.75}});
        addArea(L"both", 3, 20, 0.5, 100, {{L"D1", 1.0 / 3}});
        addArea(L"house", 2, 40);
        addArea(L"works", 4, 60);
        addArea(L"none", 0, 80);
    }
    static std::vector<std::string> counts(const CReviewUnderTest &dialog)
    {
        std::vector<std::string> shown;
        for (const int control : {120, 121, 122, 123})
            shown.push_back(dialog.text(control).toStdString());
        return shown;
    }
    static std::vector<std::wstring> children(const CReviewUnderTest &dialog, const std::wstring &area)
    {
        std::vector<std::wstring> names;
        const QTreeWidgetItem *item = dialog.item(area);
        for (int row = 0; row < item->childCount(); ++row)
            names.push_back(ToWide(item->child(row)->text(0)));
        return names;
    }
};

TEST_F(Lists, AnAreaOfTwoTypesCountsForBothAndOnceForAll)
{
    run([&](CReviewUnderTest &dialog) { EXPECT_THAT(counts(dialog), ElementsAre("2", "2", "1", "5")); });
}

TEST_F(Lists, TheFilterPicksTheListAndTheCountsStay)
{
    run([&](CReviewUnderTest &dialog) {
        dialog.click(129);
        EXPECT_THAT(dialog.treeNames(), ElementsAre(L"rain", L"both"));
        dialog.click(130);
        EXPECT_THAT(dialog.treeNames(), ElementsAre(L"both", L"house"));
        dialog.click(133);
        EXPECT_THAT(dialog.treeNames(), ElementsAre(L"works"));
        EXPECT_THAT(counts(dialog), ElementsAre("2", "2", "1", "5"));
        dialog.click(134);
        EXPECT_THAT(dialog.treeNames(), ElementsAre(L"rain", L"both", L"house", L"works", L"none"));
    });
}

TEST_F(Lists, SectionsStandBeneathTheirAreaInTheStoresOrderWithACheckBoxOfTheirOwn)
{
    run([&](CReviewUnderTest &dialog) {
        EXPECT_THAT(children(dialog, L"rain"), ElementsAre(L"D2", L"D1"));
        EXPECT_THAT(children(dialog, L"house"), IsEmpty());
        CCatchmentTreeItem *section = dialog.item(L"rain", L"D1");
        EXPECT_EQ(section->SectionId(), network().sectionByName(L"D1")->GetObjectId());
        EXPECT_EQ(section->data(0, Qt::CheckStateRole).toInt(), Qt::Unchecked);
        EXPECT_TRUE(section->flags() & Qt::ItemIsUserCheckable);
        EXPECT_EQ(dialog.item(L"rain")->data(0, Qt::CheckStateRole).toInt(), Qt::Unchecked);
    });
}

TEST_F(Lists, AnItemsPayloadHoldsTheAreasValuesUnderKindOne)
{
    run([&](CReviewUnderTest &dialog) {
        const AreaPtr area = areaNamed(L"rain");
        const CCatchItemData *payload = dialog.item(L"rain")->m_pPayload;
        ASSERT_NE(payload, nullptr);
        EXPECT_EQ(payload->m_bIsland, 1);
        EXPECT_EQ(payload->m_id, area->GetObjectId());
        EXPECT_EQ(payload->m_text, L"{rain}");
        EXPECT_EQ(payload->m_area, 0.01);
        EXPECT_EQ(payload->m_coefficient, 0.5);
        EXPECT_EQ(payload->m_slope, 100.0);
    });
}

TEST_F(Lists, TheListShowsTheSharesOfTheAreaInFocusInPercentWithFourPlaces)
{
    run([&](CReviewUnderTest &dialog) {
        const CXListCtrl &list = *dialog.list();
        ASSERT_EQ(list.GetItemCount(), 2);
        EXPECT_EQ(list.GetItemText(0, 0), L"D2");
        EXPECT_EQ(list.GetItemText(0, 1), L"25.0000");
        EXPECT_EQ(list.GetItemText(1, 0), L"D1");
        EXPECT_EQ(list.GetItemText(1, 1), L"75.0000");
        EXPECT_EQ(list.GetItemData(1), reinterpret_cast<std::uint64_t>(network().sectionByName(L"D1").get()));
        dialog.select(L"both");
        ASSERT_EQ(list.GetItemCount(), 1);
        EXPECT_EQ(list.GetItemText(0, 1), L"33.3333");
        dialog.select(L"house");
        EXPECT_EQ(list.GetItemCount(), 0);
        dialog.selectSection(L"rain", L"D1");
        EXPECT_EQ(list.GetItemCount(), 2);
    });
}

TEST_F(Lists, TheListsColumnsAreSectionAndShare)
{
    run([&](CReviewUnderTest &dialog) {
        const CXListCtrl &list = *dialog.list();
        ASSERT_EQ(list.GetColumnCount(), 2);
        EXPECT_EQ(list.GetHeaderText(0), message(3098));
        EXPECT_EQ(list.GetHeaderText(1), message(4434) + L" [%]");
        EXPECT_GE(list.GetColumnWidth(0), 100);
    });
}

TEST_F(Lists, TheAreaInFocusSurvivesAFilterUnderWhichItStands)
{
    run([&](CReviewUnderTest &dialog) {
        dialog.select(L"both");
        dialog.click(130);
        EXPECT_EQ(dialog.selectedName(), L"both");
        EXPECT_EQ(dialog.currentName(), L"both");
        EXPECT_EQ(dialog.list()->GetItemCount(), 1);
    });
}

TEST_F(Lists, AFilterThatDropsTheAreaInFocusSelectsTheFirstItemAndItsAreaComesIntoFocus)
{
    run([&](CReviewUnderTest &dialog) {
        dialog.select(L"works");
        dialog.click(130);
        EXPECT_EQ(dialog.selectedName(), L"both");
        EXPECT_EQ(dialog.currentName(), L"both");
    });
}

TEST_F(Lists, AFilterUnderWhichNothingStandsLeavesNoAreaAndNoParameters)
{
    run([&](CReviewUnderTest &dialog) {
        dialog.select(L"rain");
        areaNamed(L"works")->SetType(1); // the dialog's lists keep their areas
        dialog.click(133);
        EXPECT_THAT(dialog.treeNames(), ElementsAre(L"works"));
    });
    run([&](CReviewUnderTest &dialog) {
        dialog.click(133);
        EXPECT_THAT(dialog.treeNames(), IsEmpty());
        EXPECT_FALSE(dialog.CurrentArea());
        EXPECT_EQ(dialog.list()->GetItemCount(), 0);
        for (const int control : {126, 109, 110, 220})
            EXPECT_EQ(dialog.text(control), "") << control;
    });
}

TEST_F(Lists, AFilterThrowsTheTicksAway)
{
    run([&](CReviewUnderTest &dialog) {
        dialog.tick(L"rain");
        EXPECT_THAT(dialog.checkedNames(), ElementsAre(L"rain"));
        dialog.click(129);
        EXPECT_THAT(dialog.checkedNames(), IsEmpty());
        EXPECT_FALSE(dialog.item(L"rain")->IsChecked());
    });
}

TEST_F(Lists, AFilterReadsNothingAnewFromTheStore)
{
    run([&](CReviewUnderTest &dialog) {
        const JournalLines lines = recorded([&] { dialog.click(129); });
        for (const std::string &line : lines)
            EXPECT_EQ(line.find("GetAllCatchmentAreas"), std::string::npos);
        // Once by the end of the filling and once behind it; the tree's own events are not listened to meanwhile.
        EXPECT_EQ(std::ranges::count(lines, "CCatchmentAreaManager::GetCatchmentAreaByGuid({rain})"), 2);
    });
}

TEST_F(Lists, WhileTheTreeIsFilledItsSelectionIsNotListenedTo)
{
    run([&](CReviewUnderTest &dialog) {
        dialog.select(L"both"); // under the filter it is the second, so the tree's selection changes twice
        const JournalLines lines = recorded([&] { dialog.click(129); });
        EXPECT_EQ(std::ranges::count(lines, "CCatchmentAreaManager::GetCatchmentAreaByGuid({both})"), 2);
        EXPECT_EQ(std::ranges::count(lines, "CCatchmentArea::UnMark({both})"), 2);
        EXPECT_EQ(std::ranges::count(lines, "acedUpdateDisplay()"), 4);
    });
}

TEST_F(Lists, AHiddenAreaIsListedLikeAllOthers)
{
    addHiddenArea(L"D1", 5000, 2)->SetName(L"hidden");
    run([&](CReviewUnderTest &dialog) {
        dialog.select(L"hidden");
        EXPECT_EQ(dialog.currentName(), L"hidden");
        EXPECT_THAT(children(dialog, L"hidden"), ElementsAre(L"D1"));
        EXPECT_EQ(dialog.list()->GetItemText(0, 1), L"100.0000");
        EXPECT_EQ(dialog.text(109), "0.5000");
    });
}

TEST_F(Lists, OfTwoAreasWithTheSameNameTheTreeFindsEachByItsGuid)
{
    addArea(L"twin", 1, 100);
    areas().back()->SetName(L"rain");
    run([&](CReviewUnderTest &dialog) {
        dialog.tree()->SelectItem(dialog.tree()->topLevelItem(5));
        EXPECT_EQ(dialog.CurrentArea()->GetGuid(), L"{twin}");
        dialog.click(129);
        EXPECT_EQ(dialog.tree()->indexOfTopLevelItem(dialog.tree()->SelectedItem()), 2);
        EXPECT_EQ(dialog.CurrentArea()->GetGuid(), L"{twin}");
    });
}

} // namespace
