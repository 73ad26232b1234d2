#include "host/drawing/ChangeRecord.h"

#include <utility>

namespace velmor {

namespace {

/// An object that was undone is erased, and its handle is free.
void setWithdrawn(Drawing::Private &d, AcDbObject &object, bool withdrawn)
{
    if (withdrawn)
        d.handles.remove(object);
    else if (d.handlesListed && ObjectAccess::host(object).handle != 0)
        d.handles.insert(object);
    ObjectAccess::set(object, kErased | kWithdrawn, withdrawn);
    noteState(object);
}

void exchangeFlags(Change &change)
{
    auto &flags = ObjectAccess::host(*change.object).flags;
    const auto now = static_cast<std::uint16_t>(flags & kPatchFlags);
    flags = static_cast<std::uint16_t>((flags & ~kPatchFlags) | change.flags);
    change.flags = now;
}

void exchangeAttribute(Change &change, Drawing::Private &d, bool undoing)
{
    auto &reference = static_cast<AcDbBlockReference &>(*ObjectAccess::host(*change.object).owner);
    auto &attributes = ObjectAccess::attributes(reference);
    if (undoing)
        std::erase(attributes, ObjectAccess::id(change.object));
    else
        attributes.push_back(ObjectAccess::id(change.object));
    setWithdrawn(d, *change.object, undoing);
    auto &flags = ObjectAccess::host(reference).flags;
    const auto now = static_cast<std::uint16_t>(flags & kPatchFlags);
    flags = static_cast<std::uint16_t>((flags & ~kPatchFlags) | change.flags);
    change.flags = now;
}

template <class Map, class Key>
void setRecordState(Map &dictionaries, const Key &name, RecordState &state)
{
    if (!state.hasDictionary) {
        dictionaries.erase(name);
        return;
    }
    DataDictionary &dictionary = dictionaries[name];
    dictionary.changed = state.dictionaryChanged;
    dictionary.handle = state.dictionaryHandle;
    if (state.record)
        dictionary.records.insert_or_assign(state.key, std::move(*state.record));
    else
        dictionary.records.erase(state.key);
}

void exchangeRecord(Drawing::Private &d, Change &change)
{
    auto &state = change.as<RecordState>();
    RecordState now = recordState(d, change.object, state.dictionary, state.key);
    d.file.rootHandle = state.rootHandle;
    if (!change.object) {
        setRecordState(d.dictionaries, state.dictionary, state);
    } else {
        setRecordState(d.attached, change.object, state);
        exchangeFlags(change);
        if (now.isListed != state.isListed) {
            auto &entities = d.entitiesByKey[state.key];
            const std::uint64_t handle = ObjectAccess::host(*change.object).handle;
            if (state.isListed)
                entities[handle] = static_cast<AcDbEntity *>(change.object);
            else
                entities.erase(handle);
        }
    }
    state = std::move(now);
}

void exchangeHeader(Drawing::Private &d, HeaderState &state)
{
    const auto found = d.header.find(state.name);
    auto now = found == d.header.end() ? std::nullopt : std::optional(std::move(found->second));
    if (state.variable)
        d.header[state.name] = std::move(*state.variable);
    else if (found != d.header.end())
        d.header.erase(found);
    state.variable = std::move(now);
}

void exchangeLayer(Drawing::Private &d, std::size_t index, LayerState &state)
{
    LayerState now = layerState(d, index);
    state.layer.name = now.layer.name; // it goes by a change of its own
    if (now.layer.erased != state.layer.erased)
        d.setLayerErased(index, state.layer.erased);
    d.layers[index] = std::move(state.layer);
    dxf::LayerSource &source = d.file.layers[index];
    source.changed = state.changed;
    source.needsRecord = state.needsRecord;
    source.handle = state.handle;
    state = std::move(now);
}

void setNameKnown(Drawing::Private &d, BlockRecord &block, bool known)
{
    const std::wstring name = foldedName(block.name());
    if (known)
        d.blockByName.emplace(name, &block);
    else if (const auto found = d.blockByName.find(name); found != d.blockByName.end() && found->second == &block)
        d.blockByName.erase(found);
}

} // namespace

std::size_t bytesOf(const Change &change)
{
    struct Size {
        std::size_t operator()(std::monostate) const { return 0; }
        std::size_t operator()(const EntityShape &shape) const { return bytesOf(shape); }
        std::size_t operator()(const std::wstring &text) const { return text.size() * sizeof(wchar_t); }
        std::size_t operator()(const RecordState &state) const
        {
            std::size_t bytes = state.key.size() + state.dictionary.size();
            if (state.record && state.record->items)
                for (const DataItem &item : *state.record->items) {
                    bytes += sizeof item;
                    if (const auto *text = std::get_if<std::wstring>(&item.value))
                        bytes += text->size() * sizeof(wchar_t);
                }
            return bytes;
        }
        std::size_t operator()(const HeaderState &state) const { return state.name.size(); }
        std::size_t operator()(const LayerState &state) const { return state.layer.name.size() * sizeof(wchar_t); }
        std::size_t operator()(const BlockState &state) const { return state.erasedWithIt.size() * sizeof(void *); }
    };
    return sizeof change + (change.extra ? sizeof(Change::Extra) + std::visit(Size(), change.extra->state) : 0);
}

RecordState recordState(Drawing::Private &d, AcDbObject *object, const std::string &dictionary, const std::string &key)
{
    RecordState state;
    state.dictionary = dictionary;
    state.key = key;
    state.rootHandle = d.file.rootHandle;
    const DataDictionary *found = nullptr;
    if (object) {
        if (const auto place = d.attached.find(object); place != d.attached.end())
            found = &place->second;
        if (const auto place = d.entitiesByKey.find(key); place != d.entitiesByKey.end())
            state.isListed = place->second.contains(ObjectAccess::host(*object).handle);
    } else if (const auto place = d.dictionaries.find(dictionary); place != d.dictionaries.end()) {
        found = &place->second;
    }
    if (!found)
        return state;
    state.hasDictionary = true;
    state.dictionaryChanged = found->changed;
    state.dictionaryHandle = found->handle;
    if (const auto record = found->records.find(key); record != found->records.end())
        state.record = record->second;
    return state;
}

LayerState layerState(const Drawing::Private &d, std::size_t index)
{
    const dxf::LayerSource &source = d.file.layers[index];
    return {d.layers[index], source.changed, source.needsRecord, source.handle};
}

void exchange(Drawing &drawing, Change &change, bool undoing)
{
    Drawing::Private &d = drawing.priv();
    switch (change.kind) {
    case ChangeKind::Appended:
        setWithdrawn(d, *change.object, undoing);
        break;
    case ChangeKind::Attribute:
        exchangeAttribute(change, d, undoing);
        break;
    case ChangeKind::Erased: {
        auto &entity = static_cast<AcDbEntity &>(*change.object);
        d.setErased(entity, !entity.isErased());
        break;
    }
    case ChangeKind::Look: {
        auto &host = ObjectAccess::host(*change.object);
        std::swap(host.layer, change.layer);
        std::swap(host.color, change.color);
        exchangeFlags(change);
        break;
    }
    case ChangeKind::Shape: {
        auto &entity = static_cast<AcDbEntity &>(*change.object);
        EntityShape now = shapeOf(entity);
        const auto flags = ObjectAccess::host(entity).flags;
        setShape(drawing, entity, std::move(change.as<EntityShape>()));
        change.as<EntityShape>() = std::move(now);
        auto &host = ObjectAccess::host(entity);
        host.flags = static_cast<std::uint16_t>((host.flags & ~kPatchFlags) | (flags & kPatchFlags));
        exchangeFlags(change);
        break;
    }
    case ChangeKind::Text:
        std::swap(ObjectAccess::shape(static_cast<TextEntity &>(*change.object)).text, change.as<std::wstring>());
        exchangeFlags(change);
        break;
    case ChangeKind::Data:
    case ChangeKind::Entry:
        exchangeRecord(d, change);
        break;
    case ChangeKind::Header:
        exchangeHeader(d, change.as<HeaderState>());
        break;
    case ChangeKind::LayerAdded:
        d.setLayerErased(change.layer, undoing);
        break;
    case ChangeKind::Layer:
        exchangeLayer(d, change.layer, change.as<LayerState>());
        break;
    case ChangeKind::CurrentLayer: {
        const auto now = static_cast<std::uint32_t>(d.currentLayer);
        d.currentLayer = change.layer;
        change.layer = now;
        break;
    }
    case ChangeKind::BlockAdded: {
        auto &block = static_cast<BlockRecord &>(*change.object);
        setNameKnown(d, block, !undoing);
        setWithdrawn(d, block, undoing);
        break;
    }
    case ChangeKind::BlockErased: {
        auto &block = static_cast<BlockRecord &>(*change.object);
        const bool erased = !block.isErased();
        setNameKnown(d, block, !erased);
        ObjectAccess::set(block, kErased, erased);
        std::swap(ObjectAccess::erasedWithIt(block), change.as<BlockState>().erasedWithIt);
        break;
    }
    case ChangeKind::BasePoint:
        std::swap(ObjectAccess::basePoint(static_cast<BlockRecord &>(*change.object)),
                  change.as<BlockState>().basePoint);
        break;
    case ChangeKind::LayerName:
        d.exchangeLayerName(change.layer, change.as<std::wstring>());
        break;
    case ChangeKind::Handle: {
        auto &handle = ObjectAccess::host(*change.object).handle;
        if (undoing) {
            d.handles.remove(*change.object);
            change.number = std::exchange(handle, 0);
        } else {
            handle = change.number;
            if (d.handlesListed)
                d.handles.insert(*change.object);
        }
        break;
    }
    }
}

} // namespace velmor
