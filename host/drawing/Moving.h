// Entities moved and copied in the plane and in height.
#pragma once

#include "host/drawing/EntityShape.h"

namespace velmor {

/// Calls visit(value, axis) for each coordinate of a shape that a move changes, in a fixed order; axis is 0 for x, 1
/// for y, 2 for z. Pattern lines of a hatch keep their place in the drawing, so that patterns of neighbours go on
/// meeting.
template <class Visit>
void visitCoordinates(EntityShape &shape, Visit visit);

/// Whether the host knows the entity's points: all kinds but those that are kept as they were read.
bool canMove(const AcDbEntity &entity);

/// Moves an entity of the drawing by a vector, a block reference with its attributes. Handle and attached data stay.
/// False, and nothing happens, for an entity that can't be moved.
bool moveEntity(Drawing &drawing, AcDbEntity &entity, const AcGeVector3d &by);

/// Adds a copy of an entity of model space, moved by a vector. It has the shape, layer, colour, line type, attributes
/// and attached data of the first one, but not the records that say which section, node, area or label that is (keys
/// that begin with "VELMOR_"): a copy of a section is a plain line, a copy of an area's outline plain linework, for
/// neither is the same section or area a second time. A hatch no longer follows its curves. Null for an entity that
/// can't be moved.
AcDbEntity *copyEntity(Drawing &drawing, const AcDbEntity &entity, const AcGeVector3d &by);

// --- Details
// -----------------------------------------------------------------------------------------------------------

template <class Visit>
void visitCoordinates(EntityShape &shape, Visit visit)
{
    const auto point = [&visit](AcGePoint3d &p) {
        visit(p.x, 0);
        visit(p.y, 1);
        visit(p.z, 2);
    };
    const auto vertices = [&visit](std::vector<AcDbPolyline::Vertex> &all) {
        for (auto &v : all) {
            visit(v.x, 0);
            visit(v.y, 1);
        }
    };
    if (auto *line = std::get_if<LineShape>(&shape.value)) {
        point(line->start);
        point(line->end);
    } else if (auto *arc = std::get_if<ArcShape>(&shape.value)) {
        point(arc->center);
    } else if (auto *circle = std::get_if<CircleShape>(&shape.value)) {
        point(circle->center);
    } else if (auto *ellipse = std::get_if<EllipseEntity::Shape>(&shape.value)) {
        point(ellipse->center);
    } else if (auto *spline = std::get_if<SplineEntity::Shape>(&shape.value)) {
        for (auto *points : {&spline->controlPoints, &spline->fitPoints})
            for (AcGePoint3d &p : *points)
                point(p);
    } else if (auto *place = std::get_if<AcGePoint3d>(&shape.value)) {
        point(*place);
    } else if (auto *polyline = std::get_if<PolylineShape>(&shape.value)) {
        vertices(polyline->vertices);
        visit(polyline->elevation, 2);
    } else if (auto *polyline3d = std::get_if<Polyline3dShape>(&shape.value)) {
        for (AcGePoint3d &p : polyline3d->vertices)
            point(p);
    } else if (auto *text = std::get_if<TextShape>(&shape.value)) {
        point(text->position);
    } else if (auto *reference = std::get_if<ReferenceShape>(&shape.value)) {
        point(reference->placement.position);
    } else if (auto *hatch = std::get_if<HatchShape>(&shape.value)) {
        for (AcDbHatch::Loop &loop : hatch->loops)
            vertices(loop.vertices);
        visit(hatch->elevation, 2);
    }
}

} // namespace velmor
