// Text colours of the review dialog, in blue, green, red byte order.
#pragma once

#include <cstdint>

inline constexpr std::uint32_t kColourOfOne = 0xFF0000;  ///< blue: parameters of the area in focus
inline constexpr std::uint32_t kColourOfMany = 0xFF00FF; ///< magenta: parameters of the checked areas
