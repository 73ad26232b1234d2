// Findings as lines that a person reads.
#pragma once

#include "host/drawing/Drawing.h"

#include <functional>

namespace velmor {

/// "FILE:LINE: TEXT"; for a finding without a line "FILE: TEXT", and without a file's name the text alone.
std::string findingLine(const std::string &file, const Finding &finding);
/// The first twenty as lines, then one that counts the others.
std::vector<std::string> findingLines(const std::string &file, const std::vector<Finding> &findings);

/// Where the user is told what an operation of the drawing has to say outside of its result; a line of UTF-8 text each
/// time. Without a sink it goes nowhere.
void setNoticeSink(std::function<void(const std::string &)> sink);
void notice(const std::string &line);

} // namespace velmor
