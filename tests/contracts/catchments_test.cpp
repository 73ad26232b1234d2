// The catchment store: areas over sessions, marks and labels on the screen, picks with tips in the window.
#include "tests/contracts/WindowFixture.h"

#include "contracts/CatchmentArea.h"
#include "contracts/HostDialog.h"
#include "host/drawing/Transient.h"
#include "host/editor/dialogs/HostDialogs.h"
#include "host/network/Network.h"
#include "host/services/Text.h"

#include <QAbstractButton>
#include <QListWidget>

#include <numbers>

namespace velmor::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using ZEMGis::Data::CDataBox;
using ZEMGis::Data::CProperties;
using ZEMGis::Data::CProperty;
using ZEMGis::Sewage::CatchmentAreas;
using ZEMGis::Sewage::CCatchmentArea;
using ZEMGis::Sewage::CCatchmentAreaManager;
using ZEMGis::Sewage::SectionShares;
using AreaPtr = boost::shared_ptr<CCatchmentArea>;
using SectionPtr = Network::SectionPtr;

constexpr char kNetwork[] = R"([OPTIONS]
FLOW_UNITS CMS
[JUNCTIONS]
A 10
B 10
[OUTFALLS]
C 8 FREE
[CONDUITS]
S1 A B 30 0.01
S2 B C 70 0.01
[COORDINATES]
A 0 -5
B 30 -5
C 100 -5
)";
constexpr wchar_t kMain[] = L"POLYGON ((0 0, 100 0, 100 100, 0 100, 0 0))";
constexpr wchar_t kIsland[] = L"POLYGON ((30 30, 60 30, 60 60, 30 60, 30 30))";
/// An L, clockwise.
constexpr wchar_t kClockwiseL[] = L"POLYGON ((200 0, 200 100, 250 100, 250 40, 300 40, 300 0, 200 0))";

class CatchmentContract : public WindowFixture {
protected:
    void SetUp() override { ASSERT_TRUE(importInpText(drawing(), kNetwork, "small.inp")); }
    static CCatchmentAreaManager &manager() { return *CCatchmentAreaManager::Instance(); }
    SectionPtr section(const wchar_t *name) { return drawing().component<Network>().sectionByName(name); }
    static boost::shared_ptr<CProperties> bag(std::initializer_list<std::pair<const wchar_t *, CDataBox>> values)
    {
        boost::shared_ptr<CProperties> properties(new CProperties);
        for (const auto &[tag, value] : values) {
            boost::shared_ptr<CProperty> property(new CProperty);
            property->SetTag(tag);
            property->SetValue(value);
            properties->AddProperty(property);
        }
        return properties;
    }
    static AreaPtr create(const wchar_t *guid, const wchar_t *polygon, const wchar_t *name, int type = 3)
    {
        return manager().CreateCA(polygon, name, type, bag({{L"CA_GUID", guid}}));
    }
    static AreaPtr byGuid(const wchar_t *guid) { return manager().GetCatchmentAreaByGuid(guid); }
    static std::vector<std::wstring> guids(unsigned mask = 7)
    {
        CatchmentAreas areas;
        manager().GetAllCatchmentAreas(areas, mask);
        std::vector<std::wstring> all;
        for (const AreaPtr &area : areas)
            all.push_back(area->GetGuid());
        return all;
    }
    void useIndex()
    {
        CatchmentAreas areas;
        manager().GetAllCatchmentAreas(areas, 7);
        std::vector<ZEMGis::Topology::CEntity *> all;
        for (const AreaPtr &area : areas)
            all.push_back(area.get());
        CCatchmentAreaManager::SetSpatialIndexCA(
            ZEMGis::Topology::CTopoEditor::Instance()->CreateCustomSpatialIndex(all));
    }
    static std::vector<std::pair<std::wstring, double>> sharesOf(const AreaPtr &area)
    {
        SectionShares shares;
        area->GetConnectedSections(shares);
        std::vector<std::pair<std::wstring, double>> all;
        for (const auto &[its, share] : shares)
            all.emplace_back(its->GetName(), share);
        return all;
    }
    static std::wstring textOf(const AreaPtr &area, const wchar_t *tag)
    {
        CDataBox box;
        area->GetPropertyData(tag, box);
        return static_cast<std::wstring>(box);
    }
};

TEST_F(CatchmentContract, AnAreaIsInTheNextSessionWhatItWasMadeOf)
{
    const QImage before = picture();
    const AreaPtr main = manager().CreateCA(kMain, L"S-1", 3,
                                            bag({{L"CA_GUID", L"{M}"},
                                                 {L"CA_POPULATION", 120.5},
                                                 {L"CA_COEFF", 0.35},
                                                 {L"CA_SLOPE", 1.25},
                                                 {L"CA_TYPE_ISLAND", 0}}));
    ASSERT_TRUE(main);
    manager().CreateCA(kIsland, L"S-S-1_1", 1,
                       bag({{L"CA_GUID", L"{I}"}, {L"CA_TYPE_ISLAND", 1}, {L"CA_MAIN_AREA", L"{M}"}}));
    main->SetPropertyData(L"CA_ISLANDS", CDataBox(CStringArray{L"{I}"}));
    for (const bool afterwards : {false, true}) {
        if (afterwards)
            reopen();
        const AreaPtr area = byGuid(L"{M}"), island = byGuid(L"{I}");
        ASSERT_TRUE(area && island);
        EXPECT_EQ(area->GetName(), L"S-1");
        EXPECT_EQ(area->GetType(), 3);
        EXPECT_EQ(area->GetPopulation(), 120.5);
        EXPECT_EQ(area->GetFlowCoeff(), 0.35);
        EXPECT_EQ(textOf(area, L"CA_SLOPE"), L"1.25");
        EXPECT_EQ(textOf(island, L"CA_TYPE_ISLAND"), L"1");
        EXPECT_EQ(textOf(island, L"CA_MAIN_AREA"), L"{M}");
        EXPECT_DOUBLE_EQ(area->GetArea(), 1.0) << "hectares";
        EXPECT_EQ(area->IsHidden(), 0);
        EXPECT_GT(differences(before, picture()), 300) << "the outline shows";
        std::vector<std::wstring> islands;
        EXPECT_EQ(area->GetSubCatchments(islands), 1);
        EXPECT_THAT(islands, ElementsAre(L"{I}"));
    }
    for (const wchar_t *text : {L"POLYGON EMPTY", L"", L"POLYGON ((0 0, 1 1))", L"LINESTRING (0 0, 1 1)", L"rubbish"})
        EXPECT_FALSE(manager().CreateCA(text, L"n", 1, bag({}))) << utf8(text);
    EXPECT_FALSE(byGuid(L"{m}")) << "case counts";
}

TEST_F(CatchmentContract, AHiddenAreaHasNoPolygonAndIsListedLikeAllOthers)
{
    ASSERT_TRUE(manager().SetHiddenCA(section(L"S2"), 20000.0, 4, bag({{L"CA_GUID", L"{H}"}})));
    for (const bool afterwards : {false, true}) {
        if (afterwards)
            reopen();
        const AreaPtr area = byGuid(L"{H}");
        ASSERT_TRUE(area);
        EXPECT_DOUBLE_EQ(area->GetArea(), 2.0);
        EXPECT_NE(area->IsHidden(), 0);
        EXPECT_THAT(guids(), ElementsAre(L"{H}"));
        EXPECT_THAT(sharesOf(area), ElementsAre(std::pair(std::wstring(L"S2"), 1.0)));
        CatchmentAreas ofSection;
        EXPECT_EQ(manager().GetCABySection(section(L"S2"), ofSection, 4), 1);
        EXPECT_EQ(manager().GetCABySection(section(L"S2"), ofSection, 3), 0);
        EXPECT_EQ(area->GetCenterPoint(), AcGePoint3d(65, -5));
    }
    EXPECT_FALSE(manager().SetHiddenCA({}, 1.0, 1, bag({})));
}

TEST_F(CatchmentContract, SharesAreReplacedChangedOneByOneAndClearedAlsoInTheFile)
{
    const AreaPtr area = create(L"{A}", kMain, L"a");
    manager().AssignCA({{section(L"S1"), 0.25}, {section(L"S2"), 0.75}}, area);
    manager().AssignCA({{section(L"S2"), 0.3}, {section(L"S1"), 0.7}}, area);
    reopen();
    EXPECT_THAT(sharesOf(byGuid(L"{A}")),
                ElementsAre(std::pair(std::wstring(L"S2"), 0.3), std::pair(std::wstring(L"S1"), 0.7)))
        << "only the second one counts, in the order given";
    EXPECT_NE(byGuid(L"{A}")->SetConnectedSectionShare(section(L"S2"), 0.0, 1), 0);
    EXPECT_NE(byGuid(L"{A}")->SetConnectedSectionShare(section(L"S1"), 1.0, 1), 0);
    EXPECT_EQ(byGuid(L"{A}")->SetConnectedSectionShare({}, 0.5, 1), 0) << "a null section is borne";
    reopen();
    EXPECT_THAT(sharesOf(byGuid(L"{A}")),
                ElementsAre(std::pair(std::wstring(L"S2"), 0.0), std::pair(std::wstring(L"S1"), 1.0)));
    drawing().erase(entityOf(section(L"S2")->GetObjectId()));
    reopen();
    EXPECT_THAT(sharesOf(byGuid(L"{A}")), ElementsAre(std::pair(std::wstring(L"S1"), 1.0)))
        << "a section that left the network is passed over";
    manager().AssignCA({}, byGuid(L"{A}"));
    reopen();
    SectionShares none;
    EXPECT_EQ(byGuid(L"{A}")->GetConnectedSections(none), 0);
    EXPECT_TRUE(none.empty());
}

TEST_F(CatchmentContract, ADeletedAreaTakesOutlineLabelAndMarkWithIt)
{
    const QImage plain = picture();
    const AreaPtr area = create(L"{A}", kMain, L"a");
    auto *map = ZEMGis::Data::CCatalogManager::Instance()->GetCatalog(L"CA_LABEL_CATALOG", 1)->GetAllElementsMap();
    ASSERT_NE(manager().WriteCatchmentLabel(area, map->begin()->second.get()), 0);
    area->Mark(1, 1.0, 0.0, L"ANSI31", 0);
    EXPECT_GT(differences(plain, picture()), 1000);
    manager().DeleteCA(area);
    for (const bool afterwards : {false, true}) {
        if (afterwards)
            reopen();
        EXPECT_EQ(differences(plain, picture()), 0);
        EXPECT_FALSE(byGuid(L"{A}"));
        EXPECT_TRUE(guids().empty());
    }
}

TEST_F(CatchmentContract, AreasComeInAStableOrderAndByAnyCommonBit)
{
    for (const wchar_t *guid : {L"{5}", L"{1}", L"{9}", L"{3}"})
        create(guid, kMain, guid, guid[1] == L'9' ? 4 : 3);
    manager().AssignCA({{section(L"S1"), 1.0}}, byGuid(L"{1}"));
    for (const bool afterwards : {false, true}) {
        if (afterwards)
            reopen();
        EXPECT_THAT(guids(), ElementsAre(L"{5}", L"{1}", L"{9}", L"{3}"));
        for (const auto &[mask, count] : {std::pair{1u, 1}, std::pair{2u, 1}, std::pair{4u, 0}, std::pair{7u, 1}}) {
            CatchmentAreas areas;
            EXPECT_EQ(manager().GetCABySection(section(L"S1"), areas, mask), count) << "masks on an area of type 3";
        }
    }
}

TEST_F(CatchmentContract, AnErasedIslandStaysNamedAndIsFoundNoMore)
{
    create(L"{M}", kMain, L"main");
    create(L"{I}", kIsland, L"one");
    create(L"{J}", L"POLYGON ((70 70, 80 70, 80 80, 70 80, 70 70))", L"two");
    byGuid(L"{M}")->SetPropertyData(L"CA_ISLANDS", CDataBox(CStringArray{L"{I}", L"{J}"}));
    manager().DeleteCA(byGuid(L"{I}"));
    for (const bool afterwards : {false, true}) {
        if (afterwards)
            reopen();
        std::vector<std::wstring> islands;
        EXPECT_EQ(byGuid(L"{M}")->GetSubCatchments(islands), 2) << "references may dangle";
        EXPECT_THAT(islands, ElementsAre(L"{I}", L"{J}"));
        EXPECT_FALSE(byGuid(L"{I}"));
        EXPECT_TRUE(byGuid(L"{J}"));
    }
}

TEST_F(CatchmentContract, WhatIsChangedIsKeptAtOnce)
{
    create(L"{A}", kMain, L"before");
    reopen();
    const AreaPtr area = byGuid(L"{A}");
    area->SetName(L"Čista 2");
    area->SetType(6);
    area->SetFlowCoeff(0.875);
    area->SetPopulation(33.5);
    reopen();
    EXPECT_EQ(byGuid(L"{A}")->GetName(), L"Čista 2");
    EXPECT_EQ(byGuid(L"{A}")->GetType(), 6);
    EXPECT_EQ(byGuid(L"{A}")->GetFlowCoeff(), 0.875);
    EXPECT_EQ(byGuid(L"{A}")->GetPopulation(), 33.5);
}

TEST_F(CatchmentContract, TheCentreOfAClockwiseRingIsTheMeanOfItsVertices)
{
    create(L"{L}", kClockwiseL, L"L");
    create(L"{M}", kMain, L"M");
    for (const bool afterwards : {false, true}) {
        if (afterwards)
            reopen();
        const AcGePoint3d centre = byGuid(L"{L}")->GetCenterPoint();
        EXPECT_NEAR(centre.x, (200 + 200 + 250 + 250 + 300 + 300) / 6.0, 1e-10);
        EXPECT_NEAR(centre.y, (0 + 100 + 100 + 40 + 40 + 0) / 6.0, 1e-10);
        EXPECT_EQ(byGuid(L"{M}")->GetCenterPoint(), AcGePoint3d(50, 50));
    }
}

TEST_F(CatchmentContract, AnAreaWhoseOutlineWasErasedByTheHostsCommandIsGone)
{
    create(L"{A}", kMain, L"a");
    create(L"{B}", kClockwiseL, L"b");
    std::wstring reason;
    session.answers().push({std::wstring(L"#" + byGuid(L"{A}")->GetHandleText())});
    session.answers().push({Answer::Enter{}});
    ASSERT_TRUE(session.commands().run(L"ERASE", &reason)) << utf8(reason);
    manager().RefreshExistingCatchments();
    EXPECT_THAT(guids(), ElementsAre(L"{B}"));
    reopen();
    manager().RefreshExistingCatchments();
    EXPECT_THAT(guids(), ElementsAre(L"{B}"));
}

// --- On the screen ------------------------------------------------------------------------------------------------

TEST_F(CatchmentContract, MarksShowFivePatternsAnglesScalesAndColoursAndAreNoPartOfTheDrawing)
{
    const AreaPtr area = create(L"{A}", kMain, L"a");
    const std::string file = drawing().write();
    const QImage plain = picture();
    std::vector<QImage> seen;
    const auto mark = [&](int colour, double scale, double angle, const wchar_t *pattern) {
        area->Mark(colour, scale, angle, pattern, 0);
        const QImage image = picture();
        EXPECT_GT(differences(plain, image), 300) << utf8(pattern);
        for (const QImage &other : seen)
            EXPECT_GT(differences(other, image), 100) << utf8(pattern);
        seen.push_back(image);
    };
    for (const wchar_t *pattern : {L"ANSI31", L"ANSI37", L"NET", L"DASH", L"BRICK"})
        mark(1, 2.0, 0.0, pattern);
    mark(1, 2.0, std::numbers::pi / 4.0, L"ANSI31");
    mark(1, 5.0, 0.0, L"ANSI31");
    mark(5, 2.0, 0.0, L"ANSI31");
    EXPECT_EQ(drawing().component<TransientGraphics>().marks().size(), 1u) << "each one replaced the one before";
    EXPECT_EQ(drawing().write(), file);
    for (const AcDbEntity *entity : entities())
        EXPECT_NE(kindOf(*entity), EntityKind::Hatch);
    // What can't be drawn as asked is borne.
    area->Mark(1, 0.0, 0.0, L"ANSI31", 0);
    area->Mark(1, 1.0, 0.0, L"NO SUCH PATTERN", 0);
    area->Mark(1, 1.0, 0.0, nullptr, 0);
    area->UnMark();
    EXPECT_EQ(differences(plain, picture()), 0);
    area->Mark(1, 1.0, 0.0, L"ANSI31", 0);
    manager().UnMarkAllCatchments(7);
    EXPECT_EQ(differences(plain, picture()), 0) << "no mark is left on the screen";
}

TEST_F(CatchmentContract, LabelsFollowTheirBlockOrTypeAndTheValuesOfTheOrder)
{
    const AreaPtr area = create(L"{A}", kMain, L"SLIV 1");
    area->SetFlowCoeff(0.5);
    const AcDbObjectId block = CZEMCDraw::insertBlockDefinition(
        L"CatchLabel", (std::filesystem::path(VELMOR_TEST_RESOURCES) / "symbols" / "CatchLabel.dxf").wstring().c_str());
    ASSERT_FALSE(block.isNull());
    CStringArray tags;
    ASSERT_EQ(ZEMGis::Utility::CUtility::GetAttributesFromBlockDef(block, tags), 4);
    const auto texts = [&] {
        std::vector<std::wstring> all;
        for (const AcDbEntity *entity : entities())
            if (kindOf(*entity) == EntityKind::BlockReference)
                for (const AttributeEntity *a : attributesOf(static_cast<const AcDbBlockReference &>(*entity)))
                    all.push_back(a->shape().text);
        return all;
    };
    const QImage plain = picture();
    ASSERT_NE(manager().WriteCatchmentLabel(area, block, tags), 0);
    const QImage first = picture();
    EXPECT_GT(differences(plain, first), 50);
    EXPECT_THAT(texts(), testing::IsSupersetOf({HasSubstr(L"SLIV 1"), HasSubstr(L"0.5")}));
    area->SetFlowCoeff(0.75);
    ASSERT_NE(manager().WriteCatchmentLabel(area, block, tags), 0);
    EXPECT_THAT(texts(), testing::Contains(HasSubstr(L"0.75")));
    EXPECT_EQ(texts().size(), 4u) << "the second one replaced the first";
    EXPECT_GT(differences(first, picture()), 10);
    EXPECT_EQ(manager().WriteCatchmentLabel(area, AcDbObjectId(), tags), 0);
    EXPECT_EQ(manager().WriteCatchmentLabel(area, block, {}), 0);
    EXPECT_EQ(manager().WriteCatchmentLabel(area, nullptr), 0);
    auto *map = ZEMGis::Data::CCatalogManager::Instance()->GetCatalog(L"CA_LABEL_CATALOG", 1)->GetAllElementsMap();
    ASSERT_GE(map->size(), 2u);
    ASSERT_NE(manager().WriteCatchmentLabel(area, map->begin()->second.get()), 0);
    const QImage oneType = picture();
    ASSERT_NE(manager().WriteCatchmentLabel(area, std::next(map->begin())->second.get()), 0);
    EXPECT_GT(differences(oneType, picture()), 20) << "two types look different";
    reopen();
    EXPECT_NE(manager().DeleteCatchmentLabel(byGuid(L"{A}")), 0);
    EXPECT_EQ(manager().DeleteCatchmentLabel(byGuid(L"{A}")), 0) << "twice in a row";
    EXPECT_TRUE(byGuid(L"{A}")) << "the area stays";
    EXPECT_EQ(differences(plain, picture()), 0);
}

TEST_F(CatchmentContract, MarksAreDrawnWithThePatternThatWasChosenInTheDialog)
{
    const AreaPtr area = create(L"{A}", kMain, L"a");
    std::wstring pattern = L"ANSI31";
    const auto marked = [&] {
        area->Mark(1, 2.0, 0.0, pattern.c_str(), 0);
        return picture();
    };
    const QImage before = marked();
    for (const bool ok : {false, true}) {
        session.setDialogDriver([ok](CAdUiBaseDialog &dialog) {
            auto *list = dialog.Control<QListWidget>(kControlPatterns);
            list->setCurrentItem(list->findItems(QStringLiteral("NET"), Qt::MatchExactly).value(0));
            dialog.Control<QAbstractButton>(ok ? kControlOk : kControlCancel)->click();
        });
        EXPECT_EQ(acedHatchPalletteDialog(L"ANSI31", true, pattern), ok);
        EXPECT_EQ(differences(before, marked()) > 300, ok);
    }
    session.setDialogDriver({});
}

// --- Picks with tips ----------------------------------------------------------------------------------------------

TEST_F(CatchmentContract, TheTipFollowsThePointerOverAreasAndAClickEndsOneRound)
{
    create(L"{M}", kMain, L"MAIN");
    create(L"{I}", kIsland, L"ISLE");
    byGuid(L"{M}")->SetFlowCoeff(0.35);
    manager().AssignCA({{section(L"S1"), 0.25}, {section(L"S2"), 0.75}}, byGuid(L"{M}"));
    reopen();
    useIndex();
    showWindow();
    viewport->showExtents({-20, -20, 320, 120});
    QString overMain, overIsland, outside;
    QImage shotMain, shotOutside;
    const auto look = [&](double x, double y, QString &tip, QImage *image) {
        QTest::mouseMove(viewport, pixelOf(x, y));
        tip = pointerTipText(*viewport);
        if (image)
            *image = shot();
    };
    atPrompt([&] {
        look(280, 90, outside, &shotOutside);
        look(10, 90, overMain, &shotMain);
        look(45, 45, overIsland, nullptr);
        click(45, 45);
    });
    EXPECT_EQ(CCatchmentAreaManager::StartCAInfoTooltipAreas(), RTNORM);
    EXPECT_EQ(CCatchmentAreaManager::GetInteractivelySelectedCA(), byGuid(L"{I}").get())
        << "the island, not its main area";
    for (const char *part : {"MAIN", "1.0", "0.35", "S1 25", "S2 75"})
        EXPECT_THAT(overMain.toStdString(), HasSubstr(part));
    EXPECT_THAT(overIsland.toStdString(), HasSubstr("ISLE"));
    EXPECT_THAT(overIsland.toStdString(), Not(HasSubstr("MAIN")));
    EXPECT_EQ(outside, QString());
    EXPECT_GT(differences(shotMain, shotOutside), 300) << "it is on the screen";
    EXPECT_EQ(pointerTipText(*viewport), QString()) << "and goes with the prompt";

    atPrompt([this] { click(280, 90); });
    EXPECT_EQ(CCatchmentAreaManager::StartCAInfoTooltipAreas(), RTNORM);
    EXPECT_EQ(CCatchmentAreaManager::GetInteractivelySelectedCA(), nullptr) << "a click in the open";
    atPrompt([this] { key(Qt::Key_Return); });
    EXPECT_NE(CCatchmentAreaManager::StartCAInfoTooltipAreas(), RTNORM);
    atPrompt([this] { key(Qt::Key_Escape); });
    EXPECT_NE(CCatchmentAreaManager::StartCAInfoTooltipAreas(), RTNORM);
    CCatchmentAreaManager::SetSpatialIndexCA({});
    atPrompt([this] { click(45, 45); });
    CCatchmentAreaManager::StartCAInfoTooltipAreas(); // without an index: no crash
    EXPECT_EQ(CCatchmentAreaManager::GetInteractivelySelectedCA(), nullptr);
}

TEST_F(CatchmentContract, NoSnapDrawsAPickToANeighboursCorner)
{
    create(L"{A}", L"POLYGON ((0 0, 50 0, 50 50, 0 50, 0 0))", L"left");
    create(L"{B}", L"POLYGON ((50 0, 100 0, 100 50, 50 50, 50 0))", L"right");
    useIndex();
    showWindow();
    resbuf ends;
    ends.restype = RTSHORT;
    ends.resval.rint = 1;
    ASSERT_EQ(acedSetVar(L"OSMODE", &ends), RTNORM);
    for (const auto &[aside, guid] : {std::pair{-3, L"{A}"}, std::pair{3, L"{B}"}}) {
        const QPoint beside = pixelOf(50, 50) + QPoint(aside, 3);
        atPrompt([&] {
            QTest::mouseMove(viewport, beside);
            QTest::mouseClick(viewport, Qt::LeftButton, {}, beside);
        });
        EXPECT_EQ(CCatchmentAreaManager::StartCAInfoTooltipAreas(), RTNORM);
        EXPECT_EQ(CCatchmentAreaManager::GetInteractivelySelectedCA(), byGuid(guid).get());
    }
}

TEST_F(CatchmentContract, ASectionIsCaughtByPixelsNotByUnits)
{
    showWindow();
    for (const double half : {2000.0, 2.0}) {
        viewport->showExtents({15 - half, -5 - half, 15 + half, -5 + half});
        QString near, far;
        atPrompt([&] {
            const QPoint on = pixelOf(15, -5);
            QTest::mouseMove(viewport, on + QPoint(0, 40));
            far = pointerTipText(*viewport);
            QTest::mouseMove(viewport, on + QPoint(0, 4));
            near = pointerTipText(*viewport);
            key(Qt::Key_Return);
        });
        CCatchmentAreaManager::StartCAInfoTooltipSections();
        EXPECT_EQ(far, QString()) << half;
        EXPECT_NE(near, QString()) << half;
    }
}

TEST_F(CatchmentContract, OverSectionsTheTipGoesOnForSeveralClicksUntilItIsEnded)
{
    create(L"{M}", kMain, L"MAIN");
    manager().AssignCA({{section(L"S1"), 0.25}, {section(L"S2"), 0.75}}, byGuid(L"{M}"));
    reopen();
    showWindow();
    QString first, second;
    int rounds = 0;
    const auto round = [&](double x, QString &tip) {
        atPrompt([this, x, &tip, &rounds] {
            ++rounds;
            QTest::mouseMove(viewport, pixelOf(x, -4));
            tip = pointerTipText(*viewport);
            click(x, -5);
        });
    };
    round(15, first);
    round(65, second);
    atPrompt([this] { key(Qt::Key_Return); });
    CCatchmentAreaManager::StartCAInfoTooltipSections();
    EXPECT_EQ(rounds, 2);
    for (const char *part : {"S1", "30", "A", "B", "MAIN 25"})
        EXPECT_THAT(first.toStdString(), HasSubstr(part));
    for (const char *part : {"S2", "70", "MAIN 75"})
        EXPECT_THAT(second.toStdString(), HasSubstr(part));
}

} // namespace
} // namespace velmor::test
