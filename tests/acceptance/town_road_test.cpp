// The road that the example town shows to a newcomer, with the script that is shipped: a plan and its network come in,
// catchment areas with islands and labels go out, and the table, the picture and the list are made of them.
#include "tests/acceptance/AreaRows.h"
#include "tests/app/ProgramRun.h"

#include "host/drawing/Drawing.h"
#include "host/drawing/Entities.h"
#include "host/services/Text.h"

#include <gmock/gmock.h>

#include <QImage>

#include <algorithm>
#include <map>
#include <set>

namespace velmor {
namespace {

namespace fs = std::filesystem;

using test::number;
using test::split;
using testing::EndsWith;
using testing::HasSubstr;
using testing::SizeIs;
using testing::StartsWith;

/// Pixels that are more green than anything else, as a hatch's thin lines are over the white ground.
int countGreen(const QImage &image)
{
    constexpr int kClearly = 40;
    int found = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QRgb pixel = image.pixel(x, y);
            found += qGreen(pixel) > std::max(qRed(pixel), qBlue(pixel)) + kClearly;
        }
    }
    return found;
}

/// A copy of the examples in a folder of its own, where the scripts leave what they make.
class TownRoad : public testing::Test {
protected:
    TownRoad()
    {
        fs::copy(fs::path(VELMOR_SOURCE_DIR) / "examples", folder / "examples");
        fs::create_directory(folder / "out");
    }
    test::Outcome run(std::vector<std::string> arguments)
    {
        arguments.insert(arguments.end(), {"--language", "en"});
        return test::runProgram(arguments, folder.path());
    }
    /// Runs the shipped script and tells its output.
    std::string runScript(const char *name)
    {
        const test::Outcome outcome = run({"run", std::string("examples/") + name});
        EXPECT_EQ(outcome.code, 0);
        EXPECT_EQ(outcome.err, "");
        return outcome.out;
    }
    std::vector<test::AreaRow> listAreas()
    {
        const test::Outcome outcome = run({"areas", "out/town.dxf", "--csv"});
        EXPECT_EQ(outcome.code, 0) << outcome.err;
        return test::areaRows(outcome.out);
    }
    test::ScratchFolder folder;
};

TEST_F(TownRoad, SixtySixAreasAreTracedEightOfThemIslands)
{
    const std::string told = runScript("town.velmor");
    EXPECT_THAT(told, HasSubstr("70 sections, 71 nodes"));
    EXPECT_THAT(told, HasSubstr("66"));

    const auto rows = listAreas();
    ASSERT_THAT(rows, SizeIs(66));
    std::map<std::string, double> netOfMain; // by GUID, the islands taken off below
    std::map<std::string, std::string> sectionsOfMain;
    std::set<std::string> names, sections;
    for (auto row : rows) {
        names.insert(row["name"]);
        EXPECT_EQ(row["type"], "1");
        EXPECT_EQ(row["hidden"], "0");
        EXPECT_EQ(row["coefficient"], "0.6");
        EXPECT_GT(number(row["area_ha"]), 0.0) << row["name"];
        double whole = 0.0;
        for (const std::string &pair : split(row["sections"], ' ')) {
            const std::size_t colon = pair.rfind(':');
            whole += number(pair.substr(colon + 1));
            sections.insert(pair.substr(0, colon));
        }
        EXPECT_NEAR(whole, 1.0, 1e-12) << row["name"];
        if (row["island"] == "0") {
            EXPECT_EQ(row["main_area"], "");
            netOfMain[row["guid"]] = number(row["area_ha"]);
            sectionsOfMain[row["guid"]] = row["sections"];
            EXPECT_THAT(row["name"], EndsWith("_1"));
        }
    }
    EXPECT_THAT(names, SizeIs(66));
    EXPECT_THAT(netOfMain, SizeIs(58));
    // Two of the 70 sections lie in no closed region.
    EXPECT_THAT(sections, SizeIs(68));
    for (auto row : rows) {
        if (row["island"] == "0")
            continue;
        ASSERT_TRUE(netOfMain.contains(row["main_area"])) << row["name"];
        EXPECT_EQ(row["sections"], sectionsOfMain[row["main_area"]]) << row["name"];
        netOfMain[row["main_area"]] -= number(row["area_ha"]);
    }
    for (auto row : rows) {
        const bool island = row["island"] == "1";
        EXPECT_NEAR(number(row["net_area_ha"]), island ? number(row["area_ha"]) : netOfMain[row["guid"]], 1e-9)
            << row["name"];
    }
}

TEST_F(TownRoad, TheTableHasALineForEachAreaAndTheirSum)
{
    runScript("town.velmor");
    double gross = 0.0, net = 0.0;
    const auto rows = listAreas();
    for (auto row : rows) {
        gross += number(row["area_ha"]);
        net += number(row["net_area_ha"]);
    }
    const test::Outcome outcome = run({"areas", "out/town.dxf"});
    EXPECT_EQ(outcome.code, 0) << outcome.err;
    const std::vector<std::string> lines = split(outcome.out, '\n');
    ASSERT_THAT(lines, SizeIs(66 + 4)); // heading, two rules, the sum
    EXPECT_THAT(lines[0], StartsWith("Name "));
    std::size_t islands = 0;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        EXPECT_THAT(lines[i + 2], StartsWith(rows[i].at("name") + " "));
        islands += lines[i + 2].find(" island ") != std::string::npos;
    }
    EXPECT_EQ(islands, 8u);
    std::istringstream sum(lines.back());
    std::string word, many;
    double shownGross = -1.0, shownNet = -1.0;
    sum >> word >> many >> shownGross >> shownNet;
    EXPECT_EQ(many, "(66)");
    EXPECT_NEAR(shownNet, net, 0.00005001);
    EXPECT_NEAR(shownGross, gross, 0.00005001);
}

TEST_F(TownRoad, EveryAreaCarriesALabelWithItsName)
{
    runScript("town.velmor");
    const LoadResult loaded = Drawing::load(folder / "out/town.dxf");
    ASSERT_TRUE(loaded.drawing) << loaded.message;
    EXPECT_FALSE(loaded.report.damaged());
    std::multiset<std::string> texts;
    for (const AcDbEntity *entity : loaded.drawing->modelSpace().entities()) {
        if (entity->isA() != AcDbBlockReference::desc() || entity->isErased())
            continue;
        for (const AttributeEntity *attribute : attributesOf(*static_cast<const AcDbBlockReference *>(entity)))
            texts.insert(utf8(attribute->shape().text));
    }
    for (auto row : listAreas())
        EXPECT_EQ(texts.count(row["name"]), 1u) << row["name"];
}

TEST_F(TownRoad, ThePictureShowsTheHatchedAreas)
{
    runScript("import_town.velmor");
    ASSERT_EQ(run({"picture", "out/town.dxf", "-o", "out/before.png"}).code, 0);
    runScript("town.velmor");
    const test::Outcome outcome = run({"picture", "out/town.dxf", "-o", "out/town.png"});
    ASSERT_EQ(outcome.code, 0) << outcome.err;
    const QImage before((folder / "out/before.png").c_str()), after((folder / "out/town.png").c_str());
    ASSERT_FALSE(before.isNull());
    ASSERT_FALSE(after.isNull());
    ASSERT_EQ(before.size(), after.size());
    // Trees and outlines are green too, but few beside the hatches.
    EXPECT_GT(countGreen(after), 10 * countGreen(before)) << countGreen(after);
    EXPECT_GT(countGreen(after), after.width() * after.height() / 20);
    EXPECT_EQ(after.pixel(0, 0), 0xFFFFFFFFu) << "the ground";
}

TEST_F(TownRoad, TheDrawingIsSoundAndTheImportedOneStaysBesideIt)
{
    EXPECT_THAT(runScript("import_town.velmor"), HasSubstr("70 sections"));
    const std::string imported = test::readFile(folder / "out/town.dxf");
    EXPECT_THAT(run({"areas", "out/town.dxf", "--csv"}).out, testing::Not(HasSubstr("D3")));
    runScript("town.velmor");
    EXPECT_EQ(test::readFile(folder / "out/town.dxf.bak"), imported);
    const test::Outcome audit = run({"audit", "out/town.dxf"});
    EXPECT_EQ(audit.code, 0) << audit.err;
    EXPECT_THAT(audit.out, HasSubstr("The drawing is sound"));
    // The shipped files are only read.
    for (const char *name : {"town.inp", "town_plan.dxf", "town.velmor"}) {
        EXPECT_EQ(test::readFile(folder / (std::string("examples/") + name)),
                  test::readFile(fs::path(VELMOR_SOURCE_DIR) / "examples" / name));
    }
}

} // namespace
} // namespace velmor
