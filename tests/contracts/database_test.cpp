// The drawing database: opening, erasing, handles, walks, classes, highlight, areas.
#include "tests/contracts/ContractsFixture.h"

#include "contracts/CatchmentArea.h"
#include "host/drawing/Transient.h"

namespace velmor::test {
namespace {

using testing::ElementsAre;
using testing::Not;

class DatabaseContract : public ContractsFixture {
protected:
    AcDbObjectId text(double x, double y)
    {
        TextShape shape;
        shape.position = {x, y};
        shape.text = L"text";
        return drawing().append(std::make_unique<TextEntity>(shape));
    }
    /// Names of the records and kinds of their entities, as a walk over the whole drawing meets them.
    std::vector<std::string> walk()
    {
        std::vector<std::string> met;
        AcDbBlockTable *table = nullptr;
        EXPECT_EQ(acdbHostApplicationServices()->workingDatabase()->getBlockTable(table, AcDb::kForRead), Acad::eOk);
        AcDbBlockTableIterator *records = nullptr;
        EXPECT_EQ(table->newIterator(records), Acad::eOk);
        for (records->start(); !records->done(); records->step()) {
            AcDbBlockTableRecord *record = nullptr;
            EXPECT_EQ(records->getRecord(record, AcDb::kForRead), Acad::eOk);
            const std::wstring name = record->name();
            AcDbBlockTableRecordIterator *walker = nullptr;
            EXPECT_EQ(record->newIterator(walker), Acad::eOk);
            for (walker->start(); !walker->done(); walker->step()) {
                AcDbEntity *entity = nullptr;
                EXPECT_EQ(walker->getEntity(entity, AcDb::kForRead), Acad::eOk);
                met.push_back(std::string(name.begin(), name.end()));
                entity->close();
            }
            delete walker;
            record->close();
        }
        delete records;
        table->close();
        return met;
    }
};

TEST_F(DatabaseContract, OneDrawingShowsNothingOfAnother)
{
    CZEMCDictionaryPtr dictionary(AcDb::kForWrite);
    ASSERT_TRUE(dictionary.dctWrite(L"ZEMX_LSD2", L"KEY", std::wstring(L"first"), false, true, 1));
    drawing().ensureLayer(L"ONLY HERE");
    ASSERT_TRUE(ZEMGis::Sewage::CCatchmentAreaManager::Instance()->CreateCA(
        L"POLYGON ((0 0, 10 0, 10 10, 0 10, 0 0))", L"a", 1,
        boost::shared_ptr<ZEMGis::Data::CProperties>(new ZEMGis::Data::CProperties)));
    reopen();
    ZEMGis::Sewage::CatchmentAreas areas;
    EXPECT_EQ(ZEMGis::Sewage::CCatchmentAreaManager::Instance()->GetAllCatchmentAreas(areas, 7), 1);

    session.setDrawing(Drawing::createNew());
    std::wstring value = L"untouched";
    EXPECT_FALSE(CZEMCDictionaryPtr(AcDb::kForRead).dctRead(L"ZEMX_LSD2", L"KEY", value, false));
    EXPECT_EQ(value, L"untouched");
    CStringArray layers;
    CZEMCLayerTablePtr().allLayerNames(layers);
    EXPECT_THAT(layers, Not(testing::Contains(L"ONLY HERE")));
    EXPECT_EQ(ZEMGis::Sewage::CCatchmentAreaManager::Instance()->GetAllCatchmentAreas(areas, 7), 0);
    EXPECT_EQ(acdbHostApplicationServices()->workingDatabase(), &drawing());
}

TEST_F(DatabaseContract, OfTwoLivingDrawingsOnlyTheOneWorkedOnShows)
{
    const auto other = Drawing::createNew();
    Drawing *const both[] = {&drawing(), other.get()};
    const std::wstring names[] = {L"first", L"second"};
    auto &manager = *ZEMGis::Sewage::CCatchmentAreaManager::Instance();
    std::wstring guids[2];
    for (int i = 0; i < 2; ++i) {
        setWorkingDrawing(both[i]);
        ASSERT_TRUE(CZEMCDictionaryPtr(AcDb::kForWrite)
                        .dctWrite(L"ZEMX_LSD2", (L"KEY " + names[i]).c_str(), names[i], false, true, 1));
        both[i]->ensureLayer(L"LAYER " + names[i]);
        const auto area = manager.CreateCA(L"POLYGON ((0 0, 10 0, 10 10, 0 10, 0 0))", names[i].c_str(), 1,
                                           boost::shared_ptr<ZEMGis::Data::CProperties>(new ZEMGis::Data::CProperties));
        ASSERT_TRUE(area);
        guids[i] = area->GetGuid();
    }
    // To and fro: each time the one, and nothing of the other.
    for (const int now : {0, 1, 0, 1}) {
        setWorkingDrawing(both[now]);
        const int hidden = 1 - now;
        EXPECT_EQ(acdbHostApplicationServices()->workingDatabase(), both[now]);
        CZEMCDictionaryPtr dictionary(AcDb::kForRead);
        std::wstring value = L"untouched";
        EXPECT_FALSE(dictionary.dctRead(L"ZEMX_LSD2", (L"KEY " + names[hidden]).c_str(), value, false));
        EXPECT_EQ(value, L"untouched");
        EXPECT_TRUE(dictionary.dctRead(L"ZEMX_LSD2", (L"KEY " + names[now]).c_str(), value, false));
        EXPECT_EQ(value, names[now]);
        CStringArray layers;
        CZEMCLayerTablePtr().allLayerNames(layers);
        EXPECT_THAT(layers, testing::Contains(L"LAYER " + names[now]));
        EXPECT_THAT(layers, Not(testing::Contains(L"LAYER " + names[hidden])));
        ZEMGis::Sewage::CatchmentAreas areas;
        ASSERT_EQ(manager.GetAllCatchmentAreas(areas, 7), 1);
        EXPECT_EQ(areas.front()->GetName(), names[now]);
        EXPECT_TRUE(manager.GetCatchmentAreaByGuid(guids[now].c_str()));
        EXPECT_FALSE(manager.GetCatchmentAreaByGuid(guids[hidden].c_str()));
    }
    setWorkingDrawing(&drawing());
}

TEST_F(DatabaseContract, AnErasedIdFailsToOpenInAnyWay)
{
    const AcDbObjectId id = line(0, 0, 1, 1);
    AcDbEntity *entity = opened(id, AcDb::kForWrite);
    EXPECT_EQ(entity->erase(true), Acad::eOk);
    entity->close();
    AcDbObject *object = nullptr;
    for (const auto mode : {AcDb::kForRead, AcDb::kForWrite}) {
        EXPECT_NE(acdbOpenAcDbEntity(entity, id, mode), Acad::eOk);
        EXPECT_EQ(entity, nullptr);
        EXPECT_NE(acdbOpenAcDbObject(object, id, mode), Acad::eOk);
    }
    EXPECT_TRUE(id.isErased());
    EXPECT_TRUE(id.isValid());
    EXPECT_NE(acdbOpenAcDbEntity(entity, AcDbObjectId(), AcDb::kForRead), Acad::eOk);
    const auto other = Drawing::createNew(); // alive, but not the one that is worked on
    const AcDbObjectId foreign = other->append(std::make_unique<AcDbLine>(AcGePoint3d(0, 0), AcGePoint3d(1, 1)));
    EXPECT_NE(acdbOpenAcDbEntity(entity, foreign, AcDb::kForRead), Acad::eOk);
    EXPECT_EQ(entity, nullptr);
    EXPECT_NE(acdbOpenAcDbObject(object, idOf(other->modelSpace()), AcDb::kForRead), Acad::eOk);
}

TEST_F(DatabaseContract, IdsAndNamesOfAClosedDrawingNameNothing)
{
    const AcDbObjectId first = line(0, 0, 1, 1), record = idOf(drawing().modelSpace());
    ads_name name;
    ASSERT_EQ(acdbGetAdsName(name, first), Acad::eOk);
    AcDbObjectId again;
    ASSERT_EQ(acdbGetObjectId(again, name), Acad::eOk);
    EXPECT_EQ(again, first);
    EXPECT_TRUE(first.isValid());
    session.setDrawing(nullptr);
    // The memory may hold another drawing's objects by now: none of them is the one that was meant.
    for (int round = 0; round < 3; ++round) {
        session.setDrawing(Drawing::createNew());
        const AcDbObjectId other = line(5, 5, 6, 6);
        for (const AcDbObjectId &id : {first, record}) {
            EXPECT_FALSE(id.isNull());
            EXPECT_FALSE(id.isValid());
            EXPECT_TRUE(id.isErased());
            EXPECT_TRUE(id.handle().isNull());
            EXPECT_NE(id, other);
            AcDbEntity *entity = nullptr;
            AcDbObject *object = nullptr;
            for (const auto mode : {AcDb::kForRead, AcDb::kForWrite}) {
                EXPECT_EQ(acdbOpenAcDbEntity(entity, id, mode), Acad::eWasErased);
                EXPECT_EQ(acdbOpenAcDbObject(object, id, mode), Acad::eWasErased);
                EXPECT_EQ(entity, nullptr);
                EXPECT_EQ(object, nullptr);
            }
            EXPECT_NE(CZEMCEntityPtr(id, AcDb::kForRead).openStatus(), 0);
            ads_name stale{1, 1};
            EXPECT_NE(acdbGetAdsName(stale, id), Acad::eOk);
            EXPECT_EQ(stale[0], 0);
        }
        EXPECT_NE(acdbGetObjectId(again, name), Acad::eOk);
        EXPECT_TRUE(again.isNull());
        EXPECT_EQ(acedRedraw(name, 3), RTERROR);
        ads_name set{};
        EXPECT_NE(acedSSAdd(name, nullptr, set), RTNORM);
        AcDbObjectIdArray zoomed{first};
        CZEMCEdit::zoom(zoomed, 1.0); // finds nothing to zoom to
        AcDbEntity *entity = opened(other);
        entity->close();
        session.setDrawing(nullptr);
    }
}

TEST_F(DatabaseContract, ANameOfNumbersThatNobodyGaveIsRefused)
{
    const AcDbObjectId id = line(0, 0, 1, 1);
    ads_name name;
    ASSERT_EQ(acdbGetAdsName(name, id), Acad::eOk);
    AcDbObjectId found;
    for (const std::int64_t second :
         {std::int64_t{0}, std::int64_t{1}, std::int64_t{34}, name[1] + 1, name[1] + 4096}) {
        const ads_name wrong{name[0], second};
        EXPECT_NE(acdbGetObjectId(found, wrong), Acad::eOk) << second;
        EXPECT_TRUE(found.isNull());
    }
}

TEST_F(DatabaseContract, AnObjectOpenForWriteCantBeOpenedAgainTillItIsClosed)
{
    for (const bool afterwards : {false, true}) {
        const AcDbObjectId id = afterwards ? idOf(*entities().front()) : line(0, 0, 1, 1);
        AcDbEntity *writing = opened(id, AcDb::kForWrite), *other = nullptr;
        EXPECT_NE(acdbOpenAcDbEntity(other, id, AcDb::kForRead), Acad::eOk);
        EXPECT_NE(acdbOpenAcDbEntity(other, id, AcDb::kForWrite), Acad::eOk);
        EXPECT_NE(CZEMCEntityPtr(id, AcDb::kForRead).openStatus(), 0);
        writing->close();
        AcDbEntity *reading = opened(id);
        EXPECT_EQ(acdbOpenAcDbEntity(other, id, AcDb::kForRead), Acad::eOk) << "readers may be many";
        EXPECT_NE(reading->upgradeOpen(), Acad::eOk) << "not while another one reads";
        other->close();
        EXPECT_EQ(reading->upgradeOpen(), Acad::eOk);
        EXPECT_TRUE(reading->isWriteEnabled());
        reading->close();
        if (!afterwards)
            reopen();
    }
}

TEST_F(DatabaseContract, WhatIsErasedIsGoneFromScreenSelectionWalkAndFile)
{
    const Extents shown{-10, -10, 110, 110};
    const AcDbObjectId goes = box(10, 10, 40, 40), stays = box(60, 60, 90, 90);
    const std::wstring handle = handleTextOf(goes), other = handleTextOf(stays);
    const QImage before = picture(shown);
    AcDbEntity *entity = opened(goes, AcDb::kForWrite);
    entity->erase(true);
    entity->close();
    const QRect place = pixelsOf({5, 5, 45, 45}), others = pixelsOf({55, 55, 95, 95});
    EXPECT_GT(inkIn(before, place), 0);
    for (const bool afterwards : {false, true}) {
        if (afterwards)
            reopen();
        const QImage after = picture(shown);
        EXPECT_EQ(inkIn(after, place), 0);
        EXPECT_EQ(inkIn(after, others), inkIn(before, others));
        EXPECT_EQ(walk().size(), 1u);
        ads_name set;
        ASSERT_EQ(acedSSGet(L"X", nullptr, nullptr, nullptr, set), RTNORM);
        EXPECT_EQ(session.selectionSets().find(set)->members(), AcDbObjectIdArray{byHandle(other)});
        acedSSFree(set);
    }
    EXPECT_FALSE(byHandle(handle).isValid()) << "the file no longer holds it";
}

TEST_F(DatabaseContract, AHandleNamesTheSameEntityForEver)
{
    const std::wstring handle = handleTextOf(line(1.25, 2.5, 5071234.123456789, 4)),
                       other = handleTextOf(line(9, 9, 8, 8));
    EXPECT_NE(handle, other);
    for (int time = 0; time < 2; ++time) {
        reopen();
        const auto &found = static_cast<const AcDbLine &>(entityOf(byHandle(handle)));
        EXPECT_EQ(found.startPoint().x, 1.25);
        EXPECT_EQ(found.endPoint().x, 5071234.123456789);
    }
    EXPECT_FALSE(byHandle(L"FEDCBA98").isValid());
    EXPECT_FALSE(byHandle(L"no handle").isValid());
    EXPECT_FALSE(byHandle(L"").isValid());
}

TEST_F(DatabaseContract, NamesAndIdsGoBothWaysOverAThousandEntities)
{
    for (int i = 0; i < 1000; ++i)
        line(i, 0, i, 1);
    for (const bool afterwards : {false, true}) {
        if (afterwards)
            reopen();
        ASSERT_EQ(entities().size(), 1000u);
        for (AcDbEntity *entity : entities()) {
            ads_name name;
            AcDbObjectId back;
            ASSERT_EQ(acdbGetAdsName(name, idOf(*entity)), Acad::eOk);
            ASSERT_EQ(acdbGetObjectId(back, name), Acad::eOk);
            ASSERT_EQ(back, idOf(*entity));
        }
    }
    const ads_name nothing = {0, 0}, made = {12, 34};
    AcDbObjectId id;
    EXPECT_NE(acdbGetObjectId(id, nothing), Acad::eOk);
    EXPECT_NE(acdbGetObjectId(id, made), Acad::eOk);
}

TEST_F(DatabaseContract, AWalkMeetsEachEntityOfModelPaperAndBlocksOnceInTableOrder)
{
    BlockRecord &paper = *drawing().findBlock(L"*Paper_Space"), &definition = drawing().addBlock(L"DEF");
    std::vector<AcDbObjectId> made;
    for (BlockRecord *owner : {&drawing().modelSpace(), &paper, &definition})
        for (int i = 0; i < 3; ++i)
            made.push_back(drawing().append(std::make_unique<AcDbLine>(AcGePoint3d(i, 0), AcGePoint3d(i, 1)), *owner));
    drawing().erase(entityOf(made[4]));
    for (const bool afterwards : {false, true}) {
        if (afterwards)
            reopen();
        const auto met = walk();
        EXPECT_EQ(met.size(), 8u);
        // In runs by record, the records in the order of the table.
        std::vector<std::string> order;
        for (const auto &record : drawing().blocks()) {
            const std::wstring name = record->name();
            order.push_back(std::string(name.begin(), name.end()));
        }
        std::vector<std::string> runs = met;
        runs.erase(std::unique(runs.begin(), runs.end()), runs.end());
        std::erase_if(order, [&](const std::string &name) { return std::ranges::find(met, name) == met.end(); });
        EXPECT_EQ(runs, order);
        EXPECT_EQ(std::ranges::count(met, "DEF"), 3);
    }
}

TEST_F(DatabaseContract, ClassesAreToldApartAndADerivedOneIsNotItsBase)
{
    const std::vector<AcDbPolyline::Vertex> ring{{0, 0, 0}, {1, 0, 0}, {1, 1, 0}};
    drawing().setCurrentLayer(drawing().ensureLayer(L"Točno Ovako 1"));
    BlockRecord &block = drawing().addBlock(L"B");
    drawing().append(std::make_unique<AcDbLine>(AcGePoint3d(0, 0), AcGePoint3d(1, 1)));
    drawing().append(std::make_unique<AcDbArc>(AcGePoint3d(0, 0), 1.0, 0.0, 1.0));
    drawing().append(std::make_unique<AcDbPolyline>(ring, true));
    drawing().append(std::make_unique<AcDb2dPolyline>(ring, true));
    drawing().append(std::make_unique<AcDb3dPolyline>(std::vector<AcGePoint3d>{{0, 0, 1}, {1, 0, 2}}, false));
    drawing().append(std::make_unique<AcDbBlockReference>(idOf(block), AcDbBlockReference::Placement{}));
    text(0, 0);
    const AcRxClass *classes[] = {AcDbLine::desc(),       AcDbArc::desc(),        AcDbPolyline::desc(),
                                  AcDb2dPolyline::desc(), AcDb3dPolyline::desc(), AcDbBlockReference::desc()};
    for (const bool afterwards : {false, true}) {
        if (afterwards)
            reopen();
        const auto all = entities();
        ASSERT_EQ(all.size(), 7u);
        for (std::size_t i = 0; i < all.size(); ++i) {
            for (std::size_t c = 0; c < std::size(classes); ++c)
                EXPECT_EQ(all[i]->isA() == classes[c], i == c) << i << " " << c;
            EXPECT_NE(all[i]->isA(), AcDbEntity::desc());
            EXPECT_NE(all[i]->isA(), AcDbCurve::desc());
            EXPECT_TRUE(all[i]->isKindOf(AcDbEntity::desc()));
            EXPECT_EQ(all[i]->isKindOf(AcDbCurve::desc()), i < 5);
            EXPECT_EQ(all[i]->layer(), L"Točno Ovako 1");
        }
    }
}

TEST_F(DatabaseContract, AHighlightedEntityStandsOutUntilItIsUnhighlightedAndChangesNothing)
{
    for (const bool afterwards : {false, true}) {
        if (!afterwards) {
            box(10, 10, 40, 40);
            box(60, 10, 90, 40);
        } else {
            reopen();
        }
        const std::string file = drawing().write();
        const bool wasModified = drawing().isModified();
        const QImage plain = picture();
        AcDbEntity *first = opened(idOf(*entities().front()));
        EXPECT_EQ(first->highlight(kNullSubent, false), Acad::eOk);
        first->close();
        const QRect its = pixelsOf({5, 5, 45, 45}), others = pixelsOf({55, 5, 95, 45});
        for (int redraws = 0; redraws < 2; ++redraws) {
            const QImage lit = picture();
            EXPECT_GT(differences(lit.copy(its), plain.copy(its)), 50) << "survives a redraw";
            EXPECT_EQ(differences(lit.copy(others), plain.copy(others)), 0);
            RefreshDrawingDisplay();
            acedRedraw(nullptr, 4);
        }
        EXPECT_EQ(drawing().write(), file);
        EXPECT_EQ(drawing().isModified(), wasModified);
        first = opened(idOf(*entities().front()));
        EXPECT_EQ(first->unhighlight(kNullSubent, false), Acad::eOk);
        first->close();
        EXPECT_EQ(differences(picture(), plain), 0);
    }
}

TEST_F(DatabaseContract, AreasCountArcsAndATextHasNone)
{
    const double half = 39.269908169872415; // a half circle over a side of 10
    drawing().append(std::make_unique<AcDbPolyline>(
        std::vector<AcDbPolyline::Vertex>{{0, 0, 1.0}, {10, 0, 0}, {10, 10, 0}, {0, 10, 0}}, true));
    drawing().append(std::make_unique<AcDbPolyline>(
        std::vector<AcDbPolyline::Vertex>{{0, 0, -1.0}, {10, 0, 0}, {10, 10, 0}, {0, 10, 0}}, true));
    text(0, 0);
    for (const bool afterwards : {false, true}) {
        if (afterwards)
            reopen();
        const auto all = entities();
        double area = 0.0;
        EXPECT_EQ(static_cast<AcDbCurve *>(all[0])->getArea(area), Acad::eOk);
        EXPECT_NEAR(area, 100.0 + half, 1e-9);
        EXPECT_EQ(static_cast<AcDbCurve *>(all[1])->getArea(area), Acad::eOk);
        EXPECT_NEAR(area, 100.0 - half, 1e-9);
        EXPECT_FALSE(all[2]->isKindOf(AcDbCurve::desc()));
        EXPECT_NE(CZEMCCurvePtr(idOf(*all[2]), AcDb::kForRead).openStatus(), 0);
        const auto &bulged = static_cast<const AcDbPolyline &>(*all[0]);
        double bulge = 0.0;
        EXPECT_FALSE(bulged.isOnlyLines());
        EXPECT_EQ(bulged.getBulgeAt(0, bulge), Acad::eOk);
        EXPECT_EQ(bulge, 1.0);
        EXPECT_NE(bulged.getBulgeAt(4, bulge), Acad::eOk);
    }
}

TEST(PointEquality, EndsAtATenBillionth)
{
    const AcGePoint3d point(5071234.0, 4, 0);
    EXPECT_EQ(AcGePoint3d(0, 0, 0), AcGePoint3d(1e-11, 0, 0));
    EXPECT_FALSE(AcGePoint3d(0, 0, 0) == AcGePoint3d(1e-9, 0, 0));
    EXPECT_FALSE(point == AcGePoint3d(5071234.0 + 1e-8, 4, 0));
}

TEST_F(DatabaseContract, APolylineOfAWidthIsDrawnThatWideAndKeepsItInTheFile)
{
    const AcDbObjectId id = CZEMCDraw::polylineLW({{0, 20, 0}, {100, 20, 0}}, 8.0, 0, nullptr);
    ASSERT_FALSE(id.isNull());
    CZEMCDraw::polylineLW({{0, 70, 0}, {100, 70, 0}}, 0.0, 0, nullptr);
    for (const bool afterwards : {false, true}) {
        if (afterwards)
            reopen();
        EXPECT_EQ(static_cast<const AcDbPolyline &>(*entities()[0]).constantWidth(), 8.0);
        EXPECT_EQ(static_cast<const AcDbPolyline &>(*entities()[1]).constantWidth(), 0.0);
        const QImage image = picture();
        EXPECT_GT(inkIn(image, pixelsOf({10, 12, 90, 28})), 5 * inkIn(image, pixelsOf({10, 62, 90, 78})));
    }
}

} // namespace
} // namespace velmor::test
