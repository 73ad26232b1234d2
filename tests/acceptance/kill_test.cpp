// A save that is killed at any moment leaves a readable drawing, the old or the new one.
#include "host/drawing/Drawing.h"
#include "tests/app/ProgramRun.h"

#include <csignal>
#include <random>
#include <set>

namespace velmor {
namespace {

using test::ScratchFolder;
using test::writeFile;

constexpr int kKills = 200;
/// More saves than any machine makes before the kill, so that each run is met at work.
constexpr int kSaves = 2000;

/// A drawing large enough that a save takes its time.
void makeDrawing(const std::filesystem::path &file)
{
    const auto drawing = Drawing::createNew();
    for (int i = 0; i < 4000; ++i)
        drawing->append(std::make_unique<AcDbLine>(AcGePoint3d(i, 0), AcGePoint3d(i, 1)));
    ASSERT_TRUE(drawing->save(file));
}

TEST(KilledSave, AlwaysLeavesAReadableDrawing)
{
    const ScratchFolder folder;
    std::mt19937 random(20240229);
    std::uniform_int_distribution<int> delay(0, 250000);
    // Each save has one more layer: versions are told apart by the number of layers.
    std::string script = "open town.dxf\n";
    for (int i = 0; i < kSaves; ++i)
        script += "layer Round" + std::to_string(i) + "\nsave\n";
    writeFile(folder / "save.velmor", script);
    std::set<std::size_t> versions;
    for (int round = 0; round < kKills; ++round) {
        ASSERT_NO_FATAL_FAILURE(makeDrawing(folder / "town.dxf"));
        const pid_t child = test::startProgram({"run", "save.velmor"}, folder.path(), folder / "out", folder / "err");
        usleep(static_cast<useconds_t>(delay(random)));
        kill(child, SIGKILL);
        int status = 0;
        waitpid(child, &status, 0);
        ASSERT_TRUE(WIFSIGNALED(status)) << "round " << round << ": the program ended before it was killed";

        const LoadResult loaded = Drawing::load(folder / "town.dxf");
        ASSERT_TRUE(loaded.drawing) << "round " << round << ": " << loaded.message;
        ASSERT_FALSE(loaded.report.damaged()) << "round " << round;
        ASSERT_EQ(loaded.drawing->modelSpace().entities().size(), 4000u) << "round " << round;
        versions.insert(loaded.drawing->layers().size());
    }
    EXPECT_GE(versions.size(), 5u) << "too few saves were met";
}

} // namespace
} // namespace velmor
