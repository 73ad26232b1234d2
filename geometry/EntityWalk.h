// The walk over all entities of a drawing.
#pragma once

#include "contracts/DrawingHost.h"

#include <memory>

/// Calls visit(iterator) for each block record of the working drawing: model space, paper spaces and block definitions.
/// The iterator stands at the record's first entity and passes over erased ones. A record that can't be opened is
/// passed over; false when the block table or an iterator can't be had, which ends the walk.
template <class Visit>
bool WalkRecords(Visit visit)
{
    AcDbDatabase *database = acdbHostApplicationServices()->workingDatabase();
    AcDbBlockTable *table = nullptr;
    if (!database || database->getBlockTable(table, AcDb::kForRead) != Acad::eOk)
        return false;
    AcDbBlockTableIterator *newBlocks = nullptr;
    const Acad::ErrorStatus status = table->newIterator(newBlocks, true, true);
    table->close();
    if (status != Acad::eOk)
        return false;
    const std::unique_ptr<AcDbBlockTableIterator> blocks(newBlocks);
    for (; !blocks->done(); blocks->step()) {
        AcDbBlockTableRecord *record = nullptr;
        if (blocks->getRecord(record, AcDb::kForRead) != Acad::eOk)
            continue;
        AcDbBlockTableRecordIterator *newEntities = nullptr;
        const Acad::ErrorStatus entityStatus = record->newIterator(newEntities, true, true);
        record->close();
        if (entityStatus != Acad::eOk)
            return false;
        const std::unique_ptr<AcDbBlockTableRecordIterator> entities(newEntities);
        visit(*entities);
    }
    return true;
}

/// Calls visit(entity) with each entity of them, open for reading. One that can't be opened is passed over.
template <class Visit>
bool WalkEntities(Visit visit)
{
    return WalkRecords([&visit](AcDbBlockTableRecordIterator &entities) {
        for (; !entities.done(); entities.step()) {
            AcDbEntity *entity = nullptr;
            if (entities.getEntity(entity, AcDb::kForRead) != Acad::eOk)
                continue;
            visit(*entity);
            entity->close();
        }
    });
}

/// Calls visit(id) with each entity of them that could be opened for reading and is of exactly one of the two classes.
/// None is opened, or touched at all, for that: in a large drawing the objects lie in no cache, and looking at each of
/// them costs far more than asking the iterator.
template <class Visit>
bool WalkEntityIds(const AcRxClass *kind, const AcRxClass *otherKind, Visit visit)
{
    return WalkRecords([&](AcDbBlockTableRecordIterator &entities) {
        for (entities.seek(kind, otherKind); !entities.done(); entities.step(), entities.seek(kind, otherKind)) {
            AcDbObjectId id;
            if (entities.getEntityId(id) == Acad::eOk)
                visit(id);
        }
    });
}
