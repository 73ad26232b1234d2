#include "host/editor/SelectionSets.h"

#include "host/drawing/Journal.h"

namespace velmor {

namespace {
/// Second half of a set's name; tells it from an entity's name.
constexpr std::int64_t kSetMark = 0x53454C4543540000;
} // namespace

bool SelectionSet::add(const AcDbObjectId &id)
{
    ads_name name;
    if (acdbGetAdsName(name, id) != Acad::eOk || !m_known.insert(name[0]).second)
        return false;
    m_members.push_back(id);
    ++m_revision;
    return true;
}

void SelectionSet::remove(const AcDbObjectIdArray &ids)
{
    const std::size_t before = m_known.size();
    ads_name name;
    for (const AcDbObjectId &id : ids)
        if (acdbGetAdsName(name, id) == Acad::eOk)
            m_known.erase(name[0]);
    if (m_known.size() == before)
        return;
    std::erase_if(m_members, [&](const AcDbObjectId &id) {
        ads_name member;
        return acdbGetAdsName(member, id) != Acad::eOk || !m_known.contains(member[0]);
    });
    ++m_revision;
}

SelectionSet &SelectionSets::create()
{
    const std::int64_t id = ++m_lastId;
    return *m_sets.emplace(id, std::make_unique<SelectionSet>(id)).first->second;
}

SelectionSet *SelectionSets::find(std::int64_t id) const
{
    const auto found = m_sets.find(id);
    return found == m_sets.end() ? nullptr : found->second.get();
}

SelectionSet *SelectionSets::find(const ads_name name) const
{
    return isSetName(name) ? find(name[0]) : nullptr;
}

bool SelectionSets::release(std::int64_t id)
{
    return m_sets.erase(id) != 0;
}

void SelectionSets::toName(const SelectionSet &set, ads_name name)
{
    name[0] = set.id();
    name[1] = kSetMark;
}

bool SelectionSets::isSetName(const ads_name name)
{
    return name && name[1] == kSetMark;
}

std::string SelectionSets::textOf(const std::int64_t *name)
{
    if (!name)
        return "null";
    if (isSetName(name))
        return "set " + std::to_string(name[0]);
    AcDbObjectId id;
    return acdbGetObjectId(id, name) == Acad::eOk ? journalText(id) : "?";
}

} // namespace velmor
