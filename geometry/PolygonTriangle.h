// The measure of one triangle that centroid, area and clipping share.
#pragma once

#include "geometry/Polygon.h"

/// Length of the cross product of b - a and c - a, negated when its z is below 0.
inline double SignedDoubledArea(const CVertex &a, const CVertex &b, const CVertex &c)
{
    const CVertex product = (b - a).Cross(c - a);
    // Level triangles, the common ones, need no root: z is the length with the sign asked for.
    if (product.x == 0.0 && product.y == 0.0)
        return product.z;
    return product.z < 0.0 ? -product.Length() : product.Length();
}
