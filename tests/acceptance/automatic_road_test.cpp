// The automatic definition over real linework: sections are made of the storm sewers of a city's drawing, its parcels
// bound the areas, and the program tells which sections found no region and why.
#include "tests/app/ProgramRun.h"

#include "host/boundary/Regions.h"
#include "host/drawing/Drawing.h"
#include "host/editor/LineworkCache.h"
#include "host/network/Network.h"
#include "host/services/Text.h"
#include "host/sewage/AreaTable.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <fstream>
#include <map>

namespace velmor {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

constexpr char kFile[] = "dwg_nanaimo_sewers_R2000_cp1250.dxf";

fs::path dataFolder()
{
    if (const char *folder = std::getenv("VELMOR_DATA_DIR"))
        return folder;
    return fs::path(VELMOR_SOURCE_DIR) / ".." / "shared" / "data";
}

class RealLinework : public testing::Test {
protected:
    void SetUp() override
    {
        if (!fs::exists(dataFolder() / kFile))
            GTEST_SKIP() << "no such file: " << kFile << " (set VELMOR_DATA_DIR)";
        fs::copy_file(dataFolder() / kFile, folder / "city.dxf");
    }
    /// The road of a person, with or without islands; what the program said.
    test::Outcome road(bool islands)
    {
        std::ofstream(folder / "road.velmor") << "open city.dxf\n"
                                              << "SECTIONS \"Oborinska odvodnja – cijevi\"\n"
                                              << "BOUNDARY-LAYERS \"Katastarske čestice\"\n"
                                              << "zemsewage_create\n"
                                              << "    select all\n"
                                              << "    click 203\n"
                                              << "    choose 257 2\n"
                                              << "    check 268 " << (islands ? "on" : "off") << "\n"
                                              << "    check 274 off\n"
                                              << "    type 215 0.5\n"
                                              << "    click 290\n"
                                              << "    print 281\n"
                                              << "    close\n"
                                              << "save areas.dxf\n";
        return test::runProgram({"run", "road.velmor", "--language", "en"}, folder.path());
    }
    test::ScratchFolder folder;
};

/// With islands or without.
class RealLineworkForm : public RealLinework, public testing::WithParamInterface<bool> {};

TEST_P(RealLineworkForm, EverySectionEndsInAnAreaOrIsToldWithItsReason)
{
    const bool islands = GetParam();
    const test::Outcome outcome = road(islands);
    ASSERT_EQ(outcome.code, 0) << outcome.err;
    LoadResult loaded = Drawing::load(folder / "areas.dxf");
    ASSERT_TRUE(loaded.drawing) << loaded.message;
    setWorkingDrawing(loaded.drawing.get());
    Drawing &drawing = *loaded.drawing;
    const auto sections = drawing.component<Network>().sections();
    EXPECT_EQ(sections.size(), 331u);

    // The search itself, asked once more, knows how many sections have a region, and how many different ones.
    auto &linework = drawing.component<LineworkCache>().ofLayers({L"Katastarske čestice"});
    std::map<boundary::Status, std::size_t> found;
    std::map<std::pair<double, double>, std::size_t> regions;
    for (const auto &section : sections) {
        const AcGePoint3d a = section->GetStartPoint(), b = section->GetEndPoint();
        const boundary::Region region = linework.regionAt({(a.x + b.x) / 2.0, (a.y + b.y) / 2.0}, {.islands = islands});
        ++found[region.status];
        if (region)
            regions[{region.outer.front().x, boundary::signedArea(region.outer)}] = 1 + region.islands.size();
    }
    const auto areas = areaTable(drawing);
    std::size_t wanted = 0;
    for (const auto &[key, count] : regions)
        wanted += count;
    const std::size_t missed = sections.size() - found[boundary::Status::Found];
    std::cout << kFile << ": " << sections.size() << " sections, " << areas.size() << " areas, "
              << found[boundary::Status::Found] << " sections in " << regions.size()
              << " regions; without one: " << found[boundary::Status::Open] << " in open linework, "
              << found[boundary::Status::NotEnclosed] << " with nothing around, " << found[boundary::Status::OnEdge]
              << " on the linework" << std::endl;
    EXPECT_GT(areas.size(), 20u);
    EXPECT_EQ(areas.size(), wanted);
    EXPECT_THAT(outcome.out, HasSubstr("Areas defined automatically: " + std::to_string(areas.size())));
    EXPECT_THAT(outcome.out, HasSubstr("No closed region around " + std::to_string(missed) + " of 331 places"));
    // Each reason is told with its number, and one that does not occur is not told.
    for (const auto &[status, reason] : {std::pair(boundary::Status::Open, " in linework that is not closed ("),
                                         std::pair(boundary::Status::NotEnclosed, " with nothing around ("),
                                         std::pair(boundary::Status::OnEdge, " on the linework itself (")}) {
        if (found[status] > 0)
            EXPECT_THAT(outcome.out, HasSubstr(" " + std::to_string(found[status]) + reason));
        else
            EXPECT_THAT(outcome.out, testing::Not(HasSubstr(reason)));
    }

    for (const AreaRow &row : areas) {
        double whole = 0.0;
        for (const auto &section : row.sections)
            whole += section.share;
        EXPECT_NEAR(whole, 1.0, 1e-9) << utf8(row.name);
    }
    setWorkingDrawing(nullptr);
}

INSTANTIATE_TEST_SUITE_P(Forms, RealLineworkForm, testing::Bool(),
                         [](const auto &form) { return form.param ? "WithIslands" : "WithoutIslands"; });

TEST_F(RealLinework, ASecondRunOverTheSavedDrawingWritesNothing)
{
    ASSERT_EQ(road(false).code, 0);
    const auto count = [&] {
        const LoadResult loaded = Drawing::load(folder / "areas.dxf");
        EXPECT_TRUE(loaded.drawing) << loaded.message;
        return loaded.drawing ? areaTable(*loaded.drawing).size() : 0;
    };
    const std::size_t first = count();
    std::ofstream(folder / "again.velmor") << "open areas.dxf\n"
                                           << "zemsewage_create\n"
                                           << "    select all\n"
                                           << "    click 203\n"
                                           << "    choose 257 2\n"
                                           << "    type 215 0.5\n"
                                           << "    click 290\n"
                                           << "    print 281\n"
                                           << "    close\n"
                                           << "save areas.dxf\n";
    const test::Outcome again = test::runProgram({"run", "again.velmor", "--language", "en"}, folder.path());
    EXPECT_EQ(again.code, 0) << again.err;
    EXPECT_THAT(again.out, HasSubstr("Areas defined automatically: 0"));
    EXPECT_EQ(count(), first);
}

} // namespace
} // namespace velmor
