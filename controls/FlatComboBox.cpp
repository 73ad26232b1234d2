#include "controls/FlatComboBox.h"

#include "controls/ReadableColour.h"

#include <QEvent>
#include <QLineEdit>

CFlatComboBox::CFlatComboBox(QWidget *parent) : QComboBox(parent)
{
    setFrame(false);
}

void CFlatComboBox::SetBackgroundColor(ColorRef colour)
{
    m_crBackground = colour;
    ColourEditPart();
}

void CFlatComboBox::SetTextColor(ColorRef colour)
{
    m_crText = colour;
    ColourEditPart();
}

void CFlatComboBox::ColourEditPart()
{
    if (!lineEdit())
        return;
    QPalette colours = palette();
    for (const auto group : {QPalette::Active, QPalette::Inactive}) {
        colours.setColor(group, QPalette::Base, ColourOf(m_crBackground));
        colours.setColor(group, QPalette::Text, ColourOf(m_crText));
    }
    if (lineEdit()->palette() != colours)
        lineEdit()->setPalette(colours);
}

void CFlatComboBox::childEvent(QChildEvent *event)
{
    QComboBox::childEvent(event);
    // An edit part comes when the box is made editable.
    if (event->polished() && event->child() == lineEdit())
        ColourEditPart();
}

void CFlatComboBox::changeEvent(QEvent *event)
{
    QComboBox::changeEvent(event);
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::StyleChange)
        ColourEditPart();
}
