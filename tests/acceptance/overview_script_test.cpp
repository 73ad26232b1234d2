// Roads of the overview as scripts: the example town is defined with the script that is shipped, a script of the folder
// overview works the dialog with its tree, and the saved drawing is read back.
#include "tests/acceptance/DefinedTown.h"

#include "host/drawing/Drawing.h"
#include "host/network/Network.h"
#include "host/services/Text.h"

#include <gmock/gmock.h>

namespace velmor {
namespace {

namespace fs = std::filesystem;

using testing::HasSubstr;

class OverviewScript : public test::DefinedTown {
protected:
    OverviewScript() { bring("overview"); }
    /// A script of this line, in the opened overview of the town.
    test::Outcome runLine(const std::string &line)
    {
        test::writeFile(folder / "line.velmor", "open out/town.dxf\nzemsewage_overview\n    " + line + "\n    close\n");
        return run({"run", "line.velmor"});
    }
};

TEST_F(OverviewScript, TheTreeIsLookedAtTickedAndRenamedAndUndoTakesItBack)
{
    const test::Outcome outcome = run({"run", "scripts/road.velmor"});
    ASSERT_EQ(outcome.code, 0) << outcome.err;
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(test::readFile(folder / "out/undone.dxf"), test::readFile(folder / "out/before.dxf"));

    const LoadResult loaded = Drawing::load(folder / "out/renamed.dxf");
    ASSERT_TRUE(loaded.drawing) << loaded.message;
    const auto &network = loaded.drawing->component<Network>();
    EXPECT_NE(network.nodeByName(L"School gate"), nullptr);
    EXPECT_EQ(network.nodeByName(L"R2"), nullptr);
    EXPECT_NE(network.nodeByName(L"R3"), nullptr);
    EXPECT_EQ(network.nodes().size(), 71u);
    EXPECT_EQ(areasOf("out/renamed.dxf"), areasOf("out/town.dxf"));
}

TEST_F(OverviewScript, AWrongLineSaysInOneLineWhatTheTreeDoesNotHave)
{
    const std::pair<const char *, const char *> lines[] = {
        {"item 101 R999", "control 101 has no item \"R999\""},
        {"item 101 \"Outfall R1\" D66", "control 101 has no item \"D66\""}, // it stands in a branch of its own
        {"tick 101 D2 maybe", "on"},
        {"expect-tick 101 D2 on", "control 101: \"D2\" is not checked"},
        {"edit 101 1 1 100", "nothing can be edited there in control 101"},
        {"edit 101 999 0 X", "control 101 has no such cell"},
        {"rows 101 999", "control 101 has no row 999"},
        {"expect-cell 101 1 0 D3", "control 101 shows \"D2\" there, not \"D3\""},
        {"expect-item 101 D3", "control 101 has the item \"\", not \"D3\""},
        {"choose 101 1", "control 101 is no combo box"},
    };
    for (const auto &[line, reason] : lines) {
        const test::Outcome outcome = runLine(line);
        EXPECT_NE(outcome.code, 0) << line;
        EXPECT_TRUE(test::isOneLine(outcome.err)) << outcome.err;
        EXPECT_THAT(outcome.err, HasSubstr("line.velmor:3: ")) << line;
        EXPECT_THAT(outcome.err, HasSubstr(reason)) << line;
    }
}

} // namespace
} // namespace velmor
