#include "review/CheckedAreas.h"

#include <limits>

namespace {

constexpr std::size_t kNotInList = std::numeric_limits<std::size_t>::max();

} // namespace

void CAreaOrder::Take(const ZEMGis::Sewage::CatchmentAreas &areas)
{
    m_places.clear();
    m_places.reserve(areas.size());
    for (const AreaPtr &area : areas) {
        if (area)
            m_places.emplace(area.get(), m_places.size() + 1);
    }
}

std::size_t CAreaOrder::PlaceOf(const AreaPtr &area) const
{
    if (!area)
        return 0;
    const auto found = m_places.find(area.get());
    return found == m_places.end() ? kNotInList : found->second;
}

bool CAreaOrder::Before(const AreaPtr &one, const AreaPtr &other) const
{
    const std::size_t placeOfOne = PlaceOf(one), placeOfOther = PlaceOf(other);
    if (placeOfOne != kNotInList || placeOfOther != kNotInList)
        return placeOfOne < placeOfOther;
    return one->GetGuid() < other->GetGuid();
}
