// Opening, closing and walking the objects of a drawing.
#include "host/drawing/DrawingData.h"
#include "host/drawing/EntityTags.h"
#include "host/drawing/Journal.h"
#include "host/drawing/Transient.h"

using velmor::Drawing;
using velmor::journal;
using velmor::ObjectAccess;

namespace {

/// An object of another drawing than the one that is worked on; without one, any may be opened.
bool isForeign(const AcDbObject &object)
{
    Drawing *working = velmor::workingDrawing();
    return working && working->priv().place.place() != ObjectAccess::host(object).drawing;
}

/// What an id that gives no object is refused with.
Acad::ErrorStatus refusalOf(AcDbObjectId id)
{
    return id.isNull() ? Acad::eNullObjectId : Acad::eWasErased;
}

Acad::ErrorStatus openObject(AcDbObject &object, AcDb::OpenMode mode)
{
    auto &host = ObjectAccess::host(object);
    if (host.flags & velmor::kErased)
        return Acad::eWasErased;
    if (host.readers < 0)
        return Acad::eWasOpenForWrite;
    if (mode == AcDb::kForRead) {
        ++host.readers;
        return Acad::eOk;
    }
    if (mode != AcDb::kForWrite)
        return Acad::eInvalidInput;
    if (host.readers > 0)
        return Acad::eWasOpenForRead;
    host.readers = -1;
    velmor::noteState(object);
    return Acad::eOk;
}

} // namespace

// --- AcDbObject
// --------------------------------------------------------------------------------------------------------

AcDbObject::AcDbObject() = default;
AcDbObject::~AcDbObject() = default;

AcDbObjectId AcDbObject::objectId() const
{
    // Only what is in a drawing has an id.
    return m_host.owner || isA() == AcDbBlockTable::desc() ? ObjectAccess::id(const_cast<AcDbObject *>(this))
                                                           : AcDbObjectId();
}
bool AcDbObject::isWriteEnabled() const
{
    return m_host.readers < 0 || !m_host.owner;
}

Acad::ErrorStatus AcDbObject::upgradeOpen()
{
    if (!m_host.owner)
        return Acad::eNotInDatabase;
    if (m_host.readers < 0)
        return Acad::eWasOpenForWrite;
    if (m_host.readers != 1)
        return m_host.readers == 0 ? Acad::eInvalidInput : Acad::eWasOpenForRead;
    m_host.readers = -1;
    velmor::noteState(*this);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbObject::erase(bool erasing)
{
    journal("AcDbObject::erase", objectId(), erasing);
    Drawing *drawing = ObjectAccess::drawing(*this);
    if (!drawing)
        return Acad::eNotInDatabase;
    if (m_host.readers >= 0)
        return Acad::eNotOpenForWrite;
    if (erasing && isErased())
        return Acad::eWasErased;
    if (isKindOf(AcDbBlockTableRecord::desc()))
        return drawing->eraseBlock(static_cast<velmor::BlockRecord &>(*this), erasing);
    if (!(m_host.flags & velmor::kIsEntity))
        return erasing && drawing->eraseRecord(*this) ? Acad::eOk : Acad::eInvalidInput;
    drawing->erase(static_cast<AcDbEntity &>(*this), erasing);
    return Acad::eOk;
}

// --- Opening
// -----------------------------------------------------------------------------------------------------------

Acad::ErrorStatus acdbOpenAcDbObject(AcDbObject *&object, AcDbObjectId id, AcDb::OpenMode mode)
{
    object = nullptr;
    AcDbObject *target = ObjectAccess::object(id);
    if (!target)
        return refusalOf(id);
    if (isForeign(*target))
        return Acad::eNotInDatabase;
    const auto status = openObject(*target, mode);
    if (status == Acad::eOk)
        object = target;
    return status;
}

Acad::ErrorStatus acdbOpenAcDbEntity(AcDbEntity *&entity, AcDbObjectId id, AcDb::OpenMode mode)
{
    entity = nullptr;
    AcDbObject *target = ObjectAccess::object(id);
    if (!target)
        return refusalOf(id);
    if (!ObjectAccess::has(*target, velmor::kIsEntity))
        return Acad::eNotAnEntity;
    if (isForeign(*target))
        return Acad::eNotInDatabase;
    const auto status = openObject(*target, mode);
    if (status == Acad::eOk)
        entity = static_cast<AcDbEntity *>(target);
    return status;
}

Acad::ErrorStatus acdbGetObjectId(AcDbObjectId &id, const ads_name name)
{
    id.setNull();
    if (name[0] == 0 && name[1] == 0)
        return Acad::eNullObjectId;
    // The second number is that of an open drawing, else the name never was one or its drawing is closed.
    const auto drawing = static_cast<std::uint64_t>(name[1]);
    if (name[0] == 0 || !ObjectAccess::isOpen(drawing))
        return Acad::eInvalidInput;
    id = ObjectAccess::id(reinterpret_cast<AcDbObject *>(name[0]), drawing);
    return Acad::eOk;
}

Acad::ErrorStatus acdbGetAdsName(ads_name &name, AcDbObjectId id)
{
    name[0] = name[1] = 0;
    if (id.isNull())
        return Acad::eNullObjectId;
    const AcDbObject *object = ObjectAccess::object(id);
    if (!object)
        return Acad::eWasErased;
    name[0] = reinterpret_cast<std::int64_t>(object);
    name[1] = static_cast<std::int64_t>(ObjectAccess::drawingNumber(id));
    return Acad::eOk;
}

AcDbDatabase::~AcDbDatabase() = default;
AcDbDatabase *AcDbHostApplicationServices::workingDatabase() const
{
    return velmor::workingDrawing();
}
AcDbHostApplicationServices *acdbHostApplicationServices()
{
    static AcDbHostApplicationServices services;
    return &services;
}

// --- Iterators
// ---------------------------------------------------------------------------------------------------------

AcDbBlockTableIterator::~AcDbBlockTableIterator() = default;

namespace {
/// Of a list that the host keeps none for.
constexpr AcDbEntityTags s_noTags{};
} // namespace

AcDbBlockTableRecordIterator::AcDbBlockTableRecordIterator(const AcArray<AcDbEntity *> &entities, bool skipErased,
                                                           const AcDbEntityTags *tags)
    : m_entities(entities), m_tags(tags ? *tags : s_noTags), m_size(entities.size())
{
    start(true, skipErased);
}

void AcDbBlockTableRecordIterator::start(bool atBeginning, bool skipErased)
{
    if (atBeginning || m_size == 0) {
        m_next = 0;
        while (skipErased && m_next != m_size && isErasedAt(m_next))
            ++m_next;
        return;
    }
    m_next = m_size - 1;
    if (skipErased && isErasedAt(m_next))
        stepAnyWay(false, skipErased);
}

void AcDbBlockTableRecordIterator::stepAnyWay(bool forward, bool skipErased)
{
    if (m_next == m_size)
        return;
    if (forward) {
        do
            ++m_next;
        while (skipErased && m_next != m_size && isErasedAt(m_next));
        return;
    }
    // Backwards the walk ends like forwards: in done(), which is the place behind the last.
    do {
        if (m_next == 0) {
            m_next = m_size;
            return;
        }
        --m_next;
    } while (skipErased && isErasedAt(m_next));
}

Acad::ErrorStatus AcDbBlockTableRecordIterator::getEntityAnyWay(AcDbEntity *&entity, AcDb::OpenMode mode) const
{
    entity = nullptr;
    if (m_next == m_size)
        return Acad::eOutOfRange;
    AcDbEntity *target = m_entities[m_next];
    const auto status = openObject(*target, mode);
    if (status == Acad::eOk)
        entity = target;
    return status;
}

void AcDbBlockTableRecordIterator::seekOn(const AcRxClass *kind, const AcRxClass *otherKind)
{
    if (m_tags.bytes && (kind != m_sought[0] || otherKind != m_sought[1])) {
        m_sought[0] = kind;
        m_sought[1] = otherKind;
        for (const int i : {0, 1})
            m_soughtTags[i] = m_sought[i] ? velmor::tagOf(*m_sought[i], m_tags.classes) : AcDbEntityTags::kAsk;
    }
    while (m_next != m_size) {
        if (m_tags.bytes)
            m_next = velmor::findTag(m_tags.bytes, m_next, m_size, m_soughtTags[0], m_soughtTags[1]);
        if (const AcRxClass *here = readableClass(); here != nullptr && (here == kind || here == otherKind))
            return;
        if (m_next != m_size)
            ++m_next;
    }
}

const AcRxClass *AcDbBlockTableRecordIterator::readableClassAnyWay() const
{
    const AcDbEntity &entity = *m_entities[m_next];
    return entity.isErased() || ObjectAccess::host(entity).readers < 0 ? nullptr : entity.isA();
}

Acad::ErrorStatus AcDbBlockTableRecordIterator::getEntityIdAnyWay(AcDbObjectId &id) const
{
    id.setNull();
    if (m_next == m_size)
        return Acad::eOutOfRange;
    id = ObjectAccess::id(m_entities[m_next]);
    return Acad::eOk;
}

namespace velmor {

Acad::ErrorStatus BlockRecord::newIterator(AcDbBlockTableRecordIterator *&iterator, bool atBeginning,
                                           bool skipErased) const
{
    iterator = new AcDbBlockTableRecordIterator(m_entities, skipErased, &m_tags.settled(*this));
    if (!atBeginning)
        iterator->start(false, skipErased);
    return Acad::eOk;
}

namespace {

class BlockIterator final : public AcDbBlockTableIterator {
public:
    BlockIterator(Drawing &drawing, bool atBeginning, bool skipErased) : m_drawing(drawing)
    {
        start(atBeginning, skipErased);
    }
    void start(bool atBeginning, bool skipErased) override
    {
        m_next = atBeginning || m_drawing.blocks().empty() ? 0 : m_drawing.blocks().size() - 1;
        if (!done() && skipErased && m_drawing.blocks()[m_next]->isErased())
            step(atBeginning, true);
    }
    bool done() const override { return m_next >= m_drawing.blocks().size(); }
    void step(bool forward, bool skipErased) override
    {
        // Backwards from the first leads behind the last, where done() is true.
        while (!done()) {
            m_next = forward ? m_next + 1 : m_next == 0 ? m_drawing.blocks().size() : m_next - 1;
            if (done() || !skipErased || !m_drawing.blocks()[m_next]->isErased())
                return;
        }
    }
    Acad::ErrorStatus getRecord(AcDbBlockTableRecord *&record, AcDb::OpenMode mode) const override
    {
        record = nullptr;
        if (done())
            return Acad::eOutOfRange;
        BlockRecord *target = m_drawing.blocks()[m_next].get();
        const auto status = openObject(*target, mode);
        if (status == Acad::eOk)
            record = target;
        return status;
    }

private:
    Drawing &m_drawing;
    std::size_t m_next = 0;
};

} // namespace

Acad::ErrorStatus BlockTableObject::newIterator(AcDbBlockTableIterator *&iterator, bool atBeginning,
                                                bool skipErased) const
{
    iterator = new BlockIterator(m_drawing, atBeginning, skipErased);
    return Acad::eOk;
}

Acad::ErrorStatus Drawing::getAcDbObjectId(AcDbObjectId &id, bool, const AcDbHandle &handle, std::uint32_t)
{
    id.setNull();
    AcDbObject *object = handle.isNull() ? nullptr : findByHandle(handle.value());
    if (!object)
        return Acad::eUnknownHandle;
    id = ObjectAccess::id(object);
    return Acad::eOk;
}

Acad::ErrorStatus Drawing::getBlockTable(AcDbBlockTable *&table, AcDb::OpenMode mode)
{
    table = nullptr;
    const auto status = openObject(d->table, mode);
    if (status == Acad::eOk)
        table = &d->table;
    return status;
}

} // namespace velmor

// --- AcDbEntity
// ----------------------------------------------------------------------------------------------------------

std::wstring AcDbEntity::layer() const
{
    const auto &host = ObjectAccess::host(*this);
    const Drawing *drawing = ObjectAccess::drawing(*this);
    if (!drawing)
        drawing = velmor::workingDrawing();
    return drawing && host.layer < drawing->layers().size() ? drawing->layer(host.layer).name : std::wstring();
}

Acad::ErrorStatus AcDbEntity::setLayer(const std::wstring &name)
{
    journal("AcDbEntity::setLayer", objectId(), std::wstring_view(name));
    Drawing *drawing = ObjectAccess::drawing(*this);
    if (drawing && !isWriteEnabled())
        return Acad::eNotOpenForWrite;
    // An entity that is in no drawing yet is made for the one that is worked on.
    const bool isFree = drawing == nullptr;
    if (isFree)
        drawing = velmor::workingDrawing();
    const auto index = drawing ? drawing->findLayer(name) : std::nullopt;
    if (!index)
        return Acad::eKeyNotFound;
    if (isFree)
        ObjectAccess::host(*this).layer = static_cast<std::uint32_t>(*index);
    else
        drawing->setLayerOf(*this, *index);
    return Acad::eOk;
}

int AcDbEntity::colorIndex() const
{
    return ObjectAccess::host(*this).color;
}

Acad::ErrorStatus AcDbEntity::setColorIndex(int index, bool)
{
    journal("AcDbEntity::setColorIndex", objectId(), index);
    if (index < 0 || index > 256)
        return Acad::eInvalidInput;
    Drawing *drawing = ObjectAccess::drawing(*this);
    if (!drawing) {
        ObjectAccess::host(*this).color = static_cast<std::int16_t>(index);
        return Acad::eOk;
    }
    if (!isWriteEnabled())
        return Acad::eNotOpenForWrite;
    drawing->setColorOf(*this, index);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbEntity::highlight(const AcDbFullSubentPath &, bool) const
{
    journal("AcDbEntity::highlight", objectId());
    Drawing *drawing = ObjectAccess::drawing(*this);
    if (!drawing)
        return Acad::eNotInDatabase;
    drawing->component<velmor::TransientGraphics>().setHighlighted(*this, true);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbEntity::unhighlight(const AcDbFullSubentPath &, bool) const
{
    journal("AcDbEntity::unhighlight", objectId());
    Drawing *drawing = ObjectAccess::drawing(*this);
    if (!drawing)
        return Acad::eNotInDatabase;
    drawing->component<velmor::TransientGraphics>().setHighlighted(*this, false);
    return Acad::eOk;
}

Acad::ErrorStatus ObjectAccess::changeLine(AcDbLine &line, AcGePoint3d &end, const AcGePoint3d &to)
{
    if (!line.isWriteEnabled())
        return Acad::eNotOpenForWrite;
    Drawing *owner = drawing(line);
    if (owner)
        owner->entityChanging(line);
    end = to;
    if (owner) {
        owner->priv().touch(line, velmor::kPatchGeometry);
        owner->entityChanged(line);
    }
    return Acad::eOk;
}

Acad::ErrorStatus AcDbEntity::booleanOper(int operation, AcDbEntity *other)
{
    journal("AcDbEntity::booleanOper", objectId(), operation, other ? other->objectId() : AcDbObjectId());
    return Acad::eInvalidInput;
}
