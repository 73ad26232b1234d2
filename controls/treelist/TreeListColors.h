// The colours of a tree list: their defaults, and what becomes of them on other desktops.
//
// Numbers are colours in blue, green, red byte order (0x00BBGGRR), as in the other controls: the selection 0xA00000 is
// a dark blue, the tree's background 0xFFFFE0 a light cyan.
#pragma once

#include "controls/treelist/TreeListCtrl.h"

#include <QPalette>

namespace tree_list_colors {

inline constexpr std::array<std::uint32_t, kTreeListColors> kDefaults = {
    0xFFFFE0, 0xFCFCFC, 0xF0F0F0, 0xF8F8F8, // backgrounds
    0xC0C080, 0xCCCCCC, 0xC0C0C0, 0xC8C8C8, // the same, window disabled
    0xC08080, 0xA00000, 0xD00000, 0xD0A0A0, // selected
    0xE8E8E8, 0xF0F0F0, 0xFFFFFF, 0xE0E0E0, // text on them
    0x000000, 0x00FF00, 0xD0D0D0, 0x808080,
};

/// A ground that white stands out from better than black.
bool IsDark(const QPalette &palette);

/// A desktop is taken for one of high contrast when windows, buttons and text fields all have one ground, and the text
/// of each has a contrast of at least 15 to it. Ordinary themes set windows off from text fields or soften their text.
bool IsHighContrast(const QPalette &palette);

/// True where colours that nobody set are the desktop's.
bool FollowsDesktop(const QPalette &palette);

/// What is painted for one of the table. set: bit n for each colour that somebody set.
QColor ShownColor(TreeListColor which, const std::array<std::uint32_t, kTreeListColors> &table, std::uint32_t set,
                  const QPalette &palette);

/// The desktop's colour in place of one of the table. Of the colours of a disabled window those of its disabled group.
QColor DesktopColor(TreeListColor which, const QPalette &palette);

} // namespace tree_list_colors

/// The colours as they are painted, worked out once for a palette.
class CTreeListPaints {
public:
    void Prepare(const std::array<std::uint32_t, kTreeListColors> &table, std::uint32_t set, const QPalette &palette,
                 bool enabled);
    const QColor &operator[](TreeListColor which) const { return m_colors[which]; }
    /// Text of a cell that is not selected, on the ground of its row.
    const QColor &TextOn(TreeListColor ground) const { return m_texts[ground]; }

private:
    std::array<std::uint32_t, kTreeListColors> m_table = {};
    std::uint32_t m_nSet = 0;
    qint64 m_nPalette = 0;
    bool m_bEnabled = false;
    std::array<QColor, kTreeListColors> m_colors;
    std::array<QColor, kTreeListColors> m_texts;
};
