#include "host/network/NetworkChecks.h"

#include "host/network/NetworkEntities.h"

namespace velmor {

namespace {

void checkSection(const Network &network, ZEMGis::Topology::CSection &section, std::vector<NetworkFinding> &found)
{
    const SectionData &data = static_cast<const SectionEntity &>(section).data();
    const AcGePoint3d start = section.GetStartPoint(), end = section.GetEndPoint();
    const auto add = [&](NetworkTrouble trouble, const AcGePoint3d &place) {
        found.push_back({trouble, section.GetObjectId(), data.name, place});
    };
    if (!network.nodeByGuid(data.startNode))
        add(NetworkTrouble::LooseEnd, start);
    if (!network.nodeByGuid(data.endNode))
        add(NetworkTrouble::LooseEnd, end);
    if (!(section.GetLength2D() > 0.0)) // the mark for "not known" is negative
        add(NetworkTrouble::NoLength, {(start.x + end.x) / 2.0, (start.y + end.y) / 2.0});
}

void checkNode(const NodeData &data, const AcDbEntity &entity, std::vector<NetworkFinding> &found)
{
    if (data.name.find_first_not_of(L" \t") == std::wstring::npos)
        found.push_back({NetworkTrouble::UnnamedNode, idOf(const_cast<AcDbEntity &>(entity)), handleText(entity),
                         positionOf(entity).value_or(AcGePoint3d())});
}

} // namespace

std::vector<NetworkFinding> checkNetwork(Drawing &drawing)
{
    const auto &network = drawing.component<Network>();
    std::vector<NetworkFinding> found;
    for (const Network::SectionPtr &section : network.sections())
        checkSection(network, *section, found);
    for (const Network::NodePtr &node : network.nodes()) {
        const auto &entity = static_cast<const NodeEntity &>(*node);
        checkNode(entity.data(), entity.entity(), found);
    }
    return found;
}

std::vector<NetworkFinding> checkEntity(Drawing &drawing, const AcDbEntity &entity)
{
    const auto &network = drawing.component<Network>();
    std::vector<NetworkFinding> found;
    if (const auto section = network.GetSectionById(idOf(const_cast<AcDbEntity &>(entity))))
        checkSection(network, *section, found);
    if (const auto items = drawing.data(entity, kNodeKey))
        if (const auto data = nodeDataOf(*items))
            checkNode(*data, entity, found);
    return found;
}

} // namespace velmor
