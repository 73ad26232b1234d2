// acedSSGet by its arguments, blanked and highlighted entities.
#include "tests/contracts/ContractsFixture.h"

#include "host/editor/SelectionFilter.h"

namespace velmor::test {
namespace {

class SelectionContract : public ContractsFixture {
protected:
    AcDbObjectIdArray membersOf(const ads_name set) { return session.selectionSets().find(set)->members(); }
    AcDbObjectIdArray select(const wchar_t *mode, const void *first = nullptr, const void *second = nullptr,
                             const resbuf *filter = nullptr)
    {
        ads_name set{};
        status = acedSSGet(mode, first, second, filter, set);
        return status == RTNORM ? membersOf(set) : AcDbObjectIdArray();
    }
    static resbuf *chainOf(std::initializer_list<std::pair<short, const wchar_t *>> items)
    {
        resbuf *chain = nullptr, **end = &chain;
        for (const auto &[code, text] : items) {
            *end = acutBuildList(RTSTR, text, 0);
            (*end)->restype = code;
            end = &(*end)->rbnext;
        }
        return chain;
    }
    /// acutRelRb frees texts by the kind RTSTR.
    static void release(resbuf *chain)
    {
        for (resbuf *item = chain; item; item = item->rbnext)
            if (item->restype != 62)
                item->restype = RTSTR;
        acutRelRb(chain);
    }
    int status = 0;
};

TEST_F(SelectionContract, AWindowTakesWhatLiesInsideAndACrossingBoxWhatItTouches)
{
    const AcDbObjectId inside = line(1, 1, 9, 9), across = line(5, 5, 20, 5), around = box(-5, -5, 15, 15);
    line(30, 30, 40, 40);
    const ads_point low = {0, 0, 0}, high = {10, 10, 0};
    EXPECT_EQ(select(L"W", low, high), (AcDbObjectIdArray{inside}));
    EXPECT_EQ(select(L"C", high, low), (AcDbObjectIdArray{inside, across})) << "corners in any order";
    EXPECT_EQ(select(L"_W", low, high), (AcDbObjectIdArray{inside}));
    const ads_point lower = {-6, -6, 0}, higher = {16, 16, 0};
    EXPECT_EQ(select(L"W", lower, higher), (AcDbObjectIdArray{inside, around}));
}

TEST_F(SelectionContract, AnArcThatBulgesOutOfTheWindowIsNotInside)
{
    // Ends within the box, the middle outside.
    const auto arc = drawing().append(
        std::make_unique<AcDbPolyline>(std::vector<AcDbPolyline::Vertex>{{2, 2, 1.0}, {2, 8, 0}}, false));
    const ads_point low = {0, 0, 0}, high = {4, 10, 0};
    EXPECT_TRUE(select(L"W", low, high).empty());
    EXPECT_EQ(status, RTERROR);
    EXPECT_EQ(select(L"C", low, high), (AcDbObjectIdArray{arc}));
}

TEST_F(SelectionContract, PolygonsAndFencesTakePointsInAChain)
{
    const AcDbObjectId inside = line(4, 1, 6, 1), outside = line(0, 9, 1, 9), crossing = line(5, -5, 5, 20);
    const ads_point a = {0, 0, 0}, b = {10, 0, 0}, c = {5, 10, 0}, d = {-1, 8, 0}, e = {12, 8, 0};
    resbuf *triangle = acutBuildList(RTPOINT, a, RTPOINT, b, RTPOINT, c, 0);
    EXPECT_EQ(select(L"WP", triangle), (AcDbObjectIdArray{inside}));
    EXPECT_EQ(select(L"CP", triangle), (AcDbObjectIdArray{inside, crossing}));
    acutRelRb(triangle);
    resbuf *fence = acutBuildList(RTPOINT, d, RTPOINT, e, 0);
    EXPECT_EQ(select(L"F", fence), (AcDbObjectIdArray{crossing}));
    acutRelRb(fence);
    EXPECT_TRUE(select(L"WP").empty());
    EXPECT_EQ(status, RTREJ) << "without points";
    (void)outside;
}

TEST_F(SelectionContract, AllLastPreviousAndAtAPoint)
{
    const AcDbObjectId first = line(0, 0, 10, 0), hidden = line(0, 5, 10, 5), last = line(0, 8, 10, 8);
    drawing().setLayerOf(entityOf(hidden), drawing().ensureLayer(L"OFF"));
    Layer off = drawing().layer(*drawing().findLayer(L"OFF"));
    off.on = false;
    drawing().setLayer(*drawing().findLayer(L"OFF"), off);
    EXPECT_EQ(select(L"X"), (AcDbObjectIdArray{first, hidden, last}));
    EXPECT_EQ(select(L"A"), (AcDbObjectIdArray{first, last}));
    EXPECT_EQ(select(L"L"), (AcDbObjectIdArray{last}));
    EXPECT_EQ(select(L"P"), (AcDbObjectIdArray{last}));
    const ads_point at = {5, 0.1, 0}, nowhere = {500, 500, 0};
    EXPECT_EQ(select(nullptr, at), (AcDbObjectIdArray{first}));
    EXPECT_TRUE(select(nullptr, nowhere).empty());
    EXPECT_EQ(status, RTERROR);
    drawing().erase(entityOf(first));
    EXPECT_TRUE(select(L"P").empty()) << "what was erased since is left out";
}

TEST_F(SelectionContract, AFilterTakesKindsLayersColoursAndOperators)
{
    const AcDbObjectId red = line(0, 0, 1, 0), pipe = line(0, 1, 1, 1), ring = box(0, 0, 2, 2);
    drawing().setColorOf(entityOf(red), 1);
    drawing().setLayerOf(entityOf(pipe), drawing().ensureLayer(L"Pipes-1"));
    resbuf *lines = chainOf({{0, L"line"}});
    EXPECT_EQ(select(L"X", nullptr, nullptr, lines), (AcDbObjectIdArray{red, pipe}));
    release(lines);
    resbuf *layer = chainOf({{8, L"PIPES-#"}});
    EXPECT_EQ(select(L"X", nullptr, nullptr, layer), (AcDbObjectIdArray{pipe}));
    release(layer);
    resbuf *either = chainOf({{-4, L"<OR"}, {8, L"Pipes*"}, {0, L"LWPOLYLINE"}, {-4, L"OR>"}});
    EXPECT_EQ(select(L"X", nullptr, nullptr, either), (AcDbObjectIdArray{pipe, ring}));
    release(either);
    resbuf *notLines = chainOf({{-4, L"<not"}, {0, L"LINE"}, {-4, L"not>"}});
    EXPECT_EQ(select(L"X", nullptr, nullptr, notLines), (AcDbObjectIdArray{ring}));
    release(notLines);
    resbuf *colour = acutNewRb(RTSHORT);
    colour->restype = 62;
    colour->resval.rint = 1;
    EXPECT_EQ(select(L"X", nullptr, nullptr, colour), (AcDbObjectIdArray{red}));
    release(colour);
    resbuf *unended = chainOf({{-4, L"<OR"}, {0, L"LINE"}});
    EXPECT_TRUE(select(L"X", nullptr, nullptr, unended).empty());
    EXPECT_EQ(status, RTREJ);
    release(unended);
    resbuf *unknown = chainOf({{7, L"STANDARD"}});
    select(L"X", nullptr, nullptr, unknown);
    EXPECT_EQ(status, RTREJ);
    release(unknown);
}

TEST_F(SelectionContract, WhatThePersonTakesOutAgainIsOut)
{
    const AcDbObjectId first = line(0, 0, 1, 0), second = line(0, 1, 1, 1), third = line(0, 2, 1, 2);
    session.answers().push({AcDbObjectIdArray{first, second, third}});
    session.answers().push({Answer::Removed{{second}}});
    session.answers().push({Answer::Enter{}});
    EXPECT_EQ(select(nullptr), (AcDbObjectIdArray{first, third}));
    session.answers().push({AcDbObjectIdArray{first}});
    session.answers().push({Answer::Removed{{first}}});
    session.answers().push({Answer::Enter{}});
    EXPECT_TRUE(select(nullptr).empty());
    session.answers().push({AcDbObjectIdArray{first, second}});
    session.answers().push({Answer::Removed{{second}}});
    session.answers().push({AcDbObjectIdArray{second}}); // and in again
    session.answers().push({Answer::Enter{}});
    EXPECT_EQ(select(nullptr), (AcDbObjectIdArray{first, second}));
}

TEST_F(SelectionContract, AFilterHoldsForWhatThePersonSelects)
{
    const AcDbObjectId ring = box(0, 0, 2, 2);
    line(0, 5, 5, 5);
    session.answers().push({std::wstring(L"ALL")});
    session.answers().push({Answer::Enter{}});
    resbuf *filter = chainOf({{0, L"LWPOLYLINE"}});
    EXPECT_EQ(select(nullptr, nullptr, nullptr, filter), (AcDbObjectIdArray{ring}));
    release(filter);
}

TEST(WildCards, MatchAsInASelectionFilter)
{
    EXPECT_TRUE(fitsPattern(L"Pipes", L"p*s"));
    EXPECT_TRUE(fitsPattern(L"", L"*"));
    EXPECT_FALSE(fitsPattern(L"", L"?"));
    EXPECT_TRUE(fitsPattern(L"A1", L"@#"));
    EXPECT_FALSE(fitsPattern(L"1A", L"@#"));
    EXPECT_TRUE(fitsPattern(L"B", L"a,b"));
    EXPECT_TRUE(fitsPattern(L"C", L"~a"));
    EXPECT_FALSE(fitsPattern(L"A", L"~a"));
    EXPECT_TRUE(fitsPattern(L"a,b", L"a`,b"));
    EXPECT_FALSE(fitsPattern(L"axb", L"a`*b"));
    EXPECT_TRUE(fitsPattern(L"ČAKOVEC", L"čak*"));
    EXPECT_TRUE(fitsPattern(L"aaaaaaaab", L"*a*a*a*b"));
    EXPECT_FALSE(fitsPattern(L"aaaaaaaa", L"*a*a*a*b"));
}

} // namespace
} // namespace velmor::test
