// Light and dark: the colours of all windows, with contrast enough to be read (4.5 to 1 for every text).
#pragma once

#include <QPalette>

#include <string_view>

namespace velmor {

enum class Theme { System, Light, Dark };

/// "system", "light", "dark", upper and lower case alike; anything else is System.
Theme themeNamed(std::wstring_view name);
const wchar_t *nameOf(Theme theme);
/// That of the setting "THEME".
Theme themeOfSettings();

/// Colours of the light or of the dark theme. REQUIRES another theme than System.
QPalette paletteOf(Theme theme);

/// Gives the running application the theme's colours; all windows follow at once. System means what the desktop gave
/// the application at its start.
void applyTheme(Theme theme);

/// Ratio of contrast of two opaque colours, from 1 to 21, after WCAG 2.
double contrastOf(const QColor &a, const QColor &b);

} // namespace velmor
