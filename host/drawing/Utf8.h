// Wide text as UTF-8 and back; never throws on bad text.
#pragma once

#include <string>
#include <string_view>

namespace velmor {

/// What is no character (half of a surrogate pair, beyond U+10FFFF) becomes U+FFFD.
std::string toUtf8(std::wstring_view text);
/// A byte that belongs to no character becomes U+FFFD.
std::wstring fromUtf8(std::string_view bytes);

} // namespace velmor
