#include "host/network/NetworkData.h"

#include "host/drawing/CurvePath.h"

#include <cmath>

namespace velmor {

namespace {

const std::wstring *textAt(const DataItems &items, std::size_t index)
{
    return index < items.size() ? std::get_if<std::wstring>(&items[index].value) : nullptr;
}

/// Chords are never needed here: the kinds that are asked for have none.
constexpr double kAnyTolerance = 1.0;

bool isCurveOfNetwork(const AcDbEntity &entity)
{
    switch (kindOf(entity)) {
    case EntityKind::Line:
    case EntityKind::Arc:
    case EntityKind::LwPolyline:
    case EntityKind::Polyline2d:
    case EntityKind::Polyline3d:
        return true;
    default:
        return false;
    }
}

template <class Polyline>
std::optional<CurveEnds> endsOfFlat(const Polyline &polyline)
{
    const auto &vertices = polyline.vertices();
    if (vertices.empty())
        return std::nullopt;
    const double z = polyline.elevation();
    return CurveEnds{{vertices.front().x, vertices.front().y, z}, {vertices.back().x, vertices.back().y, z}};
}

} // namespace

DataItems itemsOf(const SectionData &data)
{
    DataItems items{{1, data.guid}, {1, data.name}, {40, data.length}, {1, data.startNode}, {1, data.endNode}};
    if (data.drawnLength != 0.0)
        items.push_back({40, data.drawnLength});
    return items;
}

std::optional<SectionData> sectionDataOf(const DataItems &items)
{
    const std::wstring *guid = textAt(items, 0), *name = textAt(items, 1), *start = textAt(items, 3),
                       *end = textAt(items, 4);
    const double *length = items.size() > 2 ? std::get_if<double>(&items[2].value) : nullptr;
    if (!guid || guid->empty() || !name || !length || !start || !end)
        return std::nullopt;
    const double *drawn = items.size() > 5 ? std::get_if<double>(&items[5].value) : nullptr;
    return SectionData{*guid, *name, *length, *start, *end, drawn ? *drawn : 0.0};
}

DataItems itemsOf(const NodeData &data)
{
    return {{1, data.guid}, {1, data.name}};
}

std::optional<NodeData> nodeDataOf(const DataItems &items)
{
    const std::wstring *guid = textAt(items, 0), *name = textAt(items, 1);
    if (!guid || guid->empty() || !name)
        return std::nullopt;
    return NodeData{*guid, *name};
}

std::optional<CurveEnds> endsOf(const AcDbEntity &entity)
{
    switch (kindOf(entity)) {
    case EntityKind::Line: {
        const auto &line = static_cast<const AcDbLine &>(entity);
        return CurveEnds{line.startPoint(), line.endPoint()};
    }
    case EntityKind::Arc: {
        const auto &arc = static_cast<const AcDbArc &>(entity);
        return CurveEnds{arc.startPoint(), arc.endPoint()};
    }
    case EntityKind::LwPolyline:
        return endsOfFlat(static_cast<const AcDbPolyline &>(entity));
    case EntityKind::Polyline2d:
        return endsOfFlat(static_cast<const AcDb2dPolyline &>(entity));
    case EntityKind::Polyline3d: {
        const auto &vertices = static_cast<const AcDb3dPolyline &>(entity).vertices();
        if (vertices.empty())
            return std::nullopt;
        return CurveEnds{vertices.front(), vertices.back()};
    }
    default:
        return std::nullopt;
    }
}

std::optional<double> planLengthOf(const AcDbEntity &entity)
{
    if (!isCurveOfNetwork(entity))
        return std::nullopt;
    const auto path = curvePathOf(entity, kAnyTolerance);
    if (!path)
        return std::nullopt;
    double length = 0.0;
    const auto &vertices = path->vertices;
    const std::size_t sides = path->closed ? vertices.size() : vertices.size() - 1;
    for (std::size_t i = 0; i < sides; ++i) {
        const auto &from = vertices[i], &to = vertices[(i + 1) % vertices.size()];
        const double chord = std::hypot(to.x - from.x, to.y - from.y), bulge = std::abs(from.bulge);
        // Arc length is radius times angle: chord (1 + b^2) / 4b times 4 atan b.
        length += bulge == 0.0 ? chord : chord * (1.0 + bulge * bulge) / bulge * std::atan(bulge);
    }
    return length;
}

std::optional<AcGePoint3d> positionOf(const AcDbEntity &entity)
{
    switch (kindOf(entity)) {
    case EntityKind::Point:
        return static_cast<const PointEntity &>(entity).position();
    case EntityKind::BlockReference:
        return static_cast<const AcDbBlockReference &>(entity).placement().position;
    default:
        return std::nullopt;
    }
}

} // namespace velmor
