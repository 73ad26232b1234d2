// Binary DXF, turned into the ASCII form that the reader takes.
//
// A binary file is a sentinel of 22 bytes and then groups: a code (one byte, 255 before a longer one, in R12 and
// older; two bytes later) and a value whose size follows from the code: texts end with a zero byte, reals have eight
// bytes, whole numbers two, four or eight, switches one, binary chunks a length byte before them. All little-endian.
#pragma once

#include "host/drawing/Drawing.h"

#include <string>
#include <string_view>
#include <vector>

namespace velmor {

/// True when the bytes start with the sentinel of binary DXF.
bool isBinaryDxf(std::string_view bytes);

struct BinaryDxfText {
    /// ASCII DXF, two lines a group, ended by "\n"; reals in the shortest form that reads back the same, chunks as
    /// upper case hexadecimal, texts as the bytes that they are.
    std::string text;
    std::vector<std::size_t> offsets; ///< of each group in the bytes, so line n of text comes from offsets[(n - 1) / 2]
    std::vector<Finding> findings;    ///< Finding::line is a byte offset
    bool cancelled = false;           ///< the caller wants it no more; the rest is missing
    /// Byte offset of a line of text, counted from 1.
    std::size_t offsetOfLine(std::size_t line) const;
};

/// Takes as many groups as can be read. What follows a group of unknown size or a cut end is left out, with a finding.
/// progress is told from time to time how much is done, from 0 to 1, and gives false to end it.
/// REQUIRES: isBinaryDxf(bytes).
BinaryDxfText binaryToText(std::string_view bytes, const std::function<bool(double)> &progress = {});

} // namespace velmor
