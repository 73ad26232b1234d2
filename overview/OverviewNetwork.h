// The network of the drawing with its areas, read through the contracts, in the form that the forest is made of.
#pragma once

#include "contracts/CatchmentArea.h"
#include "overview/forest/NetworkSums.h"

#include <vector>

struct COverviewNetwork {
    using SectionPtr = boost::shared_ptr<ZEMGis::Topology::CSection>;
    using NodePtr = boost::shared_ptr<ZEMGis::Topology::CNode>;
    using AreaPtr = boost::shared_ptr<ZEMGis::Sewage::CCatchmentArea>;

    std::vector<SectionPtr> m_sections; ///< in the drawing's order
    std::vector<NodePtr> m_nodes;       ///< in the order in which the sections name them
    std::vector<AreaPtr> m_areas;       ///< in order of creation
    std::vector<CForestSection> m_forestSections;
    std::vector<CForestArea> m_forestAreas; ///< shares of sections that are not there are left out
};

/// Of the working drawing; empty without one.
COverviewNetwork ReadNetwork();
