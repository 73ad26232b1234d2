#include "host/sewage/AreaRing.h"

#include <cmath>

namespace velmor {
namespace {

/// A doubled area up to this is none, and points nearer than this in each coordinate close a ring.
constexpr double kDegenerate = 0.001;

TransientRing withoutRepeat(TransientRing ring)
{
    if (ring.size() > 1 && ring.front().x == ring.back().x && ring.front().y == ring.back().y)
        ring.pop_back();
    return ring;
}

struct Outline {
    TransientRing vertices;
    double elevation = 0.0;
};

Outline planeOutline(const AcDbEntity &entity)
{
    if (entity.isA() == AcDbPolyline::desc()) {
        const auto &polyline = static_cast<const AcDbPolyline &>(entity);
        return {withoutRepeat(polyline.vertices()), polyline.elevation()};
    }
    if (entity.isA() == AcDb2dPolyline::desc()) {
        const auto &polyline = static_cast<const AcDb2dPolyline &>(entity);
        return {withoutRepeat(polyline.vertices()), polyline.elevation()};
    }
    return {};
}

/// Length of the cross product of b - a and c - a, negative when it points down.
double signedDoubledArea(const AcGePoint3d &a, const AcGePoint3d &b, const AcGePoint3d &c)
{
    const AcGeVector3d u = b - a, v = c - a;
    const AcGeVector3d product{u.y * v.z - u.z * v.y, u.z * v.x - u.x * v.z, u.x * v.y - u.y * v.x};
    return product.z < 0.0 ? -product.length() : product.length();
}

bool repeatsFirst(const std::vector<AcGePoint3d> &ring)
{
    const AcGeVector3d gap = ring.back() - ring.front();
    return std::abs(gap.x) <= kDegenerate && std::abs(gap.y) <= kDegenerate && std::abs(gap.z) <= kDegenerate;
}

} // namespace

std::vector<AcGePoint3d> ringOf(const AcDbEntity &entity)
{
    std::vector<AcGePoint3d> ring;
    if (entity.isA() == AcDb3dPolyline::desc()) {
        ring = static_cast<const AcDb3dPolyline &>(entity).vertices();
        if (ring.size() > 1 && ring.front().x == ring.back().x && ring.front().y == ring.back().y &&
            ring.front().z == ring.back().z)
            ring.pop_back();
        return ring;
    }
    const Outline outline = planeOutline(entity);
    ring.reserve(outline.vertices.size());
    for (const auto &vertex : outline.vertices)
        ring.emplace_back(vertex.x, vertex.y, outline.elevation);
    return ring;
}

TransientRing outlineOf(const AcDbEntity &entity)
{
    if (entity.isA() != AcDb3dPolyline::desc())
        return planeOutline(entity).vertices;
    TransientRing outline;
    for (const AcGePoint3d &point : ringOf(entity))
        outline.push_back({point.x, point.y, 0.0});
    return outline;
}

AcGePoint3d centreOfRing(const std::vector<AcGePoint3d> &ring)
{
    double x = 0.0, y = 0.0, z = 0.0, total = 0.0;
    for (std::size_t i = 0; i + 2 < ring.size(); ++i) {
        const AcGePoint3d &a = ring[0], &b = ring[i + 1], &c = ring[i + 2];
        const double weight = signedDoubledArea(a, b, c);
        total += weight;
        x += (a.x + b.x + c.x) / 3.0 * weight;
        y += (a.y + b.y + c.y) / 3.0 * weight;
        z += (a.z + b.z + c.z) / 3.0 * weight;
    }
    double scale = 0.0;
    if (total > kDegenerate) {
        scale = 1.0 / total;
    } else {
        x = y = z = 0.0;
        const std::size_t counted = repeatsFirst(ring) && ring.size() > 1 ? ring.size() - 1 : ring.size();
        for (std::size_t i = 0; i < counted; ++i) {
            x += ring[i].x;
            y += ring[i].y;
            z += ring[i].z;
        }
        scale = 1.0 / static_cast<double>(counted);
    }
    return {x * scale, y * scale, z * scale};
}

} // namespace velmor
