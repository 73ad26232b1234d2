// Attributes: how they are found, unescaped, written.
#include "catalog/Markup.h"
#include "tests/catalog/IndexCheck.h"

#include <gtest/gtest.h>

using markup_check::differenceToFreshParse;

namespace {

/// Value of an attribute of the root.
std::wstring valueIn(const wchar_t *text, const wchar_t *name)
{
    CMarkup document;
    document.SetText(text);
    document.FindElement();
    return document.GetAttribute(name);
}

/// The text after an attribute of the root was set; "refused" when it was, and then nothing may have changed.
std::wstring afterSetting(const wchar_t *text, const wchar_t *name, const wchar_t *value)
{
    CMarkup document;
    document.SetText(text);
    document.FindElement();
    if (!document.SetAttribute(name, value)) {
        EXPECT_EQ(document.GetText(), text);
        return L"refused";
    }
    EXPECT_EQ(differenceToFreshParse(document), "");
    EXPECT_EQ(document.GetAttribute(name), value);
    return std::wstring(document.GetText());
}

TEST(MarkupAttributes, AreReadInQuotesOfEitherKind)
{
    EXPECT_EQ(valueIn(L"<a b=\"1\" c='2'/>", L"b"), L"1");
    EXPECT_EQ(valueIn(L"<a b=\"1\" c='2'/>", L"c"), L"2");
    EXPECT_EQ(valueIn(L"<a b='\"' c=\"'\"/>", L"b"), L"\"");
    EXPECT_EQ(valueIn(L"<a b='\"' c=\"'\"/>", L"c"), L"'");
    EXPECT_EQ(valueIn(L"<a b=''/>", L"b"), L"");
}

TEST(MarkupAttributes, WhiteSpaceMayStandAroundTheEqualSign)
{
    EXPECT_EQ(valueIn(L"<a\n\tb \r\n=\t '1'/>", L"b"), L"1");
}

TEST(MarkupAttributes, WithoutQuotesAValueRunsToWhiteSpaceOrTheEnd)
{
    EXPECT_EQ(valueIn(L"<a b=1 c=2>", L"b"), L"1");
    EXPECT_EQ(valueIn(L"<a b=1 c=2>", L"c"), L"2");
    EXPECT_EQ(valueIn(L"<a b=x/y/>", L"b"), L"x/y/");
    EXPECT_EQ(valueIn(L"<a b=c />", L"b"), L"c");
}

TEST(MarkupAttributes, TheEqualSignMayBeAbsent)
{
    EXPECT_EQ(valueIn(L"<a b '1' c='2'/>", L"b"), L"1");
    EXPECT_EQ(valueIn(L"<a b'1'c='2'/>", L"c"), L"2");
    EXPECT_EQ(valueIn(L"<a b c='2'/>", L"b"), L"");
    EXPECT_EQ(valueIn(L"<a b c='2'/>", L"c"), L"2");
}

TEST(MarkupAttributes, TheScanEndsAtASlashOrQuestionMarkInNamePosition)
{
    EXPECT_EQ(valueIn(L"<a b='1' / c='2'>", L"b"), L"1");
    EXPECT_EQ(valueIn(L"<a b='1' / c='2'>", L"c"), L"");
    EXPECT_EQ(valueIn(L"<a b='1' ? c='2'>", L"c"), L"");
}

TEST(MarkupAttributes, TheFirstOfTheNameCounts)
{
    EXPECT_EQ(valueIn(L"<a b='1' b='2'/>", L"b"), L"1");
    EXPECT_EQ(valueIn(L"<a bb='1' b='2'/>", L"b"), L"2");
    EXPECT_EQ(valueIn(L"<a b='1' bb='2'/>", L"bb"), L"2");
}

TEST(MarkupAttributes, NamesCompareLikeTagNames)
{
    EXPECT_EQ(valueIn(L"<a b='1'/>", L"b=2"), L"1");
    EXPECT_EQ(valueIn(L"<a b='1'/>", L"b c"), L"1");
    EXPECT_EQ(valueIn(L"<a b='1'/>", L"B"), L"");
    EXPECT_EQ(valueIn(L"<a b='1'/>", L""), L"");
    EXPECT_EQ(valueIn(L"<a b='1'/>", nullptr), L"");
}

TEST(MarkupAttributes, AnAbsentOneIsEmpty)
{
    EXPECT_EQ(valueIn(L"<a/>", L"b"), L"");
    EXPECT_EQ(valueIn(L"<a x='b=\"1\"'/>", L"b"), L"");
}

TEST(MarkupAttributes, AreUnescaped)
{
    EXPECT_EQ(valueIn(L"<a b='&lt;&amp;&gt;&apos;&quot;'/>", L"b"), L"<&>'\"");
    EXPECT_EQ(valueIn(L"<a b='&#65;&#x42;&#x1f600;&#160;'/>", L"b"), L"AB\U0001F600\u00A0");
    EXPECT_EQ(valueIn(L"<a b='&amp;lt;'/>", L"b"), L"&lt;");
}

TEST(MarkupAttributes, AStrayAmpersandStandsForItself)
{
    EXPECT_EQ(valueIn(L"<a b='x & y'/>", L"b"), L"x & y");
    for (const wchar_t *value : {L"&", L"&lt", L"&nbsp;", L"&LT;", L"&;", L"&#;", L"&#x;", L"&#6 5;", L"&#xg;", L"&#12",
                                 L"&#65a;", L"&#X41;", L"&#-1;"}) {
        const std::wstring text = std::wstring(L"<a b='") + value + L"'/>";
        EXPECT_EQ(valueIn(text.c_str(), L"b"), value);
    }
}

TEST(MarkupAttributes, ANumberEndsWithinSevenCharacters)
{
    EXPECT_EQ(valueIn(L"<a b='&#000065;'/>", L"b"), L"A");
    EXPECT_EQ(valueIn(L"<a b='&#0000065;'/>", L"b"), L"&#0000065;");
    EXPECT_EQ(valueIn(L"<a b='&#x00041;'/>", L"b"), L"A");
    EXPECT_EQ(valueIn(L"<a b='&#x000041;'/>", L"b"), L"&#x000041;");
}

TEST(MarkupAttributes, HalvesOfPairsAreNoCharacters)
{
    EXPECT_EQ(valueIn(L"<a b='&#xD83D;'/>", L"b"), L"&#xD83D;");
    EXPECT_EQ(valueIn(L"<a b='&#xDC80;'/>", L"b"), L"&#xDC80;");
}

TEST(MarkupAttributes, AnExistingValueIsReplacedInDoubleQuotes)
{
    EXPECT_EQ(afterSetting(L"<a b=\"1\"/>", L"b", L"22"), L"<a b=\"22\"/>");
    EXPECT_EQ(afterSetting(L"<a b='1' c='2'/>", L"b", L"22"), L"<a b=\"22\" c='2'/>");
    EXPECT_EQ(afterSetting(L"<a b=1 c='2'/>", L"b", L""), L"<a b=\"\" c='2'/>");
    EXPECT_EQ(afterSetting(L"<a b = '1'/>", L"b", L"2"), L"<a b = \"2\"/>");
    EXPECT_EQ(afterSetting(L"<a b=c/></a>", L"b", L"2"), L"<a b=\"2\"></a>");
}

TEST(MarkupAttributes, OneWithoutAValueGetsIt)
{
    EXPECT_EQ(afterSetting(L"<a b c='1'/>", L"b", L"2"), L"<a b=\"2\" c='1'/>");
    EXPECT_EQ(afterSetting(L"<a b= />", L"b", L"2"), L"<a b=\"2\" />");
    EXPECT_EQ(afterSetting(L"<a b=></a>", L"b", L"2"), L"<a b=\"2\"></a>");
}

TEST(MarkupAttributes, ANewOneGoesBehindTheLast)
{
    EXPECT_EQ(afterSetting(L"<a/>", L"n", L"1"), L"<a n=\"1\"/>");
    EXPECT_EQ(afterSetting(L"<a></a>", L"n", L"1"), L"<a n=\"1\"></a>");
    EXPECT_EQ(afterSetting(L"<a />", L"n", L"1"), L"<a n=\"1\" />");
    EXPECT_EQ(afterSetting(L"<a b='1'  ></a>", L"n", L"1"), L"<a b='1' n=\"1\"  ></a>");
    EXPECT_EQ(afterSetting(L"<a b=1></a>", L"n", L"1"), L"<a b=1 n=\"1\"></a>");
    EXPECT_EQ(afterSetting(L"<a b/></a>", L"n", L"1"), L"<a b/ n=\"1\"></a>");
    EXPECT_EQ(afterSetting(L"<a b></a>", L"n", L"1"), L"<a b n=\"1\"></a>");
    EXPECT_EQ(afterSetting(L"<a/ ></a>", L"n", L"1"), L"<a n=\"1\"/ ></a>");
}

TEST(MarkupAttributes, ValuesAreEscaped)
{
    EXPECT_EQ(afterSetting(L"<a/>", L"n", L"<&>'\""), L"<a n=\"&lt;&amp;&gt;&apos;&quot;\"/>");
    EXPECT_EQ(afterSetting(L"<a/>", L"n", L"say \"hello\""), L"<a n=\"say &quot;hello&quot;\"/>");
    EXPECT_EQ(afterSetting(L"<a/>", L"n", L"&lt;&#65;"), L"<a n=\"&amp;lt;&amp;#65;\"/>");
    EXPECT_EQ(afterSetting(L"<a/>", L"n", L"\u0160uma\r\n\t"), L"<a n=\"\u0160uma\r\n\t\"/>");
}

TEST(MarkupAttributes, AnUnusableNameIsRefused)
{
    for (const wchar_t *name :
         {L"", L"a b", L"a=b", L"1", L"a\"b", L"a'", L"<a", L"a/b", L"a>b", L"?a", L"a<b", L"a&b"})
        EXPECT_EQ(afterSetting(L"<r/>", name, L"1"), L"refused") << name;
    EXPECT_EQ(afterSetting(L"<r/>", nullptr, L"1"), L"refused");
}

TEST(MarkupAttributes, WhereTheTagCouldNotBeReadAgainNothingChanges)
{
    // Taking one of the two loose quotes away would let the other one open a value that never ends.
    EXPECT_EQ(afterSetting(L"<a b=c\"d e\"></a>", L"b", L"1"), L"refused");
    EXPECT_EQ(afterSetting(L"<a b=c\"d>e\"></a>", L"b", L"1"), L"refused");
    EXPECT_EQ(afterSetting(L"<a b=></a>", L"c", L"1"), L"refused") << "it would become the value of b";
}

TEST(MarkupAttributes, WhatFollowsTheElementMovesWithTheText)
{
    CMarkup document;
    document.SetText(L"<r><a x='1'><b/></a><c y='2'/></r>");
    document.FindElement();
    document.FindChildElement();
    EXPECT_TRUE(document.SetChildAttribute(L"x", L"a longer value"));
    EXPECT_EQ(differenceToFreshParse(document), "");
    EXPECT_TRUE(document.FindChildElement(L"c"));
    EXPECT_EQ(document.GetChildAttribute(L"y"), L"2");
    document.Rewind();
    document.FindChildElement();
    EXPECT_TRUE(document.SetChildAttribute(L"x", L""));
    EXPECT_EQ(document.GetText(), L"<r><a x=\"\"><b/></a><c y='2'/></r>");
    EXPECT_EQ(differenceToFreshParse(document), "");
    EXPECT_TRUE(document.EnterChild());
    EXPECT_TRUE(document.FindChildElement(L"b"));
    EXPECT_EQ(document.GetChildFragment(), L"<b/>");
}

TEST(MarkupAttributes, NeedTheirElement)
{
    CMarkup document;
    document.SetText(L"<a b='1'/>");
    EXPECT_EQ(document.GetAttribute(L"b"), L"");
    EXPECT_FALSE(document.SetAttribute(L"b", L"2"));
    document.FindElement();
    EXPECT_EQ(document.GetChildAttribute(L"b"), L"");
    EXPECT_FALSE(document.SetChildAttribute(L"b", L"2"));
    EXPECT_EQ(document.GetText(), L"<a b='1'/>");
}

} // namespace
