// The small handlers beside the editing: settings, hide, info, scale.
#include "tests/review/editing_fixture.h"

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

namespace {

class SmallHandlers : public EditingTest {
protected:
    SmallHandlers() { m_area = addArea(L"A", 1, 0); }
    static std::string waitPrompt() { return "acedGetString(0, " + velmor::journalText(message(50200)) + ")"; }
    void answerEnter() { m_session.answers().push({velmor::Answer::Enter{}}); }
    AreaPtr m_area;
};

TEST_F(SmallHandlers, SettingsOpenTheirGroupAndReadTheDecimalPlacesAgain)
{
    run([&](CReviewUnderTest &dialog) {
        EXPECT_EQ(dialog.DecimalPlaces(), 4);
        onNested([&](CAdUiBaseDialog &) { setSetting("DECIMAL_PLACES_CATCHMENT", 2); });
        EXPECT_THAT(recorded([&] { dialog.clickHidden(219); }),
                    ElementsAre("SetActiveCommand(CA_PARAMS)", "CModuleConfiguration::ShowGSDialog(TCE2)",
                                StartsWith("CAdUiBaseDialog::EndDialog"),
                                "CModuleConfiguration::GetGSValueInt(DECIMAL_PLACES_CATCHMENT, 1)",
                                "~SetActiveCommand(CA_PARAMS)"));
        EXPECT_EQ(dialog.DecimalPlaces(), 2);
    });
}

TEST_F(SmallHandlers, ASettingThatIsTakenAwayMeansFourAgain)
{
    setSetting("DECIMAL_PLACES_CATCHMENT", 3);
    run([&](CReviewUnderTest &dialog) {
        EXPECT_EQ(dialog.DecimalPlaces(), 3);
        onNested([&](CAdUiBaseDialog &) { velmor::Services::instance().reset("DECIMAL_PLACES_CATCHMENT"); });
        dialog.clickHidden(219);
        EXPECT_EQ(dialog.DecimalPlaces(), 4);
    });
}

TEST_F(SmallHandlers, HidePutsTheDialogAwayUntilAnAnswer)
{
    run([&](CReviewUnderTest &dialog) {
        answerEnter();
        EXPECT_THAT(recorded([&] { dialog.click(3); }),
                    ElementsAre("SetActiveCommand(CA_HIDE)", "CAdUiBaseDialog::BeginEditorCommand()", waitPrompt(),
                                "CAdUiBaseDialog::CompleteEditorCommand(1)", "~SetActiveCommand(CA_HIDE)"));
        EXPECT_TRUE(dialog.isVisible());
    });
}

TEST_F(SmallHandlers, InfoRunsTheToolOverSectionsWithTheDialogAway)
{
    run([&](CReviewUnderTest &dialog) {
        EXPECT_THAT(recorded([&] { dialog.click(100); }),
                    ElementsAre("SetActiveCommand(CA_INFO)", "CAdUiBaseDialog::BeginEditorCommand()",
                                "CCatchmentAreaManager::StartCAInfoTooltipSections()",
                                "CAdUiBaseDialog::CompleteEditorCommand(1)", "~SetActiveCommand(CA_INFO)"));
        EXPECT_TRUE(dialog.isVisible());
    });
}

TEST_F(SmallHandlers, WhileACommandRunsNoneOfThemDoesAnything)
{
    run([&](CReviewUnderTest &dialog) {
        const ZEMGis::Notification::SetActiveCommand other(L"CA_OTHER");
        for (const int control : {3, 100})
            EXPECT_THAT(recorded([&] { dialog.click(control); }), IsEmpty()) << control;
        EXPECT_THAT(recorded([&] { dialog.clickHidden(219); }), IsEmpty());
    });
}

TEST_F(SmallHandlers, EachChangeOfTheScaleMarksAnewWithIt)
{
    run([&](CReviewUnderTest &dialog) {
        for (const char *scale : {"2.5", "3"}) {
            EXPECT_THAT(recorded([&] { dialog.type(352, scale); }),
                        Contains(testing::AllOf(StartsWith("CCatchmentArea::Mark(" + guid(m_area)),
                                                testing::HasSubstr(std::string(", ") + scale + ", 0.785"))))
                << scale;
        }
    });
}

} // namespace
