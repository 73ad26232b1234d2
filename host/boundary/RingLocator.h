// Answers where a point lies with respect to one ring, quickly when there are many points and sides.
#pragma once

#include "host/boundary/PieceGeometry.h"

namespace velmor::boundary::detail {

class RingLocator {
public:
    enum class Place { Outside, Inside, On };
    /// On means within tolerance of a side.
    RingLocator(const Ring &ring, double tolerance);
    Place locate(double x, double y) const;
    const Box &box() const { return m_box; }

private:
    struct Side {
        double x0, y0, x1, y1, bulge;
        Box box;
    };
    std::vector<Side> m_sides;
    std::vector<std::uint32_t> m_rowAt, m_rows; ///< sides by horizontal strip; empty for small rings
    double m_tolerance, m_perRow = 0.0;
    Box m_box;
};

} // namespace velmor::boundary::detail
