// Walking over nodes of every kind, and adding them.
#include "catalog/Markup.h"
#include "tests/catalog/IndexCheck.h"

#include <gmock/gmock.h>

using markup_check::differenceToFreshParse;
using testing::ElementsAre;

namespace {

struct Node {
    int type;
    std::wstring name, text;
    bool operator==(const Node &) const = default;
};

void PrintTo(const Node &node, std::ostream *out)
{
    *out << node.type << ' ' << markup_check::narrow(node.name) << " [" << markup_check::narrow(node.text) << ']';
}

std::vector<Node> nodesOf(CMarkup &document, int types = 0)
{
    std::vector<Node> nodes;
    while (document.FindNode(types) != CMarkup::kNoNode)
        nodes.push_back({document.GetNodeType(), document.GetNodeName(), document.GetNodeText()});
    return nodes;
}

TEST(MarkupNodes, AreAllTokensOfTheParent)
{
    CMarkup document;
    document.SetText(L"<?xml version='1.0'?>\n<!DOCTYPE note [<!ENTITY x 'y'>]><!-- c --><note>n</note>tail &amp;");
    EXPECT_THAT(nodesOf(document),
                ElementsAre(Node{CMarkup::kProcessingInstruction, L"xml", L"xml version='1.0'"},
                            Node{CMarkup::kWhiteSpace, L"#text", L"\n"},
                            Node{CMarkup::kDocumentType, L"note", L"<!DOCTYPE note [<!ENTITY x 'y'>]>"},
                            Node{CMarkup::kComment, L"#comment", L" c "}, Node{CMarkup::kElement, L"note", L"n"},
                            Node{CMarkup::kText, L"#text", L"tail &"}));
}

TEST(MarkupNodes, InsideAnElement)
{
    CMarkup document;
    document.SetText(L"<a>x<b/><![CDATA[<y>]]> <c>d<e/></c></a>");
    document.FindElement();
    document.EnterChild();
    EXPECT_THAT(nodesOf(document),
                ElementsAre(Node{CMarkup::kText, L"#text", L"x"}, Node{CMarkup::kElement, L"b", L""},
                            Node{CMarkup::kCDataSection, L"#cdata-section", L"<y>"},
                            Node{CMarkup::kWhiteSpace, L"#text", L" "}, Node{CMarkup::kElement, L"c", L""}));
}

TEST(MarkupNodes, StrayEndTagsAndErrorsHaveTypesOfTheirOwn)
{
    CMarkup document;
    document.SetText(L"<a></b><1>x</a>");
    document.FindElement();
    document.EnterChild();
    EXPECT_EQ(document.FindNode(), 0x80);
    EXPECT_EQ(document.GetNodeName(), L"b");
    EXPECT_EQ(document.GetNodeOffset(), 3);
    EXPECT_EQ(document.GetNodeLength(), 4);
    EXPECT_EQ(document.FindNode(), 0x8000);
    EXPECT_EQ(document.GetNodeName(), L"");
    EXPECT_EQ(document.GetNodeText(), L"<1>");
    EXPECT_EQ(document.GetNodeOffset(), 7);
    EXPECT_EQ(document.FindNode(), CMarkup::kText);
    EXPECT_EQ(document.FindNode(), CMarkup::kNoNode);
}

TEST(MarkupNodes, ElementsThatAreNotEndedAreElements)
{
    CMarkup document;
    document.SetText(L"<a><b>x<c/></a>");
    document.FindElement();
    document.EnterChild();
    EXPECT_THAT(nodesOf(document), ElementsAre(Node{CMarkup::kElement, L"b", L""}, Node{CMarkup::kText, L"#text", L"x"},
                                               Node{CMarkup::kElement, L"c", L""}));
}

TEST(MarkupNodes, OnlySomeTypesMayBeAskedFor)
{
    CMarkup document;
    document.SetText(L"<a>x<b/><!-- 1 --> <c/><!-- 2 --></a>");
    document.FindElement();
    document.EnterChild();
    EXPECT_THAT(nodesOf(document, CMarkup::kComment | CMarkup::kText),
                ElementsAre(Node{CMarkup::kText, L"#text", L"x"}, Node{CMarkup::kComment, L"#comment", L" 1 "},
                            Node{CMarkup::kComment, L"#comment", L" 2 "}));
}

TEST(MarkupNodes, AWalkOverALongListLooksAtEachElementOnce)
{
    // If each step looked for its place from the first element on, this would take hours.
    constexpr int kCount = 1000000;
    std::wstring text = L"<a>";
    for (int i = 0; i < kCount; ++i)
        text += L"<b/>\n";
    CMarkup document;
    document.SetText(text + L"</a>");
    document.FindElement();
    document.EnterChild();
    int elements = 0, others = 0;
    while (document.FindNode(CMarkup::kWhiteSpace) == CMarkup::kWhiteSpace) {
        ++others;
        elements += document.FindElement() ? 1 : 0;
    }
    EXPECT_EQ(others, kCount);
    EXPECT_EQ(elements, kCount - 1);
}

TEST(MarkupNodes, AMissMovesNothing)
{
    CMarkup document;
    document.SetText(L"<a><!-- 1 --><b/></a>");
    document.FindElement();
    document.EnterChild();
    document.FindNode();
    EXPECT_EQ(document.FindNode(CMarkup::kText), CMarkup::kNoNode);
    EXPECT_EQ(document.GetNodeType(), CMarkup::kComment);
    EXPECT_EQ(document.GetNodeText(), L" 1 ");
}

TEST(MarkupNodes, ASearchGoesOnBehindTheNode)
{
    CMarkup document;
    document.SetText(L"<a><b n='1'/><!-- 1 --><b n='2'/><b n='3'/></a>");
    document.FindElement();
    document.EnterChild();
    EXPECT_EQ(document.FindNode(CMarkup::kComment), CMarkup::kComment);
    EXPECT_EQ(document.GetAttribute(L"n"), L"") << "no main element";
    EXPECT_TRUE(document.FindElement(L"b"));
    EXPECT_EQ(document.GetAttribute(L"n"), L"2");
    EXPECT_EQ(document.GetNodeOffset(), 0);
    EXPECT_EQ(document.GetNodeLength(), 0);
}

TEST(MarkupNodes, AreLeftThroughTheParent)
{
    CMarkup document;
    document.SetText(L"<a><!-- 1 --></a>");
    document.FindElement();
    document.EnterChild();
    document.FindNode();
    EXPECT_FALSE(document.EnterChild());
    EXPECT_TRUE(document.LeaveElement());
    EXPECT_EQ(document.GetElementPath(), L"/a");
    EXPECT_EQ(document.GetNodeType(), CMarkup::kElement);
}

/// Adds a node behind the first element of the root.
std::wstring afterAdding(int type, const wchar_t *text)
{
    CMarkup document;
    document.SetText(L"<a><b/><c/></a>");
    document.FindElement();
    document.EnterChild();
    document.FindElement();
    if (!document.AddNode(type, text)) {
        EXPECT_EQ(document.GetText(), L"<a><b/><c/></a>");
        return L"refused";
    }
    EXPECT_EQ(differenceToFreshParse(document), "");
    EXPECT_EQ(document.GetNodeType(), type);
    EXPECT_TRUE(document.FindElement(L"c"));
    return std::wstring(document.GetText());
}

TEST(MarkupAddNode, PutsTheWrapperAroundTheText)
{
    EXPECT_EQ(afterAdding(CMarkup::kComment, L" x "), L"<a><b/><!-- x -->\r\n<c/></a>");
    EXPECT_EQ(afterAdding(CMarkup::kProcessingInstruction, L"x y"), L"<a><b/><?x y?>\r\n<c/></a>");
    EXPECT_EQ(afterAdding(CMarkup::kDocumentType, L"x"), L"<a><b/><!DOCTYPE x>\r\n<c/></a>");
    EXPECT_EQ(afterAdding(CMarkup::kCDataSection, L"<x>"), L"<a><b/><![CDATA[<x>]]><c/></a>");
    EXPECT_EQ(afterAdding(CMarkup::kText, L"x < y"), L"<a><b/>x &lt; y<c/></a>");
    EXPECT_EQ(afterAdding(CMarkup::kWhiteSpace, L"\n\t"), L"<a><b/>\n\t<c/></a>");
}

TEST(MarkupAddNode, RefusesWhatWouldEndTheWrapperEarly)
{
    EXPECT_EQ(afterAdding(CMarkup::kComment, L"x-->y"), L"refused");
    EXPECT_EQ(afterAdding(CMarkup::kProcessingInstruction, L"x?>y"), L"refused");
    EXPECT_EQ(afterAdding(CMarkup::kDocumentType, L"x>y"), L"refused");
    EXPECT_EQ(afterAdding(CMarkup::kCDataSection, L"x]]>y"), L"refused");
    EXPECT_EQ(afterAdding(CMarkup::kWhiteSpace, L" x"), L"refused");
    EXPECT_EQ(afterAdding(CMarkup::kText, L""), L"refused");
    EXPECT_EQ(afterAdding(CMarkup::kElement, L"x"), L"refused");
    EXPECT_EQ(afterAdding(CMarkup::kErrorToken, L"<1>"), L"refused");
    EXPECT_EQ(afterAdding(CMarkup::kNoNode, L"x"), L"refused");
}

TEST(MarkupAddNode, GoesBehindTheCurrentNode)
{
    CMarkup document;
    document.SetText(L"<a>x<b/></a>");
    document.FindElement();
    document.EnterChild();
    document.FindNode();
    EXPECT_TRUE(document.AddNode(CMarkup::kComment, L"1"));
    EXPECT_TRUE(document.AddNode(CMarkup::kComment, L"2"));
    EXPECT_EQ(document.GetText(), L"<a>x<!--1-->\r\n<!--2-->\r\n<b/></a>");
    EXPECT_EQ(document.GetNodeText(), L"2");
    EXPECT_EQ(differenceToFreshParse(document), "");
}

TEST(MarkupAddNode, GoesBehindTheWhiteSpaceThatEndsTheText)
{
    CMarkup document;
    document.SetText(L"<a/>\n");
    document.FindElement();
    EXPECT_TRUE(document.AddNode(CMarkup::kComment, L"1"));
    EXPECT_EQ(document.GetText(), L"<a/>\n<!--1-->\r\n");
    EXPECT_EQ(differenceToFreshParse(document), "");
}

TEST(MarkupAddNode, ATextBeforeAnotherIsANodeOfItsOwn)
{
    CMarkup document;
    document.SetText(L"<a><b/>tail</a>");
    document.FindElement();
    document.EnterChild();
    document.FindElement();
    EXPECT_TRUE(document.AddNode(CMarkup::kText, L"<"));
    EXPECT_EQ(document.GetText(), L"<a><b/>&lt;tail</a>");
    EXPECT_EQ(document.GetNodeText(), L"<");
    EXPECT_EQ(document.FindNode(), CMarkup::kText);
    EXPECT_EQ(document.GetNodeText(), L"tail");
}

TEST(MarkupAddNode, WithoutAPositionGoesToTheEnd)
{
    CMarkup document;
    document.SetText(L"<a><b/>tail</a>");
    document.FindElement();
    document.EnterChild();
    EXPECT_TRUE(document.AddNode(CMarkup::kText, L"x"));
    EXPECT_EQ(document.GetText(), L"<a><b/>tailx</a>");
    document.SetText(L"<a/>");
    EXPECT_TRUE(document.AddNode(CMarkup::kComment, L"end"));
    EXPECT_EQ(document.GetText(), L"<a/><!--end-->\r\n");
    EXPECT_EQ(differenceToFreshParse(document), "");
    document.Rewind();
    document.FindElement();
    document.EnterChild();
    EXPECT_TRUE(document.AddNode(CMarkup::kText, L"in"));
    EXPECT_EQ(document.GetText(), L"<a>in</a><!--end-->\r\n");
    EXPECT_EQ(differenceToFreshParse(document), "");
}

TEST(MarkupAddNode, ADeclarationMayBeginAnEmptyDocument)
{
    CMarkup document;
    EXPECT_TRUE(document.AddNode(CMarkup::kProcessingInstruction, L"xml version=\"1.0\""));
    EXPECT_EQ(document.GetText(), L"<?xml version=\"1.0\"?>\r\n");
    EXPECT_EQ(document.GetNodeName(), L"xml");
}

} // namespace
