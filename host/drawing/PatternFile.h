// Hatch patterns as text, in the form that drawing programs share (.pat):
//
//   *NAME, description
//   angle, x, y, offset along, offset across [, dash, gap, ...]     one set of parallel lines, any number of them
//
// Angles are degrees, lengths drawing units at scale 1. ";" begins a comment, empty lines count for nothing.
#pragma once

#include "host/drawing/Drawing.h"

#include <string>
#include <string_view>
#include <vector>

namespace velmor {

/// One set of parallel lines.
struct PatternFamily {
    double degrees = 0.0;
    double x = 0.0, y = 0.0;          ///< a point on one of them, where its dashes begin
    double along = 0.0, across = 0.0; ///< from a line to the next, in the direction of the lines and square to it
    std::vector<double> dashes;       ///< positive drawn, negative left out, 0 a dot; empty: unbroken
    bool operator==(const PatternFamily &) const = default;
};

struct Pattern {
    std::wstring name, description;
    std::vector<PatternFamily> families; ///< none: filled ("SOLID")
    std::size_t line = 0;                ///< of the text, from 1
    bool operator==(const Pattern &) const = default;
};

struct PatternFile {
    std::vector<Pattern> patterns;
    std::vector<Finding> findings; ///< what was wrong, with its line
};

/// The most dashes and gaps of a line.
inline constexpr std::size_t kMostPatternDashes = 32;
/// The most sets of lines of a pattern.
inline constexpr std::size_t kMostPatternFamilies = 200;

/// Reads patterns. One with a line that can't be understood is left out as a whole, since half of it would draw
/// something else; so is a second one of a name. Never fails otherwise.
PatternFile readPatterns(std::string_view text);

/// The text of a pattern, which reads back the same.
std::string patternText(const Pattern &pattern);

} // namespace velmor
