// Which colour stands where: backgrounds, rows, cells, tree and grid, for each bit of the style.
#include "tests/treelist/PaintFixture.h"

namespace {

constexpr int kBeside = 380; // right of all columns

} // namespace

// --- Backgrounds -----------------------------------------------------------------------------------------------------

TEST_F(TreeListPaint, TheTableOfColoursHasItsDefaults)
{
    const std::uint32_t defaults[] = {0xFFFFE0, 0xFCFCFC, 0xF0F0F0, 0xF8F8F8, 0xC0C080, 0xCCCCCC, 0xC0C0C0,
                                      0xC8C8C8, 0xC08080, 0xA00000, 0xD00000, 0xD0A0A0, 0xE8E8E8, 0xF0F0F0,
                                      0xFFFFFF, 0xE0E0E0, 0x000000, 0x00FF00, 0xD0D0D0, 0x808080};
    for (int which = 0; which < kTreeListColors; ++which)
        EXPECT_EQ(list->GetColor(static_cast<TreeListColor>(which)), defaults[which]) << which;
    EXPECT_EQ(std::size(defaults), static_cast<std::size_t>(kTreeListColors));
}

TEST_F(TreeListPaint, NumbersAreBlueGreenRed)
{
    CreateTree();
    list->SetBkColor(0xFF8000);
    EXPECT_EQ(Pixel(kBeside, 50), QColor(0x00, 0x80, 0xFF));
    EXPECT_EQ(list->GetShownColor(colorSelected), QColor(0, 0, 0xA0));
}

TEST_F(TreeListPaint, SetBkColorTakesACodeAndAnswersTheOldColour)
{
    const std::pair<int, TreeListColor> codes[] = {
        {0, colorBk}, {1, colorAltEven}, {2, colorAltOdd}, {3, colorTreeBk}, {-1, colorTreeBk}};
    std::uint32_t color = 0x010203;
    for (const auto &[code, which] : codes) {
        const std::uint32_t old = list->GetColor(which);
        EXPECT_EQ(list->SetBkColor(++color, code), old) << code;
        EXPECT_EQ(list->GetColor(which), color) << code;
        EXPECT_EQ(list->GetBkColor(code), color) << code;
    }
    EXPECT_EQ(list->SetTextColor(0x123456), 0U);
    EXPECT_EQ(list->GetTextColor(), 0x123456U);
    EXPECT_EQ(list->GetColor(colorTextNormal), 0x123456U);
    EXPECT_EQ(list->SetColor(static_cast<TreeListColor>(kTreeListColors), 1), 0U);
    EXPECT_EQ(list->GetColor(static_cast<TreeListColor>(-1)), 0U);
}

TEST_F(TreeListPaint, BesideTheColumnsStandsTheBackgroundOfTheStyle)
{
    CreateTree();
    EXPECT_EQ(Pixel(kBeside, 50), Told(colorBk));
    list->SetStyle(kTreeStyle | StyleBkColor);
    EXPECT_EQ(Pixel(kBeside, 50), Told(colorTreeBk));
    list->setEnabled(false);
    EXPECT_EQ(Pixel(kBeside, 50), Told(colorDisabledTreeBk));
    list->SetStyle(kTreeStyle);
    EXPECT_EQ(Pixel(kBeside, 50), Told(colorDisabledBk));
}

TEST_F(TreeListPaint, RowsStandOnColorBkEvenWithTheTreesBackground)
{
    CreateTree(kTreeStyle | StyleBkColor);
    EXPECT_EQ(Behind(areaA, 1), Told(colorBk));
    EXPECT_EQ(Pixel(300, LineOf(9).center().y()), Told(colorBk)); // below the last row
    list->setEnabled(false);
    EXPECT_EQ(Behind(areaA, 1), Told(colorDisabledBk));
}

TEST_F(TreeListPaint, RowsOfOddIndexHaveTheColourOfEvenOnes)
{
    CreateTree(kTreeStyle | StyleAlternate);
    EXPECT_EQ(Behind(outfall1, 1), Told(colorAltOdd)); // index 0
    EXPECT_EQ(Behind(pipe12, 1), Told(colorAltEven));  // index 1
    EXPECT_EQ(Behind(areaA, 1), Told(colorAltOdd));
    list->setEnabled(false);
    EXPECT_EQ(Behind(outfall1, 1), Told(colorDisabledAltOdd));
    EXPECT_EQ(Behind(pipe12, 1), Told(colorDisabledAltEven));
}

TEST_F(TreeListPaint, EmptyRowsGoOnAlternating)
{
    CreateTree(kTreeStyle | StyleAlternate);
    // Seven rows; the eighth line has the index 7.
    EXPECT_EQ(Pixel(200, LineOf(7).center().y()), Told(colorAltEven));
    EXPECT_EQ(Pixel(200, LineOf(8).center().y()), Told(colorAltOdd));
    EXPECT_EQ(Pixel(kBeside, LineOf(7).center().y()), Told(colorBk));
}

TEST_F(TreeListPaint, TheParityIsTheIndexesNotThePlaces)
{
    CreateEmpty(kTreeStyle | StyleAlternate);
    AddRows(100);
    Show();
    list->verticalScrollBar()->setValue(1);
    EXPECT_EQ(Pixel(300, 10), Told(colorAltEven));
    list->verticalScrollBar()->setValue(2);
    EXPECT_EQ(Pixel(300, 10), Told(colorAltOdd));
}

TEST_F(TreeListPaint, WithTheBackgroundsPictureRowsAreNotFilled)
{
    CreateTree(kTreeStyle | StyleAlternate | StyleBkBitmap);
    list->SetBkColor(0x0000FF, 1);
    list->SetBkColor(0x0000FF, 2);
    EXPECT_EQ(CountOf(Picture(), QColor(0xFF, 0, 0)), 0);
    EXPECT_GT(InkOf(Picture().copy(340, 0, 50, 200), Told(colorBk)).width(), 40); // the ripple
    EXPECT_GT(InkOf(Picture().copy(100, 0, 50, 200), Told(colorBk)).width(), 40); // behind the rows as well
    EXPECT_GT(InkOf(Picture().copy(100, 150, 50, 50), Told(colorBk)).width(), 40);
    const QImage enabled = Picture();
    list->setEnabled(false);
    EXPECT_NE(Picture().pixel(kBeside, 1), enabled.pixel(kBeside, 1));
}

TEST_F(TreeListPaint, TheBackgroundsPictureMovesWithTheColumns)
{
    CreateTree(kTreeStyle | StyleBkBitmap);
    list->SetColumnWidth(2, 300);
    Settle();
    const QRect empty(0, 150, 300, 80);
    const QImage before = Picture();
    for (const int scroll : {20, 48, 70}) {
        list->horizontalScrollBar()->setValue(scroll);
        ASSERT_EQ(list->GetHorzScroll(), scroll);
        EXPECT_EQ(Picture().copy(empty), before.copy(empty.translated(scroll, 0))) << scroll;
    }
}

TEST_F(TreeListPaint, EveryPixelOfTheClipIsPaintedAndNoRowBesideIt)
{
    const std::uint32_t styles[] = {kTreeStyle, kTreeStyle | StyleAlternate | StyleFullRowSelect,
                                    kTreeStyle | StyleBkBitmap, kTreeStyle | StyleBkColor};
    CreateTree();
    list->SelectItem(pipe12, 0, true);
    for (const std::uint32_t style : styles) {
        list->SetStyle(style);
        Settle();
        const QSize size = list->viewport()->size();
        QImage image(size, QImage::Format_RGB32);
        image.fill(Qt::magenta);
        const QRect clip(0, 20, size.width(), 40); // two rows
        QPainter painter(&image);
        list->DrawCtrl(painter, clip);
        painter.end();
        EXPECT_EQ(CountOf(image.copy(clip), Qt::magenta), 0) << style;
        EXPECT_EQ(CountOf(image, Qt::magenta), size.width() * (size.height() - 40)) << style;
        painter.begin(&image);
        list->DrawCtrl(painter, QRect());
        list->DrawCtrl(painter, image.rect());
        painter.end();
        EXPECT_EQ(CountOf(image, Qt::magenta), 0) << style;
        EXPECT_EQ(image, Picture()) << style;
    }
}

TEST_F(TreeListPaint, ThroughABufferItLooksTheSame)
{
    CreateTree(kTreeStyle | StyleAlternate | StyleCheck | StyleHorzGrid);
    const QImage direct = Picture();
    list->SetState(kControlBuffered, 0);
    EXPECT_EQ(Picture(), direct);
}

TEST_F(TreeListPaint, WithoutTheClientEdgeTheFrameIsAShadow)
{
    CreateTree();
    const auto frame = [this] { return list->grab().toImage(); };
    const QImage plain = frame();
    EXPECT_EQ(plain.pixelColor(0, 100), Shade(QPalette::Dark));
    EXPECT_EQ(plain.pixelColor(200, 0), Shade(QPalette::Dark));
    EXPECT_EQ(plain.pixelColor(plain.width() - 1, 100), Shade(QPalette::Mid));
    EXPECT_EQ(plain.pixelColor(200, plain.height() - 1), Shade(QPalette::Mid));

    CTreeListCtrl edged(&window);
    ASSERT_NE(edged.Create(StyleTree | StyleClientEdge, QRect(0, 0, 100, 100), &window, 901), 0);
    edged.show();
    EXPECT_NE(edged.grab().toImage().pixelColor(0, 50), Shade(QPalette::Dark));
}

// --- Cells -----------------------------------------------------------------------------------------------------------

TEST_F(TreeListPaint, AColumnWithoutWidthOrHiddenIsNotPainted)
{
    CreateTree(kTreeStyle | StyleVertGrid);
    const QImage kinds = Cell(areaA, 2);
    list->SetColumnWidth(1, 0);
    EXPECT_EQ(Picture().copy(160, RowOf(areaA).top(), 90, 20), kinds);
    list->SetColumnWidth(1, 80);
    list->SetColumnFormat(1, kColumnHidden, 0);
    EXPECT_EQ(Picture().copy(160, RowOf(areaA).top(), 90, 20), kinds);
}

TEST_F(TreeListPaint, ColumnsStandInTheirShownOrder)
{
    CreateTree();
    const QImage kinds = Cell(areaA, 2), names = Cell(areaA, 0);
    list->SetColumnOrderArray({2, 0, 1});
    EXPECT_EQ(Picture().copy(0, RowOf(areaA).top(), 90, 20), kinds);
    EXPECT_EQ(Picture().copy(90, RowOf(areaA).top(), 160, 20), names);
}

TEST_F(TreeListPaint, TextsStandAsTheirColumnsDo)
{
    CreateTree();
    const QImage left = Cell(areaA, 0), right = Cell(areaA, 1), middle = Cell(areaA, 2);
    QRect text;
    list->GetItemRect(areaA, 0, text, true);
    const QImage name = left.copy(text.left(), 0, text.width(), 20);
    EXPECT_EQ(InkOf(name, Told(colorBk)).left(), 0);
    EXPECT_EQ(InkOf(right, Told(colorBk)).right(), 80 - 1 - 2 - 1); // a letter ends one pixel before the next
    EXPECT_NEAR(InkOf(middle, Told(colorBk)).center().x(), 45, 1);
    // 7 pixels high in ten, in 20.
    EXPECT_EQ(InkOf(right, Told(colorBk)).top(), 6);
    EXPECT_EQ(InkOf(right, Told(colorBk)).bottom(), 12);
}

TEST_F(TreeListPaint, ATextThatIsTooLongEndsInAnEllipsisWithinItsCell)
{
    CreateTree();
    const std::wstring digits(40, L'8');
    list->SetItemText(areaA, 1, digits);
    const QImage cut = Cell(areaA, 1);
    const QRect ink = InkOf(cut, Told(colorBk));
    EXPECT_GE(ink.left(), 2);
    EXPECT_LE(ink.right(), 77);
    // Three dots on the base line are its last letter.
    const QImage last = cut.copy(ink.right() - 4, 0, 5, 20);
    EXPECT_EQ(InkOf(last, Told(colorBk)).height(), 1);
    EXPECT_EQ(CountOf(last, Told(colorTextNormal)), 3);
}

TEST_F(TreeListPaint, AColumnFittedToItsTextsShowsThemWhole)
{
    CreateTree();
    for (const char *family : {"Velmor Pinned", "DejaVu Sans"}) {
        QFont font{QString::fromLatin1(family)};
        font.setPixelSize(family[0] == 'V' ? 8 : 11);
        list->setFont(font);
        list->SetItemText(areaA, 1, L"A wavy Text, 1/4 of 117 km");
        list->SetColumnWidth(1, 200);
        const QRect whole = InkOf(Cell(areaA, 1), Told(colorBk));
        list->SetColumnWidth(1, -1);
        EXPECT_EQ(InkOf(Cell(areaA, 1), Told(colorBk)).width(), whole.width()) << family;
        list->SetColumnWidth(1, list->GetColumnWidth(1) - 3);
        EXPECT_LT(InkOf(Cell(areaA, 1), Told(colorBk)).width(), whole.width()) << family;
    }
}

TEST_F(TreeListPaint, MarksNeedTheStyleAndTheItemsBit)
{
    CreateTree();
    const auto offset = [this] {
        QRect text;
        list->GetItemRect(areaA, 0, text, true);
        return text.left();
    };
    const int bare = offset();
    const QImage without = Cell(areaA, 0);
    const struct {
        std::uint32_t style, bit;
        int width;
    } marks[] = {
        {StyleCheck, kItemShowsCheck, 16}, {StyleLock, kItemShowsLock, 8 + 2}, {StyleImage, kItemShowsImage, 16 + 2}};
    for (const auto &mark : marks) {
        list->SetStyle(kTreeStyle | mark.style);
        list->SetItemState(areaA, mark.bit, 0);
        EXPECT_EQ(offset(), bare + mark.width);
        const QImage cell = Cell(areaA, 0);
        EXPECT_FALSE(InkOf(cell.copy(bare, 0, mark.width, 20), Told(colorBk)).isEmpty());
        list->SetItemState(areaA, 0, mark.bit);
        EXPECT_EQ(offset(), bare + (mark.style == StyleCheck ? 0 : 2));
        list->SetStyle(kTreeStyle);
        list->SetItemState(areaA, mark.bit, 0);
        EXPECT_EQ(Cell(areaA, 0), without);
    }
}

TEST_F(TreeListPaint, MarksShowTheirStates)
{
    CreateTree(kTreeStyle | StyleCheck | StyleLock);
    for (const int part : {kHitCheck, kHitLock}) {
        std::vector<QImage> pictures;
        for (const int state : {kCheckOff, kCheckOn, kCheckMixed}) {
            part == kHitCheck ? list->SetCheck(areaA, state) : list->SetLock(areaA, state);
            const QPoint middle = PlaceOf(areaA, part);
            pictures.push_back(Picture().copy(middle.x() - 4, middle.y() - 8, 8, 16));
        }
        EXPECT_NE(pictures[0], pictures[1]) << part;
        EXPECT_NE(pictures[0], pictures[2]) << part;
        EXPECT_NE(pictures[1], pictures[2]) << part;
    }
}

TEST_F(TreeListPaint, TheNewestSelectedShowsItsThirdImage)
{
    CreateTree(kTreeStyle | StyleImage | StyleMultiSelect);
    QPixmap colors[4];
    const QColor fills[] = {Qt::red, Qt::green, Qt::blue, Qt::yellow};
    std::vector<QIcon> icons;
    for (int i = 0; i < 4; ++i) {
        colors[i] = QPixmap(16, 16);
        colors[i].fill(fills[i]);
        icons.emplace_back(colors[i]);
    }
    list->SetItemImages(icons);
    for (CTreeListItem *item : {areaA, areaB}) {
        list->SetItemImage(item, 0, 1, 2, 3);
        list->SetItemState(item, kItemShowsImage, 0);
    }
    const auto image = [this](CTreeListItem *item) {
        const QPoint at = PlaceOf(item, kHitImage);
        return Pixel(at.x(), at.y());
    };
    EXPECT_EQ(image(areaA), QColor(Qt::red));
    list->SelectItem(areaA, 0, true);
    list->SelectItem(areaB, 0, false);
    EXPECT_EQ(image(areaA), QColor(Qt::red));
    EXPECT_EQ(image(areaB), QColor(Qt::blue));
    list->SetItemImage(areaA, 4, 0, 0, 0); // there is no such icon
    EXPECT_NE(image(areaA), QColor(Qt::red));
    list->SetItemImages({});
    list->SetItemImage(areaA, kImageHouse, 0, 0, 0);
    EXPECT_FALSE(InkOf(Cell(areaA, 0), Told(colorBk)).isEmpty());
}

TEST_F(TreeListPaint, CheckAndLockOfHoverAndTargetRowAreDimmed)
{
    CreateTree(kTreeStyle | StyleCheck | StyleLock);
    list->SetCheck(areaA, kCheckOn);
    list->SetLock(areaA, kCheckOn);
    const auto contrast = [this](int part) {
        const QPoint middle = PlaceOf(areaA, part);
        const QImage mark = Picture().copy(middle.x() - 3, middle.y() - 4, 6, 8);
        double most = 1;
        for (int y = 0; y < mark.height(); ++y) {
            for (int x = 0; x < mark.width(); ++x)
                most = std::max(most, ContrastOf(mark.pixelColor(x, y), Told(colorBk)));
        }
        return most;
    };
    for (const int part : {kHitCheck, kHitLock}) {
        const double plain = contrast(part);
        list->SetHoverItem(areaA);
        EXPECT_LT(contrast(part), plain * 0.7) << part;
        list->SetHoverItem(nullptr);
        list->SetTargetItem(areaA);
        EXPECT_LT(contrast(part), plain * 0.7) << part;
        list->SetTargetItem(nullptr);
        EXPECT_DOUBLE_EQ(contrast(part), plain) << part;
    }
}

// --- Tree ------------------------------------------------------------------------------------------------------------

TEST_F(TreeListPaint, DotsOfTheTreeStandWhereBothCoordinatesAreEvenTogether)
{
    CreateTree(StyleTree | StyleTreeLines | StyleTreeRootLines);
    const QImage picture = Picture();
    const QColor dot = Told(colorTreeLine);
    const int x = 2 + 8; // of the top level
    ASSERT_EQ(RowOf(outfall1).top(), 0);
    for (int y = 10; y < 130; ++y) // from the first top-level row's middle to the second's
        EXPECT_EQ(picture.pixelColor(x, y) == dot, y % 2 == 0) << y;
    for (int y = 132; y < 140; ++y)
        EXPECT_NE(picture.pixelColor(x, y), dot) << y; // the last sibling's line ends in its middle
    for (int y = 0; y < 10; ++y)
        EXPECT_NE(picture.pixelColor(x, y), dot) << y; // nothing above the first
    for (int i = 0; i < 8; ++i)
        EXPECT_EQ(picture.pixelColor(x + i, 10) == dot, i % 2 == 0) << i; // towards the text
    // One level below: both pipes hang on one line.
    for (int y = 20; y < 90; ++y)
        EXPECT_EQ(picture.pixelColor(x + 16, y) == dot, y % 2 == 0) << y;
    EXPECT_NE(picture.pixelColor(x + 16, 92), dot);
}

TEST_F(TreeListPaint, NoTwoDotsTouchWhateverTheRowsHeight)
{
    CreateTree(StyleTree | StyleTreeLines | StyleTreeRootLines);
    for (const int height : {16, 18, 20, 22}) {
        list->SetItemHeight(height);
        const QImage picture = Picture().copy(0, 0, 60, 7 * height);
        const QColor dot = Told(colorTreeLine);
        int dots = 0;
        for (int y = 1; y < picture.height(); ++y) {
            for (int x = 1; x < picture.width(); ++x) {
                if (picture.pixelColor(x, y) != dot)
                    continue;
                ++dots;
                EXPECT_NE(picture.pixelColor(x - 1, y), dot) << height << ": " << x << "," << y;
                EXPECT_NE(picture.pixelColor(x, y - 1), dot) << height << ": " << x << "," << y;
            }
        }
        EXPECT_GT(dots, 100) << height;
    }
}

TEST_F(TreeListPaint, RootLinesAreTheTopLevels)
{
    CreateTree(StyleTree | StyleTreeLines);
    const QImage column = Picture().copy(2, 0, 16, 140);
    EXPECT_EQ(CountOf(column, Told(colorTreeLine)), 0);
    EXPECT_GT(CountOf(Picture().copy(18, 0, 16, 140), Told(colorTreeLine)), 20);
}

TEST_F(TreeListPaint, AButtonIsABoxOfNinePixelsOnItemsWithChildren)
{
    CreateTree(StyleTree | StyleTreeButtons);
    const QColor line = Told(colorTreeLine);
    const auto box = [this](CTreeListItem *item) {
        const QPoint middle = PlaceOf(item, kHitButton);
        return Picture().copy(middle.x() - 8, middle.y() - 8, 16, 16);
    };
    for (CTreeListItem *item : {outfall1, outfall2}) {
        const QImage button = box(item);
        EXPECT_EQ(InkOf(button, Told(colorBk)), QRect(4, 4, 9, 9));
        EXPECT_EQ(CountOf(button, line), 32 + (item == outfall1 ? 5 : 9)); // an edge, and minus or plus
    }
    EXPECT_TRUE(InkOf(box(areaA), Told(colorBk)).isEmpty());
    list->SetStyle(StyleTree | StyleTreeLines);
    EXPECT_EQ(InkOf(box(outfall2), Told(colorBk)), QRect());
}

// --- Grid ------------------------------------------------------------------------------------------------------------

TEST_F(TreeListPaint, TheHorizontalGridIsInTheFirstColumnOnlyWithItsBit)
{
    CreateTree();
    EXPECT_FALSE(HasBottomLine(CellOf(areaA, 1)));
    list->SetStyle(kTreeStyle | StyleHorzGrid);
    EXPECT_TRUE(HasBottomLine(CellOf(areaA, 1)));
    EXPECT_TRUE(HasBottomLine(CellOf(areaA, 2)));
    EXPECT_FALSE(HasBottomLine(CellOf(areaA, 0)));
    list->SetStyle(kTreeStyle | StyleHorzGrid | StyleGridInFirstColumn);
    EXPECT_TRUE(HasBottomLine(CellOf(areaA, 0)));
    list->SetStyle((kTreeStyle & ~StyleTree) | StyleHorzGrid | StyleGridInFirstColumn);
    EXPECT_TRUE(HasBottomLine(CellOf(areaA, 0)));
    list->SetStyle(kTreeStyle | StyleHorzGrid | StyleHorzGridFull);
    EXPECT_TRUE(HasBottomLine(CellOf(areaA, 0)));
}

TEST_F(TreeListPaint, TheVerticalGridStandsAtTheRightOfEachCell)
{
    CreateTree(kTreeStyle | StyleVertGrid);
    for (int column = 0; column < 3; ++column) {
        EXPECT_TRUE(HasRightLine(CellOf(areaA, column))) << column;
        EXPECT_FALSE(HasRightLine(CellAt(8, column))) << column; // an empty row
    }
    list->SetStyle(kTreeStyle);
    EXPECT_FALSE(HasRightLine(CellOf(areaA, 1)));
}

TEST_F(TreeListPaint, TheLastRowIsClosedWhenEmptyRowsHaveNoGrid)
{
    CreateTree(kTreeStyle | StyleHorzGrid);
    EXPECT_TRUE(HasBottomLine(CellOf(outfall2, 0))); // the last shown
    EXPECT_FALSE(HasBottomLine(CellOf(areaC, 0)));
    list->SetStyle(kTreeStyle | StyleHorzGrid | StyleHorzGridEmptyRows);
    EXPECT_FALSE(HasBottomLine(CellOf(outfall2, 0)));
    list->SetStyle(kTreeStyle | StyleVertGrid | StyleVertGridAll);
    EXPECT_FALSE(HasBottomLine(CellOf(outfall2, 0)));
    list->SetStyle(kTreeStyle | StyleHorzGrid);
    list->DeleteAllItems();
    EXPECT_EQ(CountOf(Picture(), Told(colorGrid)), 0); // no row, nothing to close
}

TEST_F(TreeListPaint, EmptyRowsHaveTheGridOfTheirBits)
{
    CreateTree(kTreeStyle | StyleHorzGrid);
    const int line = 8;
    const auto bottoms = [&] {
        return std::vector<bool>{HasBottomLine(CellAt(line, 0)), HasBottomLine(CellAt(line, 1)),
                                 HasBottomLine(CellAt(line, 2))};
    };
    const auto rights = [&] {
        return std::vector<bool>{HasRightLine(CellAt(line, 0)), HasRightLine(CellAt(line, 1)),
                                 HasRightLine(CellAt(line, 2))};
    };
    using Three = std::vector<bool>;
    EXPECT_EQ(bottoms(), (Three{false, false, false}));
    list->SetStyle(kTreeStyle | StyleHorzGrid | StyleHorzGridFull);
    EXPECT_EQ(bottoms(), (Three{false, false, false}));
    list->SetStyle(kTreeStyle | StyleHorzGrid | StyleHorzGridEmptyRows);
    EXPECT_EQ(bottoms(), (Three{false, true, true}));
    EXPECT_EQ(rights(), (Three{false, false, false}));
    list->SetStyle(kTreeStyle | StyleHorzGrid | StyleHorzGridEmptyRows | StyleGridInFirstColumn);
    EXPECT_EQ(bottoms(), (Three{true, true, true}));
    list->SetStyle(kTreeStyle | StyleHorzGrid | StyleHorzGridEmptyRows | StyleHorzGridFull);
    EXPECT_EQ(bottoms(), (Three{true, true, true}));
    list->SetStyle(kTreeStyle | StyleVertGrid | StyleVertGridAll);
    EXPECT_EQ(bottoms(), (Three{false, false, false}));
    EXPECT_EQ(rights(), (Three{true, true, true}));
}
