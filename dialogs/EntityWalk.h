// The walk over all entities of a drawing.
#pragma once

#include "contracts/DrawingHost.h"

#include <memory>

/// Calls visit with every entity of the working drawing that isn't erased, open for reading: model space, paper spaces
/// and block definitions alike. One that can't be opened is passed over; a block table or an iterator that can't be had
/// ends the walk.
template <class Visit>
void WalkEntities(Visit visit)
{
    AcDbDatabase *database = acdbHostApplicationServices()->workingDatabase();
    AcDbBlockTable *table = nullptr;
    if (!database || database->getBlockTable(table, AcDb::kForRead) != Acad::eOk)
        return;
    AcDbBlockTableIterator *blocksRaw = nullptr;
    const Acad::ErrorStatus status = table->newIterator(blocksRaw);
    table->close();
    if (status != Acad::eOk)
        return;
    const std::unique_ptr<AcDbBlockTableIterator> blocks(blocksRaw);
    for (; !blocks->done(); blocks->step()) {
        AcDbBlockTableRecord *record = nullptr;
        if (blocks->getRecord(record, AcDb::kForRead) != Acad::eOk)
            continue;
        AcDbBlockTableRecordIterator *entitiesRaw = nullptr;
        const Acad::ErrorStatus entitiesStatus = record->newIterator(entitiesRaw);
        record->close();
        if (entitiesStatus != Acad::eOk)
            return;
        const std::unique_ptr<AcDbBlockTableRecordIterator> entities(entitiesRaw);
        for (; !entities->done(); entities->step()) {
            AcDbEntity *entity = nullptr;
            if (entities->getEntity(entity, AcDb::kForRead) != Acad::eOk)
                continue;
            visit(*entity);
            entity->close();
        }
    }
}
