// The walk over all entities of a drawing.
#pragma once

#include "contracts/DrawingHost.h"

#include <memory>

/// Steps through all entities of the working drawing that are not erased, model space, paper spaces and block
/// definitions alike, and calls visit with the iterator at each of them. A record that can't be opened is passed over;
/// false when the block table or an iterator can't be had, which ends the walk.
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
        for (; !entities->done(); entities->step())
            visit(*entities);
    }
    return true;
}

/// Calls visit(entity) with each of them, open for reading. One that can't be opened is passed over.
template <class Visit>
bool WalkEntities(Visit visit)
{
    return WalkRecords([&visit](const AcDbBlockTableRecordIterator &at) {
        AcDbEntity *entity = nullptr;
        if (at.getEntity(entity, AcDb::kForRead) != Acad::eOk)
            return;
        visit(*entity);
        entity->close();
    });
}

/// Calls visit(id) with each that could be opened for reading and whose class isWanted(class) takes. No entity is
/// opened, or touched at all, for that: in a large drawing the objects lie in no cache, so looking at each of them
/// costs far more than asking the iterator.
template <class IsWanted, class Visit>
bool WalkEntityIds(IsWanted isWanted, Visit visit)
{
    return WalkRecords([&](const AcDbBlockTableRecordIterator &at) {
        AcDbObjectId id;
        if (const AcRxClass *kind = at.readableClass(); kind && isWanted(kind) && at.getEntityId(id) == Acad::eOk)
            visit(id);
    });
}
