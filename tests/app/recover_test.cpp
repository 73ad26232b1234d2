// The program's own way to what a crash left: run --autosave, recover.
#include "tests/app/ProgramRun.h"

#include <gmock/gmock.h>

#include <csignal>

namespace velmor::test {
namespace {

using testing::HasSubstr;

class Recover : public testing::Test {
protected:
    Recover() { setenv("VELMOR_STATE_DIR", (m_folder / "state").c_str(), 1); }
    ~Recover() override { unsetenv("VELMOR_STATE_DIR"); }
    Outcome run(std::vector<std::string> arguments) { return runProgram(arguments, m_folder.path()); }

    /// Starts a script that never ends and kills it once its journal has grown.
    void leaveADrawing()
    {
        std::string script = "new\n";
        for (int i = 0; i < 3000000; ++i)
            script += "layer L\nundo\n";
        writeFile(m_folder / "endless.velmor", script);
        const pid_t child =
            startProgram({"run", "--autosave", "endless.velmor"}, m_folder.path(), m_folder / "out", m_folder / "err");
        for (std::uintmax_t size = 0; size < 1000;) {
            ASSERT_EQ(waitpid(child, nullptr, WNOHANG), 0) << "the script ended";
            std::error_code error;
            for (fs::directory_iterator entry(m_folder / "state", error), end; !error && entry != end;
                 entry.increment(error)) {
                std::error_code missing;
                const auto now = fs::file_size(entry->path() / "steps", missing);
                size = missing ? size : now;
            }
            usleep(1000);
        }
        kill(child, SIGKILL);
        waitpid(child, nullptr, 0);
    }
    ScratchFolder m_folder;
};

TEST_F(Recover, WithoutACrashThereIsNothing)
{
    const Outcome listed = run({"--language", "en", "recover"});
    EXPECT_EQ(listed.code, 0);
    EXPECT_THAT(listed.out, HasSubstr("nothing"));
    EXPECT_NE(run({"recover", "1", "-o", "x.dxf"}).code, 0);
}

TEST_F(Recover, WhatAKilledScriptLeftIsListedWrittenAndDropped)
{
    ASSERT_NO_FATAL_FAILURE(leaveADrawing());
    const Outcome listed = run({"--language", "en", "recover"});
    EXPECT_EQ(listed.code, 0);
    EXPECT_THAT(listed.out, HasSubstr("1  "));
    EXPECT_THAT(listed.out, HasSubstr("steps: "));
    EXPECT_NE(run({"recover", "1"}).code, 0) << "it has to be said what for";
    EXPECT_NE(run({"recover", "2", "--drop"}).code, 0);

    const Outcome written = run({"recover", "1", "-o", "saved.dxf"});
    EXPECT_EQ(written.code, 0) << written.err;
    EXPECT_EQ(run({"audit", "saved.dxf"}).code, 0);
    EXPECT_THAT(run({"--language", "en", "recover"}).out, HasSubstr("1  ")) << "writing it does not forget it";

    EXPECT_EQ(run({"recover", "1", "--drop"}).code, 0);
    EXPECT_THAT(run({"--language", "en", "recover"}).out, HasSubstr("nothing"));
}

TEST_F(Recover, AScriptThatEndsLeavesNothing)
{
    writeFile(m_folder / "short.velmor", "new\nlayer A\n");
    EXPECT_EQ(run({"run", "--autosave", "short.velmor"}).code, 0);
    EXPECT_TRUE(fs::is_empty(m_folder / "state"));
}

} // namespace
} // namespace velmor::test
