// The example town with its areas defined, for roads that go on from there.
#pragma once

#include "tests/acceptance/AreaRows.h"
#include "tests/app/ProgramRun.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

namespace velmor::test {

/// The town is defined once for all roads of a program, with the script that is shipped; each road gets the drawing as
/// out/town.dxf in a folder of its own.
class DefinedTown : public testing::Test {
protected:
    static void SetUpTestSuite()
    {
        s_town.emplace();
        std::filesystem::copy(std::filesystem::path(VELMOR_SOURCE_DIR) / "examples", *s_town / "examples");
        std::filesystem::create_directory(*s_town / "out");
        ASSERT_EQ(runProgram({"run", "examples/town.velmor"}, s_town->path()).code, 0);
    }
    static void TearDownTestSuite() { s_town.reset(); }

    DefinedTown()
    {
        std::filesystem::create_directory(folder / "out");
        std::filesystem::copy_file(*s_town / "out/town.dxf", folder / "out/town.dxf");
    }
    /// Scripts of a folder beside the tests, as the folder scripts.
    void bring(const std::string &scripts)
    {
        std::filesystem::copy(std::filesystem::path(VELMOR_SOURCE_DIR) / "tests/acceptance" / scripts,
                              folder / "scripts");
    }
    Outcome run(std::vector<std::string> arguments)
    {
        arguments.insert(arguments.end(), {"--language", "en"});
        return runProgram(arguments, folder.path());
    }
    std::vector<AreaRow> areasOf(const std::string &drawing)
    {
        const Outcome outcome = run({"areas", drawing, "--csv"});
        EXPECT_EQ(outcome.code, 0) << outcome.err;
        return areaRows(outcome.out);
    }

    inline static std::optional<ScratchFolder> s_town;
    ScratchFolder folder;
};

} // namespace velmor::test
