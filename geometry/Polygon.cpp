// The working core: storage, centroid, containment. The toolbox stands in the files beside this one.
#include "geometry/Polygon.h"

#include "geometry/PolygonMessage.h"
#include "geometry/PolygonTriangle.h"

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace {

CVertex *Allocate(CVertex *block, int count)
{
    if (count < 0)
        return nullptr;
    return static_cast<CVertex *>(std::realloc(block, static_cast<std::size_t>(count) * sizeof(CVertex)));
}

/// The edge, which has an end on either side of the ray, meets it.
bool IsCrossed(const CVertex &a, const CVertex &b, double x, double y)
{
    const bool isRightA = a.x >= x;
    if (isRightA == (b.x >= x))
        return isRightA;
    return a.x - (a.y - y) * (b.x - a.x) / (b.y - a.y) >= x;
}

/// The fan of triangles from vertex 0: their signed doubled areas, and their centres times these.
struct FanSums {
    CVertex weighted = {0.0, 0.0, 0.0};
    double weights = 0.0;
};

FanSums AnyFan(const CVertex *vertices, int count)
{
    FanSums fan;
    for (int i = 2; i < count; ++i) {
        const CVertex &a = vertices[0], &b = vertices[i - 1], &c = vertices[i];
        const double weight = SignedDoubledArea(a, b, c);
        fan.weights += weight;
        fan.weighted += (a + b + c) / 3.0 * weight;
    }
    return fan;
}

/// x and y side by side: each operation below works on both at once.
using Plane = double __attribute__((vector_size(2 * sizeof(double))));

Plane PlaneOf(const CVertex &vertex)
{
    return Plane{vertex.x, vertex.y};
}

/// AnyFan of a ring whose vertices have one z, to the last bit; false, and fan of no use, for any other ring. What the
/// second side of a triangle gave is the first side's of the next.
bool LevelFan(const CVertex *vertices, int count, FanSums &fan)
{
    if (count < 3)
        return false;
    const Plane a = PlaneOf(vertices[0]), first = PlaneOf(vertices[1]);
    const double z = vertices[0].z, middleZ = (z + z + z) / 3.0;
    Plane side = first - a, sum = a + first, weighted = {0.0, 0.0}, upward = {0.0, 0.0};
    // Compared bit by bit: the unit that compares numbers is the one that is busy here.
    const auto bits = std::bit_cast<std::uint64_t>(z);
    std::uint64_t otherBits = std::bit_cast<std::uint64_t>(vertices[1].z) ^ bits;
    for (int i = 2; i < count; ++i) {
        const Plane c = PlaneOf(vertices[i]), nextSide = c - a;
        otherBits |= std::bit_cast<std::uint64_t>(vertices[i].z) ^ bits;
        const double weight = side[0] * nextSide[1] - side[1] * nextSide[0];
        upward += Plane{1.0, middleZ} * weight;
        weighted += (sum + c) / 3.0 * weight;
        side = nextSide;
        sum = a + c;
    }
    fan = {{weighted[0], weighted[1], upward[1]}, upward[0]};
    return otherBits == 0;
}

} // namespace

CPolygon::CPolygon(int count)
{
    if (count != 0 && !SetSize(count))
        ShowPolygonMemoryMessage();
}

CPolygon::~CPolygon()
{
    std::free(m_pVertices);
}

CPolygon &CPolygon::operator=(const CPolygon &other)
{
    if (this != &other && SetSize(other.m_nCount)) {
        for (int i = 0; i < m_nCount; ++i)
            m_pVertices[i] = other.m_pVertices[i];
    }
    return *this;
}

bool CPolygon::SetSize(int count)
{
    if (count == 0) {
        std::free(m_pVertices);
        m_pVertices = nullptr;
        m_nCount = 0;
        return true;
    }
    CVertex *block = Allocate(m_pVertices, count);
    if (!block)
        return false;
    m_pVertices = block;
    m_nCount = count;
    return true;
}

bool CPolygon::AddPoint(const CVertex &vertex)
{
    const CVertex added = vertex; // may stand in the block that moves
    if (!SetSize(m_nCount + 1))
        return false;
    m_pVertices[m_nCount - 1] = added;
    return true;
}

CVertex CPolygon::Centroid() const
{
    static CVertex result;
    static double total;
    FanSums fan;
    if (!LevelFan(m_pVertices, m_nCount, fan))
        fan = AnyFan(m_pVertices, m_nCount);
    result = fan.weighted;
    total = fan.weights;
    if (total > kPolygonTolerance) {
        result = result * (1.0 / total);
        return result;
    }

    result = {0.0, 0.0, 0.0};
    const int counted = IsClosed() ? m_nCount - 1 : m_nCount;
    for (int i = 0; i < counted; ++i)
        result += m_pVertices[i];
    result = result * (1.0 / counted);
    return result;
}

int CPolygon::Contains(double x, double y) const
{
    // A and B leapfrog along the ring, so each step looks at the edge between them, in alternating direction.
    const CVertex *a = &m_pVertices[m_nCount - 1];
    bool aboveA = a->y - y >= 0.0;
    bool isInside = false;
    int i = 0;
    for (; i + 1 < m_nCount; i += 2) {
        const CVertex *b = &m_pVertices[i];
        const bool aboveB = b->y >= y;
        if (aboveA != aboveB)
            isInside ^= IsCrossed(*a, *b, x, y);
        a = b + 1;
        aboveA = a->y - y >= 0.0;
        if (aboveA != aboveB)
            isInside ^= IsCrossed(*a, *b, x, y);
    }
    if (i < m_nCount) {
        const CVertex *b = &m_pVertices[i];
        if (aboveA != (b->y >= y))
            isInside ^= IsCrossed(*a, *b, x, y);
    }
    return isInside ? 1 : 0;
}

bool CPolygon::IsClosed() const
{
    return IsEqual(m_pVertices[0], m_pVertices[m_nCount - 1]);
}

bool CPolygon::Close()
{
    return IsClosed() || AddPoint(m_pVertices[0]);
}

void CPolygon::Translate(const CVertex &offset)
{
    const CVertex step = offset; // may be one of the vertices
    for (int i = 0; i < m_nCount; ++i)
        m_pVertices[i] += step;
}
