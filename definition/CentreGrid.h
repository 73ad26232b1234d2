// Centres of boundaries, looked up by place however many there are. No widgets, no drawing.
#pragma once

#include "contracts/HostTypes.h"

#include <cmath>
#include <cstdint>
#include <unordered_map>

/// A set of centres for the tests of a boundary that is found or saved. Holds and HoldsNear both give what a walk over
/// all centres would give.
class CCentreGrid {
public:
    void Clear() { m_cells.clear(); }
    void Add(const AcGePoint3d &centre) { m_cells.emplace(KeyOf(CellOf(centre.x), CellOf(centre.y)), centre); }

    /// One of them equals the centre (the tolerance is that of points).
    bool Holds(const AcGePoint3d &centre) const
    {
        return Any(centre, [&](const AcGePoint3d &known) { return known == centre; });
    }
    /// One of them is nearer to it than kNear in x and in y.
    bool HoldsNear(const AcGePoint3d &centre) const
    {
        return Any(centre, [&](const AcGePoint3d &known) {
            return std::abs(known.x - centre.x) < kNear && std::abs(known.y - centre.y) < kNear;
        });
    }
    static constexpr double kNear = 0.001;

private:
    /// Twice what is near: rounding takes no near centre beyond a neighbour.
    static constexpr double kCell = 2.0 * kNear;
    static std::int64_t CellOf(double value)
    {
        constexpr double kMost = 1e15;
        const double cell = std::floor(value / kCell);
        return std::abs(cell) < kMost ? static_cast<std::int64_t>(cell) : 0; // what is no number is near nothing
    }
    static std::uint64_t KeyOf(std::int64_t x, std::int64_t y)
    {
        return static_cast<std::uint64_t>(x) * 0x9E3779B97F4A7C15u + static_cast<std::uint64_t>(y);
    }
    template <class Test>
    bool Any(const AcGePoint3d &centre, Test test) const
    {
        const std::int64_t x = CellOf(centre.x), y = CellOf(centre.y);
        for (std::int64_t dx = -1; dx <= 1; ++dx) {
            for (std::int64_t dy = -1; dy <= 1; ++dy) {
                const auto [first, last] = m_cells.equal_range(KeyOf(x + dx, y + dy));
                for (auto known = first; known != last; ++known) {
                    if (test(known->second))
                        return true;
                }
            }
        }
        return false;
    }
    std::unordered_multimap<std::uint64_t, AcGePoint3d> m_cells;
};
