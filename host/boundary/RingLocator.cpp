#include "host/boundary/RingLocator.h"

#include <algorithm>
#include <cmath>

namespace velmor::boundary::detail {

namespace {

constexpr std::size_t kSmallRing = 24;

struct Circle {
    double x, y, radius;
};
Circle circleOf(double x0, double y0, double x1, double y1, double bulge)
{
    const double t = (1.0 - bulge * bulge) / (4.0 * bulge);
    const double x = x0 + (x1 - x0) * 0.5 - (y1 - y0) * t, y = y0 + (y1 - y0) * 0.5 + (x1 - x0) * t;
    return {x, y, lengthOf(x1 - x0, y1 - y0) * (1.0 + bulge * bulge) / (4.0 * std::abs(bulge))};
}

} // namespace

RingLocator::RingLocator(const Ring &ring, double tolerance) : m_tolerance(tolerance)
{
    m_sides.reserve(ring.size());
    m_box = {ring[0].x, ring[0].y, ring[0].x, ring[0].y};
    for (std::size_t i = 0; i < ring.size(); ++i) {
        const RingVertex &p = ring[i], &q = ring[i + 1 < ring.size() ? i + 1 : 0];
        Box box;
        if (std::abs(p.bulge) <= 0.42) {
            const bool ordered = p.x < q.x || (p.x == q.x && p.y <= q.y);
            box = ordered ? boxOf({p.x, p.y, q.x, q.y, p.bulge, 0, 0}) : boxOf({q.x, q.y, p.x, p.y, -p.bulge, 0, 0});
        } else {
            const Circle c = circleOf(p.x, p.y, q.x, q.y, p.bulge);
            box = {c.x - c.radius, c.y - c.radius, c.x + c.radius, c.y + c.radius};
        }
        m_sides.push_back({p.x, p.y, q.x, q.y, p.bulge, box});
        m_box = {std::min(m_box.x0, box.x0), std::min(m_box.y0, box.y0), std::max(m_box.x1, box.x1),
                 std::max(m_box.y1, box.y1)};
    }
    if (m_sides.size() <= kSmallRing)
        return;
    const auto rows = static_cast<std::uint32_t>(m_sides.size() / 2);
    m_perRow = rows / std::max(m_box.y1 - m_box.y0, 1e-300);
    const auto rowOf = [this, rows](double y) {
        return static_cast<std::uint32_t>(std::clamp((y - m_box.y0) * m_perRow, 0.0, rows - 1.0));
    };
    m_rowAt.assign(rows + 1, 0);
    const auto eachRow = [&](auto take) {
        for (std::uint32_t i = 0; i < m_sides.size(); ++i) {
            const std::uint32_t last = rowOf(m_sides[i].box.y1 + m_tolerance);
            for (std::uint32_t row = rowOf(m_sides[i].box.y0 - m_tolerance); row <= last; ++row)
                take(row, i);
        }
    };
    eachRow([this](std::uint32_t row, std::uint32_t) { ++m_rowAt[row + 1]; });
    for (std::uint32_t row = 0; row < rows; ++row)
        m_rowAt[row + 1] += m_rowAt[row];
    m_rows.resize(m_rowAt[rows]);
    std::vector<std::uint32_t> fill(m_rowAt.begin(), m_rowAt.end() - 1);
    eachRow([&](std::uint32_t row, std::uint32_t i) { m_rows[fill[row]++] = i; });
}

RingLocator::Place RingLocator::locate(double x, double y) const
{
    if (x < m_box.x0 - m_tolerance || x > m_box.x1 + m_tolerance || y < m_box.y0 - m_tolerance ||
        y > m_box.y1 + m_tolerance) {
        return Place::Outside;
    }
    bool inside = false, on = false;
    const auto look = [&](const Side &s) {
        const double side = cross(s.x1 - s.x0, s.y1 - s.y0, x - s.x0, y - s.y0);
        // Left of the chord; on a level chord the point counts as above it, as it does for the crossings below.
        const bool left = side > 0 || (side == 0 && s.y0 == s.y1 && s.x1 > s.x0);
        if ((s.y0 > y) != (s.y1 > y))
            inside ^= left == (s.y1 > s.y0);
        if (s.bulge != 0.0 && left == (s.bulge < 0)) {
            // The part between chord and arc is added or taken away.
            const double dx = x - (s.x0 + (s.x1 - s.x0) * 0.5), dy = y - (s.y0 + (s.y1 - s.y0) * 0.5);
            const double quarter = 0.25 * ((s.x1 - s.x0) * (s.x1 - s.x0) + (s.y1 - s.y0) * (s.y1 - s.y0));
            const double offset = side * (1.0 - s.bulge * s.bulge) / (2.0 * s.bulge);
            inside ^= dx * dx + dy * dy - quarter < offset;
        }
        if (x >= s.box.x0 - m_tolerance && x <= s.box.x1 + m_tolerance && y >= s.box.y0 - m_tolerance &&
            y <= s.box.y1 + m_tolerance) {
            if (s.bulge == 0.0) {
                const double ux = s.x1 - s.x0, uy = s.y1 - s.y0, length2 = ux * ux + uy * uy;
                const double t = std::clamp(dot(ux, uy, x - s.x0, y - s.y0) / length2, 0.0, 1.0);
                on |= lengthOf(s.x0 + t * ux - x, s.y0 + t * uy - y) <= m_tolerance;
            } else if (left == (s.bulge < 0) || side == 0.0 || std::abs(s.bulge) > 1.0) {
                const Circle c = circleOf(s.x0, s.y0, s.x1, s.y1, s.bulge);
                on |= std::abs(lengthOf(x - c.x, y - c.y) - c.radius) <= m_tolerance;
            }
        }
    };
    if (m_rowAt.empty()) {
        for (const Side &s : m_sides)
            look(s);
    } else {
        const std::size_t rows = m_rowAt.size() - 1;
        const auto row =
            static_cast<std::size_t>(std::clamp((y - m_box.y0) * m_perRow, 0.0, static_cast<double>(rows) - 1.0));
        for (std::uint32_t i = m_rowAt[row]; i < m_rowAt[row + 1]; ++i)
            look(m_sides[m_rows[i]]);
    }
    return on ? Place::On : inside ? Place::Inside : Place::Outside;
}

} // namespace velmor::boundary::detail
