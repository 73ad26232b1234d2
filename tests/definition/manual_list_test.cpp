// Rows that a pick made: what a choice of them shows and draws, and what throws the definition away.
#include "tests/definition/manual_fixture.h"

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

class ManualRows : public ManualDefinitionTest {
protected:
    ManualRows() { addSecondCourtyard(); }
    /// Picks the third parcel with both its courtyards: a main row and two island rows.
    void pickThree(CDialogUnderTest &dialog, int method = 1, std::initializer_list<const wchar_t *> sections = {L"D4"})
    {
        prepare(dialog, method, sections);
        dialog.check(268, true);
        pickPoint(dialog, 240, 20);
        ASSERT_THAT(rows(dialog), SizeIs(3));
    }
    /// Angles in degrees and numbers of loops of the hatches, in the order of drawing.
    std::vector<std::pair<double, std::size_t>> hatched()
    {
        std::vector<std::pair<double, std::size_t>> found;
        for (std::size_t i = 0; i < hatches().size(); ++i)
            found.emplace_back(std::round(hatch(i)->patternAngle() * 180.0 / std::acos(-1.0)),
                               hatch(i)->loops().size());
        return found;
    }
    static constexpr std::string_view kHatch = "CZEMCDraw::appendToModelSpace";
    static constexpr std::string_view kUnMark = "CCatchmentAreaManager::UnMarkAllCatchments";
};

TEST_F(ManualRows, AnIslandRowAloneShowsSquareMetresAndTheMainRowHectares)
{
    run([&](CDialogUnderTest &dialog) {
        pickThree(dialog);
        dialog.selectRows({1});
        EXPECT_EQ(dialog.list()->topLevelItem(1)->text(1), "0.0400");
        EXPECT_EQ(dialog.text(213), "400");
        dialog.selectRows({0});
        EXPECT_EQ(dialog.text(213), "0.92");
    });
}

TEST_F(ManualRows, MainAndIslandRowTogetherAreHatchedAt0And45Degrees)
{
    run([&](CDialogUnderTest &dialog) {
        pickThree(dialog);
        EXPECT_THAT(hatched(), ElementsAre(std::pair(0.0, 3u)));
        dialog.list()->topLevelItem(1)->setSelected(true);
        EXPECT_THAT(hatched(), ElementsAre(std::pair(0.0, 3u), std::pair(45.0, 1u)));
        dialog.list()->topLevelItem(2)->setSelected(true);
        EXPECT_THAT(hatched(), ElementsAre(std::pair(0.0, 3u), std::pair(45.0, 1u), std::pair(90.0, 1u)));
        EXPECT_EQ(dialog.text(213), "0.92");
    });
    EXPECT_THAT(hatches(), IsEmpty());
}

TEST_F(ManualRows, ARowThatIsLetGoOfChangesNeitherHatchesNorMarks)
{
    run([&](CDialogUnderTest &dialog) {
        pickThree(dialog);
        dialog.list()->topLevelItem(1)->setSelected(true);
        const auto before = hatches();
        EXPECT_THAT(
            record({kHatch, kUnMark, "acedUpdateDisplay"}, [&] { dialog.list()->topLevelItem(1)->setSelected(false); }),
            IsEmpty());
        EXPECT_EQ(hatches(), before);
        EXPECT_THAT(record({kHatch, kUnMark, "acedUpdateDisplay"}, [&] { dialog.list()->clearSelection(); }),
                    IsEmpty());
        EXPECT_EQ(hatches(), before);
        EXPECT_EQ(dialog.text(213), "0.92");
    });
}

TEST_F(ManualRows, MarkedTextOfTheAreaGoesAlsoWhenARowIsLetGoOfAndMoreThanOneStay)
{
    run([&](CDialogUnderTest &dialog) {
        pickThree(dialog);
        dialog.list()->selectAll();
        dialog.type(213, "123");
        dialog.Control<QLineEdit>(213)->setSelection(0, 1);
        dialog.list()->topLevelItem(2)->setSelected(false);
        EXPECT_EQ(dialog.text(213), "23");
        dialog.Control<QLineEdit>(213)->setSelection(0, 1);
        dialog.list()->topLevelItem(1)->setSelected(false);
        EXPECT_EQ(dialog.text(213), "23") << "one is left";
    });
}

TEST_F(ManualRows, RowsChosenInOneGoAreToldOneAfterTheOtherSoTheFirstOneShowsItsArea)
{
    run([&](CDialogUnderTest &dialog) {
        pickThree(dialog);
        dialog.list()->clearSelection();
        dialog.type(213, "7");
        const auto calls = record({kHatch, kUnMark}, [&] { dialog.list()->selectAll(); });
        EXPECT_EQ(dialog.text(213), "0.92");
        EXPECT_THAT(hatched(), ElementsAre(std::pair(0.0, 3u), std::pair(45.0, 1u), std::pair(90.0, 1u)));
        // Only what stays is drawn.
        EXPECT_EQ(std::ranges::count(calls, "appendToModelSpace AcDbHatch"), 3);
        EXPECT_EQ(std::ranges::count(calls, "UnMarkAllCatchments 7"), 3);
    });
}

TEST_F(ManualRows, AClickOnAnotherRowShowsThatOneAlone)
{
    run([&](CDialogUnderTest &dialog) {
        pickThree(dialog);
        QTreeWidget *list = dialog.list();
        list->setCurrentItem(list->topLevelItem(2)); // as a click: the other is let go of and this one chosen at once
        EXPECT_EQ(rows(dialog),
                  Rows({mainText() + " 0.9200", islandText() + " 0.0400", islandText() + " 0.0400 chosen"}));
        EXPECT_EQ(dialog.text(213), "400");
        EXPECT_THAT(hatched(), ElementsAre(std::pair(0.0, 1u)));
    });
}

TEST_F(ManualRows, NextAndPreviousSectionThrowAnUnsavedDefinitionAway)
{
    for (const int step : {205, 204}) {
        run([&](CDialogUnderTest &dialog) {
            pickThree(dialog, 0, {L"D1", L"D4"});
            if (step == 204) {
                dialog.click(205);
                pickPoint(dialog, 240, 20);
                ASSERT_THAT(rows(dialog), SizeIs(3));
            }
            dialog.click(step);
            EXPECT_THAT(rows(dialog), IsEmpty());
            EXPECT_THAT(loosePolylines(), IsEmpty());
            EXPECT_THAT(hatches(), IsEmpty());
            EXPECT_EQ(dialog.text(213), "");
            EXPECT_EQ(dialog.text(281), "");
        });
        EXPECT_THAT(areas(), IsEmpty());
    }
}

TEST_F(ManualRows, ANewSelectionThrowsAnUnsavedDefinitionAwayAndSaveIsOffAgain)
{
    for (const int method : {0, 1}) {
        run([&](CDialogUnderTest &dialog) {
            pickThree(dialog, method);
            EXPECT_TRUE(dialog.isEnabled(221));
            select(dialog, {L"D1"});
            EXPECT_THAT(rows(dialog), IsEmpty());
            EXPECT_THAT(loosePolylines(), IsEmpty());
            EXPECT_THAT(hatches(), IsEmpty());
            EXPECT_FALSE(dialog.isEnabled(221));
        });
    }
}

TEST_F(ManualRows, AnotherMethodEmptiesTheListAndMethod1KeepsIt)
{
    run([&](CDialogUnderTest &dialog) {
        for (const int method : {0, 2, 3}) {
            pickThree(dialog);
            dialog.choose(257, method);
            EXPECT_THAT(rows(dialog), IsEmpty()) << method;
            EXPECT_THAT(loosePolylines(), SizeIs(3)) << method << ": they wait for the next pick or the end";
            EXPECT_THAT(hatches(), IsEmpty()) << method;
        }
        pickThree(dialog);
        dialog.choose(257, 1);
        EXPECT_THAT(rows(dialog), SizeIs(3));
        EXPECT_TRUE(dialog.isEnabled(221));
        dialog.click(221);
        EXPECT_THAT(areas(), SizeIs(1));
    });
    EXPECT_THAT(loosePolylines(), IsEmpty());
}

TEST_F(ManualRows, ThePicksAreOfferedInMethods0And1Alone)
{
    run([&](CDialogUnderTest &dialog) {
        for (const int control : {208, 209, 239})
            EXPECT_FALSE(dialog.isEnabled(control)) << "before a selection";
        for (const int method : {0, 1, 2, 3}) {
            prepare(dialog, method, {L"D1"});
            for (const int control : {208, 209, 239})
                EXPECT_EQ(dialog.isEnabled(control), method < 2) << control << " in method " << method;
        }
    });
}

TEST_F(ManualRows, TheEndOfTheDialogErasesWhatItDrewInItsOrder)
{
    run([&](CDialogUnderTest &dialog) {
        pickThree(dialog);
        velmor::Journal::instance().setRecording(true);
    });
    velmor::Journal::instance().setRecording(false);
    const auto ends = calls({"CZEMCDictionaryPtr::dctWrite", "CAdUiBaseDialog::EndDialog",
                             "CCatchmentAreaManager::UnMarkAllCatchments", "acedRedraw"});
    ASSERT_GT(ends.size(), 4u);
    EXPECT_EQ(ends[ends.size() - 4], "CZEMCDictionaryPtr::dctWrite");
    EXPECT_EQ(ends[ends.size() - 3], "CAdUiBaseDialog::EndDialog");
    EXPECT_EQ(ends[ends.size() - 2], "CCatchmentAreaManager::UnMarkAllCatchments");
    EXPECT_EQ(ends[ends.size() - 1], "acedRedraw");
    EXPECT_THAT(loosePolylines(), IsEmpty());
    EXPECT_THAT(hatches(), IsEmpty());
}

TEST_F(ManualRows, APolylineThatIsOpenElsewhereWhenTheDialogEndsIsPassedOver)
{
    AcDbEntity *held = nullptr;
    run([&](CDialogUnderTest &dialog) {
        pickThree(dialog);
        ASSERT_EQ(acdbOpenAcDbEntity(held, loosePolylines().at(1), AcDb::kForRead), Acad::eOk);
    });
    held->close();
    EXPECT_THAT(loosePolylines(), SizeIs(1));
}

} // namespace
