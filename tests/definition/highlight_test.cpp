// What the drawing shows beside the dialog: sections drawn for a while, and hatched marks of the current section's
// areas, as each control leaves them.
#include "tests/definition/dialog_fixture.h"
#include "tests/definition/made_area.h"

#include "host/drawing/Transient.h"

using namespace ZEMGis;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using testing::UnorderedElementsAre;
using velmor::Journal;
using velmor::journalText;

namespace {

constexpr const char *kDraw = "CEntity::DrawTemporary";
constexpr const char *kZoomTo = "CZEMCEdit::zoom";
constexpr const char *kWipe = "acedRedraw";
constexpr const char *kRefresh = "acedUpdateDisplay";

class Highlight : public DefinitionDialogTest {
protected:
    velmor::TransientGraphics &shown() { return drawing().component<velmor::TransientGraphics>(); }
    /// Handles of the sections that were drawn, in order.
    static std::vector<std::string> drawn()
    {
        std::vector<std::string> handles;
        for (const auto &entry : entriesOf(kDraw))
            handles.push_back(entry.arguments.at(0));
        return handles;
    }
    std::string handleOf(const wchar_t *section)
    {
        return journalText(network().sectionByName(section)->GetObjectId());
    }
};

TEST_F(Highlight, Method2DrawsAllSectionsAndZoomsOnceToAllOfThem)
{
    run([&](CDialogUnderTest &dialog) {
        dialog.choose(257, 0);
        select(dialog, {L"D1", L"D2", L"D3"});
        dialog.click(296);
        dialog.type(218, "2");
        Journal::instance().setRecording(true);
        dialog.choose(257, 2);
        EXPECT_THAT(calls({kWipe, kZoomTo, kDraw}), ElementsAre(kWipe, kWipe, kZoomTo, kDraw, kDraw, kDraw));
        // Their extents are 20..180 by 30..70, doubled about the middle.
        ASSERT_THAT(entriesOf(kZoomTo), SizeIs(1));
        // Number of entities, factor, extents.
        EXPECT_THAT(entriesOf(kZoomTo).front().arguments, ElementsAre("3", "2", "-60", "10", "260", "90"));
        EXPECT_THAT(drawn(), ElementsAre(handleOf(L"D1"), handleOf(L"D2"), handleOf(L"D3")));
        const std::string colour = std::to_string(CModuleConfiguration::Instance()->GetHighlightColor());
        for (const auto &entry : entriesOf(kDraw))
            EXPECT_THAT(entry.arguments, ElementsAre(testing::_, colour, "0"));
        EXPECT_THAT(shown().temporary(), SizeIs(3));
    });
}

TEST_F(Highlight, Method2WithoutTheZoomCheckDrawsAllSectionsAndLeavesTheView)
{
    run([&](CDialogUnderTest &dialog) {
        select(dialog, {L"D1", L"D2", L"D3"});
        Journal::instance().setRecording(true);
        dialog.choose(257, 2);
        EXPECT_THAT(calls({kWipe, kZoomTo, kDraw}), ElementsAre(kWipe, kDraw, kDraw, kDraw));
    });
}

TEST_F(Highlight, Method1ZoomsToTheCurrentSectionAndThenToAllWithTheFactorOfTheEdit)
{
    run([&](CDialogUnderTest &dialog) {
        dialog.click(296);
        dialog.type(218, "2");
        dialog.choose(257, 0);
        select(dialog, {L"D1", L"D2", L"D3"});
        Journal::instance().setRecording(true);
        dialog.choose(257, 1);
        ASSERT_THAT(entriesOf(kZoomTo), SizeIs(2));
        EXPECT_THAT(entriesOf(kZoomTo)[0].arguments, ElementsAre("1", "2", "-10", "30", "110", "30"));
        EXPECT_THAT(entriesOf(kZoomTo)[1].arguments, ElementsAre("3", "2", "-60", "10", "260", "90"));
        EXPECT_THAT(drawn(), ElementsAre(handleOf(L"D1"), handleOf(L"D1"), handleOf(L"D2"), handleOf(L"D3")));
        EXPECT_THAT(shown().temporary(), SizeIs(3)); // what stood before was wiped
    });
}

TEST_F(Highlight, EachStepThatShowsSectionsRefreshesTheDisplayAndMarksComeLast)
{
    constexpr const char *kUnMark = "CCatchmentAreaManager::UnMarkAllCatchments";
    run([&](CDialogUnderTest &dialog) {
        dialog.choose(257, 0);
        select(dialog, {L"D1", L"D2"});
        const auto shownBy = [&](auto work) {
            Journal::instance().setRecording(true);
            work();
            return calls({kWipe, kDraw, kUnMark, kRefresh});
        };
        EXPECT_THAT(shownBy([&] { dialog.click(205); }), ElementsAre(kWipe, kDraw, kRefresh, kUnMark, kRefresh));
        EXPECT_THAT(shownBy([&] { dialog.choose(257, 2); }),
                    ElementsAre(kWipe, kDraw, kDraw, kRefresh, kUnMark, kRefresh));
        EXPECT_THAT(shownBy([&] { dialog.choose(257, 1); }),
                    ElementsAre(kWipe, kDraw, kRefresh, kWipe, kDraw, kDraw, kRefresh, kUnMark, kRefresh));
        // A selection changes the method anew, shows the first section once more, and then its areas.
        dialog.choose(257, 0);
        EXPECT_THAT(shownBy([&] { select(dialog, {L"D3"}); }),
                    ElementsAre(kWipe, kDraw, kRefresh, kUnMark, kRefresh, kWipe, kDraw, kRefresh, kUnMark, kRefresh));
        dialog.choose(257, 1);
        EXPECT_THAT(shownBy([&] { select(dialog, {L"D3"}); }),
                    ElementsAre(kWipe, kDraw, kRefresh, kWipe, kDraw, kRefresh, kUnMark, kRefresh, kUnMark, kRefresh));
    });
}

TEST_F(Highlight, MarkingTheSectionsAreasTakesThePreviewHatches)
{
    const AcDbObjectId box = addBox(1000, 0, 1010, 10, L"0");
    run([&](CDialogUnderTest &dialog) {
        select(dialog, {L"D1"});
        dialog.addMainRow(box, 100);
        dialog.selectRows({0});
        ASSERT_THAT(hatches(), SizeIs(1));
        dialog.click(108);
        EXPECT_THAT(hatches(), IsEmpty());
        EXPECT_EQ(dialog.list()->topLevelItemCount(), 1);
    });
}

TEST_F(Highlight, AWipeTakesTheTemporaryDrawingOfTheSectionBefore)
{
    run([&](CDialogUnderTest &dialog) {
        dialog.choose(257, 0);
        select(dialog, {L"D1", L"D2"});
        dialog.click(205);
        ASSERT_THAT(shown().temporary(), SizeIs(1));
        EXPECT_EQ(shown().temporary()[0].vertices[0].x, 20);
        EXPECT_EQ(shown().temporary()[0].vertices[0].y, 70);
        dialog.click(296);
        Journal::instance().setRecording(true);
        dialog.click(204);
        for (const auto &entry : entriesOf(kWipe))
            EXPECT_THAT(entry.arguments, ElementsAre("4"));
        ASSERT_THAT(shown().temporary(), SizeIs(1));
        EXPECT_EQ(shown().temporary()[0].vertices[0].y, 30);
        m_session.answers().push({velmor::Answer::Enter{}});
        dialog.click(217);
        EXPECT_THAT(shown().temporary(), SizeIs(1));
    });
}

TEST_F(Highlight, TheEndOfTheDialogWipesTheTemporaryDrawing)
{
    run([&](CDialogUnderTest &dialog) {
        select(dialog, {L"D1", L"D2"});
        ASSERT_THAT(shown().temporary(), SizeIs(2));
        Journal::instance().setRecording(true);
    });
    ASSERT_THAT(entriesOf(kWipe), SizeIs(1));
    EXPECT_THAT(entriesOf(kWipe).front().arguments, ElementsAre("4"));
    EXPECT_THAT(shown().temporary(), IsEmpty());
}

/// An area for each of two sections and two types, and which of them are marked.
class MarksFollow : public Highlight {
protected:
    MarksFollow()
    {
        addArea(L"D1 catchment", 1, 1000, L"D1");
        addArea(L"D1 house", 2, 1100, L"D1");
        addArea(L"D1 industrial", 4, 1200, L"D1");
        addArea(L"D2 catchment", 1, 1300, L"D2");
    }
    void addArea(const std::wstring &name, int mask, double x, const wchar_t *section)
    {
        Sewage::CCatchmentAreaManager::Instance()->AssignCA({{network().sectionByName(section), 1.0}},
                                                            makeArea(name, mask, x));
    }
    std::vector<std::wstring> marked()
    {
        std::vector<std::wstring> names;
        for (const auto &[guid, mark] : shown().marks())
            names.push_back(Sewage::CCatchmentAreaManager::Instance()->GetCatchmentAreaByGuid(guid)->GetName());
        return names;
    }
    /// As a click would leave it, but without the check's own handler.
    static void setCheck(CDialogUnderTest &dialog, int control, bool on)
    {
        dialog.Control<QAbstractButton>(control)->setChecked(on);
    }
};

TEST_F(MarksFollow, TheNextAndThePreviousSection)
{
    run([&](CDialogUnderTest &dialog) {
        dialog.choose(257, 0);
        select(dialog, {L"D1", L"D2"});
        EXPECT_THAT(marked(), ElementsAre(L"D1 catchment"));
        Journal::instance().setRecording(true);
        dialog.click(205);
        EXPECT_THAT(marked(), ElementsAre(L"D2 catchment"));
        EXPECT_EQ(calls({"CCatchmentArea::Mark", kDraw, kRefresh}).back(), kRefresh);
        dialog.click(204);
        EXPECT_THAT(marked(), ElementsAre(L"D1 catchment"));
    });
}

TEST_F(MarksFollow, TheChecksOfTheTypes)
{
    run([&](CDialogUnderTest &dialog) {
        select(dialog, {L"D1"});
        dialog.click(107);
        EXPECT_THAT(marked(), UnorderedElementsAre(L"D1 catchment", L"D1 house"));
        dialog.click(106);
        EXPECT_THAT(marked(), ElementsAre(L"D1 house"));
        dialog.click(108);
        EXPECT_THAT(marked(), UnorderedElementsAre(L"D1 house", L"D1 industrial"));
        dialog.click(107);
        EXPECT_THAT(marked(), ElementsAre(L"D1 industrial"));
        dialog.click(106);
        EXPECT_THAT(marked(), UnorderedElementsAre(L"D1 catchment", L"D1 industrial"));
    });
}

TEST_F(MarksFollow, TheTypeComboAndTheMethodCombo)
{
    run([&](CDialogUnderTest &dialog) {
        select(dialog, {L"D1"});
        setCheck(dialog, 107, true);
        EXPECT_THAT(marked(), ElementsAre(L"D1 catchment"));
        dialog.choose(256, 2);
        EXPECT_THAT(marked(), UnorderedElementsAre(L"D1 catchment", L"D1 house"));
        for (const int method : {0, 1, 2, 3}) {
            const bool on = method % 2 == 0;
            setCheck(dialog, 108, on);
            dialog.choose(257, method);
            EXPECT_THAT(marked(), SizeIs(on ? 3 : 2)) << method;
        }
    });
}

TEST_F(MarksFollow, AChosenRowOfTheListWhosePreviewTakesTheirPlace)
{
    const AcDbObjectId box = addBox(2000, 0, 2010, 10, L"0");
    run([&](CDialogUnderTest &dialog) {
        select(dialog, {L"D1"});
        dialog.addMainRow(box, 100);
        ASSERT_THAT(marked(), ElementsAre(L"D1 catchment"));
        Journal::instance().setRecording(true);
        dialog.selectRows({0});
        EXPECT_THAT(marked(), IsEmpty());
        EXPECT_THAT(calls({"CCatchmentAreaManager::UnMarkAllCatchments", kRefresh}),
                    ElementsAre("CCatchmentAreaManager::UnMarkAllCatchments", kRefresh));
        EXPECT_THAT(hatches(), SizeIs(1));
        // A row that is only left changes nothing.
        Journal::instance().setRecording(true);
        dialog.selectRows({});
        EXPECT_THAT(calls({"CCatchmentAreaManager::UnMarkAllCatchments", kRefresh}), IsEmpty());
        EXPECT_THAT(hatches(), SizeIs(1));
    });
}

TEST_F(MarksFollow, TheEndOfTheDialog)
{
    run([&](CDialogUnderTest &dialog) {
        select(dialog, {L"D1"});
        ASSERT_THAT(marked(), SizeIs(1));
    });
    EXPECT_THAT(marked(), IsEmpty());
}

} // namespace
