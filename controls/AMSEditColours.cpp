// Colours of a validating edit.
#include "controls/AMSEdit.h"

#include <QEvent>
#include <QPalette>

#include <algorithm>
#include <array>
#include <cmath>

namespace AMSEdit {

namespace {

/// Text is readable from this contrast on, by the Web Content Accessibility Guidelines.
constexpr double kReadable = 4.5;

constexpr std::array kGroups = {QPalette::Active, QPalette::Inactive, QPalette::Disabled};

QColor colourOf(ColorRef colour)
{
    return QColor(static_cast<int>(colour & 0xFF), static_cast<int>((colour >> 8) & 0xFF),
                  static_cast<int>((colour >> 16) & 0xFF));
}

ColorRef colourRefOf(const QColor &colour)
{
    return static_cast<ColorRef>(colour.red() | (colour.green() << 8) | (colour.blue() << 16));
}

double luminanceOf(const QColor &colour)
{
    const auto linear = [](double part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) + 0.0722 * linear(colour.blueF());
}

double contrastOf(const QColor &one, const QColor &other)
{
    const double a = luminanceOf(one), b = luminanceOf(other);
    return (std::max(a, b) + 0.05) / (std::min(a, b) + 0.05);
}

QColor halfwayOf(const QColor &one, const QColor &other)
{
    return QColor((one.red() + other.red()) / 2, (one.green() + other.green()) / 2, (one.blue() + other.blue()) / 2);
}

/// The desktop's text on a background that is not its own: as it is where it can be read, else black or white.
void setOwnText(QPalette &palette, const QColor &background)
{
    if (contrastOf(palette.color(QPalette::Active, QPalette::Text), background) >= kReadable)
        return;
    const QColor black(Qt::black), white(Qt::white);
    const QColor text = contrastOf(black, background) >= contrastOf(white, background) ? black : white;
    for (const QPalette::ColorGroup group : kGroups) {
        const bool faint = group == QPalette::Disabled;
        palette.setColor(group, QPalette::Text, faint ? halfwayOf(text, background) : text);
        palette.setColor(group, QPalette::PlaceholderText, halfwayOf(text, background));
    }
}

} // namespace

ColorRef CAMSEdit::ContextBackgroundColor() const
{
    const QPalette &desktop = m_bColoured ? m_desktopPalette : palette();
    return colourRefOf(desktop.color(isEnabled() ? QPalette::Active : QPalette::Disabled, QPalette::Base));
}

ColorRef CAMSEdit::ContextTextColor() const
{
    const QPalette &desktop = m_bColoured ? m_desktopPalette : palette();
    return colourRefOf(desktop.color(isEnabled() ? QPalette::Active : QPalette::Disabled, QPalette::Text));
}

void CAMSEdit::PlatformRepaint()
{
    ApplyColours();
    update();
}

void CAMSEdit::ApplyColours()
{
    if (m_bColouring)
        return;
    m_bColouring = true;
    if (m_bColoured) {
        setPalette(QPalette()); // back to the desktop's, which may be another one by now
        m_bColoured = false;
    }
    m_desktopPalette = palette();
    if (const auto colours = OnCtlColor()) {
        QPalette own = m_desktopPalette;
        const QColor background = colourOf(colours->background);
        own.setColor(QPalette::Base, background);
        if (colours->text)
            own.setColor(QPalette::Text, colourOf(*colours->text));
        else
            setOwnText(own, background);
        setPalette(own);
        m_bColoured = true;
    }
    m_bColouring = false;
}

void CAMSEdit::changeEvent(QEvent *event)
{
    QLineEdit::changeEvent(event);
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::StyleChange)
        ApplyColours();
}

} // namespace AMSEdit
