#include "catalog/ATV118FlowTable.h"
#include "catalog/Markup.h"
#include "tests/catalog/CatalogFixture.h"

namespace {

using velmor::Journal;
using velmor::test::CatalogFixture;

constexpr double kNone = -1000000.0;

class FlowTable : public CatalogFixture {
protected:
    void write(const std::string &text) { user.write("support/ATV118flow.cfg", text); }
    /// A file with one cell for each intensity, in the row of 30 % of the second class.
    void writeRow(const std::string &at100, const std::string &at130, const std::string &at180,
                  const std::string &at225)
    {
        const auto cell = [](const char *intensity, const std::string &value) {
            return "<Intenzitet val=\"" + std::string(intensity) + "\"><KoefFlow percent=\"30\" val=\"" + value +
                   "\"/></Intenzitet>";
        };
        write("<ATVRoot><Pad2>" + cell("100", at100) + cell("130", at130) + cell("180", at180) + cell("225", at225) +
              "</Pad2></ATVRoot>");
    }
    /// The one cell of a file with these elements in the first class and the intensity 100.
    double cellOf(const std::string &elements, double percent = 30)
    {
        write("<ATVRoot><Pad1><Intenzitet val=\"100\">" + elements + "</Intenzitet></Pad1></ATVRoot>");
        return CATV118FlowTable().GetCoefficient(0, 100, percent);
    }
    static bool isEmpty(const CATV118FlowTable &table)
    {
        for (int slope = 0; slope < 4; ++slope)
            for (int percent = 0; percent <= 100; percent += 10)
                for (const double intensity : {100, 130, 180, 225})
                    if (table.GetCoefficient(slope, intensity, percent) != kNone)
                        return false;
        return true;
    }
};

// --- Coefficients

TEST_F(FlowTable, TheIntensitiesOfTheTableGiveTheirColumnsExactly)
{
    writeRow("0.1", "0.3", "0.7", "0.9");
    const CATV118FlowTable table;
    EXPECT_EQ(table.GetCoefficient(1, 100.0, 30), 0.1);
    EXPECT_EQ(table.GetCoefficient(1, 130.0, 30), 0.3);
    EXPECT_EQ(table.GetCoefficient(1, 180.0, 30), 0.7);
    EXPECT_EQ(table.GetCoefficient(1, 225.0, 30), 0.9);
    EXPECT_EQ(table.GetCoefficient(1, 225.000001, 30), 0.9);
}

TEST_F(FlowTable, NoRoundingOfTheLineShowsAtItsEnds)
{
    // Two decimals each: many of these lines end a bit beside their end.
    for (int left = 0; left < 100; left += 7) {
        for (int right = 1; right < 100; right += 6) {
            const std::string from = std::to_string(left / 100.0), to = std::to_string(right / 100.0);
            writeRow(from, to, from, to);
            const CATV118FlowTable table;
            EXPECT_EQ(table.GetCoefficient(1, 130.0, 30), right / 100.0);
            EXPECT_EQ(table.GetCoefficient(1, 180.0, 30), left / 100.0);
            EXPECT_EQ(table.GetCoefficient(1, 225.0, 30), right / 100.0);
        }
    }
}

TEST_F(FlowTable, OutsideOfTheTableTheNearestColumnCounts)
{
    writeRow("0.1", "0.3", "0.7", "0.9");
    const CATV118FlowTable table;
    for (const double low : {50.0, 0.0, -5.0, 99.999})
        EXPECT_EQ(table.GetCoefficient(1, low, 30), table.GetCoefficient(1, 100.0, 30)) << low;
    for (const double high : {300.0, 226.0, 1e9})
        EXPECT_EQ(table.GetCoefficient(1, high, 30), 0.9) << high;
}

TEST_F(FlowTable, BetweenTwoColumnsTheValueLiesOnAStraightLine)
{
    writeRow("0.1", "0.3", "0.7", "0.9");
    const CATV118FlowTable table;
    EXPECT_NEAR(table.GetCoefficient(1, 115.0, 30), 0.2, 1e-12) << "the middle of the first two";
    EXPECT_NEAR(table.GetCoefficient(1, 110.0, 30), 0.1 + 0.2 / 3, 1e-12);
    EXPECT_NEAR(table.GetCoefficient(1, 155.0, 30), 0.5, 1e-12);
    EXPECT_NEAR(table.GetCoefficient(1, 202.5, 30), 0.8, 1e-12);
}

TEST_F(FlowTable, TwoEqualNeighboursGiveThatValueAtEveryIntensityBetween)
{
    writeRow("0.1", "0.3", "0.3", "0.9");
    const CATV118FlowTable table;
    for (double intensity = 130; intensity <= 180; intensity += 0.37)
        EXPECT_EQ(table.GetCoefficient(1, intensity == 130 ? 130.001 : intensity, 30), 0.3);
}

TEST_F(FlowTable, ThePercentageTakesTheStepBelow)
{
    write("<ATVRoot><Pad1><Intenzitet val='100'><KoefFlow percent='0' val='0.0'/><KoefFlow percent='40' val='0.4'/>"
          "<KoefFlow percent='50' val='0.5'/><KoefFlow percent='100' val='1.0'/></Intenzitet></Pad1></ATVRoot>");
    const CATV118FlowTable table;
    EXPECT_EQ(table.GetCoefficient(0, 100, 49.0), 0.4);
    EXPECT_EQ(table.GetCoefficient(0, 100, 49.999), 0.4);
    EXPECT_EQ(table.GetCoefficient(0, 100, 50.0), 0.5);
    EXPECT_EQ(table.GetCoefficient(0, 100, 100.0), 1.0) << "the last row";
    EXPECT_EQ(table.GetCoefficient(0, 100, -9.0), 0.0) << "cut toward zero";
}

TEST_F(FlowTable, AClassOrAPercentageThatTheTableLacksGivesTheMarker)
{
    writeRow("0.1", "0.3", "0.7", "0.9");
    const CATV118FlowTable table;
    for (const int slope : {4, -1, 1000000, -2147483647})
        EXPECT_EQ(table.GetCoefficient(slope, 100, 30), kNone) << slope;
    for (const double percent : {110.0, -10.0, 1e300, std::nan("")})
        EXPECT_EQ(table.GetCoefficient(1, 100, percent), kNone) << percent;
}

TEST_F(FlowTable, AMissingCellIsNotTreatedSpecially)
{
    writeRow("", "0.5", "", "");
    const CATV118FlowTable table;
    EXPECT_EQ(table.GetCoefficient(1, 90, 30), kNone);
    EXPECT_EQ(table.GetCoefficient(1, 200, 30), kNone) << "both ends are missing";
    EXPECT_NEAR(table.GetCoefficient(1, 115, 30), (kNone + 0.5) / 2, 1e-6) << "one end is";
}

// --- Reading

TEST_F(FlowTable, ADecimalCommaAndAPointGiveTheSameCell)
{
    EXPECT_EQ(cellOf("<KoefFlow percent=\"30\" val=\"0,35\"/>"), 0.35);
    EXPECT_EQ(cellOf("<KoefFlow percent=\"30\" val=\"0.35\"/>"), 0.35);
}

TEST_F(FlowTable, AValueThatIsNoNumberLeavesTheMarker)
{
    for (const char *value : {"0.5x", "x", "", "0.5 0.6"})
        EXPECT_EQ(cellOf("<KoefFlow percent=\"30\" val=\"" + std::string(value) + "\"/>"), kNone) << value;
    EXPECT_EQ(cellOf("<KoefFlow percent=\"30\"/>"), kNone);
}

TEST_F(FlowTable, APercentageBetweenTheStepsLandsInTheStepBelowAndTheLaterElementWins)
{
    EXPECT_EQ(cellOf("<KoefFlow percent=\"37\" val=\"0.7\"/>"), 0.7);
    EXPECT_EQ(cellOf("<KoefFlow percent=\"30\" val=\"0.3\"/><KoefFlow percent=\"37\" val=\"0.7\"/>"), 0.7);
    EXPECT_EQ(cellOf("<KoefFlow percent=\"37\" val=\"0.7\"/><KoefFlow percent=\"30\" val=\"0.3\"/>"), 0.3);
    EXPECT_EQ(cellOf("<KoefFlow percent=\"30\" val=\"0.3\"/><KoefFlow percent=\"30\" val=\"?\"/>"), kNone);
    EXPECT_EQ(cellOf("<KoefFlow val=\"0.2\"/>", 0), 0.2) << "no percentage counts as 0";
    EXPECT_EQ(cellOf("<KoefFlow percent=\"-9\" val=\"0.2\"/>", 0), 0.2) << "divided as a whole number";
}

TEST_F(FlowTable, APercentageBeyondTheTableTouchesNoCell)
{
    write("<ATVRoot><Pad1><Intenzitet val=\"100\"><KoefFlow percent=\"110\" val=\"1\"/>"
          "<KoefFlow percent=\"-10\" val=\"1\"/><KoefFlow percent=\"99999999999\" val=\"1\"/></Intenzitet></Pad1>"
          "<Pad4><Intenzitet val=\"225\"><KoefFlow percent=\"110\" val=\"1\"/></Intenzitet></Pad4></ATVRoot>");
    EXPECT_TRUE(isEmpty(CATV118FlowTable()));
}

TEST_F(FlowTable, AnIntensityThatTheTableLacksIsSkippedWhole)
{
    write("<ATVRoot><Pad1><Intenzitet val=\"120\"><KoefFlow percent=\"30\" val=\"0.9\"/></Intenzitet>"
          "<Intenzitet val=\"130\"><KoefFlow percent=\"30\" val=\"0.4\"/></Intenzitet></Pad1></ATVRoot>");
    const CATV118FlowTable table;
    EXPECT_EQ(table.GetCoefficient(0, 100, 30), kNone);
    EXPECT_EQ(table.GetCoefficient(0, 130, 30), 0.4);
    // Short of 130 it is the line from 100, where there is nothing.
    EXPECT_EQ(table.GetCoefficient(0, 115, 30), (0.4 - kNone) / 30.0 * 15.0 + kNone);
}

TEST_F(FlowTable, EachClassAndIntensityHasItsOwnCells)
{
    std::string text = "<ATVRoot>";
    for (int slope = 0; slope < 4; ++slope) {
        text += "<Pad" + std::to_string(slope + 1) + ">";
        for (const int intensity : {100, 130, 180, 225}) {
            text += "<Intenzitet val=\"" + std::to_string(intensity) + "\">";
            for (int percent = 0; percent <= 100; percent += 10)
                text += "<KoefFlow percent=\"" + std::to_string(percent) + "\" val=\"" + std::to_string(slope) + "." +
                        std::to_string(1000 * intensity + percent) + "\"/>";
            text += "</Intenzitet>";
        }
        text += "</Pad" + std::to_string(slope + 1) + ">";
    }
    write(text + "</ATVRoot>");
    const CATV118FlowTable table;
    for (int slope = 0; slope < 4; ++slope)
        for (const int intensity : {100, 130, 180, 225})
            for (int percent = 0; percent <= 100; percent += 10)
                EXPECT_DOUBLE_EQ(table.GetCoefficient(slope, intensity, percent),
                                 slope + (1000 * intensity + percent) / 1e6);
}

TEST_F(FlowTable, AClassThatStandsBeforeTheOneLookedForIsNotFound)
{
    write("<ATVRoot><Pad3><Intenzitet val=\"100\"><KoefFlow percent=\"0\" val=\"3\"/></Intenzitet></Pad3>"
          "<Pad1><Intenzitet val=\"100\"><KoefFlow percent=\"0\" val=\"1\"/></Intenzitet></Pad1>"
          "<Pad4><Intenzitet val=\"100\"><KoefFlow percent=\"0\" val=\"4\"/></Intenzitet></Pad4></ATVRoot>");
    const CATV118FlowTable table;
    EXPECT_EQ(table.GetCoefficient(0, 100, 0), 1.0);
    EXPECT_EQ(table.GetCoefficient(2, 100, 0), kNone) << "it stands before the first class";
    EXPECT_EQ(table.GetCoefficient(3, 100, 0), 4.0) << "a miss leaves the place where it was";
}

TEST_F(FlowTable, AFileWithoutTheRootIsReadAndFillsNothing)
{
    write("<Other><Pad1><Intenzitet val=\"100\"><KoefFlow percent=\"0\" val=\"1\"/></Intenzitet></Pad1></Other>");
    CATV118FlowTable table;
    EXPECT_TRUE(table.LoadTable());
    EXPECT_TRUE(isEmpty(table));
}

TEST_F(FlowTable, ADamagedFileCountsAsFarAsItsElementsCanBeRecognised)
{
    write("\xEF\xBB\xBF<ATVRoot>\xFF<Pad1><Intenzitet val=\"100\"><KoefFlow percent=\"0\" val=\"0.1\">"
          "<KoefFlow percent=\"10\" val=\"0.2\"/></Intenzitet></Pad1></Stray></ATVRoot>");
    CATV118FlowTable table;
    EXPECT_TRUE(table.LoadTable());
    EXPECT_EQ(table.GetCoefficient(0, 100, 0), 0.1);
    EXPECT_EQ(table.GetCoefficient(0, 100, 10), 0.2);
}

// --- Where the file is

TEST_F(FlowTable, AFileOfTheUserWinsOverTheShippedOne)
{
    resources.write("support/ATV118flow.cfg",
                    "<ATVRoot><Pad1><Intenzitet val=\"100\"><KoefFlow percent=\"0\" val=\"0.7\"/>"
                    "</Intenzitet></Pad1></ATVRoot>");
    EXPECT_EQ(CATV118FlowTable().GetCoefficient(0, 100, 0), 0.7);
    EXPECT_FALSE(std::filesystem::exists(user.path() / "support/ATV118flow.cfg")) << "it is only read";
    write("<ATVRoot><Pad1><Intenzitet val=\"100\"><KoefFlow percent=\"0\" val=\"0.2\"/></Intenzitet></Pad1></ATVRoot>");
    EXPECT_EQ(CATV118FlowTable().GetCoefficient(0, 100, 0), 0.2);
}

TEST_F(FlowTable, WithoutAFileEveryCellIsTheMarker)
{
    CATV118FlowTable table;
    EXPECT_FALSE(table.LoadTable());
    EXPECT_TRUE(isEmpty(table));
}

TEST_F(FlowTable, LoadingAgainStartsFromAnEmptyTable)
{
    write("<ATVRoot><Pad1><Intenzitet val=\"100\"><KoefFlow percent=\"0\" val=\"0.2\"/></Intenzitet></Pad1></ATVRoot>");
    CATV118FlowTable table;
    ASSERT_EQ(table.GetCoefficient(0, 100, 0), 0.2);
    write("<ATVRoot></ATVRoot>");
    EXPECT_TRUE(table.LoadTable());
    EXPECT_TRUE(isEmpty(table));
    write("<ATVRoot><Pad1><Intenzitet val=\"100\"><KoefFlow percent=\"0\" val=\"0.2\"/></Intenzitet></Pad1></ATVRoot>");
    ASSERT_TRUE(table.LoadTable());
    std::filesystem::remove(user.path() / "support/ATV118flow.cfg");
    EXPECT_FALSE(table.LoadTable());
    EXPECT_TRUE(isEmpty(table)) << "the file in the support folder can't be read";
}

TEST_F(FlowTable, WithNeitherAFileNorASupportFolderTheCellsStay)
{
    write("<ATVRoot><Pad1><Intenzitet val=\"100\"><KoefFlow percent=\"0\" val=\"0.2\"/></Intenzitet></Pad1></ATVRoot>");
    CATV118FlowTable table;
    velmor::Services::instance().start({"en"}, velmor::Paths({}, {}));
    EXPECT_FALSE(table.LoadTable());
    EXPECT_EQ(table.GetCoefficient(0, 100, 0), 0.2);
    EXPECT_TRUE(isEmpty(CATV118FlowTable())) << "a new one starts with the marker";
}

TEST_F(FlowTable, AFolderInItsPlaceGivesAnEmptyTable)
{
    std::filesystem::create_directories(user.path() / "support/ATV118flow.cfg");
    CATV118FlowTable table;
    EXPECT_FALSE(table.LoadTable());
    EXPECT_TRUE(isEmpty(table));
}

TEST_F(FlowTable, AFileThatCantBeReadGivesAnEmptyTable)
{
    write("<ATVRoot><Pad1><Intenzitet val=\"100\"><KoefFlow percent=\"0\" val=\"0.2\"/></Intenzitet></Pad1></ATVRoot>");
    CATV118FlowTable table;
    ASSERT_FALSE(isEmpty(table));
    EXPECT_TRUE(withoutRightsTo("support/ATV118flow.cfg", [&] { return !table.LoadTable() && isEmpty(table); }));
}

TEST_F(FlowTable, AFileTooLongToReadGivesAnEmptyTable)
{
    write("<ATVRoot/>");
    std::filesystem::resize_file(user.path() / "support/ATV118flow.cfg", CMarkup::kLongestFile + 1);
    CATV118FlowTable table;
    EXPECT_FALSE(table.LoadTable());
    EXPECT_TRUE(isEmpty(table));
}

TEST_F(FlowTable, AnEmptyFileIsReadAndFillsNothing)
{
    write("");
    CATV118FlowTable table;
    EXPECT_TRUE(table.LoadTable());
    EXPECT_TRUE(isEmpty(table));
}

} // namespace
