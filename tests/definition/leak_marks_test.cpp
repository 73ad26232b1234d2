// Where a failed pick leaked is marked in the drawing until the next pick or command.
#include "tests/definition/manual_fixture.h"

#include "host/editor/CommandStack.h"

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

class LeakMarksTest : public ManualDefinitionTest {
protected:
    static constexpr int kMark = 1;

    LeakMarksTest()
    {
        // A parcel whose left side stops 2 short of its first corner.
        addLine(1000, 0, 1100, 0);
        addLine(1100, 0, 1100, 100);
        addLine(1100, 100, 1000, 100);
        addLine(1000, 100, 1000, 2);
        addSection(L"D6", {1020, 50}, {1080, 50});
    }
    std::vector<velmor::TransientPath> marks()
    {
        std::vector<velmor::TransientPath> found;
        for (const velmor::TransientPath &path : drawing().component<velmor::TransientGraphics>().temporary()) {
            if (path.color == kMark && path.life == velmor::TransientPath::Life::UntilNextPick)
                found.push_back(path);
        }
        return found;
    }
    std::size_t otherTemporary()
    {
        return drawing().component<velmor::TransientGraphics>().temporary().size() - marks().size();
    }
    void fail(CDialogUnderTest &dialog)
    {
        pickPoint(dialog, 1050, 50);
        EXPECT_THAT(alerts(), testing::Contains(message(2002)));
        EXPECT_THAT(marks(), SizeIs(4));
    }
};

TEST_F(LeakMarksTest, TheGapIsRingedBridgedAndItsLooseEndCrossed)
{
    run([&](CDialogUnderTest &dialog) {
        prepare(dialog, 1, {L"D6"});
        const std::size_t sections = otherTemporary();
        fail(dialog);
        EXPECT_EQ(otherTemporary(), sections) << "the drawn sections stay";
        const auto found = marks();
        // The ring: two half circles around the middle of the gap between (1000, 2) and (1000, 0).
        ASSERT_THAT(found[0].vertices, SizeIs(2));
        EXPECT_TRUE(found[0].closed);
        EXPECT_EQ(found[0].vertices[0].bulge, 1.0);
        EXPECT_DOUBLE_EQ((found[0].vertices[0].x + found[0].vertices[1].x) / 2.0, 1000.0);
        EXPECT_DOUBLE_EQ(found[0].vertices[0].y, 1.0);
        const double radius = (found[0].vertices[1].x - found[0].vertices[0].x) / 2.0;
        EXPECT_GT(radius, 1.0) << "wider than the gap";
        EXPECT_LT(radius, 10.0);
        // What is missing.
        ASSERT_THAT(found[1].vertices, SizeIs(2));
        std::vector<double> heights{found[1].vertices[0].y, found[1].vertices[1].y};
        std::ranges::sort(heights);
        EXPECT_THAT(heights, ElementsAre(0.0, 2.0));
        for (const auto &vertex : found[1].vertices)
            EXPECT_EQ(vertex.x, 1000.0);
        // A cross on the loose end.
        for (const std::size_t stroke : {2, 3}) {
            EXPECT_DOUBLE_EQ((found[stroke].vertices[0].x + found[stroke].vertices[1].x) / 2.0, found[1].vertices[0].x);
            EXPECT_DOUBLE_EQ((found[stroke].vertices[0].y + found[stroke].vertices[1].y) / 2.0, found[1].vertices[0].y);
        }
    });
    EXPECT_THAT(marks(), IsEmpty()) << "the end of the dialog wipes temporary drawing";
}

TEST_F(LeakMarksTest, ANextPickOfAnyKindTakesThemAway)
{
    const AcDbObjectId box = addBox(3000, 0, 3100, 100, L"0");
    run([&](CDialogUnderTest &dialog) {
        prepare(dialog, 1, {L"D6"});
        const std::size_t sections = otherTemporary();
        fail(dialog);
        pickPoint(dialog, 50, 50);
        EXPECT_THAT(marks(), IsEmpty());
        fail(dialog);
        pickEntity(dialog, box);
        EXPECT_THAT(marks(), IsEmpty());
        fail(dialog);
        pickCorners(dialog, {{3000, 0}});
        EXPECT_THAT(marks(), IsEmpty());
        EXPECT_EQ(otherTemporary(), sections);
    });
}

TEST_F(LeakMarksTest, APickThatIsLeftKeepsThemInView)
{
    run([&](CDialogUnderTest &dialog) {
        prepare(dialog, 1, {L"D6"});
        fail(dialog);
        for (const int control : {208, 209, 239}) {
            answerEscape();
            dialog.click(control);
            EXPECT_THAT(marks(), SizeIs(4)) << control;
        }
        m_session.answers().push({velmor::Answer::Enter{}});
        dialog.click(3); // hide, to look at them
        EXPECT_THAT(marks(), SizeIs(4));
    });
}

TEST_F(LeakMarksTest, AnotherSectionWipesThem)
{
    run([&](CDialogUnderTest &dialog) {
        prepare(dialog, 0, {L"D6", L"D1"});
        fail(dialog);
        dialog.click(205);
        EXPECT_THAT(marks(), IsEmpty());
    });
}

TEST_F(LeakMarksTest, AnAutomaticRunMarksNothing)
{
    run([&](CDialogUnderTest &dialog) {
        prepare(dialog, 1, {L"D6"});
        fail(dialog);
        dialog.choose(257, 2);
        dialog.click(290);
        EXPECT_THAT(marks(), IsEmpty());
    });
    EXPECT_THAT(areas(), IsEmpty());
}

TEST_F(LeakMarksTest, APointWithNothingAroundItHasNoGapsToMark)
{
    run([&](CDialogUnderTest &dialog) {
        prepare(dialog, 1, {L"D6"});
        fail(dialog);
        pickPoint(dialog, 5000, 5000);
        EXPECT_THAT(marks(), IsEmpty());
    });
}

TEST_F(LeakMarksTest, TheBoundaryCommandMarksForThePersonWhoStartedItUntilTheNextCommand)
{
    const velmor::Answer point{AcGePoint3d(1050, 30)}; // over all lines: the section's ends hang loose too
    m_session.commands().start(L"BOUNDARY", std::vector{point});
    EXPECT_THAT(marks(), SizeIs(4 * 3));
    const velmor::Answer extents{std::wstring(L"Extents")};
    m_session.commands().start(L"ZOOM", std::vector{extents}); // to look at them
    EXPECT_THAT(marks(), SizeIs(4 * 3));
    const velmor::Answer where{AcGePoint3d(0, 0)};
    m_session.commands().start(L"POINT", std::vector{where});
    EXPECT_THAT(marks(), IsEmpty());
}

TEST_F(LeakMarksTest, NothingOfThemComesIntoTheDrawing)
{
    const std::string before = drawing().write();
    const std::size_t steps = log().undoCount();
    m_session.commands().start(L"BOUNDARY", std::vector{velmor::Answer{AcGePoint3d(1050, 30)}});
    ASSERT_THAT(marks(), SizeIs(4 * 3));
    EXPECT_EQ(drawing().write(), before);
    EXPECT_EQ(log().undoCount(), steps);
}

} // namespace
