// Where and how the dialogs keep their settings in a drawing.
#pragma once

inline constexpr const wchar_t *kSettingsDictionary = L"ZEMX_LSD2";

/// Group codes of what is kept.
inline constexpr short kCodeText = 1;
inline constexpr short kCodeDouble = 38;
inline constexpr short kCodeInt = 60;
