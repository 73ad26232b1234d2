#include "host/services/Text.h"

#include <gtest/gtest.h>

namespace velmor {
namespace {

TEST(Text, UmlautsCaronsAndCharactersBeyondSixteenBitsComeBack)
{
    const std::wstring text = L"Šaht č-7 Ø 300 \x1F6B0";

    EXPECT_EQ(wide(utf8(text)), text);
    EXPECT_EQ(utf8(L"č"), "\xC4\x8D");
}

TEST(Text, ABadByteBecomesTheReplacementCharacterAndTheRestIsRead)
{
    EXPECT_EQ(wide("a\xE8z"), L"a\xFFFDz");
    EXPECT_EQ(wide("\xC4"), L"\xFFFD");
    EXPECT_EQ(wide("\xED\xA0\x80"), L"\xFFFD\xFFFD\xFFFD") << "half of a surrogate pair is no character";
    EXPECT_EQ(wide("\xC0\x80"), L"\xFFFD\xFFFD") << "too long a form";
}

TEST(Text, WellFormednessIsToldForTheWholeText)
{
    EXPECT_TRUE(isUtf8("okno č"));
    EXPECT_TRUE(isUtf8(""));
    EXPECT_FALSE(isUtf8("okno \xE8"));
    EXPECT_FALSE(isUtf8("\xF4\x90\x80\x80")) << "beyond the last character";
}

TEST(Text, AValueThatIsNoCharacterIsReplacedOnTheWayOut)
{
    EXPECT_EQ(utf8(std::wstring(1, static_cast<wchar_t>(0xD800))), "\xEF\xBF\xBD");
}

TEST(Text, TrimmingTakesBlanksTabsAndCarriageReturns)
{
    EXPECT_EQ(trimmed(" \t a b \r"), "a b");
    EXPECT_EQ(trimmed(" \r"), "");
}

TEST(Text, ComparingWithoutCaseLooksAtTheLettersAToZOnly)
{
    EXPECT_TRUE(equalNoCase("[Polygons]", "[POLYGONS]"));
    EXPECT_FALSE(equalNoCase("a", "ab"));
}

} // namespace
} // namespace velmor
