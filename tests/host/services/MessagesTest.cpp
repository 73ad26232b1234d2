#include "host/services/Messages.h"

#include "host/services/Services.h"
#include "host/services/Text.h"
#include "tests/host/services/TestFolder.h"

#include <gmock/gmock.h>

#include <map>

namespace velmor {
namespace {

using test::TestFolder;
using test::TestVariable;

/// Every message number that the module asks for.
constexpr unsigned kUsedNumbers[] = {
    60,    67,    125,   215,   235,   269,   282,   312,   462,   464,   658,   975,   1081,  1082,  1124,
    1221,  1620,  1885,  1936,  1978,  1979,  1980,  1981,  1982,  1983,  1985,  1986,  1987,  1988,  1989,
    1990,  1991,  1992,  1993,  1994,  1995,  1996,  1997,  1998,  1999,  2000,  2001,  2002,  2003,  2004,
    2005,  2006,  2007,  2010,  2013,  2014,  2015,  2016,  2019,  2020,  2021,  2022,  2023,  2024,  2028,
    2029,  2030,  2031,  2032,  2033,  2034,  2035,  2036,  2037,  2155,  2226,  2449,  2666,  3098,  3468,
    3498,  3529,  3894,  3996,  4379,  4381,  4434,  4557,  4558,  4578,  4579,  4581,  4582,  4600,  4601,
    4602,  5384,  5795,  7199,  7243,  8977,  8978,  11199, 11218, 11223, 11224, 11225, 11226, 11254, 11255,
    50156, 50200, 60001, 60002, 60003, 60005, 60006, 60007, 60040, 60041, 60042, 60050, 60051, 60052};

/// The numbers whose texts are filled in, each with one whole number.
constexpr unsigned kFormats[] = {1993, 2007};

Paths shippedPaths()
{
    return {{std::filesystem::path(VELMOR_TEST_RESOURCES)}, {}};
}

Messages shipped(const std::string &language)
{
    Messages messages;
    messages.load(shippedPaths(), language);
    return messages;
}

class ShippedMessages : public testing::TestWithParam<std::string> {};

TEST_P(ShippedMessages, HoldATextForEveryNumberInUseAndNoWrongLine)
{
    const Messages messages = shipped(GetParam());

    for (const FileFinding &finding : messages.findings())
        ADD_FAILURE() << finding.message();
    for (const unsigned number : kUsedNumbers) {
        EXPECT_TRUE(messages.contains(number)) << number;
        EXPECT_FALSE(messages.text(number).empty()) << number;
    }
}

TEST_P(ShippedMessages, HavePlaceholdersInTheFormatsAndNowhereElse)
{
    const Messages messages = shipped(GetParam());

    for (const unsigned number : kUsedNumbers) {
        const bool isFormat = std::ranges::find(kFormats, number) != std::end(kFormats);
        EXPECT_EQ(placeholdersOf(utf8(messages.text(number))),
                  isFormat ? std::vector<std::string>{"%d"} : std::vector<std::string>{})
            << number;
    }
}

TEST_P(ShippedMessages, CoverEverySettingOfTheTable)
{
    const Messages messages = shipped(GetParam());

    for (const SettingSpec &spec : settingTable())
        EXPECT_THAT(messages.names(), testing::Contains(spec.caption)) << spec.key;
}

INSTANTIATE_TEST_SUITE_P(BothLanguages, ShippedMessages, testing::Values("hr", "en"),
                         [](const auto &language) { return language.param; });

TEST(Messages, BothLanguagesHaveTheSameNamesWithTheSamePlaceholders)
{
    const Messages croatian = shipped("hr"), english = shipped("en");

    EXPECT_EQ(croatian.names(), english.names());
    for (const std::string &name : croatian.names())
        EXPECT_EQ(placeholdersOf(utf8(croatian.text(name))), placeholdersOf(utf8(english.text(name)))) << name;
}

TEST(Messages, TheWordingFollowsTheLanguage)
{
    EXPECT_EQ(shipped("hr").text(1980), L"Vrsta površine");
    EXPECT_EQ(shipped("en").text(1980), L"Area type");
}

TEST(Messages, AMissingTextNamesItsNumberOrName)
{
    const Messages messages = shipped("en");

    EXPECT_EQ(messages.text(49999), L"[49999]");
    EXPECT_EQ(messages.text("ui.none"), L"[ui.none]");
}

TEST(Messages, AUsersFileReplacesTextsLineByLine)
{
    TestFolder user;
    user.write("messages/en.txt", "1980 = Kind of area\nui.viewport = Plan\n");
    Messages messages;
    messages.load({{VELMOR_TEST_RESOURCES}, user.path()}, "en");

    EXPECT_EQ(messages.text(1980), L"Kind of area");
    EXPECT_EQ(messages.text("ui.viewport"), L"Plan");
    EXPECT_EQ(messages.text(1979), L"Definition method");
    EXPECT_TRUE(messages.findings().empty());
}

TEST(Messages, AUsersFormatWithOtherPlaceholdersIsRefusedWithFileAndLine)
{
    TestFolder user;
    user.write("messages/en.txt", "# mine\n1993 = %s sections\n2007 = %d areas\n");
    Messages messages;
    messages.load({{VELMOR_TEST_RESOURCES}, user.path()}, "en");

    EXPECT_EQ(messages.text(1993), L"Sections selected: %d");
    EXPECT_EQ(messages.text(2007), L"%d areas");
    ASSERT_EQ(messages.findings().size(), 1u);
    EXPECT_THAT(messages.findings()[0].message(), testing::HasSubstr("en.txt:2: the text of 1993"));
}

TEST(Messages, WrongLinesAreToldAndTheRestIsRead)
{
    TestFolder folder;
    folder.write("messages/en.txt", "60 = OK\n6o = no\n60 = Yes\nno equals sign\n67 = Cancel\n");
    Messages messages;
    messages.load({{folder.path()}, {}}, "en");

    std::vector<std::size_t> lines;
    for (const FileFinding &finding : messages.findings())
        lines.push_back(finding.finding.line);
    EXPECT_THAT(lines, testing::UnorderedElementsAre(2u, 3u, 4u));
    EXPECT_EQ(messages.text(60), L"Yes");
    EXPECT_EQ(messages.text(67), L"Cancel");
}

TEST(Messages, AMissingFileIsToldAndTextsNameTheirNumbers)
{
    TestFolder empty;
    Messages messages;
    messages.load({{empty.path()}, {}}, "hr");

    ASSERT_EQ(messages.findings().size(), 1u);
    EXPECT_THAT(messages.findings()[0].message(), testing::HasSubstr("VELMOR_RESOURCES"));
    EXPECT_EQ(messages.text(60), L"[60]");
}

TEST(Messages, PlaceholdersAreFoundWithWidthAndWithoutLiteralPercentSigns)
{
    using Found = std::vector<std::string>;
    EXPECT_EQ(placeholdersOf("%d of %5.2f, %1 and %12"), (Found{"%1", "%12", "%5.2f", "%d"}));
    EXPECT_EQ(placeholdersOf("%1."), (Found{"%1"})) << "a full stop behind it is text";
    EXPECT_EQ(placeholdersOf("100 %, %%d, % otjecanja, [%]"), Found{});
}

TEST(Language, WhatIsAskedForCountsBeforeSettingsAndLocale)
{
    TestVariable all("LC_ALL", "hr_HR.UTF-8");

    EXPECT_EQ(chooseLanguage("en", "hr"), "en");
    EXPECT_EQ(chooseLanguage("", "en"), "en");
    EXPECT_EQ(chooseLanguage("", ""), "hr");
    EXPECT_EQ(chooseLanguage("HR", "en"), "hr");
    EXPECT_EQ(chooseLanguage("xx", "en"), "en") << "an unknown language asks for nothing";
}

TEST(Language, TheFirstLocaleVariableThatIsSetDecides)
{
    TestVariable all("LC_ALL", nullptr), messages("LC_MESSAGES", "C"), lang("LANG", "hr_HR.UTF-8");
    EXPECT_EQ(chooseLanguage("", ""), "en");

    TestVariable none("LC_MESSAGES", nullptr);
    EXPECT_EQ(chooseLanguage("", ""), "hr");

    TestVariable hreflang("LANG", "hrx");
    EXPECT_EQ(chooseLanguage("", ""), "en");
}

} // namespace
} // namespace velmor
