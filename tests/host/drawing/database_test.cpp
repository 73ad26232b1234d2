// The drawing database without files: layers, blocks, entities, opens, ids, attached data.
#include "host/drawing/Drawing.h"

#include <gmock/gmock.h>

#include <numbers>
#include <stdexcept>

using namespace velmor;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

AcDbLine &addLine(Drawing &drawing, double x1, double y1, double x2, double y2)
{
    auto line = std::make_unique<AcDbLine>(AcGePoint3d(x1, y1), AcGePoint3d(x2, y2));
    AcDbLine &made = *line;
    drawing.append(std::move(line));
    return made;
}

double areaOf(const AcDbCurve &curve)
{
    double area = -1.0;
    EXPECT_EQ(curve.getArea(area), Acad::eOk);
    return area;
}

struct Recorder final : DrawingObserver {
    std::vector<std::string> calls;
    void entityAppended(AcDbEntity &) override { calls.push_back("appended"); }
    void entityModified(AcDbEntity &) override { calls.push_back("modified"); }
    void entityErased(AcDbEntity &, bool erased) override { calls.push_back(erased ? "erased" : "back"); }
};

} // namespace

TEST(NewDrawing, HasLayerZeroAndTheTwoSpaces)
{
    const auto drawing = Drawing::createNew();
    EXPECT_EQ(drawing->version(), "AC1027");
    EXPECT_FALSE(drawing->isModified());
    ASSERT_GE(drawing->layers().size(), 1u);
    EXPECT_EQ(drawing->layer(0).name, L"0");
    EXPECT_TRUE(drawing->modelSpace().isModelSpace());
    ASSERT_NE(drawing->findBlock(L"*paper_space"), nullptr);
    EXPECT_TRUE(drawing->findBlock(L"*PAPER_SPACE")->isLayout());
    EXPECT_THAT(drawing->modelSpace().entities(), IsEmpty());
}

TEST(Layers, AreFoundWithoutRegardToCaseAndMadeOnce)
{
    const auto drawing = Drawing::createNew();
    const std::size_t parcels = drawing->ensureLayer(L"Katastarske čestice", 3);
    EXPECT_EQ(drawing->ensureLayer(L"KATASTARSKE ČESTICE", 5), parcels);
    EXPECT_EQ(drawing->layer(parcels).color, 3);
    EXPECT_EQ(drawing->findLayer(L"katastarske čestice"), parcels);
    EXPECT_EQ(drawing->findLayer(L"other"), std::nullopt);
}

TEST(Layers, AnEntityComesOnTheCurrentLayerUnlessItHasOne)
{
    const auto drawing = Drawing::createNew();
    const std::size_t a = drawing->ensureLayer(L"A"), b = drawing->ensureLayer(L"B");
    drawing->setCurrentLayer(a);
    setWorkingDrawing(drawing.get());
    auto chosen = std::make_unique<AcDbLine>();
    EXPECT_EQ(chosen->setLayer(L"nowhere"), Acad::eKeyNotFound);
    EXPECT_EQ(chosen->setLayer(L"b"), Acad::eOk);
    const AcDbLine &onB = *chosen;
    drawing->append(std::move(chosen));
    EXPECT_EQ(addLine(*drawing, 0, 0, 1, 1).layer(), L"A");
    EXPECT_EQ(onB.layer(), L"B");
    EXPECT_EQ(layerIndexOf(onB), b);
}

TEST(Opening, ReadersMayBeManyAndAWriterStandsAlone)
{
    const auto drawing = Drawing::createNew();
    const AcDbObjectId id = addLine(*drawing, 0, 0, 1, 0).objectId();
    AcDbEntity *first = nullptr, *second = nullptr, *writer = nullptr;
    ASSERT_EQ(acdbOpenAcDbEntity(first, id, AcDb::kForRead), Acad::eOk);
    ASSERT_EQ(acdbOpenAcDbEntity(second, id, AcDb::kForRead), Acad::eOk);
    EXPECT_EQ(acdbOpenAcDbEntity(writer, id, AcDb::kForWrite), Acad::eWasOpenForRead);
    EXPECT_EQ(writer, nullptr);
    EXPECT_EQ(first->upgradeOpen(), Acad::eWasOpenForRead);
    second->close();
    EXPECT_EQ(first->setColorIndex(1), Acad::eNotOpenForWrite);
    EXPECT_EQ(first->upgradeOpen(), Acad::eOk);
    EXPECT_TRUE(first->isWriteEnabled());
    EXPECT_EQ(acdbOpenAcDbEntity(second, id, AcDb::kForRead), Acad::eWasOpenForWrite);
    EXPECT_EQ(acdbOpenAcDbEntity(second, id, AcDb::kForWrite), Acad::eWasOpenForWrite);
    first->close();
    EXPECT_EQ(acdbOpenAcDbEntity(writer, id, AcDb::kForWrite), Acad::eOk);
    writer->close();
}

TEST(Opening, WhatIsNoEntityIsRefusedWithStatus34)
{
    const auto drawing = Drawing::createNew();
    AcDbEntity *entity = nullptr;
    EXPECT_EQ(acdbOpenAcDbEntity(entity, {}, AcDb::kForRead), Acad::eNullObjectId);
    EXPECT_EQ(acdbOpenAcDbEntity(entity, idOf(drawing->modelSpace()), AcDb::kForRead), Acad::ErrorStatus(34));
    AcDbObject *object = nullptr;
    EXPECT_EQ(acdbOpenAcDbObject(object, idOf(drawing->modelSpace()), AcDb::kForRead), Acad::eOk);
    object->close();
}

TEST(Erasing, NeedsAWriteOpenAndHidesTheEntityFromWalks)
{
    const auto drawing = Drawing::createNew();
    AcDbLine &line = addLine(*drawing, 0, 0, 1, 0);
    AcDbLine &kept = addLine(*drawing, 0, 0, 0, 1);
    const AcDbObjectId id = line.objectId();
    EXPECT_EQ(line.erase(), Acad::eNotOpenForWrite);
    AcDbEntity *open = nullptr;
    ASSERT_EQ(acdbOpenAcDbEntity(open, id, AcDb::kForWrite), Acad::eOk);
    EXPECT_EQ(open->erase(true), Acad::eOk);
    open->close();
    EXPECT_TRUE(id.isErased());
    EXPECT_TRUE(id.isValid());
    EXPECT_EQ(acdbOpenAcDbEntity(open, id, AcDb::kForRead), Acad::eWasErased);

    AcDbBlockTableRecordIterator *walk = nullptr;
    ASSERT_EQ(drawing->modelSpace().newIterator(walk, true, true), Acad::eOk);
    const std::unique_ptr<AcDbBlockTableRecordIterator> guard(walk);
    AcDbEntity *met = nullptr;
    ASSERT_EQ(walk->getEntity(met, AcDb::kForRead), Acad::eOk);
    EXPECT_EQ(met, &kept);
    met->close();
    walk->step();
    EXPECT_TRUE(walk->done());
}

TEST(Walking, GoesBothWaysAndIsNotDisturbedByNewEntities)
{
    const auto drawing = Drawing::createNew();
    for (int i = 0; i < 3; ++i)
        addLine(*drawing, i, 0, i, 1);
    const auto first = drawing->modelSpace().entities();
    AcDbBlockTableRecordIterator walk(drawing->modelSpace().entities(), true);
    std::vector<AcDbEntity *> met;
    for (walk.start(); !walk.done(); walk.step()) {
        AcDbEntity *entity = nullptr;
        ASSERT_EQ(walk.getEntity(entity, AcDb::kForRead), Acad::eOk);
        met.push_back(entity);
        entity->close();
        addLine(*drawing, 9, 9, 8, 8);
    }
    EXPECT_EQ(met, first);
    met.clear();
    AcDbBlockTableRecordIterator back(first, true);
    for (back.start(false); !back.done(); back.step(false)) {
        AcDbObjectId id;
        back.getEntityId(id);
        met.push_back(first[2 - met.size()]);
        EXPECT_EQ(id, idOf(*met.back()));
    }
    EXPECT_EQ(met.size(), 3u);
}

TEST(Walking, TheBlockTableGivesEveryRecord)
{
    const auto drawing = Drawing::createNew();
    drawing->addBlock(L"MH");
    AcDbBlockTable *table = nullptr;
    ASSERT_EQ(drawing->getBlockTable(table, AcDb::kForRead), Acad::eOk);
    AcDbBlockTableIterator *iterator = nullptr;
    ASSERT_EQ(table->newIterator(iterator), Acad::eOk);
    table->close();
    const std::unique_ptr<AcDbBlockTableIterator> guard(iterator);
    std::vector<std::wstring> names;
    for (iterator->start(); !iterator->done(); iterator->step()) {
        AcDbBlockTableRecord *record = nullptr;
        ASSERT_EQ(iterator->getRecord(record, AcDb::kForRead), Acad::eOk);
        names.push_back(record->name());
        record->close();
    }
    EXPECT_THAT(names, ElementsAre(L"*Model_Space", L"*Paper_Space", L"MH"));
}

TEST(Handles, TextTurnsIntoTheIdAgain)
{
    const auto drawing = Drawing::createNew();
    AcDbLine &line = addLine(*drawing, 0, 0, 1, 0);
    wchar_t text[17];
    ASSERT_TRUE(line.objectId().handle().getIntoAsciiBuffer(text));
    AcDbObjectId found;
    EXPECT_EQ(drawing->getAcDbObjectId(found, false, AcDbHandle(text), 0), Acad::eOk);
    EXPECT_EQ(found, line.objectId());
    EXPECT_EQ(drawing->getAcDbObjectId(found, false, AcDbHandle(L"FFFFFF"), 0), Acad::eUnknownHandle);
    EXPECT_TRUE(found.isNull());
    EXPECT_TRUE(AcDbHandle(L"12G").isNull());
    EXPECT_TRUE(AcDbHandle(L"").isNull());
    EXPECT_EQ(AcDbHandle(L"00001f").value(), 31u);
}

TEST(Names, GoToSelectionSetsAndBack)
{
    const auto drawing = Drawing::createNew();
    AcDbLine &line = addLine(*drawing, 0, 0, 1, 0);
    ads_name name;
    ASSERT_EQ(acdbGetAdsName(name, line.objectId()), Acad::eOk);
    AcDbObjectId id;
    ASSERT_EQ(acdbGetObjectId(id, name), Acad::eOk);
    EXPECT_EQ(id, line.objectId());
    const ads_name none = {0, 0}, other = {77, 1};
    EXPECT_EQ(acdbGetObjectId(id, none), Acad::eNullObjectId);
    EXPECT_EQ(acdbGetObjectId(id, other), Acad::eInvalidInput);
}

TEST(Observers, HearOfEveryChange)
{
    const auto drawing = Drawing::createNew();
    Recorder recorder;
    drawing->addObserver(recorder);
    AcDbLine &line = addLine(*drawing, 0, 0, 1, 0);
    const auto before = drawing->revision();
    drawing->setColorOf(line, 1);
    AcDbEntity *open = nullptr;
    ASSERT_EQ(acdbOpenAcDbEntity(open, line.objectId(), AcDb::kForWrite), Acad::eOk);
    EXPECT_EQ(static_cast<AcDbLine *>(open)->setEndPoint({2, 2, 0}), Acad::eOk);
    open->close();
    EXPECT_EQ(line.setEndPoint({3, 3, 0}), Acad::eNotOpenForWrite);
    drawing->erase(line);
    drawing->erase(line, false);
    drawing->removeObserver(recorder);
    addLine(*drawing, 0, 0, 1, 1);
    EXPECT_THAT(recorder.calls, ElementsAre("appended", "modified", "modified", "erased", "back"));
    EXPECT_GT(drawing->revision(), before);
}

TEST(References, TakeTheirAttributesWithThem)
{
    const auto drawing = Drawing::createNew();
    BlockRecord &block = drawing->addBlock(L"MH");
    auto made = std::make_unique<AcDbBlockReference>(idOf(block), AcDbBlockReference::Placement{});
    AcDbBlockReference &reference = *made;
    drawing->append(std::move(made));
    TextShape shape;
    shape.text = L"M1";
    drawing->appendAttribute(reference, std::make_unique<AttributeEntity>(L"NAME", shape));
    const auto attributes = attributesOf(reference);
    ASSERT_EQ(attributes.size(), 1u);
    drawing->setAttributeText(*attributes[0], L"M2");
    EXPECT_EQ(attributes[0]->shape().text, L"M2");
    drawing->erase(reference);
    EXPECT_TRUE(attributes[0]->isErased());
    EXPECT_THAT(attributesOf(reference), IsEmpty());
    drawing->erase(reference, false);
    EXPECT_EQ(attributesOf(reference), attributes);
}

TEST(AttachedData, IsFoundByObjectAndByKey)
{
    const auto drawing = Drawing::createNew();
    AcDbLine &a = addLine(*drawing, 0, 0, 1, 0), &b = addLine(*drawing, 0, 0, 0, 1);
    const DataItems items{{1, L"ime"}, {40, 2.5}, {90, std::int64_t{7}}};
    drawing->setData(b, "SLIV_MAIN_AREA", items);
    drawing->setData(a, "SLIV_MAIN_AREA", items);
    drawing->setData(a, "SLIV_ISLANDS", items);
    EXPECT_EQ(drawing->data(a, "SLIV_MAIN_AREA"), items);
    EXPECT_THAT(drawing->dataKeys(a), ElementsAre("SLIV_ISLANDS", "SLIV_MAIN_AREA"));
    EXPECT_THAT(drawing->entitiesWithData("SLIV_MAIN_AREA"), ElementsAre(&b, &a)); // in order of handle
    drawing->erase(b);
    EXPECT_THAT(drawing->entitiesWithData("SLIV_MAIN_AREA"), ElementsAre(&a));
    drawing->setData(a, "SLIV_MAIN_AREA", {});
    EXPECT_EQ(drawing->data(a, "SLIV_MAIN_AREA"), std::nullopt);
}

TEST(Areas, CountBulgesAsArcs)
{
    const AcDbPolyline circle({{0, 0, 1}, {2, 0, 1}}, true);
    EXPECT_NEAR(areaOf(circle), std::numbers::pi, 1e-12);
    const AcDbPolyline square({{6e6, 5e6, 0}, {6e6 + 1, 5e6, 0}, {6e6 + 1, 5e6 + 1, 0}, {6e6, 5e6 + 1, 0}}, true);
    EXPECT_EQ(areaOf(square), 1.0);
    // An open line is closed by a chord; the bulge of its last vertex does not count.
    const AcDbPolyline open({{0, 0, 0}, {2, 0, 0}, {2, 2, 1}}, false);
    EXPECT_NEAR(areaOf(open), 2.0, 1e-12);
    const AcDbPolyline notched({{0, 0, -1}, {2, 0, 0}, {2, 2, 0}, {0, 2, 0}}, true);
    EXPECT_NEAR(areaOf(notched), 4.0 - std::numbers::pi / 2, 1e-12);
    EXPECT_NEAR(areaOf(AcDbArc({0, 0, 0}, 1, 0, std::numbers::pi)), std::numbers::pi / 2, 1e-12);
    EXPECT_NEAR(areaOf(CircleEntity({5, 5, 0}, 2)), 4 * std::numbers::pi, 1e-12);
    EXPECT_NEAR(areaOf(EllipseEntity({{0, 0, 0}, {3, 0, 0}, 0.5})), 4.5 * std::numbers::pi, 1e-12);
}

TEST(Extent, OfACurveReachesItsArcs)
{
    const AcDbPolyline half({{0, 0, 1}, {2, 0, 0}}, false);
    const Extents e = extentsOf(half);
    EXPECT_NEAR(e.minY, -1, 1e-12);
    EXPECT_NEAR(e.maxY, 0, 1e-12);
    const Extents arc = extentsOf(AcDbArc({0, 0, 0}, 2, std::numbers::pi / 4, 3 * std::numbers::pi / 4));
    EXPECT_NEAR(arc.maxY, 2, 1e-12);
    EXPECT_NEAR(arc.minY, std::sqrt(2.0), 1e-12);
}

TEST(Extent, OfAReferenceIsThatOfItsContentsInPlace)
{
    const auto drawing = Drawing::createNew();
    BlockRecord &block = drawing->addBlock(L"B", {1, 1, 0});
    drawing->append(std::make_unique<CircleEntity>(AcGePoint3d(1, 1), 1.0), block);
    AcDbBlockReference::Placement p;
    p.position = {10, 20, 0};
    p.scaleX = 3;
    p.rotation = std::numbers::pi / 2;
    p.columns = 2;
    p.columnSpacing = 10;
    const Extents e = extentsOf(AcDbBlockReference(idOf(block), p));
    EXPECT_NEAR(e.minX, 9, 1e-9);
    EXPECT_NEAR(e.maxX, 11, 1e-9);
    EXPECT_NEAR(e.minY, 17, 1e-9);
    EXPECT_NEAR(e.maxY, 33, 1e-9);
}

TEST(Splines, AreFlattenedWithinTheTolerance)
{
    // A quarter of a circle as a rational curve of the second degree.
    SplineEntity::Shape shape;
    shape.degree = 2;
    shape.knots = {0, 0, 0, 1, 1, 1};
    shape.controlPoints = {{1, 0, 0}, {1, 1, 0}, {0, 1, 0}};
    shape.weights = {1, std::sqrt(0.5), 1};
    const SplineEntity quarter(shape);
    const auto points = quarter.flatten(1e-4);
    ASSERT_GT(points.size(), 8u);
    EXPECT_EQ(points.front(), AcGePoint3d(1, 0, 0));
    EXPECT_EQ(points.back(), AcGePoint3d(0, 1, 0));
    for (std::size_t i = 0; i + 1 < points.size(); ++i) {
        EXPECT_NEAR(std::hypot(points[i].x, points[i].y), 1, 1e-12);
        EXPECT_NEAR(std::hypot(points[i].x + points[i + 1].x, points[i].y + points[i + 1].y) / 2, 1, 1e-4);
    }
    EXPECT_NEAR(areaOf(quarter), std::numbers::pi / 4 - 0.5, 1e-5);
}

TEST(Splines, WithoutControlPointsRunThroughTheirFitPoints)
{
    SplineEntity::Shape shape;
    for (int i = 0; i <= 16; ++i)
        shape.fitPoints.emplace_back(std::cos(i * std::numbers::pi / 8), std::sin(i * std::numbers::pi / 8));
    const auto points = SplineEntity(shape).flatten(1e-4);
    for (const AcGePoint3d &p : shape.fitPoints)
        EXPECT_TRUE(
            std::any_of(points.begin(), points.end(), [&](const AcGePoint3d &q) { return q.isEqualTo(p, 1e-9); }));
    // Within the inner part, where the free ends have no say any more, the curve is close to the circle.
    for (const AcGePoint3d &p : points)
        EXPECT_NEAR(std::hypot(p.x, p.y), 1, p.x > 0.3 ? 0.05 : 0.002);
}

namespace {
struct Second {
    explicit Second(Drawing &) {}
    ~Second() { log->push_back("second"); }
    static inline std::vector<std::string> *log = nullptr;
};
struct First {
    explicit First(Drawing &d) : drawing(d) { drawing.component<Second>(); }
    ~First()
    {
        // Both the drawing's objects and what was made before must still be there.
        Second::log->push_back("first " + std::to_string(drawing.modelSpace().entities().size()));
    }
    Drawing &drawing;
};
} // namespace

TEST(Components, GoBeforeTheObjectsAndInReverseOrder)
{
    std::vector<std::string> log;
    Second::log = &log;
    {
        const auto drawing = Drawing::createNew();
        addLine(*drawing, 0, 0, 1, 1);
        EXPECT_EQ(&drawing->component<First>(), &drawing->component<First>());
    }
    EXPECT_THAT(log, ElementsAre("first 1", "second"));
}

TEST(OpenDrawings, TakeAPlaceEachGiveItBackAndNoTwoShareIds)
{
    std::vector<std::unique_ptr<Drawing>> open;
    try {
        for (;;)
            open.push_back(Drawing::createNew());
    } catch (const std::length_error &) {
    }
    EXPECT_GE(open.size(), 4000u);
    const AcDbObjectId first = addLine(*open.front(), 0, 0, 1, 1).objectId(),
                       last = addLine(*open.back(), 0, 0, 1, 1).objectId();
    EXPECT_NE(first, last);
    ads_name name;
    EXPECT_EQ(acdbGetAdsName(name, first), Acad::eOk);
    open.erase(open.begin());
    EXPECT_FALSE(first.isValid());
    EXPECT_TRUE(first.isErased());
    EXPECT_TRUE(first.handle().isNull());
    AcDbEntity *entity = nullptr;
    EXPECT_EQ(acdbOpenAcDbEntity(entity, first, AcDb::kForWrite), Acad::eWasErased);
    EXPECT_EQ(entity, nullptr);
    AcDbObjectId found;
    EXPECT_NE(acdbGetObjectId(found, name), Acad::eOk);
    EXPECT_TRUE(last.isValid());
    open.push_back(Drawing::createNew());
    const AcDbObjectId again = addLine(*open.back(), 0, 0, 1, 1).objectId();
    EXPECT_TRUE(again.isValid());
    EXPECT_NE(again, first) << "the place is the former one, the drawing is not";
    EXPECT_FALSE(first.isValid());
}
