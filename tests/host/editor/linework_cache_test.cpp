#include "host/editor/LineworkCache.h"
#include "tests/host/editor/EditorFixture.h"

#include <gmock/gmock.h>

namespace velmor {
namespace {

using boundary::Region;
using boundary::Status;
using test::EditorFixture;

class LineworkCacheTest : public EditorFixture {
protected:
    LineworkCache &cache() { return drawing().component<LineworkCache>(); }
    double visibleArea(double x, double y)
    {
        const Region region = cache().visible().regionAt({x, y});
        return region ? signedArea(region.outer) : 0.0;
    }
    double areaIn(const SelectionSet &set, double x, double y)
    {
        const Region region = cache().ofSet(set).regionAt({x, y});
        return region ? signedArea(region.outer) : 0.0;
    }
    void erase(AcDbObjectId id, bool erasing = true)
    {
        AcDbObject *object = nullptr;
        if (erasing) {
            drawing().erase(*open(id));
        } else {
            ads_name name;
            EXPECT_EQ(acdbGetAdsName(name, id), Acad::eOk);
            object = reinterpret_cast<AcDbObject *>(name[0]);
            drawing().erase(static_cast<AcDbEntity &>(*object), false);
        }
    }
    AcDbObjectId reference(BlockRecord &block, const AcDbBlockReference::Placement &placement, BlockRecord *owner = {})
    {
        return drawing().append(std::make_unique<AcDbBlockReference>(idOf(block), placement),
                                owner ? *owner : drawing().modelSpace());
    }
};

TEST_F(LineworkCacheTest, NewEntitiesComeInAndErasedOnesGoWithoutBuildingAnew)
{
    rectangle(0, 0, 10, 10);
    EXPECT_DOUBLE_EQ(visibleArea(2, 5), 100.0);
    const AcDbObjectId bar = line(5, -1, 5, 11);
    EXPECT_DOUBLE_EQ(visibleArea(2, 5), 50.0);
    erase(bar);
    EXPECT_DOUBLE_EQ(visibleArea(2, 5), 100.0);
    erase(bar, false);
    EXPECT_DOUBLE_EQ(visibleArea(2, 5), 50.0);
    EXPECT_EQ(cache().builds(), 1u);
}

TEST_F(LineworkCacheTest, AChangedEntityIsReadAnew)
{
    rectangle(0, 0, 10, 10);
    const AcDbObjectId bar = line(5, -1, 5, 11);
    EXPECT_DOUBLE_EQ(visibleArea(2, 5), 50.0);
    AcDbEntity *entity = nullptr;
    ASSERT_EQ(acdbOpenAcDbEntity(entity, bar, AcDb::kForWrite), Acad::eOk);
    static_cast<AcDbLine *>(entity)->setStartPoint({8, -1});
    static_cast<AcDbLine *>(entity)->setEndPoint({8, 11});
    entity->close();
    EXPECT_DOUBLE_EQ(visibleArea(2, 5), 80.0);
}

TEST_F(LineworkCacheTest, WhatStandsOnALayerThatIsOffOrFrozenDoesNotCount)
{
    rectangle(0, 0, 10, 10);
    onLayer(line(5, -1, 5, 11), L"Bars");
    EXPECT_DOUBLE_EQ(visibleArea(2, 5), 50.0);
    setLayer(L"Bars", false, false);
    EXPECT_DOUBLE_EQ(visibleArea(2, 5), 100.0);
    setLayer(L"Bars", true, true);
    EXPECT_DOUBLE_EQ(visibleArea(2, 5), 100.0);
    setLayer(L"Bars", true, false);
    EXPECT_DOUBLE_EQ(visibleArea(2, 5), 50.0);
}

TEST_F(LineworkCacheTest, WhatCameWhileItsLayerWasHiddenCountsWhenTheLayerShowsAgain)
{
    rectangle(0, 0, 10, 10);
    drawing().ensureLayer(L"Bars");
    EXPECT_DOUBLE_EQ(visibleArea(2, 5), 100.0);
    setLayer(L"Bars", false, false);
    onLayer(line(5, -1, 5, 11), L"Bars");
    setLayer(L"Bars", true, false);
    EXPECT_DOUBLE_EQ(visibleArea(2, 5), 50.0);
}

TEST_F(LineworkCacheTest, ALayerThatCameAfterTheLastQuestionHidesItsLines)
{
    rectangle(0, 0, 10, 10);
    EXPECT_DOUBLE_EQ(visibleArea(2, 5), 100.0);
    onLayer(line(5, -1, 5, 11), L"New");
    setLayer(L"New", false, false);
    EXPECT_DOUBLE_EQ(visibleArea(2, 5), 100.0);
}

TEST_F(LineworkCacheTest, ASetHoldsItsMembersOnlyWhateverTheirLayersShow)
{
    SelectionSet &set = session.selectionSets().create();
    set.add(onLayer(rectangle(0, 0, 10, 10), L"Hidden"));
    line(5, -1, 5, 11);
    setLayer(L"Hidden", false, false);
    EXPECT_DOUBLE_EQ(areaIn(set, 2, 5), 100.0);
    EXPECT_DOUBLE_EQ(visibleArea(2, 5), 0.0);
}

TEST_F(LineworkCacheTest, ASetIsBuiltOnceAndAgainWhenItGrows)
{
    SelectionSet &set = session.selectionSets().create();
    set.add(rectangle(0, 0, 10, 10));
    const AcDbObjectId bar = line(5, -1, 5, 11);
    areaIn(set, 2, 5);
    rectangle(50, 50, 60, 60); // not a member
    EXPECT_DOUBLE_EQ(areaIn(set, 2, 5), 100.0);
    EXPECT_EQ(cache().builds(), 1u);
    set.add(bar);
    EXPECT_DOUBLE_EQ(areaIn(set, 2, 5), 50.0);
    EXPECT_EQ(cache().builds(), 2u);
    erase(bar);
    EXPECT_DOUBLE_EQ(areaIn(set, 2, 5), 100.0);
    EXPECT_EQ(cache().builds(), 2u);
    erase(bar, false);
    EXPECT_DOUBLE_EQ(areaIn(set, 2, 5), 50.0);
}

TEST_F(LineworkCacheTest, AMemberThatWasOpenForWritingComesIntoItsSetAsSoonAsItIsClosed)
{
    SelectionSet &set = session.selectionSets().create();
    set.add(rectangle(0, 0, 10, 10));
    const AcDbObjectId bar = line(5, -1, 5, 11);
    set.add(bar);
    AcDbEntity *entity = nullptr;
    ASSERT_EQ(acdbOpenAcDbEntity(entity, bar, AcDb::kForWrite), Acad::eOk);
    EXPECT_DOUBLE_EQ(areaIn(set, 2, 5), 100.0) << "it can't be read now";
    EXPECT_DOUBLE_EQ(areaIn(set, 2, 5), 100.0) << "nor now";
    entity->close();
    EXPECT_DOUBLE_EQ(areaIn(set, 2, 5), 50.0);
    EXPECT_EQ(cache().builds(), 1u);
    erase(bar);
    EXPECT_DOUBLE_EQ(areaIn(set, 2, 5), 100.0) << "and it is followed like any other member";
}

TEST_F(LineworkCacheTest, AMemberThatWasErasedWhileItWasOpenStaysOutOfItsSet)
{
    SelectionSet &set = session.selectionSets().create();
    set.add(rectangle(0, 0, 10, 10));
    const AcDbObjectId bar = line(5, -1, 5, 11);
    set.add(bar);
    AcDbEntity *entity = nullptr;
    ASSERT_EQ(acdbOpenAcDbEntity(entity, bar, AcDb::kForWrite), Acad::eOk);
    EXPECT_DOUBLE_EQ(areaIn(set, 2, 5), 100.0);
    entity->erase(true);
    entity->close();
    EXPECT_DOUBLE_EQ(areaIn(set, 2, 5), 100.0);
    erase(bar, false);
    EXPECT_DOUBLE_EQ(areaIn(set, 2, 5), 50.0) << "till it is brought back";
}

TEST_F(LineworkCacheTest, MembersOfBlockDefinitionsInASetArePassedOver)
{
    BlockRecord &block = drawing().addBlock(L"House");
    SelectionSet &set = session.selectionSets().create();
    set.add(drawing().append(rectangleEntity(0, 0, 10, 10), block));
    EXPECT_DOUBLE_EQ(areaIn(set, 5, 5), 0.0);
}

TEST_F(LineworkCacheTest, PaperSpaceBoundsNothing)
{
    for (const auto &record : drawing().blocks()) {
        if (record->isLayout() && !record->isModelSpace())
            drawing().append(rectangleEntity(0, 0, 10, 10), *record);
    }
    EXPECT_DOUBLE_EQ(visibleArea(5, 5), 0.0);
}

TEST_F(LineworkCacheTest, ContentsOfReferencesCountWhereTheyAreShown)
{
    BlockRecord &block = drawing().addBlock(L"House", {1, 1});
    drawing().append(rectangleEntity(1, 1, 3, 2), block);
    reference(block, {.position = {100, 200}, .scaleX = 10, .scaleY = 10, .rotation = std::numbers::pi / 2});
    // Two by one, ten times as large, turned left about its corner: x from 90 to 100, y from 200 to 220.
    EXPECT_NEAR(visibleArea(95, 210), 200.0, 1e-9);
    EXPECT_DOUBLE_EQ(visibleArea(105, 205), 0.0);
}

TEST_F(LineworkCacheTest, ReferencesNest)
{
    BlockRecord &inner = drawing().addBlock(L"Inner");
    drawing().append(rectangleEntity(0, 0, 1, 1), inner);
    BlockRecord &outer = drawing().addBlock(L"Outer");
    reference(inner, {.position = {1, 0}, .scaleX = 2, .scaleY = 3}, &outer);
    reference(outer, {.position = {50, 0}, .scaleX = -10, .scaleY = 10});
    // Inner spans x 1..3, y 0..3 of outer; mirrored and ten times as large: x 20..40, y 0..30.
    EXPECT_NEAR(visibleArea(30, 15), 600.0, 1e-9);
}

TEST_F(LineworkCacheTest, RowsAndColumnsOfAReferenceAllCount)
{
    BlockRecord &block = drawing().addBlock(L"Cell");
    drawing().append(rectangleEntity(0, 0, 1, 1), block);
    reference(block, {.position = {}, .columns = 3, .rows = 2, .columnSpacing = 10, .rowSpacing = 20});
    for (const double x : {0.5, 10.5, 20.5}) {
        EXPECT_DOUBLE_EQ(visibleArea(x, 0.5), 1.0);
        EXPECT_DOUBLE_EQ(visibleArea(x, 20.5), 1.0);
    }
    EXPECT_DOUBLE_EQ(visibleArea(30.5, 0.5), 0.0);
}

TEST_F(LineworkCacheTest, ABlockThatHoldsItselfEnds)
{
    BlockRecord &block = drawing().addBlock(L"Loop");
    drawing().append(rectangleEntity(0, 0, 10, 10), block);
    reference(block, {.position = {1, 1}}, &block);
    reference(block, {});
    EXPECT_DOUBLE_EQ(visibleArea(5, 5), 100.0);
}

TEST_F(LineworkCacheTest, LayerZeroInsideABlockIsTheReferencesLayer)
{
    BlockRecord &block = drawing().addBlock(L"House");
    drawing().append(rectangleEntity(0, 0, 10, 10), block);
    auto roof = rectangleEntity(20, 0, 30, 10);
    const AcDbObjectId roofId = drawing().append(std::move(roof), block);
    onLayer(roofId, L"Roofs");
    onLayer(reference(block, {}), L"Houses");
    EXPECT_DOUBLE_EQ(visibleArea(5, 5), 100.0);
    EXPECT_DOUBLE_EQ(visibleArea(25, 5), 100.0);
    setLayer(L"Roofs", false, false);
    EXPECT_DOUBLE_EQ(visibleArea(5, 5), 100.0);
    EXPECT_DOUBLE_EQ(visibleArea(25, 5), 0.0);
    setLayer(L"Houses", false, false);
    EXPECT_DOUBLE_EQ(visibleArea(5, 5), 0.0);
}

TEST_F(LineworkCacheTest, AChangeOfADefinitionShowsInItsReferences)
{
    BlockRecord &block = drawing().addBlock(L"House");
    drawing().append(rectangleEntity(0, 0, 10, 10), block);
    reference(block, {.position = {100, 0}});
    EXPECT_DOUBLE_EQ(visibleArea(102, 5), 100.0);
    drawing().append(std::make_unique<AcDbLine>(AcGePoint3d(5, -1), AcGePoint3d(5, 11)), block);
    EXPECT_DOUBLE_EQ(visibleArea(102, 5), 50.0);
}

TEST_F(LineworkCacheTest, LayersChooseByName)
{
    onLayer(rectangle(0, 0, 10, 10), L"Parcels");
    onLayer(line(5, -1, 5, 11), L"Bars");
    EXPECT_DOUBLE_EQ(signedArea(cache().ofLayers({L"parcels"}).regionAt({2, 5}).outer), 100.0);
    EXPECT_DOUBLE_EQ(signedArea(cache().ofLayers({L"Parcels", L"Bars"}).regionAt({2, 5}).outer), 50.0);
    EXPECT_EQ(cache().ofLayers({L"Nothing"}).regionAt({2, 5}).status, Status::NotEnclosed);
}

TEST_F(LineworkCacheTest, TextsHatchesAndPointsBoundNothing)
{
    rectangle(0, 0, 10, 10);
    drawing().append(std::make_unique<TextEntity>(TextShape{.position = {5, 5}, .text = L"5"}));
    drawing().append(std::make_unique<PointEntity>(AcGePoint3d(5, 5)));
    EXPECT_DOUBLE_EQ(visibleArea(5, 5), 100.0);
    EXPECT_EQ(cache().visible().size(), 4u);
}

TEST_F(LineworkCacheTest, AskingForRegionsGivesNoEntityAHandle)
{
    const AcDbObjectId id = rectangle(0, 0, 10, 10);
    SelectionSet &set = session.selectionSets().create();
    set.add(id);
    const std::uint64_t revision = drawing().revision();
    visibleArea(5, 5);
    areaIn(set, 5, 5);
    EXPECT_EQ(drawing().revision(), revision);
}

} // namespace
} // namespace velmor
