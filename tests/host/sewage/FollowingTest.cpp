// The store follows the drawing: entities erased, brought back, edited, and records that something else wrote.
#include "tests/host/sewage/AreaWorld.h"

#include "host/drawing/Transient.h"
#include "host/network/NetworkData.h"
#include "host/sewage/AreaRecord.h"

#include <stdexcept>

namespace velmor::test {
namespace {

class Following : public AreaWorld {};

TEST_F(Following, RefreshingDropsAreasWhoseEntityWasErased)
{
    const AreaPtr area = create(L"{G}", kSquare, L"gone");
    create(L"{O}", kFarSquare, L"stays");
    area->Mark(1, 1.0, 0.0, L"ANSI31", 0);
    drawing().erase(entityOf(area));
    EXPECT_TRUE(manager().RefreshExistingCatchments());
    EXPECT_EQ(names(), Names{L"stays"});
    EXPECT_FALSE(manager().GetCatchmentAreaByGuid(L"{G}"));
    EXPECT_TRUE(area->GetObjectId().isNull());
}

TEST_F(Following, AnErasedAreaIsGoneWithoutARefreshToo)
{
    const AreaPtr area = create(L"{G}", kSquare, L"gone");
    drawing().erase(entityOf(area));
    EXPECT_TRUE(names().empty());
}

TEST_F(Following, AnEntityBroughtBackBringsItsAreaBack)
{
    const AreaPtr area = create(L"{G}", kSquare, L"back");
    manager().AssignCA({{section(L"S1"), 1.0}}, area);
    AcDbEntity &entity = entityOf(area);
    drawing().erase(entity);
    EXPECT_TRUE(names().empty());
    drawing().erase(entity, false);
    EXPECT_EQ(names(), Names{L"back"});
    EXPECT_EQ(namesBySection(L"S1"), Names{L"back"});
    EXPECT_EQ(manager().GetCatchmentAreaByGuid(L"{G}")->GetArea(), 1.0);
}

TEST_F(Following, ARecordThatWasPutBackIsReadAnew)
{
    // As an undo does it.
    const AreaPtr area = create(L"{G}", kSquare, L"before");
    AcDbEntity &entity = entityOf(area);
    const DataItems old = *drawing().data(entity, kAreaDataKey);
    area->SetName(L"after");
    manager().AssignCA({{section(L"S1"), 1.0}}, area);
    drawing().setData(entity, kAreaDataKey, old);
    EXPECT_EQ(names(), Names{L"before"});
    EXPECT_TRUE(namesBySection(L"S1").empty());
    EXPECT_EQ(manager().GetCatchmentAreaByGuid(L"{G}"), area) << "the same area goes on";
}

TEST_F(Following, SectionsThatComeAndGoAreFoundAndMissed)
{
    const AreaPtr area = create(L"{G}", kSquare);
    const auto sectionNames = [&] {
        SectionShares connected;
        area->GetConnectedSections(connected);
        Names found;
        for (const auto &[section, share] : connected)
            found.push_back(section->GetName());
        return found;
    };
    EXPECT_EQ(sectionNames(), Names{});
    manager().AssignCA({{section(L"S1"), 0.5}, {section(L"S2"), 0.5}}, area);
    EXPECT_EQ(sectionNames(), (Names{L"S1", L"S2"}));
    AcDbObject *line = drawing().findByHandle(section(L"S1")->GetObjectId().handle().value());
    AcDbEntity &entity = static_cast<AcDbEntity &>(*line);
    drawing().erase(entity);
    EXPECT_EQ(sectionNames(), Names{L"S2"});
    drawing().erase(entity, false);
    EXPECT_EQ(sectionNames(), (Names{L"S1", L"S2"}));

    const DataItems old = *drawing().data(entity, kSectionKey);
    drawing().setData(entity, kSectionKey, {});
    EXPECT_EQ(sectionNames(), Names{L"S2"}) << "the line is no section any more";
    drawing().setData(entity, kSectionKey, old);
    EXPECT_EQ(sectionNames(), (Names{L"S1", L"S2"}));

    // A record with other sections that was written elsewhere, with as many of them.
    AreaRecord record = *recordFromItems(*drawing().data(entityOf(area), kAreaDataKey));
    record.shares[1].sectionGuid = section(L"S3")->GetGuid();
    drawing().setData(entityOf(area), kAreaDataKey, toItems(record));
    EXPECT_EQ(names().size(), 1u);
    EXPECT_EQ(sectionNames(), (Names{L"S1", L"S3"}));
    manager().AssignCA({{section(L"S2"), 0.5}, {section(L"S1"), 0.5}}, area);
    EXPECT_EQ(sectionNames(), (Names{L"S2", L"S1"}));
    manager().DeleteCA(area);
    EXPECT_EQ(sectionNames(), Names{});
}

TEST_F(Following, ANewValueIsNotWrittenOverARecordThatWasPutBack)
{
    const AreaPtr area = create(L"{G}", kSquare, L"before");
    AcDbEntity &entity = entityOf(area);
    const DataItems old = *drawing().data(entity, kAreaDataKey);
    area->SetName(L"after");
    drawing().setData(entity, kAreaDataKey, old);
    area->SetFlowCoeff(0.5);
    EXPECT_EQ(area->GetName(), L"before");
    EXPECT_EQ(area->GetFlowCoeff(), 0.5);
}

/// Refuses every change of data.
class Refusing final : public DrawingObserver {
public:
    explicit Refusing(Drawing &drawing) : m_drawing(drawing) { m_drawing.addObserver(*this); }
    ~Refusing() override { m_drawing.removeObserver(*this); }
    Refusing(const Refusing &) = delete;
    Refusing &operator=(const Refusing &) = delete;

private:
    void dataChanging(AcDbObject &, const std::string &) override { throw std::runtime_error("refused"); }
    Drawing &m_drawing;
};

TEST_F(Following, WhatTheDrawingDidNotTakeIsNotTheStoresEither)
{
    const AreaPtr area = create(L"{G}", kSquare, L"before");
    manager().AssignCA({{section(L"S1"), 0.5}}, area);
    area->SetFlowCoeff(0.25);
    const int type = area->GetType();
    {
        const Refusing refusing(drawing());
        EXPECT_THROW(area->SetName(L"after"), std::runtime_error);
        EXPECT_THROW(area->SetFlowCoeff(0.75), std::runtime_error);
        EXPECT_THROW(area->SetType(type ^ 7), std::runtime_error);
        EXPECT_THROW(area->SetConnectedSectionShare(section(L"S1"), 0.75, 1), std::runtime_error);
        EXPECT_THROW(manager().AssignCA({{section(L"S2"), 1.0}}, area), std::runtime_error);
    }
    EXPECT_EQ(names(), Names{L"before"});
    EXPECT_EQ(area->GetFlowCoeff(), 0.25);
    EXPECT_EQ(area->GetType(), type);
    SectionShares shares;
    area->GetConnectedSections(shares);
    ASSERT_EQ(shares.size(), 1u);
    EXPECT_EQ(shares[0].second, 0.5);
    EXPECT_EQ(namesBySection(L"S1"), Names{L"before"});
    EXPECT_TRUE(namesBySection(L"S2").empty());
}

TEST_F(Following, AnAreaWhoseRecordWasTakenAwayIsGone)
{
    const AreaPtr area = create(L"{G}", kSquare);
    drawing().setData(entityOf(area), kAreaDataKey, {});
    EXPECT_TRUE(names().empty());
}

TEST_F(Following, ARecordThatWasDamagedElsewhereIsLeftAsItIs)
{
    const AreaPtr area = create(L"{G}", kSquare);
    AcDbEntity &entity = entityOf(area);
    DataItems damaged = *drawing().data(entity, kAreaDataKey);
    damaged.resize(4);
    drawing().setData(entity, kAreaDataKey, damaged);
    EXPECT_TRUE(manager().RefreshExistingCatchments());
    EXPECT_TRUE(names().empty());
    EXPECT_EQ(drawing().data(entity, kAreaDataKey), damaged) << "a later version may read what this one can't";
}

TEST_F(Following, ACopyWithTheSameGuidIsNoSecondArea)
{
    const AreaPtr area = create(L"{G}", kSquare, L"one");
    const DataItems items = *drawing().data(entityOf(area), kAreaDataKey);
    auto copy = std::make_unique<AcDbPolyline>(std::vector<AcDbPolyline::Vertex>{{0, 0}, {1, 0}, {1, 1}}, true);
    AcDbEntity &entity = *copy;
    drawing().append(std::move(copy));
    drawing().setData(entity, kAreaDataKey, items);
    EXPECT_EQ(names(), Names{L"one"});
    EXPECT_EQ(manager().GetCatchmentAreaByGuid(L"{G}"), area);

    manager().DeleteCA(area);
    EXPECT_FALSE(entity.isErased()) << "the copy is the user's";
    manager().RefreshExistingCatchments();
    EXPECT_EQ(names(), Names{L"one"}) << "now the copy is the only area of that GUID";
}

TEST_F(Following, ARingThatGotAnArcElsewhereCountsItInAreaAndMark)
{
    // A half circle of radius 50 stands on the upper side of the square.
    const AreaPtr area = create(L"{G}", kSquare, L"one");
    const DataItems items = *drawing().data(entityOf(area), kAreaDataKey);
    manager().DeleteCA(area);
    auto edited = std::make_unique<AcDbPolyline>(
        std::vector<AcDbPolyline::Vertex>{{0, 0}, {100, 0}, {100, 100, 1.0}, {0, 100}}, true);
    AcDbEntity &entity = *edited;
    drawing().append(std::move(edited));
    drawing().setData(entity, kAreaDataKey, items);
    const AreaPtr again = manager().GetCatchmentAreaByGuid(L"{G}");
    ASSERT_TRUE(again);
    EXPECT_NEAR(again->GetArea(), 1.0 + 3.14159265358979 * 2500.0 / 2.0 / 10000.0, 1e-12);
    EXPECT_EQ(again->GetCenterPoint(), AcGePoint3d(50, 50)) << "the centre goes by the chords";
    again->Mark(1, 1.0, 0.0, L"ANSI31", 0);
    EXPECT_EQ(drawing().component<TransientGraphics>().marks().at(L"{G}").rings[0][2].bulge, 1.0);
}

TEST_F(Following, ARecordInABlockDefinitionIsNoArea)
{
    const AreaPtr area = create(L"{G}", kSquare, L"one");
    DataItems items = *drawing().data(entityOf(area), kAreaDataKey);
    items[2].value = std::wstring(L"{COPY}");
    auto copy = std::make_unique<AcDbPolyline>(std::vector<AcDbPolyline::Vertex>{{0, 0}, {1, 0}, {1, 1}}, true);
    AcDbEntity &entity = *copy;
    drawing().append(std::move(copy), drawing().addBlock(L"PLAN"));
    drawing().setData(entity, kAreaDataKey, items);
    manager().RefreshExistingCatchments();
    EXPECT_EQ(names(), Names{L"one"});
}

TEST_F(Following, AForeignEntityOfTheLayerIsNoArea)
{
    const std::size_t layer = drawing().ensureLayer(L"VELMOR_CATCHMENTS");
    auto made = std::make_unique<AcDbPolyline>(std::vector<AcDbPolyline::Vertex>{{0, 0}, {1, 0}, {1, 1}}, true);
    AcDbEntity &entity = *made;
    drawing().append(std::move(made));
    drawing().setLayerOf(entity, layer);
    manager().RefreshExistingCatchments();
    EXPECT_TRUE(names().empty());
}

} // namespace
} // namespace velmor::test
