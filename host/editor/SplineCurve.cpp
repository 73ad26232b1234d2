#include "host/editor/SplineCurve.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace velmor {

namespace {
constexpr int kHighestDegree = 15;

struct Homogeneous {
    double x = 0.0, y = 0.0, w = 0.0;
};
} // namespace

std::optional<SplineCurve> SplineCurve::make(const SplineEntity::Shape &shape, const Place &place)
{
    const std::size_t count = shape.controlPoints.size();
    const auto degree = static_cast<std::size_t>(std::max(shape.degree, 0));
    if (degree < 1 || degree > kHighestDegree || count < degree + 1 || shape.knots.size() != count + degree + 1 ||
        (!shape.weights.empty() && shape.weights.size() != count) || !std::ranges::is_sorted(shape.knots) ||
        !std::ranges::all_of(shape.knots, [](double k) { return std::isfinite(k); }) ||
        !std::ranges::all_of(shape.weights, [](double w) { return std::isfinite(w) && w > 0.0; }))
        return std::nullopt;
    SplineCurve curve;
    curve.m_degree = shape.degree;
    curve.m_knots = shape.knots;
    curve.m_weights = shape.weights;
    for (const AcGePoint3d &p : shape.controlPoints)
        curve.m_points.push_back(place(p.x, p.y));
    for (std::size_t i = degree; i < count; ++i) {
        if (shape.knots[i] < shape.knots[i + 1]) {
            curve.m_spanKnots.push_back(i);
            curve.m_breaks.push_back(shape.knots[i]);
        }
    }
    if (curve.m_spanKnots.empty())
        return std::nullopt;
    curve.m_breaks.push_back(shape.knots[count]);
    return curve;
}

CurvePoint SplineCurve::at(double t) const
{
    // De Boor's scheme on homogeneous points; the last step but one gives the derivative.
    std::array<Homogeneous, kHighestDegree + 1> d;
    const auto p = static_cast<std::size_t>(m_degree);
    for (std::size_t j = 0; j <= p; ++j) {
        const std::size_t i = m_span - p + j;
        const double w = m_weights.empty() ? 1.0 : m_weights[i];
        d[j] = {m_points[i].x * w, m_points[i].y * w, w};
    }
    Homogeneous derivative;
    for (std::size_t r = 1; r <= p; ++r) {
        if (r == p) {
            const double span = m_knots[m_span + 1] - m_knots[m_span];
            const double factor = static_cast<double>(p) / span;
            derivative = {factor * (d[p].x - d[p - 1].x), factor * (d[p].y - d[p - 1].y),
                          factor * (d[p].w - d[p - 1].w)};
        }
        for (std::size_t j = p; j >= r; --j) {
            const double low = m_knots[m_span - p + j], high = m_knots[m_span + 1 + j - r];
            const double part = (t - low) / (high - low);
            d[j] = {(1.0 - part) * d[j - 1].x + part * d[j].x, (1.0 - part) * d[j - 1].y + part * d[j].y,
                    (1.0 - part) * d[j - 1].w + part * d[j].w};
        }
    }
    const double w = d[p].w;
    const boundary::Point position{d[p].x / w, d[p].y / w};
    return {position, {(derivative.x - position.x * derivative.w) / w, (derivative.y - position.y * derivative.w) / w}};
}

} // namespace velmor
