// Colour static, tool tips and flat combo box.
#include "controls/FlatComboBox.h"
#include "controls/MyToolTipCtrl.h"
#include "controls/ReadableColour.h"
#include "controls/XColorStatic.h"
#include "tests/controls/Ink.h"

#include <QApplication>
#include <QHelpEvent>
#include <QLineEdit>
#include <QPainter>
#include <QToolTip>

#include <gtest/gtest.h>

#include <memory>

namespace {

class SmallControls : public testing::Test {
protected:
    static void SetUpTestSuite()
    {
        if (QApplication::instance())
            return;
        static int argumentCount = 1;
        static char name[] = "small_controls_test";
        static char *arguments[] = {name, nullptr};
        // Never deleted: statics of the toolkit go first at the end of the program.
        [[maybe_unused]] static auto *application = new QApplication(argumentCount, arguments);
    }
    void TearDown() override { QApplication::setPalette(m_desktop); }

    /// Light or dark, as a desktop would have it.
    static void SetDesktop(const QColor &window, const QColor &text)
    {
        QPalette palette;
        palette.setColor(QPalette::Window, window);
        palette.setColor(QPalette::WindowText, text);
        QApplication::setPalette(palette);
    }

private:
    QPalette m_desktop = QApplication::palette();
};

class ColourStatic : public SmallControls {
protected:
    /// What a label of 120 by 60 pixels looks like on the window's ground.
    static QImage Picture(CXColorStatic &label)
    {
        label.resize(120, 60);
        QImage image(label.size(), QImage::Format_RGB32);
        image.fill(label.palette().color(QPalette::Window));
        label.render(&image, QPoint(), QRegion(), QWidget::DrawChildren);
        return image;
    }

    /// True when some pixel has nearly the colour; letters are thin, and their edges are mixed.
    static bool Holds(const QImage &image, const QColor &colour)
    {
        constexpr int kNear = 60;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                const QColor pixel = image.pixelColor(x, y);
                const int far = std::abs(pixel.red() - colour.red()) + std::abs(pixel.green() - colour.green()) +
                                std::abs(pixel.blue() - colour.blue());
                if (far < kNear)
                    return true;
            }
        }
        return false;
    }

    static constexpr char16_t kText[] = u"WWWW";
    static QString Text() { return QString::fromUtf16(kText); }
};

} // namespace

TEST_F(ColourStatic, WithoutColoursItIsPaintedInTheDesktops)
{
    for (const auto &[window, text] :
         {std::pair(QColor(Qt::white), QColor(Qt::black)), std::pair(QColor(0x20, 0x20, 0x20), QColor(Qt::yellow))}) {
        SetDesktop(window, text);
        CXColorStatic label(Text());
        const QImage picture = Picture(label);
        EXPECT_EQ(picture.pixelColor(0, 0), window);
        EXPECT_TRUE(Holds(picture, text));
    }
}

TEST_F(ColourStatic, TextAndBackgroundColoursStandInBlueGreenRedOrder)
{
    SetDesktop(Qt::white, Qt::black);
    CXColorStatic label(Text());
    label.SetTextColor(0xFF0000);
    EXPECT_TRUE(Holds(Picture(label), QColor(0, 0, 255)));
    EXPECT_FALSE(Holds(Picture(label), QColor(255, 0, 0)));
    label.SetBackgroundColor(0x00FFFF);
    EXPECT_EQ(Picture(label).pixelColor(0, 0), QColor(255, 255, 0));
}

TEST_F(ColourStatic, OnADarkWindowATextColourIsLightenedButNotOnABackgroundOfItsOwn)
{
    const QColor dark(0x20, 0x20, 0x20);
    SetDesktop(dark, Qt::white);
    CXColorStatic label(Text());
    label.SetTextColor(0xFF0000);
    const QColor lightened = ReadableColour(QColor(0, 0, 255), dark);
    EXPECT_GE(ContrastOf(lightened, dark), 4.5);
    EXPECT_TRUE(Holds(Picture(label), lightened));
    label.SetBackgroundColor(0xFFFFFF);
    EXPECT_TRUE(Holds(Picture(label), QColor(0, 0, 255)));
}

TEST_F(ColourStatic, TheDesktopsTextStaysReadableOnABackgroundColour)
{
    SetDesktop(QColor(0x20, 0x20, 0x20), Qt::white);
    CXColorStatic label(Text());
    label.SetBackgroundColor(0x00FFFF); // yellow: white could not be read on it
    EXPECT_TRUE(Holds(Picture(label), Qt::black));
    EXPECT_FALSE(Holds(Picture(label), Qt::white));
}

TEST_F(ColourStatic, SetBoldKeepsTheFontsFaceAndSize)
{
    CXColorStatic label(Text());
    QFont font(QStringLiteral("Some Face"), 17);
    font.setItalic(true);
    label.SetFont(&font);
    EXPECT_EQ(label.font().weight(), QFont::Normal);
    label.SetBold(true);
    EXPECT_EQ(label.font().family(), QStringLiteral("Some Face"));
    EXPECT_EQ(label.font().pointSize(), 17);
    EXPECT_TRUE(label.font().italic());
    EXPECT_EQ(label.font().weight(), 700);
    label.SetBold(false);
    EXPECT_EQ(label.font().weight(), 400);
    EXPECT_EQ(label.font().pointSize(), 17);
}

TEST_F(ColourStatic, AFontSetTakesTheWeightOfSetBold)
{
    CXColorStatic label(Text());
    label.SetBold(true);
    QFont thin(QStringLiteral("Some Face"), 9, QFont::Light);
    label.SetFont(&thin);
    EXPECT_EQ(label.font().weight(), 700);
    EXPECT_EQ(label.font().pointSize(), 9);
}

TEST_F(ColourStatic, SetFontWithANullDescriptionDoesNothing)
{
    CXColorStatic label(Text());
    const QFont before = label.font();
    label.SetFont(static_cast<const QFont *>(nullptr));
    EXPECT_EQ(label.font(), before);
}

TEST_F(ColourStatic, SetFontByNameTakes31CharactersAndWithoutANameThePresentFont)
{
    CXColorStatic label(Text());
    label.SetFont(L"0123456789012345678901234567890123456789", 14);
    EXPECT_EQ(label.font().family(), QStringLiteral("0123456789012345678901234567890"));
    EXPECT_EQ(label.font().pointSize(), 14);
    label.SetFont(static_cast<const wchar_t *>(nullptr), 20);
    EXPECT_EQ(label.font().family(), QStringLiteral("0123456789012345678901234567890"));
    EXPECT_EQ(label.font().pointSize(), 20);
}

TEST_F(ColourStatic, WithoutAFontOfItsOwnItHasTheDesktops)
{
    CXColorStatic label(Text());
    EXPECT_EQ(label.font(), QApplication::font(&label));
    label.SetBold(true);
    EXPECT_EQ(label.font().family(), QApplication::font(&label).family());
    EXPECT_EQ(label.font().pointSize(), QApplication::font(&label).pointSize());
}

TEST_F(ColourStatic, InBoldItStillFollowsTheFontOfItsDialog)
{
    QWidget dialog;
    auto *label = new CXColorStatic(Text(), &dialog);
    label->SetBold(true);
    dialog.setFont(QFont(QStringLiteral("Some Face"), 19));
    EXPECT_EQ(label->font().family(), QStringLiteral("Some Face"));
    EXPECT_EQ(label->font().pointSize(), 19);
    EXPECT_EQ(label->font().weight(), 700);
}

TEST_F(ColourStatic, AnIconHidesTheTextCompletelyAndStandsInTheMiddle)
{
    SetDesktop(Qt::white, Qt::black);
    CXColorStatic label(Text());
    QPixmap red(64, 64);
    red.fill(Qt::red);
    label.SetIcon(QIcon(red));
    const QImage picture = Picture(label);
    EXPECT_FALSE(Holds(picture, Qt::black));
    const QRect ink = InkOf(picture, Qt::white);
    EXPECT_EQ(ink.width(), ink.height());
    EXPECT_NEAR(ink.center().x(), picture.rect().center().x(), 1);
    EXPECT_NEAR(ink.center().y(), picture.rect().center().y(), 1);
    EXPECT_EQ(label.sizeHint(), ink.size());
    label.SetIcon(QIcon());
    EXPECT_TRUE(Holds(Picture(label), Qt::black));
}

TEST_F(ColourStatic, MarginsMoveTheTopLeftOfTheTextsRectangle)
{
    SetDesktop(Qt::white, Qt::black);
    CXColorStatic label(Text());
    label.setAlignment(Qt::AlignLeft | Qt::AlignTop);
    const QRect before = InkOf(Picture(label), Qt::white);
    const QSize hint = label.sizeHint();
    label.SetMargins(20, 10);
    const QRect after = InkOf(Picture(label), Qt::white);
    EXPECT_EQ(after.topLeft() - before.topLeft(), QPoint(20, 10));
    EXPECT_EQ(label.sizeHint() - hint, QSize(20, 10));
}

TEST_F(ColourStatic, TheStyleTellsWhereTheTextStands)
{
    SetDesktop(Qt::white, Qt::black);
    CXColorStatic label(Text());
    const auto ink = [&label](Qt::Alignment alignment) {
        label.setAlignment(alignment);
        return InkOf(Picture(label), Qt::white);
    };
    const QRect leftTop = ink(Qt::AlignLeft | Qt::AlignTop), centre = ink(Qt::AlignHCenter | Qt::AlignTop),
                right = ink(Qt::AlignRight | Qt::AlignTop), middle = ink(Qt::AlignLeft | Qt::AlignVCenter);
    EXPECT_LT(leftTop.left(), 5);
    EXPECT_NEAR(centre.center().x(), 60, 2);
    EXPECT_GT(right.right(), 114);
    EXPECT_NEAR(middle.center().y(), 30, 3);
    EXPECT_LT(leftTop.top(), 10);
}

TEST_F(ColourStatic, TextIsBrokenBetweenWordsUnlessItIsCentredVertically)
{
    SetDesktop(Qt::white, Qt::black);
    CXColorStatic label(QStringLiteral("WWWWWWWW WWWWWWWW"));
    const int broken = InkOf(Picture(label), Qt::white).height(); // as it is from the start
    EXPECT_TRUE(label.hasHeightForWidth());
    EXPECT_GE(label.heightForWidth(120), 2 * label.fontMetrics().height());
    EXPECT_LT(label.heightForWidth(1000), 2 * label.fontMetrics().height());
    EXPECT_LT(label.minimumSizeHint().width(), label.sizeHint().width());
    label.SetMargins(0, 9);
    EXPECT_GE(label.heightForWidth(120), 2 * label.fontMetrics().height() + 9);
    label.SetMargins(0, 0);
    label.setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    const int single = InkOf(Picture(label), Qt::white).height();
    EXPECT_GT(broken, single + 5);
    EXPECT_FALSE(label.hasHeightForWidth());
}

TEST_F(ColourStatic, RedrawPaintsAtOnceAndOtherwiseWaits)
{
    class Counting : public CXColorStatic {
    public:
        using CXColorStatic::CXColorStatic;
        int paints = 0;

    protected:
        void paintEvent(QPaintEvent *event) override
        {
            ++paints;
            CXColorStatic::paintEvent(event);
        }
    };
    Counting label;
    label.setText(Text());
    label.show();
    QApplication::processEvents();
    const auto paintsOf = [&label](auto &&act) {
        label.paints = 0;
        act();
        return label.paints;
    };
    EXPECT_EQ(paintsOf([&] { label.SetTextColor(1, true); }), 1);
    EXPECT_EQ(paintsOf([&] { label.SetTextColor(2, false); }), 0);
    EXPECT_EQ(paintsOf([&] { label.SetBackgroundColor(1, true); }), 1);
    EXPECT_EQ(paintsOf([&] { label.SetBackgroundColor(2, false); }), 0);
    EXPECT_EQ(paintsOf([&] { label.SetBold(true, true); }), 1);
    EXPECT_EQ(paintsOf([&] { label.SetIcon(QIcon(), true); }), 1);
    EXPECT_EQ(paintsOf([&] { label.SetMargins(1, 1, true); }), 1);
    EXPECT_EQ(paintsOf([&] { label.SetFont(L"Some Face", 9, true); }), 1);
}

TEST_F(SmallControls, ReadableTextTurnsBlackOrWhiteWhereItCouldNotBeRead)
{
    EXPECT_EQ(ReadableText(Qt::blue, Qt::white), QColor(Qt::blue));
    EXPECT_EQ(ReadableText(Qt::white, Qt::yellow), QColor(Qt::black));
    EXPECT_EQ(ReadableText(Qt::black, Qt::darkBlue), QColor(Qt::white));
}

TEST_F(SmallControls, AWindowToolIsTheWindowsTipForAsLongAsTheControlLives)
{
    QWidget window;
    window.setToolTip(QStringLiteral("before"));
    {
        CMyToolTipCtrl tips;
        EXPECT_TRUE(tips.AddWindowTool(&window, L"first"));
        EXPECT_EQ(window.toolTip(), QStringLiteral("first"));
        EXPECT_TRUE(tips.AddWindowTool(&window, L"second"));
        EXPECT_EQ(window.toolTip(), QStringLiteral("second"));
        EXPECT_FALSE(tips.AddWindowTool(nullptr, L"none"));
    }
    EXPECT_EQ(window.toolTip(), QStringLiteral("before"));
}

TEST_F(SmallControls, AToolOutlivesNeitherItsWindowNorChangesATipThatIsNotItsOwn)
{
    auto gone = std::make_unique<QWidget>();
    QWidget stays;
    {
        CMyToolTipCtrl tips;
        tips.AddWindowTool(gone.get(), L"tip");
        tips.AddRectTool(gone.get(), L"tip", QRect(0, 0, 5, 5), 1);
        tips.AddWindowTool(&stays, L"tip");
        stays.setToolTip(QStringLiteral("set later"));
        gone.reset();
    }
    EXPECT_EQ(stays.toolTip(), QStringLiteral("set later"));
}

TEST_F(SmallControls, ARectToolCountsInItsRectangleAlone)
{
    QWidget window;
    window.resize(100, 100);
    window.setToolTip(QStringLiteral("window"));
    window.show();
    CMyToolTipCtrl tips;
    EXPECT_FALSE(tips.AddRectTool(nullptr, L"none", QRect(0, 0, 5, 5), 1));
    EXPECT_TRUE(tips.AddRectTool(&window, L"upper", QRect(0, 0, 50, 50), 1));
    EXPECT_TRUE(tips.AddRectTool(&window, L"lower", QRect(0, 40, 50, 50), 2));
    const auto tipAt = [&window](QPoint place) {
        QToolTip::hideText();
        QHelpEvent event(QEvent::ToolTip, place, window.mapToGlobal(place));
        QApplication::sendEvent(&window, &event);
        return QToolTip::text().toStdString();
    };
    EXPECT_EQ(tipAt({10, 10}), "upper");
    EXPECT_EQ(tipAt({10, 45}), "upper");
    EXPECT_EQ(tipAt({10, 80}), "lower");
    EXPECT_EQ(tipAt({80, 80}), "window");
    EXPECT_TRUE(tips.AddRectTool(&window, L"moved", QRect(60, 60, 40, 40), 1));
    EXPECT_EQ(tipAt({80, 80}), "moved");
    EXPECT_EQ(tipAt({10, 10}), "window");
}

TEST_F(SmallControls, ATextThatLooksLikeMarkupIsShownAsItIs)
{
    QWidget window;
    CMyToolTipCtrl tips;
    tips.AddWindowTool(&window, L"<b>x</b>");
    EXPECT_TRUE(window.toolTip().contains(QStringLiteral("&lt;b&gt;x&lt;/b&gt;")));
}

TEST_F(SmallControls, AFlatComboColoursItsEnabledEditPartAlone)
{
    CFlatComboBox combo;
    EXPECT_FALSE(combo.hasFrame());
    const QPalette before = combo.palette();
    EXPECT_EQ(combo.GetBackgroundColor(), 0xFFFFFFu);
    EXPECT_EQ(combo.GetTextColor(), 0u);
    combo.setEditable(true);
    combo.show();
    QApplication::processEvents();
    EXPECT_EQ(combo.lineEdit()->palette().color(QPalette::Active, QPalette::Base), QColor(Qt::white));
    EXPECT_EQ(combo.lineEdit()->palette().color(QPalette::Active, QPalette::Text), QColor(Qt::black));
    combo.SetBackgroundColor(0x00FFFF);
    combo.SetTextColor(0xFF0000);
    EXPECT_EQ(combo.lineEdit()->palette().color(QPalette::Active, QPalette::Base), QColor(Qt::yellow));
    EXPECT_EQ(combo.lineEdit()->palette().color(QPalette::Active, QPalette::Text), QColor(Qt::blue));
    EXPECT_EQ(combo.lineEdit()->palette().color(QPalette::Disabled, QPalette::Base),
              before.color(QPalette::Disabled, QPalette::Base));
    EXPECT_EQ(combo.palette().color(QPalette::Base), before.color(QPalette::Base));
    combo.setEditable(false);
    combo.SetTextColor(1); // no edit part: nothing to colour
    EXPECT_EQ(combo.GetTextColor(), 1u);
}
