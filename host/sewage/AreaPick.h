// Picking with information: the prompts over areas and over sections, with the text that a tip shows.
#pragma once

#include "host/sewage/CatchmentStore.h"

#include <string>

namespace velmor {

/// What the tip over an area says: name and type, area, parameters, sections with shares. Several lines.
std::wstring areaTip(CatchmentStore &store, const StoredArea &area);
/// What the tip over a section says: name, length, nodes, and its areas with their shares.
std::wstring sectionTip(CatchmentStore &store, const CatchmentStore::SectionPtr &section);

/// One pick over the areas of the store's pick index. RTNORM when a point or an entity was picked (also beside all
/// areas: the last pick is then none), RTCAN when the user ended it, RTERROR without a session.
int pickArea(CatchmentStore &store);
/// Picks over the sections of the network until the user ends it.
void pickSections(CatchmentStore &store);

} // namespace velmor
