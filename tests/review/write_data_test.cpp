// Write data: the fields go to all targets, and their labels are written anew.
#include "tests/review/editing_fixture.h"

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

class WritingData : public EditingTest {
protected:
    static std::string labelCall(const AreaPtr &area, const std::string &type)
    {
        return "CCatchmentAreaManager::WriteCatchmentLabel(" + guid(area) + ", " + type + ')';
    }
    static constexpr const char *kDefinition = "CDataConfiguration::GetDataDefinitionByID(SLIV_LABEL)";
    std::string chosenType(CReviewUnderTest &dialog) { return dialog.text(135).toStdString(); }
};

TEST_F(WritingData, OneAreaGetsBothValuesAndItsLabelInThisOrder)
{
    const AreaPtr area = addArea(L"A", 3, 0);
    run([&](CReviewUnderTest &dialog) {
        dialog.type(110, "0.7");
        dialog.type(220, "250");
        EXPECT_THAT(recorded([&] { dialog.click(127); }),
                    ElementsAre("CCatchmentArea::SetFlowCoeff(" + guid(area) + ", 0.7)",
                                "CCatchmentArea::SetPopulation(" + guid(area) + ", 250)", kDefinition,
                                labelCall(area, chosenType(dialog))));
        EXPECT_EQ(area->GetFlowCoeff(), 0.7);
        EXPECT_EQ(area->GetPopulation(), 250.0);
        EXPECT_THAT(labels(), SizeIs(1)) << "also where there was none";
    });
}

TEST_F(WritingData, OnlyWhatTheTypeHasIsWritten)
{
    const AreaPtr house = addArea(L"house", 2, 0, 0.5, 100), industry = addArea(L"industry", 4, 20, 0.5, 100);
    run([&](CReviewUnderTest &dialog) {
        dialog.click(124);
        dialog.type(110, "0.9");
        dialog.type(220, "333");
        EXPECT_THAT(recorded([&] { dialog.click(127); }),
                    ElementsAre("CCatchmentArea::SetPopulation(" + guid(house) + ", 333)", kDefinition,
                                labelCall(house, chosenType(dialog)), kDefinition,
                                labelCall(industry, chosenType(dialog))));
        EXPECT_EQ(house->GetFlowCoeff(), 0.5);
        EXPECT_EQ(industry->GetPopulation(), 100.0);
    });
}

TEST_F(WritingData, CheckedAreasAreTheTargetsAndTheSelectedOneIsNot)
{
    const AreaPtr a = addArea(L"A", 1, 0), b = addArea(L"B", 1, 20), c = addArea(L"C", 1, 40);
    run([&](CReviewUnderTest &dialog) {
        dialog.tick(L"B");
        dialog.tick(L"C");
        dialog.select(L"A");
        dialog.type(110, "0.8");
        dialog.click(127);
        EXPECT_EQ(a->GetFlowCoeff(), 0.5);
        EXPECT_EQ(b->GetFlowCoeff(), 0.8);
        EXPECT_EQ(c->GetFlowCoeff(), 0.8);
    });
}

TEST_F(WritingData, TheTextOfARedFieldGoesToAllTargets)
{
    const AreaPtr a = addArea(L"A", 1, 0, 0.5), b = addArea(L"B", 1, 20, 0.9);
    run([&](CReviewUnderTest &dialog) {
        dialog.click(124);
        ASSERT_EQ(background(dialog, 110), kRed);
        ASSERT_EQ(dialog.text(110), "0.5");
        dialog.click(127);
        EXPECT_EQ(b->GetFlowCoeff(), 0.5);
        EXPECT_EQ(background(dialog, 110), kWhite) << "the fields show at once that all have it";
        EXPECT_EQ(dialog.text(110), "0.5");
    });
}

TEST_F(WritingData, ARedFieldOfAParameterThatNoTargetHasLeavesThemAlone)
{
    const AreaPtr a = addArea(L"A", 1, 0, 0.5, 77), b = addArea(L"B", 1, 20, 0.5, 88);
    run([&](CReviewUnderTest &dialog) {
        dialog.click(124);
        ASSERT_EQ(background(dialog, 220), kRed);
        dialog.type(220, "999");
        dialog.click(127);
        EXPECT_EQ(a->GetPopulation(), 77.0);
        EXPECT_EQ(b->GetPopulation(), 88.0);
        EXPECT_EQ(background(dialog, 220), kRed);
    });
}

TEST_F(WritingData, AnEmptyFieldIsWrittenAsZero)
{
    const AreaPtr area = addArea(L"A", 1, 0);
    run([&](CReviewUnderTest &dialog) {
        dialog.type(110, "");
        dialog.click(127);
        EXPECT_EQ(area->GetFlowCoeff(), 0.0);
        EXPECT_EQ(dialog.text(110), "0");
    });
}

TEST_F(WritingData, ACoefficientAboveOneIsTakenAsItStands)
{
    const AreaPtr area = addArea(L"A", 1, 0);
    run([&](CReviewUnderTest &dialog) {
        dialog.type(110, "12.5");
        dialog.click(127);
        EXPECT_EQ(area->GetFlowCoeff(), 12.5);
    });
}

TEST_F(WritingData, TheLabelIsOfTheTypeNowChosenAndReplacesTheOneBefore)
{
    const AreaPtr area = addArea(L"A", 1, 0);
    run([&](CReviewUnderTest &dialog) {
        auto *combo = dialog.Control<QComboBox>(135);
        ASSERT_GE(combo->count(), 2);
        combo->setCurrentIndex(1);
        EXPECT_THAT(recorded([&] { dialog.click(127); }),
                    testing::Contains(labelCall(area, combo->itemText(1).toStdString())));
        dialog.click(127);
        EXPECT_THAT(labels(), SizeIs(1));
    });
}

TEST_F(WritingData, WithoutALabelTypeTheLibraryIsCalledWithNoneAndTheValuesAreWritten)
{
    const AreaPtr area = addArea(L"A", 1, 0);
    run([&](CReviewUnderTest &dialog) {
        dialog.Control<QComboBox>(135)->clear();
        dialog.type(110, "0.6");
        EXPECT_THAT(recorded([&] { dialog.click(127); }), testing::Contains(labelCall(area, "null")));
        EXPECT_EQ(area->GetFlowCoeff(), 0.6);
        EXPECT_THAT(labels(), IsEmpty());
    });
}

TEST_F(WritingData, AnAreaWhoseEntityCanNotBeOpenedGetsItsValuesAndNoLabel)
{
    const AreaPtr area = addArea(L"A", 1, 0);
    run([&](CReviewUnderTest &dialog) {
        dialog.type(110, "0.6");
        const CZEMCEntityPtr held(area->GetObjectId(), AcDb::kForWrite); // somebody else works at it
        EXPECT_THAT(recorded([&] { dialog.click(127); }),
                    ElementsAre("CCatchmentArea::SetFlowCoeff(" + guid(area) + ", 0.6)", kDefinition));
    });
    EXPECT_THAT(labels(), IsEmpty());
}

TEST_F(WritingData, WithoutAnAreaNothingHappens)
{
    run([&](CReviewUnderTest &dialog) { EXPECT_THAT(recorded([&] { dialog.click(127); }), IsEmpty()); });
}

TEST_F(WritingData, ItIsNotGuardedByARunningCommand)
{
    const AreaPtr area = addArea(L"A", 1, 0);
    run([&](CReviewUnderTest &dialog) {
        const ZEMGis::Notification::SetActiveCommand other(L"CA_OTHER");
        dialog.type(110, "0.6");
        dialog.click(127);
        EXPECT_EQ(area->GetFlowCoeff(), 0.6);
    });
}

TEST_F(WritingData, ChangesInTheFieldsDoNothingByThemselves)
{
    const AreaPtr area = addArea(L"A", 3, 0);
    run([&](CReviewUnderTest &dialog) {
        EXPECT_THAT(recorded([&] {
                        dialog.type(110, "0.9");
                        dialog.type(220, "9");
                    }),
                    IsEmpty());
        EXPECT_EQ(area->GetFlowCoeff(), 0.5);
    });
}

TEST_F(WritingData, TheWaitCursorIsGoneBehindIt)
{
    addArea(L"A", 1, 0);
    run([&](CReviewUnderTest &dialog) {
        dialog.click(127);
        EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
    });
}

TEST_F(WritingData, AHiddenAreaIsWrittenAsAnyOther)
{
    addNode(L"MH1", {0, 0});
    addNode(L"MH2", {10, 0});
    addSection(L"D1", {0, 0}, {10, 0}, L"MH1", L"MH2");
    const AreaPtr hidden = addHiddenArea(L"D1", 2500, 3);
    run([&](CReviewUnderTest &dialog) {
        EXPECT_EQ(dialog.text(109), "0.2500");
        dialog.type(110, "0.6");
        dialog.click(127);
        EXPECT_EQ(hidden->GetFlowCoeff(), 0.6);
    });
}

} // namespace
