#include "host/drawing/EntityTags.h"

#include "host/drawing/ObjectAccess.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <functional>

namespace velmor {

namespace {

/// The classes that have a tag of their own, which is their place here. An entity of any other class is asked.
const auto &taggedClasses()
{
    static const std::array<const AcRxClass *, 18> classes = {
        nullptr, // AcDbEntityTags::kAsk
        nullptr, // AcDbEntityTags::kErased
        AcDbLine::desc(),
        AcDbArc::desc(),
        AcDbPolyline::desc(),
        AcDb2dPolyline::desc(),
        AcDb3dPolyline::desc(),
        AcDbBlockReference::desc(),
        AcDbHatch::desc(),
        CircleEntity::desc(),
        EllipseEntity::desc(),
        SplineEntity::desc(),
        PointEntity::desc(),
        TextEntity::desc(),
        MTextEntity::desc(),
        AttributeDefinitionEntity::desc(),
        UnknownEntity::desc(),
        nullptr,
    };
    return classes;
}

std::uint8_t tagNow(const AcDbEntity &entity)
{
    if (entity.isErased())
        return AcDbEntityTags::kErased;
    // Nothing tells when it is closed.
    if (ObjectAccess::host(entity).readers < 0)
        return AcDbEntityTags::kAsk;
    return tagOf(*entity.isA(), taggedClasses().data());
}

} // namespace

std::uint8_t tagOf(const AcRxClass &kind, const AcRxClass *const *classes)
{
    for (std::uint8_t tag = AcDbEntityTags::kErased + 1; classes[tag]; ++tag)
        if (classes[tag] == &kind)
            return tag;
    return AcDbEntityTags::kAsk;
}

std::size_t findTag(const std::uint8_t *bytes, std::size_t from, std::size_t end, std::uint8_t tag, std::uint8_t other)
{
    // Eight at once: a byte is 0 where taking 1 from it borrows, and the lowest such place is exact.
    constexpr std::uint64_t kOnes = 0x0101010101010101, kTops = 0x8080808080808080;
    const auto zeros = [](std::uint64_t word) { return (word - kOnes) & ~word & kTops; };
    if constexpr (std::endian::native == std::endian::little) {
        for (; from + sizeof(std::uint64_t) <= end; from += sizeof(std::uint64_t)) {
            std::uint64_t word = 0;
            std::memcpy(&word, bytes + from, sizeof word);
            static_assert(AcDbEntityTags::kAsk == 0);
            if (const std::uint64_t met = zeros(word) | zeros(word ^ tag * kOnes) | zeros(word ^ other * kOnes))
                return from + static_cast<std::size_t>(std::countr_zero(met)) / 8;
        }
    }
    while (from != end && bytes[from] != AcDbEntityTags::kAsk && bytes[from] != tag && bytes[from] != other)
        ++from;
    return from;
}

const AcDbEntityTags &EntityTags::settled(const BlockRecord &record)
{
    const std::vector<AcDbEntity *> &entities = record.entities();
    if (m_seen.bytes && m_bytes.size() == entities.size())
        return m_seen;
    if (m_bytes.empty())
        m_bytes.reserve(entities.size());
    while (m_bytes.size() < entities.size())
        m_bytes.push_back(tagNow(*entities[m_bytes.size()]));
    retag(entities);
    m_seen = {m_bytes.data(), taggedClasses().data(),
              ObjectAccess::drawingNumber(ObjectAccess::id(const_cast<BlockRecord *>(&record)))};
    return m_seen;
}

void EntityTags::retag(const std::vector<AcDbEntity *> &entities)
{
    if (m_changed.empty())
        return;
    constexpr std::less<const AcDbEntity *> before{};
    std::sort(m_changed.begin(), m_changed.end(), before);
    m_changed.erase(std::unique(m_changed.begin(), m_changed.end()), m_changed.end());
    // An object doesn't know its place. What changes is mostly new, so the search comes from the end.
    std::size_t left = m_changed.size();
    for (std::size_t i = entities.size(); left > 0 && i > 0; --i) {
        AcDbEntity *entity = entities[i - 1];
        if (before(entity, m_changed.front()) || before(m_changed.back(), entity) ||
            !std::binary_search(m_changed.begin(), m_changed.end(), entity, before))
            continue;
        m_bytes[i - 1] = tagNow(*entity);
        --left;
    }
    m_changed.clear();
}

void EntityTags::note(AcDbEntity &entity)
{
    m_seen.bytes = nullptr;
    // Without bytes there is nothing to mend, and from some number on mending costs more than looking at all anew.
    if (m_bytes.empty())
        return;
    m_changed.push_back(&entity);
    if (constexpr std::size_t kFew = 1024; m_changed.size() > std::max(kFew, m_bytes.size() / 16)) {
        m_changed.clear();
        m_bytes.clear();
    }
}

void noteState(AcDbObject &object)
{
    AcDbObject *owner = ObjectAccess::host(object).owner;
    if (owner && ObjectAccess::has(object, kIsEntity) && owner->isA() == AcDbBlockTableRecord::desc())
        ObjectAccess::tags(static_cast<BlockRecord &>(*owner)).note(static_cast<AcDbEntity &>(object));
}

} // namespace velmor
