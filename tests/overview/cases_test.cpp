// What a drawing may hold besides the plain case: islands, hidden areas, unknown lengths, areas without a section; and
// the overview while and after names change.
#include "tests/overview/overview_fixture.h"

#include "host/editor/CommandStack.h"
#include "host/network/NetworkData.h"
#include "overview/OverviewTexts.h"

#include <QTest>

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::IsSupersetOf;
using testing::SizeIs;

namespace {

class OverviewCases : public COverviewTest {
protected:
    OverviewCases() { makeNetwork(); }
    static void record()
    {
        velmor::Journal::instance().clear();
        velmor::Journal::instance().setRecording(true);
    }
    static AreaPtr addHidden(const boost::shared_ptr<ZEMGis::Topology::CSection> &section)
    {
        const auto text = [](const wchar_t *tag, const wchar_t *value) {
            boost::shared_ptr<ZEMGis::Data::CProperty> property(new ZEMGis::Data::CProperty);
            property->SetTag(tag);
            property->SetValue(std::wstring(value));
            return property;
        };
        boost::shared_ptr<ZEMGis::Data::CProperties> bag(new ZEMGis::Data::CProperties);
        bag->AddProperty(text(L"CA_GUID", L"{H}"));
        bag->AddProperty(text(L"CA_NAME", L"H"));
        auto *manager = ZEMGis::Sewage::CCatchmentAreaManager::Instance();
        const AreaPtr area = manager->SetHiddenCA(section, 5000.0, 4, bag);
        area->SetName(L"H");
        area->SetFlowCoeff(0.75);
        manager->AssignCA({{section, 1.0}}, area);
        return area;
    }
};

} // namespace

TEST_F(OverviewCases, AnIslandIsTakenOffItsAreaAndCountsByItself)
{
    areaNamed(L"A")->SetPropertyData(L"CA_ISLANDS", ZEMGis::Data::CDataBox(std::vector<std::wstring>{L"{I}"}));
    boost::shared_ptr<ZEMGis::Data::CProperties> bag(new ZEMGis::Data::CProperties);
    boost::shared_ptr<ZEMGis::Data::CProperty> guid(new ZEMGis::Data::CProperty);
    guid->SetTag(L"CA_GUID");
    guid->SetValue(std::wstring(L"{I}"));
    bag->AddProperty(guid);
    auto *manager = ZEMGis::Sewage::CCatchmentAreaManager::Instance();
    const AreaPtr island = manager->CreateCA(L"POLYGON ((2 22, 6 22, 6 32, 2 32, 2 22))", L"I", 1, bag);
    manager->AssignCA({{network().sectionByName(L"S1"), 1.0}}, island);
    run([&](CNetworkOverviewDlg &dialog) {
        EXPECT_THAT(
            rows(dialog, {kNameColumn, kHectaresColumn, kDrainsColumn}),
            IsSupersetOf({"  S1||0.0055", "    A|0.0060|0.0015", "    I|0.0040|0.0040", "    A|0.0060|0.0045"}));
    });
}

TEST_F(OverviewCases, AHiddenAreaHasItsNameAndHectaresIsMarkedAndZoomedToLikeAnyOther)
{
    addHidden(network().sectionByName(L"T1"));
    run([&](CNetworkOverviewDlg &dialog) {
        EXPECT_THAT(rows(dialog, {kNameColumn, kTypeColumn, kHectaresColumn, kDrainsColumn, kCoefficientColumn}),
                    IsSupersetOf({"    T1|||0.5100|0.7549", "      H|Industrial|0.5000|0.5000|0.7500"}));
        const std::vector<std::wstring> way = {L"Outfall O1", L"Branch at M1: T1", L"T1", L"H"};
        click(dialog, CNetworkOverviewDlg::kBtnExpand);
        record();
        clickPart(dialog, item(dialog, way), kHitCheck);
        EXPECT_THAT(calls("CCatchmentArea::Mark"), SizeIs(1));
        EXPECT_THAT(calls("CCatchmentArea::Mark").front(), testing::StartsWith("{H}"));
        record();
        clickPart(dialog, item(dialog, way), kHitText, kTypeColumn);
        EXPECT_THAT(calls("CZEMCEdit::zoom"), SizeIs(1));
        rename(dialog, item(dialog, way), kNameColumn, "Pump");
        EXPECT_EQ(areaNamed(L"Pump")->GetGuid(), L"{H}");
    });
}

TEST_F(OverviewCases, ASectionOfUnknownLengthHasAnEmptyCellAndItsBranchesSayHowManyThereAre)
{
    addNode(L"M5", 0, 0);
    auto line = std::make_unique<AcDbLine>(AcGePoint3d(10, 40), AcGePoint3d(0, 40));
    AcDbEntity &entity = *line;
    drawing().append(std::move(line));
    velmor::SectionData data;
    data.guid = L"{U}";
    data.name = L"U";
    data.startNode = L"{M5}";
    data.endNode = L"{M4}";
    data.length = ZEMGis::Topology::kUnknownValue;
    drawing().setData(entity, velmor::kSectionKey, velmor::itemsOf(data));
    run([&](CNetworkOverviewDlg &dialog) {
        EXPECT_THAT(rows(dialog, {kNameColumn, kLengthColumn, kNoteColumn}),
                    IsSupersetOf({"    U||no area", "Outfall O1|40.00|sections: 5, without a known length: 1"}));
    });
}

TEST_F(OverviewCases, AreasWithoutASectionAreHighlightedAndZoomedToTogether)
{
    addArea(L"D", 60, {});
    addArea(L"E", 80, {});
    run([&](CNetworkOverviewDlg &dialog) {
        CTreeListItem *group = item(dialog, {L"Areas without a section"});
        EXPECT_EQ(tree(dialog).GetItemText(group, kHectaresColumn), L"0.0200");
        record();
        clickPart(dialog, group, kHitCheck);
        EXPECT_THAT(calls("CCatchmentArea::Mark"), SizeIs(2));
        EXPECT_THAT(calls("CEntity::DrawTemporary"), IsEmpty());
        EXPECT_EQ(tree(dialog).GetCheck(item(dialog, {L"Outfall O1"})), kCheckOff);
        record();
        clickPart(dialog, group, kHitText, kTypeColumn);
        EXPECT_THAT(calls("CZEMCEdit::zoom"), SizeIs(1));
        record();
        clickPart(dialog, group, kHitCheck);
        EXPECT_THAT(calls("CCatchmentArea::UnMark"), SizeIs(2));
    });
}

TEST_F(OverviewCases, OtherRowsOfANodeWaitForTheEndOfTheEdit)
{
    run([&](CNetworkOverviewDlg &dialog) {
        clickPart(dialog, item(dialog, {L"Outfall O1", L"S1"}), kHitText, kFromColumn);
        QTest::keyClicks(QApplication::focusWidget(), "Mid");
        const auto names = [&] { return rows(dialog, {kNameColumn, kFromColumn, kToColumn}); };
        EXPECT_THAT(names(), IsSupersetOf({"  Branch at M1: T1", "    T1|M4|M1", "  S2|M2|M1"}));
        EXPECT_TRUE(network().nodeByName(L"M1"));
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
        settle();
        EXPECT_THAT(names(), IsSupersetOf({"  S1|Mid|O1", "  Branch at Mid: T1", "    T1|M4|Mid", "  S2|M2|Mid"}));
    });
}

TEST_F(OverviewCases, OpenedAgainAfterUndoItShowsWhatTheDrawingHoldsThen)
{
    run([&](CNetworkOverviewDlg &dialog) {
        dialog.RunHandler([&] { drawing().setDictionaryEntry("TEST", "FIRST", {{1, std::wstring(L"step")}}); });
        rename(dialog, item(dialog, {L"Outfall O1", L"S1"}), kFromColumn, "Mid");
        clickPart(dialog, item(dialog, {L"Outfall O1", L"S1"}), kHitCheck);
    });
    EXPECT_EQ(session.commands().start(L"U"), velmor::RunStatus::Done);
    run([&](CNetworkOverviewDlg &dialog) {
        EXPECT_THAT(rows(dialog, {kNameColumn, kFromColumn, kToColumn}), Contains("  S1|M1|O1"));
        EXPECT_EQ(tree(dialog).GetCheck(item(dialog, {L"Outfall O1", L"S1"})), kCheckOff);
        rename(dialog, item(dialog, {L"Outfall O1", L"S1"}), kFromColumn, "Mid");
        EXPECT_TRUE(network().nodeByName(L"Mid"));
    });
}
