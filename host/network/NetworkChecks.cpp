#include "host/network/NetworkChecks.h"

#include "host/network/NetworkEntities.h"

namespace velmor {

std::vector<NetworkFinding> checkNetwork(Drawing &drawing)
{
    const auto &network = drawing.component<Network>();
    std::vector<NetworkFinding> found;
    for (const Network::SectionPtr &section : network.sections()) {
        const auto &entity = static_cast<const SectionEntity &>(*section);
        const AcGePoint3d start = section->GetStartPoint(), end = section->GetEndPoint();
        const auto add = [&](NetworkTrouble trouble, const AcGePoint3d &place) {
            found.push_back({trouble, section->GetObjectId(), entity.data().name, place});
        };
        if (!network.nodeByGuid(entity.data().startNode))
            add(NetworkTrouble::LooseEnd, start);
        if (!network.nodeByGuid(entity.data().endNode))
            add(NetworkTrouble::LooseEnd, end);
        if (!(section->GetLength2D() > 0.0)) // the mark for "not known" is negative
            add(NetworkTrouble::NoLength, {(start.x + end.x) / 2.0, (start.y + end.y) / 2.0});
    }
    for (const Network::NodePtr &node : network.nodes()) {
        const auto &entity = static_cast<const NodeEntity &>(*node);
        if (entity.data().name.find_first_not_of(L" \t") == std::wstring::npos)
            found.push_back({NetworkTrouble::UnnamedNode, node->GetObjectId(), handleText(entity.entity()),
                             positionOf(entity.entity()).value_or(AcGePoint3d())});
    }
    return found;
}

} // namespace velmor
