// Pattern lines of hatches: their definition, and the pieces of them that lie inside rings.
#pragma once

#include "contracts/DrawingHost.h"
#include "host/drawing/Entities.h"

#include <span>
#include <string_view>
#include <vector>

namespace velmor {

using HatchFamily = AcDbHatch::Family;

struct Pattern;

/// Whether a pattern of that name is known now (see PatternLibrary.h); upper and lower case are alike.
bool isHatchPattern(std::wstring_view name);
/// The lines of a named pattern, turned by angle (radians) and enlarged by scale; for scale 1, "ANSI31" has lines at 45
/// degrees and 3.175 drawing units apart. Upper and lower case are alike. "SOLID" and no name have none; a name that is
/// not known gives the lines of "ANSI31". A scale that is not positive counts as 1.
std::vector<HatchFamily> hatchFamilies(std::wstring_view pattern, double angle, double scale);
/// The same of a pattern at hand.
std::vector<HatchFamily> hatchFamilies(const Pattern &pattern, double angle, double scale);

using PatternLine = AcDbHatch::Line;

/// The pieces of the pattern's lines inside the rings by the even-odd rule, so rings within rings are holes; bulges
/// count as arcs. A ring is closed and does not repeat its first vertex. Lines go through the origin of the drawing, so
/// that patterns of neighbours meet.
/// At most kMostPatternLines lines are drawn over the rings: a denser pattern is thinned to every second line, again
/// and again, until that holds. A dot is a line whose ends are one.
std::vector<PatternLine> patternLines(std::span<const std::vector<AcDbPolyline::Vertex>> rings,
                                      std::wstring_view pattern, double angle, double scale);
/// The same for families at hand.
std::vector<PatternLine> patternLines(std::span<const std::vector<AcDbPolyline::Vertex>> rings,
                                      std::span<const HatchFamily> families);
/// What of a pattern is looked at. A picture of a view asks for no more than it can show, whatever the pattern's scale.
struct PatternView {
    Extents part;        ///< nothing outside of it is wanted
    double finest = 0.0; ///< what is nearer to each other can't be told apart; drawing units, 0: everything can
};
/// The same as a view shows it: pieces are cut off at or a little beyond the part, lines that are too near to each
/// other are thinned as above, and dashes that come again too soon are unbroken lines. The lines are the same for any
/// part.
std::vector<PatternLine> patternLines(std::span<const std::vector<AcDbPolyline::Vertex>> rings,
                                      std::span<const HatchFamily> families, const PatternView &view);
inline constexpr int kMostPatternLines = 5000;
inline constexpr int kMostDashes = 100000;

} // namespace velmor
