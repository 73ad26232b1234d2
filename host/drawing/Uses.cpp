#include "host/drawing/Uses.h"

#include "host/drawing/ChangeLog.h"
#include "host/drawing/DrawingData.h"
#include "host/drawing/dxf/DataTags.h"
#include "host/drawing/dxf/LayersOfFile.h"
#include "host/drawing/dxf/Numbers.h"

#include <algorithm>

namespace velmor {

namespace {

/// Codes of handles that keep what they name: hard pointers and hard owners.
bool holdsOnTo(int code)
{
    return (code >= 340 && code <= 349) || (code >= 360 && code <= 369) || (code >= 390 && code <= 399) || code == 480;
}

class UseFinder {
public:
    explicit UseFinder(const Drawing &drawing)
        : m_drawing(drawing), d(const_cast<Drawing &>(drawing).priv()), m_layersOfFile(d)
    {
        m_uses.layers.resize(d.layers.size());
        for (const auto &block : d.blocks) {
            if (const std::uint64_t handle = ObjectAccess::host(*block).handle; handle != 0)
                m_blocksByHandle.emplace(handle, block.get());
        }
        for (std::size_t i = 0; i < d.layers.size(); ++i) {
            const dxf::RawObject *object = d.file.layers[i].object;
            if (object)
                m_layerRecords.emplace(object, i);
            if (const std::uint64_t handle = object ? ObjectAccess::host(*object).handle : d.file.layers[i].handle;
                handle != 0)
                m_layersByHandle.emplace(handle, i);
        }
    }

    Uses find()
    {
        if (const auto zero = m_drawing.findLayer(L"0"))
            m_uses.layers[*zero] = true;
        if (d.currentLayer < m_uses.layers.size())
            m_uses.layers[d.currentLayer] = true;
        for (const auto &block : d.blocks) {
            if (block->isErased())
                continue;
            for (const AcDbEntity *entity : block->entities())
                if (!entity->isErased())
                    addEntity(*entity);
        }
        for (const dxf::RawObject *object : d.file.rawObjects)
            if (!object->isErased() && !m_layerRecords.contains(object))
                addTags(*object, false);
        for (const auto &[name, variable] : d.header)
            useBlockNamed(variable.value);
        return std::move(m_uses);
    }

private:
    void addEntity(const AcDbEntity &entity)
    {
        useLayer(layerIndexOf(entity));
        switch (kindOf(entity)) {
        case EntityKind::BlockReference: {
            const auto &reference = static_cast<const AcDbBlockReference &>(entity);
            if (const AcDbObject *block = ObjectAccess::object(reference.blockTableRecord()))
                m_uses.blocks.insert(static_cast<const BlockRecord *>(block));
            for (const AttributeEntity *attribute : attributesOf(reference))
                useLayer(layerIndexOf(*attribute));
            break;
        }
        case EntityKind::Polyline2d:
        case EntityKind::Polyline3d: // its vertices name their layers, too
        case EntityKind::Unknown:
            addTags(entity, kindOf(entity) == EntityKind::Unknown);
            break;
        default:
            break;
        }
    }

    /// namesBlocks: texts may be names of blocks.
    void addTags(const AcDbObject &object, bool namesBlocks)
    {
        const auto &host = ObjectAccess::host(object);
        if (host.sourceLength != 0)
            for (const dxf::Tag &tag : dxf::tagsOf(d.file, host.sourceOffset, host.sourceLength))
                addTag(tag, namesBlocks);
        if (const auto carried = d.carried.find(&object); carried != d.carried.end()) {
            dxf::TagCursor cursor(carried->second.data(), carried->second.data() + carried->second.size());
            dxf::Tag tag;
            const char *start = nullptr;
            while (cursor.next(tag, start))
                addTag(tag, namesBlocks);
        }
    }

    void addTag(const dxf::Tag &tag, bool namesBlocks)
    {
        if (tag.code == 8 || tag.code == 1003) {
            if (const auto layer = m_layersOfFile.find(tag.text()))
                useLayer(*layer);
        } else if (holdsOnTo(tag.code)) {
            const std::uint64_t handle = dxf::parseHandle(tag.text());
            if (const auto block = m_blocksByHandle.find(handle); block != m_blocksByHandle.end())
                m_uses.blocks.insert(block->second);
            if (const auto layer = m_layersByHandle.find(handle); layer != m_layersByHandle.end())
                useLayer(layer->second);
        } else if ((namesBlocks || d.version <= "AC1009") && tag.code >= 1 && tag.code <= 7) {
            useBlockNamed(tag.text()); // in old files, dimension styles name the blocks of their arrows
        }
    }

    void useBlockNamed(std::string_view name)
    {
        if (const BlockRecord *block = m_drawing.findBlock(d.file.codec.decode(name)))
            m_uses.blocks.insert(block);
    }
    void useLayer(std::size_t index)
    {
        if (index < m_uses.layers.size())
            m_uses.layers[index] = true;
    }

    const Drawing &m_drawing;
    Drawing::Private &d;
    const dxf::LayersOfFile m_layersOfFile;
    Uses m_uses;
    std::unordered_map<std::uint64_t, const BlockRecord *> m_blocksByHandle;
    std::unordered_map<std::uint64_t, std::size_t> m_layersByHandle;
    std::unordered_map<const dxf::RawObject *, std::size_t> m_layerRecords;
};

} // namespace

Uses usesOf(const Drawing &drawing)
{
    return UseFinder(drawing).find();
}

// --- Taking out
// --------------------------------------------------------------------------------------------------------

void Drawing::Private::setLayerErased(std::size_t index, bool erasing)
{
    if (log)
        log->noteLayer(index);
    Layer &layer = layers[index];
    layer.erased = erasing;
    if (erasing)
        layerByName.erase(foldedName(layer.name));
    else
        layerByName.emplace(foldedName(layer.name), index);
    changed();
}

bool Drawing::eraseLayer(std::size_t index, bool erasing)
{
    if (index >= d->layers.size() || d->layers[index].erased == erasing)
        return false;
    if (erasing ? usesOf(*this).layers[index] : d->layerByName.contains(foldedName(d->layers[index].name)))
        return false;
    d->setLayerErased(index, erasing);
    return true;
}

void Drawing::setBlockErased(BlockRecord &block, bool erasing)
{
    if (d->log)
        d->log->noteBlockErasing(block);
    ObjectAccess::set(block, kErased, erasing);
    if (erasing) {
        for (AcDbEntity *entity : block.m_entities)
            if (!entity->isErased())
                block.m_erasedWithIt.push_back(entity);
        d->blockByName.erase(foldedName(block.name()));
    } else {
        d->blockByName.emplace(foldedName(block.name()), &block);
    }
    for (AcDbEntity *entity : block.m_erasedWithIt)
        erase(*entity, erasing);
    if (!erasing)
        block.m_erasedWithIt.clear();
    d->touch(block, 0);
    d->changed();
}

Acad::ErrorStatus Drawing::eraseBlock(BlockRecord &block, bool erasing)
{
    if (block.isLayout())
        return Acad::eInvalidInput;
    if (block.isErased() == erasing)
        return erasing ? Acad::eWasErased : Acad::eOk;
    if (erasing ? usesOf(*this).blocks.contains(&block) : d->blockByName.contains(foldedName(block.name())))
        return Acad::eIsReferenced;
    setBlockErased(block, erasing);
    return Acad::eOk;
}

Purged purgeUnused(Drawing &drawing, bool blocks, bool layers)
{
    Purged purged;
    // A block that goes may free others and layers.
    for (bool goesOn = blocks; goesOn;) {
        goesOn = false;
        const Uses uses = usesOf(drawing);
        for (const auto &block : drawing.blocks()) {
            // A name with "*" is one that a program gave; whoever uses it does so in ways of its own.
            if (block->isErased() || block->isLayout() || block->name().starts_with(L'*') ||
                uses.blocks.contains(block.get()))
                continue;
            purged.blocks.push_back(block->name());
            drawing.setBlockErased(*block, true);
            goesOn = true;
        }
    }
    if (layers) {
        const Uses uses = usesOf(drawing);
        for (std::size_t i = 0; i < uses.layers.size(); ++i) {
            if (uses.layers[i] || drawing.layer(i).erased)
                continue;
            purged.layers.push_back(drawing.layer(i).name);
            drawing.priv().setLayerErased(i, true);
        }
    }
    return purged;
}

/// Takes out the record that stands behind a key of a dictionary or of an object's data. False when it is none.
bool Drawing::eraseRecord(const AcDbObject &object)
{
    const auto keyOf = [&](const DataDictionary &dictionary) -> std::optional<std::string> {
        for (const auto &[key, record] : dictionary.records)
            if (record.source == &object && record.isPresent())
                return key;
        return std::nullopt;
    };
    for (const auto &[name, dictionary] : d->dictionaries)
        if (const auto key = keyOf(dictionary)) {
            setDictionaryEntry(std::string(name), *key, {});
            return true;
        }
    for (const auto &[owner, dictionary] : d->attached)
        if (const auto key = keyOf(dictionary)) {
            setData(const_cast<AcDbObject &>(*owner), *key, {});
            return true;
        }
    return false;
}

} // namespace velmor
