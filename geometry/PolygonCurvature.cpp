// Toolbox of curvature.
#include "geometry/Polygon.h"

#include <algorithm>
#include <cmath>

bool CPolygon::NaturalSpline(std::vector<double> &b, std::vector<double> &c, std::vector<double> &d) const
{
    if (m_nCount < 2)
        return false;
    const std::size_t last = static_cast<std::size_t>(m_nCount) - 1;
    b.assign(last + 1, 0.0);
    c.assign(last + 1, 0.0);
    d.assign(last + 1, 0.0);

    const auto step = [this](std::size_t i) { return m_pVertices[i + 1].x - m_pVertices[i].x; };
    const auto rise = [this](std::size_t i) { return m_pVertices[i + 1].y - m_pVertices[i].y; };

    // h(i-1) c(i-1) + 2 (h(i-1) + h(i)) c(i) + h(i) c(i+1) = 3 (rise(i)/h(i) - rise(i-1)/h(i-1)), c = 0 at both ends:
    // a tridiagonal system, swept down into (upper, right) and back up into c.
    std::vector<double> upper(last + 1, 0.0), right(last + 1, 0.0);
    for (std::size_t i = 1; i < last; ++i) {
        const double pivot = 2.0 * (step(i - 1) + step(i)) - step(i - 1) * upper[i - 1];
        upper[i] = step(i) / pivot;
        right[i] = (3.0 * (rise(i) / step(i) - rise(i - 1) / step(i - 1)) - step(i - 1) * right[i - 1]) / pivot;
    }
    for (std::size_t i = last; i-- > 0;) {
        c[i] = right[i] - upper[i] * c[i + 1];
        b[i] = rise(i) / step(i) - step(i) * (c[i + 1] + 2.0 * c[i]) / 3.0;
        d[i] = (c[i + 1] - c[i]) / (3.0 * step(i));
    }
    const double h = step(last - 1);
    b[last] = b[last - 1] + 2.0 * c[last - 1] * h + 3.0 * d[last - 1] * h * h;
    return true;
}

double CPolygon::SplineCurvature(int i, int halfSpan) const
{
    const int first = std::max(0, i - halfSpan);
    const int last = std::min(m_nCount - 1, i + halfSpan);
    CPolygon xOverLength, yOverLength;
    if (last <= first || !xOverLength.SetSize(last - first + 1) || !yOverLength.SetSize(last - first + 1))
        return 0.0;
    double length = 0.0;
    for (int k = first; k <= last; ++k) {
        if (k > first)
            length += (m_pVertices[k] - m_pVertices[k - 1]).Length();
        xOverLength[k - first] = {length, m_pVertices[k].x, 0.0};
        yOverLength[k - first] = {length, m_pVertices[k].y, 0.0};
    }

    std::vector<double> xb, xc, yb, yc, cubic;
    if (!xOverLength.NaturalSpline(xb, xc, cubic) || !yOverLength.NaturalSpline(yb, yc, cubic))
        return 0.0;
    const auto at = static_cast<std::size_t>(i - first);
    const double x1 = xb[at], y1 = yb[at];
    const double x2 = 2.0 * xc[at], y2 = 2.0 * yc[at]; // second derivatives
    const double divisor = std::pow(x1 * x1 + y1 * y1, 1.5);
    return divisor > 0.0 ? (2.0 * x1 * y2 - 2.0 * y1 * x2) / divisor : 0.0;
}

double CPolygon::DiscreteCurvature(int i) const
{
    if (i <= 0 || i >= m_nCount - 1)
        return 0.0;
    const CVertex &before = m_pVertices[i - 1], &at = m_pVertices[i], &after = m_pVertices[i + 1];
    const CVertex change = Normalize(after - at) - Normalize(at - before);
    const double curvature = change.Length() / (at - before).Length();
    return IsLeft(before, at, after) ? curvature : -curvature;
}
