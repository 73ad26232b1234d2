// Roads of the manual definition through the program: a drawing and its network are made, areas are defined in the
// dialog with its prompts answered, and the saved drawing is read back. The scripts stand in the folder manual.
#include "tests/acceptance/AreaRows.h"
#include "tests/app/ProgramRun.h"

#include "host/drawing/Drawing.h"
#include "host/drawing/Entities.h"
#include "host/services/Text.h"

#include <gmock/gmock.h>

namespace velmor {
namespace {

namespace fs = std::filesystem;

using test::AreaRow;
using test::number;
using testing::ElementsAre;
using testing::Pair;
using testing::SizeIs;

class ManualRoad : public testing::Test {
protected:
    ManualRoad()
    {
        for (const fs::directory_entry &script :
             fs::directory_iterator(fs::path(VELMOR_SOURCE_DIR) / "tests/acceptance/manual"))
            fs::copy(script.path(), folder.path());
        runScript("make_parcels");
    }
    test::Outcome run(std::vector<std::string> arguments)
    {
        arguments.insert(arguments.end(), {"--language", "en"});
        return test::runProgram(arguments, folder.path());
    }
    /// What the program says on its error output: the alerts.
    std::string runScript(const std::string &name)
    {
        const test::Outcome outcome = run({"run", name + ".velmor"});
        EXPECT_EQ(outcome.code, 0) << outcome.err;
        return outcome.err;
    }
    std::vector<AreaRow> areasOf(const std::string &drawing)
    {
        const test::Outcome outcome = run({"areas", drawing, "--csv"});
        EXPECT_EQ(outcome.code, 0) << outcome.err;
        return test::areaRows(outcome.out);
    }
    /// Entities of model space by class name.
    std::map<std::string, int> entitiesOf(const std::string &drawing)
    {
        std::map<std::string, int> counts;
        const LoadResult loaded = Drawing::load(folder / drawing);
        EXPECT_TRUE(loaded.drawing) << loaded.message;
        if (!loaded.drawing)
            return counts;
        EXPECT_FALSE(loaded.report.damaged());
        for (const AcDbEntity *entity : loaded.drawing->modelSpace().entities())
            ++counts[utf8(entity->isA()->name())];
        return counts;
    }
    /// The drawing holds one more polyline for each area, that many labels, and nothing else of the dialog.
    void expectNothingElse(const std::string &drawing, int areas, int labels)
    {
        auto expected = entitiesOf("parcels.dxf");
        expected["AcDbPolyline"] += areas;
        if (labels > 0)
            expected["AcDbBlockReference"] += labels;
        EXPECT_EQ(entitiesOf(drawing), expected);
        const test::Outcome audit = run({"audit", drawing});
        EXPECT_EQ(audit.code, 0) << audit.err;
    }
    test::ScratchFolder folder;
};

TEST_F(ManualRoad, ThreeSectionsOneByOneTheLastWithAMainAreaAndTwoIslands)
{
    EXPECT_EQ(runScript("section_by_section"), "");
    const auto rows = areasOf("areas.dxf");
    ASSERT_THAT(rows, SizeIs(5));
    EXPECT_EQ(rows[0].at("name"), "A-B_1");
    EXPECT_THAT(test::sharesOf(rows[0]), ElementsAre(Pair("A-B", 1.0)));
    EXPECT_EQ(rows[1].at("name"), "C-D_1");
    EXPECT_THAT(test::sharesOf(rows[1]), ElementsAre(Pair("C-D", 1.0)));
    for (std::size_t i = 2; i < 5; ++i) {
        EXPECT_THAT(test::sharesOf(rows[i]), ElementsAre(Pair("E-F", 1.0)));
        EXPECT_EQ(rows[i].at("island"), i == 2 ? "0" : "1");
        EXPECT_EQ(rows[i].at("main_area"), i == 2 ? "" : rows[2].at("guid"));
        EXPECT_EQ(rows[i].at("name"), "E-F_" + std::to_string(i - 1));
    }
    EXPECT_NEAR(number(rows[2].at("area_ha")), 1.0, 1e-9);
    EXPECT_NEAR(number(rows[2].at("net_area_ha")), 0.92, 1e-9);
    EXPECT_NEAR(number(rows[3].at("area_ha")), 0.04, 1e-9);
    expectNothingElse("areas.dxf", 5, 3);
}

TEST_F(ManualRoad, OneAreaOfTwoSectionsIsSharedByTheirLengths)
{
    EXPECT_EQ(runScript("shared_by_length"), "");
    const auto rows = areasOf("areas.dxf");
    ASSERT_THAT(rows, SizeIs(1));
    EXPECT_THAT(test::sharesOf(rows[0]), ElementsAre(Pair("G-H", 0.3), Pair("H-I", 0.7)));
    expectNothingElse("areas.dxf", 1, 0);
}

TEST_F(ManualRoad, ATypedAreaGoesToItsSectionWithoutAnOutline)
{
    EXPECT_EQ(runScript("typed_area"), "");
    const auto rows = areasOf("areas.dxf");
    ASSERT_THAT(rows, SizeIs(1));
    EXPECT_EQ(rows[0].at("hidden"), "1");
    EXPECT_NEAR(number(rows[0].at("area_ha")), 2.0, 1e-9);
    EXPECT_EQ(rows[0].at("coefficient"), "0.5");
    EXPECT_THAT(test::sharesOf(rows[0]), ElementsAre(Pair("A-B", 1.0)));
}

TEST_F(ManualRoad, APolylineThatIsPickedGivesAnAreaAndStays)
{
    EXPECT_EQ(runScript("by_polyline"), "");
    const auto rows = areasOf("areas.dxf");
    ASSERT_THAT(rows, SizeIs(1));
    EXPECT_NEAR(number(rows[0].at("area_ha")), 1.0, 1e-9);
    expectNothingElse("areas.dxf", 1, 0);
}

TEST_F(ManualRoad, CornersGiveAnArea)
{
    EXPECT_EQ(runScript("by_corners"), "");
    const auto rows = areasOf("areas.dxf");
    ASSERT_THAT(rows, SizeIs(1));
    EXPECT_NEAR(number(rows[0].at("area_ha")), 0.2, 1e-9);
    expectNothingElse("areas.dxf", 1, 0);
}

TEST_F(ManualRoad, EveryPromptCanBeLeftAndTheDialogThenStillDefinesAnArea)
{
    EXPECT_EQ(runScript("cancelled"), "");
    const auto rows = areasOf("cancelled.dxf");
    ASSERT_THAT(rows, SizeIs(1));
    EXPECT_NEAR(number(rows[0].at("area_ha")), 1.0, 1e-9);
    EXPECT_THAT(test::sharesOf(rows[0]), ElementsAre(Pair("A-B", 1.0)));
    expectNothingElse("cancelled.dxf", 1, 0);
}

TEST_F(ManualRoad, ATakenNameAndATakenCentreAreRefused)
{
    const auto alerts = test::split(runScript("saved_twice"), '\n');
    EXPECT_THAT(alerts, SizeIs(4)); // the name once, the centre by a save, by a pick and by another shape
    const auto rows = areasOf("areas.dxf");
    ASSERT_THAT(rows, SizeIs(1));
    EXPECT_EQ(rows[0].at("name"), "First");
    // The polyline of the refused pick stays, as it is required to.
    expectNothingElse("areas.dxf", 1 + 1, 0);
}

TEST_F(ManualRoad, EverythingIsTakenBackAndDoneAgain)
{
    EXPECT_EQ(runScript("undone"), "");
    EXPECT_EQ(test::readFile(folder / "cancelled.dxf"), test::readFile(folder / "parcels.dxf"));
    const auto rows = areasOf("areas.dxf");
    ASSERT_THAT(rows, SizeIs(3));
    EXPECT_EQ(rows[2].at("main_area"), rows[0].at("guid"));
    expectNothingElse("areas.dxf", 3, 3);
}

TEST_F(ManualRoad, AParcelThatDoesNotCloseIsTold)
{
    EXPECT_THAT(test::split(runScript("leaks"), '\n'), SizeIs(1));
    expectNothingElse("cancelled.dxf", 0, 0);
}

} // namespace
} // namespace velmor
