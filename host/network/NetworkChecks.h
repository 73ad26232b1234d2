// What is wrong or missing in a network, as findings with the entities meant.
#pragma once

#include "host/network/Network.h"

#include <cstdint>
#include <string>
#include <vector>

namespace velmor {

enum class NetworkTrouble : std::uint8_t {
    LooseEnd,    ///< an end of a section at which no node stands
    UnnamedNode, ///< a node without a name
    NoLength,    ///< a section whose length is not known or not above 0
};

struct NetworkFinding {
    NetworkTrouble trouble = NetworkTrouble::LooseEnd;
    AcDbObjectId entity; ///< of the section or the node
    std::wstring name;   ///< of the section; of an unnamed node its handle
    AcGePoint3d place;   ///< the end, the node, or the middle of the section
    bool operator==(const NetworkFinding &other) const
    {
        return trouble == other.trouble && entity == other.entity && name == other.name && place.x == other.place.x &&
               place.y == other.place.y;
    }
};

/// All findings of a drawing's network: sections in their order (the start before the end), then nodes in theirs.
std::vector<NetworkFinding> checkNetwork(Drawing &drawing);
/// Those of one section or node, in the same order.
std::vector<NetworkFinding> checkEntity(Drawing &drawing, const AcDbEntity &entity);

} // namespace velmor
