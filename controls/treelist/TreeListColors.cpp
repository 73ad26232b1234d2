#include "controls/treelist/TreeListColors.h"

#include "controls/ReadableColour.h"
#include "controls/treelist/TreeListGlyphs.h"
#include "controls/treelist/TreeListHeaderCtrl.h"

namespace tree_list_colors {

namespace {

constexpr double kHighContrast = 15.0;

QColor mixed(const QColor &one, const QColor &other, double part)
{
    const auto mix = [part](int a, int b) { return static_cast<int>(a + (b - a) * part); };
    return {mix(one.red(), other.red()), mix(one.green(), other.green()), mix(one.blue(), other.blue())};
}

/// Parts of a mix of two colours; with a high contrast there are no colours between.
struct Mixing {
    const QPalette &palette;
    bool plain;
    QColor operator()(const QColor &one, const QColor &other, double part) const
    {
        return plain ? (part < 0.3 ? one : other) : mixed(one, other, part);
    }
};

QColor groundOf(TreeListColor which, const QPalette &palette, QPalette::ColorGroup group)
{
    const QColor base = palette.color(group, QPalette::Base), text = palette.color(group, QPalette::Text);
    const Mixing mix{palette, IsHighContrast(palette)};
    switch (which) {
    case colorTreeBk:
    case colorDisabledTreeBk:
        return mix(base, palette.color(group, QPalette::Window), 0.25);
    case colorAltEven:
    case colorDisabledAltEven: {
        const QColor alternate = palette.color(group, QPalette::AlternateBase);
        return alternate != base ? alternate : mix(base, text, 0.06);
    }
    default:
        return base;
    }
}

/// What a row is filled with that is selected in one of four ways.
QColor selectionOf(TreeListColor which, const QPalette &palette)
{
    const QColor base = palette.color(QPalette::Active, QPalette::Base);
    const QColor highlight = palette.color(QPalette::Active, QPalette::Highlight);
    const Mixing mix{palette, IsHighContrast(palette)};
    switch (which) {
    case colorSelectedOther:
        return mix(highlight, base, 0.4);
    case colorSelectedActive: {
        // Away from its text, which stays as it is.
        const QColor text = palette.color(QPalette::Active, QPalette::HighlightedText);
        const bool light = ContrastOf(Qt::black, text) > ContrastOf(Qt::white, text);
        return mix(highlight, light ? Qt::black : Qt::white, 0.25);
    }
    case colorSelectedNoFocus:
        return mix(base, highlight, 0.35);
    default:
        return highlight;
    }
}

} // namespace

bool IsDark(const QPalette &palette)
{
    const QColor base = palette.color(QPalette::Active, QPalette::Base);
    return ContrastOf(Qt::white, base) > ContrastOf(Qt::black, base);
}

bool IsHighContrast(const QPalette &palette)
{
    const auto color = [&palette](QPalette::ColorRole role) { return palette.color(QPalette::Active, role); };
    const QColor base = color(QPalette::Base);
    if (color(QPalette::Window).rgb() != base.rgb() || color(QPalette::Button).rgb() != base.rgb())
        return false;
    return ContrastOf(color(QPalette::Text), base) >= kHighContrast &&
           ContrastOf(color(QPalette::WindowText), base) >= kHighContrast &&
           ContrastOf(color(QPalette::ButtonText), base) >= kHighContrast;
}

bool FollowsDesktop(const QPalette &palette)
{
    return IsDark(palette) || IsHighContrast(palette);
}

QColor DesktopColor(TreeListColor which, const QPalette &palette)
{
    const QColor base = palette.color(QPalette::Active, QPalette::Base);
    const QColor text = palette.color(QPalette::Active, QPalette::Text);
    const Mixing mix{palette, IsHighContrast(palette)};
    switch (which) {
    case colorTreeBk:
    case colorBk:
    case colorAltEven:
    case colorAltOdd:
        return groundOf(which, palette, QPalette::Active);
    case colorDisabledTreeBk:
    case colorDisabledBk:
    case colorDisabledAltEven:
    case colorDisabledAltOdd:
        return groundOf(which, palette, QPalette::Disabled);
    case colorSelectedOther:
    case colorSelected:
    case colorSelectedActive:
    case colorSelectedNoFocus:
        return selectionOf(which, palette);
    case colorSelectedOtherText:
    case colorSelectedText:
    case colorSelectedActiveText:
    case colorSelectedNoFocusText:
        // The texts stand in the order of their grounds.
        return ReadableText(
            palette.color(QPalette::Active, QPalette::HighlightedText),
            selectionOf(static_cast<TreeListColor>(which - colorSelectedOtherText + colorSelectedOther), palette));
    case colorGrid:
        return mix(base, text, IsHighContrast(palette) ? 1.0 : 0.2);
    case colorTreeLine:
        return mix(base, text, 0.5);
    default:
        return text;
    }
}

QColor ShownColor(TreeListColor which, const std::array<std::uint32_t, kTreeListColors> &table, std::uint32_t set,
                  const QPalette &palette)
{
    const bool isSet = (set & 1U << which) != 0;
    return isSet || !FollowsDesktop(palette) ? ColourOf(table[which]) : DesktopColor(which, palette);
}

} // namespace tree_list_colors

void CTreeListPaints::Prepare(const std::array<std::uint32_t, kTreeListColors> &table, std::uint32_t set,
                              const QPalette &palette, bool enabled)
{
    if (palette.cacheKey() == m_nPalette && enabled == m_bEnabled && set == m_nSet && table == m_table)
        return;
    m_nPalette = palette.cacheKey();
    m_bEnabled = enabled;
    m_nSet = set;
    m_table = table;
    for (int which = 0; which < kTreeListColors; ++which)
        m_colors[which] = tree_list_colors::ShownColor(static_cast<TreeListColor>(which), table, set, palette);
    const bool given = (set & 1U << colorTextNormal) != 0 || !tree_list_colors::FollowsDesktop(palette);
    for (int which = colorTreeBk; which <= colorDisabledAltOdd; ++which) {
        // The desktop's text on a ground that somebody set must still be read.
        m_texts[which] = given     ? m_colors[colorTextNormal]
                         : enabled ? ReadableText(m_colors[colorTextNormal], m_colors[which])
                                   : palette.color(QPalette::Disabled, QPalette::Text);
    }
}

namespace {

/// Which of the backgrounds a code of SetBkColor means.
TreeListColor backgroundOf(int code)
{
    switch (code) {
    case 0:
        return colorBk;
    case 1:
        return colorAltEven;
    case 2:
        return colorAltOdd;
    default:
        return colorTreeBk;
    }
}

bool inTable(TreeListColor which)
{
    return which >= 0 && which < kTreeListColors;
}

} // namespace

std::uint32_t CTreeListCtrl::SetBkColor(std::uint32_t color, int code)
{
    return SetColor(backgroundOf(code), color);
}

std::uint32_t CTreeListCtrl::GetBkColor(int code) const
{
    return GetColor(backgroundOf(code));
}

std::uint32_t CTreeListCtrl::SetTextColor(std::uint32_t color)
{
    return SetColor(colorTextNormal, color);
}

std::uint32_t CTreeListCtrl::GetTextColor() const
{
    return GetColor(colorTextNormal);
}

std::uint32_t CTreeListCtrl::SetColor(TreeListColor which, std::uint32_t color)
{
    if (!inTable(which))
        return 0;
    const std::uint32_t old = m_colors[which];
    m_colors[which] = color;
    m_nSetColors |= 1U << which;
    Invalidate();
    return old;
}

std::uint32_t CTreeListCtrl::GetColor(TreeListColor which) const
{
    return inTable(which) ? m_colors[which] : 0;
}

QColor CTreeListCtrl::GetShownColor(TreeListColor which) const
{
    if (!inTable(which))
        return {};
    return tree_list_colors::ShownColor(which, m_colors, m_nSetColors, palette());
}

void CTreeListCtrl::SetItemImages(std::vector<QIcon> images)
{
    m_glyphs->SetItemImages(std::move(images));
    Invalidate();
}

void CTreeListCtrl::SetHeaderImages(std::vector<QIcon> images)
{
    m_glyphs->SetHeaderImages(std::move(images));
    if (m_pHeader)
        m_pHeader->update();
}
