// The text colours of the definition dialog.
#pragma once

#include "controls/ReadableColour.h"

/// Colours on the seam stand in blue, green, red byte order.
inline constexpr std::uint32_t kColourGuidance = 0xFF0000; ///< blue
inline constexpr std::uint32_t kColourResult = 23551;      ///< orange
inline constexpr std::uint32_t kColourPlain = 0x000000;    ///< black
