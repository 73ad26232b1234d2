// Lists of areas, in which an area is known by its GUID. No widgets, no drawing.
#pragma once

#include "contracts/CatchmentArea.h"

#include <string>
#include <unordered_set>

/// Takes the first area of the same GUID out; false when there is none.
bool TakeOutOfList(ZEMGis::Sewage::CatchmentAreas &areas, const ZEMGis::Sewage::CCatchmentArea &area);

/// Takes all areas of these GUIDs out, in one pass.
void TakeOutOfList(ZEMGis::Sewage::CatchmentAreas &areas, const std::unordered_set<std::wstring> &guids);

/// Appends the area when it belongs in the list and isn't there, takes it out when it doesn't belong.
void KeepInList(ZEMGis::Sewage::CatchmentAreas &areas, const boost::shared_ptr<ZEMGis::Sewage::CCatchmentArea> &area,
                bool belongs);
