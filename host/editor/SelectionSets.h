// Selection sets of a session: any number of them, thousands of members each, no member twice.
#pragma once

#include "contracts/DrawingHost.h"

#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace velmor {

class SelectionSet {
public:
    explicit SelectionSet(std::int64_t id) : m_id(id) {}
    std::int64_t id() const { return m_id; } ///< never used again, also after the set was freed
    /// Grows with every change.
    std::uint64_t revision() const { return m_revision; }
    const AcDbObjectIdArray &members() const { return m_members; }
    /// False when it is a member already or a null id.
    bool add(const AcDbObjectId &id);
    /// Takes out those of them that are members; the others keep their order.
    void remove(const AcDbObjectIdArray &ids);

private:
    std::int64_t m_id;
    std::uint64_t m_revision = 0;
    AcDbObjectIdArray m_members;              ///< in the order of adding
    std::unordered_set<std::int64_t> m_known; ///< entity names; a handle would be made for the asking
};

class SelectionSets {
public:
    SelectionSet &create();
    SelectionSet *find(std::int64_t id) const;
    SelectionSet *find(const ads_name name) const;
    bool release(std::int64_t id);
    void clear() { m_sets.clear(); }
    std::size_t size() const { return m_sets.size(); }

    static void toName(const SelectionSet &set, ads_name name);
    static bool isSetName(const ads_name name);
    /// For the journal: "set 3", an entity's handle, "null", or "?" for what is neither.
    static std::string textOf(const std::int64_t *name);

private:
    std::int64_t m_lastId = 0;
    std::unordered_map<std::int64_t, std::unique_ptr<SelectionSet>> m_sets;
};

} // namespace velmor
