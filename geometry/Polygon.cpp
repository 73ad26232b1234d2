// The working core: storage, centroid, containment. The toolbox stands in the files beside this one.
#include "geometry/Polygon.h"

#include "geometry/PolygonMessage.h"
#include "geometry/PolygonTriangle.h"

#include <cstddef>
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
    // Summed up beside the static ones, which would be written to memory at each step.
    CVertex sum = {0.0, 0.0, 0.0};
    double weights = 0.0;
    for (int i = 0; i < m_nCount - 2; ++i) {
        const CVertex &a = m_pVertices[0], &b = m_pVertices[i + 1], &c = m_pVertices[i + 2];
        const double weight = SignedDoubledArea(a, b, c);
        weights += weight;
        sum.x += (a.x + b.x + c.x) / 3.0 * weight;
        sum.y += (a.y + b.y + c.y) / 3.0 * weight;
        const double z = a.z + b.z + c.z;
        if (z != 0.0) // level rings are spared a division
            sum.z += z / 3.0 * weight;
    }
    result = sum;
    total = weights;
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
