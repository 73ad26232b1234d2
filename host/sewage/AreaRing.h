// The ring of an area's drawing entity, and the centre that the store answers for it.
#pragma once

#include "host/drawing/Entities.h"
#include "host/drawing/Transient.h"

#include <vector>

namespace velmor {

/// The vertices of a light-weight, 2D or 3D polyline in their order, elevation as z, without a last vertex that
/// repeats the first one; empty for any other entity.
std::vector<AcGePoint3d> ringOf(const AcDbEntity &entity);
/// The same with the bulges of its arcs.
TransientRing outlineOf(const AcDbEntity &entity);

/// The centre of a ring of at least one vertex: the centroid of its area when it runs counter-clockwise and its doubled
/// area is above 0.001, else the plain mean of its vertices. Arcs count as their chords.
///
/// The sums run over the triangles from the first vertex in the order of the vertices, as the boundary tools of a
/// module do it, so that both get the same number for the same ring.
AcGePoint3d centreOfRing(const std::vector<AcGePoint3d> &ring);

} // namespace velmor
