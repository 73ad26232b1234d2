// The patterns of this program as text; the build takes it from patterns/own.pat.
#pragma once

#include <string_view>

namespace velmor {
std::string_view ownPatternText();
} // namespace velmor
