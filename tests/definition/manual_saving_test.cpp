// Saving what was defined by hand: from a pick to areas with their ties, shares and labels, and what one undo takes
// back.
#include "tests/definition/dialog_tools.h"
#include "tests/definition/manual_fixture.h"

using namespace ZEMGis;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

class ManualSaving : public ManualDefinitionTest {
protected:
    ManualSaving()
    {
        addSecondCourtyard();
        forgetSteps();
    }
    void pickThree(CDialogUnderTest &dialog, int method, std::initializer_list<const wchar_t *> sections)
    {
        prepare(dialog, method, sections);
        dialog.check(268, true);
        pickPoint(dialog, 240, 20);
        ASSERT_THAT(rows(dialog), SizeIs(3));
    }
    static std::vector<std::wstring> names()
    {
        std::vector<std::wstring> found;
        for (const auto &area : areas())
            found.push_back(area->GetName());
        return found;
    }
    static std::wstring text(const Sewage::CCatchmentArea &area, const wchar_t *tag)
    {
        const Data::CDataBox box = property(area, tag);
        return box.IsNotNull() ? static_cast<std::wstring>(box) : L"(none)";
    }
    std::size_t labels()
    {
        return static_cast<std::size_t>(
            std::ranges::count_if(drawing().modelSpace().entities(), [](const AcDbEntity *entity) {
                return entity->isA() == AcDbBlockReference::desc() && !entity->isErased();
            }));
    }
};

TEST_F(ManualSaving, AMainAreaAndItsIslandsAreSavedByOneClick)
{
    run([&](CDialogUnderTest &dialog) {
        pickThree(dialog, 0, {L"D4"});
        dialog.selectRows({0, 1, 2});
        dialog.click(221);
        EXPECT_EQ(dialog.text(281), ToQString(message(3498)));
        EXPECT_EQ(dialog.colour(281), 23551u);
        EXPECT_THAT(rows(dialog), SizeIs(3)) << "a save leaves the list";
        EXPECT_THAT(loosePolylines(), SizeIs(3)) << "and the polylines";
        EXPECT_THAT(hatches(), IsEmpty());
        EXPECT_TRUE(dialog.isEnabled(221));
    });
    ASSERT_THAT(areas(), SizeIs(3));
    const auto main = areas()[0], first = areas()[1], second = areas()[2];
    EXPECT_THAT(names(), ElementsAre(L"S-D4_1", L"S-S-D4_1_1", L"S-D4_2"));
    EXPECT_NEAR(main->GetArea(), 1.0, 1e-12) << "the outer ring alone";
    EXPECT_NEAR(first->GetArea(), 0.04, 1e-12);
    CStringArray islands, onEntity;
    property(*main, L"CA_ISLANDS").GetArrayCopy(islands);
    attached(main->GetObjectId(), L"SLIV_ISLANDS").GetArrayCopy(onEntity);
    EXPECT_THAT(islands, ElementsAre(first->GetGuid(), second->GetGuid()));
    EXPECT_EQ(onEntity, islands);
    EXPECT_EQ(text(*main, L"CA_MAIN_AREA"), L"(none)");
    EXPECT_EQ(text(*first, L"CA_MAIN_AREA"), main->GetGuid());
    EXPECT_EQ(text(*second, L"CA_MAIN_AREA"), main->GetGuid());
    for (const auto &area : areas())
        EXPECT_THAT(sharesOf(*area), ElementsAre(std::pair(std::wstring(L"D4"), 1.0)));
}

TEST_F(ManualSaving, IslandsMayFollowByASecondClick)
{
    run([&](CDialogUnderTest &dialog) {
        pickThree(dialog, 1, {L"D4"});
        dialog.click(221); // the first row stands chosen after a pick
        ASSERT_THAT(areas(), SizeIs(1));
        CStringArray handles;
        attached(areas()[0]->GetObjectId(), L"SLIV_ISLANDS").GetArrayCopy(handles);
        wchar_t first[17], second[17];
        dialog.LastIslands()[0].handle().getIntoAsciiBuffer(first);
        dialog.LastIslands()[1].handle().getIntoAsciiBuffer(second);
        EXPECT_THAT(handles, ElementsAre(std::wstring(first), std::wstring(second)));
        dialog.selectRows({2, 1});
        dialog.click(221);
    });
    ASSERT_THAT(areas(), SizeIs(3));
    CStringArray islands;
    property(*areas()[0], L"CA_ISLANDS").GetArrayCopy(islands);
    EXPECT_THAT(islands, ElementsAre(areas()[1]->GetGuid(), areas()[2]->GetGuid())) << "in the order of rows";
}

TEST_F(ManualSaving, AnIslandBeforeItsMainAreaIsTiedToNothingAndItsMainAreaDoesNotFindIt)
{
    run([&](CDialogUnderTest &dialog) {
        pickThree(dialog, 1, {L"D4"});
        dialog.selectRows({1});
        dialog.click(221);
        ASSERT_THAT(areas(), SizeIs(1));
        EXPECT_EQ(text(*areas()[0], L"CA_MAIN_AREA"), L"");
        dialog.selectRows({0});
        dialog.click(221);
        ASSERT_THAT(areas(), SizeIs(2));
        EXPECT_FALSE(property(*areas()[1], L"CA_ISLANDS").IsNotNull());
    });
}

TEST_F(ManualSaving, ASecondSaveFailsOnTheNameAndThenOnTheCentre)
{
    run([&](CDialogUnderTest &dialog) {
        prepare(dialog, 1, {L"D1"});
        pickPoint(dialog, 50, 50);
        const QString name = dialog.text(329);
        dialog.click(221);
        ASSERT_THAT(areas(), SizeIs(1));
        dialog.type(329, name);
        dialog.click(221);
        EXPECT_THAT(alerts(), ElementsAre(message(1620)));
        dialog.type(329, "another");
        dialog.click(221);
        EXPECT_THAT(alerts(), ElementsAre(message(1620), message(2005)));
        EXPECT_EQ(dialog.text(281), "");
        EXPECT_EQ(dialog.colour(281), 23551u);
    });
    EXPECT_THAT(areas(), SizeIs(1));
}

TEST_F(ManualSaving, AMainAreaWithoutALabelLeavesTheGrownNameAndNoStatus)
{
    run([&](CDialogUnderTest &dialog) {
        prepare(dialog, 0, {L"D1"});
        pickPoint(dialog, 50, 50);
        dialog.click(221);
        EXPECT_EQ(dialog.text(329), "S-S-D1_1_1");
        EXPECT_EQ(dialog.text(281), "");
        pickPoint(dialog, 150, 50);
        dialog.check(274, true);
        dialog.click(221);
        EXPECT_EQ(dialog.text(329), "S-D1_2");
        EXPECT_EQ(dialog.text(281), ToQString(message(3498)));
    });
    EXPECT_THAT(names(), ElementsAre(L"S-D1_1", L"S-S-D1_1_1"));
}

TEST_F(ManualSaving, AllSectionsShareAnAreaByTheirLengths)
{
    run([&](CDialogUnderTest &dialog) {
        prepare(dialog, 1, {L"D1", L"D2"}); // 60 and 40 long
        pickPoint(dialog, 50, 50);
        dialog.click(221);
    });
    ASSERT_THAT(areas(), SizeIs(1));
    EXPECT_THAT(sharesOf(*areas()[0]),
                ElementsAre(std::pair(std::wstring(L"D1"), 0.6), std::pair(std::wstring(L"D2"), 0.4)));
}

TEST_F(ManualSaving, ThreeSectionsOneByOneEachWithItsWay)
{
    const AcDbObjectId parcel = addBox(4000, 0, 4100, 100, L"0");
    run([&](CDialogUnderTest &dialog) {
        prepare(dialog, 0, {L"D1", L"D3", L"D4"});
        pickEntity(dialog, parcel);
        dialog.click(221);
        dialog.click(205);
        pickCorners(dialog, {{5000, 0}, {5100, 0}, {5100, 100}});
        dialog.click(221);
        dialog.click(205);
        pickPoint(dialog, 240, 20);
        dialog.click(221);
    });
    EXPECT_THAT(names(), ElementsAre(L"S-D1_1", L"S-D3_1", L"S-D4_1"));
    ASSERT_THAT(areas(), SizeIs(3));
    EXPECT_THAT(sharesOf(*areas()[1]), ElementsAre(std::pair(std::wstring(L"D3"), 1.0)));
    EXPECT_NEAR(areas()[1]->GetArea(), 0.5, 1e-12);
}

TEST_F(ManualSaving, ASaveOfAMainAreaWithTwoIslandsIsOneStep)
{
    runCommand([&](CDialogUnderTest &dialog) {
        pickThree(dialog, 1, {L"D4"});
        dialog.check(274, true);
        dialog.selectRows({0, 1, 2});
        dialog.click(221);
        ASSERT_THAT(areas(), SizeIs(3));
        EXPECT_EQ(log().undoCount(), 1u) << "with what the start of the dialog wrote";
        EXPECT_EQ(log().undoName(), dialog.windowTitle().toStdWString());
    });
    EXPECT_EQ(log().undoCount(), 1u) << "with what its end wrote";
}

TEST_F(ManualSaving, OneUndoTakesASaveWithItsLabelsAndStampsBackAndRedoBringsThemAgain)
{
    runCommand([&](CDialogUnderTest &dialog) {
        pickThree(dialog, 1, {L"D4"});
        dialog.check(274, true);
        dialog.selectRows({0, 1, 2});
        dialog.click(221);
    });
    const auto islandsOnEntity = [] {
        CStringArray islands;
        attached(areas().at(0)->GetObjectId(), L"SLIV_ISLANDS").GetArrayCopy(islands);
        return islands;
    };
    ASSERT_THAT(areas(), SizeIs(3));
    EXPECT_EQ(labels(), 3u);
    const CStringArray islands = islandsOnEntity();
    EXPECT_THAT(islands, ElementsAre(areas()[1]->GetGuid(), areas()[2]->GetGuid()));
    EXPECT_EQ(m_session.commands().start(L"U"), velmor::RunStatus::Done);
    EXPECT_THAT(areas(), IsEmpty());
    EXPECT_EQ(labels(), 0u);
    EXPECT_THAT(loosePolylines(), IsEmpty());
    EXPECT_EQ(m_session.commands().start(L"REDO"), velmor::RunStatus::Done);
    ASSERT_THAT(areas(), SizeIs(3));
    EXPECT_EQ(labels(), 3u);
    EXPECT_EQ(islandsOnEntity(), islands);
    EXPECT_THAT(loosePolylines(), IsEmpty());
}

TEST_F(ManualSaving, AfterTheDialogOneUndoTakesTheLastSaveAndNoOutlineEverComesBack)
{
    const std::string before = drawing().write();
    runCommand([&](CDialogUnderTest &dialog) {
        pickThree(dialog, 1, {L"D4"});
        dialog.check(274, true);
        dialog.click(221);
        dialog.selectRows({1, 2});
        dialog.click(221);
        pickPoint(dialog, 50, 50);
        dialog.selectRows({});
        dialog.selectRows({0});
    });
    ASSERT_THAT(areas(), SizeIs(3));
    const std::string after = drawing().write();
    const auto nothingElse = [&] { return loosePolylines().empty() && hatches().empty(); };
    EXPECT_TRUE(nothingElse());
    EXPECT_EQ(log().undoCount(), 2u) << "picks and choices are no steps";
    m_session.commands().start(L"U");
    ASSERT_THAT(areas(), SizeIs(1));
    EXPECT_EQ(labels(), 1u);
    EXPECT_FALSE(property(*areas()[0], L"CA_ISLANDS").IsNotNull());
    EXPECT_TRUE(nothingElse());
    m_session.commands().start(L"U");
    EXPECT_THAT(areas(), IsEmpty());
    EXPECT_EQ(labels(), 0u);
    EXPECT_TRUE(nothingElse());
    EXPECT_EQ(drawing().write(), before);
    m_session.commands().start(L"REDO", std::vector{velmor::Answer{std::wstring(L"All")}});
    EXPECT_THAT(areas(), SizeIs(3));
    EXPECT_TRUE(nothingElse());
    EXPECT_EQ(drawing().write(), after);
}

TEST_F(ManualSaving, NamesAndCentresOfASaveThatWasUndoneAreFreeForTheNextDialog)
{
    runCommand([&](CDialogUnderTest &dialog) {
        prepare(dialog, 1, {L"D1"});
        pickPoint(dialog, 50, 50);
        dialog.click(221);
    });
    ASSERT_THAT(names(), ElementsAre(L"S-D1_1"));
    m_session.commands().start(L"U");
    ASSERT_THAT(areas(), IsEmpty());
    runCommand([&](CDialogUnderTest &dialog) {
        prepare(dialog, 1, {L"D1"});
        EXPECT_EQ(dialog.text(329), "S-D1_1");
        pickPoint(dialog, 50, 50);
        dialog.click(221);
    });
    EXPECT_THAT(alerts(), IsEmpty());
    EXPECT_THAT(names(), ElementsAre(L"S-D1_1"));
}

TEST_F(ManualSaving, WhileTheDialogIsOpenNobodyUndoesBesideIt)
{
    run([&](CDialogUnderTest &dialog) {
        prepare(dialog, 1, {L"D1"});
        pickPoint(dialog, 50, 50);
        dialog.click(221);
        EXPECT_EQ(m_session.commands().start(L"U"), velmor::RunStatus::Busy);
        EXPECT_THAT(areas(), SizeIs(1));
    });
}

TEST_F(ManualSaving, ATypedAreaIsOneStepToo)
{
    runCommand([&](CDialogUnderTest &dialog) {
        prepare(dialog, 3, {L"D1"});
        dialog.type(213, "2");
        dialog.click(221);
    });
    ASSERT_THAT(areas(), SizeIs(1));
    EXPECT_NEAR(areas()[0]->GetArea(), 2.0, 1e-12);
    EXPECT_EQ(log().undoCount(), 1u);
    m_session.commands().start(L"U");
    EXPECT_THAT(areas(), IsEmpty());
}

TEST_F(ManualSaving, TheSavedAreaIsMarkedAndTheNextPickShowsIt)
{
    run([&](CDialogUnderTest &dialog) {
        prepare(dialog, 0, {L"D1"});
        pickPoint(dialog, 50, 50);
        const auto calls = record({"CCatchmentArea::Mark"}, [&] { dialog.click(221); });
        ASSERT_THAT(areas(), SizeIs(1));
        const std::string mark = "Mark " + velmor::journalText(areas()[0]->GetGuid()) + " 3 2 0 ANSI31 0";
        EXPECT_THAT(calls, ElementsAre(mark));
        answerEscape();
        EXPECT_THAT(record({"CCatchmentArea::Mark"}, [&] { dialog.click(208); }), ElementsAre(mark));
    });
}

} // namespace
