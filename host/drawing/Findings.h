// Findings as lines that a person reads.
#pragma once

#include "host/drawing/Drawing.h"

namespace velmor {

/// "FILE:LINE: TEXT"; for a finding without a line "FILE: TEXT", and without a file's name the text alone.
std::string findingLine(const std::string &file, const Finding &finding);
/// The first twenty as lines, then one that counts the others.
std::vector<std::string> findingLines(const std::string &file, const std::vector<Finding> &findings);

} // namespace velmor
