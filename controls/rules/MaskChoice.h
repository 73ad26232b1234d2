// Which behaviour a mask asks for in an edit that has several.
#pragma once

#include <string_view>

namespace AMSEdit {

struct MaskChoice {
    enum class Kind { Alphanumeric, DateTime, Numeric, Masked };
    Kind kind = Kind::Alphanumeric;
    unsigned flags = 0; ///< of a date and time, to be added
    bool operator==(const MaskChoice &) const = default;
};

/// No "#": alphanumeric. One of five masks: date and time. Behind the first "#" nothing but "#" and the two separators,
/// with "#" at the end: numeric. Anything else: masked.
MaskChoice ChooseByMask(std::wstring_view mask, wchar_t decimalPoint, wchar_t groupSeparator);

} // namespace AMSEdit
