// A SWMM network file becomes sections, nodes and boundary linework of a drawing.
#include "contracts/CoreServices.h"
#include "host/drawing/dxf/AtomicFile.h"
#include "host/network/InpImport.h"
#include "host/network/NetworkData.h"
#include "host/services/Messages.h"

#include <cmath>

namespace velmor {

namespace {

constexpr double kMetresPerFoot = 0.3048;
constexpr int kSectionColor = 5, kNodeColor = 1, kPolygonColor = 8;

/// Puts entities into model space, on one layer each.
class Drafter {
public:
    Drafter(Drawing &drawing, double scale) : m_drawing(drawing), m_scale(scale) {}

    AcGePoint3d place(const InpPoint &point) const { return {point.x * m_scale, point.y * m_scale, 0.0}; }

    AcDbEntity &add(std::unique_ptr<AcDbEntity> made, std::size_t layer)
    {
        AcDbEntity &entity = *made;
        m_drawing.append(std::move(made));
        m_drawing.setLayerOf(entity, layer);
        return entity;
    }

    std::unique_ptr<AcDbEntity> polyline(const std::vector<InpPoint> &points, bool closed) const
    {
        std::vector<AcDbPolyline::Vertex> vertices;
        for (const InpPoint &point : points)
            vertices.push_back({point.x * m_scale, point.y * m_scale});
        if (m_drawing.isR12()) // which has no light-weight polylines
            return std::make_unique<AcDb2dPolyline>(std::move(vertices), closed);
        return std::make_unique<AcDbPolyline>(std::move(vertices), closed);
    }

private:
    Drawing &m_drawing;
    double m_scale;
};

} // namespace

NetworkImportResult drawNetwork(Drawing &drawing, InpNetwork network, const std::string &name,
                                const ImportProgress &progress)
{
    NetworkImportResult result;
    result.status = network.status;
    result.message = std::move(network.message);
    if (!result)
        return result;
    const double all =
        static_cast<double>(network.nodes.size() + network.conduits.size() + network.polygons.size()) + 1.0;
    std::size_t drawn = 0;
    const auto isCancelled = [&] {
        constexpr std::size_t kBetween = 256;
        if (++drawn % kBetween != 0 || !progress || progress(static_cast<double>(drawn) / all))
            return false;
        result = {};
        result.status = FileStatus::Cancelled;
        result.message = uiLine("ui.inp.cancelled", {name});
        return true;
    };
    result.findings = std::move(network.findings);
    result.convertedFromFeet = network.inFeet;
    const double scale = network.inFeet ? kMetresPerFoot : 1.0;
    Drafter drafter(drawing, scale);

    const std::size_t nodeLayer = drawing.ensureLayer(kNodeLayer, kNodeColor);
    std::vector<std::wstring> nodeGuids;
    for (const InpNode &node : network.nodes) {
        if (isCancelled())
            return result;
        AcDbEntity &entity = drafter.add(std::make_unique<PointEntity>(drafter.place(node.at)), nodeLayer);
        nodeGuids.push_back(ZEMGis::Utility::CUtility::CreateGUID());
        drawing.setData(entity, kNodeKey, itemsOf(NodeData{nodeGuids.back(), node.name}));
    }

    const std::size_t sectionLayer = drawing.ensureLayer(kSectionLayer, kSectionColor);
    for (const InpConduit &conduit : network.conduits) {
        if (isCancelled())
            return result;
        const InpPoint &from = network.nodes[conduit.from].at, &to = network.nodes[conduit.to].at;
        std::unique_ptr<AcDbEntity> made;
        if (conduit.bends.empty()) {
            made = std::make_unique<AcDbLine>(drafter.place(from), drafter.place(to));
        } else {
            std::vector<InpPoint> points{from};
            points.insert(points.end(), conduit.bends.begin(), conduit.bends.end());
            points.push_back(to);
            made = drafter.polyline(points, false);
        }
        AcDbEntity &entity = drafter.add(std::move(made), sectionLayer);
        SectionData data{ZEMGis::Utility::CUtility::CreateGUID(), conduit.name, conduit.length * scale,
                         nodeGuids[conduit.from], nodeGuids[conduit.to]};
        if (data.length > 0.0)
            data.drawnLength = planLengthOf(entity).value_or(0.0);
        drawing.setData(entity, kSectionKey, itemsOf(data));
    }

    if (!network.polygons.empty()) {
        const std::size_t polygonLayer = drawing.ensureLayer(kPolygonLayer, kPolygonColor);
        for (const InpPolygon &polygon : network.polygons) {
            if (isCancelled())
                return result;
            drawing.setData(drafter.add(drafter.polyline(polygon.ring, true), polygonLayer), kSubcatchmentKey,
                            {{1, polygon.name}});
        }
    }
    result.nodes = network.nodes.size();
    result.sections = network.conduits.size();
    result.polygons = network.polygons.size();
    return result;
}

InpNetwork readInpFile(const std::filesystem::path &file, const NetworkImportOptions &options,
                       const ImportProgress &progress)
{
    // Getting the bytes is the shorter part of the work.
    constexpr double kBytesShare = 0.1;
    const auto part = [&](double from, double share) -> ImportProgress {
        if (!progress)
            return {};
        return [&progress, from, share](double done) { return progress(from + share * done); };
    };
    const ReadFileResult read = readWholeFile(file, part(0.0, kBytesShare));
    if (!read) {
        InpNetwork refused;
        refused.status = read.status;
        refused.message = read.message;
        return refused;
    }
    return readInp(read.bytes, file.string(), options.withPolygons, part(kBytesShare, 1.0 - kBytesShare));
}

NetworkImportResult importInpText(Drawing &drawing, std::string_view text, const std::string &name,
                                  const NetworkImportOptions &options)
{
    return drawNetwork(drawing, readInp(text, name, options.withPolygons), name);
}

NetworkImportResult importInp(Drawing &drawing, const std::filesystem::path &file, const NetworkImportOptions &options)
{
    return drawNetwork(drawing, readInpFile(file, options), file.string());
}

} // namespace velmor
