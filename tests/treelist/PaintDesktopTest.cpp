// Colours on dark desktops and on desktops of high contrast; texts and pictures by themselves.
#include "tests/treelist/PaintFixture.h"

namespace {

TreeListText viewOf(const std::string &text)
{
    return {text.data(), static_cast<std::uint32_t>(text.size()), 1};
}

} // namespace

TEST_F(TreeListPaint, AHighContrastIsOneGroundForAllWithFarText)
{
    using tree_list_colors::IsHighContrast;
    EXPECT_TRUE(IsHighContrast(ContrastPalette(Qt::black, Qt::white)));
    EXPECT_TRUE(IsHighContrast(ContrastPalette(Qt::white, Qt::black)));
    EXPECT_TRUE(IsHighContrast(ContrastPalette(Qt::black, Qt::yellow)));
    EXPECT_FALSE(IsHighContrast(LightPalette())); // windows are grey
    EXPECT_FALSE(IsHighContrast(DarkPalette()));
    EXPECT_FALSE(IsHighContrast(ContrastPalette(Qt::black, QColor(0x90, 0x90, 0x90)))); // a soft text
    QPalette buttons = ContrastPalette(Qt::white, Qt::black);
    buttons.setColor(QPalette::Button, QColor(0xE0, 0xE0, 0xE0));
    EXPECT_FALSE(IsHighContrast(buttons));
}

TEST_F(TreeListPaint, OnADarkDesktopAColourThatNobodySetIsTheDesktops)
{
    CreateTree(kTreeStyle | StyleAlternate);
    list->SetBkColor(0x00D0F0, 1);
    UseDesktop(DarkPalette());
    list->SelectItem(areaA, 0, true);

    EXPECT_EQ(Behind(outfall1, 1), DarkPalette().color(QPalette::Base));
    EXPECT_EQ(Behind(pipe12, 1), QColor(0xF0, 0xD0, 0x00)); // somebody's
    EXPECT_EQ(Behind(areaA, 1), DarkPalette().color(QPalette::Highlight));
    EXPECT_EQ(list->GetShownColor(colorTextNormal), DarkPalette().color(QPalette::Text));
    EXPECT_EQ(list->GetColor(colorBk), 0xFCFCFCU); // the table stays
    // The desktop's light text would not be read on somebody's bright ground.
    EXPECT_GT(CountOf(Cell(pipe12, 1), Qt::black), 10);
    EXPECT_GT(CountOf(Cell(outfall2, 2), DarkPalette().color(QPalette::Text)), 10);
}

TEST_F(TreeListPaint, EveryTextIsReadOnItsGroundWhereTheDesktopDecides)
{
    const std::pair<TreeListColor, TreeListColor> pairs[] = {{colorTextNormal, colorBk},
                                                             {colorTextNormal, colorTreeBk},
                                                             {colorTextNormal, colorAltEven},
                                                             {colorTextNormal, colorAltOdd},
                                                             {colorSelectedOtherText, colorSelectedOther},
                                                             {colorSelectedText, colorSelected},
                                                             {colorSelectedActiveText, colorSelectedActive},
                                                             {colorSelectedNoFocusText, colorSelectedNoFocus}};
    for (const QPalette &palette :
         {DarkPalette(), ContrastPalette(Qt::black, Qt::white), ContrastPalette(Qt::white, Qt::black)}) {
        for (const auto &[text, ground] : pairs)
            EXPECT_GE(ContrastOf(tree_list_colors::DesktopColor(text, palette),
                                 tree_list_colors::DesktopColor(ground, palette)),
                      4.5)
                << text;
        EXPECT_NE(tree_list_colors::DesktopColor(colorAltEven, palette),
                  tree_list_colors::IsHighContrast(palette) ? QColor() : palette.color(QPalette::Base));
        EXPECT_GE(ContrastOf(tree_list_colors::DesktopColor(colorTreeLine, palette), palette.color(QPalette::Base)), 3);
    }
}

TEST_F(TreeListPaint, WithHighContrastThereIsNothingBetweenInkAndGround)
{
    CreateTree(kTreeStyle | StyleHorzGrid | StyleAlternate | StyleBkColor);
    UseDesktop(ContrastPalette(Qt::black, Qt::white));
    list->SetSelectionMark(nullptr);
    const QImage picture = Picture();
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            const QColor pixel = picture.pixelColor(x, y);
            ASSERT_TRUE(pixel == QColor(Qt::black) || pixel == QColor(Qt::white)) << x << "," << y;
        }
    }
    EXPECT_GT(CountOf(picture, Qt::white), 1000);
}

TEST_F(TreeListPaint, ADisabledListOnADarkDesktopHasTheDesktopsGreyText)
{
    CreateTree();
    UseDesktop(DarkPalette());
    list->setEnabled(false);
    EXPECT_GT(CountOf(Cell(areaA, 0), DarkPalette().color(QPalette::Disabled, QPalette::Text)), 10);
    EXPECT_EQ(CountOf(Cell(areaA, 0), DarkPalette().color(QPalette::Active, QPalette::Text)), 0);
}

TEST_F(TreeListPaint, AllKindsOfTextsAreOneLine)
{
    EXPECT_EQ(OneLine(viewOf("a\nb\tc\rd")), QStringLiteral("a b c d"));
    EXPECT_EQ(OneLine(viewOf("\xE9")), QString(QChar(0xE9)));
    const std::u16string two = u"\u010D\u2028x";
    EXPECT_EQ(OneLine({two.data(), 3, 2}), QString::fromUtf16(u"\u010D x"));
    const std::u32string four = U"\U0001F4A7!";
    EXPECT_EQ(OneLine({four.data(), 2, 4}), QString::fromUcs4(U"\U0001F4A7!"));
}

TEST_F(TreeListPaint, TextsThatWereForgottenAreLaidOutAgain)
{
    CTreeListTexts texts;
    texts.SetFont(PinnedFont());
    const auto paint = [&](const std::string &text, int width) {
        QImage image(100, 20, QImage::Format_RGB32);
        image.fill(Qt::white);
        QPainter painter(&image);
        painter.setFont(PinnedFont());
        texts.Draw(painter, QRect(0, 0, width, 20), 0, viewOf(text), Qt::AlignLeft);
        return image;
    };
    const QImage whole = paint("Outfall 12", 100), cut = paint("Outfall 12", 40);
    EXPECT_NE(whole, cut);
    EXPECT_NE(paint("Outfall 12", 50), cut);
    EXPECT_EQ(paint("Outfall 12", 40), cut);
    for (int i = 0; i < 10000; ++i)
        EXPECT_EQ(texts.WidthOf(viewOf(std::to_string(100000 + i))), 6 * 6);
    EXPECT_EQ(paint("Outfall 12", 100), whole);
    EXPECT_EQ(paint("Outfall 12", 40), cut);
    EXPECT_EQ(paint("Outfall 12", 3), paint("", 3)); // not even the ellipsis

    QFont large = PinnedFont();
    large.setPixelSize(16);
    texts.SetFont(large);
    EXPECT_EQ(texts.WidthOf(viewOf("Outfall 12")), 120);
}

TEST_F(TreeListPaint, EqualBytesOfOtherSizesAreOtherTexts)
{
    CTreeListTexts texts;
    texts.SetFont(PinnedFont());
    const char bytes[] = "abcdefgh";
    EXPECT_EQ(texts.WidthOf({bytes, 8, 1}), 48);
    EXPECT_EQ(texts.WidthOf({bytes, 4, 2}), 24);
    EXPECT_EQ(texts.WidthOf({bytes, 8, 1}), 48);
}

TEST_F(TreeListPaint, TheTilesOfTheBackgroundJoin)
{
    for (const qreal ratio : {1.0, 2.0}) {
        const QImage tile = tree_list_glyphs::Background(Qt::white, ratio).toImage();
        for (int y = 0; y < tile.height(); ++y)
            EXPECT_NEAR(qGray(tile.pixel(0, y)), qGray(tile.pixel(tile.width() - 1, y)), 8) << y;
        EXPECT_EQ(tile.width(), 48 * ratio);
    }
}

TEST_F(TreeListPaint, AnUnknownCursorIsTheArrow)
{
    EXPECT_EQ(tree_list_glyphs::Cursor(8004, 1).shape(), Qt::ArrowCursor);
    EXPECT_EQ(tree_list_glyphs::Cursor(8005, 1).hotSpot(), QPoint(1, 1));
    EXPECT_EQ(tree_list_glyphs::Cursor(8016, 1).hotSpot(), QPoint(16, 16));
    EXPECT_EQ(tree_list_glyphs::Cursor(8015, 2).pixmap().size(), QSize(64, 64));
}

TEST_F(TreeListPaint, TheOwnersImagesStandInPlaceOfTheDefaultOnesInTheHeader)
{
    CTreeListGlyphs glyphs;
    glyphs.Prepare(LightPalette(), 1);
    EXPECT_TRUE(glyphs.HasHeaderImage(kImageGood));
    EXPECT_FALSE(glyphs.HasHeaderImage(kTreeListImages));
    EXPECT_FALSE(glyphs.HasHeaderImage(-1));
    QPixmap red(16, 16);
    red.fill(Qt::red);
    glyphs.SetHeaderImages({QIcon(red)});
    EXPECT_FALSE(glyphs.HasHeaderImage(1));
    QImage image(16, 16, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    glyphs.DrawHeaderImage(painter, {0, 0}, 1);
    EXPECT_EQ(CountOf(image, Qt::white), 256);
    glyphs.DrawHeaderImage(painter, {0, 0}, 0);
    EXPECT_EQ(CountOf(image, Qt::red), 256);
    glyphs.DrawItemImage(painter, {0, 0}, kTreeListImages, false);
    EXPECT_EQ(CountOf(image, Qt::red), 256);
}
