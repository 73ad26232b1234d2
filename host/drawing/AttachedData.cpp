// Data attached to objects, named dictionaries and header variables, as the drawing keeps them in memory.
#include "host/drawing/ChangeLog.h"
#include "host/drawing/DrawingData.h"
#include "host/drawing/dxf/DataTags.h"
#include "host/drawing/dxf/Tags.h"

namespace velmor {

namespace {

/// Values in the type that their code has in a file.
DataItems normalized(const DataItems &items)
{
    DataItems result = items;
    for (DataItem &item : result) {
        const auto kind = dxf::valueKindOf(item.code);
        if (const auto *whole = std::get_if<std::int64_t>(&item.value); whole && kind == dxf::ValueKind::Real)
            item.value = static_cast<double>(*whole);
        else if (const auto *real = std::get_if<double>(&item.value); real && kind == dxf::ValueKind::Integer)
            item.value = static_cast<std::int64_t>(*real);
    }
    return result;
}

/// True when the record of that key says it already.
bool holds(Drawing::Private &d, DataDictionary *dictionary, const std::string &key, const DataItems &items)
{
    if (!dictionary)
        return items.empty();
    const auto found = dictionary->records.find(key);
    const bool known = found != dictionary->records.end() && found->second.isPresent();
    return known ? d.itemsOf(found->second) == items : items.empty();
}

void setRecord(Drawing::Private &d, DataDictionary &dictionary, const std::string &key, const DataItems &items)
{
    DataRecord &record = dictionary.records[key];
    record.items = items;
    record.changed = true;
    dictionary.changed = true;
    if (!d.numbersAtOnce() || d.version <= "AC1009" || items.empty())
        return;
    if (!dictionary.source && dictionary.handle == 0)
        dictionary.handle = d.newHandle();
    if (!record.source && record.handle == 0)
        record.handle = d.newHandle();
}

std::optional<DataItems> itemsUnder(Drawing::Private &d, DataDictionary &dictionary, const std::string &key)
{
    const auto found = dictionary.records.find(key);
    if (found == dictionary.records.end())
        return std::nullopt;
    const DataItems &items = d.itemsOf(found->second);
    return items.empty() ? std::nullopt : std::optional(items);
}

std::vector<std::string> keysOf(const DataDictionary &dictionary)
{
    std::vector<std::string> keys;
    for (const auto &[key, record] : dictionary.records)
        if (record.isPresent())
            keys.push_back(key);
    return keys;
}

} // namespace

const DataItems &Drawing::Private::itemsOf(DataRecord &record)
{
    if (!record.items)
        record.items = record.source ? dxf::readRecord(file, *record.source) : DataItems();
    return *record.items;
}

void Drawing::setData(AcDbObject &object, const std::string &key, const DataItems &items)
{
    const auto found = d->attached.find(&object);
    if (found == d->attached.end() && items.empty())
        return;
    for (DrawingObserver *observer : d->observers)
        observer->dataChanging(object, key);
    const DataItems values = normalized(items);
    if (holds(*d, found == d->attached.end() ? nullptr : &found->second, key, values))
        return;
    const std::uint64_t handle = d->giveHandle(object);
    if (d->log)
        d->log->noteData(object, key);
    setRecord(*d, d->attached[&object], key, values);
    const bool isEntity = ObjectAccess::has(object, kIsEntity);
    if (isEntity && items.empty())
        d->entitiesByKey[key].erase(handle);
    else if (isEntity)
        d->entitiesByKey[key][handle] = static_cast<AcDbEntity *>(&object);
    d->touch(object, kPatchData);
    if (isEntity)
        entityChanged(static_cast<AcDbEntity &>(object));
    else
        d->changed();
}

std::optional<DataItems> Drawing::data(const AcDbObject &object, const std::string &key) const
{
    const auto found = d->attached.find(&object);
    return found == d->attached.end() ? std::nullopt : itemsUnder(*d, found->second, key);
}

std::vector<std::string> Drawing::dataKeys(const AcDbObject &object) const
{
    const auto found = d->attached.find(&object);
    return found == d->attached.end() ? std::vector<std::string>() : keysOf(found->second);
}

std::vector<AcDbEntity *> Drawing::entitiesWithData(const std::string &key) const
{
    std::vector<AcDbEntity *> entities;
    if (const auto found = d->entitiesByKey.find(key); found != d->entitiesByKey.end())
        for (const auto &[handle, entity] : found->second)
            if (!entity->isErased())
                entities.push_back(entity);
    return entities;
}

void Drawing::setDictionaryEntry(const std::string &dictionary, const std::string &key, const DataItems &items)
{
    if (items.empty() && !d->dictionaries.contains(dictionary))
        return;
    for (DrawingObserver *observer : d->observers)
        observer->dictionaryChanging(dictionary, key);
    const DataItems values = normalized(items);
    const auto found = d->dictionaries.find(dictionary);
    if (holds(*d, found == d->dictionaries.end() ? nullptr : &found->second, key, values))
        return;
    if (d->log)
        d->log->noteEntry(dictionary, key);
    setRecord(*d, d->dictionaries[dictionary], key, values);
    if (d->numbersAtOnce() && !isR12() && !d->file.rootDictionary && d->file.rootHandle == 0)
        d->file.rootHandle = d->newHandle();
    d->changed();
}

std::optional<DataItems> Drawing::dictionaryEntry(const std::string &dictionary, const std::string &key) const
{
    const auto found = d->dictionaries.find(dictionary);
    return found == d->dictionaries.end() ? std::nullopt : itemsUnder(*d, found->second, key);
}

std::vector<std::string> Drawing::dictionaryKeys(const std::string &dictionary) const
{
    const auto found = d->dictionaries.find(dictionary);
    return found == d->dictionaries.end() ? std::vector<std::string>() : keysOf(found->second);
}

std::optional<std::string> Drawing::headerVariable(std::string_view name) const
{
    const auto found = d->header.find(name);
    return found == d->header.end() ? std::nullopt : std::optional(found->second.value);
}

void Drawing::setHeaderVariable(const std::string &name, int code, const std::string &value)
{
    const auto found = d->header.find(name);
    if (found != d->header.end() && found->second.code == code && found->second.value == value)
        return;
    if (d->log)
        d->log->noteHeader(name);
    d->header[name] = {code, value, true};
    d->changed();
}

} // namespace velmor
