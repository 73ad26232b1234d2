// Colours of a validating edit.
#include "controls/AMSEdit.h"
#include "controls/ReadableColour.h"

#include <QEvent>
#include <QPalette>

#include <array>

namespace AMSEdit {

namespace {

constexpr std::array kGroups = {QPalette::Active, QPalette::Inactive, QPalette::Disabled};

ColorRef colourRefOf(const QColor &colour)
{
    return static_cast<ColorRef>(colour.red() | (colour.green() << 8) | (colour.blue() << 16));
}

QColor halfwayOf(const QColor &one, const QColor &other)
{
    return QColor((one.red() + other.red()) / 2, (one.green() + other.green()) / 2, (one.blue() + other.blue()) / 2);
}

/// The desktop's text on a background that is not its own: as it is where it can be read, else black or white.
void setOwnText(QPalette &palette, const QColor &background)
{
    const QColor wanted = palette.color(QPalette::Active, QPalette::Text), text = ReadableText(wanted, background);
    if (text == wanted)
        return;
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
        const QColor background = ColourOf(colours->background);
        own.setColor(QPalette::Base, background);
        if (colours->text)
            own.setColor(QPalette::Text, ColourOf(*colours->text));
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
