// Finds the entity nearest to a point: a tree over the extents of the drawing entities behind the entities.
#pragma once

#include "contracts/NetworkTopology.h"
#include "host/drawing/CurvePath.h"
#include "host/drawing/Drawing.h"

#include <memory>
#include <vector>

namespace velmor {

/// Distance in the plane from a point to a path with its bulges; 0 inside of a closed one.
double distanceTo(const CurvePath &path, double x, double y);

/// The area of a closed path counts when several entities are equally near: the smallest comes first, so an island
/// before the area that it lies in. An entity without a drawing entity is passed over, but a catchment area without
/// one (a hidden area) stands at its centre point. Entities whose drawing entity is erased later are passed over.
class SpatialIndex final : public ZEMGis::Topology::CSpatialIndex {
public:
    explicit SpatialIndex(const std::vector<ZEMGis::Topology::CEntity *> &entities);
    ~SpatialIndex() override;
    ZEMGis::Topology::CEntity *GetClosestEntity(const AcGePoint3d &point, double *radius) const override;

private:
    struct Private;
    std::unique_ptr<Private> d;
};

} // namespace velmor
