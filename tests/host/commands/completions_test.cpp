#include "host/editor/Completions.h"
#include "tests/host/commands/CommandsFixture.h"

#include <filesystem>
#include <fstream>

namespace velmor {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::Not;

class Completions : public test::CommandsFixture {};

TEST_F(Completions, CommandsComeByNameAliasAndGlobalName)
{
    EXPECT_THAT(completionsOf(session, nullptr, L"PLI"), ElementsAre(L"PLINE"));
    EXPECT_THAT(completionsOf(session, nullptr, L"z"), Contains(L"ZOOM"));
    EXPECT_THAT(completionsOf(session, nullptr, L"z"), Contains(L"ZO"));
    EXPECT_THAT(completionsOf(session, nullptr, L"_zoo"), ElementsAre(L"_ZOOM"));
    EXPECT_THAT(completionsOf(session, nullptr, L""), ElementsAre());
}

TEST_F(Completions, BehindTheMarkOnlyCommandsThatMayStartInsideOthers)
{
    EXPECT_THAT(completionsOf(session, nullptr, L"'ZOO"), ElementsAre(L"'ZOOM"));
    EXPECT_THAT(completionsOf(session, nullptr, L"'LINE"), ElementsAre());
}

TEST_F(Completions, APromptGivesItsWordsAndTheNamesItAsksFor)
{
    drawing().ensureLayer(L"Roads");
    drawing().addBlock(L"Box");
    Prompt prompt{.kind = PromptKind::Text, .keywords = {L"MAke", L"SEt"}, .completion = Completion::Layers};
    EXPECT_THAT(completionsOf(session, &prompt, L"ro"), ElementsAre(L"Roads"));
    EXPECT_THAT(completionsOf(session, &prompt, L"m"), ElementsAre(L"MAke"));
    prompt.completion = Completion::Blocks;
    EXPECT_THAT(completionsOf(session, &prompt, L"B"), ElementsAre(L"Box"));
    prompt.completion = Completion::Variables;
    EXPECT_THAT(completionsOf(session, &prompt, L"PICKR"), ElementsAre(L"PICKRADIUS"));
    prompt.completion = Completion::Patterns;
    EXPECT_THAT(completionsOf(session, &prompt, L"ANSI31"), ElementsAre(L"ANSI31"));
}

TEST_F(Completions, FilesComeWithTheirFoldersAndOnlyOfTheKind)
{
    const auto folder = std::filesystem::temp_directory_path() / "velmor_completion_test";
    std::filesystem::create_directories(folder / "sub");
    for (const char *file : {"town.dxf", "town.inp", "notes.txt"})
        std::ofstream(folder / file) << "x";
    const Prompt prompt{.kind = PromptKind::Text, .completion = Completion::Drawings};
    const std::wstring start = folder.wstring() + L"/";
    EXPECT_THAT(completionsOf(session, &prompt, start), ElementsAre(start + L"sub/", start + L"town.dxf"));
    EXPECT_THAT(completionsOf(session, &prompt, L"/no/such/folder/x"), ElementsAre());
    std::filesystem::remove_all(folder);
}

TEST_F(Completions, AWordInTheUsersLanguageMeansItsKeyword)
{
    const Prompt prompt{
        .kind = PromptKind::Point, .keywords = {L"Close", L"Undo"}, .localKeywords = {L"Zatvori", L"Natrag"}};
    EXPECT_EQ(globalAnswer(prompt, L"z"), L"_Close");
    EXPECT_EQ(globalAnswer(prompt, L"natrag"), L"_Undo");
    EXPECT_EQ(globalAnswer(prompt, L"_Undo"), L"_Undo");
    EXPECT_EQ(globalAnswer(prompt, L"3,4"), L"3,4");
}

} // namespace
} // namespace velmor
