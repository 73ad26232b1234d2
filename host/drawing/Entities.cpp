// The kinds that only the host knows: circles, ellipses, splines; attributes of references.
#include "host/drawing/ObjectAccess.h"

#include <algorithm>
#include <array>
#include <numbers>

namespace velmor {

namespace {

constexpr double kTwoPi = 2.0 * std::numbers::pi;

/// A spline evaluated by de Boor's algorithm in homogeneous coordinates (The NURBS Book, algorithm A4.1).
class SplineCurve {
public:
    explicit SplineCurve(const SplineEntity::Shape &shape)
        : m_shape(shape), m_degree(static_cast<std::size_t>(std::max(1, shape.degree)))
    {
        const std::size_t count = shape.controlPoints.size();
        m_usable = count > m_degree && m_degree <= kMaxDegree && shape.knots.size() >= count + m_degree + 1 &&
                   std::is_sorted(shape.knots.begin(), shape.knots.end()) &&
                   shape.knots[m_degree] < shape.knots[count] &&
                   (shape.weights.empty() || shape.weights.size() >= count);
    }
    bool usable() const { return m_usable; }
    std::size_t firstSpan() const { return m_degree; }
    std::size_t endSpan() const { return m_shape.controlPoints.size(); }

    AcGePoint3d at(std::size_t span, double t) const
    {
        std::array<std::array<double, 4>, kMaxDegree + 1> points;
        for (std::size_t j = 0; j <= m_degree; ++j) {
            const std::size_t index = span - m_degree + j;
            const AcGePoint3d &p = m_shape.controlPoints[index];
            const double w = m_shape.weights.empty() ? 1.0 : m_shape.weights[index];
            points[j] = {p.x * w, p.y * w, p.z * w, w};
        }
        const auto &knots = m_shape.knots;
        for (std::size_t r = 1; r <= m_degree; ++r)
            for (std::size_t j = m_degree; j >= r; --j) {
                const double low = knots[span - m_degree + j], high = knots[span + 1 + j - r];
                const double alpha = high > low ? (t - low) / (high - low) : 0.0;
                for (std::size_t c = 0; c < 4; ++c)
                    points[j][c] = (1.0 - alpha) * points[j - 1][c] + alpha * points[j][c];
            }
        const auto &p = points[m_degree];
        const double w = p[3] != 0.0 ? p[3] : 1.0;
        return {p[0] / w, p[1] / w, p[2] / w};
    }

private:
    static constexpr std::size_t kMaxDegree = 15;
    const SplineEntity::Shape &m_shape;
    std::size_t m_degree;
    bool m_usable = false;
};

double distanceToChord(const AcGePoint3d &p, const AcGePoint3d &a, const AcGePoint3d &b)
{
    const double dx = b.x - a.x, dy = b.y - a.y, length = std::hypot(dx, dy);
    return length == 0.0 ? std::hypot(p.x - a.x, p.y - a.y) : std::abs(dx * (p.y - a.y) - dy * (p.x - a.x)) / length;
}

void flattenSpan(const SplineCurve &curve, std::size_t span, double t0, const AcGePoint3d &p0, double t1,
                 const AcGePoint3d &p1, double tolerance, int depth, std::vector<AcGePoint3d> &points)
{
    // Two inner points, so that an inflection in the middle is not taken for a straight piece.
    const double third = t0 + (t1 - t0) / 3.0, half = 0.5 * (t0 + t1);
    const AcGePoint3d middle = curve.at(span, half);
    // A distance that is no number any more (of coordinates near the end of the range) gets no better by dividing.
    const bool flat =
        !(distanceToChord(curve.at(span, third), p0, p1) > tolerance) && !(distanceToChord(middle, p0, p1) > tolerance);
    if (depth == 0 || (flat && depth < 12)) {
        points.push_back(p1);
        return;
    }
    flattenSpan(curve, span, t0, p0, half, middle, tolerance, depth - 1, points);
    flattenSpan(curve, span, half, middle, t1, p1, tolerance, depth - 1, points);
}

/// A cubic through the fit points with continuous curvature, its parameter the length of the chords.
std::vector<AcGePoint3d> throughFitPoints(const std::vector<AcGePoint3d> &fit, double tolerance)
{
    std::vector<AcGePoint3d> q;
    for (const AcGePoint3d &p : fit)
        if (q.empty() || q.back().distanceTo(p) > 0.0)
            q.push_back(p);
    const std::size_t n = q.size();
    if (n < 3)
        return q;
    // Second derivatives from the tridiagonal system with free ends.
    std::vector<double> h(n - 1), diagonal(n, 1.0);
    std::vector<AcGeVector3d> m(n);
    for (std::size_t i = 0; i + 1 < n; ++i)
        h[i] = q[i + 1].distanceTo(q[i]);
    for (std::size_t i = 1; i + 1 < n; ++i) {
        const AcGeVector3d a = q[i] - q[i - 1], b = q[i + 1] - q[i];
        m[i] = {6.0 * (b.x / h[i] - a.x / h[i - 1]), 6.0 * (b.y / h[i] - a.y / h[i - 1]),
                6.0 * (b.z / h[i] - a.z / h[i - 1])};
        diagonal[i] = 2.0 * (h[i - 1] + h[i]);
        if (i > 1) {
            const double f = h[i - 1] / diagonal[i - 1];
            diagonal[i] -= f * h[i - 1];
            m[i] = {m[i].x - f * m[i - 1].x, m[i].y - f * m[i - 1].y, m[i].z - f * m[i - 1].z};
        }
    }
    for (std::size_t i = n - 2; i > 0; --i)
        m[i] = {(m[i].x - h[i] * m[i + 1].x) / diagonal[i], (m[i].y - h[i] * m[i + 1].y) / diagonal[i],
                (m[i].z - h[i] * m[i + 1].z) / diagonal[i]};
    std::vector<AcGePoint3d> points{q.front()};
    for (std::size_t i = 0; i + 1 < n; ++i) {
        // The chord's error is at most the largest second derivative times the step squared over 8.
        const double bend = std::max(m[i].length(), m[i + 1].length());
        const double steps = std::ceil(h[i] * std::sqrt(bend / (8.0 * tolerance)));
        const int count = std::isfinite(steps) ? static_cast<int>(std::clamp(steps, 1.0, 4096.0)) : 1;
        for (int s = 1; s <= count; ++s) {
            const double u = h[i] * s / count, v = h[i] - u;
            const auto part = [&](double p0, double p1, double m0, double m1) {
                return (m0 * v * v * v + m1 * u * u * u) / (6.0 * h[i]) + (p0 / h[i] - m0 * h[i] / 6.0) * v +
                       (p1 / h[i] - m1 * h[i] / 6.0) * u;
            };
            points.emplace_back(part(q[i].x, q[i + 1].x, m[i].x, m[i + 1].x),
                                part(q[i].y, q[i + 1].y, m[i].y, m[i + 1].y),
                                part(q[i].z, q[i + 1].z, m[i].z, m[i + 1].z));
        }
    }
    return points;
}

} // namespace

Acad::ErrorStatus CircleEntity::getArea(double &area) const
{
    area = std::numbers::pi * m_radius * m_radius;
    return Acad::eOk;
}

bool EllipseEntity::isClosed() const
{
    return std::abs(m_shape.endParameter - m_shape.startParameter) >= kTwoPi - 1e-9;
}

Acad::ErrorStatus EllipseEntity::getArea(double &area) const
{
    const double a = m_shape.majorAxis.length(), b = a * std::abs(m_shape.ratio);
    double sweep = m_shape.endParameter - m_shape.startParameter;
    if (!isClosed()) {
        sweep = std::fmod(sweep, kTwoPi);
        if (sweep <= 0.0)
            sweep += kTwoPi;
        area = 0.5 * a * b * (sweep - std::sin(sweep));
    } else {
        area = std::numbers::pi * a * b;
    }
    return Acad::eOk;
}

AcGePoint3d EllipseEntity::pointAt(double parameter) const
{
    const double c = std::cos(parameter), s = std::sin(parameter) * m_shape.ratio;
    const AcGeVector3d &u = m_shape.majorAxis;
    return {m_shape.center.x + c * u.x - s * u.y, m_shape.center.y + c * u.y + s * u.x, m_shape.center.z + c * u.z};
}

bool SplineEntity::isClosed() const
{
    if (m_shape.closed)
        return true;
    const auto points = flatten(1e300);
    return points.size() > 2 && points.front().isEqualTo(points.back());
}

Acad::ErrorStatus SplineEntity::getArea(double &area) const
{
    Extents extents;
    for (const AcGePoint3d &p : m_shape.controlPoints.empty() ? m_shape.fitPoints : m_shape.controlPoints)
        extents.add(p.x, p.y);
    area = 0.0;
    if (extents.isEmpty())
        return Acad::eOk;
    const double size = std::max(extents.maxX - extents.minX, extents.maxY - extents.minY);
    const auto points = flatten(std::max(size * 1e-6, 1e-12));
    double twice = 0.0;
    for (std::size_t i = 0; i < points.size(); ++i) {
        const AcGeVector3d a = points[i] - points.front(), b = points[(i + 1) % points.size()] - points.front();
        twice += a.x * b.y - b.x * a.y;
    }
    area = std::abs(0.5 * twice);
    return Acad::eOk;
}

std::vector<AcGePoint3d> SplineEntity::flatten(double tolerance) const
{
    tolerance = std::max(tolerance, 1e-12);
    const SplineCurve curve(m_shape);
    if (!curve.usable()) {
        // Without usable control points the fit points say where the curve runs.
        return m_shape.fitPoints.size() > 1 ? throughFitPoints(m_shape.fitPoints, tolerance) : m_shape.controlPoints;
    }
    std::vector<AcGePoint3d> points;
    const auto &knots = m_shape.knots;
    for (std::size_t span = curve.firstSpan(); span < curve.endSpan(); ++span) {
        const double t0 = knots[span], t1 = knots[span + 1];
        if (!(t0 < t1))
            continue;
        const AcGePoint3d p0 = curve.at(span, t0);
        if (points.empty())
            points.push_back(p0);
        flattenSpan(curve, span, t0, p0, t1, curve.at(span, t1), tolerance, m_shape.degree == 1 ? 0 : 12, points);
    }
    return points;
}

std::vector<AttributeEntity *> attributesOf(const AcDbBlockReference &reference)
{
    std::vector<AttributeEntity *> attributes;
    for (const AcDbObjectId id : ObjectAccess::attributes(reference))
        if (!id.isErased())
            attributes.push_back(static_cast<AttributeEntity *>(ObjectAccess::object(id)));
    return attributes;
}

} // namespace velmor
