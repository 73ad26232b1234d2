// The type checks of the area in focus, and the lists that follow them.
#include "tests/review/editing_fixture.h"

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

namespace {

class TypeChecks : public EditingTest {
protected:
    static std::vector<bool> checks(const CReviewUnderTest &dialog)
    {
        return {dialog.isChecked(106), dialog.isChecked(131), dialog.isChecked(132)};
    }
};

TEST_F(TypeChecks, ATickedTypeIsAddedToTheAreaAtOnce)
{
    const AreaPtr area = addArea(L"A", 1, 0);
    run([&](CReviewUnderTest &dialog) {
        EXPECT_THAT(recorded([&] { dialog.click(131); }), Contains("CCatchmentArea::SetType(" + guid(area) + ", 3)"));
        EXPECT_EQ(area->GetType(), 3);
        dialog.click(132);
        EXPECT_EQ(area->GetType(), 7);
        dialog.click(106);
        EXPECT_EQ(area->GetType(), 6);
        EXPECT_THAT(checks(dialog), ElementsAre(false, true, true));
    });
}

TEST_F(TypeChecks, TheLastOneTurnsItselfOnAgain)
{
    for (const auto &[control, bit] : {std::pair(106, 1), std::pair(131, 2), std::pair(132, 4)}) {
        const AreaPtr area = addArea(L"A" + std::to_wstring(bit), bit, 20.0 * bit);
        run([&, control = control, bit = bit](CReviewUnderTest &dialog) {
            dialog.select(area->GetName().c_str());
            dialog.click(control);
            EXPECT_TRUE(dialog.isChecked(control));
            EXPECT_EQ(area->GetType(), bit);
        });
    }
}

TEST_F(TypeChecks, TheCountsFollow)
{
    addArea(L"A", 1, 0);
    addArea(L"B", 2, 20);
    run([&](CReviewUnderTest &dialog) {
        ASSERT_THAT(counts(dialog), ElementsAre("1", "1", "0", "2"));
        dialog.select(L"A");
        dialog.click(131);
        dialog.click(132);
        EXPECT_THAT(counts(dialog), ElementsAre("1", "2", "1", "2"));
        dialog.click(106);
        EXPECT_THAT(counts(dialog), ElementsAre("0", "2", "1", "2"));
    });
}

TEST_F(TypeChecks, AnAreaThatGetsATypeComesLastInItsListAndOneThatHadItKeepsItsPlace)
{
    addArea(L"A", 1, 0);
    addArea(L"B", 2, 20);
    addArea(L"C", 2, 40);
    run([&](CReviewUnderTest &dialog) {
        dialog.select(L"A");
        dialog.click(131);
        dialog.click(130);
        EXPECT_THAT(dialog.treeNames(), ElementsAre(L"B", L"C", L"A"));
        dialog.select(L"B");
        dialog.click(132);
        EXPECT_THAT(dialog.treeNames(), ElementsAre(L"B", L"C", L"A"));
    });
}

TEST_F(TypeChecks, AnAreaThatLosesTheFiltersTypeLeavesTheTreeAndTheFirstOneIsInFocus)
{
    addArea(L"A", 2, 0);
    addArea(L"B", 3, 20);
    run([&](CReviewUnderTest &dialog) {
        dialog.click(130);
        dialog.select(L"B");
        dialog.click(131);
        EXPECT_THAT(dialog.treeNames(), ElementsAre(L"A"));
        ASSERT_NE(dialog.CurrentArea(), nullptr);
        EXPECT_EQ(dialog.CurrentArea()->GetName(), L"A");
        EXPECT_THAT(checks(dialog), ElementsAre(false, true, false));
    });
}

TEST_F(TypeChecks, TheFieldsOfTheTypeAreEnabledWithIt)
{
    addArea(L"A", 1, 0);
    run([&](CReviewUnderTest &dialog) {
        ASSERT_FALSE(dialog.isEnabled(220));
        dialog.click(131);
        EXPECT_TRUE(dialog.isEnabled(220));
        EXPECT_TRUE(dialog.isEnabled(327));
        dialog.click(106);
        EXPECT_FALSE(dialog.isEnabled(110));
        EXPECT_FALSE(dialog.isEnabled(112));
    });
}

TEST_F(TypeChecks, TheAreaStaysInFocusWhenItStaysInTheTree)
{
    addArea(L"A", 1, 0);
    addArea(L"B", 1, 20);
    run([&](CReviewUnderTest &dialog) {
        dialog.select(L"B");
        dialog.click(131);
        EXPECT_EQ(dialog.CurrentArea()->GetName(), L"B");
        EXPECT_THAT(checks(dialog), ElementsAre(true, true, false));
    });
}

TEST_F(TypeChecks, WithCheckedAreasTheyAreDisabledAndNothingChanges)
{
    const AreaPtr area = addArea(L"A", 1, 0);
    run([&](CReviewUnderTest &dialog) {
        dialog.tick(L"A");
        for (const int control : {106, 131, 132})
            EXPECT_FALSE(dialog.isEnabled(control)) << control;
        // A handler that runs all the same changes nothing.
        EXPECT_THAT(recorded([&] { Q_EMIT dialog.Control<QAbstractButton>(131)->clicked(); }),
                    Not(Contains(testing::StartsWith("CCatchmentArea::SetType"))));
        EXPECT_EQ(area->GetType(), 1);
    });
}

TEST_F(TypeChecks, WithoutAnAreaOnlyTheLastOneTurnsOnAgain)
{
    run([&](CReviewUnderTest &dialog) {
        dialog.EnableControl(106, true);
        dialog.click(106);
        dialog.click(106);
        EXPECT_TRUE(dialog.isChecked(106));
        EXPECT_THAT(counts(dialog), ElementsAre("0", "0", "0", "0"));
    });
}

TEST_F(TypeChecks, AnAreaOfNoTypeCountsAmongAllAndGetsOneByATick)
{
    const AreaPtr area = addArea(L"A", 0, 0);
    run([&](CReviewUnderTest &dialog) {
        EXPECT_THAT(counts(dialog), ElementsAre("0", "0", "0", "1"));
        dialog.click(132);
        EXPECT_EQ(area->GetType(), 4);
        EXPECT_THAT(counts(dialog), ElementsAre("0", "0", "1", "1"));
    });
}

} // namespace
