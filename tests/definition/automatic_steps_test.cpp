// Automatic definition, step by step: which boundaries are dropped, how areas are named, what is told, how a run is
// shown and stopped.
#include "tests/definition/dialog_fixture.h"

#include "controls/WideText.h"
#include "definition/AreaNaming.h"
#include "host/drawing/ChangeLog.h"
#include "host/editor/ProgressMeter.h"

#include <QKeyEvent>

using namespace ZEMGis;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using testing::UnorderedElementsAre;
using velmor::Journal;

namespace {

class AutomaticSteps : public DefinitionDialogTest {
protected:
    AutomaticSteps() { setSetting("CATCH_NAME_PREFIX", std::wstring(L"S-")); }

    /// Selects these sections, chooses method 2, sets coefficient and checks; then does the rest.
    void start(const std::vector<AcDbObjectId> &sections, bool islands, const Drive &drive)
    {
        run([&](CDialogUnderTest &dialog) {
            m_session.setNextSelection(sections);
            dialog.click(203);
            dialog.choose(257, 2);
            dialog.check(268, islands);
            dialog.check(274, false);
            dialog.type(215, "0.5");
            drive(dialog);
        });
    }
    AcDbObjectId section(const wchar_t *name) { return network().sectionByName(name)->GetObjectId(); }
    std::wstring count(int areas) { return FormatCount(message(2007), areas); }
    void createArea(const std::wstring &name, double x, double y)
    {
        const auto at = [&](double dx, double dy) { return std::to_wstring(x + dx) + L" " + std::to_wstring(y + dy); };
        const std::wstring text = L"POLYGON ((" + at(-5, -5) + L", " + at(5, -5) + L", " + at(5, 5) + L", " +
                                  at(-5, 5) + L", " + at(-5, -5) + L"))";
        ASSERT_TRUE(Sewage::CCatchmentAreaManager::Instance()->CreateCA(
            text, name, 1, boost::shared_ptr<Data::CProperties>(new Data::CProperties)));
    }
    std::vector<std::wstring> names()
    {
        std::vector<std::wstring> all;
        for (const auto &area : areas())
            all.push_back(area->GetName());
        return all;
    }
};

// --- What is dropped

TEST_F(AutomaticSteps, ARejectedRegionsIslandsStandTwiceAmongThePolylinesToErase)
{
    addSection(L"D6", {210, 40}, {240, 40}); // beside D4, around the same courtyard
    start({section(L"D4"), section(L"D6")}, true, [&](CDialogUnderTest &dialog) {
        dialog.click(290);
        EXPECT_EQ(dialog.text(281), ToQString(count(2)));
        const AcDbObjectIdArray &kept = dialog.tempBoundaries();
        ASSERT_THAT(kept, SizeIs(5));
        EXPECT_FALSE(kept[0].isErased()); // accepted, with its island
        EXPECT_FALSE(kept[1].isErased());
        EXPECT_TRUE(kept[2].isErased()); // rejected: its boundary goes at once, its island stays
        EXPECT_FALSE(kept[3].isErased());
        EXPECT_EQ(kept[4], kept[3]);
    });
    EXPECT_THAT(loosePolylines(), IsEmpty());
}

TEST_F(AutomaticSteps, WithoutIslandsARejectedRegionStandsOnceAndIsErased)
{
    start({section(L"D1"), section(L"D2")}, false, [&](CDialogUnderTest &dialog) {
        dialog.click(290);
        ASSERT_THAT(dialog.tempBoundaries(), SizeIs(2));
        EXPECT_FALSE(dialog.tempBoundaries()[0].isErased());
        EXPECT_TRUE(dialog.tempBoundaries()[1].isErased());
    });
}

TEST_F(AutomaticSteps, AKnownCentreThatIsOnlyNearIsNotDroppedButRefusedByTheSaveWithOneAlert)
{
    createArea(L"near", 50.0005, 50.0);
    for (const bool islands : {false, true}) {
        alerts().clear();
        start({section(L"D1")}, islands, [&](CDialogUnderTest &dialog) {
            dialog.click(290);
            EXPECT_EQ(dialog.text(281), ToQString(count(1)));
            EXPECT_EQ(dialog.colour(281), 23551u);
        });
        EXPECT_THAT(alerts(), ElementsAre(message(2005))) << islands;
        EXPECT_THAT(areas(), SizeIs(1)) << islands;
    }
}

TEST_F(AutomaticSteps, AnEqualKnownCentreIsDroppedWithoutAWord)
{
    createArea(L"same", 50.0, 50.0);
    for (const bool islands : {false, true}) {
        start({section(L"D1")}, islands, [&](CDialogUnderTest &dialog) {
            dialog.click(290);
            EXPECT_EQ(dialog.text(281), ToQString(count(0)));
        });
        EXPECT_THAT(areas(), SizeIs(1)) << islands;
    }
    EXPECT_THAT(alerts(), IsEmpty());
}

TEST_F(AutomaticSteps, AnIslandAroundItsMainAreasCentreIsRefusedByTheSave)
{
    // Two parcels around the same centre: the outer one is saved first, so the save of its island, which no search
    // tests, finds the centre taken.
    addBox(1000, 1000, 1100, 1100);
    addBox(1040, 1040, 1060, 1060);
    const AcDbObjectId outer = addSection(L"R", {1010, 1010}, {1020, 1010});
    const AcDbObjectId inner = addSection(L"I", {1045, 1050}, {1055, 1050});
    start({outer, inner}, true, [&](CDialogUnderTest &dialog) {
        dialog.click(290);
        // The outer region with its island; the inner region's centre is a found one.
        EXPECT_EQ(dialog.text(281), ToQString(count(2)));
    });
    EXPECT_THAT(alerts(), ElementsAre(message(2005))); // the island, whose centre the main area has
    EXPECT_THAT(areas(), SizeIs(1));
}

TEST_F(AutomaticSteps, ABentSectionIsSearchedAtTheMiddleOfItsChord)
{
    const AcDbObjectId bent =
        addSectionEntity(L"B", std::make_unique<AcDbPolyline>(
                                   std::vector<AcDbPolyline::Vertex>{{20, 20, 0}, {50, 300, 0}, {80, 40, 0}}, false));
    Journal::instance().setRecording(true);
    start({bent}, false, [&](CDialogUnderTest &dialog) { dialog.click(290); });
    Journal::instance().setRecording(false);
    const auto searches = entriesOf("acedCommand");
    ASSERT_THAT(searches, SizeIs(1));
    EXPECT_THAT(searches.front().arguments, testing::Contains("50,30,0"));
    EXPECT_THAT(areas(), SizeIs(1));
}

// --- Names

TEST_F(AutomaticSteps, IslandsAreCountedOnFromTheMainAreasName)
{
    addBox(220, 60, 230, 70);
    start({section(L"D4")}, true, [&](CDialogUnderTest &dialog) {
        dialog.click(290);
        EXPECT_EQ(dialog.text(281), ToQString(count(3)));
        EXPECT_EQ(dialog.text(329), QStringLiteral("S-S-D4_1_3"));
    });
    EXPECT_THAT(names(), ElementsAre(L"S-D4_1", L"S-S-D4_1_1", L"S-S-D4_1_2"));
}

TEST_F(AutomaticSteps, ABoundaryWithoutSectionsGrowsTheNameThatWasSavedLast)
{
    const AcDbObjectId arc = addArcSection(L"B1", {150, 30}, 20);
    start({section(L"D1"), arc}, false, [&](CDialogUnderTest &dialog) { dialog.click(290); });
    EXPECT_THAT(names(), ElementsAre(L"S-D1_1", L"S-S-D1_1_1"));
}

TEST_F(AutomaticSteps, ANextRunCountsOnFromTheFirstSectionsName)
{
    createArea(L"S-D1_1", 5000, 5000);
    start({section(L"D1")}, false, [&](CDialogUnderTest &dialog) { dialog.click(290); });
    EXPECT_THAT(names(), ElementsAre(L"S-D1_1", L"S-D1_2"));
}

TEST_F(AutomaticSteps, ATakenNameIsToldOnceForEachBoundaryAndIslandAndCountedAllTheSame)
{
    createArea(L"taken", 5000, 5000);
    addBox(120, 60, 130, 70); // an island in the second parcel
    const AcDbObjectId first = addArcSection(L"B1", {150, 30}, 20), second = addArcSection(L"B2", {50, 30}, 20);
    start({first, second}, true, [&](CDialogUnderTest &dialog) {
        dialog.type(329, "taken");
        dialog.click(290);
        EXPECT_EQ(dialog.text(281), ToQString(count(3)));
        EXPECT_EQ(dialog.text(329), QStringLiteral("taken"));
    });
    EXPECT_THAT(alerts(), ElementsAre(message(1620), message(1620), message(1620)));
    EXPECT_THAT(areas(), SizeIs(1));
}

// --- Guards

TEST_F(AutomaticSteps, ARunAsksForNoGuardAndKeepsTheDialogOnTheScreen)
{
    for (const bool islands : {true, false}) {
        start({section(islands ? L"D1" : L"D3")}, islands, [&](CDialogUnderTest &dialog) {
            const Notification::SetActiveCommand other(L"CA_INFO");
            Journal::instance().setRecording(true);
            dialog.click(290);
            Journal::instance().setRecording(false);
            EXPECT_TRUE(dialog.isVisible());
        });
        EXPECT_THAT(calls({"CAdUiBaseDialog::BeginEditorCommand", "SetActiveCommand"}), IsEmpty()) << islands;
        // A trace without islands locks the document for itself; the run does not.
        EXPECT_THAT(calls({"AcAxDocLock::AcAxDocLock"}), SizeIs(islands ? 0 : 1));
    }
    EXPECT_THAT(areas(), SizeIs(2));
}

// --- A long run

/// A view with a status bar's meter that looks for Escape at every step.
struct MeterView final : velmor::SessionView, velmor::ProgressOwner {
    MeterView() { meter.setInterval(std::chrono::milliseconds(0)); }
    void showDrawing(velmor::Drawing *) override {}
    void redraw() override {}
    void zoomTo(const velmor::Extents &) override {}
    void showAlert(const std::wstring &) override {}
    void showStatus(const std::wstring &text) override
    {
        if (fails)
            throw std::runtime_error("no status line");
        status = text;
    }
    velmor::ProgressMeter &progressMeter() override { return meter; }
    velmor::ProgressMeter meter;
    std::wstring status;
    bool fails = false;
};

/// Does something when so many entities were added, or when one is erased.
struct OnAppend : velmor::DrawingObserver {
    void entityAppended(AcDbEntity &) override
    {
        if (left > 0 && --left == 0)
            action();
    }
    void entityErased(AcDbEntity &, bool isErased) override
    {
        if (isErased && erased)
            std::exchange(erased, nullptr)();
    }
    int left = 0;
    std::function<void()> action, erased;
};

class LongRun : public AutomaticSteps {
protected:
    LongRun()
    {
        m_session.setView(&view);
        drawing().addObserver(observer);
    }
    ~LongRun() override
    {
        drawing().removeObserver(observer);
        m_session.setView(nullptr);
    }
    /// Auto over three parcels, with Escape in the dialog when so many entities were added; 0: no Escape.
    void runUntil(int entities, const Drive &after)
    {
        start({section(L"D1"), section(L"D3"), section(L"D4")}, false, [&](CDialogUnderTest &dialog) {
            observer.action = [&dialog] {
                QCoreApplication::postEvent(&dialog, new QKeyEvent(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier));
            };
            observer.left = entities;
            Journal::instance().setRecording(true);
            dialog.click(290);
            Journal::instance().setRecording(false);
            EXPECT_TRUE(dialog.isVisible());
            after(dialog);
        });
    }
    MeterView view;
    OnAppend observer;
};

TEST_F(LongRun, AMeterShowsTheSearchAndThenTheSaving)
{
    runUntil(0, [&](CDialogUnderTest &dialog) { EXPECT_EQ(dialog.text(281), ToQString(count(3))); });
    const auto meters = entriesOf("acedSetStatusBarProgressMeter");
    ASSERT_THAT(meters, SizeIs(2));
    EXPECT_THAT(meters[0].arguments, ElementsAre(velmor::journalText(message(60041)), "0", "3"));
    EXPECT_THAT(meters[1].arguments, ElementsAre(velmor::journalText(message(60042)), "0", "3"));
    EXPECT_THAT(entriesOf("acedRestoreStatusBar"), SizeIs(2));
    EXPECT_FALSE(view.meter.isVisible());
}

TEST_F(LongRun, EscapeWhileItSearchesSavesNothing)
{
    runUntil(2, [&](CDialogUnderTest &dialog) {
        EXPECT_EQ(dialog.text(281), ToQString(count(0) + L" - " + message(60040)));
        EXPECT_EQ(dialog.colour(281), 23551u);
        EXPECT_THAT(dialog.tempBoundaries(), SizeIs(2));
    });
    EXPECT_THAT(entriesOf("acedCommand"), SizeIs(2));
    EXPECT_THAT(areas(), IsEmpty());
    EXPECT_THAT(loosePolylines(), IsEmpty());
}

TEST_F(LongRun, EscapeWhileItSavesKeepsWhatIsSavedByThen)
{
    runUntil(5, [&](CDialogUnderTest &dialog) { // three boundaries and two areas
        EXPECT_EQ(dialog.text(281), ToQString(count(2) + L" - " + message(60040)));
        EXPECT_THAT(names(), ElementsAre(L"S-D1_1", L"S-D3_1"));
        // The next run goes on where this one was stopped.
        dialog.click(290);
        EXPECT_EQ(dialog.text(281), ToQString(count(1)));
    });
    EXPECT_THAT(names(), ElementsAre(L"S-D1_1", L"S-D3_1", L"S-D4_1"));
    EXPECT_THAT(alerts(), IsEmpty());
}

TEST_F(LongRun, ARunIsOneUndoStepAlsoWhenItWasStopped)
{
    auto &log = drawing().component<velmor::ChangeLog>();
    runUntil(5, [&](CDialogUnderTest &) {
        const std::size_t steps = log.undoCount();
        EXPECT_THAT(areas(), SizeIs(2));
        ASSERT_TRUE(log.undo());
        EXPECT_EQ(log.undoCount(), steps - 1);
        EXPECT_THAT(areas(), IsEmpty());
        EXPECT_THAT(loosePolylines(), IsEmpty());
        ASSERT_TRUE(log.redo());
        EXPECT_THAT(areas(), SizeIs(2));
    });
}

TEST_F(LongRun, ARunThatFailsIsTakenBackAlsoWhenNothingCanBeTold)
{
    // D2's region is D1's, and breaks while it is dropped; D5's miss is noted by then.
    start({section(L"D1"), section(L"D5"), section(L"D2")}, false, [&](CDialogUnderTest &dialog) {
        observer.erased = [&] {
            view.fails = true;
            throw std::runtime_error("broken");
        };
        dialog.click(290);
        observer.erased = nullptr;
        view.fails = false;
        EXPECT_TRUE(dialog.isVisible());
    });
    EXPECT_THAT(alerts(), SizeIs(1));
    EXPECT_THAT(areas(), IsEmpty());
    EXPECT_THAT(loosePolylines(), IsEmpty());
}

TEST_F(LongRun, TheHostTellsWhichSectionsLieInNoRegionAndWhy)
{
    addLine(700, 0, 800, 0);
    addLine(800, 0, 800, 100);
    addLine(800, 100, 700, 100);
    addLine(700, 100, 700, 0.25);
    const AcDbObjectId open = addSection(L"D7", {710, 50}, {790, 50});
    const AcDbObjectId arc = addArcSection(L"B9", {2000, 2000}, 30);
    start({section(L"D1"), section(L"D5"), open, arc}, false, [&](CDialogUnderTest &dialog) {
        dialog.click(290);
        EXPECT_EQ(dialog.text(281), ToQString(count(1)));
    });
    const std::string told = ToQString(view.status).toStdString();
    EXPECT_THAT(told, testing::HasSubstr("D5"));
    EXPECT_THAT(told, testing::HasSubstr("D7"));
    EXPECT_THAT(told, testing::HasSubstr("B9"));
    EXPECT_THAT(told, testing::HasSubstr("0.25"));
}

} // namespace
