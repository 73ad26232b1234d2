// Objects in the order in which they were picked, each one once: picking thousands takes time by their number.
#pragma once

#include "contracts/DrawingHost.h"

#include <algorithm>
#include <set>

namespace velmor {

class PickedIds {
public:
    /// In the order of picking.
    const AcDbObjectIdArray &list() const { return m_list; }
    /// True when it was not there yet.
    bool add(const AcDbObjectId &id)
    {
        const bool isNew = m_known.insert(id).second;
        if (isNew)
            m_list.push_back(id);
        return isNew;
    }
    /// Takes out those of ids that are there.
    void remove(const AcDbObjectIdArray &ids)
    {
        std::set<AcDbObjectId> gone;
        for (const AcDbObjectId &id : ids) {
            if (m_known.erase(id) != 0)
                gone.insert(id);
        }
        if (!gone.empty())
            std::erase_if(m_list, [&](const AcDbObjectId &id) { return gone.contains(id); });
    }
    bool contains(const AcDbObjectId &id) const { return m_known.contains(id); }

private:
    AcDbObjectIdArray m_list;
    std::set<AcDbObjectId> m_known;
};

} // namespace velmor
