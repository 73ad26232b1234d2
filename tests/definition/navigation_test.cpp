// Selection, the current section and what the drawing shows of it.
#include "tests/definition/dialog_fixture.h"
#include "tests/definition/made_area.h"

#include "controls/WideText.h"
#include "definition/AreaNaming.h"

using namespace ZEMGis;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using velmor::Journal;

namespace {

using Navigation = DefinitionDialogTest;

constexpr const char *kMark = "CCatchmentArea::Mark";
constexpr const char *kDraw = "CEntity::DrawTemporary";
constexpr const char *kZoomTo = "CZEMCEdit::zoom";
constexpr const char *kWipe = "acedRedraw";
constexpr const char *kRefresh = "acedUpdateDisplay";

TEST_F(Navigation, ASelectionTellsItsNumberInBlue)
{
    run([&](CDialogUnderTest &dialog) {
        select(dialog, {L"D1", L"D2", L"D3"});
        EXPECT_EQ(dialog.text(281), ToQString(FormatCount(message(1993), 3)));
        EXPECT_EQ(dialog.colour(281), 0xFF0000u);
    });
}

TEST_F(Navigation, InMethods0And3TheNumberIsWipedByTheNavigation)
{
    for (const int method : {0, 3}) {
        run([&](CDialogUnderTest &dialog) {
            dialog.choose(257, method);
            select(dialog, {L"D1", L"D2"});
            EXPECT_EQ(dialog.text(281), "");
        });
    }
}

TEST_F(Navigation, WithOneSectionInMethod0BothButtonsAreOff)
{
    run([&](CDialogUnderTest &dialog) {
        select(dialog, {L"D1"});
        dialog.choose(257, 0);
        EXPECT_FALSE(dialog.isEnabled(204));
        EXPECT_FALSE(dialog.isEnabled(205));
        EXPECT_EQ(dialog.text(266), "D1");
    });
}

TEST_F(Navigation, WithThreeSectionsTheButtonsAreOffAtTheirEnd)
{
    run([&](CDialogUnderTest &dialog) {
        select(dialog, {L"D1", L"D2", L"D3"});
        dialog.choose(257, 0);
        const auto state = [&] { return std::pair(dialog.isEnabled(204), dialog.isEnabled(205)); };
        EXPECT_EQ(state(), std::pair(false, true));
        dialog.click(205);
        EXPECT_EQ(dialog.text(266), "D2");
        EXPECT_EQ(state(), std::pair(true, true));
        dialog.click(205);
        EXPECT_EQ(dialog.text(266), "D3");
        EXPECT_EQ(state(), std::pair(true, false));
        dialog.click(204);
        EXPECT_EQ(dialog.text(266), "D2");
    });
}

TEST_F(Navigation, TheButtonPressedKeepsTheFocusWhileThereIsMore)
{
    run([&](CDialogUnderTest &dialog) {
        select(dialog, {L"D1", L"D2", L"D3"});
        dialog.choose(257, 0);
        QWidget *const next = dialog.GetDlgItem(205), *const previous = dialog.GetDlgItem(204);
        next->setFocus();
        dialog.click(205);
        EXPECT_EQ(next->window()->focusWidget(), next);
        dialog.click(205);
        EXPECT_EQ(dialog.text(266), "D3");
        EXPECT_NE(next->window()->focusWidget(), next) << "off at the last section";
        previous->setFocus();
        dialog.click(204);
        EXPECT_EQ(previous->window()->focusWidget(), previous);
    });
}

TEST_F(Navigation, InMethods1And2TheButtonsAreOff)
{
    for (const int method : {1, 2}) {
        run([&](CDialogUnderTest &dialog) {
            select(dialog, {L"D1", L"D2", L"D3"});
            dialog.choose(257, 0);
            dialog.choose(257, method);
            EXPECT_FALSE(dialog.isEnabled(204));
            EXPECT_FALSE(dialog.isEnabled(205));
        });
    }
}

TEST_F(Navigation, TheCurrentSectionShowsItsNameBoldAndProposesAnAreaName)
{
    setSetting("CATCH_NAME_PREFIX", std::wstring(L"S-"));
    run([&](CDialogUnderTest &dialog) {
        dialog.choose(257, 0);
        select(dialog, {L"D2", L"D3"});
        EXPECT_EQ(dialog.text(266), "D2");
        EXPECT_EQ(dialog.colour(266), 0u);
        EXPECT_TRUE(dialog.GetDlgItem(266)->font().bold());
        EXPECT_EQ(dialog.text(329), "S-D2_1");
        dialog.click(205);
        EXPECT_EQ(dialog.text(329), "S-D3_1");
    });
}

TEST_F(Navigation, ANewSelectionStartsAtItsFirstSectionAndDropsTheDefinition)
{
    const AcDbObjectId box = addBox(0, 0, 10, 10, L"0");
    run([&](CDialogUnderTest &dialog) {
        dialog.choose(257, 0);
        select(dialog, {L"D1", L"D2"});
        dialog.click(205);
        dialog.addMainRow(box, 100);
        select(dialog, {L"D3", L"D1"});
        EXPECT_EQ(dialog.text(266), "D3");
        EXPECT_EQ(dialog.list()->topLevelItemCount(), 0);
    });
}

TEST_F(Navigation, ANewSelectionEmptiesTheRowsInMethod1Too)
{
    const AcDbObjectId box = addBox(0, 0, 10, 10, L"0");
    run([&](CDialogUnderTest &dialog) {
        select(dialog, {L"D1"});
        dialog.addMainRow(box, 100);
        dialog.choose(257, 1);
        ASSERT_EQ(dialog.list()->topLevelItemCount(), 1);
        select(dialog, {L"D1"});
        EXPECT_EQ(dialog.list()->topLevelItemCount(), 0);
        EXPECT_FALSE(dialog.isEnabled(221));
    });
}

TEST_F(Navigation, SwitchingToMethod1KeepsTheRowsAndTheOthersEmptyThem)
{
    const AcDbObjectId box = addBox(0, 0, 10, 10, L"0");
    for (const auto &[method, rows] : {std::pair(1, 1), std::pair(0, 0), std::pair(2, 0), std::pair(3, 0)}) {
        run([&, method = method, rows = rows](CDialogUnderTest &dialog) {
            select(dialog, {L"D1"});
            dialog.choose(257, 0);
            dialog.addMainRow(box, 100);
            dialog.choose(257, method);
            EXPECT_EQ(dialog.list()->topLevelItemCount(), rows) << method;
        });
    }
}

TEST_F(Navigation, AnotherSectionEmptiesRowsAndArea)
{
    const AcDbObjectId box = addBox(0, 0, 10, 10, L"0");
    run([&](CDialogUnderTest &dialog) {
        dialog.choose(257, 0);
        select(dialog, {L"D1", L"D2"});
        dialog.addMainRow(box, 100);
        dialog.type(213, "5");
        dialog.click(205);
        EXPECT_EQ(dialog.list()->topLevelItemCount(), 0);
        EXPECT_EQ(dialog.text(213), "");
    });
}

TEST_F(Navigation, WithoutSectionsMethods1And2KeepTheIdleTextAndTheOthersWipeIt)
{
    for (const auto &[method, idle] :
         {std::pair(0, false), std::pair(1, true), std::pair(2, true), std::pair(3, false)}) {
        run([&, method = method, idle = idle](CDialogUnderTest &dialog) {
            dialog.choose(257, method);
            EXPECT_EQ(dialog.text(281), idle ? ToQString(message(658)) : QString()) << method;
        });
    }
}

TEST_F(Navigation, TheCurrentSectionIsDrawnAndZoomedToWhenTheCheckIsOn)
{
    run([&](CDialogUnderTest &dialog) {
        dialog.choose(257, 0);
        select(dialog, {L"D1", L"D2"});
        Journal::instance().setRecording(true);
        dialog.click(205);
        EXPECT_THAT(calls({kWipe, kZoomTo, kDraw}), ElementsAre(kWipe, kDraw));
        dialog.click(296);
        dialog.type(218, "3");
        Journal::instance().setRecording(true);
        dialog.click(204);
        EXPECT_THAT(calls({kWipe, kZoomTo, kDraw}), ElementsAre(kWipe, kWipe, kZoomTo, kDraw));
        EXPECT_THAT(entriesOf(kZoomTo).front().arguments, testing::Contains("3"));
        EXPECT_THAT(entriesOf(kDraw).front().arguments.at(1),
                    std::to_string(CModuleConfiguration::Instance()->GetHighlightColor()));
    });
}

TEST_F(Navigation, InMethod1AllSectionsAreDrawnAndZoomedToAtOnce)
{
    run([&](CDialogUnderTest &dialog) {
        dialog.click(296);
        Journal::instance().setRecording(true);
        select(dialog, {L"D1", L"D2", L"D3"});
        // The current section first, then all.
        EXPECT_THAT(entriesOf(kZoomTo), SizeIs(2));
        EXPECT_THAT(entriesOf(kDraw), SizeIs(4));
    });
}

TEST_F(Navigation, AHandlersGuardEndsWithIt)
{
    run([&](CDialogUnderTest &dialog) {
        dialog.choose(257, 0);
        select(dialog, {L"D1", L"D2"});
        for (const int control : {205, 204, 217, 3})
            dialog.click(control);
        EXPECT_EQ(Notification::CNotificationFramework::Instance()->IsCommandActive(), 0);
    });
}

class SectionMarks : public DefinitionDialogTest {
protected:
    boost::shared_ptr<Sewage::CCatchmentArea> addArea(const std::wstring &name, int mask, double x,
                                                      std::initializer_list<const wchar_t *> sections)
    {
        const auto area = makeArea(name, mask, x);
        Sewage::SectionShares shares;
        for (const wchar_t *section : sections)
            shares.emplace_back(network().sectionByName(section), 1.0);
        Sewage::CCatchmentAreaManager::Instance()->AssignCA(shares, area);
        return area;
    }
    /// Names and angles of the marks in the journal.
    static std::vector<std::pair<std::string, std::string>> marks()
    {
        std::vector<std::pair<std::string, std::string>> found;
        for (const auto &entry : entriesOf(kMark))
            found.emplace_back(entry.arguments.at(0), entry.arguments.at(3));
        return found;
    }
};

TEST_F(SectionMarks, AreasOfTheCurrentSectionAreMarkedEachInItsOwnAngle)
{
    const auto one = addArea(L"one", 1, 1000, {L"D1"});
    const auto two = addArea(L"two", 1, 1100, {L"D1"});
    addArea(L"other section", 1, 1200, {L"D2"});
    addArea(L"other type", 2, 1300, {L"D1"});
    run([&](CDialogUnderTest &dialog) {
        dialog.choose(257, 0);
        select(dialog, {L"D1"});
        Journal::instance().setRecording(true);
        dialog.click(108); // ends with the marks, of catchment and industrial now
        const auto marks = entriesOf(kMark);
        ASSERT_THAT(marks, SizeIs(2));
        // Area, colour, scale, angle, pattern, flag.
        EXPECT_THAT(marks[0].arguments, ElementsAre(velmor::journalText(one->GetGuid()), "3", "2", "0", "ANSI31", "0"));
        EXPECT_THAT(marks[1].arguments,
                    ElementsAre(velmor::journalText(two->GetGuid()), "3", "2", "45", "ANSI31", "0"));
        EXPECT_THAT(calls({"CCatchmentAreaManager::UnMarkAllCatchments", kMark, kRefresh}),
                    ElementsAre("CCatchmentAreaManager::UnMarkAllCatchments", kMark, kMark, kRefresh));
    });
}

TEST_F(SectionMarks, IslandsTakeTheNextAnglesAndAnUnknownOneTakesOneToo)
{
    const auto main = addArea(L"main", 1, 1000, {L"D1"});
    const auto island = addArea(L"island", 1, 1100, {L"D2"});
    const auto last = addArea(L"last", 1, 1200, {L"D1"});
    main->SetPropertyData(L"CA_ISLANDS", CStringArray{island->GetGuid(), L"{GONE}"});
    run([&](CDialogUnderTest &dialog) {
        dialog.choose(257, 0);
        Journal::instance().setRecording(true);
        select(dialog, {L"D1"});
        std::vector<std::string> angles;
        for (const auto &[area, angle] : marks())
            angles.push_back(angle);
        angles.resize(3); // the same again with every later step of the selection
        EXPECT_THAT(angles, ElementsAre("0", "45", "135"));
    });
}

TEST_F(SectionMarks, HiddenAreasAreNotMarked)
{
    auto bag = boost::shared_ptr<Data::CProperties>(new Data::CProperties);
    Sewage::CCatchmentAreaManager::Instance()->SetHiddenCA(network().sectionByName(L"D1"), 5000, 1, bag);
    run([&](CDialogUnderTest &dialog) {
        Journal::instance().setRecording(true);
        select(dialog, {L"D1"});
        EXPECT_THAT(entriesOf(kMark), IsEmpty());
    });
}

/// Polylines that an automatic run left, which go with the next step of the navigation.
class TemporaryBoundaries : public DefinitionDialogTest {
protected:
    void trace(CDialogUnderTest &dialog)
    {
        dialog.choose(257, 2);
        dialog.type(215, "0.35");
        dialog.click(290);
        dialog.choose(257, 0);
    }
};

TEST_F(TemporaryBoundaries, ANewSelectionErasesThem)
{
    run([&](CDialogUnderTest &dialog) {
        select(dialog, {L"D1", L"D3"});
        trace(dialog);
        ASSERT_THAT(loosePolylines(), SizeIs(2));
        select(dialog, {L"D1"});
        EXPECT_THAT(loosePolylines(), IsEmpty());
        EXPECT_THAT(areas(), SizeIs(2)); // which need them no longer
    });
}

TEST_F(TemporaryBoundaries, TheNextSectionErasesThem)
{
    run([&](CDialogUnderTest &dialog) {
        select(dialog, {L"D1", L"D3"});
        trace(dialog);
        ASSERT_THAT(loosePolylines(), SizeIs(2));
        dialog.click(205);
        EXPECT_EQ(dialog.text(266), "D3");
        EXPECT_THAT(loosePolylines(), IsEmpty());
    });
}

TEST_F(TemporaryBoundaries, ThePreviousSectionErasesThem)
{
    run([&](CDialogUnderTest &dialog) {
        select(dialog, {L"D1", L"D3"});
        dialog.choose(257, 0);
        dialog.click(205);
        trace(dialog);
        ASSERT_THAT(loosePolylines(), SizeIs(2));
        dialog.click(204);
        EXPECT_EQ(dialog.text(266), "D1");
        EXPECT_THAT(loosePolylines(), IsEmpty());
    });
}

} // namespace
