// The database side of a drawing: layers, blocks, entities, handles, observers.
#include "host/drawing/ChangeLog.h"
#include "host/drawing/DrawingData.h"
#include "host/drawing/Texts.h"

#include <algorithm>
#include <cwctype>
#include <mutex>
#include <stdexcept>

namespace velmor {

std::atomic<std::uint64_t> openDrawings[kDrawingPlaces];

namespace {
Drawing *s_working = nullptr;

/// Drawings are also read on other threads.
std::mutex s_places;
std::uint64_t s_opened = 0;
/// High bits of every drawing's number, so that small numbers never name a drawing.
constexpr std::uint64_t kNumberMark = std::uint64_t{0x564D} << 48;
} // namespace

DrawingPlace::DrawingPlace()
{
    const std::lock_guard lock(s_places);
    // Place 0 stays empty: it is that of objects without a drawing.
    std::size_t place = 1;
    while (place < kDrawingPlaces && openDrawings[place].load(std::memory_order_relaxed) != 0)
        ++place;
    if (place == kDrawingPlaces)
        throw std::length_error(drawingText("dxf.tooManyOpen"));
    m_number = kNumberMark + ++s_opened * kDrawingPlaces + place;
    openDrawings[place].store(m_number, std::memory_order_relaxed);
}

DrawingPlace::~DrawingPlace()
{
    const std::lock_guard lock(s_places);
    openDrawings[place()].store(0, std::memory_order_relaxed);
}

Drawing *workingDrawing()
{
    return s_working;
}
void setWorkingDrawing(Drawing *drawing)
{
    s_working = drawing;
}

std::wstring foldedName(std::wstring_view name)
{
    std::wstring folded(name);
    for (wchar_t &c : folded) {
        // Letters outside of ASCII by hand, since the process may run in the "C" locale.
        if (c < 0x80)
            c = c >= L'a' && c <= L'z' ? c - 32 : c;
        else if ((c >= 0xE0 && c <= 0xFE && c != 0xF7) || (c >= 0x3B1 && c <= 0x3C9 && c != 0x3C2) ||
                 (c >= 0x430 && c <= 0x44F))
            c -= 32;
        else if (c >= 0x450 && c <= 0x45F)
            c -= 80;
        else if ((c >= 0x100 && c <= 0x137) || (c >= 0x14A && c <= 0x177) || (c >= 0x460 && c <= 0x4FF))
            c &= ~wchar_t{1};
        else if ((c >= 0x139 && c <= 0x148) || (c >= 0x179 && c <= 0x17E))
            c = (c & 1) ? c : c - 1;
    }
    return folded;
}

// --- Handles
// -----------------------------------------------------------------------------------------------------------

AcDbObject *HandleTable::find(std::uint64_t handle) const
{
    if (m_slots.empty() || handle == 0)
        return nullptr;
    const std::size_t mask = m_slots.size() - 1;
    for (std::size_t i = slotOf(handle, mask); m_slots[i]; i = (i + 1) & mask)
        if (ObjectAccess::host(*m_slots[i]).handle == handle)
            return m_slots[i];
    return nullptr;
}

bool HandleTable::insert(AcDbObject &object)
{
    if ((m_count + 1) * 4 > m_slots.size() * 3)
        grow(m_slots.empty() ? 64 : m_slots.size() * 2);
    const auto handle = ObjectAccess::host(object).handle;
    const std::size_t mask = m_slots.size() - 1;
    std::size_t i = slotOf(handle, mask);
    for (; m_slots[i]; i = (i + 1) & mask)
        if (ObjectAccess::host(*m_slots[i]).handle == handle)
            return false;
    m_slots[i] = &object;
    ++m_count;
    return true;
}

void HandleTable::remove(const AcDbObject &object)
{
    if (m_slots.empty())
        return;
    const std::size_t mask = m_slots.size() - 1;
    std::size_t hole = slotOf(ObjectAccess::host(object).handle, mask);
    while (m_slots[hole] && m_slots[hole] != &object)
        hole = (hole + 1) & mask;
    if (!m_slots[hole])
        return;
    --m_count;
    // What stands behind comes up where it would no longer be found (Knuth, algorithm 6.4R).
    for (std::size_t next = (hole + 1) & mask; m_slots[next]; next = (next + 1) & mask) {
        const std::size_t home = slotOf(ObjectAccess::host(*m_slots[next]).handle, mask);
        if (((next - home) & mask) >= ((next - hole) & mask)) {
            m_slots[hole] = m_slots[next];
            hole = next;
        }
    }
    m_slots[hole] = nullptr;
}

void HandleTable::reserve(std::size_t count)
{
    std::size_t slots = 64;
    while (slots * 3 < count * 4)
        slots *= 2;
    if (slots > m_slots.size())
        grow(slots);
}

void HandleTable::grow(std::size_t slots)
{
    std::vector<AcDbObject *> old(slots);
    old.swap(m_slots);
    const std::size_t mask = slots - 1;
    for (AcDbObject *object : old) {
        if (!object)
            continue;
        std::size_t i = slotOf(ObjectAccess::host(*object).handle, mask);
        while (m_slots[i])
            i = (i + 1) & mask;
        m_slots[i] = object;
    }
}

std::uint64_t Drawing::Private::giveHandle(AcDbObject &object)
{
    auto &handle = ObjectAccess::host(object).handle;
    if (handle != 0 || ObjectAccess::has(object, kWithdrawn))
        return handle;
    handle = newHandle();
    if (handlesListed)
        handles.insert(object);
    // Somebody may keep it, so the file has to hold it from now on.
    if (ObjectAccess::host(object).sourceLength != 0)
        touch(object, 0);
    if (log)
        log->noteHandle(object);
    return handle;
}

void Drawing::Private::numberNew(AcDbObject &object)
{
    auto &handle = ObjectAccess::host(object).handle;
    if (!numbersAtOnce() || handle != 0)
        return;
    handle = newHandle();
    if (handlesListed)
        handles.insert(object);
}

std::uint64_t Drawing::Private::newHandle()
{
    if (log)
        nextHandle = std::max(nextHandle, log->firstFreeNumber());
    return nextHandle++;
}

AcDbObject *Drawing::Private::find(std::uint64_t handle)
{
    if (!handlesListed) {
        handlesListed = true;
        const auto add = [this](AcDbObject &object) {
            if (ObjectAccess::host(object).handle != 0 && !ObjectAccess::has(object, kWithdrawn))
                handles.insert(object);
        };
        std::size_t count = file.rawObjects.size() + blocks.size();
        for (const auto &block : blocks)
            count += block->entities().size();
        handles.reserve(count);
        for (const auto &block : blocks) {
            add(*block);
            for (AcDbEntity *entity : block->entities()) {
                add(*entity);
                if (kindOf(*entity) == EntityKind::BlockReference)
                    for (const AcDbObjectId id : ObjectAccess::attributes(static_cast<AcDbBlockReference &>(*entity)))
                        add(*ObjectAccess::object(id));
            }
        }
        for (dxf::RawObject *object : file.rawObjects)
            add(*object);
    }
    return handles.find(handle);
}

std::uint64_t handleOf(const AcDbObject &object)
{
    if (const auto handle = ObjectAccess::host(object).handle)
        return handle;
    Drawing *drawing = ObjectAccess::drawing(object);
    return drawing ? drawing->priv().giveHandle(const_cast<AcDbObject &>(object)) : 0;
}

std::wstring handleText(const AcDbObject &object)
{
    const AcDbHandle handle(handleOf(object));
    wchar_t buffer[17];
    return !handle.isNull() && handle.getIntoAsciiBuffer(buffer) ? buffer : std::wstring();
}

AcDbObjectId idOf(AcDbObject &object)
{
    return ObjectAccess::id(&object);
}
std::size_t layerIndexOf(const AcDbEntity &entity)
{
    const std::uint32_t layer = ObjectAccess::host(entity).layer;
    return layer == 0xFFFFFFFF ? 0 : layer;
}

const BlockRecord *ownerOf(const AcDbEntity &entity)
{
    const AcDbObject *owner = ObjectAccess::host(entity).owner;
    return owner && owner->isKindOf(AcDbBlockTableRecord::desc()) ? static_cast<const BlockRecord *>(owner) : nullptr;
}

int effectiveColor(const Drawing &drawing, const AcDbEntity &entity)
{
    const int color = ObjectAccess::host(entity).color;
    return color == 256 ? drawing.layer(layerIndexOf(entity)).color : color == 0 ? 7 : color;
}

Drawing *ObjectAccess::drawing(const AcDbObject &object)
{
    const AcDbObject *o = &object;
    if (!o->m_host.owner && o->isA() != AcDbBlockTable::desc())
        return nullptr;
    while (o->m_host.owner)
        o = o->m_host.owner;
    return o->isA() == AcDbBlockTable::desc() ? &static_cast<const BlockTableObject *>(o)->drawing() : nullptr;
}

bool BlockRecord::isModelSpace() const
{
    return foldedName(m_name) == L"*MODEL_SPACE";
}
bool BlockRecord::isLayout() const
{
    const std::wstring folded = foldedName(m_name);
    return folded == L"*MODEL_SPACE" || folded.starts_with(L"*PAPER_SPACE");
}

// --- The drawing
// ---------------------------------------------------------------------------------------------------------

Drawing::Private::~Private()
{
    for (AcDbObject *object : arenaObjects)
        object->~AcDbObject();
}

void Drawing::Private::touch(AcDbObject &object, unsigned part)
{
    ObjectAccess::set(object, part);
    if (!ObjectAccess::has(object, kListed)) {
        ObjectAccess::set(object, kListed);
        touched.push_back(&object);
    }
}

BlockRecord &Drawing::Private::makeBlock(std::wstring name)
{
    auto &record = *blocks.emplace_back(std::make_unique<BlockRecord>(std::move(name)));
    ObjectAccess::setOwner(record, table);
    blockByName.emplace(foldedName(record.name()), &record);
    return record;
}

std::size_t Drawing::Private::addLayer(Layer layer)
{
    const std::size_t index = layers.size();
    layerByName.emplace(foldedName(layer.name), index);
    layers.push_back(std::move(layer));
    return index;
}

Drawing::Drawing() : d(std::make_unique<Private>(*this)) {}

Drawing::~Drawing()
{
    while (!m_components.empty()) {
        // Taken out before it goes, so that a destructor may still ask for the others.
        const auto last = std::move(m_components.back());
        m_components.pop_back();
    }
    if (s_working == this)
        s_working = nullptr;
}

const LoadReport &Drawing::loadReport() const
{
    return d->report;
}
const std::string &Drawing::version() const
{
    return d->version;
}
bool Drawing::isR12() const
{
    return d->version <= "AC1009";
}
bool Drawing::isModified() const
{
    return d->modified;
}
std::uint64_t Drawing::revision() const
{
    return d->revision;
}

bool LoadReport::damaged() const
{
    return std::any_of(findings.begin(), findings.end(),
                       [](const Finding &f) { return f.severity == Severity::Damage; });
}

// --- Layers
// --------------------------------------------------------------------------------------------------------------

std::span<const Layer> Drawing::layers() const
{
    return d->layers;
}
const Layer &Drawing::layer(std::size_t index) const
{
    return d->layers.at(index);
}

std::optional<std::size_t> Drawing::findLayer(std::wstring_view name) const
{
    const auto found = d->layerByName.find(foldedName(name));
    return found == d->layerByName.end() ? std::nullopt : std::optional(found->second);
}

std::size_t Drawing::ensureLayer(const std::wstring &name, int color)
{
    if (const auto index = findLayer(name))
        return *index;
    d->changed();
    const std::size_t index = d->addLayer({name, color});
    d->file.layers.resize(index + 1);
    d->file.layers[index].needsRecord = true;
    if (d->numbersAtOnce() && !isR12())
        d->file.layers[index].handle = d->newHandle();
    if (d->log)
        d->log->noteLayerAdded(index);
    return index;
}

void Drawing::setLayer(std::size_t index, const Layer &layer)
{
    Layer &own = d->layers.at(index);
    if (d->log)
        d->log->noteLayer(index);
    std::wstring name = std::move(own.name);
    own = layer;
    own.name = std::move(name);
    d->recordChanged(index);
    d->changed();
}

void Drawing::Private::recordChanged(std::size_t layer)
{
    dxf::LayerSource &source = file.layers.at(layer);
    (source.length != 0 ? source.changed : source.needsRecord) = true;
    if (source.needsRecord && source.handle == 0 && numbersAtOnce() && version > "AC1009")
        source.handle = newHandle();
}

std::size_t Drawing::currentLayer() const
{
    return d->currentLayer;
}
void Drawing::setCurrentLayer(std::size_t index)
{
    if (index >= d->layers.size() || index == d->currentLayer)
        return;
    if (d->log)
        d->log->noteCurrentLayer();
    d->currentLayer = index;
    d->changed();
}

// --- Blocks
// --------------------------------------------------------------------------------------------------------------

BlockRecord &Drawing::modelSpace()
{
    return *d->modelSpace;
}
const BlockRecord &Drawing::modelSpace() const
{
    return *d->modelSpace;
}
std::span<const std::unique_ptr<BlockRecord>> Drawing::blocks() const
{
    return d->blocks;
}

BlockRecord *Drawing::findBlock(std::wstring_view name) const
{
    const auto found = d->blockByName.find(foldedName(name));
    return found == d->blockByName.end() ? nullptr : found->second;
}

BlockRecord &Drawing::addBlock(const std::wstring &name, const AcGePoint3d &basePoint)
{
    if (BlockRecord *known = findBlock(name))
        return *known;
    BlockRecord &record = d->makeBlock(name);
    ObjectAccess::basePoint(record) = basePoint;
    d->numberNew(record);
    if (d->numbersAtOnce()) {
        dxf::BlockSource &source = d->file.blocks[&record];
        source.beginHandle = d->newHandle();
        source.endHandle = d->newHandle();
    }
    d->changed();
    if (d->log)
        d->log->noteBlockAdded(record);
    return record;
}

void Drawing::Private::setBasePoint(BlockRecord &block, const AcGePoint3d &point)
{
    if (log)
        log->noteBasePoint(block);
    ObjectAccess::basePoint(block) = point;
    changed();
}

// --- Entities
// ------------------------------------------------------------------------------------------------------------

namespace {

/// Observers may leave while they are told.
template <class Call>
void tell(const std::vector<DrawingObserver *> &observers, Call call)
{
    const auto present = observers;
    for (DrawingObserver *observer : present)
        if (std::find(observers.begin(), observers.end(), observer) != observers.end())
            call(*observer);
}

} // namespace

AcDbObjectId Drawing::append(std::unique_ptr<AcDbEntity> entity, BlockRecord &owner)
{
    if (!entity)
        return {};
    AcDbEntity &e = *entity;
    auto &host = ObjectAccess::host(e);
    ObjectAccess::setOwner(e, owner);
    host.readers = 0;
    if (host.layer >= d->layers.size())
        host.layer = static_cast<std::uint32_t>(d->currentLayer);
    ObjectAccess::set(e, kIsEntity);
    ObjectAccess::set(e, kPaperSpace, owner.isLayout() && !owner.isModelSpace());
    ObjectAccess::entities(owner).push_back(&e);
    d->made.push_back(std::move(entity));
    d->added.push_back(&e);
    d->numberNew(e);
    d->changed();
    if (d->log)
        d->log->noteAppended(e);
    tell(d->observers, [&](DrawingObserver &o) { o.entityAppended(e); });
    return ObjectAccess::id(&e);
}

void Drawing::setLayerOf(AcDbEntity &entity, std::size_t layer)
{
    auto &host = ObjectAccess::host(entity);
    if (layer >= d->layers.size() || host.layer == layer)
        return;
    if (d->log)
        d->log->noteLook(entity);
    host.layer = static_cast<std::uint32_t>(layer);
    d->touch(entity, kPatchLayer);
    entityChanged(entity);
}

void Drawing::setColorOf(AcDbEntity &entity, int colorIndex)
{
    auto &host = ObjectAccess::host(entity);
    if (colorIndex < 0 || colorIndex > 256 || host.color == colorIndex)
        return;
    if (d->log)
        d->log->noteLook(entity);
    host.color = static_cast<std::int16_t>(colorIndex);
    d->touch(entity, kPatchColor);
    entityChanged(entity);
}

void Drawing::Private::setErased(AcDbEntity &entity, bool erasing)
{
    ObjectAccess::set(entity, kErased, erasing);
    noteState(entity);
    touch(entity, 0);
    if (kindOf(entity) != EntityKind::BlockReference)
        return;
    for (const AcDbObjectId id : ObjectAccess::attributes(static_cast<AcDbBlockReference &>(entity))) {
        AcDbObject &attribute = *ObjectAccess::object(id);
        if (attribute.isErased() == erasing || (!erasing && !ObjectAccess::has(attribute, kErasedWithOwner)))
            continue;
        ObjectAccess::set(attribute, kErased, erasing);
        ObjectAccess::set(attribute, kErasedWithOwner, erasing);
    }
}

void Drawing::erase(AcDbEntity &entity, bool erasing)
{
    // What was undone comes back by redo alone.
    if (entity.isErased() == erasing || ObjectAccess::has(entity, kWithdrawn))
        return;
    if (d->log)
        d->log->noteErasing(entity);
    d->setErased(entity, erasing);
    d->changed();
    tell(d->observers, [&](DrawingObserver &o) { o.entityErased(entity, erasing); });
}

AcDbObjectId Drawing::appendAttribute(AcDbBlockReference &reference, std::unique_ptr<AttributeEntity> attribute)
{
    if (!attribute)
        return {};
    AttributeEntity &a = *attribute;
    auto &host = ObjectAccess::host(a);
    ObjectAccess::setOwner(a, reference);
    host.readers = 0;
    if (host.layer >= d->layers.size())
        host.layer = ObjectAccess::host(reference).layer;
    ObjectAccess::set(a, kIsEntity);
    ObjectAccess::attributes(reference).push_back(ObjectAccess::id(&a));
    d->made.push_back(std::move(attribute));
    d->numberNew(a);
    const unsigned flags = ObjectAccess::host(reference).flags;
    d->touch(reference, kPatchAttributes);
    if (d->log)
        d->log->noteAttribute(a, flags);
    entityChanged(reference);
    return ObjectAccess::id(&a);
}

void Drawing::setAttributeText(AttributeEntity &attribute, const std::wstring &text)
{
    if (attribute.shape().text == text)
        return;
    if (d->log)
        d->log->noteText(attribute);
    ObjectAccess::shape(attribute).text = text;
    d->touch(attribute, kPatchText);
    // What is drawn changes with the reference that shows it.
    AcDbObject *owner = ObjectAccess::host(attribute).owner;
    const bool inReference = owner && owner->isKindOf(AcDbBlockReference::desc());
    entityChanged(inReference ? static_cast<AcDbEntity &>(*owner) : attribute);
}

AcDbObject *Drawing::findByHandle(std::uint64_t handle) const
{
    return d->find(handle);
}

void Drawing::entityChanging(AcDbEntity &entity)
{
    if (d->log)
        d->log->noteShape(entity);
    tell(d->observers, [&](DrawingObserver &o) { o.shapeChanging(entity); });
}

void Drawing::entityChanged(AcDbEntity &entity)
{
    d->changed();
    tell(d->observers, [&](DrawingObserver &o) { o.entityModified(entity); });
}

void Drawing::addObserver(DrawingObserver &observer)
{
    d->observers.push_back(&observer);
}
void Drawing::removeObserver(DrawingObserver &observer)
{
    std::erase(d->observers, &observer);
}

bool isNameCharacter(wchar_t c)
{
    return c >= L' ' && c != 0x7F && std::wstring_view(L"<>/\\\":;?*|,=`").find(c) == std::wstring_view::npos;
}

} // namespace velmor
