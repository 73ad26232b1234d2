// The table of commands and the stack say the same, and every row can be used.
#include "host/editor/CommandTable.h"
#include "host/editor/Words.h"
#include "host/services/Text.h"
#include "tests/host/commands/CommandsFixture.h"

#include <cctype>
#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <sstream>
#include <utility>

namespace velmor {
namespace {

class Table : public test::CommandsFixture, public testing::WithParamInterface<const char *> {
protected:
    Table() { Services::instance().start({.language = GetParam()}); }
    ~Table() override { Services::instance().start({.language = "en"}); }
};

std::string name(const CommandRow &row)
{
    return row.name;
}

TEST_P(Table, HoldsEveryCommandOfTheStackAndTheStackEveryRow)
{
    for (const CommandEntry &entry : session.commands().entries())
        EXPECT_TRUE(commandRow(entry.globalName)) << utf8(entry.globalName);
    for (const CommandRow &row : commandTable())
        EXPECT_TRUE(row.ofModule || session.commands().find(L"_" + row.wideName())) << name(row);
}

TEST_P(Table, TheModulesCommandsAreInItByTheNamesThatTheModulesRegister)
{
    std::set<std::string> found;
    for (const CommandRow &row : commandTable())
        if (row.ofModule)
            found.insert(row.name);
    EXPECT_EQ(found, (std::set<std::string>{"zemsewage_create", "zemsewage_edit", "zemsewage_overview"}));
}

TEST_P(Table, EveryWordMeansOneCommand)
{
    std::map<std::wstring, std::string> owners;
    const auto add = [&](std::wstring word, const CommandRow &row) {
        std::ranges::transform(word, word.begin(), [](wchar_t c) { return static_cast<wchar_t>(std::towupper(c)); });
        EXPECT_FALSE(word.empty()) << name(row);
        EXPECT_EQ(word.find(L' '), std::wstring::npos) << utf8(word);
        const auto [known, isNew] = owners.emplace(word, row.name);
        EXPECT_TRUE(isNew || known->second == row.name)
            << utf8(word) << " is shared by " << known->second << " and " << row.name;
    };
    for (const CommandRow &row : commandTable()) {
        add(row.wideName(), row);
        add(row.localName(), row);
        for (const std::wstring &alias : row.aliasList())
            add(alias, row);
    }
}

TEST_P(Table, EveryRowHasTextsAndAnAliasOfTwoLetters)
{
    for (const CommandRow &row : commandTable()) {
        EXPECT_FALSE(row.help().empty() || row.help().starts_with(L'[')) << name(row);
        EXPECT_FALSE(row.localName().starts_with(L'[')) << name(row);
        EXPECT_FALSE(row.options().starts_with(L"[ui.")) << name(row);
        EXPECT_FALSE(row.aliasList().empty()) << name(row);
        for (const MenuItem &item : row.items)
            EXPECT_FALSE(uiText(item.text).starts_with(L"[ui.")) << name(row);
    }
}

TEST_P(Table, EveryAliasAndNameRunsItsCommand)
{
    for (const CommandRow &row : commandTable()) {
        if (row.ofModule)
            continue;
        std::vector<std::wstring> words = row.aliasList();
        words.push_back(row.localName());
        words.push_back(L"_" + row.wideName());
        words.push_back(row.wideName());
        for (const std::wstring &word : words) {
            const CommandEntry *entry = session.commands().find(word);
            ASSERT_TRUE(entry) << utf8(word);
            EXPECT_EQ(utf8(entry->globalName), row.name) << utf8(word);
        }
    }
}

TEST_P(Table, EveryMenuItemHasAKeyOfItsOwn)
{
    std::map<QString, std::string> owners;
    for (const CommandRow &row : commandTable()) {
        for (const MenuItem &item : row.items) {
            ASSERT_TRUE(item.key) << name(row);
            for (const QString &text : QString::fromUtf8(item.key).split(QLatin1Char('|'))) {
                const QKeySequence key(text);
                EXPECT_FALSE(key.isEmpty()) << item.key;
                EXPECT_TRUE(owners.emplace(key.toString(), row.name).second) << item.key << " twice";
            }
        }
    }
}

TEST_P(Table, EveryIconIsShipped)
{
    for (const CommandRow &row : commandTable())
        for (const MenuItem &item : row.items)
            EXPECT_TRUE(!item.icon ||
                        !Services::instance().paths().resource(std::string("icons/") + item.icon + ".svg").empty())
                << item.icon;
}

TEST(Guide, TellsOfEveryCommandAndOfNoOther)
{
    const char *source = std::getenv("VELMOR_SOURCE_DIR");
    std::ifstream in(std::filesystem::path(source ? source : ".") / "docs/user-guide.md");
    const std::string guide((std::istreambuf_iterator<char>(in)), {});
    ASSERT_FALSE(guide.empty());
    const auto words = [](const std::string &text) {
        std::set<std::string> found;
        std::string word;
        for (const char c : text + ' ')
            if (std::isalnum(static_cast<unsigned char>(c)) || c == '-' || c == '_')
                word += c;
            else if (!word.empty())
                found.insert(std::exchange(word, {}));
        return found;
    };
    const std::set<std::string> all = words(guide);
    for (const CommandRow &row : commandTable())
        EXPECT_TRUE(all.contains(name(row))) << name(row);
    // The table of commands: what stands in its second column are names.
    const std::size_t from = guide.find("| to | commands |"), to = guide.find("\n\n", from);
    ASSERT_NE(from, std::string::npos);
    std::istringstream rows(guide.substr(from, to - from));
    std::string line;
    std::getline(rows, line);
    for (std::getline(rows, line); std::getline(rows, line);)
        for (const std::string &word : words(line.substr(line.find('|', 1))))
            EXPECT_TRUE(commandRow(std::wstring(word.begin(), word.end()))) << word;
}

INSTANTIATE_TEST_SUITE_P(Languages, Table, testing::Values("en", "hr"));

} // namespace
} // namespace velmor
