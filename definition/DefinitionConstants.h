// Constants that several topics of the definition dialog share.
#pragma once

inline constexpr double kSquareMetresPerHectare = 10000.0;
/// Pattern of the hatches that mark areas and preview boundaries.
inline constexpr const wchar_t *kHatchPattern = L"ANSI31";
/// Degrees from one hatch to the next, so that overlapping ones can be told apart.
inline constexpr double kHatchAngleStep = 45.0;
