// Numbers in the text of catalogues and of edits. The program's locale has no say: digits are ASCII, "." stands before
// the fraction.
#pragma once

#include "contracts/NetworkTopology.h"

#include <string>
#include <string_view>

/// Stands for a number that is not known or not there.
inline constexpr double kMissingNumber = ZEMGis::Topology::kUnknownValue;

struct TextNumber {
    double value = 0.0;     ///< 0 when no number stands there; infinite beyond the range of a double
    std::size_t length = 0; ///< characters used, white space before the number included; 0 for none
};
/// The decimal number at the start of the text: white space, sign, digits with one ".", exponent.
TextNumber ReadDouble(std::wstring_view text);

/// The whole number at the start of the text, behind white space; 0 for none, the nearest int beyond its range.
int ReadInt(std::wstring_view text);

/// The text as one number; "," counts as ".", blanks at the end don't count. kMissingNumber for an empty text, when
/// anything is left over, and beyond the range of a double.
double ParseNumber(std::wstring text);

/// That many digits behind the ".": "0.3500" for 4.
std::wstring FixedDecimals(double value, int decimals);
std::wstring FourDecimals(double value);
