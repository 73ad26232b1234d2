// Automatic definition: one click traces, drops doubles and saves.
#include "tests/definition/dialog_tools.h"

#include "controls/WideText.h"
#include "definition/AreaNaming.h"

using namespace ZEMGis;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using testing::UnorderedElementsAre;
using velmor::Journal;

namespace {

class Automatic : public DefinitionDialogTest {
protected:
    Automatic() { setSetting("CATCH_NAME_PREFIX", std::wstring(L"S-")); }

    /// Selects, chooses method 2, sets the coefficient and clicks Auto.
    void runAuto(std::initializer_list<const wchar_t *> sections, bool islands = false, bool labels = false)
    {
        run([&](CDialogUnderTest &dialog) {
            select(dialog, sections);
            dialog.choose(257, 2);
            dialog.check(268, islands);
            dialog.check(274, labels);
            dialog.type(215, "0.35");
            Journal::instance().setRecording(true);
            dialog.click(290);
            Journal::instance().setRecording(false);
            m_status = ToWide(dialog.text(281));
            m_statusColour = dialog.colour(281);
            m_name = ToWide(dialog.text(329));
            m_labelItem = dialog.text(135).toStdString();
        });
    }
    std::wstring count(int areas) { return FormatCount(message(2007), areas); }

    std::wstring m_status, m_name;
    std::string m_labelItem;
    unsigned m_statusColour = 0;
};

TEST_F(Automatic, TwoSectionsInOneRegionGiveOneAreaWhoseSharesAddUpToOne)
{
    runAuto({L"D1", L"D2"});
    ASSERT_THAT(areas(), SizeIs(1));
    const auto area = areas().front();
    EXPECT_EQ(area->GetName(), L"S-D1_1");
    EXPECT_NEAR(area->GetArea(), 1.0, 1e-12);
    const auto shares = sharesOf(*area);
    ASSERT_THAT(shares, SizeIs(2));
    EXPECT_EQ(shares[0].first, L"D1");
    EXPECT_DOUBLE_EQ(shares[0].second, 0.6);
    EXPECT_EQ(shares[1].first, L"D2");
    EXPECT_DOUBLE_EQ(shares[1].second, 0.4);
    EXPECT_EQ(m_status, count(1));
    EXPECT_EQ(m_statusColour, 23551u);
    EXPECT_THAT(alerts(), IsEmpty());
}

TEST_F(Automatic, EachRegionGetsAnAreaNamedAfterItsFirstSectionWithTheParametersOfTheDialog)
{
    run([&](CDialogUnderTest &dialog) {
        select(dialog, {L"D1", L"D2", L"D3"});
        dialog.choose(257, 2);
        dialog.check(108, true);
        dialog.type(215, "0.35");
        dialog.type(220, "120.5");
        dialog.type(216, "2.25");
        dialog.click(290);
        EXPECT_EQ(dialog.text(281), ToQString(count(2)));
    });
    ASSERT_THAT(areas(), SizeIs(2));
    const auto area = areaNamed(L"S-D3_1");
    ASSERT_TRUE(area);
    EXPECT_TRUE(areaNamed(L"S-D1_1"));
    EXPECT_EQ(area->GetType(), 5);
    EXPECT_EQ(area->GetFlowCoeff(), 0.35);
    EXPECT_EQ(static_cast<double>(property(*area, L"CA_POPULATION")), 120.5);
    EXPECT_EQ(static_cast<double>(property(*area, L"CA_SLOPE")), 2.25);
    EXPECT_EQ(static_cast<int>(property(*area, L"CA_TYPE_ISLAND")), 0);
}

TEST_F(Automatic, ASectionInNoClosedRegionIsPassedOver)
{
    runAuto({L"D5", L"D3"});
    ASSERT_THAT(areas(), SizeIs(1));
    EXPECT_EQ(areas().front()->GetName(), L"S-D3_1");
    EXPECT_EQ(m_status, count(1));
    EXPECT_THAT(alerts(), IsEmpty());
}

TEST_F(Automatic, WithoutSectionsTheStatusLineStaysAndTheDisplayIsRefreshed)
{
    runAuto({});
    EXPECT_EQ(m_status, message(658));
    EXPECT_EQ(m_statusColour, 0xFF0000u);
    EXPECT_THAT(calls({"acedUpdateDisplay"}), SizeIs(1));
    EXPECT_THAT(areas(), IsEmpty());
}

TEST_F(Automatic, ASecondRunWritesNothing)
{
    run([&](CDialogUnderTest &dialog) {
        select(dialog, {L"D1", L"D2", L"D3"});
        dialog.choose(257, 2);
        dialog.type(215, "0.5");
        dialog.click(290);
        EXPECT_THAT(areas(), SizeIs(2));
        dialog.click(290);
        EXPECT_EQ(dialog.text(281), ToQString(count(0)));
    });
    EXPECT_THAT(areas(), SizeIs(2));
    EXPECT_THAT(alerts(), IsEmpty());
}

TEST_F(Automatic, ARegionSavedInAnEarlierRunOfTheDialogGivesNothing)
{
    runAuto({L"D1"});
    runAuto({L"D1", L"D3"});
    EXPECT_EQ(m_status, count(1));
    EXPECT_THAT(areas(), SizeIs(2));
    EXPECT_THAT(alerts(), IsEmpty());
}

TEST_F(Automatic, TheSavedRegionIsKnownAfterTheDrawingsFileWasReadAgain)
{
    runAuto({L"D1", L"D4"}, true);
    const auto before = areas().size();
    const auto file = m_userFolder / "again.dxf";
    ASSERT_TRUE(drawing().save(file));
    auto loaded = velmor::Drawing::load(file);
    ASSERT_TRUE(loaded.drawing) << loaded.message;
    m_session.setDrawing(std::move(loaded.drawing), file);
    runAuto({L"D1", L"D4"}, true);
    EXPECT_EQ(m_status, count(0));
    EXPECT_EQ(areas().size(), before);
    EXPECT_THAT(alerts(), IsEmpty());
}

TEST_F(Automatic, WithTheIslandCheckARegionWithOneIslandCountsTwo)
{
    runAuto({L"D4"}, true);
    EXPECT_EQ(m_status, count(2));
    ASSERT_THAT(areas(), SizeIs(2));
    const auto main = areas().front(), island = areas().back();
    EXPECT_EQ(main->GetName(), L"S-D4_1");
    EXPECT_EQ(static_cast<int>(property(*main, L"CA_TYPE_ISLAND")), 0);
    EXPECT_FALSE(property(*main, L"CA_MAIN_AREA").IsNotNull());
    EXPECT_EQ(static_cast<int>(property(*island, L"CA_TYPE_ISLAND")), 1);
    EXPECT_EQ(static_cast<std::wstring>(property(*island, L"CA_MAIN_AREA")), main->GetGuid());
    CStringArray islands;
    ASSERT_TRUE(property(*main, L"CA_ISLANDS").GetArrayCopy(islands));
    EXPECT_THAT(islands, ElementsAre(island->GetGuid()));
    CStringArray attachedList;
    ASSERT_TRUE(attached(main->GetObjectId(), L"SLIV_ISLANDS").GetArrayCopy(attachedList));
    EXPECT_EQ(attachedList, islands);
    // The polygon is the outer ring alone; the island is an area of its own.
    EXPECT_NEAR(main->GetArea(), 1.0, 1e-12);
    EXPECT_NEAR(island->GetArea(), 0.04, 1e-12);
    // It goes to the same sections, and takes the next free name after the main area's.
    EXPECT_EQ(sharesOf(*island), sharesOf(*main));
    EXPECT_EQ(island->GetName(), L"S-S-D4_1_1");
}

TEST_F(Automatic, WithoutTheIslandCheckTheSameRegionCountsOne)
{
    runAuto({L"D4"}, false);
    EXPECT_EQ(m_status, count(1));
    ASSERT_THAT(areas(), SizeIs(1));
    EXPECT_FALSE(property(*areas().front(), L"CA_ISLANDS").IsNotNull());
}

TEST_F(Automatic, WithTheIslandCheckTwoSectionsInOneRegionStillGiveOneArea)
{
    runAuto({L"D1", L"D2"}, true);
    EXPECT_EQ(m_status, count(1));
    EXPECT_THAT(areas(), SizeIs(1));
}

TEST_F(Automatic, ABoundaryWithNoSectionInsideTakesTheNameThatStoodInTheEdit)
{
    // The middle of an arc section is on its drawing entity; inside a boundary it is only ever looked for at the
    // origin, so its region holds no section.
    const AcDbObjectId arc = addArcSection(L"B1", {150, 30}, 20);
    run([&](CDialogUnderTest &dialog) {
        m_session.setNextSelection({arc});
        dialog.click(203);
        dialog.choose(257, 2);
        dialog.type(329, "left over");
        dialog.type(215, "1");
        dialog.click(290);
        EXPECT_EQ(dialog.text(281), ToQString(count(1)));
    });
    ASSERT_THAT(areas(), SizeIs(1));
    EXPECT_EQ(areas().front()->GetName(), L"left over");
    EXPECT_THAT(sharesOf(*areas().front()), IsEmpty());
}

TEST_F(Automatic, EachBoundaryWithoutSectionsTakesTheNameThatTheLastSaveProposed)
{
    // Two arc sections, each alone in its parcel: both boundaries hold no section, so both take the edit's name.
    const AcDbObjectId first = addArcSection(L"B1", {150, 30}, 20), second = addArcSection(L"B2", {230, 30}, 20);
    run([&](CDialogUnderTest &dialog) {
        m_session.setNextSelection({first, second});
        dialog.click(203);
        dialog.choose(257, 2);
        dialog.type(329, "twice");
        dialog.type(215, "1");
        dialog.click(290);
        EXPECT_EQ(dialog.text(281), ToQString(count(2)));
    });
    // The first save proposed a name of its own for the second.
    EXPECT_THAT(areas(), SizeIs(2));
    EXPECT_TRUE(areaNamed(L"twice"));
    EXPECT_TRUE(areaNamed(L"S-twice_1"));
}

TEST_F(Automatic, ANameThatIsTakenIsToldAndCountsAllTheSame)
{
    runAuto({L"D1"});
    const AcDbObjectId arc = addArcSection(L"B1", {150, 30}, 20);
    run([&](CDialogUnderTest &dialog) {
        m_session.setNextSelection({arc});
        dialog.click(203);
        dialog.choose(257, 2);
        dialog.type(329, "S-D1_1");
        dialog.type(215, "1");
        dialog.click(290);
        EXPECT_EQ(dialog.text(281), ToQString(count(1))); // attempted, not succeeded
    });
    EXPECT_THAT(alerts(), ElementsAre(message(1620)));
    EXPECT_THAT(areas(), SizeIs(1));
}

TEST_F(Automatic, TheBoundaryCommandRunsOncePerSectionWithTheFormOfTheIslandCheck)
{
    runAuto({L"D1", L"D2", L"D3"}, false);
    EXPECT_THAT(entriesOf("acedCommand"), SizeIs(3));
    EXPECT_THAT(entriesOf("acedCommand").front().arguments, testing::Contains("_N"));
    runAuto({L"D1"}, true);
    EXPECT_THAT(entriesOf("acedCommand"), SizeIs(1));
    EXPECT_THAT(entriesOf("acedCommand").front().arguments, testing::Contains("_Y"));
}

TEST_F(Automatic, PolylinesOfTheRunStayUntilTheDialogEndsAndDoublesGoAtOnce)
{
    run([&](CDialogUnderTest &dialog) {
        select(dialog, {L"D1", L"D2", L"D3"});
        dialog.choose(257, 2);
        dialog.type(215, "1");
        dialog.click(290);
        EXPECT_THAT(loosePolylines(), SizeIs(2));
    });
    EXPECT_THAT(loosePolylines(), IsEmpty());
    EXPECT_THAT(areas(), SizeIs(2));
}

TEST_F(Automatic, WithTheLabelCheckEveryAreaOfTheRunIsLabelledFromTheCatalogue)
{
    runAuto({L"D1", L"D4"}, true, true);
    ASSERT_THAT(areas(), SizeIs(3));
    const auto labels = entriesOf("CCatchmentAreaManager::WriteCatchmentLabel");
    ASSERT_THAT(labels, SizeIs(3));
    ASSERT_NE(m_labelItem, "");
    // Area and catalogue item, for islands too; the form of the label block has a third argument.
    for (std::size_t i = 0; i < labels.size(); ++i)
        EXPECT_THAT(labels[i].arguments, ElementsAre(velmor::journalText(areas()[i]->GetGuid()), m_labelItem)) << i;
    runAuto({L"D3"}, false, false);
    EXPECT_THAT(entriesOf("CCatchmentAreaManager::WriteCatchmentLabel"), IsEmpty());
}

TEST_F(Automatic, OneAreaIsMadeInTheRequiredOrderOfCalls)
{
    runAuto({L"D1"}, false, true);
    EXPECT_THAT(
        calls({"CUtility::CreateGUID", "CCatchmentAreaManager::CreateCA", "CCatchmentArea::SetName",
               "CCatchmentAreaManager::AssignCA", "CCatchmentAreaManager::WriteCatchmentLabel", "acedUpdateDisplay"}),
        ElementsAre("CUtility::CreateGUID", "CCatchmentAreaManager::CreateCA", "CCatchmentArea::SetName",
                    "CCatchmentAreaManager::AssignCA", "CCatchmentAreaManager::WriteCatchmentLabel",
                    "acedUpdateDisplay"));
}

TEST_F(Automatic, WithoutBoundaryLayersEverythingVisibleBoundsTheSectionsToo)
{
    m_session.setDrawing(velmor::Drawing::createNew());
    addSection(L"P", {2, 5}, {8, 5});
    addBox(0, 0, 10, 10, L"ANY");
    runAuto({L"P"}); // its middle lies on the section itself
    EXPECT_EQ(m_status, count(0));

    const auto layer = drawing().findLayer(velmor::kSectionLayer);
    ASSERT_TRUE(layer);
    velmor::Layer off = drawing().layer(*layer);
    off.on = false;
    drawing().setLayer(*layer, off);
    runAuto({L"P"});
    EXPECT_EQ(m_status, count(1));
    EXPECT_THAT(areas(), SizeIs(1));
}

/// A square in a square, their centres 0.0005 apart, with a section between the two and one in the inner one.
class NearCentres : public Automatic {
protected:
    NearCentres()
    {
        addBox(1000, 1000, 1100, 1100);
        addBox(1040.0005, 1040, 1060.0005, 1060);
        addSection(L"R", {1010, 1010}, {1020, 1010});
        addSection(L"I", {1045, 1050}, {1055, 1050});
    }
};

TEST_F(NearCentres, WithoutTheIslandCheckAFoundCentreNearerThanAThousandthIsADouble)
{
    runAuto({L"R", L"I"}, false);
    EXPECT_EQ(m_status, count(1));
    EXPECT_THAT(areas(), SizeIs(1));
    EXPECT_THAT(alerts(), IsEmpty());
}

TEST_F(NearCentres, WithTheIslandCheckOnlyAnEqualCentreIsADoubleAndTheSaveRefusesTheNearOnes)
{
    runAuto({L"R", L"I"}, true);
    // Attempted: the outer one, its island, and the inner one once more as a boundary of its own.
    EXPECT_EQ(m_status, count(3));
    EXPECT_THAT(alerts(), ElementsAre(message(2005), message(2005)));
    EXPECT_THAT(areas(), SizeIs(1));
}

/// Breaks the work of a handler when so many entities were added.
struct Breaker : velmor::DrawingObserver {
    void entityAppended(AcDbEntity &) override
    {
        if (m_left > 0 && --m_left == 0)
            throw std::runtime_error("broken");
    }
    int m_left = 0;
};

TEST_F(Automatic, ARunThatFailsIsTakenBackWholeAndTheNextOneFindsEverything)
{
    Breaker breaker;
    drawing().addObserver(breaker);
    run([&](CDialogUnderTest &dialog) {
        select(dialog, {L"D1", L"D2", L"D3"});
        dialog.choose(257, 2);
        dialog.type(215, "0.35");
        breaker.m_left = 4; // two boundaries and the first area come, the second area does not
        dialog.click(290);
        EXPECT_EQ(breaker.m_left, 0);
        EXPECT_TRUE(dialog.isVisible());
        EXPECT_THAT(areas(), IsEmpty());
        EXPECT_THAT(loosePolylines(), IsEmpty());
        ASSERT_THAT(alerts(), SizeIs(1));
        EXPECT_THAT(ToQString(alerts().front()).toStdString(), testing::HasSubstr("broken"));
        dialog.click(290);
        EXPECT_EQ(dialog.text(281), ToQString(count(2)));
    });
    drawing().removeObserver(breaker);
    EXPECT_THAT(areas(), SizeIs(2));
    EXPECT_TRUE(areaNamed(L"S-D1_1"));
    EXPECT_THAT(alerts(), SizeIs(1));
}

TEST_F(Automatic, ASecondRunWithIslandsWritesNothing)
{
    run([&](CDialogUnderTest &dialog) {
        select(dialog, {L"D4"});
        dialog.choose(257, 2);
        dialog.check(268, true);
        dialog.type(215, "0.5");
        dialog.click(290);
        EXPECT_EQ(dialog.text(281), ToQString(count(2)));
        dialog.click(290);
        EXPECT_EQ(dialog.text(281), ToQString(count(0)));
    });
    EXPECT_THAT(areas(), SizeIs(2));
    EXPECT_THAT(alerts(), IsEmpty());
}

TEST_F(Automatic, ASectionInsideTwoBoundariesGoesToBothAreas)
{
    addBox(1000, 1000, 1100, 1100);
    addBox(1010, 1010, 1030, 1030);
    addSection(L"R", {1050, 1050}, {1060, 1050});
    addSection(L"I", {1015, 1020}, {1025, 1020});
    runAuto({L"R", L"I"});
    ASSERT_THAT(areas(), SizeIs(2));
    const auto outer = areaNamed(L"S-R_1"), inner = areaNamed(L"S-I_1");
    ASSERT_TRUE(outer);
    ASSERT_TRUE(inner);
    EXPECT_THAT(sharesOf(*outer), UnorderedElementsAre(std::pair(L"R", 0.5), std::pair(L"I", 0.5)));
    EXPECT_THAT(sharesOf(*inner), ElementsAre(std::pair(L"I", 1.0)));
}

TEST_F(Automatic, AnArcSectionThatCannotBeOpenedIsSearchedAtTheOrigin)
{
    m_session.setDrawing(velmor::Drawing::createNew());
    setLayers({L"PARCELS"});
    addBox(-10, -10, 10, 10);
    addBox(100, 0, 200, 100);
    const AcDbObjectId arc = addArcSection(L"B1", {150, 30}, 20);
    run([&](CDialogUnderTest &dialog) {
        m_session.setNextSelection({arc});
        dialog.click(203);
        dialog.choose(257, 2);
        dialog.type(215, "1");
        AcDbEntity *held = nullptr;
        ASSERT_EQ(acdbOpenAcDbEntity(held, arc, AcDb::kForWrite), Acad::eOk);
        dialog.click(290);
        held->close();
        EXPECT_EQ(dialog.text(281), ToQString(count(1)));
    });
    ASSERT_THAT(areas(), SizeIs(1));
    EXPECT_NEAR(areas().front()->GetArea(), 0.04, 1e-12);
}

TEST_F(Automatic, IslandsOfARefusedMainAreaAreTriedAllTheSame)
{
    addBox(1000, 1000, 1100, 1100);
    addBox(1010, 1010, 1030, 1030);
    addSection(L"R", {1080, 1080}, {1090, 1080});
    // An area whose centre is not equal to the region's, and yet too near for the save.
    ASSERT_TRUE(Sewage::CCatchmentAreaManager::Instance()->CreateCA(
        L"POLYGON ((1040.0005 1040, 1060.0005 1040, 1060.0005 1060, 1040.0005 1060, 1040.0005 1040))", L"near", 1,
        boost::shared_ptr<Data::CProperties>(new Data::CProperties)));
    runAuto({L"R"}, true);
    EXPECT_EQ(m_status, count(2));
    EXPECT_THAT(alerts(), ElementsAre(message(2005)));
    ASSERT_THAT(areas(), SizeIs(2));
    const auto island = areas().back();
    EXPECT_NEAR(island->GetArea(), 0.04, 1e-12);
    EXPECT_EQ(static_cast<int>(property(*island, L"CA_TYPE_ISLAND")), 1);
    EXPECT_FALSE(property(*areas().front(), L"CA_ISLANDS").IsNotNull());
}

TEST_F(Automatic, TheCounterEditIsEmptied)
{
    run([&](CDialogUnderTest &dialog) {
        dialog.choose(257, 2);
        dialog.type(326, "7");
        dialog.click(290);
        EXPECT_EQ(dialog.text(326), "");
    });
}

} // namespace
