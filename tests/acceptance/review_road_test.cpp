// Roads of the review through the program: the example town's areas are defined with the script that is shipped, a
// script of the folder review works the review dialog, and the saved drawing is read back, by us and by others.
#include "tests/acceptance/DefinedTown.h"

#include "host/drawing/Drawing.h"
#include "host/drawing/Entities.h"
#include "host/services/Text.h"
#include "host/sewage/StoredArea.h"

#include <gmock/gmock.h>

#include <cstdio>
#include <map>
#include <optional>
#include <set>

namespace velmor {
namespace {

namespace fs = std::filesystem;

using test::AreaRow;
using test::number;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Pair;
using testing::SizeIs;

/// What a command prints; nothing when it fails.
std::optional<std::string> outputOf(const std::string &command)
{
    FILE *pipe = popen(command.c_str(), "r");
    if (!pipe)
        return std::nullopt;
    std::string text;
    char buffer[256];
    while (const std::size_t got = std::fread(buffer, 1, sizeof buffer, pipe))
        text.append(buffer, got);
    return pclose(pipe) == 0 ? std::optional(text) : std::nullopt;
}

/// Areas as the list of the program tells them, by name.
std::map<std::string, AreaRow> byName(const std::vector<AreaRow> &rows)
{
    std::map<std::string, AreaRow> found;
    for (const AreaRow &row : rows)
        EXPECT_TRUE(found.emplace(row.at("name"), row).second) << row.at("name");
    return found;
}

class ReviewRoad : public test::DefinedTown {
protected:
    ReviewRoad() { bring("review"); }
    void runScript(const std::string &name)
    {
        const test::Outcome outcome = run({"run", "scripts/" + name + ".velmor"});
        EXPECT_EQ(outcome.code, 0) << outcome.err;
        EXPECT_EQ(outcome.err, "");
    }
    std::vector<AreaRow> before() { return areasOf("out/town.dxf"); }
    std::vector<AreaRow> after() { return areasOf("out/reviewed.dxf"); }
    std::unique_ptr<Drawing> load(const std::string &drawing)
    {
        LoadResult loaded = Drawing::load(folder / drawing);
        EXPECT_TRUE(loaded.drawing) << loaded.message;
        EXPECT_FALSE(loaded.report.damaged());
        return std::move(loaded.drawing);
    }
    /// Entities of model space by class name.
    std::map<std::string, int> entitiesOf(const std::string &drawing)
    {
        std::map<std::string, int> counts;
        if (const auto loaded = load(drawing))
            for (const AcDbEntity *entity : loaded->modelSpace().entities())
                ++counts[utf8(entity->isA()->name())];
        return counts;
    }
    /// The drawing has that many areas and labels more (or fewer) than the defined town, and nothing else of the
    /// dialog; it is sound to us and to other programs.
    void expectNothingElse(int areas, int labels, const std::string &drawing = "out/reviewed.dxf")
    {
        auto expected = entitiesOf("out/town.dxf");
        expected["AcDbPolyline"] += areas;
        expected["AcDbBlockReference"] += labels;
        EXPECT_EQ(entitiesOf(drawing), expected);
        const test::Outcome audit = run({"audit", drawing});
        EXPECT_EQ(audit.code, 0) << audit.err;
        EXPECT_THAT(audit.out, HasSubstr("The drawing is sound"));
        expectOthersReadIt(drawing, expected);
    }
    void expectOthersReadIt(const std::string &drawing, const std::map<std::string, int> &entities)
    {
        int all = 0;
        for (const auto &[name, count] : entities)
            all += count;
        const std::string file = (folder / drawing).string();
        if (outputOf("/usr/bin/python3 -c 'import ezdxf' 2>/dev/null")) {
            const auto told = outputOf("/usr/bin/python3 " VELMOR_SOURCE_DIR "/tests/host/drawing/judge.py audit " +
                                       file + " 2>/dev/null");
            EXPECT_EQ(told.value_or("it can't be opened"), "0 " + std::to_string(all) + "\n") << "by ezdxf";
        } else {
            std::cout << "ezdxf is not installed: its audit is left out" << std::endl;
        }
        if (outputOf("ogrinfo --version 2>/dev/null")) {
            // The layer of an area's outline comes through, with as many closed rings as there are areas.
            const auto told = outputOf("ogrinfo -ro -al -q -where \"Layer='VELMOR_CATCHMENTS'\" " + file +
                                       " entities 2>/dev/null | awk '/^OGRFeature/{n++} END{print n+0}'");
            EXPECT_EQ(std::atoi(told.value_or("-1").c_str()), static_cast<int>(areasOf(drawing).size())) << "by GDAL";
        } else {
            std::cout << "GDAL is not installed: its reading is left out" << std::endl;
        }
    }
    /// All columns of the rows but those named.
    static std::vector<AreaRow> without(std::vector<AreaRow> rows, std::initializer_list<const char *> columns)
    {
        for (AreaRow &row : rows)
            for (const char *column : columns)
                row.erase(column);
        return rows;
    }
    /// Texts of the labels by the GUID of their area.
    std::map<std::string, std::vector<std::string>> labelsOf(const std::string &drawing)
    {
        std::map<std::string, std::vector<std::string>> labels;
        const auto loaded = load(drawing);
        if (!loaded)
            return labels;
        for (AcDbEntity *label : loaded->entitiesWithData(kLabelDataKey)) {
            const auto items = loaded->data(*label, kLabelDataKey);
            const std::string guid = utf8(std::get<std::wstring>(items->front().value));
            EXPECT_FALSE(labels.contains(guid)) << "two labels";
            for (const AttributeEntity *attribute : attributesOf(static_cast<AcDbBlockReference &>(*label)))
                labels[guid].push_back(utf8(attribute->shape().text));
        }
        return labels;
    }
};

TEST_F(ReviewRoad, TheFilterShowsWhatHasTheTypeAndChecksAreCountedTogether)
{
    runScript("filter_and_check");
    auto expected = before();
    expected[1]["type"] = "6";
    EXPECT_EQ(after(), expected);
    expectNothingElse(0, 0);
}

TEST_F(ReviewRoad, ACoefficientGoesToAllCheckedAreas)
{
    runScript("coefficients");
    auto expected = before();
    for (std::size_t i = 0; i < 3; ++i)
        expected[i]["coefficient"] = "0.35";
    EXPECT_EQ(after(), expected);
    expectNothingElse(0, 0);
}

TEST_F(ReviewRoad, SharesWithADecimalCommaAreTakenAndWrongOnesAreNot)
{
    runScript("shares");
    auto rows = byName(after()), old = byName(before());
    EXPECT_THAT(test::sharesOf(rows.at("D7_1")), ElementsAre(Pair("D44", test::sharesOf(old.at("D7_1")).at("D44")),
                                                             Pair("D7", 0.125), Pair("D8", 0.4025)));
    EXPECT_EQ(without(after(), {"sections"}), without(before(), {"sections"}));
    EXPECT_EQ(rows.at("D7_1_1").at("sections"), old.at("D7_1_1").at("sections"));
    expectNothingElse(0, 0);
}

TEST_F(ReviewRoad, AreasAreNamedByTheNodesOfTheirSections)
{
    // The nodes of each section, from the network's file.
    std::map<std::string, std::vector<std::string>> nodes;
    std::istringstream network(test::readFile(*s_town / "examples/town.inp"));
    bool isConduit = false;
    for (std::string line; std::getline(network, line);) {
        if (line.starts_with("["))
            isConduit = line.starts_with("[CONDUITS]");
        std::istringstream words(line);
        std::string name, from, to;
        if (isConduit && words >> name >> from >> to && !name.starts_with(";"))
            nodes[name] = {from, to};
    }
    auto expected = before();
    for (AreaRow &row : expected) {
        std::map<int, std::string> byNumber;
        for (const auto &[section, share] : test::sharesOf(row))
            for (const std::string &node : nodes.at(section))
                byNumber[std::stoi(node.substr(1))] = node;
        row["name"] = byNumber.begin()->second;
    }
    runScript("rename");
    EXPECT_EQ(after(), expected);
    expectNothingElse(0, 0);
}

class LabelRoad : public ReviewRoad, public testing::WithParamInterface<int> {};

TEST_P(LabelRoad, EveryAreaHasOneOfTheTypeButThoseThatLostIt)
{
    runScript("labels_" + std::to_string(GetParam()));
    EXPECT_EQ(after(), before());
    const auto labels = labelsOf("out/reviewed.dxf");
    EXPECT_THAT(labels, SizeIs(64));
    const auto fixed = [](const std::string &text, int decimals) {
        char buffer[40];
        std::snprintf(buffer, sizeof buffer, "%.*f", decimals, number(text));
        return std::string(buffer);
    };
    for (const AreaRow &row : after()) {
        if (row.at("name") == "D3_1" || row.at("name") == "D4_1") {
            EXPECT_FALSE(labels.contains(row.at("guid")));
            continue;
        }
        std::vector<std::string> lines{row.at("name")};
        if (GetParam() > 0) {
            lines.push_back("A = " + fixed(row.at("net_area_ha"), 4) + " ha");
            lines.push_back("C = " + fixed(row.at("coefficient"), 2));
        }
        if (GetParam() > 1) {
            lines.emplace_back(); // no density without houses
            lines.push_back("J = " + fixed(row.at("slope"), 2));
        }
        ASSERT_TRUE(labels.contains(row.at("guid"))) << row.at("name");
        EXPECT_EQ(labels.at(row.at("guid")), lines);
    }
    expectNothingElse(0, -2);
}

INSTANTIATE_TEST_SUITE_P(Types, LabelRoad, testing::Range(0, 3));

TEST_F(ReviewRoad, AnotherPatternIsKeptForTheNextTimeAndLeavesNoHatch)
{
    runScript("hatch");
    EXPECT_EQ(after(), before());
    expectNothingElse(0, 0);
}

TEST_F(ReviewRoad, OneInFocusSeveralCheckedAndOneByTheKeyAreErasedWithTheirLabels)
{
    runScript("erase");
    auto expected = before();
    std::erase_if(expected, [](const AreaRow &row) {
        return std::set<std::string>{"D4_1", "D5_1", "D6_1", "D9_1", "D10_1"}.contains(row.at("name"));
    });
    EXPECT_EQ(after(), expected);
    EXPECT_THAT(labelsOf("out/reviewed.dxf"), SizeIs(61));
    expectNothingElse(-5, -5);
}

TEST_F(ReviewRoad, EscapeKeepsWhatWasWrittenAndForgetsWhatWasSet)
{
    runScript("escape");
    auto expected = before();
    expected[1]["coefficient"] = "0.2";
    EXPECT_EQ(after(), expected);
    expectNothingElse(0, 0);
}

TEST_F(ReviewRoad, PicksInTheDrawingCheckAreasAndTakeThemOutAgain)
{
    runScript("pick");
    auto expected = before();
    for (AreaRow &row : expected)
        if (row["name"] == "D12_1" || row["name"] == "D5_1")
            row["coefficient"] = "0.15";
    EXPECT_EQ(after(), expected);
    expectNothingElse(0, 0);
}

TEST_F(ReviewRoad, EverythingIsTakenBackAndDoneAgain)
{
    runScript("undone");
    EXPECT_EQ(test::readFile(folder / "out/undone.dxf"), test::readFile(folder / "out/before.dxf"));
    EXPECT_THAT(after(), SizeIs(0));
    expectNothingElse(-66, -66);
}

// --- Real size ----------------------------------------------------------------------------------------------------

TEST(RealReview, AWholeCitysAreasAreDefinedReviewedAndReopened)
{
    const char *data = std::getenv("VELMOR_DATA_DIR");
    const fs::path network =
        (data ? fs::path(data) : fs::path(VELMOR_SOURCE_DIR) / ".." / "shared" / "data") / "net_ajax_1984_conduits.inp";
    if (!fs::exists(network))
        GTEST_SKIP() << "no such file: " << network.filename().string() << " (set VELMOR_DATA_DIR)";
    const test::ScratchFolder folder;
    const auto run = [&](std::vector<std::string> arguments) {
        arguments.insert(arguments.end(), {"--language", "en"});
        const test::Outcome outcome = test::runProgram(arguments, folder.path());
        EXPECT_EQ(outcome.code, 0) << outcome.err;
        return outcome.out;
    };
    run({"import", network.string(), "-o", "imported.dxf", "--with-polygons"});
    test::writeFile(folder / "define.velmor", "open imported.dxf\n"
                                              "boundary-layers SUBCATCHMENT_POLYGONS\n"
                                              "select all\n"
                                              "zemsewage_create\n"
                                              "    click 203\n"
                                              "    choose 257 2\n"
                                              "    type 215 0.5\n"
                                              "    check 274 off\n"
                                              "    click 290\n"
                                              "    close\n"
                                              "save defined.dxf\n");
    run({"run", "define.velmor"});
    const auto before = test::areaRows(run({"areas", "defined.dxf", "--csv"}));
    ASSERT_GT(before.size(), 1000u);
    const std::string many = std::to_string(before.size());
    test::writeFile(folder / "review.velmor", "open defined.dxf\n"
                                              "zemsewage_edit\n"
                                              "    expect 123 " +
                                                  many +
                                                  "\n"
                                                  "    expect-rows 107 " +
                                                  many +
                                                  "\n"
                                                  "    click 124\n"
                                                  "    expect 126 \"Parameters of the checked areas: " +
                                                  many +
                                                  "\"\n"
                                                  "    type 110 0.45\n"
                                                  "    choose 135 1\n"
                                                  "    click 127\n"
                                                  "    click 260\n"
                                                  "    click 124\n"
                                                  "    click 252\n"
                                                  "    click 1\n"
                                                  "save reviewed.dxf\n");
    run({"run", "review.velmor"});
    test::writeFile(folder / "again.velmor", "open reviewed.dxf\n"
                                             "zemsewage_edit\n"
                                             "    expect-rows 107 " +
                                                 many +
                                                 "\n"
                                                 "    expect 110 0.45\n"
                                                 "    expect 135 \"Name, area, coefficient\"\n"
                                                 "    close\n");
    run({"run", "again.velmor"});
    EXPECT_THAT(run({"audit", "reviewed.dxf"}), HasSubstr("The drawing is sound"));

    const auto rows = test::areaRows(run({"areas", "reviewed.dxf", "--csv"}));
    ASSERT_EQ(rows.size(), before.size());
    std::map<std::string, std::string> names; // by GUID
    std::size_t renamed = 0;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        EXPECT_EQ(rows[i].at("coefficient"), "0.45");
        for (const char *column : {"guid", "area_ha", "type", "sections", "centre_x"})
            EXPECT_EQ(rows[i].at(column), before[i].at(column));
        renamed += rows[i].at("name") != before[i].at("name");
        names[rows[i].at("guid")] = rows[i].at("name");
    }
    EXPECT_GT(renamed, rows.size() / 2);
    const LoadResult loaded = Drawing::load(folder / "reviewed.dxf");
    ASSERT_TRUE(loaded.drawing) << loaded.message;
    std::size_t labels = 0;
    for (AcDbEntity *label : loaded.drawing->entitiesWithData(kLabelDataKey)) {
        const auto items = loaded.drawing->data(*label, kLabelDataKey);
        const auto texts = attributesOf(static_cast<AcDbBlockReference &>(*label));
        ASSERT_THAT(texts, SizeIs(3));
        EXPECT_EQ(utf8(texts[0]->shape().text), names.at(utf8(std::get<std::wstring>(items->front().value))));
        EXPECT_EQ(texts[2]->shape().text, L"C = 0.45");
        ++labels;
    }
    EXPECT_EQ(labels, rows.size());
    std::cout << network.filename().string() << ": " << rows.size() << " areas, " << renamed
              << " of them with another name after renaming, " << labels << " labels" << std::endl;
}

} // namespace
} // namespace velmor
