// Non-uniform rational B-spline in the plane, evaluated with its tangent.
#pragma once

#include "host/drawing/Entities.h"
#include "host/editor/ArcChain.h"

#include <functional>
#include <optional>
#include <vector>

namespace velmor {

class SplineCurve {
public:
    using Place = std::function<boundary::Point(double x, double y)>;
    /// Nothing when the shape has no control points, or knots and weights that do not go with them.
    static std::optional<SplineCurve> make(const SplineEntity::Shape &shape, const Place &place);

    const std::vector<boundary::Point> &controlPoints() const { return m_points; }
    /// Ends of the smooth spans, rising; at least two.
    const std::vector<double> &breaks() const { return m_breaks; }
    /// at() evaluates the polynomial of that span from now on, so that ends belong to the right side.
    void selectSpan(std::size_t span) { m_span = m_spanKnots[span]; }
    CurvePoint at(double parameter) const;

private:
    int m_degree = 3;
    std::vector<double> m_knots, m_weights;
    std::vector<boundary::Point> m_points;
    std::vector<double> m_breaks;
    std::vector<std::size_t> m_spanKnots; ///< index of the knot at which each span starts
    std::size_t m_span = 0;
};

} // namespace velmor
