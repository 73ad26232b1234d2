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
    result = {0.0, 0.0, 0.0};
    total = 0.0;

    for (int i = 0; i < m_nCount - 2; ++i) {
        const CVertex &a = m_pVertices[0], &b = m_pVertices[i + 1], &c = m_pVertices[i + 2];
        const double weight = SignedDoubledArea(a, b, c);
        total += weight;
        result += (a + b + c) / 3.0 * weight;
    }
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
    const CVertex *a = &m_pVertices[m_nCount - 1];
    const CVertex *b = a;
    bool aboveA = a->y - y >= 0.0;
    bool aboveB = aboveA;
    int crossings = 0;
    // A and B leapfrog along the ring, so each step looks at the edge between them, in alternating direction.
    for (int i = 0; i < m_nCount; ++i) {
        if (i % 2 == 0) {
            b = &m_pVertices[i];
            aboveB = b->y >= y;
        } else {
            a = &m_pVertices[i];
            aboveA = a->y - y >= 0.0;
        }
        if (aboveA == aboveB)
            continue;
        const bool rightA = a->x >= x;
        const bool rightB = b->x >= x;
        if (rightA != rightB) {
            if (a->x - (a->y - y) * (b->x - a->x) / (b->y - a->y) >= x)
                ++crossings;
        } else if (rightA) {
            ++crossings;
        }
    }
    return crossings % 2;
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
