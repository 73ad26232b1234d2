// Where searches for a region found none, and why; told in one line when a long work ends.
//
// One for each drawing (drawing.component<RegionMisses>()).
#pragma once

#include "host/boundary/Regions.h"
#include "host/drawing/Drawing.h"

#include <string>
#include <vector>

namespace velmor {

class RegionMisses {
public:
    explicit RegionMisses(Drawing &drawing) : m_drawing(drawing) {}

    struct Miss {
        boundary::Point point;
        boundary::Status status = boundary::Status::NotEnclosed;
        double narrowestGap = -1.0; ///< drawing units; below 0 when none is known
    };

    /// Notes from now on, and forgets what was noted.
    void begin();
    void end();
    /// A search ended; one that found its region is only counted.
    void note(boundary::Point point, const boundary::Region &region);
    const std::vector<Miss> &misses() const { return m_misses; }
    std::size_t searches() const { return m_searches; }
    /// "No closed region around 3 of 70 places: 1 lies on the linework (D4); ..."; empty when nothing was missed. A
    /// place that is the middle of a section is named by it.
    std::wstring summary();

private:
    std::wstring placeName(boundary::Point point);
    Drawing &m_drawing;
    std::vector<Miss> m_misses;
    std::size_t m_searches = 0;
    bool m_isNoting = false;
};

} // namespace velmor
