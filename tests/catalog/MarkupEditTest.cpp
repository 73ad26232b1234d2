// Adding, removing, fragments: the exact text, and the index as a fresh parse would make it.
#include "catalog/Markup.h"
#include "tests/catalog/IndexCheck.h"

#include <gtest/gtest.h>

#include <vector>

using markup_check::brokenRule;
using markup_check::differenceToFreshParse;

namespace {

/// A document on its root, with the child position on the n-th child (0: none).
CMarkup onChild(const wchar_t *text, int n)
{
    CMarkup document;
    document.SetText(text);
    document.FindElement();
    for (int i = 0; i < n; ++i)
        EXPECT_TRUE(document.FindChildElement());
    return document;
}

// --- Adding --------------------------------------------------------------------------------------------------------

std::wstring afterAdding(const wchar_t *text, int n, const wchar_t *name, const wchar_t *content = nullptr,
                         int flags = CMarkup::kEscaped)
{
    CMarkup document = onChild(text, n);
    EXPECT_TRUE(document.AddChildElement(name, content, flags));
    EXPECT_EQ(differenceToFreshParse(document), "");
    EXPECT_TRUE(document.GetChildFragment().starts_with(std::wstring(L"<") + name)) << "it is the child";
    return std::wstring(document.GetText());
}

TEST(MarkupAdd, TheFirstChildMakesThreeLines)
{
    EXPECT_EQ(afterAdding(L"<Terrains></Terrains>", 0, L"Terrain"), L"<Terrains>\r\n<Terrain/>\r\n</Terrains>");
}

TEST(MarkupAdd, FurtherChildrenGetALineEach)
{
    CMarkup document = onChild(L"<?xml version=\"1.0\" encoding=\"utf-8\" ?><Terrains></Terrains>", 0);
    EXPECT_TRUE(document.AddChildElement(L"Terrain"));
    EXPECT_TRUE(document.SetChildAttribute(L"name", L"a"));
    EXPECT_TRUE(document.SetChildAttribute(L"flow", L"0.3500"));
    EXPECT_TRUE(document.AddChildElement(L"Terrain"));
    EXPECT_TRUE(document.SetChildAttribute(L"name", L"b"));
    EXPECT_EQ(document.GetText(), L"<?xml version=\"1.0\" encoding=\"utf-8\" ?><Terrains>\r\n"
                                  L"<Terrain name=\"a\" flow=\"0.3500\"/>\r\n<Terrain name=\"b\"/>\r\n</Terrains>");
    EXPECT_EQ(differenceToFreshParse(document), "");
}

TEST(MarkupAdd, AnEmptyTagIsOpened)
{
    EXPECT_EQ(afterAdding(L"<p/>", 0, L"c"), L"<p>\r\n<c/>\r\n</p>");
    EXPECT_EQ(afterAdding(L"<p x='1' /><!-- -->", 0, L"c"), L"<p x='1' >\r\n<c/>\r\n</p><!-- -->");
}

TEST(MarkupAdd, AnElementWithoutItsEndTagGetsOne)
{
    CMarkup document;
    document.SetText(L"<a><p></a>");
    document.FindChildElement();
    document.EnterChild();
    EXPECT_TRUE(document.AddChildElement(L"c"));
    EXPECT_EQ(document.GetText(), L"<a><p>\r\n<c/>\r\n</p></a>");
    EXPECT_EQ(differenceToFreshParse(document), "");
}

TEST(MarkupAdd, GoesBehindTheChildAndItsWhiteSpace)
{
    EXPECT_EQ(afterAdding(L"<p><a/><b/></p>", 1, L"c"), L"<p><a/><c/>\r\n<b/></p>");
    EXPECT_EQ(afterAdding(L"<p>\n  <a/>\n  <b/>\n</p>", 1, L"c"), L"<p>\n  <a/>\n  <c/>\r\n<b/>\n</p>");
    EXPECT_EQ(afterAdding(L"<p>\n<a/>\n</p>", 1, L"c"), L"<p>\n<a/>\n<c/>\r\n</p>");
    EXPECT_EQ(afterAdding(L"<p><a/> text</p>", 1, L"c"), L"<p><a/><c/>\r\n text</p>")
        << "white space before text is not that of the element";
    EXPECT_EQ(afterAdding(L"<p><a/>\n<!-- b --></p>", 1, L"c"), L"<p><a/>\n<c/>\r\n<!-- b --></p>");
}

TEST(MarkupAdd, WithoutAChildPositionGoesToTheEnd)
{
    EXPECT_EQ(afterAdding(L"<p><a/><b/></p>", 0, L"c"), L"<p><a/><b/><c/>\r\n</p>");
    EXPECT_EQ(afterAdding(L"<p>text</p>", 0, L"c"), L"<p>text<c/>\r\n</p>");
    EXPECT_EQ(afterAdding(L"<p> </p>", 0, L"c"), L"<p> <c/>\r\n</p>");
    EXPECT_EQ(afterAdding(L"<p><a/>text</p>", 0, L"c"), L"<p><a/>text<c/>\r\n</p>");
    EXPECT_EQ(afterAdding(L"<p><a/><!-- x --></p>", 0, L"c"), L"<p><a/><!-- x --><c/>\r\n</p>");
}

TEST(MarkupAdd, TextIsEscaped)
{
    EXPECT_EQ(afterAdding(L"<p></p>", 0, L"c", L"1 < 2 & \"3\" > '0'"),
              L"<p>\r\n<c>1 &lt; 2 &amp; \"3\" &gt; '0'</c>\r\n</p>");
    EXPECT_EQ(afterAdding(L"<p></p>", 0, L"c", L""), L"<p>\r\n<c></c>\r\n</p>");
}

TEST(MarkupAdd, TextMayStandInCData)
{
    EXPECT_EQ(afterAdding(L"<p></p>", 0, L"c", L"<&>", CMarkup::kAsCData), L"<p>\r\n<c><![CDATA[<&>]]></c>\r\n</p>");
    EXPECT_EQ(afterAdding(L"<p></p>", 0, L"c", L"a]]>b", CMarkup::kAsCData),
              L"<p>\r\n<c><![CDATA[a]]]]><![CDATA[>b]]></c>\r\n</p>");
}

TEST(MarkupAdd, BelowADeeperElementMovesAllThatFollows)
{
    CMarkup document;
    document.SetText(L"<r><a><b/></a><c><d x='1'/></c></r>");
    document.FindChildElement(L"a");
    document.EnterChild();
    document.FindChildElement(L"b");
    document.EnterChild();
    EXPECT_TRUE(document.AddChildElement(L"new", L"x"));
    EXPECT_EQ(document.GetText(), L"<r><a><b>\r\n<new>x</new>\r\n</b></a><c><d x='1'/></c></r>");
    EXPECT_EQ(differenceToFreshParse(document), "");
    EXPECT_TRUE(document.AddChildElement(L"more"));
    EXPECT_EQ(differenceToFreshParse(document), "") << "the records do not stand in order any more";
    EXPECT_EQ(document.GetElementPath(), L"/r/a/b");
}

TEST(MarkupAdd, NeedsAMainElementAndAUsableName)
{
    CMarkup document;
    document.SetText(L"<p/>");
    EXPECT_FALSE(document.AddChildElement(L"c"));
    document.FindElement();
    for (const wchar_t *name : {L"", L"1", L"a b", L"a/", L"a>", L"<a", L"a\"", L"-a", L"a="})
        EXPECT_FALSE(document.AddChildElement(name)) << name;
    EXPECT_FALSE(document.AddChildElement(nullptr));
    EXPECT_EQ(document.GetText(), L"<p/>");
}

// --- Removing --------------------------------------------------------------------------------------------------------

std::wstring afterRemoving(const wchar_t *text, int n)
{
    CMarkup document = onChild(text, n);
    EXPECT_TRUE(document.RemoveChildElement());
    EXPECT_EQ(differenceToFreshParse(document), "");
    return std::wstring(document.GetText());
}

TEST(MarkupRemove, TakesTheWhiteSpaceBehindAlong)
{
    EXPECT_EQ(afterRemoving(L"<p>\r\n<a/>\r\n<b/>\r\n</p>", 1), L"<p>\r\n<b/>\r\n</p>");
    EXPECT_EQ(afterRemoving(L"<p>\r\n<a/>\r\n<b/>\r\n</p>", 2), L"<p>\r\n<a/>\r\n</p>");
    EXPECT_EQ(afterRemoving(L"<p><a>x<b/></a> text</p>", 1), L"<p> text</p>");
    EXPECT_EQ(afterRemoving(L"<p><a/> <!-- b --></p>", 1), L"<p><!-- b --></p>");
    EXPECT_EQ(afterRemoving(L"<p><a/></p>", 1), L"<p></p>");
}

TEST(MarkupRemove, TheOneBeforeBecomesTheChild)
{
    CMarkup document = onChild(L"<p><a/><b><x/></b><c/></p>", 2);
    EXPECT_TRUE(document.RemoveChildElement());
    EXPECT_EQ(document.GetChildFragment(), L"<a/>");
    EXPECT_TRUE(document.RemoveChildElement());
    EXPECT_EQ(document.GetChildFragment(), L"");
    EXPECT_FALSE(document.RemoveChildElement());
    EXPECT_EQ(document.GetText(), L"<p><c/></p>");
    EXPECT_TRUE(document.FindChildElement(L"c")) << "the first child now";
    EXPECT_EQ(differenceToFreshParse(document), "");
}

TEST(MarkupRemove, TheLastOneGoesToo)
{
    CMarkup document = onChild(L"<p><a/><b/><c/></p>", 3);
    EXPECT_TRUE(document.RemoveChildElement());
    EXPECT_EQ(differenceToFreshParse(document), "");
    EXPECT_TRUE(document.RemoveChildElement());
    EXPECT_TRUE(document.RemoveChildElement());
    EXPECT_EQ(document.GetText(), L"<p></p>");
    EXPECT_EQ(differenceToFreshParse(document), "");
    EXPECT_TRUE(document.AddChildElement(L"d"));
    EXPECT_EQ(document.GetText(), L"<p>\r\n<d/>\r\n</p>");
    EXPECT_EQ(differenceToFreshParse(document), "");
}

TEST(MarkupRemove, ItsRecordsAreNotUsedAgainBeforeTheNextParse)
{
    CMarkup document = onChild(L"<p><a><b/><c/></a></p>", 1);
    const std::uint32_t end = document.GetIndex().End();
    document.RemoveChildElement();
    for (std::uint32_t i = 2; i < end; ++i)
        EXPECT_TRUE(document.GetIndex()[i].Has(CMarkupRecord::kDeleted)) << i;
    document.AddChildElement(L"d");
    EXPECT_EQ(document.GetIndex().End(), end + 1);
    document.SetText(L"<p/>");
    EXPECT_EQ(document.GetIndex().End(), 2u);
}

TEST(MarkupRemove, DeletedRecordsAreChainedTheLaterOnesInFront)
{
    // Records: 1 p, 2 a, 3 a1, 4 b, 5 b1, 6 b2, 7 c.
    CMarkup document = onChild(L"<p><a><a1/></a><b><b1/><b2/></b><c/></p>", 1);
    EXPECT_TRUE(document.RemoveChildElement());
    EXPECT_TRUE(document.FindChildElement(L"b"));
    EXPECT_TRUE(document.RemoveChildElement());
    std::vector<std::uint32_t> chain;
    for (std::uint32_t i = 4; i != 0 && chain.size() < 10; i = document.GetIndex()[i].next) {
        EXPECT_TRUE(document.GetIndex()[i].Has(CMarkupRecord::kDeleted)) << i;
        chain.push_back(i);
    }
    EXPECT_EQ(chain, (std::vector<std::uint32_t>{4, 5, 6, 2, 3}));
    EXPECT_FALSE(document.GetIndex()[7].Has(CMarkupRecord::kDeleted));
}

TEST(MarkupRemove, OfWhatIsNotEndedOnlyItsTagGoes)
{
    CMarkup document = onChild(L"<p><a><b/></p>", 1);
    EXPECT_TRUE(document.RemoveChildElement());
    EXPECT_EQ(document.GetText(), L"<p><b/></p>");
    EXPECT_EQ(differenceToFreshParse(document), "");
}

// --- Fragments -------------------------------------------------------------------------------------------------------

TEST(MarkupFragments, AreTakenWithTheWhiteSpaceBehind)
{
    EXPECT_EQ(onChild(L"<p><a>x<b/></a>\r\n  <c/></p>", 1).GetChildFragment(), L"<a>x<b/></a>\r\n  ");
    EXPECT_EQ(onChild(L"<p><a/> text</p>", 1).GetChildFragment(), L"<a/>");
    EXPECT_EQ(onChild(L"<p><a/>\n</p>", 1).GetChildFragment(), L"<a/>\n");
    EXPECT_EQ(onChild(L"<p><a/></p>", 0).GetChildFragment(), L"");
}

struct Inserted {
    bool isGood;
    std::wstring text;
};

Inserted afterInserting(const wchar_t *text, int n, const wchar_t *fragment)
{
    CMarkup document = onChild(text, n);
    const bool isGood = document.InsertChildFragment(fragment);
    EXPECT_EQ(brokenRule(document), "");
    if (document.IsWellFormed()) {
        EXPECT_EQ(differenceToFreshParse(document), "");
    }
    return {isGood, std::wstring(document.GetText())};
}

TEST(MarkupFragments, GoInBeforeTheChild)
{
    const Inserted inserted = afterInserting(L"<p>\r\n<a/>\r\n<b/>\r\n</p>", 2, L"<c><d x='1'/></c>");
    EXPECT_TRUE(inserted.isGood);
    EXPECT_EQ(inserted.text, L"<p>\r\n<a/>\r\n<c><d x='1'/></c><b/>\r\n</p>");
    EXPECT_EQ(afterInserting(L"<p><a/></p>", 1, L"<c/>").text, L"<p><c/><a/></p>");
}

TEST(MarkupFragments, WithoutAChildPositionGoToTheVeryFront)
{
    EXPECT_EQ(afterInserting(L"<p>\r\n<a/>\r\n</p>", 0, L"<c/>").text, L"<p>\r\n<c/><a/>\r\n</p>");
    EXPECT_EQ(afterInserting(L"<p>text<a/></p>", 0, L"<c/>").text, L"<p><c/>text<a/></p>");
    EXPECT_EQ(afterInserting(L"<p></p>", 0, L"<c/>").text, L"<p><c/></p>");
    EXPECT_EQ(afterInserting(L"<p/>", 0, L"<c/>").text, L"<p><c/></p>");
}

TEST(MarkupFragments, TheFirstElementBecomesTheChild)
{
    CMarkup document = onChild(L"<p><a/></p>", 1);
    EXPECT_TRUE(document.InsertChildFragment(L"<c y='2'><d/></c>"));
    EXPECT_EQ(document.GetChildAttribute(L"y"), L"2");
    EXPECT_TRUE(document.FindChildElement());
    EXPECT_EQ(document.GetChildFragment(), L"<a/>");
}

TEST(MarkupFragments, WhatStandsAroundTheirElementIsLeftOut)
{
    const Inserted inserted =
        afterInserting(L"<p><a/></p>", 1, L"<?xml version=\"1.0\"?>\n<!-- x --><c><!-- y --></c>\n<!-- z -->");
    EXPECT_TRUE(inserted.isGood);
    EXPECT_EQ(inserted.text, L"<p><c><!-- y --></c><a/></p>");
}

TEST(MarkupFragments, SeveralElementsGoInButAreNotWellFormed)
{
    const Inserted inserted = afterInserting(L"<p><a/></p>", 1, L" <c/> - <d><e/></d> ");
    EXPECT_FALSE(inserted.isGood);
    EXPECT_EQ(inserted.text, L"<p><c/> - <d><e/></d><a/></p>");
    CMarkup document = onChild(L"<p><a/></p>", 1);
    document.InsertChildFragment(L"<c/><d/>");
    EXPECT_TRUE(document.IsWellFormed());
    EXPECT_EQ(document.GetChildFragment(), L"<c/>");
    document.FindChildElement();
    EXPECT_EQ(document.GetChildFragment(), L"<d/>");
}

TEST(MarkupFragments, DamagedTextGoesInWhole)
{
    CMarkup document = onChild(L"<p><a/></p>", 1);
    EXPECT_FALSE(document.InsertChildFragment(L"x<c><d/></e></c>y"));
    EXPECT_EQ(document.GetText(), L"<p>x<c><d/></e></c>y<a/></p>");
    EXPECT_FALSE(document.IsWellFormed());
    EXPECT_EQ(document.GetChildFragment(), L"<c><d/></e></c>");
    EXPECT_EQ(brokenRule(document), "");
}

TEST(MarkupFragments, DamageAtTheirTopMarksTheParentAndDamageBelowDoesNot)
{
    CMarkup document = onChild(L"<p><a/></p>", 1);
    EXPECT_FALSE(document.InsertChildFragment(L"<c></e></c>"));
    EXPECT_TRUE(document.GetIndex()[3].Has(CMarkupRecord::kDamaged));
    EXPECT_FALSE(document.GetIndex()[1].Has(CMarkupRecord::kDamaged));
    EXPECT_FALSE(document.InsertChildFragment(L"<d/></e>"));
    EXPECT_TRUE(document.GetIndex()[1].Has(CMarkupRecord::kDamaged));
    EXPECT_TRUE(document.GetIndex()[0].Has(CMarkupRecord::kIllFormed));
}

TEST(MarkupFragments, TextWithoutElementsGoesInWithoutMovingTheChild)
{
    CMarkup document = onChild(L"<p><a/></p>", 1);
    EXPECT_FALSE(document.InsertChildFragment(L"text"));
    EXPECT_EQ(document.GetText(), L"<p>text<a/></p>");
    EXPECT_EQ(document.GetChildFragment(), L"<a/>");
    EXPECT_TRUE(document.IsWellFormed());
    EXPECT_FALSE(document.InsertChildFragment(L""));
    EXPECT_FALSE(document.InsertChildFragment(nullptr));
    EXPECT_EQ(document.GetText(), L"<p>text<a/></p>");
}

TEST(MarkupFragments, OneTakenGoesInElsewhere)
{
    CMarkup file = onChild(L"<Terrains>\n\t<Terrain name='x' flow='0.5'>note</Terrain>\n</Terrains>", 1);
    CMarkup drawing = onChild(L"<Terrains></Terrains>", 0);
    EXPECT_TRUE(drawing.InsertChildFragment(file.GetChildFragment()));
    EXPECT_EQ(drawing.GetText(), L"<Terrains><Terrain name='x' flow='0.5'>note</Terrain></Terrains>");
    EXPECT_EQ(differenceToFreshParse(drawing), "");
}

TEST(MarkupFragments, MayBeAPartOfTheDocumentItself)
{
    CMarkup document = onChild(L"<p><a x='1'/></p>", 1);
    EXPECT_TRUE(document.InsertChildFragment(document.GetText()));
    EXPECT_EQ(document.GetText(), L"<p><p><a x='1'/></p><a x='1'/></p>");
    EXPECT_EQ(differenceToFreshParse(document), "");
}

TEST(MarkupEdits, LeaveAllOtherTextByteForByte)
{
    const std::wstring before = L"\uFEFF<?xml  version='1.0' ?>\n<!-- \u0160 -->\n<p  a = '1'\n>\t<!--x--> ";
    const std::wstring behind = L"\n<![CDATA[ <&> ]]>&nbsp;\n<b   c='2'/ ></b></p >\n<!-- end -->\n\n";
    CMarkup document;
    document.SetText(before + L"<e f='1'/>" + behind);
    document.FindElement();
    document.FindChildElement(L"e");
    document.SetChildAttribute(L"f", L"2");
    EXPECT_EQ(document.GetText(), before + L"<e f=\"2\"/>" + behind);
    document.AddChildElement(L"g", L"x");
    document.RemoveChildElement();
    document.SetChildText(L"y");
    EXPECT_EQ(document.GetText(), before + L"<e f=\"2\">y</e>" + behind);
    EXPECT_EQ(differenceToFreshParse(document), "");
}

} // namespace
