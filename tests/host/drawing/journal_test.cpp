#include "host/drawing/Journal.h"

#include "host/drawing/Drawing.h"
#include "host/drawing/Utf8.h"

#include <gmock/gmock.h>

using namespace velmor;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class JournalTest : public testing::Test {
protected:
    void SetUp() override { Journal::instance().setRecording(true); }
    void TearDown() override
    {
        Journal::instance().setRecording(false);
        Journal::instance().clear();
        setWorkingDrawing(nullptr);
    }
};

} // namespace

TEST_F(JournalTest, WritesOperationsWithTheirArgumentsInOrder)
{
    journal("acedSetVar", L"OSMODE", 0);
    journal("acutPolar", AcGePoint3d(0.1, -2, 5071234.123456789), 2.5, true);
    EXPECT_THAT(Journal::instance().entries(),
                ElementsAre(JournalEntry{"acedSetVar", {"OSMODE", "0"}},
                            JournalEntry{"acutPolar", {"0.1,-2,5071234.123456789", "2.5", "1"}}));
}

TEST_F(JournalTest, WritesNothingWhenOff)
{
    Journal::instance().setRecording(false);
    journal("acedAlert", L"text");
    EXPECT_THAT(Journal::instance().entries(), IsEmpty());
}

TEST_F(JournalTest, StoppingKeepsTheRecordAndStartingEmptiesIt)
{
    journal("acedAlert", L"text");
    Journal::instance().setRecording(false);
    EXPECT_EQ(Journal::instance().entries().size(), 1u);
    Journal::instance().setRecording(true);
    EXPECT_THAT(Journal::instance().entries(), IsEmpty());
}

TEST_F(JournalTest, TextsAreUtf8AndNoTextIsNamed)
{
    journal("acedAlert", L"\u0160ibenik \U0001F600", static_cast<const wchar_t *>(nullptr), std::wstring_view(L"x"));
    EXPECT_THAT(Journal::instance().entries(),
                ElementsAre(JournalEntry{"acedAlert", {"\u0160ibenik \U0001F600", "null", "x"}}));
}

TEST_F(JournalTest, IdsAreHandlesAndNoneIsZero)
{
    const auto drawing = Drawing::createNew();
    setWorkingDrawing(drawing.get());
    const AcDbObjectId line = drawing->append(std::make_unique<AcDbLine>());
    wchar_t handle[17];
    line.handle().getIntoAsciiBuffer(handle);
    EXPECT_EQ(journalText(line), toUtf8(handle));
    EXPECT_EQ(journalText(AcDbObjectId()), "0");
}

TEST_F(JournalTest, EndsOfALineAreSetInWriting)
{
    AcDbLine line;
    line.setStartPoint({1, 2, 0});
    line.setEndPoint({3, 4, 5});
    EXPECT_THAT(Journal::instance().entries(), ElementsAre(JournalEntry{"AcDbLine::setStartPoint", {"1,2,0"}},
                                                           JournalEntry{"AcDbLine::setEndPoint", {"3,4,5"}}));
}

TEST(Utf8, GoesBothWaysAndBearsBadText)
{
    const std::wstring text = L"a\u00DF\u0160\u20AC\U0001F600";
    EXPECT_EQ(fromUtf8(toUtf8(text)), text);
    EXPECT_EQ(toUtf8(text), "a\u00DF\u0160\u20AC\U0001F600");
    EXPECT_EQ(toUtf8(std::wstring(1, static_cast<wchar_t>(0xD800))), "\uFFFD");
    EXPECT_EQ(fromUtf8("a\xFF\xC3"), L"a\uFFFD\uFFFD");
    EXPECT_EQ(fromUtf8("\xC0\x80"), L"\uFFFD\uFFFD");
    EXPECT_EQ(fromUtf8("\xED\xA0\x80").find(L'\xD800'), std::wstring::npos);
}
