// The diagnostic trace: its lines, its switch, its threshold and its sink.
#include "geometry/Trace.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <regex>
#include <sstream>
#include <stdexcept>

// This program's logging library.
static int g_logging = 0;
static std::string g_logPath;
static int g_switchAsked = 0;
static int g_pathAsked = 0;
int CLogEngine::GetLoggingOnOff()
{
    ++g_switchAsked;
    return g_logging;
}
std::string CLogEngine::GetLogFileFullPath()
{
    ++g_pathAsked;
    return g_logPath;
}

namespace {

/// Asked before any test runs, as a program finds it.
const int g_thresholdAtStart = TraceThreshold();

using testing::ElementsAre;
using testing::HasSubstr;
using testing::MatchesRegex;

class Trace : public testing::Test {
protected:
    void SetUp() override
    {
        g_logging = 1;
        g_logPath.clear();
        TraceThreshold(false, 3);
    }
    void TearDown() override { g_logging = 0; }

    TraceRecord At(int line, const char *function, int level = 3, const char *file = "Source.cpp")
    {
        return TraceRecord(file, line, function, level, false, &out);
    }
    /// What was written, without the time in front.
    std::string Behind() const
    {
        const std::string text = out.str();
        return text.size() > 10 ? text.substr(10) : text;
    }
    std::ostringstream out;
};

std::string ReadFile(const std::filesystem::path &path)
{
    std::ifstream stream(path);
    return {std::istreambuf_iterator<char>(stream), {}};
}

/// A folder of its own for a test, gone at the end.
class Folder {
public:
    Folder()
    {
        std::string name = (std::filesystem::temp_directory_path() / "velmor-trace-XXXXXX").string();
        if (!mkdtemp(name.data()))
            throw std::runtime_error("no temporary folder");
        m_path = name;
    }
    ~Folder() { std::filesystem::remove_all(m_path); }
    std::filesystem::path operator/(const char *name) const { return m_path / name; }

private:
    std::filesystem::path m_path;
};

} // namespace

TEST_F(Trace, ALineHasTimeFilePaddedLineFunctionAndText)
{
    TraceText(At(1205, "CDlg::OnOK", 3, "DlgCreateCatchmentArea"), "Marker");
    EXPECT_THAT(out.str(), MatchesRegex("\\[[0-9][0-9]:[0-9][0-9]:[0-9][0-9]\\] .*"));
    EXPECT_EQ(Behind(), " DlgCreateCatchmentArea          (01205): [CDlg::OnOK      ], Marker\n");
}

TEST_F(Trace, TheTimeIsLocalTime)
{
    const std::time_t before = std::time(nullptr);
    TraceText(At(1, "F"), "x");
    const std::time_t after = std::time(nullptr);
    std::vector<std::string> possible;
    for (std::time_t t = before; t <= after; ++t) {
        char text[16];
        std::strftime(text, sizeof text, "[%H:%M:%S]", std::localtime(&t));
        possible.emplace_back(text);
    }
    EXPECT_THAT(possible, testing::Contains(out.str().substr(0, 10)));
}

TEST_F(Trace, AnEnterAndAnExitLineNameTheFunctionAndTheSameLineNumber)
{
    {
        const CTraceFrame frame("DlgCreateCatchmentArea", 1205, "CDlgCreateCatchmentArea::OnBtnSaveMain", 3, false,
                                &out);
        EXPECT_EQ(Behind(), " DlgCreateCatchmentArea          (01205): [CDlgCreateCatchmentArea::OnBtnSaveMain], "
                            "Entering function , CDlgCreateCatchmentArea::OnBtnSaveMain\n");
        EXPECT_THAT(TraceCallStack(), ElementsAre("CDlgCreateCatchmentArea::OnBtnSaveMain"));
        out.str("");
    }
    EXPECT_EQ(Behind(), " DlgCreateCatchmentArea          (01205): [CDlgCreateCatchmentArea::OnBtnSaveMain], "
                        "Exiting function , CDlgCreateCatchmentArea::OnBtnSaveMain\n");
    EXPECT_TRUE(TraceCallStack().empty());
}

TEST_F(Trace, OnlyThePartBehindTheLastBackslashIsShown)
{
    TraceText(At(7, "F", 3, "C:\\src\\geometry\\Boundary.cpp"), "x");
    EXPECT_THAT(out.str(), HasSubstr("] Boundary.cpp                    (00007)"));
    out.str("");
    TraceText(At(7, "F", 3, "geometry/Boundary.cpp"), "x");
    EXPECT_THAT(out.str(), HasSubstr("] geometry/Boundary.cpp           (00007)"));
}

TEST_F(Trace, ALongFileNameAndALongFunctionArePushedAndNotCut)
{
    const std::string file(40, 'f'), function(50, 'g');
    TraceText(At(123456, function.c_str(), 3, file.c_str()), "x");
    EXPECT_EQ(Behind(), " " + file + "(123456): [" + function + "], x\n");
}

TEST_F(Trace, ThePrefixIsCutAtItsBuffer)
{
    const std::string file(2000, 'f');
    TraceText(At(1, "F", 3, file.c_str()), "x");
    EXPECT_EQ(out.str().size(), 998u + 2u);
}

TEST_F(Trace, FormatsAsPrintfAndCutsAtItsBuffer)
{
    TraceFormat(At(1, "F"), "Broj novih polylinija:%d", 3);
    EXPECT_THAT(out.str(), HasSubstr(", Broj novih polylinija:3\n"));
    out.str("");
    const std::string text(5000, 't');
    TraceFormat(At(1, "F"), "%s", text.c_str());
    EXPECT_EQ(Behind(), " Source.cpp                      (00001): [F               ], " + text.substr(0, 4095) + "\n");
}

TEST_F(Trace, AFailedVerificationIsWrittenAndTheConditionComesBack)
{
    EXPECT_FALSE(TraceVerify(At(1, "F"), false, "ptrCA.get()!=0"));
    EXPECT_THAT(out.str(), HasSubstr(", Failed verification:  'ptrCA.get()!=0'\n"));
    out.str("");
    EXPECT_TRUE(TraceVerify(At(1, "F"), true, "ptrCA.get()!=0"));
    EXPECT_EQ(out.str(), "");
}

TEST_F(Trace, TheThresholdStartsAtTheLevelOfTheSystemsOwnLines)
{
    EXPECT_EQ(g_thresholdAtStart, 3);
}

TEST_F(Trace, AboveTheThresholdNothingIsWritten)
{
    EXPECT_EQ(TraceThreshold(), 3);
    TraceText(At(1, "F", 4), "x");
    TraceFormat(At(1, "F", 4), "%d", 1);
    EXPECT_FALSE(TraceVerify(At(1, "F", 4), false, "x")) << "the condition comes back all the same";
    TraceRecord("Source.cpp", 1, "F", 4, true, &out);
    EXPECT_EQ(out.str(), "");
    EXPECT_EQ(TraceThreshold(false, 4), 4);
    EXPECT_EQ(TraceThreshold(), 4);
    TraceText(At(1, "F", 4), "x");
    EXPECT_NE(out.str(), "");
}

TEST_F(Trace, AFrameAboveTheThresholdStillStandsOnTheCallStack)
{
    const CTraceFrame frame("Source.cpp", 1, "Deep", 9, false, &out);
    EXPECT_THAT(TraceCallStack(), ElementsAre("Deep"));
    EXPECT_EQ(out.str(), "");
}

TEST_F(Trace, ThePrefixCanBeWrittenAtOnce)
{
    const TraceRecord record("Source.cpp", 12, "F", 3, true, &out);
    EXPECT_EQ(Behind(), " Source.cpp                      (00012): [F               ], ");
}

TEST_F(Trace, AnExceptionStillWritesTheExitLine)
{
    const auto leave = [this] {
        const CTraceFrame frame("Source.cpp", 1, "F", 3, false, &out);
        throw std::runtime_error("out");
    };
    EXPECT_THROW(leave(), std::runtime_error);
    EXPECT_THAT(out.str(), HasSubstr("Exiting function , F\n"));
    EXPECT_TRUE(TraceCallStack().empty());
}

TEST_F(Trace, FramesNest)
{
    const CTraceFrame outer("Source.cpp", 1, "Outer", 3, false, &out);
    {
        const CTraceFrame inner("Source.cpp", 2, "Inner", 3, false, &out);
        EXPECT_THAT(TraceCallStack(), ElementsAre("Outer", "Inner"));
    }
    EXPECT_THAT(TraceCallStack(), ElementsAre("Outer"));
}

TEST_F(Trace, ASwitchThatChangesInsideAFrameHarmsNothing)
{
    {
        const CTraceFrame frame("Source.cpp", 1, "LeftBehind", 3, false, &out);
        g_logging = 0;
    }
    EXPECT_THAT(TraceCallStack(), ElementsAre("LeftBehind"));
    EXPECT_THAT(out.str(), testing::Not(HasSubstr("Exiting")));
    {
        const CTraceFrame frame("Source.cpp", 1, "Unseen", 3, false, &out);
        g_logging = 1;
    }
    EXPECT_TRUE(TraceCallStack().empty()) << "the pop takes the entry that was left behind";
    {
        g_logging = 0;
        const CTraceFrame frame("Source.cpp", 1, "Unseen", 3, false, &out);
        g_logging = 1;
    }
    EXPECT_TRUE(TraceCallStack().empty()) << "an empty stack stays empty";
}

TEST_F(Trace, ARecordStartsWithAnEmptyContext)
{
    const TraceRecord record("Source.cpp", 1, "F");
    EXPECT_EQ(record.m_nLevel, 3);
    EXPECT_EQ(record.m_pStream, nullptr);
    for (const void *entry : record.m_context)
        EXPECT_EQ(entry, nullptr);
}

// The sink is set up once for a process, so each of these runs in one of its own.

using TraceDeathTest = Trace;

TEST_F(TraceDeathTest, WithTheSwitchOffAFrameAsksTheSwitchAndOpensNoFile)
{
    const Folder folder;
    const auto path = folder / "trace.log";
    EXPECT_EXIT(
        {
            g_logging = 0;
            g_logPath = path.string();
            g_switchAsked = 0;
            {
                const CTraceFrame frame("Source.cpp", 1, "F");
                if (g_switchAsked != 1)
                    std::_Exit(2);
            }
            std::_Exit(g_pathAsked == 0 ? 0 : 3);
        },
        testing::ExitedWithCode(0), "");
    EXPECT_FALSE(std::filesystem::exists(path));
}

TEST_F(TraceDeathTest, LinesAreAppendedToTheLogFileAndFlushedEach)
{
    const Folder folder;
    const auto path = folder / "trace.log";
    std::ofstream(path) << "before\n";
    EXPECT_EXIT(
        {
            g_logPath = path.string();
            TraceText(TraceRecord("Source.cpp", 1, "F"), "first");
            if (ReadFile(path).find("first\n") == std::string::npos)
                std::_Exit(2);
            std::ofstream(path, std::ios::app) << "another writer\n";
            TraceText(TraceRecord("Source.cpp", 2, "F"), "second");
            std::_Exit(g_pathAsked == 1 ? 0 : 3);
        },
        testing::ExitedWithCode(0), "");
    const std::string text = ReadFile(path);
    EXPECT_THAT(text, testing::StartsWith("before\n["));
    EXPECT_LT(text.find("first\n"), text.find("another writer\n"));
    EXPECT_LT(text.find("another writer\n"), text.find("second\n"));
}

TEST_F(TraceDeathTest, WithoutALogFileTheLinesGoToStandardOutput)
{
    const Folder folder;
    const auto missing = folder / "no/such/folder/trace.log";
    const auto output = folder / "stdout.txt";
    EXPECT_EXIT(
        {
            if (!std::freopen(output.c_str(), "w", stdout))
                std::_Exit(2);
            g_logPath = missing.string();
            {
                const CTraceFrame frame("Source.cpp", 1, "F");
            }
            std::_Exit(0);
        },
        testing::ExitedWithCode(0), "");
    EXPECT_THAT(ReadFile(output), HasSubstr("(00001): [F               ], Entering function , F\n"));
    EXPECT_THAT(ReadFile(output), HasSubstr("(00001): [F               ], Exiting function , F\n"));
}
