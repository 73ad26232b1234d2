// Names of areas: all of them from their nodes, and one as it is typed in the tree.
#include "tests/review/editing_fixture.h"

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;

namespace {

class Names : public EditingTest {
protected:
    Names()
    {
        for (const wchar_t *node : {L"MH12", L"MH7b", L"MH30", L"Outfall", L"Well"})
            addNode(node, {0, 0});
        addSection(L"D1", {0, 0}, {10, 0}, L"MH12", L"MH7b");
        addSection(L"D2", {20, 0}, {30, 0}, L"MH30", L"MH12");
        addSection(L"D3", {40, 0}, {50, 0}, L"Outfall", L"Well");
    }
};

TEST_F(Names, RenameGivesEachAreaTheNodeWithTheLowestNumberOfItsSections)
{
    const AreaPtr a = addArea(L"A", 1, 0, 0.5, 100, {{L"D1", 0.5}, {L"D2", 0.5}});
    const AreaPtr b = addArea(L"B", 1, 20, 0.5, 100, {{L"D2", 1.0}});
    run([&](CReviewUnderTest &dialog) {
        const JournalLines lines = recorded([&] { dialog.click(260); });
        ASSERT_GE(lines.size(), 4u);
        EXPECT_THAT(JournalLines(lines.begin(), lines.begin() + 4),
                    ElementsAre("CCatchmentAreaManager::GetAllCatchmentAreas(7)",
                                "CCatchmentArea::SetName(" + guid(a) + ", MH7b)",
                                "CCatchmentArea::SetName(" + guid(b) + ", MH12)",
                                "CCatchmentAreaManager::GetAllCatchmentAreas(7)"));
        EXPECT_THAT(names(), ElementsAre("MH7b", "MH12"));
        EXPECT_THAT(dialog.treeNames(), ElementsAre(L"MH7b", L"MH12"));
    });
}

TEST_F(Names, RenameTakesAllAreasWhateverIsCheckedSelectedOrFiltered)
{
    addArea(L"A", 1, 0, 0.5, 100, {{L"D1", 1.0}});
    addArea(L"B", 2, 20, 0.5, 100, {{L"D2", 1.0}});
    run([&](CReviewUnderTest &dialog) {
        dialog.click(129);
        dialog.tick(L"A");
        dialog.click(260);
        EXPECT_THAT(names(), ElementsAre("MH7b", "MH12"));
        EXPECT_THAT(dialog.treeNames(), ElementsAre(L"MH7b")) << "the filter stays";
    });
}

TEST_F(Names, AnAreaWithoutSectionsOrWithoutDigitsInItsNodesKeepsItsName)
{
    addArea(L"none", 1, 0);
    addArea(L"no digits", 1, 20, 0.5, 100, {{L"D3", 1.0}});
    run([&](CReviewUnderTest &dialog) {
        EXPECT_THAT(recorded([&] { dialog.click(260); }),
                    testing::Not(Contains(StartsWith("CCatchmentArea::SetName"))));
        EXPECT_THAT(names(), ElementsAre("none", "no digits"));
    });
}

TEST_F(Names, RenameClearsAllChecks)
{
    addArea(L"A", 1, 0, 0.5, 100, {{L"D1", 1.0}});
    addArea(L"B", 1, 20);
    run([&](CReviewUnderTest &dialog) {
        dialog.click(124);
        ASSERT_THAT(dialog.CheckedAreas(), SizeIs(2));
        dialog.click(260);
        EXPECT_THAT(dialog.CheckedAreas(), IsEmpty());
        EXPECT_THAT(dialog.CheckedGuids(), IsEmpty());
        EXPECT_TRUE(dialog.isEnabled(106)) << "the area in focus can be edited again";
    });
}

TEST_F(Names, RenameKeepsTheAreaInFocusThoughTheSelectionEventRunsInTheMiddle)
{
    addArea(L"A", 1, 0);
    addArea(L"B", 1, 20, 0.25, 100, {{L"D2", 0.5}});
    run([&](CReviewUnderTest &dialog) {
        dialog.select(L"B");
        dialog.click(260);
        ASSERT_NE(dialog.CurrentArea(), nullptr);
        EXPECT_EQ(dialog.CurrentArea()->GetName(), L"MH12");
        EXPECT_EQ(dialog.text(110), "0.25");
        EXPECT_THAT(rows(dialog), ElementsAre("D2 50.0000"));
    });
}

TEST_F(Names, RenameIsNotGuarded)
{
    addArea(L"A", 1, 0, 0.5, 100, {{L"D1", 1.0}});
    run([&](CReviewUnderTest &dialog) {
        const ZEMGis::Notification::SetActiveCommand other(L"CA_OTHER");
        dialog.click(260);
        EXPECT_THAT(names(), ElementsAre("MH7b"));
    });
}

TEST_F(Names, SeveralAreasMayGetTheSameName)
{
    addArea(L"A", 1, 0, 0.5, 100, {{L"D1", 1.0}});
    addArea(L"B", 1, 20, 0.5, 100, {{L"D1", 1.0}});
    run([&](CReviewUnderTest &dialog) {
        dialog.click(260);
        EXPECT_THAT(names(), ElementsAre("MH7b", "MH7b"));
    });
}

// --- Typed in the tree --------------------------------------------------------------------------------------

TEST_F(Names, ATypedNameGoesToTheAreaInFocusAndToTheItem)
{
    const AreaPtr area = addArea(L"A", 1, 0);
    run([&](CReviewUnderTest &dialog) {
        EXPECT_THAT(recorded([&] { dialog.editName(L"A", "North"); }),
                    Contains("CCatchmentArea::SetName(" + guid(area) + ", North)"));
        EXPECT_EQ(area->GetName(), L"North");
        EXPECT_THAT(dialog.treeNames(), ElementsAre(L"North"));
    });
}

TEST_F(Names, AnEmptyNameIsAName)
{
    const AreaPtr area = addArea(L"A", 1, 0);
    run([&](CReviewUnderTest &dialog) {
        dialog.editName(L"A", "");
        EXPECT_EQ(area->GetName(), L"");
        EXPECT_THAT(dialog.treeNames(), ElementsAre(L""));
    });
}

TEST_F(Names, AnAbandonedEditChangesNothing)
{
    const AreaPtr area = addArea(L"A", 1, 0);
    run([&](CReviewUnderTest &dialog) {
        dialog.abandonName(L"A", "North");
        EXPECT_EQ(area->GetName(), L"A");
        EXPECT_THAT(dialog.treeNames(), ElementsAre(L"A"));
    });
}

TEST_F(Names, TheNameGoesToTheFocusedAreaAlsoWhenAnotherItemWasEdited)
{
    const AreaPtr a = addArea(L"A", 1, 0), b = addArea(L"B", 1, 20);
    run([&](CReviewUnderTest &dialog) {
        dialog.select(L"A");
        dialog.tellNameEdited(dialog.item(L"B"), "North"); // the notice for an item that isn't selected
        EXPECT_EQ(a->GetName(), L"North");
        EXPECT_EQ(b->GetName(), L"B");
        EXPECT_THAT(dialog.treeNames(), ElementsAre(L"A", L"North"));
    });
}

TEST_F(Names, ANoticeForASectionIsLeftAlone)
{
    const AreaPtr area = addArea(L"A", 1, 0, 0.5, 100, {{L"D1", 1.0}});
    run([&](CReviewUnderTest &dialog) {
        auto *section = static_cast<CCatchmentTreeItem *>(dialog.tree()->AreaItem(0)->child(0));
        EXPECT_THAT(recorded([&] { Q_EMIT dialog.tree()->NameEdited(section, "North"); }), IsEmpty());
        EXPECT_EQ(area->GetName(), L"A");
        EXPECT_EQ(section->text(0), "D1");
    });
}

} // namespace
