// What a parse finds, and what it says about damage.
#include "catalog/Markup.h"
#include "catalog/MarkupSTL.h"
#include "tests/catalog/IndexCheck.h"

#include <gtest/gtest.h>

#include <vector>

using markup_check::brokenRule;
using markup_check::differenceToFreshParse;

namespace {

/// The elements as "(a(b)(c))", those without an end tag with "!".
std::wstring treeOf(const CMarkup &document)
{
    const CMarkupIndex &index = document.GetIndex();
    std::wstring tree;
    const auto add = [&](const auto &self, std::uint32_t i) -> void {
        const std::wstring_view text = document.GetText().substr(index[i].start + 1);
        tree += L'(' + std::wstring(text.substr(0, text.find_first_of(L" \t\r\n/>")));
        if (index[i].Has(CMarkupRecord::kNotEnded))
            tree += L'!';
        for (std::uint32_t child = index[i].firstChild; child != 0; child = index[child].next)
            self(self, child);
        tree += L')';
    };
    for (std::uint32_t i = index[0].firstChild; i != 0; i = index[i].next)
        add(add, i);
    return tree;
}

struct ParseCase {
    const char *name;
    std::wstring text;
    std::wstring tree;
    bool isWellFormed;
    std::wstring error;
};

void PrintTo(const ParseCase &parsed, std::ostream *out)
{
    *out << markup_check::narrow(parsed.text);
}

class MarkupParse : public testing::TestWithParam<ParseCase> {};

TEST_P(MarkupParse, GivesTheTreeAndTheFirstError)
{
    const ParseCase &expected = GetParam();
    CMarkup document;
    EXPECT_EQ(document.SetText(expected.text), expected.isWellFormed);
    EXPECT_EQ(treeOf(document), expected.tree);
    EXPECT_EQ(document.IsWellFormed(), expected.isWellFormed);
    EXPECT_EQ(document.GetErrorText(), expected.error);
    EXPECT_EQ(document.GetText(), expected.text);
    EXPECT_EQ(brokenRule(document), "");
}

std::string nameOf(const testing::TestParamInfo<ParseCase> &info)
{
    return info.param.name;
}

const ParseCase kTrees[] = {
    {"AnEmptyElement", L"<a/>", L"(a)", true, L""},
    {"AnElementWithEndTag", L"<a></a>", L"(a)", true, L""},
    {"ChildrenInOrder", L"<a><b/><c><d/></c><e></e></a>", L"(a(b)(c(d))(e))", true, L""},
    {"ADeclarationCommentsAndTypesAreSkipped",
     L"<?xml version=\"1.0\"?><!DOCTYPE a [<!ELEMENT a ANY>]><!-- <x> --><a><?p <y/>?><![CDATA[<z>]]></a>", L"(a)",
     true, L""},
    {"ADocumentTypeEndsWhereNothingIsOpenInIt", L"<!DOCTYPE a [<!ENTITY x '1'><!ENTITY y '2'>]><a/>", L"(a)", true,
     L""},
    {"ADeclarationAloneEndsAtTheFirstClose", L"<!ELEMENT a ANY><!ATTLIST a b CDATA><!NOTATION n><a/>", L"(a)", true,
     L""},
    {"TextMayStandAroundTheRoot", L"before<a/>behind", L"(a)", true, L""},
    {"AByteOrderMarkIsTextBeforeTheRoot", L"\uFEFF<a/>", L"(a)", true, L""},
    {"NamesStartWithALetterAnUnderscoreAColonOrWhatIsAboveA", L"<r><A/><z/><_/><:/><\u0161uma/><{/><~/></r>",
     L"(r(A)(z)(_)(:)(\u0161uma)({)(~))", true, L""},
    {"AQuotedCloseDoesNotEndATag", L"<a b=\">\" c='>'><d/></a>", L"(a(d))", true, L""},
    {"QuotesProtectOneAnother", L"<a b=\"'>\" c='\">'/>", L"(a)", true, L""},
    {"AnUnquotedValueMayEndInASlash", L"<a b=c/></a>", L"(a)", true, L""},
    {"ASlashBehindAQuoteCloses", L"<a b=\"c\"/>", L"(a)", true, L""},
    {"ASlashBehindWhiteSpaceCloses", L"<a b=c />", L"(a)", true, L""},
    {"ASlashBehindAWordDoesNotClose", L"<a b/></a>", L"(a)", true, L""},
    {"NamesEndAtWhiteSpaceSlashAndClose", L"<a\tx='1'><b\n/><c\r></c ></a/>", L"(a(b)(c))", true, L""},
    {"NoOtherCharacterIsWhiteSpace", L"<a\u00A0b/>", L"(a\u00A0b)", true, L""},
};
INSTANTIATE_TEST_SUITE_P(Trees, MarkupParse, testing::ValuesIn(kTrees), nameOf);

const ParseCase kDamage[] = {
    {"AnEmptyTextIsAnEmptyDocument", L"", L"", false, L"Empty document"},
    {"TextAloneHasNoRoot", L"text", L"", false, L"No root element"},
    {"WhiteSpaceAloneHasNoRoot", L" \r\n", L"", false, L"No root element"},
    {"ASecondRootIsASibling", L"<a/><b/>", L"(a)(b)", false, L"Root element has sibling"},
    {"AnEndTagThatDoesNotMatchEndsWhatItCan", L"<a><b></a>", L"(a(b!))", false,
     L"End tag 'a' at offset 7 does not match start tag 'b' at offset 3"},
    {"ChildrenOfWhatIsNotEndedBecomeItsSiblings", L"<a><b><c/><d/></a>", L"(a(b!)(c)(d))", false,
     L"End tag 'a' at offset 15 does not match start tag 'b' at offset 3"},
    {"TheInnermostIsToldFirst", L"<a><b><c></a>", L"(a(b!)(c!))", false,
     L"End tag 'a' at offset 10 does not match start tag 'c' at offset 6"},
    {"AnEndTagClosesTheInnermostOfItsName", L"<a><b><b></b></a>", L"(a(b!)(b))", false,
     L"End tag 'a' at offset 14 does not match start tag 'b' at offset 3"},
    {"AnEndTagWithoutStartClosesNothing", L"<a></b></a>", L"(a)", false, L"No start tag for end tag 'b' at offset 4"},
    {"AnEndTagBeforeTheRoot", L"</b><a/>", L"(a)", false, L"No start tag for end tag 'b' at offset 1"},
    {"NamesCompareExactly", L"<a><b></b></A></a>", L"(a(b))", false, L"No start tag for end tag 'A' at offset 11"},
    {"TheEndOfTheTextEndsNothing", L"<a>", L"(a!)", false, L"Element 'a' at offset 0 not ended"},
    {"AllThatIsOpenAtTheEndIsNotEnded", L"<a><b>text", L"(a!)(b!)", false, L"Root element has sibling"},
    {"OfSeveralThatAreNotEndedTheInnermostIsTold", L"<a><b><c></b><d></a>", L"(a(b(c!))(d!))", false,
     L"End tag 'b' at offset 10 does not match start tag 'c' at offset 6"},
    {"TheFirstThatIsNotEndedIsToldWhateverWasToldBefore", L"<a></b><c></a>", L"(a(c!))", false,
     L"End tag 'a' at offset 11 does not match start tag 'c' at offset 7"},
    {"AnEndTagWithoutStartIsToldWhateverWasToldBefore", L"<a><c><b></c></x></y></a>", L"(a(c(b!)))", false,
     L"No start tag for end tag 'y' at offset 18"},
    {"AFaultOfATokenIsToldOnlyFirst", L"<a></x><1><2></a>", L"(a)", false, L"No start tag for end tag 'x' at offset 4"},
    {"TheFirstFaultOfATokenIsKept", L"<a><1><2></a>", L"(a)", false, L"Incorrect tag name character at offset 3"},
    {"NoRootIsToldWhateverWasToldBefore", L"</b>", L"", false, L"No root element"},
    {"ASiblingIsToldWhateverWasToldBefore", L"<a></x></a><b/>", L"(a)(b)", false, L"Root element has sibling"},
    {"NoNameAtAll", L"<a><1></a>", L"(a)", false, L"Incorrect tag name character at offset 3"},
    {"NoNameInAnEndTag", L"<a></></a>", L"(a)", false, L"No start tag for end tag '' at offset 4"},
    {"ABadTokenEndsAtAnOpen", L"<a><1<b/></a>", L"(a(b))", false, L"Incorrect tag name character at offset 3"},
    {"ABadExclamation", L"<a><!x></a>", L"(a)", false, L"Incorrect ! tag at offset 3"},
    {"ABadComment", L"<a><!-x></a>", L"(a)", false, L"Incorrect comment tag at offset 3"},
    {"ABadBracket", L"<a><![x></a>", L"(a)", false, L"Incorrect tag at offset 3"},
    {"ABadTokenBeforeTheRoot", L"<!x><a/>", L"(a)", false, L"Incorrect ! tag at offset 0"},
    {"AnUnterminatedDocumentType", L"<a/><!DOCTYPE a [<!ELEMENT>", L"(a)", false, L"Doctype at offset 4 unterminated"},
    {"AnUnterminatedDeclaration", L"<a/><!ELEMENT", L"(a)", false, L"Doctype at offset 4 unterminated"},
    {"AnUnterminatedTag", L"<a/><b c='>", L"(a)", false, L"Element tag at offset 4 unterminated"},
    {"AnUnterminatedName", L"<a/><b", L"(a)", false, L"Element tag at offset 4 unterminated"},
    {"AnUnterminatedEndTag", L"<a/></a", L"(a)", false, L"Element end tag at offset 4 unterminated"},
    {"AnUnterminatedCData", L"<a/><![CDATA[x]]", L"(a)", false, L"CDATA Section at offset 4 unterminated"},
    {"AnUnterminatedInstruction", L"<a/><?x ?", L"(a)", false, L"Processing instruction at offset 4 unterminated"},
    {"AnUnterminatedComment", L"<a/><!-->", L"(a)", false, L"Comment at offset 4 unterminated"},
    {"AnOpenAtTheEnd", L"<a/><", L"(a)", false, L"tag at offset 4 unterminated"},
    {"AnExclamationAtTheEnd", L"<a/><!", L"(a)", false, L"tag at offset 4 unterminated"},
    {"AHalfCommentAtTheEnd", L"<a/><!-", L"(a)", false, L"tag at offset 4 unterminated"},
    {"ABracketAtTheEnd", L"<a/><![", L"(a)", false, L"tag at offset 4 unterminated"},
};
INSTANTIATE_TEST_SUITE_P(Damage, MarkupParse, testing::ValuesIn(kDamage), nameOf);

bool hasFlag(const CMarkup &document, std::uint32_t i, std::uint32_t flag)
{
    return document.GetIndex()[i].Has(flag);
}

TEST(MarkupFlags, HaveTheirNumbers)
{
    EXPECT_EQ(CMarkupRecord::kEmptyTag, 0x010000u);
    EXPECT_EQ(CMarkupRecord::kDeleted, 0x020000u);
    EXPECT_EQ(CMarkupRecord::kFirstChild, 0x080000u);
    EXPECT_EQ(CMarkupRecord::kNotEnded, 0x100000u);
    EXPECT_EQ(CMarkupRecord::kDamaged, 0x200000u);
    EXPECT_EQ(CMarkupRecord::kIllFormed, 0x800000u);
    EXPECT_EQ(CMarkupRecord::kStartTagMask, 0x2FFFFFu);
    EXPECT_EQ(static_cast<int>(CMarkup::kIgnoreCase), 8);
    EXPECT_EQ(static_cast<int>(CMarkup::kNoNode), 0);
    EXPECT_EQ(static_cast<int>(CMarkup::kElement), 1);
    EXPECT_EQ(static_cast<int>(CMarkup::kStrayEndTag), 0x80);
    EXPECT_EQ(static_cast<int>(CMarkup::kErrorToken), 0x8000);
}

TEST(MarkupFlags, DamageMarksTheOpenElementAndTheDocument)
{
    CMarkup document;
    document.SetText(L"<a><b></x></b></a>");
    EXPECT_TRUE(hasFlag(document, 0, CMarkupRecord::kIllFormed));
    EXPECT_FALSE(hasFlag(document, 0, CMarkupRecord::kDamaged));
    EXPECT_FALSE(hasFlag(document, 1, CMarkupRecord::kDamaged));
    EXPECT_TRUE(hasFlag(document, 2, CMarkupRecord::kDamaged));
}

TEST(MarkupFlags, DamageInAnElementThatIsNotEndedMovesToItsParent)
{
    CMarkup document;
    document.SetText(L"<a><b></x></a>");
    EXPECT_TRUE(hasFlag(document, 1, CMarkupRecord::kDamaged));
    EXPECT_FALSE(hasFlag(document, 2, CMarkupRecord::kDamaged));
    EXPECT_TRUE(hasFlag(document, 2, CMarkupRecord::kNotEnded));
    document.SetText(L"<a><1");
    EXPECT_TRUE(hasFlag(document, 0, CMarkupRecord::kDamaged));
    EXPECT_FALSE(hasFlag(document, 1, CMarkupRecord::kDamaged));
}

TEST(MarkupFlags, TheFirstChildKnowsItIsAndKnowsTheLast)
{
    CMarkup document;
    document.SetText(L"<a><b/><c/><d/></a>");
    EXPECT_TRUE(hasFlag(document, 2, CMarkupRecord::kFirstChild));
    EXPECT_FALSE(hasFlag(document, 3, CMarkupRecord::kFirstChild));
    EXPECT_EQ(document.GetIndex()[2].previous, 4u);
    EXPECT_EQ(document.GetIndex()[4].previous, 3u);
    EXPECT_EQ(document.GetIndex()[4].next, 0u);
}

TEST(MarkupRecords, HoldOffsetsLengthsAndLevels)
{
    CMarkup document;
    document.SetText(L"<a>\n<bc d='1'>x</bc>\n</a>");
    const CMarkupIndex &index = document.GetIndex();
    EXPECT_EQ(index[0].start, 0u);
    EXPECT_EQ(index[0].length, 25u);
    EXPECT_EQ(index[1].length, 25u);
    EXPECT_EQ(index[2].start, 4u);
    EXPECT_EQ(index[2].length, 16u);
    EXPECT_EQ(index[2].tagLengths, 10u | 5u << 22);
    EXPECT_EQ(index[2].Level(), index[1].Level() + 1);
    EXPECT_EQ(index[2].parent, 1u);
}

TEST(MarkupDocument, IsEmptyWithoutAnErrorAtFirst)
{
    CMarkup document;
    EXPECT_EQ(document.GetText(), L"");
    EXPECT_EQ(document.GetErrorText(), L"");
    EXPECT_FALSE(document.IsWellFormed());
    EXPECT_FALSE(document.FindElement());
    EXPECT_FALSE(document.FindChildElement());
    EXPECT_FALSE(document.EnterChild());
    EXPECT_FALSE(document.LeaveElement());
    EXPECT_FALSE(document.AddChildElement(L"a"));
    EXPECT_FALSE(document.InsertChildFragment(L"<a/>"));
    EXPECT_FALSE(document.RemoveChildElement());
    EXPECT_FALSE(document.SetAttribute(L"a", L"1"));
    EXPECT_EQ(document.GetAttribute(L"a"), L"");
    EXPECT_EQ(document.GetChildFragment(), L"");
}

TEST(MarkupDocument, SetTextReplacesAllAndClearsTheError)
{
    CMarkup document;
    document.SetText(L"<a><b>");
    EXPECT_NE(document.GetErrorText(), L"");
    EXPECT_TRUE(document.SetText(L"<c/>"));
    EXPECT_EQ(document.GetErrorText(), L"");
    EXPECT_FALSE(document.FindElement(L"a"));
    EXPECT_TRUE(document.FindElement(L"c"));
    EXPECT_FALSE(document.SetText(nullptr));
    EXPECT_EQ(document.GetErrorText(), L"");
    EXPECT_EQ(document.GetText(), L"");
}

TEST(MarkupDocument, TakesItsOwnText)
{
    CMarkup document;
    document.SetText(L"<a><b/></a>");
    EXPECT_TRUE(document.SetText(document.GetText().substr(3, 4)));
    EXPECT_EQ(document.GetText(), L"<b/>");
}

TEST(MarkupDocument, HoldsNullCharacters)
{
    CMarkup document;
    const std::wstring text(L"<a>\0<b c='\0'/>\0</a>", 20);
    EXPECT_TRUE(document.SetText(text));
    EXPECT_EQ(document.GetText(), text);
    document.FindElement();
    EXPECT_TRUE(document.FindChildElement());
    EXPECT_EQ(document.GetChildAttribute(L"c"), std::wstring(1, L'\0'));
}

TEST(MarkupDocument, IsABaseOfCatalogues)
{
    struct Catalog : CMarkupSTL {
        explicit Catalog(bool &isGone) : m_isGone(isGone) {}
        ~Catalog() override { m_isGone = true; }
        bool &m_isGone;
    };
    bool isGone = false;
    std::unique_ptr<CMarkupSTL> pBase = std::make_unique<Catalog>(isGone);
    EXPECT_TRUE(pBase->SetText(L"<a/>"));
    pBase.reset();
    EXPECT_TRUE(isGone);
}

TEST(MarkupDocument, ACopyIsItsOwn)
{
    CMarkup first;
    first.SetText(L"<a><b/><c/></a>");
    first.FindElement();
    first.FindChildElement(L"c");
    first.SavePosition(L"here");
    CMarkup second(first);
    EXPECT_TRUE(second.SetChildAttribute(L"x", L"1"));
    EXPECT_EQ(second.GetText(), L"<a><b/><c x=\"1\"/></a>");
    EXPECT_EQ(first.GetText(), L"<a><b/><c/></a>");
    second.Rewind();
    EXPECT_TRUE(second.RestorePosition(L"here"));
    EXPECT_EQ(second.GetChildAttribute(L"x"), L"1");
    CMarkup third;
    third = first;
    first.SetText(nullptr);
    EXPECT_EQ(third.GetText(), L"<a><b/><c/></a>");
    EXPECT_TRUE(third.RestorePosition(L"here"));
    EXPECT_EQ(third.GetChildFragment(), L"<c/>");
    third = *&third;
    EXPECT_EQ(third.GetText(), L"<a><b/><c/></a>");
}

TEST(MarkupDocument, ACopyTakenDeepInTheTreeGoesOnFromThere)
{
    CMarkup first;
    first.SetDocumentFlags(CMarkup::kIgnoreCase);
    first.SetText(L"<r><a><b><c/><d/></b></A><e/><f/></r>");
    first.FindChildElement(L"a");
    first.EnterChild();
    first.FindChildElement(L"b");
    first.EnterChild();
    first.FindChildElement(L"c");
    ASSERT_TRUE(first.AddChildElement(L"new")); // its record stands behind those of what follows it

    CMarkup copy(first);
    EXPECT_EQ(copy.GetDocumentFlags(), CMarkup::kIgnoreCase);
    EXPECT_EQ(copy.GetNodeType(), CMarkup::kElement);
    EXPECT_EQ(copy.GetElementPath(), L"/r/a/b");
    EXPECT_TRUE(copy.FindChildElement(L"D"));
    EXPECT_TRUE(copy.SetChildAttribute(L"x", L"1"));
    EXPECT_EQ(copy.GetText(), L"<r><a><b><c/><new/>\r\n<d x=\"1\"/></b></A><e/><f/></r>");
    EXPECT_EQ(differenceToFreshParse(copy), "");
    EXPECT_TRUE(copy.LeaveElement());
    EXPECT_EQ(copy.GetElementPath(), L"/r/a");
    EXPECT_EQ(copy.GetNodeName(), L"a");
    EXPECT_TRUE(copy.RemoveChildElement());
    EXPECT_TRUE(copy.LeaveElement());
    EXPECT_TRUE(copy.FindChildElement(L"E"));
    EXPECT_EQ(copy.GetText(), L"<r><a></A><e/><f/></r>");
    EXPECT_EQ(differenceToFreshParse(copy), "");
    EXPECT_EQ(first.GetElementPath(), L"/r/a/b");
    EXPECT_EQ(differenceToFreshParse(first), "");
}

TEST(MarkupDocument, ACopyStandsOnTheSameNode)
{
    CMarkup first;
    first.SetText(L"<r><a/><!--one--><b/><!--two--></r>");
    first.FindElement();
    first.EnterChild();
    ASSERT_EQ(first.FindNode(CMarkup::kComment), CMarkup::kComment);
    CMarkup copy;
    copy = first;
    EXPECT_EQ(copy.GetNodeType(), CMarkup::kComment);
    EXPECT_EQ(copy.GetNodeText(), L"one");
    CMarkup walking(copy);
    EXPECT_TRUE(walking.FindElement());
    EXPECT_EQ(walking.GetNodeName(), L"b") << "the one behind the node";
    EXPECT_TRUE(copy.FindNode(CMarkup::kComment) && copy.GetNodeText() == L"two");
}

TEST(MarkupDocument, ACopyTellsTheSameError)
{
    CMarkup first;
    first.SetText(L"<a/><b/>");
    const CMarkup copy(first);
    EXPECT_EQ(copy.GetErrorText(), L"Root element has sibling");
    EXPECT_FALSE(copy.IsWellFormed());
}

TEST(MarkupDocument, NamesMayCompareWithoutRegardToCase)
{
    CMarkup document;
    document.SetDocumentFlags(CMarkup::kIgnoreCase);
    EXPECT_TRUE(document.SetText(L"<Root><Item NAME='1'></ITEM></rOOT>"));
    EXPECT_TRUE(document.FindElement(L"ROOT"));
    EXPECT_TRUE(document.FindChildElement(L"item"));
    EXPECT_EQ(document.GetChildAttribute(L"name"), L"1");
    document.SetDocumentFlags(0);
    EXPECT_FALSE(document.SetText(document.GetText()));
}

} // namespace
