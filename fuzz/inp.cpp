// Network files: whatever the bytes, an import is whole or leaves the drawing alone, and what it counted is there.
#include "fuzz/Require.h"
#include "host/network/Network.h"
#include "host/network/NetworkData.h"

#include <cmath>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const auto drawing = velmor::Drawing::createNew();
    const auto revision = drawing->revision();
    const velmor::Network &network = drawing->component<velmor::Network>();
    require(network.sections().empty());

    const auto result =
        velmor::importInpText(*drawing, {reinterpret_cast<const char *>(data), size}, "input", {.withPolygons = true});
    require(result.message.empty() == static_cast<bool>(result));
    if (!result) {
        require(drawing->revision() == revision && drawing->modelSpace().entities().empty());
        return 0;
    }
    require(network.sections().size() == result.sections && network.nodes().size() == result.nodes);
    require(drawing->modelSpace().entities().size() == result.sections + result.nodes + result.polygons);
    for (const auto &section : network.sections()) {
        require(section->GetStartingNode() && section->GetEndingNode());
        const auto &entity =
            dynamic_cast<const AcDbEntity &>(*drawing->findByHandle(section->GetObjectId().handle().value()));
        const auto ends = velmor::endsOf(entity);
        require(ends && std::isfinite(ends->start.x) && std::isfinite(section->GetLength2D()));
        require(section->GetLength2D() >= 0.0);
        require(network.GetSectionByGuid(section->GetGuid().c_str()) == section);
    }
    for (const velmor::Finding &finding : result.findings)
        require(!finding.text.empty() && finding.text.find('\n') == std::string::npos);
    return 0;
}
