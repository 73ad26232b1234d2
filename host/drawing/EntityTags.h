// The bytes by which a walk over a record passes by entities without touching them.
//
// In a large drawing the objects lie in no cache of the processor, and a walk that only looks for a class would spend
// its time waiting for them. The bytes follow the list: what was appended since the last walk, and what was erased,
// came back or was opened for writing, is looked at when the next walk begins. In between a change takes the bytes out
// of sight, so that a walk that is under way asks the objects themselves.
#pragma once

#include "contracts/DrawingHost.h"

#include <vector>

namespace velmor {

class BlockRecord;

class EntityTags {
public:
    /// The tags of all entities of the record as they are now. They stay at their place as long as the record lives.
    const AcDbEntityTags &settled(const BlockRecord &record);
    /// The entity's state has changed.
    void note(AcDbEntity &entity);

private:
    void retag(const std::vector<AcDbEntity *> &entities);

    AcDbEntityTags m_seen;
    std::vector<std::uint8_t> m_bytes;
    std::vector<AcDbEntity *> m_changed; ///< since the bytes were right; some more than once
};

/// The tag of a class in a table of AcDbEntityTags; kAsk for one that has none.
std::uint8_t tagOf(const AcRxClass &kind, const AcRxClass *const *classes);
/// The first place from there on that has one of the two tags or kAsk; end when there is none.
std::size_t findTag(const std::uint8_t *bytes, std::size_t from, std::size_t end, std::uint8_t tag, std::uint8_t other);

} // namespace velmor
