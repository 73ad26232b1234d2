// Colours of a validating edit on the real widget, on light and dark desktops.
#include "tests/controls/WidgetEditBox.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QPalette>

using namespace AMSEdit;

namespace {

QPalette desktop(bool dark)
{
    const QColor back = dark ? QColor(0x20, 0x20, 0x20) : QColor(0xFF, 0xFF, 0xFF);
    const QColor front = dark ? QColor(0xE0, 0xE0, 0xE0) : QColor(0x10, 0x10, 0x10);
    QPalette palette(back);
    palette.setColor(QPalette::Base, back);
    palette.setColor(QPalette::Text, front);
    palette.setColor(QPalette::Disabled, QPalette::Text, QColor(0x80, 0x80, 0x80));
    return palette;
}

class EditPaint : public testing::TestWithParam<bool> {
protected:
    EditPaint() { QApplication::setPalette(desktop(GetParam())); }
    ~EditPaint() override { QApplication::setPalette(m_before); }

    static QColor Painted(CAMSEdit &edit)
    {
        edit.resize(120, 30);
        return edit.grab().toImage().pixelColor(edit.width() - 12, edit.height() / 2);
    }
    static QColor Text(const CAMSEdit &edit, QPalette::ColorGroup group = QPalette::Active)
    {
        return edit.palette().color(group, QPalette::Text);
    }
    QColor DesktopBack() const { return desktop(GetParam()).color(QPalette::Base); }
    QColor DesktopText() const { return desktop(GetParam()).color(QPalette::Active, QPalette::Text); }

private:
    ToolkitForTests m_toolkit;
    QPalette m_before = QApplication::palette();
};

double luminance(const QColor &colour)
{
    return 0.2126 * colour.redF() + 0.7152 * colour.greenF() + 0.0722 * colour.blueF();
}

} // namespace

INSTANTIATE_TEST_SUITE_P(LightAndDark, EditPaint, testing::Bool(),
                         [](const auto &row) { return row.param ? "Dark" : "Light"; });

TEST_P(EditPaint, AnUncolouredBoxIsPaintedAsTheDesktopHasIt)
{
    WidgetEditBox edit;
    EXPECT_EQ(Painted(edit), DesktopBack());
    EXPECT_EQ(Text(edit), DesktopText());
}

TEST_P(EditPaint, ASetBackgroundIsPaintedInItsByteOrder)
{
    WidgetEditBox edit;
    edit.SetBackgroundColor(0xFF8000);
    EXPECT_EQ(Painted(edit), QColor(0x00, 0x80, 0xFF));
    edit.setReadOnly(true);
    EXPECT_EQ(Painted(edit), QColor(0x00, 0x80, 0xFF));
    edit.setEnabled(false);
    EXPECT_EQ(Painted(edit), QColor(0x00, 0x80, 0xFF));
}

TEST_P(EditPaint, ASetTextColourIsUsedOnTheDesktopsBackground)
{
    WidgetEditBox edit;
    edit.SetTextColor(0x0000FF);
    for (const auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled})
        EXPECT_EQ(Text(edit, group), QColor(0xFF, 0, 0));
    EXPECT_EQ(Painted(edit), DesktopBack());
}

TEST_P(EditPaint, BlackSetOnPurposeLeavesTheDesktopsText)
{
    WidgetEditBox edit;
    edit.SetTextColor(0);
    EXPECT_EQ(Text(edit), DesktopText());
}

TEST_P(EditPaint, TheDesktopsTextStaysReadableOnASetBackground)
{
    WidgetEditBox edit;
    for (const ColorRef background : {0xFFFFFFu, 0xE0FFFFu, 0x000000u, 0x400000u}) {
        edit.SetBackgroundColor(background);
        const double text = luminance(Text(edit)), back = luminance(edit.palette().color(QPalette::Base));
        EXPECT_GT(std::abs(text - back), 0.5) << std::hex << background;
    }
    edit.SetBackgroundColor(GetParam() ? 0x303030 : 0xF0FFFF);
    EXPECT_EQ(Text(edit), DesktopText()) << "where it can be read it is left alone";
}

TEST_P(EditPaint, AskingForTheColoursTakesTheDesktopsOver)
{
    WidgetEditBox edit;
    const QColor back = DesktopBack(), text = DesktopText();
    EXPECT_EQ(edit.GetBackgroundColor(), static_cast<ColorRef>(back.red() | back.green() << 8 | back.blue() << 16));
    EXPECT_EQ(edit.GetTextColor(), static_cast<ColorRef>(text.red() | text.green() << 8 | text.blue() << 16));
    EXPECT_NE(edit.OnCtlColor(), std::nullopt);
}

TEST_P(EditPaint, ABoxThatWasAskedKeepsItsColoursWhenItIsDisabled)
{
    WidgetEditBox edit;
    edit.GetTextColor();
    edit.setEnabled(false);
    EXPECT_EQ(Text(edit, QPalette::Disabled), DesktopText());
    WidgetEditBox other;
    other.GetBackgroundColor();
    QApplication::setPalette(desktop(!GetParam()));
    QApplication::processEvents();
    EXPECT_EQ(Painted(other), desktop(GetParam()).color(QPalette::Base));
}

TEST_P(EditPaint, AnotherDesktopIsFollowedWhereNothingIsSet)
{
    WidgetEditBox plain, coloured;
    coloured.SetBackgroundColor(0x00FFFF);
    QApplication::setPalette(desktop(!GetParam()));
    QApplication::processEvents();
    EXPECT_EQ(Painted(plain), desktop(!GetParam()).color(QPalette::Base));
    EXPECT_EQ(Painted(coloured), QColor(0xFF, 0xFF, 0x00));
    EXPECT_LT(luminance(Text(coloured)), 0.4) << "dark on yellow, whatever the desktop";
}
