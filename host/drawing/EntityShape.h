// The shape of an entity as a value: all that is its own beside layer, colour, handle, data and attributes.
#pragma once

#include "host/drawing/Drawing.h"

#include <variant>

namespace velmor {

struct LineShape {
    AcGePoint3d start, end;
};
struct ArcShape {
    AcGePoint3d center;
    double radius = 0.0, startAngle = 0.0, endAngle = 0.0;
};
struct CircleShape {
    AcGePoint3d center;
    double radius = 0.0;
};
/// Of a light-weight or an old polyline in the plane.
struct PolylineShape {
    std::vector<AcDbPolyline::Vertex> vertices;
    double elevation = 0.0;
    bool closed = false;
    double width = 0.0; ///< only a light-weight one has it
};
struct Polyline3dShape {
    std::vector<AcGePoint3d> vertices;
    bool closed = false;
};
struct ReferenceShape {
    AcDbObjectId definition;
    AcDbBlockReference::Placement placement;
};
struct HatchShape {
    AcGeVector3d normal{0.0, 0.0, 1.0};
    double elevation = 0.0, angle = 0.0, scale = 1.0;
    std::wstring pattern;
    int patternType = 1, style = 0;
    bool associative = false;
    std::vector<AcDbHatch::Loop> loops;
    std::vector<AcDbHatch::Family> families; ///< empty: by the pattern's name
};

struct EntityShape {
    /// Nothing for a kind that is kept as it was read.
    std::variant<std::monostate, LineShape, ArcShape, CircleShape, EllipseEntity::Shape, SplineEntity::Shape,
                 AcGePoint3d, PolylineShape, Polyline3dShape, TextShape, ReferenceShape, HatchShape>
        value;
};

/// A new entity of a kind, without a shape yet; null for kinds that say more than a shape: attributes, their
/// definitions, and what is kept as it was read.
std::unique_ptr<AcDbEntity> blankEntity(EntityKind kind);

EntityShape shapeOf(const AcDbEntity &entity);
/// Gives the entity another shape. Its kind stays: false, and nothing happens, for the shape of another kind. An entity
/// in the drawing has to be written anew from then on; followers of the drawing are told before and after.
bool setShape(Drawing &drawing, AcDbEntity &entity, EntityShape shape);

/// Memory that the value takes beside its own size.
std::size_t bytesOf(const EntityShape &shape);

} // namespace velmor
