#include "host/services/KeyValueText.h"

#include <gmock/gmock.h>

namespace velmor {
namespace {

TEST(KeyValueText, CommentsBlankLinesMarksAndLineEndsOfBothKindsAreUnderstood)
{
    const auto text = parseKeyValues("\xEF\xBB\xBF# comment\r\n\r\n  A =  one  \r\n[part]\nB=two = three\nC =");

    ASSERT_EQ(text.lines.size(), 3u);
    EXPECT_TRUE(text.findings.empty());
    EXPECT_EQ(text.lines[0].line, 3u);
    EXPECT_EQ(text.lines[0].key + "|" + text.lines[0].value + "|" + text.lines[0].section, "A|one|");
    EXPECT_EQ(text.lines[1].value + "|" + text.lines[1].section, "two = three|part");
    EXPECT_EQ(text.lines[2].value, "");
}

TEST(KeyValueText, EscapesStandForLineEndTabBlankAndBackslash)
{
    const auto text = parseKeyValues("A = \\sone\\ntwo\\t\\\\three\\s");

    ASSERT_EQ(text.lines.size(), 1u);
    EXPECT_EQ(text.lines[0].value, " one\ntwo\t\\three ");
}

TEST(KeyValueText, AnEscapedValueIsReadBackTheSame)
{
    for (const std::string value : {" S- ", "a\nb", "\\n", "x\ty", " ", "", "C:\\log\\s"}) {
        const auto text = parseKeyValues("K = " + escapedValue(value));
        ASSERT_EQ(text.lines.size(), 1u);
        EXPECT_EQ(text.lines[0].value, value);
        EXPECT_TRUE(text.findings.empty());
    }
}

TEST(KeyValueText, AWrongLineIsToldWithItsNumberAndTheOthersAreRead)
{
    const auto text = parseKeyValues("A = 1\nnonsense\n= 2\nB = \xE8\nC = a\\q\nD = 4");

    ASSERT_EQ(text.findings.size(), 4u);
    EXPECT_EQ(text.findings[0].line, 2u);
    EXPECT_EQ(text.findings[1].line, 3u);
    EXPECT_EQ(text.findings[2].line, 4u);
    EXPECT_EQ(text.findings[3].line, 5u);
    EXPECT_THAT(text.findings[0].text, testing::HasSubstr("KEY = value"));
    ASSERT_EQ(text.lines.size(), 3u);
    EXPECT_EQ(text.lines[1].value, "a\\q") << "an escape that is not known stays as it stands";
    EXPECT_EQ(text.lines[2].key, "D");
}

TEST(KeyValueText, AFindingIsWordedWithFileAndLine)
{
    EXPECT_EQ((FileFinding{"a/b.cfg", {Severity::Warning, 12, "wrong"}}).message(), "a/b.cfg:12: wrong");
    EXPECT_EQ((FileFinding{"a/b.cfg", {Severity::Damage, 0, "gone"}}).message(), "a/b.cfg: gone");
}

} // namespace
} // namespace velmor
