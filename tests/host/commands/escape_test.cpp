// Every command, left by Escape at each of its prompts, leaves the drawing as it was.
#include "host/editor/CommandTable.h"
#include "host/editor/Words.h"
#include "host/services/Text.h"
#include "tests/host/commands/CommandsFixture.h"

#include <climits>
#include <cwctype>
#include <set>

namespace velmor {
namespace {

struct Row {
    const wchar_t *name;
    std::vector<std::wstring> answers;
    int kept = INT_MAX; ///< from so many answers on, what was drawn stays
};

const std::vector<Row> kRows{
    {L"NEW", {L"Yes"}, 1},
    {L"OPEN", {L"/nowhere/at all.dxf"}},
    {L"SAVE", {L"/nowhere/at all.dxf"}},
    {L"SAVEAS", {L"/nowhere/at all.dxf"}},
    {L"IMPORT", {L"/nowhere/at all.inp"}},
    {L"EXPORTPDF", {L"/nowhere/at all.pdf", L"Window", L"0,0", L"10,10", L"A3", L"Portrait", L"1:500"}},
    {L"PLOT", {L"Window", L"0,0", L"10,10", L"A3", L"Portrait", L"1:500", L"no such printer"}},
    {L"QUIT", {L"No"}},
    {L"UNDO", {}, 0},
    {L"U", {}, 0},
    {L"REDO", {}, 0},
    {L"SELECT", {L"ALL", L"Remove", L"Window", L"0,0", L"1,1", L""}},
    {L"PURGE", {L"All"}, 1},
    {L"ZOOM", {L"Window", L"0,0", L"10,10"}},
    {L"PAN", {L"0,0", L"10,10"}},
    {L"LINE", {L"0,0", L"10,0", L"10,10"}, 2},
    {L"PLINE", {L"0,0", L"Arc", L"10,0", L"10,10"}, 3},
    {L"CIRCLE", {L"3P", L"0,0", L"10,0"}},
    {L"ARC", {L"Centre", L"0,0", L"10,0", L"Angle"}},
    {L"POINT", {}},
    {L"TEXT", {L"0,0", L"3", L"0", L"one"}, 4},
    {L"HATCH", {L"Pattern", L"ANSI31", L"Scale", L"2", L"Angle", L"30", L"Islands", L"No", L"5,5"}},
    {L"INSERT",
     {L"Box", L"0,0", L"2", L"30"},
     2}, // scale, rotation and attributes have a standard where nobody is asked
    {L"ERASE", {L"ALL", L"Previous"}},
    {L"MOVE", {L"ALL", L"", L"0,0"}},
    {L"COPY", {L"ALL", L"", L"0,0", L"5,5"}, 4},
    {L"LIST", {L"ALL"}},
    {L"DIST", {L"0,0"}},
    {L"AREA", {L"0,0", L"10,0", L"10,10", L"", L"Subtract", L"Object"}},
    {L"AUDIT", {}},
    {L"BOUNDARY", {}},
    {L"-BOUNDARY", {L"5,5", L"Advanced", L"Islands", L"No", L"", L""}},
    {L"LAYER", {L"COlour", L"30"}},
    {L"BOUNDARY-LAYERS", {L"0"}, 1}, // names may end with the first
    {L"SECTIONS", {L"0"}, 1},        // the layers of names need not be told
    {L"UNITS", {}},
    {L"LANGUAGE", {}},
    {L"THEME", {}},
    {L"SETVAR", {L"PICKRADIUS"}},
    {L"SETTINGS", {}},
    {L"HELP", {L"LINE"}},
    {L"ABOUT", {}},
};

class Escape : public test::CommandsFixture, public testing::WithParamInterface<Row> {
protected:
    Escape()
    {
        rectangle(0, 0, 10, 10);
        line(2, 2, 8, 8);
        BlockRecord &block = drawing().addBlock(L"Box");
        drawing().append(std::make_unique<AttributeDefinitionEntity>(L"NAME", L"Name", TextShape{}), block);
    }
};

TEST_P(Escape, AtEachPromptLeavesTheDrawingAsItWas)
{
    const Row &row = GetParam();
    for (std::size_t given = 0; given <= row.answers.size(); ++given) {
        if (static_cast<int>(given) >= row.kept)
            break;
        const std::string before = drawing().write();
        std::vector<Answer> answers;
        for (std::size_t i = 0; i < given; ++i)
            answers.push_back({row.answers[i]});
        answers.push_back({Answer::Escape{}});
        session.commands().start(row.name, answers);
        EXPECT_EQ(drawing().write(), before) << given << " answers";
        EXPECT_FALSE(session.commands().isRunning());
    }
}

/// Gives the answers of a row to whoever asks, and looks at the words of each prompt.
class Watcher final : public PromptSource {
public:
    explicit Watcher(const Row &row) : m_row(row) {}
    std::optional<Answer> ask(const Prompt &prompt) override
    {
        EXPECT_EQ(prompt.localKeywords.size(), prompt.keywords.size()) << utf8(prompt.text);
        for (std::size_t i = 0; i + prompt.silent < prompt.localKeywords.size(); ++i)
            EXPECT_NE(prompt.text.find(prompt.localKeywords[i]), std::wstring::npos) << utf8(prompt.text);
        for (std::size_t i = 0; i < prompt.localKeywords.size(); ++i) {
            const std::wstring &word = prompt.localKeywords[i];
            std::size_t length = word.size();
            while (length > 1 && !std::iswupper(word[length - 1]) && !std::iswdigit(word[length - 1]))
                --length;
            // Its capitals alone mean this word and no other.
            EXPECT_EQ(matchKeyword(prompt.localKeywords, word.substr(0, length)), &prompt.localKeywords[i])
                << utf8(word) << " in " << utf8(prompt.text);
        }
        if (m_next == m_row.answers.size())
            return std::nullopt;
        return Answer{m_row.answers[m_next++]};
    }

private:
    const Row &m_row;
    std::size_t m_next = 0;
};

/// Somebody stands there, so that all is asked that a person is asked.
class Somebody final : public SessionView {
public:
    void showDrawing(Drawing *) override {}
    void redraw() override {}
    void zoomTo(const Extents &) override {}
    void showAlert(const std::wstring &) override {}
    void showStatus(const std::wstring &) override {}
};

TEST_P(Escape, OptionsAreInTheUsersLanguageAndTheirCapitalsMeanThem)
{
    Somebody person;
    for (const char *language : {"hr", "en"}) {
        Services::instance().start({.language = language});
        Watcher watcher(GetParam());
        session.setPromptSource(&watcher);
        session.setView(&person);
        session.commands().start(L"_" + std::wstring(GetParam().name), {});
        session.setPromptSource(nullptr);
        session.setView(nullptr);
    }
}

INSTANTIATE_TEST_SUITE_P(Commands, Escape, testing::ValuesIn(kRows), [](const auto &row) {
    std::string name;
    for (const wchar_t *c = row.param.name; *c; ++c)
        name += *c == L'-' ? '_' : static_cast<char>(*c);
    return name;
});

TEST(EscapeTable, HoldsEveryCommandOfTheHost)
{
    std::set<std::wstring> rows, commands;
    for (const Row &row : kRows)
        rows.insert(row.name);
    for (const CommandRow &row : commandTable())
        if (!row.ofModule)
            commands.insert(row.wideName());
    std::vector<std::wstring> missing;
    std::ranges::set_difference(commands, rows, std::back_inserter(missing));
    for (const std::wstring &name : missing)
        ADD_FAILURE() << std::string(name.begin(), name.end());
}

} // namespace
} // namespace velmor
