// Walks that ask the iterator for classes and ids see what the objects themselves would say, whatever changes.
#include "host/drawing/ChangeLog.h"
#include "host/drawing/ObjectAccess.h"

#include "tests/host/drawing/RandomChanges.h"

#include <gmock/gmock.h>

using namespace velmor;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr int kRounds = 1000;
#else
constexpr int kRounds = 10000;
#endif

struct Seen {
    AcDbObjectId id;
    const AcRxClass *kind = nullptr; ///< null: can't be opened for reading
    bool operator==(const Seen &) const = default;
};

std::unique_ptr<AcDbBlockTableRecordIterator> walkOf(const BlockRecord &record)
{
    AcDbBlockTableRecordIterator *walk = nullptr;
    EXPECT_EQ(record.newIterator(walk, true, true), Acad::eOk);
    return std::unique_ptr<AcDbBlockTableRecordIterator>(walk);
}

Seen seenAt(const AcDbBlockTableRecordIterator &walk)
{
    Seen seen{{}, walk.readableClass()};
    EXPECT_EQ(walk.getEntityId(seen.id), Acad::eOk);
    return seen;
}

Seen saidBy(AcDbEntity &entity)
{
    return {idOf(entity), ObjectAccess::host(entity).readers < 0 ? nullptr : entity.isA()};
}

std::vector<Seen> seenBy(AcDbBlockTableRecordIterator &walk)
{
    std::vector<Seen> seen;
    for (; !walk.done(); walk.step())
        seen.push_back(seenAt(walk));
    return seen;
}

std::vector<Seen> seenIn(const BlockRecord &record)
{
    return seenBy(*walkOf(record));
}

/// The ids of a class, by seeking it.
std::vector<AcDbObjectId> soughtIn(const BlockRecord &record, const AcRxClass *kind, const AcRxClass *other = nullptr)
{
    std::vector<AcDbObjectId> ids;
    const auto walk = walkOf(record);
    for (walk->seek(kind, other); !walk->done(); walk->step(), walk->seek(kind, other)) {
        EXPECT_EQ(walk->getEntityId(ids.emplace_back()), Acad::eOk);
    }
    return ids;
}

std::vector<Seen> saidIn(const BlockRecord &record)
{
    std::vector<Seen> said;
    for (AcDbEntity *entity : record.entities())
        if (!entity->isErased())
            said.push_back(saidBy(*entity));
    return said;
}

std::vector<AcDbObjectId> saidToBe(const BlockRecord &record, const AcRxClass *kind, const AcRxClass *other = nullptr)
{
    std::vector<AcDbObjectId> ids;
    for (const Seen &said : saidIn(record))
        if (said.kind && (said.kind == kind || said.kind == other))
            ids.push_back(said.id);
    return ids;
}

class TagsTest : public testing::Test {
protected:
    AcDbEntity &add(std::unique_ptr<AcDbEntity> entity)
    {
        AcDbEntity &made = *entity;
        drawing->append(std::move(entity));
        return made;
    }
    AcDbEntity &addLine(double x) { return add(std::make_unique<AcDbLine>(AcGePoint3d(x, 0), AcGePoint3d(x, 1))); }
    static AcDbEntity *openForWriting(AcDbEntity &entity)
    {
        AcDbEntity *open = nullptr;
        EXPECT_EQ(acdbOpenAcDbEntity(open, idOf(entity), AcDb::kForWrite), Acad::eOk);
        return open;
    }
    std::unique_ptr<Drawing> drawing = Drawing::createNew();
    BlockRecord &model = drawing->modelSpace();
};

} // namespace

TEST_F(TagsTest, TheClassIsToldWithoutOpeningTheEntity)
{
    AcDbEntity &line = addLine(0);
    AcDbEntity &circle = add(std::make_unique<CircleEntity>(AcGePoint3d(), 1.0));
    const auto walk = walkOf(model);
    EXPECT_EQ(seenAt(*walk), (Seen{idOf(line), AcDbLine::desc()}));
    openForWriting(line)->close(); // nobody has it open
    walk->step();
    EXPECT_EQ(seenAt(*walk), (Seen{idOf(circle), CircleEntity::desc()}));
    walk->step();
    EXPECT_TRUE(walk->done());
    EXPECT_EQ(walk->readableClass(), nullptr);
    AcDbObjectId id = idOf(line);
    EXPECT_EQ(walk->getEntityId(id), Acad::eOutOfRange);
    EXPECT_TRUE(id.isNull());
}

TEST_F(TagsTest, EveryKindOfEntityIsToldByItsOwnClass)
{
    test::RandomChanges changes(*drawing, 7);
    for (int i = 0; i < 400; ++i)
        changes.make();
    add(std::make_unique<AcDb3dPolyline>(std::vector<AcGePoint3d>{{0, 0}, {1, 0}}, false));
    add(std::make_unique<UnknownEntity>("ACAD_TABLE"));
    add(std::make_unique<MTextEntity>(TextShape{}));
    EXPECT_EQ(seenIn(model), saidIn(model));
}

TEST_F(TagsTest, OneThatIsOpenForWritingCanNotBeReadUntilItIsClosed)
{
    addLine(0);
    AcDbEntity &line = addLine(1);
    const auto before = seenIn(model);
    AcDbEntity *open = openForWriting(line);
    EXPECT_EQ(seenIn(model)[1], (Seen{idOf(line), nullptr}));
    open->close();
    EXPECT_EQ(seenIn(model), before);

    const auto walk = walkOf(model); // under way when it is opened
    open = openForWriting(line);
    walk->step();
    EXPECT_EQ(walk->readableClass(), nullptr);
    open->close();
    EXPECT_EQ(walk->readableClass(), AcDbLine::desc());
}

TEST_F(TagsTest, OneThatIsUpgradedCanNotBeReadEither)
{
    AcDbEntity &line = addLine(0);
    EXPECT_THAT(seenIn(model), SizeIs(1));
    AcDbEntity *open = nullptr;
    ASSERT_EQ(acdbOpenAcDbEntity(open, idOf(line), AcDb::kForRead), Acad::eOk);
    EXPECT_EQ(seenIn(model)[0].kind, AcDbLine::desc());
    ASSERT_EQ(open->upgradeOpen(), Acad::eOk);
    EXPECT_EQ(seenIn(model)[0].kind, nullptr);
    open->close();
    EXPECT_EQ(seenIn(model)[0].kind, AcDbLine::desc());
}

TEST_F(TagsTest, WhatGoesOrComesBackAheadOfAWalkIsSeenByIt)
{
    AcDbEntity &first = addLine(0), &second = addLine(1), &third = addLine(2);
    EXPECT_THAT(seenIn(model), SizeIs(3));
    drawing->erase(third);
    const auto walk = walkOf(model);
    drawing->erase(second);
    drawing->erase(third, false);
    EXPECT_THAT(seenBy(*walk), ElementsAre(saidBy(first), saidBy(third)));
    EXPECT_THAT(seenIn(model), ElementsAre(saidBy(first), saidBy(third)));
}

TEST_F(TagsTest, AWalkUnderWayOutlivesNewEntitiesAndOtherWalks)
{
    for (int i = 0; i < 10; ++i)
        addLine(i);
    const auto first = seenIn(model);
    std::vector<Seen> seen;
    for (const auto walk = walkOf(model); !walk->done(); walk->step()) {
        seen.push_back(seenAt(*walk));
        for (int i = 0; i < 1000; ++i)
            addLine(i);
        EXPECT_EQ(seenIn(model), saidIn(model));
    }
    EXPECT_EQ(seen, first);
}

TEST_F(TagsTest, WhatWasUndoneIsGoneAndComesBackByRedo)
{
    auto &log = drawing->component<ChangeLog>();
    AcDbEntity &old = addLine(0);
    log.begin(L"work");
    AcDbEntity &made = addLine(1);
    drawing->erase(old);
    log.keep();
    EXPECT_THAT(seenIn(model), ElementsAre(saidBy(made)));
    log.undo();
    EXPECT_THAT(seenIn(model), ElementsAre(saidBy(old)));
    log.redo();
    EXPECT_THAT(seenIn(model), ElementsAre(saidBy(made)));
}

TEST_F(TagsTest, AnyNumberOfChangesBetweenTwoWalksIsSeen)
{
    constexpr int kMany = 40000;
    for (int i = 0; i < kMany; ++i)
        addLine(i);
    EXPECT_THAT(seenIn(model), SizeIs(kMany));
    for (int i = 0; i < kMany; i += 13) // more than is kept track of
        drawing->erase(*model.entities()[static_cast<std::size_t>(i)]);
    EXPECT_EQ(seenIn(model), saidIn(model));
    for (int i = 0; i < kMany; i += 1300) // few enough
        drawing->erase(*model.entities()[static_cast<std::size_t>(i)], false);
    EXPECT_EQ(seenIn(model), saidIn(model));
}

TEST_F(TagsTest, AWalkBackwardsPassesOverWhatIsErased)
{
    AcDbEntity &first = addLine(0), &second = addLine(1), &third = addLine(2);
    drawing->erase(second);
    AcDbBlockTableRecordIterator *made = nullptr;
    ASSERT_EQ(model.newIterator(made, false, true), Acad::eOk);
    const std::unique_ptr<AcDbBlockTableRecordIterator> walk(made);
    std::vector<Seen> seen;
    for (; !walk->done(); walk->step(false))
        seen.push_back(seenAt(*walk));
    EXPECT_THAT(seen, ElementsAre(saidBy(third), saidBy(first)));
}

TEST_F(TagsTest, SeekingFindsEveryEntityOfTheTwoClassesAtAnyPlace)
{
    // Runs of others of every length, in front, between and behind.
    for (int others = 0; others < 40; ++others) {
        for (int i = 0; i < others; ++i)
            addLine(i);
        others % 2 == 0 ? add(std::make_unique<CircleEntity>(AcGePoint3d(), 1.0))
                        : add(std::make_unique<PointEntity>(AcGePoint3d()));
        const auto *const circle = CircleEntity::desc(), *const point = PointEntity::desc();
        EXPECT_EQ(soughtIn(model, circle, point), saidToBe(model, circle, point));
        EXPECT_EQ(soughtIn(model, point), saidToBe(model, point));
        EXPECT_THAT(soughtIn(model, AcDbHatch::desc()), IsEmpty());
    }
    EXPECT_THAT(soughtIn(model, CircleEntity::desc(), PointEntity::desc()), SizeIs(40));
}

TEST_F(TagsTest, SeekingStaysWhereItFoundAndGoesOnForOtherClasses)
{
    addLine(0);
    AcDbEntity &circle = add(std::make_unique<CircleEntity>(AcGePoint3d(), 1.0));
    AcDbEntity &point = add(std::make_unique<PointEntity>(AcGePoint3d()));
    const auto walk = walkOf(model);
    walk->seek(CircleEntity::desc(), nullptr);
    walk->seek(CircleEntity::desc(), nullptr);
    EXPECT_EQ(seenAt(*walk), saidBy(circle));
    walk->seek(PointEntity::desc(), AcDbHatch::desc());
    EXPECT_EQ(seenAt(*walk), saidBy(point));
    walk->seek(AcDbLine::desc(), nullptr);
    EXPECT_TRUE(walk->done());
    walk->seek(AcDbLine::desc(), nullptr);
    EXPECT_TRUE(walk->done());
}

TEST_F(TagsTest, SeekingPassesOverWhatChangedAheadOfIt)
{
    for (int i = 0; i < 20; ++i)
        addLine(i);
    EXPECT_THAT(seenIn(model), SizeIs(20));
    const auto walk = walkOf(model);
    AcDbEntity *open = openForWriting(*model.entities()[0]);
    drawing->erase(*model.entities()[1]);
    walk->seek(AcDbLine::desc(), nullptr);
    EXPECT_EQ(seenAt(*walk), saidBy(*model.entities()[2]));
    EXPECT_EQ(soughtIn(model, AcDbLine::desc()), saidToBe(model, AcDbLine::desc()));
    open->close();
    EXPECT_EQ(soughtIn(model, AcDbLine::desc()), saidToBe(model, AcDbLine::desc()));
}

TEST_F(TagsTest, AListOfNoRecordIsWalkedByAskingTheObjects)
{
    AcDbEntity &first = addLine(0), &second = addLine(1);
    const std::vector<AcDbEntity *> list = {&second, &first};
    AcDbBlockTableRecordIterator walk(list, true);
    EXPECT_THAT(seenBy(walk), ElementsAre(saidBy(second), saidBy(first)));
}

TEST_F(TagsTest, AfterAnyChangesAWalkSeesWhatTheObjectsSay)
{
    auto &log = drawing->component<ChangeLog>();
    test::RandomChanges changes(*drawing, 20261121);
    std::mt19937 random(5);
    std::vector<AcDbEntity *> open;
    std::unique_ptr<AcDbBlockTableRecordIterator> underWay;
    const auto look = [](const BlockRecord &record) {
        EXPECT_EQ(seenIn(record), saidIn(record));
        const auto *const polyline = AcDbPolyline::desc(), *const polyline2d = AcDb2dPolyline::desc();
        EXPECT_EQ(soughtIn(record, polyline, polyline2d), saidToBe(record, polyline, polyline2d));
    };
    for (int round = 0; round < kRounds && !HasFailure(); ++round) {
        SCOPED_TRACE(round);
        switch (random() % 12) {
        case 0:
            log.undo();
            break;
        case 1:
            log.redo();
            break;
        case 2:
            if (const auto &all = model.entities(); !all.empty()) {
                AcDbEntity *entity = nullptr;
                if (acdbOpenAcDbEntity(entity, idOf(*all[random() % all.size()]), AcDb::kForWrite) == Acad::eOk)
                    open.push_back(entity);
            }
            break;
        case 3:
            for (AcDbEntity *entity : open)
                entity->close();
            open.clear();
            break;
        case 4:
            underWay = walkOf(model);
            break;
        case 5:
            if (underWay && !underWay->done())
                underWay->step();
            if (underWay && !underWay->done()) {
                const Seen seen = seenAt(*underWay);
                AcDbEntity &entity = static_cast<AcDbEntity &>(*ObjectAccess::object(seen.id));
                EXPECT_FALSE(entity.isErased());
                EXPECT_EQ(seen, saidBy(entity));
            }
            break;
        case 6:
            for (const auto &block : drawing->blocks())
                look(*block);
            break;
        default:
            log.begin(L"work");
            changes.make();
            log.keep();
        }
    }
    look(model);
    EXPECT_FALSE(saidIn(model).empty());
}
