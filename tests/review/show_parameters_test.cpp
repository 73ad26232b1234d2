// What the parameter fields show: nothing, one area, many.
#include "tests/review/editing_fixture.h"

using testing::ElementsAre;

namespace {

class ParametersShown : public EditingTest {
protected:
    void expectField(CReviewUnderTest &dialog, int control, const QString &text, unsigned wanted)
    {
        EXPECT_EQ(dialog.text(control), text) << control;
        EXPECT_EQ(EditingTest::background(dialog, control), wanted) << control;
    }
};

TEST_F(ParametersShown, WithoutAnyAreaAllFieldsAreEmpty)
{
    run([&](CReviewUnderTest &dialog) {
        for (const int control : {126, 109, 110, 220})
            EXPECT_EQ(dialog.text(control), "") << control;
    });
}

TEST_F(ParametersShown, OneAreaShowsItsHeadAreaAndValuesOnWhite)
{
    addArea(L"A", 7, 0, 0.35, 120.5);
    run([&](CReviewUnderTest &dialog) {
        EXPECT_EQ(dialog.text(126), QString::fromStdWString(message(11223)));
        EXPECT_EQ(dialog.colour(126), 0xff0000u);
        EXPECT_EQ(dialog.text(109), "0.0100") << "hectares, four decimals";
        expectField(dialog, 110, "0.35", kWhite);
        expectField(dialog, 220, "120.5", kWhite);
        for (const int control : {110, 112, 220, 327})
            EXPECT_TRUE(dialog.isEnabled(control)) << control;
    });
}

TEST_F(ParametersShown, OnADarkDesktopWhiteIsTheGroundOfItsFieldsAndRedStaysRed)
{
    const QPalette before = QApplication::palette();
    QApplication::setPalette(QPalette(QColor(0x20, 0x22, 0x24)));
    const QColor ground = QApplication::palette().color(QPalette::Base);
    addArea(L"A", 1, 0, 0.35);
    addArea(L"B", 1, 20, 0.75);
    run([&](CReviewUnderTest &dialog) {
        expectField(dialog, 110, "0.35",
                    static_cast<unsigned>(ground.red() | ground.green() << 8 | ground.blue() << 16));
        dialog.tick(L"A");
        dialog.tick(L"B");
        expectField(dialog, 110, "0.35", kRed);
    });
    QApplication::setPalette(before);
}

TEST_F(ParametersShown, AFieldAndItsLabelAreEnabledExactlyWhenTheTypeOfTheOneAreaHasThem)
{
    addArea(L"catch", 1, 0);
    addArea(L"house", 2, 20);
    addArea(L"industry", 4, 40);
    run([&](CReviewUnderTest &dialog) {
        dialog.select(L"catch");
        for (const int control : {110, 112})
            EXPECT_TRUE(dialog.isEnabled(control)) << control;
        for (const int control : {220, 327})
            EXPECT_FALSE(dialog.isEnabled(control)) << control;
        dialog.select(L"house");
        for (const int control : {110, 112})
            EXPECT_FALSE(dialog.isEnabled(control)) << control;
        for (const int control : {220, 327})
            EXPECT_TRUE(dialog.isEnabled(control)) << control;
        dialog.select(L"industry");
        for (const int control : {110, 112, 220, 327})
            EXPECT_FALSE(dialog.isEnabled(control)) << control;
        EXPECT_EQ(dialog.text(110), "0.5") << "the value stands all the same";
    });
}

TEST_F(ParametersShown, OneCheckedAreaIsShownAsManyWithTheCountOne)
{
    addArea(L"A", 1, 0, 0.25, 50);
    run([&](CReviewUnderTest &dialog) {
        dialog.tick(L"A");
        EXPECT_EQ(dialog.text(126), QString::fromStdWString(message(11224)) + ": 1");
        EXPECT_EQ(dialog.colour(126), 0xff00ffu);
        for (const int control : {110, 112, 220, 327})
            EXPECT_TRUE(dialog.isEnabled(control)) << control;
        expectField(dialog, 110, "0.25", kWhite);
    });
}

TEST_F(ParametersShown, CheckedAreasAddUpWhateverIsSelected)
{
    addArea(L"A", 1, 0);
    addArea(L"B", 2, 20);
    addArea(L"C", 4, 40);
    run([&](CReviewUnderTest &dialog) {
        dialog.tick(L"A");
        dialog.tick(L"C");
        dialog.select(L"B");
        EXPECT_EQ(dialog.text(109), "0.0200");
        EXPECT_EQ(dialog.text(126), QString::fromStdWString(message(11224)) + ": 2");
    });
}

TEST_F(ParametersShown, TwoCoefficientsThatDifferByHalfAThousandthShowTheLaterInWhite)
{
    addArea(L"A", 1, 0, 0.500);
    addArea(L"B", 1, 20, 0.5005);
    run([&](CReviewUnderTest &dialog) {
        dialog.click(124);
        expectField(dialog, 110, "0.5005", kWhite);
    });
}

TEST_F(ParametersShown, TwoCoefficientsThatDifferByMoreTurnTheFieldRedAndLeaveItsText)
{
    addArea(L"A", 1, 0, 0.5);
    addArea(L"B", 1, 20, 0.502);
    run([&](CReviewUnderTest &dialog) {
        ASSERT_EQ(dialog.text(110), "0.5") << "of the first area, which is selected";
        dialog.click(124);
        expectField(dialog, 110, "0.5", kRed);
        dialog.click(125);
        expectField(dialog, 110, "0.5", kWhite);
    });
}

TEST_F(ParametersShown, OfTwoCheckedAreasOfWhichOneHasTheBitItsCoefficientIsShownInWhite)
{
    addArea(L"A", 4, 0, 0.9);
    addArea(L"B", 1, 20, 0.3);
    run([&](CReviewUnderTest &dialog) {
        dialog.click(124);
        expectField(dialog, 110, "0.3", kWhite);
    });
}

TEST_F(ParametersShown, CheckedAreasOfWhichNoneHasHousesTurnTheDensityRedAndLeaveItsText)
{
    addArea(L"A", 1, 0, 0.3, 77);
    addArea(L"B", 1, 20, 0.3, 78);
    run([&](CReviewUnderTest &dialog) {
        dialog.click(124);
        expectField(dialog, 220, "77", kRed);
        expectField(dialog, 110, "0.3", kWhite);
        EXPECT_TRUE(dialog.isEnabled(220));
    });
}

TEST_F(ParametersShown, AZeroSoFarIsNoDifferenceButAZeroBehindAValueIs)
{
    addArea(L"A", 1, 0, 0.0);
    addArea(L"B", 1, 20, 0.4);
    addArea(L"C", 1, 40, 0.0);
    run([&](CReviewUnderTest &dialog) {
        dialog.tick(L"A");
        dialog.tick(L"B");
        expectField(dialog, 110, "0.4", kWhite);
        dialog.tick(L"C");
        expectField(dialog, 110, "0.4", kRed);
    });
}

TEST_F(ParametersShown, CheckedAreasAreTakenInTheOrderOfTheStoreNotOfTheTicks)
{
    addArea(L"A", 1, 0, 0.5001);
    addArea(L"B", 1, 20, 0.5005);
    run([&](CReviewUnderTest &dialog) {
        dialog.tick(L"B");
        dialog.tick(L"A");
        expectField(dialog, 110, "0.5005", kWhite);
    });
}

TEST_F(ParametersShown, ALongValueIsCutToWhatTheFieldTakes)
{
    addArea(L"A", 3, 0, 0.123456789, 12.5);
    run([&](CReviewUnderTest &dialog) {
        EXPECT_EQ(dialog.text(110), "0.1234");
        EXPECT_EQ(dialog.text(220), "12.5");
    });
}

} // namespace
