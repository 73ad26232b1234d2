// The program from outside: what it answers, what it prints, and what it leaves alone when its input is bad.
#include "host/drawing/Drawing.h"
#include "tests/app/ProgramRun.h"

#include <gmock/gmock.h>

#include <sys/mount.h>

namespace velmor {
namespace {

using test::isOneLine;
using test::Outcome;
using test::readFile;
using test::ScratchFolder;
using test::writeFile;
using testing::HasSubstr;
namespace fs = std::filesystem;

constexpr char kNetwork[] = R"([OPTIONS]
FLOW_UNITS CMS
[JUNCTIONS]
A 10
B 9
[OUTFALLS]
C 8 FREE
[CONDUITS]
AB A B 100 0.01
BC B C 100 0.01
[COORDINATES]
A 0 0
B 100 0
C 200 0
[Polygons]
S1 0 -50
S1 100 -50
S1 100 50
S1 0 50
)";

class ProgramTest : public testing::Test {
protected:
    Outcome run(const std::vector<std::string> &arguments) { return test::runProgram(arguments, folder.path()); }
    std::string file(const std::string &name) const { return (folder / name).string(); }
    /// A drawing with a square of 100 and a square of 20 in it, saved.
    void makeTown(const std::string &name)
    {
        const auto drawing = Drawing::createNew();
        const auto square = [&](double from, double to, const wchar_t *layer) {
            AcDbObjectId id = drawing->append(std::make_unique<AcDbPolyline>(
                std::vector<AcDbPolyline::Vertex>{{from, from, 0}, {to, from, 0}, {to, to, 0}, {from, to, 0}}, true));
            AcDbEntity *entity = nullptr;
            ASSERT_EQ(acdbOpenAcDbEntity(entity, id, AcDb::kForRead), Acad::eOk);
            entity->close();
            drawing->setLayerOf(*entity, drawing->ensureLayer(layer));
        };
        square(0, 100, L"Parcels");
        square(40, 60, L"Houses");
        ASSERT_TRUE(drawing->save(folder / name));
    }
    /// Bad input: exit code 2 and one line that names the file.
    void expectBadInput(const Outcome &outcome, const std::string &name)
    {
        EXPECT_EQ(outcome.code, 2) << outcome.err;
        EXPECT_TRUE(isOneLine(outcome.err)) << outcome.err;
        EXPECT_THAT(outcome.err, HasSubstr(name));
    }
    ScratchFolder folder;
};

// --- Use

TEST_F(ProgramTest, HelpAndVersionStandEverywhere)
{
    for (const char *command : {"", "run", "import", "areas", "boundary", "picture", "audit"}) {
        for (const char *option : {"--help", "--version"}) {
            std::vector<std::string> arguments{option};
            if (*command)
                arguments.insert(arguments.begin(), command);
            const Outcome outcome = run(arguments);
            EXPECT_EQ(outcome.code, 0) << command << option;
            EXPECT_FALSE(outcome.out.empty()) << command << option;
            EXPECT_EQ(outcome.err, "") << command << option;
        }
    }
}

TEST_F(ProgramTest, WrongUseIsOneLineAndExitCodeOne)
{
    makeTown("town.dxf");
    for (const std::vector<std::string> &arguments : std::vector<std::vector<std::string>>{
             {"run"},
             {"import", "x.inp"},
             {"areas"},
             {"areas", "town.dxf", "--json", "--csv"},
             {"boundary", "town.dxf"},
             {"boundary", "town.dxf", "--point", "1"},
             {"boundary", "town.dxf", "--point", "a,b"},
             {"picture", "town.dxf"},
             {"picture", "town.dxf", "-o", "x.png", "--size", "big"},
             {"audit", "town.dxf", "more"},
             {"--nosuch"},
             {"areas", "town.dxf", "--language", "xx"},
         }) {
        const Outcome outcome = run(arguments);
        EXPECT_EQ(outcome.code, 1) << arguments.front() << ": " << outcome.err;
        EXPECT_TRUE(isOneLine(outcome.err)) << outcome.err;
    }
}

TEST_F(ProgramTest, WithoutADisplayTheWindowSaysSo)
{
    unsetenv("QT_QPA_PLATFORM");
    const Outcome outcome = run({});
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    EXPECT_EQ(outcome.code, 3);
    EXPECT_THAT(outcome.err, HasSubstr("no display"));
}

TEST_F(ProgramTest, AFileThatCannotBeOpenedStartsNoWindow)
{
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    writeFile(folder / "text.dxf", "This is a letter.\n");
    writeFile(folder / "empty.inp", "");
    for (const char *name : {"nofile.dxf", "nofile.inp", "text.dxf", "empty.inp"})
        expectBadInput(run({name}), name);
}

// --- Import

TEST_F(ProgramTest, ANoteAboutTheWholeNetworkFileNamesNoLine)
{
    const std::string network = kNetwork;
    writeFile(folder / "net.inp", network.substr(network.find("[JUNCTIONS]")));
    const Outcome outcome = run({"import", "net.inp", "-o", "net.dxf"});
    EXPECT_EQ(outcome.code, 0);
    EXPECT_THAT(outcome.err, HasSubstr("net.inp: no flow units"));
    EXPECT_THAT(outcome.err, testing::Not(HasSubstr(":0:")));
}

TEST_F(ProgramTest, ImportMakesADrawingThatHoldsTheNetwork)
{
    writeFile(folder / "net.inp", kNetwork);
    const Outcome outcome = run({"import", "net.inp", "-o", "net.dxf", "--with-polygons"});
    EXPECT_EQ(outcome.code, 0) << outcome.err;
    EXPECT_THAT(outcome.out, HasSubstr("2 sections, 3 nodes, 1 polygons"));
    EXPECT_EQ(run({"audit", "net.dxf"}).code, 0);
}

TEST_F(ProgramTest, ImportOverAnOlderDrawingKeepsItAsBackup)
{
    writeFile(folder / "net.inp", kNetwork);
    makeTown("net.dxf");
    const std::string before = readFile(folder / "net.dxf");
    EXPECT_EQ(run({"import", "net.inp", "-o", "net.dxf"}).code, 0);
    EXPECT_EQ(readFile(folder / "net.dxf.bak"), before);
    EXPECT_NE(readFile(folder / "net.dxf"), before);
}

TEST_F(ProgramTest, ABadNetworkMakesNothing)
{
    writeFile(folder / "nocoordinates.inp", "[JUNCTIONS]\nA 1\nB 2\n[CONDUITS]\nC A B 10 0.01\n");
    writeFile(folder / "empty.inp", "");
    writeFile(folder / "binary.inp", std::string("\x7F\x45LF\0\0\1\2\3", 9) + std::string(2000, '\xFE'));
    fs::create_directory(folder / "folder.inp");
    for (const char *name : {"missing.inp", "folder.inp", "empty.inp", "binary.inp", "nocoordinates.inp"}) {
        expectBadInput(run({"import", name, "-o", "out.dxf"}), name);
        EXPECT_FALSE(fs::exists(folder / "out.dxf")) << name;
    }
}

// --- Drawings that can't be read

class BadDrawingTest : public ProgramTest, public testing::WithParamInterface<const char *> {};

TEST_P(BadDrawingTest, IsToldInOneLineWithExitCodeTwo)
{
    const std::vector<std::string> before{GetParam()};
    writeFile(folder / "empty.dxf", "");
    std::string noise(5000, '\0');
    for (std::size_t i = 0; i < noise.size(); ++i)
        noise[i] = static_cast<char>(i * 131 + (i >> 5) * 77);
    writeFile(folder / "binary.dxf", noise);
    writeFile(folder / "text.dxf", "This is a letter.\nIt is no drawing.\n");
    fs::create_directory(folder / "folder.dxf");
    for (const char *name : {"missing.dxf", "folder.dxf", "empty.dxf", "binary.dxf", "text.dxf"}) {
        std::vector<std::string> arguments{GetParam(), name};
        if (arguments[0] == "boundary")
            arguments.insert(arguments.end(), {"--point", "1,1"});
        if (arguments[0] == "picture")
            arguments.insert(arguments.end(), {"-o", "out.png"});
        const Outcome outcome = run(arguments);
        expectBadInput(outcome, name);
        EXPECT_EQ(outcome.out, "") << name;
        EXPECT_FALSE(fs::exists(folder / "out.png"));
    }
}

TEST_P(BadDrawingTest, ATruncatedDrawingIsReadAsFarAsItGoesAndToldByLineAndExitCode)
{
    makeTown("whole.dxf");
    const std::string whole = readFile(folder / "whole.dxf");
    const std::string cut = whole.substr(0, whole.find("LWPOLYLINE", whole.find("ENTITIES")) + 300);
    writeFile(folder / "cut.dxf", cut);
    std::vector<std::string> arguments{GetParam(), "cut.dxf"};
    if (arguments[0] == "boundary")
        arguments.insert(arguments.end(), {"--point", "1,1"});
    if (arguments[0] == "picture")
        arguments.insert(arguments.end(), {"-o", "out.png"});
    const Outcome outcome = run(arguments);
    EXPECT_EQ(outcome.code, 2) << outcome.err;
    EXPECT_THAT(outcome.err + outcome.out, HasSubstr("damage"));
    EXPECT_EQ(readFile(folder / "cut.dxf"), cut);
}

INSTANTIATE_TEST_SUITE_P(Commands, BadDrawingTest, testing::Values("areas", "boundary", "audit", "picture"));

// --- Regions

TEST_F(ProgramTest, BoundaryTellsRegionsAsJson)
{
    makeTown("town.dxf");
    const Outcome outcome =
        run({"boundary", "town.dxf", "--point", "10,10", "--point", "500,500", "--point=-1,-1", "--islands", "--json"});
    EXPECT_EQ(outcome.code, 0) << outcome.err;
    EXPECT_THAT(outcome.out, HasSubstr("\"point\": [10, 10], \"found\": true, \"area\": 10000"));
    EXPECT_THAT(outcome.out, HasSubstr("\"islands\": [{\"area\": 400"));
    EXPECT_THAT(outcome.out, HasSubstr("\"point\": [500, 500], \"found\": false, \"reason\": \"not_enclosed\""));
    EXPECT_THAT(outcome.out, HasSubstr("\"point\": [-1, -1]"));
}

TEST_F(ProgramTest, APointLeftOfTheOriginMayStandAsAWordOfItsOwn)
{
    makeTown("town.dxf");
    const Outcome outcome = run({"boundary", "town.dxf", "--point", "-1,-1", "--json"});
    EXPECT_EQ(outcome.code, 0) << outcome.err;
    EXPECT_THAT(outcome.out, HasSubstr("\"point\": [-1, -1]"));
}

TEST_F(ProgramTest, AuditTellsAFindingThatHasNoLineByItsTextAlone)
{
    // So many wrong numbers that the list of findings is cut, which is told without a place.
    std::string text = "0\nSECTION\n2\nENTITIES\n";
    for (int i = 0; i < 1500; ++i)
        text += "0\nLINE\n8\n0\n10\nwrong\n20\n0\n11\n1\n21\n1\n";
    writeFile(folder / "many.dxf", text + "0\nENDSEC\n0\nEOF\n");
    const Outcome outcome = run({"audit", "many.dxf"});
    EXPECT_EQ(outcome.code, 2) << outcome.err;
    EXPECT_THAT(outcome.out, HasSubstr("\n  damage: there is more; only the first thousand findings are listed\n"));
}

TEST_F(ProgramTest, ErrorsAndFindingsAreToldInTheLanguageThatIsAskedFor)
{
    makeTown("town.dxf");
    writeFile(folder / "net.inp", std::string(kNetwork) + "[VERTICES]\nnowhere 1 1\n");
    const auto told = [&](std::vector<std::string> arguments, const char *language) {
        arguments.insert(arguments.begin() + 1, {"--language", language});
        return run(arguments).err;
    };
    const std::vector<std::string> wrongPoint = {"boundary", "town.dxf", "--point", "here"};
    EXPECT_THAT(told(wrongPoint, "en"), HasSubstr("--point takes two numbers"));
    EXPECT_THAT(told(wrongPoint, "hr"), HasSubstr("--point prima dva broja"));
    const std::vector<std::string> wrongUse = {"areas"};
    EXPECT_THAT(told(wrongUse, "en"), HasSubstr("tells more"));
    EXPECT_THAT(told(wrongUse, "hr"), HasSubstr("kriva uporaba"));
    const std::vector<std::string> import = {"import", "net.inp", "-o", "net.dxf"};
    EXPECT_THAT(told(import, "en"), HasSubstr("a bend of nowhere, which is no conduit"));
    EXPECT_THAT(told(import, "hr"), HasSubstr("lom za nowhere, a to nije vod"));
}

TEST_F(ProgramTest, LayersTakesOneWordAndLeavesTheDrawingToTheRest)
{
    makeTown("town.dxf");
    const Outcome outcome = run({"boundary", "--layers", "Parcels,Houses", "town.dxf", "--point", "50,50", "--json"});
    EXPECT_EQ(outcome.code, 0) << outcome.err;
    EXPECT_THAT(outcome.out, HasSubstr("\"found\": true, \"area\": 400"));
}

TEST_F(ProgramTest, ACommandThatFailsByAnAlertSaysItInOneLine)
{
    makeTown("town.dxf");
    for (const char *line : {"open missing.dxf", "setvar NOSUCH 1", "save /no/such/folder/x.dxf", "layer a<b|c"}) {
        writeFile(folder / "wrong.velmor", std::string("open town.dxf\n") + line + "\n");
        const Outcome outcome = run({"run", "wrong.velmor"});
        EXPECT_NE(outcome.code, 0) << line;
        const std::string place = "wrong.velmor:2: ";
        const std::size_t at = outcome.err.find(place);
        ASSERT_NE(at, std::string::npos) << line << ": " << outcome.err;
        const std::string message = outcome.err.substr(at + place.size());
        EXPECT_EQ(outcome.err.find(message), at + place.size()) << outcome.err; // not by itself before
    }
}

TEST_F(ProgramTest, ALayerIsMadeOnlyUnderANameThatEveryProgramTakes)
{
    makeTown("town.dxf");
    for (const std::string name : {"a<b", "a|c", "a/b", "a:b", "\"a,b\"", "\"a\tb\"", "a*", "a=b"}) {
        writeFile(folder / "layer.velmor", "open town.dxf\nlayer " + name + "\nsave out.dxf\n");
        const Outcome outcome = run({"run", "layer.velmor"});
        EXPECT_EQ(outcome.code, 2) << name;
        EXPECT_FALSE(fs::exists(folder / "out.dxf")) << name;
    }
    writeFile(folder / "layer.velmor", "open town.dxf\nlayer \"\u0160ahte i cijevi-2_$\"\nsave out.dxf\n");
    const Outcome outcome = run({"run", "layer.velmor"});
    EXPECT_EQ(outcome.code, 0) << outcome.err;
    EXPECT_THAT(readFile(folder / "out.dxf"), HasSubstr("\u0160ahte i cijevi-2_$"));
}

TEST_F(ProgramTest, AuditNamesWhatIsNoEntityToo)
{
    writeFile(folder / "own.dxf", "0\nSECTION\n2\nMYSTUFF\n0\nTHING\n0\nENDSEC\n0\nSECTION\n2\nENTITIES\n"
                                  "0\nENDSEC\n0\nEOF\n");
    Outcome outcome = run({"audit", "own.dxf"});
    EXPECT_EQ(outcome.code, 0) << outcome.err;
    EXPECT_THAT(outcome.out, testing::ContainsRegex("Kept unread:\n  section MYSTUFF +1\n"));
    makeTown("town.dxf");
    outcome = run({"audit", "town.dxf"});
    EXPECT_THAT(outcome.out, testing::ContainsRegex("\n  layers +3\n"));
    EXPECT_THAT(outcome.out, testing::ContainsRegex("\n  record LTYPE +[0-9]+\n"));
}

TEST_F(ProgramTest, BoundaryTakesPointsFromAFileAndLayersByName)
{
    makeTown("town.dxf");
    writeFile(folder / "points.txt", "# x y\n50, 50\n\n10 10\n");
    Outcome outcome = run({"boundary", "town.dxf", "--points", "points.txt", "--layers", "Parcels", "--json"});
    EXPECT_EQ(outcome.code, 0) << outcome.err;
    EXPECT_THAT(outcome.out, HasSubstr("\"point\": [50, 50], \"found\": true, \"area\": 10000"));
    outcome = run({"boundary", "town.dxf", "--points", "points.txt", "--layers", "parcels,Houses", "--json"});
    EXPECT_THAT(outcome.out, HasSubstr("\"point\": [50, 50], \"found\": true, \"area\": 400"));
    outcome =
        run({"boundary", "town.dxf", "--points", "points.txt", "--layers", "Parcels", "--layers", "Houses", "--json"});
    EXPECT_THAT(outcome.out, HasSubstr("\"point\": [50, 50], \"found\": true, \"area\": 400"));
    expectBadInput(run({"boundary", "town.dxf", "--point", "1,1", "--layers", "Streets"}), "Streets");
    writeFile(folder / "wrong.txt", "1,1\n2;\n");
    expectBadInput(run({"boundary", "town.dxf", "--points", "wrong.txt"}), "wrong.txt:2");
    expectBadInput(run({"boundary", "town.dxf", "--points", "nofile.txt"}), "nofile.txt");
}

TEST_F(ProgramTest, AreasOfADrawingWithoutAreasAreAnEmptyList)
{
    makeTown("town.dxf");
    const Outcome outcome = run({"areas", "town.dxf", "--json"});
    EXPECT_EQ(outcome.code, 0) << outcome.err;
    std::string text = outcome.out;
    std::erase_if(text, [](char c) { return std::isspace(static_cast<unsigned char>(c)) != 0; });
    EXPECT_EQ(text, "[]");
}

// --- Targets that can't be written

TEST_F(ProgramTest, ATargetThatCannotBeWrittenFailsInOneLine)
{
    makeTown("town.dxf");
    writeFile(folder / "net.inp", kNetwork);
    fs::create_directory(folder / "folder.dxf");
    writeFile(folder / "save.velmor", "open town.dxf\nlayer New\nsave folder.dxf\n");
    for (const std::vector<std::string> &arguments : std::vector<std::vector<std::string>>{
             {"import", "net.inp", "-o", "folder.dxf"},
             {"import", "net.inp", "-o", "no/such/folder/net.dxf"},
             {"run", "save.velmor"},
         }) {
        const Outcome outcome = run(arguments);
        EXPECT_EQ(outcome.code, 3) << outcome.err;
        EXPECT_THAT(outcome.err, HasSubstr("can"));
    }
    EXPECT_TRUE(fs::is_directory(folder / "folder.dxf"));
}

/// A small file system of its own; not everybody may mount one.
class SmallDisk {
public:
    SmallDisk(const fs::path &where, const char *options) : m_where(where)
    {
        fs::create_directory(where);
        m_mounted = mount("none", where.c_str(), "tmpfs", 0, options) == 0;
    }
    ~SmallDisk()
    {
        if (m_mounted)
            umount2(m_where.c_str(), MNT_DETACH);
    }
    bool mounted() const { return m_mounted; }
    bool makeReadOnly() const { return mount("none", m_where.c_str(), "tmpfs", MS_REMOUNT | MS_RDONLY, nullptr) == 0; }

private:
    fs::path m_where;
    bool m_mounted = false;
};

TEST_F(ProgramTest, AFullDiskLeavesTheOldDrawingAsItWas)
{
    const SmallDisk disk(folder / "disk", "size=128k");
    if (!disk.mounted())
        GTEST_SKIP() << "mounting a small file system is not permitted here";
    writeFile(folder / "net.inp", kNetwork);
    makeTown("disk/town.dxf");
    fs::remove(folder / "disk/town.dxf.bak");
    const std::string before = readFile(folder / "disk/town.dxf");
    writeFile(folder / "disk/filler", "");
    std::ofstream filler(folder / "disk/filler", std::ios::binary);
    for (int i = 0; i < 64 && filler; ++i)
        filler << std::string(4096, 'x') << std::flush; // till nothing goes in
    filler.close();
    const Outcome outcome = run({"import", "net.inp", "-o", "disk/town.dxf"});
    EXPECT_EQ(outcome.code, 3) << outcome.err;
    EXPECT_TRUE(isOneLine(outcome.err)) << outcome.err;
    EXPECT_EQ(readFile(folder / "disk/town.dxf"), before);
    writeFile(folder / "save.velmor", "open disk/town.dxf\nlayer New\nsave\n");
    const Outcome script = run({"run", "save.velmor"});
    EXPECT_EQ(script.code, 3) << script.err;
    EXPECT_THAT(script.err, HasSubstr("save.velmor:3: "));
    EXPECT_EQ(readFile(folder / "disk/town.dxf"), before);
}

TEST_F(ProgramTest, APictureMayHaveANameThatIsNotUtf8)
{
    makeTown("town.dxf");
    const Outcome outcome = run({"picture", "town.dxf", "-o", "t\xFFown.png", "--size", "64x64"});
    EXPECT_EQ(outcome.code, 0) << outcome.err;
    EXPECT_THAT(readFile(folder / "t\xFFown.png"), testing::StartsWith("\x89PNG"));
    std::size_t pictures = 0;
    for (const auto &entry : fs::directory_iterator(folder.path()))
        pictures += entry.path().extension() == ".png";
    EXPECT_EQ(pictures, 1u) << "under this name and no other";
}

TEST_F(ProgramTest, AFullDiskIsToldByThePictureTooAndLeavesTheOldPicture)
{
    const SmallDisk disk(folder / "disk", "size=64k");
    if (!disk.mounted())
        GTEST_SKIP() << "mounting a small file system is not permitted here";
    makeTown("town.dxf");
    ASSERT_EQ(run({"picture", "town.dxf", "-o", "disk/town.png", "--size", "64x64"}).code, 0);
    const std::string before = readFile(folder / "disk/town.png");
    std::ofstream filler(folder / "disk/filler", std::ios::binary);
    for (int i = 0; i < 64 && filler; ++i)
        filler << std::string(4096, 'x') << std::flush;
    filler.close();
    const Outcome outcome = run({"picture", "town.dxf", "-o", "disk/town.png", "--size", "400x300"});
    EXPECT_EQ(outcome.code, 3) << outcome.err;
    EXPECT_TRUE(isOneLine(outcome.err)) << outcome.err;
    EXPECT_THAT(outcome.err, AllOf(HasSubstr("town.png"), HasSubstr("disk is full")));
    EXPECT_EQ(readFile(folder / "disk/town.png"), before);
}

TEST_F(ProgramTest, AReadOnlyTargetLeavesTheOldDrawingAsItWas)
{
    const SmallDisk disk(folder / "disk", "size=4m");
    if (!disk.mounted())
        GTEST_SKIP() << "mounting a small file system is not permitted here";
    writeFile(folder / "net.inp", kNetwork);
    makeTown("disk/town.dxf");
    const std::string before = readFile(folder / "disk/town.dxf");
    ASSERT_TRUE(disk.makeReadOnly());
    const Outcome outcome = run({"import", "net.inp", "-o", "disk/town.dxf"});
    EXPECT_EQ(outcome.code, 3) << outcome.err;
    EXPECT_TRUE(isOneLine(outcome.err)) << outcome.err;
    EXPECT_EQ(readFile(folder / "disk/town.dxf"), before);
}

TEST_F(ProgramTest, ResultsThatCannotBeWrittenAreAFailure)
{
    if (!fs::exists("/dev/full"))
        GTEST_SKIP() << "there is no /dev/full here";
    makeTown("town.dxf");
    const ScratchFolder output;
    const pid_t child = test::startProgram({"areas", "town.dxf"}, folder.path(), "/dev/full", output / "err");
    int status = 0;
    waitpid(child, &status, 0);
    EXPECT_EQ(WEXITSTATUS(status), 3);
}

// --- Scripts

TEST_F(ProgramTest, AWrongLineStopsTheScriptAndLeavesTheFileAlone)
{
    makeTown("town.dxf");
    const std::string before = readFile(folder / "town.dxf");
    writeFile(folder / "wrong.velmor", "open town.dxf\n\n# a comment\nlayer Streets\nfrobnicate 3\nsave\n");
    const Outcome outcome = run({"run", "wrong.velmor"});
    EXPECT_EQ(outcome.code, 2);
    EXPECT_THAT(outcome.err, HasSubstr("wrong.velmor:5: unknown command \"frobnicate\""));
    EXPECT_EQ(readFile(folder / "town.dxf"), before);
}

TEST_F(ProgramTest, AScriptThatCannotBeReadIsBadInput)
{
    fs::create_directory(folder / "folder.velmor");
    expectBadInput(run({"run", "missing.velmor"}), "missing.velmor");
    expectBadInput(run({"run", "folder.velmor"}), "folder.velmor");
    writeFile(folder / "open.velmor", "open missing.dxf\n");
    const Outcome outcome = run({"run", "open.velmor"});
    EXPECT_EQ(outcome.code, 2);
    EXPECT_THAT(outcome.err, HasSubstr("open.velmor:1: "));
    EXPECT_THAT(outcome.err, HasSubstr("missing.dxf"));
}

TEST_F(ProgramTest, ADamagedDrawingIsNotOverwrittenUnlessTheScriptSaysSo)
{
    makeTown("whole.dxf");
    const std::string whole = readFile(folder / "whole.dxf");
    const std::string cut = whole.substr(0, whole.find("LWPOLYLINE", whole.find("ENTITIES")) + 300);
    writeFile(folder / "cut.dxf", cut);
    writeFile(folder / "save.velmor", "open cut.dxf\nlayer New\nsave\n");
    const Outcome refused = run({"run", "save.velmor"});
    EXPECT_EQ(refused.code, 3) << refused.err;
    EXPECT_EQ(readFile(folder / "cut.dxf"), cut);
    writeFile(folder / "force.velmor", "open cut.dxf\nlayer New\nsave cut.dxf overwrite-damaged\n");
    EXPECT_EQ(run({"run", "force.velmor"}).code, 0);
    EXPECT_EQ(readFile(folder / "cut.dxf.bak"), cut);
}

TEST_F(ProgramTest, AScriptDrawsABoundaryAndSavesIt)
{
    makeTown("town.dxf");
    writeFile(folder / "draw.velmor", "open town.dxf\nlayer Found\nboundary 10,10\nsave found.dxf\n");
    const Outcome outcome = run({"run", "draw.velmor"});
    EXPECT_EQ(outcome.code, 0) << outcome.err;
    const LoadResult found = Drawing::load(folder / "found.dxf");
    ASSERT_TRUE(found.drawing);
    std::size_t made = 0;
    for (const AcDbEntity *entity : found.drawing->modelSpace().entities())
        made += entity->layer() == L"Found" ? 1 : 0;
    EXPECT_EQ(made, 2u);
}

} // namespace
} // namespace velmor
