// Ways through a network: branches and paths, by the nodes at the ends of sections.
#pragma once

#include "host/network/Network.h"

#include <string>
#include <vector>

namespace velmor {

/// Sections that drain to a node, nearest first by the number of sections between, each once.
std::vector<Network::SectionPtr> upstreamOfNode(const Network &network, const std::wstring &nodeGuid);
/// Sections that what comes to a node flows through, in the same order.
std::vector<Network::SectionPtr> downstreamOfNode(const Network &network, const std::wstring &nodeGuid);
/// A section and the branch that begins with it, upstream or downstream.
std::vector<Network::SectionPtr> branchOf(const Network &network, const Network::SectionPtr &section, bool upstream);

/// The sections of the shortest way between two nodes in their order on it, against the flow, too; an unknown length
/// counts as the distance of the section's ends. Empty when there is no way, or for one and the same node.
std::vector<Network::SectionPtr> pathBetween(const Network &network, const std::wstring &fromGuid,
                                             const std::wstring &toGuid);

/// Whether any section ends at nodes, without which there are no branches and paths.
bool hasNodes(const Network &network);

} // namespace velmor
