#include "host/editor/Theme.h"

#include "host/editor/Words.h"
#include "host/services/Services.h"

#include <QApplication>
#include <QPainter>
#include <QProxyStyle>
#include <QStyle>
#include <QStyleOption>
#include <QToolTip>

#include <algorithm>
#include <cmath>

namespace velmor {

namespace {

struct Colors {
    QRgb window, base, alternate, button, text, weak, link, visited, highlight, highlighted, tipBase, tipText;
};

/// weak is for what is disabled and for place holders: weaker than the text, and still to be read on each ground.
constexpr Colors kLight = {.window = 0xfff3f4f6,
                           .base = 0xffffffff,
                           .alternate = 0xfff6f8fa,
                           .button = 0xffeceef1,
                           .text = 0xff16191d,
                           .weak = 0xff474c53,
                           .link = 0xff0b57b0,
                           .visited = 0xff6b3fa0,
                           .highlight = 0xff1f5fae,
                           .highlighted = 0xffffffff,
                           .tipBase = 0xfffffbe6,
                           .tipText = 0xff16191d};
constexpr Colors kDark = {.window = 0xff262a30,
                          .base = 0xff1e2228,
                          .alternate = 0xff242930,
                          .button = 0xff30353d,
                          .text = 0xffe8eaed,
                          .weak = 0xffa9afb8,
                          .link = 0xff8ab4f8,
                          .visited = 0xffc6a7f2,
                          .highlight = 0xff2f67ad,
                          .highlighted = 0xffffffff,
                          .tipBase = 0xff3a4049,
                          .tipText = 0xfff1f3f4};

/// What the desktop gave.
struct Desktop {
    QString style = QApplication::style()->objectName();
    QPalette palette = QApplication::palette();
    QPalette tip = QToolTip::palette();
};

/// The style frames boxes, fields and panels darker than the window, which in the dark nobody sees; there they get a
/// frame in the weak colour of texts.
class FramedStyle final : public QProxyStyle {
public:
    FramedStyle() : QProxyStyle(QStringLiteral("fusion")) { setObjectName(QLatin1String(kStyleName)); }

    void drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
                       const QWidget *widget) const override
    {
        QProxyStyle::drawPrimitive(element, option, painter, widget);
        const bool isRound = element == PE_IndicatorRadioButton;
        const bool isField = element == PE_FrameLineEdit && !(option->state & State_HasFocus);
        const bool isPanel = element == PE_Frame; // round a list, a status line
        if ((!isRound && !isField && !isPanel && element != PE_IndicatorCheckBox &&
             element != PE_IndicatorItemViewItemCheck) ||
            option->palette.color(QPalette::Window).lightnessF() > 0.5)
            return;
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        QColor pen = option->palette.color(QPalette::Disabled, QPalette::WindowText);
        if (isPanel)
            pen.setAlphaF(0.6F); // it holds much, and need not shout
        painter->setPen(pen);
        painter->setBrush(Qt::NoBrush);
        const QRectF frame = QRectF(option->rect).adjusted(0.5, 0.5, -0.5, -0.5);
        if (isRound)
            painter->drawEllipse(frame);
        else if (isPanel)
            painter->drawRect(frame);
        else
            painter->drawRoundedRect(frame, 1.5, 1.5);
        painter->restore();
    }

    static constexpr char kStyleName[] = "velmor";
};

double linear(double channel)
{
    return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

double luminance(const QColor &color)
{
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

} // namespace

Theme themeNamed(std::wstring_view name)
{
    for (const Theme theme : {Theme::Light, Theme::Dark})
        if (sameText(name, nameOf(theme)))
            return theme;
    return Theme::System;
}

const wchar_t *nameOf(Theme theme)
{
    return theme == Theme::Light ? L"light" : theme == Theme::Dark ? L"dark" : L"system";
}

Theme themeOfSettings()
{
    return themeNamed(std::get<std::wstring>(Services::instance().settings().valueOrStandard("THEME")));
}

QPalette paletteOf(Theme theme)
{
    const Colors &c = theme == Theme::Dark ? kDark : kLight;
    QPalette palette{QColor(c.button), QColor(c.window)};
    const auto set = [&](QPalette::ColorRole role, QRgb color) { palette.setColor(role, QColor(color)); };
    set(QPalette::Window, c.window);
    set(QPalette::Base, c.base);
    set(QPalette::AlternateBase, c.alternate);
    set(QPalette::Button, c.button);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::BrightText})
        set(role, c.text);
    set(QPalette::PlaceholderText, c.weak);
    set(QPalette::Link, c.link);
    set(QPalette::LinkVisited, c.visited);
    set(QPalette::Highlight, c.highlight);
    set(QPalette::HighlightedText, c.highlighted);
    set(QPalette::ToolTipBase, c.tipBase);
    set(QPalette::ToolTipText, c.tipText);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, QColor(c.weak));
    // What is disabled and selected is told apart by its ground, which leaves the weak text readable.
    palette.setColor(QPalette::Disabled, QPalette::Highlight, QColor(c.button));
    palette.setColor(QPalette::Disabled, QPalette::HighlightedText, QColor(c.weak));
    palette.setColor(QPalette::Disabled, QPalette::Base, QColor(c.window));
    return palette;
}

void applyTheme(Theme theme)
{
    static const Desktop desktop;
    if (theme == Theme::System) {
        if (QApplication::style()->objectName() != desktop.style)
            QApplication::setStyle(desktop.style);
        QApplication::setPalette(desktop.palette);
        QToolTip::setPalette(desktop.tip);
        return;
    }
    // Other styles paint with colours of their own and pay little heed to a palette.
    if (QApplication::style()->objectName() != QLatin1String(FramedStyle::kStyleName))
        QApplication::setStyle(new FramedStyle);
    const QPalette palette = paletteOf(theme);
    QApplication::setPalette(palette);
    QToolTip::setPalette(palette);
}

double contrastOf(const QColor &a, const QColor &b)
{
    const double one = luminance(a), other = luminance(b);
    const double darker = std::min(one, other), lighter = std::max(one, other);
    return (lighter + 0.05) / (darker + 0.05);
}

} // namespace velmor
