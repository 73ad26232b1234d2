// Saving: rows of the list, typed areas, what is checked before and what stays behind.
#include "tests/definition/dialog_tools.h"

#include "controls/WideText.h"

#include <fstream>

using namespace ZEMGis;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using velmor::Journal;

namespace {

class Saving : public DefinitionDialogTest {
protected:
    Saving()
    {
        setSetting("CATCH_NAME_PREFIX", std::wstring(L"S-"));
        m_outer = addBox(1000, 0, 1100, 100, L"0");
        m_first = addBox(1010, 10, 1020, 20, L"0");
        m_second = addBox(1050, 50, 1070, 60, L"0");
    }
    /// Method, sections and a coefficient, with one main row and its islands.
    void prepare(CDialogUnderTest &dialog, int method, std::initializer_list<const wchar_t *> sections)
    {
        dialog.choose(257, method);
        if (sections.size() > 0)
            select(dialog, sections);
        dialog.type(215, "0.35");
        dialog.addMainRow(m_outer, 9700, {m_first, m_second});
        dialog.addIslandRow(m_first, 100);
        dialog.addIslandRow(m_second, 200);
        dialog.GetDlgItem(221)->setEnabled(true);
    }
    AcDbObjectId m_outer, m_first, m_second;
};

TEST_F(Saving, WithNoRowSelectedOnlyTheStatusAndTheMarksChange)
{
    run([&](CDialogUnderTest &dialog) {
        prepare(dialog, 1, {L"D1"});
        dialog.selectRows({});
        Journal::instance().setRecording(true);
        dialog.click(221);
        EXPECT_EQ(dialog.text(281), "");
        EXPECT_EQ(dialog.colour(281), 23551u);
        EXPECT_THAT(entriesOf("CCatchmentAreaManager::CreateCA"), IsEmpty());
        EXPECT_THAT(
            calls({"CCatchmentAreaManager::UnMarkAllCatchments", "acedUpdateDisplay"}),
            ElementsAre("CCatchmentAreaManager::UnMarkAllCatchments", "acedUpdateDisplay", "acedUpdateDisplay"));
    });
    EXPECT_THAT(areas(), IsEmpty());
}

TEST_F(Saving, Method0GivesTheAreaToTheCurrentSectionAlone)
{
    run([&](CDialogUnderTest &dialog) {
        dialog.choose(257, 0);
        select(dialog, {L"D1", L"D2"});
        dialog.click(205);
        dialog.type(215, "0.35");
        dialog.addMainRow(m_outer, 10000);
        dialog.GetDlgItem(221)->setEnabled(true);
        dialog.selectRows({0});
        dialog.click(221);
    });
    ASSERT_THAT(areas(), SizeIs(1));
    EXPECT_EQ(areas().front()->GetName(), L"S-D2_1");
    EXPECT_THAT(sharesOf(*areas().front()), ElementsAre(std::pair(std::wstring(L"D2"), 1.0)));
}

TEST_F(Saving, Method0WithoutSectionsCreatesTheAreaAndAssignsItToNothing)
{
    run([&](CDialogUnderTest &dialog) {
        dialog.choose(257, 0);
        dialog.type(215, "0.35");
        dialog.type(329, "alone");
        dialog.addMainRow(m_outer, 10000);
        for (const int control : {221, 210})
            dialog.GetDlgItem(control)->setEnabled(true);
        dialog.selectRows({0});
        dialog.click(221);
    });
    ASSERT_THAT(areas(), SizeIs(1));
    EXPECT_EQ(areas().front()->GetName(), L"alone");
    EXPECT_THAT(sharesOf(*areas().front()), IsEmpty());
}

TEST_F(Saving, Method2SavesByItselfAndTheSaveOnlyClearsTheStatusAndRedrawsTheMarks)
{
    run([&](CDialogUnderTest &dialog) {
        prepare(dialog, 1, {L"D1"});
        dialog.Control<QComboBox>(257)->setCurrentIndex(2); // without its handler, which would take the rows away
        dialog.GetDlgItem(221)->setEnabled(true);
        dialog.GetDlgItem(210)->setEnabled(true);
        dialog.selectRows({0, 1});
        ASSERT_THAT(dialog.list()->selectedItems(), SizeIs(2));
        Journal::instance().setRecording(true);
        dialog.click(221);
        Journal::instance().setRecording(false);
        EXPECT_EQ(dialog.text(281), "");
        EXPECT_EQ(dialog.colour(281), 23551u);
        EXPECT_THAT(entriesOf("CCatchmentAreaManager::CreateCA"), IsEmpty());
        EXPECT_THAT(entriesOf("CCatchmentAreaManager::SetHiddenCA"), IsEmpty());
        EXPECT_THAT(
            calls({"CCatchmentAreaManager::UnMarkAllCatchments", "acedUpdateDisplay"}),
            ElementsAre("CCatchmentAreaManager::UnMarkAllCatchments", "acedUpdateDisplay", "acedUpdateDisplay"));
    });
    EXPECT_THAT(areas(), IsEmpty());
    EXPECT_THAT(alerts(), IsEmpty());
}

TEST_F(Saving, Method1SharesTheAreaByLength)
{
    m_session.setDrawing(velmor::Drawing::createNew());
    addSection(L"P", {0, 0}, {30, 0});
    addSection(L"Q", {30, 0}, {100, 0});
    const AcDbObjectId box = addBox(0, 0, 10, 10, L"0");
    run([&](CDialogUnderTest &dialog) {
        select(dialog, {L"P", L"Q"});
        dialog.type(215, "0.35");
        dialog.addMainRow(box, 100);
        dialog.GetDlgItem(221)->setEnabled(true);
        dialog.selectRows({0});
        dialog.click(221);
    });
    ASSERT_THAT(areas(), SizeIs(1));
    const auto shares = sharesOf(*areas().front());
    ASSERT_THAT(shares, SizeIs(2));
    EXPECT_DOUBLE_EQ(shares[0].second, 0.3);
    EXPECT_DOUBLE_EQ(shares[1].second, 0.7);
}

TEST_F(Saving, TheBagAndTheMaskOfAnAreaWithAPolygonAreComplete)
{
    run([&](CDialogUnderTest &dialog) {
        prepare(dialog, 1, {L"D1"});
        dialog.check(107, true);
        dialog.check(106, false); // no bit 1, and yet coefficient and slope are stored
        dialog.type(220, "300");
        dialog.type(216, "1.5");
        dialog.selectRows({0});
        dialog.click(221);
    });
    ASSERT_THAT(areas(), SizeIs(1));
    const auto &area = *areas().front();
    EXPECT_EQ(area.GetType(), 2);
    EXPECT_EQ(static_cast<std::wstring>(property(area, L"CA_GUID")), area.GetGuid());
    EXPECT_EQ(static_cast<double>(property(area, L"CA_POPULATION")), 300.0);
    EXPECT_EQ(static_cast<double>(property(area, L"CA_COEFF")), 0.35);
    EXPECT_EQ(static_cast<double>(property(area, L"CA_SLOPE")), 1.5);
    EXPECT_EQ(static_cast<int>(property(area, L"CA_TYPE_ISLAND")), 0);
    EXPECT_FALSE(property(area, L"CA_MAIN_AREA").IsNotNull());
    EXPECT_NEAR(area.GetArea(), 1.0, 1e-12);
    EXPECT_FALSE(area.IsHidden());
}

TEST_F(Saving, MainAreaAndIslandsSelectedTogetherAreTiedInSavingOrder)
{
    run([&](CDialogUnderTest &dialog) {
        prepare(dialog, 1, {L"D1"});
        dialog.selectRows({0, 1, 2});
        dialog.click(221);
        EXPECT_EQ(dialog.text(281), ToQString(message(3498)));
        EXPECT_EQ(dialog.colour(281), 23551u);
    });
    ASSERT_THAT(areas(), SizeIs(3));
    const auto main = areas()[0], first = areas()[1], second = areas()[2];
    EXPECT_EQ(main->GetName(), L"S-D1_1");
    for (const auto &island : {first, second}) {
        EXPECT_EQ(static_cast<std::wstring>(property(*island, L"CA_MAIN_AREA")), main->GetGuid());
        EXPECT_EQ(static_cast<int>(property(*island, L"CA_TYPE_ISLAND")), 1);
    }
    CStringArray list, onEntity;
    ASSERT_TRUE(property(*main, L"CA_ISLANDS").GetArrayCopy(list));
    EXPECT_THAT(list, ElementsAre(first->GetGuid(), second->GetGuid()));
    ASSERT_TRUE(attached(main->GetObjectId(), L"SLIV_ISLANDS").GetArrayCopy(onEntity));
    EXPECT_EQ(onEntity, list);
    for (const AcDbObjectId &polyline : {m_first, m_second})
        EXPECT_EQ(static_cast<std::wstring>(attached(polyline, L"SLIV_MAIN_AREA")), main->GetGuid());
}

TEST_F(Saving, AMainAreaSavedAloneCarriesTheHandlesOfItsIslandsPolylines)
{
    run([&](CDialogUnderTest &dialog) {
        prepare(dialog, 1, {L"D1"});
        dialog.selectRows({0});
        dialog.click(221);
    });
    ASSERT_THAT(areas(), SizeIs(1));
    CStringArray handles;
    ASSERT_TRUE(attached(areas().front()->GetObjectId(), L"SLIV_ISLANDS").GetArrayCopy(handles));
    wchar_t first[17], second[17];
    m_first.handle().getIntoAsciiBuffer(first);
    m_second.handle().getIntoAsciiBuffer(second);
    EXPECT_THAT(handles, ElementsAre(std::wstring(first), std::wstring(second)));
}

TEST_F(Saving, AnIslandWhosePolylineCannotBeOpenedForWritingIsTiedToNothing)
{
    const AcDbObjectId box = addBox(1000, 0, 1010, 10, L"0");
    run([&](CDialogUnderTest &dialog) {
        select(dialog, {L"D1"});
        dialog.type(215, "0.5");
        dialog.addIslandRow(box, 100);
        dialog.GetDlgItem(221)->setEnabled(true);
        dialog.selectRows({0});
        AcDbEntity *held = nullptr; // open for reading: it can be read once more, but not written
        ASSERT_EQ(acdbOpenAcDbEntity(held, box, AcDb::kForRead), Acad::eOk);
        dialog.click(221);
        held->close();
    });
    ASSERT_THAT(areas(), SizeIs(1));
    EXPECT_EQ(static_cast<int>(property(*areas().front(), L"CA_TYPE_ISLAND")), 1);
    EXPECT_FALSE(property(*areas().front(), L"CA_MAIN_AREA").IsNotNull()) << "not even an empty one";
}

TEST_F(Saving, IslandsMayBeSavedByALaterClick)
{
    run([&](CDialogUnderTest &dialog) {
        prepare(dialog, 1, {L"D1"});
        dialog.selectRows({0});
        dialog.click(221);
        EXPECT_EQ(dialog.list()->topLevelItemCount(), 3);
        dialog.selectRows({2});
        dialog.click(221);
    });
    ASSERT_THAT(areas(), SizeIs(2));
    CStringArray list;
    ASSERT_TRUE(property(*areas()[0], L"CA_ISLANDS").GetArrayCopy(list));
    EXPECT_THAT(list, ElementsAre(areas()[1]->GetGuid()));
}

TEST_F(Saving, AnIslandWhoseMainAreaWasNeverSavedHasAnEmptyMainArea)
{
    run([&](CDialogUnderTest &dialog) {
        prepare(dialog, 1, {L"D1"});
        dialog.selectRows({1});
        Journal::instance().setRecording(true);
        dialog.click(221);
        // Its own label; none is written anew for a main area.
        EXPECT_THAT(entriesOf("CCatchmentAreaManager::WriteCatchmentLabel"), SizeIs(1));
    });
    ASSERT_THAT(areas(), SizeIs(1));
    const auto box = property(*areas().front(), L"CA_MAIN_AREA");
    EXPECT_TRUE(box.IsNotNull());
    EXPECT_EQ(static_cast<std::wstring>(box), L"");
}

TEST_F(Saving, AnIslandWhoseMainAreaIsGoneKeepsItsGuidAndChangesNoOtherArea)
{
    std::wstring gone;
    run([&](CDialogUnderTest &dialog) {
        prepare(dialog, 1, {L"D1"});
        dialog.selectRows({0});
        dialog.click(221);
        ASSERT_THAT(areas(), SizeIs(1));
        gone = areas().front()->GetGuid();
        Sewage::CCatchmentAreaManager::Instance()->DeleteCA(areas().front());
        ASSERT_THAT(areas(), IsEmpty());
        dialog.selectRows({1});
        Journal::instance().setRecording(true);
        dialog.click(221);
        Journal::instance().setRecording(false);
    });
    ASSERT_THAT(areas(), SizeIs(1));
    EXPECT_EQ(static_cast<std::wstring>(property(*areas().front(), L"CA_MAIN_AREA")), gone);
    EXPECT_THAT(entriesOf("CCatchmentArea::SetPropertyData"), IsEmpty());
    ASSERT_THAT(entriesOf("CCatchmentAreaManager::WriteCatchmentLabel"), SizeIs(1));
    EXPECT_EQ(entriesOf("CCatchmentAreaManager::WriteCatchmentLabel").front().arguments.front(),
              velmor::journalText(areas().front()->GetGuid()));
    EXPECT_THAT(alerts(), IsEmpty());
}

TEST_F(Saving, AnIslandIsLabelledFromTheBlockAndItsMainAreaAnewFromTheCatalogue)
{
    run([&](CDialogUnderTest &dialog) {
        prepare(dialog, 1, {L"D1"});
        dialog.selectRows({0});
        dialog.click(221);
        dialog.selectRows({1});
        Journal::instance().setRecording(true);
        dialog.click(221);
        EXPECT_THAT(entriesOf("CCatchmentAreaManager::WriteCatchmentLabel"), SizeIs(2));
        dialog.check(274, false);
        dialog.selectRows({2});
        Journal::instance().setRecording(true);
        dialog.click(221);
        // The main area's label is written anew whether or not labels are asked for.
        EXPECT_THAT(entriesOf("CCatchmentAreaManager::WriteCatchmentLabel"), SizeIs(1));
    });
}

TEST_F(Saving, AMainAreaWithoutLabelGetsNeitherStatusNorRefreshAndLeavesTheGrownName)
{
    run([&](CDialogUnderTest &dialog) {
        prepare(dialog, 1, {L"D1"});
        dialog.check(274, false);
        dialog.selectRows({0});
        dialog.click(221);
        EXPECT_EQ(dialog.text(281), "");
        EXPECT_EQ(dialog.text(329), "S-S-D1_1_1");
    });
}

TEST_F(Saving, AMainAreaWithLabelShowsTheStatusAndStartsAgainFromTheSectionsName)
{
    run([&](CDialogUnderTest &dialog) {
        prepare(dialog, 1, {L"D1"});
        dialog.check(274, true);
        dialog.selectRows({0});
        dialog.click(221);
        EXPECT_EQ(dialog.text(281), ToQString(message(3498)));
        EXPECT_EQ(dialog.text(329), "S-D1_2");
    });
}

TEST_F(Saving, TheSameBoundaryAgainFailsOnTheNameAndWithAnotherNameOnTheCentre)
{
    run([&](CDialogUnderTest &dialog) {
        prepare(dialog, 1, {L"D1"});
        dialog.selectRows({0});
        dialog.click(221);
        dialog.type(329, "S-D1_1");
        dialog.click(221);
        EXPECT_THAT(alerts(), ElementsAre(message(1620)));
        alerts().clear();
        dialog.type(329, "another");
        dialog.click(221);
        EXPECT_THAT(alerts(), ElementsAre(message(2005)));
    });
    EXPECT_THAT(areas(), SizeIs(1));
}

TEST_F(Saving, NamesAndCentresOfAreasThatStoodBeforeAreTaken)
{
    const auto saveAs = [&](const char *name) {
        run([&](CDialogUnderTest &dialog) {
            prepare(dialog, 1, {L"D1"});
            dialog.type(329, name);
            dialog.selectRows({0});
            dialog.click(221);
        });
    };
    saveAs("first");
    EXPECT_THAT(alerts(), IsEmpty());
    saveAs("first");
    EXPECT_THAT(alerts(), ElementsAre(message(1620)));
    alerts().clear();
    saveAs("second");
    EXPECT_THAT(alerts(), ElementsAre(message(2005)));
    EXPECT_THAT(areas(), SizeIs(1));
}

TEST_F(Saving, CentresNearerThanAThousandthInXAndYAreOne)
{
    const auto saveBox = [&](double shiftX, double shiftY) {
        const AcDbObjectId box = addBox(2000 + shiftX, shiftY, 2010 + shiftX, 10 + shiftY, L"0");
        run([&](CDialogUnderTest &dialog) {
            select(dialog, {L"D1"});
            dialog.type(215, "0.35");
            dialog.addMainRow(box, 100);
            dialog.GetDlgItem(221)->setEnabled(true);
            dialog.selectRows({0});
            dialog.click(221);
        });
        return areas().size();
    };
    EXPECT_EQ(saveBox(0, 0), 1u);
    EXPECT_EQ(saveBox(0.0009, -0.0009), 1u);
    EXPECT_EQ(saveBox(0.0011, 0), 2u);
    EXPECT_EQ(saveBox(0, 0.0021), 3u);
}

TEST_F(Saving, TwoShapesOfOneCentreCountAsOne)
{
    run([&](CDialogUnderTest &dialog) {
        prepare(dialog, 1, {L"D1"});
        dialog.selectRows({0});
        dialog.click(221);
        dialog.addMainRow(addBox(1040, 20, 1060, 80, L"0"), 1200);
        dialog.selectRows({3});
        dialog.click(221);
    });
    EXPECT_THAT(alerts(), ElementsAre(message(2005)));
    EXPECT_THAT(areas(), SizeIs(1));
}

TEST_F(Saving, ARefusedRowDoesNotStopTheLaterOnes)
{
    run([&](CDialogUnderTest &dialog) {
        prepare(dialog, 1, {L"D1"});
        dialog.selectRows({0});
        dialog.click(221);
        dialog.selectRows({0, 1});
        dialog.click(221); // the main area's centre is taken, the island is new
        EXPECT_THAT(alerts(), ElementsAre(message(2005)));
    });
    EXPECT_THAT(areas(), SizeIs(2));
}

TEST_F(Saving, AnEmptyCoefficientSlopeOrDensityIsToldAndNothingIsWritten)
{
    for (const auto &[control, type] : {std::pair(215, 106), std::pair(216, 106), std::pair(220, 107)}) {
        alerts().clear();
        run([&, control = control, type = type](CDialogUnderTest &dialog) {
            prepare(dialog, 1, {L"D1"});
            dialog.check(type, true);
            dialog.selectRows({0});
            dialog.type(control, "");
            dialog.click(221);
            EXPECT_THAT(alerts(), ElementsAre(message(2155))) << control;
        });
    }
    EXPECT_THAT(areas(), IsEmpty());
}

TEST_F(Saving, TheTypeIndustrialAloneNeedsNoneOfTheThree)
{
    run([&](CDialogUnderTest &dialog) {
        prepare(dialog, 1, {L"D1"});
        dialog.check(108, true);
        dialog.check(106, false);
        for (const int control : {215, 216, 220})
            dialog.type(control, "");
        dialog.selectRows({0});
        dialog.click(221);
    });
    EXPECT_THAT(alerts(), IsEmpty());
    ASSERT_THAT(areas(), SizeIs(1));
    EXPECT_EQ(areas().front()->GetFlowCoeff(), 0.0);
}

TEST_F(Saving, WhileACommandOfTheFamilyRunsSaveDoesNothing)
{
    run([&](CDialogUnderTest &dialog) {
        prepare(dialog, 1, {L"D1"});
        dialog.selectRows({0});
        const Notification::SetActiveCommand other(L"OTHER");
        dialog.type(215, "");
        dialog.click(221);
    });
    EXPECT_THAT(alerts(), IsEmpty());
    EXPECT_THAT(areas(), IsEmpty());
}

TEST_F(Saving, AnAreaThatCannotBeMadeLeavesNoTraceButTheStampsOnItsIslands)
{
    // A line has no polygon, so the store makes nothing of it.
    const AcDbObjectId line = addLine(0, 0, 10, 10, L"0");
    run([&](CDialogUnderTest &dialog) {
        select(dialog, {L"D1"});
        dialog.type(215, "0.35");
        dialog.type(329, "wanted");
        dialog.addMainRow(line, 100, {m_first});
        dialog.GetDlgItem(221)->setEnabled(true);
        dialog.selectRows({0});
        Journal::instance().setRecording(true);
        dialog.click(221);
        EXPECT_THAT(entriesOf("CCatchmentAreaManager::AssignCA"), IsEmpty());
        EXPECT_EQ(dialog.text(329), "wanted");
        EXPECT_EQ(dialog.text(281), "");
    });
    EXPECT_THAT(areas(), IsEmpty());
    EXPECT_TRUE(attached(m_first, L"SLIV_MAIN_AREA").IsNotNull());
    EXPECT_THAT(alerts(), IsEmpty());
}

TEST_F(Saving, TheTraceTellsTheTwoFunctionsTheirMarkersAndAFailedCreation)
{
    // The only test that switches the trace on: its file stays open from then on.
    const auto log = m_userFolder / "trace.log";
    setSetting("LOG_FILE", ToWide(QString::fromStdString(log.string())));
    setSetting("LOGGING", 1);
    const AcDbObjectId line = addLine(0, 0, 10, 10, L"0");
    run([&](CDialogUnderTest &dialog) {
        select(dialog, {L"D1"});
        dialog.type(215, "0.35");
        dialog.addMainRow(line, 100);
        dialog.GetDlgItem(221)->setEnabled(true);
        dialog.selectRows({0});
        dialog.click(221);
    });
    setSetting("LOGGING", 0);
    std::ifstream file(log);
    std::vector<std::string> lines;
    for (std::string text; std::getline(file, text);) {
        const auto end = text.find("]", text.find("[CDlg"));
        if (text.find("[CDlgCreateCatchmentArea::") != std::string::npos)
            lines.push_back(text.substr(end + 3));
    }
    EXPECT_THAT(lines, ElementsAre("Entering function , CDlgCreateCatchmentArea::OnBtnSaveMain",
                                   "Entering function , CDlgCreateCatchmentArea::WriteSlivData", "Marker", "Marker",
                                   "Failed verification:  'ptrCA.get()!=0'",
                                   "Exiting function , CDlgCreateCatchmentArea::WriteSlivData",
                                   "Exiting function , CDlgCreateCatchmentArea::OnBtnSaveMain"));
}

class TypedArea : public Saving {
protected:
    void save(int mask, const char *area, const char *coefficient = "0.35", const char *density = "10")
    {
        run([&](CDialogUnderTest &dialog) {
            dialog.choose(257, 3);
            select(dialog, {L"D1", L"D2"});
            for (const auto &[control, bit] : {std::pair(106, 1), std::pair(107, 2), std::pair(108, 4)})
                dialog.Control<QAbstractButton>(control)->setChecked((mask & bit) != 0);
            dialog.type(213, area);
            dialog.type(215, coefficient);
            dialog.type(220, density);
            Journal::instance().setRecording(true);
            dialog.click(221);
            Journal::instance().setRecording(false);
        });
    }
    std::vector<std::wstring> tagsOf(const Sewage::CCatchmentArea &area)
    {
        std::vector<std::wstring> tags;
        for (const wchar_t *tag : {L"CA_GUID", L"CA_TYPE_ISLAND", L"CA_POPULATION", L"CA_COEFF", L"CA_SLOPE"}) {
            if (property(area, tag).IsNotNull())
                tags.emplace_back(tag);
        }
        return tags;
    }
};

TEST_F(TypedArea, TwoHectaresAreTakenAsTwentyThousandSquareMetres)
{
    save(1, "2");
    ASSERT_THAT(entriesOf("CCatchmentAreaManager::SetHiddenCA"), SizeIs(1));
    EXPECT_EQ(entriesOf("CCatchmentAreaManager::SetHiddenCA").front().arguments.at(1), "20000");
    ASSERT_THAT(areas(), SizeIs(1));
    const auto &area = *areas().front();
    EXPECT_NE(area.IsHidden(), 0);
    EXPECT_DOUBLE_EQ(area.GetArea(), 2.0);
    EXPECT_THAT(sharesOf(area), ElementsAre(std::pair(std::wstring(L"D1"), 1.0)));
}

TEST_F(TypedArea, TheAreaGoesToTheCurrentSectionWhicheverThatIs)
{
    run([&](CDialogUnderTest &dialog) {
        dialog.choose(257, 3);
        select(dialog, {L"D1", L"D2", L"D3"});
        dialog.click(205);
        EXPECT_EQ(dialog.text(326), "");
        dialog.type(213, "2");
        dialog.type(215, "0.35");
        dialog.click(221);
        EXPECT_EQ(dialog.list()->topLevelItemCount(), 0);
    });
    ASSERT_THAT(areas(), SizeIs(1));
    EXPECT_THAT(sharesOf(*areas().front()), ElementsAre(std::pair(std::wstring(L"D2"), 1.0)));
}

TEST_F(TypedArea, TheBagHoldsWhatTheTypesNeed)
{
    const std::pair<int, std::vector<std::wstring>> expected[] = {
        {1, {L"CA_GUID", L"CA_TYPE_ISLAND", L"CA_POPULATION", L"CA_COEFF", L"CA_SLOPE"}},
        {2, {L"CA_GUID", L"CA_TYPE_ISLAND", L"CA_POPULATION"}},
        {4, {L"CA_GUID", L"CA_TYPE_ISLAND"}},
    };
    for (const auto &[mask, tags] : expected) {
        save(mask, "1");
        ASSERT_FALSE(areas().empty());
        EXPECT_EQ(areas().back()->GetType(), mask);
        EXPECT_EQ(tagsOf(*areas().back()), tags) << mask;
    }
}

TEST_F(TypedArea, AnEmptyAreaIsToldForEveryTypeAndNothingIsMade)
{
    for (const int mask : {1, 2, 4}) {
        alerts().clear();
        save(mask, "");
        EXPECT_THAT(alerts(), ElementsAre(message(2155))) << mask;
    }
    EXPECT_THAT(areas(), IsEmpty());
}

TEST_F(TypedArea, WithoutSectionsNothingIsMadeAndNothingTold)
{
    run([&](CDialogUnderTest &dialog) {
        dialog.choose(257, 3);
        dialog.type(213, "1");
        dialog.type(215, "0.35");
        dialog.click(221);
    });
    EXPECT_THAT(areas(), IsEmpty());
    EXPECT_THAT(alerts(), IsEmpty());
}

} // namespace
