// Positions, searches, named positions and paths.
#include "catalog/Markup.h"

#include <gtest/gtest.h>

namespace {

constexpr wchar_t kTown[] =
    L"<town><street n='1'><house/><yard/><house k='2'/></street><square/><street n='2'/></town>";

CMarkup parsed(const wchar_t *text)
{
    CMarkup document;
    document.SetText(text);
    return document;
}

TEST(MarkupWalk, FindElementGoesForwardAmongSiblings)
{
    CMarkup document = parsed(kTown);
    EXPECT_TRUE(document.FindElement(L"town"));
    EXPECT_TRUE(document.EnterChild());
    EXPECT_TRUE(document.FindElement(L"square"));
    EXPECT_TRUE(document.FindElement(L"street"));
    EXPECT_EQ(document.GetAttribute(L"n"), L"2");
    EXPECT_FALSE(document.FindElement(L"street"));
}

TEST(MarkupWalk, AFailedSearchMovesNothing)
{
    CMarkup document = parsed(kTown);
    document.FindElement();
    document.FindChildElement(L"street");
    EXPECT_FALSE(document.FindElement(L"village"));
    EXPECT_EQ(document.GetElementPath(), L"/town");
    EXPECT_FALSE(document.FindChildElement(L"house"));
    EXPECT_EQ(document.GetChildAttribute(L"n"), L"1");
    EXPECT_TRUE(document.FindChildElement(L"street"));
    EXPECT_FALSE(document.FindChildElement(L"street"));
    EXPECT_EQ(document.GetChildAttribute(L"n"), L"2");
}

TEST(MarkupWalk, FindElementClearsTheChild)
{
    CMarkup document = parsed(kTown);
    document.FindElement();
    document.EnterChild();
    document.FindElement();
    document.FindChildElement(L"yard");
    document.FindElement(L"square");
    EXPECT_EQ(document.GetChildFragment(), L"");
}

TEST(MarkupWalk, WithoutANameEveryElementIsFound)
{
    CMarkup document = parsed(kTown);
    document.FindElement();
    int children = 0;
    while (document.FindChildElement())
        ++children;
    EXPECT_EQ(children, 3);
    EXPECT_EQ(document.GetChildAttribute(L"n"), L"2");
}

TEST(MarkupWalk, AnEmptyNameIsNoName)
{
    CMarkup document = parsed(kTown);
    EXPECT_FALSE(document.FindElement(L""));
    EXPECT_TRUE(document.FindElement(nullptr));
}

TEST(MarkupWalk, FindChildElementTakesTheNextElementAsMainFirst)
{
    CMarkup document = parsed(kTown);
    EXPECT_TRUE(document.FindChildElement(L"square"));
    EXPECT_EQ(document.GetElementPath(), L"/town");
    EXPECT_EQ(document.GetChildFragment(), L"<square/>");
    document.Rewind();
    EXPECT_FALSE(document.FindChildElement(L"house"));
    EXPECT_EQ(document.GetElementPath(), L"") << "on a miss nothing moves";
    EXPECT_TRUE(document.FindElement(L"town"));
}

TEST(MarkupWalk, EnterChildAndLeaveElementGoALevelDownAndUp)
{
    CMarkup document = parsed(kTown);
    EXPECT_FALSE(document.EnterChild()) << "needs a main element";
    document.FindChildElement(L"street");
    EXPECT_TRUE(document.EnterChild());
    EXPECT_EQ(document.GetElementPath(), L"/town/street") << "the child is the main element now";
    EXPECT_EQ(document.GetChildFragment(), L"");
    EXPECT_TRUE(document.FindChildElement(L"yard"));
    EXPECT_TRUE(document.LeaveElement());
    EXPECT_EQ(document.GetElementPath(), L"/town");
    EXPECT_EQ(document.GetChildAttribute(L"n"), L"1") << "the main element is the child again";
    EXPECT_FALSE(document.LeaveElement()) << "the document has no parent";
    EXPECT_EQ(document.GetElementPath(), L"/town");
}

TEST(MarkupWalk, EnteringWithoutAChildStartsBeforeTheFirst)
{
    CMarkup document = parsed(kTown);
    document.FindElement();
    EXPECT_TRUE(document.EnterChild());
    EXPECT_EQ(document.GetElementPath(), L"");
    EXPECT_EQ(document.GetNodeType(), CMarkup::kNoNode);
    EXPECT_TRUE(document.FindElement());
    EXPECT_EQ(document.GetElementPath(), L"/town/street");
    EXPECT_EQ(document.GetNodeType(), CMarkup::kElement);
}

TEST(MarkupWalk, PositionsPersistUntilRewind)
{
    CMarkup document = parsed(kTown);
    EXPECT_TRUE(document.FindElement(L"town"));
    EXPECT_FALSE(document.FindElement(L"town"));
    document.Rewind();
    EXPECT_TRUE(document.FindElement(L"town"));
}

TEST(MarkupWalk, DamageOnlyMakesASearchFindLess)
{
    CMarkup document = parsed(L"<a><b><c x='1'/></a>");
    EXPECT_TRUE(document.FindChildElement(L"b"));
    EXPECT_TRUE(document.FindChildElement(L"c"));
    EXPECT_EQ(document.GetChildAttribute(L"x"), L"1");
}

TEST(MarkupNames, AGivenNameMayGoOnBehindTheTagName)
{
    for (const wchar_t *name : {L"street", L"street x", L"street=1", L"street/house", L"street[2]", L"street]"}) {
        CMarkup document = parsed(kTown);
        EXPECT_TRUE(document.FindChildElement(name)) << name;
    }
    for (const wchar_t *name : {L"streets", L"stree", L"street\t", L"Street", L"street>"}) {
        CMarkup document = parsed(kTown);
        EXPECT_FALSE(document.FindChildElement(name)) << name;
    }
}

TEST(MarkupNames, TextsMayBeStrings)
{
    CMarkup document = parsed(kTown);
    const std::wstring name = L"square";
    EXPECT_TRUE(document.FindChildElement(name));
    EXPECT_TRUE(document.SetChildAttribute(name, std::wstring(L"4")));
    EXPECT_EQ(document.GetChildAttribute(std::wstring_view(name)), L"4");
}

TEST(MarkupNamedPositions, AreRestoredWithAllThreePositions)
{
    CMarkup document = parsed(kTown);
    document.FindChildElement(L"street");
    document.EnterChild();
    document.FindChildElement(L"yard");
    document.SavePosition(L"yard");
    document.Rewind();
    document.FindElement();
    document.SavePosition(L"town");
    EXPECT_TRUE(document.RestorePosition(L"yard"));
    EXPECT_EQ(document.GetElementPath(), L"/town/street");
    EXPECT_EQ(document.GetChildFragment(), L"<yard/>");
    EXPECT_TRUE(document.LeaveElement());
    EXPECT_EQ(document.GetElementPath(), L"/town");
    EXPECT_TRUE(document.RestorePosition(L"town"));
    EXPECT_EQ(document.GetChildFragment(), L"");
    EXPECT_FALSE(document.RestorePosition(L"elsewhere"));
    EXPECT_EQ(document.GetElementPath(), L"/town");
}

TEST(MarkupNamedPositions, ManyNamesShareSevenPlaces)
{
    CMarkup document = parsed(kTown);
    document.FindElement();
    document.FindChildElement();
    for (int i = 0; i < 100; ++i) {
        document.SetChildAttribute(L"n", std::to_wstring(i));
        if (i % 2 == 0)
            document.SavePosition(L"p" + std::to_wstring(i));
    }
    for (int i = 0; i < 100; ++i)
        EXPECT_EQ(document.RestorePosition(L"p" + std::to_wstring(i)), i % 2 == 0) << i;
}

TEST(MarkupNamedPositions, ALaterOneOfTheNameReplacesTheEarlier)
{
    CMarkup document = parsed(kTown);
    document.SavePosition(L"here");
    document.FindElement();
    document.SavePosition(L"here");
    document.Rewind();
    EXPECT_TRUE(document.RestorePosition(L"here"));
    EXPECT_EQ(document.GetElementPath(), L"/town");
}

TEST(MarkupNamedPositions, AreDroppedByAParse)
{
    CMarkup document = parsed(kTown);
    document.SavePosition(L"here");
    document.SetText(kTown);
    EXPECT_FALSE(document.RestorePosition(L"here"));
}

TEST(MarkupNamedPositions, OfARemovedElementAreRefused)
{
    CMarkup document = parsed(kTown);
    document.FindChildElement(L"street");
    document.EnterChild();
    document.FindChildElement();
    document.SavePosition(L"house");
    document.LeaveElement();
    EXPECT_TRUE(document.RemoveChildElement());
    EXPECT_FALSE(document.RestorePosition(L"house"));
    EXPECT_EQ(document.GetElementPath(), L"/town");
}

TEST(MarkupNamedPositions, FollowTheirElementsThroughEdits)
{
    CMarkup document = parsed(kTown);
    document.FindElement();
    document.FindChildElement(L"square");
    document.SavePosition(L"square");
    document.Rewind();
    document.FindChildElement(L"street");
    document.SetChildAttribute(L"name", L"a long name before the square");
    EXPECT_TRUE(document.RestorePosition(L"square"));
    EXPECT_EQ(document.GetChildFragment(), L"<square/>");
}

TEST(MarkupPaths, NumberThoseWithEarlierSiblingsOfTheirName)
{
    CMarkup document = parsed(kTown);
    EXPECT_EQ(document.GetElementPath(), L"");
    document.FindChildElement(L"street");
    document.EnterChild();
    EXPECT_EQ(document.GetElementPath(), L"/town/street");
    document.EnterChild();
    document.FindElement(L"house");
    EXPECT_EQ(document.GetElementPath(), L"/town/street/house");
    document.FindElement(L"house");
    EXPECT_EQ(document.GetElementPath(), L"/town/street/house[2]");
    document.LeaveElement();
    document.FindElement(L"street");
    EXPECT_EQ(document.GetElementPath(), L"/town/street[2]");
}

} // namespace
