// Data attached to objects, named dictionaries and header variables, as the drawing keeps them in memory.
#include "host/drawing/DrawingData.h"

namespace velmor {

void Drawing::setData(AcDbObject &object, const std::string &key, const DataItems &items)
{
    const auto found = d->attached.find(&object);
    const bool known = found != d->attached.end() && found->second.contains(key);
    if (items.empty() && !known)
        return;
    if (known && found->second.at(key) == items)
        return;
    const std::uint64_t handle = d->giveHandle(object);
    if (items.empty()) {
        found->second.erase(key);
        d->entitiesByKey[key].erase(handle);
    } else {
        d->attached[&object][key] = items;
        if (ObjectAccess::has(object, kIsEntity))
            d->entitiesByKey[key][handle] = static_cast<AcDbEntity *>(&object);
    }
    d->touch(object, kPatchData);
    if (ObjectAccess::has(object, kIsEntity))
        entityChanged(static_cast<AcDbEntity &>(object));
    else
        d->changed();
}

std::optional<DataItems> Drawing::data(const AcDbObject &object, const std::string &key) const
{
    const auto found = d->attached.find(&object);
    if (found == d->attached.end())
        return std::nullopt;
    const auto items = found->second.find(key);
    return items == found->second.end() ? std::nullopt : std::optional(items->second);
}

std::vector<std::string> Drawing::dataKeys(const AcDbObject &object) const
{
    std::vector<std::string> keys;
    if (const auto found = d->attached.find(&object); found != d->attached.end())
        for (const auto &entry : found->second)
            keys.push_back(entry.first);
    return keys;
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
    auto &entries = d->dictionaries[dictionary];
    const auto found = entries.find(key);
    if (found == entries.end() ? items.empty() : found->second == items)
        return;
    if (items.empty())
        entries.erase(found);
    else
        entries[key] = items;
    d->changed();
}

std::optional<DataItems> Drawing::dictionaryEntry(const std::string &dictionary, const std::string &key) const
{
    const auto entries = d->dictionaries.find(dictionary);
    if (entries == d->dictionaries.end())
        return std::nullopt;
    const auto found = entries->second.find(key);
    return found == entries->second.end() ? std::nullopt : std::optional(found->second);
}

std::vector<std::string> Drawing::dictionaryKeys(const std::string &dictionary) const
{
    std::vector<std::string> keys;
    if (const auto entries = d->dictionaries.find(dictionary); entries != d->dictionaries.end())
        for (const auto &entry : entries->second)
            keys.push_back(entry.first);
    return keys;
}

std::optional<std::string> Drawing::headerVariable(std::string_view name) const
{
    const auto found = d->header.find(name);
    return found == d->header.end() ? std::nullopt : std::optional(found->second.value);
}

void Drawing::setHeaderVariable(const std::string &name, int code, const std::string &value)
{
    d->header[name] = {code, value};
    d->changed();
}

} // namespace velmor
