// The commands that bring a network into a drawing, as scripts run them.
#include "app/Script.h"
#include "host/network/Network.h"
#include "tests/host/editor/EditorFixture.h"
#include "tests/host/editor/QtFixture.h"
#include "tests/host/services/TestFolder.h"

#include <gmock/gmock.h>

#include <fstream>
#include <sstream>

namespace velmor {
namespace {

using testing::HasSubstr;
using testing::Not;

class NetworkCommandsTest : public test::EditorFixture {
protected:
    NetworkCommandsTest() { test::application(); }
    ScriptResult run(std::string_view text)
    {
        out.str({});
        err.str({});
        return Script(session, "s", text, out, err).run();
    }
    Network &network() { return drawing().component<Network>(); }
    void text(const wchar_t *words, double x, double y, const wchar_t *layer)
    {
        onLayer(drawing().append(std::make_unique<TextEntity>(TextShape{.position = {x, y}, .text = words})), layer);
    }
    std::string networkFile(std::string_view extra)
    {
        const auto file = folder.path() / "net.inp";
        std::ofstream(file) << "[JUNCTIONS]\nA 10\nB 9\n[CONDUITS]\nAB A B 100 0.01\n[COORDINATES]\nA 0 0\nB 100 0\n"
                            << extra;
        return file.string();
    }
    test::TestFolder folder;
    std::ostringstream out, err;
};

TEST_F(NetworkCommandsTest, LineworkOfLayersBecomesSections)
{
    onLayer(line(0, 0, 100, 0), L"Pipes");
    onLayer(line(100, 0, 200, 0), L"Old, pipes");
    onLayer(line(0, 50, 100, 50), L"Other");
    EXPECT_EQ(run("sections pipes\n").code, kDone);
    EXPECT_EQ(network().sections().size(), 1u);
    EXPECT_THAT(out.str(), HasSubstr("Made of the linework: 1 sections, 2 nodes."));
    EXPECT_EQ(run("sections \"Old, pipes\"\n").code, kDone);
    EXPECT_EQ(network().sections().size(), 2u);
    EXPECT_EQ(network().nodes().size(), 3u) << "the new section joins the old one's end";
}

TEST_F(NetworkCommandsTest, SeveralLayersStandWithCommasBetween)
{
    onLayer(line(0, 0, 100, 0), L"Pipes");
    onLayer(line(100, 0, 200, 0), L"Mains");
    EXPECT_EQ(run("sections Pipes,Mains\n").code, kDone);
    EXPECT_EQ(network().sections().size(), 2u);
}

TEST_F(NetworkCommandsTest, NodesAreNamedByTheTextsOfTheNamedLayersOnly)
{
    onLayer(line(0, 0, 100, 0), L"Pipes");
    text(L"MH1", 1, 1, L"Manholes");
    text(L"DN300", 0.5, 0, L"Remarks");
    text(L"MH2", 101, 1, L"More manholes");
    EXPECT_EQ(run("sections Pipes names \"Manholes,More manholes\"\n").code, kDone);
    EXPECT_TRUE(network().nodeByName(L"MH1"));
    EXPECT_TRUE(network().nodeByName(L"MH2"));
    EXPECT_FALSE(network().nodeByName(L"DN300"));
}

TEST_F(NetworkCommandsTest, WrongAnswersOfSectionsChangeNothing)
{
    onLayer(line(0, 0, 100, 0), L"Pipes");
    const auto revision = drawing().revision();
    for (const char *wrong : {"sections Nope\n", "sections Pipes,Nope\n", "sections Pipes names Nope\n",
                              "sections Pipes names\n", "sections Pipes texts Pipes\n", "sections 0\n", "sections\n"}) {
        const ScriptResult result = run(wrong);
        EXPECT_EQ(result.code, kBadInput) << wrong;
        EXPECT_THAT(result.message, HasSubstr("s:1: ")) << wrong;
    }
    EXPECT_EQ(drawing().revision(), revision);
    session.setDrawing(nullptr);
    EXPECT_NE(run("sections Pipes\n").code, kDone);
}

TEST_F(NetworkCommandsTest, ImportTellsWhatItLeftOutByLineAndCountsTheRest)
{
    std::string extra = "[CONDUITS]\n";
    for (int i = 0; i < 30; ++i)
        extra += "X" + std::to_string(i) + " A NOWHERE 1 0.01\n";
    const std::string file = networkFile(extra);
    EXPECT_EQ(run("import " + file + "\n").code, kDone);
    EXPECT_THAT(out.str(), HasSubstr(file + ":10: "));
    EXPECT_THAT(out.str(), HasSubstr(file + ": no flow units")) << "it is about the whole file";
    EXPECT_THAT(out.str(), HasSubstr(file + ": 11 more notes"));
    EXPECT_THAT(out.str(), Not(HasSubstr(":0:")));
    EXPECT_THAT(session.lastStatus(), HasSubstr(L"Imported: 1 sections"));
}

TEST_F(NetworkCommandsTest, WithoutADrawingAFailedImportMakesNone)
{
    session.setDrawing(nullptr);
    EXPECT_EQ(run("import /no/such/file.inp\n").code, kBadInput);
    EXPECT_EQ(session.drawing(), nullptr);
    EXPECT_EQ(run("import " + networkFile({}) + "\n").code, kDone);
    ASSERT_NE(session.drawing(), nullptr);
    EXPECT_EQ(network().sections().size(), 1u);
}

} // namespace
} // namespace velmor
