// Text and content of elements.
#include "catalog/Markup.h"
#include "tests/catalog/IndexCheck.h"

#include <gtest/gtest.h>

using markup_check::brokenRule;
using markup_check::differenceToFreshParse;

namespace {

std::wstring textOf(const wchar_t *text)
{
    CMarkup document;
    document.SetText(text);
    document.FindElement();
    return document.GetElementText();
}

TEST(MarkupElementText, IsTextAndCDataUnescaped)
{
    EXPECT_EQ(textOf(L"<a> x &lt; y </a>"), L" x < y ");
    EXPECT_EQ(textOf(L"<a>x<![CDATA[ <&amp;> ]]>&amp;y</a>"), L"x <&amp;> &y");
    EXPECT_EQ(textOf(L"<a><![CDATA[a]]]]><![CDATA[>b]]></a>"), L"a]]>b");
    EXPECT_EQ(textOf(L"<a>x<!-- c -->y<?p q?>z</a>"), L"xyz");
    EXPECT_EQ(textOf(L"<a>\r\n</a>"), L"\r\n");
    EXPECT_EQ(textOf(L"<a><![CDATA[]]></a>"), L"");
    EXPECT_EQ(textOf(L"<a></a>"), L"");
    EXPECT_EQ(textOf(L"<a/>"), L"");
}

TEST(MarkupElementText, OddOpeningsOfCDataAreReadToo)
{
    EXPECT_EQ(textOf(L"<a><![C[x]]></a>"), L"x");
    EXPECT_EQ(textOf(L"<a><![Cx]]></a>"), L"");
    EXPECT_EQ(textOf(L"<a><![C]]></a>"), L"");
}

TEST(MarkupElementText, IsEmptyForAnElementWithChildren)
{
    EXPECT_EQ(textOf(L"<a>x<b/>y</a>"), L"");
}

TEST(MarkupElementText, IsReadFromMainElementAndChild)
{
    CMarkup document;
    document.SetText(L"<a><b>x</b></a>");
    EXPECT_EQ(document.GetElementText(), L"");
    document.FindChildElement();
    EXPECT_EQ(document.GetChildText(), L"x");
    document.EnterChild();
    EXPECT_EQ(document.GetElementText(), L"x");
}

std::wstring afterSetting(const wchar_t *text, const wchar_t *content, int flags = CMarkup::kEscaped)
{
    CMarkup document;
    document.SetText(text);
    document.FindElement();
    document.FindChildElement();
    EXPECT_TRUE(document.SetElementText(content, flags));
    EXPECT_EQ(differenceToFreshParse(document), "");
    EXPECT_EQ(document.GetElementText(), content ? content : L"");
    EXPECT_EQ(document.GetChildFragment(), L"") << "there are no children now";
    return std::wstring(document.GetText());
}

TEST(MarkupSetText, ReplacesTheContent)
{
    EXPECT_EQ(afterSetting(L"<a x='1'>old</a>", L"1 < 2 & 'x'"), L"<a x='1'>1 &lt; 2 &amp; 'x'</a>");
    EXPECT_EQ(afterSetting(L"<a>x<b><c/></b><!-- y --></a>", L"z"), L"<a>z</a>");
    EXPECT_EQ(afterSetting(L"<a><b/></a>", L""), L"<a></a>");
    EXPECT_EQ(afterSetting(L"<a><b/></a>", nullptr), L"<a></a>");
}

TEST(MarkupSetText, OpensAnEmptyTag)
{
    EXPECT_EQ(afterSetting(L"<a/>", L"x"), L"<a>x</a>");
    EXPECT_EQ(afterSetting(L"<a b='1' />", L"x"), L"<a b='1' >x</a>");
    EXPECT_EQ(afterSetting(L"<a/>", L""), L"<a/>");
}

TEST(MarkupSetText, EndsWhatIsNotEnded)
{
    CMarkup document;
    document.SetText(L"<a><b><c/></a>");
    document.FindElement();
    document.FindChildElement();
    EXPECT_TRUE(document.SetChildText(L"x"));
    EXPECT_EQ(document.GetText(), L"<a><b>x</b><c/></a>");
    EXPECT_EQ(differenceToFreshParse(document), "");
}

TEST(MarkupSetText, WritesCData)
{
    EXPECT_EQ(afterSetting(L"<a/>", L"<b>&", CMarkup::kAsCData), L"<a><![CDATA[<b>&]]></a>");
    EXPECT_EQ(afterSetting(L"<a/>", L"x]]>y]]>", CMarkup::kAsCData),
              L"<a><![CDATA[x]]]]><![CDATA[>y]]]]><![CDATA[>]]></a>");
    EXPECT_EQ(afterSetting(L"<a/>", L"]]", CMarkup::kAsCData), L"<a><![CDATA[]]]]></a>");
}

TEST(MarkupSetText, NeedsItsElement)
{
    CMarkup document;
    document.SetText(L"<a/>");
    EXPECT_FALSE(document.SetElementText(L"x"));
    document.FindElement();
    EXPECT_FALSE(document.SetChildText(L"x"));
    EXPECT_FALSE(document.SetChildContent(L"<b/>"));
    EXPECT_EQ(document.GetText(), L"<a/>");
}

TEST(MarkupSetText, OfAChildKeepsTheChildPosition)
{
    CMarkup document;
    document.SetText(L"<a><b><x/></b><c/></a>");
    document.FindElement();
    document.FindChildElement();
    EXPECT_TRUE(document.SetChildText(L"text"));
    EXPECT_EQ(document.GetChildText(), L"text");
    EXPECT_TRUE(document.FindChildElement(L"c"));
}

TEST(MarkupSetContent, PutsMarkupInAsItStands)
{
    CMarkup document;
    document.SetText(L"<a><old/></a>");
    document.FindElement();
    EXPECT_TRUE(document.SetElementContent(L" x<b><c/></b>\n<!-- y --><d z='1'/>"));
    EXPECT_EQ(document.GetText(), L"<a> x<b><c/></b>\n<!-- y --><d z='1'/></a>");
    EXPECT_EQ(differenceToFreshParse(document), "");
    EXPECT_TRUE(document.FindChildElement(L"d"));
    EXPECT_EQ(document.GetChildAttribute(L"z"), L"1");
    EXPECT_TRUE(document.SetChildContent(L"<e/>"));
    EXPECT_EQ(document.GetText(), L"<a> x<b><c/></b>\n<!-- y --><d z='1'><e/></d></a>");
    EXPECT_EQ(differenceToFreshParse(document), "");
    EXPECT_TRUE(document.SetElementContent(L""));
    EXPECT_EQ(document.GetText(), L"<a></a>");
    EXPECT_EQ(differenceToFreshParse(document), "");
}

TEST(MarkupSetContent, OfAnEmptyTag)
{
    CMarkup document;
    document.SetText(L"<r><a/><z/></r>");
    document.FindElement();
    document.FindChildElement();
    EXPECT_TRUE(document.SetChildContent(L"<b/>"));
    EXPECT_EQ(document.GetText(), L"<r><a><b/></a><z/></r>");
    EXPECT_EQ(differenceToFreshParse(document), "");
}

TEST(MarkupSetContent, PutsDamagedMarkupInAndSaysSo)
{
    CMarkup document;
    document.SetText(L"<a><old/></a>");
    document.FindElement();
    EXPECT_FALSE(document.SetElementContent(L"<b>"));
    EXPECT_EQ(document.GetText(), L"<a><b></a>");
    EXPECT_FALSE(document.IsWellFormed());
    EXPECT_EQ(brokenRule(document), "");
    EXPECT_TRUE(document.FindChildElement(L"b"));
}

} // namespace
