#include "review/AreaLists.h"

#include <algorithm>

using ZEMGis::Sewage::CatchmentAreas;
using ZEMGis::Sewage::CCatchmentArea;
using AreaPtr = boost::shared_ptr<CCatchmentArea>;

namespace {

/// No GUID stands twice in a list, so the object itself is looked for first: that compares addresses only.
CatchmentAreas::iterator PlaceOf(CatchmentAreas &areas, const CCatchmentArea &area)
{
    const auto itself = std::ranges::find(areas, &area, &AreaPtr::get);
    if (itself != areas.end())
        return itself;
    return std::ranges::find_if(areas,
                                [guid = area.GetGuid()](const AreaPtr &one) { return one && one->GetGuid() == guid; });
}

} // namespace

bool TakeOutOfList(CatchmentAreas &areas, const CCatchmentArea &area)
{
    const auto place = PlaceOf(areas, area);
    if (place == areas.end())
        return false;
    areas.erase(place);
    return true;
}

void TakeOutOfList(CatchmentAreas &areas, const std::unordered_set<std::wstring> &guids)
{
    std::erase_if(areas, [&](const AreaPtr &area) { return area && guids.contains(area->GetGuid()); });
}

void KeepInList(CatchmentAreas &areas, const AreaPtr &area, bool belongs)
{
    if (!belongs)
        TakeOutOfList(areas, *area);
    else if (PlaceOf(areas, *area) == areas.end())
        areas.push_back(area);
}
