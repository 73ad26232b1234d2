// Toolbox of areas and triangles.
#include "geometry/Polygon.h"

#include "geometry/PolygonTriangle.h"

#include <cmath>
#include <limits>

namespace {

constexpr double kDegreesPerRadian = 57.2957795;
constexpr double kLevelSlope = 0.01; ///< a face that rises less has no direction

} // namespace

/// Clips triangles off a copy of a ring, one at a call, and ends with the last three vertices.
class CTriangleClipper {
public:
    /// Copies the first count vertices; false without memory.
    bool Start(const CPolygon &ring, int count)
    {
        if (!m_rest.SetSize(count))
            return false;
        for (int i = 0; i < count; ++i)
            m_rest[i] = ring[i];
        m_bDone = false;
        return true;
    }

    /// The next triangle; false when there is no more.
    bool Next(CVertex (&triangle)[3])
    {
        if (m_bDone)
            return false;
        while (m_rest.GetSize() >= 4) {
            const Step step = Clip(triangle);
            if (step == Step::Triangle)
                return true;
            if (step == Step::Stuck)
                break;
        }
        m_bDone = true;
        if (m_rest.GetSize() < 3)
            return false;
        for (int i = 0; i < 3; ++i)
            triangle[i] = m_rest[i];
        return true;
    }

private:
    enum class Step { Triangle, Dropped, Stuck };

    Step Clip(CVertex (&triangle)[3])
    {
        const int count = m_rest.GetSize();
        for (int i = 0; i < count; ++i) {
            const int j = (i + 1) % count, k = (i + 2) % count;
            if (m_rest.IsDiagonal(i, k)) {
                triangle[0] = m_rest[i];
                triangle[1] = m_rest[j];
                triangle[2] = m_rest[k];
                m_rest.RemovePoint(j);
                return Step::Triangle;
            }
            if (CPolygon::IsCollinear(m_rest[i], m_rest[j], m_rest[k])) {
                m_rest.RemovePoint(j);
                return Step::Dropped;
            }
        }
        return Step::Stuck;
    }

    CPolygon m_rest;
    bool m_bDone = true;
};

bool CPolygon::GetAreaProperties(double &area, CVertex &centroid, CVertex &normal, double &slope, double &azimuth) const
{
    if (m_nCount == 0)
        return false;
    const int count = IsClosed() ? m_nCount - 1 : m_nCount;
    CTriangleClipper clipper;
    if (!clipper.Start(*this, count))
        return false;

    area = 0.0;
    centroid = normal = {0.0, 0.0, 0.0};
    CVertex triangle[3];
    while (clipper.Next(triangle)) {
        const double weight = SignedDoubledArea(triangle[0], triangle[1], triangle[2]);
        area += weight;
        centroid += (triangle[0] + triangle[1] + triangle[2]) * weight;
        normal += Normal(triangle[0], triangle[1], triangle[2]) * weight;
    }
    centroid = centroid / 3.0;
    normal = Normalize(normal);

    if (area > kPolygonTolerance) {
        centroid = centroid / area;
    } else {
        centroid = {0.0, 0.0, 0.0};
        for (int i = 0; i < count; ++i)
            centroid += m_pVertices[i];
        centroid = centroid / count;
    }
    area = 0.5 * std::abs(area);

    slope =
        normal.z < kPolygonTolerance ? std::numeric_limits<double>::max() : std::hypot(normal.x, normal.y) / normal.z;
    azimuth = 0.0;
    if (slope >= kLevelSlope) {
        azimuth = 90.0 - std::atan2(normal.y, normal.x) * kDegreesPerRadian;
        if (azimuth < 0.0)
            azimuth += 360.0;
    }
    return true;
}

bool CPolygon::Triangulate(CPolygon &result) const
{
    if (m_nCount < 4 || !IsClosed())
        return false;
    CTriangleClipper clipper;
    if (!clipper.Start(*this, m_nCount - 1) || !result.SetSize((m_nCount - 3) * 3))
        return false;
    int filled = 0;
    CVertex triangle[3];
    while (clipper.Next(triangle)) {
        for (const CVertex &vertex : triangle)
            result[filled++] = vertex;
    }
    while (filled < result.GetSize())
        result[filled++] = {0.0, 0.0, 0.0};
    return true;
}

bool CPolygon::FanTriangles(CPolygon &result, const CVertex &centre) const
{
    if (m_nCount == 4) {
        if (!result.SetSize(3))
            return false;
        for (int i = 0; i < 3; ++i)
            result[i] = m_pVertices[i];
        return true;
    }
    const int triangles = m_nCount > 1 ? m_nCount - 1 : 0;
    if (!result.SetSize(triangles * 3))
        return false;
    for (int i = 0; i < triangles; ++i) {
        result[3 * i] = centre;
        result[3 * i + 1] = m_pVertices[i];
        result[3 * i + 2] = m_pVertices[i + 1];
    }
    return true;
}

bool CPolygon::DelaunayTriangles(CPolygon &result) const
{
    if (m_nCount < 3)
        return result.SetSize(0);
    const auto lifted = [this](int i) {
        const CVertex &vertex = m_pVertices[i];
        return CVertex{vertex.x, vertex.y, vertex.x * vertex.x + vertex.y * vertex.y};
    };
    const auto isLowerFace = [&](int i, int j, int k) {
        const CVertex at = lifted(i);
        const CVertex down = Normal(at, lifted(j), lifted(k));
        if (!(down.z < 0.0))
            return false;
        for (int other = 0; other < m_nCount; ++other) {
            if (other == i || other == j || other == k)
                continue; // on the face itself, which rounding must not lift off it
            if ((lifted(other) - at).Dot(down) > 0.0)
                return false;
        }
        return true;
    };

    if (!result.SetSize((m_nCount - 2) * 3))
        return false;
    int filled = 0;
    for (int i = 0; i < m_nCount - 2; ++i) {
        for (int j = i + 1; j < m_nCount; ++j) {
            for (int k = i + 1; k < m_nCount; ++k) {
                if (j == k || !isLowerFace(i, j, k))
                    continue;
                // Vertices inside the hull, or more than three on one circle, make more triangles than a fan has.
                if (filled == result.GetSize() && !result.SetSize(filled + 3))
                    return false;
                result[filled++] = m_pVertices[i];
                result[filled++] = m_pVertices[j];
                result[filled++] = m_pVertices[k];
            }
        }
    }
    return result.SetSize(filled);
}
