// The network: identity over sessions, properties, temporary drawing, lookups, the spatial index, label types.
#include "tests/contracts/ContractsFixture.h"

#include "contracts/CatchmentArea.h"
#include "host/network/Network.h"
#include "host/services/DataBox.h"

#include <algorithm>
#include <cmath>
#include <random>

namespace velmor::test {
namespace {

using ZEMGis::Data::CDataBox;
using ZEMGis::Data::CProperties;
using ZEMGis::Data::CProperty;
using ZEMGis::Sewage::CCatchmentAreaManager;
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
S2 B C 70.5 0.01
[COORDINATES]
A 0 10
B 30 10
C 100 10
)";

class NetworkContract : public ContractsFixture {
protected:
    void SetUp() override { ASSERT_TRUE(importInpText(drawing(), kNetwork, "small.inp")); }
    Network &network() { return drawing().component<Network>(); }
    static boost::shared_ptr<ZEMGis::Topology::CTopologyStorage> topology()
    {
        return ZEMGis::Topology::CTopologyMultiStorage::Instance()->GetTopology();
    }
};

TEST_F(NetworkContract, IdentityAndHandlesAreTheSameInTheNextSession)
{
    struct Identity {
        std::wstring guid, name, handle, start, end;
        double length;
        bool operator==(const Identity &) const = default;
    };
    const auto identities = [&] {
        std::vector<Identity> all;
        for (const SectionPtr &s : network().sections())
            all.push_back({s->GetGuid(), s->GetName(), s->GetHandleText(), s->GetStartingNode()->GetGuid(),
                           s->GetEndingNode()->GetName(), s->GetLength2D()});
        return all;
    };
    const auto before = identities();
    ASSERT_EQ(before.size(), 2u);
    for (int times = 0; times < 2; ++times) {
        reopen();
        EXPECT_EQ(identities(), before);
        for (const Identity &one : before) {
            const SectionPtr byGuid = topology()->GetSectionByGuid(one.guid.c_str());
            ASSERT_TRUE(byGuid);
            EXPECT_EQ(byGuid, topology()->GetSectionByHandle(one.handle.c_str()));
            EXPECT_EQ(byGuid, topology()->GetSectionById(byGuid->GetObjectId()));
            EXPECT_EQ(handleTextOf(byGuid->GetObjectId()), one.handle);
        }
    }
    EXPECT_FALSE(topology()->GetSectionByGuid(L"none"));
    EXPECT_FALSE(topology()->GetSectionByHandle(L"FFFFF"));
    EXPECT_FALSE(topology()->GetSectionByHandle(nullptr));
}

TEST_F(NetworkContract, PropertiesOfAnEntityAreKeptInTheDrawing)
{
    const CStringArray islands{L"{A}", L"{B}"};
    EXPECT_NE(network().sectionByName(L"S1")->SetPropertyData(L"CA_ISLANDS", CDataBox(islands)), 0);
    for (const bool afterwards : {false, true}) {
        if (afterwards)
            reopen();
        CDataBox box, absent;
        EXPECT_NE(network().sectionByName(L"S1")->GetPropertyData(L"CA_ISLANDS", box), 0);
        CStringArray list;
        EXPECT_TRUE(box.GetArrayCopy(list));
        EXPECT_EQ(list, islands);
        EXPECT_EQ(network().sectionByName(L"S2")->GetPropertyData(L"CA_ISLANDS", absent), 0);
        EXPECT_FALSE(absent.IsNotNull());
    }
}

TEST_F(NetworkContract, TheNameOfASectionOrANodeIsAPropertyThatIsKeptInTheDrawing)
{
    using ZEMGis::Topology::CEntity;
    using ZEMGis::Topology::kNameProperty;
    const auto named = [&](const wchar_t *name) { return network().sectionByName(name); };
    const std::wstring guid = named(L"S1")->GetGuid(), nodeGuid = named(L"S1")->GetEndingNode()->GetGuid();
    CDataBox box;
    EXPECT_NE(named(L"S1")->GetPropertyData(kNameProperty, box), 0);
    EXPECT_EQ(static_cast<std::wstring>(box), L"S1");
    EXPECT_NE(named(L"S1")->SetPropertyData(kNameProperty, CDataBox(L"Main 1")), 0);
    EXPECT_NE(network().sectionByGuid(guid)->GetEndingNode()->SetPropertyData(kNameProperty, CDataBox(L"M7")), 0);
    for (const bool afterwards : {false, true}) {
        if (afterwards)
            reopen();
        EXPECT_FALSE(named(L"S1"));
        ASSERT_TRUE(named(L"Main 1"));
        EXPECT_EQ(named(L"Main 1")->GetGuid(), guid);
        EXPECT_EQ(named(L"Main 1")->GetName(), L"Main 1");
        EXPECT_EQ(named(L"Main 1")->GetEndingNode()->GetName(), L"M7");
        EXPECT_EQ(network().nodeByName(L"M7")->GetGuid(), nodeGuid);
        EXPECT_NE(named(L"Main 1")->GetPropertyData(kNameProperty, box), 0);
        EXPECT_EQ(static_cast<std::wstring>(box), L"Main 1");
    }
    for (const CDataBox &refused : {CDataBox(), CDataBox(L""), CDataBox(7), CDataBox(CStringArray{L"a"})})
        EXPECT_EQ(named(L"Main 1")->SetPropertyData(kNameProperty, refused), 0);
    EXPECT_TRUE(named(L"Main 1"));
}

TEST_F(NetworkContract, OnALockedLayerANameStays)
{
    using ZEMGis::Topology::kNameProperty;
    const auto section = network().sectionByName(L"S1");
    const auto node = section->GetEndingNode();
    const auto lock = [this](AcDbObjectId id, bool locked) {
        const std::size_t index = layerIndexOf(entityOf(id));
        Layer layer = drawing().layer(index);
        layer.locked = locked;
        drawing().setLayer(index, layer);
    };
    lock(section->GetObjectId(), true);
    lock(node->GetObjectId(), true);
    const std::string before = drawing().write();
    EXPECT_EQ(section->SetPropertyData(kNameProperty, CDataBox(L"Main 1")), 0);
    EXPECT_EQ(node->SetPropertyData(kNameProperty, CDataBox(L"M7")), 0);
    EXPECT_EQ(section->GetName(), L"S1");
    EXPECT_EQ(drawing().write(), before);

    lock(section->GetObjectId(), false);
    lock(node->GetObjectId(), false);
    EXPECT_NE(section->SetPropertyData(kNameProperty, CDataBox(L"Main 1")), 0);
    EXPECT_NE(node->SetPropertyData(kNameProperty, CDataBox(L"M7")), 0);
    EXPECT_EQ(section->GetName(), L"Main 1");
}

TEST_F(NetworkContract, DataThatAnotherProgramAttachedUnderTheKeyOfTheNameIsNoName)
{
    using ZEMGis::Topology::kNameProperty;
    const auto section = network().sectionByName(L"S1");
    drawing().setData(entityOf(section->GetObjectId()), "VELMOR_NAME", itemsOf(CDataBox(L"Foreign")));
    CDataBox box;
    EXPECT_NE(section->GetPropertyData(kNameProperty, box), 0);
    EXPECT_EQ(static_cast<std::wstring>(box), L"S1");
}

TEST_F(NetworkContract, ASectionIsDrawnInItsColourOverTheDrawingUntilItIsWiped)
{
    for (const bool afterwards : {false, true}) {
        if (afterwards)
            reopen();
        const std::string file = drawing().write();
        const QImage plain = picture();
        network().sectionByName(L"S2")->DrawTemporary(1, 0);
        const QImage red = picture();
        network().sectionByName(L"S2")->DrawTemporary(5, 0);
        const QImage blue = picture();
        const QRect its = pixelsOf({40, 5, 95, 15}), other = pixelsOf({2, 5, 28, 15});
        EXPECT_GT(differences(plain.copy(its), red.copy(its)), 20);
        EXPECT_GT(differences(red.copy(its), blue.copy(its)), 20) << "the colour tells";
        EXPECT_EQ(differences(plain.copy(other), red.copy(other)), 0);
        EXPECT_EQ(drawing().write(), file);
        EXPECT_EQ(acedRedraw(nullptr, 4), RTNORM);
        EXPECT_EQ(differences(plain, picture()), 0);
    }
}

TEST_F(NetworkContract, TypeLengthAndEndsAreThoseOfTheDrawing)
{
    const SectionPtr section = network().sectionByName(L"S1");
    EXPECT_EQ(section->GetType(), ZEMGis::Topology::kSectionStraight);
    EXPECT_EQ(section->GetStartPoint(), AcGePoint3d(0, 10));
    EXPECT_EQ(section->GetEndPoint(), AcGePoint3d(30, 10));
    EXPECT_DOUBLE_EQ(network().sectionByName(L"S2")->GetLength2D(), 70.5);
    // Sections made of linework have no length of their own: theirs follows the drawing.
    const AcDbObjectId drawn = line(0, 50, 40, 50);
    drawing().setLayerOf(entityOf(drawn), drawing().ensureLayer(L"PIPES"));
    const AcDbObjectId arc = drawing().append(std::make_unique<AcDbArc>(AcGePoint3d(60, 60), 10.0, 0.0, 1.0));
    drawing().setLayerOf(entityOf(arc), drawing().ensureLayer(L"PIPES"));
    ASSERT_TRUE(importLayers(drawing(), {.sectionLayers = {L"PIPES"}}));
    const std::wstring handle = handleTextOf(drawn), arcHandle = handleTextOf(arc);
    EXPECT_DOUBLE_EQ(topology()->GetSectionById(drawn)->GetLength2D(), 40.0);
    {
        CZEMCLinePtr edit(drawn, AcDb::kForWrite);
        ASSERT_EQ(static_cast<AcDbLine *>(edit.get())->setEndPoint({70, 50, 0}), Acad::eOk);
    }
    for (const bool afterwards : {false, true}) {
        if (afterwards)
            reopen();
        EXPECT_DOUBLE_EQ(topology()->GetSectionByHandle(handle.c_str())->GetLength2D(), 70.0);
        const SectionPtr bent = topology()->GetSectionByHandle(arcHandle.c_str());
        EXPECT_EQ(bent->GetType(), ZEMGis::Topology::kSectionArc);
        EXPECT_NEAR(bent->GetLength2D(), 10.0, 1e-9);
    }
}

TEST_F(NetworkContract, ASectionWhoseEntityWasErasedIsFoundNoMoreAndOneWithoutNodesIsBorne)
{
    const SectionPtr section = network().sectionByName(L"S1");
    const std::wstring guid = section->GetGuid(), handle = section->GetHandleText();
    const AcDbObjectId id = section->GetObjectId();
    drawing().erase(entityOf(id));
    for (AcDbEntity *entity : entities())
        if (kindOf(*entity) == EntityKind::Point)
            drawing().erase(*entity);
    EXPECT_FALSE(topology()->GetSectionById(id));
    for (const bool afterwards : {false, true}) {
        if (afterwards)
            reopen();
        EXPECT_FALSE(topology()->GetSectionByGuid(guid.c_str()));
        EXPECT_FALSE(topology()->GetSectionByHandle(handle.c_str()));
        const SectionPtr left = network().sectionByName(L"S2");
        ASSERT_TRUE(left);
        EXPECT_FALSE(left->GetStartingNode());
        EXPECT_FALSE(left->GetEndingNode());
    }
}

TEST_F(NetworkContract, AThousandAreasAreFoundAsByComparingThemAll)
{
    std::mt19937 random(20261121);
    std::uniform_real_distribution<double> place(0.0, 5000.0), size(2.0, 40.0);
    struct Box {
        double x, y, side;
    };
    std::vector<Box> boxes;
    for (int i = 0; i < 1000; ++i) {
        const Box box{place(random), place(random), size(random)};
        boxes.push_back(box);
        const auto text = [&](double dx, double dy) {
            return std::to_wstring(box.x + dx) + L" " + std::to_wstring(box.y + dy);
        };
        ASSERT_TRUE(CCatchmentAreaManager::Instance()->CreateCA(
            L"POLYGON ((" + text(0, 0) + L", " + text(box.side, 0) + L", " + text(box.side, box.side) + L", " +
                text(0, box.side) + L", " + text(0, 0) + L"))",
            std::to_wstring(i), 1, boost::shared_ptr<CProperties>(new CProperties)));
    }
    ZEMGis::Sewage::CatchmentAreas areas;
    ASSERT_EQ(CCatchmentAreaManager::Instance()->GetAllCatchmentAreas(areas, 7), 1000);
    std::vector<ZEMGis::Topology::CEntity *> entities;
    for (const auto &area : areas)
        entities.push_back(area.get());
    const auto index = ZEMGis::Topology::CTopoEditor::Instance()->CreateCustomSpatialIndex(entities);
    int useful = 0;
    for (int i = 0; i < 500; ++i) {
        const AcGePoint3d point(place(random), place(random));
        double best = 1e300;
        std::size_t nearest = 0;
        for (std::size_t b = 0; b < boxes.size(); ++b) {
            const double dx = std::max({boxes[b].x - point.x, 0.0, point.x - boxes[b].x - boxes[b].side});
            const double dy = std::max({boxes[b].y - point.y, 0.0, point.y - boxes[b].y - boxes[b].side});
            if (const double d = std::hypot(dx, dy); d < best) {
                best = d;
                nearest = b;
            }
        }
        double radius = 1000.0;
        const auto *found = index->GetClosestEntity(point, &radius);
        ASSERT_TRUE(found);
        EXPECT_NEAR(radius, best, 1e-5) << found->GetName().size();
        if (best > 1e-3) { // inside of several, the smaller one counts
            EXPECT_EQ(found, entities[nearest]);
            ++useful;
            double tooSmall = best / 2.0;
            EXPECT_EQ(index->GetClosestEntity(point, &tooSmall), nullptr);
        }
    }
    EXPECT_GT(useful, 250);
}

TEST_F(NetworkContract, LabelTypesComeFromAFileThatTheUserCanExtend)
{
    const auto names = [] {
        std::vector<std::wstring> all;
        const auto catalog = ZEMGis::Data::CCatalogManager::Instance()->GetCatalog(L"CA_LABEL_CATALOG", 1);
        const auto *map = catalog ? catalog->GetAllElementsMap() : nullptr;
        if (map)
            for (const auto &[key, item] : *map)
                if (!item->IsGroup())
                    all.push_back(item->GetName());
        return all;
    };
    const auto shipped = names();
    EXPECT_EQ(shipped.size(), 3u);
    std::filesystem::create_directories(folder / "user" / "support");
    std::filesystem::copy_file(std::filesystem::path(VELMOR_TEST_RESOURCES) / "support" / "CA_LABEL_CATALOG.cfg",
                               folder / "user" / "support" / "CA_LABEL_CATALOG.cfg");
    std::ofstream(folder / "user" / "support" / "CA_LABEL_CATALOG.cfg", std::ios::app)
        << "\n[9]\nname = Mine\nline = {name}!\n";
    startServices("en");
    const auto extended = names();
    ASSERT_EQ(extended.size(), 4u);
    EXPECT_EQ(extended.back(), L"Mine");
    EXPECT_FALSE(ZEMGis::Data::CCatalogManager::Instance()->GetCatalog(L"OTHER", 1));
}

TEST_F(NetworkContract, ABagKeepsWhatItIsGivenThroughOnePointerVariable)
{
    CProperties bag;
    boost::shared_ptr<CProperty> property;
    for (int i = 0; i < 6; ++i) {
        property.reset(new CProperty);
        property->SetTag((L"TAG" + std::to_wstring(i)).c_str());
        property->SetValue(CDataBox(i));
        bag.AddProperty(property);
    }
    property.reset();
    ASSERT_EQ(bag.GetProperties().size(), 6u);
    for (int i = 0; i < 6; ++i) {
        EXPECT_EQ(bag.GetProperties()[static_cast<std::size_t>(i)]->GetTag(), L"TAG" + std::to_wstring(i));
        EXPECT_EQ(static_cast<int>(bag.GetProperties()[static_cast<std::size_t>(i)]->GetValue()), i);
    }
}

} // namespace
} // namespace velmor::test
