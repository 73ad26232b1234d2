#include "host/drawing/Journal.h"
#include "host/editor/SelectionSets.h"
#include "tests/host/editor/EditorFixture.h"

#include <gmock/gmock.h>

namespace velmor {
namespace {

using test::EditorFixture;

class SelectionSetsTest : public EditorFixture {
protected:
    static std::int32_t lengthOf(const ads_name set)
    {
        std::int32_t length = -1;
        EXPECT_EQ(acedSSLength(set, &length), RTNORM);
        return length;
    }
    static bool add(AcDbObjectId id, ads_name set)
    {
        ads_name name;
        return acdbGetAdsName(name, id) == Acad::eOk && acedSSAdd(name, set, set) == RTNORM;
    }
};

TEST_F(SelectionSetsTest, ASetStartsEmptyAndTakesEachEntityOnce)
{
    ads_name set;
    ASSERT_EQ(acedSSAdd(nullptr, nullptr, set), RTNORM);
    EXPECT_EQ(lengthOf(set), 0);
    const AcDbObjectId a = line(0, 0, 1, 0), b = line(0, 0, 0, 1);
    EXPECT_TRUE(add(b, set));
    EXPECT_TRUE(add(a, set));
    EXPECT_TRUE(add(b, set));
    EXPECT_EQ(lengthOf(set), 2);
    ads_name first;
    ASSERT_EQ(acedSSName(set, 0, first), RTNORM);
    AcDbObjectId id;
    EXPECT_EQ(acdbGetObjectId(id, first), Acad::eOk);
    EXPECT_EQ(id, b);
    EXPECT_EQ(acedSSName(set, 2, first), RTERROR);
    EXPECT_EQ(acedSSName(set, -1, first), RTERROR);
}

TEST_F(SelectionSetsTest, ACopyLivesOnItsOwn)
{
    ads_name set, copy;
    ASSERT_EQ(acedSSAdd(nullptr, nullptr, set), RTNORM);
    add(line(0, 0, 1, 0), set);
    ASSERT_EQ(acedSSAdd(nullptr, set, copy), RTNORM);
    add(line(0, 0, 0, 1), copy);
    EXPECT_EQ(lengthOf(set), 1);
    EXPECT_EQ(lengthOf(copy), 2);
}

TEST_F(SelectionSetsTest, AFreedSetIsGoneAndItsNameIsNeverUsedAgain)
{
    ads_name set;
    ASSERT_EQ(acedSSAdd(nullptr, nullptr, set), RTNORM);
    EXPECT_EQ(acedSSFree(set), RTNORM);
    EXPECT_EQ(acedSSFree(set), RTERROR);
    std::int32_t length = 17;
    EXPECT_EQ(acedSSLength(set, &length), RTERROR);
    EXPECT_EQ(length, 17);
    ads_name next;
    ASSERT_EQ(acedSSAdd(nullptr, nullptr, next), RTNORM);
    EXPECT_NE(next[0], set[0]);
}

TEST_F(SelectionSetsTest, TheirNumberIsNotLimited)
{
    std::vector<std::int64_t> ids;
    for (int i = 0; i < 1000; ++i) {
        ads_name set;
        ASSERT_EQ(acedSSAdd(nullptr, nullptr, set), RTNORM);
        ids.push_back(set[0]);
    }
    EXPECT_EQ(session.selectionSets().size(), 1000u);
}

TEST_F(SelectionSetsTest, AnEmptyNameIsNoSet)
{
    const ads_name none = {0, 0};
    std::int32_t length = 5;
    EXPECT_EQ(acedSSLength(none, &length), RTERROR);
    EXPECT_EQ(length, 5);
}

TEST_F(SelectionSetsTest, AnEntityIsNoSetAndASetNoEntity)
{
    ads_name name, set, result;
    ASSERT_EQ(acdbGetAdsName(name, line(0, 0, 1, 1)), Acad::eOk);
    EXPECT_EQ(acedSSAdd(name, name, result), RTERROR);
    ASSERT_EQ(acedSSAdd(nullptr, nullptr, set), RTNORM);
    EXPECT_EQ(acedSSAdd(set, set, result), RTERROR);
}

TEST_F(SelectionSetsTest, ANewDrawingDropsTheSetsOfTheOldOne)
{
    ads_name set;
    ASSERT_EQ(acedSSAdd(nullptr, nullptr, set), RTNORM);
    session.setDrawing(Drawing::createNew());
    std::int32_t length = 0;
    EXPECT_EQ(acedSSLength(set, &length), RTERROR);
}

TEST_F(SelectionSetsTest, SetsAreMadeFilledAndFreedInWriting)
{
    const AcDbObjectId member = line(0, 0, 1, 0);
    const std::string handle = journalText(member);
    ads_name name, set, copy;
    ASSERT_EQ(acdbGetAdsName(name, member), Acad::eOk);
    Journal::instance().setRecording(true);
    acedSSAdd(nullptr, nullptr, set);
    acedSSAdd(name, set, set);
    acedSSAdd(nullptr, set, copy);
    acedSSFree(set);
    Journal::instance().setRecording(false);
    const std::string first = "set " + std::to_string(set[0]);
    EXPECT_THAT(Journal::instance().entries(),
                testing::ElementsAre(JournalEntry{"acedSSAdd", {"null", "null"}},
                                     JournalEntry{"acedSSAdd", {handle, first}},
                                     JournalEntry{"acedSSAdd", {"null", first}}, JournalEntry{"acedSSFree", {first}}));
}

TEST_F(SelectionSetsTest, ThePersonSelectsTillEnter)
{
    const AcDbObjectId a = line(0, 0, 10, 0), b = line(0, 5, 10, 5), c = line(0, 20, 10, 20);
    session.answers().push({AcDbObjectIdArray{a}});
    session.answers().push({std::wstring(L"5,5.2")}); // a point near b
    session.answers().push({std::wstring(L"50,50")}); // nothing there
    session.answers().push({std::wstring(L"#" + handleText(*open(c)))});
    session.answers().push({Answer::Enter{}});
    ads_name set;
    ASSERT_EQ(acedSSGet(nullptr, nullptr, nullptr, nullptr, set), RTNORM);
    EXPECT_EQ(session.selectionSets().find(set)->members(), (AcDbObjectIdArray{a, b, c}));
}

TEST_F(SelectionSetsTest, AllSelectsWhatIsVisible)
{
    line(0, 0, 10, 0);
    onLayer(line(0, 5, 10, 5), L"Off");
    setLayer(L"Off", false, false);
    session.answers().push({std::wstring(L"all")});
    session.answers().push({Answer::Enter{}});
    ads_name set;
    ASSERT_EQ(acedSSGet(nullptr, nullptr, nullptr, nullptr, set), RTNORM);
    EXPECT_EQ(lengthOf(set), 1);
}

TEST_F(SelectionSetsTest, ACancelledOrEmptySelectionGivesNoSet)
{
    ads_name set = {3, 4};
    EXPECT_EQ(acedSSGet(nullptr, nullptr, nullptr, nullptr, set), RTCAN);
    session.answers().push({Answer::Enter{}});
    EXPECT_EQ(acedSSGet(nullptr, nullptr, nullptr, nullptr, set), RTERROR);
    EXPECT_EQ(session.selectionSets().size(), 0u);
    EXPECT_EQ(acedSSGet(L"_X", nullptr, nullptr, nullptr, set), RTERROR) << "the drawing is empty";
    EXPECT_EQ(acedSSGet(L"Q", nullptr, nullptr, nullptr, set), RTREJ) << "no such mode";
}

} // namespace
} // namespace velmor
