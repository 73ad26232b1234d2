// What the region search finds around points, as text or JSON.
#pragma once

#include "host/boundary/Regions.h"

#include <span>
#include <string>
#include <vector>

namespace velmor {

struct RegionAnswer {
    boundary::Point point;
    boundary::Region region;
    double milliseconds = 0.0; ///< of the search alone
};

/// A list of objects: point, found, milliseconds; area (of the outer ring), boundary and islands (each with area and
/// boundary) when found, else reason (on_edge, not_enclosed, open) and gaps (from, to, width). Numbers read back as
/// the same doubles.
std::string regionsJson(std::span<const RegionAnswer> answers);

/// A table of one line for each point.
std::string regionsText(std::span<const RegionAnswer> answers);

/// Points of a text: two numbers a line, with a comma, a semicolon or blanks between; empty lines and what follows "#"
/// are passed over. False with the number of the first wrong line.
bool readPoints(std::string_view text, std::vector<boundary::Point> &points, std::size_t &wrongLine);

} // namespace velmor
