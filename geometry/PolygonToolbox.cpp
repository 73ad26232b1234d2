// Toolbox of single points and segments, and of vertices and ranges.
#include "geometry/Polygon.h"

#include "geometry/PolygonTriangle.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>

namespace {

constexpr double kDegreesPerRadian = 57.2957795;

double Cross2d(const CVertex &a, const CVertex &b, const CVertex &c)
{
    return (b.x - a.x) * (c.y - a.y) - (c.x - a.x) * (b.y - a.y);
}

bool IsWithin(double value, double end, double otherEnd)
{
    return (end <= value && value <= otherEnd) || (otherEnd <= value && value <= end);
}

} // namespace

// --- Single points and segments ----------------------------------------------------------------------------------

bool CPolygon::IsLeft(CVertex a, CVertex b, CVertex c)
{
    return Cross2d(a, b, c) > 0.0;
}

bool CPolygon::IsLeftOn(CVertex a, CVertex b, CVertex c)
{
    return Cross2d(a, b, c) >= 0.0;
}

bool CPolygon::IsCollinear(CVertex a, CVertex b, CVertex c)
{
    return std::abs(Cross2d(a, b, c)) < kPolygonTolerance;
}

bool CPolygon::IsBetween(CVertex a, CVertex b, CVertex c)
{
    if (!IsCollinear(a, b, c))
        return false;
    return a.x != b.x ? IsWithin(c.x, a.x, b.x) : IsWithin(c.y, a.y, b.y);
}

bool CPolygon::IntersectProperly(CVertex a, CVertex b, CVertex c, CVertex d)
{
    if (IsCollinear(a, b, c) || IsCollinear(a, b, d) || IsCollinear(c, d, a) || IsCollinear(c, d, b))
        return false;
    return IsLeft(a, b, c) != IsLeft(a, b, d) && IsLeft(c, d, a) != IsLeft(c, d, b);
}

bool CPolygon::Intersect(CVertex a, CVertex b, CVertex c, CVertex d)
{
    return IntersectProperly(a, b, c, d) || IsBetween(a, b, c) || IsBetween(a, b, d) || IsBetween(c, d, a) ||
           IsBetween(c, d, b);
}

bool CPolygon::IsEqual(CVertex a, CVertex b)
{
    return !(std::abs(b.x - a.x) > kPolygonTolerance) && !(std::abs(b.y - a.y) > kPolygonTolerance) &&
           !(std::abs(b.z - a.z) > kPolygonTolerance);
}

double CPolygon::TurnAngle(CVertex a, CVertex b, CVertex c)
{
    return VectorAngle(b - a, c - b);
}

double CPolygon::VectorAngle(CVertex a, CVertex b)
{
    const double lengths = a.Length() * b.Length();
    if (lengths == 0.0)
        return 0.0;
    // Rounding can carry the quotient of parallel vectors a little beyond 1, where there is no angle.
    const double cosine = std::clamp(a.Dot(b) / lengths, -1.0, 1.0);
    return std::max(0.0, std::acos(cosine) * kDegreesPerRadian);
}

CVertex CPolygon::Normal(CVertex a, CVertex b, CVertex c)
{
    return (b - a).Cross(c - a);
}

CVertex CPolygon::Normalize(CVertex vector)
{
    const double length = vector.Length();
    return length > 0.0 ? vector / length : vector;
}

CVertex CPolygon::ProjectOnLine(CVertex point, CVertex a, CVertex b)
{
    if (std::abs(a.x - b.x) < kPolygonTolerance)
        return {a.x, point.y, a.z};
    if (std::abs(a.y - b.y) < kPolygonTolerance)
        return {point.x, a.y, a.z};
    const double slope = (b.y - a.y) / (b.x - a.x);
    const double intercept = a.y - slope * a.x;
    const double x = slope / (slope * slope + 1.0) * (point.y - intercept + point.x / slope);
    return {x, slope * x + intercept, a.z};
}

// --- Vertices ------------------------------------------------------------------------------------------------------

void CPolygon::RemovePoint(int index)
{
    for (int i = index; i < m_nCount - 1; ++i)
        m_pVertices[i] = m_pVertices[i + 1];
    if (--m_nCount == 0)
        SetSize(0);
}

bool CPolygon::InsertPoint(int index, const CVertex &vertex)
{
    const CVertex added = vertex; // may stand in the block that moves
    if (!SetSize(m_nCount + 1))
        return false;
    for (int i = m_nCount - 1; i > index; --i)
        m_pVertices[i] = m_pVertices[i - 1];
    m_pVertices[index] = added;
    return true;
}

bool CPolygon::KeepRange(int a, int b)
{
    if (a == 0) {
        if (!SetSize(b + 1))
            return false;
    } else if (a > b) {
        for (int i = b; i < a; ++i)
            RemovePoint(i);
    } else {
        if (!SetSize(b + 1))
            return false;
        for (int i = 0; i < a; ++i)
            RemovePoint(i);
    }
    return SetSize(m_nCount);
}

int CPolygon::VertexDistance(int a, int b) const
{
    if (!IsClosed())
        return b - a;
    const int direct = std::abs(b - a);
    return std::min(direct, std::abs(m_nCount - 1 - direct));
}

double CPolygon::Area() const
{
    double total = 0.0;
    for (int i = 1; i < m_nCount - 1; ++i)
        total += SignedDoubledArea(m_pVertices[0], m_pVertices[i], m_pVertices[i + 1]);
    return 0.5 * std::abs(total);
}

double CPolygon::RingLength(int from, int to) const
{
    double length = 0.0;
    for (int i = from; i < to; ++i)
        length += (m_pVertices[(i + 1) % m_nCount] - m_pVertices[i]).Length();
    return length;
}

double CPolygon::PathLength(int a, int b) const
{
    if (a < 0 || a >= m_nCount || b < 0 || b > m_nCount || a == b)
        return 0.0;
    if (a > b)
        return RingLength(a, m_nCount) + RingLength(0, b);
    return RingLength(a, b);
}

CVertex CPolygon::NearestVertex(const CVertex &query, int *index) const
{
    double nearest = std::numeric_limits<double>::max();
    int found = 0;
    for (int i = 0; i < m_nCount; ++i) {
        const double dx = m_pVertices[i].x - query.x, dy = m_pVertices[i].y - query.y;
        const double squared = dx * dx + dy * dy;
        if (squared < nearest) {
            nearest = squared;
            found = i;
        }
    }
    if (index)
        *index = found;
    return m_pVertices[found];
}

bool CPolygon::IsDiagonalClear(int a, int b) const
{
    for (int i = 0; i < m_nCount; ++i) {
        const int next = (i + 1) % m_nCount;
        if (i == a || i == b || next == a || next == b)
            continue;
        if (Intersect(m_pVertices[a], m_pVertices[b], m_pVertices[i], m_pVertices[next]))
            return false;
    }
    return true;
}

bool CPolygon::IsInCone(int a, int b) const
{
    const CVertex &at = m_pVertices[a], &to = m_pVertices[b];
    const CVertex &next = m_pVertices[(a + 1) % m_nCount];
    const CVertex &previous = m_pVertices[(a + m_nCount - 1) % m_nCount];
    if (IsLeftOn(at, next, previous)) // a convex corner
        return IsLeft(at, to, previous) && IsLeft(to, at, next);
    return !(IsLeftOn(at, to, next) && IsLeftOn(to, at, previous));
}

bool CPolygon::IsDiagonal(int a, int b) const
{
    return IsInCone(a, b) && IsDiagonalClear(a, b);
}

bool CPolygon::Simplify(double degrees)
{
    for (int i = 1; i < m_nCount - 1; ++i) {
        if (degrees > TurnAngle(m_pVertices[i - 1], m_pVertices[i], m_pVertices[i + 1]))
            RemovePoint(i);
    }
    return SetSize(m_nCount);
}

bool CPolygon::IsIndexInRange(int a, int b, int index) const
{
    if (index < 0 || index >= m_nCount)
        return false;
    return a > b ? index <= b || index >= a : a <= index && index <= b;
}

bool CPolygon::IsIndexInsideRange(int a, int b, int index) const
{
    if (index < 0 || index >= m_nCount)
        return false;
    return a > b ? index < b || index > a : a < index && index < b;
}
