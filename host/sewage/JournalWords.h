// How arguments of the catchment contract stand in the journal of contract calls.
#pragma once

#include "contracts/CatchmentArea.h"
#include "host/drawing/Journal.h"

#include <string>

namespace velmor {

/// Handle text of a section, GUID of an area, "null" for none.
std::string journalWord(const boost::shared_ptr<ZEMGis::Topology::CSection> &section);
std::string journalWord(const boost::shared_ptr<ZEMGis::Sewage::CCatchmentArea> &area);
/// The value; a list as "[a, b]"; "null" for nothing.
std::string journalWord(const ZEMGis::Data::CDataBox &box);
/// "TAG=value; TAG=value".
std::string journalWord(const boost::shared_ptr<ZEMGis::Data::CProperties> &properties);
std::string journalWord(const ZEMGis::Sewage::SectionShares &sections);
std::string journalWord(const CStringArray &texts);

} // namespace velmor
