// Texts that a user reads stand in resources/messages, in both languages, and nowhere else.
#include "tests/house/IncludeRules.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <map>
#include <regex>
#include <set>
#include <sstream>

namespace {

using testing::IsEmpty;

/// A literal of a source with what stands in front of it on the way back to the call that takes it.
struct Literal {
    std::string text;
    std::string before; ///< up to 60 characters of code
    std::size_t line = 0;
};

/// Literals of C++ code, comments and include lines left out.
std::vector<Literal> literalsOf(const std::string &code)
{
    std::vector<Literal> found;
    std::string before;
    std::size_t line = 1;
    for (std::size_t i = 0; i < code.size(); ++i) {
        const char c = code[i];
        if (c == '\n')
            ++line;
        if (c == '/' && i + 1 < code.size() && code[i + 1] == '/') {
            i = code.find('\n', i) - 1;
            continue;
        }
        if (c == '/' && i + 1 < code.size() && code[i + 1] == '*') {
            const auto end = std::min(code.find("*/", i + 2), code.size());
            line += static_cast<std::size_t>(
                std::count(code.begin() + static_cast<long>(i), code.begin() + static_cast<long>(end), '\n'));
            i = end + 1;
            continue;
        }
        if (c == '#' && code.compare(i, 8, "#include") == 0) {
            i = code.find('\n', i) - 1;
            continue;
        }
        if (c == '\'' && (before.empty() || !std::isdigit(static_cast<unsigned char>(before.back())))) {
            for (++i; i < code.size() && code[i] != '\''; ++i)
                i += code[i] == '\\';
            before += "''";
            continue;
        }
        if (c != '"') {
            if (!std::isspace(static_cast<unsigned char>(c)))
                before += c;
            continue;
        }
        Literal literal{.text = {}, .before = before.substr(before.size() > 60 ? before.size() - 60 : 0), .line = line};
        if (before.ends_with("R")) {
            const auto open = code.find('(', i);
            const std::string end = ")" + code.substr(i + 1, open - i - 1) + "\"";
            const auto close = code.find(end, open);
            literal.text = code.substr(open + 1, close - open - 1);
            i = close + end.size() - 1;
        } else {
            for (++i; i < code.size() && code[i] != '"'; ++i) {
                if (code[i] == '\\')
                    literal.text += code[i++];
                literal.text += code[i];
            }
        }
        found.push_back(literal);
        before += "\"\"";
    }
    return found;
}

/// Words as a person writes them: two in a row in small letters.
bool isProse(const std::string &text)
{
    static const std::regex words("(^|[^A-Za-z_.%-])[A-Za-z]?[a-z]{2,}[,;:]? [a-z]{2,}($|[^A-Za-z_.-])");
    static const std::regex three("(^|[ \"])[a-z]+ [a-z]+ [a-z]+($|[ ,;.])");
    return std::regex_search(text, words) || std::regex_search(text, three);
}

/// Rules of a style sheet.
bool isStyle(const std::string &text)
{
    static const std::regex rule("palette\\(|[{] ?[a-z-]+:");
    return std::regex_search(text, rule);
}

/// True for the argument of a call that shows it to a person.
bool isShown(const std::string &before)
{
    static const std::regex call(
        "(setText|setTitle|setWindowTitle|setToolTip|setStatusTip|setWhatsThis|setPlaceholderText|addAction|addMenu|"
        "setAccessibleName|setAccessibleDescription|setLabelText|showMessage|alert|alertFailure|status|acedAlert|say|"
        "notice|complain|fail|setPrompt|setInformativeText)\\((QStringLiteral\\(|QString::fromLatin1\\(|"
        "QString::fromUtf8\\(|QLatin1String\\(|tr\\()?L?$");
    static const std::regex tr("\\btr\\($");
    return std::regex_search(before, call) || std::regex_search(before, tr);
}

bool isName(const std::string &text)
{
    static const std::regex name("Velmor|[a-z]+(\\.[A-Za-z0-9]+)+");
    return std::regex_match(text, name);
}

/// What is allowed to stand in the code: by file, the literal's beginning, and why.
struct Exception {
    const char *file, *begins, *why;
};
constexpr Exception kExceptions[] = {
    {"host/services/Messages.cpp", "the message file is missing", "there is no text to take it from"},
    {"host/services/Messages.cpp", "folder that holds it", "the same"},
    {"host/editor/Session.cpp", "a second session", "a mistake of the program, followed by its end"},
    {"host/editor/Session.cpp", "no session is running", "the same"},
    {"host/drawing/dxf/ReadingEnd.cpp", "header variables", "a key of the report, worded where it is shown"},
    {"host/drawing/dxf/ReadingEnd.cpp", "named dictionaries", "the same"},
    {"host/drawing/dxf/ReadingEnd.cpp", "data records", "the same"},
    {"host/drawing/dxf/Skeleton.cpp", "0 SECTION", "an empty drawing"},
    {"host/editor/dialogs/SettingsDialog.cpp", "\\u21ba", "a sign, named by its accessible name"},
    {"app/Program.cpp", "header variables", "the key that is worded"},
    {"app/Program.cpp", "named dictionaries", "the same"},
    {"app/Program.cpp", "data records", "the same"},
};

bool isException(const std::string &file, const std::string &text)
{
    return std::ranges::any_of(kExceptions,
                               [&](const Exception &e) { return file == e.file && text.starts_with(e.begins); });
}

/// Sources whose texts a user may meet.
std::vector<std::string> hostSources(const std::filesystem::path &top)
{
    std::vector<std::string> files = house::projectSources(top);
    std::erase_if(files, [](const std::string &f) { return !f.starts_with("host/") && !f.starts_with("app/"); });
    return files;
}

using Texts = std::map<std::string, std::string>;

Texts textsOf(const std::string &language)
{
    std::istringstream lines(house::readFile(house::sourceFolder() / ("resources/messages/" + language + ".txt")));
    Texts texts;
    for (std::string line; std::getline(lines, line);) {
        const auto equals = line.find(" =");
        if (line.empty() || line[0] == '#' || equals == std::string::npos)
            continue;
        const bool isFirst = texts.emplace(line.substr(0, equals), line.substr(equals + 2)).second;
        EXPECT_TRUE(isFirst) << language << ": " << line << " stands twice";
    }
    return texts;
}

/// "%1", "%d", "%.2f" of a text, sorted; what does not look like one is text.
std::vector<std::string> placeholders(const std::string &text)
{
    static const std::regex one("%([0-9]+(?![0-9.]*[a-zA-Z])|[0-9]*\\.?[0-9]*[dsfux])");
    std::vector<std::string> found;
    for (std::sregex_iterator m(text.begin(), text.end(), one), end; m != end; ++m)
        found.push_back(m->str());
    std::ranges::sort(found);
    return found;
}

TEST(UserTexts, NoneStandsInTheCodeOfHostAndProgram)
{
    const auto top = house::sourceFolder();
    for (const std::string &path : hostSources(top))
        for (const Literal &literal : literalsOf(house::readFile(top / path))) {
            const bool wrong = isProse(literal.text) ||
                               (isShown(literal.before) &&
                                std::regex_search(literal.text, std::regex("[A-Za-z]{2,}")) && !isName(literal.text));
            if (wrong && !isStyle(literal.text) && !isException(path, literal.text))
                ADD_FAILURE() << path << ":" << literal.line << ": \"" << literal.text
                              << "\" belongs into resources/messages";
        }
}

TEST(UserTexts, EveryNameThatTheCodeAsksForHasAText)
{
    const auto top = house::sourceFolder();
    const Texts texts = textsOf("en");
    static const std::regex name("(ui|dxf|file|text|settings|catalog|module|words|script|control|cli|block)\\.[A-Za-z]"
                                 "[A-Za-z0-9.]*");
    // What looks like one and is none.
    const std::set<std::string> others = {"settings.cfg"};
    for (const std::string &path : hostSources(top))
        for (const Literal &literal : literalsOf(house::readFile(top / path))) {
            const std::string &text = literal.text;
            if (!std::regex_match(text, name) || others.contains(text))
                continue;
            // A name that is put together has texts that begin so.
            const auto at = texts.lower_bound(text);
            const bool known =
                at != texts.end() && (text.ends_with(".") ? at->first.starts_with(text) : at->first == text);
            EXPECT_TRUE(known || (at != texts.end() && at->first.starts_with(text) && !literal.before.empty()))
                << path << ":" << literal.line << ": no text for " << text;
        }
}

TEST(UserTexts, BothLanguagesHaveTheSameNumbersAndNamesWithTheSamePlaceholders)
{
    const Texts english = textsOf("en"), croatian = textsOf("hr");
    for (const auto &[key, text] : english) {
        const auto other = croatian.find(key);
        if (other == croatian.end())
            ADD_FAILURE() << key << " has no Croatian text";
        else
            EXPECT_EQ(placeholders(text), placeholders(other->second)) << key;
    }
    for (const auto &[key, text] : croatian)
        EXPECT_TRUE(english.contains(key)) << key << " has no English text";
}

TEST(UserTexts, WhatIsLookedForIsFound)
{
    EXPECT_TRUE(isProse("the file is empty"));
    EXPECT_TRUE(isProse("; feet were converted to metres"));
    EXPECT_FALSE(isProse("LWPOLYLINE"));
    EXPECT_FALSE(isProse("ui.layers.head.name"));
    EXPECT_FALSE(isProse("  0\\nSECTION\\n"));
    const auto found =
        literalsOf("// \"comment\"\n#include \"x.h\"\nlabel->setText(QStringLiteral(\"Open\")); f('\"', L\"a b\");");
    ASSERT_EQ(found.size(), 2u);
    EXPECT_EQ(found[0].text, "Open");
    EXPECT_EQ(found[0].line, 3u);
    EXPECT_TRUE(isShown(found[0].before));
    EXPECT_FALSE(isShown(found[1].before));
    EXPECT_EQ(placeholders("%1 of %2, %d and 100 %"), (std::vector<std::string>{"%1", "%2", "%d"}));
}

} // namespace
