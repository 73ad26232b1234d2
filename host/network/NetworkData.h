// What a drawing keeps of its network: attached data on the entities of sections and nodes, and their geometry.
#pragma once

#include "host/drawing/Drawing.h"

#include <optional>
#include <string>

namespace velmor {

/// Keys of the attached data that make an entity a section, a node, or the outline of a subcatchment.
inline constexpr char kSectionKey[] = "VELMOR_SECTION";
inline constexpr char kNodeKey[] = "VELMOR_NODE";
inline constexpr char kSubcatchmentKey[] = "VELMOR_SUBCATCHMENT";

/// Items in this order: text GUID, text name, real length, text start node, text end node, and the real drawn length
/// unless it is 0. Nodes are named by GUID, which outlives a program that numbers handles anew; an empty one is no
/// node.
struct SectionData {
    std::wstring guid, name;
    double length = 0.0; ///< plan length in drawing units; 0: that of the entity; kUnknownValue: not known
    std::wstring startNode, endNode;
    /// Plan length of the entity when the section got a length of its own, which stays in proportion to it when the
    /// entity is edited; 0: the length stays as it is.
    double drawnLength = 0.0;
    bool operator==(const SectionData &) const = default;
};
DataItems itemsOf(const SectionData &data);
/// Nothing for items of another shape.
std::optional<SectionData> sectionDataOf(const DataItems &items);

/// Items: text GUID, text name.
struct NodeData {
    std::wstring guid, name;
    bool operator==(const NodeData &) const = default;
};
DataItems itemsOf(const NodeData &data);
std::optional<NodeData> nodeDataOf(const DataItems &items);

/// Both ends of a line, an arc or a polyline; nothing for any other kind or a polyline without vertices.
struct CurveEnds {
    AcGePoint3d start, end;
};
std::optional<CurveEnds> endsOf(const AcDbEntity &entity);
/// Length in the plane of a line, an arc or a polyline with its bulges; nothing for any other kind.
std::optional<double> planLengthOf(const AcDbEntity &entity);
/// Where a point or a block reference stands; nothing for any other kind.
std::optional<AcGePoint3d> positionOf(const AcDbEntity &entity);

} // namespace velmor
